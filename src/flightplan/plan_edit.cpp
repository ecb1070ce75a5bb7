#include "flightplan/plan_edit.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/pilot_points.h"
#include "flightplan/plan_moves.h"
#include "geometry/geometry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kLeastFuelLoad = 5;
constexpr std::size_t kRouteViewCapacity = 200;
constexpr std::string_view kProcedureTags[] = {"SID", "SIDSTAR", "STAR", "APPR"};
constexpr std::string_view kBothTag = "SIDSTAR";

// Where an insertion goes: without a position, to the first place behind the departure.
std::int32_t InsertionPlace(const FlightPlan& plan, std::int32_t position) {
    const std::int32_t wanted = position == kNoWaypoint ? 1 : std::max(position, 1);
    return std::min(wanted, plan.lastIndex + 1);
}

bool HasRoomFor(const FlightPlan& plan, std::int32_t entries) {
    return plan.lastIndex + entries <= kMaxPlanIndex;
}

void PutEntry(FlightPlan& plan, std::int32_t at, PlanWaypoint entry) {
    const bool fliesInserted = IsActivePlan(plan) && planBook.activeIndex == 1 && at <= 1;
    OpenPlanEntry(plan, at);
    plan.Edit(at) = std::move(entry);
    if (fliesInserted) {
        planBook.activeIndex = 1;
    }
}

bool IsProcedureTag(std::string_view tag) {
    return std::find(std::begin(kProcedureTags), std::end(kProcedureTags), tag) !=
           std::end(kProcedureTags);
}

// What is left of it is no procedure any more.
void ClearProcedure(FlightPlan& plan, const std::string& tag) {
    if (!IsProcedureTag(tag)) {
        return;
    }
    PlanProcedures& names = plan.EditProcedures();
    if (tag == "SID" || tag == kBothTag) {
        names.sid = names.sidTransition = "";
    }
    if (tag == "STAR" || tag == kBothTag) {
        names.star = names.starTransition = "";
    }
    if (tag == "APPR") {
        names.approach = names.approachTransition = "";
    }
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        if (plan.entries[i].procedure == tag) {
            plan.Edit(i).procedure.clear();
        }
    }
}

// An entry that comes to stand between two of a procedure breaks it. A departure and an arrival
// that only meet there are both whole.
void ClearProcedureAround(FlightPlan& plan, std::int32_t position) {
    if (!plan.Holds(position) || !plan.Holds(position - 1)) {
        return;
    }
    const std::string before = plan.entries[position - 1].procedure;
    const std::string after = plan.entries[position].procedure;
    if (before == after || (IsProcedureTag(before) && IsProcedureTag(after) &&
                            (before == kBothTag || after == kBothTag))) {
        ClearProcedure(plan, before);
        ClearProcedure(plan, after);
    }
}

bool IsSamePoint(const PlanWaypoint& a, const PlanWaypoint& b) {
    return a.ident == b.ident && a.latitude == b.latitude && a.longitude == b.longitude;
}

template <typename Text>
PlanWaypoint EntryOf(const BasicPoint<Text>& point) {
    PlanWaypoint entry;
    entry.ident = point.ident;
    entry.latitude = point.latitude;
    entry.longitude = point.longitude;
    entry.type = PlanTypeOf(point.kind);
    entry.frequency = point.frequency;
    return entry;
}

// Turns a reference into the point at the pending bearing and distance from it.
void ApplyPendingBearing(const FlightPlan& plan, const SearchResults& results,
                         PlanWaypoint& entry) {
    PointAtDistance(entry.latitude, entry.longitude,
                    results.pendingBearingMag + aircraft.magneticVariation,
                    results.pendingDistanceNm, entry.latitude, entry.longitude);
    entry.ident = NextPilotPointName(plan, std::string_view(entry.ident).substr(0, 3));
    entry.type = kPilotPointType;
    entry.frequency.clear();
}

