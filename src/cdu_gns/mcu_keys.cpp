#include <algorithm>
#include <cmath>

#include "base/redraw.h"
#include "cdu_gns/mcu.h"
#include "cdu_gns/mcu_pages.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "simlink/aircraft_state.h"
#include "simlink/keyboard.h"

namespace avq1 {
namespace {

// A page key: shown at once, and again when it is the page shown already.
void ShowPage(McuPage page) {
    OpenPage(mcu, page);
    mcu.input.openedPage = page;
    RequestUnitRedraw();
}

void PressPage(const KeyClick& click) {
    EndMcuEditing();
    ShowPage(static_cast<McuPage>(click.key.code));
}

void PressLnav(const KeyClick&) {
    ToggleLnav();
}

void PressDirto(const KeyClick&) {
    mcu.entryText.clear();
    ShowPage(kMcuDirto);
}

void PressHold(const KeyClick&) {
    if (guidance.lnavEngaged != 0 && holdFlight.holdActive == 0 && holdList.count == 0) {
        HoldAtActiveWaypoint();
    }
    RequestUnitRedraw();
}

// The leg being flown comes first; the list starts at entry 1 without one.
void OpenLegs(bool crossingEntry) {
    mcu.crossingEntry = crossingEntry;
    mcu.secondEntryText.clear();
    mcu.takenText.clear();
    mcu.legs.row = HasActiveWaypoint() ? planBook.activeIndex - 1 : 0;
    mcu.legs.first = mcu.legs.row;
    ShowPage(kMcuLegs);
}

void PressCross(const KeyClick&) {
    mcu.newAltitude = 0;
    mcu.altStep = 1;
    OpenLegs(true);
}

void PressLegs(const KeyClick&) {
    EndMcuEditing();
    OpenLegs(false);
}

void PressPrev(const KeyClick&) {
    mcu.input.prevPressed = true;
    RequestUnitRedraw();
}

void PressAlt(const KeyClick&) {
    const double thousands = std::trunc(aircraft.apAltitudeTargetFt / 1000.0);
    mcu.newAltitude = static_cast<std::int32_t>(std::clamp(thousands, 0.0, 99.0)) * 1000;
    mcu.altStep = 1;
    EndMcuEditing();
    ShowPage(kMcuAltFl);
}

void PressApt(const KeyClick&) {
    EndMcuEditing();
    mcu.runways = {};
    mcu.entryText.clear();
    ShowPage(kMcuApt);
}

void PressNext(const KeyClick&) {
    mcu.input.nextPressed = true;
    RequestUnitRedraw();
}

void PressEdit(const KeyClick&) {
    if (mcu.editing != 0) {
        EndMcuEditing();
        McuTypedText().clear();
        mcu.takenText.clear();  // what it has done stays
    } else if (McuPageTakesText()) {
        mcu.editing = 1;
        StartKeyboardEntry(kMcuKeyboard);
        guidance.blinkCounter = kRestartBlink;
    }
    RequestUnitRedraw();
}

void PressArrow(const KeyClick& click) {
    mcu.input.arrowKey = static_cast<UnitArrow>(click.key.code);
    RequestUnitRedraw();
}

void PressEnter(const KeyClick&) {
    mcu.input.enterPressed = true;
    mcu.input.entryComplete = mcu.editing != 0;
    EndMcuEditing();
    RequestUnitRedraw();
}

constexpr bool kRepeats = true;

}  // namespace

const std::array<KeyArea, kMcuKeyCount> kMcuKeys = {{
    {"TO", {40, 224, 70, 25}, PressPage, kMcuTo},
    {"FPLN", {127, 224, 70, 25}, PressPage, kMcuFpln},
    {"LNAV", {213, 222, 70, 25}, PressLnav},
    {"DIRTO", {40, 258, 70, 25}, PressDirto},
    {"HOLD", {127, 258, 70, 25}, PressHold},
    {"CROSS", {213, 258, 70, 25}, PressCross},
    {"LEGS", {40, 292, 70, 25}, PressLegs},
    {"PREV", {127, 292, 70, 25}, PressPrev, 0, KeyArt::Cap, kRepeats},
    {"ALT", {213, 292, 70, 25}, PressAlt},
    {"APT", {40, 324, 70, 25}, PressApt},
    {"NEXT", {127, 324, 70, 25}, PressNext, 0, KeyArt::Cap, kRepeats},
    {"EDIT", {213, 324, 70, 25}, PressEdit},
    {"UP", {371, 224, 32, 32}, PressArrow, 1, KeyArt::Cap, kRepeats},
    {"DOWN", {371, 290, 32, 32}, PressArrow, 2, KeyArt::Cap, kRepeats},
    {"LEFT", {338, 256, 32, 32}, PressArrow, 3},
    {"RIGHT", {404, 256, 32, 32}, PressArrow, 4},
    {"ENTER", {350, 324, 70, 25}, PressEnter},
}};

void EndMcuEditing() {
    if (HasKeyboard(kMcuKeyboard)) {
        StopKeyboardEntry();
    }
}

bool McuLnavLit() {
    return guidance.lnavEngaged != 0;
}

bool McuHoldLit() {
    return holdFlight.holdActive != 0;
}

}  // namespace avq1
