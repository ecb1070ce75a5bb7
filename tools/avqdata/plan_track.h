// avqdata/plan_track.h - a plan's route as lines on a flat map of longitude and latitude.
//
// Legs follow the great circle by points at most 60 nm apart. A line ends at a gap of the route and
// at 180 degrees, where the next one begins on the other side.
#pragma once

#include <vector>

#include "avqdata/plan_exchange.h"

namespace avqdata {

using RouteLine = std::vector<avq1::LatLon>;  // two points at least

std::vector<RouteLine> RouteLines(const ExchangePlan& plan);

}  // namespace avqdata
