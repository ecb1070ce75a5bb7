#include "guidance/lnav.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "base/messages.h"
#include "base/redraw.h"
#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "geometry/geometry.h"
#include "guidance/active_leg.h"
#include "guidance/guidance_events.h"
#include "guidance/guidance_state.h"
#include "guidance/holds.h"
#include "guidance/progress.h"
#include "guidance/radio_tuning.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/exported_variables.h"
#include "simlink/key_events.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kPassedWaypointRangeNm = 10;
constexpr std::int32_t kPassedWaypointAngle = 90;
constexpr double kPassedNow = -1;  // a distance to go below every change distance
constexpr double kArrivalStampSpeedKt = 65;
constexpr double kDestinationNearNm = 25;
constexpr double kDepartedNm = 8;

// Entries of an inserted approach carry another tag and change at the en-route distance.
constexpr std::string_view kProcedureTags[] = {"SID", "STAR", "SIDSTAR", "APCH"};

// A plain entry keeps the present change distance.
void AdjustChangeDistance(const PlanWaypoint& entry) {
    guidance.waypointChangeDistanceNm = ChangeDistanceNm(entry, guidance.waypointChangeDistanceNm);
}

// The waypoint flown to is another one, or stands elsewhere.
void AimAtActiveWaypoint() {
    const PlanWaypoint& entry = ActiveWaypoint();
    guidance.waypointChangeDistanceNm = ChangeDistanceNm(entry, settings.WptChgDist);
    guidance.activeLatitude = entry.latitude;
    guidance.activeLongitude = entry.longitude;
}

void ForgetLeg() {
    guidance.legLengthNm = 0;
    guidance.desiredTrackMag = 0;
    guidance.distanceToGoNm = 0;
    guidance.bearingToWaypointMag = 0;
    guidance.crossTrackNm = kNoCrossTrack;
    guidance.crossTrackSide = Side::None;
}

void RecordPassage() {
    guidance.passedIdent = ActiveWaypoint().ident;
    guidance.passedTimeZulu = Format("%2.0f%2.0fZ", aircraft.zuluHour, aircraft.zuluMinute);
    guidance.passedAltitude = aircraft.altitudeFt;
    guidance.passedFuel = FuelOnBoard();
    if (settings.WeightUnit == "KGS") {
        guidance.passedFuel *= kPoundsPerKilogram;
    }
    TellGuidanceEvent(GuidanceEvent::WaypointPassed, planBook.activeIndex);
}

void ApplyLastWaypointSettings() {
    if (planBook.activeIndex != activePlan.lastIndex) {
        return;
    }
    if (settings.VnavOffAtLastWpt == 1 && vnav.topOfClimbReached == 1) {
        DisengageVnav("LAST WAYPOINT");
    }
    if (settings.LnavOffAtLastWpt == 1) {
        DisengageLnav();
    }
}

// There is nothing to fly to at a gap in the route: the pilot closes it.
void StopAtDiscontinuity() {
    if (guidance.lnavEngaged == 1 && IsDiscontinuity(ActiveWaypoint())) {
        DisengageLnav();
        AppendMessage("LNAV OFF - DISCONTINUITY");
        RequestUnitRedraw();
    }
}

bool HoldKeepsWaypoint() {
    return HoldBeingFlown() && holdFlight.holdState != HoldState::RemovedWhileFlown;
}

// The exported text buffer holds `ident` already.
bool Publishes(const std::string& ident) {
    return std::strncmp(exported.activeIdent.data(), ident.c_str(), kExportedIdentSize - 1) == 0;
}

}  // namespace

double ChangeDistanceNm(const PlanWaypoint& entry, double plainNm) {
    const bool procedure = std::find(std::begin(kProcedureTags), std::end(kProcedureTags),
                                     entry.procedure) != std::end(kProcedureTags);
    return entry.flyover == 1 ? settings.FlyoverWptChgDist
           : procedure        ? settings.WptProcChgDist
                              : plainNm;
}

bool HeadingHoldEngaged() {
    return std::round(aircraft.headingHoldOn) == 1.0;
}

void SetActiveWaypoint(std::int32_t index) {
    const bool flyable = index >= kFirstWaypoint && activePlan.Holds(index);
    planBook.activeIndex = flyable ? index : kNoWaypoint;
    if (!flyable) {
        if (guidance.lnavEngaged == 1) {
            DisengageLnav();
        }
        ForgetLeg();
        UpdateRouteDistance();
        return;
    }
    AimAtActiveWaypoint();
    ReadDestinationAhead();
    StopAtDiscontinuity();
    RefreshLegGeometry();
    UpdateRouteDistance();
}

bool EngageLnav() {
    if (!HasActiveWaypoint() || IsDiscontinuity(ActiveWaypoint())) {
        return false;
    }
    guidance.lnavEngaged = 1;
    TuneRadiosAsSet();
    return true;
}

void DisengageLnav() {
    guidance.lnavEngaged = 0;
    guidance.trackLeg = guidance.joinLeg = 0;
    EndHoldFlight();
}

void ToggleLnav() {
    if (guidance.lnavEngaged == 1) {
        DisengageLnav();
    } else {
        EngageLnav();
    }
    RequestUnitRedraw();
    guidance.blinkCounter = kRestartBlink;
}

void TuneRadiosAsSet() {
    if (settings.LnavSetEnRouteFreqs == 1) {
        TuneRadios(TuneMode::FlightPlan);
    }
}

