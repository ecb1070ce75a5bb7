// tests/cdu_gns/fake_unit.h - a unit on a table: presses its keys by label, draws it on a picture
// in memory and reads the screen back as text.
#pragma once

#include <algorithm>
#include <map>
#include <span>
#include <sstream>
#include <string>
#include <vector>

#include "cdu_gns/gns.h"
#include "cdu_gns/mcu.h"
#include "support/picture.h"

namespace avq1::test {

// One surface that shows the unit. What is painted on it stays until it is painted again.
class FakeUnit {
  public:
    using DrawUnitScreen = void (*)(const DrawTarget&);

    explicit FakeUnit(int scale = 1) : FakeUnit(kMcuKeys, DrawMcu, 420 * scale, 159 * scale) {}
    FakeUnit(std::span<const KeyArea> keys, DrawUnitScreen draw, int width, int height)
        : keys_(keys), draw_(draw), picture_(width, height, 0xFF123456) {}
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
            const auto found = std::find_if(keys_.begin(), keys_.end(),
                                            [&](const KeyArea& row) { return key == row.label; });
            ASSERT_NE(found, keys_.end()) << key;
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
        draw_(picture_.Target(mode));
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

    const std::vector<DrawnText>& Texts() const { return screen_; }  // as painted
    const Picture& picture() const { return picture_; }
    std::uint32_t Pixel(int x, int y) const { return picture_.At(x, y); }
    int CountPixels(std::uint32_t argb) const {
        return static_cast<int>(std::ranges::count(picture_.pixels(), argb));
    }

  protected:
    std::span<const KeyArea> keys_;
    DrawUnitScreen draw_;

  private:
    std::uintptr_t drawingLibrary_ = StartDrawingLibrary();
    Picture picture_;
    std::vector<DrawnText> screen_;
};

// The GNS-style unit. Besides its keys' labels "L1" to "L10" are the line select keys, and "=KSFO"
// types the characters one after the other.
class FakeGns : public FakeUnit {
  public:
    explicit FakeGns(std::span<const KeyArea> keys = kGnsKeys, int scale = 1)
        : FakeUnit(keys, DrawGns, 292 * scale, 217 * scale) {}

    void Press(const std::string& keys) {
        std::istringstream words(keys);
        for (std::string word; words >> word;) {
            if (word.front() == '=') {
                for (const char each : word.substr(1)) {
                    Click(std::string(1, each));
                    Draw();
                }
            } else if (word.front() == 'L' && word.size() > 1) {
                const int line = std::stoi(word.substr(1));
                Click("Line select " + std::to_string((line - 1) % 5 + 1) +
                      (line <= 5 ? " left" : " right"));
                Draw();
            } else {
                FakeUnit::Press(word);
            }
        }
    }

    std::vector<std::string> After(const std::string& keys) {
        Press(keys);
        return Rows();
    }

    // A key without a draw after it.
    void Click(const std::string& label) {
        const auto found = std::find_if(keys_.begin(), keys_.end(),
                                        [&](const KeyArea& row) { return label == row.label; });
        ASSERT_NE(found, keys_.end()) << label;
        found->action({*found, {}});
    }
};

}  // namespace avq1::test
