// guidance/guidance_events.h - what guidance tells those above it, the flight log and the units,
// whom it does not know.
//
// host/ connects the listeners when the module is installed. A listener is called at once, on the
// panel thread, in the middle of the update or of a key's work: it may read everything, and must
// not change a plan or what is flown. Altitudes are feet.
#pragma once

#include <cstdint>

#include "flightplan/flight_plan.h"

namespace avq1 {

enum class GuidanceEvent : std::int32_t {
    PlanStarted,     // activation: another plan, or an executed change of it, is flown from now on
    WaypointPassed,  // sequencing: guidance.passed... describe the passage
    TopOfClimb,      // vertical guidance: the climb is over, the cruise begins
    TopOfDescent,    // vertical guidance: the descent begins
    BackToCruise,    // vertical guidance: a restriction of the descent was met and is kept
};

struct GuidanceReport {
    GuidanceEvent event = GuidanceEvent::PlanStarted;
    // In the active plan: the entry flown to of a plan started (kNoWaypoint: none), the entry
    // passed, the entry the climb or the descent aims at.
    std::int32_t entryIndex = kNoWaypoint;
    double altitudeFt = 0;  // of the aircraft
    bool onGround = false;
};

using GuidanceListener = void (*)(const GuidanceReport& report);

// Once connected a listener stays; connecting it to the same event again does nothing.
void ConnectGuidanceListener(GuidanceEvent event, GuidanceListener listener);

// Calls every listener of the event, in the order they were connected.
void TellGuidanceEvent(GuidanceEvent event, std::int32_t entryIndex);

}  // namespace avq1
