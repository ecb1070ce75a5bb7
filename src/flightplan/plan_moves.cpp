#include "flightplan/plan_moves.h"

#include <utility>

#include "flightplan/hold_pattern.h"

namespace avq1 {
namespace {

void Follow(std::int32_t& index, std::int32_t from, std::int32_t to) {
    if (index == from) {
        index = to;
    }
}

}  // namespace

bool IsActivePlan(const FlightPlan& plan) {
    return &plan == &activePlan;
}

std::int32_t& FollowedIndex(const FlightPlan& plan) {
    return IsActivePlan(plan) ? planBook.activeIndex : planBook.trackedIndex;
}

void MovePlanEntry(FlightPlan& plan, std::int32_t from, std::int32_t to) {
    plan.Edit(to) = std::move(plan.Edit(from));
    Follow(FollowedIndex(plan), from, to);
    if (IsActivePlan(plan)) {
        Follow(planBook.verticalTargetIndex, from, to);
        RenumberHolds(from, to);
    } else {
        RenumberPendingHolds(from, to);
    }
}

void OpenPlanEntry(FlightPlan& plan, std::int32_t position) {
    plan.Append({});
    for (std::int32_t i = plan.lastIndex - 1; i >= position; --i) {
        MovePlanEntry(plan, i, i + 1);
    }
}

void ClosePlanEntries(FlightPlan& plan, std::int32_t first, std::int32_t beyond) {
    if (beyond <= first) {
        return;
    }
    for (std::int32_t i = first; i < beyond; ++i) {
        RemoveHoldAt(plan, i);
    }
    for (std::int32_t i = beyond; i <= plan.lastIndex; ++i) {
        MovePlanEntry(plan, i, i - (beyond - first));
    }
    plan.CutTo(plan.lastIndex - (beyond - first));
}

void RemoveHoldAt(FlightPlan& plan, std::int32_t index) {
    if (IsActivePlan(plan)) {
        DeleteHold(index);
    } else {
        DeletePendingHold(index);
    }
}

}  // namespace avq1
