// guidance/activation.h - making a plan, or a change of it, the one that is flown.
//
// However a plan becomes the active one, the same step ends it (StartActivePlan): the waypoint
// flown to is made active afresh, radios are tuned and the altimeter is set when the settings say
// so, and the listeners are told. Units never write planBook.activeIndex. Altitudes are feet, fuel
// the simulator's weight units, as in the plan.
#pragma once

#include <string_view>

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

// Runs InsertSid, InsertStar, InsertAirway or the like on the active plan; what is flown follows
// its entry, on a leg that may have changed. False, and nothing changed, when the edit refuses.
bool EditActivePlan(bool (*edit)(FlightPlan& plan));

}  // namespace avq1
