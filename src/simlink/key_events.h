// simlink/key_events.h - the key events this system sends to the simulator.
//
// Fire-and-forget: a number and one 32-bit parameter; without a host nothing happens. Nothing here
// remembers what was sent: senders that repeat themselves compare first.
#pragma once

#include <cstdint>

namespace avq1 {

enum class KeyEvent : std::int32_t {
    PauseToggle = 65561,
    AltimeterSet = 65584,  // to the current sea-level pressure
    CourseDown = 65662,
    CourseUp = 65663,
    NavFrequencySet = 65708,  // frequency digits in binary-coded decimal
    AdfFrequencySet = 65714,  // frequency digits in binary-coded decimal
    CourseSet = 65716,        // whole degrees magnetic
    SimRateNormal = 65790,
    AirspeedHoldOff = 65859,
    HeadingBugUp = 65879,
    HeadingBugDown = 65880,
    VerticalSpeedSet = 66036,  // whole feet per minute
    AirspeedSet = 66037,       // whole knots
    HeadingBugSet = 66042,     // whole degrees magnetic, 1 to 360
    AltitudeSet = 66124,       // whole feet
};

// A floating-point value is truncated toward zero and clamped to 32 bits; one that is not finite is
// not sent.
void SendKeyEvent(KeyEvent event, std::int32_t parameter);
void SendKeyEvent(KeyEvent event, double value);

// The whole degrees of `headingMag` as they are sent to the autopilot, 1 to 360: a heading that
// truncates to 0 is sent as 360, one outside the circle is folded into it.
std::int32_t WholeHeading(double headingMag);

// Rewrites the decimal digits of a non-negative integer as hexadecimal digits: 11390 -> 0x11390.
// Negative values give 0; digits beyond the eighth are dropped.
std::int32_t ToBcd(std::int32_t value);

}  // namespace avq1
