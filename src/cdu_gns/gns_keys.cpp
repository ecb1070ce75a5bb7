// What the keys of the GNS-style unit do: they change its state; the page shown next does the work.
#include <string_view>

#include "base/panel_windows.h"
#include "base/redraw.h"
#include "cdu/list_view.h"
#include "cdu_gns/gns.h"
#include "cdu_gns/gns_pages.h"

namespace avq1 {
namespace {

constexpr std::int32_t kLmGauge = 1;

// Every key takes the notice away and has the screen painted.
void NoteKey() {
    gns.notice.clear();
    RequestUnitRedraw();
}

void ShowPage(GnsPage page) {
    ClearGnsSelections();
    gns.page = page;
    gns.input.openedPage = page;
}

void StepCounter(GnsCounter counter, std::int32_t step) {
    gns.Counter(counter).Step(step);
}

// NAV, VNAV, FUEL: the page at its first sub-page; on the page itself, the next one.
void OpenOrStep(GnsPage page, GnsCounter counter) {
    if (gns.page == page) {
        StepGnsPage(1);
    } else {
        gns.Counter(counter).n = 1;
        ShowPage(page);
    }
}

void PressNav(const KeyClick&) {
    NoteKey();
    OpenOrStep(kGnsNavigation, GnsCounter::Navigation);
}

void PressVnav(const KeyClick&) {
    NoteKey();
    if (gns.page == kGnsPlan && gns.planView == kActiveView && gns.entryArmed) {
        OpenGnsCrossing();
    } else {
        OpenOrStep(kGnsVnav, GnsCounter::Vnav);
    }
}

void PressFuel(const KeyClick&) {
    NoteKey();
    OpenOrStep(kGnsFuel, GnsCounter::Fuel);
}

void ShowActivePlan() {
    gns.planView = kActiveView;
    gns.Counter(GnsCounter::ActivePlan).n = 1;
}

void ShowPlanList() {
    gns.planView = kStoredView;
    gns.storedPlanOpen = 0;
    gns.listWanted = true;
    gns.Counter(GnsCounter::List).n = 1;
}

// Goes around all pages of the active plan and all pages of the list.
void StepPlanPages() {
    if (gns.planView == kStoredView && gns.storedPlanOpen == 1) {
        ShowPlanList();
        return;
    }
    const bool active = gns.planView == kActiveView;
    SubPage& shown = gns.Counter(active ? GnsCounter::ActivePlan : GnsCounter::List);
    if (shown.n < shown.m) {
        ++shown.n;
    } else if (active) {
        ShowPlanList();
    } else {
        ShowActivePlan();
    }
}

void PressFpl(const KeyClick&) {
    NoteKey();
    ClearGnsSelections();
    if (gns.page != kGnsPlan) {
        ShowActivePlan();
    } else {
        StepPlanPages();
    }
    gns.pendingColumnMode = gns.columnMode;
    ShowPage(kGnsPlan);
}

void PressHold(const KeyClick&) {
    NoteKey();
    OpenGnsHold();
    gns.scratchpad.clear();
}

void PressLineKey(const KeyClick& click) {
    NoteKey();
    gns.deletePending = false;
    gns.input.lineKey = click.key.code;
}

// PREV (-1) and NEXT (1).
void PressPaging(const KeyClick& click) {
    NoteKey();
    PressGnsPaging(click.key.code);
}

void PressDirect(const KeyClick&) {
    NoteKey();
    gns.input.directPressed = true;
    OpenGnsDirect();
}

void PressEnter(const KeyClick& click) {
    NoteKey();
    gns.enteredOnLm = click.key.code == kLmGauge;
    gns.input.enterPressed = true;
}

void PressClear(const KeyClick&) {
    NoteKey();
    PressGnsClear();
}

// The key's label is what it types.
void PressCharacter(const KeyClick& click) {
    NoteKey();
    TypeGnsCharacter(click.key.label);
}

// "#" types while a line waits for an entry; else it gives the computer keyboard to the unit.
void PressNumberSign(const KeyClick& click) {
    if (gns.entryArmed) {
        PressCharacter(click);
    } else {
        NoteKey();
        ToggleGnsKeyboard();
    }
}

// One row for each page that PREV and NEXT step.
struct PagingRow {
    GnsPage page;
    GnsCounter counter;
    bool clearsSelections = false;
};

constexpr PagingRow kPaging[] = {
    {kGnsDirect, GnsCounter::Direct},
    {kGnsDatabase, GnsCounter::Database},
    {kGnsNavigation, GnsCounter::Navigation, true},
    {kGnsDeparture, GnsCounter::Departure},
    {kGnsArrival, GnsCounter::Arrival},
    {kGnsApproach, GnsCounter::Approach},
    {kGnsAirway, GnsCounter::Airway, true},
    {kGnsVnav, GnsCounter::Vnav},
    {kGnsFuel, GnsCounter::Fuel, true},
    {kGnsOffset, GnsCounter::Offset},
};

}  // namespace

void StepGnsPage(std::int32_t step) {
    if (gns.page == kGnsPlan) {
        if (gns.planView == kActiveView) {
            ClearGnsSelections();
        }
        StepCounter(GnsPlanCounter(), step);
        return;
    }
    for (const PagingRow& row : kPaging) {
        if (row.page == gns.page) {
            if (row.clearsSelections) {
                ClearGnsSelections();
            }
            StepCounter(row.counter, step);
        }
    }
}

void PressGnsPaging(std::int32_t step) {
    (step < 0 ? gns.input.prevPressed : gns.input.nextPressed) = true;
    StepGnsPage(step);
}

void PressGnsClear() {
    if (GnsClearActs()) {
        gns.input.clearPressed = true;
    } else {
        TypeGnsCharacter(kBackspaceToken);
    }
}

void OpenGnsPage(GnsPage page) {
    ShowPage(page);
}

const std::array<KeyArea, kGnsKeyCount> kGnsKeys = {{
    // function keys
    {"NAV", {55, 11, 36, 28}, PressNav},
    {"VNAV", {99, 11, 36, 28}, PressVnav},
    {"FPL", {188, 11, 36, 28}, PressFpl},
    {"FUEL", {363, 11, 36, 28}, PressFuel},
    {"HOLD", {428, 48, 36, 28}, PressHold},
    // line select keys 1 to 5 (left), 6 to 10 (right), top to bottom
    {"Line select 1 left", {60, 70, 24, 17}, PressLineKey, 1, KeyArt::LineKey},
    {"Line select 2 left", {60, 115, 24, 17}, PressLineKey, 2, KeyArt::LineKey},
    {"Line select 3 left", {60, 160, 24, 17}, PressLineKey, 3, KeyArt::LineKey},
    {"Line select 4 left", {60, 204, 24, 17}, PressLineKey, 4, KeyArt::LineKey},
    {"Line select 5 left", {57, 247, 24, 17}, PressLineKey, 5, KeyArt::LineKey},
    {"Line select 1 right", {390, 70, 24, 17}, PressLineKey, 6, KeyArt::LineKey},
    {"Line select 2 right", {390, 115, 24, 17}, PressLineKey, 7, KeyArt::LineKey},
    {"Line select 3 right", {390, 160, 24, 17}, PressLineKey, 8, KeyArt::LineKey},
    {"Line select 4 right", {390, 204, 24, 17}, PressLineKey, 9, KeyArt::LineKey},
    {"Line select 5 right", {390, 247, 24, 17}, PressLineKey, 10, KeyArt::LineKey},
    // paging and entry
    {"PREV", {18, 140, 30, 38}, PressPaging, -1},
    {"NEXT", {18, 185, 30, 38}, PressPaging, 1},
    {"DIRECT", {18, 228, 30, 38}, PressDirect},
    {"ENTER", {242, 310, 62, 30}, PressEnter},
    {"CLR", {430, 262, 34, 26}, PressClear},
    // letters and *
    {"A", {48, 310, 36, 30}, PressCharacter},
    {"B", {94, 310, 36, 30}, PressCharacter},
    {"C", {138, 310, 36, 30}, PressCharacter},
    {"D", {184, 310, 36, 30}, PressCharacter},
    {"E", {322, 310, 36, 30}, PressCharacter},
    {"F", {368, 310, 36, 30}, PressCharacter},
    {"G", {414, 310, 36, 30}, PressCharacter},
    {"H", {460, 310, 36, 30}, PressCharacter},
    {"I", {48, 350, 36, 30}, PressCharacter},
    {"J", {94, 350, 36, 30}, PressCharacter},
    {"K", {138, 350, 36, 30}, PressCharacter},
    {"L", {184, 350, 36, 30}, PressCharacter},
    {"M", {230, 350, 36, 30}, PressCharacter},
    {"N", {276, 350, 36, 30}, PressCharacter},
    {"O", {322, 350, 36, 30}, PressCharacter},
    {"P", {368, 350, 36, 30}, PressCharacter},
    {"Q", {414, 350, 36, 30}, PressCharacter},
    {"R", {460, 350, 36, 30}, PressCharacter},
    {"S", {48, 392, 36, 30}, PressCharacter},
    {"T", {94, 392, 36, 30}, PressCharacter},
    {"U", {138, 392, 36, 30}, PressCharacter},
    {"V", {184, 392, 36, 30}, PressCharacter},
    {"W", {230, 392, 36, 30}, PressCharacter},
    {"X", {276, 392, 36, 30}, PressCharacter},
    {"Y", {322, 392, 36, 30}, PressCharacter},
    {"Z", {368, 392, 36, 30}, PressCharacter},
    {"*", {414, 392, 36, 30}, PressCharacter},
    // digits and #
    {"1", {428, 84, 30, 36}, PressCharacter},
    {"2", {462, 84, 30, 36}, PressCharacter},
    {"3", {498, 84, 30, 36}, PressCharacter},
    {"4", {428, 130, 30, 36}, PressCharacter},
    {"5", {462, 130, 30, 36}, PressCharacter},
    {"6", {498, 130, 30, 36}, PressCharacter},
    {"7", {428, 174, 30, 36}, PressCharacter},
    {"8", {462, 174, 30, 36}, PressCharacter},
    {"9", {498, 174, 30, 36}, PressCharacter},
    {"#", {428, 218, 30, 36}, PressNumberSign},
    {"0", {462, 218, 30, 36}, PressCharacter},
    // the screen's centre
    {"Unit window", {190, 101, 80, 80}, ToggleKeyWindow, panel_window::kGns, KeyArt::None},
}};

// The same keys, ENTER telling which gauge it is on.
const std::array<KeyArea, kGnsKeyCount> kGnsLmKeys = [] {
    std::array<KeyArea, kGnsKeyCount> keys = kGnsKeys;
    for (KeyArea& key : keys) {
        if (key.action == PressEnter) {
            key.code = kLmGauge;
        }
    }
    return keys;
}();

}  // namespace avq1
