// panelhost/flightgear/packet.h - one datagram of the simulator's generic protocol: its text, and
// whether it may be believed.
//
//     AVQ1-state-<key> 70933.921650<tab>value<tab>value...<newline>
//
// The key is written into the protocol file (protocol_file.h), so packets of anything else are told
// apart; the number is the simulator's own steady clock in seconds, which only grows. A value that
// the simulator does not have is empty. Nothing here allocates or throws.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace panelhost {

inline constexpr std::size_t kMostPacketBytes = 16384;  // the simulator's own bound
inline constexpr std::size_t kMostPacketFields = 400;
inline constexpr double kStaleAfterS = 1;  // without a packet

enum class PacketFault { None, Alien, Malformed, OutOfOrder };

// Points into the datagram.
struct Packet {
    double clockS = 0;
    std::size_t count = 0;
    std::array<std::string_view, kMostPacketFields> fields = {};
};

// `opening` is what comes before the blank; `fieldCount` how many values must follow. The packet
// holds nothing of use after a fault.
PacketFault ReadPacket(std::string_view bytes, std::string_view opening, std::size_t fieldCount,
                       Packet& packet);

// The last packet taken of one kind.
struct PacketOrder {
    bool any = false;
    double clockS = 0;
    double arrivalS = 0;  // of this machine's steady clock
};

// False for a packet that is not newer than the last one. After a second of silence any clock is
// taken: the simulator was started again.
bool TakeInOrder(PacketOrder& order, double clockS, double arrivalS);

// A value as a number; "true" is 1 and "false" 0. Not a number for an empty value, another text and
// what is larger than any value told (1e9).
double NumberIn(std::string_view field);

}  // namespace panelhost
