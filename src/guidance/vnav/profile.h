// guidance/vnav/profile.h - what vertical guidance keeps: the profile as planned, how it is being
// followed, and what has been commanded.
//
// Altitudes are feet, distances nm, positions decimal degrees, courses true, speeds kt indicated,
// vertical speeds feet a minute, flags 0 or 1. Written by guidance/vnav/; pages and displays read
// it. Until a profile is planned the cruise altitude is 0 and nothing is followed or commanded.
#pragma once

#include <bitset>
#include <cstdint>

#include "flightplan/flight_plan.h"

namespace avq1 {

inline constexpr std::int32_t kNothingSent = -999;

// Of one plan, in its own indexes. Points on the route are also kept as nm from its first entry.
struct PlannedProfile {
    std::int32_t cruiseAltitude = 0;  // 0 = none
    double tocLatitude = 0;
    double tocLongitude = 0;
    std::int32_t tocIndex = 0;  // the entry before it
    double tocNm = 0;
    double todLatitude = 0;
    double todLongitude = 0;
    double todNm = 0;
    std::int32_t todOverdue = 0;         // it lay behind the aircraft when it was placed
    std::int32_t descentStartIndex = 0;  // active index when the descent was planned or began
    double todDistanceToDestination = 0;
    double todBearingToDestination = 0;
    double descentCruiseAltitude = 0;  // in force when the descent was planned
    std::int32_t predictedClimbDistance = 0;
    double climbFromLatitude = 0;  // where the predicted climb is counted from
    double climbFromLongitude = 0;
    double plannedCruiseAltitude = 0;
    std::bitset<kPlanCapacity> targets;  // the entries whose altitudes are vertical targets
};

enum class VerticalPhase : std::int32_t { Climb, Cruise, Descent };

// The plan entry that is the vertical target, targetIndex, is planBook.verticalTargetIndex: it
// moves with its entry when the plan is edited.
struct FollowedProfile {
    std::int32_t topOfClimbReached = 0;
    std::int32_t descentActive = 0;
    double targetAltitude = 0;
    double targetLatitude = 0;  // where it is to be reached
    double targetLongitude = 0;
    std::int32_t targetIsEntry = 0;  // it is an entry's, not the top of climb or descent
    double distanceToTarget = 0;     // along the route
    double descentPathLength = 0;    // from the top of descent to the target
    double distanceSinceTod = 0;
    double pathAltitude = 0;                  // of the descent path at the aircraft
    double requiredFpm = 0;                   // up in the climb, down in the descent
    std::int32_t crossingIndex = 0;           // a restriction passed and not yet overhead; 0 = none
    double crossingDistance = 0;              // from the aircraft, in the frame before
    std::int32_t climbRestrictionPassed = 0;  // in this frame
};

// One value of the autopilot as VNAV sets it.
struct SentTarget {
    std::int32_t set = 0;                   // sent for this phase and target
    std::int32_t tick = kNothingSent;       // of the frame that sent it, until it is read back
    std::int32_t reference = kNothingSent;  // what the autopilot showed in the frame after
    std::int32_t last = kNothingSent;       // what was sent
};

struct VerticalCommands {
    std::int32_t vsCommand = kNothingSent;
    std::int32_t lastVsSent = kNothingSent;
    std::int32_t vsHundreds = kNothingSent;  // whole hundreds being kept, without a sign
    std::int32_t lowSpeedHold = 0;           // held at 0 because the airspeed is low
    SentTarget altitude;
    SentTarget speed;
    std::int32_t climbRestrictionActive = 0;
    std::int32_t descentRestrictionDone = 0;
    std::int32_t restrictionDistanceLatch = 0;
    std::int32_t simRateResetDone = 0;
    std::int32_t pauseArmed = 0;
    std::int32_t pauseDone = 0;
    std::int32_t forceSpeed = 0;  // the VNAV selector asked for the speed to be commanded now
};

struct VnavProfile : PlannedProfile, FollowedProfile, VerticalCommands {
    VerticalPhase Phase() const {
        return descentActive != 0       ? VerticalPhase::Descent
               : topOfClimbReached != 0 ? VerticalPhase::Cruise
                                        : VerticalPhase::Climb;
    }
};

extern VnavProfile vnav;

}  // namespace avq1
