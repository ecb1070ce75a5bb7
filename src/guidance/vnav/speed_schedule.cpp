#include <algorithm>
#include <cmath>

#include "base/messages.h"
#include "base/text.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/performance_entries.h"
#include "guidance/vnav/flown.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr std::int32_t kSpeedSuspended = 2;
constexpr double kLeastRestrictionKt = 50;  // a speed at or below it is none

// What the aircraft may be asked to fly.
SpeedRange AircraftSpeeds() {
    const AircraftPerformance& p = performance;
    const double climbIas = SpeedsOf(p).climbIas;
    const auto cruiseIas = static_cast<double>(p.cruiseIas);
    const auto descentIas = static_cast<double>(p.descentIas);
    return {std::min({p.climbIasMin, p.cruiseIasMin, p.descentIasMin, p.minVnavIas, climbIas,
                      cruiseIas, descentIas}),
            std::max(
                {p.climbIasMax, p.cruiseIasMax, p.descentIasMax, climbIas, cruiseIas, descentIas})};
}

// Remembers a restriction in force: it is lifted above its altitude.
double RestrictInClimb(double speedKt) {
    const double restricted =
        SpeedLimitOf(performance, VerticalPhase::Climb).Limited(speedKt, aircraft.altitudeFt);
    vnav.climbRestrictionActive = restricted < speedKt ? 1 : vnav.climbRestrictionActive;
    return restricted;
}

double RestrictInDescent(double speedKt) {
    return SpeedLimitOf(performance, VerticalPhase::Descent).Limited(speedKt, aircraft.altitudeFt);
}

// A speed to be flown towards the entry.
bool IsConstrained(const PlanWaypoint& entry) {
    return HasSpeedRestriction(entry) && entry.speed > kLeastRestrictionKt;
}

double DescentSpeed() {
    const PlanWaypoint& entry = ActiveWaypoint();
    if (!IsConstrained(entry) || !(guidance.distanceToGoNm > 0)) {
        return RestrictInDescent(performance.descentIas);
    }
    if (entry.speed < performance.descentIas) {
        const SpeedRange range = AircraftSpeeds();
        performance.descentIas = performance.cruiseIas =
            static_cast<std::int32_t>(std::max(entry.speed, range.leastIas));
    }
    return RestrictInDescent(entry.speed);
}

double ClimbSpeed() {
    const PlanWaypoint& entry = ActiveWaypoint();
    if (IsConstrained(entry)) {
        return RestrictInClimb(entry.speed);
    }
    const PlanWaypoint& target = activePlan.entries[planBook.verticalTargetIndex];
    const bool towardsTarget = IsConstrained(target) && vnav.targetIsEntry != 0;
    return RestrictInClimb(towardsTarget ? target.speed : SpeedsOf(performance).climbIas);
}

double CruiseSpeed() {
    const PlanWaypoint& entry = ActiveWaypoint();
    // Where the aircraft is: the distance to go is still the passed waypoint's on passing one.
    const double hereNm = FlownInput().at.alongNm;
    const bool near = ActiveRoute().alongNm[planBook.verticalTargetIndex] - hereNm <
                      performance.vnavSpeedDistanceNm;
    return IsConstrained(entry) && near ? entry.speed : performance.cruiseIas;
}

double ScheduledSpeed() {
    switch (vnav.Phase()) {
        case VerticalPhase::Descent:
            return DescentSpeed();
        case VerticalPhase::Climb:
            return ClimbSpeed();
        case VerticalPhase::Cruise:
            break;
    }
    return CruiseSpeed();
}

bool PilotTurnedSpeed() {
    return settings.VnavSetSpd == 1 && settings.VnavSetSpdOffOnManSpdChg == 1 &&
           guidance.vnavEngaged == 1 &&
           TurnedByPilot(vnav.speed, aircraft.apAirspeedTargetKt,
                         aircraft.previousApAirspeedTargetKt);
}

void EndClimbRestriction() {
    if (vnav.Phase() == VerticalPhase::Climb && vnav.climbRestrictionActive == 1 &&
        aircraft.altitudeFt > performance.climbRestrictionAltitude && CommandsSpeed()) {
        const PlanWaypoint& entry = ActiveWaypoint();
        SendSpeed(IsConstrained(entry) ? entry.speed : SpeedsOf(performance).climbIas);
        vnav.climbRestrictionActive = 0;
    }
}

void BeginDescentRestriction() {
    const double limitKt = performance.descentSpeedRestriction;
    if (vnav.Phase() == VerticalPhase::Descent && limitKt > 0 &&
        aircraft.altitudeFt < performance.descentRestrictionAltitude &&
        limitKt < aircraft.apAirspeedTargetKt && vnav.descentRestrictionDone == 0 &&
        CommandsSpeed()) {
        SendSpeed(limitKt);
        vnav.descentRestrictionDone = 1;
    }
}

void ApplyRestrictionDistance() {
    if (guidance.distanceToGoNm < performance.vnavSpeedDistanceNm && guidance.vnavEngaged == 1 &&
        vnav.Phase() == VerticalPhase::Descent && IsConstrained(ActiveWaypoint()) &&
        vnav.restrictionDistanceLatch == 0) {
        vnav.speed.set = 0;
        vnav.restrictionDistanceLatch = 1;
    }
}

}  // namespace

bool PlanIsFlown() {
    return planBook.status >= RouteStatus::Active;
}

bool CommandsSpeed() {
    return guidance.vnavEngaged == 1 && PlanIsFlown() && settings.VnavSetSpd == 1;
}

void SendSpeed(double indicatedKt) {
    const SpeedRange range = AircraftSpeeds();
    if (!std::isfinite(indicatedKt) || range.leastIas > range.greatestIas) {
        return;
    }
    vnav.speed.last =
        static_cast<std::int32_t>(std::clamp(indicatedKt, range.leastIas, range.greatestIas));
    SendKeyEvent(KeyEvent::AirspeedSet, vnav.speed.last);
    vnav.speed.tick = TruncateToInteger(aircraft.tick);
}

void ApplySpeedRestrictions() {
    BeginDescentRestriction();
    EndClimbRestriction();
    ApplyRestrictionDistance();
}

void CommandSpeed() {
    if (PilotTurnedSpeed()) {
        settings.VnavSetSpd = kSpeedSuspended;
        AppendMessage("VNAV SPEED OFF - SPEED CHANGED");
    }
    const bool near = guidance.distanceToGoNm < performance.vnavSpeedDistanceNm;
    const bool crossing = vnav.crossingIndex != 0;  // its speed is kept until it is overhead
    if ((!near && vnav.forceSpeed == 0) || !HasActiveWaypoint() || vnav.speed.set == 1 ||
        crossing || !CommandsSpeed()) {
        return;
    }
    const PlanWaypoint& entry = ActiveWaypoint();
    vnav.speed.set = 1;
    if (entry.altitude != kUnset && entry.speed != kUnset) {
        SendSpeed(ScheduledSpeed());
    }
}

}  // namespace avq1
