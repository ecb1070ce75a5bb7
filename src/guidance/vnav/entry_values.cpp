#include <algorithm>
#include <cmath>

#include "guidance/vnav/planning.h"

namespace avq1 {
namespace {

constexpr double kTruncateAboveFt = 1000;
constexpr double kHundred = 100;
constexpr double kLeastSpeedKt = 50;  // below it a speed is none

double TruncateHundreds(double feet) {
    return feet > kTruncateAboveFt ? std::trunc(feet / kHundred) * kHundred : feet;
}

// One side of the profile being walked away from its airport, up to the cruise altitude.
struct ProfileWalk {
    const PlanningInput& input;
    const AircraftPerformance& from;
    PlannedProfile& profile;
    EntryValues& values;
    bool climbing = false;
    std::int32_t nextIndex = 0;  // the restriction the walk comes to next; 0 = not yet looked for
    const PlanWaypoint* next = nullptr;

    double GrowthFt(double legNm) const {
        const PlanningSpeeds& speeds = input.speeds;
        return climbing ? legNm / speeds.climbTas * 60 * speeds.climbRate
                        : legNm / speeds.descentTas * 60 * speeds.descentRate;
    }

    // A restriction of this side that the walk obeys, having reached `runningFt` at it.
    bool IsTarget(std::int32_t index, double runningFt) const {
        const PlanWaypoint& entry = input.Entry(index);
        if (!HasPosition(entry) || BelongsToClimb(*input.route, index) != climbing ||
            entry.altitude == kUnset || entry.altitude > profile.cruiseAltitude) {
            return false;
        }
        switch (entry.altitudeConstraint) {
            case kCrossAt:
                return true;
            case kCrossAtOrAbove:
                return runningFt < entry.altitude;
            case kCrossAtOrBelow:
                return runningFt > entry.altitude;
            default:
                return false;
        }
    }

    // Finds the restriction the walk comes to next, beyond `index`; it is looked for once.
    void LookAhead(std::int32_t index) {
        const std::int32_t step = climbing ? 1 : -1;
        if (nextIndex != 0 && (next == nullptr || (nextIndex - index) * step > 0)) {
            return;
        }
        next = nullptr;
        nextIndex = index + step;
        for (; nextIndex > 0 && nextIndex < input.route->last; nextIndex += step) {
            if (profile.targets[nextIndex] && BelongsToClimb(*input.route, nextIndex) == climbing) {
                next = &input.Entry(nextIndex);
                return;
            }
        }
    }

    double SpeedAt(std::int32_t index, double altitudeFt) const {
        const double side = climbing ? input.speeds.climbIas : from.descentIas;
        const double own = input.Entry(index).speed;
        double speed = side;
        if (next != nullptr && next->speed > kLeastSpeedKt &&
            (next->speed < own || next->speed < side)) {
            speed = next->speed;
        }
        const double limit = climbing ? from.climbSpeedRestriction : from.descentSpeedRestriction;
        const double below =
            climbing ? from.climbRestrictionAltitude : from.descentRestrictionAltitude;
        return limit > 0 && altitudeFt <= below && speed > limit ? limit : speed;
    }

    // The entry's values, unless the other side has the lower ones. False where the cruise begins.
    bool Pass(std::int32_t index, double& runningFt) {
        const double cruiseFt = profile.cruiseAltitude;
        if (profile.targets[index]) {
            runningFt = input.Entry(index).altitude;
        }
        LookAhead(index);
        double altitudeFt = runningFt;
        if (!profile.targets[index]) {
            altitudeFt =
                TruncateHundreds(next != nullptr ? std::min(runningFt, next->altitude) : runningFt);
        }
        if (altitudeFt >= cruiseFt) {
            return false;
        }
        if (altitudeFt < values.altitude[index]) {
            values.altitude[index] = altitudeFt;
            values.speed[index] = SpeedAt(index, altitudeFt);
        }
        return true;
    }
};

// Which restrictions the path has to be bent for, walking away from the side's airport.
void MarkTargets(ProfileWalk& walk, double runningFt) {
    const RouteTable& route = *walk.input.route;
    const std::int32_t step = walk.climbing ? 1 : -1;
    std::int32_t before = walk.climbing ? route.first : route.last;
    for (std::int32_t i = before + step; i > route.first && i < route.last; i += step) {
        runningFt = std::min(runningFt + walk.GrowthFt(std::fabs(route.BetweenNm(before, i))),
                             static_cast<double>(walk.profile.cruiseAltitude));
        before = i;
        if (walk.IsTarget(i, runningFt)) {
            walk.profile.targets.set(static_cast<std::size_t>(i));
            runningFt = walk.input.Entry(i).altitude;
        }
    }
}

void WalkSide(ProfileWalk& walk, double startFt) {
    const RouteTable& route = *walk.input.route;
    MarkTargets(walk, startFt);
    const std::int32_t step = walk.climbing ? 1 : -1;
    std::int32_t before = walk.climbing ? route.first : route.last;
    double runningFt = startFt;
    for (std::int32_t i = before + step; i > route.first && i < route.last; i += step) {
        if (!HasPosition(walk.input.Entry(i))) {
            continue;
        }
        runningFt += walk.GrowthFt(std::fabs(route.BetweenNm(before, i)));
        before = i;
        if (!walk.Pass(i, runningFt)) {
            return;
        }
    }
}

}  // namespace

void WalkProfile(const PlanningInput& input, const AircraftPerformance& from,
                 PlannedProfile& profile, EntryValues& values) {
    values.altitude.fill(profile.cruiseAltitude);
    values.speed.fill(from.cruiseIas);
    const RouteTable& route = *input.route;
    ProfileWalk descent{input, from, profile, values, false};
    const auto last = static_cast<std::size_t>(route.last);
    values.altitude[last] = DescentEndFt(route, profile.cruiseAltitude);
    values.speed[last] = descent.SpeedAt(route.last, values.altitude[last]);
    WalkSide(descent, values.altitude[last]);
    if (!input.climbOver) {
        ProfileWalk climb{input, from, profile, values, true};
        WalkSide(climb, EntryAltitude(*route.plan, 0));
    }
}

EntryValues PlanOnPaper(const PlanningInput& input, const AircraftPerformance& from,
                        double cruiseAltitude, PlannedProfile& profile) {
    EntryValues values;
    profile.cruiseAltitude = static_cast<std::int32_t>(cruiseAltitude);
    WalkProfile(input, from, profile, values);
    PlaceMarks(input, cruiseAltitude, profile);
    return values;
}

}  // namespace avq1
