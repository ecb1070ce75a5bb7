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
#include "settings/performance_tables.h"
#include "settings/settings.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::FakeSimulator;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

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

    std::vector<double> Altitudes() const {
        std::vector<double> altitudes;
        for (std::int32_t i = 0; i <= activePlan.lastIndex; ++i) {
            altitudes.push_back(activePlan.entries[i].altitude);
        }
        return altitudes;
    }

    test::EventList Sent() { return std::exchange(FakeSimulator::Get().events, {}); }

    FakeSimulator& simulator;
};

TEST_F(VnavTest, FuelFlowsAreTheTablesUntilTheFlightHasShownThem) {
    using enum VerticalPhase;
    performanceTables.climb = {{10000, 0, 0, {9000, 8000, 7000}, 3}, {30000, 0, 0, {5000}, 1}};
    performanceTables.cruise = {{30000, 0, {4000, 3000}, 2}};
    performanceTables.descent = {{10000, 0, 0, 1000}, {20000, 0, 0, 600}};
    const struct {
        VerticalPhase phase;
        double altitudeFt;
        double flowPph;
    } rows[] = {{Climb, 5000, 8000},  {Climb, 10000, 8000}, {Climb, 15000, 7250},
                {Climb, 40000, 5000}, {Cruise, 1000, 4000}, {Descent, 12500, 900},
                {Descent, 20000, 600}};
    for (const auto& row : rows) {
        EXPECT_EQ(FuelFlowPph({}, row.phase, row.altitudeFt, 0), row.flowPph) << row.altitudeFt;
    }
    FlightExperience seen;
    seen.seen = 6;
    seen.meanFlowPph = 5000;
    seen.meanFpm = 1000;
    seen.flowPerFpm = 2;
    EXPECT_EQ(FuelFlowPph(seen, Climb, 5000, 2000), 7000);
    EXPECT_EQ(FuelFlowPph(seen, Descent, 5000, -2000), 990) << "idle, a third of level flight";
}

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
    activePlan.Edit(1).altitude = 12500;  // the levels above it begin at 15000
    performance.climbRate = 2000;
    FlyFrom(0, 0, 1);
    EXPECT_TRUE(PlanVerticalProfile(0, 1));
    vnav.topOfClimbReached = vnav.descentActive = 1;
    EXPECT_TRUE(PlanVerticalProfile(0, 0));
    EXPECT_EQ(vnav.Phase(), VerticalPhase::Climb) << "planned without filling: from the start";
    EXPECT_EQ(vnav.cruiseAltitude, 15000);
    const std::int32_t before = messages.count;
    for (const auto& [rate, said] : {std::pair{0, 1}, {0, 1}, {2000, 1}, {0, 2}}) {
        performance.climbRate = rate;  // said once, and again when it was found meanwhile
        EXPECT_EQ(PlanVerticalProfile(9000, 1), rate > 0);
        EXPECT_EQ(messages.count - before, said);
    }
}

TEST_F(VnavTest, EveryEntryGetsWhatItIsPassedAt) {
    performance.climbRate = 2010;  // 402 ft a mile up, 302 ft a mile down
    performance.descentRate = 1510;
    MakePlan({0, 0, 0, 0, 0, 0});
    EXPECT_THAT(Altitudes(), ElementsAre(kUnset, 24100, 30000, 30000, 18100, 0));
    EXPECT_EQ(activePlan.entries[1].speed, 250);
    EXPECT_EQ(activePlan.entries[2].speed, 280);
    MakePlan({0, 9000, 0, 0, 10000, 0});
    EXPECT_THAT(Altitudes(), ElementsAre(kUnset, 9000, 30000, 28100, 10000, 0));
    MakePlan({0, 0, 0, 6000, 0, 0});  // capped by the restriction the walk comes to
    EXPECT_THAT(Altitudes(), ElementsAre(kUnset, 24100, 24100, 6000, 6000, 0));
    activePlan.Edit(5).type = "APT";  // at sea level
    StartActivePlan();
    EXPECT_EQ(activePlan.entries[5].altitude, 0);
    EXPECT_EQ(activePlan.entries[5].speed, 250);
    performance.descentSpeedRestriction = 230;
    performance.descentRestrictionAltitude = 18100;
    MakePlan({0, 0, 0, 0, 0, 0});
    EXPECT_EQ(activePlan.entries[4].speed, 230);
    EXPECT_EQ(activePlan.entries[3].speed, 280);
}

