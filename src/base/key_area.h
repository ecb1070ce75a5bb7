// base/key_area.h - one row per clickable area of a gauge: its label, rectangle and action.
//
// The same rows make the mouse rectangles and the painted key caps. Positions are gauge pixels
// from the gauge's top-left corner.
#pragma once

#include <cstdint>

#include "platform/panel_interface.h"

namespace avq1 {

struct KeyClick;

// Runs when the area is clicked, on the panel thread; the click says which row it was. A control
// unit's page and entry keys only change its state, the work is done at the next draw; others act
// at once.
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
    std::int32_t code = 0;       // what tells the keys of one action apart: a line, a character
    KeyArt art = KeyArt::Cap;
    bool repeats = false;  // fires again and again while held
    MouseCursor cursor = MouseCursor::Hand;

    constexpr std::uint32_t MouseFlags() const {
        return mouse_flag::kLeftSingle | (repeats ? mouse_flag::kDownRepeat : 0);
    }
};

// One click on a key; `point` in pixels from the area's top-left corner.
struct KeyClick {
    const KeyArea& key;
    PixelPoint point;
    std::uint32_t flags = 0;

    bool InRightHalf() const { return point.x >= key.box.width / 2; }
    bool InLowerHalf() const { return point.y >= key.box.height / 2; }
};

// Opens or closes the panel window whose ident is the key's code; without one nothing happens.
void ToggleKeyWindow(const KeyClick& click);

}  // namespace avq1
