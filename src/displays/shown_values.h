// displays/shown_values.h - what the map displays have in common in showing numbers.
#pragma once

#include <cmath>

#include "drawing/fixed_text.h"
#include "geometry/geometry.h"

namespace avq1 {

inline constexpr double kMovingKt = 25;  // no track at or below this ground speed

// Not beyond what any instrument shows, and a number at all.
inline bool CanShow(double value) {
    return std::isfinite(value) && std::abs(value) < 100000;
}

// Whole degrees, 1 to 360: a compass direction is never shown as 000.
inline double Compass360(double directionMag) {
    const double whole = PositiveModulo(std::round(directionMag), 360.0);
    return whole < 1 ? 360.0 : whole;
}

// " 1:07", the predicted hours and minutes to the waypoint flown to; "--:--" when they are not
// known, and without a position or speed.
FixedText TimeToGoText();

}  // namespace avq1
