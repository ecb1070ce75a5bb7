// displays/map/map_wind.h - the wind of the map-type displays: an arrow the way it blows as seen on
// the picture, and its direction (magnetic, where from) and knots.
#pragma once

#include "displays/map/map_compass.h"
#include "drawing/surface.h"

namespace avq1 {

struct WindPlace {
    CanvasPoint arrowCentre;
    double arrowHalfPx = 7;
    CanvasPoint text;
    CanvasFont font;
    int knotsWidth = 0;  // characters, blanks behind
};

// Dashes for a lost value; nothing below 1 kt.
void DrawWind(Surface& surface, const MapCompass& rose, const WindPlace& place);

}  // namespace avq1
