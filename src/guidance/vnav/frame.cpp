#include <algorithm>
#include <cmath>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav/flown.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kCruisePathNm = 99.0;
constexpr double kUnableFpm = 3000;
constexpr double kUnableFt = 300;  // nearer to the target it is met well enough
constexpr double kResetAltitudeNm = 10;
constexpr double kKnotsPerNm = 10;

// What the pilot has been told of the present target.
struct Advice {
    std::int32_t unableEntry = kNoWaypoint;
    std::int32_t slowerEntry = kNoWaypoint;
    double resetTodNm = -1;
};

Advice advice;
const StateReset resetAdvice([] { advice = {}; });

void FollowClimb() {
    const double targetNm = vnav.targetIsEntry != 0
                                ? ActiveRoute().alongNm[planBook.verticalTargetIndex] -
                                      guidance.waypointChangeDistanceNm
                                : vnav.tocNm;
    vnav.distanceToTarget = std::fabs(targetNm - AircraftAlongNm());
}

void FollowDescent() {
    const double targetNm = ActiveRoute().alongNm[planBook.verticalTargetIndex];
    const double hereNm = AircraftAlongNm();
    vnav.distanceToTarget = std::max(targetNm - hereNm, 0.0);
    vnav.distanceSinceTod = std::max(hereNm - vnav.todNm, 0.0);
    const double lossFt = vnav.descentCruiseAltitude - vnav.targetAltitude;
    vnav.pathAltitude =
        vnav.descentPathLength > 0
            ? vnav.descentCruiseAltitude - lossFt / vnav.descentPathLength * vnav.distanceSinceTod
            : vnav.targetAltitude;
}

void FollowCruise() {
    vnav.descentPathLength = kCruisePathNm;
    vnav.distanceToTarget = std::max(vnav.todNm - AircraftAlongNm(), 0.0);
}

void FollowProfile() {
    switch (vnav.Phase()) {
        case VerticalPhase::Climb:
            FollowClimb();
            return;
        case VerticalPhase::Cruise:
            FollowCruise();
            return;
        case VerticalPhase::Descent:
            FollowDescent();
            return;
    }
}

void AdviseOfAltitude() {
    const std::int32_t target = planBook.verticalTargetIndex;
    const double errorFt = std::fabs(aircraft.altitudeFt - vnav.targetAltitude);
    if (vnav.targetIsEntry != 0 && vnav.Phase() != VerticalPhase::Cruise &&
        vnav.requiredFpm > kUnableFpm && errorFt > kUnableFt && advice.unableEntry != target) {
        advice.unableEntry = target;
        AppendMessage("UNABLE NEXT ALT");
    }
    if (settings.VnavSetAlts != 1 && vnav.Phase() == VerticalPhase::Cruise &&
        vnav.distanceToTarget < kResetAltitudeNm && advice.resetTodNm != vnav.todNm) {
        advice.resetTodNm = vnav.todNm;
        AppendMessage("RESET AP ALT");
    }
}

void AdviseOfSpeed() {
    const PlanWaypoint& entry = ActiveWaypoint();
    const double tooFastKt = aircraft.indicatedAirspeedKt - entry.speed;
    if (vnav.Phase() != VerticalPhase::Climb && HasSpeedRestriction(entry) && entry.speed > 0 &&
        tooFastKt > kKnotsPerNm && guidance.distanceToGoNm < tooFastKt / kKnotsPerNm &&
        advice.slowerEntry != planBook.activeIndex) {
        advice.slowerEntry = planBook.activeIndex;
        AppendMessage("DECELERATE");
    }
}

}  // namespace

void AdvisePilot() {
    if (guidance.vnavEngaged == 1) {
        AdviseOfAltitude();
        AdviseOfSpeed();
    }
}

void RunVerticalGuidance() {
    if (!HasProfile()) {
        return;
    }
    WatchCrossing();
    ApplyClimbEnd();
    ApplyDescentBegin();
    FollowProfile();
    CommandVerticalSpeed();
    ApplySpeedRestrictions();
    CommandSpeed();
    AdvisePilot();
}

void EndVerticalFrame() {
    vnav.forceSpeed = 0;
}

}  // namespace avq1
