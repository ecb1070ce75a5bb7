// simlink/aircraft_state.h - the snapshot of the simulated aircraft every reader shares.
//
// Refreshed by the per-frame update once per simulator tick from the simulator's numbered
// variables, converted to the units below; the update also levels a bank that is almost level, and
// nothing else writes it. A reading that is no finite number, or larger than any simulator means,
// is skipped: the field keeps its last good value, so guidance never meets one, and after more than
// kReadingsUntilLost of them in a row the field is lost until the first good one. Guidance reads
// `aircraft`, displays read ShownAircraft(). Units: degrees, feet, knots, feet per minute;
// directions are magnetic where the name says Mag, else as commented; flags are 0 and 1.
#pragma once

#include <cstdint>

namespace avq1 {

struct AircraftState {
    double tick = 0;  // 18 a second
    double headingMag = 0;
    double trueHeading = 0;
    double indicatedAirspeedKt = 0;  // smoothed: 0.7 old + 0.3 new a reading
    double groundSpeedKt = 0;
    double radioAltitudeFt = 0;  // above ground
    double clockSecond = 0;
    double headingHoldOn = 0;        // rounded to a whole number where used
    double flightDirectorBank = 0;   // positive left
    double flightDirectorPitch = 0;  // positive nose down
    double bank = 0;                 // positive left; within +-0.035 stored as 0
    double pitch = 0;                // positive nose down
    double altitudeFt = 0;           // indicated
    double verticalSpeedFpm = 0;
    double apHeadingBug = 0;  // magnetic
    double apAirspeedTargetKt = 0;
    double apAltitudeTargetFt = 0;
    double previousApAirspeedTargetKt = 0;  // in the snapshot before
    double previousApAltitudeTargetFt = 0;
    double latitude = 33.6229;     // north positive
    double longitude = -111.9104;  // east positive
    double adfActive = 0;          // 1 or more: the ADF pointer is shown
    double adfRelativeBearing = 0;
    double simRateRaw = 0;         // the simulator's own unit, see DerivedState
    double magneticVariation = 0;  // true = magnetic + variation
    double clockHour = 0;
    double clockMinute = 0;
    double clockSecondShown = 0;
    double zuluHour = 0;
    double zuluMinute = 0;
    double value800 = 0;  // its meaning is the simulator's
    double autopilotNav1Lock = 0;
    double yawDamperOn = 0;
    double apAltitudeLockOn = 0;
    double apSpeed115 = 0;  // knots selected, or 1 while airspeed is held: hosts differ
    double autopilotOn = 0;
    double approachHoldOn = 0;
    double nav1Course = 0;            // magnetic
    double nav1CdiNeedle = 0;         // full scale +-127, positive with the course to the right
    double nav1GlideslopeNeedle = 0;  // full scale +-120, positive with the path below
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
    double headwindKt = 0;              // a tail wind is negative
    double crosswindKt = 0;             // from the right positive
    double trueAirspeedEstimateKt = 0;  // 0 up to 25 kt of ground speed
    double driftDeg = 0;                // track = heading - drift
    double windDirectionMag = 0;
    double simRate = 1;  // multiplier, 1 = real time
};

extern AircraftState aircraft;
extern DerivedState derived;
extern std::int32_t avionicsPower;  // 0 blanks every display and unit

inline constexpr std::int32_t kReadingsUntilLost = 18;

// The aircraft stands or taxies slowly: a plan that is started now starts a flight.
inline constexpr double kOnGroundBelowKt = 5;
inline bool OnGround() {
    return aircraft.groundSpeedKt < kOnGroundBelowKt;
}

// Fills `aircraft` and `avionicsPower`; a table of rows names each variable and its conversion.
void RefreshAircraftState();

bool IsLost(double AircraftState::*field);

// The snapshot and what comes of it as they may be shown: NaN in place of a value that is lost or
// was derived from one. Valid until the next call.
const AircraftState& ShownAircraft();
const DerivedState& ShownDerived();

}  // namespace avq1
