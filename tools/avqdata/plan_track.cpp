#include "avqdata/plan_track.h"

#include <cmath>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

using avq1::LatLon;

constexpr double kLongestStepNm = 60;
constexpr double kHalfTurn = 180;

struct LineMaker {
    std::vector<RouteLine> lines;
    RouteLine current;
};

void AddPoint(LineMaker& maker, const LatLon& at) {
    if (maker.current.empty() || maker.current.back().latitude != at.latitude ||
        maker.current.back().longitude != at.longitude) {
        maker.current.push_back(at);
    }
}

void EndLine(LineMaker& maker) {
    if (maker.current.size() > 1) {
        maker.lines.push_back(maker.current);
    }
    maker.current.clear();
}

// Short enough a step for the crossing to be found on the straight line between its ends.
void DrawStep(LineMaker& maker, const LatLon& to) {
    const LatLon from = maker.current.back();
    double longitude = to.longitude;
    if (longitude - from.longitude > kHalfTurn) {
        longitude -= 2 * kHalfTurn;
    } else if (longitude - from.longitude < -kHalfTurn) {
        longitude += 2 * kHalfTurn;
    }
    if (std::abs(longitude) <= kHalfTurn) {
        AddPoint(maker, {to.latitude, longitude});
        return;
    }
    const double edge = longitude > 0 ? kHalfTurn : -kHalfTurn;
    const double part = (edge - from.longitude) / (longitude - from.longitude);
    const double latitude = from.latitude + part * (to.latitude - from.latitude);
    AddPoint(maker, {latitude, edge});
    EndLine(maker);
    AddPoint(maker, {latitude, -edge});
    AddPoint(maker, to);
}

void DrawLeg(LineMaker& maker, const LatLon& from, const LatLon& to) {
    const double distanceNm = DistanceNm(from, to);
    const double courseTrue = CourseTrue(from, to);
    const int steps = static_cast<int>(std::ceil(distanceNm / kLongestStepNm));
    for (int i = 1; i < steps; ++i) {
        LatLon at;
        avq1::PointAtDistance(from.latitude, from.longitude, courseTrue, distanceNm * i / steps,
                              at.latitude, at.longitude);
        DrawStep(maker, at);
    }
    DrawStep(maker, to);
}

}  // namespace

std::vector<RouteLine> RouteLines(const ExchangePlan& plan) {
    LineMaker maker;
    LatLon previous;
    for (const avq1::PlanWaypoint& entry : plan.entries) {
        if (!avq1::HasPosition(entry)) {
            EndLine(maker);
            continue;
        }
        const LatLon at{entry.latitude, entry.longitude};
        if (maker.current.empty()) {
            AddPoint(maker, at);
        } else {
            DrawLeg(maker, previous, at);
        }
        previous = at;
    }
    EndLine(maker);
    return std::move(maker.lines);
}

}  // namespace avqdata
