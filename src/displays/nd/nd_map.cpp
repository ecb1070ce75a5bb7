// The navigation display's compass and map layers.
#include <array>
#include <cmath>

#include "displays/deviation_scale.h"
#include "displays/ehsi/ehsi.h"
#include "displays/map/boundaries.h"
#include "displays/map/map_station.h"
#include "displays/nd/nd_picture.h"
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

constexpr double kTrackDashes[] = {2, 3};
constexpr CanvasPoint kVerticalScaleAt{233, 221};

CanvasPoint OwnAircraftAt(const NdPicture& picture) {
    return NdCentredOnWaypoint()
               ? PlaceOnMap(picture.view, ShownAircraft().latitude, ShownAircraft().longitude)
               : picture.rose.centre;
}

void DrawRangeArc(NdPicture& picture) {
    const MapCompass& rose = picture.rose;
    DrawRangeRing(FrameOf(picture), {rose.centre, rose.radius / 2, rose.IsFull() ? 180.0 : 90.0,
                                     rose.IsFull() ? -90.0 : -40.0, nd.ndRange / 2.0});
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
    constexpr double kAircraftPx = 9;
    const CanvasPoint own = OwnAircraftAt(picture);
    picture.texts.Take(
        {own.x - kAircraftPx, own.y - kAircraftPx, 2 * kAircraftPx, 2 * kAircraftPx});
    if (const char* const missing = NdMissingDatum(picture); missing != nullptr) {
        picture.texts.Take(NdMissingBox(picture, missing));
    }
    if (NdIsMap() && nd.ndMode < 7 && ShowsPathDeviation()) {
        TakeFixedPlace(FrameOf(picture), PathDeviationBox(kVerticalScaleAt.x, kVerticalScaleAt.y));
    }
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
    DrawReceivedStation(FrameOf(picture), picture.rose, picture.station);
}

void DrawNdStations(NdPicture& picture) {
    DrawNearbyStations(FrameOf(picture));
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
    DrawPendingRoute(FrameOf(picture));
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

void DrawNdRouteNames(NdPicture& picture) {
    DrawMapNames(FrameOf(picture), NameRank::Required);
}

void DrawNdOtherNames(NdPicture& picture) {
    DrawMapNames(FrameOf(picture), NameRank::WhereFree);
}

void DrawNdPathDeviation(NdPicture& picture) {
    DrawPathDeviation(picture.surface, kVerticalScaleAt.x, kVerticalScaleAt.y);
}

void DrawNdGlideslope(NdPicture& picture) {
    DrawGlideslopeDeviation(picture.surface, kVerticalScaleAt.x, kVerticalScaleAt.y);
}

// From the aircraft to the heading bug.
void DrawNdSelectedHeading(NdPicture& picture) {
    constexpr double kFromPx = 14;
    constexpr double kDashes[] = {6, 5};
    const MapCompass& rose = picture.rose;
    const double turn = rose.FromUp(ShownAircraft().apHeadingBug);
    if (!std::isfinite(turn) || std::abs(turn) > rose.halfAngleDeg) {
        return;
    }
    picture.surface.Turned(rose.centre.x, rose.centre.y, turn, [&] {
        picture.canvas.DrawLine({colour::Cyan, 1.0, kDashes}, 0, -kFromPx, 0, -rose.radius + 6);
    });
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
    const CanvasPoint at = OwnAircraftAt(picture);
    if (NdCentredOnWaypoint() && (!IsUsable(picture.view) || !NearMap(FrameOf(picture), at))) {
        return;
    }
    const Symbol symbol{NdIsMap() || !rose.IsFull() ? SymbolCode::OwnAircraft
                                                    : SymbolCode::OwnAircraftPlan};
    picture.surface.Turned(at.x, at.y, rose.FromUp(ShownAircraft().headingMag),
                           [&] { DrawSymbol(picture.surface, 0, 0, symbol); });
}

}  // namespace avq1
