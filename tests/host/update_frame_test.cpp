// The per-frame update, rule by rule.
#include "host/update_frame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "base/module_state.h"
#include "displays/mfd/mfd.h"
#include "flightlog/flight_log.h"
#include "flightplan/hold_pattern.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "simlink/exported_variables.h"
#include "support/placement.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::FakeSimulator;
using test::SetActivePlan;
using test::StartAt;
using test::TestAircraft;
using ::testing::ElementsAre;

constexpr std::initializer_list<test::PlanEntry> kEquator3 = {
    {"AAA", 0, 0}, {"BBB", 0, 1}, {"CCC", 0, 2}};
constexpr std::initializer_list<test::PlanEntry> kEquator4 = {
    {"AAA", 0, 0}, {"BBB", 0, 1}, {"CCC", 0, 2}, {"DDD", 0, 3}};

class UpdateFrameTest : public ::testing::Test {
  protected:
    UpdateFrameTest() { ResetModuleState(); }
    ~UpdateFrameTest() override { ImportTable.panel.services = nullptr; }

    void Tick() {
        simulator.NextTick();
        UpdateFrame();
    }
    // What one frame refreshes the next one acts on.
    void TwoTicksAt(double latitude, double longitude) {
        TickAt(latitude, longitude);
        TickAt(latitude, longitude);
    }
    // Flies a plan from a place, with LNAV toward entry `index`.
    void Start(std::initializer_list<test::PlanEntry> plan, std::int32_t index, double longitude,
               double latitude = 0) {
        SetActivePlan(plan);
        pilot.latitude = latitude;
        pilot.longitude = longitude;
        StartAt(pilot, index);
    }
    // One tick with the aircraft put somewhere.
    void TickAt(double latitude, double longitude) {
        pilot.latitude = latitude;
        pilot.longitude = longitude;
        pilot.Report();
        Tick();
    }

    FakeSimulator& simulator = FakeSimulator::Install();
    TestAircraft pilot;
};

TEST_F(UpdateFrameTest, TenGaugesInATickMakeOnePass) {
    Start({{"AAA", 0, 0}, {"BBB", 0, 1}, {"CCC", 0, 1.04}, {"DDD", 0, 1.08}}, 1, 0.96);
    simulator.NextTick();
    simulator.events.clear();
    for (int gauge = 0; gauge < 10; ++gauge) {
        UpdateFrame();
    }
    EXPECT_EQ(planBook.activeIndex, 2);
    EXPECT_EQ(simulator.CountEvents(test::kHeadingBugEvent), 1);
    EXPECT_EQ(guidance.framesSinceStart, 1);
}

TEST_F(UpdateFrameTest, AWaypointLeftBehindIsPassed) {
    const struct {
        double distanceNm;
        double angle;  // between the bearing to it and the leg
        double headingHold;
        int lastIndex;  // the last but one must be reached
        bool holdAtFix, passed;
    } rows[] = {{8, 95, 1, 3, false, true},      {9.95, 95, 1, 3, false, true},
                {10.05, 95, 1, 3, false, false}, {8, 90.7, 1, 3, false, false},
                {8, 91.3, 1, 3, false, true},    {8, 95, 0, 3, false, false},
                {8, 95, 1, 2, false, false},     {8, 95, 1, 3, true, false},
                {8, 95, 0.6, 3, false, true}};
    for (const auto& row : rows) {
        ResetModuleState();
        SetActivePlan(kEquator4);
        activePlan.CutTo(row.lastIndex);
        const double beyond = (row.angle - 90) * kDegToRad;
        pilot.longitude = 1 + row.distanceNm / 60 * std::sin(beyond);
        pilot.latitude = row.distanceNm / 60 * std::cos(beyond);
        StartAt(pilot, 1);
        if (row.holdAtFix) {
            holdList.count = 1;
            holdList.holds[1].fixIndex = 1;
        }
        simulator.variables[106] = row.headingHold;
        Tick();
        EXPECT_EQ(planBook.activeIndex, row.passed ? 2 : 1)
            << row.distanceNm << ' ' << row.angle << ' ' << row.headingHold << row.lastIndex;
    }
}

