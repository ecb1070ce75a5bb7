#include "flightplan/fuel_load.h"

#include <cstdint>
#include <span>

#include "base/messages.h"
#include "base/text.h"
#include "simlink/data_service.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

// Tanks filled alike: a pair, or a single one.
using Stage = std::span<const FuelTank>;

constexpr FuelTank kMains[] = {FuelTank::LeftMain, FuelTank::RightMain};
constexpr FuelTank kCentre[] = {FuelTank::Centre};
constexpr FuelTank kAuxiliaries[] = {FuelTank::LeftAuxiliary, FuelTank::RightAuxiliary};
constexpr FuelTank kTips[] = {FuelTank::LeftTip, FuelTank::RightTip};
constexpr Stage kStages[] = {kMains, kCentre, kAuxiliaries, kTips};

// How full the stage's tanks get, 0 to 1; what they take is taken off the remaining quantity.
double FillStage(Stage stage, double& remaining) {
    double capacity = 0;
    for (const FuelTank tank : stage) {
        capacity += TankCapacityLb(tank);
    }
    if (!(remaining > 0)) {
        return 0;
    }
    if (remaining >= capacity) {
        remaining -= capacity;
        return 1;
    }
    const double share = remaining / capacity;
    remaining = 0;
    return share;
}

}  // namespace

bool LoadFuel(double quantity) {
    if (DsOpen(kAnySimulator, dsBuffer.data(), dsBuffer.size()) != DsError::None) {
        return false;
    }
    double remaining = quantity;
    for (const Stage stage : kStages) {
        const auto level = static_cast<std::int32_t>(FillStage(stage, remaining) * kFullTankLevel);
        for (const FuelTank tank : stage) {
            DsWrite(TankLevelOffset(tank), sizeof level, &level);
        }
    }
    const bool loaded = DsProcess() == DsError::None;
    DsClose();
    if (loaded) {
        AppendMessage(Format("FUEL '%6.0f' loaded", quantity));
    }
    return loaded;
}

}  // namespace avq1
