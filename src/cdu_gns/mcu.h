// cdu_gns/mcu.h - the compact unit: its state, keys and screen.
//
// One state for all compact-unit gauges; see cdu/unit.h for how keys, pages and painting meet.
// Altitudes are feet.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "base/key_area.h"
#include "cdu/list_view.h"
#include "cdu/unit.h"
#include "drawing/surface.h"
#include "simlink/keyboard.h"

namespace avq1 {

enum McuPage : std::int32_t {
    kMcuFpln = 1,
    kMcuApt = 2,
    kMcuTo = 5,
    kMcuLegs = 6,
    kMcuDirto = 7,
    kMcuAltFl = 19,
};

struct McuState : CduState {
    McuState() { page = kMcuTo; }

    std::int32_t editing = 0;      // 1 while the unit has the computer keyboard
    std::int32_t altStep = 0;      // 0 not selected, 1 thousands, 2 five hundreds
    std::int32_t newAltitude = 0;  // the altitude being set
    bool crossingEntry = false;    // LEGS with the crossing altitude entry
    ListView plans;                // FPLN
    ListView runways;              // APT
    ListView legs;                 // LEGS: row 0 is entry 1 of the active plan
    ListView candidates;           // DIRTO
    std::string entryText;
    std::string secondEntryText;            // LEGS
    std::string takenText;                  // LEGS: as much of it as has taken effect
    std::int32_t altitudeBeforeTyping = 0;  // LEGS: what the arrows had set
    bool typingEnded = false;               // by this draw's ENTER
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
