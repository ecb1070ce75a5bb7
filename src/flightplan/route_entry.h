// flightplan/route_entry.h - a route as a pilot types it: origin and destination, the points on the
// way, the legs left out, the direct leg.
//
// These work on the modified plan; guidance flies nothing of it before it is executed. Each is an
// edit like those of plan_edit.h and takes along what points at the entries it moves. Courses are
// degrees true.
#pragma once

#include <cstdint>
#include <string_view>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {

// A new route begins at the airport: it is the only entry, no cruise altitude, nothing chosen. Over
// an active route the new one is a modification of it, which is flown from its first leg on.
void StartRoute(const FoundPoint& origin);

// The airport ends the route from now on; an arrival and an approach to another one go. False, and
// nothing changed, without an origin or for a full plan.
bool SetRouteDestination(const FoundPoint& destination);

// Takes the airport at the route's end out, with the arrival and the approach to it. False, and
// nothing changed, where no airport ends the route, or nothing but the origin would be left.
bool RemoveRouteDestination();

// A point at a position, named on from the plan's: "WPT01".
PlanWaypoint PointAt(const FlightPlan& plan, const LatLon& position);

// The entry of this name from `first` on; kNoWaypoint without.
std::int32_t FindEntry(const FlightPlan& plan, std::string_view ident, std::int32_t first);

// Leaves out the entries from `from` to the one before `to`, so that the route leads straight
// there.
bool LeadTo(FlightPlan& plan, std::int32_t from, std::int32_t to);

// Takes out entries first to last; on the way a gap stays in their place, unless one is there
// already. Refused for the origin.
bool RemoveElement(FlightPlan& plan, std::int32_t first, std::int32_t last);

// The legs page's deletion: a hold there goes first, a gap closes, and what is flown goes with the
// gap behind it. False where nothing can be deleted.
bool DeleteLeg(FlightPlan& plan, std::int32_t index);

// Course into an entry from the one before it, degrees magnetic in [0, 360); 0 without one.
double CourseIntoMag(const FlightPlan& plan, std::int32_t index);

// The direct leg to the flown entry, if there is one, begins here. With `courseTrue` it leads in on
// that course instead, from a point beside or behind the aircraft.
bool HasDirectLeg(const FlightPlan& plan);
void BeginDirectLegAt(FlightPlan& plan, const LatLon& position);
void LeadInOnCourse(FlightPlan& plan, double courseTrue, const LatLon& position);

// The modified plan's entry whose leg is the airway's to `exit`: puts in the airway's fixes behind
// entry `start` up to that exit. `replaced` entries behind the start go, the airway's placeholder
// or an earlier way along it. False, and nothing changed, where the airway does not lead there.
enum class AirwayResult : std::uint8_t { Done, NotOnAirway, PlanFull };
AirwayResult EnterAirway(FlightPlan& plan, std::int32_t start, std::string_view airway,
                         std::string_view exit, std::int32_t replaced);

}  // namespace avq1
