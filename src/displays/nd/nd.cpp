#include "displays/nd/nd.h"
#include "displays/deviation_scale.h"

#include <cmath>

#include "displays/ehsi/ehsi.h"
#include "displays/layers.h"
#include "displays/map/map_station.h"
#include "displays/nd/nd_picture.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kFirstMode = 1;
constexpr std::int32_t kLastMode = 7;
constexpr std::int32_t kPlanMode = 7;
constexpr std::int32_t kMostWaypointsRangeNm = 40;

struct ModeRow {
    CanvasPoint centre;
    double radius;
    double halfAngleDeg;
};

constexpr ModeRow kFull{{122, 151}, 105, 180};
constexpr ModeRow kArc{{122, 249}, 215, 34.6};
constexpr ModeRow kCentred{{122, 171}, 110, 180};
constexpr ModeRow kModes[] = {kFull, kFull, kArc, kArc, kArc, kCentred, kCentred};

std::int32_t Mode() {
    return nd.ndMode >= kFirstMode && nd.ndMode <= kLastMode ? nd.ndMode : kFirstMode;
}

// ---- when a layer shows ----
bool WithBoundaries(const NdPicture& picture) {
    return ehsi.mapOverlayOn == 1 && picture.drawMode != DisplayDrawMode::SecondCockpit;
}
bool WithAdf(const NdPicture&) {
    return nd.ndShowAdf == 1 && ShownAircraft().adfActive > 0;
}
bool WithNav1Station(const NdPicture& picture) {
    return HasStationPlace(picture.receivers);
}
bool WithStations(const NdPicture&) {
    return nd.ndShowStations == 1;
}
bool WithAirports(const NdPicture&) {
    return nd.ndShowAirports == 1;
}
bool WithFixes(const NdPicture& picture) {
    return nd.ndShowWaypoints == 1 && nd.ndRange <= kMostWaypointsRangeNm &&
           picture.drawMode != DisplayDrawMode::SecondCockpit;
}
bool WithPendingRoute(const NdPicture&) {
    return planBook.status == RouteStatus::BeingBuilt ||
           planBook.status == RouteStatus::AwaitsExecution ||
           planBook.status == RouteStatus::Modified;
}
bool WithAltitudeArc(const NdPicture&) {
    constexpr double kDescendingFpm = -200;
    const AircraftState& shown = ShownAircraft();
    return shown.autopilotOn > 0 && shown.apAltitudeLockOn > 0 &&
           shown.apAltitudeTargetFt < shown.altitudeFt && shown.verticalSpeedFpm < kDescendingFpm;
}
bool WithGlideslope(const NdPicture& picture) {
    return NdFollowsNavReceiver() && picture.receivers.HasIls();
}
bool WithSelectedHeading(const NdPicture&) {
    return !NdCentredOnWaypoint();
}
bool WithPathDeviation(const NdPicture&) {
    return ShowsPathDeviation();
}
bool WithTraffic(const NdPicture&) {
    return nd.showTraffic == 1;
}

// ---- the layers, back to front ----
template <std::int32_t kFirst, std::int32_t kLast, bool (*kShows)(const NdPicture&) = Always>
bool InModes(const NdPicture& picture) {
    return Mode() >= kFirst && Mode() <= kLast && kShows(picture);
}

void ToMap(NdPicture& picture) {
    ClipToMap(FrameOf(picture));
}

void ToArcBottom(NdPicture& picture) {
    if (!picture.rose.IsFull()) {
        picture.canvas.ClipRectangle(0, 0, kNdWidth, kNdMapBottom);
        picture.canvas.EndClip();
    }
}

