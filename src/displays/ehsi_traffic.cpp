// The EHSI's traffic presentation: range marks and targets around the own aircraft.
#include <cmath>

#include "displays/ehsi_picture.h"
#include "displays/flag.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

constexpr double kOuterRadius = 100;
constexpr double kTickInnerRadius = 90;
constexpr double kOuterDotPx = 5;
constexpr double kRingDotPx = 3;
constexpr CanvasPoint kRangeTextOffset{80, 94};

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

void Dot(Canvas& canvas, const CanvasPoint& at, double sizePx) {
    canvas.FillEllipse(colour::White, at.x - sizePx / 2, at.y - sizePx / 2, sizePx, sizePx);
}

void DrawOuterMarks(Canvas& canvas, const CanvasPoint& centre) {
    for (int bearing = 0; bearing < 360; bearing += 10) {
        const CanvasPoint outer = OnCircle(centre, kOuterRadius, bearing);
        if (bearing % 30 == 0) {
            const CanvasPoint inner = OnCircle(centre, kTickInnerRadius, bearing);
            canvas.DrawLine({colour::White, 1.5}, inner.x, inner.y, outer.x, outer.y);
        } else {
            Dot(canvas, outer, kOuterDotPx);
        }
    }
}

void DrawTargets(EhsiPicture& picture, const CanvasPoint& centre) {
    constexpr double kTargetsRadius = 90;  // stands for the range
    picture.canvas.SaveState();
    picture.canvas.BeginClip();
    picture.canvas.ClipEllipse(centre.x - kOuterRadius, centre.y - kOuterRadius, 2 * kOuterRadius,
                               2 * kOuterRadius);
    picture.canvas.EndClip();
    DrawTraffic(picture.surface,
                {kTargetsRadius, ehsi.ehsiMode8Range, static_cast<int>(centre.x),
                 static_cast<int>(centre.y)},
                TrafficLayout::Map);
    picture.canvas.RestoreState();
}

}  // namespace

void DrawTrafficPresentation(EhsiPicture& picture) {
    const CanvasPoint centre = kFullCompass.centre;
    DrawOuterMarks(picture.canvas, centre);
    for (const TwoMileRing& ring : kTwoMileRings) {
        if (ring.rangeNm == ehsi.ehsiMode8Range) {
            for (int bearing = 0; bearing < 360; bearing += 30) {
                Dot(picture.canvas, OnCircle(centre, ring.radius, bearing), kRingDotPx);
            }
        }
    }
    picture.surface.Text(FixedText("%2.0f", ehsi.ehsiMode8Range), {"Arial", 12}, colour::White,
                         centre.x + kRangeTextOffset.x, centre.y + kRangeTextOffset.y);
    if (!traffic.sourceFound) {
        picture.surface.Text("TCAS OFF", {"Arial", 10}, colour::Amber, 2, 2);
    }
    DrawAircraftSymbol(picture.surface, centre.x, centre.y, colour::White);
    DrawTargets(picture, centre);
    if (!std::isfinite(ShownAircraft().trueHeading)) {
        DrawFlag(picture.surface, "HDG", colour::Red, centre.x, centre.y - 36);
    }
}

}  // namespace avq1
