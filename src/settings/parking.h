// settings/parking.h - where the aircraft is parked at an airport, from the user's parking file in
// \avq\Aircraft\.
//
// Degrees; without a matching line, or without the file, all three values are 0.
#pragma once

#include <string_view>

namespace avq1 {

struct ParkingPosition {
    double latitude = 0;
    double longitude = 0;
    double headingDeg = 0;  // as written, 360 as 0
};

extern ParkingPosition parkingPosition;  // at the airport set last

// What the file says of the airport.
ParkingPosition FindParkingPosition(std::string_view airportIdent);

}  // namespace avq1
