// panelhost/flightgear/live_link.h - the link to the simulator without sockets or clocks: datagrams
// and times come in, packets go out. What the simulator tells becomes the world, what changes here
// is sent to it. Times are seconds of a steady clock.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "panelhost/flightgear/controls.h"
#include "panelhost/flightgear/live_state.h"
#include "panelhost/flightgear/packet.h"
#include "panelhost/flightgear/protocol_file.h"
#include "panelhost/world/traffic.h"

namespace panelhost {

inline constexpr std::size_t kStateFields = kToldCount + kToldIdents.size() + kControlCount;
static_assert(kStateFields <= kMostPacketFields && kTrafficFields <= kMostPacketFields);

struct LinkCounts {
    std::uint64_t taken = 0;
    std::uint64_t alien = 0;
    std::uint64_t malformed = 0;
    std::uint64_t outOfOrder = 0;
};

struct LiveLink {
    std::string stateOpening = {};
    std::string trafficOpening = {};
    Controls controls = {};
    PacketOrder stateOrder = {};
    PacketOrder trafficOrder = {};
    StateHistory history = {};
    ToldIdents idents = {};
    ControlTexts texts = {};
    bool freshState = false;  // since the last step
    bool freshTraffic = false;
    std::vector<OtherAircraft> others = {};
    double lastElapsedS = -1;  // before the first packet
    double trafficS = 0;       // flight time when the others were last told
    LinkCounts counts = {};
};

void OpenLink(const AutopilotMapping& mapping, std::string_view key, LiveLink& link);
// One datagram as it arrived; refused ones are counted and change nothing else.
PacketFault Hear(LiveLink& link, std::string_view datagram, double arrivalS);
bool IsStale(const LiveLink& link, double nowS);
// Brings the world to `nowS`; gives the packet to send, empty for none.
std::string StepLink(LiveLink& link, double nowS, World& world, Traffic& traffic);

}  // namespace panelhost