constexpr DisplayLayer<NdPicture> kLayers[] = {
    {Always, nullptr, ClaimNdPlaces},
    {InModes<5, 6, WithBoundaries>, nullptr, DrawNdBoundaries},
    {InModes<5, 7>, ToMap, DrawNdRoute},
    {InModes<5, 7, WithPendingRoute>, ToMap, DrawNdPendingRoute},
    {InModes<1, 4>, ToArcBottom, DrawNdCourse},
    {InModes<5, 7, WithSelectedHeading>, ToArcBottom, DrawNdSelectedHeading},
    {Always, nullptr, DrawNdCompass},
    {InModes<2, 2, WithAdf>, nullptr, DrawNdAdfNeedle},
    {InModes<5, 6, WithNav1Station>, ToMap, DrawNdNav1Station},
    {InModes<5, 7, WithStations>, nullptr, DrawNdStations},
    {InModes<5, 7, WithAirports>, nullptr, DrawNdAirports},
    {InModes<5, 7, WithFixes>, nullptr, DrawNdFixes},
    {InModes<5, 6>, ToMap, DrawNdHolds},
    {InModes<5, 7>, nullptr, DrawNdRouteNames},
    {InModes<5, 6, WithBoundaries>, nullptr, DrawNdBoundaryNames},
    {InModes<5, 7>, nullptr, DrawNdOtherNames},
    {InModes<5, 6, WithAltitudeArc>, ToMap, DrawNdAltitudeArc},
    {InModes<5, 6, WithPathDeviation>, nullptr, DrawNdPathDeviation},
    {InModes<1, 3, WithGlideslope>, nullptr, DrawNdGlideslope},
    {InModes<3, 6, WithTraffic>, ToMap, DrawNdTraffic},
    {Always, nullptr, DrawNdOwnAircraft},
    {Always, nullptr, DrawNdTexts},
};

MapCompass RoseOf(const ModeRow& row) {
    constexpr double kLabelFontPx = 12;
    const double up =
        Mode() == kPlanMode ? -ShownAircraft().magneticVariation : ShownAircraft().headingMag;
    return {row.centre, row.radius, row.halfAngleDeg, kLabelFontPx, kNdMapBottom, up};
}

MapView ViewOf(const ModeRow& row) {
    MapView view = ViewFromAircraft(row.centre.x, row.centre.y, row.radius, nd.ndRange);
    if (Mode() == kPlanMode) {
        view.upTrue = 0;
    }
    if (NdCentredOnWaypoint()) {
        view.latitude = MapCentre()->latitude;
        view.longitude = MapCentre()->longitude;
    }
    return view;
}

}  // namespace

bool NdIsMap() {
    return Mode() >= 5;
}

bool NdFollowsNavReceiver() {
    return Mode() == 1 || Mode() == 3;
}

bool NdCentredOnWaypoint() {
    return Mode() == kPlanMode && MapCentre() != nullptr;
}

bool NdShowsRange() {
    return NdIsMap() || (Mode() >= 3 && nd.showTraffic == 1);
}

MapFrame FrameOf(NdPicture& picture) {
    return {picture.surface,
            picture.view,
            static_cast<double>(nd.ndRange),
            picture.rose.centre,
            picture.rose.radius,
            {0, 0, kNdWidth, picture.rose.IsFull() ? kNdHeight : kNdMapBottom},
            picture.rose.InsideLabels(),
            picture.fixedTexts,
            picture.texts,
            picture.names};
}

void DrawNd(const DrawTarget& target) {
    Surface surface(target, kNdWidth, kNdHeight, avionicsPower != 0);
    if (!surface.ShouldDraw()) {
        return;
    }
    const ModeRow& row = kModes[Mode() - 1];
    NdPicture picture{surface, surface.canvas(), target.mode, RoseOf(row), ViewOf(row)};
    picture.receivers = ReadReceivers();
    picture.hasWaypoint = HasActiveWaypoint();
    if (NdIsMap()) {
        picture.fixedTexts = PlacesOfRoseLabels(picture.rose);
    }
    picture.station = ReceivedStation(picture.receivers);
    DrawLayers(picture, kLayers);
}

}  // namespace avq1
