// guidance/activation.h - making a plan, or a change of it, the one that is flown.
//
// However a plan becomes the active one, the same step ends it: the waypoint flown to is made
// active afresh, radios are tuned and the altimeter is set when the settings say so, and the
// listeners are told. Units never write planBook.activeIndex. Altitudes are feet, fuel
// the simulator's weight units, as in the plan.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/redraw.h"
#include "flightplan/flight_plan.h"

namespace avq1 {

// Reads a stored plan into the active plan and starts it: destination, fuel and message list are
// set. A file without entries leaves no active waypoint; the message is appended all the same,
// unless the file was refused or a plan of the simulator's could not be converted: then that is
// said instead.
void LoadPlanToActive(std::string_view fileName);

// The stored plan in the modified plan becomes the active one and is started: without its altitudes
// and constraints, with its fuel, cruise altitude and airports. False, and nothing changed, without
// a waypoint.
bool ActivateModifiedPlan();

// EXEC: the modified plan becomes the active one as it is. A built route is started; of a
// modification the tracked entry is flown, the leg goes on, and only what belongs to another
// destination is forgotten. False, and nothing changed, when nothing awaits execution.
bool ExecuteModification();

// The active plan was replaced: forgets what guidance knew of the old one and flies entry 1.
void StartActivePlan();

// What an edit of the active plan leads to: its flown entry on a leg that may have changed, the
// descent aimed at the next restriction; another destination than the old one is read anew.
void FlyEditedPlan(std::string_view oldDestination);

// The identifier of the active plan's last entry; empty without one.
std::string_view ActiveDestination();

// Runs an edit, bool(FlightPlan&), on the active plan. False, and nothing changed, when it refuses.
template <typename Edit>
bool EditActivePlan(Edit&& edit) {
    const std::string oldDestination(ActiveDestination());
    if (!edit(activePlan)) {
        return false;
    }
    FlyEditedPlan(oldDestination);
    return true;
}

// The same on whichever plan a unit shows.
template <typename Edit>
bool EditPlan(FlightPlan& plan, Edit&& edit) {
    if (&plan == &activePlan) {
        return EditActivePlan(edit);
    }
    const bool edited = edit(plan);
    RequestUnitRedraw();
    return edited;
}

// Direct to an entry picked in the modified plan: that plan, with the direct leg in it, is flown at
// once. False, and nothing changed, where there is no such leg or no room for it.
bool FlyDirectToEntry(std::int32_t index);

// Direct to a point that need not be in the plan: the active plan becomes the direct leg and, with
// `keepsArrival`, the airport it ended at; the modified plan is a copy of it.
void FlyDirectToPoint(PlanWaypoint chosen, bool keepsArrival);

}  // namespace avq1