void SetAltimeterAsSet() {
    if (settings.SetWptBaro == 1) {
        SendKeyEvent(KeyEvent::AltimeterSet, 0);
    }
}

void StampArrivalTime() {
    const PlanWaypoint& entry = activePlan.entries[planBook.activeIndex];
    if (guidance.distanceToGoNm < guidance.waypointChangeDistanceNm && entry.ataText.empty() &&
        aircraft.groundSpeedKt > kArrivalStampSpeedKt && !IsDiscontinuity(entry)) {
        activePlan.Edit(planBook.activeIndex).ataText =
            Format("%02.0f:%02.0f", aircraft.clockHour, aircraft.clockMinute);
    }
}

void PrepareFirstLeg() {
    if (guidance.firstLegPrepared == 0 && planBook.activeIndex == kFirstWaypoint) {
        AdjustChangeDistance(ActiveWaypoint());
        guidance.firstLegPrepared = 1;
    }
}

void ApplyPassedWaypointRule() {
    if (guidance.lnavEngaged != 1 || !HeadingHoldEngaged() ||
        !(guidance.distanceToGoNm < kPassedWaypointRangeNm) ||
        planBook.activeIndex >= activePlan.lastIndex - 1 ||
        HoldNumberAt(planBook.activeIndex) > 0) {
        return;
    }
    const double angle = SmallerAngle(guidance.bearingToWaypointMag, guidance.desiredTrackMag);
    if (TruncateToInteger(angle) > kPassedWaypointAngle) {
        guidance.distanceToGoNm = kPassedNow;
    }
}

void SequenceWaypoint() {
    if (!(guidance.distanceToGoNm < guidance.waypointChangeDistanceNm) ||
        guidance.lnavEngaged != 1 || HoldKeepsWaypoint()) {
        return;
    }
    if (holdFlight.holdState == HoldState::RemovedWhileFlown) {
        holdFlight = {};
    }
    if (planBook.activeIndex >= activePlan.lastIndex) {
        DisengageLnav();
        RequestUnitRedraw();
        return;
    }
    TargetOnPassing();
    RecordPassage();
    TrackPassage(activePlan.entries[planBook.activeIndex]);
    ++planBook.activeIndex;
    UpdateRouteDistance();
    CommandOnPassing();
    ApplyLastWaypointSettings();
    StopAtDiscontinuity();
    if (guidance.lnavEngaged == 1) {
        TuneRadiosAsSet();
    }
    AimAtActiveWaypoint();
    guidance.trackLeg = 1;
    guidance.joinLeg = 0;
    SetAltimeterAsSet();
}

void RefreshLegGeometry() {
    guidance.previousDistanceToGoNm = guidance.distanceToGoNm;
    guidance.previousDesiredTrackMag = guidance.desiredTrackMag;
    ActiveLeg leg;
    if (!FindActiveLeg(leg)) {
        ForgetLeg();
        return;
    }
    const GreatCircle& along = AlongLeg(leg);
    const GreatCircle& direct = FromAircraft({guidance.activeLatitude, guidance.activeLongitude});
    guidance.legLengthNm = along.distanceNm;
    guidance.desiredTrackMag = TrueToMagnetic(along.courseTrue, aircraft.magneticVariation);
    guidance.distanceToGoNm = direct.distanceNm;
    guidance.bearingToWaypointMag = TrueToMagnetic(direct.courseTrue, aircraft.magneticVariation);
}

void PublishGuidance() {
    const std::string& ident = ActiveWaypoint().ident;
    if (!Publishes(ident)) {
        exported.activeIdent.fill('\0');
        ident.copy(exported.activeIdent.data(), kExportedIdentSize - 1);
    }
    exported.activeIndex =
        HasActiveWaypoint() ? static_cast<std::uint32_t>(planBook.activeIndex) : 0;
    exported.distanceToGoNm = guidance.distanceToGoNm;
    exported.lastIndex = static_cast<std::uint32_t>(std::max(activePlan.lastIndex, 0));
    exported.crossTrackSide = static_cast<std::uint32_t>(guidance.crossTrackSide);
    exported.crossTrackNm = guidance.crossTrackNm;
    exported.desiredTrackMag = guidance.desiredTrackMag;
    exported.bearingToWaypointMag = guidance.bearingToWaypointMag;
    exported.lnavEngaged = static_cast<std::uint32_t>(guidance.lnavEngaged);
    exported.vnavEngaged = static_cast<std::uint32_t>(guidance.vnavEngaged);
    if (exported.active == 0) {
        exported.active = 1;
    }
}

void ApplyDestinationNear() {
    if (guidance.destinationNearDone == 1 ||
        progress.routeDistanceToDestination > kDestinationNearNm) {
        return;
    }
    if (settings.SetDestLoadTowerViewDist > 0) {
        requests.towerView = 1;
    }
    guidance.destinationNearDone = 1;
    SetAltimeterAsSet();
}

void LoadDestinationAirport() {
    const PlanWaypoint& destination = activePlan.entries[activePlan.lastIndex];
    if (planAirports.destinationAirportState != kAirportStillToLoad || destination.type != "APT") {
        return;
    }
    const PlanWaypoint& departure = activePlan.entries[0];
    if (GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude, departure.latitude,
                              departure.longitude) <= kDepartedNm) {
        return;
    }
    SetPlanAirport(destination.ident, PlanAirportMode::ActiveDestination);
    planAirports.destinationAirportState = kAirportLoaded;
    planAirports.patternRunwayOffset = kNoPatternRunway;
}

}  // namespace avq1
