// RTE: origin, destination, company route and runway; on the following pages the ways of the route,
// each an airway or direct, and where it leads to.
#include <algorithm>
#include <string>

#include "base/text.h"
#include "cdu/formats.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_procedures.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/airway_entry.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_moves.h"
#include "flightplan/procedures.h"
#include "flightplan/route_entry.h"
#include "navdb/airport_detail.h"

namespace avq1 {
namespace {

constexpr std::int32_t kWaysPerPage = 5;
constexpr int kSeparatorY = 132;
constexpr std::int16_t kRunwayY = 104;
constexpr std::int16_t kDestinationX = 210;
constexpr std::int16_t kDestinationLabelX = 220;
constexpr std::string_view kPlanSuffix = ".RTE";
constexpr std::string_view kEmptyPlans[] = {"NEW FPL", "NEXT FPL"};

const std::vector<RoutePair>& Ways() {
    return RouteView(SmithsPlan());
}

bool OnFirstPage(const FieldRow&) {
    return smiths.Counter(SmithsCounter::Route).n == 1;
}

bool OnWayPages(const FieldRow&) {
    return smiths.Counter(SmithsCounter::Route).n > 1;
}

// ---- page 1 ----
const PlanWaypoint* Origin() {
    const FlightPlan& plan = SmithsPlan();
    return plan.lastIndex >= 0 && plan.entries[0].type == kAirportType ? &plan.entries[0] : nullptr;
}

const PlanWaypoint* Destination() {
    const FlightPlan& plan = SmithsPlan();
    return plan.lastIndex > 0 && plan.entries[plan.lastIndex].type == kAirportType
               ? &plan.entries[plan.lastIndex]
               : nullptr;
}

void ShowOrigin(const FieldRow&, UnitText& text) {
    text.Set("- - - - -");
    if (const PlanWaypoint* origin = Origin()) {
        text.Put("%5.6s", origin->ident.c_str());
    }
}

void ShowDestination(const FieldRow&, UnitText& text) {
    text.Set("------");
    if (const PlanWaypoint* destination = Destination()) {
        text.Put("%.6s", destination->ident.c_str());
    }
}

void ShowRunway(const FieldRow&, UnitText& text) {
    const std::string& runway = SmithsPlan().procedures.departureRunway;
    text.Set(runway.empty() ? "- - - - -" : runway);
}

bool FindAirport(std::string_view ident, FoundPoint& airport) {
    SearchResults found;
    SearchIdent(ident, SearchCategory::Airports, found);
    if (found.count > 0) {
        airport = found[1];
    }
    return found.count > 0;
}

EntryResult EnterOrigin(const FieldRow&, std::string_view text) {
    FoundPoint airport;
    if (!FindAirport(text, airport)) {
        return EntryResult::NotInDatabase;
    }
    BeginSmithsEdit();
    StartRoute(airport);
    smithsDirect = {};
    EndSmithsEdit();
    return EntryResult::Accepted;
}

EntryResult EnterDestination(const FieldRow&, std::string_view text) {
    FoundPoint airport;
    if (!FindAirport(text, airport)) {
        return EntryResult::NotInDatabase;
    }
    if (Origin() == nullptr) {
        return EntryResult::InvalidEntry;
    }
    return EditSmithsPlan([&](FlightPlan&) { return SetRouteDestination(airport); })
               ? EntryResult::Accepted
               : EntryResult::PlanFull;
}

EntryResult EraseDestination(const FieldRow&) {
    return EditSmithsPlan([](FlightPlan&) { return RemoveRouteDestination(); })
               ? EntryResult::Accepted
               : EntryResult::InvalidDelete;
}

// The list's name of a plan that was typed with or without its ending; empty without one.
std::string FindStoredPlan(std::string_view typed) {
    ListStoredPlans();
    const std::string withEnding = std::string(typed) + std::string(kPlanSuffix);
    for (const StoredPlan& plan : storedPlans.plans) {
        const bool isEmpty = std::ranges::find(kEmptyPlans, plan.fileName) != std::end(kEmptyPlans);
        if (!isEmpty && (EqualsIgnoreCase(plan.fileName, typed) ||
                         EqualsIgnoreCase(plan.fileName, withEnding))) {
            return plan.fileName;
        }
    }
    return {};
}

EntryResult EnterCompanyRoute(const FieldRow&, std::string_view text) {
    const std::string fileName = FindStoredPlan(text);
    if (fileName.empty()) {
        return EntryResult::NotInDatabase;
    }
    return LoadSmithsRoute(fileName) ? EntryResult::Accepted : EntryResult::None;
}

bool IsRunway(std::string_view runway) {
    const std::vector<Runway>& runways = airportSlots[kDepartureSlot].runways;
    return std::ranges::find(runways, runway, &Runway::ident) != runways.end();
}

// A departure chosen before is laid out anew for the runway.
EntryResult EnterRunway(const FieldRow&, std::string_view text) {
    if (Origin() == nullptr) {
        return EntryResult::NotInDatabase;
    }
    if (airportSlots[kDepartureSlot].ident != Origin()->ident) {
        LoadPlanAirportDetail(Origin()->ident, kDepartureSlot);
    }
    if (airportSlots[kDepartureSlot].ident != Origin()->ident || !IsRunway(text)) {
        return EntryResult::NotInDatabase;
    }
    return PutSmithsDepartureRunway(text) ? EntryResult::Accepted : EntryResult::PlanFull;
}

EntryResult EraseRunway(const FieldRow&) {
    if (SmithsPlan().procedures.departureRunway.empty()) {
        return EntryResult::InvalidDelete;
    }
    EditSmithsPlan([](FlightPlan& plan) {
        plan.EditProcedures().departureRunway.clear();
        NoteEdit(plan);
        return true;
    });
    return EntryResult::Accepted;
}

// ---- the following pages ----
std::int32_t WayOnRow(std::int32_t row) {
    return kWaysPerPage * (smiths.Counter(SmithsCounter::Route).n - 2) + row;
}

std::int32_t WayCount() {
    return static_cast<std::int32_t>(Ways().size());
}

// Null on the empty row behind the last way, and below it.
const RoutePair* WayAt(std::int32_t way) {
    return way >= 0 && way < WayCount() ? &Ways()[static_cast<std::size_t>(way)] : nullptr;
}

// The entry at which a way begins; kNoWaypoint below the empty row.
std::int32_t StartOf(std::int32_t way) {
    if (SmithsPlan().lastIndex < 0 || way > WayCount()) {
        return kNoWaypoint;
    }
    return way == 0 ? 0 : WayAt(way - 1)->lastIndex;
}

bool IsPlaceholder(const RoutePair& way) {
    return way.to == kAirwayPlaceholder;
}

bool IsAlongAirway(const RoutePair* way) {
    return way != nullptr &&
           (IsPlaceholder(*way) || (way->via != "DIRECT" && way->via != kDirectVia &&
                                    SmithsPlan().entries[way->lastIndex].procedure.empty()));
}

EntryResult ResultOf(AirwayResult result) {
    return result == AirwayResult::Done          ? EntryResult::Accepted
           : result == AirwayResult::NotOnAirway ? EntryResult::InvalidEntry
                                                 : EntryResult::PlanFull;
}

// Enters the airway in the place of a way's entries, up to the exit.
EntryResult EnterAirwayTo(std::int32_t start, std::string_view airway, std::string_view exit,
                          std::int32_t replaced) {
    AirwayResult result = AirwayResult::Done;
    EditSmithsPlan([&](FlightPlan& plan) {
        result = EnterAirway(plan, start, airway, exit, replaced);
        return result == AirwayResult::Done;
    });
    return ResultOf(result);
}

bool AirwayPasses(std::string_view airway, std::int32_t start) {
    AirwayLookup lookup;
    LookupAirway(SmithsPlan(), start, "#" + std::string(airway), lookup);
    return lookup.entryIndex > 0;
}

EntryResult EnterVia(const FieldRow& field, std::string_view text) {
    const std::int32_t number = WayOnRow(field.item);
    const std::int32_t start = StartOf(number);
    const FlightPlan& plan = SmithsPlan();
    if (number == 0 || !plan.Holds(start) || !HasPosition(plan.entries[start]) ||
        !AirwayPasses(text, start)) {
        return EntryResult::InvalidEntry;
    }
    const RoutePair* const way = WayAt(number);
    const bool isOpen = way != nullptr && IsPlaceholder(*way);
    if (way != nullptr && !isOpen) {
        // The waypoint the row leads to may be where the airway is left.
        const std::string exit = way->to;
        const std::int32_t replaced = way->lastIndex - way->firstIndex + 1;
        if (EnterAirwayTo(start, text, exit, replaced) == EntryResult::Accepted) {
            return EntryResult::Accepted;
        }
    }
    return EditSmithsPlan([&](FlightPlan& edited) {
        if (isOpen) {
            edited.Edit(start + 1).via = text;
            NoteEdit(edited);
            return true;
        }
        return InsertAirwayPlaceholder(edited, start + 1, text);
    })
               ? EntryResult::Accepted
               : EntryResult::PlanFull;
}

EntryResult EnterTo(const FieldRow& field, std::string_view text) {
    const std::int32_t number = WayOnRow(field.item);
    const std::int32_t start = StartOf(number);
    if (start == kNoWaypoint) {
        return EntryResult::InvalidEntry;
    }
    const FlightPlan& plan = SmithsPlan();
    const RoutePair* const way = WayAt(number);
    const bool isOpen = way != nullptr && IsPlaceholder(*way);
    const std::int32_t first = way != nullptr ? way->firstIndex : start + 1;
    const std::int32_t last = way != nullptr ? way->lastIndex : first;
    const std::int32_t further = FindEntry(plan, text, last);
    if (further == last) {
        return EntryResult::Accepted;  // it leads there already
    }
    if (further != kNoWaypoint) {
        // An airway still to be entered leads there if it can.
        const std::string airway = isOpen ? plan.entries[first].via : "";
        if (isOpen && AirwayPasses(airway, start) &&
            EnterAirwayTo(start, airway, text, further - first) == EntryResult::Accepted) {
            return EntryResult::Accepted;
        }
        return EditSmithsPlan([&](FlightPlan& edited) { return LeadTo(edited, first, further); })
                   ? EntryResult::Accepted
                   : EntryResult::InvalidEntry;
    }
    if (IsAlongAirway(way)) {
        const std::string airway = isOpen ? plan.entries[first].via : way->via;
        return EnterAirwayTo(start, airway, text, last - first + 1);
    }
    SmithsSelection() = {&plan, start + 1};
    return TakeSmithsPoint(text, InsertAtSmithsSelection);
}

EntryResult CopyTo(const FieldRow& field) {
    const RoutePair* const way = WayAt(WayOnRow(field.item));
    if (way != nullptr && HasPosition(SmithsPlan().entries[way->lastIndex])) {
        smiths.scratchpad = way->to.substr(0, kSmithsScratchpadLength);
    }
    return EntryResult::None;
}

EntryResult EraseWay(const FieldRow& field) {
    const RoutePair* const way = WayAt(WayOnRow(field.item));
    if (way == nullptr) {
        return EntryResult::InvalidDelete;
    }
    const std::int32_t first = way->firstIndex;
    const std::int32_t last = way->lastIndex;
    const bool isPlaceholder = IsPlaceholder(*way);
    return EditSmithsPlan([&](FlightPlan& plan) {
        if (isPlaceholder) {
            ClosePlanEntries(plan, first, last + 1);
            return true;
        }
        return RemoveElement(plan, first, last);
    })
               ? EntryResult::Accepted
               : EntryResult::InvalidDelete;
}

bool PerfInitShown(const FieldRow& field) {
    return !SmithsActivateShown(field);
}

constexpr FieldRow ViaRow(std::int32_t line, std::int32_t row) {
    return {.line = line, .visible = OnWayPages, .enter = EnterVia, .erase = EraseWay, .item = row};
}

constexpr FieldRow ToRow(std::int32_t line, std::int32_t row) {
    return {.line = line,
            .visible = OnWayPages,
            .enter = EnterTo,
            .erase = EraseWay,
            .press = CopyTo,
            .item = row};
}

constexpr FieldRow RunwayField() {
    FieldRow field = SmithsField(kL3, {.label = "R U N W A Y",
                                       .show = ShowRunway,
                                       .visible = OnFirstPage,
                                       .enter = EnterRunway,
                                       .erase = EraseRunway});
    field.valueAt.y = kRunwayY;
    return field;
}

constexpr FieldRow DestinationField() {
    FieldRow field = SmithsField(kR1, {.label = "D E S T",
                                       .show = ShowDestination,
                                       .visible = OnFirstPage,
                                       .enter = EnterDestination,
                                       .erase = EraseDestination});
    field.style = kSmithsData;
    field.labelStyle = kSmithsLabel;
    field.valueAt.x = kDestinationX;
    field.labelAt.x = kDestinationLabelX;
    return field;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("RTE"),
    SmithsField(
        kL1,
        {.label = "O R I G I N", .show = ShowOrigin, .visible = OnFirstPage, .enter = EnterOrigin}),
    SmithsField(kL2, {.label = "C O   R O U T E",
                      .show = [](const FieldRow&, UnitText& text) { text = SpacedDashes(6); },
                      .visible = OnFirstPage,
                      .enter = EnterCompanyRoute}),
    RunwayField(),
    DestinationField(),
    ViaRow(kL1, 0),
    ViaRow(kL2, 1),
    ViaRow(kL3, 2),
    ViaRow(kL4, 3),
    ViaRow(kL5, 4),
    ToRow(kR1, 0),
    ToRow(kR2, 1),
    ToRow(kR3, 2),
    ToRow(kR4, 3),
    ToRow(kR5, 4),
    SmithsPrompt(kL6, "< ERASE", 0,
                 {.visible = SmithsEraseShown, .press = EraseSmithsModification}),
    SmithsPrompt(kR6, "ACTIVATE >", 0,
                 {.visible = SmithsActivateShown, .press = ActivateSmithsRoute}),
    SmithsPrompt(kR6, "PERF INIT >", kSmithsPerfInit,
                 {.visible = PerfInitShown, .press = AtSmithsSubPage<SmithsCounter::PerfInit, 1>}),
};

void PutWay(Screen& screen, std::int32_t row) {
    const std::int32_t number = WayOnRow(row);
    const std::int16_t y = kSmithsDataY[static_cast<std::size_t>(row)];
    const RoutePair* const way = WayAt(number);
    if (way == nullptr) {
        if (StartOf(number) != kNoWaypoint) {
            screen.Put(kSmithsData, 0, y, "- - - - -");
            screen.Put(kSmithsDataRight, kSmithsRightX, y, "- - - - -");
        }
        return;
    }
    const PlanWaypoint& end = SmithsPlan().entries[way->lastIndex];
    if (IsDiscontinuity(end)) {
        screen.Put(kSmithsLabel, 0, y, "- -   R O U T E    D I S C O N T I N U I T Y  -");
        return;
    }
    screen.Put(kSmithsData, 0, y, "%.14s",
               IsPlaceholder(*way) ? end.via.c_str() : way->via.c_str());
    screen.Put(kSmithsDataRight, kSmithsRightX, y, "%.9s",
               IsPlaceholder(*way) ? "- - - - -" : way->to.c_str());
}

void ComposeRoute(Screen& screen) {
    const std::int32_t rows = SmithsPlan().lastIndex >= 0 ? WayCount() + 1 : 1;
    const SubPage& shown =
        smiths.Counter(SmithsCounter::Route).SetCount(1 + PageCount(rows, kWaysPerPage));
    PutSmithsRouteTag(screen);
    PutSmithsCounter(screen, shown, "%2d / %2d");
    if (shown.n == 1) {
        screen.Put(kSmithsData, 0, kSeparatorY, "%s", kSmithsSeparator);
        return;
    }
    screen.Put(kSmithsLabel, kSmithsLabelX, kSmithsLabelY[0], "V I A");
    screen.Put(kSmithsLabel, kDestinationLabelX, kSmithsLabelY[0], "T O");
    for (std::int32_t row = 0; row < kWaysPerPage; ++row) {
        PutWay(screen, row);
    }
}

void HandleRoute(const UnitInput& input) {
    if (input.openedPage == kSmithsRoute) {
        smiths.Counter(SmithsCounter::Route).n = 1;
    }
}

}  // namespace

constinit const PageRow kSmithsRoutePage{
    .page = kSmithsRoute, .fields = kFields, .handle = HandleRoute, .compose = ComposeRoute};

}  // namespace avq1
