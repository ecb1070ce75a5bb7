// tests/support/test_flight.h - a point mass that flies the heading bug, and plans on the equator
// where a degree is 60 nm.
#pragma once

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/guidance_events.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"
#include "simlink/aircraft_state.h"
#include "support/fake_simulator.h"

namespace avq1::test {

inline constexpr std::int32_t kHeadingBugEvent = 66042;
inline constexpr std::int32_t kAltimeterEvent = 65584;
inline constexpr std::int32_t kCourseEvent = 65716;
inline constexpr std::int32_t kNavFrequencyEvent = 65708;

using EventList = std::vector<std::pair<std::int32_t, std::uint32_t>>;

// What guidance tells, in order, once HearGuidance() was called.
inline std::vector<GuidanceReport> heard;

inline void HearGuidance() {
    heard.clear();
    using enum GuidanceEvent;
    for (const GuidanceEvent event :
         {PlanStarted, WaypointPassed, TopOfClimb, TopOfDescent, BackToCruise}) {
        ConnectGuidanceListener(event,
                                [](const GuidanceReport& report) { heard.push_back(report); });
    }
}

struct PlanEntry {
    const char* ident;
    double latitude;
    double longitude;
    const char* type = "INT";
    const char* procedure = "";
    const char* frequency = "";
    int flyover = 0;
};

inline void SetActivePlan(std::initializer_list<PlanEntry> entries) {
    activePlan.CutTo(-1);
    for (const PlanEntry& row : entries) {
        PlanWaypoint entry;
        entry.ident = row.ident;
        entry.latitude = row.latitude;
        entry.longitude = row.longitude;
        entry.type = row.type;
        entry.procedure = row.procedure;
        entry.frequency = row.frequency;
        entry.flyover = row.flyover;
        activePlan.Append(std::move(entry));
    }
}

// An entry as the vertical guidance sees it: names that begin with K are airports, DISCO is a gap.
struct RouteFix {
    const char* ident;
    double latitude, longitude;
    double altitudeFt = kUnset;
    std::int32_t constraint = kNoCrossing;
    double speedKt = kUnset;
    const char* procedure = "";
};

inline void SetActiveRoute(const std::vector<RouteFix>& fixes) {
    activePlan.CutTo(-1);
    for (const RouteFix& fix : fixes) {
        PlanWaypoint entry;
        entry.ident = fix.ident;
        entry.latitude = fix.latitude;
        entry.longitude = fix.longitude;
        entry.altitude = fix.altitudeFt;
        entry.altitudeConstraint = fix.constraint;
        entry.speed = fix.speedKt;
        entry.speedConstraint = fix.speedKt != kUnset ? 1 : 0;
        entry.procedure = fix.procedure;
        entry.type = fix.ident[0] == 'K' ? "APT" : "INT";
        activePlan.Append(IsDiscontinuity(entry) ? Discontinuity() : std::move(entry));
    }
}

struct TestAircraft {
    double latitude = 0;
    double longitude = 0;
    double headingTrue = 90;
    double speedKt = 300;
    double variation = 0;
    double turnRateDegPerSecond = 1.5;
    double elapsedSeconds = 0;

    // Tells the simulator where the aircraft is, with the heading hold engaged.
    void Report() const {
        FakeSimulator& simulator = FakeSimulator::Get();
        simulator.SetPosition(latitude, longitude);
        simulator.SetGroundSpeedKt(speedKt);
        simulator.variables[86] = headingTrue;
        simulator.variables[81] = PositiveModulo(headingTrue - variation, 360.0);
        simulator.variables[82] = variation;
        simulator.variables[106] = 1;
        simulator.variables[5] = static_cast<int>(elapsedSeconds) % 60;
        simulator.variables[336] = 1;
    }

    // Turns toward the heading bug, moves on for `seconds` and reports under a new tick.
    void Fly(double seconds) {
        const double turn = PositiveModulo(BugTrue() - headingTrue + 180.0, 360.0) - 180.0;
        const double most = turnRateDegPerSecond * seconds;
        headingTrue = PositiveModulo(headingTrue + std::clamp(turn, -most, most), 360.0);
        PointAtDistance(latitude, longitude, headingTrue, speedKt * seconds / 3600.0, latitude,
                        longitude);
        elapsedSeconds += seconds;
        Report();
        FakeSimulator::Get().NextTick();
    }

    double BugTrue() const {
        const EventList& events = FakeSimulator::Get().events;
        const auto bug = std::find_if(events.rbegin(), events.rend(), [](const auto& event) {
            return event.first == kHeadingBugEvent;
        });
        return bug == events.rend() ? headingTrue : bug->second + variation;
    }
};

// Predicts the flight on from here in still air at sea level, at the speed that takes it to the
// active waypoint in `minutes`.
inline void PredictArrivalIn(double minutes) {
    const AircraftState now = aircraft;
    const DerivedState derivedNow = std::exchange(derived, {});  // nothing is learned from it
    const PlanWaypoint& next = ActiveWaypoint();
    aircraft.indicatedAirspeedKt =
        GreatCircleDistanceNm(now.latitude, now.longitude, next.latitude, next.longitude) /
        (minutes / 60);
    aircraft.altitudeFt = aircraft.windSpeedKt = 0;
    RefreshPredictions();
    aircraft = now;
    derived = derivedNow;
}

// The aircraft at a position, known to the guidance, with entry `index` active and LNAV engaged.
inline void StartAt(const TestAircraft& testAircraft, std::int32_t index) {
    testAircraft.Report();
    RefreshAircraftState();
    SetActiveWaypoint(index);
    EngageLnav();
}

}  // namespace avq1::test
