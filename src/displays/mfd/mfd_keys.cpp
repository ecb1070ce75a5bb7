// The keys of the multifunction display and of its control panel. With the panel the soft keys lead
// a menu and the panel has layers and range; without it they switch the layers.
#include <algorithm>
#include <cmath>
#include <span>

#include "base/module_state.h"
#include "base/panel_windows.h"
#include "displays/ehsi/ehsi.h"
#include "displays/mfd/mfd.h"
#include "displays/mfd/mfd_speeds.h"
#include "displays/nd/nd_panel.h"
#include "displays/range_steps.h"
#include "guidance/guidance_state.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

MfdState mfd;

namespace {

const StateReset resetMfd{[] { mfd = MfdState{}; }};

constexpr std::int32_t kLastPanelFrame = 29999;
constexpr double kLeastTrafficRange = 5;
constexpr double kMostTrafficRange = 40;
constexpr double kAltitudeStepFt = 100;
constexpr double kMostPathAngleDeg = 6.0;
constexpr MfdMapPlace kMapModePlace{134, 148, 80};

// ---- layers and range ----
void Toggle(std::int32_t& flag) {
    flag = 1 - flag;
    guidance.blinkCounter = kRestartBlink;
}

template <std::int32_t MfdState::*layer>
void ToggleLayer(const KeyClick& /*click*/) {
    Toggle(mfd.*layer);
}
void ToggleTraffic(const KeyClick& /*click*/) {
    Toggle(nd.showTraffic);
}
void ToggleBoundaries(const KeyClick& /*click*/) {
    Toggle(ehsi.mapOverlayOn);
}

void StepRange(bool up) {
    const bool showsTraffic = nd.showTraffic == 1;
    double& range = showsTraffic ? mfd.mfdTrafficRange : mfd.mfdMapRange;
    range = up ? StepUp(kMapRanges, range) : StepDown(kMapRanges, range);
    if (showsTraffic && (range < kLeastTrafficRange || range > kMostTrafficRange)) {
        range = up ? kLeastTrafficRange : kMostTrafficRange;
    }
    guidance.blinkCounter = kRestartBlink;
}

void TurnRangeKnob(const KeyClick& click) {
    if (mfd.mfdPanelPresent == 0) {
        StepRange(click.InRightHalf());
    }
}

void TurnPanelRangeKnob(const KeyClick& click) {
    StepRange(!click.InLowerHalf());
}

void ToggleMapMode(const KeyClick& /*click*/) {
    if (mfd.mfdMapModeOn == 1) {
        LeaveMfdMapMode();
    } else {
        mfd.mfdMapModeOn = 1;
        mfd.map = kMapModePlace;
        mfd.storedPosition = {aircraft.latitude, aircraft.longitude};
    }
    guidance.blinkCounter = kRestartBlink;
}

// ---- the menu ----
bool IsSetting() {
    return mfd.mfdMenuLevel == kMfdSettingLevel;
}

void LeavePage(const KeyClick& /*click*/) {
    if (IsSetting()) {
        mfd.mfdMenuLevel = kMfdTopLevel;
        mfd.mfdSelA = mfd.mfdSelB = 0;
    }
    mfd.page = MfdPage::Map;
}

void SetDistance(const KeyClick& /*click*/) {
    if (!IsSetting()) {
        mfd.mfdMenuLevel = kMfdSettingLevel;
        mfd.page = MfdPage::Map;
        return;
    }
    mfd.mfdSelA = mfd.mfdSelA == 1 ? 2 : 1;
    mfd.mfdSelB = mfd.mfdSelC = 0;
}

// The page's next speed, or the page.
void OpenSpeeds(MfdPage page) {
    mfd.speedRow = mfd.page == page
                       ? (mfd.speedRow + 1) % static_cast<std::int32_t>(MfdSpeedRows(page).size())
                       : 0;
    mfd.page = page;
}

void SetAltitude(const KeyClick& /*click*/) {
    if (!IsSetting()) {
        OpenSpeeds(MfdPage::TakeoffSpeeds);
        return;
    }
    mfd.mfdSelA = mfd.mfdSelC = 0;
    mfd.mfdSelB = 1;
}

void SetPathAngle(const KeyClick& /*click*/) {
    if (!IsSetting()) {
        OpenSpeeds(MfdPage::LandingSpeeds);
        return;
    }
    mfd.mfdSelA = mfd.mfdSelB = 0;
    mfd.mfdSelC = 1;
    mfd.mfdValueA = mfd.mfdValueB = 0;
}

struct SoftKeyRow {
    KeyAction withoutPanel;
    KeyAction withPanel;
};

constexpr SoftKeyRow kSoftKeys[] = {{ToggleLayer<&MfdState::mfdLayerA>, LeavePage},
                                    {ToggleLayer<&MfdState::mfdLayerB>, SetDistance},
                                    {ToggleLayer<&MfdState::mfdLayerC>, SetAltitude},
                                    {ToggleTraffic, SetPathAngle},
                                    {ToggleBoundaries, nullptr}};

void PressSoftKey(const KeyClick& click) {
    const SoftKeyRow& row = kSoftKeys[click.key.code];
    const KeyAction action = mfd.mfdPanelPresent == 0 ? row.withoutPanel : row.withPanel;
    if (action != nullptr) {
        action(click);
        guidance.blinkCounter = kRestartBlink;
    }
}

// ---- the left knob ----
void StepSetting(bool up) {
    if (mfd.mfdSelA > 0 && (up || mfd.mfdValueA > 0)) {
        mfd.mfdValueA += up ? 1 : -1;
    }
    if (mfd.mfdSelB == 1 && (up || mfd.mfdValueB >= kAltitudeStepFt)) {
        mfd.mfdValueB += up ? kAltitudeStepFt : -kAltitudeStepFt;
    }
    if (mfd.mfdSelC == 1) {
        const double tenths = std::round(performance.flightPathAngleDeg * 10) + (up ? 1 : -1);
        performance.flightPathAngleDeg = std::clamp(tenths / 10, 0.0, kMostPathAngleDeg);
        mfd.mfdValueA = mfd.mfdValueB = 0;
    }
    mfd.mfdRequiredVs = MfdRequiredVerticalSpeed();
}

void TurnSettingKnob(const KeyClick& click) {
    const bool speeds = mfd.page != MfdPage::Map;
    if (mfd.mfdPanelPresent == 0 || (!IsSetting() && !speeds)) {
        return;
    }
    if (IsSetting()) {
        StepSetting(click.InRightHalf());
    } else {
        StepMfdSpeed(click.InRightHalf());
    }
    guidance.blinkCounter = kRestartBlink;
}

constexpr bool kRepeats = true;

}  // namespace

