#include "displays/mfd/mfd.h"

#include "displays/ehsi/ehsi.h"
#include "displays/layers.h"
#include "displays/mfd/mfd_picture.h"
#include "displays/nd/nd_panel.h"
#include "flightplan/plan_airports.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kBlankFrames = 2;  // at the start of the refresh cycle
constexpr double kMostAirportsRange = 80;

// ---- when a layer shows ----
bool WithBoundaries(const MfdPicture&) {
    return ehsi.mapOverlayOn == 1;
}
bool WithPattern(const MfdPicture&) {
    return planAirports.patternRunwayOffset != kNoPatternRunway;
}
bool WithStations(const MfdPicture&) {
    return mfd.mfdLayerB == 1;
}
bool WithAirports(const MfdPicture&) {
    return mfd.mfdLayerA == 1 && mfd.mfdMapRange <= kMostAirportsRange;
}
bool WithDistanceRing(const MfdPicture&) {
    return mfd.mfdMenuLevel == kMfdSettingLevel && mfd.mfdSelA == 2;
}
bool WithTraffic(const MfdPicture&) {
    return nd.showTraffic == 1;
}

bool WithPage(const MfdPicture& picture) {
    return picture.showsPage;
}

void ToMap(MfdPicture& picture) {
    ClipToMap(FrameOf(picture, picture.rangeNm));
}

constexpr DisplayLayer<MfdPicture> kLayers[] = {
    {Always, nullptr, ClaimMfdPlaces},
    {Always, ToMap, DrawMfdRangeRing},
    {WithBoundaries, nullptr, DrawMfdBoundaries},
    {WithPattern, ToMap, DrawMfdRunwayPattern},
    {Always, ToMap, DrawMfdRoute},
    {WithStations, nullptr, DrawMfdStations},
    {WithAirports, nullptr, DrawMfdAirports},
    {WithDistanceRing, ToMap, DrawMfdDistanceRing},
    {Always, nullptr, DrawMfdRouteNames},
    {WithBoundaries, nullptr, DrawMfdBoundaryNames},
    {Always, nullptr, DrawMfdOtherNames},
    {Always, ToMap, DrawMfdCompass},
    {WithTraffic, ToMap, DrawMfdTraffic},
    {Always, ToMap, DrawMfdOwnAircraft},
    {Always, nullptr, DrawMfdTexts},
    {WithPage, nullptr, DrawMfdPage},
    {Always, nullptr, DrawMfdSoftKeyLabels},
};

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
    Surface surface(target, kMfdWidth, kMfdHeight, avionicsPower != 0 && !MfdKeepsPicture());
    if (!surface.ShouldDraw()) {
        return;
    }
    mfd.mfdRequiredVs = MfdRequiredVerticalSpeed();
    MfdPicture picture{surface, surface.canvas(), RoseNow(), ViewNow(), MfdRangeInUse()};
    picture.hasWaypoint = HasActiveWaypoint();
    picture.showsPage = MfdShowsPage();
    DrawLayers(picture, kLayers);
}

}  // namespace avq1
