#include "simlink/key_events.h"

#include <cmath>

#include "base/text.h"
#include "platform/services.h"

namespace avq1 {
namespace {

constexpr std::int32_t kFullTurn = 360;

}  // namespace

void SendKeyEvent(KeyEvent event, std::int32_t parameter) {
    TriggerKeyEvent(static_cast<std::int32_t>(event), static_cast<std::uint32_t>(parameter));
}

void SendKeyEvent(KeyEvent event, double value) {
    if (std::isfinite(value)) {
        SendKeyEvent(event, TruncateToInteger(value));
    }
}

std::int32_t WholeHeading(double headingMag) {
    // In 64 bits, so that folding cannot overflow whatever the heading was computed from.
    const std::int64_t fromNorth = std::int64_t{TruncateToInteger(headingMag)} - 1;
    return static_cast<std::int32_t>((fromNorth % kFullTurn + kFullTurn) % kFullTurn) + 1;
}

std::int32_t ToBcd(std::int32_t value) {
    std::uint32_t bcd = 0;
    // Eight digits fill the parameter; further ones have no place in it.
    for (int shift = 0; shift < 32 && value > 0; shift += 4, value /= 10) {
        bcd |= static_cast<std::uint32_t>(value % 10) << shift;
    }
    return static_cast<std::int32_t>(bcd);
}

}  // namespace avq1
