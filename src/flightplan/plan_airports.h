// flightplan/plan_airports.h - the plan's departure and destination airports.
//
// Values of the airport set last are kept for the displays and units; an identifier that is not
// in the airport file changes nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "navdb/airport_detail.h"

namespace avq1 {

struct PlanRunway : Runway {
    std::int32_t rightPattern = 0;
};

inline constexpr std::int32_t kNoPatternRunway = -999;
inline constexpr std::int32_t kAirportStillToLoad = 1;
inline constexpr std::int32_t kAirportLoaded = 2;

struct PlanAirports {
    std::string destinationIdent;
    std::string destinationElevationText;
    double destinationElevation = 0;  // feet
    double destinationLatitude = 0;
    double destinationLongitude = 0;
    std::string lastAirportIdent;
    std::vector<PlanRunway> runways;  // PlanAirportRunways, from 0
    std::int32_t selectedRunway = 1;
    std::int32_t patternRunwayOffset = kNoPatternRunway;
    std::int32_t destinationAirportState = 0;  // kAirportStillToLoad, kAirportLoaded
};

extern PlanAirports planAirports;

// Loads an airport into a slot; in the departure slot, an active plan that begins at the airport
// also gets its elevation as the first entry's altitude.
bool LoadPlanAirportDetail(std::string_view ident, std::int32_t slot);

enum class PlanAirportMode : std::int32_t {
    DepartureElevation = 0,  // the active plan's first entry gets the airport's elevation
    ActiveDestination = 1,   // destination texts; the active plan's last entry at its elevation
    LoadedDestination = 2,   // the same with the elevation as a number, speed cleared
    ActiveOrigin = 3,        // the active plan's first entry becomes the airport
    AppendToActive = 4,      // the airport ends the active plan and becomes the vertical target
    ModifiedOrigin = 5,      // as ActiveOrigin, in the modified plan
    AppendToModified = 6,    // the airport ends the modified plan
    RunwaysOnly = 7,         // an airport that is looked at: no plan is touched
};

// Looks the airport up and applies the mode. All modes but LoadedDestination look up the parking
// position; every mode sets the runways. A full plan refuses an append with a message.
void SetPlanAirport(std::string_view ident, PlanAirportMode mode);

// Reads what the files say of the active plan's destination while it is still to be loaded, so that
// ActiveDestination, which the update asks for under way, opens no file. Nothing happens when it
// is known already.
void ReadDestinationAhead();

}  // namespace avq1
