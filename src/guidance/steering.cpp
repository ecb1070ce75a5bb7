// Cross-track error, the heading LNAV wants flown, and the autopilot's heading bug.
#include <algorithm>
#include <cmath>

#include "geometry/geometry.h"
#include "guidance/active_leg.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/lnav.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr double kDisplayCrossTrackLimitNm = 5;
constexpr double kCrossTrackLimitNm = 125;
constexpr double kLegTrackingLimitNm = 10;  // farther off: straight at the waypoint
constexpr double kNearTrackNm = 3.5;
constexpr double kNearLookAheadNm = 3;
constexpr double kFarLookAheadNm = 5;

// How far along the leg the aircraft is taken to be; negative before the leg's start.
double AlongTrackNm() {
    return guidance.legLengthNm - guidance.distanceToGoNm;
}

// Distance and course from the point abeam on the leg to the aircraft.
void FindAbeamOffset(const ActiveLeg& leg, double legCourseTrue, double& offsetNm,
                     double& courseTrue) {
    LatLon abeam;
    PointAtDistance(leg.from.latitude, leg.from.longitude, legCourseTrue, AlongTrackNm(),
                    abeam.latitude, abeam.longitude);
    DistanceAndCourse(abeam.latitude, abeam.longitude, aircraft.latitude, aircraft.longitude,
                      offsetNm, courseTrue);
}

double LimitCrossTrack(double crossTrackNm, CrossTrackMode mode) {
    return std::min(crossTrackNm, mode == CrossTrackMode::Guidance ? kCrossTrackLimitNm
                                                                   : kDisplayCrossTrackLimitNm);
}

void FindLookAheadPoint(const ActiveLeg& leg) {
    const bool nearTrack = guidance.crossTrackNm > 0 && guidance.crossTrackNm <= kNearTrackNm;
    const double lookAheadNm = nearTrack ? kNearLookAheadNm : kFarLookAheadNm;
    PointAtDistance(leg.from.latitude, leg.from.longitude,
                    guidance.desiredTrackMag + aircraft.magneticVariation,
                    AlongTrackNm() + lookAheadNm, guidance.lookAheadLatitude,
                    guidance.lookAheadLongitude);
    double distanceNm = 0;
    DistanceAndCourse(aircraft.latitude, aircraft.longitude, guidance.lookAheadLatitude,
                      guidance.lookAheadLongitude, distanceNm, guidance.bearingToLookAheadTrue);
}

}  // namespace

void ComputeCrossTrack(CrossTrackMode mode) {
    ActiveLeg leg;
    if (!FindActiveLeg(leg)) {
        guidance.crossTrackNm = kNoCrossTrack;
        return;
    }
    const double bearingTrue =
        FromAircraft({guidance.activeLatitude, guidance.activeLongitude}).courseTrue;
    const double legCourseTrue = AlongLeg(leg).courseTrue;
    const double legCourseMag = TrueToMagnetic(legCourseTrue, aircraft.magneticVariation);

    double offsetNm = 0;
    double offsetCourseTrue = 0;
    FindAbeamOffset(leg, legCourseTrue, offsetNm, offsetCourseTrue);
    guidance.crossTrackNm = LimitCrossTrack(offsetNm, mode);

    guidance.trackSideOfHeading =
        TurnSide(aircraft.headingMag, legCourseMag) == Side::Right ? Side::Left : Side::Right;
    guidance.trackHeadingAngle = std::fabs(legCourseMag - aircraft.headingMag);
    guidance.waypointSideOfTrack = TurnSide(legCourseTrue, bearingTrue);
    guidance.waypointTrackAngle = std::fabs(legCourseTrue - bearingTrue);

    if (offsetCourseTrue > legCourseTrue) {
        guidance.crossTrackSide =
            offsetCourseTrue - legCourseTrue <= 180 ? Side::Right : Side::Left;
    } else {
        guidance.crossTrackSide =
            legCourseTrue - offsetCourseTrue <= 180 ? Side::Left : Side::Right;
    }
}

void Steer() {
    ActiveLeg leg;
    if (!FindActiveLeg(leg)) {
        guidance.trackLeg = 0;
        return;
    }
    guidance.headingCommandMag = guidance.bearingToWaypointMag;
    ComputeCrossTrack(CrossTrackMode::Guidance);
    FindLookAheadPoint(leg);
    if (guidance.crossTrackNm >= kLegTrackingLimitNm) {
        guidance.trackLeg = 0;
    } else if (guidance.trackLeg == 1 || guidance.joinLeg == 1) {
        guidance.trackLeg = 1;
        guidance.headingCommandMag =
            TrueToMagnetic(guidance.bearingToLookAheadTrue, aircraft.magneticVariation);
    }
}

void SendHeadingBug() {
    if (guidance.lnavEngaged != 1 || !HeadingHoldEngaged() || HoldBeingFlown()) {
        guidance.lastHeadingSent = kNoHeadingSent;
        return;
    }
    if (guidance.pendingTurnSide == Side::None) {
        const std::int32_t heading = WholeHeading(guidance.headingCommandMag);
        if (heading != guidance.lastHeadingSent) {
            SendKeyEvent(KeyEvent::HeadingBugSet, heading);
            guidance.lastHeadingSent = heading;
        }
    } else if (TurnSide(guidance.bearingToWaypointMag, aircraft.headingMag) ==
               guidance.pendingTurnSide) {
        guidance.pendingTurnSide = Side::None;
        guidance.directToTurn = "DEFAULT";
    }
}

}  // namespace avq1
