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

// Starts an edit: the tracked index follows the active waypoint from here on, and holds get their
// modified-plan references.
void CopyActiveToModified();

// Inserts search result 1 at `position` (0 and 999 mean 1, beyond the end appends), and a
// discontinuity after it unless the new entry is the last or the one before the last. Refused as
// well when there is room for the entry and not for the discontinuity it needs.
bool InsertWaypoint(std::int32_t position);

// Inserts search result `result`, without a discontinuity, at `position` (999 means 1), made into a
// place-bearing-distance point or a present-position hold when the entry asked for it.
bool InsertNamedPoint(std::int32_t position, std::int32_t result);

// Inserts the place of an airway still to be entered at `position` (999 means 1).
bool InsertAirwayPlaceholder(std::int32_t position);
void RemovePlaceholders();

// Removes an entry next to the plan's ends, or any with `force`; turns others into a discontinuity.
// A plan of two entries or fewer is left alone.
void DeleteWaypoint(std::int32_t position, bool force);

// Removes entries first to beyond - 1 without renumbering the tracked index and the holds.
void DeleteRange(std::int32_t first, std::int32_t beyond);
void BuildRouteView();

// Turns a scratchpad entry (identifier, latitude/longitude, place-bearing) into search results.
// An entry that resolves to nothing leaves them empty. The forms:
//   N3345.5W11154.3   a position, becomes result 1 as "WPT01", "WPT02" ...
//   BOS090/25         place, magnetic bearing, nm: the nearest place becomes the one result, and
//                     bearing and distance stay pending for InsertNamedPoint
//   BOS090/JFK045     where the two bearings cross, becomes result 1 as "BOS01"
void ResolveEntry(std::string_view text, SearchCategory category);

// 0 -> 1 -> 2 -> 3 -> 4 -> 3; the step 0 -> 1 on the ground takes the plan's reserve fuel into
// use and asks for the flight log's start.
void AdvanceRouteStatus();

// The active plan's waypoint was passed and the next one is flown. A modified plan that tracks the
// passed one tracks the next one too, or what follows where a modification has taken that out.
void TrackPassage(const PlanWaypoint& passed, const PlanWaypoint& next);

// The modified plan was edited: a route begins, or the active one has a modification.
void NoteEdit();

// Asks for the plan's fuel to be put into the tanks when the setting says so and the plan has any.
void RequestPlanFuel();

// The plan type of a search kind: V to VOR, N to NDB, I to INT, APT to APT.
std::string_view PlanTypeOf(PointKind kind);

}  // namespace avq1
