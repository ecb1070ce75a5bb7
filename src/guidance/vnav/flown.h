// guidance/vnav/flown.h - what the parts of vertical guidance share about the plan being flown.
//
// Distances nm along the route, altitudes feet.
#pragma once

#include "guidance/vnav.h"
#include "guidance/vnav/planning.h"

namespace avq1 {

// The active plan and the aircraft as they are now.
PlanningInput FlownInput();

// There is a profile to follow.
bool HasProfile();

// How far along the route the aircraft is, by its distance to the active waypoint.
double AircraftAlongNm();

// The altitude at which a target is to be passed; some feet above the airport at the route's end.
double EntryTargetFt(std::int32_t index);

// Aims at the entry planBook.verticalTargetIndex, or in the climb and in cruise at what comes
// before it. `climbOffset` is that of ComputeTopOfClimb.
void AimAtTarget(std::int32_t climbOffset);

// From the active entry plus `offset` on, the first entry that is a target, else the last.
void ChooseTargetEntry(std::int32_t offset);

// The descent path begins so far ahead of the aircraft, at its altitude.
void BeginPath(double aheadNm);

// ---- phases ----
enum class VerticalEvent : std::int32_t {
    LevelReached,       // the cruise altitude
    ClimbOverdue,       // far beyond the predicted climb
    DescentDue,         // at the top of descent
    RestrictionPassed,  // an altitude that was to be met
    CruiseRaised,
    CruiseLowered,
    Count
};

// Goes to the phase the event leads to from the present one, with what belongs to it.
void TakeVerticalEvent(VerticalEvent event);

void ApplyClimbEnd();
void ApplyDescentBegin();
void WatchCrossing();

// ---- commands ----
// The pilot has turned a knob: its value is stable, is not what was read back, and nothing was sent
// in this frame. Whole feet or kt are compared.
bool TurnedByPilot(const SentTarget& sent, double now, double before);
bool PlanIsFlown();    // the plan's state allows speed commands
bool CommandsSpeed();  // VNAV is engaged and sets the airspeed
void SendAltitude(double feet);
void SendSpeed(double indicatedKt);
void CommandVerticalSpeed();
void CommandSpeed();
void ApplySpeedRestrictions();

// Says once for each entry what the pilot must help with.
void AdvisePilot();

}  // namespace avq1
