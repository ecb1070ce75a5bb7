// settings/aircraft_performance.h - the aircraft's own file: speeds, rates, limits and reference
// values, and the settings it overrides.
//
// The file is \avq\Aircraft\<AircraftName>.cfg, read once, after the settings file. AircraftName
// is fixed by the first gauge with a usable parameter, for as long as the module stays loaded. A
// missing file leaves every value at its default. Speeds are knots indicated, rates feet per
// minute, altitudes feet.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "settings/airspeed.h"

namespace avq1 {

// Where the airspeeds without an altitude of their own are turned into Mach and true airspeed.
inline constexpr double kClimbSpeedAltitudeFt = 13000;
inline constexpr double kCruiseSpeedAltitudeFt = 15000;
inline constexpr double kSpeedLimitAltitudeFt = 15000;

struct AircraftPerformance {
    std::int32_t climbIas = 0;
    std::int32_t cruiseIas = 250;
    std::int32_t descentIas = 220;
    std::int32_t holdIas = 0;
    std::int32_t climbRate = 1800;
    double descentRate = 1800.0;
    double flightPathAngleDeg = 0;
    double holdLegMinutes = 1.0;

    double climbIasMin = 180.0;
    double climbIasMax = 250.0;
    double cruiseIasMin = 230.0;
    double cruiseIasMax = 280.0;
    double descentIasMin = 180.0;
    double descentIasMax = 250.0;
    std::int32_t costIndex = -1;  // 0 to 200 picks the speeds between their limits; -1: as written
    std::int32_t maxCruiseAltitude = 35000;
    double minVnavIas = 155.0;         // VNAV stops climbing below it
    double climbSpeedRestriction = 0;  // applies below climbRestrictionAltitude; 0 = none
    double climbRestrictionAltitude = 0;
    double descentSpeedRestriction = 0;
    double descentRestrictionAltitude = 0;
    std::int32_t vnavSpeedDistanceNm = 25;  // VNAV commands the airspeed within this distance to go
    std::int32_t showFloatingTodBod = 0;    // markers beyond the map stand at its edge

    // What the reference pages show.
    std::string modelId;
    std::int32_t engineThrust = 0;  // thousands of pounds
    std::int32_t v1 = 0;
    std::int32_t vr = 0;
    std::int32_t v2 = 0;
    std::int32_t takeoffFlaps = 0;
    std::string takeoffFlapsRange = ",1,5,10,15,25,";  // between commas, for whole-word searches
    std::int32_t landingFlaps = 0;
    std::string approachFlapsMin;
    std::string approachFlapsMid;
    std::string approachFlapsMax;
    std::int32_t vrefMin = 150;  // at approachFlapsMin
    std::int32_t vrefMid = 145;
    std::int32_t vrefMax = 135;
    std::int32_t vref = 0;        // selected
    std::string performanceData;  // file of the performance tables, in \avq\aircraft\; or empty

    // Derived at the end of the load.
    double climbMachMin = IndicatedToMach(climbIasMin, kSpeedLimitAltitudeFt);
    double climbMachMax = IndicatedToMach(climbIasMax, kSpeedLimitAltitudeFt);
    double cruiseMachMin = IndicatedToMach(cruiseIasMin, kSpeedLimitAltitudeFt);
    double cruiseMachMax = IndicatedToMach(cruiseIasMax, kSpeedLimitAltitudeFt);
    double descentMachMin = IndicatedToMach(descentIasMin, kSpeedLimitAltitudeFt);
    double descentMachMax = IndicatedToMach(descentIasMax, kSpeedLimitAltitudeFt);
    double climbMach = IndicatedToMach(climbIas, kClimbSpeedAltitudeFt);
    double cruiseMach = IndicatedToMach(cruiseIas, kCruiseSpeedAltitudeFt);
    double descentMach = IndicatedToMach(descentIas, kCruiseSpeedAltitudeFt);
    double climbTas = IndicatedToTrue(climbIas, kClimbSpeedAltitudeFt);
    double descentTas = IndicatedToTrue(descentIas, kClimbSpeedAltitudeFt);
};

extern AircraftPerformance performance;
extern std::string AircraftName;  // without folder and extension; empty until a gauge supplies it

// Reads the aircraft's file into `performance` and `settings`, then the performance tables it
// names.
void LoadAircraftFile();

// Applies one aircraft file's text: the keys only, nothing derived. Keys of the settings file that
// an aircraft may set again go to `settings`.
void ApplyAircraftText(std::string_view text, AircraftPerformance& target);

// What the values give once all keys are in: Mach limits, speeds by cost index, Mach and true
// airspeeds. A cost index of 0 or more replaces the three airspeeds.
void DeriveMachLimits(AircraftPerformance& target);
void DeriveSpeeds(AircraftPerformance& target);

// The speed that a cost index of 0 to 200 picks between its limits, cut to whole knots.
std::int32_t EconomySpeed(double leastIas, double greatestIas, std::int32_t costIndex);

}  // namespace avq1
