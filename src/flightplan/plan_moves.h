// flightplan/plan_moves.h - the one way entries of a plan change their places, so that everything
// that points at an entry by its index goes with it.
//
// What follows the entries of which plan is one table: of the active plan the active waypoint and
// the vertical target, of the modified plan the tracked and the edit index, of every plan the
// units' selections; and the holds of the active and the modified plan. An index whose entry is
// taken out points at the one that comes to stand there, at the plan's end at its last.
#pragma once

#include <cstdint>

#include "flightplan/flight_plan.h"

namespace avq1 {

bool IsActivePlan(const FlightPlan& plan);

// The entry that is flown, or that will be once the modification is executed: the active waypoint
// or the tracked entry. kNoWaypoint without one; of the preview plan always.
std::int32_t FlownIndex(const FlightPlan& plan);
void SetFlownIndex(const FlightPlan& plan, std::int32_t index);

// Makes room at `position`, which is at most lastIndex + 1. What goes there begins as an empty
// entry. The plan must not be full.
void OpenPlanEntry(FlightPlan& plan, std::int32_t position);

// Takes out entries first to beyond - 1 with their holds; later ones move down.
void ClosePlanEntries(FlightPlan& plan, std::int32_t first, std::int32_t beyond);

// Takes out the first of two neighbours that are one waypoint. The second keeps its place in the
// route and gets what it has not: the first's restrictions, fly-over mark and hold.
void MergePlanEntries(FlightPlan& plan, std::int32_t first);

// Ends the plan at entry `last`; the holds behind it go, and what was flown behind it is entry
// `last` now. True when something was. An empty plan becomes one entry first.
bool CutPlan(FlightPlan& plan, std::int32_t last);

// The plan may have become shorter than what points into it, or another one.
void KeepIndexesInPlan(FlightPlan& plan);

// Where the next entry of a plan goes that is built up: before an airport that ends it, else behind
// the last entry.
std::int32_t NextEntryPlace(const FlightPlan& plan);

// The entry's hold, if any, goes.
void RemoveHoldAt(FlightPlan& plan, std::int32_t index);

}  // namespace avq1
