#include <algorithm>
#include <array>
#include <cmath>

#include "base/redraw.h"
#include "geometry/geometry.h"
#include "guidance/guidance_events.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav/flown.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr double kClimbEndsBelowFt = 200;  // below the cruise altitude
constexpr double kDescentBeginsNm = 1.5;
constexpr double kRoundInNm = 0.75;  // flown until the autopilot has taken up the descent
constexpr double kPastDescentDeg = 20;
constexpr double kClimbOverdueFactor = 1.5;
constexpr double kCrossingNm = 5;  // farther away a restriction is no longer being crossed
constexpr double kNormalSimRate = 1.0;

// The cruise altitude is sent anew, and the way down to it begins.
void StepDown() {
    vnav.altitude.set = 0;
    vnav.lastVsSent = kNothingSent;
}

void BeginCruise() {
    vnav.simRateResetDone = 0;
    vnav.pauseDone = 0;
    if (CommandsSpeed()) {
        SendSpeed(performance.cruiseIas);
    }
    vnav.climbRestrictionActive = 0;
    vnav.descentRestrictionDone = 0;
    vnav.descentCruiseAltitude = vnav.cruiseAltitude;
    AimAtTarget(0);
    if (vnav.altitude.last != kNothingSent && vnav.altitude.last != vnav.cruiseAltitude) {
        StepDown();  // lowered during the climb, and not sent yet
    }
    TellGuidanceEvent(GuidanceEvent::TopOfClimb, planBook.verticalTargetIndex);
}

void GiveUpClimb() {
    vnav.simRateResetDone = 0;
    vnav.speed.set = 0;
    CommandSpeed();
    TellGuidanceEvent(GuidanceEvent::TopOfClimb, planBook.verticalTargetIndex);
}

void BeginDescent() {
    vnav.crossingIndex = 0;
    BeginPath(kRoundInNm);
    AimAtTarget(0);
    if (guidance.vnavEngaged == 1) {
        SendAltitude(vnav.targetAltitude);
        vnav.lastVsSent = kNothingSent;
        if (settings.VnavSetSpd == 1 && PlanIsFlown() &&
            guidance.distanceToGoNm >= performance.vnavSpeedDistanceNm) {
            SendSpeed(performance.descentIas);
            vnav.speed.set = 1;
        }
    }
    TellGuidanceEvent(GuidanceEvent::TopOfDescent, planBook.verticalTargetIndex);
}

// The restriction is kept until the next descent begins.
void LevelAtRestriction() {
    const std::int32_t passed = planBook.activeIndex;
    const double before = vnav.cruiseAltitude;
    ComputeTopOfDescent(1);
    if (before > vnav.cruiseAltitude && aircraft.altitudeFt > vnav.cruiseAltitude) {
        vnav.crossingIndex = passed;
        vnav.crossingDistance = guidance.distanceToGoNm;
    }
}

void ResumeCruise() {
    LevelAtRestriction();
    TellGuidanceEvent(GuidanceEvent::BackToCruise, planBook.activeIndex);
}

void ReopenClimb() {
    AimAtTarget(0);
    vnav.lastVsSent = kNothingSent;
}

void Stay() {}

struct Transition {
    VerticalPhase next;
    void (*action)();
};

constexpr auto kClimb = VerticalPhase::Climb;
constexpr auto kCruise = VerticalPhase::Cruise;
constexpr auto kDescent = VerticalPhase::Descent;
constexpr auto kEvents = static_cast<std::size_t>(VerticalEvent::Count);

// [phase][event]: the phase is entered before the action.
constexpr std::array<std::array<Transition, kEvents>, 3> kTransitions{{
    // LevelReached, ClimbOverdue, DescentDue, RestrictionPassed, CruiseRaised, CruiseLowered
    {{{kCruise, BeginCruise},
      {kCruise, GiveUpClimb},
      {kDescent, BeginDescent},
      {kClimb, Stay},
      {kClimb, Stay},
      {kClimb, Stay}}},
    {{{kCruise, Stay},
      {kCruise, Stay},
      {kDescent, BeginDescent},
      {kCruise, LevelAtRestriction},
      {kClimb, ReopenClimb},
      {kCruise, StepDown}}},
    {{{kDescent, Stay},
      {kDescent, Stay},
      {kDescent, Stay},
      {kCruise, ResumeCruise},
      {kClimb, ReopenClimb},
      {kDescent, Stay}}},
}};

