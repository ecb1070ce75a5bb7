#include "guidance/holds.h"

#include <algorithm>

#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr std::int32_t kFirstHold = 1;
constexpr std::int32_t kFirstCorner = 1;
constexpr std::int32_t kLastCorner = 4;
constexpr double kSlowestTimedSpeedKt = 150;
constexpr double kMissedCornerSides = 2.5;  // farther off than this many sides: corner passed
constexpr double kReachedLegFraction = 0.25;
constexpr double kRightAngle = 90;
constexpr double kFullTurn = 360;

// How each corner follows from the one before: quarter turns off the inbound course, and the
// distance as a fraction of the leg length.
struct CornerRow {
    const char* name;
    int quarterTurns;
    double legFraction;
};

constexpr CornerRow kCorners[] = {
    {"Xwind", 0, 0.2},
    {"Dwind", 1, 0.5},
    {"Base", 2, 1.0},
    {"Final", 3, 0.5},
};

// The way from the aircraft to the corner being flown to (the fix before the pattern is entered).
struct CornerApproach {
    double distanceNm = 0;
    double bearingTrue = 0;
};

CornerApproach ApproachTo(const HoldCorner& corner) {
    CornerApproach approach;
    DistanceAndCourse(aircraft.latitude, aircraft.longitude, corner.latitude, corner.longitude,
                      approach.distanceNm, approach.bearingTrue);
    return approach;
}

// The corner lies behind the aircraft, or so far away that it will not be reached.
bool CornerMissed(const HoldPattern& hold, const CornerApproach& approach) {
    if (holdFlight.holdTargetCorner == 0) {
        return false;
    }
    const HoldCorner& from = hold.corners[holdFlight.previousCorner];
    const HoldCorner& to = hold.corners[holdFlight.holdTargetCorner];
    double sideNm = 0;
    double sideCourseTrue = 0;
    DistanceAndCourse(from.latitude, from.longitude, to.latitude, to.longitude, sideNm,
                      sideCourseTrue);
    return approach.distanceNm > kMissedCornerSides * sideNm ||
           SmallerAngle(approach.bearingTrue, sideCourseTrue) > kRightAngle;
}

bool ExitsAtThisCorner() {
    return holdFlight.holdState == HoldState::Exiting ||
           (holdFlight.holdState == HoldState::ExitRequested &&
            holdFlight.holdTargetCorner == kFirstCorner);
}

void BeginHold() {
    holdFlight = {};
    holdFlight.holdActive = 1;
}

void FinishHold(std::int32_t fixIndex) {
    holdFlight.holdState = HoldState::Exiting;
    holdFlight.holdActive = 0;
    DeleteHold(fixIndex);
    holdFlight.holdTargetCorner = 0;
}

// Turns to the next corner of the pattern.
CornerApproach AdvanceCorner(const HoldPattern& hold) {
    holdFlight.holdTargetCorner =
        holdFlight.holdTargetCorner >= kLastCorner ? kFirstCorner : holdFlight.holdTargetCorner + 1;
    holdFlight.previousCorner =
        holdFlight.holdTargetCorner == kFirstCorner ? kLastCorner : holdFlight.holdTargetCorner - 1;
    return ApproachTo(hold.corners[holdFlight.holdTargetCorner]);
}

void SendHoldHeading(double bearingTrue) {
    const double headingMag = TrueToMagnetic(bearingTrue, aircraft.magneticVariation);
    const std::int32_t whole = WholeHeading(headingMag);
    const bool sent = holdFlight.lastHoldHeading != kNoHoldHeading &&
                      whole == WholeHeading(holdFlight.lastHoldHeading);
    if (HoldBeingFlown() && !sent) {
        SendKeyEvent(KeyEvent::HeadingBugSet, whole);
        holdFlight.lastHoldHeading = headingMag;
    }
}

// Holds need not stand in the order of the route: the one whose fix is flown to comes first. A
// hold left for another waypoint is not flown on.
void TakeHoldAtActiveWaypoint() {
    if (HoldBeingFlown()) {
        if (holdList.holds[kFirstHold].fixIndex != planBook.activeIndex) {
            holdFlight = {};
        }
    } else if (const std::int32_t number = HoldNumberAt(planBook.activeIndex);
               number > kFirstHold) {
        PutHoldFirst(number);
    }
}

