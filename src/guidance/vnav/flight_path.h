// guidance/vnav/flight_path.h - the altitudes at which a profile will be flown, as a line over the
// route.
//
// Distances nm from the route's first entry, altitudes feet, speeds kt.
#pragma once

#include <array>

#include "guidance/vnav/planning.h"

namespace avq1 {

struct PathNode {
    double alongNm = 0;
    double altitudeFt = 0;
};

struct FlightPath {
    static constexpr std::size_t kCapacity = 3 * kPlanCapacity + 8;
    std::array<PathNode, kCapacity> nodes;  // in order along the route
    std::size_t count = 0;
    double topOfClimbNm = -1;  // -1: not ahead
    double topOfDescentNm = -1;

    void Add(double alongNm, double altitudeFt);
    // Straight between the nodes, level before the first and behind the last.
    double AltitudeAt(double alongNm) const;
};

// Ground speed in the climb at an altitude.
using ClimbSpeedKt = double (*)(const void* context, double altitudeFt);

struct ClimbSpeed {
    ClimbSpeedKt at = nullptr;
    const void* context = nullptr;
};

// From the aircraft on: climbs as vertical guidance commands it (1500 to 3000 feet a minute towards
// the next restriction, level at it until it is passed), the cruise, and each descent from where it
// begins to the restriction it leads to. `changeNm` before an entry of the climb it counts as
// passed.
FlightPath BuildFlightPath(const PlanningInput& input, const PlannedProfile& profile,
                           VerticalPhase phase, std::int32_t targetIndex, double changeNm,
                           const ClimbSpeed& climbSpeed);

}  // namespace avq1
