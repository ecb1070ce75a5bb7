// traffic/targets.h - the aircraft around this one as the traffic source told last, and their
// drawing on every display that shows them.
//
// At most five targets; without a source none. Bearings are degrees true, ranges nm. The traffic
// source's reader writes the record, displays read it.
#pragma once

#include <array>
#include <cstdint>

#include "drawing/surface.h"

namespace avq1 {

struct TrafficTarget {
    double bearingTrue = 0;
    double rangeNm = 0;
    double relativeAltitudeHundreds = 0;  // of feet above the aircraft
    char trendCode = '-';                 // 'v' descending, '-' level, '^' climbing
    char threatCode = 'O';  // 'O' other, 'P' proximate, 'T' traffic, 'R' resolution advisory
};

inline constexpr std::int32_t kTrafficCapacity = 5;

struct TrafficTargets {
    std::array<TrafficTarget, kTrafficCapacity> items;
    std::int32_t count = 0;
    bool sourceFound = false;  // without it displays say that traffic is off
};

extern TrafficTargets traffic;

enum class TrafficLayout : std::int32_t { Map = 2, TrafficGauge = 5 };

// Where targets are drawn: the aircraft at the centre, its heading up.
struct TrafficView {
    double radiusPx = 0;  // stands for the range
    double rangeNm = 0;
    int centreX = 0;
    int centreY = 0;
};

// Draws the targets within the altitude band of the settings; the caller clips. A target far beyond
// the range, or whose values are not finite, is left out.
void DrawTraffic(Surface& surface, const TrafficView& view, TrafficLayout layout);

}  // namespace avq1
