// cdu/unit_input.h - what the pilot asked of a unit since its last draw.
//
// Keys only write it; the page that is drawn next is handed all of it at once and sees each press
// exactly one time, whichever of the unit's surfaces is drawn first. Of two presses of one kind
// between draws the later counts. Without power, or on a page that does not exist, it waits.
#pragma once

#include <cstdint>

namespace avq1 {

enum class UnitArrow : std::int32_t { None = 0, Up = 1, Down = 2, Left = 3, Right = 4 };

struct UnitInput {
    std::int32_t lineKey = 0;  // line select key as the unit numbers them, from 1; 0 = none
    bool prevPressed = false;
    bool nextPressed = false;
    bool enterPressed = false;
    bool clearPressed = false;
    bool directPressed = false;
    UnitArrow arrowKey = UnitArrow::None;
    bool upAsked = false;  // the computer keyboard's arrow and page keys
    bool downAsked = false;
    bool pageUpAsked = false;
    bool pageDownAsked = false;
    bool entryComplete = false;   // typing has ended: Enter on the computer keyboard, or ENTER
    std::int32_t openedPage = 0;  // a key opened this page, again perhaps; 0 = none did

    friend bool operator==(const UnitInput&, const UnitInput&) = default;
};

}  // namespace avq1
