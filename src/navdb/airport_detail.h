// navdb/airport_detail.h - one airport's runways and procedures, read on demand into one of four
// slots.
//
// Slot 1 holds the plan's departure airport, slot 2 its arrival airport; slots 0 and 3 are spare.
// A slot is overwritten by the next load into it. An airport that is not in the file leaves the
// slot with no runways and procedures and its previous identity. Degrees, runway headings as
// written (magnetic).
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "navdb/procedures.h"

namespace avq1 {

struct Runway {
    std::string ident;
    double latitude = 0;  // of the threshold
    double longitude = 0;
    std::int32_t length = 0;  // as written
    std::string field7;
    std::string field6;
    double heading = 0;  // degrees as written
    double field8 = 0;   // approach course
    double reciprocalHeading = 0;
};

inline constexpr std::int32_t kRunwayCapacity = 22;
inline constexpr std::int32_t kAirportSlotCount = 4;
inline constexpr std::int32_t kDepartureSlot = 1;
inline constexpr std::int32_t kArrivalSlot = 2;

struct AirportDetail {
    std::string ident;
    std::string name;
    double latitude = 0;
    double longitude = 0;
    double elevationFt = 0;
    std::vector<Runway> runways;  // at most kRunwayCapacity
    AirportProcedures procedures;
};

extern std::array<AirportDetail, kAirportSlotCount> airportSlots;
extern std::string lastAirportElevationText;  // of the airport loaded or set last

// Reads the runway tokens of an airport line ("09L_9000_40.1_-73.9_88_x_y_90"): missing
// sub-fields read as empty or 0.
Runway ParseRunwayToken(std::string_view token);

// Loads one airport into the slot: departures with slot 1, arrivals and approaches with any other.
// True when it was found; it is then also the first search result, whose identifier holds until the
// next load.
bool LoadAirportDetail(std::string_view ident, std::int32_t slot);

}  // namespace avq1
