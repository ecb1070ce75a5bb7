#include "displays/mfd/mfd_speeds.h"

namespace avq1 {
namespace {

constexpr std::int32_t kLeastKt = 60;
constexpr std::int32_t kMostKt = 250;
constexpr std::int32_t kFirstKt = 100;

constexpr MfdSpeedRow kTakeoff[] = {{"V1", &AircraftPerformance::v1, nullptr},
                                    {"VR", &AircraftPerformance::vr, nullptr},
                                    {"V2", &AircraftPerformance::v2, nullptr}};
constexpr MfdSpeedRow kLanding[] = {
    {"VREF", &AircraftPerformance::vref, nullptr},
    {"FLAPS", &AircraftPerformance::vrefMin, &AircraftPerformance::approachFlapsMin},
    {"FLAPS", &AircraftPerformance::vrefMid, &AircraftPerformance::approachFlapsMid},
    {"FLAPS", &AircraftPerformance::vrefMax, &AircraftPerformance::approachFlapsMax}};

}  // namespace

std::span<const MfdSpeedRow> MfdSpeedRows(MfdPage page) {
    return page == MfdPage::LandingSpeeds ? std::span<const MfdSpeedRow>(kLanding)
                                          : std::span<const MfdSpeedRow>(kTakeoff);
}

void StepMfdSpeed(bool up) {
    const MfdSpeedRow& row = MfdSpeedRows(mfd.page)[static_cast<std::size_t>(mfd.speedRow)];
    std::int32_t& speed = performance.*row.value;
    if (speed == 0) {
        speed = kFirstKt;
    } else if (up ? speed < kMostKt : speed > kLeastKt) {
        speed += up ? 1 : -1;
    }
}

}  // namespace avq1
