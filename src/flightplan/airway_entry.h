// flightplan/airway_entry.h - an airway in the plan: looking it up after an entry, and inserting
// its fixes up to the exit the pilot picked.
#pragma once

#include <string_view>

#include "flightplan/flight_plan.h"
#include "navdb/airways.h"

namespace avq1 {

// Looks up the airway typed as "#J1" from the plan's entry `entry` on. Without an airway file there
// are no fixes and the lookup's text stays as it is.
void LookupAirway(const FlightPlan& plan, std::int32_t entry, std::string_view enteredText,
                  AirwayLookup& lookup);

// Inserts the airway's fixes behind the entry fix up to lookup.exitIndex after the plan's entry
// `entry`, with the airway as their via. An exit that the plan goes on from stands there once.
// False, with a message and nothing changed, when the plan has no room for all of them.
bool InsertAirway(FlightPlan& plan, std::int32_t entry, const AirwayLookup& lookup);

// How a fix of a procedure or an airway is tied to the database: a navaid of its name and latitude
// gives it type and frequency. False, with nothing changed, when there is none.
bool TieToNavaid(PlanWaypoint& entry);

}  // namespace avq1