void EnterPhase(VerticalPhase phase) {
    vnav.topOfClimbReached = phase == kClimb ? 0 : 1;
    vnav.descentActive = phase == kDescent ? 1 : 0;
}

bool PastTopOfDescent() {
    if (!(progress.routeDistanceToDestination < vnav.todDistanceToDestination)) {
        return false;
    }
    const double bearingTrue = progress.destinationBearingMag + aircraft.magneticVariation;
    const double angle =
        SmallerAngle(PositiveModulo(bearingTrue, 360.0), vnav.todBearingToDestination);
    return vnav.todOverdue != 0 || std::trunc(angle) < kPastDescentDeg;
}

// While climbing, only what has been climbed needs a descent; in cruise there must be something to
// descend to.
bool DescentIsNeeded() {
    if (vnav.Phase() != kClimb) {
        return EntryTargetFt(planBook.verticalTargetIndex) < vnav.cruiseAltitude;
    }
    const PlanningInput input = FlownInput();
    return input.at.alongNm >=
           DescentBeginsNm(input, vnav, aircraft.altitudeFt, planBook.activeIndex - 1) -
               kDescentBeginsNm;
}

}  // namespace

void TakeVerticalEvent(VerticalEvent event) {
    const auto phase = static_cast<std::size_t>(vnav.Phase());
    const Transition& transition = kTransitions[phase][static_cast<std::size_t>(event)];
    EnterPhase(transition.next);
    transition.action();
    if (transition.action != Stay) {
        RequestUnitRedraw();
    }
}

void ApplyClimbEnd() {
    if (vnav.topOfClimbReached == 0 &&
        vnav.cruiseAltitude - aircraft.altitudeFt < kClimbEndsBelowFt) {
        TakeVerticalEvent(VerticalEvent::LevelReached);
    }
}

void WatchCrossing() {
    if (vnav.crossingIndex == 0 || !activePlan.Holds(vnav.crossingIndex)) {
        vnav.crossingIndex = 0;
        return;
    }
    const PlanWaypoint& fix = activePlan.entries[vnav.crossingIndex];
    const double distanceNm =
        GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude, fix.latitude, fix.longitude);
    const bool receding = distanceNm > vnav.crossingDistance;
    vnav.crossingDistance = distanceNm;
    if (receding || distanceNm > kCrossingNm) {
        vnav.crossingIndex = 0;
    }
}

void ApplyDescentBegin() {
    if (vnav.descentActive != 0 || vnav.crossingIndex != 0) {
        return;
    }
    const double toTodNm = GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                 vnav.todLatitude, vnav.todLongitude);
    const bool near = toTodNm <= kDescentBeginsNm;
    if (!near && !PastTopOfDescent()) {
        return;
    }
    if (!DescentIsNeeded()) {
        return;
    }
    TakeVerticalEvent(VerticalEvent::DescentDue);
    if (!near) {
        vnav.speed.set = 0;
        CommandSpeed();
    }
}

void ApplyClimbFallback() {
    if (!HasProfile() || vnav.topOfClimbReached != 0 || guidance.vnavEngaged != 1 ||
        vnav.targetIsEntry != 0) {
        return;
    }
    const double flownNm = GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                 vnav.climbFromLatitude, vnav.climbFromLongitude);
    if (flownNm > kClimbOverdueFactor * vnav.predictedClimbDistance) {
        TakeVerticalEvent(VerticalEvent::ClimbOverdue);
    }
}

void ApplyTopOfDescentActions() {
    if (vnav.descentActive == 0) {
        return;
    }
    if (settings.Lnav1xAtTod == 1 && vnav.simRateResetDone == 0) {
        if (derived.simRate > kNormalSimRate) {
            SendKeyEvent(KeyEvent::SimRateNormal, 0);
        } else {
            vnav.simRateResetDone = 1;
        }
    }
    if (vnav.pauseArmed == 1 && vnav.pauseDone == 0) {
        SendKeyEvent(KeyEvent::PauseToggle, 0);
        vnav.pauseArmed = 0;
        vnav.pauseDone = 1;
    }
}

}  // namespace avq1
