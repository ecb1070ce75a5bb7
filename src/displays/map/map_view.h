// displays/map/map_view.h - places positions on a map whose centre is the aircraft.
//
// Distances and courses are those guidance flies by; up is the aircraft's heading, in degrees true.
// A position that is not finite has no place, and a view from a lost one is not usable.
#pragma once

#include "drawing/surface.h"

namespace avq1 {

struct MapView {
    double centreX = 0;  // design pixels
    double centreY = 0;
    double pxPerNm = 0;
    double upTrue = 0;  // [0, 360)
    double latitude = 0;
    double longitude = 0;
};

// The view from the aircraft: `radiusPx` pixels are `rangeNm`.
MapView ViewFromAircraft(double centreX, double centreY, double radiusPx, double rangeNm);

bool IsUsable(const MapView& view);

CanvasPoint PlaceOnMap(const MapView& view, double latitude, double longitude);
CanvasPoint PlaceByCourse(const MapView& view, double courseTrue, double distanceNm);

}  // namespace avq1
