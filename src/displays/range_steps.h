// displays/range_steps.h - steps through a list of ranges, in nm, wrapping at its ends.
//
// A value that is not in the list goes to its first entry going up, to its last going down.
#pragma once

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace avq1 {

inline constexpr double kMapRanges[] = {0.5, 1, 2.5, 5, 12.5, 25, 40, 80, 160};

template <std::size_t count>
double StepUp(const double (&list)[count], double value) {
    const double* const found = std::find(std::begin(list), std::end(list), value);
    return found >= std::end(list) - 1 ? list[0] : *(found + 1);
}

template <std::size_t count>
double StepDown(const double (&list)[count], double value) {
    const double* const found = std::find(std::begin(list), std::end(list), value);
    return found == std::end(list) || found == std::begin(list) ? list[count - 1] : *(found - 1);
}

}  // namespace avq1
