// Planning and commands of the vertical guidance, rule by rule.
#include "guidance/vnav.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "base/messages.h"
#include "base/module_state.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/predictions.h"
#include "guidance/vnav/flight_values.h"
#include "guidance/vnav/flown.h"
#include "guidance/vnav/planning.h"
#include "guidance/vnav/table_optimum.h"
#include "settings/settings.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::FakeSimulator;
using ::testing::ElementsAre;

constexpr std::int32_t kAirspeedEvent = 66037;

TEST(LevelRule, GivesTheLevelsOfTheCourse) {
    const struct {
        double altitude;
        double westbound;
        double eastbound;
    } rows[] = {{35000, 34000, 35000}, {34000, 34000, 33000}, {41000, 40000, 41000},
                {41999, 40999, 41999}, {42000, 43000, 45000}, {44000, 43000, 45000},
                {46999, 43000, 45000}, {47000, 47000, 45000}, {49000, 47000, 49000},
                {51000, 51000, 49000}, {53000, 51000, 53000}, {55000, 55000, 53000},
                {57000, 55000, 57000}, {60000, 55000, 57000}};
    for (const auto& row : rows) {
        EXPECT_EQ(ApplyLevelRule(row.altitude, 180), row.westbound) << row.altitude;
        EXPECT_EQ(ApplyLevelRule(row.altitude, 360), row.westbound) << row.altitude;
        EXPECT_EQ(ApplyLevelRule(row.altitude, 179.9), row.eastbound) << row.altitude;
    }
}

TEST(ClimbLimit, IsHalfTheRouteLessALongOnesFifteen) {
    const double rows[][3] = {{60, 30, 30},    {70, 35, 35},      {71, 20.5, 20.5}, {500, 235, 235},
                              {900, 435, 435}, {901, 435.5, 200}, {1000, 485, 200}};
    for (const auto& row : rows) {
        EXPECT_DOUBLE_EQ(ClimbLimitNm(row[0]), row[1]) << row[0];
        EXPECT_DOUBLE_EQ(TablePhaseLimitNm(row[0]), row[2]) << row[0];
    }
}

TEST(TableAverages, WeighAsWrittenWithinTheirRows) {
    const auto average = [](const std::vector<TableStep>& steps) {
        const TableAverages averages = AverageSteps(steps);
        return std::vector{std::round(averages.speedTas), std::round(averages.rate)};
    };
    EXPECT_THAT(average({}), ElementsAre(0, 0));
    EXPECT_THAT(average({{300, 2000, 60}, {400, 1000, 60}}), ElementsAre(350, 1500));
    EXPECT_THAT(average({{300, 2000, 100}, {400, 1000, 50}}),  // sum of s/t times t / n squared
                ElementsAre((3.0 + 8.0) * 150 / 4 > 400 ? 400 : 0, 1500));
    EXPECT_THAT(average({{300, 100, 10}, {310, 100, 1000}}), ElementsAre(310, 100));
}

class VnavTest : public ::testing::Test {
  protected:
    VnavTest() : simulator(FakeSimulator::Install()) {
        ResetModuleState();
        FakeSimulator::Install();
        performance.climbIas = 250;
        performance.climbTas = 300;
        performance.climbRate = 2000;
        performance.cruiseIas = 280;
        performance.descentIas = 250;
        performance.descentTas = 300;
        performance.descentRate = 1500;
        planBook.status = RouteStatus::Active;
        aircraft.tick = 1;
    }
    ~VnavTest() override { ImportTable.panel.services = nullptr; }

    // Entries a degree apart on the equator, the last at sea level; the aircraft over the first,
    // flying to the second.
    void MakePlan(std::initializer_list<double> constraints, std::int32_t cruiseFt = 30000) {
        activePlan.CutTo(-1);
        std::int32_t i = 0;
        for (const double altitude : constraints) {
            PlanWaypoint entry;
            entry.ident = "P" + std::to_string(i);
            entry.longitude = i++;
            entry.type = "INT";
            entry.altitude = altitude > 0 ? altitude : kUnset;
            entry.altitudeConstraint = altitude > 0 ? 1 : 0;
            activePlan.Append(std::move(entry));
        }
        activePlan.Edit(activePlan.lastIndex).altitude = 0;
        planBook.cruiseAltitudeFt = cruiseFt;
        FlyFrom(0, 0, 1);
        StartActivePlan();
    }

