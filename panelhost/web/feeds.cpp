// What is drawn for whom: each display once for all who watch it at one scale.
#include <algorithm>

#include "panelhost/web/audience.h"
#include "panelhost/web/server_messages.h"

namespace panelhost {
namespace {

constexpr std::uint64_t kTextFrames = 6;
constexpr std::uint64_t kAreaFrames = 50;
constexpr double kJustWanted = 0;      // from the next frame's time on
constexpr double kKeptUnwatchedS = 5;  // a page loaded anew finds its pictures still there

bool IsWatched(const std::shared_ptr<Feed>& feed) {
    return feed.use_count() > 1;  // beside the server's own list
}

bool IsSame(const WindowInfo& a, const WindowInfo& b) {
    return a.visible == b.visible && a.x == b.x && a.y == b.y && a.shownWidth == b.shownWidth &&
           a.shownHeight == b.shownHeight && a.width == b.width && a.height == b.height &&
           a.title == b.title && a.ident == b.ident;
}

void RefreshWindows(Audience& audience) {
    std::vector<WindowInfo> windows = audience.session->Windows();
    for (std::size_t i = 0; i < windows.size() && i < audience.windows.size(); ++i) {
        if (!IsSame(windows[i], audience.windows[i])) {
            const auto text = Shared(WindowMessage(windows[i]));
            for (Watcher* watcher : audience.watchers) {
                watcher->outlet->Send(false, text);
            }
        }
    }
    audience.windows = std::move(windows);
}

void RefreshTexts(Audience& audience, Feed& feed) {
    if (feed.texts && feed.textsRevision == feed.info.revision) {
        return;
    }
    feed.textsRevision = feed.info.revision;
    std::string text =
        TextsMessage(feed.display, feed.info.scale, audience.session->Texts(feed.view));
    if (!feed.texts || *feed.texts != text) {
        feed.texts = Shared(std::move(text));
        ++feed.textsStamp;
    }
}

void RefreshAreas(Audience& audience, Feed& feed) {
    std::string areas =
        AreasMessage(feed.display, feed.info.scale, audience.session->ClickAreas(feed.view),
                     audience.session->Gauges(feed.view));
    if (!feed.areas || *feed.areas != areas) {
        feed.areas = Shared(std::move(areas));
        ++feed.areasStamp;
    }
}

void ForgetUnwatched(Audience& audience, double nowS) {
    std::erase_if(audience.feeds, [&](const std::shared_ptr<Feed>& feed) {
        if (IsWatched(feed) || feed->wantedS <= kJustWanted) {
            feed->wantedS = nowS;
            return false;
        }
        const bool old = nowS - feed->wantedS > kKeptUnwatchedS;
        const auto sharesView = [&feed](const std::shared_ptr<Feed>& other) {
            // Those moved up already have left nothing behind.
            return other && other != feed && other->view == feed->view;
        };
        if (old && std::none_of(audience.feeds.begin(), audience.feeds.end(), sharesView)) {
            audience.session->Release(feed->view);
        }
        return old;
    });
}

}  // namespace

std::shared_ptr<Feed> FindFeed(Audience& audience, int display, int scale) {
    for (const std::shared_ptr<Feed>& feed : audience.feeds) {
        if (feed->display == display && feed->scale == scale) {
            feed->wantedS = kJustWanted;
            return feed;
        }
    }
    const int view = audience.session->View(display, scale);
    if (view < 0 && scale > 1) {
        return FindFeed(audience, display, 1);
    }
    if (view < 0) {
        return nullptr;
    }
    const auto feed = std::make_shared<Feed>();
    feed->display = display;
    feed->scale = scale;
    feed->view = view;
    feed->info = audience.session->Window(view);
    audience.feeds.push_back(feed);
    return feed;
}

bool MarkWatched(Audience& audience, double nowS) {
    ForgetUnwatched(audience, nowS);
    bool any = false;
    for (const std::shared_ptr<Feed>& feed : audience.feeds) {
        audience.session->SetWatched(feed->view, false);
        feed->isPictured = false;
    }
    for (const Watcher* watcher : audience.watchers) {
        for (const WatchedDisplay& display : watcher->displays) {
            if (display.feed) {
                display.feed->isPictured = true;
            }
        }
    }
    for (const std::shared_ptr<Feed>& feed : audience.feeds) {
        if (IsWatched(feed) && feed->info.visible) {
            audience.session->SetWatched(feed->view, true);
            any = true;
        }
    }
    return any;
}

void RefreshFeeds(Audience& audience) {
    RefreshWindows(audience);
    for (const std::shared_ptr<Feed>& shared : audience.feeds) {
        Feed& feed = *shared;
        feed.info = audience.session->Window(feed.view);
        if (!feed.info.visible || !feed.isPictured) {
            continue;
        }
        if (feed.pictureRevision != feed.info.revision) {
            feed.pictureRevision = feed.info.revision;
            TakePicture(feed.picture, audience.session->Picture(feed.view));
        }
        if (audience.freshFrames > 0 || !feed.texts || audience.frame % kTextFrames == 0) {
            RefreshTexts(audience, feed);
        }
        if (!feed.areas || audience.frame % kAreaFrames == 0) {
            RefreshAreas(audience, feed);
        }
    }
}

bool Watch(Audience& audience, Watcher& watcher, const std::vector<int>& displays,
           const std::vector<int>& scales) {
    std::vector<std::shared_ptr<Feed>> wanted(watcher.displays.size());
    for (std::size_t i = 0; i < displays.size(); ++i) {
        const auto display = static_cast<std::size_t>(displays[i]);
        if (display >= wanted.size()) {
            return false;
        }
        wanted[display] = FindFeed(audience, displays[i], scales.empty() ? 1 : scales[i]);
        if (!wanted[display]) {
            watcher.outlet->Send(false, Shared(RefusalMessage(displays[i])));
        }
    }
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        if (watcher.displays[i].feed != wanted[i]) {
            const int unshown = watcher.displays[i].picturesUnshown;
            watcher.displays[i] = {};
            watcher.displays[i].feed = std::move(wanted[i]);
            watcher.displays[i].picturesUnshown = unshown;
        }
    }
    return true;
}

void SendNews(Watcher& watcher) {
    for (WatchedDisplay& display : watcher.displays) {
        if (!display.feed || !display.feed->info.visible) {
            continue;
        }
        Feed& feed = *display.feed;
        if (feed.areas && display.areasStamp != feed.areasStamp) {
            display.areasStamp = feed.areasStamp;
            watcher.outlet->Send(false, feed.areas);
        }
        if (feed.texts && display.textsStamp != feed.textsStamp &&
            watcher.queuedMessages < kMaxWaiting) {
            display.textsStamp = feed.textsStamp;
            watcher.outlet->Send(false, feed.texts);
        }
        if (display.picturesUnshown >= kMaxUnshown) {
            continue;
        }
        const auto picture =
            PictureMessage(feed.picture, feed.info.scale, feed.display, display.pictureStamp);
        if (picture) {
            display.pictureStamp = feed.picture.stamp;
            ++display.picturesUnshown;
            watcher.outlet->Send(true, picture);
        }
    }
}

}  // namespace panelhost
