#include "flightplan/route_walk.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace avq1 {
namespace {

constexpr double kRoundingNm = 1e-6;  // the whole route reaches its end however it was added up

LatLon PositionOf(const PlanWaypoint& entry) {
    return {entry.latitude, entry.longitude};
}

// The point of a leg's great circle at a distance from its start. Worked out from both ends: the
// leg's course is not exact near north.
LatLon PointOfLeg(const RouteLeg& leg, double fromStartNm) {
    const double length = leg.distanceNm * kNmToRad;
    const double sine = std::sin(length);
    if (sine <= 0) {
        return leg.start;  // the ends are one point, or opposite ones
    }
    const double ofEnd = std::sin(fromStartNm * kNmToRad) / sine;
    const double ofStart = std::sin(length - fromStartNm * kNmToRad) / sine;
    double x = 0;
    double y = 0;
    double z = 0;
    for (const auto& [point, part] : {std::pair{leg.start, ofStart}, {leg.end, ofEnd}}) {
        const double latitude = point.latitude * kDegToRad;
        const double longitude = point.longitude * kDegToRad;
        x += part * std::cos(latitude) * std::cos(longitude);
        y += part * std::cos(latitude) * std::sin(longitude);
        z += part * std::sin(latitude);
    }
    return {std::atan2(z, std::hypot(x, y)) * kRadToDeg, std::atan2(y, x) * kRadToDeg};
}

}  // namespace

std::int32_t PositionedEntryFrom(const FlightPlan& plan, std::int32_t index) {
    for (std::int32_t i = std::max(index, 0); i <= plan.lastIndex; ++i) {
        if (HasPosition(plan.entries[i])) {
            return i;
        }
    }
    return kNoEntry;
}

std::int32_t PositionedEntryBack(const FlightPlan& plan, std::int32_t index) {
    std::int32_t i = std::min(index, plan.lastIndex);
    while (i >= 0 && !HasPosition(plan.entries[i])) {
        --i;
    }
    return std::max(i, kNoEntry);
}

double RouteLeg::CourseTrue() const {
    double sameDistanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(start.latitude, start.longitude, end.latitude, end.longitude, sameDistanceNm,
                      courseTrue);
    return courseTrue;
}

RouteLegs::RouteLegs(const FlightPlan& plan, std::int32_t first, std::int32_t last)
    : plan_(&plan), first_(first), last_(last), step_(last < first ? -1 : 1) {}

std::int32_t RouteLegs::NextPositioned(std::int32_t index) const {
    const std::int32_t next =
        step_ > 0 ? PositionedEntryFrom(*plan_, index) : PositionedEntryBack(*plan_, index);
    return (step_ > 0 ? next > last_ : next < last_) ? kNoEntry : next;
}

RouteLegs::Iterator::Iterator(const RouteLegs& legs)
    : legs_(&legs), at_(legs.NextPositioned(legs.first_)) {
    arrived_ = at_ == kNoEntry;
    if (!arrived_) {
        ++*this;
    }
}

RouteLegs::Iterator& RouteLegs::Iterator::operator++() {
    const std::int32_t next = legs_->NextPositioned(at_ + legs_->step_);
    if (next == kNoEntry) {
        arrived_ = true;
        return *this;
    }
    leg_.from = std::min(at_, next);
    leg_.to = std::max(at_, next);
    leg_.start = PositionOf(legs_->plan_->entries[leg_.from]);
    leg_.end = PositionOf(legs_->plan_->entries[leg_.to]);
    leg_.distanceNm = GreatCircleDistanceNm(leg_.start.latitude, leg_.start.longitude,
                                            leg_.end.latitude, leg_.end.longitude);
    leg_.walkedNm += leg_.distanceNm;
    leg_.acrossGap = leg_.to - leg_.from > 1;
    at_ = next;
    return *this;
}

double RouteLengthNm(const FlightPlan& plan, std::int32_t first, std::int32_t last) {
    double lengthNm = 0;
    for (const RouteLeg& leg : RouteLegs(plan, first, last)) {
        lengthNm = leg.walkedNm;
    }
    return lengthNm;
}

bool FindPointOnRoute(const FlightPlan& plan, std::int32_t index, double alongNm,
                      RoutePoint& point) {
    const bool ahead = alongNm >= 0;
    for (const RouteLeg& leg : RouteLegs(plan, index, ahead ? plan.lastIndex : 0)) {
        const double beyondNm = leg.walkedNm - std::fabs(alongNm);
        if (beyondNm >= -kRoundingNm) {
            const double fromStartNm = ahead ? leg.distanceNm - beyondNm : beyondNm;
            point.position = PointOfLeg(leg, fromStartNm);
            point.leg = leg;
            return true;
        }
    }
    return false;
}

}  // namespace avq1
