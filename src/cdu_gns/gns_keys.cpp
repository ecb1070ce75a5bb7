#include "cdu_gns/gns_keys.h"

#include "base/panel_windows.h"

namespace avq1 {

const std::array<KeyArea, kGnsKeyCount> kGnsKeys = {{
    // function keys
    {"NAV", {55, 11, 36, 28}},
    {"VNAV", {99, 11, 36, 28}},
    {"FPL", {188, 11, 36, 28}},
    {"FUEL", {363, 11, 36, 28}},
    {"HOLD", {428, 48, 36, 28}},
    // line select keys 1 to 5 (left), 6 to 10 (right), top to bottom
    {"Line select 1 left", {60, 70, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 2 left", {60, 115, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 3 left", {60, 160, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 4 left", {60, 204, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 5 left", {57, 247, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 1 right", {390, 70, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 2 right", {390, 115, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 3 right", {390, 160, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 4 right", {390, 204, 24, 17}, nullptr, 0, KeyArt::LineKey},
    {"Line select 5 right", {390, 247, 24, 17}, nullptr, 0, KeyArt::LineKey},
    // paging and entry
    {"PREV", {18, 140, 30, 38}},
    {"NEXT", {18, 185, 30, 38}},
    {"DIRECT", {18, 228, 30, 38}},
    {"ENTER", {242, 310, 62, 30}},
    {"CLR", {430, 262, 34, 26}},
    // letters and *
    {"A", {48, 310, 36, 30}},
    {"B", {94, 310, 36, 30}},
    {"C", {138, 310, 36, 30}},
    {"D", {184, 310, 36, 30}},
    {"E", {322, 310, 36, 30}},
    {"F", {368, 310, 36, 30}},
    {"G", {414, 310, 36, 30}},
    {"H", {460, 310, 36, 30}},
    {"I", {48, 350, 36, 30}},
    {"J", {94, 350, 36, 30}},
    {"K", {138, 350, 36, 30}},
    {"L", {184, 350, 36, 30}},
    {"M", {230, 350, 36, 30}},
    {"N", {276, 350, 36, 30}},
    {"O", {322, 350, 36, 30}},
    {"P", {368, 350, 36, 30}},
    {"Q", {414, 350, 36, 30}},
    {"R", {460, 350, 36, 30}},
    {"S", {48, 392, 36, 30}},
    {"T", {94, 392, 36, 30}},
    {"U", {138, 392, 36, 30}},
    {"V", {184, 392, 36, 30}},
    {"W", {230, 392, 36, 30}},
    {"X", {276, 392, 36, 30}},
    {"Y", {322, 392, 36, 30}},
    {"Z", {368, 392, 36, 30}},
    {"*", {414, 392, 36, 30}},
    // digits and #
    {"1", {428, 84, 30, 36}},
    {"2", {462, 84, 30, 36}},
    {"3", {498, 84, 30, 36}},
    {"4", {428, 130, 30, 36}},
    {"5", {462, 130, 30, 36}},
    {"6", {498, 130, 30, 36}},
    {"7", {428, 174, 30, 36}},
    {"8", {462, 174, 30, 36}},
    {"9", {498, 174, 30, 36}},
    {"#", {428, 218, 30, 36}},
    {"0", {462, 218, 30, 36}},
    // the screen's centre
    {"Unit window", {190, 101, 80, 80}, ToggleKeyWindow, panel_window::kGns, KeyArt::None},
}};

}  // namespace avq1
