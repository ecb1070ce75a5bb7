// panelhost/web/guests.h - how many connections a peer may hold, and who makes room for whom.
//
// A guest is a connection that has not become a WebSocket. One that waits says nothing, or not yet
// a whole request: when there are too many, the peer's longest waiting one makes room, so silent
// connections lock nobody out, their own machine included. Peers are told apart by address, IPv6
// ones by network.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace panelhost {

struct Guest {
    std::uint64_t id = 0;  // grows by one: the smallest has waited longest
    std::string peer;
    bool waits = true;  // for a request; false while one is answered
};

inline constexpr std::size_t kMaxGuests = 96;
inline constexpr std::size_t kMaxGuestsOfPeer = 32;
inline constexpr std::size_t kMaxSockets = 96;
inline constexpr std::size_t kMaxSocketsOfPeer = 32;

struct Admission {
    bool admitted = true;
    std::uint64_t leaves = 0;  // the guest that makes room; 0: none
};
Admission AdmitGuest(const std::vector<Guest>& guests, const std::string& peer);
// Whether one more WebSocket of this peer is allowed beside those open.
bool AdmitSocket(const std::vector<std::string>& openPeers, const std::string& peer);

// "192.168.1.5" as it is; an IPv6 address, 16 bytes, by its first 64 bits.
std::string PeerOfV6(const std::uint8_t bytes[16]);

}  // namespace panelhost
