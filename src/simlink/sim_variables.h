// simlink/sim_variables.h - values read from the simulator at the moment of use.
//
// For what the snapshot in aircraft_state.h does not hold. Without a host, and for a value that is
// no finite number or larger than any simulator tells, a reader gives 0. Panel thread only.
#pragma once

#include <cstdint>

namespace avq1 {

// A variable by its number, in the simulator's own unit.
double ReadVariable(std::int32_t number);

double ReadTick();                // 18 a second
double ReadUtcDayOfYear();        // from 1
double ReadUtcYear();             // four digits
std::uint32_t ReadNavFlagWord();  // bits below
inline constexpr std::uint32_t kNavFlagLocalizer = 0x80;
inline constexpr std::uint32_t kNavFlagGlideslope = 0x40;
bool Nav1HasSignal();
bool Nav2HasSignal();
bool HorizontalDeviationValid();  // NAV1
bool FlightDirectorOn();
double ReadParkingBrake();  // 0 released, not finite while the simulator tells nothing

enum class FuelTank : std::uint8_t {
    Centre,
    LeftMain,
    RightMain,
    LeftAuxiliary,
    RightAuxiliary,
    LeftTip,
    RightTip,
};

// The level of a full tank, as it is read and written; an empty one has 0.
inline constexpr double kFullTankLevel = 8388608;

double TankCapacityLb(FuelTank tank);          // 0 for a tank the aircraft does not have
std::uint32_t TankLevelOffset(FuelTank tank);  // where the data service takes its level, 4 bytes

// Fuel on board in pounds, summed over seven tanks.
double FuelOnBoard();

// The summed engine fuel flow in pounds per hour: the piston family when its first engine flows,
// else the turbine family.
double TotalFuelFlow();

// One engine's share of it; engines 1 to kEngineCount.
inline constexpr std::int32_t kEngineCount = 4;
double EngineFuelFlow(std::int32_t engine);

}  // namespace avq1
