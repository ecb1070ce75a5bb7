// panelhost/flightgear/autopilot_mapping.h - which properties an aircraft's autopilot is set by,
// and which texts they take: a JSON file, so that a pilot can add his own aircraft.
//
// An axis is one property that says which mode flies it. A property that is left out is not sent;
// a mode that is left out is never switched on. docs/flightgear.md describes the file.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "panelhost/world/world.h"

namespace panelhost {

struct SwitchMapping {
    std::string property = {};  // empty: the aircraft has none
    std::string on = "true";
    std::string off = "false";
};

struct AutopilotMapping {
    std::string name = {};
    // Targets: degrees magnetic, feet, feet per minute, knots.
    std::string headingBug = {};
    std::string altitude = {};
    std::string verticalSpeed = {};
    std::string airspeed = {};
    // The property of each axis, and its text for each mode.
    struct Axis {
        std::string property = {};
        std::string off = {};
        std::array<std::string, 3> modes = {};  // empty: no such mode
    };
    Axis lateral;   // heading, NAV, approach
    Axis vertical;  // altitude, vertical speed, glideslope
    Axis speed;     // airspeed
    SwitchMapping master;
    SwitchMapping avionics;
    int engines = 2;  // 1 to kToldEngines: asking for one it has not would give it one
    // The simulator's number of each tank, in the order of Aircraft::fuelGallons; -1: none.
    std::array<int, kTankCount> tanks = {2, 0, 3, 5, 1, 4, 6};
};

inline constexpr std::size_t kMostMappingBytes = 65536;

// Empty, with one line of what is wrong, for a file that is not one.
std::optional<AutopilotMapping> ReadMapping(std::string_view json, std::string& problem);

}  // namespace panelhost
