#include "displays/ehsi/ehsi.h"

#include "base/module_state.h"
#include "displays/deviation_scale.h"
#include "displays/ehsi/ehsi_picture.h"
#include "displays/layers.h"
#include "displays/map/map_station.h"
#include "displays/map/map_view.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

EhsiState ehsi;

namespace {

const StateReset resetEhsi{[] { ehsi = EhsiState{}; }};

bool IsFullCompass() {
    return ehsi.ehsiMode >= 1 && ehsi.ehsiMode <= 3;
}
bool IsMapMode() {
    return ehsi.ehsiMode == 2 || ehsi.ehsiMode == 3 || ehsi.ehsiMode == 5 || ehsi.ehsiMode == 6;
}

// ---- when a layer shows ----
bool OnMap(const EhsiPicture& picture) {
    return picture.mapMode;
}
bool WithBoundaries(const EhsiPicture& picture) {
    return picture.mapMode && ehsi.mapOverlayOn == 1 &&
           picture.drawMode != DisplayDrawMode::SecondCockpit;
}
bool WithPattern(const EhsiPicture& picture) {
    return picture.mapMode && planAirports.patternRunwayOffset != kNoPatternRunway;
}
bool WithRoute(const EhsiPicture& picture) {
    return picture.mapMode && FromFlightManagement() && picture.hasWaypoint;
}
bool WithStation(const EhsiPicture& picture) {
    return picture.mapMode && !FromFlightManagement() && HasStationPlace(picture.receivers);
}
bool WithHolds(const EhsiPicture& picture) {
    return picture.mapMode && FromFlightManagement() && holdList.count > 0;
}
bool WithProfile(const EhsiPicture& picture) {
    return picture.mapMode && FromFlightManagement() && ShowsProfileMarkers();
}
bool InDescent(const EhsiPicture& picture) {
    return picture.mapMode && FromFlightManagement() && ShowsPathDeviation();
}
bool OnIls(const EhsiPicture& picture) {
    return !FromFlightManagement() && picture.receivers.HasIls();
}

// ---- the layers of the compass modes, back to front ----
// Map content ends at the compass circle; the instruments lie inside it by their own measures and
// end with the arc's picture at the bottom.
void ToArcBottom(EhsiPicture& picture) {
    if (!picture.fullCompass) {
        picture.canvas.ClipRectangle(0, 0, kEhsiDesignWidth, kArcBottom);
        picture.canvas.EndClip();
    }
}

void ToCompass(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    picture.canvas.ClipEllipse(compass.centre.x - compass.radius, compass.centre.y - compass.radius,
                               2 * compass.radius, 2 * compass.radius);
    picture.canvas.EndClip();
    ToArcBottom(picture);
}

constexpr DisplayLayer<EhsiPicture> kLayers[] = {
    {InDescent, nullptr, ClaimPathDeviationLayer},
    {OnMap, nullptr, DrawRangeMark},
    {WithBoundaries, nullptr, DrawBoundaryLayer},
    {WithPattern, ToCompass, DrawRunwayPatternLayer},
    {WithRoute, ToCompass, DrawRouteLayer},
    {WithStation, ToCompass, DrawStationLayer},
    {WithHolds, ToCompass, DrawHoldLayer},
    {WithProfile, ToCompass, DrawProfileLayer},
    {OnMap, nullptr, DrawRouteNameLayer},
    {WithBoundaries, nullptr, DrawBoundaryNameLayer},
    {OnMap, nullptr, DrawOtherNameLayer},
    {Always, ToArcBottom, DrawBearingPointers},
    {Always, ToArcBottom, DrawCoursePointer},
    {Always, nullptr, DrawCompassRose},
    {Always, nullptr, DrawHeadingBug},
    {Always, nullptr, DrawEhsiTexts},
    {InDescent, nullptr, DrawPathDeviationLayer},
    {OnIls, nullptr, DrawGlideslopeLayer},
    {Always, nullptr, DrawOwnAircraft},
};

MapCompass RoseOf(const EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    return {compass.centre,      compass.radius, compass.halfAngleDeg,
            compass.labelFontPx, kArcBottom,     ShownAircraft().headingMag};
}

}  // namespace

bool FromFlightManagement() {
    return ehsi.navSource == NavSource::FlightManagement;
}

MapFrame FrameOf(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    return {picture.surface,
            ViewFromAircraft(compass.centre.x, compass.centre.y, compass.mapRadius, ehsi.ehsiRange),
            ehsi.ehsiRange,
            compass.centre,
            compass.radius,
            {0, 0, kEhsiDesignWidth, picture.fullCompass ? kEhsiDesignHeight : kArcBottom},
            picture.rose.InsideLabels(),
            picture.fixedTexts,
            picture.mapTexts,
            picture.names};
}

void DrawEhsi(const DrawTarget& target) {
    Surface surface(target, kEhsiDesignWidth, kEhsiDesignHeight, avionicsPower != 0);
    if (!surface.ShouldDraw()) {
        return;
    }
    const bool fullCompass = IsFullCompass();
    EhsiPicture picture{
        surface, surface.canvas(), target.mode,
        fullCompass || ehsi.ehsiMode == kEhsiTrafficMode ? kFullCompass : kArcCompass};
    picture.fullCompass = fullCompass;
    picture.mapMode = IsMapMode();
    if (ehsi.ehsiMode == kEhsiTrafficMode) {
        DrawTrafficPresentation(picture);
        return;
    }
    picture.receivers = ReadReceivers();
    picture.rose = RoseOf(picture);
    if (picture.mapMode) {
        picture.fixedTexts = PlacesOfRoseLabels(picture.rose);
    }
    picture.hasWaypoint = HasActiveWaypoint();
    DrawLayers(picture, kLayers);
}

}  // namespace avq1
