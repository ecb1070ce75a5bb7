#include "flightplan/fuel_load.h"

#include <cstdint>

#include "base/messages.h"
#include "base/text.h"
#include "simlink/data_service.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kFullLevel = 8388608;
constexpr std::int32_t kFuelWeightPerGallon = 306;
constexpr std::int32_t kNoTank = 0;

struct TankRow {
    std::int32_t capacityVariable;  // gallons
    std::uint32_t levelOffset;
};

struct Stage {
    TankRow left;
    TankRow right;  // capacityVariable kNoTank: a single tank
};

constexpr Stage kStages[] = {
    {{292, 0x0B7C}, {298, 0x0B94}},  // mains
    {{290, 0x0B74}, {kNoTank, 0}},   // centre
    {{294, 0x0B84}, {300, 0x0B9C}},  // auxiliaries
    {{296, 0x0B8C}, {302, 0x0BA4}},  // tips
};

double CapacityOf(const TankRow& tank) {
    return tank.capacityVariable == kNoTank
               ? 0
               : ReadVariable(tank.capacityVariable) * ReadVariable(kFuelWeightPerGallon);
}

// How full the stage's tanks get, 0 to 1; what they take is taken off the remaining quantity.
double FillStage(const Stage& stage, double& remaining) {
    const double capacity = CapacityOf(stage.left) + CapacityOf(stage.right);
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
    for (const Stage& stage : kStages) {
        const auto level = static_cast<std::int32_t>(FillStage(stage, remaining) * kFullLevel);
        DsWrite(stage.left.levelOffset, sizeof level, &level);
        if (stage.right.capacityVariable != kNoTank) {
            DsWrite(stage.right.levelOffset, sizeof level, &level);
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
