#include "displays/deviation_scale.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "displays/flag.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kPathReachPx = 26;
constexpr double kPathReachFt = 400;
constexpr double kPathFeetY = 31;    // below the centre
constexpr double kFeetRightPx = 10;  // of the scale; the screen's edge is near
constexpr double kFlagLeftPx = 14;
constexpr CanvasFont kPathFeetFont{"Arial", 9};

}  // namespace

void DrawScaleDots(Canvas& canvas, double x, double y, double dx, double dy) {
    constexpr double kRadius = 2.2;
    for (const double dot : {-1.0, -0.5, 0.5, 1.0}) {
        canvas.DrawEllipse({colour::White, 1.2}, x + dot * dx - kRadius, y + dot * dy - kRadius,
                           2 * kRadius, 2 * kRadius);
    }
    const double across = 6;  // the centre mark lies across the scale
    const bool upright = dx == 0;
    canvas.DrawLine({colour::White, 1.5}, x - (upright ? across : 0), y - (upright ? 0 : across),
                    x + (upright ? across : 0), y + (upright ? 0 : across));
}

void DrawScaleDiamond(Canvas& canvas, std::uint32_t argb, double x, double y) {
    constexpr double kHalf = 5.5;
    const std::array<CanvasPoint, 4> diamond{
        {{x, y - kHalf}, {x + kHalf, y}, {x, y + kHalf}, {x - kHalf, y}}};
    canvas.FillPolygon(argb, diamond);
    canvas.DrawPolyline({colour::Black, 0.8}, diamond, true);
}

bool ShowsPathDeviation() {
    return HasActiveWaypoint() && vnav.descentActive != 0;
}

TextBox PathDeviationBox(double x, double y) {
    return {x - 18, y - kPathReachPx - 6, 18 + kFeetRightPx, 2 * kPathReachPx + 24};
}

void DrawPathDeviation(Surface& surface, double x, double y) {
    const double aboveFt = ShownAircraft().altitudeFt - vnav.pathAltitude;
    if (!std::isfinite(aboveFt)) {
        DrawFlag(surface, "VDEV", colour::Red, x - kFlagLeftPx, y);
        return;
    }
    const double reach = std::clamp(aboveFt / kPathReachFt, -1.0, 1.0);
    DrawScaleDots(surface.canvas(), x, y, 0, kPathReachPx);
    DrawScaleDiamond(surface.canvas(), colour::Magenta, x, y + reach * kPathReachPx);
    surface.TextRight(FixedText("%+.0f", std::round(aboveFt / 10) * 10 + 0.0), kPathFeetFont,
                      colour::Magenta, x + kFeetRightPx, y + kPathFeetY);
}

void DrawGlideslopeDeviation(Surface& surface, double x, double y) {
    constexpr double kFullNeedle = 120;
    const double needle = ShownAircraft().nav1GlideslopeNeedle / kFullNeedle;
    if (!std::isfinite(needle)) {
        DrawFlag(surface, "GS", colour::Red, x - kFlagLeftPx, y);
        return;
    }
    DrawScaleDots(surface.canvas(), x, y, 0, kPathReachPx);
    DrawScaleDiamond(surface.canvas(), colour::Green, x,
                     y + std::clamp(needle, -1.0, 1.0) * kPathReachPx);
}

}  // namespace avq1
