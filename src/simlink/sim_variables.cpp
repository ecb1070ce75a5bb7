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

struct TankRow {
    FuelTank tank;
    std::int32_t level;         // variable, 0 to kFullTankLevel
    std::int32_t capacity;      // variable, gallons
    std::uint32_t levelOffset;  // of the data service
};

// In the order of FuelTank, in which they are summed.
constexpr std::array<TankRow, 7> kTanks{{
    {FuelTank::Centre, 289, 290, 0x0B74},
    {FuelTank::LeftMain, 291, 292, 0x0B7C},
    {FuelTank::RightMain, 297, 298, 0x0B94},
    {FuelTank::LeftAuxiliary, 293, 294, 0x0B84},
    {FuelTank::RightAuxiliary, 299, 300, 0x0B9C},
    {FuelTank::LeftTip, 295, 296, 0x0B8C},
    {FuelTank::RightTip, 301, 302, 0x0BA4},
}};

constexpr bool InOrderOfTanks() {
    for (std::size_t i = 0; i < kTanks.size(); ++i) {
        if (kTanks[i].tank != static_cast<FuelTank>(i)) {
            return false;
        }
    }
    return true;
}
static_assert(InOrderOfTanks());

const TankRow& RowOf(FuelTank tank) {
    return kTanks[static_cast<std::size_t>(tank)];
}

using EngineFamily = std::array<std::int32_t, kEngineCount>;
constexpr EngineFamily kPistonFlows{421, 460, 499, 538};
constexpr EngineFamily kTurbineFlows{638, 657, 676, 695};

const EngineFamily& FlowingFamily() {
    return ReadVariable(kPistonFlows[0]) > 0 ? kPistonFlows : kTurbineFlows;
}

// No simulator tells more than that; what lies beyond reads as 0, like what is no number.
constexpr double kMostReading = 1e15;
constexpr double kMostPounds = 999999;  // an hour too

double Believed(double value, double most) {
    return std::fabs(value) <= most ? value : 0;
}

double RawVariable(std::int32_t number) {
    ModuleVariable variable;
    variable.number = number;
    LookupVariable(variable);
    return variable.value;
}

}  // namespace

double ReadVariable(std::int32_t number) {
    return Believed(RawVariable(number), kMostReading);
}

double ReadTick() {
    return ReadVariable(kTick);
}

double ReadUtcDayOfYear() {
    return Believed(ReadVariable(kUtcDayOfYear), 366);
}

double ReadUtcYear() {
    return Believed(ReadVariable(kUtcYear), 9999);
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
    return RawVariable(kParkingBrake);
}

double TankCapacityLb(FuelTank tank) {
    return Believed(ReadVariable(RowOf(tank).capacity) * ReadVariable(kFuelWeightPerGallon),
                    kMostPounds);
}

std::uint32_t TankLevelOffset(FuelTank tank) {
    return RowOf(tank).levelOffset;
}

double FuelOnBoard() {
    const double weightPerGallon = ReadVariable(kFuelWeightPerGallon);
    double pounds = 0;
    for (const TankRow& tank : kTanks) {
        pounds += ReadVariable(tank.level) / kFullTankLevel * ReadVariable(tank.capacity) *
                  weightPerGallon;
    }
    return Believed(pounds, kMostPounds);
}

double TotalFuelFlow() {
    double sum = 0;
    for (const std::int32_t variable : FlowingFamily()) {
        sum += ReadVariable(variable);
    }
    return Believed(sum, kMostPounds);
}

double EngineFuelFlow(std::int32_t engine) {
    return Believed(ReadVariable(FlowingFamily()[static_cast<std::size_t>(engine - 1)]),
                    kMostPounds);
}

}  // namespace avq1
