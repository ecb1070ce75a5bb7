// displays/ehsi/ehsi.h - the EHSI: its control state, the keys of its control panel, and its
// picture.
//
// The state is shared by every EHSI gauge and lives as long as the module; the control panel's
// keys write it, the picture reads it. Ranges are nm.
#pragma once

#include <array>
#include <cstdint>

#include "base/key_area.h"
#include "displays/screen_keys.h"
#include "drawing/surface.h"

namespace avq1 {

enum class NavSource : std::int32_t { NavReceiver = 1, FlightManagement = 2 };
enum class BearingSource : std::int32_t { Off = 0, Vor = 1, Fms = 2, Adf = 3 };

inline constexpr std::int32_t kEhsiTrafficMode = 8;

struct EhsiState {
    std::int32_t ehsiMode = 1;  // 1 to 3 full compass, 4 to 7 arc, 8 traffic
    std::int32_t ehsiSavedMode = 8;
    double ehsiRange = 12.5;
    double ehsiMode8Range = 5;
    NavSource navSource = NavSource::NavReceiver;
    BearingSource bearingPointer1 = BearingSource::Off;
    BearingSource bearingPointer2 = BearingSource::Off;
    std::int32_t decisionHeight = 200;  // feet
    std::int32_t mapOverlayOn = 0;      // shared with the other maps
};

extern EhsiState ehsi;

inline constexpr int kEhsiPanelKeyCount = 13;
extern const std::array<KeyArea, kEhsiPanelKeyCount> kEhsiPanelKeys;

// Draws the EHSI; clears only when the target or the avionics power says so.
void DrawEhsi(const DrawTarget& target);

}  // namespace avq1