TEST_F(VnavTest, MarksLieWhereTheRatesPutThem) {
    MakePlan({0, 0, 0, 0, 0, 0});
    EXPECT_EQ(vnav.predictedClimbDistance, 75);
    EXPECT_NEAR(vnav.tocLongitude * 60, 75, 1e-3);
    EXPECT_EQ(vnav.tocIndex, 1);
    EXPECT_NEAR(vnav.todLongitude * 60, 300 - 100, 1e-3);
    EXPECT_NEAR(TodDistanceToDestination(), 100, 1e-3);
    EXPECT_EQ(vnav.targetAltitude, 30000);
    EXPECT_EQ(planBook.verticalTargetIndex, 5);
    // The earliest that any restriction needs: of 12000 ft at 180 nm, not of 10000 ft at 240 nm.
    MakePlan({0, 0, 0, 12000, 10000, 0});
    EXPECT_NEAR(vnav.todLongitude * 60, 180 - 60, 1e-3);
    // A restriction of the climb is its first target, and its end until it has been passed.
    MakePlan({0, 9000, 0, 0, 0, 0});
    EXPECT_EQ(vnav.targetAltitude, 9000);
    EXPECT_EQ(planBook.verticalTargetIndex, 1);
    EXPECT_EQ(ComputeTopOfClimb(0), 1);
    EXPECT_EQ(ComputeTopOfClimb(1), 2);
    activePlan.Edit(1).procedure = "STAR";  // a long arrival must not stop the climb
    StartActivePlan();
    EXPECT_EQ(planBook.verticalTargetIndex, 1);
    EXPECT_EQ(vnav.targetAltitude, 30000);
}

