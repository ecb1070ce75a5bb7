#include "guidance/guidance_state.h"

#include "base/module_state.h"

namespace avq1 {

GuidanceState guidance;
RouteProgress progress;
GuidanceRequests requests;

namespace {

const PlanWaypoint kNoEntry;

const StateReset resetGuidance([] {
    guidance = {};
    progress = {};
    requests = {};
});

}  // namespace

bool HasActiveWaypoint() {
    return planBook.activeIndex >= kFirstWaypoint && activePlan.Holds(planBook.activeIndex);
}

const PlanWaypoint& ActiveWaypoint() {
    return HasActiveWaypoint() ? activePlan.entries[planBook.activeIndex] : kNoEntry;
}

}  // namespace avq1
