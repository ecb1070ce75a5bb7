#include "guidance/predictions.h"

#include <algorithm>
#include <cmath>

#include "base/module_state.h"
#include "flightplan/route_walk.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kMovingGroundSpeedKt = 25;
constexpr double kMinutesPerDay = 1440;

Predictions active;
Predictions modified;
const StateReset resetPredictions([] {
    active = {};
    modified = {};
});

double TimeOfDay(double hour, double minute, double later) {
    return PositiveModulo(hour * 60 + minute + later, kMinutesPerDay);
}

// At the present speed, altitude and fuel flow.
PredictedPoint PointAhead(const PlanWaypoint& entry, double distanceNm) {
    PredictedPoint point;
    point.known = aircraft.groundSpeedKt > kMovingGroundSpeedKt;
    if (!point.known) {
        return point;
    }
    point.distanceNm = distanceNm;
    point.minutes = distanceNm / aircraft.groundSpeedKt * 60;
    point.clockMinutes = TimeOfDay(aircraft.clockHour, aircraft.clockMinute, point.minutes);
    point.zuluMinutes = TimeOfDay(aircraft.zuluHour, aircraft.zuluMinute, point.minutes);
    point.altitudeFt = entry.altitude != kUnset ? entry.altitude : aircraft.altitudeFt;
    point.speedKt = entry.speed > 0 ? entry.speed : aircraft.indicatedAirspeedKt;
    point.groundSpeedKt = aircraft.groundSpeedKt;
    point.fuelLb = std::max(0.0, FuelOnBoard() - TotalFuelFlow() * point.minutes / 60);
    point.position = {entry.latitude, entry.longitude};
    return point;
}

void Predict(const FlightPlan& plan, std::int32_t flownTo, Predictions& predictions) {
    predictions = {};
    const std::int32_t first = PositionedEntryFrom(plan, flownTo);
    if (flownTo == kNoWaypoint || first == kNoEntry) {
        return;
    }
    const PlanWaypoint& next = plan.entries[first];
    const double toFirstNm =
        GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude, next.latitude, next.longitude);
    predictions.entries[first] = PointAhead(next, toFirstNm);
    predictions.destination = predictions.entries[first];
    for (const RouteLeg& leg : RouteLegs(plan, first, plan.lastIndex)) {
        predictions.entries[leg.to] = PointAhead(plan.entries[leg.to], toFirstNm + leg.walkedNm);
        predictions.destination = predictions.entries[leg.to];
    }
}

}  // namespace

const Predictions& ActivePredictions() {
    return active;
}

const Predictions& ModifiedPredictions() {
    Predict(modifiedPlan, planBook.trackedIndex, modified);
    return modified;
}

void RefreshPredictions() {
    Predict(activePlan, HasActiveWaypoint() ? planBook.activeIndex : kNoWaypoint, active);
}

}  // namespace avq1
