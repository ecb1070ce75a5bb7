// DIRECT: the plan's waypoints to fly to at once, or one that is typed; behind them the nearest
// airports.
#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "cdu_gns/gns_waypoint.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr std::int32_t kColumnRows = 9;
constexpr std::int32_t kPageEntries = 2 * kColumnRows;
constexpr std::array<std::int16_t, 2> kMarkX = {30, 250};
constexpr int kMarkWidth = 60;
constexpr ScreenPoint kTypedElsewhere{366, 0};
constexpr std::int16_t kAirportX = 120;
constexpr double kForcedTurnDeg = 160;
constexpr double kMilesPerDegree = 60;
constexpr double kSearchAgainNm = 0.5;

// ---- nearest airports ----
struct ClosestAirport {
    std::int32_t index = 0;  // in the airport table; 0 = none
    double distanceNm = 0;
    double bearingMag = 0;
};

struct ClosestAirports {
    std::array<ClosestAirport, 8> slots;  // by distance, the nearest first
    LatLon searchedFrom;
    std::int32_t tableCount = -1;  // of the table that was searched
};

ClosestAirports closestAirports;
const StateReset closestReset([] { closestAirports = ClosestAirports{}; });

ClosestAirport MeasuredFromHere(std::int32_t index) {
    const LatLon& airport = navDatabase.airports.Positions()[index];
    ClosestAirport slot{index};
    double courseTrue = 0;
    DistanceAndCourse(aircraft.latitude, aircraft.longitude, airport.latitude, airport.longitude,
                      slot.distanceNm, courseTrue);
    slot.bearingMag = TrueToMagnetic(courseTrue, aircraft.magneticVariation);
    return slot;
}

bool IsNearer(const ClosestAirport& a, const ClosestAirport& b) {
    return a.index != 0 && (b.index == 0 || a.distanceNm < b.distanceNm);
}

// The whole table is gone through once for every half mile flown.
void SearchClosest() {
    closestAirports = {};
    closestAirports.searchedFrom = {aircraft.latitude, aircraft.longitude};
    closestAirports.tableCount = navDatabase.airports.count;
    auto& slots = closestAirports.slots;
    const std::vector<LatLon>& positions = navDatabase.airports.Positions();
    for (std::int32_t i = 1; i <= navDatabase.airports.count; ++i) {
        const double northNm =
            std::abs(positions[i].latitude - aircraft.latitude) * kMilesPerDegree;
        if (slots.back().index != 0 && northNm > slots.back().distanceNm) {
            continue;
        }
        const ClosestAirport measured = MeasuredFromHere(i);
        if (IsNearer(measured, slots.back())) {
            slots.back() = measured;
            for (std::size_t k = slots.size() - 1; k > 0 && IsNearer(slots[k], slots[k - 1]); --k) {
                std::swap(slots[k], slots[k - 1]);
            }
        }
    }
}

void RefreshClosest() {
    const LatLon& from = closestAirports.searchedFrom;
    const bool stale = closestAirports.tableCount != navDatabase.airports.count ||
                       GreatCircleDistanceNm(from.latitude, from.longitude, aircraft.latitude,
                                             aircraft.longitude) > kSearchAgainNm;
    if (stale) {
        SearchClosest();
        return;
    }
    for (ClosestAirport& slot : closestAirports.slots) {
        if (slot.index != 0) {
            slot = MeasuredFromHere(slot.index);
        }
    }
}

// ---- pages ----
// The plan's entries from 1 on and the row to type on.
std::int32_t ListPages() {
    return PageCount(modifiedPlan.lastIndex + 1, kPageEntries);
}

SubPage& SetPages() {
    return SetGnsPageCount(GnsCounter::Direct, ListPages() + 1);
}

bool ShowsAirports() {
    return gns.Counter(GnsCounter::Direct).n > ListPages();
}

std::int32_t EntryOnSlot(std::int32_t slot) {
    const std::int32_t index = kPageEntries * (gns.Counter(GnsCounter::Direct).n - 1) + 1 + slot;
    return !ShowsAirports() && index <= modifiedPlan.lastIndex + 1 ? index : kNoWaypoint;
}

std::string_view IdentOf(std::int32_t index) {
    return modifiedPlan.Holds(index) ? std::string_view(modifiedPlan.entries[index].ident)
                                     : kEmptyRow;
}

