// displays/mfd.h - whether the multifunction display's control panel is drawn, and the keys of the
// display and of the panel.
#pragma once

#include <array>
#include <cstdint>

#include "base/key_area.h"

namespace avq1 {

struct MfdState {
    std::int32_t mfdPanelPresent = 0;    // set by the first draw event of the control panel
    std::int32_t panelFrameCounter = 0;  // 1 to 30000, advanced by the control panel's draws
};

extern MfdState mfd;

inline constexpr int kMfdKeyCount = 8;
inline constexpr int kMfdPanelKeyCount = 5;
extern const std::array<KeyArea, kMfdKeyCount> kMfdKeys;
extern const std::array<KeyArea, kMfdPanelKeyCount> kMfdPanelKeys;

// The control panel's own draw event: marks the panel present and advances its frame counter.
void DrawMfdPanel();

}  // namespace avq1
