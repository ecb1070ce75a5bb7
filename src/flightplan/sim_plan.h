// flightplan/sim_plan.h - flight plans of the simulator's own planner, turned into this system's
// format.
//
// Two forms are read, told apart by what they hold: XML elements, and lines of keys and values.
// A waypoint without an id takes its code, or a name made up here. An airport is no waypoint of the
// procedure that begins or ends there.
// Either may have LF or CRLF line ends, a byte-order mark, and degree signs in Latin-1 or UTF-8.
// A converted plan's coordinates are whole seconds, as in the plan's position texts: what is finer
// is dropped. Signed decimal degrees are taken as they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"

namespace avq1 {

struct SimWaypoint {
    std::string ident;
    std::string_view type;  // "APT", "VOR", "NDB", "INT" or "WPT"
    double latitude = 0;    // whole seconds
    double longitude = 0;
    LatLon exact;              // as fine as it is written
    std::string airway;        // of the way to it, or the procedure it belongs to
    std::string procedure;     // "SID", "STAR", "APPR" or empty
    double altitude = kUnset;  // feet; an airport's elevation, a planned height, no constraint
    double speed = kUnset;     // knots
};

// What later planners name at one end of the route. A runway is two digits and its letter, "07C".
struct SimTerminal {
    std::string runway;
    std::string procedure;       // the departure's or arrival's name
    std::string approach;        // its type, "ILS"
    std::string approachSuffix;  // "Z"
};

struct SimPlan {
    std::vector<SimWaypoint> waypoints;
    std::vector<std::size_t> leftOutAt;  // where in the text: waypoints without a usable position
    std::int32_t cruisingAltitudeFt = 0;
    SimTerminal departure;
    SimTerminal arrival;

    bool IsFull() const;
};

SimPlan ReadSimPlan(std::string_view text);

// "N54\xB0 39' 14.04\",W6\xB0 13' 11.78\",+000268.00" or the like; the height in feet, kUnset for
// none and 0. False where it holds no position.
bool ReadSimPosition(std::string_view text, LatLon& at, double& altitude);

// "07C" of number and side as later planners write them, "7" and "CENTER"; empty without a number
// from 1 to 36.
std::string SimRunway(std::string_view number, std::string_view designator);

struct ConvertedPlan {
    std::string text;          // "[FlightPlan]" and a line a waypoint; empty when none was found
    std::int32_t leftOut = 0;  // waypoints without a position that can be read
};

ConvertedPlan ConvertSimPlan(std::string_view text);

}  // namespace avq1
