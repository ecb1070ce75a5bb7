// What the pages' messages do.
#include <algorithm>

#include "panelhost/session/situations.h"
#include "panelhost/web/audience.h"
#include "panelhost/web/server_messages.h"

namespace panelhost {
namespace {

void PressKey(Audience& audience, Watcher& watcher, const ClientMessage& message) {
    const std::pair<int, int> key(message.scanCode, message.virtualKey);
    if (message.on) {
        watcher.heldKeys.insert(key);
    } else {
        watcher.heldKeys.erase(key);
    }
    const bool swallowed =
        audience.session->SetKey(message.scanCode, message.virtualKey, message.on);
    watcher.outlet->Send(false,
                         Shared(KeyMessage(message.scanCode, message.virtualKey, swallowed)));
}

void ReleaseKeys(Audience& audience, Watcher& watcher) {
    for (const auto& [scanCode, virtualKey] : watcher.heldKeys) {
        audience.session->SetKey(scanCode, virtualKey, false);
    }
    watcher.heldKeys.clear();
}

void SetAircraft(Session& session, const ClientMessage& message) {
    if (message.latitude && message.longitude) {
        session.SetPosition(*message.latitude, *message.longitude);
    }
    if (message.altitudeFt) {
        session.SetAltitude(*message.altitudeFt);
    }
    if (message.headingTrue) {
        session.SetHeading(*message.headingTrue);
    }
    if (message.airspeedKt) {
        session.SetIndicatedAirspeed(*message.airspeedKt);
    }
    if (message.windDirectionTrue || message.windSpeedKt) {
        const SessionStatus status = session.Status();
        session.SetWind(message.windDirectionTrue.value_or(status.windDirectionTrue),
                        message.windSpeedKt.value_or(status.windSpeedKt));
    }
}

// A point of a display in the pixels of the view that the watcher sees; a panel window nobody
// watches is its own view, any other display is not there to be touched.
struct ViewPoint {
    int view = -1;
    double x = 0;
    double y = 0;
};

ViewPoint PointOf(const Audience& audience, const Watcher& watcher, const ClientMessage& message) {
    const auto display = static_cast<std::size_t>(message.window);
    const Feed* const feed = watcher.displays[display].feed.get();
    if (feed == nullptr && display >= audience.windows.size()) {
        return {};
    }
    const WindowInfo& info = feed != nullptr ? feed->info : audience.windows[display];
    return {info.index, message.x * info.scale, message.y * info.scale};
}

// One pointer for all browsers: the latest press holds it, and only its own browser lets it go.
void Press(Audience& audience, Watcher& watcher, const ClientMessage& message) {
    constexpr MouseButton kButtons[] = {MouseButton::Left, MouseButton::Middle, MouseButton::Right};
    const ViewPoint at = PointOf(audience, watcher, message);
    audience.session->MouseDown(at.view, at.x, at.y, kButtons[message.button]);
    audience.pointerOwner = &watcher;
}

void Turn(Audience& audience, Watcher& watcher, const ClientMessage& message) {
    const ViewPoint at = PointOf(audience, watcher, message);
    audience.session->Wheel(at.view, at.x, at.y, message.on);
}

void LetGo(Audience& audience, const Watcher& watcher) {
    if (audience.pointerOwner == &watcher) {
        audience.session->MouseUp();
        audience.pointerOwner = nullptr;
    }
}

using A = Audience;
using W = Watcher;
using M = ClientMessage;

void Tell(W& watcher, const std::string& problem) {
    if (!problem.empty()) {
        watcher.outlet->Send(false, Shared(ProblemMessage(problem)));
    }
}

enum class Needs { Looking, Touching };

struct Row {
    ClientAction action;
    Needs needs;
    void (*obey)(A& audience, W& watcher, const M& message);
};

constexpr Row kRows[] = {
    {ClientAction::Down, Needs::Touching, Press},
    {ClientAction::Up, Needs::Looking, [](A& a, W& w, const M&) { LetGo(a, w); }},
    {ClientAction::Wheel, Needs::Touching, Turn},
    {ClientAction::Key, Needs::Touching, PressKey},
    {ClientAction::ReleaseKeys, Needs::Looking, [](A& a, W& w, const M&) { ReleaseKeys(a, w); }},
    {ClientAction::ToggleWindow, Needs::Touching,
     [](A& a, W&, const M& m) { a.session->ToggleWindow(static_cast<std::uint32_t>(m.number)); }},
    {ClientAction::Pause, Needs::Touching,
     [](A& a, W&, const M& m) { a.session->SetPaused(m.on); }},
    {ClientAction::Rate, Needs::Touching,
     [](A& a, W&, const M& m) { a.session->SetSimulationRate(m.number); }},
    {ClientAction::Set, Needs::Touching, [](A& a, W&, const M& m) { SetAircraft(*a.session, m); }},
    {ClientAction::Situation, Needs::Touching,
     [](A& a, W&, const M& m) {
         ApplySituation(*a.session, Situations()[static_cast<std::size_t>(m.number)]);
     }},
    {ClientAction::SendEvent, Needs::Touching,
     [](A& a, W&, const M& m) {
         a.session->SendKeyEvent(static_cast<std::int32_t>(m.number),
                                 static_cast<std::uint32_t>(m.value));
     }},
    {ClientAction::Painted, Needs::Looking,
     [](A&, W& w, const M& m) {
         int& unshown = w.displays[static_cast<std::size_t>(m.window)].picturesUnshown;
         unshown = std::max(0, unshown - 1);
     }},
    {ClientAction::PressKey, Needs::Touching,
     [](A& a, W& w, const M& m) { Tell(w, PressNamedKey(a, w, m)); }},
    {ClientAction::HoldKey, Needs::Touching,
     [](A& a, W& w, const M& m) { Tell(w, PressNamedKey(a, w, m)); }},
    {ClientAction::TurnKnob, Needs::Touching,
     [](A& a, W& w, const M& m) { Tell(w, TurnNamedKnob(a, m)); }},
    {ClientAction::Subscribe, Needs::Looking,
     [](A& a, W& w, const M& m) { Tell(w, Subscribe(a, w, m)); }},
    {ClientAction::Radio, Needs::Touching, [](A& a, W&, const M& m) { TuneRadios(*a.session, m); }},
};

bool NamesDisplay(ClientAction action) {
    return action == ClientAction::Down || action == ClientAction::Wheel ||
           action == ClientAction::Painted;
}

}  // namespace

bool ObeyMessage(Audience& audience, Watcher& watcher, const ClientMessage& message) {
    if (NamesDisplay(message.action) &&
        static_cast<std::size_t>(message.window) >= watcher.displays.size()) {
        return false;
    }
    if (message.action == ClientAction::Watch) {
        return Watch(audience, watcher, message.windows, message.scales);
    }
    for (const Row& row : kRows) {
        if (row.action != message.action) {
            continue;
        }
        if (row.needs == Needs::Touching && !watcher.mayTouch) {
            Tell(watcher, "look only");
        } else {
            row.obey(audience, watcher, message);
            audience.touched = audience.touched || row.needs == Needs::Touching;
        }
        return true;
    }
    return false;
}

bool AwaitsPainted(const Watcher& watcher, const ClientMessage& message) {
    const auto display = static_cast<std::size_t>(message.window);
    return message.action == ClientAction::Painted && display < watcher.displays.size() &&
           watcher.displays[display].picturesUnshown > 0;
}

void LetGoOfEverything(Audience& audience, Watcher& watcher) {
    LetGo(audience, watcher);
    ReleaseKeys(audience, watcher);
}

}  // namespace panelhost
