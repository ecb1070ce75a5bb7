// The navigation display's compass and map layers.
#include <array>
#include <cmath>

#include "displays/boundaries.h"
#include "displays/ehsi.h"
#include "displays/nd_picture.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "drawing/symbols.h"
#include "flightplan/plan_airports.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

constexpr CanvasFont kRangeFont{"Arial", 9};
constexpr double kRangeDashes[] = {3, 4};
constexpr double kCourseDashes[] = {6, 4};
constexpr double kTrackDashes[] = {2, 3};

CanvasPoint OnRose(const MapCompass& rose, double turn, double radius) {
    return {rose.centre.x + radius * std::sin(turn * kDegToRad),
            rose.centre.y - radius * std::cos(turn * kDegToRad)};
}

// The half-range mark's number: left of the aircraft.
CanvasPoint RangeTextAt(const NdPicture& picture) {
    return OnRose(picture.rose, picture.rose.IsFull() ? -90 : -40, picture.rose.radius / 2);
}

FixedText RangeText() {
    return FixedText("%g", nd.ndRange / 2.0);
}

TextBox RangeBox(NdPicture& picture) {
    const CanvasSize size = picture.canvas.MeasureText(RangeText(), kRangeFont);
    const CanvasPoint at = RangeTextAt(picture);
    return {at.x - size.width / 2, at.y - size.height / 2, size.width, size.height};
}

void DrawRangeArc(NdPicture& picture) {
    const MapCompass& rose = picture.rose;
    const double radius = rose.radius / 2;
    const double halfAngle = rose.IsFull() ? 180 : 90;
    picture.canvas.DrawArc({colour::Grey, 1.0, kRangeDashes},
                           {rose.centre.x - radius, rose.centre.y - radius},
                           {2 * radius, 2 * radius}, -90 - halfAngle, 2 * halfAngle);
    const TextBox box = RangeBox(picture);
    picture.canvas.FillRectangle(colour::Black, box.x, box.y, box.width, box.height);
    picture.surface.Text(RangeText(), kRangeFont, colour::Grey, box.x, box.y);
}

void DrawTrackLine(NdPicture& picture) {
    constexpr double kFromPx = 20;
    const double trackMag = ShownAircraft().headingMag - ShownDerived().driftDeg;
    const MapCompass& rose = picture.rose;
    picture.surface.Turned(rose.centre.x, rose.centre.y, rose.FromUp(trackMag), [&] {
        picture.canvas.DrawLine({colour::White, 1.0, kTrackDashes}, 0, -kFromPx, 0, -rose.radius);
    });
}

}  // namespace

void ClaimNdPlaces(NdPicture& picture) {
    ClaimRoseLabels(picture.rose, picture.texts);
    if (NdShowsRange()) {
        picture.texts.Claim(RangeBox(picture));
    }
    if (const char* const missing = NdMissingDatum(picture); missing != nullptr) {
        picture.texts.Claim(NdMissingBox(picture, missing));
    }
    picture.fixedTexts = picture.texts;
}

void DrawNdBoundaries(NdPicture& picture) {
    DrawAtcBoundaries(FrameOf(picture));
}

void DrawNdBoundaryNames(NdPicture& picture) {
    DrawAtcBoundaryNames(FrameOf(picture));
}

void DrawNdRoute(NdPicture& picture) {
    const MapFrame frame = FrameOf(picture);
    const bool withPattern = nd.ndMode != 7 && planAirports.patternRunwayOffset != kNoPatternRunway;
    if (withPattern) {
        // to the map's own scale in each mode, or it would not lie where the route does
        DrawRunwayPattern(frame, {picture.rose.radius});
    }
    DrawActiveRoute(frame);
    if (ShowsProfileMarkers()) {
        DrawProfileMarkers(frame);
    }
}

void DrawNdCompass(NdPicture& picture) {
    if (NdShowsRange()) {
        DrawRangeArc(picture);
    }
    DrawRose(picture.surface, picture.rose);
    if (NdIsMap() && !NdCentredOnWaypoint()) {
        DrawTrackLine(picture);
    }
    DrawBug(picture.surface, picture.rose, ShownAircraft().apHeadingBug);
}

void DrawNdCourse(NdPicture& picture) {
    DrawCourse(picture.surface, picture.rose,
               NdFollowsNavReceiver() ? CourseOfNavReceiver(picture.receivers)
                                      : CourseOfFlightManagement(),
               CoursePointerStyle::WithDeviation);
}

