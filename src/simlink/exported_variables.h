// simlink/exported_variables.h - the guidance values other panel code reads as named variables.
//
// The SERVER gauge registers them on install and unregisters them on kill; the per-frame update
// rewrites the block every simulator tick. Courses are magnetic, [0.5, 360.5); without an active
// waypoint they, the side and the index are 0 and the identifier is empty.
#pragma once

#include <array>
#include <cstdint>

namespace avq1 {

inline constexpr std::size_t kExportedIdentSize = 64;

struct ExportedVariables {
    std::array<char, kExportedIdentSize> activeIdent{'I', 'N', 'I', 'T'};
    std::uint32_t activeIndex = 0;
    double distanceToGoNm = 0;
    std::uint32_t lastIndex = 0;
    std::uint32_t crossTrackSide = 0;  // 1 right of track, 2 left
    double crossTrackNm = 0;           // -99 without an active waypoint
    double desiredTrackMag = 0;
    double bearingToWaypointMag = 0;
    std::uint32_t lnavEngaged = 0;
    std::uint32_t vnavEngaged = 0;
    std::uint32_t active = 1;  // always 1: the module is there
};

extern ExportedVariables exported;

void RegisterExportedVariables();
void UnregisterExportedVariables();

}  // namespace avq1
