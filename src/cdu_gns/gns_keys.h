// cdu_gns/gns_keys.h - the keys of the GNS-style unit.
#pragma once

#include <array>

#include "base/key_area.h"

namespace avq1 {

inline constexpr int kGnsKeyCount = 59;
extern const std::array<KeyArea, kGnsKeyCount> kGnsKeys;

}  // namespace avq1