PlanWaypoint DirectEntry(const LatLon& position) {
    PlanWaypoint entry;
    entry.ident = kDirectEntry;
    entry.type = kPilotPointType;
    entry.latitude = position.latitude;
    entry.longitude = position.longitude;
    return entry;
}

bool IsDirectEntry(const PlanWaypoint& entry) {
    return entry.ident == kDirectEntry && entry.type == kPilotPointType;
}

// Where an entry of the active plan stands in a modified plan that began as a copy of it; a hold
// planned meanwhile is in both. kNoWaypoint where it has been taken out or has a hold there.
std::int32_t IndexInModification(const PlanWaypoint& entry) {
    if (planBook.trackedIndex == kNoWaypoint) {
        return kNoWaypoint;
    }
    for (std::int32_t i = 1; i <= modifiedPlan.lastIndex; ++i) {
        if (IsSamePoint(modifiedPlan.entries[i], entry) && modifiedPlan.entries[i].hasHold == 0) {
            return i;
        }
    }
    return kNoWaypoint;
}

}  // namespace

std::string_view PlanTypeOf(PointKind kind) {
    switch (kind) {
        case PointKind::Vor:
            return "VOR";
        case PointKind::Navaid:
            return "NDB";
        case PointKind::Intersection:
            return "INT";
        case PointKind::Airport:
            return "APT";
        case PointKind::None:
        case PointKind::PilotPoint:
            break;
    }
    return kPilotPointType;
}

void EndModification() {
    if (planBook.status == RouteStatus::Modified) {
        planBook.status = RouteStatus::Active;
    }
}

void CopyActiveToModified() {
    EndModification();
    modifiedPlan = activePlan;
    planBook.waitingPerformance = {};
    for (std::int32_t i = 0; i <= modifiedPlan.lastIndex; ++i) {
        modifiedPlan.Edit(i).ataText.clear();
    }
    planBook.trackedIndex = planBook.activeIndex;
    planBook.editIndex = NextEntryPlace(modifiedPlan);
    KeepIndexesInPlan(modifiedPlan);
    CopyHoldsToPending();
}

PlanWaypoint EntryFrom(const PointRecord& record) {
    return EntryOf(record);
}

PlanWaypoint EntryFrom(const FoundPoint& point) {
    return EntryOf(point);
}

bool InsertWaypoint(FlightPlan& plan, std::int32_t position, PlanWaypoint entry) {
    const std::int32_t at = InsertionPlace(plan, position);
    const bool needsGap = at < plan.lastIndex && !IsDiscontinuity(plan.entries[at]);
    if (!HasRoomFor(plan, needsGap ? 2 : 1)) {
        return false;
    }
    PutEntry(plan, at, std::move(entry));
    if (needsGap) {
        OpenPlanEntry(plan, at + 1);
        plan.Edit(at + 1) = Discontinuity();
    }
    NoteEdit(plan);
    return true;
}

bool InsertLeg(FlightPlan& plan, std::int32_t position, PlanWaypoint entry) {
    const std::int32_t at = InsertionPlace(plan, position);
    const bool fliesInserted = FlownIndex(plan) == at;
    if (!InsertWaypoint(plan, at, std::move(entry))) {
        return false;
    }
    if (fliesInserted) {
        SetFlownIndex(plan, at);
    }
    return true;
}

bool InsertBetween(FlightPlan& plan, std::int32_t position, PlanWaypoint entry) {
    if (plan.IsFull()) {
        return false;
    }
    const std::int32_t at = InsertionPlace(plan, position);
    ClearProcedureAround(plan, at);
    PutEntry(plan, at, std::move(entry));
    if (IsActivePlan(plan) && planBook.activeIndex == kNoWaypoint && plan.lastIndex == 1) {
        planBook.activeIndex = 1;
    }
    NoteEdit(plan);
    return true;
}

