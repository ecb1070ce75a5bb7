// Flights under lateral guidance, compared with how they went when somebody last looked:
// lateral.txt keeps every value that changed whenever a waypoint or the corner of a hold was
// passed, a mode changed or something was said, and once a minute.
#include <gtest/gtest.h>

#include <sstream>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "guidance/activation.h"
#include "guidance/holds.h"
#include "host/update_frame.h"
#include "settings/settings.h"
#include "simlink/exported_variables.h"
#include "support/guidance_values.h"
#include "support/kept_file.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::Changes;
using test::NamedValues;
using test::TestAircraft;

constexpr double kFrameS = 0.5;

struct Happening {
    double second;
    void (*take)(TestAircraft& pilot);
};

struct LateralFlight {
    const char* name;
    const char* plan;    // lines of a plan's file
    std::int32_t first;  // entry flown to at first
    double seconds;
    TestAircraft pilot;  // where it begins
    std::vector<Happening> happenings;
};

void PlanHold(std::int32_t fix, HoldShape shape) {
    HoldPattern hold;
    static_cast<HoldShape&>(hold) = shape;
    hold.fixIndex = fix;
    AddHold(hold);
}

constexpr const char* kNorth = "AAA -0.5 0 INT\nFIX 0 0 INT\nBBB 0.5 0 INT\nCCC 1 0 INT\n";

