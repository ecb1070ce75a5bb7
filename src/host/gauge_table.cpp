#include "host/gauge_table.h"

#include <string_view>

#include "cdu_gns/gns_keys.h"
#include "cdu_gns/mcu.h"
#include "cdu_smiths/smiths_keys.h"
#include "displays/eadi.h"
#include "displays/ehsi.h"
#include "displays/mfd.h"
#include "displays/nd.h"
#include "displays/nd_panel.h"
#include "displays/screen_keys.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
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
constexpr ButtonKeys kMcuOpenKeys = Button("MCU", ToggleKeyWindow, 4001);
constexpr ButtonKeys kMfdOpenKeys = Button("MFD", ToggleKeyWindow, 4002);
constexpr ButtonKeys kMfdPanelOpenKeys = Button("MFD\nCTRL", ToggleKeyWindow, 4003);
constexpr ButtonKeys kFmsOpenKeys = Button("FMS", ToggleKeyWindow, 4004);
constexpr ButtonKeys kEhsiPanelOpenKeys = Button("EHSI\nCTRL", ToggleKeyWindow, 4007);
constexpr ButtonKeys kTcasOpenKeys = Button("TCAS", ToggleKeyWindow, 4010);
constexpr ButtonKeys kFms2OpenKeys = Button("FMS\n2", ToggleKeyWindow, 4012);
constexpr ButtonKeys kEfisOpenKeys = Button("EFIS\nCTRL", ToggleKeyWindow, 4013);

// ---- icons ----
bool VnavLit() {
    return guidance.vnavEngaged == 1;
}
bool ExecLit() {
    return planBook.status == RouteStatus::AwaitsExecution ||
           planBook.status == RouteStatus::Modified;
}
bool NeverLit() {
    return false;
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
    {0x2636, {220, 228, 8, 16}, McuLnavLit},
    {0x2636, {134, 264, 8, 16}, McuHoldLit},
};
constexpr IconRow kVnavIcons[] = {{0x2638, {9, 10, 31, 29}, VnavLit}};
constexpr IconRow kLnavIcons[] = {{0x2660, {9, 10, 31, 29}, McuLnavLit}};
constexpr IconRow kSmithsIcons[] = {
    {0x2665, {314, 336, 52, 34}, ExecLit},
    {0x2672, {376, 434, 26, 26}, NeverLit},
};
constexpr PixelBox kModeKnobBox{137, 40, 44, 44};
constexpr PixelBox kRangeKnobBox{243, 35, 40, 40};
constexpr IconRow kEfisIcons[] = {
    {0x2673, kModeKnobBox, NdModeIs<1>},     {0x2674, kModeKnobBox, NdModeIs<2>},
    {0x2675, kModeKnobBox, NdModeIs<3>},     {0x2676, kModeKnobBox, NdModeIs<4>},
    {0x2677, kModeKnobBox, NdModeIs<5>},     {0x2678, kModeKnobBox, NdModeIs<6>},
    {0x2679, kRangeKnobBox, NdRangeIs<10>},  {0x267A, kRangeKnobBox, NdRangeIs<40>},
    {0x267B, kRangeKnobBox, NdRangeIs<80>},  {0x267C, kRangeKnobBox, NdRangeIs<160>},
    {0x267D, kRangeKnobBox, NdRangeIs<320>},
};

// ---- screens ----
// Screens that are not there yet show their glass cleared.
void DrawBlank(const DrawTarget& target) {
    Surface(target, target.widthPx, target.heightPx);
}

// ---- behaviours ----
constexpr std::string_view kDisplayWords[] = {"VC", "VC2", "WN"};
constexpr std::string_view kPanelWords[] = {"VC", "WN"};

