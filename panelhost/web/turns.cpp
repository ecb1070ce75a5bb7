// Who is drawn when there is no time for all that is watched.
#include <algorithm>
#include <deque>

#include "panelhost/web/audience.h"

namespace panelhost {
namespace {

constexpr double kWorkS = 0.03;           // of each frame's 0.04
constexpr double kGrowth = 1.1;           // a frame, while there is time to spare
constexpr double kRemembered = 0.9;       // of what was drawn for a page, from frame to frame
constexpr double kMostPixels = 1U << 28;  // more than may be shown

// A page and those of its displays that wait, the longest not drawn first. An address with many
// pages pays for each as much as all of them together.
struct Claimant {
    Watcher* watcher = nullptr;
    double price = 1;
    std::deque<Feed*> waiting;
};

std::vector<Claimant> ListClaimants(const Audience& audience) {
    std::vector<Claimant> claimants;
    for (Watcher* watcher : audience.watchers) {
        Claimant claimant{watcher, 0, {}};
        for (const Watcher* other : audience.watchers) {
            claimant.price += other->peer == watcher->peer ? 1 : 0;
        }
        const auto add = [&claimant](const std::shared_ptr<Feed>& feed) {
            if (feed && feed->info.visible) {
                claimant.waiting.push_back(feed.get());
            }
        };
        for (const WatchedDisplay& display : watcher->displays) {
            add(display.feed);
        }
        if (watcher->subscription) {
            for (const Subscription::Gauge& gauge : watcher->subscription->gauges) {
                add(gauge.feed);
            }
        }
        std::ranges::stable_sort(claimant.waiting, {}, &Feed::drawnFrame);
        claimants.push_back(std::move(claimant));
    }
    return claimants;
}

}  // namespace

double NextPixelsAFrame(double pixelsAFrame, double drawnPixels, double tookS) {
    const double next = tookS > kWorkS ? std::min(pixelsAFrame, drawnPixels * kWorkS / tookS)
                                       : pixelsAFrame * kGrowth;
    return std::clamp(next, kLeastPixelsAFrame, kMostPixels);
}

void TakeTurns(Audience& audience) {
    std::vector<Claimant> claimants = ListClaimants(audience);
    double left = audience.pixelsAFrame;
    for (Watcher* watcher : audience.watchers) {
        watcher->drawnFor *= kRemembered;
    }
    while (left > 0) {
        std::erase_if(claimants, [](const Claimant& each) { return each.waiting.empty(); });
        if (claimants.empty()) {
            return;
        }
        Claimant& next = *std::ranges::min_element(
            claimants, {}, [](const Claimant& each) { return each.watcher->drawnFor; });
        Feed& feed = *next.waiting.front();
        next.waiting.pop_front();
        if (!feed.isDrawn) {
            feed.isDrawn = true;
            feed.drawnFrame = audience.frame;
            left -= PixelsOf(feed);
            next.watcher->drawnFor += PixelsOf(feed) * next.price;
        }
    }
}

}  // namespace panelhost
