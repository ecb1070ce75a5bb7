// guidance/holds.h - flying the first holding pattern of the list.
//
// The pattern is a rectangle of four corners around the fix; while a hold leg is under way the
// hold commands the autopilot's heading and the fix is not passed. Distances nm, courses
// magnetic unless named True. A hold whose fix has no position is not flown.
#pragma once

namespace avq1 {

// A hold leg is under way: the pattern has been entered and is being flown.
bool HoldBeingFlown();

// Lays out the first hold's corners and, with LNAV engaged, steers from corner to corner.
void BuildAndFlyHold();

// Deletes every hold whose fix lies before the active waypoint.
void DeletePassedHolds();

// LNAV was disengaged: the first hold is given up and none is flown.
void EndHoldFlight();

}  // namespace avq1
