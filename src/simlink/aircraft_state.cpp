#include "simlink/aircraft_state.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "base/module_state.h"
#include "base/text.h"
#include "platform/services.h"

namespace avq1 {

AircraftState aircraft;
DerivedState derived;
std::int32_t avionicsPower = 0;

namespace {

constexpr std::int32_t kAirspeedVariable = 61;
constexpr std::int32_t kAvionicsPowerVariable = 773;

constexpr double kSmoothingOld = 0.7;
constexpr double kSmoothingNew = 0.3;

constexpr double kKnotsPerFootPerSecond = 0.5924837511331251;
constexpr double kFeetPerMetre = 3.2808399;
constexpr double kFpmPerRawVerticalSpeed = 0.7689468503937007;
constexpr double kDegreesPerRawLatitude = 8.998425275459816e-06;
constexpr double kDegreesPerRawLongitude = 1.278976924368144e-12;
constexpr double kRawHalfTurn = 140737488355332;  // from here on the longitude is west

constexpr double kNotKnown = std::numeric_limits<double>::quiet_NaN();

struct LostValues {
    AircraftState badReadings{.latitude = 0, .longitude = 0};  // of each field, in a row
    std::int32_t count = 0;                                    // fields lost at the last refresh
    AircraftState shownAircraft;
    DerivedState shownDerived;
};

LostValues lost;

// The airspeed reader's own record: it carries the smoothed value from reading to reading.
ModuleVariable airspeedVariable{kAirspeedVariable};

using Conversion = double (*)(double raw);

double AsRead(double raw) {
    return raw;
}
double FeetPerSecondToKnots(double raw) {
    return raw * kKnotsPerFootPerSecond;
}
double MetresToFeet(double raw) {
    return raw * kFeetPerMetre;
}
double RawToFpm(double raw) {
    return raw * kFpmPerRawVerticalSpeed;
}
double RawToLatitude(double raw) {
    return raw * kDegreesPerRawLatitude;
}

double RawToLongitude(double raw) {
    const double east = raw * kDegreesPerRawLongitude;
    return raw > kRawHalfTurn ? east - 360.0 : east;
}

double SmoothAirspeed(double raw) {
    const double smoothed = kSmoothingOld * airspeedVariable.previousValue + kSmoothingNew * raw;
    airspeedVariable.value = smoothed;
    airspeedVariable.previousValue = smoothed;
    return smoothed;
}

// The largest magnitudes that are believed, in the field's unit: wide, so that nothing a simulator
// may mean is lost.
constexpr double kMostDegrees = 3600;
constexpr double kMostLatitude = 90.5;
constexpr double kMostLongitude = 360;
constexpr double kMostKnots = 9999;
constexpr double kMostFeet = 999999;
constexpr double kMostFpm = 99999;
constexpr double kMostOfClock = 60;
constexpr double kMostNeedle = 9999;
constexpr double kMostNm = 9999;
constexpr double kMostOfCounter = 2147483647;  // flags too

struct SnapshotRow {
    std::int32_t variable;
    double AircraftState::*field;
    double most;
    Conversion convert = AsRead;
};

constexpr SnapshotRow kSnapshot[] = {
    {1, &AircraftState::tick, kMostOfCounter},
    {81, &AircraftState::headingMag, kMostDegrees},
    {86, &AircraftState::trueHeading, kMostDegrees},
    {kAirspeedVariable, &AircraftState::indicatedAirspeedKt, kMostKnots, SmoothAirspeed},
    {551, &AircraftState::groundSpeedKt, kMostKnots, FeetPerSecondToKnots},
    {614, &AircraftState::radioAltitudeFt, kMostFeet, MetresToFeet},
    {5, &AircraftState::clockSecond, kMostOfClock},
    {106, &AircraftState::headingHoldOn, kMostOfCounter},
    {794, &AircraftState::flightDirectorBank, kMostDegrees},
    {793, &AircraftState::flightDirectorPitch, kMostDegrees},
    {80, &AircraftState::bank, kMostDegrees},
    {77, &AircraftState::pitch, kMostDegrees},
    {74, &AircraftState::altitudeFt, kMostFeet},
    {65, &AircraftState::verticalSpeedFpm, kMostFpm, RawToFpm},
    {107, &AircraftState::apHeadingBug, kMostDegrees},
    {116, &AircraftState::apAirspeedTargetKt, kMostKnots},
    {109, &AircraftState::apAltitudeTargetFt, kMostFeet},
    {71, &AircraftState::latitude, kMostLatitude, RawToLatitude},
    {72, &AircraftState::longitude, kMostLongitude, RawToLongitude},
    {20, &AircraftState::adfActive, kMostOfCounter},
    {39, &AircraftState::adfRelativeBearing, kMostDegrees},
    {336, &AircraftState::simRateRaw, kMostOfCounter},
    {82, &AircraftState::magneticVariation, kMostDegrees},
    {3, &AircraftState::clockHour, kMostOfClock},
    {4, &AircraftState::clockMinute, kMostOfClock},
    {5, &AircraftState::clockSecondShown, kMostOfClock},
    {6, &AircraftState::zuluHour, kMostOfClock},
    {7, &AircraftState::zuluMinute, kMostOfClock},
    {800, &AircraftState::value800, kMostNeedle},
    {105, &AircraftState::autopilotNav1Lock, kMostOfCounter},
    {114, &AircraftState::yawDamperOn, kMostOfCounter},
    {108, &AircraftState::apAltitudeLockOn, kMostOfCounter},
    {115, &AircraftState::apSpeed115, kMostKnots},
    {103, &AircraftState::autopilotOn, kMostOfCounter},
    {112, &AircraftState::approachHoldOn, kMostOfCounter},
    {45, &AircraftState::nav1Course, kMostDegrees},
    {40, &AircraftState::nav1CdiNeedle, kMostNeedle},
    {41, &AircraftState::nav1GlideslopeNeedle, kMostNeedle},
    {550, &AircraftState::nav1RelativeBearing, kMostDegrees},
    {59, &AircraftState::nav2RelativeBearing, kMostDegrees},
    {31, &AircraftState::nav1DmeNm, kMostNm},
    {32, &AircraftState::nav1DmeSpeedKt, kMostKnots},
    {35, &AircraftState::nav2DmeNm, kMostNm},
    {354, &AircraftState::markerBeacon, kMostOfCounter},
    {343, &AircraftState::windSpeedKt, kMostKnots},
    {344, &AircraftState::windDirection, kMostDegrees},
};

struct DerivedRow {
    double DerivedState::*field;
    std::span<double AircraftState::*const> from;
};

constexpr double AircraftState::*kWind[] = {
    &AircraftState::windSpeedKt, &AircraftState::windDirection, &AircraftState::trueHeading};
constexpr double AircraftState::*kMotion[] = {
    &AircraftState::groundSpeedKt, &AircraftState::windSpeedKt, &AircraftState::windDirection,
    &AircraftState::trueHeading};
constexpr double AircraftState::*kWindDirection[] = {&AircraftState::windDirection,
                                                     &AircraftState::magneticVariation};
constexpr double AircraftState::*kSimRate[] = {&AircraftState::simRateRaw};

constexpr DerivedRow kDerived[] = {
    {&DerivedState::headwindKt, kWind},
    {&DerivedState::crosswindKt, kWind},
    {&DerivedState::trueAirspeedEstimateKt, kMotion},
    {&DerivedState::driftDeg, kMotion},
    {&DerivedState::windDirectionMag, kWindDirection},
    {&DerivedState::simRate, kSimRate},
};

// A reading that is not a number, or beyond all belief, leaves the field as it was: one bad sample
// must not carry into the smoothing or the position guidance flies by.
void RefreshField(const SnapshotRow& row) {
    ModuleVariable onStack;
    ModuleVariable& variable = row.variable == kAirspeedVariable ? airspeedVariable : onStack;
    variable.number = row.variable;
    const double previous = variable.previousValue;
    LookupVariable(variable);
    variable.previousValue = previous;  // the smoothing's own, whatever the host writes
    const double converted =
        std::isfinite(variable.value) ? row.convert(variable.value) : kNotKnown;
    double& badReadings = lost.badReadings.*row.field;
    if (std::fabs(converted) <= row.most) {
        aircraft.*row.field = converted;
        badReadings = 0;
    } else {
        variable.value = previous;
        badReadings += 1;
        lost.count += IsLost(row.field) ? 1 : 0;
    }
}

void RefreshAvionicsPower() {
    ModuleVariable power;
    power.number = kAvionicsPowerVariable;
    LookupVariable(power);
    if (std::isfinite(power.value)) {
        avionicsPower = TruncateToInteger(power.value);
    }
}

const StateReset resetAircraftState([] {
    aircraft = {};
    derived = {};
    avionicsPower = 0;
    lost = LostValues{};
    airspeedVariable = ModuleVariable{kAirspeedVariable};
});

}  // namespace

void RefreshAircraftState() {
    lost.count = 0;
    aircraft.previousApAirspeedTargetKt = aircraft.apAirspeedTargetKt;
    aircraft.previousApAltitudeTargetFt = aircraft.apAltitudeTargetFt;
    for (const SnapshotRow& row : kSnapshot) {
        RefreshField(row);
    }
    RefreshAvionicsPower();
}

bool IsLost(double AircraftState::*field) {
    return lost.badReadings.*field > kReadingsUntilLost;
}

const AircraftState& ShownAircraft() {
    if (lost.count == 0) {
        return aircraft;
    }
    lost.shownAircraft = aircraft;
    for (const SnapshotRow& row : kSnapshot) {
        if (IsLost(row.field)) {
            lost.shownAircraft.*row.field = kNotKnown;
        }
    }
    return lost.shownAircraft;
}

const DerivedState& ShownDerived() {
    if (lost.count == 0) {
        return derived;
    }
    lost.shownDerived = derived;
    for (const DerivedRow& row : kDerived) {
        if (std::ranges::any_of(row.from, IsLost)) {
            lost.shownDerived.*row.field = kNotKnown;
        }
    }
    return lost.shownDerived;
}

}  // namespace avq1
