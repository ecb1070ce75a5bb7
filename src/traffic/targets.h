// traffic/targets.h - the aircraft around this one as an outside traffic module tells of them, and
// their drawing on every display that shows them.
//
// The traffic module (platform/traffic_interface.h) is looked for at each drawing until it is
// found, twenty times at most; then its block is read whenever its counter has changed. Nothing in
// it is trusted: what is not finite or in no range is not drawn. At most five targets; without a
// source none. Bearings are degrees true in [0, 360), ranges nm.
#pragma once

#include <array>
#include <cstdint>
#include <optional>

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
};

inline constexpr std::int32_t kTrafficAttempts = 20;
inline constexpr std::int32_t kNoTrafficUpdate = -1;

// What is known of the traffic module. A block once obtained is kept.
struct TrafficSource {
    void* block = nullptr;
    std::int32_t attempts = 0;
    std::int32_t lastUpdate = kNoTrafficUpdate;  // counter of the update taken last
    std::int32_t result = 0;                     // slot of the last query, 1 without a module
};

extern TrafficTargets traffic;
extern TrafficSource trafficSource;

// Without a source displays say that traffic is off.
inline bool HasTrafficSource() {
    return trafficSource.block != nullptr;
}

// The traffic module's block; null, with 1 in `result`, without such a module.
void* QueryTrafficModule(std::int32_t& result);

// Finds the source if need be, and takes what it has new.
void RefreshTargets();

enum class TrafficLayout : std::int32_t { Map = 2, TrafficGauge = 5 };

// Where targets are drawn: the aircraft at the centre.
struct TrafficView {
    double radiusPx = 0;  // stands for the range
    double rangeNm = 0;
    int centreX = 0;
    int centreY = 0;
    std::optional<double> upTrue = {};  // without it the aircraft's heading is up
};

// Refreshes and draws the targets within the altitude band of the settings, the most threatening on
// top; the caller clips. A target far beyond the range, or whose values are not finite, is left
// out.
void DrawTraffic(Surface& surface, const TrafficView& view, TrafficLayout layout);

}  // namespace avq1