void DrawNdAdfNeedle(NdPicture& picture) {
    const MapCompass& rose = picture.rose;
    const double tip = rose.radius - 4;
    const std::array<CanvasPoint, 6> needle{
        {{0, tip}, {0, -tip}, {-5, 9 - tip}, {0, -tip}, {5, 9 - tip}, {0, -tip}}};
    const double turn = PositiveModulo(ShownAircraft().adfRelativeBearing + 360.0, 360.0);
    picture.surface.Turned(rose.centre.x, rose.centre.y, turn, [&] {
        picture.canvas.DrawSegments({colour::Blue, 1.5}, needle);
    });
}

void DrawNdNav1Station(NdPicture& picture) {
    const MapCompass& rose = picture.rose;
    const double fromAircraftPx = ShownAircraft().nav1DmeNm * picture.view.pxPerNm;
    const CanvasPoint at = OnRose(rose, ShownAircraft().nav1RelativeBearing, fromAircraftPx);
    const double farPx = fromAircraftPx + 2 * rose.radius;
    if (!std::isfinite(farPx)) {
        return;
    }
    picture.surface.Turned(at.x, at.y, rose.FromUp(ShownAircraft().nav1Course), [&] {
        picture.canvas.DrawLine({colour::Green, 1.0, kCourseDashes}, 0, -farPx, 0, farPx);
    });
    Symbol symbol{SymbolCode::Station};
    symbol.style = SymbolStyle::Green;
    symbol.rangeNm = nd.ndRange;
    DrawSymbol(picture.surface, at.x, at.y, symbol);
    if (picture.station != nullptr) {
        constexpr double kHalfWidth = 5;
        DrawIdentBeside(FrameOf(picture), at, kHalfWidth, picture.station->ident, colour::Green);
    }
}

void PlaceNdOpenTexts(NdPicture& picture) {
    picture.openTexts = PlaceOpenTexts(FrameOf(picture));
}

void KeepNdRouteTexts(NdPicture& picture) {
    picture.fixedTexts = picture.texts;
}

void DrawNdStations(NdPicture& picture) {
    // on the map the received station shows already
    DrawNearbyStations(FrameOf(picture), nd.ndMode < 7 ? picture.station : nullptr);
}

void DrawNdAirports(NdPicture& picture) {
    DrawNearbyAirports(FrameOf(picture));
}

void DrawNdFixes(NdPicture& picture) {
    DrawNearbyFixes(FrameOf(picture));
}

void DrawNdHolds(NdPicture& picture) {
    DrawHoldPatterns(FrameOf(picture));
}

void DrawNdPendingRoute(NdPicture& picture) {
    DrawPendingRoute(FrameOf(picture), picture.openTexts);
}

// Where the selected altitude will be reached at the present speeds, across the track.
void DrawNdAltitudeArc(NdPicture& picture) {
    constexpr double kHalfAngleDeg = 15;
    const MapCompass& rose = picture.rose;
    const double minutes = (ShownAircraft().altitudeFt - ShownAircraft().apAltitudeTargetFt) /
                           -ShownAircraft().verticalSpeedFpm;
    const double radius = minutes / 60.0 * ShownAircraft().groundSpeedKt * picture.view.pxPerNm;
    if (!(radius > 0 && radius <= rose.radius)) {
        return;
    }
    const double middle = rose.FromUp(ShownAircraft().headingMag - ShownDerived().driftDeg) - 90;
    picture.canvas.DrawArc({colour::Green, 1.8}, {rose.centre.x - radius, rose.centre.y - radius},
                           {2 * radius, 2 * radius}, middle - kHalfAngleDeg, 2 * kHalfAngleDeg);
}

void DrawNdTraffic(NdPicture& picture) {
    const MapCompass& rose = picture.rose;
    DrawTraffic(picture.surface,
                {rose.radius, static_cast<double>(nd.ndRange), static_cast<int>(rose.centre.x),
                 static_cast<int>(rose.centre.y)},
                TrafficLayout::Map);
}

void DrawNdOwnAircraft(NdPicture& picture) {
    const MapCompass& rose = picture.rose;
    if (nd.ndMode < 7) {
        DrawLubberLine(picture.surface, rose);
    }
    CanvasPoint at = rose.centre;
    if (NdCentredOnWaypoint()) {
        at = PlaceOnMap(picture.view, ShownAircraft().latitude, ShownAircraft().longitude);
        if (!IsUsable(picture.view) || !NearMap(FrameOf(picture), at)) {
            return;
        }
    }
    const Symbol symbol{NdIsMap() || !rose.IsFull() ? SymbolCode::OwnAircraft
                                                    : SymbolCode::OwnAircraftPlan};
    picture.surface.Turned(at.x, at.y, rose.FromUp(ShownAircraft().headingMag),
                           [&] { DrawSymbol(picture.surface, 0, 0, symbol); });
}

}  // namespace avq1
