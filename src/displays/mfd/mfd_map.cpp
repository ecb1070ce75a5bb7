// The multifunction display's map: compass and rings of its own, the layers it shares with the
// other maps.
#include <cmath>

#include "displays/boundaries.h"
#include "displays/mfd/mfd_picture.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "flightplan/hold_pattern.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

constexpr CanvasFont kRingFont{"Arial", 9};
constexpr double kRangeDashes[] = {3, 4};
constexpr double kDistanceDashes[] = {7, 3};

void Ring(MfdPicture& picture, double radius, const CanvasPen& pen) {
    const CanvasPoint& centre = picture.rose.centre;
    picture.canvas.DrawEllipse(pen, centre.x - radius, centre.y - radius, 2 * radius, 2 * radius);
}

// On a ground of its own, where the ring runs at this bearing from up.
void RingLabel(MfdPicture& picture, double radius, double bearing, const FixedText& text,
               std::uint32_t argb) {
    const double turn = bearing * kDegToRad;
    const CanvasSize size = picture.canvas.MeasureText(text, kRingFont);
    const TextBox box{picture.rose.centre.x + radius * std::sin(turn) - size.width / 2,
                      picture.rose.centre.y - radius * std::cos(turn) - size.height / 2, size.width,
                      size.height};
    picture.texts.Take(box);
    picture.canvas.FillRectangle(colour::Black, box.x, box.y, box.width, box.height);
    picture.surface.Text(text, kRingFont, argb, box.x, box.y);
}

// Records show as far as the compass reaches.
MapFrame RecordsFrame(MfdPicture& picture) {
    return FrameOf(picture, picture.rangeNm * kMfdCompassRadius / mfd.map.radius);
}

CanvasPoint OwnPlace(const MfdPicture& picture) {
    return PlaceOnMap(picture.view, ShownAircraft().latitude, ShownAircraft().longitude);
}

}  // namespace

void ClaimMfdPlaces(MfdPicture& picture) {
    ClaimRoseLabels(picture.rose, picture.texts);
    ClaimRoseLabels(picture.rose, picture.fixedTexts);
}

void DrawMfdRangeRing(MfdPicture& picture) {
    Ring(picture, mfd.map.radius, {colour::Grey, 1.0, kRangeDashes});
    RingLabel(picture, mfd.map.radius, -45, FixedText("%g", picture.rangeNm), colour::Grey);
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

// How far the distance being set reaches.
void DrawMfdDistanceRing(MfdPicture& picture) {
    const double radius = mfd.mfdValueA * picture.view.pxPerNm;
    if (mfd.mfdMapModeOn == 1 || !(radius > 0 && radius < kMfdCompassRadius)) {
        return;
    }
    Ring(picture, radius, {colour::Green, 1.0, kDistanceDashes});
    RingLabel(picture, radius, 45, FixedText("%.0f", mfd.mfdValueA), colour::Green);
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
