// What is drawn for whom: each display once for all who watch it at one scale.
#include <malloc.h>

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

bool IsDue(const std::shared_ptr<Feed>& feed) {
    return IsWatched(feed) && feed->info.visible;
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
    bool released = false;
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
            released = true;
        }
        return old;
    });
    if (released) {
        malloc_trim(0);  // pictures lie between what is kept: the system gets none back by itself
    }
}

// What the other pages of its address are shown.
std::set<const Feed*> ShownBeside(const Audience& audience, const Watcher& watcher) {
    std::set<const Feed*> shown;
    for (const Watcher* other : audience.watchers) {
        for (const WatchedDisplay& display : other->displays) {
            if (display.feed && other != &watcher && other->peer == watcher.peer) {
                shown.insert(display.feed.get());
            }
        }
    }
    return shown;
}

}  // namespace

double PixelsOf(const Feed& feed) {
    return 1.0 * feed.info.width * feed.info.height;
}

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
    double watchedPixels = 0;
    for (const std::shared_ptr<Feed>& feed : audience.feeds) {
        audience.session->SetWatched(feed->view, false);
        feed->isPictured = false;
        feed->isDrawn = false;
        watchedPixels += IsDue(feed) ? PixelsOf(*feed) : 0;
    }
    for (const Watcher* watcher : audience.watchers) {
        for (const WatchedDisplay& display : watcher->displays) {
            if (display.feed) {
                display.feed->isPictured = true;
            }
        }
    }
    audience.drawnPixels = 0;
    audience.isOverloaded = watchedPixels > audience.pixelsAFrame;
    if (audience.isOverloaded) {
        TakeTurns(audience);
    }
    for (const std::shared_ptr<Feed>& feed : audience.feeds) {
        if (feed->isDrawn || (!audience.isOverloaded && IsDue(feed))) {
            audience.session->SetWatched(feed->view, true);
            audience.drawnPixels += PixelsOf(*feed);
        }
    }
    return audience.drawnPixels > 0;
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
    std::set<const Feed*> shown = ShownBeside(audience, watcher);
    double pixels = 0;
    for (const Feed* feed : shown) {
        pixels += PixelsOf(*feed);
    }
    for (std::size_t i = 0; i < displays.size(); ++i) {
        const auto display = static_cast<std::size_t>(displays[i]);
        if (display >= wanted.size()) {
            return false;
        }
        const double atOne =
            1.0 * audience.displays[display].width * audience.displays[display].height;
        int scale = scales.empty() ? 1 : scales[i];
        while (scale > 1 && pixels + atOne * scale * scale > kMostPixelsOfPeer) {
            --scale;
        }
        wanted[display] = FindFeed(audience, displays[i], scale);
        if (!wanted[display]) {
            watcher.outlet->Send(false, Shared(RefusalMessage(displays[i])));
        } else if (shown.insert(wanted[display].get()).second) {
            pixels += PixelsOf(*wanted[display]);
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
