#include "flightplan/plan_moves.h"

#include <algorithm>
#include <utility>

#include "flightplan/hold_pattern.h"

namespace avq1 {
namespace {

// What follows the entries of a plan. A place may stand behind the last entry, too.
struct IndexRow {
    const FlightPlan& plan;
    std::int32_t PlanBook::*index;
    bool isPlace;
};

const IndexRow kIndexes[] = {
    {activePlan, &PlanBook::activeIndex, false},
    {activePlan, &PlanBook::verticalTargetIndex, false},
    {modifiedPlan, &PlanBook::trackedIndex, false},
    {modifiedPlan, &PlanBook::editIndex, true},
};

// Calls visit(index, isPlace) for every index of the plan that points somewhere.
template <typename Visit>
void ForEachIndex(const FlightPlan& plan, Visit visit) {
    for (const IndexRow& row : kIndexes) {
        if (&row.plan == &plan && planBook.*row.index != kNoWaypoint) {
            visit(planBook.*row.index, row.isPlace);
        }
    }
    for (PlanSelection& selection : planBook.selections) {
        if (selection.plan == &plan && selection.index != kNoWaypoint) {
            visit(selection.index, true);
        }
    }
}

void MoveHold(const FlightPlan& plan, std::int32_t from, std::int32_t to) {
    if (IsActivePlan(plan)) {
        RenumberHolds(from, to);
    } else if (&plan == &modifiedPlan) {
        RenumberPendingHolds(from, to);
    }
}

void MoveEntry(FlightPlan& plan, std::int32_t from, std::int32_t to) {
    plan.Edit(to) = std::move(plan.Edit(from));
    MoveHold(plan, from, to);
}

}  // namespace

bool IsActivePlan(const FlightPlan& plan) {
    return &plan == &activePlan;
}

std::int32_t FlownIndex(const FlightPlan& plan) {
    return IsActivePlan(plan)       ? planBook.activeIndex
           : &plan == &modifiedPlan ? planBook.trackedIndex
                                    : kNoWaypoint;
}

void SetFlownIndex(const FlightPlan& plan, std::int32_t index) {
    if (IsActivePlan(plan)) {
        planBook.activeIndex = index;
    } else if (&plan == &modifiedPlan) {
        planBook.trackedIndex = index;
    }
}

void OpenPlanEntry(FlightPlan& plan, std::int32_t position) {
    const std::int32_t oldLast = plan.lastIndex;
    plan.Append({});
    for (std::int32_t i = oldLast; i >= position; --i) {
        MoveEntry(plan, i, i + 1);
    }
    plan.Edit(position) = {};
    ForEachIndex(plan, [&](std::int32_t& index, bool isPlace) {
        if (index >= position && (index <= oldLast || isPlace)) {
            ++index;
        }
    });
}

void ClosePlanEntries(FlightPlan& plan, std::int32_t first, std::int32_t beyond) {
    if (beyond <= first) {
        return;
    }
    for (std::int32_t i = first; i < beyond; ++i) {
        RemoveHoldAt(plan, i);
    }
    for (std::int32_t i = beyond; i <= plan.lastIndex; ++i) {
        MoveEntry(plan, i, i - (beyond - first));
    }
    plan.CutTo(plan.lastIndex - (beyond - first));
    ForEachIndex(plan, [&](std::int32_t& index, bool) {
        if (index >= first) {
            index = std::max(index - (beyond - first), first);
        }
    });
    KeepIndexesInPlan(plan);
}

void MergePlanEntries(FlightPlan& plan, std::int32_t first) {
    const PlanWaypoint& removed = plan.entries[first];
    PlanWaypoint& kept = plan.Edit(first + 1);
    if (kept.altitude == kUnset) {
        kept.altitude = removed.altitude;
        kept.altitudeConstraint = removed.altitudeConstraint;
    }
    if (kept.speed == kUnset) {
        kept.speed = removed.speed;
        kept.speedConstraint = removed.speedConstraint;
    }
    kept.flyover = std::max(kept.flyover, removed.flyover);
    if (kept.hasHold == 0) {
        kept.hasHold = removed.hasHold;
        MoveHold(plan, first, first + 1);
    }
    ClosePlanEntries(plan, first, first + 1);
}

bool CutPlan(FlightPlan& plan, std::int32_t last) {
    for (std::int32_t i = last + 1; i <= plan.lastIndex; ++i) {
        RemoveHoldAt(plan, i);
    }
    if (plan.lastIndex < 0) {
        plan.Append({});
    }
    plan.CutTo(last);
    const std::int32_t flown = FlownIndex(plan);
    if (flown == kNoWaypoint || flown <= last) {
        return false;
    }
    SetFlownIndex(plan, last);
    return true;
}

void KeepIndexesInPlan(FlightPlan& plan) {
    const std::int32_t last = plan.lastIndex;
    ForEachIndex(plan, [&](std::int32_t& index, bool isPlace) {
        index = std::clamp(index, 0, std::max(last + (isPlace ? 1 : 0), 0));
    });
    const std::int32_t flown = FlownIndex(plan);
    if (flown != kNoWaypoint) {
        SetFlownIndex(plan, last >= 1 ? std::max(flown, 1) : kNoWaypoint);
    }
}

std::int32_t NextEntryPlace(const FlightPlan& plan) {
    const std::int32_t last = plan.lastIndex;
    return last > 0 && plan.entries[last].type == kAirportType ? last : last + 1;
}

void RemoveHoldAt(FlightPlan& plan, std::int32_t index) {
    if (IsActivePlan(plan)) {
        DeleteHold(index);
    } else if (&plan == &modifiedPlan) {
        DeletePendingHold(index);
    }
}

}  // namespace avq1
