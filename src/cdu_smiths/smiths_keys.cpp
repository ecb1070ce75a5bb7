// What the keys of the Smiths-style unit do: they change its state; the page shown next does the
// work.
#include "cdu_smiths/smiths_keys.h"

#include <string_view>

#include "base/panel_windows.h"
#include "base/redraw.h"
#include "cdu_gns/gns.h"
#include "cdu_smiths/smiths.h"
#include "cdu_smiths/smiths_pages.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"

namespace avq1 {
namespace {

void PressPage(const KeyClick& click) {
    RequestUnitRedraw();
    OpenSmithsPage(static_cast<SmithsPage>(click.key.code));
}

void PressInitRef(const KeyClick&) {
    RequestUnitRedraw();
    smiths.Counter(SmithsCounter::Pos).n = smiths.Counter(SmithsCounter::PerfInit).n = 1;
    OpenSmithsPage(planBook.activeIndex == kNoWaypoint ? kSmithsPos : kSmithsPerfInit);
}

void PressLegs(const KeyClick&) {
    RequestUnitRedraw();
    OpenSmithsLegs(LegsMode::Normal);
}

void PressDirectIntercept(const KeyClick&) {
    RequestUnitRedraw();
    if (planBook.status < RouteStatus::AwaitsExecution) {
        SaySmiths(TextOf(EntryResult::NoActiveRoute));
    } else {
        OpenSmithsLegs(LegsMode::DirectTo);
    }
}

void PressHold(const KeyClick&) {
    RequestUnitRedraw();
    if (holdList.count == 0) {
        OpenSmithsLegs(LegsMode::Hold);
    } else {
        smiths.Counter(SmithsCounter::Hold).n = 1;  // the one flown, or to be flown next
        OpenSmithsPage(kSmithsHold);
    }
}

void PressExec(const KeyClick&) {
    RequestUnitRedraw();
    smiths.execPressed = true;
}

// PREV PAGE (-1) and NEXT PAGE (1).
void PressPaging(const KeyClick& click) {
    RequestUnitRedraw();
    PressSmithsPaging(click.key.code);
}

void PressLineKey(const KeyClick& click) {
    RequestUnitRedraw();
    smiths.input.lineKey = click.key.code;
}

// The key's label is what it types.
void PressCharacter(const KeyClick& click) {
    RequestUnitRedraw();
    TypeSmithsCharacter(click.key.label[0]);
}

// G to Z are also typed into the GNS-style unit while that waits for an entry.
void PressSharedLetter(const KeyClick& click) {
    PressCharacter(click);
    if (gns.entryArmed) {
        TypeGnsCharacter(click.key.label);
    }
}

// A blank begins no entry: SP before any other character also hands the computer keyboard to the
// unit, or back.
void PressSpace(const KeyClick&) {
    RequestUnitRedraw();
    if (smiths.message == kSmithsDelete) {
        smiths.scratchpad.clear();
        smiths.message.clear();
    } else {
        if (IsSmithsBlank(smiths.scratchpad)) {
            ToggleSmithsKeyboard();
        }
        TypeSmithsCharacter(' ');
    }
}

void PressDelete(const KeyClick&) {
    RequestUnitRedraw();
    SaySmiths(kSmithsDelete);
}

void PressClear(const KeyClick&) {
    RequestUnitRedraw();
    PressSmithsClear();
}

void PressSign(const KeyClick&) {
    RequestUnitRedraw();
    std::string& pad = smiths.scratchpad;
    if (pad.size() >= kSmithsScratchpadLength) {
        return;
    }
    const char last = pad.empty() ? '\0' : pad.back();
    if (last == '-' || last == '+') {
        pad.back() = last == '-' ? '+' : '-';
    } else {
        pad += '-';
    }
}

// One row for each page that PREV PAGE and NEXT PAGE step.
struct PagingRow {
    SmithsPage page;
    SmithsCounter counter;
};

constexpr PagingRow kPaging[] = {
    {kSmithsStoredPlans, SmithsCounter::StoredPlans},
    {kSmithsPerfInit, SmithsCounter::PerfInit},
    {kSmithsLegs, SmithsCounter::Legs},
    {kSmithsSelectWaypoint, SmithsCounter::SelectWaypoint},
    {kSmithsDepartures, SmithsCounter::Departures},
    {kSmithsArrivals, SmithsCounter::Arrivals},
    {kSmithsRoute, SmithsCounter::Route},
    {kSmithsPos, SmithsCounter::Pos},
    {kSmithsNavSummary, SmithsCounter::NavSummary},
    {kSmithsNavStatus, SmithsCounter::NavStatus},
    {kSmithsProgress, SmithsCounter::Progress},
    {kSmithsFixInfo, SmithsCounter::FixInfo},
    {kSmithsHold, SmithsCounter::Hold},
};

}  // namespace

void PressSmithsPaging(std::int32_t step) {
    (step < 0 ? smiths.input.prevPressed : smiths.input.nextPressed) = true;
    for (const PagingRow& row : kPaging) {
        if (row.page == smiths.page) {
            smiths.Counter(row.counter).Step(step);
        }
    }
}

void TypeSmithsCharacter(char character) {
    if (smiths.scratchpad.size() < kSmithsScratchpadLength) {
        smiths.scratchpad += character;
    }
}

void PressSmithsClear() {
    if (!smiths.message.empty()) {
        smiths.message.clear();
    } else if (!smiths.scratchpad.empty()) {
        smiths.scratchpad.pop_back();
    }
}

const std::array<KeyArea, kSmithsKeyCount> kSmithsKeys = {{
    // function and paging keys
    {"INIT\nREF", {51, 298, 44, 30}, PressInitRef},
    {"RTE", {104, 298, 44, 30}, PressPage, kSmithsRoute},
    {"CLB", {153, 298, 44, 30}, PressPage, kSmithsClimb},
    {"CRZ", {206, 298, 44, 30}, PressPage, kSmithsCruise},
    {"DES", {258, 298, 44, 30}, PressPage, kSmithsDescent},
    {"DIR\nINTC", {51, 338, 44, 30}, PressDirectIntercept},
    {"LEGS", {104, 338, 44, 30}, PressLegs},
    {"DEP\nARR", {153, 338, 44, 30}, PressPage, kSmithsDepArr},
    {"HOLD", {206, 338, 44, 30}, PressHold},
    {"PROG", {258, 338, 44, 30}, PressPage, kSmithsProgress},
    {"EXEC", {318, 338, 44, 30}, PressExec},
    {"FIX", {104, 377, 44, 30}, PressPage, kSmithsFixInfo},
    {"PREV\nPAGE", {51, 418, 46, 34}, PressPaging, -1},
    {"NEXT\nPAGE", {104, 418, 46, 34}, PressPaging, 1},
    // line select keys L1 to L6, R1 to R6
    {"Line select 1 left", {7, 68, 46, 34}, PressLineKey, kL1, KeyArt::LineKey},
    {"Line select 2 left", {7, 100, 46, 34}, PressLineKey, kL2, KeyArt::LineKey},
    {"Line select 3 left", {7, 132, 46, 34}, PressLineKey, kL3, KeyArt::LineKey},
    {"Line select 4 left", {7, 165, 46, 34}, PressLineKey, kL4, KeyArt::LineKey},
    {"Line select 5 left", {7, 197, 46, 34}, PressLineKey, kL5, KeyArt::LineKey},
    {"Line select 6 left", {7, 230, 46, 34}, PressLineKey, kL6, KeyArt::LineKey},
    {"Line select 1 right", {379, 68, 46, 34}, PressLineKey, kR1, KeyArt::LineKey},
    {"Line select 2 right", {379, 100, 46, 34}, PressLineKey, kR2, KeyArt::LineKey},
    {"Line select 3 right", {379, 132, 46, 34}, PressLineKey, kR3, KeyArt::LineKey},
    {"Line select 4 right", {379, 165, 46, 34}, PressLineKey, kR4, KeyArt::LineKey},
    {"Line select 5 right", {379, 197, 46, 34}, PressLineKey, kR5, KeyArt::LineKey},
    {"Line select 6 right", {379, 230, 46, 34}, PressLineKey, kR6, KeyArt::LineKey},
    // letters
    {"A", {172, 381, 36, 36}, PressCharacter},
    {"B", {212, 381, 36, 36}, PressCharacter},
    {"C", {252, 381, 36, 36}, PressCharacter},
    {"D", {293, 381, 36, 36}, PressCharacter},
    {"E", {332, 381, 36, 36}, PressCharacter},
    {"F", {172, 422, 36, 36}, PressCharacter},
    {"G", {212, 422, 36, 36}, PressSharedLetter},
    {"H", {252, 422, 36, 36}, PressSharedLetter},
    {"I", {293, 422, 36, 36}, PressSharedLetter},
    {"J", {332, 422, 36, 36}, PressSharedLetter},
    {"K", {172, 461, 36, 36}, PressSharedLetter},
    {"L", {212, 461, 36, 36}, PressSharedLetter},
    {"M", {252, 461, 36, 36}, PressSharedLetter},
    {"N", {293, 461, 36, 36}, PressSharedLetter},
    {"O", {332, 461, 36, 36}, PressSharedLetter},
    {"P", {172, 502, 36, 36}, PressSharedLetter},
    {"Q", {212, 502, 36, 36}, PressSharedLetter},
    {"R", {252, 502, 36, 36}, PressSharedLetter},
    {"S", {293, 502, 36, 36}, PressSharedLetter},
    {"T", {332, 502, 36, 36}, PressSharedLetter},
    {"U", {172, 542, 36, 36}, PressSharedLetter},
    {"V", {212, 542, 36, 36}, PressSharedLetter},
    {"W", {252, 542, 36, 36}, PressSharedLetter},
    {"X", {293, 542, 36, 36}, PressSharedLetter},
    {"Y", {332, 542, 36, 36}, PressSharedLetter},
    {"Z", {172, 582, 36, 36}, PressSharedLetter},
    // editing keys
    {"SP", {212, 582, 34, 34}, PressSpace},
    {"DEL", {252, 582, 36, 34}, PressDelete},
    {"/", {293, 582, 34, 34}, PressCharacter},
    {"CLR", {332, 582, 34, 34}, PressClear, 0, KeyArt::Cap, true},
    // digits, point and sign
    {"1", {51, 461, 34, 34}, PressCharacter},
    {"2", {90, 461, 34, 34}, PressCharacter},
    {"3", {130, 461, 34, 34}, PressCharacter},
    {"4", {51, 502, 34, 34}, PressCharacter},
    {"5", {90, 502, 34, 34}, PressCharacter},
    {"6", {130, 502, 34, 34}, PressCharacter},
    {"7", {51, 542, 34, 34}, PressCharacter},
    {"8", {90, 542, 34, 34}, PressCharacter},
    {"9", {130, 542, 34, 34}, PressCharacter},
    {".", {51, 582, 34, 34}, PressCharacter},
    {"0", {90, 582, 34, 34}, PressCharacter},
    {"+/-", {130, 582, 34, 34}, PressSign},
    // the screen's centre
    {"Unit window", {160, 100, 92, 92}, ToggleKeyWindow, panel_window::kSmiths, KeyArt::None},
}};

}  // namespace avq1
