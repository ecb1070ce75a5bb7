// displays/screen_keys.h - the click areas over the displays' screens: each opens or closes the
// pop-up window of its display.
#pragma once

#include <array>

#include "base/key_area.h"

namespace avq1 {

using ScreenKeys = std::array<KeyArea, 1>;

extern const ScreenKeys kEadiKeys;
extern const ScreenKeys kEhsiKeys;
extern const ScreenKeys kEhsiNbKeys;
extern const ScreenKeys kNdKeys;

}  // namespace avq1
