#include "flightplan/flight_plan.h"

#include <algorithm>

#include "base/module_state.h"
#include "geometry/geometry.h"

namespace avq1 {

FlightPlan activePlan;
FlightPlan modifiedPlan;
FlightPlan previewPlan;
PlanBook planBook;

namespace {

const StateReset resetPlans([] {
    for (FlightPlan* plan : {&activePlan, &modifiedPlan, &previewPlan}) {
        plan->entries.fill(PlanWaypoint{});
        plan->lastIndex = -1;
    }
    planBook = PlanBook{};
});

}  // namespace

bool IsDiscontinuity(const PlanWaypoint& entry) {
    return entry.ident == kDiscontinuity;
}

bool HasPosition(const PlanWaypoint& entry) {
    return !IsDiscontinuity(entry) && entry.ident != kAirwayPlaceholder;
}

PlanWaypoint Discontinuity() {
    PlanWaypoint entry;
    entry.ident = kDiscontinuity;
    return entry;
}

double RouteLengthNm(const FlightPlan& plan, std::int32_t from, std::int32_t to) {
    const PlanWaypoint* previous = nullptr;
    double lengthNm = 0;
    for (std::int32_t i = std::max(from, 0); i <= std::min(to, plan.lastIndex); ++i) {
        const PlanWaypoint& entry = plan.entries[i];
        if (!HasPosition(entry)) {
            continue;
        }
        if (previous != nullptr) {
            lengthNm += GreatCircleDistanceNm(previous->latitude, previous->longitude,
                                              entry.latitude, entry.longitude);
        }
        previous = &entry;
    }
    return lengthNm;
}

}  // namespace avq1
