#include "displays/ehsi.h"

#include "base/module_state.h"
#include "displays/deviation_scale.h"
#include "displays/ehsi_picture.h"
#include "displays/map_station.h"
#include "displays/map_view.h"
#include "drawing/palette.h"
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

// The layers of the compass modes, back to front. Map content ends at the compass circle; the
// instruments lie inside it by their own measures and end with the arc's picture at the bottom.
enum class Shows {
    Always,
    OnMap,
    WithBoundaries,
    WithPattern,
    WithRoute,
    WithStation,
    WithHolds,
    WithProfile,
    InDescent,
    OnIls,
};
enum class Clip { None, Compass, Bottom };

struct Layer {
    Shows shows;
    Clip clip;
    void (*draw)(EhsiPicture& picture);
};

constexpr Layer kLayers[] = {
    {Shows::InDescent, Clip::None, ClaimPathDeviationLayer},
    {Shows::OnMap, Clip::None, DrawRangeMark},
    {Shows::WithBoundaries, Clip::None, DrawBoundaryLayer},
    {Shows::WithPattern, Clip::Compass, DrawRunwayPatternLayer},
    {Shows::WithRoute, Clip::Compass, DrawRouteLayer},
    {Shows::WithStation, Clip::Compass, DrawStationLayer},
    {Shows::WithHolds, Clip::Compass, DrawHoldLayer},
    {Shows::WithProfile, Clip::Compass, DrawProfileLayer},
    {Shows::OnMap, Clip::None, DrawRouteNameLayer},
    {Shows::WithBoundaries, Clip::None, DrawBoundaryNameLayer},
    {Shows::OnMap, Clip::None, DrawOtherNameLayer},
    {Shows::Always, Clip::Bottom, DrawBearingPointers},
    {Shows::Always, Clip::Bottom, DrawCoursePointer},
    {Shows::Always, Clip::None, DrawCompassRose},
    {Shows::Always, Clip::None, DrawHeadingBug},
    {Shows::Always, Clip::None, DrawEhsiTexts},
    {Shows::InDescent, Clip::None, DrawPathDeviationLayer},
    {Shows::OnIls, Clip::None, DrawGlideslopeLayer},
    {Shows::Always, Clip::None, DrawOwnAircraft},
};

bool IsShown(const Layer& layer, const EhsiPicture& picture) {
    switch (layer.shows) {
        case Shows::Always:
            return true;
        case Shows::OnMap:
            return picture.mapMode;
        case Shows::WithBoundaries:
            return picture.mapMode && ehsi.mapOverlayOn == 1 &&
                   picture.drawMode != DisplayDrawMode::SecondCockpit;
        case Shows::WithPattern:
            return picture.mapMode && planAirports.patternRunwayOffset != kNoPatternRunway;
        case Shows::WithRoute:
            return picture.mapMode && FromFlightManagement() && picture.hasWaypoint;
        case Shows::WithStation:
            return picture.mapMode && !FromFlightManagement() && HasStationPlace(picture.receivers);
        case Shows::WithHolds:
            return picture.mapMode && FromFlightManagement() && holdList.count > 0;
        case Shows::WithProfile:
            return picture.mapMode && FromFlightManagement() && ShowsProfileMarkers();
        case Shows::InDescent:
            return picture.mapMode && FromFlightManagement() && ShowsPathDeviation();
        case Shows::OnIls:
            return !FromFlightManagement() && picture.receivers.HasIls();
    }
    return false;
}

MapCompass RoseOf(const EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    return {compass.centre,      compass.radius, compass.halfAngleDeg,
            compass.labelFontPx, kArcBottom,     ShownAircraft().headingMag};
}

void ClipToCompass(EhsiPicture& picture) {
    const EhsiCompass& compass = picture.compass;
    picture.canvas.BeginClip();
    picture.canvas.ClipEllipse(compass.centre.x - compass.radius, compass.centre.y - compass.radius,
                               2 * compass.radius, 2 * compass.radius);
    picture.canvas.EndClip();
}

void ClipToArcBottom(EhsiPicture& picture) {
    picture.canvas.BeginClip();
    picture.canvas.ClipRectangle(0, 0, kEhsiDesignWidth, kArcBottom);
    picture.canvas.EndClip();
}

void DrawLayers(EhsiPicture& picture) {
    for (const Layer& layer : kLayers) {
        if (!IsShown(layer, picture)) {
            continue;
        }
        picture.canvas.SaveState();
        if (layer.clip == Clip::Compass) {
            ClipToCompass(picture);
        }
        if (layer.clip != Clip::None && !picture.fullCompass) {
            ClipToArcBottom(picture);
        }
        layer.draw(picture);
        picture.canvas.RestoreState();
    }
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
    Surface surface(target, kEhsiDesignWidth, kEhsiDesignHeight);
    if (!surface.ShouldDraw() || avionicsPower == 0) {
        return;
    }
    surface.canvas().FillRectangle(colour::Black, 0, 0, kEhsiDesignWidth, kEhsiDesignHeight);
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
    picture.fixedTexts = PlacesOfRoseLabels(picture.rose);
    picture.hasWaypoint = HasActiveWaypoint();
    DrawLayers(picture);
}

}  // namespace avq1
