// The dashed ring that tells a map's range.
#include <cmath>

#include "displays/map/map_layers.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "geometry/geometry.h"

namespace avq1 {

void DrawRangeRing(const MapFrame& frame, const RangeRing& ring) {
    constexpr CanvasFont kFont{"Arial", 9};
    constexpr double kRoomPx = 2;
    const CanvasPen pen{ring.argb, 1.0, ring.dashes};
    Canvas& canvas = frame.surface.canvas();
    const FixedText text("%g", ring.rangeNm);
    const CanvasSize size = canvas.MeasureText(text, kFont);
    const double turn = ring.numberAtDeg * kDegToRad;
    const CanvasPoint middle{ring.centre.x + ring.radius * std::sin(turn),
                             ring.centre.y - ring.radius * std::cos(turn)};
    const double openDeg =
        (std::hypot(size.width, size.height) / 2 + kRoomPx) / ring.radius / kDegToRad;
    const auto arc = [&](double fromDeg, double toDeg) {
        canvas.DrawArc(pen, {ring.centre.x - ring.radius, ring.centre.y - ring.radius},
                       {2 * ring.radius, 2 * ring.radius}, fromDeg - 90, toDeg - fromDeg);
    };
    arc(-ring.halfAngleDeg, ring.numberAtDeg - openDeg);
    arc(ring.numberAtDeg + openDeg, ring.halfAngleDeg);
    const TextBox box{middle.x - size.width / 2, middle.y - size.height / 2, size.width,
                      size.height};
    TakeFixedPlace(frame, box);
    frame.surface.Text(text, kFont, ring.argb, box.x, box.y);
}

}  // namespace avq1