const std::array<KeyArea, kMfdKeyCount> kMfdKeys = {{
    {"MFD window", {102, 147, 100, 100}, ToggleKeyWindow, panel_window::kMfd, KeyArt::None},
    {"SET", {19, 387, 36, 36}, TurnSettingKnob, 0, KeyArt::Knob, kRepeats},
    {"1", {70, 382, 30, 24}, PressSoftKey, 0},
    {"2", {107, 382, 30, 24}, PressSoftKey, 1},
    {"3", {144, 382, 30, 24}, PressSoftKey, 2},
    {"4", {182, 382, 30, 24}, PressSoftKey, 3},
    {"5", {220, 382, 30, 24}, PressSoftKey, 4},
    {"RNG", {274, 387, 36, 36}, TurnRangeKnob, 0, KeyArt::Knob, kRepeats},
}};

const std::array<KeyArea, kMfdPanelKeyCount> kMfdPanelKeys = {{
    {"MAP", {65, 25, 55, 55}, ToggleMapMode},
    {"TCAS", {131, 25, 60, 55}, ToggleTraffic},
    {"RNG", {70, 135, 20, 50}, TurnPanelRangeKnob, 0, KeyArt::Knob},
    {"APT", {150, 165, 40, 40}, ToggleLayer<&MfdState::mfdLayerA>},
    {"NAV", {215, 114, 40, 40}, ToggleLayer<&MfdState::mfdLayerB>},
}};

double MfdRangeInUse() {
    return nd.showTraffic == 1 ? mfd.mfdTrafficRange : mfd.mfdMapRange;
}

double MfdRequiredVerticalSpeed() {
    constexpr double kTrueAirspeedFactor = 1 + 0.015 * 15;
    constexpr double kFeetPerMinutePerDegree = 100;  // and nm per minute
    const double nmPerMinute = performance.descentIas * kTrueAirspeedFactor / 60;
    if (mfd.mfdSelC == 1 || !(mfd.mfdValueA > 0 && mfd.mfdValueB > 0)) {
        return performance.flightPathAngleDeg * kFeetPerMinutePerDegree * nmPerMinute;
    }
    return nmPerMinute > 0 ? (mfd.mfdValueB - aircraft.altitudeFt) / (mfd.mfdValueA / nmPerMinute)
                           : 0;
}

void LeaveMfdMapMode() {
    mfd.mfdMapModeOn = 0;
    mfd.map = MfdMapPlace{};
}

void DrawMfdPanel() {
    mfd.panelDrawn = 1;
    if (mfd.mfdPanelPresent == 0) {
        mfd.mfdPanelPresent = 1;
        mfd.panelFrameCounter = 1;
        guidance.blinkCounter = kRestartBlink;
        return;
    }
    if (mfd.panelFrameCounter > kLastPanelFrame) {
        mfd.panelFrameCounter = 0;
    }
    ++mfd.panelFrameCounter;
}

}  // namespace avq1