    void FlyFrom(double longitude, double altitudeFt, std::int32_t index) {
        aircraft.latitude = 0;
        aircraft.longitude = longitude;
        aircraft.altitudeFt = altitudeFt;
        aircraft.groundSpeedKt = 300;
        aircraft.indicatedAirspeedKt = 250;
        SetActiveWaypoint(index);
    }

    test::EventList Sent() { return std::exchange(FakeSimulator::Get().events, {}); }

    FakeSimulator& simulator;
};

TEST_F(VnavTest, ACruiseAltitudeIsFoundAMinuteAtATime) {
    const struct {
        double lastDegree;
        double altitude;
        std::int32_t rate;
        std::int32_t most;
        double found;
    } rows[] = {
        // 5 nm a minute at 2000 ft: the limit of 60 nm is 30 nm, reached at 12000 ft.
        {1, 0, 2000, 41000, 11000},    {1, 400, 2000, 41000, 11000},  // whole thousands first
        {-1, 0, 2000, 41000, 12000},                                  // westbound
        {10, 0, 2000, 41000, 41000},                                  // the aircraft's highest
        {10, 0, 2000, 41500, 41000},   {40, 0, 100, 41000, 0},        // not within 199 minutes
        {40, 0, 100, 19900, 19000},                                   // in the last of them
        {10, 0, 0, 41000, 0},                                         // no rate
        {0.001, 0, 2000, 41000, 1000},                                // a minute at least
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.found);
        ResetModuleState();
        performance.climbTas = 300;
        performance.climbRate = row.rate;
        performance.climbIas = 250;
        performance.maxCruiseAltitude = row.most;
        test::SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, row.lastDegree}});
        FlyFrom(0, row.altitude, 1);
        const bool planned = PlanVerticalProfile(0, 1);
        EXPECT_EQ(planned, vnav.cruiseAltitude > 0);
        EXPECT_EQ(vnav.cruiseAltitude, row.found);
        EXPECT_EQ(messages.count, planned ? 0 : 1);
    }
    test::SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, 1}});
    FlyFrom(0, 0, 1);
    const std::int32_t before = messages.count;
    for (const auto& [rate, said] : {std::pair{0, 1}, {0, 1}, {2000, 1}, {0, 2}}) {
        performance.climbRate = rate;  // said once, and again when it was found meanwhile
        EXPECT_EQ(PlanVerticalProfile(9000, 1), rate > 0);
        EXPECT_EQ(messages.count - before, said);
    }
}

TEST_F(VnavTest, RestrictionsAboveOrBelowAreTargetsWhereThePathViolatesThem) {
    const struct {
        std::int32_t crossing;
        double altitude;
        bool target;
    } rows[] = {{kCrossAt, 20000, true},         {kCrossAtOrAbove, 17000, false},
                {kCrossAtOrAbove, 19000, true},  {kCrossAtOrBelow, 17000, true},
                {kCrossAtOrBelow, 19000, false}, {kNoCrossing, 10000, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.altitude);
        MakePlan({0, 0, 0, 0, 20000, 0});
        activePlan.Edit(4).altitudeConstraint = row.crossing;
        activePlan.Edit(4).altitude = row.altitude;
        StartActivePlan();
        EXPECT_EQ(vnav.targets[4], row.target);
        planBook.verticalTargetIndex = 3;  // an edit that changes no route or restriction
        activePlan.Edit(1).ataText = "12:34";
        ReplanChangedRoute();
        EXPECT_EQ(planBook.verticalTargetIndex, row.target ? 4 : 5);
        activePlan.Edit(4).altitudeConstraint = kCrossAt;
        ReplanChangedRoute();
        EXPECT_EQ(planBook.verticalTargetIndex, 4);
    }
}

