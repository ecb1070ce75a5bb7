#include "host/profile_report.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "flightlog/flight_log.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "guidance/predictions.h"
#include "guidance/vnav.h"
#include "platform/services.h"

namespace avq1 {
namespace {

struct ReportedPoints {
    std::array<VerticalProfilePoint, kPlanCapacity + 2> points;  // the plan's and two tops
    std::int32_t count = 0;
};

ReportedPoints reported;

void AddPoint(std::string_view name, VerticalProfilePoint::Kind kind, const PredictedPoint& at) {
    VerticalProfilePoint& point = reported.points[static_cast<std::size_t>(reported.count++)];
    point = {};
    std::copy_n(name.begin(), std::min(name.size(), sizeof point.name - 1), point.name);
    point.kind = kind;
    point.distanceNm = at.distanceNm;
    point.altitudeFt = at.altitudeFt;
}

void AddEntry(const PlanWaypoint& entry, const PredictedPoint& at) {
    AddPoint(entry.ident, VerticalProfilePoint::Kind::Entry, at);
    if (entry.altitudeConstraint != kNoCrossing && entry.altitude != kUnset) {
        VerticalProfilePoint& point = reported.points[static_cast<std::size_t>(reported.count - 1)];
        point.restriction = entry.altitudeConstraint;
        point.restrictionFt = entry.altitude;
    }
}

void CollectPoints() {
    reported.count = 0;
    const Predictions& ahead = ActivePredictions();
    for (std::int32_t i = planBook.activeIndex; i <= activePlan.lastIndex; ++i) {
        const PredictedPoint& at = ahead.entries[static_cast<std::size_t>(i)];
        if (at.known) {
            AddEntry(activePlan.entries[static_cast<std::size_t>(i)], at);
        }
    }
    if (ahead.topOfClimb.known) {
        AddPoint("T/C", VerticalProfilePoint::Kind::TopOfClimb, ahead.topOfClimb);
    }
    if (ahead.topOfDescent.known) {
        AddPoint("T/D", VerticalProfilePoint::Kind::TopOfDescent, ahead.topOfDescent);
    }
    const auto end = reported.points.begin() + reported.count;
    std::sort(reported.points.begin(), end,
              [](const auto& a, const auto& b) { return a.distanceNm < b.distanceNm; });
}

}  // namespace

void TellVerticalProfile() {
    if (!flightLog.secondChanged || !HostDrawsProfile()) {
        return;
    }
    VerticalProfileRecord record;
    if (HasActiveWaypoint() && vnav.cruiseAltitude > 0) {
        CollectPoints();
        record.phase = static_cast<std::int32_t>(vnav.Phase());
        record.engaged = guidance.vnavEngaged;
        record.cruiseAltitudeFt = vnav.cruiseAltitude;
        record.targetAltitudeFt = vnav.targetAltitude;
        record.pathAltitudeFt = vnav.pathAltitude;
        record.count = reported.count;
        record.points = reported.points.data();
    }
    ReportVerticalProfile(record);
}

}  // namespace avq1
