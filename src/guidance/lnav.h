// guidance/lnav.h - the lateral guidance: engaging, activating a waypoint, and the steps of the
// per-frame update in the order they run.
//
// The steps work on guidance/guidance_state.h and the active plan; each does nothing it need not.
// They send heading, altimeter and radio events only when a value changes or a leg begins.
// Distances nm, courses magnetic unless named True.
#pragma once

#include <cstdint>

#include "flightplan/flight_plan.h"

namespace avq1 {

// Makes entry `index` of the active plan the waypoint flown to: position copy, change distance, leg
// geometry and distance to go are fresh at once. An index outside 1..last leaves no active
// waypoint; there, and with a message at a discontinuity, LNAV is disengaged.
void SetActiveWaypoint(std::int32_t index);

// Engages LNAV when there is an active waypoint (tuning the radios when the setting says so);
// true when engaged.
bool EngageLnav();
// Disengages LNAV and ends what belongs to it: leg tracking and a hold being flown.
void DisengageLnav();
void ToggleLnav();

// How far before this waypoint the next leg is turned to; `plainNm` for one that is neither flown
// over nor of a procedure.
double ChangeDistanceNm(const PlanWaypoint& entry, double plainNm);

// What the settings want sent to the simulator as a plan is started or a leg begins: the radios
// tuned from the plan; the altimeter set to the sea-level pressure.
void TuneRadiosAsSet();
void SetAltimeterAsSet();

// The autopilot's heading hold is engaged: it flies the heading bug.
bool HeadingHoldEngaged();

// ---- steps of the per-frame update, in order, with an active waypoint ----
void StampArrivalTime();
void PrepareFirstLeg();
void ApplyPassedWaypointRule();
void SequenceWaypoint();
void RefreshLegGeometry();  // without a leg everything about it reads as none
void PublishGuidance();
void ApplyDestinationNear();
void LoadDestinationAirport();
void Steer();
void SendHeadingBug();

enum class CrossTrackMode : std::int32_t { Clamp5Nm = 0, Guidance = 7 };
void ComputeCrossTrack(CrossTrackMode mode);

}  // namespace avq1
