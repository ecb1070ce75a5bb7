// guidance/performance_entries.h - the cruise altitude, cost index and speeds that the pilot has
// chosen, and how a change of them comes to be flown.
//
// While a route is flown a change belongs to its modification and waits for EXEC; before that it is
// taken at once. Altitudes feet, speeds kt indicated. A chosen speed stays when the performance
// tables give another one.
#pragma once

#include <cstdint>

#include "flightplan/performance_change.h"
#include "guidance/vnav/profile.h"
#include "settings/aircraft_performance.h"

namespace avq1 {

// ---- as chosen: what waits for EXEC, else what is in force ----
std::int32_t ChosenCruiseAltitude();  // 0 = none
std::int32_t ChosenCostIndex();       // -1 = none
SpeedChoice ChosenSpeed(VerticalPhase phase);
SpeedLimit ChosenSpeedLimit(VerticalPhase phase);

// The speed a mode gives a phase now; Selected keeps the present one.
SpeedChoice SpeedOfMode(VerticalPhase phase, SpeedMode mode);

// The restriction of the climb, or of the descent for the other phases, as the aircraft has it.
SpeedLimit SpeedLimitOf(const AircraftPerformance& from, VerticalPhase phase);

struct SpeedRange {
    double leastIas = 0;
    double greatestIas = 0;
};
// The limits of the aircraft's file.
SpeedRange SpeedLimitsOf(const AircraftPerformance& from, VerticalPhase phase);

// The change is made as the route's state asks for; what it has no value for stays.
void ChangePerformance(const PerformanceChange& change);

// ---- for planning ----
// `target` with the change's speeds in it.
void TakeSpeeds(const PerformanceChange& change, AircraftPerformance& target);
// Puts the chosen speeds back where the performance tables have replaced them.
void KeepChosenSpeeds(AircraftPerformance& target);
// The speeds of a change are in force from now on.
void ApplySpeeds(const PerformanceChange& change);

}  // namespace avq1