const LateralFlight kFlights[] = {
    {"every kind of entry, in wind",
     "KAAA 0 0 APT\nSIDAA 0.1 0.25 INT --- J1 SID\nBBB 0.2 0.5 VOR 113.90\nFLYOV -0.1 1 INT\n"
     "STARA 0 1.5 INT --- J1 STAR\nBOTHA 0.1 1.9 INT --- J1 SIDSTAR\nAPCHA 0.1 2.4 NDB 385 J1 "
     "APCH\nAPCHB 0 2.6 INT --- J1 APCH\nAPPRA 0.1 2.9 INT --- J1 APPR\nKBBB 0.1 3.2 APT\n",
     1,
     2700,
     {.variation = -7},
     {{0,
       [](TestAircraft&) {
           settings.SetWptBaro = settings.LnavSetEnRouteFreqs = settings.VnavOffAtLastWpt = 1;
           settings.SetDestLoadTowerViewDist = 1;
           settings.WeightUnit = "KGS";
           activePlan.Edit(3).flyover = activePlan.Edit(7).flyover = 1;
           auto& variables = test::FakeSimulator::Get().variables;
           variables[343] = 30;
           variables[344] = 310;
           variables[289] = 8388608;
           variables[290] = 900;
           variables[306] = 6.7;
           variables[3] = 23;
           variables[4] = 59;
           variables[7] = 5;
           variables[74] = 12000;
       }},
      {300,
       [](TestAircraft& p) {
           p.speedKt = 25;
           SimVersion = 10;
           test::FakeSimulator::Get().variables[336] = 1024;
       }},
      {301, [](TestAircraft& p) { p.speedKt = 26; }},
      {302, [](TestAircraft& p) { p.speedKt = 350; }},
      {1500, [](TestAircraft&) { ToggleLnav(); }},
      {1520, [](TestAircraft&) { ToggleLnav(); }}}},
    {"off at the last waypoint, once around the world",
     "AAA 10 179.5 INT\nBBB 10.3 180 INT\nCCC 10 -179.5 INT\nDDD 9.5 -179 INT\n",
     1,
     1500,
     {.latitude = 10, .longitude = 179.5, .variation = 12},
     {{0, [](TestAircraft&) { settings.LnavOffAtLastWpt = 1; }}}},
    {"across a gap",
     "AAA 0 0 INT\nBBB 0 0.5 INT\nDISCO 0 0\nCCC 0.5 1 INT\nDDD 0.5 2 INT\n",
     1,
     900,
     {},
     {{500, [](TestAircraft&) { EngageLnav(); }},
      {600, [](TestAircraft&) { SetActiveWaypoint(3), EngageLnav(); }}}},
    {"far off the leg, straight to it, then joined",
     "AAA 0 0 INT\nBBB 0 1.5 INT\nCCC 0 3 INT\nDDD 0 4 INT\n",
     1,
     1900,
     {.latitude = 0.14},
     {{0, [](TestAircraft&) { guidance.trackLeg = 1; }},
      {200, [](TestAircraft& p) { p.latitude = 0.2; }},
      {210, [](TestAircraft& p) { p.latitude = 0.05; }},
      {1100,
       [](TestAircraft& p) {
           p.latitude = -0.3;
           guidance.trackLeg = 0;
           guidance.joinLeg = 1;
       }},
      {1400, [](TestAircraft& p) { p.latitude = -0.058, guidance.trackLeg = 1; }},
      {1410, [](TestAircraft& p) { p.latitude = -0.059; }}}},
    {"a turn the pilot forced, a waypoint left behind",
     "AAA 0 0 INT\nBBB 0 0.8 INT\nCCC 0 1.5 INT\nDDD 0.3 2 INT\nEEE 0 3 INT\n",
     1,
     1500,
     {.headingTrue = 100, .turnRateDegPerSecond = 0.8},
     {{0,
       [](TestAircraft&) {
           guidance.pendingTurnSide = Side::Left;
           guidance.directToTurn = "RIGHT";
       }},
      {30, [](TestAircraft& p) { p.headingTrue = 280; }},
      {200, [](TestAircraft& p) { p.longitude = 0.82, p.latitude = 0.08; }},
      {700, [](TestAircraft&) { SetActiveWaypoint(kNoWaypoint); }},
      {720, [](TestAircraft&) { SetActiveWaypoint(3), EngageLnav(); }},
      {900, [](TestAircraft&) { activePlan.CutTo(-1); }}}},
    {"a timed hold to the right, left by the pilot",
     kNorth,
     1,
     1600,
     {.latitude = -0.2, .headingTrue = 360, .speedKt = 200, .variation = 10},
     {{0, [](TestAircraft&) { PlanHold(1, {.legMinutes = 1.5, .inboundCourseMag = 350}); }},
      {300, [](TestAircraft& p) { p.speedKt = 140; }},
      {900, [](TestAircraft&) { holdFlight.holdState = HoldState::ExitRequested; }}}},
    {"a hold to the left, left by itself",
     kNorth,
     1,
     1200,
     {.latitude = -0.2, .headingTrue = 360, .speedKt = 200, .variation = -20},
     {{0,
       [](TestAircraft&) {
           PlanHold(1, {.turnDirection = HoldTurn::Left,
                        .legDistanceNm = 5,
                        .inboundCourseMag = 20,
                        .legByTime = 0,
                        .exitAutomatic = 1});
       }}}},
    {"holds out of order, deleted, left for another waypoint, with LNAV off and on",
     kNorth,
     1,
     2400,
     {.latitude = -0.2, .headingTrue = 360, .speedKt = 200, .turnRateDegPerSecond = 3},
     {{0,
       [](TestAircraft&) {
           for (const std::int32_t fix : {3, 2, 1}) {
               PlanHold(fix, {.legDistanceNm = 4, .inboundCourseMag = 360, .legByTime = 0});
           }
       }},
      {400, [](TestAircraft&) { ToggleLnav(); }},
      {480, [](TestAircraft&) { EngageLnav(); }},
      {800, [](TestAircraft&) { DeleteHold(1); }},
      {1300, [](TestAircraft&) { SetActiveWaypoint(1); }},
      {1400, [](TestAircraft&) { SetActiveWaypoint(2); }},
      {1650, [](TestAircraft&) { HoldAtActiveWaypoint(), SetActiveWaypoint(3); }},
      {2300, [](TestAircraft&) { SetActiveWaypoint(2), HoldAtActiveWaypoint(); }}}},
    {"a hold at a fix that the route only comes near",
     "AAA -0.5 0 INT\nBBB 0 0 INT\nFIX 0 0.02 INT\nCCC 1 0 INT\n",
     1,
     400,
     {.latitude = -0.1, .headingTrue = 360, .speedKt = 200},
     {{0, [](TestAircraft&) { PlanHold(2, {.inboundCourseMag = 360}); }}}},
    {"hours to go",
     "AAA 0 0 INT\nBBB 0 3 INT\nCCC 0 6 INT\n",
     1,
     60,
     {.speedKt = 100},
     {{10, [](TestAircraft&) { ToggleLnav(); }}, {30, [](TestAircraft&) { ToggleLnav(); }}}},
};

