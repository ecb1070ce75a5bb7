#include "guidance/progress.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/active_leg.h"
#include "guidance/guidance_state.h"
#include "guidance/route_table.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kMovingGroundSpeedKt = 25;  // below it times and airspeed make no sense
constexpr double kLevelBank = 0.035;
constexpr double kLaterSimRateUnit = 256;
constexpr std::int32_t kLaterSimVersion = 10;
constexpr double kMinutesPerHour = 60;

struct TimeToGo {
    double hours = 0;
    double minutes = 0;
};

TimeToGo SplitHours(double minutes) {
    TimeToGo time;
    if (!std::isfinite(minutes) || minutes < 0) {
        return time;
    }
    if (minutes / kMinutesPerHour >= 1) {
        time.hours = std::floor(minutes / kMinutesPerHour);
    }
    time.minutes = std::max(minutes - time.hours * kMinutesPerHour, 0.0);  // of a rounded quotient
    return time;
}

double FlyingMinutes(double distanceNm) {
    return distanceNm / aircraft.groundSpeedKt * kMinutesPerHour;
}

double RealMinutes(double minutes) {
    return derived.simRate > 0 ? minutes / derived.simRate : 0;
}

}  // namespace

void UpdateRouteDistance() {
    if (!HasActiveWaypoint()) {
        progress.routeDistanceToDestination = 0;
        progress.destinationDistanceDirect = 0;
        progress.destinationBearingMag = 0;
        return;
    }
    const RouteTable& route = ActiveRoute();
    const std::int32_t first = route.flownTo[planBook.activeIndex];
    const PlanWaypoint& next = activePlan.entries[first];
    const PlanWaypoint& destination =
        activePlan.entries[route.last >= 0 ? route.last : activePlan.lastIndex];
    GreatCircle direct = FromAircraft({next.latitude, next.longitude});
    progress.routeDistanceToDestination =
        direct.distanceNm + (route.LengthNm() - route.alongNm[first]);
    if (&destination != &next) {
        DistanceAndCourse(aircraft.latitude, aircraft.longitude, destination.latitude,
                          destination.longitude, direct.distanceNm, direct.courseTrue);
    }
    progress.destinationDistanceDirect = direct.distanceNm;
    progress.destinationBearingMag = TrueToMagnetic(direct.courseTrue, aircraft.magneticVariation);
}

void UpdateTimeToGo() {
    TimeToGo waypoint;
    TimeToGo waypointReal;
    TimeToGo destination;
    TimeToGo destinationReal;
    if (aircraft.groundSpeedKt > kMovingGroundSpeedKt) {
        const double waypointMinutes = FlyingMinutes(guidance.distanceToGoNm);
        const double destinationMinutes = FlyingMinutes(progress.routeDistanceToDestination);
        waypoint = SplitHours(waypointMinutes);
        waypointReal = SplitHours(RealMinutes(waypointMinutes));
        destination = SplitHours(destinationMinutes);
        destinationReal = SplitHours(RealMinutes(destinationMinutes));
    }
    progress.eteWaypointHours = waypoint.hours;
    progress.eteWaypointMinutes = waypoint.minutes;
    progress.eteWaypointTenths =
        std::floor((waypoint.minutes - std::floor(waypoint.minutes)) * 10.0);
    progress.eteWaypointRealHours = waypointReal.hours;
    progress.eteWaypointRealMinutes = waypointReal.minutes;
    progress.eteDestinationHours = destination.hours;
    progress.eteDestinationMinutes = destination.minutes;
    progress.eteDestinationRealHours = destinationReal.hours;
    progress.eteDestinationRealMinutes = destinationReal.minutes;
}

void UpdateDerivedState() {
    const double windAngle = (aircraft.windDirection - aircraft.trueHeading) * kDegToRad;
    derived.headwindKt = std::cos(windAngle) * aircraft.windSpeedKt;
    derived.crosswindKt = std::sin(windAngle) * aircraft.windSpeedKt;
    derived.trueAirspeedEstimateKt = aircraft.groundSpeedKt <= kMovingGroundSpeedKt
                                         ? 0
                                         : aircraft.groundSpeedKt + derived.headwindKt;
    derived.driftDeg = derived.trueAirspeedEstimateKt != 0
                           ? derived.crosswindKt / (derived.trueAirspeedEstimateKt / 60.0)
                           : 0;
    derived.windDirectionMag = TrueToMagnetic(aircraft.windDirection, aircraft.magneticVariation);
    derived.simRate = SimVersion == kLaterSimVersion ? aircraft.simRateRaw / kLaterSimRateUnit
                                                     : aircraft.simRateRaw;
    if (std::fabs(aircraft.bank) < kLevelBank) {
        aircraft.bank = 0;  // keeps a level attitude from flickering
    }
}

}  // namespace avq1
