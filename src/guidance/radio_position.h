// guidance/radio_position.h - which stations the receivers hear, and the position they give.
//
// The simulator tells a station's bearing and distance and not its name: the station is the VOR of
// the database nearest to where the two point, and unknown where none is near. A localizer and a
// station without DME are unknown. Bearings degrees, distances nm. Panel thread only.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {

// What the pilot has excluded from the radio position.
struct NavOptions {
    std::array<std::string, 2> inhibitedDme = {};  // identifiers; empty = none
    std::array<std::string, 2> inhibitedVor = {};
    bool dmeUpdate = true;
    bool vorUpdate = true;
};

extern NavOptions navOptions;

enum class NavReceiver : std::size_t { Left, Right };

struct ReceivedStation {
    std::int32_t navaid = 0;  // its index in the database; 0: unknown
    double bearingTrue = 0;   // from the aircraft
    double distanceNm = 0;    // as measured, on the slant
};

ReceivedStation StationReceived(NavReceiver receiver);

// From the first receiver, left before right, that hears a known station which is not inhibited,
// while both updates are on. False, with `position` unchanged, without one.
bool RadioPosition(LatLon& position);

}  // namespace avq1