void FlyHold(const HoldPattern& hold) {
    CornerApproach approach = ApproachTo(hold.corners[holdFlight.holdTargetCorner]);
    const bool reached = CornerMissed(hold, approach) ||
                         approach.distanceNm <= kReachedLegFraction * hold.legDistanceNm;
    if (holdFlight.holdTargetCorner == 0) {
        const bool atFix = reached || approach.distanceNm <= guidance.waypointChangeDistanceNm;
        if (!atFix || hold.fixIndex != planBook.activeIndex) {
            return;  // the fix is still ahead, or the route only comes near it
        }
        BeginHold();
        approach = AdvanceCorner(hold);
    } else if (reached) {
        if (ExitsAtThisCorner()) {
            FinishHold(hold.fixIndex);
            return;
        }
        approach = AdvanceCorner(hold);
        if (hold.exitAutomatic == 1 && holdFlight.holdTargetCorner > kFirstCorner &&
            holdFlight.holdState == HoldState::Normal) {
            holdFlight.holdState = HoldState::ExitRequested;  // one circuit is enough
        }
    }
    SendHoldHeading(approach.bearingTrue);
}

}  // namespace

void LayOutHold(HoldPattern& hold, const PlanWaypoint& fix) {
    if (hold.legByTime == 1) {
        const double speedKt = std::max(aircraft.groundSpeedKt, kSlowestTimedSpeedKt);
        hold.legDistanceNm = speedKt / 60.0 * hold.legMinutes;
    }
    const double turn = hold.turnDirection == HoldTurn::Right ? kRightAngle : -kRightAngle;
    const double inboundTrue =
        PositiveModulo(hold.inboundCourseMag + aircraft.magneticVariation, kFullTurn);
    hold.corners[0].latitude = fix.latitude;
    hold.corners[0].longitude = fix.longitude;
    for (std::int32_t corner = kFirstCorner; corner <= kLastCorner; ++corner) {
        const CornerRow& row = kCorners[corner - 1];
        const HoldCorner& before = hold.corners[corner - 1];
        HoldCorner& placed = hold.corners[corner];
        PointAtDistance(before.latitude, before.longitude,
                        PositiveModulo(inboundTrue + row.quarterTurns * turn, kFullTurn),
                        row.legFraction * hold.legDistanceNm, placed.latitude, placed.longitude);
        placed.name = row.name;
    }
}

bool HoldBeingFlown() {
    return holdFlight.holdActive == 1 && holdFlight.holdTargetCorner > 0;
}

void BuildAndFlyHold() {
    TakeHoldAtActiveWaypoint();
    HoldPattern& hold = holdList.holds[kFirstHold];
    if (holdList.count < kFirstHold || hold.fixIndex <= 0 || !activePlan.Holds(hold.fixIndex)) {
        return;
    }
    const PlanWaypoint& fix = activePlan.entries[hold.fixIndex];
    if (IsDiscontinuity(fix)) {
        return;
    }
    LayOutHold(hold, fix);
    if (guidance.lnavEngaged == 1) {
        FlyHold(hold);
    }
}

bool HoldAtActiveWaypoint() {
    HoldPattern hold = NewHold();
    hold.inboundCourseMag = guidance.desiredTrackMag;
    if (!HasActiveWaypoint() || !HoldAt(activePlan, planBook.activeIndex, hold)) {
        return false;
    }
    holdFlight = {};
    holdFlight.holdActive = 1;
    return true;
}

void DeletePassedHolds() {
    for (std::int32_t number = kFirstHold; number <= holdList.count; ++number) {
        const std::int32_t fixIndex = holdList.holds[number].fixIndex;
        if (fixIndex > 0 && fixIndex < planBook.activeIndex) {
            DeleteHold(fixIndex);
            number = 0;  // later holds have moved up: search again from the first
        }
    }
}

void EndHoldFlight() {
    holdFlight = {};
    holdFlight.holdState = HoldState::LnavOff;
}

}  // namespace avq1
