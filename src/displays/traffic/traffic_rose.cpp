#include "displays/traffic/traffic_rose.h"

#include <cmath>

#include "displays/flag.h"
#include "drawing/palette.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kOuterRadius = 100;
constexpr double kTickInnerRadius = 90;
constexpr double kTargetsRadius = 90;  // stands for the range
constexpr double kOuterDotPx = 5;
constexpr double kRingDotPx = 3;

struct TwoMileRing {
    double rangeNm;
    double radius;
};

// Where 2 nm lie; other ranges have no ring.
constexpr TwoMileRing kTwoMileRings[] = {{5, 40}, {10, 20}, {20, 10}};

CanvasPoint OnCircle(const CanvasPoint& centre, double radius, double bearing) {
    return {centre.x + radius * std::sin(bearing * kDegToRad),
            centre.y - radius * std::cos(bearing * kDegToRad)};
}

void Dot(Canvas& canvas, const CanvasPoint& at, double sizePx, std::uint32_t argb) {
    canvas.FillEllipse(argb, at.x - sizePx / 2, at.y - sizePx / 2, sizePx, sizePx);
}

}  // namespace

void DrawTrafficMarks(Surface& surface, const TrafficRose& rose) {
    Canvas& canvas = surface.canvas();
    for (int bearing = 0; bearing < 360; bearing += 10) {
        const CanvasPoint outer = OnCircle(rose.centre, kOuterRadius, bearing);
        if (bearing % 30 == 0) {
            const CanvasPoint inner = OnCircle(rose.centre, kTickInnerRadius, bearing);
            canvas.DrawLine({rose.argb, rose.markWidthPx}, inner.x, inner.y, outer.x, outer.y);
        } else {
            Dot(canvas, outer, kOuterDotPx, rose.argb);
        }
    }
    for (const TwoMileRing& ring : kTwoMileRings) {
        if (ring.rangeNm == rose.rangeNm) {
            for (int bearing = 0; bearing < 360; bearing += 30) {
                Dot(canvas, OnCircle(rose.centre, ring.radius, bearing), kRingDotPx, rose.argb);
            }
        }
    }
}

void DrawTrafficTargets(Surface& surface, const TrafficRose& rose, TrafficLayout layout) {
    Canvas& canvas = surface.canvas();
    canvas.SaveState();
    canvas.ClipEllipse(rose.centre.x - kOuterRadius, rose.centre.y - kOuterRadius, 2 * kOuterRadius,
                       2 * kOuterRadius);
    canvas.EndClip();
    DrawTraffic(surface,
                {kTargetsRadius, rose.rangeNm, static_cast<int>(rose.centre.x),
                 static_cast<int>(rose.centre.y)},
                layout);
    canvas.RestoreState();
    if (!HasTrafficSource()) {
        surface.Text("TCAS OFF", {"Arial", 10}, colour::Amber, 2, 2);
    }
    if (!std::isfinite(ShownAircraft().trueHeading)) {
        DrawFlag(surface, "HDG", colour::Red, rose.centre.x, rose.centre.y - 36);
    }
}

}  // namespace avq1
