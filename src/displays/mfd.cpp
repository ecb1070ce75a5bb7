#include "displays/mfd.h"

#include "base/module_state.h"
#include "base/panel_windows.h"
#include "guidance/guidance_state.h"

namespace avq1 {

MfdState mfd;

namespace {

const StateReset resetMfd{[] { mfd = MfdState{}; }};

constexpr std::int32_t kLastPanelFrame = 29999;
constexpr bool kRepeats = true;

}  // namespace

const std::array<KeyArea, kMfdKeyCount> kMfdKeys = {{
    {"MFD window", {102, 147, 100, 100}, ToggleKeyWindow, panel_window::kMfd, KeyArt::None},
    {"SET", {19, 387, 36, 36}, nullptr, 0, KeyArt::Knob, kRepeats},
    {"1", {70, 382, 30, 24}},
    {"2", {107, 382, 30, 24}},
    {"3", {144, 382, 30, 24}},
    {"4", {182, 382, 30, 24}},
    {"5", {220, 382, 30, 24}},
    {"RNG", {274, 387, 36, 36}, nullptr, 0, KeyArt::Knob, kRepeats},
}};

const std::array<KeyArea, kMfdPanelKeyCount> kMfdPanelKeys = {{
    {"MAP", {65, 25, 55, 55}},
    {"TCAS", {131, 25, 60, 55}},
    {"RNG", {70, 135, 20, 50}, nullptr, 0, KeyArt::Knob},
    {"APT", {150, 165, 40, 40}},
    {"NAV", {215, 114, 40, 40}},
}};

void DrawMfdPanel() {
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
