// Plans of every kind of entry, and everything that can happen to the guidance, compared with what
// came of it when somebody last looked: plans.txt and steps.txt keep every value that changed.
#include <gtest/gtest.h>
#include <cmath>

#include <sstream>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/vnav.h"
#include "guidance/vnav/flight_values.h"
#include "guidance/vnav/flown.h"
#include "settings/performance_tables.h"
#include "settings/settings.h"
#include "support/guidance_values.h"
#include "support/kept_file.h"

namespace avq1 {
namespace {

using test::Changes;
using test::Outcome;
using test::RouteFix;

constexpr auto kClimb = VerticalPhase::Climb;
constexpr auto kCruise = VerticalPhase::Cruise;
constexpr auto kDescent = VerticalPhase::Descent;

// Where an aircraft is: a share of the way to an entry, and a little aside.
struct Place {
    std::int32_t toIndex;
    double share;
    double altitudeFt;
    VerticalPhase phase;
};

struct RecordedPlan {
    const char* name;
    const char* aircraft;  // its file; empty: none
    std::int32_t cruiseFt;
    std::vector<RouteFix> fixes;
    std::vector<Place> places;
};

const std::vector<RouteFix> kRestricted = {{"KAAA", 40, -80, 20},
                                           {"SPEED", 40.3, -79.5, 5000, 3, 230, "SID"},
                                           {"LEVEL", 40.6, -78.9, 12000, 1, 270, "SID"},
                                           {"CLIMB", 41.2, -77.5},
                                           {"CRUIS", 42, -75},
                                           {"HIGH", 42.3, -73, 24000, 2, 270, "STAR"},
                                           {"MIDDL", 42.5, -72, 11000, 1, 250, "STAR"},
                                           {"LOW", 42.4, -71.5, 5000, 2, kUnset, "APPR"},
                                           {"KBBB", 42.36, -71, 700}};

const RecordedPlan kPlans[] = {
    {"restrictions up and down",
     "demo-jet",
     33000,
     kRestricted,
     {{1, 0.5, 3000, kClimb},
      {2, 0.95, 13000, kClimb},
      {3, 0.5, 20000, kClimb},
      {4, 0.5, 33000, kCruise},
      {5, 0.9, 33000, kCruise},
      {6, 0.5, 20000, kDescent},
      {8, 0.5, 3000, kDescent}}},
    {"the altitude of the tables, gaps at both ends and between",
     "demo-jet",
     0,
     {{"DISCO", 0, 0},
      {"KAAA", 30, 10, 400},
      {"AAA", 30.5, 9},
      {"DISCO", 0, 0},
      {"BBB", 33, 4, 31000, 3, 280},
      {"CCC", 34, 1, 9000, 1},
      {"KBBB", 34.3, 0, 1200},
      {"DISCO", 0, 0}},
     {{2, 0.5, 5000, kClimb},
      {4, 0.4, 30000, kClimb},
      {4, 0.9, 37000, kCruise},
      {5, 0.7, 20000, kDescent},
      {7, 0, 3000, kDescent}}},
    {"too short for its cruise, southward across the date line",
     "demo-turboprop",
     25000,
     {{"KAAA", 10, 179.8, 100},
      {"AAA", 9.6, -179.9},
      {"BBB", 9.2, -179.7, 6000, 2, 180},
      {"KBBB", 9, -179.6, 50}},
     {{1, 0.2, 1000, kClimb}, {2, 0.5, 9000, kClimb}, {3, 0.1, 7000, kDescent}}},
    {"the altitude of the rates, an end that is no airport",
     "",
     0,
     {{"KAAA", -20, 20, 4000},
      {"AAA", -19, 20},
      {"BBB", -18, 20, kUnset, 0, 200},
      {"CCC", -17, 20}},
     {{1, 0.1, 4500, kClimb},
      {1, 0, 15000, kClimb},
      {2, 0.5, 18000, kCruise},
      {3, 0.5, 18000, kDescent}}},
    {"the altitude of the tables, an end that is no airport",
     "demo-turboprop",
     0,
     {{"KAAA", 50, 3, 200}, {"AAA", 49.2, 2}, {"BBB", 48, 1}},
     {{1, 0.5, 8000, kClimb}, {2, 0.6, 16000, kCruise}}},
    {"two entries, at the cruise altitude already",
     "demo-turboprop",
     17000,
     {{"AAA", 5, 5}, {"KBBB", 8, 5, 300}},
     {{1, 0, 17000, kClimb}, {1, -0.1, 16900, kClimb}, {1, 0.3, 16000, kCruise}}},
    {"several free entries between restrictions",
     "demo-jet",
     30000,
     {{"KAAA", 40, -80, 20},
      {"AAA", 40.2, -79.7},
      {"BBB", 40.3, -79.5},
      {"CCC", 40.5, -79.2, 11000, 1, 240},
      {"DDD", 40.6, -79},
      {"EEE", 40.9, -78.3},
      {"FFF", 42, -75},
      {"GGG", 42.2, -74},
      {"HHH", 42.3, -73.4},
      {"III", 42.4, -72.9, 12000, 1, 240},
      {"JJJ", 42.4, -72.6},
      {"KKK", 42.4, -72.3},
      {"KBBB", 42.4, -72, 300}},
     {{2, 0.5, 4000, kClimb}, {11, 0.5, 9000, kDescent}}},
    {"in one place",
     "demo-jet",
     0,
     {{"KAAA", 1, 1, 20}, {"KBBB", 1, 1, 20}},
     {{1, 0, 400, kClimb}}},
};

void Place(double latitude, double longitude, double altitudeFt) {
    aircraft.latitude = latitude;
    aircraft.longitude = longitude;
    aircraft.altitudeFt = altitudeFt;
    aircraft.groundSpeedKt = 300;
    aircraft.indicatedAirspeedKt = 245;
    aircraft.apSpeed115 = 1;
    aircraft.apAirspeedTargetKt = 245;
    aircraft.headingMag = 40;
    aircraft.magneticVariation = -9;
    aircraft.windDirection = 310;
    aircraft.windSpeedKt = 35;
    aircraft.clockHour = 21;
    aircraft.clockMinute = 43;
    aircraft.zuluHour = 2;
    aircraft.zuluMinute = 13;
    aircraft.tick = 77;
}

void Settle(VerticalPhase phase) {
    vnav.topOfClimbReached = phase == kClimb ? 0 : 1;
    vnav.descentActive = phase == kDescent ? 1 : 0;
}

void Fly(const std::vector<RouteFix>& fixes, const char* itsFile, std::int32_t cruiseFt) {
    ResetModuleState();
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    simulator.variables[289] = 8388608;  // one full tank of a pound a gallon
    simulator.variables[290] = 16000;
    simulator.variables[306] = 1;
    simulator.variables[638] = 3500;
    test::HearGuidance();
    SimFolder = AVQ1_SOURCE_DIR "/demo";
    AircraftName = itsFile;
    LoadAircraftFile();
    test::SetActiveRoute(fixes);
    const bool gap = IsDiscontinuity(activePlan.entries[0]);
    Place(fixes[gap ? 1 : 0].latitude, fixes[gap ? 1 : 0].longitude, 400);
    planBook.cruiseAltitudeFt = cruiseFt;
    StartActivePlan();
}

void FlyTo(const struct Place& place, const std::vector<RouteFix>& fixes) {
    const auto to = static_cast<std::size_t>(place.toIndex);
    const RouteFix& from =
        fixes[std::string_view(fixes[to - 1].ident) == "DISCO" ? to - 2 : to - 1];
    const RouteFix& fix = fixes[to];
    const double aside = place.share != 0 ? 0.02 : 0;
    Place(from.latitude + place.share * (fix.latitude - from.latitude) + aside,
          from.longitude + place.share * (fix.longitude - from.longitude), place.altitudeFt);
    Settle(place.phase);
    SetActiveWaypoint(place.toIndex);
}

test::NamedValues EntryValuesNow() {
    test::NamedValues values;
    const RouteTable& route = ActiveRoute();
    values = {{"first", route.first}, {"last", route.last}};
    for (std::int32_t i = 0; i <= activePlan.lastIndex; ++i) {
        const std::string at = "entry" + std::to_string(i);
        values.insert(values.end(), {{at + ".along", route.alongNm[static_cast<std::size_t>(i)]},
                                     {at + ".flownTo", route.flownTo[static_cast<std::size_t>(i)]},
                                     {at + ".ft", activePlan.entries[i].altitude},
                                     {at + ".kt", activePlan.entries[i].speed}});
    }
    return values;
}

void WriteAll(std::ostream& out) {
    out << " profile" << Changes({}, test::VerticalValues()) << " entries"
        << Changes({}, EntryValuesNow()) << " predicted"
        << Changes({}, test::PredictedValues(ActivePredictions(), activePlan.lastIndex))
        << " performance" << Changes({}, test::PerformanceValues()) << " sent" << Outcome();
}

TEST(RecordedPlans, AreAsTheyWereWhenLastLookedAt) {
    std::ostringstream now;
    for (const RecordedPlan& plan : kPlans) {
        Fly(plan.fixes, plan.aircraft, plan.cruiseFt);
        Outcome();
        RefreshPredictions();
        now << "# " << plan.name << '\n';
        WriteAll(now);
        for (const struct Place& place : plan.places) {
            Fly(plan.fixes, plan.aircraft, plan.cruiseFt);
            FlyTo(place, plan.fixes);
            guidance.vnavEngaged = 1;
            Outcome();
            ReplanChangedRoute();
            RunVerticalGuidance();
            ComputeCrossTrack(CrossTrackMode::Guidance);
            Steer();
            RefreshPredictions();
            now << "# " << plan.name << ", to " << place.toIndex << " at " << place.altitudeFt
                << '\n';
            WriteAll(now);
            now << " lateral" << Changes({}, test::LateralValues());
            CopyActiveToModified();
            for (const RouteStatus status : {RouteStatus::Modified, RouteStatus::AwaitsExecution}) {
                planBook.status = status;
                if (status == RouteStatus::AwaitsExecution) {
                    performance.flightPathAngleDeg = 3;  // the tables' rates replace it
                }
                planBook.waitingPerformance.cruiseAltitudeFt =
                    plan.cruiseFt > 0 ? std::optional(plan.cruiseFt - 2000) : std::nullopt;
                now << " modified"
                    << Changes(test::PredictedValues(ActivePredictions(), activePlan.lastIndex),
                               test::PredictedValues(ModifiedPredictions(), activePlan.lastIndex));
                modifiedPlan.Edit(0).ataText.clear();  // another revision
            }
        }
    }
    ImportTable.panel.services = nullptr;
    test::ExpectAsKept(now.str(), "guidance/plans.txt");
}

PerformanceChange SpeedChange(VerticalPhase phase, SpeedMode mode) {
    PerformanceChange change;
    change.speeds[static_cast<std::size_t>(phase)] = SpeedOfMode(phase, mode);
    return change;
}

PerformanceChange LimitChange(VerticalPhase phase) {
    PerformanceChange change;
    change.limits[static_cast<std::size_t>(phase)] = SpeedLimit{210, 12000};
    return change;
}

struct Step {
    const char* what;
    void (*take)();
};

// The airspeed for the waypoint flown to is due, so many miles before it.
void SpeedWanted(double toGoNm) {
    vnav.speed.set = vnav.crossingIndex = 0;
    guidance.distanceToGoNm = toGoNm;
    CommandSpeed();
}

const Step kSteps[] = {
    {"nothing to do", [] {}},
    {"a typed speed",
     [] { SetCrossing(activePlan, 4, {.speedKt = 233}), ReplanChangedRoute(), CommandSpeed(); }},
    {"a typed altitude, the speed as filled in",
     [] {
         SetCrossing(activePlan, 4, {.altitudeFt = 9000, .keepsSpeed = true});
         ReplanChangedRoute();
     }},
    {"a restriction taken away",
     [] { SetCrossing(activePlan, planBook.activeIndex, {}), ReplanChangedRoute(); }},
    {"restrictions above and at the cruise",
     [] {
         SetCrossing(activePlan, 5, {33100});
         SetCrossing(activePlan, 6, {33000});
         ReplanChangedRoute();
     }},
    {"an end that is no airport, without an altitude",
     [] {
         activePlan.Edit(8).type = "INT";
         for (const std::int32_t i : {5, 6, 7, 8}) {
             activePlan.Edit(i).altitudeConstraint = 0;
             activePlan.Edit(i).altitude = kUnset;
         }
         ReplanChangedRoute();
     }},
    {"speeds that are suspended",
     [] {
         settings.VnavSetSpd = 2;
         SpeedWanted(24);
     }},
    {"a speed far from the waypoint", [] { SpeedWanted(25); }},
    {"a speed near it", [] { SpeedWanted(24.9); }},
    {"a speed near it on a route being built",
     [] { planBook.status = RouteStatus::AwaitsExecution, SpeedWanted(24); }},
    {"a speed near it while a modification waits",
     [] { planBook.status = RouteStatus::Modified, SpeedWanted(24); }},
    {"a forced speed", [] { vnav.forceSpeed = 1, SpeedWanted(99); }},
    {"a speed below the limits' altitudes", [] { aircraft.altitudeFt = 9999, SpeedWanted(24); }},
    {"a speed above the least of the file",
     [] { activePlan.Edit(planBook.activeIndex).speed = 100, SpeedWanted(24); }},
    {"without a speed to send",
     [] { activePlan.Edit(planBook.activeIndex).speed = kUnset, SpeedWanted(24); }},
    {"the altitude knob turned",
     [] {
         settings.VnavOffOnManAltChg = 1;
         aircraft.apAltitudeTargetFt = aircraft.previousApAltitudeTargetFt = 12000;
         vnav.altitude.tick = kNothingSent;
         CommandVerticalSpeed();
     }},
    {"the altitude knob turned where altitudes are not sent",
     [] {
         settings.VnavSetAlts = 0;
         settings.VnavOffOnManAltChg = 1;
         aircraft.apAltitudeTargetFt = aircraft.previousApAltitudeTargetFt = 12000;
         vnav.altitude.tick = kNothingSent;
         CommandVerticalSpeed();
     }},
    {"the autopilot took over what it could",
     [] {
         settings.VnavOffOnManAltChg = settings.VnavSetSpdOffOnManSpdChg = 1;
         aircraft.apAltitudeTargetFt = aircraft.previousApAltitudeTargetFt = 29900;
         aircraft.apAirspeedTargetKt = aircraft.previousApAirspeedTargetKt = 248;
         aircraft.tick = 78;
         ReadBackCommands();
     }},
    {"nobody has the throttles", [] { aircraft.apSpeed115 = 0; }},
    {"standing", [] { aircraft.indicatedAirspeedKt = 40, aircraft.groundSpeedKt = 25; }},
    {"level reached", [] { TakeVerticalEvent(VerticalEvent::LevelReached); }},
    {"climb overdue", [] { TakeVerticalEvent(VerticalEvent::ClimbOverdue); }},
    {"descent due", [] { TakeVerticalEvent(VerticalEvent::DescentDue); }},
    {"descent due, near the waypoint",
     [] {
         guidance.distanceToGoNm = 24.9;
         TakeVerticalEvent(VerticalEvent::DescentDue);
     }},
    {"descent due without VNAV",
     [] {
         guidance.vnavEngaged = 0;
         TakeVerticalEvent(VerticalEvent::DescentDue);
     }},
    {"restriction passed", [] { TakeVerticalEvent(VerticalEvent::RestrictionPassed); }},
    {"restriction passed at its altitude",
     [] {
         activePlan.Edit(planBook.activeIndex).altitude = aircraft.altitudeFt;
         TakeVerticalEvent(VerticalEvent::RestrictionPassed);
     }},
    {"restriction passed above it",
     [] {
         activePlan.Edit(planBook.activeIndex).altitude = aircraft.altitudeFt - 1;
         TakeVerticalEvent(VerticalEvent::RestrictionPassed);
     }},
    {"cruise raised", [] { TakeVerticalEvent(VerticalEvent::CruiseRaised); }},
    {"cruise lowered", [] { TakeVerticalEvent(VerticalEvent::CruiseLowered); }},
    {"a higher cruise altitude", [] { SetCruiseAltitude(35000); }},
    {"a lower one", [] { SetCruiseAltitude(14000); }},
    {"the same", [] { SetCruiseAltitude(33000); }},
    {"beyond any", [] { SetCruiseAltitude(70000); }},
    {"beyond any, there already",
     [] {
         SetCruiseAltitude(60000);
         Settle(kCruise);
         vnav.lastVsSent = 700;
         SetCruiseAltitude(70000);
     }},
    {"below 0", [] { SetCruiseAltitude(-5); }},
    {"planned anew", [] { PlanVerticalProfile(0, 0); }},
    {"planned anew and filled", [] { PlanVerticalProfile(29000, 1); }},
    {"top of climb", [] { ComputeTopOfClimb(0); }},
    {"top of climb behind it", [] { ComputeTopOfClimb(1); }},
    {"top of climb at a restriction", [] { SetActiveWaypoint(1), ComputeTopOfClimb(0); }},
    {"top of descent", [] { ComputeTopOfDescent(0); }},
    {"top of descent from here", [] { ComputeTopOfDescent(1); }},
    {"aimed", [] { ChooseTargetEntry(0), AimAtTarget(0); }},
    {"aimed behind it", [] { ChooseTargetEntry(1), AimAtTarget(1); }},
    {"a path from here", [] { BeginPath(3); }},
    {"VNAV off", ToggleVnav},
    {"VNAV off and on", [] { ToggleVnav(), ToggleVnav(); }},
    {"VNAV lets go", [] { DisengageVnav("TEST"); }},
    {"the plan started", StartActivePlan},
    {"the plan started with a pause armed", [] { vnav.pauseArmed = 1, StartActivePlan(); }},
    {"no waypoint flown to",
     [] { SetActiveWaypoint(kNoWaypoint), StartVerticalProfile(), ReplanChangedRoute(); }},
    {"NEXT", [] { SetActiveWaypoint(planBook.activeIndex + 1), ReplanChangedRoute(); }},
    {"PREV", [] { SetActiveWaypoint(planBook.activeIndex - 1), ReplanChangedRoute(); }},
    {"the departure moved", [] { activePlan.Edit(0).latitude = 39, ReplanChangedRoute(); }},
    {"an entry moved", [] { activePlan.Edit(4).longitude = -76, ReplanChangedRoute(); }},
    {"an altitude changed", [] { activePlan.Edit(6).altitude = 9000, ReplanChangedRoute(); }},
    {"a restriction gone", [] { activePlan.Edit(6).altitudeConstraint = 0, ReplanChangedRoute(); }},
    {"a speed changed", [] { activePlan.Edit(6).speed = 220, ReplanChangedRoute(); }},
    {"a gap", [] { activePlan.Edit(7) = Discontinuity(), ReplanChangedRoute(); }},
    {"the end cut off", [] { activePlan.CutTo(7), ReplanChangedRoute(); }},
    {"nothing that matters", [] { activePlan.Edit(6).ataText = "1", ReplanChangedRoute(); }},
    {"another climb speed", [] { performance.climbTas += 20, ReplanChangedRoute(); }},
    {"another climb rate", [] { performance.climbRate += 200, ReplanChangedRoute(); }},
    {"another descent speed", [] { performance.descentTas += 20, ReplanChangedRoute(); }},
    {"a climb limit", [] { performance.climbSpeedRestriction = 240, ReplanChangedRoute(); }},
    {"its altitude", [] { performance.climbRestrictionAltitude = 9000, ReplanChangedRoute(); }},
    {"a descent limit", [] { performance.descentSpeedRestriction = 240, ReplanChangedRoute(); }},
    {"and its altitude",
     [] { performance.descentRestrictionAltitude = 9000, ReplanChangedRoute(); }},
    {"the waypoint passed", [] { guidance.distanceToGoNm = 0, SequenceWaypoint(); }},
    {"a restriction of the climb passed",
     [] { SetActiveWaypoint(2), guidance.distanceToGoNm = 0, SequenceWaypoint(); }},
    {"a crossing that nears", [] { vnav.crossingDistance = 99, WatchCrossing(); }},
    {"a crossing behind", [] { vnav.crossingDistance = 0.1, WatchCrossing(); }},
    {"a crossing beyond the plan", [] { vnav.crossingIndex = 99, WatchCrossing(); }},
    {"far beyond the climb", [] { vnav.targetIsEntry = 0, ApplyClimbFallback(); }},
    {"a pause and a normal rate",
     [] {
         settings.Lnav1xAtTod = vnav.pauseArmed = 1;
         vnav.pauseDone = vnav.simRateResetDone = 0;
         ApplyTopOfDescentActions();
     }},
    {"a pause that was made",
     [] {
         vnav.pauseArmed = 1;
         ApplyTopOfDescentActions();
     }},
    {"a high rate",
     [] {
         settings.Lnav1xAtTod = 1;
         vnav.simRateResetDone = vnav.pauseDone = 0;
         derived.simRate = 1.05;
         ApplyTopOfDescentActions();
     }},
    {"the knob turned",
     [] {
         settings.VnavSetSpdOffOnManSpdChg = 1;
         vnav.speed.tick = kNothingSent;
         aircraft.previousApAirspeedTargetKt = 245;
         CommandSpeed();
     }},
    {"limits begin and end",
     [] {
         vnav.descentRestrictionDone = vnav.restrictionDistanceLatch = 0;
         aircraft.altitudeFt = planBook.activeIndex == 3 ? 10001 : 9999;
         guidance.distanceToGoNm = 20;
         ApplySpeedRestrictions();
     }},
    {"the commands read back", [] { aircraft.tick = 78, ReadBackCommands(); }},
    {"the pilot's speeds",
     [] {
         planBook.status = RouteStatus::None;
         ChangePerformance(SpeedChange(kClimb, SpeedMode::MaxRate));
         ChangePerformance(SpeedChange(kCruise, SpeedMode::LongRange));
         ChangePerformance(SpeedChange(kDescent, SpeedMode::Fastest));
     }},
    {"two of the pilot's speeds, and the aircraft's again",
     [] {
         planBook.status = RouteStatus::None;
         for (const VerticalPhase phase : {kClimb, kCruise, kDescent}) {
             ChangePerformance(SpeedChange(phase, SpeedMode::MaxAngle));
             ChangePerformance(SpeedChange(phase, SpeedMode::Fastest));
             ChangePerformance(SpeedChange(phase, SpeedMode::Economy));
         }
     }},
    {"a cost index, and the altitude of the tables",
     [] {
         planBook.status = RouteStatus::None;
         ChangePerformance({.costIndex = 40});
         ChangePerformance(SpeedChange(kDescent, SpeedMode::Fastest));
         PlanVerticalProfile(0, 1);
     }},
    {"the pilot's speeds, and economy again",
     [] {
         planBook.status = RouteStatus::None;
         ChangePerformance(SpeedChange(kClimb, SpeedMode::MaxAngle));
         ChangePerformance({.costIndex = 40});
         ChangePerformance(SpeedChange(kClimb, SpeedMode::Economy));
     }},
    {"the pilot's limits and cruise altitude",
     [] {
         planBook.status = RouteStatus::None;
         ChangePerformance({.cruiseAltitudeFt = 27000});
         ChangePerformance(LimitChange(kClimb));
         ChangePerformance(LimitChange(kDescent));
     }},
    {"speeds that wait", [] { ChangePerformance(SpeedChange(kCruise, SpeedMode::LongRange)); }},
    {"speeds executed",
     [] {
         ChangePerformance(SpeedChange(kClimb, SpeedMode::MaxRate));
         ChangePerformance({.cruiseAltitudeFt = 31000, .costIndex = 100});
         ChangePerformance(LimitChange(kDescent));
         ExecuteModification();
     }},
    {"an executed plan of the same route",
     [] {
         CopyActiveToModified();
         planBook.status = RouteStatus::Modified;
         ExecuteModification();
     }},
    {"the last entry reached",
     [] {
         SetActiveWaypoint(activePlan.lastIndex);
         guidance.distanceToGoNm = 0;
         Outcome();
         SequenceWaypoint();
     }},
    {"winds",
     [] {
         EnterCruiseWind(200, 80);
         EnterDescentWindAltitude(0, 8000);
         EnterDescentWind(0, 100, 40);
         EnterDescentWindAltitude(2, 20000);
         EnterDescentWind(2, 20, 30);
     }},
};

// In the climb, in cruise and in the descent, with something left in every value.
void Prepare(VerticalPhase phase) {
    const struct Place places[] = {
        {3, 0.5, 20000, kClimb}, {4, 0.5, 33000, kCruise}, {6, 0.6, 19000, kDescent}};
    Fly(kRestricted, "demo-jet", 33000);
    FlyTo(places[static_cast<std::size_t>(phase)], kRestricted);
    ReplanChangedRoute();
    guidance.vnavEngaged = guidance.lnavEngaged = 1;
    FollowedProfile& followed = vnav;
    followed.crossingIndex = 5;
    followed.crossingDistance = 4;
    static_cast<VerticalCommands&>(vnav) = {
        .vsCommand = 700,
        .lastVsSent = 700,
        .vsHundreds = 700,
        .lowSpeedHold = 1,
        .altitude = {.set = 1, .tick = 77, .reference = 8, .last = 9},
        .speed = {.set = 1, .tick = 77, .reference = 8, .last = 9},
        .climbRestrictionActive = 1,
        .descentRestrictionDone = 1,
        .restrictionDistanceLatch = 1,
        .simRateResetDone = 1,
        .pauseArmed = 0,
        .pauseDone = 1,
    };
    RefreshPredictions();
    guidance.distanceToGoNm = 25;
    Outcome();
}

test::NamedValues Everything() {
    test::NamedValues values = test::VerticalValues();
    for (const test::NamedValues& more : {test::PerformanceValues(), test::LateralValues(),
                                          test::PredictedValues(ActivePredictions(), -1)}) {
        values.insert(values.end(), more.begin(), more.end());
    }
    return values;
}

// How the flight is learned from, and what is made of it: winds, speeds and flows ahead.
TEST(RecordedFlightValues, AreAsTheyWereWhenLastLookedAt) {
    std::ostringstream now;
    now.precision(10);
    Fly(kRestricted, "demo-jet", 33000);
    const struct {
        double indicatedKt, targetKt, trueKt, altitudeFt, verticalFpm, flowPph;
        double holdsSpeed = 1;
    } notes[] = {{80, 250, 90, 500, 0, 6000},
                 {250, 250, 80, 5000, 1500, 6000},
                 {250, 250, 280, 5000, 1500, 6000},
                 {250, 253.1, 285, 8000, 1400, 5800},
                 {250.48, 253.5, 285, 8000, 1400, 5800},
                 {250.98, 255, 285, 8000, 1400, 5800},
                 {251.5, 255, 285, 8000, 1400, 0},
                 {248.6, 255, 285, 8000, 1400, 5700},
                 {245.5, 255, 285, 8000, 1300, 5600},
                 {245.4, 255, 290, 9000, 1100, 5400, 0},
                 {245.4, 255, 430, 37000, 100, 3000},
                 {245.4, 248, 430, 38000, -2000, 900},
                 {245.4, 255, 150, 38000, -2000, 900},
                 {245.4, 255, 600, 20000, 0, 2900}};
    FlightExperience seen;
    for (const auto& note : notes) {
        aircraft.indicatedAirspeedKt = note.indicatedKt;
        aircraft.apAirspeedTargetKt = note.targetKt;
        aircraft.apSpeed115 = note.holdsSpeed;
        aircraft.altitudeFt = note.altitudeFt;
        aircraft.verticalSpeedFpm = note.verticalFpm;
        derived.trueAirspeedEstimateKt = note.trueKt;
        test::FakeSimulator::Get().variables[638] = note.flowPph;
        LearnFlight(seen);
        now << "# noted " << note.indicatedKt << " of " << note.targetKt << '\n'
            << Changes({}, {{"ratio", seen.airspeedRatio},
                            {"machLimit", seen.machLimit},
                            {"seen", seen.seen},
                            {"flow", seen.meanFlowPph},
                            {"fpm", seen.meanFpm},
                            {"spread", seen.spreadFpm2},
                            {"flowPerFpm", seen.flowPerFpm},
                            {"ft", seen.altitudeFt},
                            {"kt", seen.indicatedKt},
                            {"targetKt", seen.targetKt}});
        for (const double feet : {0.0, 9000.0, 36089.0, 39000.0, 45000.0}) {
            now << ' ' << test::Rounded(TrueAirspeedKt(seen, 250, feet));
            for (const VerticalPhase phase : {kClimb, kCruise, kDescent}) {
                now << ' ' << test::Rounded(FuelFlowPph(seen, phase, feet, 500 - feet / 20));
            }
        }
        now << '\n';
    }
    const double winds[][4] = {{0, 0, 0, 0}, {8000, 100, 40, 0}, {20000, 20, 30, 2}};
    for (const auto& [feet, direction, knots, row] : winds) {
        now << "# wind at " << feet << '\n';
        if (feet > 0) {
            EXPECT_TRUE(EnterDescentWindAltitude(static_cast<std::size_t>(row), feet));
            EXPECT_TRUE(EnterDescentWind(static_cast<std::size_t>(row), direction, knots));
        }
        for (const double trueKt : {20.0, 300.0}) {
            for (const double above : {5000.0, 8000.0, 12000.0, 20000.0, 30000.0}) {
                now << ' ' << test::Rounded(GroundSpeedKt(trueKt, 50, {90, above, true})) << ' '
                    << test::Rounded(GroundSpeedKt(trueKt, 200, {90, above, false})) << ' '
                    << test::Rounded(GroundSpeedKt(trueKt, 130, {-5, above, false}));
            }
        }
        now << '\n';
        if (feet > 0) {
            EXPECT_TRUE(EnterCruiseWind(direction + 10, knots * 2));
        }
    }
    ImportTable.panel.services = nullptr;
    test::ExpectAsKept(now.str(), "guidance/values.txt");
}

// What the step did, and what the frame behind it did then.
TEST(DescentWinds, CountAtOnceWithAWindAndAnAltitude) {
    Prepare(kDescent);
    const auto minutes = [] {
        RefreshPredictions();
        return ActivePredictions().destination.minutes;
    };
    const double calm = minutes();
    EXPECT_TRUE(EnterDescentWind(0, 80, 100));
    EXPECT_EQ(minutes(), calm);
    for (const double feet : {0.0, -1.0, 60001.0, std::nan("")}) {
        EXPECT_FALSE(EnterDescentWindAltitude(0, feet)) << feet;
    }
    EXPECT_TRUE(EnterDescentWindAltitude(0, 60000));
    EXPECT_TRUE(EnterDescentWindAltitude(0, 10000));
    EXPECT_GT(minutes(), calm + 0.5);
    ClearDescentWind(0);
    EXPECT_EQ(minutes(), calm);
}

TEST(RecordedSteps, DoWhatTheyDidWhenLastLookedAt) {
    std::ostringstream now;
    for (const Step& step : kSteps) {
        for (const VerticalPhase phase : {kClimb, kCruise, kDescent}) {
            Prepare(phase);
            test::NamedValues before = Everything();
            const test::NamedValues predicted =
                test::PredictedValues(ModifiedPredictions(), activePlan.lastIndex);
            step.take();
            now << "# " << step.what << ", phase " << static_cast<int>(phase) << '\n'
                << " changed" << Changes(before, Everything()) << " then" << Outcome();
            before = Everything();
            aircraft.tick += 1;
            aircraft.clockSecond += 5;
            ReadBackCommands();
            RunVerticalGuidance();
            EndVerticalFrame();
            RefreshPredictions();
            now << " changed" << Changes(before, Everything()) << " then" << Outcome();
            if (planBook.status == RouteStatus::Modified) {
                now << " modified"
                    << Changes(predicted,
                               test::PredictedValues(ModifiedPredictions(), activePlan.lastIndex));
            }
        }
    }
    ImportTable.panel.services = nullptr;
    test::ExpectAsKept(now.str(), "guidance/steps.txt");
}

}  // namespace
}  // namespace avq1
