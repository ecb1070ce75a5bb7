#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

#include "base/messages.h"
#include "base/text.h"
#include "flightplan/airway_entry.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_moves.h"
#include "flightplan/procedures.h"

namespace avq1 {
namespace {

constexpr std::string_view kSid = "SID";
constexpr std::string_view kStar = "STAR";
constexpr std::string_view kSidAndStar = "SIDSTAR";
constexpr std::string_view kApproach = "APPR";

PlanWaypoint EntryFrom(const ProcedureWaypoint& waypoint, std::string_view procedure) {
    PlanWaypoint entry;
    entry.ident = waypoint.ident;
    entry.latitude = waypoint.latitude;
    entry.longitude = waypoint.longitude;
    entry.flyover = waypoint.flyover;
    entry.procedure = procedure;
    entry.via = waypoint.viaLabel;
    entry.auxText = waypoint.roleText;
    TieToNavaid(entry);
    return entry;
}

void PlaceSlotAirport(PlanWaypoint& entry, const AirportDetail& airport) {
    entry.ident = airport.ident;
    entry.latitude = airport.latitude;
    entry.longitude = airport.longitude;
    entry.type = kAirportType;
    entry.frequency.clear();
}

// Each of these returns false when the plan is full.
bool InsertEntry(FlightPlan& plan, std::int32_t position, PlanWaypoint entry) {
    if (plan.IsFull()) {
        return false;
    }
    OpenPlanEntry(plan, position);
    plan.Edit(position) = std::move(entry);
    return true;
}

bool AppendEntry(FlightPlan& plan, PlanWaypoint entry) {
    return InsertEntry(plan, plan.lastIndex + 1, std::move(entry));
}

// Keeps the entries up to `last`. What pointed at later ones is the caller's to set.
void CutPlan(FlightPlan& plan, std::int32_t last) {
    for (std::int32_t i = last + 1; i <= plan.lastIndex; ++i) {
        RemoveHoldAt(plan, i);
    }
    if (plan.lastIndex < 0) {
        plan.Append({});
    }
    plan.CutTo(last);
}

// An index that pointed behind `last` points at `instead` from here on.
void RetargetBehind(std::int32_t& index, std::int32_t last, std::int32_t instead) {
    if (index != kNoWaypoint && index > last) {
        index = instead;
    }
}

// The plan may have become shorter than what pointed into it.
void KeepIndexesInPlan(FlightPlan& plan) {
    std::int32_t& followed = FollowedIndex(plan);
    if (followed != kNoWaypoint) {
        followed = std::clamp(followed, std::min(1, plan.lastIndex), plan.lastIndex);
    }
    if (IsActivePlan(plan)) {
        planBook.verticalTargetIndex = std::min(planBook.verticalTargetIndex, plan.lastIndex);
    }
}

void StepBackFrom(std::int32_t& index, std::int32_t removed) {
    if (index == removed && removed > 1) {
        --index;
    }
}

// Removes the first of two neighbours that are the same waypoint; its hold goes over to the second.
void MergeEntries(FlightPlan& plan, std::int32_t first) {
    const PlanWaypoint& removed = plan.entries[first];
    PlanWaypoint& kept = plan.Edit(first + 1);
    if (kept.hasHold != 0) {
        RemoveHoldAt(plan, first);
    } else {
        kept.hasHold = removed.hasHold;
    }
    StepBackFrom(FollowedIndex(plan), first);
    if (IsActivePlan(plan)) {
        StepBackFrom(planBook.verticalTargetIndex, first);
    }
    for (std::int32_t i = first + 1; i <= plan.lastIndex; ++i) {
        MovePlanEntry(plan, i, i - 1);
    }
    plan.CutTo(plan.lastIndex - 1);
}

// Where a departure meets an arrival in one waypoint, it belongs to both.
void MergeRepeated(FlightPlan& plan, std::string_view otherKind) {
    for (std::int32_t i = 1; i < plan.lastIndex; ++i) {
        if (plan.entries[i + 1].ident != plan.entries[i].ident) {
            continue;
        }
        if (plan.entries[i].procedure == otherKind) {
            plan.Edit(i + 1).procedure = kSidAndStar;
        }
        MergeEntries(plan, i);
    }
}

bool SpliceSid(FlightPlan& plan) {
    const bool active = IsActivePlan(plan);
    if ((active ? planBook.activeIndex : planBook.editIndex) == kNoWaypoint) {
        CutPlan(plan, 0);
    }
    if (plan.lastIndex < 0 || plan.entries[0].type != kAirportType) {
        SetPlanAirport(procedureChoice.airport,
                       active ? PlanAirportMode::ActiveOrigin : PlanAirportMode::ModifiedOrigin);
    }
    if (plan.lastIndex < 0) {
        CutPlan(plan, 0);
    }
    std::int32_t kept = 1;
    while (plan.Holds(kept) && plan.entries[kept].procedure == kSid) {
        ++kept;
    }
    std::int32_t& followed = FollowedIndex(plan);
    const bool flyingOldSid = followed >= 1 && followed < kept;
    ClosePlanEntries(plan, 1, kept);
    if (!airportSlots[kDepartureSlot].ident.empty()) {
        PlaceSlotAirport(plan.Edit(0), airportSlots[kDepartureSlot]);
    }
    std::int32_t position = 0;
    for (const ProcedureWaypoint& waypoint : procedureLists.sid) {
        if (!InsertEntry(plan, ++position, EntryFrom(waypoint, kSid))) {
            return false;
        }
    }
    MergeRepeated(plan, kStar);
    if (active || flyingOldSid) {
        followed = 1;
    }
    return true;
}

// The arrival airport of slot 2, or the plan's own old last entry while that slot is empty; without
// an identifier when neither is an airport.
PlanWaypoint ArrivalAirportEntry(const PlanWaypoint& oldLast) {
    PlanWaypoint entry;
    if (!airportSlots[kArrivalSlot].ident.empty()) {
        PlaceSlotAirport(entry, airportSlots[kArrivalSlot]);
    } else if (oldLast.type == kAirportType) {
        entry = oldLast;
    }
    return entry;
}

// Without an airport in slot 2 that of the airport set last, which is the plan's.
double ArrivalElevationFt() {
    const AirportDetail& airport = airportSlots[kArrivalSlot];
    return airport.ident.empty() ? ToNumber(lastAirportElevationText) : airport.elevationFt;
}

bool AppendAirport(FlightPlan& plan, PlanWaypoint airport) {
    return airport.ident.empty() || AppendEntry(plan, std::move(airport));
}

// The last entry before the arrival's end of the plan: an earlier arrival, approach and airport.
std::int32_t LastEnRouteIndex(const FlightPlan& plan, bool arrivalIsEnRoute) {
    for (std::int32_t i = plan.lastIndex; i > 0; --i) {
        const PlanWaypoint& entry = plan.entries[i];
        const bool arrival = entry.procedure == kStar && !arrivalIsEnRoute;
        if (!arrival && entry.procedure != kApproach && entry.type != kAirportType) {
            return i;
        }
    }
    return 0;
}

// An approach's gap hides an earlier arrival from the walk back from the plan's end. The index of
// that arrival's first entry, or `gap` when there is none or no gap.
std::int32_t ArrivalBeforeGap(const FlightPlan& plan, std::int32_t gap) {
    std::int32_t first = gap;
    while (first > 1 && plan.entries[first - 1].procedure == kStar) {
        --first;
    }
    return IsDiscontinuity(plan.entries[gap]) ? first : gap;
}

// Returns where the gap stands afterwards.
std::int32_t RemoveArrivalBeforeGap(FlightPlan& plan, std::int32_t gap) {
    const std::int32_t first = ArrivalBeforeGap(plan, gap);
    std::int32_t& followed = FollowedIndex(plan);
    if (followed >= first && followed < gap) {
        followed = first - 1;
    }
    ClosePlanEntries(plan, first, gap);
    return first;
}

bool InsertStarBeforeApproach(FlightPlan& plan, std::int32_t enRoute) {
    std::int32_t position = RemoveArrivalBeforeGap(plan, enRoute) + 1;
    for (const ProcedureWaypoint& waypoint : procedureLists.star) {
        if (!InsertEntry(plan, position++, EntryFrom(waypoint, kStar))) {
            return false;
        }
    }
    PlanWaypoint& last = plan.Edit(plan.lastIndex);
    if (last.type == kAirportType) {
        const std::int32_t hasHold = last.hasHold;
        last = ArrivalAirportEntry(last);
        last.hasHold = hasHold;
        return true;
    }
    return AppendAirport(plan, ArrivalAirportEntry({}));
}

bool ReplaceArrival(FlightPlan& plan, std::int32_t lastBeforeArrival) {
    const std::int32_t arrival = ArrivalBeforeGap(plan, lastBeforeArrival);
    const std::int32_t enRoute = arrival < lastBeforeArrival ? arrival - 1 : lastBeforeArrival;
    const PlanWaypoint oldLast = plan.entries[plan.lastIndex];
    const bool tracksLast = !IsActivePlan(plan) && planBook.trackedIndex == plan.lastIndex;
    const bool targetsLast = IsActivePlan(plan) && planBook.verticalTargetIndex == plan.lastIndex;
    CutPlan(plan, enRoute);
    RetargetBehind(FollowedIndex(plan), enRoute, enRoute);
    for (const ProcedureWaypoint& waypoint : procedureLists.star) {
        if (!AppendEntry(plan, EntryFrom(waypoint, kStar))) {
            return false;
        }
    }
    PlanWaypoint airport = ArrivalAirportEntry(oldLast);
    if (tracksLast) {
        airport.altitude = oldLast.altitude;
    }
    if (!AppendAirport(plan, std::move(airport))) {
        return false;
    }
    if (tracksLast) {
        planBook.trackedIndex = plan.lastIndex;
    }
    if (targetsLast) {
        planBook.verticalTargetIndex = plan.lastIndex;
    }
    return true;
}

bool SpliceStar(FlightPlan& plan) {
    const bool active = IsActivePlan(plan);
    if (plan.lastIndex < 0 || plan.entries[plan.lastIndex].type != kAirportType) {
        SetPlanAirport(procedureChoice.airport, active ? PlanAirportMode::AppendToActive
                                                       : PlanAirportMode::AppendToModified);
    }
    if (plan.lastIndex < 0) {
        CutPlan(plan, 0);
    }
    const std::int32_t enRoute = LastEnRouteIndex(plan, false);
    if (active) {
        RetargetBehind(planBook.activeIndex, enRoute, enRoute);
    }
    const bool beforeApproach =
        enRoute + 1 < plan.lastIndex && plan.entries[enRoute + 1].procedure == kApproach;
    if (!(beforeApproach ? InsertStarBeforeApproach(plan, enRoute)
                         : ReplaceArrival(plan, enRoute))) {
        return false;
    }
    if (plan.lastIndex >= 2) {
        MergeRepeated(plan, kSid);
    }
    return true;
}

// The vertical target stays with the plan's last entry as that moves on.
bool AppendApproachEntry(FlightPlan& plan, const ProcedureWaypoint& waypoint) {
    const bool targetsLast = IsActivePlan(plan) && planBook.verticalTargetIndex == plan.lastIndex;
    if (!AppendEntry(plan, EntryFrom(waypoint, kApproach))) {
        return false;
    }
    if (targetsLast) {
        planBook.verticalTargetIndex = plan.lastIndex;
    }
    return true;
}

bool SpliceApproach(FlightPlan& plan, bool withDiscontinuity) {
    const bool active = IsActivePlan(plan);
    const PlanWaypoint oldLast =
        plan.lastIndex >= 0 ? plan.entries[plan.lastIndex] : PlanWaypoint{};
    std::int32_t enRoute = LastEnRouteIndex(plan, true);
    if (!active && enRoute > 0 && IsDiscontinuity(plan.entries[enRoute])) {
        --enRoute;
    }
    CutPlan(plan, enRoute);
    if (!active && withDiscontinuity && !AppendEntry(plan, Discontinuity())) {
        return false;
    }
    RetargetBehind(FollowedIndex(plan), enRoute, plan.lastIndex + 1);
    for (const ProcedureWaypoint& waypoint : procedureLists.approach) {
        if (!AppendApproachEntry(plan, waypoint)) {
            return false;
        }
    }
    PlanWaypoint airport = ArrivalAirportEntry(oldLast);
    airport.altitude = active ? ArrivalElevationFt() : kUnset;
    airport.auxValue = active ? -1 : kUnset;
    return AppendAirport(plan, std::move(airport));
}

// What a splice may change, to be put back when the plan turns out too full for it.
struct Backup {
    FlightPlan plan;
    PlanBook book;
    HoldList holds;
    HoldFlight flight;
};

template <typename Body>
bool Splice(FlightPlan& plan, Body body) {
    const auto backup = std::make_unique<Backup>(Backup{plan, planBook, holdList, holdFlight});
    if (!body(plan)) {
        plan = backup->plan;
        planBook = backup->book;
        holdList = backup->holds;
        holdFlight = backup->flight;
        AppendMessage(kPlanFullMessage);
        return false;
    }
    KeepIndexesInPlan(plan);
    if (!IsActivePlan(plan)) {
        NoteEdit();
    }
    return true;
}

}  // namespace

bool InsertSid(FlightPlan& plan) {
    return Splice(plan, SpliceSid);
}

bool InsertStar(FlightPlan& plan) {
    return Splice(plan, SpliceStar);
}

bool InsertApproach(FlightPlan& plan, bool withDiscontinuity) {
    procedureLists.approachReady = false;
    return Splice(plan,
                  [&](FlightPlan& target) { return SpliceApproach(target, withDiscontinuity); });
}

}  // namespace avq1
