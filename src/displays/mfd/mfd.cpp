#include "displays/mfd/mfd.h"

#include "displays/ehsi.h"
#include "displays/mfd/mfd_picture.h"
#include "displays/nd_panel.h"
#include "drawing/palette.h"
#include "flightplan/plan_airports.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kBlankFrames = 2;  // at the start of the refresh cycle
constexpr double kMostAirportsRange = 80;

// ---- when a layer shows ----
bool Always() {
    return true;
}
bool WithBoundaries() {
    return ehsi.mapOverlayOn == 1;
}
bool WithPattern() {
    return planAirports.patternRunwayOffset != kNoPatternRunway;
}
bool WithStations() {
    return mfd.mfdLayerB == 1;
}
bool WithAirports() {
    return mfd.mfdLayerA == 1 && mfd.mfdMapRange <= kMostAirportsRange;
}
bool WithDistanceRing() {
    return mfd.mfdMenuLevel == kMfdSettingLevel && mfd.mfdSelA == 2;
}
bool WithTraffic() {
    return nd.showTraffic == 1;
}

// ---- the layers, back to front ----
struct Layer {
    bool (*shows)();
    bool clipped;  // to the map
    void (*draw)(MfdPicture& picture);
};

constexpr Layer kLayers[] = {
    {Always, false, ClaimMfdPlaces},
    {Always, true, DrawMfdRangeRing},
    {WithBoundaries, false, DrawMfdBoundaries},
    {WithPattern, true, DrawMfdRunwayPattern},
    {Always, true, DrawMfdRoute},
    {WithStations, false, DrawMfdStations},
    {WithAirports, false, DrawMfdAirports},
    {WithDistanceRing, true, DrawMfdDistanceRing},
    {Always, false, DrawMfdRouteNames},
    {WithBoundaries, false, DrawMfdBoundaryNames},
    {Always, false, DrawMfdOtherNames},
    {Always, true, DrawMfdCompass},
    {WithTraffic, true, DrawMfdTraffic},
    {Always, true, DrawMfdOwnAircraft},
    {Always, false, DrawMfdTexts},
    {MfdShowsPage, false, DrawMfdPage},
    {Always, false, DrawMfdSoftKeyLabels},
};

void DrawLayers(MfdPicture& picture) {
    for (const Layer& layer : kLayers) {
        if (!layer.shows()) {
            continue;
        }
        picture.canvas.SaveState();
        if (layer.clipped) {
            ClipToMap(FrameOf(picture, picture.rangeNm));
        }
        layer.draw(picture);
        picture.canvas.RestoreState();
    }
}

MapView ViewNow() {
    const MfdMapPlace& map = mfd.map;
    MapView view = ViewFromAircraft(map.centreX, map.centreY, map.radius, MfdRangeInUse());
    if (mfd.mfdMapModeOn == 1) {
        view.upTrue = 0;
        view.latitude = mfd.storedPosition.latitude;
        view.longitude = mfd.storedPosition.longitude;
    }
    return view;
}

MapCompass RoseNow() {
    constexpr double kLabelFontPx = 11;
    const AircraftState& shown = ShownAircraft();
    const double up = mfd.mfdMapModeOn == 1 ? -shown.magneticVariation : shown.headingMag;
    return {
        {mfd.map.centreX, mfd.map.centreY}, kMfdCompassRadius, 180, kLabelFontPx, kMfdHeight, up};
}

}  // namespace

MapFrame FrameOf(MfdPicture& picture, double rangeNm) {
    const double bottom = picture.showsPage ? kMfdPageBox.y : kMfdHeight;
    return {picture.surface,
            picture.view,
            rangeNm,
            picture.rose.centre,
            kMfdCompassRadius + 1,
            {0, 0, kMfdWidth, bottom},
            picture.rose.InsideLabels(),
            picture.fixedTexts,
            picture.texts,
            picture.names};
}

bool MfdShowsPage() {
    return mfd.mfdPanelPresent == 1 &&
           (mfd.mfdMenuLevel == kMfdSettingLevel || mfd.page != MfdPage::Map);
}

bool MfdKeepsPicture() {
    return avionicsPower != 0 && guidance.blinkCounter < kBlankFrames;
}

void DrawMfd(const DrawTarget& target) {
    Surface surface(target, kMfdWidth, kMfdHeight);
    if (!surface.ShouldDraw() || avionicsPower == 0 || MfdKeepsPicture()) {
        return;
    }
    mfd.mfdRequiredVs = MfdRequiredVerticalSpeed();
    surface.canvas().FillRectangle(colour::Black, 0, 0, kMfdWidth, kMfdHeight);
    MfdPicture picture{surface, surface.canvas(), RoseNow(), ViewNow(), MfdRangeInUse()};
    picture.hasWaypoint = HasActiveWaypoint();
    picture.showsPage = MfdShowsPage();
    DrawLayers(picture);
}

}  // namespace avq1