TEST_F(UpdateFrameTest, TheHeadingIsSentOnlyWhenItChanges) {
    Start({{"AAA", 0, 0}, {"BBB", 0, 2}, {"CCC", 0, 4}}, 1, 0);
    const struct {
        std::int32_t variable;  // 82 the variation, 106 the heading hold
        double value;
        std::vector<std::uint32_t> sent;
    } rows[] = {{82, -33.7, {123}},  // course 90 true is 123.7 magnetic
                {82, -33.2, {123}},
                {106, 0, {123}},  // off, and on again: sent at once
                {106, 1, {123, 123}},
                {82, 89.3, {123, 123, 360}}};  // 0.7 degrees
    for (const auto& row : rows) {
        simulator.variables[row.variable] = row.value;
        Tick();
        std::vector<std::uint32_t> sent;
        for (const auto& [event, degrees] : simulator.events) {
            EXPECT_EQ(event, 66042);
            sent.push_back(degrees);
        }
        EXPECT_EQ(sent, row.sent) << row.variable << ' ' << row.value;
    }
}

TEST_F(UpdateFrameTest, TheLastEntryEndsTheFlight) {
    const struct {
        int lnavOff, vnavOff, topOfClimbReached;
        std::uint32_t lnavOnFinalLeg, vnavOnFinalLeg;  // and tuned for it only with LNAV
    } rows[] = {{0, 0, 1, 1, 1}, {1, 0, 1, 0, 1}, {0, 1, 1, 1, 0}, {0, 1, 0, 1, 1}};
    for (const auto& row : rows) {
        ResetModuleState();
        settings.LnavOffAtLastWpt = row.lnavOff;
        settings.VnavOffAtLastWpt = row.vnavOff;
        Start({{"AAA", 0, 0}, {"BBB", 0, 1}, {"CCC", 0, 2, "VOR", "", "113.90"}}, 1, 0.97);
        settings.LnavSetEnRouteFreqs = 1;
        simulator.events.clear();
        guidance.vnavEngaged = 1;
        vnav.topOfClimbReached = row.topOfClimbReached;
        TickAt(0, 0.97);
        ASSERT_EQ(planBook.activeIndex, 2);
        EXPECT_EQ(exported.lnavEngaged, row.lnavOnFinalLeg);
        EXPECT_EQ(exported.vnavEngaged, row.vnavOnFinalLeg);
        EXPECT_EQ(simulator.CountEvents(test::kNavFrequencyEvent), row.lnavOff == 1 ? 0 : 1);
        TwoTicksAt(0, 1.97);
        EXPECT_EQ(exported.lnavEngaged, 0U);
        EXPECT_EQ(planBook.activeIndex, 2);
    }
}

// Installing any gauge is enough.
TEST_F(UpdateFrameTest, APlanStartedOnTheGroundBeginsALog) {
    test::Placement("LNAV", nullptr).Send(PanelEvent::Install);
    const struct {
        double groundSpeedKt;
        std::int32_t lastIndex;
        std::int32_t phase;
        double elapsedSeconds;
    } rows[] = {{4.9, 2, 1, 0}, {5, 2, 3, 77}, {4.9, -1, 3, 77}};
    for (const auto& row : rows) {
        SetActivePlan(kEquator3);
        activePlan.CutTo(row.lastIndex);
        aircraft.groundSpeedKt = row.groundSpeedKt;
        flightLog.phase = 3;
        guidance.elapsedSeconds = 77;
        StartActivePlan();
        EXPECT_EQ(flightLog.phase, row.phase) << row.groundSpeedKt << row.lastIndex;
        EXPECT_EQ(guidance.elapsedSeconds, row.elapsedSeconds);
    }
    EXPECT_EQ(FlightLogStarted, 1);
}