TEST_F(VnavTest, ThePilotIsAdvisedOnce) {
    const struct {
        const char* message;
        void (*change)();
        int said;
    } rows[] = {
        {"RESET AP ALT", [] { vnav.distanceToTarget = 9.9; }, 1},
        {"RESET AP ALT", [] { vnav.distanceToTarget = 10; }, 0},
        {"RESET AP ALT", [] { vnav.distanceToTarget = 9, settings.VnavSetAlts = 1; }, 0},
        {"RESET AP ALT", [] { vnav.distanceToTarget = 9, guidance.vnavEngaged = 0; }, 0},
        {"UNABLE NEXT ALT", [] { vnav.descentActive = vnav.targetIsEntry = 1; }, 1},
        {"UNABLE NEXT ALT", [] { vnav.descentActive = 1, vnav.targetIsEntry = 0; }, 0},
        {"UNABLE NEXT ALT", [] { vnav.targetIsEntry = 1; }, 0},
        {"UNABLE NEXT ALT",
         [] { vnav.descentActive = vnav.targetIsEntry = 1, vnav.requiredFpm = 3000; }, 0},
        {"UNABLE NEXT ALT",
         [] { vnav.descentActive = vnav.targetIsEntry = 1, vnav.targetAltitude = 29700; }, 0},
        {"DECELERATE", [] { guidance.distanceToGoNm = 4.9; }, 1},
        {"DECELERATE", [] { guidance.distanceToGoNm = 5; }, 0},
        {"DECELERATE", [] { guidance.distanceToGoNm = 4, vnav.topOfClimbReached = 0; }, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.message);
        ResetModuleState();
        MakePlan({0, 0, 0, 0, 0, 0});
        SetCrossing(activePlan, 1, {.speedKt = 200});
        aircraft.altitudeFt = 30000;
        aircraft.indicatedAirspeedKt = 250;
        guidance.distanceToGoNm = 40;
        guidance.vnavEngaged = vnav.topOfClimbReached = 1;
        settings.VnavSetAlts = 0;
        vnav.distanceToTarget = 50;
        vnav.requiredFpm = 3001;
        vnav.targetAltitude = 20000;
        row.change();
        const int before = messages.count;
        AdvisePilot();
        AdvisePilot();
        EXPECT_EQ(messages.count - before, row.said);
        EXPECT_TRUE(row.said == 0 || messages.lines[messages.count] == row.message);
    }
}

TEST_F(VnavTest, TheClimbIsCommandedWithinItsLimits) {
    const struct {
        double required;
        double sent;
    } rows[] = {{800, 1500}, {1499, 1500}, {2290, 2200}, {3450, 3000}, {2999, 2900}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.required);
        MakePlan({0, 0, 0, 0, 0, 0});
        guidance.vnavEngaged = 1;
        // At 300 kt ten minutes before the top of climb.
        aircraft.altitudeFt = 30000 - row.required * 10;
        aircraft.longitude = (vnav.tocNm - 50) / 60;
        SetActiveWaypoint(1);
        RunVerticalGuidance();
        EXPECT_NEAR(vnav.requiredFpm, row.required, 0.01);
        EXPECT_EQ(vnav.lastVsSent, row.sent);
    }
    // A restriction already climbed through is passed level.
    for (const auto& [altitude, sent] : {std::pair{9200, 1500}, {9201, 0}}) {
        MakePlan({0, 9000, 0, 0, 0, 0});
        guidance.vnavEngaged = 1;
        FlyFrom(0.5, altitude, 1);
        RunVerticalGuidance();
        EXPECT_EQ(vnav.lastVsSent, sent);
    }
}

