#include "panelhost/flightgear/live_link.h"

#include <algorithm>
#include <cmath>

namespace panelhost {
namespace {

constexpr double kTrafficStaleS = 3;  // others are told five times a second
constexpr double kFpsPerFpm = 1.0 / 60;

void TakeStatePacket(LiveLink& link, const Packet& packet, double arrivalS) {
    HeardState state;
    state.arrivalS = arrivalS;
    for (std::size_t i = 0; i < kToldCount; ++i) {
        state.values[i] = NumberIn(packet.fields[i]);
    }
    Remember(link.history, state);
    std::size_t field = kToldCount;
    for (std::string& ident : link.idents) {
        ident.assign(packet.fields[field++]);
    }
    for (std::string& text : link.texts) {
        text.assign(packet.fields[field++]);
    }
    link.freshState = true;
}

OtherAircraft OtherIn(const Packet& packet, std::size_t first) {
    const auto number = [&packet, first](std::size_t i) {
        return NumberIn(packet.fields[first + i]);
    };
    OtherAircraft other;
    other.position = {number(1), number(2)};
    other.altitudeFt = number(3);
    other.trackTrue = number(4);
    other.groundSpeedKt = number(5);
    other.climbFpm = number(6) / kFpsPerFpm;
    return other;
}

bool IsWhole(const OtherAircraft& other) {
    return std::isfinite(other.position.latitude + other.position.longitude + other.altitudeFt +
                         other.trackTrue + other.groundSpeedKt + other.climbFpm) &&
           std::abs(other.position.latitude) <= 90 && std::abs(other.position.longitude) <= 180;
}

void TakeTrafficPacket(LiveLink& link, const Packet& packet) {
    link.others.clear();
    for (std::size_t first = 0; first < kTrafficFields; first += kTrafficProperties.size()) {
        OtherAircraft other = OtherIn(packet, first);
        if (packet.fields[first] == "true" && IsWhole(other)) {
            link.others.push_back(std::move(other));
        }
    }
    link.freshTraffic = true;
}

// Between two packets the others fly on; without packets the traffic module falls silent.
void StepOthers(LiveLink& link, double nowS, const World& world, Traffic& traffic) {
    const double flightS = std::max(world.clock.flightTimeS - link.trafficS, 0.0);
    link.trafficS = world.clock.flightTimeS;
    if (nowS - link.trafficOrder.arrivalS > kTrafficStaleS || !link.trafficOrder.any) {
        traffic.aircraft.clear();
        return;
    }
    if (link.freshTraffic) {
        traffic.aircraft = link.others;
        link.freshTraffic = false;
    }
    if (!world.paused) {
        StepTraffic(world, traffic, flightS);
    }
}

}  // namespace

void OpenLink(const AutopilotMapping& mapping, std::string_view key, LiveLink& link) {
    link = LiveLink{};
    link.stateOpening = OpeningOf(kStateKind, key);
    link.trafficOpening = OpeningOf(kTrafficKind, key);
    link.controls.mapping = mapping;
}

PacketFault Hear(LiveLink& link, std::string_view datagram, double arrivalS) {
    Packet packet;
    const bool isTraffic = datagram.starts_with(link.trafficOpening);
    PacketFault fault = ReadPacket(datagram, isTraffic ? link.trafficOpening : link.stateOpening,
                                   isTraffic ? kTrafficFields : kStateFields, packet);
    PacketOrder& order = isTraffic ? link.trafficOrder : link.stateOrder;
    if (fault == PacketFault::None && !TakeInOrder(order, packet.clockS, arrivalS)) {
        fault = PacketFault::OutOfOrder;
    }
    switch (fault) {
        case PacketFault::None:
            ++link.counts.taken;
            if (isTraffic) {
                TakeTrafficPacket(link, packet);
            } else {
                TakeStatePacket(link, packet, arrivalS);
            }
            break;
        case PacketFault::Alien:
            ++link.counts.alien;
            break;
        case PacketFault::Malformed:
            ++link.counts.malformed;
            break;
        case PacketFault::OutOfOrder:
            ++link.counts.outOfOrder;
            break;
    }
    return fault;
}

bool IsStale(const LiveLink& link, double nowS) {
    return !link.stateOrder.any || nowS - link.stateOrder.arrivalS >= kStaleAfterS;
}

std::string StepLink(LiveLink& link, double nowS, World& world, Traffic& traffic) {
    world.unknown.linkLost = IsStale(link, nowS);
    if (!world.unknown.linkLost) {
        const ToldValues& newest = link.history.states[link.history.count - 1].values;
        TakeState(ValuesAt(link.history, nowS), link.idents, link.controls, world);
        TakeClock(newest, link.lastElapsedS, world);
        const double pressure = newest[At(Told::SeaLevelPressure)];
        link.controls.seaLevelPressureInHg =
            std::isfinite(pressure) ? pressure : link.controls.seaLevelPressureInHg;
    }
    std::string packet = SendControls(nowS, link.controls, world);
    if (link.freshState) {
        TakeControls(link.texts, nowS, link.controls, world);
        link.freshState = false;
    }
    StepOthers(link, nowS, world, traffic);
    return packet;
}

}  // namespace panelhost