// ---- flying there ----
// A turn the long way round begins with a heading well to its side; guidance takes over once the
// waypoint lies on the other one.
void ForceTurn(GnsTurn turn) {
    const Side shorter = TurnSide(aircraft.headingMag, guidance.desiredTrackMag);
    const bool right = turn == GnsTurn::Right && shorter == Side::Left;
    const bool left = turn == GnsTurn::Left && shorter == Side::Right;
    if (right || left) {
        SendKeyEvent(
            KeyEvent::HeadingBugSet,
            WholeHeading(aircraft.headingMag + (right ? kForcedTurnDeg : -kForcedTurnDeg)));
        guidance.pendingTurnSide = right ? Side::Left : Side::Right;
        guidance.directToTurn = right ? "RIGHT" : "LEFT";
    } else {
        guidance.pendingTurnSide = Side::None;
    }
}

void ShowFlownPlan() {
    gns.planView = kActiveView;
    gns.Counter(GnsCounter::ActivePlan).n = 1;
    ReturnToGnsPlan();
}

EntryResult FindTyped() {
    const std::string ident(TypedText(gns));
    return FindGnsWaypoint(ident, SearchCategory::All, kGnsDirect) ? EntryResult::None
                                                                   : EntryResult::NotInDatabase;
}

EntryResult FlyToSlot(const LineRow& row) {
    if (!gns.freshEntry) {
        return FindTyped();
    }
    const std::int32_t index = EntryOnSlot(row.item);
    if (!modifiedPlan.Holds(index)) {
        return EntryResult::None;
    }
    const GnsTurn turn = gnsWaypoint.directTurn;
    if (!FlyDirectToEntry(index)) {
        return modifiedPlan.IsFull() ? EntryResult::PlanFull : EntryResult::InvalidEntry;
    }
    ForceTurn(turn);
    ShowFlownPlan();
    return EntryResult::None;
}

EntryResult FlyToAirport(const LineRow& row) {
    const ClosestAirport& slot = closestAirports.slots[static_cast<std::size_t>(row.item)];
    const std::string ident(navDatabase.airports.Ident(slot.index));
    FlyDirectToPoint(EntryFrom(navDatabase.airports[slot.index]), false);
    SetPlanAirport(ident, PlanAirportMode::LoadedDestination);
    ShowFlownPlan();
    return EntryResult::None;
}

// ENTER with nothing picked: what was typed where the active waypoint stands.
EntryResult FindTypedOnPage(const FieldRow&) {
    return !gns.freshEntry && gns.entryArmed && !ShowsAirports() ? FindTyped() : EntryResult::None;
}

// ---- rows ----
bool HasSlot(const LineRow& row) {
    return EntryOnSlot(row.item) != kNoWaypoint;
}

void PickSlot(const LineRow& row) {
    const std::int32_t index = EntryOnSlot(row.item);
    GnsSelection() = {&modifiedPlan, index};
    LoadScratchpad(gns, IdentOf(index), kGnsIdentLength);
}

// The first row of a side has its line key to itself, the others share one by two.
constexpr std::int32_t LineOfRow(std::int32_t row) {
    return row == 0 ? 1 : (row + 1) / 2 + 1;
}

constexpr std::int32_t StateOfRow(std::int32_t row) {
    return row == 0 || row % 2 == 1 ? 1 : 2;
}

constexpr LineRow EntryRow(std::int32_t slot) {
    const std::int32_t row = slot % kColumnRows;
    const std::int32_t column = slot / kColumnRows;
    return {.line = LineOfRow(row) + 5 * column,
            .state = StateOfRow(row),
            .visible = HasSlot,
            .entryLength = kGnsIdentLength,
            .select = PickSlot,
            .enter = FlyToSlot,
            .item = slot,
            .at = {static_cast<std::int16_t>(kMarkX[static_cast<std::size_t>(column)] + kMarkWidth),
                   kGnsRowY[static_cast<std::size_t>(row)]}};
}

bool HasAirport(const LineRow& row) {
    return ShowsAirports() && closestAirports.slots[static_cast<std::size_t>(row.item)].index != 0;
}

void ShowAirport(const LineRow& row, UnitText& text) {
    const ClosestAirport& slot = closestAirports.slots[static_cast<std::size_t>(row.item)];
    const std::string_view ident = navDatabase.airports.Ident(slot.index);
    text.Put("%-8.*s %03.0f/%4.0f", static_cast<int>(ident.size()), ident.data(),
             WholeCourse(slot.bearingMag), slot.distanceNm);
}

constexpr LineRow AirportRow(std::int32_t row) {
    return {.line = LineOfRow(row),
            .state = StateOfRow(row),
            .show = ShowAirport,
            .visible = HasAirport,
            .enter = FlyToAirport,
            .item = row,
            .style = kGnsData,
            .at = {kAirportX, kGnsRowY[static_cast<std::size_t>(row)]}};
}

constexpr std::size_t kAirportRows = 8;

