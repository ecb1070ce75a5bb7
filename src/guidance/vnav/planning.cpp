#include "guidance/vnav/planning.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/text.h"
#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {
namespace {

constexpr double kHighLevelsFt = 42000;
constexpr double kThousand = 1000;
constexpr double kClearOfAirportsFt = 1000;
constexpr double kLongHalfNm = 35;
constexpr double kLongHalfLessNm = 15;
constexpr int kClimbMinutes = 199;
constexpr double kWestboundFrom = 180;

struct HighLevel {
    double below;
    double level;
};

// From 42000 ft on: the first row whose bound lies above the altitude.
constexpr HighLevel kWestbound[] = {{47000, 43000}, {51000, 47000}, {55000, 51000}, {1e9, 55000}};
constexpr HighLevel kEastbound[] = {{49000, 45000}, {53000, 49000}, {57000, 53000}, {1e9, 57000}};

// Feet a minute of a flight path angle in degrees, to the nearest hundred.
double AngleRate(double trueKt, double angleDeg) {
    return std::trunc((trueKt / 60 * angleDeg * 100 + 50) * 0.01) * 100;
}

double CourseToLast(const PlanningInput& input) {
    const PlanWaypoint& first = input.Entry(std::max(input.route->first, 0));
    const PlanWaypoint& last = input.Entry(std::max(input.route->last, 0));
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(first.latitude, first.longitude, last.latitude, last.longitude, distanceNm,
                      courseTrue);
    return courseTrue;
}

// The entry before which a point of the route lies.
std::int32_t EntryBefore(const RouteTable& route, double alongNm) {
    std::int32_t index = 0;
    for (std::int32_t i = 1; i <= route.last && route.alongNm[i] < alongNm; ++i) {
        index = i;
    }
    return index;
}

}  // namespace

bool PlanningSpeeds::AreUsable() const {
    return climbTas > 0 && climbRate > 0 && descentTas > 0 && descentRate > 0 &&
           std::isfinite(climbTas + climbRate + descentTas + descentRate);
}

PlanningSpeeds SpeedsOf(const AircraftPerformance& from) {
    PlanningSpeeds speeds;
    const bool given = from.climbIas > 0;
    speeds.climbIas = given ? from.climbIas : (from.climbIasMin + from.climbIasMax) / 2;
    speeds.climbTas =
        given ? from.climbTas : IndicatedToTrue(speeds.climbIas, kClimbSpeedAltitudeFt);
    speeds.descentTas = from.descentTas;
    const bool byAngle = from.flightPathAngleDeg > 0;
    speeds.climbRate =
        byAngle ? AngleRate(speeds.climbTas, from.flightPathAngleDeg) : from.climbRate;
    speeds.descentRate =
        byAngle ? AngleRate(speeds.descentTas, from.flightPathAngleDeg) : from.descentRate;
    return speeds;
}

double ApplyLevelRule(double altitudeFt, double courseTrue) {
    const bool westbound = courseTrue >= kWestboundFrom;
    if (altitudeFt >= kHighLevelsFt) {
        const auto& rows = westbound ? kWestbound : kEastbound;
        return std::find_if(std::begin(rows), std::end(rows),
                            [&](const HighLevel& row) { return altitudeFt < row.below; })
            ->level;
    }
    const bool even = std::fmod(altitudeFt, 2 * kThousand) == 0;
    return even == westbound ? altitudeFt : altitudeFt - kThousand;
}

double ClimbLimitNm(double routeLengthNm) {
    const double half = routeLengthNm / 2;
    return half > kLongHalfNm ? half - kLongHalfLessNm : half;
}

double LevelAboveAirports(const PlanningInput& input, double altitudeFt) {
    const RouteTable& route = *input.route;
    const double lowest =
        std::max(EntryAltitude(*route.plan, 0), DescentEndFt(route, 0)) + kClearOfAirportsFt;
    double level =
        ApplyLevelRule(std::trunc(altitudeFt / kThousand) * kThousand, CourseToLast(input));
    while (level < lowest) {
        level += 2 * kThousand;
    }
    return level;
}

double ChooseCruiseAltitude(const PlanningInput& input, double maxCruiseFt) {
    const double limitNm = ClimbLimitNm(input.route->LengthNm());
    if (!input.speeds.AreUsable() || !(limitNm > 0) || !std::isfinite(input.altitudeFt)) {
        return 0;
    }
    for (int minutes = 1; minutes <= kClimbMinutes; ++minutes) {
        const double reachedFt = input.altitudeFt + minutes * input.speeds.climbRate;
        if (reachedFt >= maxCruiseFt) {
            return LevelAboveAirports(input, maxCruiseFt);
        }
        if (minutes * input.speeds.climbTas / 60 >= limitNm) {
            return LevelAboveAirports(input, reachedFt);
        }
    }
    return 0;
}

