// displays/traffic/tcas.h - the traffic gauge: the targets around the own aircraft, heading up.
//
// Design 266 x 230, scaled to the surface. Its range is that of the EHSI's traffic mode, which the
// EHSI's control panel sets. Clears only when the target or the avionics power says so.
#pragma once

#include "drawing/surface.h"

namespace avq1 {

void DrawTcas(const DrawTarget& target);

}  // namespace avq1
