// Records of the navigation database on the map: stations, airports, waypoints.
#include <algorithm>
#include <cmath>
#include <vector>

#include "displays/map/map_layers.h"
#include "displays/map/map_nearby.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

// Where records crowd, the nearest come first and a symbol that would cover another of its kind is
// left out; beyond these numbers the map could not be read.
constexpr std::size_t kMostSymbols = 160;
constexpr std::size_t kMostIdents = 80;
constexpr double kSymbolHalfWidth = 5;
constexpr double kSymbolReach = 7;          // with what an airport's runway adds
constexpr double kApartPx = 3;              // half-width of a symbol's own place among its kind
constexpr double kApartPxPerNm = 1.0 / 64;  // and more of it the farther the map reaches

struct SeenPoint {
    double distanceNm;
    CanvasPoint at;
    const PointRecord* record;
};

// Of the layer being drawn; kept, so that a frame allocates nothing.
std::vector<SeenPoint> seen;

TextBox PlaceOf(const SeenPoint& point, double halfWidth) {
    return {point.at.x - halfWidth, point.at.y - halfWidth, 2 * halfWidth, 2 * halfWidth};
}

// Finds what of the list stands on the map, nearest first.
void FindSeen(const MapFrame& frame, const PointList& list) {
    seen.clear();
    if (!IsUsable(frame.view)) {
        return;
    }
    const MapView& view = frame.view;
    const double reachDeg = frame.rangeNm / 60.0;
    for (std::int32_t i = 1; i <= list.count; ++i) {
        const PointRecord& record = list[i];
        if (std::abs(record.latitude - view.latitude) > reachDeg) {
            continue;
        }
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(view.latitude, view.longitude, record.latitude, record.longitude,
                          distanceNm, courseTrue);
        if (distanceNm > frame.rangeNm) {
            continue;
        }
        const CanvasPoint at = PlaceByCourse(view, courseTrue, distanceNm);
        if (NearMap(frame, at)) {
            seen.push_back({distanceNm, at, &record});
        }
    }
    const auto nearer = [](const SeenPoint& a, const SeenPoint& b) {
        return a.distanceNm < b.distanceNm;
    };
    std::sort(seen.begin(), seen.end(), nearer);
}

// Leaves those that do not cover each other and are not shown by another layer.
void ThinSeen(const MapFrame& frame) {
    TextBoxes places;
    const double apart = kApartPx + kApartPxPerNm * frame.rangeNm;
    std::size_t kept = 0;
    for (std::size_t i = 0; i < seen.size() && kept < kMostSymbols; ++i) {
        const SeenPoint point = seen[i];
        const TextBox place = PlaceOf(point, apart);
        const PointRecord& record = *point.record;
        if (places.IsFree(place) &&
            !StandsOnMap(frame, record.ident, record.latitude, record.longitude)) {
            places.Take(place);
            seen[kept++] = point;
        }
    }
    seen.resize(kept);
}

// Clipping costs more than drawing: only the symbols at the map's edge are clipped.
template <class StyleOf>
void DrawSymbolsWhere(const MapFrame& frame, bool inside, SymbolCode code, StyleOf styleOf) {
    Symbol symbol{code};
    for (const SeenPoint& point : seen) {
        if (InsideMap(frame, PlaceOf(point, kSymbolReach)) == inside) {
            symbol.style = styleOf(*point.record);
            DrawSymbol(frame.surface, point.at.x, point.at.y, symbol);
        }
    }
}

// Clipping costs more than drawing: only the symbols at the map's edge are clipped.
template <class StyleOf>
void DrawSymbols(const MapFrame& frame, SymbolCode code, StyleOf styleOf) {
    DrawSymbolsWhere(frame, true, code, styleOf);
    frame.surface.canvas().SaveState();
    ClipToMap(frame);
    DrawSymbolsWhere(frame, false, code, styleOf);
    frame.surface.canvas().RestoreState();
}

// The seen points' symbols; the nearest are to be named where there is room.
template <class StyleOf>
void DrawSeen(const MapFrame& frame, SymbolCode code, std::uint32_t identColour, StyleOf styleOf) {
    ThinSeen(frame);
    DrawSymbols(frame, code, styleOf);
    for (std::size_t i = 0; i < seen.size(); ++i) {
        const PointRecord& record = *seen[i].record;
        AddMapName(frame, {seen[i].at, kSymbolHalfWidth, record.ident, identColour,
                           i < kMostIdents ? NameRank::WhereFree : NameRank::None, record.latitude,
                           record.longitude});
    }
}

using ListAround = const PointList& (*)(const LatLon& mapCentre, double rangeNm);

// The lists are those around the aircraft, which a map may be centred away from.
const PointList& ListFor(const MapFrame& frame, ListAround around) {
    const LatLon centre{frame.view.latitude, frame.view.longitude};
    const double awayNm = GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                centre.latitude, centre.longitude);
    return around(centre, frame.rangeNm + awayNm);
}

SymbolStyle OwnStyle(const PointRecord& /*record*/) {
    return SymbolStyle::Own;
}

}  // namespace

void DrawNearbyStations(const MapFrame& frame) {
    FindSeen(frame, ListFor(frame, NavaidsAround));
    DrawSeen(frame, SymbolCode::Station, colour::Cyan, [](const PointRecord& record) {
        return record.kind == PointKind::Vor ? SymbolStyle::Own : SymbolStyle::Ndb;
    });
}

void DrawNearbyAirports(const MapFrame& frame) {
    FindSeen(frame, ListFor(frame, AirportsAround));
    DrawSeen(frame, SymbolCode::Airport, colour::Cyan, OwnStyle);
}

void DrawNearbyFixes(const MapFrame& frame) {
    FindSeen(frame, ListFor(frame, FixesAround));
    DrawSeen(frame, SymbolCode::Fix, colour::Blue, OwnStyle);
}

}  // namespace avq1