TEST_F(UpdateFrameTest, SecondsAreCountedWhileTheLogIsOpen) {
    for (const auto& [second, phase] : {std::pair{1, 3}, {1, 3}, {0, 3}, {10, kFlightLogDone}}) {
        flightLog.phase = phase;
        simulator.variables[5] = second;
        Tick();
    }
    EXPECT_EQ(guidance.elapsedSeconds, 2);
}

TEST_F(UpdateFrameTest, TheBlinkCycleRestsSixFramesAndWraps) {
    std::vector<std::int32_t> counts;
    for (int frame = 1; frame <= 10; ++frame) {
        TickAt(0, 0);
        counts.push_back(guidance.blinkCounter);
        guidance.blinkCounter = frame == 8 ? 90 : guidance.blinkCounter;
    }
    EXPECT_THAT(counts, ElementsAre(0, 0, 0, 0, 0, 0, 1, 2, 91, 0));
}

TEST_F(UpdateFrameTest, TheMfdPanelIsMissedAfterElevenStillFrames) {
    DrawMfdPanel();
    mfd.mfdMapModeOn = 1;
    mfd.map.radius = 80;
    for (int frame = 0; frame < 41; ++frame) {
        mfd.panelFrameCounter = std::min(frame, 29);
        EXPECT_EQ(mfd.mfdMapModeOn, 1) << frame;
        TickAt(0, 0);
    }
    EXPECT_EQ(mfd.panelDrawn, 0);
    EXPECT_EQ(mfd.mfdPanelPresent, 1) << "a menu once had is kept";
    EXPECT_EQ(mfd.mfdMapModeOn, 0);
    EXPECT_EQ(mfd.map.radius, 53);
    EXPECT_EQ(guidance.blinkCounter, 0);
    DrawMfdPanel();
    EXPECT_EQ(mfd.panelDrawn, 1);
}

TEST_F(UpdateFrameTest, TheAutopilotGoingOffReleasesTheAirspeedHold) {
    for (const auto& [setting, speedHold] : {std::pair{1, 1}, {0, 1}, {1, 0}}) {
        simulator.events.clear();
        settings.SetSpdOffwhenAPMasterSetOff = setting;
        simulator.variables[115] = speedHold;
        for (const double autopilot : {0.0, 1.0, 0.0, 0.0}) {
            simulator.variables[103] = autopilot;
            TickAt(0, 0);
        }
        EXPECT_EQ(simulator.CountEvents(65859), setting * speedHold) << setting << speedHold;
    }
}

TEST_F(UpdateFrameTest, QueuedRequestsAreServedOnce) {
    requests.radioTuneMode = 1;
    requests.radioEntry = "270 385";
    TickAt(0, 0);
    EXPECT_EQ(simulator.CountEvents(test::kCourseEvent), 1);
    TickAt(0, 0);
    EXPECT_EQ(simulator.CountEvents(test::kCourseEvent), 1);
}

TEST_F(UpdateFrameTest, NothingTheSimulatorSaysBreaksTheUpdate) {
    settings.LnavSetEnRouteFreqs = 1;
    for (const double value : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300, 0.0}) {
        SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, 1, "VOR", "", "113.90"}, {"CCC", 0, 2, "APT"}});
        pilot = TestAircraft{};
        StartAt(pilot, 1);
        for (int variable = 2; variable < 860; ++variable) {
            simulator.variables[variable] = value;
        }
        simulator.variables[106] = 1;
        for (int frame = 0; frame < 5; ++frame) {
            Tick();
        }
        for (const auto& [event, parameter] : simulator.events) {
            if (event == test::kHeadingBugEvent) {
                EXPECT_GE(parameter, 1U) << value;
                EXPECT_LE(parameter, 360U) << value;
            }
        }
    }
}

}  // namespace
}  // namespace avq1
