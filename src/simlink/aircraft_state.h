// simlink/aircraft_state.h - the snapshot of the simulated aircraft every reader shares.
//
// Refreshed by the per-frame update once per simulator tick from the simulator's numbered
// variables; nothing else writes it. Headings are magnetic where the name says Mag, else true.
// Values are used as the simulator gives them: readers never fail.
#pragma once

#include <cstdint>

namespace avq1 {

struct AircraftState {
    double tick = 0;
    double headingMag = 0;
    double trueHeading = 0;
    double indicatedAirspeedKt = 0;  // smoothed: 0.7 old + 0.3 new a reading
    double groundSpeedKt = 0;
    double radioAltitudeFt = 0;
    double clockSecond = 0;
    double headingHoldOn = 0;  // rounded to a whole number where used
    double flightDirectorBank = 0;
    double flightDirectorPitch = 0;
    double bank = 0;   // degrees; within +-0.035 stored as 0
    double pitch = 0;  // degrees
    double altitudeFt = 0;
    double verticalSpeedFpm = 0;
    double apHeadingBug = 0;
    double apAirspeedTargetKt = 0;
    double apAltitudeTargetFt = 0;
    double latitude = 33.6229;
    double longitude = -111.9104;
    double adfActive = 0;  // 1 or more: the ADF pointer is shown
    double adfRelativeBearing = 0;
    double simRateRaw = 0;
    double magneticVariation = 0;  // true = magnetic + variation
    double clockHour = 0;
    double clockMinute = 0;
    double clockSecondShown = 0;
    double zuluHour = 0;
    double zuluMinute = 0;
    double value800 = 0;
    double autopilotNav1Lock = 0;
    double yawDamperOn = 0;
    double apAltitudeLockOn = 0;
    double apSpeed115 = 0;
    double autopilotOn = 0;
    double approachHoldOn = 0;
    double nav1Course = 0;
    double nav1CdiNeedle = 0;
    double nav1GlideslopeNeedle = 0;
    double nav1RelativeBearing = 0;
    double nav2RelativeBearing = 0;
    double nav1DmeNm = 0;  // 0 = none
    double nav1DmeSpeedKt = 0;
    double nav2DmeNm = 0;
    double markerBeacon = 0;  // 1 outer, 2 middle, 3 inner
    double windSpeedKt = 0;
    double windDirection = 0;  // degrees true
};

// Values the per-frame update derives from the snapshot.
struct DerivedState {
    double headwindKt = 0;
    double crosswindKt = 0;
    double trueAirspeedEstimateKt = 0;
    double driftDeg = 0;
    double windDirectionMag = 0;
    double simRate = 1;  // multiplier, 1 = real time
};

extern AircraftState aircraft;
extern DerivedState derived;
extern std::int32_t avionicsPower;  // 0 blanks every display and unit

// Fills `aircraft` and `avionicsPower`; a table of rows names each variable and its conversion.
void RefreshAircraftState();

}  // namespace avq1
