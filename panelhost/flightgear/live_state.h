// panelhost/flightgear/live_state.h - from the values of packets to the world's records.
//
// Packets come at the simulator's frame rate, the panel draws at its own: a frame shows the flight
// as it was one packet before, between the two packets around that moment, so that motion is even.
// A value the aircraft does not have is not a number.
#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "panelhost/flightgear/autopilot_mapping.h"
#include "panelhost/flightgear/controls.h"
#include "panelhost/flightgear/state_table.h"
#include "panelhost/world/world.h"

namespace panelhost {

using ToldValues = std::array<double, kToldCount>;
using ToldIdents = std::array<std::string, kToldIdents.size()>;

struct HeardState {
    double arrivalS = 0;
    ToldValues values = {};
};

inline constexpr std::size_t kKeptStates = 8;
inline constexpr double kLongestDelayS = 0.035;  // under one frame of the panel

// The last packets, oldest first.
struct StateHistory {
    std::array<HeardState, kKeptStates> states = {};
    std::size_t count = 0;
    double gapS = 1.0 / 60;  // between packets, smoothed
};

void Remember(StateHistory& history, const HeardState& state);
// The values to show at `nowS`; none of an empty history.
ToldValues ValuesAt(const StateHistory& history, double nowS);

// Fills aircraft, receivers, air and clock; World::unknown gets what is absent. `newest`: the
// flight as last told, for what is counted on: time.
void TakeState(const ToldValues& values, const ToldIdents& idents, const Controls& controls,
               World& world);
// Flight time goes on with the simulator's; after a start of the simulator from there.
void TakeClock(const ToldValues& newest, double& lastElapsedS, World& world);

}  // namespace panelhost
