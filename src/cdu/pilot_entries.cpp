#include "cdu/pilot_entries.h"

#include <cmath>

#include "base/module_state.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {

PilotEntries pilotEntries;

namespace {

constexpr double kWeighAgainTicks = 5 * 18;

struct WeightRecord {
    bool known = false;
    double askedTick = -kWeighAgainTicks;
    AircraftWeights weights;
};

WeightRecord weighed;
const StateReset resetEntries([] {
    pilotEntries = {};
    weighed = {};
});

bool InKilograms() {
    return settings.WeightUnit == "KGS";
}

}  // namespace

void RefreshAircraftWeights() {
    weighed.known = ReadAircraftWeights(weighed.weights);
    weighed.askedTick = aircraft.tick;
}

void KeepAircraftWeights() {
    if (std::abs(aircraft.tick - weighed.askedTick) >= kWeighAgainTicks) {
        RefreshAircraftWeights();
    }
}

const AircraftWeights* KnownAircraftWeights() {
    return weighed.known ? &weighed.weights : nullptr;
}

double ZeroFuelLb() {
    return std::isfinite(pilotEntries.zeroFuelLb) ? pilotEntries.zeroFuelLb
           : weighed.known                        ? weighed.weights.zeroFuelLb
                                                  : kNotEntered;
}

double GrossWeightLb() {
    return ZeroFuelLb() + FuelOnBoard();
}

double InWeightUnit(double pounds) {
    return InKilograms() ? pounds / kPoundsPerKilogram : pounds;
}

double PoundsFrom(double weight) {
    return InKilograms() ? weight * kPoundsPerKilogram : weight;
}

const char* WeightUnitText() {
    return InKilograms() ? "KG" : "LB";
}

}  // namespace avq1
