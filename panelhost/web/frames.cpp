// The flight's clock and what the browsers are told of each frame.
#include <algorithm>
#include <chrono>
#include <cmath>

#include "panelhost/session/situations.h"
#include "panelhost/web/server_messages.h"
#include "panelhost/web/server_state.h"
#include "panelhost/web/socket_client.h"

namespace panelhost {
namespace {

constexpr auto kFrameTime = std::chrono::milliseconds(40);
constexpr double kStepS = 0.04;
constexpr double kMaxCatchUpS = 0.5;      // a stall longer than this is lost flight time
constexpr std::uint64_t kDrawFrames = 2;  // drawn and sent every second frame
constexpr std::uint64_t kTextFrames = 6;
constexpr std::uint64_t kStatusFrames = 6;
constexpr std::uint64_t kAreaFrames = 50;
constexpr std::uint64_t kLogFrames = 25;
constexpr double kPictureGapS = 0.075;
constexpr std::size_t kMaxWaiting = 8;  // a browser that reads slowly skips to later messages

std::shared_ptr<const std::string> Shared(std::string text) {
    return std::make_shared<const std::string>(std::move(text));
}

void Broadcast(Server& server, const std::shared_ptr<const std::string>& text) {
    for (SocketClient* client : server.clients) {
        SendText(*client, text);
    }
}

bool IsWatched(const Server& server, std::size_t window) {
    return std::any_of(
        server.clients.begin(), server.clients.end(),
        [window](const SocketClient* client) { return client->windows[window].watched; });
}

bool IsSame(const WindowInfo& a, const WindowInfo& b) {
    return a.visible == b.visible && a.x == b.x && a.y == b.y && a.shownWidth == b.shownWidth &&
           a.shownHeight == b.shownHeight && a.width == b.width && a.height == b.height &&
           a.title == b.title && a.ident == b.ident;
}

void RefreshWindows(Server& server) {
    for (const WindowInfo& info : server.session->Windows()) {
        const auto index = static_cast<std::size_t>(info.index);
        if (index >= server.feeds.size()) {
            continue;
        }
        WindowFeed& feed = server.feeds[index];
        const bool same = IsSame(feed.info, info);
        feed.info = info;
        if (!same) {
            Broadcast(server, Shared(WindowMessage(info)));
        }
    }
}

void RefreshTexts(Server& server, WindowFeed& feed) {
    if (feed.texts && feed.textsRevision == feed.info.revision) {
        return;
    }
    feed.textsRevision = feed.info.revision;
    std::string text = TextsMessage(feed.info.index, server.session->Texts(feed.info.index));
    if (!feed.texts || *feed.texts != text) {
        feed.texts = Shared(std::move(text));
        ++feed.textsStamp;
    }
}

void RefreshAreas(Server& server, WindowFeed& feed) {
    std::string areas = AreasMessage(feed.info.index, server.session->ClickAreas(feed.info.index),
                                     server.session->Gauges(feed.info.index));
    if (!feed.areas || *feed.areas != areas) {
        feed.areas = Shared(std::move(areas));
        ++feed.areasStamp;
    }
}

void RefreshFeeds(Server& server) {
    RefreshWindows(server);
    for (std::size_t i = 0; i < server.feeds.size(); ++i) {
        WindowFeed& feed = server.feeds[i];
        if (!feed.info.visible || !IsWatched(server, i)) {
            continue;
        }
        if (server.frame % kDrawFrames == 0 && feed.pictureRevision != feed.info.revision) {
            feed.pictureRevision = feed.info.revision;
            TakePicture(feed.picture, server.session->Picture(feed.info.index));
        }
        if (!feed.texts || server.frame % kTextFrames == 0) {
            RefreshTexts(server, feed);
        }
        if (!feed.areas || server.frame % kAreaFrames == 0) {
            RefreshAreas(server, feed);
        }
    }
}

void RefreshLog(Server& server) {
    std::string text = server.session->FlightLog();
    LogFeed& log = server.log;
    if (!text.starts_with(log.text)) {
        ++log.stamp;
    }
    log.text = std::move(text);
}

void RefreshProfile(Server& server) {
    std::string profile = ProfileMessage(server.session->Profile());
    if (!server.profile || *server.profile != profile) {
        server.profile = Shared(std::move(profile));
    }
}

void FeedProfile(const Server& server, SocketClient& client) {
    if (client.profile != server.profile && client.queuedMessages < kMaxWaiting) {
        client.profile = server.profile;
        SendText(client, server.profile);
    }
}

void FeedLog(const LogFeed& log, SocketClient& client) {
    const bool more = client.logStamp == log.stamp;
    const std::size_t told = more ? client.logBytes : 0;
    if ((more && told == log.text.size()) || client.queuedMessages >= kMaxWaiting) {
        return;
    }
    client.logStamp = log.stamp;
    client.logBytes = log.text.size();
    SendText(client, Shared(LogMessage(std::string_view(log.text).substr(told), more)));
}

bool AnyoneLooks(const Server& server) {
    for (std::size_t i = 0; i < server.feeds.size(); ++i) {
        if (server.feeds[i].info.visible && IsWatched(server, i)) {
            return true;
        }
    }
    return false;
}

void RunFrame(Server& server) {
    const double nowS = SteadyNowS();
    server.lastFrameS = std::max(server.lastFrameS, nowS - kMaxCatchUpS);
    // Whole steps of one length: who watches, and how busy the machine is, changes no flight.
    const double steps = std::floor((nowS - server.lastFrameS) / kStepS + 0.5);
    server.lastFrameS += steps * kStepS;
    ++server.frame;
    for (double step = 1; step <= steps; ++step) {
        const bool last = step == steps;
        server.session->Step(kStepS,
                             last && server.frame % kDrawFrames == 0 && AnyoneLooks(server));
    }
    RefreshFeeds(server);
    if (server.frame % kStatusFrames == 0 && !server.clients.empty()) {
        const auto status = Shared(StatusMessage(server.session->Status()));
        for (SocketClient* client : server.clients) {
            if (client->queuedMessages < kMaxWaiting) {
                SendText(*client, status);
            }
        }
    }
    if (server.frame % kLogFrames == 0 && !server.clients.empty()) {
        RefreshLog(server);
        RefreshProfile(server);
    }
    for (SocketClient* client : server.clients) {
        FeedClient(server, *client);
    }
}

void ScheduleFrame(Server& server) {
    server.frameTimer.async_wait([&server](ErrorCode error) {
        if (error) {
            return;
        }
        RunFrame(server);
        const auto next = server.frameTimer.expiry() + kFrameTime;
        const auto now = net::steady_timer::clock_type::now();
        // A frame that came late moves the beat instead of running several at once; a moment is
        // always left for the connections.
        server.frameTimer.expires_at(std::max(next, now + std::chrono::milliseconds(4)));
        ScheduleFrame(server);
    });
}

void Watch(SocketClient& client, const std::vector<int>& windows) {
    for (std::size_t i = 0; i < client.windows.size(); ++i) {
        client.windows[i].watched =
            std::find(windows.begin(), windows.end(), static_cast<int>(i)) != windows.end();
    }
}

void PressKey(Server& server, SocketClient& client, const ClientMessage& message) {
    const std::pair<int, int> key(message.scanCode, message.virtualKey);
    if (message.on) {
        client.heldKeys.insert(key);
    } else {
        client.heldKeys.erase(key);
    }
    const bool swallowed = server.session->SetKey(message.scanCode, message.virtualKey, message.on);
    SendText(client, Shared(KeyMessage(message.scanCode, message.virtualKey, swallowed)));
}

void ReleaseKeys(Server& server, SocketClient& client) {
    for (const auto& [scanCode, virtualKey] : client.heldKeys) {
        server.session->SetKey(scanCode, virtualKey, false);
    }
    client.heldKeys.clear();
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

// One pointer for all browsers: the latest press holds it, and only its own browser lets it go.
void Press(Server& server, SocketClient& client, const ClientMessage& message) {
    constexpr MouseButton kButtons[] = {MouseButton::Left, MouseButton::Middle, MouseButton::Right};
    server.session->MouseDown(message.window, message.x, message.y, kButtons[message.button]);
    server.pointerOwner = &client;
}

void LetGo(Server& server, const SocketClient& client) {
    if (server.pointerOwner == &client) {
        server.session->MouseUp();
        server.pointerOwner = nullptr;
    }
}

bool NamesWindow(ClientAction action) {
    return action == ClientAction::Down || action == ClientAction::Wheel ||
           action == ClientAction::Painted;
}

}  // namespace

double SteadyNowS() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void StartFrames(Server& server) {
    server.feeds.resize(server.session->Windows().size());
    RefreshWindows(server);
    server.lastFrameS = SteadyNowS();
    server.frameTimer.expires_after(kFrameTime);
    ScheduleFrame(server);
}

bool ObeyMessage(Server& server, SocketClient& client, const ClientMessage& message) {
    Session& session = *server.session;
    const auto window = static_cast<std::size_t>(message.window);
    if (NamesWindow(message.action) && window >= client.windows.size()) {
        return false;
    }
    switch (message.action) {
        case ClientAction::Bad:
            return false;
        case ClientAction::Down:
            Press(server, client, message);
            break;
        case ClientAction::Up:
            LetGo(server, client);
            break;
        case ClientAction::Wheel:
            session.Wheel(message.window, message.x, message.y, message.on);
            break;
        case ClientAction::Key:
            PressKey(server, client, message);
            break;
        case ClientAction::ReleaseKeys:
            ReleaseKeys(server, client);
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
            Watch(client, message.windows);
            break;
        case ClientAction::Situation:
            ApplySituation(session, Situations()[static_cast<std::size_t>(message.number)]);
            break;
        case ClientAction::SendEvent:
            session.SendKeyEvent(static_cast<std::int32_t>(message.number),
                                 static_cast<std::uint32_t>(message.value));
            break;
        case ClientAction::Painted:
            client.windows[window].pictureOutstanding = false;
            break;
    }
    return true;
}

void FeedClient(Server& server, SocketClient& client) {
    const double nowS = SteadyNowS();
    FeedLog(server.log, client);
    FeedProfile(server, client);
    for (std::size_t i = 0; i < client.windows.size(); ++i) {
        ClientWindow& window = client.windows[i];
        WindowFeed& feed = server.feeds[i];
        if (!window.watched || !feed.info.visible) {
            continue;
        }
        if (feed.areas && window.areasStamp != feed.areasStamp) {
            window.areasStamp = feed.areasStamp;
            SendText(client, feed.areas);
        }
        if (feed.texts && window.textsStamp != feed.textsStamp &&
            client.queuedMessages < kMaxWaiting) {
            window.textsStamp = feed.textsStamp;
            SendText(client, feed.texts);
        }
        if (window.pictureOutstanding || nowS - window.lastPictureS < kPictureGapS) {
            continue;
        }
        const auto picture = PictureMessage(feed.picture, static_cast<int>(i), window.pictureStamp);
        if (picture) {
            window.pictureStamp = feed.picture.stamp;
            window.pictureOutstanding = true;
            window.lastPictureS = nowS;
            SendBinary(client, picture);
        }
    }
}

void ForgetClient(Server& server, SocketClient& client) {
    LetGo(server, client);
    ReleaseKeys(server, client);
    server.clients.erase(std::remove(server.clients.begin(), server.clients.end(), &client),
                         server.clients.end());
}

}  // namespace panelhost