TEST_F(VnavTest, ADescentEndsWhereTheRouteSaysHowLow) {
    const struct {
        const char* what;
        void (*change)();
        double todNm;  // 300: none, the cruise goes on
        std::int32_t target;
        double targetFt;
    } rows[] = {
        {"an altitude of its own", [] { activePlan.Edit(5).altitude = 3000; }, 210, 5, 3000},
        {"an airport", [] { activePlan.Edit(5).type = "APT"; }, 200, 5, 200},
        {"neither", [] { activePlan.Edit(5).altitude = kUnset; }, 300, 5, 30000},
        {"a restriction before it",
         [] {
             activePlan.Edit(5).altitude = kUnset;
             SetCrossing(activePlan, 4, {9000});
         },
         170, 4, 9000},
        {"a gap behind it",
         [] {
             activePlan.Edit(5).altitude = 3000;
             activePlan.Append(Discontinuity());
         },
         210, 5, 3000},
        {"a restriction above the cruise", [] { SetCrossing(activePlan, 4, {30100}); }, 200, 5, 0},
        {"one at the cruise", [] { SetCrossing(activePlan, 4, {30000}); }, 200, 4, 30000},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        MakePlan({0, 0, 0, 0, 0, 0});
        row.change();
        StartActivePlan();
        vnav.topOfClimbReached = 1;
        FlyFrom(2, 30000, 3);
        ReplanChangedRoute();
        RefreshPredictions();
        EXPECT_NEAR(vnav.todNm, row.todNm, 1e-3);
        EXPECT_EQ(ActivePredictions().topOfDescent.known, row.todNm < 300);
        EXPECT_EQ(planBook.verticalTargetIndex, row.target);
        EXPECT_EQ(vnav.targetAltitude, row.targetFt);
        FlyFrom(row.todNm / 60 - 0.001, 30000, row.target);
        RunVerticalGuidance();
        EXPECT_EQ(vnav.descentActive, row.targetFt < 30000 ? 1 : 0);
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

TEST_F(VnavTest, ARestrictionThatIsPassedIsKeptAsTheCruise) {
    MakePlan({0, 0, 0, 0, 0, 12000, 0, 3000, 0});
    vnav.topOfClimbReached = vnav.descentActive = 1;
    FlyFrom(5 - 2.0 / 60, 12500, 5);
    guidance.lnavEngaged = 1;
    SequenceWaypoint();
    EXPECT_EQ(planBook.activeIndex, 6);
    EXPECT_EQ(vnav.Phase(), VerticalPhase::Cruise);
    EXPECT_EQ(vnav.cruiseAltitude, 12000);
    EXPECT_EQ(vnav.crossingIndex, 5);
    EXPECT_EQ(planBook.verticalTargetIndex, 7);
    EXPECT_NEAR(vnav.todNm, 420 - 9000 / 300.0, 1e-3);
    // Nor is a higher one behind it aimed at.
    MakePlan({0, 0, 0, 0, 0, 12000, 13000, 3000, 0});
    vnav.topOfClimbReached = vnav.descentActive = 1;
    FlyFrom(5 - 2.0 / 60, 12500, 5);
    SequenceWaypoint();
    EXPECT_EQ(planBook.verticalTargetIndex, 7);
    // A restriction above the present cruise altitude never raises it.
    MakePlan({0, 0, 0, 0, 0, 12000, 0, 3000, 0}, 10000);
    vnav.topOfClimbReached = 1;
    FlyFrom(5 - 2.0 / 60, 10000, 5);
    SequenceWaypoint();
    EXPECT_EQ(vnav.cruiseAltitude, 10000);
}

TEST_F(VnavTest, SpeedsFollowTheSchedule) {
    performance.climbSpeedRestriction = performance.descentSpeedRestriction = 220;
    performance.climbRestrictionAltitude = performance.descentRestrictionAltitude = 10000;
    const struct {
        VerticalPhase phase;
        double altitude;
        std::int32_t constraint;
        double entrySpeed;
        std::int32_t sent;
    } rows[] = {
        {VerticalPhase::Climb, 9999, 0, 250, 220},    {VerticalPhase::Climb, 10000, 0, 250, 250},
        {VerticalPhase::Climb, 9000, 1, 240, 220},    {VerticalPhase::Climb, 9000, 1, 210, 210},
        {VerticalPhase::Climb, 12000, 1, 240, 240},   {VerticalPhase::Cruise, 20000, 0, 250, 280},
        {VerticalPhase::Descent, 20000, 0, 250, 250}, {VerticalPhase::Descent, 9000, 0, 250, 220},
        {VerticalPhase::Descent, 9000, 1, 240, 220},  {VerticalPhase::Descent, 12000, 1, 240, 240},
        {VerticalPhase::Descent, 12000, 1, 100, 155}, {VerticalPhase::Cruise, 20000, 0, kUnset, -1},
    };
    performance.climbIasMin = performance.descentIasMin = 180;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.altitude);
        SCOPED_TRACE(row.entrySpeed);
        performance.descentIas = 250;
        performance.cruiseIas = 280;
        MakePlan({0, 0, 0, 0, 0, 0});
        PlanWaypoint& entry = activePlan.Edit(1);
        entry.altitudeConstraint = row.constraint;
        entry.speed = row.entrySpeed;
        vnav.topOfClimbReached = row.phase == VerticalPhase::Climb ? 0 : 1;
        vnav.descentActive = row.phase == VerticalPhase::Descent ? 1 : 0;
        guidance.vnavEngaged = 1;
        aircraft.altitudeFt = row.altitude;
        guidance.distanceToGoNm = 24;
        vnav.speed = {};
        Sent();
        CommandSpeed();
        EXPECT_EQ(vnav.speed.set, 1);
        if (row.sent < 0) {
            EXPECT_THAT(Sent(), IsEmpty());
        } else {
            EXPECT_THAT(Sent(), ElementsAre(Pair(kAirspeedEvent, row.sent)));
        }
    }
}

