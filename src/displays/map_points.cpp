// Records of the navigation database on the map: stations, airports, waypoints.
#include <algorithm>
#include <cmath>
#include <vector>

#include "displays/map_layers.h"
#include "displays/map_nearby.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "geometry/geometry.h"

namespace avq1 {
namespace {

// Where records crowd, the nearest come first and a symbol that would cover another of its kind is
// left out; beyond these numbers the map could not be read.
constexpr std::size_t kMostSymbols = 160;
constexpr std::size_t kMostIdents = 80;
constexpr double kSymbolHalfWidth = 5;
constexpr double kApartPx = 3;  // half-width of a symbol's own place among its kind

struct SeenPoint {
    double distanceNm;
    CanvasPoint at;
    const PointRecord* record;
};

// What of the list stands on the map, nearest first.
std::vector<SeenPoint> SeenOf(const MapFrame& frame, const PointTable& list) {
    std::vector<SeenPoint> seen;
    const double reachDeg = frame.rangeNm / 60.0;
    for (std::int32_t i = 1; i <= list.count; ++i) {
        const PointRecord& record = list[i];
        if (std::abs(record.latitude - frame.view.latitude) > reachDeg) {
            continue;
        }
        const double distanceNm = GreatCircleDistanceNm(frame.view.latitude, frame.view.longitude,
                                                        record.latitude, record.longitude);
        if (distanceNm > frame.rangeNm) {
            continue;
        }
        const CanvasPoint at = PlaceOnMap(frame.view, record.latitude, record.longitude);
        if (NearMap(frame, at)) {
            seen.push_back({distanceNm, at, &record});
        }
    }
    const auto nearer = [](const SeenPoint& a, const SeenPoint& b) {
        return a.distanceNm < b.distanceNm;
    };
    std::sort(seen.begin(), seen.end(), nearer);
    return seen;
}

// Leaves those that do not cover each other or the compass's numbers.
void Thin(const MapFrame& frame, std::vector<SeenPoint>& seen) {
    TextBoxes places = frame.fixedTexts;
    std::size_t kept = 0;
    for (const SeenPoint& point : seen) {
        const TextBox place{point.at.x - kApartPx, point.at.y - kApartPx, 2 * kApartPx,
                            2 * kApartPx};
        if (kept < kMostSymbols && places.Claim(place)) {
            seen[kept++] = point;
        }
    }
    seen.resize(kept);
}

template <class StyleOf>
void DrawPoints(const MapFrame& frame, const PointTable& list, SymbolCode code,
                std::uint32_t identColour, StyleOf styleOf) {
    if (!IsUsable(frame.view)) {
        return;
    }
    std::vector<SeenPoint> seen = SeenOf(frame, list);
    Thin(frame, seen);
    Symbol symbol{code};
    symbol.rangeNm = frame.rangeNm;
    for (const SeenPoint& point : seen) {
        symbol.style = styleOf(*point.record);
        DrawSymbol(frame.surface, point.at.x, point.at.y, symbol);
        frame.texts.Take(
            {point.at.x - kApartPx, point.at.y - kApartPx, 2 * kApartPx, 2 * kApartPx});
    }
    for (std::size_t i = 0; i < std::min(seen.size(), kMostIdents); ++i) {
        DrawIdentBeside(frame, seen[i].at, kSymbolHalfWidth, seen[i].record->ident, identColour);
    }
}

LatLon CentreOf(const MapFrame& frame) {
    return {frame.view.latitude, frame.view.longitude};
}

SymbolStyle OwnStyle(const PointRecord& /*record*/) {
    return SymbolStyle::Own;
}

}  // namespace

void DrawNearbyStations(const MapFrame& frame) {
    DrawPoints(frame, NavaidsAround(CentreOf(frame), frame.rangeNm), SymbolCode::Station,
               colour::Cyan, [](const PointRecord& record) {
                   return record.kind == PointKind::Vor ? SymbolStyle::Own : SymbolStyle::Ndb;
               });
}

void DrawNearbyAirports(const MapFrame& frame) {
    DrawPoints(frame, AirportsAround(CentreOf(frame), frame.rangeNm), SymbolCode::Airport,
               colour::Cyan, OwnStyle);
}

void DrawNearbyFixes(const MapFrame& frame) {
    DrawPoints(frame, FixesAround(CentreOf(frame), frame.rangeNm), SymbolCode::Fix, colour::Blue,
               OwnStyle);
}

}  // namespace avq1
