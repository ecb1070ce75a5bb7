// displays/eadi/eadi.h - the attitude display: attitude, flight director, annunciations,
// deviations.
//
// Nothing is kept between draws: what is shown comes from the snapshot, the navigation flags and
// the flight director's switch in the simulator, the guidance state, the settings and the EHSI's
// decision height. A value that is lost leaves its place to a flag.
#pragma once

#include "drawing/surface.h"

namespace avq1 {

// Clears only when the target or the avionics power says so.
void DrawEadi(const DrawTarget& target);

}  // namespace avq1
