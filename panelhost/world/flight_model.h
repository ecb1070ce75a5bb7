// panelhost/world/flight_model.h - a twin-jet transport flown by its autopilot over the spherical
// earth.
//
// Point mass with bank, pitch and speed that follow their commands at limited rates: bank to 25
// degrees at 6 degrees/s and never steeper than a standard-rate turn, vertical speed by 150
// feet/minute each second, airspeed by 1.5 kt/s. Constant wind plus optional turbulence. Wings
// level and without a heading held, the aircraft follows a great circle. The standard atmosphere
// applies; the altimeter shows true altitude. Same world and same steps give the same flight.
#pragma once

#include "panelhost/world/world.h"

namespace panelhost {

inline constexpr double kMaxBankDeg = 25;
inline constexpr double kMaxStepS = 0.05;  // longer steps are cut into equal parts

// Advances the flight by dtS seconds of flight time. Reads receivers and ground elevation.
void StepFlight(World& world, double dtS);

// The selected altitude is always armed: a vertical speed flown towards it ends in altitude hold.
void CaptureAltitude(const Aircraft& aircraft, Autopilot& autopilot);
// In approach mode, on the path and near the course, the glideslope takes the place of the vertical
// modes.
void CaptureGlideslope(const World& world, Autopilot& autopilot);

double TrueAirspeedKt(double indicatedKt, double altitudeFt);
double IndicatedAirspeedKt(double trueKt, double altitudeFt);
double StandardTemperatureC(double altitudeFt);

void FillTanks(Aircraft& aircraft, double pounds);

}  // namespace panelhost
