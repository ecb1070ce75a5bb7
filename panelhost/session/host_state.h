// panelhost/session/host_state.h - everything one open session holds, shared by the host's topics.
//
// A gauge module calls back without telling who called, so the open session's state is also found
// through ActiveHost(); it is set while a session is open.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "panelhost/module/module_loader.h"
#include "panelhost/panel/compose.h"
#include "panelhost/panel/panel_config.h"
#include "panelhost/panel/placement.h"
#include "panelhost/session/session.h"
#include "panelhost/world/flight_source.h"
#include "panelhost/world/radios.h"
#include "panelhost/world/traffic.h"
#include "panelhost/world/world.h"

namespace panelhost {

// A window of the panel file, or a view: the host's own copy of something to show, which the module
// never hears of as a window.
struct HostWindow {
    PanelWindow panel;
    DeskBox desk;
    bool visible = true;
    bool watched = true;  // its gauges get surfaces to draw on
    bool asleep = false;  // a view nobody looks at: no surfaces, no events
    int display = 0;      // what it shows, of the displays
    int mirrors = -1;     // a view of this panel window: seen while that one is open
    std::uint64_t revision = 1;
    Picture background;  // as the panel file's bitmap has it; empty without
    PanelPicture picture;
    std::vector<Placement*> placements;  // in drawing order
};

struct RegisteredVariable {
    std::string name;
    std::int32_t type = 0;
    void* address = nullptr;
};

struct Keyboard {
    std::array<std::uint8_t, 256> scanCodes{};
    std::array<std::uint8_t, 256> virtualKeys{};
    avq1::KeyboardHook hook = nullptr;
};

// A mouse button held on a rectangle.
struct HeldMouse {
    bool held = false;
    int placement = -1;
    const avq1::MouseRectangle* rectangle = nullptr;
    avq1::PixelPoint relativePoint;
    avq1::PixelPoint windowPoint;
    int ticksToRepeat = 0;
};

inline constexpr int kFramesShownAfterInput = 25;

struct HostState {
    SessionOptions options;
    std::string error;
    std::vector<std::string> warnings;
    bool open = false;
    LoadedModule module;
    std::unique_ptr<FlightSource> flight = MakeBuiltInFlight();
    World world;
    Ground ground;
    Traffic traffic;
    std::vector<std::unique_ptr<HostWindow>> windows;  // the panel file's, then views
    int panelWindows = 0;                              // how many are the panel file's
    std::vector<Display> displays;                     // what can be shown, listed once
    std::vector<std::unique_ptr<Placement>> placements;
    std::vector<RegisteredVariable> variables;
    std::map<std::int32_t, double> overrides;  // of numbered variables
    std::deque<KeyEventRecord> events;
    std::uint64_t eventSerial = 0;
    std::map<std::int32_t, std::uint64_t> moduleEventCounts;
    VerticalProfile profile;
    Keyboard keyboard;
    HeldMouse mouse;
    double tickRemainderS = 0;
    std::uint64_t frame = 0;
    int unseenScreen = -1;  // the view that flies while no open window has a screen; -1: not yet
    int framesToShow = 0;   // drawn whoever looks: what an input asks of a page is done at a draw
};

struct Session::State {
    HostState host;
};

HostState* ActiveHost();
void SetActiveHost(HostState* host);

HostWindow* FindWindow(HostState& host, std::uint32_t ident);
// Whether there is something to see in it now.
bool IsSeen(const HostState& host, const HostWindow& window);
bool SetVisible(HostState& host, std::uint32_t ident, bool visible);
void ApplyKeyEvent(HostState& host, std::int32_t number, std::uint32_t value, bool fromModule);

}  // namespace panelhost
