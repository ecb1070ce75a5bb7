#include "displays/traffic/tcas.h"

#include <array>
#include <cstddef>

#include "displays/ehsi/ehsi.h"
#include "displays/traffic/traffic_rose.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kWidth = 266;
constexpr double kHeight = 230;
constexpr CanvasPoint kCentre{129, 114};
constexpr CanvasPoint kRangeTextOffset{40, 94};
constexpr CanvasFont kRangeFont{"Arial", 15};

// The right half of an airliner seen from above, from nose to tail; the left half mirrors it.
constexpr CanvasPoint kRightHalf[] = {{0.8, -12}, {1.5, -10.5}, {1.7, -8},  {1.7, -4},
                                      {5, -1.5},  {12, 3.5},    {12, 5},    {11.5, 5.2},
                                      {5, 3},     {1.7, 2.5},   {1.4, 7},   {4.5, 9.8},
                                      {4.5, 11},  {1.2, 10.2},  {0.4, 11.5}};
constexpr std::size_t kOutlinePoints = 2 * std::size(kRightHalf);
static_assert(kOutlinePoints == 30);

void DrawOwnAircraft(Canvas& canvas) {
    std::array<CanvasPoint, kOutlinePoints> outline;
    for (std::size_t i = 0; i < std::size(kRightHalf); ++i) {
        const CanvasPoint& point = kRightHalf[i];
        outline[i] = {kCentre.x + point.x, kCentre.y + point.y};
        outline[kOutlinePoints - 1 - i] = {kCentre.x - point.x, kCentre.y + point.y};
    }
    canvas.DrawPolyline({colour::White, 1.0}, outline, true);
}

// The range, underlined.
void DrawRange(Surface& surface) {
    const FixedText text("%2.0f", ehsi.ehsiMode8Range);
    const double left = kCentre.x + kRangeTextOffset.x;
    const double top = kCentre.y + kRangeTextOffset.y;
    const CanvasSize size = surface.canvas().MeasureText(text, kRangeFont);
    surface.Text(text, kRangeFont, colour::Magenta, left, top);
    surface.canvas().FillRectangle(colour::Purple, left, top + size.height, size.width, 1.5);
}

}  // namespace

void DrawTcas(const DrawTarget& target) {
    Surface surface(target, kWidth, kHeight, avionicsPower != 0);
    if (!surface.ShouldDraw()) {
        return;
    }
    const TrafficRose rose{kCentre, ehsi.ehsiMode8Range, colour::Blue, 2.0};
    DrawTrafficMarks(surface, rose);
    DrawRange(surface);
    DrawOwnAircraft(surface.canvas());
    DrawTrafficTargets(surface, rose, TrafficLayout::TrafficGauge);
}

}  // namespace avq1
