// AIRWAY: the fixes of an airway that passes the waypoint before the selected row; ENTER puts those
// up to the picked one into the plan.
#include <algorithm>
#include <array>
#include <string>

#include "base/module_state.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_waypoint.h"
#include "flightplan/airway_entry.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "navdb/airways.h"

namespace avq1 {
namespace {

constexpr std::int32_t kColumnRows = 7;
constexpr std::int32_t kPageFixes = 2 * kColumnRows;
constexpr std::array<std::int16_t, 2> kFixX = {90, 300};
constexpr std::int32_t kFirstRow = 1;  // of kGnsRowY; on the one above stands the entry fix

struct AirwayChoice {
    AirwayLookup lookup;
    std::string name;
    std::int32_t entry = kNoWaypoint;  // plan entry at which the airway is entered
};

AirwayChoice airwayEntry;
const StateReset airwayReset([] { airwayEntry = AirwayChoice{}; });

bool IsKnown() {
    return airwayEntry.lookup.fixes.Holds(airwayEntry.lookup.entryIndex);
}

// Every fix but the one it is entered at can be left at.
std::int32_t ExitCount() {
    return IsKnown() ? airwayEntry.lookup.fixes.count - 1 : 0;
}

// The fix on a slot of the page shown; 0 without.
std::int32_t FixOnSlot(std::int32_t slot) {
    const std::int32_t number = kPageFixes * (gns.Counter(GnsCounter::Airway).n - 1) + slot + 1;
    if (number > ExitCount()) {
        return 0;
    }
    return number < airwayEntry.lookup.entryIndex ? number : number + 1;
}

bool HasFix(const LineRow& row) {
    return FixOnSlot(row.item) != 0;
}

void ShowFix(const LineRow& row, UnitText& text) {
    text.Put("%.6s%s", airwayEntry.lookup.fixes[FixOnSlot(row.item)].ident.c_str(),
             IsSelected(gns, row) ? "?" : "");
}

EntryResult InsertUpTo(const LineRow& row) {
    airwayEntry.lookup.exitIndex = FixOnSlot(row.item);
    const bool inserted = EditPlan(GnsPlanShown(), [&](FlightPlan& plan) {
        return InsertAirway(plan, airwayEntry.entry, airwayEntry.lookup);
    });
    ReturnToGnsPlan();
    airwayEntry = AirwayChoice{};
    if (!inserted) {
        gns.notice = kPlanFullMessage;
    }
    return EntryResult::None;
}

// The rows stand beside line keys 2 to 5, two to a key but the last.
constexpr LineRow FixRow(std::int32_t slot) {
    const std::int32_t row = slot % kColumnRows;
    const std::int32_t column = slot / kColumnRows;
    return {.line = row / 2 + 2 + 5 * column,
            .state = row % 2 + 1,
            .show = ShowFix,
            .visible = HasFix,
            .enter = InsertUpTo,
            .item = slot,
            .style = kGnsData,
            .at = {kFixX[static_cast<std::size_t>(column)],
                   kGnsRowY[static_cast<std::size_t>(row) + kFirstRow]}};
}

constexpr std::array<LineRow, kPageFixes> kLines = [] {
    std::array<LineRow, kPageFixes> rows{};
    for (std::int32_t slot = 0; slot < kPageFixes; ++slot) {
        rows[static_cast<std::size_t>(slot)] = FixRow(slot);
    }
    return rows;
}();

void PutEntryFix(Screen& screen) {
    screen.Put(kGnsLabel, kGnsLabelX, 40, "FR");
    if (GnsPlanShown().Holds(airwayEntry.entry)) {
        screen.Put(kGnsPassed, kFixX[0], 40, "%.6s",
                   GnsPlanShown().entries[airwayEntry.entry].ident.c_str());
    }
}

void ComposeAirway(Screen& screen) {
    const SubPage& shown = SetGnsPageCount(GnsCounter::Airway, PageCount(ExitCount(), kPageFixes));
    screen.Put(kGnsLabel, 32, 0, "AIRWAY");
    screen.Put(kGnsData, 200, 0, "%.6s", airwayEntry.name.c_str());
    PutEntryFix(screen);
    if (!IsKnown()) {
        screen.Put(kGnsPrompt, 340, 0, "(N/A)");
        return;
    }
    screen.Put(kGnsLabel, 340, 0, "%d/%d", shown.n, shown.m);
    if (HasFix(kLines[0])) {
        screen.Put(kGnsLabel, kGnsLabelX, kLines[0].at.y, "TO");
        screen.Put(kGnsPrompt, 70, 360, "SELECT ENDING WPT");
    }
}

}  // namespace

void OpenGnsAirway(std::string_view typed) {
    if (GnsShowsActivePlan()) {
        const std::int32_t selected = GnsSelection().index;
        CopyActiveToModified();
        GnsSelection() = {&activePlan, selected};
    }
    airwayEntry = AirwayChoice{};
    airwayEntry.name = typed.substr(1);
    airwayEntry.entry = GnsSelection().index - 1;
    LookupAirway(GnsPlanShown(), airwayEntry.entry, typed, airwayEntry.lookup);
    gns.returnPage = kGnsPlan;
    gns.Counter(GnsCounter::Airway).n = 1;
    OpenGnsPage(kGnsAirway);
}

constinit const PageRow kGnsAirwayPage{
    .page = kGnsAirway, .lines = kLines, .compose = ComposeAirway};

}  // namespace avq1
