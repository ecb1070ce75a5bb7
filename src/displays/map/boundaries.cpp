#include "displays/map/boundaries.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <string_view>
#include <vector>

#include "base/module_state.h"
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

// How far a boundary reaches from its first point; found out once, so that a draw need not visit
// the points of boundaries elsewhere.
struct Reach {
    const LatLon* points = nullptr;
    std::size_t count = 0;
    double nm = 0;
};

std::vector<Reach> reaches;
// Kept, so that a frame allocates nothing.
std::vector<CanvasPoint> run;         // the line being drawn
std::vector<std::string_view> named;  // the airspaces that have their name in this draw
const StateReset kReset([] { reaches.clear(); });

double ReachOf(std::size_t index, const std::vector<LatLon>& points) {
    reaches.resize(std::max(reaches.size(), index + 1));
    Reach& reach = reaches[index];
    if (reach.points != points.data() || reach.count != points.size()) {
        reach = {points.data(), points.size(), 0};
        for (const LatLon& point : points) {
            reach.nm = std::max(
                reach.nm, GreatCircleDistanceNm(points.front().latitude, points.front().longitude,
                                                point.latitude, point.longitude));
        }
    }
    return reach.nm;
}

// Whether lines between its points can cross the map, with room for how a flat map bends them.
bool CanBeSeen(const MapFrame& frame, double firstPointNm, double reachNm) {
    constexpr double kNearlyFlatNm = 1000;
    const double mapNm = frame.circleRadius / frame.view.pxPerNm;
    return reachNm > kNearlyFlatNm || firstPointNm <= 1.1 * reachNm + mapNm;
}

void DrawName(const MapFrame& frame, const AtcBoundary& boundary) {
    const CanvasPoint label =
        PlaceOnMap(frame.view, boundary.label.latitude, boundary.label.longitude);
    // an airspace of several shelves is named once
    if (!NearMap(frame, label) ||
        std::find(named.begin(), named.end(), boundary.name) != named.end()) {
        return;
    }
    const std::string_view name = std::string_view(boundary.name).substr(0, kLongestName);
    const CanvasSize size = frame.surface.canvas().MeasureText(name, kNameFont);
    const TextBox box{label.x - kNameLeftOfPointPx, label.y, size.width, size.height};
    if (InsideNames(frame, box) && frame.texts.Claim(box)) {
        named.push_back(boundary.name);
        frame.surface.Text(name, kNameFont, kBoundaryColour, box.x, box.y);
    }
}

// The outline's lines as far as they are on the map. Cutting them here is far cheaper than a clip,
// and points closer than the eye can tell apart are left out.
void DrawBoundary(const MapFrame& frame, const AtcBoundary& boundary) {
    constexpr double kLeastPx = 2.0;
    constexpr CanvasPen kPen{kBoundaryColour, 1.0};
    Canvas& canvas = frame.surface.canvas();
    CanvasPoint from;
    run.clear();
    const auto endRun = [&] {
        if (run.size() >= 2) {
            canvas.DrawPolyline(kPen, run, false);
        }
        run.clear();
    };
    for (std::size_t i = 0; i < boundary.points.size(); ++i) {
        const LatLon& point = boundary.points[i];
        const CanvasPoint to = PlaceOnMap(frame.view, point.latitude, point.longitude);
        const bool last = i + 1 == boundary.points.size();
        if (i > 0 && !last && std::hypot(to.x - from.x, to.y - from.y) < kLeastPx) {
            continue;
        }
        CanvasPoint start = from;
        CanvasPoint end = to;
        if (i == 0 || !CutToMap(frame, start, end)) {
            endRun();
        } else {
            if (run.empty()) {
                run.push_back(start);
            }
            run.push_back(end);
            if (end.x != to.x || end.y != to.y) {
                endRun();
            }
        }
        from = to;
    }
    endRun();
}

template <class Visit>
void EachVisible(const MapFrame& frame, Visit visit) {
    for (std::size_t i = 0; IsUsable(frame.view) && i < atcBoundaries.items.size(); ++i) {
        const AtcBoundary& boundary = atcBoundaries.items[i];
        if (boundary.points.empty()) {
            continue;
        }
        const LatLon& first = boundary.points.front();
        const double firstPointNm = GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                          first.latitude, first.longitude);
        if (!IsTooFar(boundary, firstPointNm) &&
            CanBeSeen(frame, firstPointNm, ReachOf(i, boundary.points))) {
            visit(boundary);
        }
    }
}

}  // namespace

void DrawAtcBoundaries(const MapFrame& frame) {
    if (!atcBoundaries.loaded) {
        LoadAtcBoundaries();
    }
    EachVisible(frame, [&](const AtcBoundary& boundary) { DrawBoundary(frame, boundary); });
}

void DrawAtcBoundaryNames(const MapFrame& frame) {
    named.clear();
    EachVisible(frame, [&](const AtcBoundary& boundary) { DrawName(frame, boundary); });
}

}  // namespace avq1
