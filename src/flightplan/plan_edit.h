// flightplan/plan_edit.h - the editing operations on a plan: the active, the modified or the
// preview one.
//
// Each works on the plan together with everything that follows its entries (plan_moves.h). One that
// cannot be done - a full plan, a position that is none - returns false and changes nothing. Of the
// modified plan each is an edit: a route begins, or the active one has a modification. Guidance
// must learn that the active plan changed: call them through EditPlan (guidance/activation.h).
// Insertions go to `position` (0 and kNoWaypoint mean 1, beyond the end appends). In the active
// plan one at or before an active index of 1 leaves that index: what is inserted is flown.
#pragma once

#include <cstdint>
#include <string_view>

#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {

inline constexpr std::string_view kDirectEntry = "DIRECT";  // where a direct leg begins
inline constexpr std::string_view kDirectVia = "DCT";       // its way: no airway
inline constexpr std::string_view kHoldPresentPosition = "HOLD PPOS";

// A plan's entry for a record: identifier, position, plan type and frequency.
PlanWaypoint EntryFrom(const PointRecord& record);
PlanWaypoint EntryFrom(const FoundPoint& point);

// The plan type of a search kind: V to VOR, N to NDB, I to INT, APT to APT.
std::string_view PlanTypeOf(PointKind kind);

// ---- putting entries in ----

// Inserts the entry, and a discontinuity after it unless it is the last or the one before the last,
// or one stands there already.
// Refused as well when there is room for the entry and not for the discontinuity it needs.
bool InsertWaypoint(FlightPlan& plan, std::int32_t position, PlanWaypoint entry);

// The same on a list of legs: an entry put in at the one that is flown is flown first.
bool InsertLeg(FlightPlan& plan, std::int32_t position, PlanWaypoint entry);

// Inserts the entry without a gap. Between two entries of one procedure the plan no longer has that
// procedure: its tag goes from every entry. In an active plan of two entries entry 1 is flown.
bool InsertBetween(FlightPlan& plan, std::int32_t position, PlanWaypoint entry);

// The entry a result stands for, made into a place-bearing-distance point or a present-position
// hold when the typed text asked for it. Nothing is pending in the results afterwards.
PlanWaypoint TakeNamedPoint(const FlightPlan& plan, SearchResults& results, std::int32_t result);

// Inserts it without a gap.
bool InsertNamedPoint(FlightPlan& plan, std::int32_t position, SearchResults& results,
                      std::int32_t result);

bool InsertDiscontinuity(FlightPlan& plan, std::int32_t position);

// Inserts the place of an airway still to be entered.
bool InsertAirwayPlaceholder(FlightPlan& plan, std::int32_t position, std::string_view airway);
void RemovePlaceholders(FlightPlan& plan);

// ---- taking entries out ----

// Removes an entry next to the plan's ends, or any with `force`; turns others into a discontinuity.
// A plan of two entries or fewer is left alone.
bool DeleteWaypoint(FlightPlan& plan, std::int32_t position, bool force);

// Removes the entry and closes up. One of a procedure takes the procedure's tag from every entry.
bool DeleteBetween(FlightPlan& plan, std::int32_t position);

// Removes the discontinuity that stands there.
bool CloseDiscontinuity(FlightPlan& plan, std::int32_t position);

// Another entry than before stands in front of this one now: its leg is a direct one, unless both
// are of one airway, or it belongs to a procedure.
void LeadAnew(FlightPlan& plan, std::int32_t index);

// Removes entries first to beyond - 1 without renumbering the flown index and the holds.
void DeleteRange(FlightPlan& plan, std::int32_t first, std::int32_t beyond);

// ---- what is flown, and how ----

// A leg from the present position to entry `index`: "DIRECT" comes to stand in front of it, and
// that of an earlier direct-to goes. The entry is flown, off any airway.
bool DirectTo(FlightPlan& plan, std::int32_t index, const LatLon& presentPosition);

// The plan becomes "DIRECT", the chosen entry and, with `keepsArrival`, the airport it ended at.
// Its holds go.
void DirectToPoint(FlightPlan& plan, PlanWaypoint chosen, bool keepsArrival,
                   const LatLon& presentPosition);

// Plans the hold at an entry with a position. Refused where one is planned already, when the list
// is full, and in the preview plan.
bool HoldAt(FlightPlan& plan, std::int32_t index, HoldPattern hold);

// What a pilot may ask of a crossing.
inline constexpr std::int32_t kFastestCrossingKt = 999;
inline constexpr std::int32_t kHighestCrossingFt = 60000;
// Flies hold `number`, 1 to the list's count, as `shape`, in the active or, once it is executed,
// the modified plan. Refused where that plan does not have the hold.
bool ReshapeHold(FlightPlan& plan, std::int32_t number, const HoldShape& shape);

struct Crossing {
    double altitudeFt = kUnset;
    double speedKt = kUnset;
    std::int32_t constraint = 1;  // as PlanWaypoint::altitudeConstraint; without an altitude 0
    bool keepsSpeed = false;      // whatever it is; speedKt is not used
};
bool SetCrossing(FlightPlan& plan, std::int32_t index, const Crossing& crossing);

// The first entry from `index` on with an altitude to keep, else the last.
std::int32_t NextRestriction(const FlightPlan& plan, std::int32_t index);

// ---- the modified plan ----

// The modified plan is put to another use: no modification of the active route waits any more.
void EndModification();

// Starts an edit: the tracked index follows the active waypoint from here on, holds get their
// modified-plan references, and the next entry goes to the plan's end.
void CopyActiveToModified();
// Rebuilds planBook.routeView from a plan.
void BuildRouteView(const FlightPlan& plan);
// The same, built only when the plan is another one.
const std::vector<RoutePair>& RouteView(const FlightPlan& plan);
// A waiting modification of the active route is dropped; nothing happens without one.
void DropModification();

// Turns a scratchpad entry (identifier, latitude/longitude, place-bearing) into results. An entry
// that resolves to nothing leaves them empty. Made-up points are named on from the plan's. The
// forms:
//   N3345.5W11154.3   a position, becomes result 1 as "WPT01", "WPT02" ...
//   BOS090/25         place, magnetic bearing, nm: the nearest place becomes the one result, and
//                     bearing and distance stay pending for InsertNamedPoint
//   BOS090/JFK045     where the two bearings cross, becomes result 1 as "BOS01"
void ResolveEntry(const FlightPlan& plan, std::string_view text, SearchCategory category,
                  SearchResults& results);

// 0 -> 1 -> 2 -> 3 -> 4 -> 3; the step 0 -> 1 on the ground takes the plan's reserve fuel into
// use and asks for its fuel to be loaded when the setting says so.
void AdvanceRouteStatus();

// The active plan's waypoint was passed. A modified plan that tracks it tracks what follows there.
void TrackPassage(const PlanWaypoint& passed);

// The plan was edited. Of the modified plan a route begins, or the active one has a modification.
void NoteEdit(const FlightPlan& plan);

// Asks for the plan's fuel to be put into the tanks when the setting says so and the plan has any.
void RequestPlanFuel();

}  // namespace avq1
