#include "panelhost/flightgear/packet.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace panelhost {
namespace {

constexpr double kMostNumber = 1e9;  // in any unit; a clock's seconds too

bool IsText(std::string_view bytes) {
    for (const char c : bytes) {
        if (static_cast<unsigned char>(c) < 0x20 && c != '\t') {
            return false;
        }
    }
    return true;
}

}  // namespace

double NumberIn(std::string_view field) {
    constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
    if (field == "true") {
        return 1;
    }
    if (field == "false") {
        return 0;
    }
    double number = 0;
    const auto [end, error] = std::from_chars(field.data(), field.data() + field.size(), number);
    const bool whole = error == std::errc() && end == field.data() + field.size();
    return whole && std::fabs(number) <= kMostNumber ? number : kNone;
}

PacketFault ReadPacket(std::string_view bytes, std::string_view opening, std::size_t fieldCount,
                       Packet& packet) {
    packet.count = 0;
    if (bytes.size() <= opening.size() || bytes.substr(0, opening.size()) != opening ||
        bytes[opening.size()] != ' ') {
        return PacketFault::Alien;
    }
    if (bytes.size() > kMostPacketBytes || bytes.back() != '\n') {
        return PacketFault::Malformed;
    }
    std::string_view rest = bytes.substr(opening.size() + 1);
    rest.remove_suffix(1);
    if (!IsText(rest) || fieldCount > kMostPacketFields) {
        return PacketFault::Malformed;
    }
    const std::size_t clockEnd = rest.find('\t');
    packet.clockS = NumberIn(rest.substr(0, clockEnd));
    if (!(packet.clockS >= 0 && packet.clockS < kMostNumber)) {
        return PacketFault::Malformed;
    }
    std::size_t at = clockEnd;
    while (at != std::string_view::npos && packet.count < fieldCount) {
        const std::size_t end = rest.find('\t', at + 1);
        const std::size_t length = end == std::string_view::npos ? end : end - at - 1;
        packet.fields[packet.count++] = rest.substr(at + 1, length);
        at = end;
    }
    return packet.count == fieldCount && at == std::string_view::npos ? PacketFault::None
                                                                      : PacketFault::Malformed;
}

bool TakeInOrder(PacketOrder& order, double clockS, double arrivalS) {
    if (order.any && clockS <= order.clockS && arrivalS - order.arrivalS < kStaleAfterS) {
        return false;
    }
    order = {true, clockS, arrivalS};
    return true;
}

}  // namespace panelhost
