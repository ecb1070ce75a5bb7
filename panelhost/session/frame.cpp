#include "panelhost/session/frame.h"

#include <algorithm>

#include "panelhost/session/mouse.h"

namespace panelhost {
namespace {

constexpr double kTickS = 1.0 / 18;
constexpr std::uint64_t kFramesPerLook = 25;

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

// A gauge that shows nothing is drawn without its surfaces: the module flies on, and draws nothing.
void SendDraw(Placement& placement, bool shows) {
    for (const auto& copy : placement.elements) {
        copy->element.deviceContext =
            shows && copy->context.pixels != nullptr ? &copy->context : nullptr;
    }
    Send(placement, avq1::PanelEvent::Draw);
    Send(placement, avq1::PanelEvent::AfterDraw);
    for (const auto& copy : placement.elements) {
        if (copy->context.pixels != nullptr) {
            copy->element.deviceContext = &copy->context;
            copy->element.header.imageFlags |= shows ? 0 : avq1::image_flag::kOnScreen;
        }
    }
}

}  // namespace

void SendStartEvents(HostState& host) {
    SendAll(host, kStartEvents);
}

void SendEndEvents(HostState& host) {
    SendAll(host, kEndEvents);
}

void SettleAll(HostState& host) {
    for (const auto& placement : host.placements) {
        HostWindow& window = *host.windows[static_cast<std::size_t>(placement->window)];
        if (SettlePlacement(*placement, window.picture.scale, window.picture.stale)) {
            ++window.revision;
        }
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
    ++host.frame;
    const bool shows = draw || host.framesToShow > 0 || host.frame % kFramesPerLook == 0;
    host.framesToShow = std::max(0, host.framesToShow - 1);
    for (const auto& placement : host.placements) {
        if (host.windows[static_cast<std::size_t>(placement->window)]->visible) {
            SendDraw(*placement, shows);
        }
    }
    SettleAll(host);
}

void LookAt(HostState& host, int window) {
    for (const auto& placement : host.placements) {
        if (placement->window == window &&
            host.windows[static_cast<std::size_t>(window)]->visible) {
            SendDraw(*placement, true);
        }
    }
    SettleAll(host);
}

}  // namespace panelhost
