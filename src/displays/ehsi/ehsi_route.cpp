// The EHSI's map: the range mark and the layers it shares with the other maps.
#include "displays/deviation_scale.h"
#include "displays/ehsi/ehsi_picture.h"
#include "displays/map/boundaries.h"
#include "displays/map/map_station.h"

namespace avq1 {
namespace {

constexpr CanvasPoint kVerticalScaleAt{249, 161};

}  // namespace

void DrawRangeMark(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    // left of the aircraft: behind it on the full compass, ahead on the arc
    DrawRangeRing(FrameOf(picture), {compass.centre, compass.mapRadius, compass.halfAngleDeg,
                                     picture.fullCompass ? -135.0 : -40.0, ehsi.ehsiRange});
}

void DrawBoundaryLayer(EhsiPicture& picture) {
    DrawAtcBoundaries(FrameOf(picture));
}

void DrawBoundaryNameLayer(EhsiPicture& picture) {
    DrawAtcBoundaryNames(FrameOf(picture));
}

void DrawRunwayPatternLayer(EhsiPicture& picture) {
    DrawRunwayPattern(FrameOf(picture), {picture.compass.mapRadius});
}

void DrawRouteLayer(EhsiPicture& picture) {
    DrawActiveRoute(FrameOf(picture));
}

void DrawHoldLayer(EhsiPicture& picture) {
    DrawHoldPatterns(FrameOf(picture));
}

void DrawProfileLayer(EhsiPicture& picture) {
    DrawProfileMarkers(FrameOf(picture));
}

void DrawStationLayer(EhsiPicture& picture) {
    DrawReceivedStation(FrameOf(picture), picture.rose, ReceivedStation(picture.receivers));
}

void DrawRouteNameLayer(EhsiPicture& picture) {
    constexpr double kAircraftPx = 9;
    const CanvasPoint& own = picture.compass.centre;
    picture.mapTexts.Take(
        {own.x - kAircraftPx, own.y - kAircraftPx, 2 * kAircraftPx, 2 * kAircraftPx});
    DrawMapNames(FrameOf(picture), NameRank::Required);
}

void DrawOtherNameLayer(EhsiPicture& picture) {
    DrawMapNames(FrameOf(picture), NameRank::WhereFree);
}

void ClaimPathDeviationLayer(EhsiPicture& picture) {
    TakeFixedPlace(FrameOf(picture), PathDeviationBox(kVerticalScaleAt.x, kVerticalScaleAt.y));
}

void DrawPathDeviationLayer(EhsiPicture& picture) {
    DrawPathDeviation(picture.surface, kVerticalScaleAt.x, kVerticalScaleAt.y);
}

void DrawGlideslopeLayer(EhsiPicture& picture) {
    DrawGlideslopeDeviation(picture.surface, kVerticalScaleAt.x, kVerticalScaleAt.y);
}

}  // namespace avq1
