// flightplan/airway_entry.h - an airway in the plan: looking it up after an entry, and inserting
// its fixes up to the exit the pilot picked.
#pragma once

#include <string_view>

#include "flightplan/flight_plan.h"
#include "navdb/airways.h"

namespace avq1 {

// Looks up the airway typed as "#J1" from the modified plan's entry at the edit index. Fills the
// search results and airwayLookup; planBook.airwayText becomes the name, followed by " (N/A)" when
// the airway does not pass that entry. Without an airway file the text stays as it is.
void LookupAirway(std::string_view enteredText);

// Inserts the airway's fixes behind the entry fix up to airwayLookup.exitIndex into the active or
// the modified plan, after the edit index, with the airway as their via. False, with a message and
// nothing changed, when the plan has no room for all of them.
bool InsertAirway(FlightPlan& plan);

// How a fix of a procedure or an airway is tied to the database: a navaid of its name and latitude
// gives it type and frequency. False, with nothing changed, when there is none.
bool TieToNavaid(PlanWaypoint& entry);

}  // namespace avq1
