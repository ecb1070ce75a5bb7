#include "displays/map/map_station.h"

#include <cmath>

#include "displays/map/map_nearby.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

const PointRecord* ReceivedStation(const ReceiverState& receivers) {
    constexpr double kFeetPerNm = 6076.115;
    constexpr double kSearchNm = 170;
    constexpr double kBearingToleranceDeg = 3;
    constexpr double kNearNm = 3;  // bearings tell little nearer than this
    const AircraftState& shown = ShownAircraft();
    const double dmeNm = shown.nav1DmeNm;
    if (!receivers.nav1Signal || receivers.localizer || !(dmeNm > 0 && dmeNm < kSearchNm)) {
        return nullptr;
    }
    const LatLon here{shown.latitude, shown.longitude};
    const double bearingTrue =
        shown.headingMag + shown.nav1RelativeBearing + shown.magneticVariation;
    const PointList& list = NavaidsAround(here, kSearchNm);
    const PointRecord* best = nullptr;
    double bestErrorNm = 0.5 + 0.01 * dmeNm;
    for (std::int32_t i = 1; i <= list.count; ++i) {
        const bool inReach = std::abs(list[i].latitude - here.latitude) * 60 <= dmeNm + 1;
        if (list[i].kind != PointKind::Vor || !inReach) {
            continue;
        }
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(here.latitude, here.longitude, list[i].latitude, list[i].longitude,
                          distanceNm, courseTrue);
        const double errorNm =
            std::abs(std::hypot(distanceNm, shown.altitudeFt / kFeetPerNm) - dmeNm);
        const double offDeg =
            std::abs(PositiveModulo(courseTrue - bearingTrue + 180.0, 360.0) - 180.0);
        if (errorNm < bestErrorNm && (offDeg <= kBearingToleranceDeg || distanceNm < kNearNm)) {
            bestErrorNm = errorNm;
            best = &list[i];
        }
    }
    return best;
}

bool HasStationPlace(const ReceiverState& receivers) {
    return receivers.nav1Signal && ShownAircraft().nav1DmeNm > 0 && !receivers.localizer;
}

void DrawReceivedStation(const MapFrame& frame, const MapCompass& rose,
                         const PointRecord* station) {
    constexpr double kCourseDashes[] = {6, 4};
    constexpr double kHalfWidth = 5;
    const double fromAircraftPx = ShownAircraft().nav1DmeNm * frame.view.pxPerNm;
    const double turn = ShownAircraft().nav1RelativeBearing * kDegToRad;
    const CanvasPoint at{rose.centre.x + fromAircraftPx * std::sin(turn),
                         rose.centre.y - fromAircraftPx * std::cos(turn)};
    const double farPx = fromAircraftPx + 2 * rose.radius;
    if (!std::isfinite(at.x + at.y + farPx)) {
        return;
    }
    frame.surface.Turned(at.x, at.y, rose.FromUp(ShownAircraft().nav1Course), [&] {
        frame.surface.canvas().DrawLine({colour::Green, 1.0, kCourseDashes}, 0, -farPx, 0, farPx);
    });
    Symbol symbol{SymbolCode::Station};
    symbol.style = SymbolStyle::Green;
    DrawSymbol(frame.surface, at.x, at.y, symbol);
    if (station != nullptr && NearMap(frame, at) &&
        !StandsOnMap(frame, station->ident, station->latitude, station->longitude)) {
        AddMapName(frame, {at, kHalfWidth, station->ident, colour::Green, NameRank::WhereFree,
                           station->latitude, station->longitude});
    }
}

}  // namespace avq1
