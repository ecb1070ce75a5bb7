// The plan on the map: active route, route awaiting execution, holding patterns, climb and descent
// markers.
#include <algorithm>
#include <cmath>
#include <string_view>
#include <vector>

#include "displays/map/map_layers.h"
#include "displays/map/map_path.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/route_walk.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"

namespace avq1 {
namespace {

constexpr double kPendingDashes[] = {5, 4};
constexpr double kProfileLabelPx = 9;
constexpr double kProfileMarksBeyondNm = 8;  // of the route still to fly

const PlanWaypoint& Entry(const FlightPlan& plan, std::int32_t index) {
    return plan.entries[static_cast<std::size_t>(index)];
}

// What stands at the map's very edge is named where there is room.
void AddRouteName(const MapFrame& frame, const PlanWaypoint& entry, const CanvasPoint& at,
                  std::string_view text, std::uint32_t argb) {
    const NameRank rank =
        InsideMap(frame, {at.x, at.y, 0, 0}) ? NameRank::Required : NameRank::WhereFree;
    AddMapName(frame, {at, kWaypointStarRadius, text, argb, rank, entry.latitude, entry.longitude});
}

void DrawWaypoint(const MapFrame& frame, const FlightPlan& plan, std::int32_t index, bool active) {
    const PlanWaypoint& entry = Entry(plan, index);
    const CanvasPoint at = PlaceOnMap(frame.view, entry.latitude, entry.longitude);
    if (!HasPosition(entry) || !NearMap(frame, at) ||
        StandsOnMap(frame, entry.ident, entry.latitude, entry.longitude)) {
        return;
    }
    Symbol star{SymbolCode::PlanWaypoint};
    star.style = active ? SymbolStyle::Magenta : SymbolStyle::White;
    DrawSymbol(frame.surface, at.x, at.y, star);
    AddRouteName(frame, entry, at, entry.ident, active ? colour::Magenta : colour::White);
}

// Kept, so that a frame allocates nothing.
std::vector<PathPoint> path;            // of entries that follow each other without a gap
std::vector<std::int32_t> pathEntries;  // their indexes
std::vector<CanvasPoint> line;

template <class PenOf>
void DrawPath(const MapFrame& frame, PenOf penOf) {
    for (std::size_t leg = 1; leg < path.size(); ++leg) {
        CanvasPoint from = path[leg - 1].at;
        CanvasPoint to = path[leg].at;
        if (CutToMap(frame, from, to)) {
            LegOfPath(path, leg, false, line);
            frame.surface.canvas().DrawPolyline(penOf(pathEntries[leg]), line, false);
        }
    }
    path.clear();
    pathEntries.clear();
}

// Legs from entry `first` on, each entry's leg from the one before, turning where guidance turns;
// an open place leaves a gap.
template <class PenOf>
void DrawLegs(const MapFrame& frame, const FlightPlan& plan, std::int32_t first, PenOf penOf) {
    for (std::int32_t index = first; index <= plan.lastIndex; ++index) {
        const PlanWaypoint& entry = Entry(plan, index);
        if (!HasPosition(entry)) {
            DrawPath(frame, penOf);
            continue;
        }
        path.push_back({PlaceOnMap(frame.view, entry.latitude, entry.longitude),
                        ChangeDistanceNm(entry, settings.WptChgDist) * frame.view.pxPerNm});
        pathEntries.push_back(index);
    }
    DrawPath(frame, penOf);
}

// An open place of the route has no position; its text says what is missing. The entry that text
// stands beside: the one it follows, or at the start the one it precedes.
const PlanWaypoint* BesideOpenPlace(const FlightPlan& plan, std::int32_t index) {
    const std::int32_t before = PositionedEntryBack(plan, index);
    const std::int32_t beside = before == kNoEntry ? PositionedEntryFrom(plan, index) : before;
    return beside == kNoEntry ? nullptr : &Entry(plan, beside);
}

void DrawHold(const MapFrame& frame, HoldPattern hold) {
    const PlanWaypoint& fix = Entry(activePlan, hold.fixIndex);
    if (!HasPosition(fix)) {
        return;
    }
    LayOutHold(hold, fix);
    // turned a quarter of the leg before each corner: half the pattern's width
    for (std::size_t i = 1; i < hold.corners.size(); ++i) {
        const HoldCorner& corner = hold.corners[i];
        path.push_back({PlaceOnMap(frame.view, corner.latitude, corner.longitude),
                        hold.legDistanceNm / 4 * frame.view.pxPerNm});
    }
    const bool flown = hold.fixIndex == holdList.holds[1].fixIndex && HoldBeingFlown();
    for (std::size_t leg = 1; leg <= path.size(); ++leg) {
        LegOfPath(path, leg, true, line);
        frame.surface.canvas().DrawPolyline({flown ? colour::Magenta : colour::White, 1.2}, line,
                                            false);
    }
    path.clear();
}

// A place off the map, brought in to where the line to it leaves the map.
CanvasPoint AtMapEdge(const MapFrame& frame, const CanvasPoint& place) {
    constexpr double kMarginPx = 10;
    const CanvasPoint from{frame.view.centreX, frame.view.centreY};
    const CanvasPoint line{place.x - from.x, place.y - from.y};
    const TextBox& window = frame.window;
    double part = (frame.circleRadius - kMarginPx) / std::hypot(line.x, line.y);
    const auto keepWithin = [&](double start, double along, double low, double high) {
        const double limit = along >= 0 ? high - kMarginPx : low + kMarginPx;
        part = std::min(part, std::max((limit - start) / along, 0.0));
    };
    keepWithin(from.x, line.x, window.x, window.x + window.width);
    keepWithin(from.y, line.y, window.y, window.y + window.height);
    return {from.x + part * line.x, from.y + part * line.y};
}

void DrawMarker(const MapFrame& frame, SymbolCode code, const PredictedPoint& point) {
    if (!point.known) {
        return;
    }
    CanvasPoint at = PlaceOnMap(frame.view, point.position.latitude, point.position.longitude);
    if (performance.showFloatingTodBod == 1 && !NearMap(frame, at)) {
        at = AtMapEdge(frame, at);
    }
    if (!NearMap(frame, at)) {
        return;
    }
    Symbol marker{code};
    marker.rangeNm = frame.rangeNm;
    // the symbol's place and its label's, so that no name comes to stand there
    TakeFixedPlace(frame, {at.x - 5, at.y - 5, 11 + 2 * kProfileLabelPx, kProfileLabelPx + 2});
    DrawSymbol(frame.surface, at.x, at.y, marker);
}

}  // namespace

void DrawActiveRoute(const MapFrame& frame) {
    const std::int32_t active = planBook.activeIndex;
    if (!IsUsable(frame.view) || !activePlan.Holds(active)) {
        return;
    }
    DrawLegs(frame, activePlan, active > 0 ? active - 1 : 0, [&](std::int32_t index) {
        return index == active ? CanvasPen{colour::Magenta, 2.0} : CanvasPen{colour::White, 1.2};
    });
    // nearest first: the active waypoint's identifier has the first choice of a place
    for (std::int32_t index = active; index <= activePlan.lastIndex; ++index) {
        DrawWaypoint(frame, activePlan, index, index == active);
    }
    if (settings.DispPrevWpt == 1 && active > 0) {
        DrawWaypoint(frame, activePlan, active - 1, false);
    }
}

void DrawPendingRoute(const MapFrame& frame) {
    if (!IsUsable(frame.view)) {
        return;
    }
    DrawLegs(frame, modifiedPlan, 0, [](std::int32_t) {
        return CanvasPen{colour::White, 1.2, kPendingDashes};
    });
    for (std::int32_t index = 0; index <= modifiedPlan.lastIndex; ++index) {
        if (HasPosition(Entry(modifiedPlan, index))) {
            DrawWaypoint(frame, modifiedPlan, index, false);  // but for those of the active route
            continue;
        }
        const PlanWaypoint* const beside = BesideOpenPlace(modifiedPlan, index);
        if (beside != nullptr) {
            const CanvasPoint at = PlaceOnMap(frame.view, beside->latitude, beside->longitude);
            if (NearMap(frame, at)) {
                AddRouteName(frame, *beside, at, Entry(modifiedPlan, index).ident, colour::Amber);
            }
        }
    }
}

void DrawHoldPatterns(const MapFrame& frame) {
    if (!IsUsable(frame.view)) {
        return;
    }
    for (std::int32_t i = 1; i <= holdList.count && i <= kHoldCapacity; ++i) {
        const HoldPattern& hold = holdList.holds[static_cast<std::size_t>(i)];
        if (hold.fixIndex > 0 && activePlan.Holds(hold.fixIndex)) {
            DrawHold(frame, hold);
        }
    }
}

bool ShowsProfileMarkers() {
    return settings.ShowTodBodIndicators == 1 &&
           progress.routeDistanceToDestination > kProfileMarksBeyondNm;
}

void DrawProfileMarkers(const MapFrame& frame) {
    if (IsUsable(frame.view)) {
        DrawMarker(frame, SymbolCode::TopOfClimb, ActivePredictions().topOfClimb);
        DrawMarker(frame, SymbolCode::TopOfDescent, ActivePredictions().topOfDescent);
    }
}

}  // namespace avq1
