// The flight log and the vertical profile, told once to who comes and then as they change.
#include "panelhost/web/audience.h"
#include "panelhost/web/server_messages.h"

namespace panelhost {
namespace {

void RefreshLog(Audience& audience) {
    std::string text = audience.session->FlightLog();
    LogFeed& log = audience.log;
    if (!text.starts_with(log.text)) {
        ++log.stamp;
    }
    log.text = std::move(text);
}

void RefreshProfile(Audience& audience) {
    std::string profile = ProfileMessage(audience.session->Profile());
    if (!audience.profile || *audience.profile != profile) {
        audience.profile = Shared(std::move(profile));
    }
}

void SendProfile(const Audience& audience, Watcher& watcher) {
    if (watcher.profile != audience.profile && watcher.queuedMessages < kMaxWaiting) {
        watcher.profile = audience.profile;
        watcher.outlet->Send(false, audience.profile);
    }
}

void SendLog(const LogFeed& log, Watcher& watcher) {
    const bool more = watcher.logStamp == log.stamp;
    const std::size_t told = more ? watcher.logBytes : 0;
    if ((more && told == log.text.size()) || watcher.queuedMessages >= kMaxWaiting) {
        return;
    }
    watcher.logStamp = log.stamp;
    watcher.logBytes = log.text.size();
    watcher.outlet->Send(false, Shared(LogMessage(std::string_view(log.text).substr(told), more)));
}

}  // namespace

void RefreshFlight(Audience& audience) {
    RefreshLog(audience);
    RefreshProfile(audience);
}

void SendFlight(const Audience& audience, Watcher& watcher) {
    SendLog(audience.log, watcher);
    SendProfile(audience, watcher);
}

}  // namespace panelhost
