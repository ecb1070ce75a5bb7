// flightplan/sim_plan.h - flight plans of the simulator's own planner, turned into this system's
// format.
//
// Two forms are read, told apart by what they hold: XML elements, and lines of keys and values.
// Either may have LF or CRLF line ends, a byte-order mark, and degree signs in Latin-1 or UTF-8.
// Coordinates are whole seconds, as in the plan's position texts: what is finer is dropped.
// Signed decimal degrees are taken as they are.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace avq1 {

struct ConvertedPlan {
    std::string text;          // "[FlightPlan]" and a line a waypoint; empty when none was found
    std::int32_t leftOut = 0;  // waypoints without a position that can be read
};

ConvertedPlan ConvertSimPlan(std::string_view text);

}  // namespace avq1
