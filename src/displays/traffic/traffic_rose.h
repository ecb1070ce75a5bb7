// displays/traffic/traffic_rose.h - the traffic picture that the EHSI and the traffic gauge share:
// marks around the own aircraft, dots where 2 nm lie, the targets inside, and what is missing.
//
// Design pixels around the centre; the aircraft's heading is up.
#pragma once

#include <cstdint>

#include "drawing/surface.h"
#include "traffic/targets.h"

namespace avq1 {

struct TrafficRose {
    CanvasPoint centre;
    double rangeNm = 0;
    std::uint32_t argb = 0;  // of marks and dots
    double markWidthPx = 0;
};

void DrawTrafficMarks(Surface& surface, const TrafficRose& rose);

// The targets, and in words that there is no source or no heading.
void DrawTrafficTargets(Surface& surface, const TrafficRose& rose, TrafficLayout layout);

}  // namespace avq1
