// displays/shown_values.h - what the map displays have in common in showing numbers.
#pragma once

#include <cmath>

#include "geometry/geometry.h"

namespace avq1 {

inline constexpr double kMovingKt = 25;  // no times to go at or below this ground speed

// Not beyond what any instrument shows, and a number at all.
inline bool CanShow(double value) {
    return std::isfinite(value) && std::abs(value) < 100000;
}

// Whole degrees, 1 to 360: a compass direction is never shown as 000.
inline double Compass360(double directionMag) {
    const double whole = PositiveModulo(std::round(directionMag), 360.0);
    return whole < 1 ? 360.0 : whole;
}

}  // namespace avq1