NamedValues AllValues() {
    NamedValues values = test::LateralValues();
    const RouteProgress& p = progress;
    values.insert(values.end(), {{"route", p.routeDistanceToDestination},
                                 {"direct", p.destinationDistanceDirect},
                                 {"toEnd", p.destinationBearingMag},
                                 {"eteMin", p.eteWaypointMinutes},
                                 {"eteH", p.eteWaypointHours},
                                 {"eteTenths", p.eteWaypointTenths},
                                 {"endMin", p.eteDestinationMinutes},
                                 {"endH", p.eteDestinationHours},
                                 {"eteRealMin", p.eteWaypointRealMinutes},
                                 {"eteRealH", p.eteWaypointRealHours},
                                 {"endRealMin", p.eteDestinationRealMinutes},
                                 {"endRealH", p.eteDestinationRealHours},
                                 {"headwind", derived.headwindKt},
                                 {"crosswind", derived.crosswindKt},
                                 {"windMag", derived.windDirectionMag},
                                 {"tas", derived.trueAirspeedEstimateKt},
                                 {"drift", derived.driftDeg},
                                 {"rate", derived.simRate},
                                 {"joins", guidance.joinLeg},
                                 {"near", guidance.destinationNearDone},
                                 {"passedFt", guidance.passedAltitude},
                                 {"passedFuel", guidance.passedFuel},
                                 {"exportedTo", exported.activeIndex},
                                 {"exportedLast", exported.lastIndex},
                                 {"exportedNm", exported.distanceToGoNm},
                                 {"exportedXtk", exported.crossTrackNm},
                                 {"exportedSide", exported.crossTrackSide},
                                 {"exportedTrack", exported.desiredTrackMag},
                                 {"exportedBearing", exported.bearingToWaypointMag},
                                 {"exportedLnav", exported.lnavEngaged},
                                 {"holds", holdList.count},
                                 {"held", holdFlight.holdActive},
                                 {"corner", holdFlight.holdTargetCorner},
                                 {"holdState", static_cast<double>(holdFlight.holdState)}});
    const HoldPattern& hold = holdList.holds[1];
    values.insert(values.end(), {{"holdAt", hold.fixIndex}, {"holdNm", hold.legDistanceNm}});
    for (const HoldCorner& corner : hold.corners) {
        values.insert(values.end(), {{corner.name + ".lat", corner.latitude},
                                     {corner.name + ".lon", corner.longitude}});
    }
    return values;
}

// What makes a moment worth a line.
std::string Moment() {
    return Format("to %d lnav %d track %d%d hold %d of %d %d.%d %d turn %d %s near %d said %d '%s'",
                  planBook.activeIndex, guidance.lnavEngaged, guidance.trackLeg, guidance.joinLeg,
                  holdList.holds[1].fixIndex, holdList.count, holdFlight.holdActive,
                  holdFlight.holdTargetCorner, static_cast<int>(holdFlight.holdState),
                  static_cast<int>(guidance.pendingTurnSide), guidance.directToTurn.c_str(),
                  guidance.destinationNearDone, messages.count, exported.activeIdent.data());
}

// The events since `written`: headings as how many and the last, the others one by one.
std::string SentSince(std::size_t& written) {
    std::string text;
    int headings = 0;
    const auto& events = test::FakeSimulator::Get().events;
    for (; written < events.size(); ++written) {
        const auto& [event, value] = events[written];
        headings += event == test::kHeadingBugEvent ? 1 : 0;
        text +=
            event == test::kHeadingBugEvent ? "" : Format(" %d=%d", event, static_cast<int>(value));
    }
    return Format(" sent %dx %d", headings, guidance.lastHeadingSent) + text;
}

void Record(const LateralFlight& flight, std::ostream& out) {
    ResetModuleState();
    test::FakeSimulator::Install();
    TestAircraft pilot = flight.pilot;
    ParsePlanText(std::string("[FlightPlan]\n") + flight.plan, activePlan, nullptr, false);
    test::StartAt(pilot, flight.first);
    std::string moment;
    NamedValues before;
    std::size_t written = 0;
    auto next = flight.happenings.begin();
    for (double second = 0; second < flight.seconds; second += kFrameS) {
        for (; next != flight.happenings.end() && next->second <= second; ++next) {
            next->take(pilot);
        }
        pilot.Fly(kFrameS);
        UpdateFrame();
        if (std::string now = Moment(); now != moment || std::fmod(second, 60) == 0) {
            NamedValues values = AllValues();
            out << Format("%.1f %s passed %s %s", second, now.c_str(), guidance.passedIdent.c_str(),
                          guidance.passedTimeZulu.c_str())
                << SentSince(written) << '\n'
                << Changes(before, values);
            moment = std::move(now);
            before = std::move(values);
        }
    }
    for (std::int32_t i = 0; i <= activePlan.lastIndex; ++i) {
        out << activePlan.entries[i].ident << ' ' << activePlan.entries[i].ataText << '\n';
    }
    for (std::int32_t i = 1; i <= messages.count; ++i) {
        out << "said " << messages.lines[i] << '\n';
    }
}

TEST(RecordedLateralFlights, GoAsTheyWentWhenLastLookedAt) {
    std::ostringstream now;
    for (const LateralFlight& flight : kFlights) {
        now << "# " << flight.name << '\n';
        Record(flight, now);
    }
    ImportTable.panel.services = nullptr;
    test::ExpectAsKept(now.str(), "host/lateral.txt");
}

}  // namespace
}  // namespace avq1