PlanWaypoint TakeNamedPoint(const FlightPlan& plan, SearchResults& results, std::int32_t result) {
    PlanWaypoint entry = EntryFrom(results[result]);
    if (results.HasPendingPoint()) {
        ApplyPendingBearing(plan, results, entry);
        results.pendingBearingMag = -1;
        results.pendingDistanceNm = -1;
    }
    if (entry.ident == kHoldPresentPosition) {
        entry.ident = NextPilotPointName(plan, kPilotPointPrefix);
        entry.type = kPilotPointType;
        entry.procedure = kHoldPresentPosition;
    }
    return entry;
}

bool InsertNamedPoint(FlightPlan& plan, std::int32_t position, SearchResults& results,
                      std::int32_t result) {
    if (!results.Holds(result) || plan.IsFull()) {
        return false;
    }
    PutEntry(plan, InsertionPlace(plan, position), TakeNamedPoint(plan, results, result));
    NoteEdit(plan);
    return true;
}

bool InsertDiscontinuity(FlightPlan& plan, std::int32_t position) {
    if (plan.IsFull()) {
        return false;
    }
    const std::int32_t at = InsertionPlace(plan, position);
    OpenPlanEntry(plan, at);
    plan.Edit(at) = Discontinuity();
    NoteEdit(plan);
    return true;
}

bool InsertAirwayPlaceholder(FlightPlan& plan, std::int32_t position, std::string_view airway) {
    if (plan.IsFull()) {
        return false;
    }
    PlanWaypoint entry;
    entry.ident = kAirwayPlaceholder;
    entry.type = "OAWY";
    entry.via = airway;
    entry.speed = -1;
    const std::int32_t at = InsertionPlace(plan, position);
    OpenPlanEntry(plan, at);
    plan.Edit(at) = std::move(entry);
    NoteEdit(plan);
    return true;
}

void RemovePlaceholders(FlightPlan& plan) {
    for (std::int32_t i = plan.lastIndex; i >= 0; --i) {
        if (plan.entries[i].ident == kAirwayPlaceholder) {
            ClosePlanEntries(plan, i, i + 1);
        }
    }
}

bool DeleteWaypoint(FlightPlan& plan, std::int32_t position, bool force) {
    if (plan.lastIndex <= 1 || !plan.Holds(position)) {
        return false;
    }
    if (position < 2 || position >= plan.lastIndex - 1 || force) {
        ClosePlanEntries(plan, position, position + 1);
    } else {
        RemoveHoldAt(plan, position);
        plan.Edit(position) = Discontinuity();
    }
    NoteEdit(plan);
    return true;
}

bool DeleteBetween(FlightPlan& plan, std::int32_t position) {
    if (!plan.Holds(position)) {
        return false;
    }
    const std::string procedure = plan.entries[position].procedure;
    ClosePlanEntries(plan, position, position + 1);
    ClearProcedure(plan, procedure);
    NoteEdit(plan);
    return true;
}

bool CloseDiscontinuity(FlightPlan& plan, std::int32_t position) {
    if (!plan.Holds(position) || !IsDiscontinuity(plan.entries[position])) {
        return false;
    }
    ClosePlanEntries(plan, position, position + 1);
    LeadAnew(plan, position);
    NoteEdit(plan);
    return true;
}

void LeadAnew(FlightPlan& plan, std::int32_t index) {
    if (plan.Holds(index) && plan.Holds(index - 1) && plan.entries[index].procedure.empty() &&
        plan.entries[index].via != plan.entries[index - 1].via) {
        plan.Edit(index).via.clear();
    }
}

void DeleteRange(FlightPlan& plan, std::int32_t first, std::int32_t beyond) {
    if (first < 0 || beyond <= first || beyond > plan.lastIndex + 1) {
        return;
    }
    for (std::int32_t i = beyond; i <= plan.lastIndex; ++i) {
        plan.Edit(i - (beyond - first)) = std::move(plan.Edit(i));
    }
    plan.CutTo(plan.lastIndex - (beyond - first));
    KeepIndexesInPlan(plan);
    NoteEdit(plan);
    BuildRouteView(plan);
}

