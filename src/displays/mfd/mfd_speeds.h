// displays/mfd/mfd_speeds.h - the speeds of the take-off and landing pages: rows of the aircraft's
// reference values, which the left knob changes. Knots; 0 is not set.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "displays/mfd/mfd.h"
#include "settings/aircraft_performance.h"

namespace avq1 {

struct MfdSpeedRow {
    const char* label;
    std::int32_t AircraftPerformance::*value;
    std::string AircraftPerformance::*flaps;  // text behind the label; null for none
};

// Of a page that has speeds.
std::span<const MfdSpeedRow> MfdSpeedRows(MfdPage page);

// One knot up, below 250, or down, above 60; a speed that is not set begins at 100.
void StepMfdSpeed(bool up);

}  // namespace avq1
