// panelhost/flightgear/state_table.h - what the simulator tells, one row a property: where it
// comes from, its unit and sign there, and which numbered variables it becomes.
//
// The protocol file, the reading of a packet and the table in docs/flightgear.md all come from
// these rows. Values stay in the simulator's own units until TakeState (live_state.h).
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>

namespace panelhost {

inline constexpr int kToldTanks = 7;
inline constexpr int kToldEngines = 4;

// In the order of the packet.
enum class Told : std::size_t {
    Latitude,
    Longitude,
    Altitude,
    Height,
    Heading,
    Track,
    Pitch,
    Roll,
    Airspeed,
    GroundSpeed,
    VerticalSpeed,
    Variation,
    WindDirection,
    WindSpeed,
    SeaLevelPressure,
    Elapsed,
    DaySeconds,
    Year,
    Month,
    Day,
    LocalOffset,
    OnGroundLeft,
    OnGroundRight,
    EngineFlow,
    TankShare = EngineFlow + kToldEngines,
    FuelDensity = TankShare + kToldTanks,
    GrossWeightYasim,
    GrossWeightJsbsim,
    Nav1InRange,
    Nav1Localizer,
    Nav1GlideslopeInRange,
    Nav1Bearing,
    Nav1Needle,
    Nav1Glideslope,
    Nav1To,
    Nav1From,
    Nav2InRange,
    Nav2Localizer,
    Nav2GlideslopeInRange,
    Nav2Bearing,
    Nav2Needle,
    Nav2Glideslope,
    Nav2To,
    Nav2From,
    Dme1InRange,
    Dme1Distance,
    Dme1Speed,
    Dme2InRange,
    Dme2Distance,
    Dme2Speed,
    AdfInRange,
    AdfBearing,
    MarkerOuter,
    MarkerMiddle,
    MarkerInner,
    DirectorBank,
    DirectorPitch,
    Count
};

inline constexpr std::size_t kToldCount = static_cast<std::size_t>(Told::Count);

constexpr std::size_t At(Told first, int number = 0) {
    return static_cast<std::size_t>(first) + static_cast<std::size_t>(number);
}

// How a value between two packets is found.
enum class Between { Newest, Line, Turn };  // Turn: the short way round 360 degrees

inline constexpr std::size_t kMostVariablesOfRow = 4;

struct StateRow {
    Told told = Told::Count;
    std::string property = {};
    const char* unit = "";
    const char* note = "";      // the simulator's sign, and what AVQ1 has in its place
    const char* decimals = "";  // of a value that is always there; else it is empty when absent
    Between between = Between::Newest;
    std::array<int, kMostVariablesOfRow> variables = {};  // 0: none
};

std::span<const StateRow> StateTable();

// Stands where an aircraft has nothing to ask for: the simulator makes what it is asked for.
inline constexpr const char* kUnusedProperty = "/avqpanel/unused";

// Texts told after the numbers: who is heard on NAV1, NAV2 and ADF.
inline constexpr std::array<const char*, 3> kToldIdents = {"/instrumentation/nav[0]/nav-id",
                                                           "/instrumentation/nav[1]/nav-id",
                                                           "/instrumentation/adf[0]/ident"};

// Other aircraft: so many of each kind, each with kTrafficProperties below its node.
inline constexpr int kToldAircraft = 20;
inline constexpr std::array<const char*, 2> kTrafficNodes = {"/ai/models/aircraft",
                                                             "/ai/models/multiplayer"};
inline constexpr std::array<const char*, 7> kTrafficProperties = {"valid",
                                                                  "position/latitude-deg",
                                                                  "position/longitude-deg",
                                                                  "position/altitude-ft",
                                                                  "orientation/true-heading-deg",
                                                                  "velocities/true-airspeed-kt",
                                                                  "velocities/vertical-speed-fps"};
inline constexpr std::size_t kTrafficFields =
    kTrafficNodes.size() * kToldAircraft * kTrafficProperties.size();

}  // namespace panelhost
