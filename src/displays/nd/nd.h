// displays/nd/nd.h - the navigation display's picture, in the seven modes of its control panel.
//
// Design 244 x 302, scaled to the surface. Modes 1 and 2 are the full compass with the course of
// the receiver or of the route; 3 and 4 the same on an arc; 5 the map ahead, 6 the map around the
// aircraft, 7 the plan with north up. Changes nothing but the lists of records around
// the aircraft; without valid data the picture says so.
#pragma once

#include "drawing/surface.h"

namespace avq1 {

// Clears only when the target or the avionics power says so.
void DrawNd(const DrawTarget& target);

}  // namespace avq1
