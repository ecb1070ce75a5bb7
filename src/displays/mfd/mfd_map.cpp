// The multifunction display's map: compass and rings of its own, the layers it shares with the
// other maps.
#include <cmath>

#include "displays/map/boundaries.h"
#include "displays/mfd/mfd_picture.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "flightplan/hold_pattern.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

// Records show as far as the compass reaches.
MapFrame RecordsFrame(MfdPicture& picture) {
    return FrameOf(picture, picture.rangeNm * kMfdCompassRadius / mfd.map.radius);
}

CanvasPoint OwnPlace(const MfdPicture& picture) {
    return PlaceOnMap(picture.view, ShownAircraft().latitude, ShownAircraft().longitude);
}

}  // namespace

void ClaimMfdPlaces(MfdPicture& picture) {
    constexpr double kAircraftPx = 9;
    picture.fixedTexts = PlacesOfRoseLabels(picture.rose);
    const CanvasPoint own = mfd.mfdMapModeOn == 0 ? picture.rose.centre : OwnPlace(picture);
    picture.texts.Take(
        {own.x - kAircraftPx, own.y - kAircraftPx, 2 * kAircraftPx, 2 * kAircraftPx});
}

void DrawMfdRangeRing(MfdPicture& picture) {
    DrawRangeRing(FrameOf(picture, picture.rangeNm),
                  {picture.rose.centre, mfd.map.radius, 180, -45, picture.rangeNm});
}

void DrawMfdBoundaries(MfdPicture& picture) {
    DrawAtcBoundaries(FrameOf(picture, picture.rangeNm));
}

void DrawMfdBoundaryNames(MfdPicture& picture) {
    DrawAtcBoundaryNames(FrameOf(picture, picture.rangeNm));
}

void DrawMfdRunwayPattern(MfdPicture& picture) {
    DrawRunwayPattern(FrameOf(picture, picture.rangeNm), {mfd.map.radius});
}

void DrawMfdRoute(MfdPicture& picture) {
    const MapFrame frame = FrameOf(picture, picture.rangeNm);
    if (picture.hasWaypoint) {
        DrawActiveRoute(frame);
    }
    if (holdList.count > 0) {
        DrawHoldPatterns(frame);
    }
    if (ShowsProfileMarkers()) {
        DrawProfileMarkers(frame);
    }
}

void DrawMfdStations(MfdPicture& picture) {
    DrawNearbyStations(RecordsFrame(picture));
}

void DrawMfdAirports(MfdPicture& picture) {
    DrawNearbyAirports(RecordsFrame(picture));
}

void DrawMfdRouteNames(MfdPicture& picture) {
    DrawMapNames(FrameOf(picture, picture.rangeNm), NameRank::Required);
}

void DrawMfdOtherNames(MfdPicture& picture) {
    DrawMapNames(RecordsFrame(picture), NameRank::WhereFree);
}

// How far the distance being set reaches.
void DrawMfdDistanceRing(MfdPicture& picture) {
    const double radius = mfd.mfdValueA * picture.view.pxPerNm;
    if (mfd.mfdMapModeOn == 1 || !(radius > 0 && radius < kMfdCompassRadius)) {
        return;
    }
    DrawRangeRing(
        FrameOf(picture, picture.rangeNm),
        {picture.rose.centre, radius, 180, 45, std::round(mfd.mfdValueA), colour::Green, {7, 3}});
}

void DrawMfdCompass(MfdPicture& picture) {
    DrawRose(picture.surface, picture.rose);
    DrawBug(picture.surface, picture.rose, ShownAircraft().apHeadingBug);
    if (mfd.mfdMapModeOn == 0) {
        DrawLubberLine(picture.surface, picture.rose);
    }
}

void DrawMfdTraffic(MfdPicture& picture) {
    TrafficView view{mfd.map.radius, picture.rangeNm, static_cast<int>(mfd.map.centreX),
                     static_cast<int>(mfd.map.centreY)};
    if (mfd.mfdMapModeOn == 1) {
        const CanvasPoint own = OwnPlace(picture);
        if (!IsUsable(picture.view) || !NearMap(FrameOf(picture, picture.rangeNm), own)) {
            return;
        }
        view.upTrue = picture.view.upTrue;
        view.centreX = static_cast<int>(std::lround(own.x));
        view.centreY = static_cast<int>(std::lround(own.y));
    }
    DrawTraffic(picture.surface, view, TrafficLayout::Map);
}

void DrawMfdOwnAircraft(MfdPicture& picture) {
    const bool centred = mfd.mfdMapModeOn == 0;
    const CanvasPoint at = centred ? picture.rose.centre : OwnPlace(picture);
    if (!centred && (!IsUsable(picture.view) || !NearMap(FrameOf(picture, picture.rangeNm), at))) {
        return;
    }
    picture.surface.Turned(at.x, at.y, picture.rose.FromUp(ShownAircraft().headingMag),
                           [&] { DrawAircraftSymbol(picture.surface, 0, 0, colour::White); });
}

}  // namespace avq1