TEST_F(VnavTest, TheFilesRestrictionsBeginAndEndOnceAtTheirAltitudes) {
    performance.climbSpeedRestriction = performance.descentSpeedRestriction = 220;
    performance.climbRestrictionAltitude = performance.descentRestrictionAltitude = 10000;
    const struct {
        VerticalPhase phase;
        double altitude;
        double flownKt;
        std::int32_t restricted;  // in the climb
        std::int32_t sent;        // 0: nothing
    } rows[] = {
        {VerticalPhase::Descent, 9999, 250, 0, 220}, {VerticalPhase::Descent, 10000, 250, 0, 0},
        {VerticalPhase::Descent, 9999, 220, 0, 0},   {VerticalPhase::Cruise, 9999, 250, 1, 0},
        {VerticalPhase::Climb, 10001, 220, 1, 250},  {VerticalPhase::Climb, 10000, 220, 1, 0},
        {VerticalPhase::Climb, 10001, 220, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.altitude);
        MakePlan({0, 0, 0, 0, 0, 0});
        vnav.topOfClimbReached = row.phase == VerticalPhase::Climb ? 0 : 1;
        vnav.descentActive = row.phase == VerticalPhase::Descent ? 1 : 0;
        vnav.climbRestrictionActive = row.restricted;
        guidance.vnavEngaged = 1;
        guidance.distanceToGoNm = 99;
        aircraft.altitudeFt = row.altitude;
        aircraft.apAirspeedTargetKt = row.flownKt;
        Sent();
        ApplySpeedRestrictions();
        const auto sent = Sent();
        EXPECT_EQ(sent.size(), row.sent != 0 ? 1U : 0U);
        EXPECT_TRUE(sent.empty() ||
                    sent.front() == std::pair(kAirspeedEvent, std::uint32_t(row.sent)));
        ApplySpeedRestrictions();
        EXPECT_THAT(Sent(), IsEmpty());
    }
}

