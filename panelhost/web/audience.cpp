#include "panelhost/web/audience.h"

#include <algorithm>

#include "panelhost/web/server_messages.h"

namespace panelhost {
namespace {

constexpr std::uint64_t kStatusFrames = 6;
constexpr std::uint64_t kLogFrames = 25;
constexpr int kFreshFrames = 4;

}  // namespace

SharedText Shared(std::string text) {
    return std::make_shared<const std::string>(std::move(text));
}

void OpenAudience(Session& session, Audience& audience) {
    audience.session = &session;
    audience.displays = session.Displays();
    audience.windows = session.Windows();
    for (const WindowInfo& window : audience.windows) {
        session.SetWatched(window.index, false);
    }
}

void Join(Audience& audience, Watcher& watcher) {
    watcher.displays.resize(audience.displays.size());
    audience.watchers.push_back(&watcher);
    watcher.outlet->Send(false, Shared(HelloMessage(*audience.session)));
    watcher.outlet->Send(false, Shared(StatusMessage(audience.session->Status())));
}

void Leave(Audience& audience, Watcher& watcher) {
    LetGoOfEverything(audience, watcher);
    std::erase(audience.watchers, &watcher);
    watcher.displays.clear();
    watcher.subscription = nullptr;
}

void Glance(Audience& audience) {
    audience.touched = false;
    audience.freshFrames = kFreshFrames;
    for (const std::shared_ptr<Feed>& feed : audience.feeds) {
        if (feed->isPictured && feed->info.visible && !audience.isOverloaded) {
            audience.session->Look(feed->view);
        }
    }
    RefreshFeeds(audience);
    for (Watcher* watcher : audience.watchers) {
        SendNews(*watcher);
        SendSubscribed(audience, *watcher);
    }
}

void RunFrame(Audience& audience, int steps, double dtS, double nowS) {
    ++audience.frame;
    const bool draws = MarkWatched(audience, nowS);
    for (int step = 1; step <= steps; ++step) {
        audience.session->Step(dtS, step == steps && draws);
    }
    RefreshFeeds(audience);
    audience.freshFrames = std::max(0, audience.freshFrames - 1);
    if (audience.frame % kStatusFrames == 0 && !audience.watchers.empty()) {
        const SharedText status = Shared(StatusMessage(audience.session->Status()));
        for (Watcher* watcher : audience.watchers) {
            if (watcher->queuedMessages < kMaxWaiting) {
                watcher->outlet->Send(false, status);
            }
        }
    }
    if (audience.frame % kLogFrames == 0 && !audience.watchers.empty()) {
        RefreshFlight(audience);
    }
    for (Watcher* watcher : audience.watchers) {
        SendFlight(audience, *watcher);
        SendNews(*watcher);
        SendSubscribed(audience, *watcher);
    }
}

}  // namespace panelhost
