#include "drawing/symbols.h"

#include <array>

namespace avq1 {

void DrawWaypointStar(Surface& surface, double x, double y, std::uint32_t argb) {
    constexpr double kOuter = kWaypointStarRadius;
    constexpr double kInner = 1.4;
    const std::array<CanvasPoint, 8> corners{{{x, y - kOuter},
                                              {x + kInner, y - kInner},
                                              {x + kOuter, y},
                                              {x + kInner, y + kInner},
                                              {x, y + kOuter},
                                              {x - kInner, y + kInner},
                                              {x - kOuter, y},
                                              {x - kInner, y - kInner}}};
    surface.canvas().DrawPolyline({argb, 1.2}, corners, true);
}

void DrawAircraftSymbol(Surface& surface, double x, double y, std::uint32_t argb) {
    const std::array<CanvasPoint, 6> lines{
        {{x, y - 11}, {x, y + 12}, {x - 12, y}, {x + 12, y}, {x - 5, y + 10}, {x + 5, y + 10}}};
    surface.canvas().DrawSegments({argb, 2.0}, lines);
}

}  // namespace avq1
