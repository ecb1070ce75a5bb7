// The EHSI's traffic presentation: range marks and targets around the own aircraft.
#include "displays/ehsi/ehsi_picture.h"
#include "displays/traffic/traffic_rose.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"

namespace avq1 {

void DrawTrafficPresentation(EhsiPicture& picture) {
    constexpr CanvasPoint kRangeTextOffset{80, 94};
    const CanvasPoint centre = kFullCompass.centre;
    const TrafficRose rose{centre, ehsi.ehsiMode8Range, colour::White, 1.5};
    DrawTrafficMarks(picture.surface, rose);
    picture.surface.Text(FixedText("%2.0f", ehsi.ehsiMode8Range), {"Arial", 12}, colour::White,
                         centre.x + kRangeTextOffset.x, centre.y + kRangeTextOffset.y);
    DrawAircraftSymbol(picture.surface, centre.x, centre.y, colour::White);
    DrawTrafficTargets(picture.surface, rose, TrafficLayout::Map);
}

}  // namespace avq1
