#include "flightplan/route_entry.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include "base/text.h"
#include "flightplan/airway_entry.h"
#include "flightplan/pilot_points.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_moves.h"
#include "flightplan/procedures.h"
#include "flightplan/route_walk.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kLeastLeadInNm = 5;

PlanWaypoint AirportEntry(const FoundPoint& airport) {
    PlanWaypoint entry = EntryFrom(airport);
    entry.altitude = ToNumber(airport.elevation);
    return entry;
}

bool RouteIsActive() {
    return planBook.status == RouteStatus::Active || planBook.status == RouteStatus::Modified;
}

void ForgetArrivalChoice(FlightPlan& plan) {
    const ProcedureChoice nothing;
    PlanProcedures departure;
    departure.sid = plan.procedures.sid;
    departure.sidTransition = plan.procedures.sidTransition;
    departure.departureRunway = plan.procedures.departureRunway;
    plan.EditProcedures() = departure;
    procedureChoice.starNumber = 0;
    procedureChoice.starName.clear();
    procedureChoice.starTransition = nothing.starTransition;
    procedureChoice.arrivalRunway = nothing.arrivalRunway;
    procedureChoice.approachType.clear();
    procedureChoice.approachTransition.clear();
}

bool IsOfArrival(const PlanWaypoint& entry) {
    return entry.procedure == "STAR" || entry.procedure == "APPR";
}

// The first entry of what leads to the airport at the plan's end alone.
std::int32_t ArrivalStart(const FlightPlan& plan) {
    std::int32_t first = plan.lastIndex;
    while (first > 1) {
        const PlanWaypoint& before = plan.entries[first - 1];
        const bool isItsGap = IsDiscontinuity(before) && IsOfArrival(plan.entries[first]);
        if (!IsOfArrival(before) && !isItsGap) {
            break;
        }
        --first;
    }
    return first;
}

// The entry that is flown, or that will be when the route is started.
std::int32_t FirstFlown(const FlightPlan& plan) {
    const std::int32_t flown = FlownIndex(plan);
    return flown == kNoWaypoint ? kFirstWaypoint : flown;
}

// What is flown next is a place and no gap, unless the route ends there.
void CloseGapBeforeMore(FlightPlan& plan, std::int32_t index) {
    if (index < plan.lastIndex) {
        CloseDiscontinuity(plan, index);
    }
}

}  // namespace

void StartRoute(const FoundPoint& origin) {
    const bool overActive = RouteIsActive();
    DeleteAllPendingHolds();
    modifiedPlan.CutTo(-1);
    modifiedPlan.Append(AirportEntry(origin));
    KeepIndexesInPlan(modifiedPlan);
    planBook.editIndex = kFirstWaypoint;
    planBook.originIdent = origin.ident;
    planBook.destinationIdent.clear();
    planBook.fuelTotal = 0;
    planBook.waitingPerformance = {};
    if (overActive) {
        planBook.waitingPerformance.cruiseAltitudeFt = 0;  // the flown one is kept until EXEC
    } else {
        planBook.cruiseAltitudeFt = 0;
    }
    planBook.status = overActive ? RouteStatus::Modified : RouteStatus::None;
    procedureChoice = {};
    LoadPlanAirportDetail(origin.ident, kDepartureSlot);
}

bool SetRouteDestination(const FoundPoint& destination) {
    FlightPlan& plan = modifiedPlan;
    const std::int32_t last = plan.lastIndex;
    const bool replaces = last > 0 && plan.entries[last].type == kAirportType;
    if (last < 0 || (!replaces && plan.IsFull())) {
        return false;
    }
    if (replaces) {
        const std::int32_t first = ArrivalStart(plan);
        RemoveHoldAt(plan, last);
        plan.Edit(last) = AirportEntry(destination);
        ClosePlanEntries(plan, first, last);
    } else {
        plan.Append(AirportEntry(destination));
    }
    planBook.editIndex = NextEntryPlace(plan);
    planBook.destinationIdent = destination.ident;
    ForgetArrivalChoice(plan);
    LoadPlanAirportDetail(destination.ident, kArrivalSlot);
    NoteEdit(plan);
    return true;
}

bool RemoveRouteDestination() {
    FlightPlan& plan = modifiedPlan;
    if (plan.lastIndex <= 1 || plan.entries[plan.lastIndex].type != kAirportType) {
        return false;
    }
    ClosePlanEntries(plan, ArrivalStart(plan), plan.lastIndex + 1);
    planBook.editIndex = NextEntryPlace(plan);
    planBook.destinationIdent.clear();
    ForgetArrivalChoice(plan);
    NoteEdit(plan);
    return true;
}

PlanWaypoint PointAt(const FlightPlan& plan, const LatLon& position) {
    return EntryFrom(PilotPoint(position, NextPilotPointName(plan, kPilotPointPrefix)));
}

std::int32_t FindEntry(const FlightPlan& plan, std::string_view ident, std::int32_t first) {
    for (std::int32_t i = std::max(first, 0); i <= plan.lastIndex; ++i) {
        if (plan.entries[i].ident == ident && HasPosition(plan.entries[i])) {
            return i;
        }
    }
    return kNoWaypoint;
}

