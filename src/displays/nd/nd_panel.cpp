#include "displays/nd/nd_panel.h"

#include "base/module_state.h"
#include "displays/ehsi/ehsi.h"

namespace avq1 {

NdState nd;

namespace {

const StateReset resetNd{[] { nd = NdState{}; }};

void SelectMode(const KeyClick& click) {
    nd.ndMode = click.key.code;
}

void SelectRange(const KeyClick& click) {
    nd.ndRange = click.key.code;
}

template <std::int32_t NdState::*layer>
void ToggleLayer(const KeyClick& /*click*/) {
    nd.*layer = 1 - nd.*layer;
}

void ToggleBoundaries(const KeyClick& /*click*/) {
    ehsi.mapOverlayOn = 1 - ehsi.mapOverlayOn;
}

constexpr KeyArea Position(const char* label, PixelPoint place, KeyAction action,
                           std::int32_t code) {
    return {label, {place.x, place.y, 14, 14}, action, code, KeyArt::Position};
}

constexpr KeyArea Button(const char* label, std::int32_t x, KeyAction action) {
    return {label, {x, 174, 34, 36}, action};
}

}  // namespace

const std::array<KeyArea, kNdPanelKeyCount> kNdPanelKeys = {{
    Position("10", {228, 63}, SelectRange, 10),
    Position("20", {221, 49}, SelectRange, 20),
    Position("40", {226, 33}, SelectRange, 40),
    Position("80", {238, 23}, SelectRange, 80),
    Position("160", {253, 19}, SelectRange, 160),
    Position("320", {272, 21}, SelectRange, 320),
    Position("VOR", {123, 63}, SelectMode, 1),
    Position("NAV", {117, 34}, SelectMode, 2),
    Position("EXP VOR", {141, 19}, SelectMode, 3),
    Position("EXP NAV", {171, 20}, SelectMode, 4),
    Position("MAP", {188, 42}, SelectMode, 5),
    Position("CTR", {187, 58}, SelectMode, 6),
    Position("PLAN", {166, 80}, SelectMode, 7),
    Button("WPT", 256, ToggleLayer<&NdState::ndShowWaypoints>),
    Button("ARPT", 190, ToggleLayer<&NdState::ndShowAirports>),
    Button("STA", 157, ToggleLayer<&NdState::ndShowStations>),
    Button("ADF", 122, ToggleLayer<&NdState::ndShowAdf>),
    Button("BDRY", 223, ToggleBoundaries),
    {"TFC", {256, 48, 14, 14}, ToggleLayer<&NdState::showTraffic>},
}};

}  // namespace avq1
