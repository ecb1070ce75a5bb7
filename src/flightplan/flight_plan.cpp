#include "flightplan/flight_plan.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include "base/module_state.h"

namespace avq1 {

FlightPlan activePlan;
FlightPlan modifiedPlan;
FlightPlan previewPlan;
PlanBook planBook;

namespace {

const StateReset resetPlans([] {
    for (FlightPlan* plan : {&activePlan, &modifiedPlan, &previewPlan}) {
        *plan = FlightPlan{};
    }
    planBook = PlanBook{};
});

}  // namespace

FlightPlan::FlightPlan(const FlightPlan& other)
    : entries_(other.entries_), lastIndex_(other.lastIndex_), procedures_(other.procedures_) {}

FlightPlan& FlightPlan::operator=(const FlightPlan& other) {
    ++revision_;
    std::copy_n(other.entries_.begin(), other.lastIndex_ + 1, entries_.begin());
    lastIndex_ = other.lastIndex_;
    procedures_ = other.procedures_;
    return *this;
}

PlanWaypoint& FlightPlan::Edit(std::int32_t index) {
    assert(index >= 0 && index <= kMaxPlanIndex);
    ++revision_;
    return entries_[static_cast<std::size_t>(index)];
}

PlanProcedures& FlightPlan::EditProcedures() {
    ++revision_;
    return procedures_;
}

void FlightPlan::CutTo(std::int32_t last) {
    assert(last >= -1 && last <= lastIndex_);
    ++revision_;
    lastIndex_ = last;
    if (last < 0) {
        procedures_ = {};
    }
}

void FlightPlan::Append(PlanWaypoint entry) {
    Edit(lastIndex_ + 1) = std::move(entry);
    ++lastIndex_;
}

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

const PlanWaypoint* MapCentre() {
    const auto& [plan, index] = planBook.selections[static_cast<std::size_t>(PlanUnit::MapCentre)];
    return plan != nullptr && plan->Holds(index) && HasPosition(plan->entries[index])
               ? &plan->entries[index]
               : nullptr;
}

}  // namespace avq1
