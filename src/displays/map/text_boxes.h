// displays/map/text_boxes.h - which places of a picture are taken, so that map identifiers are put
// beside each other and never over one another.
//
// Whole design pixels of a picture up to kMaxWidth x kMaxHeight; what lies outside is never taken.
// Boxes that meet at an upper or lower edge do not overlap.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

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
        if (!IsFree(box)) {
            return false;
        }
        Take(box);
        return true;
    }

    bool IsFree(const TextBox& box) const {
        bool free = true;
        EachWord(*this, box, [&](const std::uint64_t& word, std::uint64_t mask) {
            free = free && (word & mask) == 0;
        });
        return free;
    }

    void Take(const TextBox& box) {
        EachWord(*this, box, [](std::uint64_t& word, std::uint64_t mask) { word |= mask; });
    }

  private:
    static constexpr int kMaxWidth = 320;
    static constexpr int kMaxHeight = 320;
    static constexpr int kWordBits = 64;

    // The words of the rows the box covers, each with the box's part of it.
    template <class Boxes, class Visit>
    static void EachWord(Boxes& boxes, const TextBox& box, Visit visit) {
        if (!(box.x > -kMaxWidth && box.x < kMaxWidth && box.y > -kMaxHeight &&
              box.y < kMaxHeight && box.width < kMaxWidth && box.height < kMaxHeight)) {
            return;
        }
        const int left = std::max(static_cast<int>(std::floor(box.x)), 0);
        const int top = std::max(static_cast<int>(std::lround(box.y)), 0);
        const int right = std::min(static_cast<int>(std::ceil(box.x + box.width)), kMaxWidth);
        const int bottom = std::min(static_cast<int>(std::lround(box.y + box.height)), kMaxHeight);
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right;) {
                const int end = std::min(right, (x / kWordBits + 1) * kWordBits);
                const std::uint64_t mask = (~std::uint64_t{0} >> (kWordBits - (end - x)))
                                           << (x % kWordBits);
                visit(boxes.rows_[static_cast<std::size_t>(y)]
                                 [static_cast<std::size_t>(x / kWordBits)],
                      mask);
                x = end;
            }
        }
    }

    std::array<std::array<std::uint64_t, kMaxWidth / kWordBits>, kMaxHeight> rows_{};
};

}  // namespace avq1
