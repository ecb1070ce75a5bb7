// displays/nd/nd_panel.h - the navigation display's control state and its control panel's keys.
#pragma once

#include <array>
#include <cstdint>

#include "base/key_area.h"
#include "displays/screen_keys.h"

namespace avq1 {

struct NdState {
    std::int32_t ndMode = 1;    // 1 to 7
    std::int32_t ndRange = 10;  // nm
    std::int32_t ndShowStations = 0;
    std::int32_t ndShowAirports = 0;
    std::int32_t ndShowWaypoints = 0;
    std::int32_t ndShowAdf = 0;
    std::int32_t showTraffic = 0;  // shared with the multifunction display
};

extern NdState nd;

inline constexpr int kNdPanelKeyCount = 19;
extern const std::array<KeyArea, kNdPanelKeyCount> kNdPanelKeys;

}  // namespace avq1
