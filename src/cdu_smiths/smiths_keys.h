// cdu_smiths/smiths_keys.h - the keys of the Smiths-style unit, the same on both gauges.
#pragma once

#include <array>

#include "base/key_area.h"

namespace avq1 {

inline constexpr int kSmithsKeyCount = 69;
extern const std::array<KeyArea, kSmithsKeyCount> kSmithsKeys;

}  // namespace avq1
