// guidance/vnav.h - the vertical profile and its steps in the per-frame update.
//
// Altitudes are feet, speeds kt indicated, positions decimal degrees, flags 0 or 1.
#pragma once

#include <cstdint>

namespace avq1 {

// The plan entry that is the vertical target is planBook.verticalTargetIndex: it moves with its
// entry when the plan is edited.
struct VnavProfile {
    std::int32_t cruiseAltitude = 0;  // feet; 0 = none
    std::int32_t topOfClimbReached = 0;
    std::int32_t descentActive = 0;
    double tocLatitude = 0;
    double tocLongitude = 0;
    double todLatitude = 0;
    double todLongitude = 0;
    double targetValue = 0;                // reset by the VNAV selector
    std::int32_t lastAltitudeSent = -999;  // -999 = none
    std::int32_t lastSpeedSent = -999;
    std::int32_t restart = 0;  // the VNAV selector asked for the commands to be sent anew
};

extern VnavProfile vnav;

// ---- steps of the per-frame update ----
// Simulation rate back to normal and pause, once the descent has begun.
void ApplyTopOfDescentActions();
// The next altitude-constrained entry becomes the target as a waypoint is about to be passed.
void TargetOnPassing();
// Climb, cruise and descent: phases, distances, altitude, vertical speed and airspeed.
void RunVerticalGuidance();
// Declares the climb over when the aircraft is far beyond the predicted climb.
void ApplyClimbFallback();
// Forgets what the VNAV selector asked for in this frame.
void EndVerticalFrame();

}  // namespace avq1
