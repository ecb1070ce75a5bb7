// The EHSI's map: the range mark and the active route.
#include <cmath>

#include "displays/boundaries.h"
#include "displays/ehsi_picture.h"
#include "displays/map_view.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "settings/settings.h"

namespace avq1 {
namespace {

constexpr CanvasFont kIdentFont{"Arial", 9};
constexpr CanvasFont kRangeFont{"Arial", 9};
constexpr double kRangeDashes[] = {3, 4};
constexpr double kSymbolMarginPx = 8;

MapView ViewOf(const EhsiPicture& picture) {
    return ViewFromAircraft(picture.compass.centre.x, picture.compass.centre.y,
                            picture.compass.mapRadius, ehsi.ehsiRange);
}

bool NearCompass(const EhsiPicture& picture, const CanvasPoint& point) {
    const double reach = picture.compass.radius + kSymbolMarginPx;
    return std::abs(point.x - picture.compass.centre.x) <= reach &&
           std::abs(point.y - picture.compass.centre.y) <= reach;
}

// Beside the symbol, at the first of four places that is inside the compass and free.
void DrawIdent(EhsiPicture& picture, const CanvasPoint& symbol, std::string_view ident,
               std::uint32_t argb) {
    const CanvasSize size = picture.canvas.MeasureText(ident, kIdentFont);
    constexpr double kGap = kWaypointStarRadius + 1;
    const double right = symbol.x + kGap;
    const double left = symbol.x - kGap - size.width;
    const CanvasPoint places[] = {{right, symbol.y - size.height},
                                  {right, symbol.y},
                                  {left, symbol.y - size.height},
                                  {left, symbol.y}};
    for (const CanvasPoint& place : places) {
        const TextBox box{place.x, place.y, size.width, size.height};
        if (InsideCompass(picture, box) && picture.mapTexts.Claim(box)) {
            picture.surface.Text(ident, kIdentFont, argb, place.x, place.y);
            return;
        }
    }
}

void DrawWaypoint(EhsiPicture& picture, const MapView& view, std::int32_t index) {
    const PlanWaypoint& entry = activePlan.entries[static_cast<std::size_t>(index)];
    const CanvasPoint at = PlaceOnMap(view, entry.latitude, entry.longitude);
    if (IsDiscontinuity(entry) || !NearCompass(picture, at)) {
        return;
    }
    const std::uint32_t argb = index == planBook.activeIndex ? colour::Magenta : colour::White;
    DrawWaypointStar(picture.surface, at.x, at.y, argb);
    DrawIdent(picture, at, entry.ident, argb);
}

// Legs from entry `first` on, each entry's leg from the one before; a discontinuity leaves a gap.
void DrawLegs(EhsiPicture& picture, const MapView& view, std::int32_t first) {
    CanvasPoint from;
    bool fromPlaced = false;
    for (std::int32_t index = first; index <= activePlan.lastIndex; ++index) {
        const PlanWaypoint& entry = activePlan.entries[static_cast<std::size_t>(index)];
        if (IsDiscontinuity(entry)) {
            fromPlaced = false;
            continue;
        }
        const CanvasPoint to = PlaceOnMap(view, entry.latitude, entry.longitude);
        if (fromPlaced) {
            const bool active = index == planBook.activeIndex;
            picture.canvas.DrawLine({active ? colour::Magenta : colour::White, active ? 2.0 : 1.2},
                                    from.x, from.y, to.x, to.y);
        }
        from = to;
        fromPlaced = true;
    }
}

}  // namespace

void DrawRangeMark(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    const double radius = compass.mapRadius;
    const CanvasPen pen{colour::Grey, 1.0, kRangeDashes};
    picture.canvas.DrawArc(pen, {compass.centre.x - radius, compass.centre.y - radius},
                           {2 * radius, 2 * radius}, -90 - compass.halfAngleDeg,
                           2 * compass.halfAngleDeg);
    // on the ring, left of the aircraft: behind it on the full compass, ahead on the arc
    const double bearing = picture.fullCompass ? -135 : -40;
    const double turn = bearing * kDegToRad;
    const FixedText text("%g", ehsi.ehsiRange);
    const CanvasSize size = picture.canvas.MeasureText(text, kRangeFont);
    const TextBox box{compass.centre.x + radius * std::sin(turn) - size.width / 2,
                      compass.centre.y - radius * std::cos(turn) - size.height / 2, size.width,
                      size.height};
    picture.mapTexts.Claim(box);
    picture.canvas.FillRectangle(colour::Black, box.x, box.y, box.width, box.height);
    picture.surface.Text(text, kRangeFont, colour::Grey, box.x, box.y);
}

void DrawBoundaryLayer(EhsiPicture& picture) {
    DrawAtcBoundaries(picture.surface, ViewOf(picture));
}

void DrawRouteLayer(EhsiPicture& picture) {
    const MapView view = ViewOf(picture);
    const std::int32_t active = planBook.activeIndex;
    if (!IsUsable(view) || !activePlan.Holds(active)) {
        return;
    }
    DrawLegs(picture, view, active > 0 ? active - 1 : 0);
    // nearest first: the active waypoint's identifier has the first choice of a place
    for (std::int32_t index = active; index <= activePlan.lastIndex; ++index) {
        DrawWaypoint(picture, view, index);
    }
    if (settings.DispPrevWpt == 1 && active > 0) {
        DrawWaypoint(picture, view, active - 1);
    }
}

}  // namespace avq1
