// tests/support/plan_faults.h - what holds of every plan, whatever has been done to it.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>

#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"

namespace avq1::test {

// Empty when all does, else what does not.
inline std::string PlanFault() {
    for (const FlightPlan* plan : {&activePlan, &modifiedPlan}) {
        if (plan->lastIndex < -1 || plan->lastIndex > kMaxPlanIndex) {
            return "last index " + std::to_string(plan->lastIndex);
        }
        for (std::int32_t i = 0; i <= plan->lastIndex; ++i) {
            const PlanWaypoint& entry = plan->entries[i];
            if (entry.ident.empty() || entry.ident == kEmptyRow) {
                return "entry " + std::to_string(i) + " is called '" + entry.ident + "'";
            }
            if (!(std::abs(entry.latitude) <= 90 && std::abs(entry.longitude) <= 180)) {
                return entry.ident + " is nowhere";
            }
        }
    }
    const std::int32_t active = planBook.activeIndex;
    if (active != kNoWaypoint && !(active >= 1 && activePlan.Holds(active))) {
        return "active index " + std::to_string(active);
    }
    if (planBook.verticalTargetIndex > std::max(activePlan.lastIndex, 0)) {
        return "vertical target " + std::to_string(planBook.verticalTargetIndex);
    }
    for (std::int32_t number = 1; number <= holdList.count; ++number) {
        const HoldPattern& hold = holdList.holds[static_cast<std::size_t>(number)];
        const std::int32_t fix = hold.fixIndex;
        if (fix != 0 && (!activePlan.Holds(fix) || activePlan.entries[fix].hasHold == 0)) {
            return "hold at entry " + std::to_string(fix);
        }
        const std::int32_t pending = hold.pendingFixIndex;
        if (pending > 0 &&
            (!modifiedPlan.Holds(pending) || modifiedPlan.entries[pending].hasHold == 0)) {
            return "waiting hold at entry " + std::to_string(pending);
        }
    }
    return holdList.count > kHoldCapacity ? "too many holds" : "";
}

}  // namespace avq1::test
