// guidance/holds.h - flying the first holding pattern of the list.
//
// The pattern is a rectangle of four corners around the fix; while a hold leg is under way the
// hold commands the autopilot's heading and the fix is not passed. A flight begins whenever the
// fix is reached with LNAV engaged: after an interruption the hold is entered at its fix again.
// Distances nm, courses magnetic unless named True. A hold whose fix has no position is not flown.
#pragma once

#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"

namespace avq1 {

// Places the corners around the fix, as they are flown; a leg by time also gets its distance.
void LayOutHold(HoldPattern& hold, const PlanWaypoint& fix);

// A hold leg is under way: the pattern has been entered and is being flown.
bool HoldBeingFlown();

// Lays out the first hold's corners and, with LNAV engaged, steers from corner to corner.
void BuildAndFlyHold();

// Plans a hold at the active waypoint on the leg's own course, to be flown on reaching it. False,
// and nothing changed, without such a waypoint, with a hold there already, and when the list is
// full.
bool HoldAtActiveWaypoint();

// Deletes every hold whose fix lies before the active waypoint.
void DeletePassedHolds();

// LNAV was disengaged: no hold is flown any more, and an exit that was asked for is forgotten.
// All holds stay planned.
void EndHoldFlight();

}  // namespace avq1
