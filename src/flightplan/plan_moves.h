// flightplan/plan_moves.h - the one way entries of the active and the modified plan change their
// places, so that everything that points at an entry by its index goes with it.
//
// In the active plan these are the active waypoint, the vertical target and the holds; in the
// modified plan the tracked entry and the holds. Indexes that point at no entry stay as they are.
#pragma once

#include <cstdint>

#include "flightplan/flight_plan.h"

namespace avq1 {

bool IsActivePlan(const FlightPlan& plan);

// The index that follows its entry: the active waypoint's or the tracked one.
std::int32_t& FollowedIndex(const FlightPlan& plan);

// Moves one entry onto another, whose contents are lost.
void MovePlanEntry(FlightPlan& plan, std::int32_t from, std::int32_t to);

// Makes room at `position`, which is at most lastIndex + 1, and counts the entry that goes there.
// The plan must not be full.
void OpenPlanEntry(FlightPlan& plan, std::int32_t position);

// Takes out entries first to beyond - 1 with their holds; later ones move down.
void ClosePlanEntries(FlightPlan& plan, std::int32_t first, std::int32_t beyond);

// The entry whose hold a removed or replaced entry had, if any, has none any more.
void RemoveHoldAt(FlightPlan& plan, std::int32_t index);

}  // namespace avq1
