// displays/eadi.h - the attitude display: attitude, flight director, annunciations, deviations.
//
// Nothing is kept between draws: everything shown comes from the snapshot, the guidance state and
// the settings, read once a draw. A value that is not a number leaves its place with a flag.
#pragma once

#include "drawing/surface.h"

namespace avq1 {

// Clears only when the target or the avionics power says so.
void DrawEadi(const DrawTarget& target);

}  // namespace avq1
