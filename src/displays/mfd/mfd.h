// displays/mfd/mfd.h - the multifunction display: its control state, the keys of the display and of
// its control panel, and its picture.
//
// The state is shared by every multifunction display and lives as long as the module; keys write
// it, the picture reads it. Traffic and boundaries are switched together with the other maps.
// Ranges and distances are nm, altitudes feet, angles degrees, vertical speeds feet per minute.
#pragma once

#include <array>
#include <cstdint>

#include "base/key_area.h"
#include "drawing/surface.h"
#include "geometry/geometry.h"

namespace avq1 {

inline constexpr std::int32_t kMfdTopLevel = 1;
inline constexpr std::int32_t kMfdSettingLevel = 2;

// What the top level shows over the map; the setting level shows the vertical path.
enum class MfdPage : std::int32_t { Map, TakeoffSpeeds, LandingSpeeds };

struct MfdMapPlace {
    double centreX = 134;  // design pixels
    double centreY = 148;
    double radius = 53;  // stands for the range
};

struct MfdState {
    std::int32_t mfdPanelPresent = 0;  // set by the first draw event of the control panel
    double mfdMapRange = 12.5;
    double mfdTrafficRange = 5;
    std::int32_t mfdLayerA = 0;  // airports
    std::int32_t mfdLayerB = 0;  // stations
    std::int32_t mfdLayerC = 0;  // nothing
    std::int32_t mfdMenuLevel = kMfdTopLevel;
    std::int32_t mfdSelA = 0;  // 1 the distance is being set, 2 and drawn on the map; 0 neither
    std::int32_t mfdSelB = 0;  // the altitude is
    std::int32_t mfdSelC = 0;  // the path angle is
    double mfdValueA = 0;      // distance to the altitude
    double mfdValueB = 0;      // the altitude
    double mfdRequiredVs = 0;  // to be there then, negative down; a path angle's counts down
    std::int32_t mfdMapModeOn = 0;
    MfdPage page = MfdPage::Map;
    std::int32_t speedRow = 0;  // of the page
    MfdMapPlace map;
    LatLon storedPosition;               // where the map mode was switched on
    std::int32_t panelDrawn = 0;         // 0 once the control panel is drawn no more
    std::int32_t panelFrameCounter = 0;  // 1 to 30000, advanced by the control panel's draws
};

extern MfdState mfd;

inline constexpr int kMfdKeyCount = 8;
inline constexpr int kMfdPanelKeyCount = 5;
extern const std::array<KeyArea, kMfdKeyCount> kMfdKeys;
extern const std::array<KeyArea, kMfdPanelKeyCount> kMfdPanelKeys;

// The traffic range while traffic is shown, else the map's.
double MfdRangeInUse();

// The vertical speed that the set values, or the path angle, ask for at the descent's true
// airspeed.
double MfdRequiredVerticalSpeed();

// Back to the map around the aircraft.
void LeaveMfdMapMode();

// Clears only when the target or the avionics power says so, and in the first two frames of the
// displays' refresh cycle.
void DrawMfd(const DrawTarget& target);

// Whether this frame is one of those two: a host that can keeps the picture it has.
bool MfdKeepsPicture();

// The control panel's own draw event: marks the panel present and advances its frame counter.
void DrawMfdPanel();

}  // namespace avq1
