#include "displays/map/map_view.h"

#include <cmath>

#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

MapView ViewFromAircraft(double centreX, double centreY, double radiusPx, double rangeNm) {
    const AircraftState& shown = ShownAircraft();
    return {centreX,
            centreY,
            radiusPx / rangeNm,
            PositiveModulo(shown.headingMag + shown.magneticVariation, 360.0),
            shown.latitude,
            shown.longitude};
}

bool IsUsable(const MapView& view) {
    return std::isfinite(view.pxPerNm) && std::isfinite(view.upTrue) &&
           std::isfinite(view.latitude) && std::isfinite(view.longitude);
}

CanvasPoint PlaceOnMap(const MapView& view, double latitude, double longitude) {
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(view.latitude, view.longitude, latitude, longitude, distanceNm, courseTrue);
    return PlaceByCourse(view, courseTrue, distanceNm);
}

CanvasPoint PlaceByCourse(const MapView& view, double courseTrue, double distanceNm) {
    CanvasPoint point;
    PolarToScreen(view.upTrue, courseTrue, view.centreX, view.centreY, distanceNm * view.pxPerNm,
                  point.x, point.y);
    return point;
}

}  // namespace avq1