TEST_F(VnavTest, LowAirspeedHoldsTheClimbUntilItIsWellAbove) {
    MakePlan({0, 0, 0, 0, 0, 0});
    guidance.vnavEngaged = 1;
    for (const auto& [kt, climbs] : {std::pair{200, true},
                                     {154, false},
                                     {160, false},
                                     {165, false},
                                     {166, true},
                                     {155, true},
                                     {154, false}}) {
        aircraft.indicatedAirspeedKt = kt;
        RunVerticalGuidance();
        EXPECT_EQ(vnav.vsCommand > 0, climbs) << kt;
    }
}

// In the descent ten minutes at 300 kt before the last entry.
TEST_F(VnavTest, TheDescentIsCommandedInHundredsThatStay) {
    MakePlan({0, 0, 0, 0, 0, 0});
    guidance.vnavEngaged = 1;
    vnav.topOfClimbReached = vnav.descentActive = 1;
    planBook.verticalTargetIndex = 5;
    vnav.todNm = 249;
    vnav.descentCruiseAltitude = 40000;  // far below the path
    vnav.descentPathLength = 1;
    const struct {
        double required;
        double sent;
    } rows[] = {{1870, -1800}, {1901, -1800}, {1924, -1800}, {1926, -1900}, {1876, -1900},
                {1874, -1800}, {2500, -2500}, {3450, -3000}, {1000, -1000}};
    AimAtTarget(0);
    EXPECT_EQ(vnav.targetAltitude, 0);
    vnav.targetAltitude = 100;
    for (const auto& row : rows) {
        FlyFrom(5 - 50.0 / 60, 100 + row.required * 10, 5);
        vnav.descentCruiseAltitude = 1e6;
        CommandVerticalSpeed();
        vnav.distanceToTarget = 50;
        CommandVerticalSpeed();
        EXPECT_NEAR(vnav.requiredFpm, row.required, 0.1);
        EXPECT_EQ(vnav.lastVsSent, row.sent) << row.required;
    }
    // At the target: in no time, but in no more than the autopilot takes to round off; and its
    // last feet are left to it.
    vnav.distanceToTarget = 0.5;
    for (const auto& [above, sent] :
         {std::pair{300, -2500}, {201, -1600}, {199, -1600}, {9, -1600}}) {
        aircraft.altitudeFt = 100 + above;
        CommandVerticalSpeed();
        EXPECT_EQ(vnav.lastVsSent, sent) << above;
    }
    aircraft.altitudeFt = 99;
    CommandVerticalSpeed();
    EXPECT_EQ(vnav.lastVsSent, 0);
    aircraft.altitudeFt = 10000;
    aircraft.indicatedAirspeedKt = 154;
    CommandVerticalSpeed();
    EXPECT_EQ(vnav.lastVsSent, 0);
}

TEST_F(VnavTest, TheTopOfClimbIsTwoHundredFeetBelowTheCruise) {
    for (const auto& [altitude, reached] : {std::pair{29750, 0}, {29800, 0}, {29801, 1}}) {
        MakePlan({0, 0, 0, 0, 0, 0});
        guidance.vnavEngaged = 1;
        aircraft.altitudeFt = altitude;
        RunVerticalGuidance();
        EXPECT_EQ(vnav.topOfClimbReached, reached) << altitude;
        const auto sent = Sent();
        EXPECT_EQ(std::count(sent.begin(), sent.end(), std::pair{kAirspeedEvent, 280U}), reached);
    }
}

TEST_F(VnavTest, TheDescentBeginsNearItsMarkOrPastIt) {
    const struct {
        double beforeNm;  // of the mark
        double latitude;
        bool begins;
    } rows[] = {{1.6, 0, false}, {1.4, 0, true}, {-4, 0.1, true}, {-4, 5, false}, {20, 0, false}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.beforeNm);
        MakePlan({0, 0, 0, 0, 0, 0});
        vnav.topOfClimbReached = 1;
        FlyFrom((vnav.todNm - row.beforeNm) / 60, 30000, row.beforeNm > 19 ? 3 : 4);
        aircraft.latitude = row.latitude;
        SetActiveWaypoint(planBook.activeIndex);
        vnav.crossingIndex = 0;
        RunVerticalGuidance();
        EXPECT_EQ(vnav.descentActive, row.begins ? 1 : 0);
        if (row.begins) {  // the path begins where the autopilot will have taken up the descent
            EXPECT_NEAR(vnav.todNm, AircraftAlongNm() + 0.75, 1e-6);
            EXPECT_EQ(vnav.pathAltitude, 30000);
        }
    }
}

