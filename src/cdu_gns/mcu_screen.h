// cdu_gns/mcu_screen.h - what the compact unit shows, as plain text items before any drawing.
//
// A page composes a screen each draw event; two screens are compared to tell whether anything
// shown changed, so a value counts as changed when its text does. Fixed size, no allocation.
// Positions are design units of 239 x 78, a text's top-left corner.
#pragma once

#include <array>
#include <cstdint>

namespace avq1 {

inline constexpr int kMcuColumnWidth = 17;  // two characters: texts beside a cursor start here
inline constexpr int kMcuListRows = 4;
inline constexpr std::array<int, 6> kMcuRowY = {0, 12, 24, 36, 48, 62};
inline constexpr std::array<int, kMcuListRows> kMcuListY = {13, 25, 37, 49};

enum class McuStyle : std::uint8_t {
    Title,      // amber, bold
    Data,       // pale green
    Highlight,  // amber
    Active,     // magenta, bold: the leg being flown
    Status,     // amber, proportional: a full status line fits the width
};

struct McuText {
    std::array<char, 40> text{};
    std::int16_t x = 0;
    std::int16_t y = 0;
    McuStyle style = McuStyle::Data;

    friend bool operator==(const McuText&, const McuText&) = default;
};

struct McuScreen {
    std::array<McuText, 20> texts{};
    std::int32_t count = 0;
    bool entryFrame = false;

    friend bool operator==(const McuScreen&, const McuScreen&) = default;

    // Adds a text; one beyond the capacity is dropped, one too long is cut.
    [[gnu::format(printf, 5, 6)]] void Put(McuStyle style, int x, int y, const char* format, ...);
};

}  // namespace avq1
