#include "displays/map/map_wind.h"

#include <cmath>

#include "displays/shown_values.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

void DrawWind(Surface& surface, const MapCompass& rose, const WindPlace& place) {
    const double windKt = ShownAircraft().windSpeedKt;
    const double fromMag = ShownDerived().windDirectionMag;
    const double turn = rose.FromUp(fromMag + 180.0);
    if (!CanShow(windKt) || !std::isfinite(turn)) {
        surface.Text("---/---", place.font, colour::White, place.text.x, place.text.y);
        return;
    }
    if (windKt < 1) {
        return;
    }
    CanvasPen pen{colour::White, 1.2};
    pen.arrowAtEnd = true;
    surface.Turned(place.arrowCentre.x, place.arrowCentre.y, turn, [&] {
        surface.canvas().DrawLine(pen, 0, place.arrowHalfPx, 0, -place.arrowHalfPx);
    });
    surface.Text(FixedText("%03.0f/%-*.0f", Compass360(fromMag), place.knotsWidth, windKt),
                 place.font, colour::White, place.text.x, place.text.y);
}

}  // namespace avq1
