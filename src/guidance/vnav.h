// guidance/vnav.h - the vertical guidance: planning what is flown, and the steps of the per-frame
// update that follow the profile and command the autopilot.
//
// Altitudes are feet, speeds kt indicated, distances nm along the route. The records are in
// guidance/vnav/profile.h. Without a cruise altitude the phases stay idle and nothing is commanded.
#pragma once

#include <cstdint>

#include "guidance/vnav/profile.h"

namespace avq1 {

// ---- planning the active plan ----
// Plans from a cruise altitude, 0 to have one chosen. With `fillEntries` 1 the entries not yet
// passed get their predicted altitudes and speeds and the phase stays; otherwise the phase is the
// climb's again. False, with a message and no cruise altitude, when none can be found.
bool PlanVerticalProfile(double cruiseAltitude, std::int32_t fillEntries);

// The cruise altitude the performance tables give, with the speeds and rates they give in
// `performance`; 0, and nothing changed, without tables.
double ComputeOptimumFromTables();

// That altitude alone, for pages: nothing is changed. Worked out when plan or waypoint change.
double OptimumCruiseAltitude();

// The entry at which the climb ends, searched from the active one + `offset` (0 or 1). The last
// restriction on the way is the top of climb and the target; without one it lies at the climb
// distance from the aircraft, and is placed there with offset 0.
std::int32_t ComputeTopOfClimb(std::int32_t offset);

// Places the top of descent. With `replan` 1 the active entry's altitude is the cruise altitude
// from now on, and the next descent begins behind that entry.
void ComputeTopOfDescent(std::int32_t replan);

// Along the route from the top of descent to the last entry; also finds the bearing between them.
double TodDistanceToDestination();

// Another plan is flown from now on: planned with its cruise altitude, the climb begins.
void StartVerticalProfile();

// The pilot's cruise altitude, feet, 0 to 60000 (others are kept within): a higher one climbs on, a
// lower one before the top of descent descends.
void SetCruiseAltitude(std::int32_t feet);

// ---- engaging ----
// Engages VNAV when there is an active waypoint, else disengages it.
void ToggleVnav();
// VNAV lets go by itself: a message says why.
void DisengageVnav(const char* reason);

// ---- steps of the per-frame update ----
// What the autopilot shows of the altitude and speed sent in the frame before.
void ReadBackCommands();
// Simulation rate back to normal and pause, once the descent has begun.
void ApplyTopOfDescentActions();
// Plans and aims again when the plan, the active waypoint or the aircraft's speeds have changed.
void ReplanChangedRoute();
// Climb, cruise and descent: phases, distances, altitude, vertical speed and airspeed.
void RunVerticalGuidance();
// Declares the climb over when the aircraft is far beyond the predicted climb.
void ApplyClimbFallback();
// Forgets what the VNAV selector asked for in this frame.
void EndVerticalFrame();

// ---- as the active entry is passed, before and after the next one is flown to ----
// The next entry to be met is aimed at.
void TargetOnPassing();
void CommandOnPassing();

}  // namespace avq1
