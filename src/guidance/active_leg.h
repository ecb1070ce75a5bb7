// guidance/active_leg.h - the leg being flown, as every step of the lateral guidance sees it.
//
// Positions are decimal degrees, distances nm, courses true. A discontinuity has no position: there
// is no leg to one, and the leg after one begins at the aircraft, so that its waypoint is flown to
// directly.
#pragma once

#include "geometry/geometry.h"

namespace avq1 {

struct ActiveLeg {
    LatLon from;
    LatLon to;
};

// False, leaving `leg` unchanged, without an active waypoint that has a position.
bool FindActiveLeg(ActiveLeg& leg);

struct GreatCircle {
    double distanceNm = 0;
    double courseTrue = 0;  // initial, in [1, 360]
};

// The two great circles that several steps of a frame need: along the leg, and from the aircraft to
// the waypoint. Each remembers its ends and is evaluated again only when one has moved.
const GreatCircle& AlongLeg(const ActiveLeg& leg);
const GreatCircle& FromAircraft(const LatLon& waypoint);

}  // namespace avq1