constexpr GaugeBehaviour Display(void (*drawScreen)(const DrawTarget&), std::uint32_t popupIdent) {
    return {.takesSimFolder = true,
            .initialises = true,
            .loadsNavigation = true,
            .placementWords = kDisplayWords,
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

constexpr GaugeBehaviour kMcu = CompactUnit();
constexpr GaugeBehaviour kMfd = Display(DrawBlank, 4002);
constexpr GaugeBehaviour kMfdPanel{
    .takesSimFolder = true, .initialises = true, .onPanelDraw = DrawMfdPanel};
constexpr GaugeBehaviour kGns = Unit(DrawBlank, false);
constexpr GaugeBehaviour kEadi = Display(DrawEadi, 4005);
constexpr GaugeBehaviour kEhsi = MapDisplay(DrawEhsi, 4008, true);
constexpr GaugeBehaviour kEhsiNoBezel = MapDisplay(DrawEhsi, 4009, false);
constexpr GaugeBehaviour kTcas = Display(DrawBlank, 4010);
constexpr GaugeBehaviour kNd = MapDisplay(DrawNd, 4011, false);
constexpr GaugeBehaviour kPanel{.initialises = true,
                                .loadsNavigation = true,
                                .placementWords = kPanelWords,
                                .updatesFrame = true};
constexpr GaugeBehaviour kModeButton{.initialises = true, .placementWords = kPanelWords};
constexpr GaugeBehaviour kSmiths = Unit(DrawBlank, true);
constexpr GaugeBehaviour kServer{.onInstall = RegisterExportedVariables,
                                 .onKill = UnregisterExportedVariables};

// ---- the table ----
constexpr std::uint32_t kPlain = 0;
constexpr std::uint32_t kLuminous = image_flag::kLuminous;
constexpr std::uint32_t kBare = image_flag::kTransparent;

constexpr SurfaceRow kMcuSurface{0x2611, {40, 32, 420, 159}, true};
constexpr SurfaceRow kMfdSurface{0x2601, {28, 33, 272, 314}};
constexpr SurfaceRow kGnsSurface{0x2617, {90, 57, 292, 217}};
constexpr SurfaceRow kEfsSurface{0x2621, {51, 42, 280, 262}};
constexpr SurfaceRow kEfsBareSurface{0x2621, {0, 0, 280, 262}};
constexpr SurfaceRow kNdSurface{0x2666, {18, 25, 247, 294}};
constexpr SurfaceRow kNdBareSurface{0x2666, {0, 0, 247, 294}};
constexpr SurfaceRow kSmithsSurface{0x2662, {66, 40, 284, 233}};

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
        {"MCU", 0x2607, kMcuSize, kPlain, kMcuSurface, kMcuIcons, KeyTableOf<kMcuKeys>(), &kMcu},
        {"MCU_LM", 0x2607, kMcuSize, kLuminous, kMcuSurface, kMcuIcons, KeyTableOf<kMcuKeys>(), &kMcu},
        {"P1000_MFD", 0x2600, {326, 433}, kPlain, kMfdSurface, {}, KeyTableOf<kMfdKeys>(), &kMfd},
        {"P1000_MFD_CNTR", 0x2612, {605, 234}, kPlain, {}, {}, KeyTableOf<kMfdPanelKeys>(), &kMfdPanel},
        {"GNSXLS", 0x2618, kGnsSize, kPlain, kGnsSurface, {}, KeyTableOf<kGnsKeys>(), &kGns},
        {"GNSXLS_LM", 0x2618, kGnsSize, kLuminous, kGnsSurface, {}, KeyTableOf<kGnsKeys>(), &kGns},
        {"EFS50_EADI", 0x2622, kEfsSize, kPlain, kEfsSurface, {}, eadiKeys, &kEadi},
        {"EFS50_EHSI", 0x2624, kEfsSize, kPlain, kEfsSurface, {}, KeyTableOf<kEhsiKeys>(), &kEhsi},
        {"EFS50_EADI_NB", 0x2621, kEfsBareSize, kBare, kEfsBareSurface, {}, eadiKeys, &kEadi},
        {"EFS50_EHSI_NB", 0x2621, kEfsBareSize, kBare, kEfsBareSurface, {}, KeyTableOf<kEhsiNbKeys>(), &kEhsiNoBezel},
        {"EFS50_TCAS", 0x2624, kEfsSize, kPlain, kEfsSurface, {}, nullptr, &kTcas},
        {"EFS50_EHSI_CNTR", 0x2632, kEhsiPanelSize, kPlain, {}, {}, ehsiPanelKeys, &kPanel},
        {"EFS50_EHSI_CNTR_LM", 0x2632, kEhsiPanelSize, kLuminous, {}, {}, ehsiPanelKeys, &kPanel},
        {"VNAV", 0x2634, kButtonSize, kPlain, {}, kVnavIcons, KeyTableOf<kVnavKeys>(), &kModeButton},
        {"LNAV", 0x2658, kButtonSize, kPlain, {}, kLnavIcons, KeyTableOf<kLnavKeys>(), &kModeButton},
        Opener("EFIS_CTRL_OPEN", 0x2700, kPlain, KeyTableOf<kEfisOpenKeys>()),
        Opener("EHSI_CNTR_OPEN", 0x2640, kPlain, KeyTableOf<kEhsiPanelOpenKeys>()),
        Opener("EHSI_CNTR_OPEN_LM", 0x2640, kLuminous, KeyTableOf<kEhsiPanelOpenKeys>()),
        Opener("EHSI_TCAS_OPEN", 0x2642, kPlain, KeyTableOf<kTcasOpenKeys>()),
        Opener("FMS_OPEN", 0x2644, kPlain, KeyTableOf<kFmsOpenKeys>()),
        Opener("FMS_OPEN_LM", 0x2644, kLuminous, KeyTableOf<kFmsOpenKeys>()),
        Opener("FMS2_OPEN", 0x2698, kPlain, KeyTableOf<kFms2OpenKeys>()),
        Opener("MCU_OPEN", 0x2646, kPlain, KeyTableOf<kMcuOpenKeys>()),
        Opener("P1000_MFD_OPEN", 0x2654, kPlain, KeyTableOf<kMfdOpenKeys>()),
        Opener("P1000_MFD_CNTR_OPEN", 0x2656, kPlain, KeyTableOf<kMfdPanelOpenKeys>()),
        {"HW_B737_ND", 0x2668, kNdSize, kPlain, kNdSurface, {}, ndKeys, &kNd},
        {"HW_B737_ND_BR", 0x2669, kNdSize, kPlain, kNdSurface, {}, ndKeys, &kNd},
        {"HW_B737_ND_NB", 0x2666, kNdBareSize, kBare, kNdBareSurface, {}, ndKeys, &kNd},
        {"HW_B737_EFIS_CNTR", 0x2670, kEfisPanelSize, kPlain, {}, kEfisIcons, KeyTableOf<kNdPanelKeys>(), &kPanel},
        {"HW_B737_EFIS_CNTR_BR", 0x2671, kEfisPanelSize, kPlain, {}, kEfisIcons, KeyTableOf<kNdPanelKeys>(), &kPanel},
        {"SMITHS_FMS_BR", 0x2663, kSmithsSize, kPlain, kSmithsSurface, kSmithsIcons, KeyTableOf<kSmithsKeys>(), &kSmiths},
        {"SMITHS_FMS", 0x2664, kSmithsSize, kPlain, kSmithsSurface, kSmithsIcons, KeyTableOf<kSmithsKeys>(), &kSmiths},
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
