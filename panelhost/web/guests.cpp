#include "panelhost/web/guests.h"

#include <algorithm>

#include "panelhost/base/text.h"

namespace panelhost {

Admission AdmitGuest(const std::vector<Guest>& guests, const std::string& peer) {
    const auto ofPeer = [&peer](const Guest& guest) { return guest.peer == peer; };
    const bool peerIsFull =
        std::ranges::count_if(guests, ofPeer) >= static_cast<std::ptrdiff_t>(kMaxGuestsOfPeer);
    if (!peerIsFull && guests.size() < kMaxGuests) {
        return {};
    }
    const Guest* oldest = nullptr;
    for (const Guest& guest : guests) {
        if (guest.waits && (!peerIsFull || ofPeer(guest)) &&
            (oldest == nullptr || guest.id < oldest->id)) {
            oldest = &guest;
        }
    }
    return {oldest != nullptr, oldest != nullptr ? oldest->id : 0};
}

bool AdmitSocket(const std::vector<std::string>& openPeers, const std::string& peer) {
    return openPeers.size() < kMaxSockets &&
           std::ranges::count(openPeers, peer) < static_cast<std::ptrdiff_t>(kMaxSocketsOfPeer);
}

std::string PeerOfV6(const std::uint8_t bytes[16]) {
    std::string peer;
    for (int i = 0; i < 8; ++i) {
        peer += Format("%02x", bytes[i]);
    }
    return peer + "::";
}

}  // namespace panelhost
