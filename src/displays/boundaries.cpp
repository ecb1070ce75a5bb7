#include "displays/boundaries.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

#include "geometry/geometry.h"
#include "navdb/boundaries.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::uint32_t kBoundaryColour = 0xFF979700;
constexpr CanvasFont kNameFont{"HW Arial", 14, true};
constexpr std::size_t kLongestName = 3;
constexpr double kNameLeftOfPointPx = 15;
constexpr double kFarNm = 1000;
constexpr double kVeryFarNm = 5000;

// Oceanic areas so large that their first point may be far away while the aircraft is inside.
constexpr std::string_view kWideBoundaries[] = {"YM00142", "YB00001", "NZ00084"};

bool IsTooFar(const AtcBoundary& boundary, double firstPointNm) {
    const bool wide = std::find(std::begin(kWideBoundaries), std::end(kWideBoundaries),
                                boundary.ident) != std::end(kWideBoundaries);
    return wide ? firstPointNm >= kVeryFarNm : firstPointNm > kFarNm;
}

void DrawBoundary(Surface& surface, const MapView& view, const AtcBoundary& boundary,
                  std::vector<CanvasPoint>& outline) {
    outline.clear();
    for (const LatLon& point : boundary.points) {
        outline.push_back(PlaceOnMap(view, point.latitude, point.longitude));
    }
    surface.canvas().DrawPolyline({kBoundaryColour, 1.0, {}, false}, outline, false);
    const CanvasPoint label = PlaceOnMap(view, boundary.label.latitude, boundary.label.longitude);
    surface.Text(std::string_view(boundary.name).substr(0, kLongestName), kNameFont,
                 kBoundaryColour, label.x - kNameLeftOfPointPx, label.y);
}

}  // namespace

void DrawAtcBoundaries(Surface& surface, const MapView& view) {
    if (!atcBoundaries.loaded) {
        LoadAtcBoundaries();
    }
    if (!IsUsable(view)) {
        return;
    }
    std::vector<CanvasPoint> outline;
    for (const AtcBoundary& boundary : atcBoundaries.items) {
        const bool drawn =
            !boundary.points.empty() &&
            !IsTooFar(boundary, GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                      boundary.points.front().latitude,
                                                      boundary.points.front().longitude));
        if (drawn) {
            DrawBoundary(surface, view, boundary, outline);
        }
    }
}

}  // namespace avq1
