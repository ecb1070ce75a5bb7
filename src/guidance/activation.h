// guidance/activation.h - making a plan the one that is flown.
#pragma once

#include <string_view>

namespace avq1 {

// Reads a stored plan into the active plan and starts it: entry 1 becomes the active waypoint,
// destination, fuel and message list are set, radios and altimeter when the settings say so. A
// file without entries leaves no active waypoint; the message is appended all the same, unless a
// plan of the simulator's could not be converted: then that is said instead.
void LoadPlanToActive(std::string_view fileName);

// What every load or activation of a plan resets: first-leg and destination-near flags, the
// destination airport state, the pattern runway, leg tracking.
void ResetForNewPlan();

}  // namespace avq1
