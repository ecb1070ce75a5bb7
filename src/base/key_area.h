// base/key_area.h - one row per clickable area of a gauge: its label, rectangle and action.
//
// The same rows make the mouse rectangles and the painted key caps. Positions are gauge pixels
// from the gauge's top-left corner. Actions only change state; the work is done at the next draw.
#pragma once

#include <cstdint>

#include "platform/panel_interface.h"

namespace avq1 {

// A click, in pixels from the area's top-left corner.
struct KeyClick {
    PixelPoint point;
    PixelBox box;
    std::uint32_t flags = 0;

    bool InRightHalf() const { return point.x >= box.width / 2; }
    bool InLowerHalf() const { return point.y >= box.height / 2; }
};

using KeyAction = void (*)(const KeyClick& click);

// What the bezel painter draws for the area.
enum class KeyArt : std::uint8_t {
    None,      // an area without artwork (a display's centre, a hidden window key)
    Cap,       // a raised key cap with its label
    LineKey,   // a small line select key
    Knob,      // a round knob
    Position,  // a label of a rotary selector position
};

struct KeyArea {
    const char* label = "";
    PixelBox box;
    KeyAction action = nullptr;  // null: the key is there but has nothing to do yet
    KeyArt art = KeyArt::Cap;
    bool repeats = false;  // fires again and again while held
    MouseCursor cursor = MouseCursor::Hand;

    constexpr std::uint32_t MouseFlags() const {
        return mouse_flag::kLeftSingle | (repeats ? mouse_flag::kDownRepeat : 0);
    }
};

}  // namespace avq1