bool LeadTo(FlightPlan& plan, std::int32_t from, std::int32_t to) {
    if (from < 1 || to < from || !plan.Holds(to)) {
        return false;
    }
    if (to > from) {
        ClosePlanEntries(plan, from, to);
        plan.Edit(from).via.clear();
        NoteEdit(plan);
    }
    return true;
}

bool RemoveElement(FlightPlan& plan, std::int32_t first, std::int32_t last) {
    if (first < 1 || last < first || !plan.Holds(last) || plan.lastIndex <= 1) {
        return false;
    }
    const bool wasGap = IsDiscontinuity(plan.entries[first]);
    const std::int32_t flown = FirstFlown(plan);
    const bool wasFlown = first <= flown && flown <= last;
    ClosePlanEntries(plan, first, last + 1);
    if (wasGap) {
        LeadAnew(plan, first);
    }
    const bool onTheWay = first > 1 && first < plan.lastIndex;
    if (wasFlown && !wasGap) {
        CloseGapBeforeMore(plan, first);
    } else if (!wasGap && onTheWay && !IsDiscontinuity(plan.entries[first]) &&
               !IsDiscontinuity(plan.entries[first - 1])) {
        OpenPlanEntry(plan, first);
        plan.Edit(first) = Discontinuity();
    }
    NoteEdit(plan);
    return true;
}

bool DeleteLeg(FlightPlan& plan, std::int32_t index) {
    if (!plan.Holds(index)) {
        return false;
    }
    if (plan.entries[index].hasHold != 0) {
        RemoveHoldAt(plan, index);
        NoteEdit(plan);
        return true;
    }
    if (IsDiscontinuity(plan.entries[index])) {
        return CloseDiscontinuity(plan, index);
    }
    const bool flown = FirstFlown(plan) == index;
    if (!DeleteWaypoint(plan, index, flown)) {
        return false;
    }
    if (flown) {
        CloseGapBeforeMore(plan, index);
    }
    return true;
}

double CourseIntoMag(const FlightPlan& plan, std::int32_t index) {
    constexpr double kFullCircle = 360;
    const std::int32_t from = PositionedEntryBack(plan, index - 1);
    if (from == kNoEntry || !plan.Holds(index)) {
        return 0;
    }
    const PlanWaypoint& start = plan.entries[from];
    const PlanWaypoint& fix = plan.entries[index];
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(start.latitude, start.longitude, fix.latitude, fix.longitude, distanceNm,
                      courseTrue);
    return PositiveModulo(courseTrue - aircraft.magneticVariation, kFullCircle);
}

bool HasDirectLeg(const FlightPlan& plan) {
    const std::int32_t flown = FlownIndex(plan);
    return plan.Holds(flown - 1) && plan.Holds(flown) &&
           plan.entries[flown - 1].ident == kDirectEntry;
}

void BeginDirectLegAt(FlightPlan& plan, const LatLon& position) {
    if (HasDirectLeg(plan)) {
        PlanWaypoint& start = plan.Edit(FlownIndex(plan) - 1);
        start.latitude = position.latitude;
        start.longitude = position.longitude;
    }
}

void LeadInOnCourse(FlightPlan& plan, double courseTrue, const LatLon& position) {
    if (!HasDirectLeg(plan)) {
        return;
    }
    const PlanWaypoint& fix = plan.entries[FlownIndex(plan)];
    const double distanceNm =
        GreatCircleDistanceNm(position.latitude, position.longitude, fix.latitude, fix.longitude);
    LatLon start;
    PointAtDistance(fix.latitude, fix.longitude, courseTrue + 180,
                    std::max(distanceNm, kLeastLeadInNm), start.latitude, start.longitude);
    BeginDirectLegAt(plan, start);
    NoteEdit(plan);
}

AirwayResult EnterAirway(FlightPlan& plan, std::int32_t start, std::string_view airway,
                         std::string_view exit, std::int32_t replaced) {
    AirwayLookup lookup;
    LookupAirway(plan, start, "#" + std::string(airway), lookup);
    if (lookup.entryIndex == 0) {
        return AirwayResult::NotOnAirway;
    }
    lookup.exitIndex = 0;
    for (std::int32_t fix = 1; fix <= lookup.fixes.count; ++fix) {
        if (fix != lookup.entryIndex && lookup.fixes[fix].ident == exit) {
            lookup.exitIndex = fix;
        }
    }
    if (lookup.exitIndex == 0) {
        return AirwayResult::NotOnAirway;
    }
    const std::int32_t added = std::abs(lookup.exitIndex - lookup.entryIndex);
    if (plan.lastIndex - replaced + added > kMaxPlanIndex) {
        return AirwayResult::PlanFull;
    }
    ClosePlanEntries(plan, start + 1, start + 1 + replaced);
    InsertAirway(plan, start, lookup);
    return AirwayResult::Done;
}

}  // namespace avq1