bool DirectTo(FlightPlan& plan, std::int32_t index, const LatLon& presentPosition) {
    if (!plan.Holds(index) || !HasPosition(plan.entries[index]) ||
        IsDirectEntry(plan.entries[index])) {
        return false;
    }
    const auto* const end = plan.entries.begin() + plan.lastIndex + 1;
    if (plan.IsFull() && std::none_of(plan.entries.begin(), end, IsDirectEntry)) {
        return false;
    }
    std::int32_t target = index;
    for (std::int32_t i = plan.lastIndex; i >= 0; --i) {
        if (IsDirectEntry(plan.entries[i])) {
            ClosePlanEntries(plan, i, i + 1);
            target -= i < target ? 1 : 0;
        }
    }
    OpenPlanEntry(plan, target);
    plan.Edit(target) = DirectEntry(presentPosition);
    plan.Edit(target).via = kDirectVia;
    plan.Edit(target + 1).via.clear();
    SetFlownIndex(plan, target + 1);
    NoteEdit(plan);
    return true;
}

void DirectToPoint(FlightPlan& plan, PlanWaypoint chosen, bool keepsArrival,
                   const LatLon& presentPosition) {
    PlanWaypoint arrival;
    if (plan.lastIndex >= 0) {
        arrival = plan.entries[plan.lastIndex];
    }
    const bool isArrival = arrival.ident == chosen.ident && arrival.type == chosen.type;
    if (IsActivePlan(plan)) {
        DeleteAllHolds();
    } else if (&plan == &modifiedPlan) {
        DeleteAllPendingHolds();
    }
    plan.CutTo(-1);
    plan.Append(DirectEntry(presentPosition));
    plan.Append(std::move(chosen));
    if (keepsArrival && arrival.type == kAirportType && !isArrival) {
        arrival.ataText.clear();
        arrival.via.clear();  // its leg begins at the chosen point now, off any airway
        arrival.hasHold = 0;
        plan.Append(std::move(arrival));
    }
    KeepIndexesInPlan(plan);
    SetFlownIndex(plan, 1);
    if (IsActivePlan(plan)) {
        planBook.verticalTargetIndex = NextRestriction(plan, 1);
    } else if (&plan == &modifiedPlan) {
        planBook.editIndex = NextEntryPlace(plan);
    }
    NoteEdit(plan);
}

bool HoldAt(FlightPlan& plan, std::int32_t index, HoldPattern hold) {
    if (&plan == &previewPlan || index < 1 || !plan.Holds(index) ||
        !HasPosition(plan.entries[index]) || plan.entries[index].hasHold != 0) {
        return false;
    }
    const PlanWaypoint& fix = plan.entries[index];
    hold.corners[0] = {fix.latitude, fix.longitude, fix.ident};
    (IsActivePlan(plan) ? hold.fixIndex : hold.pendingFixIndex) = index;
    const std::int32_t twin = IsActivePlan(plan) ? IndexInModification(fix) : kNoWaypoint;
    if (twin != kNoWaypoint) {
        hold.pendingFixIndex = twin;
    }
    if (!AddHold(hold)) {
        return false;
    }
    plan.Edit(index).hasHold = 1;
    if (twin != kNoWaypoint) {
        modifiedPlan.Edit(twin).hasHold = 1;
    }
    NoteEdit(plan);
    return true;
}

bool ReshapeHold(FlightPlan& plan, std::int32_t number, const HoldShape& shape) {
    HoldPattern& hold = holdList.holds[static_cast<std::size_t>(number)];
    const bool active = IsActivePlan(plan);
    const std::int32_t fix = active ? hold.fixIndex : hold.pendingFixIndex;
    if (fix < 1 || !plan.Holds(fix)) {
        return false;
    }
    if (active) {
        static_cast<HoldShape&>(hold) = shape;
    } else {
        hold.pendingShape = shape;
        hold.shapeIsPending = true;
    }
    NoteEdit(plan);
    return true;
}

