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

void Turn(Audience& audience, const Watcher& watcher, const ClientMessage& message) {
    const ViewPoint at = PointOf(audience, watcher, message);
    audience.session->Wheel(at.view, at.x, at.y, message.on);
}

void LetGo(Audience& audience, const Watcher& watcher) {
    if (audience.pointerOwner == &watcher) {
        audience.session->MouseUp();
        audience.pointerOwner = nullptr;
    }
}

bool NamesDisplay(ClientAction action) {
    return action == ClientAction::Down || action == ClientAction::Wheel ||
           action == ClientAction::Painted;
}

}  // namespace

bool ObeyMessage(Audience& audience, Watcher& watcher, const ClientMessage& message) {
    Session& session = *audience.session;
    const auto display = static_cast<std::size_t>(message.window);
    if (NamesDisplay(message.action) && display >= watcher.displays.size()) {
        return false;
    }
    switch (message.action) {
        case ClientAction::Bad:
            return false;
        case ClientAction::Down:
            Press(audience, watcher, message);
            break;
        case ClientAction::Up:
            LetGo(audience, watcher);
            break;
        case ClientAction::Wheel:
            Turn(audience, watcher, message);
            break;
        case ClientAction::Key:
            PressKey(audience, watcher, message);
            break;
        case ClientAction::ReleaseKeys:
            ReleaseKeys(audience, watcher);
            break;
        case ClientAction::ToggleWindow:
            session.ToggleWindow(static_cast<std::uint32_t>(message.number));
            break;
        case ClientAction::Pause:
            session.SetPaused(message.on);
            break;
        case ClientAction::Rate:
            session.SetSimulationRate(message.number);
            break;
        case ClientAction::Set:
            SetAircraft(session, message);
            break;
        case ClientAction::Watch:
            return Watch(audience, watcher, message.windows, message.scales);
        case ClientAction::Situation:
            ApplySituation(session, Situations()[static_cast<std::size_t>(message.number)]);
            break;
        case ClientAction::SendEvent:
            session.SendKeyEvent(static_cast<std::int32_t>(message.number),
                                 static_cast<std::uint32_t>(message.value));
            break;
        case ClientAction::Painted:
            watcher.displays[display].pictureOutstanding = false;
            break;
    }
    return true;
}

void LetGoOfEverything(Audience& audience, Watcher& watcher) {
    LetGo(audience, watcher);
    ReleaseKeys(audience, watcher);
}

}  // namespace panelhost
