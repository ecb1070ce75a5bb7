// flightplan/plan_edit.h - every editing operation on the modified plan.
//
// Insertions move later entries up and keep the tracked index and the holds at their entries. A
// full plan refuses: the insertions return false and change nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "flightplan/flight_plan.h"
#include "navdb/nav_database.h"

namespace avq1 {

void CopyActiveToModified();

// Inserts search result 1 at `position` (0 means 1), and a discontinuity after it unless the new
// entry is the last or the one before the last.
bool InsertWaypoint(std::int32_t position);

// Inserts search result `result` at `position` (999 means 1), made into a place-bearing-distance
// point or a present-position hold when the entry asked for it.
bool InsertNamedPoint(std::int32_t position, std::int32_t result);

bool InsertAirwayPlaceholder(std::int32_t position);
void RemovePlaceholders();
void DeleteWaypoint(std::int32_t position, bool force);
void DeleteRange(std::int32_t first, std::int32_t beyond);
void BuildRouteView();

// Turns a scratchpad entry (identifier, latitude/longitude, place-bearing) into search results.
// An entry that resolves to nothing leaves them empty.
void ResolveEntry(std::string_view text, SearchCategory category);

// 0 -> 1 -> 2 -> 3 -> 4 -> 3; the step 0 -> 1 on the ground takes the plan's reserve fuel into
// use and asks for the flight log's start.
void AdvanceRouteStatus();

// The plan type of a search kind: V to VOR, N to NDB, I to INT, APT to APT.
std::string_view PlanTypeOf(PointKind kind);

}  // namespace avq1
