// tests/support/guidance_values.h - everything guidance remembers and predicts, by name, so that
// kept files show which value a step has changed.
#pragma once

#include <cmath>
#include <ostream>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "base/messages.h"
#include "base/redraw.h"
#include "guidance/guidance_state.h"
#include "guidance/performance_entries.h"
#include "guidance/predictions.h"
#include "guidance/route_table.h"
#include "guidance/vnav/profile.h"
#include "settings/settings.h"
#include "support/test_flight.h"

namespace avq1::test {

using NamedValues = std::vector<std::pair<std::string, double>>;

inline void AddSent(NamedValues& values, const std::string& name, const SentTarget& sent) {
    values.insert(values.end(), {{name + "Set", sent.set},
                                 {name + "Tick", sent.tick},
                                 {name + "Reference", sent.reference},
                                 {name + "Last", sent.last}});
}

inline NamedValues VerticalValues() {
    const VnavProfile& v = vnav;
    NamedValues values = {{"cruise", v.cruiseAltitude},
                          {"tocLat", v.tocLatitude},
                          {"tocLon", v.tocLongitude},
                          {"tocIndex", v.tocIndex},
                          {"tocNm", v.tocNm},
                          {"todLat", v.todLatitude},
                          {"todLon", v.todLongitude},
                          {"todNm", v.todNm},
                          {"todOverdue", v.todOverdue},
                          {"descentStart", v.descentStartIndex},
                          {"todToDestination", v.todDistanceToDestination},
                          {"todBearing", v.todBearingToDestination},
                          {"descentCruise", v.descentCruiseAltitude},
                          {"climbNm", v.predictedClimbDistance},
                          {"climbFromLat", v.climbFromLatitude},
                          {"climbFromLon", v.climbFromLongitude},
                          {"plannedCruise", v.plannedCruiseAltitude},
                          {"targets", static_cast<double>((v.targets << 150 >> 150).to_ullong())},
                          {"climbOver", v.topOfClimbReached},
                          {"descent", v.descentActive},
                          {"target", planBook.verticalTargetIndex},
                          {"targetFt", v.targetAltitude},
                          {"targetLat", v.targetLatitude},
                          {"targetLon", v.targetLongitude},
                          {"targetIsEntry", v.targetIsEntry},
                          {"toTarget", v.distanceToTarget},
                          {"pathNm", v.descentPathLength},
                          {"sinceTod", v.distanceSinceTod},
                          {"pathFt", v.pathAltitude},
                          {"required", v.requiredFpm},
                          {"crossing", v.crossingIndex},
                          {"crossingNm", v.crossingDistance},
                          {"climbRestrictionPassed", v.climbRestrictionPassed},
                          {"vs", v.vsCommand},
                          {"vsSent", v.lastVsSent},
                          {"vsHundreds", v.vsHundreds},
                          {"lowSpeed", v.lowSpeedHold},
                          {"climbRestriction", v.climbRestrictionActive},
                          {"descentRestriction", v.descentRestrictionDone},
                          {"latch", v.restrictionDistanceLatch},
                          {"simRateDone", v.simRateResetDone},
                          {"pauseArmed", v.pauseArmed},
                          {"pauseDone", v.pauseDone},
                          {"forceSpeed", v.forceSpeed},
                          {"vnav", guidance.vnavEngaged},
                          {"setSpeed", settings.VnavSetSpd}};
    AddSent(values, "altitude", v.altitude);
    AddSent(values, "speed", v.speed);
    return values;
}

inline NamedValues PerformanceValues() {
    const AircraftPerformance& p = performance;
    return {{"climbIas", p.climbIas},
            {"cruiseIas", p.cruiseIas},
            {"descentIas", p.descentIas},
            {"climbRate", p.climbRate},
            {"descentRate", p.descentRate},
            {"angle", p.flightPathAngleDeg},
            {"costIndex", p.costIndex},
            {"climbLimit", p.climbSpeedRestriction},
            {"climbLimitFt", p.climbRestrictionAltitude},
            {"descentLimit", p.descentSpeedRestriction},
            {"descentLimitFt", p.descentRestrictionAltitude},
            {"climbMach", p.climbMach},
            {"cruiseMach", p.cruiseMach},
            {"descentMach", p.descentMach},
            {"climbTas", p.climbTas},
            {"descentTas", p.descentTas},
            {"bookCruise", planBook.cruiseAltitudeFt},
            {"chosenCruise", ChosenCruiseAltitude()},
            {"chosenClimb", ChosenSpeed(VerticalPhase::Climb).ias},
            {"chosenCruiseIas", ChosenSpeed(VerticalPhase::Cruise).ias},
            {"chosenDescent", ChosenSpeed(VerticalPhase::Descent).ias}};
}

inline NamedValues LateralValues() {
    const GuidanceState& g = guidance;
    return {{"to", planBook.activeIndex},
            {"lnav", g.lnavEngaged},
            {"activeLat", g.activeLatitude},
            {"activeLon", g.activeLongitude},
            {"legNm", g.legLengthNm},
            {"track", g.desiredTrackMag},
            {"toGo", g.distanceToGoNm},
            {"bearing", g.bearingToWaypointMag},
            {"toGoBefore", g.previousDistanceToGoNm},
            {"trackBefore", g.previousDesiredTrackMag},
            {"across", g.crossTrackNm},
            {"acrossSide", static_cast<double>(g.crossTrackSide)},
            {"changeNm", g.waypointChangeDistanceNm},
            {"trackLeg", g.trackLeg},
            {"aheadLat", g.lookAheadLatitude},
            {"aheadLon", g.lookAheadLongitude},
            {"toAhead", g.bearingToLookAheadTrue},
            {"heading", g.headingCommandMag},
            {"waypointSide", static_cast<double>(g.waypointSideOfTrack)},
            {"waypointAngle", g.waypointTrackAngle},
            {"headingSide", static_cast<double>(g.trackSideOfHeading)},
            {"headingAngle", g.trackHeadingAngle}};
}

inline void AddPoint(NamedValues& values, const std::string& name, const PredictedPoint& point) {
    values.insert(values.end(), {{name + ".known", point.known ? 1 : 0},
                                 {name + ".nm", point.distanceNm},
                                 {name + ".min", point.minutes},
                                 {name + ".clock", point.clockMinutes},
                                 {name + ".zulu", point.zuluMinutes},
                                 {name + ".ft", point.altitudeFt},
                                 {name + ".kt", point.speedKt},
                                 {name + ".gs", point.groundSpeedKt},
                                 {name + ".lb", point.fuelLb},
                                 {name + ".lat", point.position.latitude},
                                 {name + ".lon", point.position.longitude}});
}

inline NamedValues PredictedValues(const Predictions& predictions, std::int32_t lastIndex) {
    NamedValues values = {{"predictedCruise", predictions.cruiseAltitudeFt}};
    AddPoint(values, "toc", predictions.topOfClimb);
    AddPoint(values, "tod", predictions.topOfDescent);
    AddPoint(values, "destination", predictions.destination);
    for (std::int32_t i = 0; i <= lastIndex; ++i) {
        AddPoint(values, std::to_string(i), predictions.entries[static_cast<std::size_t>(i)]);
    }
    return values;
}

// Four decimals, without the sign of a zero.
inline double Rounded(double value) {
    return std::round(value * 1e4) / 1e4 + 0.0;
}

// The values of `now` that are not those of `before`, in one line; all that are not 0 without it.
inline std::string Changes(const NamedValues& before, const NamedValues& now) {
    std::ostringstream line;
    line.precision(10);
    for (std::size_t i = 0; i < now.size(); ++i) {
        const double was = i < before.size() ? Rounded(before[i].second) : 0;
        if (const double is = Rounded(now[i].second); is != was) {
            line << ' ' << now[i].first << '=' << is;
        }
    }
    line << '\n';
    return line.str();
}

// What was sent, said, told and asked to be drawn since the last call.
inline std::string Outcome() {
    static std::int32_t saidBefore = 0;
    static std::uint32_t drawnBefore = 0;
    std::ostringstream line;
    for (const auto& [event, value] : std::exchange(FakeSimulator::Get().events, {})) {
        line << ' ' << event << '=' << static_cast<std::int32_t>(value);
    }
    for (const GuidanceReport& report : std::exchange(heard, {})) {
        line << " told " << static_cast<int>(report.event) << " at " << report.entryIndex;
    }
    for (std::int32_t i = saidBefore + 1; i <= messages.count; ++i) {
        line << " said " << messages.lines[static_cast<std::size_t>(i)];
    }
    saidBefore = messages.count;
    line << (std::exchange(drawnBefore, UnitRedrawCount()) != UnitRedrawCount() ? " drawn\n"
                                                                                : "\n");
    return line.str();
}

}  // namespace avq1::test
