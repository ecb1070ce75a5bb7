// base/whole_number.h - whole numbers from the simulator's floating-point values.
//
// A value that is not a number gives 0 and one beyond 32 bits the nearest limit, so that nothing
// the simulator reports can leave the range of the conversion.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

namespace avq1 {

// Truncated toward zero.
inline std::int32_t WholePart(double value) {
    constexpr double kLowest = std::numeric_limits<std::int32_t>::min();
    constexpr double kHighest = std::numeric_limits<std::int32_t>::max();
    if (std::isnan(value)) {
        return 0;
    }
    if (value <= kLowest) {
        return std::numeric_limits<std::int32_t>::min();
    }
    if (value >= kHighest) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(value);
}

// Rounded, halves away from zero.
inline std::int32_t NearestWhole(double value) {
    return WholePart(value < 0 ? value - 0.5 : value + 0.5);
}

}  // namespace avq1
