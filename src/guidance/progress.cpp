#include "guidance/progress.h"

#include <array>
#include <cmath>
#include <cstdint>

#include "base/module_state.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/active_leg.h"
#include "guidance/guidance_state.h"
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
    time.minutes = minutes - time.hours * kMinutesPerHour;
    if (time.minutes < 0 || time.minutes == kMinutesPerHour) {
        time.minutes = 0;
    }
    return time;
}

double FlyingMinutes(double distanceNm) {
    return distanceNm / aircraft.groundSpeedKt * kMinutesPerHour;
}

double RealMinutes(double minutes) {
    return derived.simRate > 0 ? minutes / derived.simRate : 0;
}

// What one entry of the active plan was when the route was last summed, and the route from there.
struct RouteEntry {
    double latitude = 0;
    double longitude = 0;
    bool hasPosition = false;
    double remainingNm = 0;  // from the next entry with a position, this one included, to the end

    bool Describes(const PlanWaypoint& entry) const {
        return entry.latitude == latitude && entry.longitude == longitude &&
               HasPosition(entry) == hasPosition;
    }
};

// The route as summed last: comparing it with the plan costs a frame far less than the great
// circles of a long route.
struct RouteSums {
    std::array<RouteEntry, kPlanCapacity> entries;
    std::int32_t first = 0;
    std::int32_t last = -1;
};

RouteSums routeSums;
const StateReset resetRouteSums([] { routeSums = {}; });

bool RouteUnchanged() {
    if (planBook.activeIndex < routeSums.first || activePlan.lastIndex != routeSums.last) {
        return false;
    }
    for (std::int32_t i = planBook.activeIndex; i <= activePlan.lastIndex; ++i) {
        if (!routeSums.entries[i].Describes(activePlan.entries[i])) {
            return false;
        }
    }
    return true;
}

void SumRoute() {
    routeSums.first = planBook.activeIndex;
    routeSums.last = activePlan.lastIndex;
    const RouteEntry* next = nullptr;
    for (std::int32_t i = routeSums.last; i >= routeSums.first; --i) {
        const PlanWaypoint& entry = activePlan.entries[i];
        RouteEntry& sum = routeSums.entries[i];
        sum = {entry.latitude, entry.longitude, HasPosition(entry), 0};
        if (next != nullptr) {
            sum.remainingNm = next->remainingNm;
            if (sum.hasPosition) {
                sum.remainingNm += GreatCircleDistanceNm(entry.latitude, entry.longitude,
                                                         next->latitude, next->longitude);
            }
        }
        if (sum.hasPosition) {
            next = &sum;
        }
    }
}

// The nearest entry with a position, walking from `index` by `step`; `index` when there is none.
std::int32_t PositionedEntry(std::int32_t index, std::int32_t step) {
    for (std::int32_t i = index; activePlan.Holds(i); i += step) {
        if (HasPosition(activePlan.entries[i])) {
            return i;
        }
    }
    return index;
}

}  // namespace

void UpdateRouteDistance() {
    if (!HasActiveWaypoint()) {
        progress.routeDistanceToDestination = 0;
        progress.destinationDistanceDirect = 0;
        progress.destinationBearingMag = 0;
        return;
    }
    if (!RouteUnchanged()) {
        SumRoute();
    }
    const std::int32_t first = PositionedEntry(planBook.activeIndex, 1);
    const PlanWaypoint& next = activePlan.entries[first];
    const PlanWaypoint& destination = activePlan.entries[PositionedEntry(activePlan.lastIndex, -1)];
    GreatCircle direct = FromAircraft({next.latitude, next.longitude});
    progress.routeDistanceToDestination = direct.distanceNm + routeSums.entries[first].remainingNm;
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
