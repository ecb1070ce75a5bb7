#include "displays/nd.h"
#include "displays/deviation_scale.h"

#include <cmath>

#include "displays/ehsi.h"
#include "displays/map_station.h"
#include "displays/nd_picture.h"
#include "drawing/palette.h"
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
bool Always(const NdPicture&) {
    return true;
}
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
constexpr unsigned Modes(std::int32_t first, std::int32_t last) {
    unsigned mask = 0;
    for (std::int32_t mode = first; mode <= last; ++mode) {
        mask |= 1U << mode;
    }
    return mask;
}

enum class Clip { None, Map, Bottom };

struct Layer {
    unsigned modes;
    bool (*shows)(const NdPicture& picture);
    Clip clip;
    void (*draw)(NdPicture& picture);
};

constexpr Layer kLayers[] = {
    {Modes(1, 7), Always, Clip::None, ClaimNdPlaces},
    {Modes(5, 6), WithBoundaries, Clip::None, DrawNdBoundaries},
    {Modes(5, 7), Always, Clip::Map, DrawNdRoute},
    {Modes(5, 7), WithPendingRoute, Clip::Map, DrawNdPendingRoute},
    {Modes(1, 4), Always, Clip::Bottom, DrawNdCourse},
    {Modes(5, 7), WithSelectedHeading, Clip::Bottom, DrawNdSelectedHeading},
    {Modes(1, 7), Always, Clip::None, DrawNdCompass},
    {Modes(2, 2), WithAdf, Clip::None, DrawNdAdfNeedle},
    {Modes(5, 6), WithNav1Station, Clip::Map, DrawNdNav1Station},
    {Modes(5, 7), WithStations, Clip::None, DrawNdStations},
    {Modes(5, 7), WithAirports, Clip::None, DrawNdAirports},
    {Modes(5, 7), WithFixes, Clip::None, DrawNdFixes},
    {Modes(5, 6), Always, Clip::Map, DrawNdHolds},
    {Modes(5, 7), Always, Clip::None, DrawNdRouteNames},
    {Modes(5, 6), WithBoundaries, Clip::None, DrawNdBoundaryNames},
    {Modes(5, 7), Always, Clip::None, DrawNdOtherNames},
    {Modes(5, 6), WithAltitudeArc, Clip::Map, DrawNdAltitudeArc},
    {Modes(5, 6), WithPathDeviation, Clip::None, DrawNdPathDeviation},
    {Modes(1, 3), WithGlideslope, Clip::None, DrawNdGlideslope},
    {Modes(3, 6), WithTraffic, Clip::Map, DrawNdTraffic},
    {Modes(1, 7), Always, Clip::None, DrawNdOwnAircraft},
    {Modes(1, 7), Always, Clip::None, DrawNdTexts},
};

void ApplyClip(NdPicture& picture, Clip clip) {
    if (clip == Clip::Map) {
        ClipToMap(FrameOf(picture));
    } else if (clip == Clip::Bottom && !picture.rose.IsFull()) {
        picture.canvas.BeginClip();
        picture.canvas.ClipRectangle(0, 0, kNdWidth, kNdMapBottom);
        picture.canvas.EndClip();
    }
}

void DrawLayers(NdPicture& picture) {
    const unsigned mode = 1U << Mode();
    for (const Layer& layer : kLayers) {
        if ((layer.modes & mode) == 0 || !layer.shows(picture)) {
            continue;
        }
        picture.canvas.SaveState();
        ApplyClip(picture, layer.clip);
        layer.draw(picture);
        picture.canvas.RestoreState();
    }
}

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
    Surface surface(target, kNdWidth, kNdHeight);
    if (!surface.ShouldDraw() || avionicsPower == 0) {
        return;
    }
    surface.canvas().FillRectangle(colour::Black, 0, 0, kNdWidth, kNdHeight);
    const ModeRow& row = kModes[Mode() - 1];
    NdPicture picture{surface, surface.canvas(), target.mode, RoseOf(row), ViewOf(row)};
    picture.receivers = ReadReceivers();
    picture.hasWaypoint = HasActiveWaypoint();
    picture.fixedTexts = PlacesOfRoseLabels(picture.rose);
    picture.station = ReceivedStation(picture.receivers);
    DrawLayers(picture);
}

}  // namespace avq1