bool SetCrossing(FlightPlan& plan, std::int32_t index, const Crossing& crossing) {
    if (!plan.Holds(index) || !HasPosition(plan.entries[index])) {
        return false;
    }
    PlanWaypoint& entry = plan.Edit(index);
    entry.altitude = crossing.altitudeFt;
    entry.altitudeConstraint = crossing.altitudeFt == kUnset ? 0 : crossing.constraint;
    if (!crossing.keepsSpeed) {
        entry.speed = crossing.speedKt;
        entry.speedConstraint = crossing.speedKt != kUnset ? 1 : 0;
    }
    NoteEdit(plan);
    return true;
}

std::int32_t NextRestriction(const FlightPlan& plan, std::int32_t index) {
    std::int32_t target = std::max(index, 0);
    while (target < plan.lastIndex && plan.entries[target].altitudeConstraint == 0) {
        ++target;
    }
    return std::clamp(target, 0, std::max(plan.lastIndex, 0));
}

void BuildRouteView(const FlightPlan& plan) {
    std::string_view currentVia;
    planBook.routeView.clear();
    planBook.routeViewPlan = &plan;
    planBook.routeViewRevision = plan.revision;
    for (std::int32_t i = 1; i < plan.lastIndex; ++i) {
        const PlanWaypoint& entry = plan.entries[i];
        if (!entry.via.empty() && entry.via == currentVia && entry.ident != kAirwayPlaceholder) {
            planBook.routeView.back().to = entry.ident;
            planBook.routeView.back().lastIndex = i;
            continue;
        }
        currentVia = entry.via.empty() ? std::string_view("DIRECT") : std::string_view(entry.via);
        if (planBook.routeView.size() < kRouteViewCapacity) {
            planBook.routeView.push_back({entry.ident, std::string(currentVia), i, i});
        }
    }
}

const std::vector<RoutePair>& RouteView(const FlightPlan& plan) {
    if (planBook.routeViewPlan != &plan || planBook.routeViewRevision != plan.revision) {
        BuildRouteView(plan);
    }
    return planBook.routeView;
}

void DropModification() {
    if (planBook.status != RouteStatus::Modified) {
        return;
    }
    CopyActiveToModified();
    if (activePlan.lastIndex >= 0) {
        planBook.originIdent = activePlan.entries[0].ident;
        planBook.destinationIdent = activePlan.entries[activePlan.lastIndex].ident;
    }
}

void TrackPassage(const PlanWaypoint& passed) {
    std::int32_t& tracked = planBook.trackedIndex;
    const bool isOfActiveRoute =
        planBook.status == RouteStatus::Active || planBook.status == RouteStatus::Modified;
    if (isOfActiveRoute && modifiedPlan.Holds(tracked) &&
        IsSamePoint(modifiedPlan.entries[tracked], passed)) {
        tracked = std::min(tracked + 1, modifiedPlan.lastIndex);
    }
}

void NoteEdit(const FlightPlan& plan) {
    if (&plan != &modifiedPlan) {
        return;
    }
    if (planBook.editIndex == kNoWaypoint) {
        planBook.editIndex = NextEntryPlace(plan);
    }
    if (planBook.status == RouteStatus::None || planBook.status == RouteStatus::Active) {
        AdvanceRouteStatus();
    }
}

void RequestPlanFuel() {
    if (settings.LoadFuelonFlightPlanLoad == 1 && planBook.fuelTotal >= kLeastFuelLoad) {
        planBook.fuelLoadRequested = planBook.fuelTotal;
    }
}

void AdvanceRouteStatus() {
    switch (planBook.status) {
        case RouteStatus::None:
            planBook.status = RouteStatus::BeingBuilt;
            if (OnGround()) {
                RequestPlanFuel();
                planBook.reserveFuelInUse = planBook.reserveFuel;
            }
            break;
        case RouteStatus::BeingBuilt:
            planBook.status = RouteStatus::AwaitsExecution;
            break;
        case RouteStatus::AwaitsExecution:
        case RouteStatus::Modified:
            planBook.status = RouteStatus::Active;
            break;
        case RouteStatus::Active:
            planBook.status = RouteStatus::Modified;
            break;
    }
}

}  // namespace avq1