TEST_F(VnavTest, KnobsAreThePilotsOnceTheyAreStill) {
    const SentTarget sent{1, -999, 250, 250};
    EXPECT_FALSE(TurnedByPilot(sent, 250, 250));
    EXPECT_FALSE(TurnedByPilot(sent, 250.9, 250.1));
    EXPECT_FALSE(TurnedByPilot(sent, 260, 250));  // still turning
    EXPECT_TRUE(TurnedByPilot(sent, 260, 260));
    EXPECT_FALSE(TurnedByPilot({0, -999, 250, 250}, 260, 260));
    EXPECT_FALSE(TurnedByPilot({1, 7, 250, 250}, 260, 260));  // sent in this frame
}

TEST_F(VnavTest, AClimbIsOverdueFromWhereItWasPlanned) {
    MakePlan({0, 0, 0, 0, 0, 0});
    guidance.vnavEngaged = 1;
    FlyFrom(0.9, 18000, 1);  // 30 nm before the cruise altitude is reached
    activePlan.Edit(3).latitude = 0.01;
    ReplanChangedRoute();
    EXPECT_EQ(vnav.predictedClimbDistance, 30);
    EXPECT_NEAR(vnav.tocNm, 84, 0.01);
    for (const auto& [longitude, over] : {std::pair{0.9, 0}, {1.64, 0}, {1.66, 1}}) {
        FlyFrom(longitude, 20000, 2);
        ApplyClimbFallback();
        EXPECT_EQ(vnav.topOfClimbReached, over) << longitude;
    }
    MakePlan({0, 9000, 0, 0, 0, 0});  // from the restriction passed, 75 nm and a half more
    guidance.lnavEngaged = guidance.vnavEngaged = 1;
    for (const auto& [longitude, over] : {std::pair{0.99, 0}, {2.85, 0}, {2.9, 1}}) {
        FlyFrom(longitude, 9000, longitude < 1 ? 1 : 3);
        SequenceWaypoint();
        ApplyClimbFallback();
        EXPECT_EQ(vnav.topOfClimbReached, over) << longitude;
    }
}

TEST_F(VnavTest, WhatIsSentIsWithinItsLimits) {
    performance.climbIasMin = performance.minVnavIas = 200;
    const double rows[][2] = {{280, 280}, {320, 320}, {321, 320}, {110, 110}, {109, 110}};
    performance.cruiseIas = 320;
    performance.descentIas = 110;
    for (const auto& [asked, sent] : rows) {
        SendSpeed(asked);
        EXPECT_EQ(vnav.speed.last, sent);
    }
    const double altitudes[][2] = {{-5, 0}, {0.9, 0}, {60000, 60000}, {60001, 60000}};
    for (const auto& [asked, sent] : altitudes) {
        SendAltitude(asked);
        EXPECT_EQ(vnav.altitude.last, sent);
    }
}

TEST_F(VnavTest, AWindIsTakenWithinItsLimits) {
    const double rows[][3] = {{-1, 50, 0}, {361, 50, 0},  {90, -1, 0}, {90, 251, 0},
                              {0, 0, 1},   {360, 250, 1}, {90, 60, 1}};
    for (const auto& [direction, speed, taken] : rows) {
        ClearCruiseWind();
        EXPECT_EQ(EnterCruiseWind(direction, speed), taken == 1) << direction;
        EXPECT_EQ(EnteredCruiseWind().entered, taken == 1);
    }
}

}  // namespace
}  // namespace avq1
