#include "panelhost/session/opening.h"

#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "panelhost/base/text.h"
#include "panelhost/session/frame.h"
#include "panelhost/session/services.h"
#include "panelhost/session/views.h"

namespace panelhost {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaxPanelBytes = 4U << 20U;
constexpr std::size_t kMaxTrafficBytes = 1U << 20U;
constexpr std::size_t kMaxBackgroundBytes = 64U << 20U;

std::string Absolute(const std::string& path) {
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
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
    window.background = ParseBmp(bytes);
    if (window.background.width == 0) {
        host.warnings.push_back(Format("panel file: background \"%s\" is not a readable bitmap",
                                       window.panel.backgroundFile.c_str()));
        return;
    }
    FitBackground(window.background, window);
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
    AddPlacement(host, window, windowIndex, *gauge, place);
}

void LoadTraffic(HostState& host) {
    const std::string path = FindFileNoCase(host.options.simFolder, "traffic.txt");
    if (!path.empty()) {
        host.traffic.scenes =
            ParseTrafficScenes(ReadWholeFile(path, kMaxTrafficBytes).value_or(""), host.warnings);
    }
}

void MakeWindows(HostState& host, PanelConfig& panel) {
    for (PanelWindow& record : panel.windows) {
        HostWindow& made = AddWindow(host, std::move(record), host.options.surfaceScale);
        made.display = host.panelWindows++;
        LoadBackground(host, made);
        for (const GaugePlacement& place : made.panel.gauges) {
            PlaceGauge(host, made, made.display, place);
        }
    }
}

}  // namespace

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
    if (options.live) {
        options.live->mappingPath = Absolute(options.live->mappingPath);
    }
    options.surfaceScale = std::clamp(given.surfaceScale, 1, 3);
    return options;
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
    if (options.live) {
        host.flight = MakeLiveFlight(*options.live, host.error);
        if (host.flight == nullptr) {
            return false;
        }
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
    LoadTraffic(host);
    host.world.laterSimulator = IsLaterSimulator(options.simFolder);
    host.world.fixedVariationDeg = options.magneticVariationDeg;
    StartWorld(options.start, options.seed, host.ground, host.world);
    MakeWindows(host, panel);
    host.module.importTable->panel.services = PanelServiceTable();
    if (host.module.platformTable != nullptr) {
        host.module.platformTable->services = PlatformServiceTable();
    }
    if (host.module.linkage->init != nullptr) {
        host.module.linkage->init();
    }
    host.open = true;
    SendStartEvents(host);
    host.displays = ListDisplays(host);
    return true;
}

void CloseHost(HostState& host) {
    SendEndEvents(host);
    if (host.module.linkage->deinit != nullptr) {
        host.module.linkage->deinit();
    }
    host.open = false;
    host.windows.clear();
    host.panelWindows = 0;
    host.displays.clear();
    host.placements.clear();
    host.variables.clear();
    host.mouse = HeldMouse{};
    UnloadModule(host.module);
    SetActiveHost(nullptr);
}

}  // namespace panelhost
