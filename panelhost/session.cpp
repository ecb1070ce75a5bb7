#include "panelhost/session.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "panelhost/flight_model.h"
#include "panelhost/host_state.h"
#include "panelhost/key_events.h"
#include "panelhost/mouse.h"
#include "panelhost/services.h"
#include "panelhost/text.h"
#include "panelhost/variables.h"

namespace panelhost {
namespace {

namespace fs = std::filesystem;

constexpr double kTickS = 1.0 / 18;
constexpr double kMaxStepCallS = 1;
constexpr std::size_t kMaxPanelBytes = 4U << 20U;
constexpr std::size_t kMaxBackgroundBytes = 64U << 20U;
constexpr double kStartFuelPounds = 30000;

struct TimedEvent {
    avq1::PanelEvent event;
    enum class Extra { None, Module, Window } extra;
};

constexpr TimedEvent kStartEvents[] = {
    {avq1::PanelEvent::Install, TimedEvent::Extra::Module},
    {avq1::PanelEvent::AfterInstall, TimedEvent::Extra::None},
    {avq1::PanelEvent::Initialise, TimedEvent::Extra::None},
    {avq1::PanelEvent::AfterInitialise, TimedEvent::Extra::None},
    {avq1::PanelEvent::ConnectToWindow, TimedEvent::Extra::Window},
};
constexpr TimedEvent kEndEvents[] = {
    {avq1::PanelEvent::DisconnectFromWindow, TimedEvent::Extra::None},
    {avq1::PanelEvent::Kill, TimedEvent::Extra::None},
    {avq1::PanelEvent::AfterKill, TimedEvent::Extra::None},
};

void Send(Placement& placement, avq1::PanelEvent event, std::uintptr_t extra = 0) {
    if (placement.header.callback != nullptr) {
        placement.header.callback(&placement.header, static_cast<std::int32_t>(event), extra);
    }
}

template <std::size_t count>
void SendAll(HostState& host, const TimedEvent (&events)[count]) {
    for (const auto& placement : host.placements) {
        for (const TimedEvent& timed : events) {
            std::uintptr_t extra = 0;
            if (timed.extra == TimedEvent::Extra::Module) {
                extra = reinterpret_cast<std::uintptr_t>(host.module.handle);
            } else if (timed.extra == TimedEvent::Extra::Window) {
                extra = reinterpret_cast<std::uintptr_t>(
                    host.windows[static_cast<std::size_t>(placement->window)].get());
            }
            Send(*placement, timed.event, extra);
        }
    }
}

std::string Absolute(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

// Options with every path made absolute, before the process changes its folder.
SessionOptions Resolved(const SessionOptions& given) {
    SessionOptions options = given;
    options.simFolder = Absolute(given.simFolder.empty() ? "." : given.simFolder);
    if (given.modulePath.empty()) {
        options.modulePath = FindFileNoCase(options.simFolder, "gauges/avq1.gau");
        if (options.modulePath.empty()) {
            options.modulePath = options.simFolder + "/gauges/avq1.gau";
        }
    } else {
        options.modulePath = Absolute(given.modulePath);
    }
    if (given.panelPath.empty()) {
        const std::string own = FindFileNoCase(options.simFolder, "panel.cfg");
        const std::string inFolder = FindFileNoCase(options.simFolder, "panel/panel.cfg");
        options.panelPath = !own.empty()        ? own
                            : !inFolder.empty() ? inFolder
                                                : options.simFolder + "/panel.cfg";
    } else {
        options.panelPath = Absolute(given.panelPath);
    }
    options.surfaceScale = std::clamp(given.surfaceScale, 1, 3);
    return options;
}

// The later simulators are told by their program and folders, three of the four.
bool IsLaterSimulator(const std::string& simFolder) {
    constexpr std::string_view kMarks[] = {"fsx.exe", "ace.exe", "simobjects", "missions"};
    int found = 0;
    for (const std::string_view mark : kMarks) {
        found += FindFileNoCase(simFolder, mark).empty() ? 0 : 1;
    }
    return found >= 3;
}

double VariationAt(const World&, const GeoPoint& at) {
    const HostState* const host = ActiveHost();
    if (host != nullptr && host->options.magneticVariationDeg) {
        return *host->options.magneticVariationDeg;
    }
    return WorldVariation(at);
}

void RefreshSurroundings(HostState& host) {
    World& world = host.world;
    world.magneticVariation = VariationAt(world, world.aircraft.position);
    world.groundElevationFt = GroundElevationFt(host.ground, world.aircraft.position);
    UpdateReceivers(host.ground, VariationAt, world);
}

// The autopilot's targets become what the aircraft does now.
void HoldPresentState(World& world) {
    Autopilot& autopilot = world.autopilot;
    const int heading = static_cast<int>(std::lround(HeadingMag(world)));
    autopilot.headingBugMag = heading == 0 ? 360 : heading;
    autopilot.altitudeTargetFt = static_cast<int>(std::lround(world.aircraft.altitudeFt));
    autopilot.airspeedTargetKt = static_cast<int>(std::lround(world.aircraft.indicatedAirspeedKt));
}

// Until the flight begins, placing the aircraft also places what its autopilot holds.
void AfterPlacing(World& world) {
    if (world.clock.flightTimeS == 0) {
        HoldPresentState(world);
    }
}

void StartWorld(HostState& host) {
    const StartState& start = host.options.start;
    World& world = host.world;
    Aircraft& aircraft = world.aircraft;
    aircraft.position = {std::clamp(start.latitude, -89.9, 89.9),
                         AngleDifference(0, start.longitude)};
    aircraft.headingTrue = Normalise360(start.headingTrue);
    aircraft.trackTrue = aircraft.headingTrue;
    FillTanks(aircraft, kStartFuelPounds);
    world.air.windDirectionTrue = Normalise360(start.windDirectionTrue);
    world.air.windSpeedKt = std::clamp(start.windSpeedKt, 0.0, 200.0);
    // Splitmix64: neighbouring seeds give unlike sequences, none of them the stuck state 0.
    std::uint64_t mixed = (host.options.seed + 1) * 0x9E3779B97F4A7C15ULL;
    mixed = (mixed ^ mixed >> 30U) * 0xBF58476D1CE4E5B9ULL;
    world.air.randomState = mixed | 1U;
    world.laterSimulator = IsLaterSimulator(host.options.simFolder);
    RefreshSurroundings(host);
    aircraft.onGround = start.onGround;
    aircraft.parkingBrake = start.onGround;
    aircraft.altitudeFt = start.onGround ? world.groundElevationFt
                                         : std::max(start.altitudeFt, world.groundElevationFt + 50);
    aircraft.indicatedAirspeedKt =
        start.onGround ? 0 : std::clamp(start.indicatedAirspeedKt, 115.0, 340.0);
    aircraft.heldAirspeedKt = aircraft.indicatedAirspeedKt;
    HoldPresentState(world);
    Autopilot& autopilot = world.autopilot;
    const bool engage = start.autopilotOn && !start.onGround;
    autopilot.master = engage;
    autopilot.headingHold = engage;
    autopilot.altitudeHold = engage;
    autopilot.airspeedHold = engage;
    autopilot.yawDamper = engage;
    autopilot.flightDirector = engage;
    aircraft.trueAirspeedKt = TrueAirspeedKt(aircraft.indicatedAirspeedKt, aircraft.altitudeFt);
    aircraft.groundSpeedKt = aircraft.trueAirspeedKt;
    aircraft.pitchUpDeg = start.onGround ? 0 : 2;
}

void LoadBackground(HostState& host, HostWindow& window) {
    if (window.panel.backgroundFile.empty()) {
        return;
    }
    std::string relative = window.panel.backgroundFile;
    std::replace(relative.begin(), relative.end(), '\\', '/');
    const std::string panelFolder = fs::path(host.options.panelPath).parent_path().string();
    std::string path = FindFileNoCase(panelFolder, relative);
    path = path.empty() ? FindFileNoCase(host.options.simFolder, relative) : path;
    const std::string bytes =
        path.empty() ? "" : ReadWholeFile(path, kMaxBackgroundBytes).value_or("");
    const Picture picture = ParseBmp(bytes);
    if (picture.width == 0) {
        host.warnings.push_back(Format("panel file: background \"%s\" is not a readable bitmap",
                                       window.panel.backgroundFile.c_str()));
        return;
    }
    window.picture.background =
        Resample(picture, window.picture.picture.width, window.picture.picture.height);
}

void PlaceGauge(HostState& host, HostWindow& window, int windowIndex, const GaugePlacement& place) {
    const avq1::GaugeHeader* const gauge = FindGauge(host.module, place.gauge);
    if (ModuleStem(place.module) != ModuleStem(host.module.path)) {
        host.warnings.push_back(Format("panel file line %d: module \"%s\" is not loaded",
                                       place.line, place.module.c_str()));
        return;
    }
    if (gauge == nullptr) {
        host.warnings.push_back(Format("panel file line %d: the module has no gauge \"%s\"",
                                       place.line, place.gauge.c_str()));
        return;
    }
    auto placement = MakePlacement(*gauge, place, host.module.resources, host.options.surfaceScale);
    placement->index = static_cast<int>(host.placements.size());
    placement->window = windowIndex;
    window.placements.push_back(placement.get());
    host.placements.push_back(std::move(placement));
}

void MakeWindows(HostState& host, PanelConfig& panel) {
    const int scale = host.options.surfaceScale;
    for (PanelWindow& record : panel.windows) {
        auto window = std::make_unique<HostWindow>();
        window->desk = PlaceOnDesk(record, kDeskWidth, kDeskHeight);
        window->visible = record.visible;
        Picture& picture = window->picture.picture;
        picture.width = record.widthMm * scale;
        picture.height = record.heightMm * scale;
        window->picture.scale = scale;
        window->panel = std::move(record);
        host.windows.push_back(std::move(window));
        HostWindow& made = *host.windows.back();
        LoadBackground(host, made);
        for (const GaugePlacement& place : made.panel.gauges) {
            PlaceGauge(host, made, static_cast<int>(host.windows.size()) - 1, place);
        }
    }
}

bool OpenHost(HostState& host) {
    const SessionOptions& options = host.options;
    std::error_code ignored;
    if (!fs::is_directory(options.simFolder, ignored)) {
        host.error = Format("simulator folder \"%s\" does not exist", options.simFolder.c_str());
        return false;
    }
    const std::optional<std::string> panelText = ReadWholeFile(options.panelPath, kMaxPanelBytes);
    if (!panelText) {
        host.error = Format("cannot read panel file \"%s\"", options.panelPath.c_str());
        return false;
    }
    if (chdir(options.simFolder.c_str()) != 0) {
        host.error = Format("cannot enter simulator folder \"%s\"", options.simFolder.c_str());
        return false;
    }
    if (!LoadModule(options.modulePath, host.module, host.error)) {
        return false;
    }
    SetActiveHost(&host);
    PanelConfig panel = ParsePanelConfig(*panelText);
    host.warnings = panel.warnings;
    host.warnings.insert(host.warnings.end(), host.module.resources.problems.begin(),
                         host.module.resources.problems.end());
    LoadGround(options.simFolder, host.ground, host.warnings);
    StartWorld(host);
    MakeWindows(host, panel);
    host.module.importTable->panel.services = PanelServiceTable();
    if (host.module.platformTable != nullptr) {
        host.module.platformTable->services = PlatformServiceTable();
    }
    if (host.module.linkage->init != nullptr) {
        host.module.linkage->init();
    }
    host.open = true;
    SendAll(host, kStartEvents);
    return true;
}

void SettleAll(HostState& host) {
    for (const auto& placement : host.placements) {
        HostWindow& window = *host.windows[static_cast<std::size_t>(placement->window)];
        if (SettlePlacement(*placement, window.picture.scale, window.picture.stale)) {
            ++window.revision;
        }
    }
}

void StepWorld(HostState& host, double dtS) {
    if (host.world.paused || dtS <= 0) {
        RefreshSurroundings(host);
        return;
    }
    // Receivers and ground are refreshed between the parts, so fast time flies an approach as well.
    const double flightS = dtS * host.world.simulationRate;
    const int parts = std::max(1, static_cast<int>(std::ceil(flightS / 0.1 - 1e-9)));
    for (int i = 0; i < parts; ++i) {
        RefreshSurroundings(host);
        StepFlight(host.world, flightS / parts);
    }
}

void StepPanel(HostState& host, double dtS, bool draw) {
    host.world.clock.panelTimeS += dtS;
    host.tickRemainderS += dtS;
    while (host.tickRemainderS >= kTickS - 1e-9) {
        host.tickRemainderS -= kTickS;
        ++host.world.clock.tick;
        RepeatMouse(host);
        for (const auto& placement : host.placements) {
            Send(*placement, avq1::PanelEvent::Update);
            Send(*placement, avq1::PanelEvent::AfterUpdate);
        }
    }
    for (const auto& placement : host.placements) {
        if (draw && host.windows[static_cast<std::size_t>(placement->window)]->visible) {
            Send(*placement, avq1::PanelEvent::Draw);
            Send(*placement, avq1::PanelEvent::AfterDraw);
        }
    }
    SettleAll(host);
}

HostWindow* WindowAt(HostState& host, int index) {
    return index >= 0 && index < static_cast<int>(host.windows.size())
               ? host.windows[static_cast<std::size_t>(index)].get()
               : nullptr;
}

std::uint32_t PressFlag(MouseButton button) {
    switch (button) {
        case MouseButton::Left:
            return avq1::mouse_flag::kLeftSingle;
        case MouseButton::Middle:
            return avq1::mouse_flag::kMiddleSingle;
        case MouseButton::Right:
            return avq1::mouse_flag::kRightSingle;
    }
    return 0;
}

bool PressAt(HostState& host, int index, double x, double y, std::uint32_t flag) {
    HostWindow* const window = WindowAt(host, index);
    if (window == nullptr || !window->visible || !std::isfinite(x) || !std::isfinite(y)) {
        return false;
    }
    const double scale = window->picture.scale;
    return PressMouse(host, *window, x / scale, y / scale, flag);
}

RadioStatus StatusOf(const World& world, const Receiver& receiver, double unitsPerMhz) {
    RadioStatus status;
    status.ident = receiver.ident;
    status.frequencyMhz = receiver.frequency / unitsPerMhz;
    status.courseMag = receiver.courseMag;
    status.bearingMag =
        receiver.signal > 0 ? Normalise360(receiver.bearingTrue - world.magneticVariation) : 0;
    const double fullScaleDeg = receiver.isLocalizer ? 2.5 : 10;
    status.deviation = std::clamp(receiver.deviationDeg / fullScaleDeg * 127, -127.0, 127.0);
    status.dmeNm = receiver.dmeNm;
    status.toFrom = receiver.toFrom;
    status.isLocalizer = receiver.isLocalizer;
    status.hasGlideslope = receiver.hasGlideslope;
    return status;
}

void FillFlightStatus(const World& world, SessionStatus& status) {
    const Aircraft& aircraft = world.aircraft;
    status.flightTimeS = world.clock.flightTimeS;
    status.panelTimeS = world.clock.panelTimeS;
    status.paused = world.paused;
    status.simulationRate = world.simulationRate;
    status.onGround = aircraft.onGround;
    status.latitude = aircraft.position.latitude;
    status.longitude = aircraft.position.longitude;
    status.altitudeFt = aircraft.altitudeFt;
    status.radioAltitudeFt = aircraft.altitudeFt - world.groundElevationFt;
    status.indicatedAirspeedKt = aircraft.indicatedAirspeedKt;
    status.trueAirspeedKt = aircraft.trueAirspeedKt;
    status.groundSpeedKt = aircraft.groundSpeedKt;
    status.verticalSpeedFpm = aircraft.verticalSpeedFpm;
    status.headingMag = HeadingMag(world);
    status.headingTrue = aircraft.headingTrue;
    status.trackTrue = aircraft.trackTrue;
    status.magneticVariation = world.magneticVariation;
    status.pitchUpDeg = aircraft.pitchUpDeg;
    status.bankRightDeg = aircraft.bankRightDeg;
    status.windDirectionTrue = world.air.windDirectionTrue;
    status.windSpeedKt = world.air.windSpeedKt;
    status.fuelLb = FuelPounds(aircraft);
    status.fuelFlowPph = aircraft.fuelFlowPph;
    status.payloadLb = PayloadPounds(aircraft);
    status.zeroFuelWeightLb = aircraft.emptyWeightLb + status.payloadLb;
    status.towerLatitude = static_cast<double>(world.tower.latitude) / kTowerStepsPerLatitude;
    status.towerLongitude = static_cast<double>(world.tower.longitude) / kTowerStepsPerLongitude;
    status.towerAltitude = static_cast<double>(world.tower.altitude >> 32);
}

}  // namespace

struct Session::State {
    HostState host;
};

Session::Session() : state_(std::make_unique<State>()) {}

Session::~Session() {
    Close();
}

bool Session::Open(const SessionOptions& options) {
    Close();
    state_ = std::make_unique<State>();
    HostState& host = state_->host;
    if (ActiveHost() != nullptr) {
        host.error = "another session is open in this process";
        return false;
    }
    host.options = Resolved(options);
    if (!OpenHost(host)) {
        SetActiveHost(nullptr);
        UnloadModule(host.module);
        return false;
    }
    SettleAll(host);
    return true;
}

void Session::Close() {
    HostState& host = state_->host;
    if (!host.open) {
        return;
    }
    SendAll(host, kEndEvents);
    if (host.module.linkage->deinit != nullptr) {
        host.module.linkage->deinit();
    }
    host.open = false;
    host.windows.clear();
    host.placements.clear();
    host.variables.clear();
    host.mouse = HeldMouse{};
    UnloadModule(host.module);
    SetActiveHost(nullptr);
}

bool Session::IsOpen() const {
    return state_->host.open;
}

const std::string& Session::error() const {
    return state_->host.error;
}

const std::vector<std::string>& Session::warnings() const {
    return state_->host.warnings;
}

void Session::Step(double dtSeconds, bool draw) {
    HostState& host = state_->host;
    if (!host.open || !(dtSeconds >= 0)) {
        return;
    }
    const double dtS = std::min(dtSeconds, kMaxStepCallS);
    StepWorld(host, dtS);
    StepPanel(host, dtS, draw);
}

std::vector<WindowInfo> Session::Windows() const {
    std::vector<WindowInfo> list;
    for (const auto& window : state_->host.windows) {
        WindowInfo info;
        info.index = static_cast<int>(list.size());
        info.ident = window->panel.ident;
        info.title = window->panel.title;
        info.x = window->desk.x;
        info.y = window->desk.y;
        info.shownWidth = window->desk.width;
        info.shownHeight = window->desk.height;
        info.width = window->picture.picture.width;
        info.height = window->picture.picture.height;
        info.visible = window->visible;
        info.revision = window->revision;
        list.push_back(info);
    }
    return list;
}

WindowPicture Session::Picture(int index) {
    HostWindow* const window = WindowAt(state_->host, index);
    if (window == nullptr) {
        return {};
    }
    PaintStale(window->picture, window->placements);
    const panelhost::Picture& picture = window->picture.picture;
    return {picture.width, picture.height, picture.pixels.data()};
}

std::vector<ClickArea> Session::ClickAreas(int index) const {
    const HostWindow* const window = WindowAt(state_->host, index);
    return window != nullptr ? ListClickAreas(state_->host, *window) : std::vector<ClickArea>{};
}

std::vector<DrawnText> Session::Texts(int index) const {
    const HostWindow* const window = WindowAt(state_->host, index);
    std::vector<DrawnText> texts;
    for (const Placement* placement :
         window != nullptr ? window->placements : std::vector<Placement*>{}) {
        const int scale = window->picture.scale;
        const double gaugeX = 1.0 * placement->width / placement->bitmapWidth * scale;
        const double gaugeY = 1.0 * placement->height / placement->bitmapHeight * scale;
        for (const auto& copy : placement->elements) {
            const avq1::ElementHeader& header = copy->element.header;
            if ((header.imageFlags & avq1::image_flag::kHidden) != 0) {
                continue;
            }
            const double surfaceX =
                1.0 * copy->sourceImage.width / std::max(1, copy->context.width);
            const double surfaceY =
                1.0 * copy->sourceImage.height / std::max(1, copy->context.height);
            for (const SurfaceText& text : copy->texts) {
                const double x = header.position.x + header.offset.x + text.x * surfaceX;
                const double y = header.position.y + header.offset.y + text.y * surfaceY;
                texts.push_back({text.text, placement->x * scale + x * gaugeX,
                                 placement->y * scale + y * gaugeY,
                                 text.pixelSize * surfaceY * gaugeY, text.argb, placement->name,
                                 placement->index});
            }
        }
    }
    return texts;
}

std::vector<GaugeBox> Session::Gauges(int index) const {
    const HostWindow* const window = WindowAt(state_->host, index);
    std::vector<GaugeBox> boxes;
    for (const Placement* placement :
         window != nullptr ? window->placements : std::vector<Placement*>{}) {
        const int scale = window->picture.scale;
        boxes.push_back({1.0 * placement->x * scale, 1.0 * placement->y * scale,
                         1.0 * placement->width * scale, 1.0 * placement->height * scale,
                         placement->bitmapWidth, placement->bitmapHeight, placement->name,
                         placement->index});
    }
    return boxes;
}

bool Session::MouseDown(int window, double x, double y, MouseButton button) {
    MouseUp();
    return PressAt(state_->host, window, x, y, PressFlag(button));
}

void Session::MouseUp() {
    if (state_->host.open) {
        ReleaseMouse(state_->host);
    }
}

bool Session::Click(int window, double x, double y, MouseButton button) {
    const bool taken = MouseDown(window, x, y, button);
    MouseUp();
    return taken;
}

bool Session::Wheel(int window, double x, double y, bool up) {
    return PressAt(state_->host, window, x, y,
                   up ? avq1::mouse_flag::kWheelUp : avq1::mouse_flag::kWheelDown);
}

bool Session::ToggleWindow(std::uint32_t ident) {
    const HostWindow* const window = FindWindow(state_->host, ident);
    return window != nullptr && SetVisible(state_->host, ident, !window->visible);
}

bool Session::SetWindowVisible(std::uint32_t ident, bool visible) {
    return SetVisible(state_->host, ident, visible);
}

bool Session::SetKey(int scanCode, int virtualKey, bool down) {
    HostState& host = state_->host;
    const std::uint8_t state = down ? 0x80 : 0;
    if (scanCode > 0 && scanCode < 256) {
        host.keyboard.scanCodes[static_cast<std::size_t>(scanCode)] = state;
    }
    if (virtualKey > 0 && virtualKey < 256) {
        host.keyboard.virtualKeys[static_cast<std::size_t>(virtualKey)] = state;
    }
    return host.open && host.keyboard.hook != nullptr && host.keyboard.hook(0) == 1;
}

void Session::ReleaseAllKeys() {
    state_->host.keyboard.scanCodes.fill(0);
    state_->host.keyboard.virtualKeys.fill(0);
}

void Session::SendKeyEvent(std::int32_t number, std::uint32_t value) {
    if (state_->host.open) {
        ApplyKeyEvent(state_->host, number, value, false);
    }
}

std::uint64_t Session::ModuleEventCount(std::int32_t number) const {
    const auto found = state_->host.moduleEventCounts.find(number);
    return found == state_->host.moduleEventCounts.end() ? 0 : found->second;
}

void Session::SetPaused(bool paused) {
    state_->host.world.paused = paused;
}

void Session::SetSimulationRate(double rate) {
    if (std::isfinite(rate)) {
        state_->host.world.simulationRate = std::clamp(rate, 0.25, 64.0);
    }
}

void Session::SetPosition(double latitude, double longitude) {
    if (std::isfinite(latitude) && std::isfinite(longitude)) {
        state_->host.world.aircraft.position = {std::clamp(latitude, -89.9, 89.9),
                                                AngleDifference(0, longitude)};
        RefreshSurroundings(state_->host);
        AfterPlacing(state_->host.world);
    }
}

void Session::SetAltitude(double altitudeFt) {
    World& world = state_->host.world;
    if (std::isfinite(altitudeFt)) {
        world.aircraft.altitudeFt = std::clamp(altitudeFt, world.groundElevationFt, 45000.0);
        world.aircraft.onGround = altitudeFt <= world.groundElevationFt;
        world.aircraft.verticalSpeedFpm = 0;
        if (!world.aircraft.onGround && world.aircraft.indicatedAirspeedKt < 160) {
            world.aircraft.indicatedAirspeedKt = 160;
            world.aircraft.heldAirspeedKt = 160;
        }
        AfterPlacing(world);
    }
}

void Session::SetHeading(double headingTrue) {
    if (std::isfinite(headingTrue)) {
        state_->host.world.aircraft.headingTrue = Normalise360(headingTrue);
        state_->host.world.aircraft.bankRightDeg = 0;
        AfterPlacing(state_->host.world);
    }
}

void Session::SetIndicatedAirspeed(double airspeedKt) {
    if (std::isfinite(airspeedKt)) {
        Aircraft& aircraft = state_->host.world.aircraft;
        aircraft.indicatedAirspeedKt =
            std::clamp(airspeedKt, aircraft.onGround ? 0.0 : 115.0, 340.0);
        aircraft.heldAirspeedKt = aircraft.indicatedAirspeedKt;
        AfterPlacing(state_->host.world);
    }
}

void Session::SetWind(double directionTrue, double speedKt) {
    if (std::isfinite(directionTrue) && std::isfinite(speedKt)) {
        state_->host.world.air.windDirectionTrue = Normalise360(directionTrue);
        state_->host.world.air.windSpeedKt = std::clamp(speedKt, 0.0, 200.0);
    }
}

void Session::SetTurbulence(double speedKt) {
    if (std::isfinite(speedKt)) {
        state_->host.world.air.turbulenceKt = std::clamp(speedKt, 0.0, 30.0);
    }
}

void Session::SetFuelPounds(double pounds) {
    if (std::isfinite(pounds)) {
        FillTanks(state_->host.world.aircraft, pounds);
    }
}

SessionStatus Session::Status() const {
    const HostState& host = state_->host;
    SessionStatus status;
    FillFlightStatus(host.world, status);
    status.autopilot = host.world.autopilot;
    status.nav1 = StatusOf(host.world, host.world.nav1, 100);
    status.nav2 = StatusOf(host.world, host.world.nav2, 100);
    status.adf = StatusOf(host.world, host.world.adf, 1000);
    for (const RegisteredVariable& variable : host.variables) {
        status.variables.push_back(ReadNamed(variable));
    }
    status.lastEvents.assign(host.events.begin(), host.events.end());
    return status;
}

std::optional<double> Session::NumberedVariable(int number) const {
    return ReadVariable(state_->host.world, number);
}

std::optional<NamedVariable> Session::FindVariable(std::string_view name) const {
    return ReadNamed(state_->host, name);
}

std::vector<KeyEventName> KeyEventNames() {
    int count = 0;
    const KeyEventRow* const rows = KeyEventTable(count);
    std::vector<KeyEventName> names;
    for (int i = 0; i < count; ++i) {
        names.push_back({rows[i].number, rows[i].name, rows[i].meaning});
    }
    return names;
}

}  // namespace panelhost
