// The multifunction display's data texts and soft key labels, one function a group.
//
// Top left: ground speed, true airspeed, track, wind. Top centre: heading. Top right: the next
// waypoint. Lower corners: the place of a map that stays, and the layers that show. Values that are
// missing or not finite are dashes.
#include <algorithm>
#include <cmath>
#include <span>
#include <string_view>

#include "displays/ehsi/ehsi.h"
#include "displays/flag.h"
#include "displays/map/map_wind.h"
#include "displays/mfd/mfd_picture.h"
#include "displays/nd/nd_panel.h"
#include "displays/shown_values.h"
#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "guidance/predictions.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

constexpr CanvasFont kSmall{"Arial", 9};
constexpr CanvasFont kKeyFont{"Arial", 8, true};
constexpr CanvasFont kData{"Arial", 10};
constexpr CanvasFont kMain{"Arial", 12};
constexpr double kLeft = 3;
constexpr double kRight = 269;

FixedText Degrees(double directionMag) {
    return CanShow(directionMag) ? FixedText("%03d", static_cast<int>(Compass360(directionMag)))
                                 : FixedText("---");
}

FixedText Knots(double speedKt) {
    return CanShow(speedKt) ? FixedText("%4.0f", speedKt) : FixedText("----");
}

void DrawSpeedsAndTrack(MfdPicture& picture) {
    const AircraftState& shown = ShownAircraft();
    Surface& surface = picture.surface;
    surface.Text("GSPD", kSmall, colour::White, kLeft, 3);
    surface.TextRight(Knots(shown.groundSpeedKt), kData, colour::Green, 56, 2);
    surface.Text("TAS", kSmall, colour::White, 66, 3);
    surface.TextRight(Knots(ShownDerived().trueAirspeedEstimateKt), kData, colour::Green, 112, 2);
    surface.Text("TRK", kSmall, colour::White, kLeft, 16);
    const double trackMag = shown.headingMag - ShownDerived().driftDeg;
    surface.TextRight(shown.groundSpeedKt > kMovingKt ? Degrees(trackMag) : FixedText("---"), kData,
                      colour::Green, 56, 15);
}

void DrawWindAt(MfdPicture& picture) {
    DrawWind(picture.surface, picture.rose, {{10, 37}, 7, {21, 30}, kData, 3});
}

void DrawHeading(MfdPicture& picture) {
    constexpr double kTop = 20;
    const double headingMag = ShownAircraft().headingMag;
    const bool valid = std::isfinite(headingMag);
    const double centreX = picture.rose.centre.x;
    const std::uint32_t argb = valid ? colour::White : colour::Red;
    picture.surface.TextRight("HDG", kSmall, colour::Green, centreX - 17, kTop + 3);
    picture.canvas.DrawRectangle({argb, 1.0}, centreX - 14, kTop, 28, 15);
    picture.surface.TextCentred(Degrees(headingMag), kMain, argb, centreX, kTop + 0.5);
    if (!valid) {
        DrawFlag(picture.surface, "HDG", colour::Red, centreX, picture.rose.centre.y - 36);
    }
}

