// tests/cdu_gns/fake_unit.h - a compact unit on a table: presses its keys by label, draws it on a
// picture in memory and reads the screen back as text.
#pragma once

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "cdu_gns/mcu.h"
#include "support/picture.h"

namespace avq1::test {

// One surface that shows the unit. What is painted on it stays until it is painted again.
class FakeUnit {
  public:
    explicit FakeUnit(int scale = 1) : picture_(420 * scale, 159 * scale, 0xFF123456) {}
    ~FakeUnit() {
        StopDrawingLibrary(drawingLibrary_);
        PlatformTable.services = nullptr;
    }
    FakeUnit(const FakeUnit&) = delete;
    FakeUnit& operator=(const FakeUnit&) = delete;

    // Presses keys one after the other; "LEGS NEXT*3" presses NEXT three times. A draw after each.
    void Press(const std::string& keys) {
        std::istringstream words(keys);
        for (std::string key; words >> key;) {
            const std::size_t star = std::min(key.find('*'), key.size());
            const int times = star < key.size() ? std::stoi(key.substr(star + 1)) : 1;
            key.resize(star);
            const auto found = std::find_if(kMcuKeys.begin(), kMcuKeys.end(),
                                            [&](const KeyArea& row) { return key == row.label; });
            ASSERT_NE(found, kMcuKeys.end()) << key;
            for (int i = 0; i < times; ++i) {
                found->action({*found, {}});
                Draw();
            }
        }
    }

    // The screen's rows after these keys.
    std::vector<std::string> After(const std::string& keys) {
        Press(keys);
        return Rows();
    }

    // Draws once; how many texts were painted on this surface.
    int Draw(DisplayDrawMode mode = DisplayDrawMode::Normal) {
        Picture::Forget();
        DrawMcu(picture_.Target(mode));
        const std::vector<DrawnText>& drawn = Picture::Texts();
        if (!drawn.empty()) {
            screen_ = drawn;
        }
        return static_cast<int>(
            std::ranges::count(drawn, &picture_.context(), &DrawnText::context));
    }

    // The painted rows from the top, the texts of a row from the left with "|" between them.
    std::vector<std::string> Rows() const {
        std::map<int, std::map<int, std::string>> rows;
        for (const DrawnText& text : screen_) {
            rows[static_cast<int>(text.y)][static_cast<int>(text.x)] = text.text;
        }
        std::vector<std::string> joined;
        for (const auto& [y, row] : rows) {
            std::string line;
            for (const auto& [x, text] : row) {
                line += (line.empty() ? "" : "|") + text;
            }
            joined.push_back(line);
        }
        return joined;
    }

    std::uint32_t Pixel(int x, int y) const { return picture_.At(x, y); }
    int CountPixels(std::uint32_t argb) const {
        return static_cast<int>(std::ranges::count(picture_.pixels(), argb));
    }

  private:
    std::uintptr_t drawingLibrary_ = StartDrawingLibrary();
    Picture picture_;
    std::vector<DrawnText> screen_;
};

}  // namespace avq1::test
