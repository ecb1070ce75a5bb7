// panelhost/world/traffic.h - other aircraft, and the traffic module that tells gauge modules of
// them (platform/traffic_interface.h).
//
// Scenes come from the simulator folder's traffic.txt, one section a scene:
//
//     [crossing] Crossing from the left
//     DEMO21 meets 60 90 0 200 0
//     DEMO34 flies 430 120 42.55,-72.06,33000 42.75,-73.80,33000
//
// "meets SECONDS TURN FASTER ABOVE CLIMB": so many seconds after the scene starts it is where the
// own aircraft will be if that flies straight on: so many feet above it, its track turned so many
// degrees right of the own one, its ground speed so many knots greater, climbing so many feet a
// minute. "flies KNOTS AHEAD LAT,LON,FEET...": along the points and again from the first, at the
// scene's start so many seconds along. ";" opens a comment.
//
// Same flight, same scene, same traffic. Its module publishes once a second of flight time; the
// most threatening aircraft, then the nearest, has the highest entry.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "panelhost/world/world.h"
#include "platform/traffic_interface.h"

namespace panelhost {

struct RoutePoint {
    GeoPoint position;
    double altitudeFt = 0;
};

// A row of a scene; an empty route stands for an encounter.
struct TrafficPlan {
    double secondsAhead = 0;
    double turnDeg = 0;
    double speedKt = 0;  // of an encounter: more than the own aircraft's
    double aboveFt = 0;
    double climbFpm = 0;
    std::vector<RoutePoint> route;
};

struct TrafficScene {
    std::string name;   // one word
    std::string title;  // for menus
    std::vector<TrafficPlan> plans;
};

struct OtherAircraft {
    GeoPoint position;
    double altitudeFt = 0;
    double trackTrue = 0;
    double groundSpeedKt = 0;
    double climbFpm = 0;
    std::vector<RoutePoint> route;
    std::size_t nextPoint = 0;
};

struct Traffic {
    std::vector<TrafficScene> scenes;
    const TrafficScene* starting = nullptr;  // with the next step
    std::vector<OtherAircraft> aircraft;
    double secondsToUpdate = 0;
    avq1::TrafficBlock block;
    std::array<avq1::TrafficRecord, avq1::kMostTrafficRecords> records{};
};

inline constexpr std::size_t kMostScenes = 64;
inline constexpr std::size_t kMostRoutePoints = 200;

// A line that cannot be read is left out and named in `warnings`.
std::vector<TrafficScene> ParseTrafficScenes(std::string_view text,
                                             std::vector<std::string>& warnings);

// Starts a scene with the next step; null ends the present one.
void StartTraffic(Traffic& traffic, const TrafficScene* scene);

// Flies the others by dtS seconds of flight time, after the own aircraft, and publishes.
void StepTraffic(const World& world, Traffic& traffic, double dtS);

}  // namespace panelhost
