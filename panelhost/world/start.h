// panelhost/world/start.h - how a flight begins, and what surrounds the aircraft as it goes on.
//
// The world starts from a StartState; each step refreshes variation, ground and receivers between
// parts of at most 0.1 s of flight, so fast time flies an approach as well.
#pragma once

#include <cstdint>

#include "panelhost/world/radios.h"

namespace panelhost {

struct StartState {
    double latitude = 48.3538;  // overhead a large airport of the sample region
    double longitude = 11.7861;
    double altitudeFt = 5000;
    double headingTrue = 90;
    double indicatedAirspeedKt = 210;
    bool onGround = false;  // parked: altitude and speed are then those of the ground
    double windDirectionTrue = 270;
    double windSpeedKt = 0;
    bool autopilotOn = true;  // heading, altitude and airspeed held as they are at the start
};

void StartWorld(const StartState& start, std::uint32_t seed, Ground& ground, World& world);
void RefreshSurroundings(Ground& ground, World& world);
// Until the flight begins, placing the aircraft also places what its autopilot holds.
void AfterPlacing(World& world);
// Lets dtS seconds of panel time pass at the world's rate; none while it is paused.
void StepWorld(Ground& ground, World& world, double dtS);

}  // namespace panelhost