FixedText TimeToWaypoint() {
    const double seconds = std::round(ShownMinutesTo(ActiveWaypointPrediction()) * 60);
    if (!PositionKnown() || !CanShow(seconds)) {
        return FixedText("--:--:--");
    }
    const int whole = static_cast<int>(seconds);
    return FixedText("%02d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
}

FixedText Miles(bool known, double distanceNm) {
    return known && CanShow(distanceNm) ? FixedText("%.1f NM", std::max(distanceNm, 0.0))
                                        : FixedText("--.- NM");
}

void DrawNextWaypoint(MfdPicture& picture) {
    Surface& surface = picture.surface;
    if (!picture.hasWaypoint) {
        surface.TextRight("NO ROUTE", kSmall, colour::Amber, kRight, 3);
        return;
    }
    surface.TextRight(ActiveWaypoint().ident, kMain, colour::Magenta, kRight, 1);
    surface.TextRight(Miles(PositionKnown(), guidance.distanceToGoNm), kData, colour::White, kRight,
                      15);
    surface.TextRight(TimeToWaypoint(), kData, colour::White, kRight, 27);
}

// Distance and bearing to the waypoint from where a map stays.
void DrawMapPosition(MfdPicture& picture) {
    if (mfd.mfdMapModeOn == 0 || picture.showsPage) {
        return;
    }
    Surface& surface = picture.surface;
    surface.Text("MAP POSN", kSmall, colour::Cyan, kLeft, 250);
    surface.Text("NORTH UP", kSmall, colour::Cyan, kLeft, 261);
    if (!picture.hasWaypoint) {
        return;
    }
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(mfd.storedPosition.latitude, mfd.storedPosition.longitude,
                      guidance.activeLatitude, guidance.activeLongitude, distanceNm, courseTrue);
    const double bearingMag = TrueToMagnetic(courseTrue, ShownAircraft().magneticVariation);
    const FixedText degrees = Degrees(bearingMag);
    const FixedText miles = Miles(true, distanceNm);
    const std::string_view digits = degrees;
    const std::string_view distance = miles;
    surface.Text(
        FixedText("%s %.*s / %.*s", ActiveWaypoint().ident.c_str(), static_cast<int>(digits.size()),
                  digits.data(), static_cast<int>(distance.size()), distance.data()),
        kData, colour::Magenta, kLeft, 273);
}

// ---- layers ----
struct LayerName {
    const char* name;
    bool (*on)();
};

constexpr LayerName kLayerNames[] = {{"APT", [] { return mfd.mfdLayerA == 1; }},
                                     {"NAV", [] { return mfd.mfdLayerB == 1; }},
                                     {"TCAS", [] { return nd.showTraffic == 1; }},
                                     {"BDRY", [] { return ehsi.mapOverlayOn == 1; }}};

// With the control panel, whose keys do not show what is on.
void DrawLayerNames(MfdPicture& picture) {
    double top = 238;
    for (const LayerName& layer : kLayerNames) {
        if (mfd.mfdPanelPresent == 1 && !picture.showsPage && layer.on()) {
            picture.surface.TextRight(layer.name, kSmall, colour::Green, kRight, top);
            top += 11;
        }
    }
}

void DrawMissing(MfdPicture& picture) {
    Surface& surface = picture.surface;
    const bool recordsWanted = mfd.mfdLayerA == 1 || mfd.mfdLayerB == 1;
    const bool database = navDatabase.navaids.count > 0 || navDatabase.airports.count > 0;
    const char* const text = !IsUsable(picture.view)      ? "NO MAP"
                             : !PositionKnown()           ? "NO POSITION"  // on a map that stays
                             : recordsWanted && !database ? "NO NAV DATA"
                                                          : nullptr;
    if (text != nullptr) {
        DrawFlag(surface, text, colour::Amber, picture.rose.centre.x, picture.rose.centre.y + 36);
    }
    const bool bearings = std::isfinite(ShownAircraft().trueHeading);
    if (nd.showTraffic == 1 && !(HasTrafficSource() && bearings)) {
        surface.Text("TCAS OFF", kSmall, colour::Amber, kLeft, 48);
    }
}

constexpr void (*kTexts[])(MfdPicture&) = {
    DrawSpeedsAndTrack, DrawWindAt,     DrawHeading, DrawNextWaypoint,
    DrawMapPosition,    DrawLayerNames, DrawMissing,
};

// ---- soft keys ----
struct SoftKeyLabel {
    double centreX;
    const char* upper;
    const char* lower;
    bool (*lit)();
};

constexpr double kKeyCentres[] = {57, 94, 131, 169, 207};

constexpr SoftKeyLabel kWithoutPanel[] = {
    {kKeyCentres[0], nullptr, "APT", [] { return mfd.mfdLayerA == 1; }},
    {kKeyCentres[1], nullptr, "NAV", [] { return mfd.mfdLayerB == 1; }},
    {kKeyCentres[2], nullptr, "---", nullptr},
    {kKeyCentres[3], nullptr, "TCAS", [] { return nd.showTraffic == 1; }},
    {kKeyCentres[4], "ATC", "BDRY", [] { return ehsi.mapOverlayOn == 1; }}};

constexpr SoftKeyLabel kTopLevel[] = {
    {kKeyCentres[1], nullptr, "VNAV", nullptr},
    {kKeyCentres[2], "T/O", "SPEEDS", [] { return mfd.page == MfdPage::TakeoffSpeeds; }},
    {kKeyCentres[3], "LNDG", "SPEEDS", [] { return mfd.page == MfdPage::LandingSpeeds; }}};

constexpr SoftKeyLabel kSpeedsLevel[] = {
    {kKeyCentres[0], nullptr, "MAP", nullptr}, kTopLevel[0], kTopLevel[1], kTopLevel[2]};

constexpr SoftKeyLabel kSettingLevel[] = {
    {kKeyCentres[0], nullptr, "MAP", nullptr},
    {kKeyCentres[1], nullptr, "SET", [] { return mfd.mfdSelA > 0; }},
    {kKeyCentres[2], nullptr, "ST EL", [] { return mfd.mfdSelB == 1; }},
    {kKeyCentres[3], nullptr, "VANG", [] { return mfd.mfdSelC == 1; }}};

std::span<const SoftKeyLabel> SoftKeyLabels() {
    if (mfd.mfdPanelPresent == 0) {
        return kWithoutPanel;
    }
    if (mfd.mfdMenuLevel == kMfdSettingLevel) {
        return kSettingLevel;
    }
    return mfd.page == MfdPage::Map ? std::span<const SoftKeyLabel>(kTopLevel) : kSpeedsLevel;
}

}  // namespace

void DrawMfdTexts(MfdPicture& picture) {
    for (const auto draw : kTexts) {
        draw(picture);
    }
}

void DrawMfdSoftKeyLabels(MfdPicture& picture) {
    constexpr double kUpperTop = 292;
    constexpr double kLowerTop = 302;
    Surface& surface = picture.surface;
    for (const SoftKeyLabel& label : SoftKeyLabels()) {
        const bool lit = label.lit != nullptr && label.lit();
        const std::uint32_t argb = lit ? colour::Green : colour::White;
        if (label.upper != nullptr) {
            surface.TextCentred(label.upper, kKeyFont, argb, label.centreX, kUpperTop);
        }
        surface.TextCentred(label.lower, kKeyFont, argb, label.centreX, kLowerTop);
    }
}

}  // namespace avq1