TEST_F(VnavTest, SpeedsWaitForTheirConditions) {
    const struct {
        const char* what;
        void (*change)();
        bool sends;
    } rows[] = {
        {"as it is", [] {}, true},
        {"far away", [] { guidance.distanceToGoNm = 25; }, false},
        {"forced", [] { guidance.distanceToGoNm = 99, vnav.forceSpeed = 1; }, true},
        {"sent already", [] { vnav.speed.set = 1; }, false},
        {"not engaged", [] { guidance.vnavEngaged = 0; }, false},
        {"a route being built", [] { planBook.status = RouteStatus::AwaitsExecution; }, false},
        {"a modification waits", [] { planBook.status = RouteStatus::Modified; }, true},
        {"suspended", [] { settings.VnavSetSpd = 2; }, false},
        {"a restriction not yet overhead", [] { vnav.crossingIndex = 1; }, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        settings.VnavSetSpd = 1;
        MakePlan({0, 0, 0, 0, 0, 0});
        guidance.vnavEngaged = 1;
        guidance.distanceToGoNm = 24;
        vnav.speed = {};
        Sent();
        row.change();
        CommandSpeed();
        EXPECT_EQ(Sent().size(), row.sends ? 1U : 0U);
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

TEST_F(VnavTest, ACruiseAltitudeLoweredInTheClimbIsFlown) {
    const struct {
        std::int32_t cruise;
        VerticalPhase phase;
        std::int32_t fpm;
    } rows[] = {{25000, VerticalPhase::Climb, 2000},
                {20100, VerticalPhase::Cruise, 1500},
                {19900, VerticalPhase::Cruise, -1000},
                {18000, VerticalPhase::Cruise, -1000}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.cruise);
        MakePlan({0, 0, 0, 0, 0, 0});
        guidance.vnavEngaged = 1;
        FlyFrom(0.3, 20000, 1);
        RunVerticalGuidance();
        SetCruiseAltitude(row.cruise);
        RunVerticalGuidance();
        EXPECT_EQ(vnav.Phase(), row.phase);
        EXPECT_EQ(vnav.altitude.last, row.cruise);
        EXPECT_EQ(vnav.lastVsSent, row.fpm);
    }
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

TEST_F(VnavTest, ATypedSpeedStaysAndIsFlown) {
    MakePlan({0, 0, 0, 0, 0, 0});
    EXPECT_TRUE(SetCrossing(activePlan, 1, {.speedKt = 233}));
    EXPECT_TRUE(SetCrossing(activePlan, 2, {.altitudeFt = 9000, .keepsSpeed = true}));
    ReplanChangedRoute();
    EXPECT_EQ(activePlan.entries[1].speed, 233);
    EXPECT_EQ(activePlan.entries[1].altitude, 9000);
    EXPECT_EQ(activePlan.entries[2].speed, 280) << "as it was filled in";
    guidance.vnavEngaged = 1;
    guidance.distanceToGoNm = 24;
    Sent();
    CommandSpeed();
    EXPECT_THAT(Sent(), ElementsAre(Pair(kAirspeedEvent, 233)));
    EXPECT_TRUE(SetCrossing(activePlan, 1, {}));
    ReplanChangedRoute();
    EXPECT_EQ(activePlan.entries[1].speed, 250);
}

TEST_F(VnavTest, ARestrictionFarAheadDoesNotChangeTheCruiseSpeed) {
    MakePlan({0, 0, 0, 12000, 0, 0}, 15000);
    EXPECT_TRUE(SetCrossing(activePlan, 3, {12000, 200}));
    ReplanChangedRoute();
    vnav.topOfClimbReached = guidance.lnavEngaged = guidance.vnavEngaged = 1;
    FlyFrom(2 - 2.0 / 60, 15000, 2);
    Sent();
    SequenceWaypoint();
    EXPECT_THAT(Sent(), Contains(Pair(kAirspeedEvent, 280)));
    FlyFrom(3 - 24.0 / 60, 15000, 3);
    vnav.speed.set = 0;
    CommandSpeed();
    EXPECT_THAT(Sent(), ElementsAre(Pair(kAirspeedEvent, 200)));
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

TEST_F(VnavTest, ItsButtonEngagesAnewAndLetsGo) {
    MakePlan({0, 0, 0, 0, 0, 0});
    settings.VnavSetSpd = 2;  // stopped by the pilot's knob
    ToggleVnav();
    EXPECT_EQ(guidance.vnavEngaged, 1);
    EXPECT_EQ(vnav.forceSpeed, 1);
    EXPECT_EQ(settings.VnavSetSpd, 1);
    ToggleVnav();
    EXPECT_EQ(guidance.vnavEngaged, 0);
    SetActiveWaypoint(kNoWaypoint);
    ToggleVnav();
    EXPECT_EQ(guidance.vnavEngaged, 0);
    EXPECT_EQ(ComputeOptimumFromTables() + OptimumCruiseAltitude(), 0);
}

TEST_F(VnavTest, WhatTheAutopilotShowsInTheNextFrameIsNotThePilots) {
    const struct {
        double altitudeFt, speedKt;
        std::int32_t engaged, setsSpeed;
    } rows[] = {{29900, 248, 1, 1}, {12000, 248, 0, 1}, {29900, 230, 1, 2}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.altitudeFt);
        MakePlan({0, 0, 0, 0, 0, 0});
        settings.VnavOffOnManAltChg = settings.VnavSetSpdOffOnManSpdChg = settings.VnavSetSpd = 1;
        guidance.vnavEngaged = 1;
        guidance.distanceToGoNm = 20;
        CommandVerticalSpeed();
        CommandSpeed();
        aircraft.tick += 1;  // the autopilot took over what was sent as it could
        aircraft.apAltitudeTargetFt = 29900;
        aircraft.apAirspeedTargetKt = 248;
        ReadBackCommands();
        aircraft.tick += 1;
        aircraft.apAltitudeTargetFt = aircraft.previousApAltitudeTargetFt = row.altitudeFt;
        aircraft.apAirspeedTargetKt = aircraft.previousApAirspeedTargetKt = row.speedKt;
        ReadBackCommands();
        CommandSpeed();
        CommandVerticalSpeed();
        EXPECT_EQ(guidance.vnavEngaged, row.engaged);
        EXPECT_EQ(settings.VnavSetSpd, row.setsSpeed);
    }
}

TEST_F(VnavTest, ANewRouteIsPredictedAsItWillBeStarted) {
    MakePlan({0, 0, 0, 0, 0, 0});
    vnav.topOfClimbReached = vnav.descentActive = 1;
    vnav.cruiseAltitude = 9000;
    CopyActiveToModified();
    for (const auto& [status, cruise] :
         {std::pair{RouteStatus::Modified, 9000}, {RouteStatus::AwaitsExecution, 30000}}) {
        planBook.status = status;
        modifiedPlan.Edit(1).ataText = "";  // another revision
        EXPECT_EQ(ModifiedPredictions().cruiseAltitudeFt, cruise);
        EXPECT_EQ(ModifiedPredictions().topOfClimb.known, cruise == 30000);
    }
}

TEST_F(VnavTest, TheKnobEndsVnavWhereAltitudesAreNotSentToo) {
    for (const std::int32_t sends : {0, 1}) {
        MakePlan({0, 0, 0, 0, 0, 0});
        settings.VnavSetAlts = sends;
        settings.VnavOffOnManAltChg = guidance.vnavEngaged = 1;
        vnav.altitude = {1, kNothingSent, 30000, 30000};
        aircraft.apAltitudeTargetFt = aircraft.previousApAltitudeTargetFt = 12000;
        CommandVerticalSpeed();
        EXPECT_EQ(guidance.vnavEngaged, 0);
    }
}

// At sea level, where a true airspeed is an indicated one.
TEST_F(VnavTest, PredictionsAreFlownAtTheSpeedsAndInTheWindsAhead) {
    const struct {
        const char* what;
        void (*change)();
        double minutes;  // over 60 nm
    } rows[] = {
        {"the pilot's own", [] {}, 15},
        {"a headwind", [] { aircraft.windSpeedKt = 40; }, 18},
        {"as commanded", [] { guidance.vnavEngaged = 1; }, 14.4},
        {"nobody has the throttles", [] { guidance.vnavEngaged = 1, aircraft.apSpeed115 = 0; }, 15},
        {"another cruise speed", [] { guidance.vnavEngaged = 1, performance.cruiseIas = 300; }, 12},
        {"not yet flying", [] { aircraft.indicatedAirspeedKt = 40; }, 14.4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        performance.cruiseIas = 250;
        guidance.vnavEngaged = 0;
        MakePlan({0, 0, 0, 0, 0, 0});
        vnav = {};
        aircraft.windDirection = 90;
        aircraft.windSpeedKt = 0;
        aircraft.indicatedAirspeedKt = 240;
        aircraft.apSpeed115 = 1;
        aircraft.zuluHour = 23;
        aircraft.zuluMinute = 50;
        aircraft.clockSecond = 0;
        RefreshPredictions();  // each change is seen in the same second
        row.change();
        aircraft.clockSecond += std::string_view(row.what) == "a headwind" ? 5 : 0;
        RefreshPredictions();
        EXPECT_NEAR(ActiveWaypointPrediction().minutes, row.minutes, 0.01);
        EXPECT_EQ(ShownMinutesTo(ActiveWaypointPrediction()), ActiveWaypointPrediction().minutes);
        EXPECT_NEAR(ActiveWaypointPrediction().zuluMinutes,
                    row.minutes - 10 + aircraft.clockSecond / 60, 0.01);
    }
    aircraft.groundSpeedKt = 25;
    EXPECT_TRUE(std::isnan(ShownMinutesTo(ActiveWaypointPrediction())));
    SetActiveWaypoint(kNoWaypoint);
    EXPECT_FALSE(ActiveWaypointPrediction().known);
}

TEST_F(VnavTest, ThePresentWindTurnsIntoTheOneEntered) {
    const double rows[][3] = {{-1, 50, 0}, {361, 50, 0},  {90, -1, 0}, {90, 251, 0},
                              {0, 0, 1},   {360, 250, 1}, {90, 60, 1}};
    for (const auto& [direction, speed, taken] : rows) {
        ClearCruiseWind();
        EXPECT_EQ(EnterCruiseWind(direction, speed), taken == 1) << direction;
        EXPECT_EQ(EnteredCruiseWind().entered, taken == 1);
    }
    MakePlan({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    vnav = {};
    const auto groundSpeedAt = [](std::size_t index) {
        RefreshPredictions();
        return ActivePredictions().entries[index].groundSpeedKt;
    };
    aircraft.indicatedAirspeedKt = 240;
    EXPECT_NEAR(groundSpeedAt(1), 240 - 60 * (1 - std::exp(-55 / 150.0)), 0.1);
    EXPECT_NEAR(groundSpeedAt(10), 180, 2);
    CopyActiveToModified();
    planBook.status = RouteStatus::Modified;
    const double intoTheWind = ModifiedPredictions().entries[10].groundSpeedKt;
    ClearCruiseWind();
    EXPECT_NEAR(groundSpeedAt(10), 240, 0.1);
    EXPECT_NEAR(ModifiedPredictions().entries[10].groundSpeedKt, intoTheWind + 60, 2);
    aircraft.altitudeFt = 700;  // without a profile it is kept
    ClearCruiseWind();
    RefreshPredictions();
    EXPECT_EQ(ActivePredictions().entries[10].altitudeFt, 700);
}

}  // namespace
}  // namespace avq1
