// panelhost/world/autopilot.h - what the autopilot is set to, as the world keeps it and a session
// shows it.
//
// Key events set it, the flight model follows it and records what it captured. Magnetic degrees,
// feet, feet per minute, knots.
#pragma once

namespace panelhost {

struct Autopilot {
    bool master = false;
    bool headingHold = false;
    bool navHold = false;
    bool approachHold = false;
    bool glideslopeCaptured = false;
    bool altitudeHold = false;
    bool verticalSpeedHold = false;
    bool airspeedHold = false;
    bool yawDamper = false;
    bool flightDirector = false;
    int headingBugMag = 360;
    int altitudeTargetFt = 0;
    int verticalSpeedTargetFpm = 0;
    int airspeedTargetKt = 0;
};

}  // namespace panelhost
