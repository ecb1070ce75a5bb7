// guidance/active_leg.h - the leg being flown, as every step of the lateral guidance sees it.
//
// Positions are decimal degrees. A discontinuity has no position: there is no leg to one, and the
// leg after one begins at the aircraft, so that its waypoint is flown to directly.
#pragma once

#include "geometry/geometry.h"

namespace avq1 {

struct ActiveLeg {
    LatLon from;
    LatLon to;
};

// False, leaving `leg` unchanged, without an active waypoint that has a position.
bool FindActiveLeg(ActiveLeg& leg);

}  // namespace avq1
