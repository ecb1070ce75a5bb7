#include "cdu_gns/gns_values.h"

#include <cmath>
#include <limits>

#include "cdu/formats.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/route_walk.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
constexpr double kSecondsPerHour = 3600;
constexpr double kMinutesPerDay = 1440;
constexpr int kTimeDashes = 6;
constexpr std::int32_t kCornersAndFix = 5;

}  // namespace

double GnsDistanceTo(std::int32_t index) {
    if (!HasActiveWaypoint() || index < planBook.activeIndex || !activePlan.Holds(index) ||
        !HasPosition(activePlan.entries[index]) || !HasPosition(ActiveWaypoint())) {
        return kNone;
    }
    return guidance.distanceToGoNm + RouteLengthNm(activePlan, planBook.activeIndex, index);
}

const PredictedPoint& GnsPredictionOf(std::int32_t index) {
    static const PredictedPoint unknown;
    return activePlan.Holds(index) ? ActivePredictions().entries[static_cast<std::size_t>(index)]
                                   : unknown;
}

double GnsDistanceTo(const PredictedPoint& point) {
    const PredictedPoint& next = ActiveWaypointPrediction();
    return point.known ? GnsDistanceTo(planBook.activeIndex) + point.distanceNm - next.distanceNm
                       : kNone;
}

double GnsAltitudeAt(const FlightPlan& plan, std::int32_t index) {
    const PlanWaypoint& entry = plan.entries[index];
    if (entry.altitudeConstraint == 0 && &plan == &activePlan && GnsPredictionOf(index).known &&
        ActivePredictions().cruiseAltitudeFt > 0) {
        return GnsPredictionOf(index).altitudeFt;
    }
    return entry.altitude != kUnset ? entry.altitude : kNone;
}

double GnsMinutesTo(const PredictedPoint& point) {
    return point.known && ShownAircraft().groundSpeedKt > kGnsTimesFromKt ? point.minutes : kNone;
}

double GnsMinutesTo(std::int32_t index) {
    return GnsMinutesTo(GnsPredictionOf(index));
}

UnitText GnsClockText(const PredictedPoint& point) {
    if (!std::isfinite(GnsMinutesTo(point))) {
        return Dashes(kTimeDashes);
    }
    const double minutes = settings.DispETALocalTime == 1 ? point.clockMinutes : point.zuluMinutes;
    return HoursMinutesText(0, PositiveModulo(std::floor(minutes + 0.5), kMinutesPerDay));
}

double GnsFuelAtPounds(const PredictedPoint& point) {
    return point.known ? point.fuelLb : kNone;
}

double GnsTrackMag() {
    return TrueToMagnetic(ShownAircraft().headingMag - ShownDerived().driftDeg, 0);
}

double GnsTurnDeg(double fromDeg, double toDeg) {
    return PositiveModulo(toDeg - fromDeg + 180, 360) - 180;
}

double GnsSecondsToHoldFix() {
    if (!HoldBeingFlown() || !(aircraft.groundSpeedKt > kGnsTimesFromKt)) {
        return kNone;
    }
    const auto& corners = holdList.holds[1].corners;
    double distanceNm = 0;
    double latitude = aircraft.latitude;
    double longitude = aircraft.longitude;
    // Around the pattern from the corner being flown to, and from the last one to the fix.
    for (std::int32_t corner = holdFlight.holdTargetCorner; corner <= kCornersAndFix; ++corner) {
        const HoldCorner& next =
            corners[static_cast<std::size_t>(corner == kCornersAndFix ? 0 : corner)];
        distanceNm += GreatCircleDistanceNm(latitude, longitude, next.latitude, next.longitude);
        latitude = next.latitude;
        longitude = next.longitude;
    }
    return distanceNm / aircraft.groundSpeedKt * kSecondsPerHour;
}

UnitText GnsMinutesText(double minutes) {
    return std::isfinite(minutes) ? HoursMinutesText(0, minutes) : Dashes(kTimeDashes);
}

std::int32_t GnsNextIndex() {
    if (HasActiveWaypoint()) {
        for (std::int32_t i = planBook.activeIndex + 1; i <= activePlan.lastIndex; ++i) {
            if (HasPosition(activePlan.entries[i])) {
                return i;
            }
        }
    }
    return kNoWaypoint;
}

namespace {

UnitText DegreesText(double degrees, bool isLatitude) {
    UnitText text = Dashes(isLatitude ? 9 : 10);
    if (!std::isfinite(degrees)) {
        return text;
    }
    if (settings.DecLatLonDisp > 0) {
        text.Put("(%.6f)", degrees);
        return text;
    }
    PositionText latitude;
    PositionText longitude;
    FormatLatLon(isLatitude ? degrees : 0, isLatitude ? 0 : degrees, latitude, longitude);
    text.Set(isLatitude ? latitude.data() : longitude.data());
    return text;
}

}  // namespace

UnitText GnsLatitudeText(double latitude) {
    return DegreesText(latitude, true);
}

UnitText GnsLongitudeText(double longitude) {
    return DegreesText(longitude, false);
}

}  // namespace avq1
