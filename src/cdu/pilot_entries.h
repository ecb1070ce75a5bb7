// cdu/pilot_entries.h - what the pilot has told one unit and every unit knows: weights, the
// transition altitude and the forecasts, with the weights that follow from them.
//
// Pounds, feet, degrees Celsius, kt; NaN where nothing has been entered or is known. What guidance
// flies by is not here: see guidance/performance_change.h and guidance/predictions.h.
#pragma once

#include <cstdint>
#include <limits>

#include "simlink/data_service.h"

namespace avq1 {

inline constexpr double kNotEntered = std::numeric_limits<double>::quiet_NaN();

struct PilotEntries {
    double transitionAltitudeFt = 18000;
    double zeroFuelLb = kNotEntered;  // in place of what the data service says
    double isaDeviationC = kNotEntered;
    double topOfClimbC = kNotEntered;       // temperature typed for it, in place of the deviation
    std::int32_t timeToleranceS = 15;       // of the time wanted at a waypoint
    double approachWeightLb = kNotEntered;  // in place of the gross weight
    std::int32_t windCorrectionKt = 5;      // added to the reference speed
    // for the descent
    double antiIceOnFt = kNotEntered;
    double antiIceOffFt = kNotEntered;
    double cabinRateFpm = kNotEntered;
    double descentDeviationC = kNotEntered;
    double descentQnh = kNotEntered;  // hPa
};

extern PilotEntries pilotEntries;

// ---- weights ----
// Asks the data service what the aircraft weighs; what it does not answer stays unknown.
void RefreshAircraftWeights();
// The same, when the last question is 5 s old: for pages that are shown for long.
void KeepAircraftWeights();
// What it answered last; null when it never has.
const AircraftWeights* KnownAircraftWeights();

double ZeroFuelLb();     // as entered, else as the data service says
double GrossWeightLb();  // with the fuel on board

// Pounds in the unit that the WeightUnit setting asks for, and back.
double InWeightUnit(double pounds);
double PoundsFrom(double weight);
const char* WeightUnitText();  // "KG" or "LB"

}  // namespace avq1
