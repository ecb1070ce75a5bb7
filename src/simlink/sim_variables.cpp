#include "simlink/sim_variables.h"

#include <array>
#include <cmath>

#include "base/text.h"
#include "platform/services.h"

namespace avq1 {
namespace {

enum Variable : std::int32_t {
    kTick = 1,
    kUtcDayOfYear = 8,
    kUtcYear = 9,
    kNavFlagWord = 46,
    kNav1Signal = 49,
    kNav2Signal = 58,
    kFuelWeightPerGallon = 306,
    kParkingBrake = 323,
    kFlightDirector = 792,
    kHorizontalDeviation = 852,
};

constexpr double kFullTankLevel = 8388608;

struct TankRow {
    std::int32_t level;     // 0 to kFullTankLevel
    std::int32_t capacity;  // gallons
};

// Summed in this order.
constexpr std::array<TankRow, 7> kTanks{{
    {289, 290},  // centre
    {291, 292},  // left main
    {297, 298},  // right main
    {293, 294},  // left auxiliary
    {299, 300},  // right auxiliary
    {295, 296},  // left tip
    {301, 302},  // right tip
}};

using EngineFamily = std::array<std::int32_t, 4>;
constexpr EngineFamily kPistonFlows{421, 460, 499, 538};
constexpr EngineFamily kTurbineFlows{638, 657, 676, 695};

double SumOf(const EngineFamily& variables) {
    double sum = 0;
    for (const std::int32_t variable : variables) {
        sum += ReadVariable(variable);
    }
    return sum;
}

}  // namespace

double ReadVariable(std::int32_t number) {
    ModuleVariable variable;
    variable.number = number;
    LookupVariable(variable);
    return std::isfinite(variable.value) ? variable.value : 0;
}

double ReadTick() {
    return ReadVariable(kTick);
}

double ReadUtcDayOfYear() {
    return ReadVariable(kUtcDayOfYear);
}

double ReadUtcYear() {
    return ReadVariable(kUtcYear);
}

std::uint32_t ReadNavFlagWord() {
    return static_cast<std::uint32_t>(TruncateToInteger(ReadVariable(kNavFlagWord)));
}

bool Nav1HasSignal() {
    return ReadVariable(kNav1Signal) > 0;
}

bool Nav2HasSignal() {
    return ReadVariable(kNav2Signal) > 0;
}

bool HorizontalDeviationValid() {
    return ReadVariable(kHorizontalDeviation) > 0;
}

bool FlightDirectorOn() {
    return ReadVariable(kFlightDirector) != 0;
}

double ReadParkingBrake() {
    return ReadVariable(kParkingBrake);
}

double FuelOnBoard() {
    const double weightPerGallon = ReadVariable(kFuelWeightPerGallon);
    double pounds = 0;
    for (const TankRow& tank : kTanks) {
        pounds += ReadVariable(tank.level) / kFullTankLevel * ReadVariable(tank.capacity) *
                  weightPerGallon;
    }
    return pounds;
}

double TotalFuelFlow() {
    return SumOf(ReadVariable(kPistonFlows[0]) > 0 ? kPistonFlows : kTurbineFlows);
}

}  // namespace avq1