double EntryAltitude(const FlightPlan& plan, std::int32_t index) {
    const PlanWaypoint& entry = plan.entries[index];
    if (entry.altitude != kUnset || entry.type != kAirportType) {
        return entry.altitude != kUnset ? entry.altitude : 0;
    }
    const PointTable& airports = navDatabase.airports;
    for (std::int32_t i = 1; i <= airports.count; ++i) {
        if (airports.Ident(i) == entry.ident) {
            return ToNumber(airports[i].elevation);
        }
    }
    return 0;
}

double DescentEndFt(const RouteTable& route, double fromFt) {
    const PlanWaypoint& last = route.plan->entries[route.last];
    const bool known = last.altitude != kUnset || last.type == kAirportType;
    return known ? EntryAltitude(*route.plan, route.last) : fromFt;
}

bool BelongsToClimb(const RouteTable& route, std::int32_t index) {
    const PlanWaypoint& entry = route.plan->entries[index];
    if (entry.procedure == "SID") {
        return true;
    }
    const bool arriving = entry.procedure == "STAR" || entry.procedure == "APPR";
    return !arriving && entry.altitudeConstraint != 0 &&
           route.alongNm[index] < route.LengthNm() / 2;
}

void PlaceTopOfClimb(const PlanningInput& input, double fromNm, double altitudeFt,
                     PlannedProfile& profile) {
    const double climbNm = input.speeds.ClimbNm(std::max(profile.cruiseAltitude - altitudeFt, 0.0));
    profile.tocNm = std::min(fromNm + climbNm, input.route->LengthNm());
    const LatLon point = PointAlong(*input.route, input.at, profile.tocNm);
    profile.tocLatitude = point.latitude;
    profile.tocLongitude = point.longitude;
    profile.tocIndex = EntryBefore(*input.route, profile.tocNm);
}

double DescentBeginsNm(const PlanningInput& input, const PlannedProfile& profile, double fromFt,
                       std::int32_t passedIndex) {
    const RouteTable& route = *input.route;
    // The earliest that a restriction ahead needs; without one, what the last entry needs.
    double beginsNm = std::numeric_limits<double>::infinity();
    for (std::int32_t i = route.last - 1; i > passedIndex; --i) {
        const double entryFt = input.Entry(i).altitude;
        if (profile.targets[i] && entryFt < fromFt && !BelongsToClimb(route, i)) {
            beginsNm =
                std::min(beginsNm, route.alongNm[i] - input.speeds.DescentNm(fromFt - entryFt));
        }
    }
    if (std::isfinite(beginsNm)) {
        return beginsNm;
    }
    const double lossFt = std::max(fromFt - DescentEndFt(route, fromFt), 0.0);
    return route.LengthNm() - input.speeds.DescentNm(lossFt);
}

void PlaceTopOfDescent(const PlanningInput& input, std::int32_t passedIndex,
                       PlannedProfile& profile) {
    const RouteTable& route = *input.route;
    profile.todNm = DescentBeginsNm(input, profile, profile.cruiseAltitude, passedIndex);
    profile.todOverdue = profile.todNm <= input.at.alongNm ? 1 : 0;
    const LatLon point = PointAlong(route, input.at, profile.todNm);
    profile.todLatitude = point.latitude;
    profile.todLongitude = point.longitude;
    profile.descentCruiseAltitude = profile.cruiseAltitude;
    profile.descentStartIndex = input.activeIndex;
    profile.todDistanceToDestination = route.LengthNm() - profile.todNm;
    const PlanWaypoint& last = input.Entry(route.last);
    double distanceNm = 0;
    DistanceAndCourse(point.latitude, point.longitude, last.latitude, last.longitude, distanceNm,
                      profile.todBearingToDestination);
}

void PlaceMarks(const PlanningInput& input, double cruiseAltitude, PlannedProfile& profile) {
    profile.cruiseAltitude = static_cast<std::int32_t>(cruiseAltitude);
    profile.plannedCruiseAltitude = cruiseAltitude;
    const double climbNm = input.speeds.ClimbNm(std::max(cruiseAltitude - input.altitudeFt, 0.0));
    profile.predictedClimbDistance = static_cast<std::int32_t>(climbNm);
    const double fromNm = std::max(input.at.alongNm, 0.0);
    const PlanWaypoint& departure = input.Entry(input.route->first);
    const LatLon from =
        fromNm > 0 ? input.at.position : LatLon{departure.latitude, departure.longitude};
    profile.climbFromLatitude = from.latitude;
    profile.climbFromLongitude = from.longitude;
    PlaceTopOfClimb(input, fromNm, input.altitudeFt, profile);
    PlaceTopOfDescent(input, input.activeIndex - 1, profile);
}

}  // namespace avq1
