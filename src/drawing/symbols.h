// drawing/symbols.h - the symbols the map-type displays share; each is centred on (x, y).
//
// Symbols can be told apart without colour. Sizes are design pixels of the display.
#pragma once

#include <cstdint>

#include "drawing/surface.h"

namespace avq1 {

inline constexpr double kWaypointStarRadius = 5.0;

// A flight plan waypoint: a four-pointed star, outlined.
void DrawWaypointStar(Surface& surface, double x, double y, std::uint32_t argb);

// The own aircraft seen from above, nose up.
void DrawAircraftSymbol(Surface& surface, double x, double y, std::uint32_t argb);

}  // namespace avq1
