// displays/text_boxes.h - the places texts already stand on a picture, so that map identifiers are
// put beside each other and never over one another. A full list refuses further texts.
#pragma once

#include <array>
#include <cstddef>

namespace avq1 {

struct TextBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
};

class TextBoxes {
  public:
    // Takes the place when it is free.
    bool Claim(const TextBox& box) {
        if (count_ == boxes_.size()) {
            return false;
        }
        for (std::size_t i = 0; i < count_; ++i) {
            const TextBox& other = boxes_[i];
            if (box.x < other.x + other.width && other.x < box.x + box.width &&
                box.y < other.y + other.height && other.y < box.y + box.height) {
                return false;
            }
        }
        boxes_[count_++] = box;
        return true;
    }

  private:
    std::array<TextBox, 320> boxes_;
    std::size_t count_ = 0;
};

}  // namespace avq1
