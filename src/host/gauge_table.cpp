#include "host/gauge_table.h"

#include "base/panel_windows.h"
#include "cdu_gns/gns.h"
#include "cdu_gns/mcu.h"
#include "cdu_smiths/smiths.h"
#include "displays/eadi/eadi.h"
#include "displays/ehsi/ehsi.h"
#include "displays/mfd/mfd.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "displays/screen_keys.h"
#include "displays/traffic/tcas.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "host/bitmaps.h"
#include "host/mouse_table.h"
#include "platform/services.h"
#include "simlink/exported_variables.h"

namespace avq1 {
namespace {

// ---- keys of the small gauges: one 35 x 35 area at 7,7 each ----
constexpr PixelBox kButtonBox{7, 7, 35, 35};
constexpr PixelPoint kButtonSize{50, 49};

void PressVnavButton(const KeyClick&) {
    ToggleVnav();
}

void PressLnavButton(const KeyClick&) {
    ToggleLnav();
}

using ButtonKeys = std::array<KeyArea, 1>;

constexpr ButtonKeys Button(const char* label, KeyAction action, std::int32_t code = 0) {
    return {KeyArea{label, kButtonBox, action, code}};
}

constexpr ButtonKeys kVnavKeys = Button("VNAV", PressVnavButton);
constexpr ButtonKeys kLnavKeys = Button("LNAV", PressLnavButton);
constexpr ButtonKeys kMcuOpenKeys = Button("MCU", ToggleKeyWindow, panel_window::kMcu);
constexpr ButtonKeys kMfdOpenKeys = Button("MFD", ToggleKeyWindow, panel_window::kMfd);
constexpr ButtonKeys kMfdPanelOpenKeys =
    Button("MFD\nCTRL", ToggleKeyWindow, panel_window::kMfdPanel);
constexpr ButtonKeys kFmsOpenKeys = Button("FMS", ToggleKeyWindow, panel_window::kGns);
constexpr ButtonKeys kEhsiPanelOpenKeys =
    Button("EHSI\nCTRL", ToggleKeyWindow, panel_window::kEhsiPanel);
constexpr ButtonKeys kTcasOpenKeys = Button("TCAS", ToggleKeyWindow, panel_window::kTcas);
constexpr ButtonKeys kFms2OpenKeys = Button("FMS\n2", ToggleKeyWindow, panel_window::kSmiths);
constexpr ButtonKeys kEfisOpenKeys =
    Button("EFIS\nCTRL", ToggleKeyWindow, panel_window::kEfisPanel);

// ---- icons ----
bool VnavLit() {
    return guidance.vnavEngaged == 1;
}

template <std::int32_t mode>
bool NdModeIs() {
    return nd.ndMode == mode;
}
template <std::int32_t rangeNm>
bool NdRangeIs() {
    return nd.ndRange == rangeNm;
}

constexpr IconRow kMcuIcons[] = {
    {bitmap::kMcuLamp, {220, 228, 8, 16}, McuLnavLit},
    {bitmap::kMcuLamp, {134, 264, 8, 16}, McuHoldLit},
};
constexpr IconRow kVnavIcons[] = {{bitmap::kVnavLit, {9, 10, 31, 29}, VnavLit}};
constexpr IconRow kLnavIcons[] = {{bitmap::kLnavLit, {9, 10, 31, 29}, McuLnavLit}};
constexpr IconRow kSmithsIcons[] = {
    {bitmap::kSmithsExecLit, {314, 336, 52, 34}, SmithsExecLit},
    {bitmap::kSmithsMessageLit, {376, 434, 26, 26}, SmithsMessageLit},
};
constexpr PixelBox kModeKnobBox{137, 40, 44, 44};
constexpr PixelBox kRangeKnobBox{243, 35, 40, 40};
constexpr IconRow kEfisIcons[] = {
    {bitmap::kEfisMode1, kModeKnobBox, NdModeIs<1>},
    {bitmap::kEfisMode2, kModeKnobBox, NdModeIs<2>},
    {bitmap::kEfisMode3, kModeKnobBox, NdModeIs<3>},
    {bitmap::kEfisMode4, kModeKnobBox, NdModeIs<4>},
    {bitmap::kEfisMode5, kModeKnobBox, NdModeIs<5>},
    {bitmap::kEfisMode6, kModeKnobBox, NdModeIs<6>},
    {bitmap::kEfisRange10, kRangeKnobBox, NdRangeIs<10>},
    {bitmap::kEfisRange40, kRangeKnobBox, NdRangeIs<40>},
    {bitmap::kEfisRange80, kRangeKnobBox, NdRangeIs<80>},
    {bitmap::kEfisRange160, kRangeKnobBox, NdRangeIs<160>},
    {bitmap::kEfisRange320, kRangeKnobBox, NdRangeIs<320>},
};

// ---- behaviours ----
constexpr GaugeBehaviour Display(void (*drawScreen)(const DrawTarget&), std::uint32_t popupIdent) {
    return {.takesSimFolder = true,
            .initialises = true,
            .loadsNavigation = true,
            .updatesFrame = true,
            .startsGraphics = true,
            .hiddenWhileMainShows = true,
            .popupIdent = popupIdent,
            .drawScreen = drawScreen};
}

// A map display also has a mode for the second virtual-cockpit instance.
constexpr GaugeBehaviour MapDisplay(void (*drawScreen)(const DrawTarget&), std::uint32_t popupIdent,
                                    bool startsFlightLog) {
    GaugeBehaviour behaviour = Display(drawScreen, popupIdent);
    behaviour.secondCockpit = true;
    behaviour.startsFlightLog = startsFlightLog;
    return behaviour;
}

constexpr GaugeBehaviour MultifunctionDisplay() {
    GaugeBehaviour behaviour = Display(DrawMfd, panel_window::kMfd);
    behaviour.keepsPicture = MfdKeepsPicture;
    return behaviour;
}

constexpr GaugeBehaviour CompactUnit() {
    GaugeBehaviour behaviour = Display(DrawMcu, 0);
    behaviour.keyboardUser = &kMcuKeyboard;
    behaviour.beforeUpdate = PollMcuKeyboard;
    return behaviour;
}

// The large units draw whatever windows are open.
constexpr GaugeBehaviour Unit(void (*drawScreen)(const DrawTarget&), bool logsAfterLoad) {
    GaugeBehaviour behaviour = Display(drawScreen, 0);
    behaviour.hiddenWhileMainShows = false;
    behaviour.startsFlightLog = true;
    behaviour.logsAfterLoad = logsAfterLoad;
    return behaviour;
}

constexpr GaugeBehaviour GnsUnit(void (*onInstall)()) {
    GaugeBehaviour behaviour = Unit(DrawGns, false);
    behaviour.onInstall = onInstall;
    behaviour.keyboardUser = &kGnsKeyboard;
    behaviour.beforeUpdate = PollGnsKeyboard;
    return behaviour;
}

constexpr GaugeBehaviour SmithsUnit() {
    GaugeBehaviour behaviour = Unit(DrawSmiths, true);
    behaviour.onInstall = InstallSmiths;
    behaviour.keyboardUser = &kSmithsKeyboard;
    behaviour.beforeUpdate = PollSmithsKeyboard;
    return behaviour;
}

constexpr GaugeBehaviour kMcu = CompactUnit();
constexpr GaugeBehaviour kMfd = MultifunctionDisplay();
constexpr GaugeBehaviour kMfdPanel{
    .takesSimFolder = true, .initialises = true, .onPanelDraw = DrawMfdPanel};
constexpr GaugeBehaviour kGns = GnsUnit(InstallGns);
constexpr GaugeBehaviour kGnsLm = GnsUnit(nullptr);
constexpr GaugeBehaviour kEadi = Display(DrawEadi, panel_window::kEadi);
constexpr GaugeBehaviour kEhsi = MapDisplay(DrawEhsi, panel_window::kEhsi, true);
constexpr GaugeBehaviour kEhsiNoBezel = MapDisplay(DrawEhsi, panel_window::kEhsiNoBezel, false);
constexpr GaugeBehaviour kTcas = Display(DrawTcas, panel_window::kTcas);
constexpr GaugeBehaviour kNd = MapDisplay(DrawNd, panel_window::kNd, false);
constexpr GaugeBehaviour kPanel{.initialises = true, .loadsNavigation = true, .updatesFrame = true};
constexpr GaugeBehaviour kModeButton{.initialises = true};
constexpr GaugeBehaviour kSmiths = SmithsUnit();
constexpr GaugeBehaviour kServer{.onInstall = RegisterExportedVariables,
                                 .onKill = UnregisterExportedVariables};

// ---- the table ----
constexpr std::uint32_t kPlain = 0;
constexpr std::uint32_t kLuminous = image_flag::kLuminous;
constexpr std::uint32_t kBare = image_flag::kTransparent;

constexpr SurfaceRow kMcuSurface{bitmap::kMcuScreen, {40, 32, 420, 159}, true};
constexpr SurfaceRow kMfdSurface{bitmap::kMfdScreen, {28, 33, 272, 314}};
constexpr SurfaceRow kGnsSurface{bitmap::kGnsScreen, {90, 57, 292, 217}};
constexpr SurfaceRow kEfsSurface{bitmap::kEfsScreen, {51, 42, 280, 262}};
constexpr SurfaceRow kEfsBareSurface{bitmap::kEfsScreen, {0, 0, 280, 262}};
constexpr SurfaceRow kNdSurface{bitmap::kNdScreen, {18, 25, 247, 294}};
constexpr SurfaceRow kNdBareSurface{bitmap::kNdScreen, {0, 0, 247, 294}};
constexpr SurfaceRow kSmithsSurface{bitmap::kSmithsScreen, {66, 40, 284, 233}};

constexpr PixelPoint kMcuSize{501, 386};
constexpr PixelPoint kGnsSize{550, 433};
constexpr PixelPoint kEfsSize{384, 371};
constexpr PixelPoint kEfsBareSize{280, 262};
constexpr PixelPoint kEhsiPanelSize{500, 169};
constexpr PixelPoint kNdSize{281, 337};
constexpr PixelPoint kNdBareSize{247, 294};
constexpr PixelPoint kEfisPanelSize{313, 212};
constexpr PixelPoint kSmithsSize{415, 640};

GaugeRow Opener(const char* name, std::int32_t background, std::uint32_t flags,
                const KeyTable* keys) {
    return {name, background, kButtonSize, flags, {}, {}, keys, nullptr};
}

// clang-format off
std::array<GaugeRow, kGaugeCount> BuildGaugeTable() {
    const KeyTable* const eadiKeys = KeyTableOf<kEadiKeys>();
    const KeyTable* const ehsiPanelKeys = KeyTableOf<kEhsiPanelKeys>();
    const KeyTable* const ndKeys = KeyTableOf<kNdKeys>();
    return {{
        {"MCU", bitmap::kMcu, kMcuSize, kPlain, kMcuSurface, kMcuIcons, KeyTableOf<kMcuKeys>(), &kMcu},
        {"MCU_LM", bitmap::kMcu, kMcuSize, kLuminous, kMcuSurface, kMcuIcons, KeyTableOf<kMcuKeys>(), &kMcu},
        {"P1000_MFD", bitmap::kMfd, {326, 433}, kPlain, kMfdSurface, {}, KeyTableOf<kMfdKeys>(), &kMfd},
        {"P1000_MFD_CNTR", bitmap::kMfdPanel, {605, 234}, kPlain, {}, {}, KeyTableOf<kMfdPanelKeys>(), &kMfdPanel},
        {"GNSXLS", bitmap::kGns, kGnsSize, kPlain, kGnsSurface, {}, KeyTableOf<kGnsKeys>(), &kGns},
        {"GNSXLS_LM", bitmap::kGns, kGnsSize, kLuminous, kGnsSurface, {}, KeyTableOf<kGnsLmKeys>(), &kGnsLm},
        {"EFS50_EADI", bitmap::kEadi, kEfsSize, kPlain, kEfsSurface, {}, eadiKeys, &kEadi},
        {"EFS50_EHSI", bitmap::kEhsi, kEfsSize, kPlain, kEfsSurface, {}, KeyTableOf<kEhsiKeys>(), &kEhsi},
        {"EFS50_EADI_NB", bitmap::kEfsScreen, kEfsBareSize, kBare, kEfsBareSurface, {}, eadiKeys, &kEadi},
        {"EFS50_EHSI_NB", bitmap::kEfsScreen, kEfsBareSize, kBare, kEfsBareSurface, {}, KeyTableOf<kEhsiNbKeys>(), &kEhsiNoBezel},
        {"EFS50_TCAS", bitmap::kEhsi, kEfsSize, kPlain, kEfsSurface, {}, nullptr, &kTcas},
        {"EFS50_EHSI_CNTR", bitmap::kEhsiPanel, kEhsiPanelSize, kPlain, {}, {}, ehsiPanelKeys, &kPanel},
        {"EFS50_EHSI_CNTR_LM", bitmap::kEhsiPanel, kEhsiPanelSize, kLuminous, {}, {}, ehsiPanelKeys, &kPanel},
        {"VNAV", bitmap::kVnavButton, kButtonSize, kPlain, {}, kVnavIcons, KeyTableOf<kVnavKeys>(), &kModeButton},
        {"LNAV", bitmap::kLnavButton, kButtonSize, kPlain, {}, kLnavIcons, KeyTableOf<kLnavKeys>(), &kModeButton},
        Opener("EFIS_CTRL_OPEN", bitmap::kEfisPanelOpener, kPlain, KeyTableOf<kEfisOpenKeys>()),
        Opener("EHSI_CNTR_OPEN", bitmap::kEhsiPanelOpener, kPlain, KeyTableOf<kEhsiPanelOpenKeys>()),
        Opener("EHSI_CNTR_OPEN_LM", bitmap::kEhsiPanelOpener, kLuminous, KeyTableOf<kEhsiPanelOpenKeys>()),
        Opener("EHSI_TCAS_OPEN", bitmap::kTcasOpener, kPlain, KeyTableOf<kTcasOpenKeys>()),
        Opener("FMS_OPEN", bitmap::kGnsOpener, kPlain, KeyTableOf<kFmsOpenKeys>()),
        Opener("FMS_OPEN_LM", bitmap::kGnsOpener, kLuminous, KeyTableOf<kFmsOpenKeys>()),
        Opener("FMS2_OPEN", bitmap::kSmithsOpener, kPlain, KeyTableOf<kFms2OpenKeys>()),
        Opener("MCU_OPEN", bitmap::kMcuOpener, kPlain, KeyTableOf<kMcuOpenKeys>()),
        Opener("P1000_MFD_OPEN", bitmap::kMfdOpener, kPlain, KeyTableOf<kMfdOpenKeys>()),
        Opener("P1000_MFD_CNTR_OPEN", bitmap::kMfdPanelOpener, kPlain, KeyTableOf<kMfdPanelOpenKeys>()),
        {"HW_B737_ND", bitmap::kNd, kNdSize, kPlain, kNdSurface, {}, ndKeys, &kNd},
        {"HW_B737_ND_BR", bitmap::kNdBrown, kNdSize, kPlain, kNdSurface, {}, ndKeys, &kNd},
        {"HW_B737_ND_NB", bitmap::kNdScreen, kNdBareSize, kBare, kNdBareSurface, {}, ndKeys, &kNd},
        {"HW_B737_EFIS_CNTR", bitmap::kEfisPanel, kEfisPanelSize, kPlain, {}, kEfisIcons, KeyTableOf<kNdPanelKeys>(), &kPanel},
        {"HW_B737_EFIS_CNTR_BR", bitmap::kEfisPanelBrown, kEfisPanelSize, kPlain, {}, kEfisIcons, KeyTableOf<kNdPanelKeys>(), &kPanel},
        {"SMITHS_FMS_BR", bitmap::kSmithsBrown, kSmithsSize, kPlain, kSmithsSurface, kSmithsIcons, KeyTableOf<kSmithsKeys>(), &kSmiths},
        {"SMITHS_FMS", bitmap::kSmiths, kSmithsSize, kPlain, kSmithsSurface, kSmithsIcons, KeyTableOf<kSmithsKeys>(), &kSmiths},
        {"SERVER", 0, {0, 0}, kPlain, {}, {}, nullptr, &kServer},
    }};
}
// clang-format on

}  // namespace

const std::array<GaugeRow, kGaugeCount>& GaugeTable() {
    static const std::array<GaugeRow, kGaugeCount> table = BuildGaugeTable();
    return table;
}

}  // namespace avq1
