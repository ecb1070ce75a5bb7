// Any text from a page is refused with a reason or gives a message whose every value is in range.
#include "fuzz/fuzz_text.h"
#include "panelhost/web/api.h"
#include "panelhost/web/client_message.h"

namespace {

void RequireWithin(double value, double low, double high) {
    Require(std::isfinite(value) && value >= low && value <= high);
}

void RequireWithin(const std::optional<double>& value, double low, double high) {
    if (value) {
        RequireWithin(*value, low, high);
    }
}

}  // namespace

void FuzzText(std::string_view text) {
    using namespace panelhost;
    const ClientMessage message = ParseClientMessage(text);
    const bool bad = message.action == ClientAction::Bad;
    Require(bad != message.problem.empty());
    if (bad) {
        return;
    }
    Require(text.size() <= kMaxClientMessageBytes);
    RequireWithin(message.window, 0, 1023);
    RequireWithin(message.x, 0, 16384);
    RequireWithin(message.y, 0, 16384);
    RequireWithin(message.button, 0, 2);
    RequireWithin(message.scanCode, 0, 255);
    RequireWithin(message.virtualKey, 0, 255);
    RequireWithin(message.number, 0, 4294967295.0);
    RequireWithin(message.value, 0, 4294967295.0);
    RequireWithin(message.latitude, -90, 90);
    RequireWithin(message.longitude, -180, 180);
    RequireWithin(message.altitudeFt, -2000, 45000);
    RequireWithin(message.headingTrue, 0, 360);
    RequireWithin(message.airspeedKt, 0, 400);
    RequireWithin(message.windDirectionTrue, 0, 360);
    RequireWithin(message.windSpeedKt, 0, 200);
    RequireWithin(message.steps, -kMostSteps, kMostSteps);
    RequireWithin(message.nav1Mhz, 108, 118);
    RequireWithin(message.nav2Mhz, 108, 118);
    RequireWithin(message.adfKhz, 190, 1799);
    RequireWithin(message.course1Mag, 0, 360);
    RequireWithin(message.course2Mag, 0, 360);
    Require(message.gauge.size() <= kMaxNameCharacters && message.key.size() <= kMaxNameCharacters);
    Require(message.gauges.size() <= kMaxNames && message.variables.size() <= kMaxNames);
    Require(message.scales.empty() || message.scales.size() == message.windows.size());
    for (const int scale : message.scales) {
        RequireWithin(scale, 1, 3);
    }
    Require(message.windows.size() <= static_cast<std::size_t>(kMaxWatchedWindows));
    for (const int window : message.windows) {
        RequireWithin(window, 0, 1023);
    }
}
