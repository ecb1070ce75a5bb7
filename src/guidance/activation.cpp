#include "guidance/activation.h"

#include <algorithm>
#include <utility>

#include "base/messages.h"
#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_moves.h"
#include "flightplan/procedures.h"
#include "guidance/guidance_events.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/performance_entries.h"
#include "guidance/vnav.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kMessagesKept = 1;

void ForgetDestination() {
    guidance.destinationNearDone = 0;
    planAirports.destinationAirportState = kAirportStillToLoad;
    planAirports.patternRunwayOffset = kNoPatternRunway;
}

// What follows whenever another plan is active from now on, flown to entry `index`.
void FlyFrom(std::int32_t index) {
    guidance.firstLegPrepared = 0;
    planBook.waitingPerformance = {};
    planBook.status = RouteStatus::Active;
    SetActiveWaypoint(index);
    planBook.trackedIndex = planBook.activeIndex;  // of the modified plan, which is the same now
    TuneRadiosAsSet();
    SetAltimeterAsSet();
    if (activePlan.lastIndex >= 0) {
        TellGuidanceEvent(GuidanceEvent::PlanStarted, planBook.activeIndex);
    }
    RequestUnitRedraw();
}

void CopyModifiedToActive() {
    RemovePlaceholders(modifiedPlan);
    activePlan = modifiedPlan;
    for (std::int32_t i = 0; i <= activePlan.lastIndex; ++i) {
        activePlan.Edit(i).ataText.clear();
    }
    ExecutePendingHolds();
    KeepIndexesInPlan(activePlan);
}

void LoadPlanAirports() {
    const PlanWaypoint& first = activePlan.entries[0];
    const PlanWaypoint& last = activePlan.entries[activePlan.lastIndex];
    planBook.originIdent = first.ident;
    planBook.destinationIdent = last.ident;
    if (first.type == kAirportType) {
        LoadPlanAirportDetail(first.ident, kDepartureSlot);
    }
    if (last.type == kAirportType) {
        LoadPlanAirportDetail(last.ident, kArrivalSlot);
        SetPlanAirport(last.ident, PlanAirportMode::LoadedDestination);
    }
}

}  // namespace

void StartActivePlan() {
    ForgetDestination();
    guidance.trackLeg = guidance.joinLeg = 0;
    guidance.pendingTurnSide = Side::None;
    guidance.directToTurn = GuidanceState{}.directToTurn;
    FlyFrom(kFirstWaypoint);
    StartVerticalProfile();
}

void LoadPlanToActive(std::string_view fileName) {
    ReadPlanToActive(fileName);
    if (OnGround()) {
        RequestPlanFuel();
    }
    CutMessages(kMessagesKept);
    if (activePlan.lastIndex >= 0 || planBook.entryNotice.empty()) {
        AppendMessage(
            Format("FPL '%.*s' loaded", static_cast<int>(fileName.size()), fileName.data()));
    }
    if (!planBook.entryNotice.empty()) {
        AppendMessage(planBook.entryNotice);
    }
    StartActivePlan();
}

bool ActivateModifiedPlan() {
    if (modifiedPlan.lastIndex < 0) {
        return false;
    }
    CopyModifiedToActive();
    for (std::int32_t i = 0; i <= activePlan.lastIndex; ++i) {
        activePlan.Edit(i).altitude = kUnset;
        activePlan.Edit(i).altitudeConstraint = 0;
    }
    ProcedureChoice nothingChosen;
    nothingChosen.airport = procedureChoice.airport;
    procedureChoice = nothingChosen;
    planBook.reserveFuelInUse = planBook.reserveFuel;
    if (OnGround()) {
        RequestPlanFuel();
    }
    LoadPlanAirports();
    StartActivePlan();
    return true;
}

bool ExecuteModification() {
    const bool isNewRoute = planBook.status == RouteStatus::AwaitsExecution;
    if ((!isNewRoute && planBook.status != RouteStatus::Modified) || modifiedPlan.lastIndex < 0) {
        return false;
    }
    const std::string oldDestination(ActiveDestination());
    CopyModifiedToActive();
    const PerformanceChange change = std::exchange(planBook.waitingPerformance, {});
    ApplySpeeds(change);
    planBook.cruiseAltitudeFt = change.cruiseAltitudeFt.value_or(planBook.cruiseAltitudeFt);
    if (isNewRoute || !activePlan.Holds(planBook.trackedIndex)) {
        StartActivePlan();
        return true;
    }
    const std::int32_t flown = std::max(planBook.trackedIndex, kFirstWaypoint);
    if (ActiveDestination() != oldDestination) {
        ForgetDestination();
    }
    FlyFrom(flown);
    ReplanChangedRoute();
    if (change.cruiseAltitudeFt) {
        SetCruiseAltitude(*change.cruiseAltitudeFt);
    }
    return true;
}

std::string_view ActiveDestination() {
    return activePlan.lastIndex >= 0
               ? std::string_view(activePlan.entries[activePlan.lastIndex].ident)
               : std::string_view{};
}

void FlyEditedPlan(std::string_view oldDestination) {
    guidance.firstLegPrepared = 0;
    if (ActiveDestination() != oldDestination) {
        ForgetDestination();
    }
    SetActiveWaypoint(planBook.activeIndex);
    if (planBook.status == RouteStatus::None && HasActiveWaypoint()) {
        planBook.status = RouteStatus::Active;  // typed entry by entry, it is flown all the same
    }
    ReplanChangedRoute();
    RequestUnitRedraw();
}

bool FlyDirectToEntry(std::int32_t index) {
    if (!DirectTo(modifiedPlan, index, {aircraft.latitude, aircraft.longitude})) {
        return false;
    }
    const std::int32_t flown = planBook.trackedIndex;
    CopyModifiedToActive();
    guidance.trackLeg = guidance.joinLeg = 0;
    FlyFrom(flown);
    ReplanChangedRoute();
    return true;
}

void FlyDirectToPoint(PlanWaypoint chosen, bool keepsArrival) {
    DirectToPoint(activePlan, std::move(chosen), keepsArrival,
                  {aircraft.latitude, aircraft.longitude});
    StartActivePlan();
    CopyActiveToModified();
}

}  // namespace avq1
