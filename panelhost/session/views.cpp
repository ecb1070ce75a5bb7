#include "panelhost/session/views.h"

#include <algorithm>

#include "panelhost/session/frame.h"

namespace panelhost {
namespace {

// The parameter of a display in a window of its own: an open pop-up does not blank it.
constexpr const char* kOwnWindow = "WN";

const Picture* BackgroundOf(const avq1::GaugeHeader& gauge, const ModuleResources& resources) {
    if (gauge.elements == nullptr || gauge.elements[0] == nullptr) {
        return nullptr;
    }
    const auto found =
        resources.bitmaps.find(static_cast<std::uint32_t>(gauge.elements[0]->resourceNumber));
    return found == resources.bitmaps.end() ? nullptr : &found->second;
}

Display DisplayOf(const HostWindow& window, int index, bool own) {
    Display display;
    display.index = index;
    display.kind = own ? DisplayKind::OwnWindow : DisplayKind::PanelWindow;
    display.name = std::to_string(window.panel.ident);
    display.title = window.panel.title;
    display.width = window.panel.widthMm;
    display.height = window.panel.heightMm;
    return display;
}

// What is cloned for a view of this display; a gauge alone is a window with one gauge.
PanelWindow PanelOf(const HostState& host, const Display& display) {
    if (display.kind != DisplayKind::Gauge) {
        PanelWindow panel =
            host.windows[static_cast<std::size_t>(display.index % host.panelWindows)]->panel;
        for (GaugePlacement& place : panel.gauges) {
            place.parameter = display.kind == DisplayKind::OwnWindow ? kOwnWindow : place.parameter;
        }
        return panel;
    }
    PanelWindow panel;
    panel.title = display.title;
    panel.widthMm = display.width;
    panel.heightMm = display.height;
    GaugePlacement place;
    place.gauge = display.name;
    place.module = host.module.path;
    place.parameter = kOwnWindow;
    panel.gauges.push_back(place);
    return panel;
}

// What people call a gauge: the title of a window that holds it alone, else its name in words.
std::string TitleOf(const HostState& host, const std::string& gauge) {
    for (int i = 0; i < host.panelWindows; ++i) {
        const HostWindow& window = *host.windows[static_cast<std::size_t>(i)];
        if (window.placements.size() == 1 && window.placements.front()->name == gauge) {
            return window.panel.title;
        }
    }
    std::string words = gauge;
    std::replace(words.begin(), words.end(), '_', ' ');
    return words;
}

long PixelsAt(const Display& display, int scale) {
    return static_cast<long>(display.width) * scale * display.height * scale;
}

long AwakePixels(const HostState& host) {
    long sum = 0;
    for (std::size_t i = static_cast<std::size_t>(host.panelWindows); i < host.windows.size();
         ++i) {
        const HostWindow& view = *host.windows[i];
        const Picture& picture = view.picture.picture;
        sum += view.asleep ? 0 : static_cast<long>(picture.width) * picture.height;
    }
    return sum;
}

void Wake(HostState& host, HostWindow& view) {
    view.asleep = false;
    ++view.revision;
    if (view.mirrors >= 0) {
        FitBackground(host.windows[static_cast<std::size_t>(view.mirrors)]->background, view);
    }
    for (Placement* placement : view.placements) {
        MakeSurfaces(*placement, view.picture.scale);
        SendConnect(host, *placement);
    }
}

int MakeView(HostState& host, const Display& display, int scale) {
    const int index = static_cast<int>(host.windows.size());
    HostWindow& view = AddWindow(host, PanelOf(host, display), scale);
    view.display = display.index;
    view.visible = true;
    view.mirrors = display.kind == DisplayKind::PanelWindow ? display.index : -1;
    if (display.kind != DisplayKind::Gauge) {
        FitBackground(
            host.windows[static_cast<std::size_t>(display.index % host.panelWindows)]->background,
            view);
    }
    const std::size_t first = host.placements.size();
    for (const GaugePlacement& place : view.panel.gauges) {
        const avq1::GaugeHeader* const gauge = FindGauge(host.module, place.gauge);
        const bool isOurs = ModuleStem(place.module) == ModuleStem(host.module.path);
        if (isOurs && gauge != nullptr && BackgroundOf(*gauge, host.module.resources) != nullptr) {
            AddPlacement(host, view, index, *gauge, place);
        }
    }
    for (std::size_t i = first; i < host.placements.size(); ++i) {
        SendStartEvents(host, *host.placements[i]);
    }
    return index;
}

bool IsScreen(const HostState& host, const Display& display, bool withKeys) {
    const avq1::GaugeHeader* const gauge =
        display.kind == DisplayKind::Gauge ? FindGauge(host.module, display.name) : nullptr;
    return gauge != nullptr && (withKeys || gauge->mouseRectangles == nullptr) &&
           MakePlacement(*gauge, {}, host.module.resources, 1)->hasScreen;
}

}  // namespace

HostWindow& AddWindow(HostState& host, PanelWindow panel, int scale) {
    auto window = std::make_unique<HostWindow>();
    window->desk = PlaceOnDesk(panel, kDeskWidth, kDeskHeight);
    window->visible = panel.visible;
    window->picture.picture.width = panel.widthMm * scale;
    window->picture.picture.height = panel.heightMm * scale;
    window->picture.scale = scale;
    window->panel = std::move(panel);
    host.windows.push_back(std::move(window));
    return *host.windows.back();
}

void AddPlacement(HostState& host, HostWindow& window, int windowIndex,
                  const avq1::GaugeHeader& gauge, const GaugePlacement& place) {
    auto placement = MakePlacement(gauge, place, host.module.resources, window.picture.scale);
    placement->index = static_cast<int>(host.placements.size());
    placement->window = windowIndex;
    window.placements.push_back(placement.get());
    host.placements.push_back(std::move(placement));
}

void FitBackground(const Picture& background, HostWindow& window) {
    const Picture& picture = window.picture.picture;
    window.picture.background =
        background.width > 0 ? Resample(background, picture.width, picture.height) : Picture{};
}

std::vector<Display> ListDisplays(const HostState& host) {
    std::vector<Display> displays;
    const auto next = [&displays] { return static_cast<int>(displays.size()); };
    for (const bool own : {false, true}) {
        for (int i = 0; i < host.panelWindows; ++i) {
            displays.push_back(DisplayOf(*host.windows[static_cast<std::size_t>(i)], next(), own));
        }
    }
    for (const avq1::GaugeHeader* gauge : host.module.gauges) {
        const Picture* const background = BackgroundOf(*gauge, host.module.resources);
        if (background != nullptr && next() < kMaxDisplays) {
            displays.push_back({next(), DisplayKind::Gauge, gauge->name, TitleOf(host, gauge->name),
                                background->width, background->height});
        }
    }
    return displays;
}

int OpenView(HostState& host, int index, int scale) {
    if (index < 0 || index >= static_cast<int>(host.displays.size())) {
        return -1;
    }
    const Display& display = host.displays[static_cast<std::size_t>(index)];
    scale = std::clamp(scale, 1, kMaxScale);
    while (scale > 1 && PixelsAt(display, scale) > kMaxViewPixels) {
        --scale;
    }
    if (index < host.panelWindows && scale == host.options.surfaceScale) {
        return index;
    }
    const auto first = host.windows.begin() + host.panelWindows;
    const auto known = std::find_if(first, host.windows.end(), [&](const auto& view) {
        return view->display == index && view->picture.scale == scale;
    });
    if (known != host.windows.end() && !(*known)->asleep) {
        return static_cast<int>(known - host.windows.begin());
    }
    if (AwakePixels(host) + PixelsAt(display, scale) > kMaxAwakePixels) {
        return -1;
    }
    const int view = known == host.windows.end() ? MakeView(host, display, scale)
                                                 : static_cast<int>(known - host.windows.begin());
    HostWindow& window = *host.windows[static_cast<std::size_t>(view)];
    if (window.asleep) {
        Wake(host, window);
    }
    for (Placement* placement : window.placements) {
        SendUpdate(*placement);  // its lights are those of now
    }
    return view;
}

void MakeUnseenScreen(HostState& host) {
    for (const bool withKeys : {false, true}) {
        for (const Display& display : host.displays) {
            if (IsScreen(host, display, withKeys)) {
                host.unseenScreen = MakeView(host, display, 1);
                CloseView(host, host.unseenScreen);
                return;
            }
        }
    }
}

void CloseView(HostState& host, int index) {
    if (index < host.panelWindows || index >= static_cast<int>(host.windows.size())) {
        return;
    }
    HostWindow& view = *host.windows[static_cast<std::size_t>(index)];
    view.asleep = true;
    view.picture.picture.pixels = std::vector<std::uint32_t>();  // `{}` would keep the memory
    view.picture.background = {};
    for (Placement* placement : view.placements) {
        FreeSurfaces(*placement);
    }
}

}  // namespace panelhost