constexpr std::array<LineRow, kPageEntries + kAirportRows> kLines = [] {
    std::array<LineRow, kPageEntries + kAirportRows> rows{};
    for (std::int32_t slot = 0; slot < kPageEntries; ++slot) {
        rows[static_cast<std::size_t>(slot)] = EntryRow(slot);
    }
    for (std::size_t row = 0; row < kAirportRows; ++row) {
        rows[kPageEntries + row] = AirportRow(static_cast<std::int32_t>(row));
    }
    return rows;
}();

constexpr FieldRow kFields[] = {
    {.line = kEnterLine, .press = FindTypedOnPage},
};

// Nothing is picked; what is typed goes in front of the waypoint flown to.
void WaitForEntry() {
    ClearGnsSelections();
    GnsSelection() = {&modifiedPlan, planBook.trackedIndex};
    LoadScratchpad(gns, IdentOf(planBook.trackedIndex), kGnsIdentLength);
    gns.entryArmed = true;
}

// The plan to choose from is a copy of the one being flown.
void BeginDirect() {
    CopyActiveToModified();
    gnsWaypoint.flyover = 0;
    gnsWaypoint.directTurn = GnsTurn::Default;
    WaitForEntry();
}

void HandleDirect(const UnitInput& input) {
    if (input.directPressed && input.openedPage == kGnsDirect) {
        BeginDirect();
    } else if ((input.prevPressed || input.nextPressed || input.directPressed) &&
               gns.lineState != decltype(gns.lineState){}) {
        WaitForEntry();  // the rows stand for other waypoints now
    }
    SetPages();
    if (ShowsAirports()) {
        RefreshClosest();
    }
}

bool IsTyping() {
    return gns.entryArmed && GnsSelectedLine() == nullptr && !gns.freshEntry;
}

void PutTyped(Screen& screen, ScreenPoint at) {
    PutHighlighted({kGnsPrompt, kGnsEntry, kGnsHighlight}, at, UnitText(TypedText(gns)),
                   kGnsIdentLength, screen);
}

void PutEntry(Screen& screen, const LineRow& row) {
    const std::int32_t index = EntryOnSlot(row.item);
    const bool active = index == planBook.trackedIndex;
    if (active) {
        screen.Put(kGnsActive, row.at.x - kMarkWidth, row.at.y, "TO ");
    }
    if (IsTyping() && GnsSelection().index == index) {
        PutTyped(screen, row.at);
    } else if (!IsSelected(gns, row)) {
        screen.PutText(active ? kGnsActive : kGnsData, row.at,
                       UnitText(IdentOf(index).substr(0, kGnsIdentLength)));
    }
}

void ComposeDirect(Screen& screen) {
    const SubPage& shown = SetPages();
    if (ShowsAirports()) {
        screen.Put(kGnsLabel, 70, 0, "DIR CLOSEST ARP %d/%d", shown.n, shown.m);
        return;
    }
    screen.Put(kGnsLabel, 150, 0, "DIRECT %d/%d", shown.n, shown.m);
    for (const LineRow& row : kLines) {
        if (row.entryLength > 0 && HasSlot(row)) {
            PutEntry(screen, row);
        }
    }
    const std::int32_t slot = GnsSelection().index - 1 - kPageEntries * (shown.n - 1);
    if (IsTyping() && (slot < 0 || slot >= kPageEntries)) {
        PutTyped(screen, kTypedElsewhere);  // its row is on another page
    }
}

}  // namespace

void OpenGnsDirect() {
    if (!HasActiveWaypoint()) {
        return;
    }
    if (gns.page == kGnsDirect) {
        StepGnsPage(1);
        return;
    }
    gns.Counter(GnsCounter::Direct).n = 1;
    OpenGnsPage(kGnsDirect);
}

void PickGnsDirect(const FoundPoint& point) {
    const std::int32_t index = GnsSelection().index;
    PlanWaypoint entry = EntryFrom(point);
    entry.flyover = std::exchange(gnsWaypoint.flyover, 0);
    const bool inserted = EditPlan(modifiedPlan, [&](FlightPlan& plan) {
        return InsertBetween(plan, index, std::move(entry));
    });
    OpenGnsPage(kGnsDirect);
    if (!inserted) {
        gns.notice = kPlanFullMessage;
        return;
    }
    gns.Counter(GnsCounter::Direct).n = (index - 1) / kPageEntries + 1;
    SetPages();
    SelectRow(kLines[static_cast<std::size_t>((index - 1) % kPageEntries)], gns);
}

constinit const PageRow kGnsDirectPage{.page = kGnsDirect,
                                       .fields = kFields,
                                       .lines = kLines,
                                       .handle = HandleDirect,
                                       .compose = ComposeDirect};

}  // namespace avq1
