// settings/airspeed.h - the aircraft's own rules of thumb between indicated, true and Mach speeds.
//
// Altitudes in feet, speeds in knots. Pure functions. An altitude above that of the model's zero
// temperature (some 145000 ft) gives a Mach number that is not finite.
#pragma once

#include <cmath>

namespace avq1 {

inline double IndicatedToTrue(double indicatedKt, double altitudeFt) {
    return indicatedKt + indicatedKt * 0.015 * altitudeFt * 0.001;
}

inline double TrueToIndicated(double trueKt, double altitudeFt) {
    return trueKt / (altitudeFt * 0.001 * 1.5 + 100) * 100;
}

// Knots, with a temperature that falls by 2 degrees Celsius every 1000 ft.
inline double SpeedOfSoundKt(double altitudeFt) {
    return 38.967854 * std::sqrt(273.15 + 15 - 0.0019812 * altitudeFt);
}

inline double IndicatedToMach(double indicatedKt, double altitudeFt) {
    return IndicatedToTrue(indicatedKt, altitudeFt) / SpeedOfSoundKt(altitudeFt);
}

inline double MachToIndicated(double mach, double altitudeFt) {
    return TrueToIndicated(mach * SpeedOfSoundKt(altitudeFt), altitudeFt);
}

}  // namespace avq1
