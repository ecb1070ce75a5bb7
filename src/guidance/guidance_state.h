// guidance/guidance_state.h - what guidance knows: the leg being flown, cross-track, steering and
// the autopilot's heading bug, distances and times to go.
//
// Written by the per-frame update and the engage/activate functions; pages and displays read it.
// Distances nm, courses magnetic unless named True, times simulator minutes.
#pragma once

#include <cstdint>
#include <string>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"

namespace avq1 {

inline constexpr double kNoCrossTrack = -99.0;
inline constexpr std::int32_t kNoHeadingSent = 999;
inline constexpr std::int32_t kRestartBlink = 999;

struct GuidanceState {
    double lastTick = -999;
    std::int32_t lnavEngaged = 0;
    std::int32_t vnavEngaged = 0;
    double activeLatitude = 0;  // copy of the active waypoint's position
    double activeLongitude = 0;
    double legLengthNm = 0;
    double desiredTrackMag = 0;
    double distanceToGoNm = 0;
    double bearingToWaypointMag = 0;
    double previousDistanceToGoNm = 0;
    double previousDesiredTrackMag = 0;
    double crossTrackNm = kNoCrossTrack;
    Side crossTrackSide = Side::None;       // of the leg, where the aircraft is
    Side waypointSideOfTrack = Side::None;  // of the leg's course, where the waypoint is
    double waypointTrackAngle = 0;          // raw positive difference of true courses
    Side trackSideOfHeading = Side::None;   // of the leg's course, where the heading points
    double trackHeadingAngle = 0;
    double waypointChangeDistanceNm = 3.0;
    std::int32_t firstLegPrepared = 0;
    std::int32_t trackLeg = 0;  // 1 steer along the leg, 0 straight at the waypoint
    // 1 = the leg is to be joined, however far off it still is: it is tracked once it is near.
    std::int32_t joinLeg = 0;
    double lookAheadLatitude = 0;
    double lookAheadLongitude = 0;
    double bearingToLookAheadTrue = 0;
    double headingCommandMag = 0;
    std::int32_t lastHeadingSent = kNoHeadingSent;
    std::string directToTurn = "DEFAULT";  // "DEFAULT", "LEFT" or "RIGHT"
    Side pendingTurnSide = Side::None;     // a forced direct-to turn: ends on this side
    std::string passedIdent;
    std::string passedTimeZulu;
    double passedAltitude = 0;
    double passedFuel = 0;  // pounds; 2.20462262 times as much where the setting says kilograms
    std::int32_t destinationNearDone = 0;
    std::int32_t blinkCounter = kRestartBlink;  // 0 to 91
    std::int32_t framesSinceStart = 0;
    double elapsedSeconds = 0;
    double previousAutopilotOn = 0;
    double previousClockSecond = 0;
};

// Distances and times to go, refreshed every frame.
struct RouteProgress {
    double routeDistanceToDestination = 0;  // nm along the route
    double destinationDistanceDirect = 0;
    double destinationBearingMag = 0;
    double eteWaypointMinutes = 0;  // hours taken out once split, as shown
    double eteWaypointHours = 0;
    double eteWaypointTenths = 0;
    double eteDestinationMinutes = 0;
    double eteDestinationHours = 0;
    double eteWaypointRealMinutes = 0;
    double eteWaypointRealHours = 0;
    double eteDestinationRealMinutes = 0;
    double eteDestinationRealHours = 0;
};

// What pages queue for the next per-frame update.
struct GuidanceRequests {
    std::int32_t planLoadMode = 0;  // 1 or 3: load planLoadName into the active plan
    std::string planLoadName;
    std::int32_t radioTuneMode = 0;  // 1 from radioEntry, 2 from the plan
    std::string radioEntry;          // "course frequency"
    std::int32_t towerView = 0;      // the destination's tower view position is to be sent
};

extern GuidanceState guidance;
extern RouteProgress progress;
extern GuidanceRequests requests;

bool HasActiveWaypoint();

// The active plan's active entry; an empty record without one.
const PlanWaypoint& ActiveWaypoint();

}  // namespace avq1
