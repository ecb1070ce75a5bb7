// tests/cdu_gns/fake_unit.h - a compact unit on a table: presses its keys by label, draws it on a
// picture in memory and reads the screen back as text.
#pragma once

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "cdu_gns/mcu.h"
#include "platform/services.h"

namespace avq1::test {

// One surface that shows the unit. What is painted on it stays until it is painted again.
class FakeUnit {
  public:
    explicit FakeUnit(int scale = 1)
        : pixels_(static_cast<std::size_t>(420 * scale) * 159 * scale, 0xFF123456) {
        context_.width = 420 * scale;
        context_.height = 159 * scale;
        context_.bytesPerRow = context_.width * 4;
        context_.pixels = pixels_.data();
        PlatformServices& services = Services();
        services.size = sizeof services;
        services.text_drawn = [](void* context, const char* text, double x, double y, double,
                                 std::uint32_t argb) {
            Captured().push_back({context, text, x, y, argb});
        };
        PlatformTable.services = &services;
    }
    ~FakeUnit() {
        StopDrawingLibrary(drawingLibrary_);
        PlatformTable.services = nullptr;
    }
    FakeUnit(const FakeUnit&) = delete;
    FakeUnit& operator=(const FakeUnit&) = delete;

    static PlatformServices& Services() {
        static PlatformServices services;
        return services;
    }

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
                found->action(KeyClick{});
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
        Captured().clear();
        DrawMcu({&context_, context_.width, context_.height, mode});
        const std::vector<DrawnText> drawn = Captured();
        if (!drawn.empty()) {
            screen_ = drawn;
        }
        return static_cast<int>(
            std::count_if(drawn.begin(), drawn.end(),
                          [&](const DrawnText& text) { return text.context == &context_; }));
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

    std::uint32_t Pixel(int x, int y) const {
        return pixels_[static_cast<std::size_t>(y) * context_.width + x];
    }
    int CountPixels(std::uint32_t argb) const {
        return static_cast<int>(std::count(pixels_.begin(), pixels_.end(), argb));
    }

  private:
    struct DrawnText {
        void* context;
        std::string text;
        double x;
        double y;
        std::uint32_t argb;
    };
    static std::vector<DrawnText>& Captured() {
        static std::vector<DrawnText> captured;
        return captured;
    }

    std::uintptr_t drawingLibrary_ = StartDrawingLibrary();
    PixelDeviceContext context_;
    std::vector<std::uint32_t> pixels_;
    std::vector<DrawnText> screen_;
};

}  // namespace avq1::test
