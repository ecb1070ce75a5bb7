#include "panelhost/session/frame.h"

#include <algorithm>
#include <iterator>

#include "panelhost/session/mouse.h"
#include "panelhost/session/views.h"

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

HostWindow& WindowOf(HostState& host, const Placement& placement) {
    return *host.windows[static_cast<std::size_t>(placement.window)];
}

void SendTimed(HostState& host, Placement& placement, const TimedEvent& timed) {
    std::uintptr_t extra = 0;
    if (timed.extra == TimedEvent::Extra::Module) {
        extra = reinterpret_cast<std::uintptr_t>(host.module.handle);
    } else if (timed.extra == TimedEvent::Extra::Window) {
        extra = reinterpret_cast<std::uintptr_t>(&WindowOf(host, placement));
    }
    Send(placement, timed.event, extra);
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

// A module flies on the draw events of its screens. Where no open window has one, the host's own
// unseen one gets them: closing windows ends no flight, and a view that is watched changes none.
void DrawUnseenScreen(HostState& host) {
    const auto isOpenScreen = [&host](const auto& placement) {
        return placement->hasScreen && placement->window < host.panelWindows &&
               IsSeen(host, WindowOf(host, *placement));
    };
    if (std::any_of(host.placements.begin(), host.placements.end(), isOpenScreen)) {
        return;
    }
    if (host.unseenScreen < 0) {
        MakeUnseenScreen(host);
    }
    if (host.unseenScreen >= 0) {
        const auto index = static_cast<std::size_t>(host.unseenScreen);
        SendDraw(*host.windows[index]->placements.front(), false);
    }
}

}  // namespace

void SendStartEvents(HostState& host, Placement& placement) {
    for (const TimedEvent& timed : kStartEvents) {
        SendTimed(host, placement, timed);
    }
}

void SendStartEvents(HostState& host) {
    for (const auto& placement : host.placements) {
        SendStartEvents(host, *placement);
    }
}

void SendConnect(HostState& host, Placement& placement) {
    SendTimed(host, placement, kStartEvents[std::size(kStartEvents) - 1]);
}

void SendUpdate(Placement& placement) {
    Send(placement, avq1::PanelEvent::Update);
    Send(placement, avq1::PanelEvent::AfterUpdate);
}

void SendEndEvents(HostState& host) {
    for (const auto& placement : host.placements) {
        for (const TimedEvent& timed : kEndEvents) {
            SendTimed(host, *placement, timed);
        }
    }
}

void SettleAll(HostState& host) {
    for (const auto& placement : host.placements) {
        HostWindow& window = WindowOf(host, *placement);
        if (!window.asleep &&
            SettlePlacement(*placement, window.picture.scale, window.picture.stale)) {
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
            if (!WindowOf(host, *placement).asleep) {
                SendUpdate(*placement);
            }
        }
    }
    ++host.frame;
    const bool anyway = host.framesToShow > 0 || host.frame % kFramesPerLook == 0;
    host.framesToShow = std::max(0, host.framesToShow - 1);
    DrawUnseenScreen(host);
    for (const auto& placement : host.placements) {
        const HostWindow& window = WindowOf(host, *placement);
        const bool looked = draw && window.watched;
        const bool isView = placement->window >= host.panelWindows;
        if (IsSeen(host, window) && !window.asleep && (looked || !isView)) {
            SendDraw(*placement, looked || (anyway && !isView));
        }
    }
    SettleAll(host);
}

void LookAt(HostState& host, int window) {
    for (const auto& placement : host.placements) {
        const HostWindow& own = WindowOf(host, *placement);
        if (placement->window == window && IsSeen(host, own) && !own.asleep) {
            SendDraw(*placement, true);
        }
    }
    SettleAll(host);
}

}  // namespace panelhost
