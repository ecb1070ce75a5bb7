// cdu_gns/mcu.h - the compact unit: its state, keys and screen.
//
// One state for all compact-unit gauges. Keys only change it; the page's work is done at the next
// draw, and the screen is painted only when something shown changed. The last painted picture
// stays on the surface otherwise; every surface is painted once per change.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/key_area.h"
#include "drawing/surface.h"
#include "simlink/keyboard.h"

namespace avq1 {

enum class McuPage : std::int32_t { Fpln = 1, Apt = 2, To = 5, Legs = 6, Dirto = 7, AltFl = 19 };
enum class McuArrow : std::int32_t { None = 0, Up = 1, Down = 2, Left = 3, Right = 4 };

// A list longer than the screen: the highlighted row and the first one shown, both from 0.
struct McuCursor {
    std::int32_t row = 0;
    std::int32_t first = 0;
};

// What the computer keyboard asks of a list; the page clears the requests.
struct McuNavigation {
    bool up = false;
    bool down = false;
    bool pageUp = false;
    bool pageDown = false;
};

struct McuState {
    McuPage page = McuPage::To;
    std::int32_t redraw = 1;   // something shown changed
    std::int32_t force = 1;    // a key was pressed: paint whatever the comparison says
    std::int32_t editing = 0;  // 1 while the unit has the computer keyboard
    McuArrow arrowKey = McuArrow::None;
    bool enterPressed = false;
    bool prevPressed = false;
    bool nextPressed = false;
    bool fplnPressed = false;
    bool entryComplete = false;  // Enter on the computer keyboard, or ENTER while typing
    McuNavigation navigation;
    std::int32_t altStep = 0;      // 0 not selected, 1 thousands, 2 five hundreds
    std::int32_t newAltitude = 0;  // feet
    std::int32_t legsScroll = 0;   // LEGS: the first leg shown, an index of the active plan
    std::int32_t legsCursor = 0;   // LEGS: the highlighted leg
    std::int32_t candidateIndex = 0;
    bool crossingEntry = false;   // LEGS with the crossing altitude entry
    std::int32_t planCursor = 0;  // FPLN: the highlighted stored plan, from 0
    std::int32_t planScroll = 0;  // FPLN: the first plan shown
    McuCursor runway;             // APT
    std::string entryText;
    std::string secondEntryText;  // LEGS
    std::string takenText;        // LEGS: as much of it as has taken effect
};

extern McuState mcu;

inline constexpr int kMcuKeyCount = 17;
extern const std::array<KeyArea, kMcuKeyCount> kMcuKeys;

// The annunciator lights of the bezel.
bool McuLnavLit();
bool McuHoldLit();

// Draws the unit's screen when something changed since the last painted frame.
void DrawMcu(const DrawTarget& target);

// Takes what was typed on the computer keyboard into the page's text; before each draw.
void PollMcuKeyboard();

extern const KeyboardUser kMcuKeyboard;

}  // namespace avq1
