#include "guidance/route_crossings.h"

#include <algorithm>
#include <cmath>

#include "flightplan/route_walk.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kLeastLegRad = 1e-9;
constexpr double kOverheadRad = 1e-9;  // so near the place lies on every radial
constexpr double kMinutesPerDay = 1440;

struct Vector {
    double x = 0;
    double y = 0;
    double z = 0;
};

Vector VectorOf(const LatLon& point) {
    const double latitude = point.latitude * kDegToRad;
    const double longitude = point.longitude * kDegToRad;
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude),
            std::sin(latitude)};
}

Vector Cross(const Vector& a, const Vector& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double Dot(const Vector& a, const Vector& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector Scaled(const Vector& a, double factor) {
    return {a.x * factor, a.y * factor, a.z * factor};
}

Vector Sum(const Vector& a, const Vector& b) {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}

// A leg as its start and, at right angles to it, where it heads: the point `t` radians along it is
// cos t * start + sin t * ahead.
struct LegArc {
    Vector start;
    Vector ahead;
    double lengthRad = 0;
};

LegArc ArcOf(const LatLon& from, const LatLon& to) {
    LegArc arc;
    arc.start = VectorOf(from);
    const Vector end = VectorOf(to);
    const double cosine = std::clamp(Dot(arc.start, end), -1.0, 1.0);
    const Vector aside = Sum(end, Scaled(arc.start, -cosine));
    const double length = std::sqrt(Dot(aside, aside));
    arc.lengthRad = std::atan2(length, cosine);
    if (length > 0) {
        arc.ahead = Scaled(aside, 1 / length);
    }
    return arc;
}

// The place as the walk needs it: its vector, and which way north and east lie there.
struct PlaceFrame {
    Vector at;
    Vector north;
    Vector east;
};

PlaceFrame FrameOf(const LatLon& place) {
    const double latitude = place.latitude * kDegToRad;
    const double longitude = place.longitude * kDegToRad;
    return {VectorOf(place),
            {-std::sin(latitude) * std::cos(longitude), -std::sin(latitude) * std::sin(longitude),
             std::cos(latitude)},
            {-std::sin(longitude), std::cos(longitude), 0}};
}

Vector PointOn(const LegArc& arc, double t) {
    return Sum(Scaled(arc.start, std::cos(t)), Scaled(arc.ahead, std::sin(t)));
}

// How far along the leg, radians, its point nearest to the place lies; any angle.
double NearestOn(const LegArc& arc, const PlaceFrame& place) {
    return std::atan2(Dot(place.at, arc.ahead), Dot(place.at, arc.start));
}

// Where the leg meets the query, radians along it; -1 where it does not.
double MeetsRadial(const LegArc& arc, const PlaceFrame& place, double radialTrue) {
    const double radial = radialTrue * kDegToRad;
    const Vector along =
        Sum(Scaled(place.north, std::cos(radial)), Scaled(place.east, std::sin(radial)));
    const Vector plane = Cross(place.at, along);
    const double t = std::atan2(-Dot(plane, arc.start), Dot(plane, arc.ahead));
    for (const double candidate : {t, t < 0 ? t + kPi : t - kPi}) {
        const bool onRadial = Dot(PointOn(arc, candidate), along) > -kOverheadRad;
        if (candidate >= 0 && candidate <= arc.lengthRad && onRadial) {
            return candidate;
        }
    }
    return -1;
}

double MeetsCircle(const LegArc& arc, const PlaceFrame& place, double distanceNm) {
    const double a = Dot(place.at, arc.start);
    const double b = Dot(place.at, arc.ahead);
    const double reach = std::sqrt(a * a + b * b);
    const double cosine = std::cos(distanceNm / kRadToNm);
    if (reach < std::abs(cosine)) {
        return -1;
    }
    const double half = std::acos(std::clamp(cosine / reach, -1.0, 1.0));
    const double nearest = std::atan2(b, a);
    for (const double candidate : {nearest - half, nearest + half}) {
        if (candidate >= 0 && candidate <= arc.lengthRad) {
            return candidate;
        }
    }
    return -1;
}

double MeetsAbeam(const LegArc& arc, const PlaceFrame& place) {
    const double t = NearestOn(arc, place);
    return t >= 0 && t <= arc.lengthRad ? t : -1;
}

double Meets(const LegArc& arc, const PlaceFrame& place, const RouteCrossing& query) {
    switch (query.kind) {
        case RouteCrossing::Kind::Radial:
            return MeetsRadial(arc, place, query.value);
        case RouteCrossing::Kind::Distance:
            return MeetsCircle(arc, place, query.value);
        case RouteCrossing::Kind::Abeam:
            break;
    }
    return MeetsAbeam(arc, place);
}

void AskOnLeg(const LegArc& arc, double walkedNm, const PlaceFrame& place,
              std::span<RouteCrossing> queries) {
    if (arc.lengthRad < kLeastLegRad) {
        return;
    }
    for (RouteCrossing& query : queries) {
        if (query.found && query.kind != RouteCrossing::Kind::Abeam) {
            continue;
        }
        const double t = Meets(arc, place, query);
        if (t < 0) {
            continue;
        }
        const Vector point = PointOn(arc, t);
        const double north = Dot(point, place.north);
        const double east = Dot(point, place.east);
        const double distanceNm =
            std::atan2(std::hypot(north, east), Dot(point, place.at)) * kRadToNm;
        if (query.found && distanceNm >= query.distanceNm) {
            continue;
        }
        query.found = true;
        query.aheadNm = walkedNm + t * kRadToNm;
        query.bearingTrue = PositiveModulo(std::atan2(east, north) * kRadToDeg, 360);
        query.distanceNm = distanceNm;
    }
}

// The point as it would be without any time having passed: at the aircraft.
PredictedPoint AtAircraft() {
    PredictedPoint point;
    point.known = true;
    point.clockMinutes = aircraft.clockHour * 60 + aircraft.clockMinute + aircraft.clockSecond / 60;
    point.zuluMinutes = aircraft.zuluHour * 60 + aircraft.zuluMinute + aircraft.clockSecond / 60;
    point.altitudeFt = aircraft.altitudeFt;
    point.speedKt = aircraft.indicatedAirspeedKt;
    point.groundSpeedKt = aircraft.groundSpeedKt;
    point.fuelLb = FuelOnBoard();
    return point;
}

}  // namespace

void FindRouteCrossings(const LatLon& place, std::span<RouteCrossing> queries) {
    for (RouteCrossing& query : queries) {
        query.found = false;
    }
    const std::int32_t first =
        HasActiveWaypoint() ? PositionedEntryFrom(activePlan, planBook.activeIndex) : kNoEntry;
    if (first == kNoEntry) {
        return;
    }
    const PlaceFrame frame = FrameOf(place);
    const PlanWaypoint& next = activePlan.entries[first];
    const LegArc toNext =
        ArcOf({aircraft.latitude, aircraft.longitude}, {next.latitude, next.longitude});
    AskOnLeg(toNext, 0, frame, queries);
    double walkedNm = toNext.lengthRad * kRadToNm;
    for (const RouteLeg& leg : RouteLegs(activePlan, first, activePlan.lastIndex)) {
        const LegArc arc = ArcOf(leg.start, leg.end);
        AskOnLeg(arc, walkedNm, frame, queries);
        walkedNm += arc.lengthRad * kRadToNm;
    }
}

PredictedPoint PredictionAhead(const Predictions& predictions, double aheadNm) {
    PredictedPoint before = AtAircraft();
    PredictedPoint behind;
    const auto consider = [&](const PredictedPoint& point) {
        if (!point.known) {
            return;
        }
        if (point.distanceNm <= aheadNm && point.distanceNm >= before.distanceNm) {
            before = point;
        }
        if (point.distanceNm >= aheadNm &&
            (!behind.known || point.distanceNm < behind.distanceNm)) {
            behind = point;
        }
    };
    std::ranges::for_each(predictions.entries, consider);
    consider(predictions.topOfClimb);
    consider(predictions.topOfDescent);
    if (!behind.known) {
        return {};
    }
    const double lengthNm = behind.distanceNm - before.distanceNm;
    const double share = lengthNm > 0 ? (aheadNm - before.distanceNm) / lengthNm : 1;
    PredictedPoint point = behind;
    point.distanceNm = aheadNm;
    point.minutes = before.minutes + share * (behind.minutes - before.minutes);
    const double earlierMinutes = behind.minutes - point.minutes;
    point.clockMinutes = PositiveModulo(behind.clockMinutes - earlierMinutes, kMinutesPerDay);
    point.zuluMinutes = PositiveModulo(behind.zuluMinutes - earlierMinutes, kMinutesPerDay);
    point.altitudeFt = before.altitudeFt + share * (behind.altitudeFt - before.altitudeFt);
    point.fuelLb = before.fuelLb + share * (behind.fuelLb - before.fuelLb);
    point.position = {};
    return point;
}

}  // namespace avq1
