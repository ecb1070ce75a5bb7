// The EHSI's map: the range mark and the layers it shares with the other maps.
#include <cmath>

#include "displays/boundaries.h"
#include "displays/ehsi_picture.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "geometry/geometry.h"

namespace avq1 {
namespace {

constexpr CanvasFont kRangeFont{"Arial", 9};
constexpr double kRangeDashes[] = {3, 4};

}  // namespace

void DrawRangeMark(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    const double radius = compass.mapRadius;
    const CanvasPen pen{colour::Grey, 1.0, kRangeDashes};
    picture.canvas.DrawArc(pen, {compass.centre.x - radius, compass.centre.y - radius},
                           {2 * radius, 2 * radius}, -90 - compass.halfAngleDeg,
                           2 * compass.halfAngleDeg);
    // on the ring, left of the aircraft: behind it on the full compass, ahead on the arc
    const double bearing = picture.fullCompass ? -135 : -40;
    const double turn = bearing * kDegToRad;
    const FixedText text("%g", ehsi.ehsiRange);
    const CanvasSize size = picture.canvas.MeasureText(text, kRangeFont);
    const TextBox box{compass.centre.x + radius * std::sin(turn) - size.width / 2,
                      compass.centre.y - radius * std::cos(turn) - size.height / 2, size.width,
                      size.height};
    picture.mapTexts.Claim(box);
    picture.canvas.FillRectangle(colour::Black, box.x, box.y, box.width, box.height);
    picture.surface.Text(text, kRangeFont, colour::Grey, box.x, box.y);
}

void DrawBoundaryLayer(EhsiPicture& picture) {
    DrawAtcBoundaries(FrameOf(picture));
}

void DrawBoundaryNameLayer(EhsiPicture& picture) {
    DrawAtcBoundaryNames(FrameOf(picture));
}

void DrawRunwayPatternLayer(EhsiPicture& picture) {
    DrawRunwayPattern(FrameOf(picture), {picture.compass.mapRadius});
}

void DrawRouteLayer(EhsiPicture& picture) {
    DrawActiveRoute(FrameOf(picture));
}

void DrawHoldLayer(EhsiPicture& picture) {
    DrawHoldPatterns(FrameOf(picture));
}

void DrawProfileLayer(EhsiPicture& picture) {
    DrawProfileMarkers(FrameOf(picture));
}

}  // namespace avq1
