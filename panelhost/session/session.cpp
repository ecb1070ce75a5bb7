#include "panelhost/session/session.h"

#include <algorithm>
#include <cmath>

#include "panelhost/session/frame.h"
#include "panelhost/session/mouse.h"
#include "panelhost/session/opening.h"
#include "panelhost/session/services.h"
#include "panelhost/session/views.h"

namespace panelhost {
namespace {

constexpr double kMaxStepCallS = 1;

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
    if (window == nullptr || !IsSeen(host, *window) || !std::isfinite(x) || !std::isfinite(y)) {
        return false;
    }
    const double scale = window->picture.scale;
    return PressMouse(host, *window, x / scale, y / scale, flag);
}

}  // namespace

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
        host.flight = MakeBuiltInFlight();
        SetActiveHost(nullptr);
        UnloadModule(host.module);
        return false;
    }
    SettleAll(host);
    return true;
}

void Session::Close() {
    if (state_->host.open) {
        CloseHost(state_->host);
    }
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
    host.flight->Step(host.ground, host.world, host.traffic, dtS);
    StepPanel(host, dtS, draw);
}

std::vector<WindowInfo> Session::Windows() const {
    std::vector<WindowInfo> list;
    for (int i = 0; i < state_->host.panelWindows; ++i) {
        list.push_back(Window(i));
    }
    return list;
}

WindowInfo Session::Window(int index) const {
    WindowInfo info;
    const HostWindow* const window = WindowAt(state_->host, index);
    if (window != nullptr) {
        info.index = index;
        info.ident = window->panel.ident;
        info.title = window->panel.title;
        info.x = window->desk.x;
        info.y = window->desk.y;
        info.shownWidth = window->desk.width;
        info.shownHeight = window->desk.height;
        info.width = window->picture.picture.width;
        info.height = window->picture.picture.height;
        info.scale = window->picture.scale;
        info.visible = IsSeen(state_->host, *window);
        info.revision = window->revision;
    }
    return info;
}

std::vector<Display> Session::Displays() const {
    return state_->host.displays;
}

int Session::View(int display, int scale) {
    return state_->host.open ? OpenView(state_->host, display, scale) : -1;
}

void Session::Release(int view) {
    CloseView(state_->host, view);
}

void Session::SetWatched(int window, bool watched) {
    if (HostWindow* const found = WindowAt(state_->host, window)) {
        found->watched = watched;
    }
}

void Session::Look(int window) {
    if (state_->host.open && WindowAt(state_->host, window) != nullptr) {
        LookAt(state_->host, window);
    }
}

WindowPicture Session::Picture(int index) {
    HostWindow* const window = WindowAt(state_->host, index);
    if (window == nullptr || window->asleep) {
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

std::vector<Lamp> Session::Lamps(int index) const {
    const HostWindow* const window = WindowAt(state_->host, index);
    return window != nullptr ? ListLamps(state_->host, *window) : std::vector<Lamp>{};
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
    host.framesToShow = kFramesShownAfterInput;
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

void Session::OverrideVariable(std::int32_t number, std::optional<double> value) {
    state_->host.overrides.erase(number);
    if (value) {
        state_->host.overrides[number] = *value;
    }
}

std::uint64_t Session::ModuleEventCount(std::int32_t number) const {
    const auto found = state_->host.moduleEventCounts.find(number);
    return found == state_->host.moduleEventCounts.end() ? 0 : found->second;
}

}  // namespace panelhost
