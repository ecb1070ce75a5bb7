// panelhost/world/world.h - the state of the simulated world: aircraft, autopilot, radios, air and
// time.
//
// Plain records. The flight model (flight_model.h) and the receivers (radios.h) advance them, key
// events (key_events.h) and the session's commands set them, numbered variables (variables.h) read
// them. Angles in degrees; bank positive to the right and pitch positive upwards here (the numbered
// variables carry the simulator's opposite signs).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "panelhost/world/autopilot.h"
#include "panelhost/world/earth.h"

namespace panelhost {

inline constexpr int kTankCount = 7;
inline constexpr double kFuelPoundsPerGallon = 6.7;

// Of the built-in aircraft: centre, left main, left aux, left tip, right main, right aux, right
// tip, gallons.
inline constexpr std::array<double, kTankCount> kTankCapacityGallons = {4299, 1288, 0, 0,
                                                                        1288, 0,    0};

inline constexpr std::size_t kMostPayloadStations = 61;
inline constexpr int kMostEngines = 4;

struct Aircraft {
    GeoPoint position;
    double altitudeFt = 0;  // above sea level, and what the altimeter shows
    double headingTrue = 0;
    double bankRightDeg = 0;
    double pitchUpDeg = 0;
    double indicatedAirspeedKt = 0;
    double verticalSpeedFpm = 0;
    bool onGround = false;
    bool parkingBrake = false;
    std::array<double, kTankCount> fuelGallons{};
    std::array<double, kTankCount> tankCapacityGallons = kTankCapacityGallons;
    double fuelPoundsPerGallon = kFuelPoundsPerGallon;
    int engineCount = 2;  // 0 to kMostEngines; they share the fuel flow
    double emptyWeightLb = 91300;
    // At most kMostPayloadStations.
    std::vector<double> payloadLb = {380, 4500, 6200, 6200, 4500, 1800, 2600, 900};

    double heldAirspeedKt = 0;  // what the throttles are set for while no airspeed is held
    // Recomputed by each step.
    double trueAirspeedKt = 0;
    double groundSpeedKt = 0;
    double trackTrue = 0;
    double fuelFlowPph = 0;
    double commandedBankRightDeg = 0;
    double commandedPitchUpDeg = 0;
};

struct Receiver {
    int frequency = 0;    // NAV: hundredths of a MHz; ADF: kHz
    int courseMag = 360;  // selected course (OBS)
    std::string ident;    // empty without a signal
    int signal = 0;       // 0 none to 256
    bool isLocalizer = false;
    bool hasGlideslope = false;
    bool hasDme = false;
    double bearingTrue = 0;    // from the aircraft to the station
    double deviationDeg = 0;   // needle right of centre is positive: the course lies to the right
    double glideslopeDeg = 0;  // above the path is positive
    double glidePathDeg = 0;   // angle of the path itself
    double courseTrue = 0;     // of the localizer, or the selected course
    int toFrom = 0;            // 1 to, 2 from
    double dmeNm = 0;
    double dmeSpeedKt = 0;
};

struct Air {
    double windDirectionTrue = 0;  // where it comes from
    double windSpeedKt = 0;
    double turbulenceKt = 0;
    double gustEastKt = 0;
    double gustNorthKt = 0;
    std::uint64_t randomState = 1;
};

struct Clock {
    double flightTimeS = 0;  // since the start; stands while paused
    double panelTimeS = 0;
    std::int64_t tick = 0;  // 18 per second of panel time
    double startSecondUtc = 12.0 * 3600;
    int startDayOfYear = 172;
    int year = 2008;
    std::optional<double> localOffsetS;  // local less UTC; empty: whole hours by longitude
};

// Where the tower view looks from, as the data service has it: 2^32 a metre from the equator, 2^64
// a circle of longitude, the altitude in the upper 32 bits.
inline constexpr double kTowerStepsPerLatitude = 10001750.0 / 90 * 4294967296.0;
inline constexpr double kTowerStepsPerLongitude = 18446744073709551616.0 / 360;
struct TowerView {
    std::int64_t latitude = 0;
    std::int64_t longitude = 0;
    std::int64_t altitude = 0;
};

// What the simulator that flies the aircraft does not tell: it reads as not a number.
struct Unknown {
    bool linkLost = false;            // nothing is told any more
    std::vector<int> variables = {};  // numbers the aircraft does not have, in order
};

struct World {
    Aircraft aircraft;
    Autopilot autopilot;
    Receiver nav1;
    Receiver nav2;
    Receiver adf;
    int markerBeacon = 0;  // 1 outer, 2 middle, 3 inner
    Air air;
    Clock clock;
    TowerView tower;
    Unknown unknown;
    double magneticVariation = 0;             // at the aircraft, east positive
    std::optional<double> fixedVariationDeg;  // everywhere; empty: the built-in world model
    double groundElevationFt = 0;
    double simulationRate = 1;
    bool paused = false;
    bool avionicsPower = true;
    int altimeterSettings = 0;  // how often the altimeter was told to take the present pressure
    bool laterSimulator =
        false;  // the folder is one of the later generation: rate counts in 256ths
};

double FuelPounds(const Aircraft& aircraft);
double PayloadPounds(const Aircraft& aircraft);
double HeadingMag(const World& world);

}  // namespace panelhost
