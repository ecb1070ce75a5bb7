// The flight's clock.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

#include "panelhost/web/server_state.h"

namespace panelhost {
namespace {

constexpr auto kFrameTime = std::chrono::milliseconds(40);
constexpr auto kGlanceGap = std::chrono::milliseconds(20);
constexpr double kStepS = 0.04;
constexpr double kMaxCatchUpS = 0.5;  // a stall longer than this is lost flight time

// Seconds this thread has had of a core: other programs do not count as work.
double WorkedS() {
    timespec spent{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &spent);
    return static_cast<double>(spent.tv_sec) + static_cast<double>(spent.tv_nsec) * 1e-9;
}

void RunFrames(Server& server) {
    const double nowS = SteadyNowS();
    server.lastFrameS = std::max(server.lastFrameS, nowS - kMaxCatchUpS);
    // Whole steps of one length: who watches, and how busy the machine is, changes no flight.
    const int steps = static_cast<int>((nowS - server.lastFrameS) / kStepS + 0.5);
    server.lastFrameS += steps * kStepS;
    const double beganS = WorkedS();
    RunFrame(server.audience, steps, kStepS, nowS);
    Audience& audience = server.audience;
    audience.pixelsAFrame =
        NextPixelsAFrame(audience.pixelsAFrame, audience.drawnPixels, WorkedS() - beganS);
}

void ScheduleFrame(Server& server) {
    server.frameTimer.async_wait([&server](ErrorCode error) {
        if (error) {
            return;
        }
        RunFrames(server);
        const auto next = server.frameTimer.expiry() + kFrameTime;
        const auto now = net::steady_timer::clock_type::now();
        // A frame that came late moves the beat instead of running several at once; a moment is
        // always left for the connections.
        server.frameTimer.expires_at(std::max(next, now + std::chrono::milliseconds(4)));
        ScheduleFrame(server);
    });
}

}  // namespace

double SteadyNowS() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

void StartFrames(Server& server) {
    server.lastFrameS = SteadyNowS();
    server.frameTimer.expires_after(kFrameTime);
    ScheduleFrame(server);
}

void GlanceSoon(Server& server) {
    if (!server.audience.touched || server.glances) {
        return;
    }
    // What has come meanwhile is shown together, and no stream of messages draws without end.
    server.glances = true;
    const auto now = net::steady_timer::clock_type::now();
    server.glanceTimer.expires_at(std::max(now, server.glanceTimer.expiry() + kGlanceGap));
    server.glanceTimer.async_wait([&server](ErrorCode error) {
        server.glances = false;
        if (!error && server.audience.touched) {
            Glance(server.audience);
        }
    });
}

}  // namespace panelhost
