// The performance, vertical and reference pages: what each line takes and shows, what waits for
// EXEC, and a flight's entries key by key.
#include <gmock/gmock.h>

#include <sstream>

#include "base/redraw.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/fake_smiths.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/performance_entries.h"
#include "guidance/progress.h"
#include "guidance/vnav.h"
#include "settings/aircraft_performance.h"
#include "settings/performance_tables.h"
#include "settings/settings.h"
#include "support/kept_file.h"

namespace avq1::test {
namespace {

using ::testing::HasSubstr;

constexpr const char* kInvalid = "INVALID ENTRY";

class SmithsPerformance : public SmithsTest {
  protected:
    SmithsPerformance() {
        MakeDatabase();
        SetJet();
    }

    // As it is in the morning.
    void BeginAnew() {
        SmithsTest::BeginAnew();
        InstallSmiths();
        SetJet();
    }

    void Show(SmithsPage page, std::int32_t subPage = 1) {
        smiths.page = page;
        for (SubPage& each : smiths.subPage) {
            each.n = subPage;
        }
        RequestUnitRedraw();
        cdu.Draw();
    }

    // The value beside a line key.
    std::string Value(const std::string& line) const {
        const std::string row = cdu.Data(line[1] - '0');
        const std::size_t bar = row.rfind('|');
        return line[0] == 'L' ? row.substr(0, row.find('|'))
                              : row.substr(bar == std::string::npos ? 0 : bar + 1);
    }

    // What the per-frame update works out, with what a changed route asks for.
    static void Update() {
        ReplanChangedRoute();
        SmithsTest::Update();
    }

    // Half way up to a cruise altitude that has been planned.
    void FlyRoute(std::int32_t cruiseFt = 24000) {
        MakeRoute();
        aircraft.altitudeFt = 4300;
        aircraft.verticalSpeedFpm = 1200;
        aircraft.indicatedAirspeedKt = 230;
        SetCruiseAltitude(cruiseFt);
        Update();
    }
};

// ---- entries ----

TEST_F(SmithsPerformance, WeightsAreInTheSettingsUnitAndTheSameEverywhere) {
    simulator.variables[306] = 6.7;  // a gallon's weight
    simulator.variables[291] = simulator.variables[297] = 8388608;
    simulator.variables[292] = simulator.variables[298] = 1000;
    Show(kSmithsPerfInit);
    EXPECT_EQ(Value("L1"), "- - - . - / - - . -") << "without a data service nothing is known";
    EXPECT_EQ(Value("L2"), "13.4");
    ASSERT_EQ(Enter("98.6", "L3"), "ok");
    ASSERT_EQ(Enter("4.2", "L4"), "ok");
    EXPECT_EQ(Value("L1"), "112.0 / - - . -");
    EXPECT_EQ(unit.After("FUEL FUEL FUEL FUEL FUEL FUEL").back(), "GROSS WEIGHT|112000");
    EXPECT_THAT(unit.After("FUEL"), ::testing::Contains(HasSubstr("  4200")));
    settings.WeightUnit = "KGS";
    Show(kSmithsPerfInit);
    EXPECT_EQ(Value("L1"), "50.8 / - - . -");
    EXPECT_EQ(Value("L2"), "6.1");
    ASSERT_EQ(Enter("45", "L3"), "ok");
    EXPECT_NEAR(pilotEntries.zeroFuelLb, 99208.018, 0.001);
    EXPECT_EQ(Enter("907.2", "L3"), kInvalid) << "more than 2,000,000 lb";
    Show(kSmithsApproachRef);
    EXPECT_EQ(Value("L1"), "51.1") << "the gross weight while none is typed";
}

TEST_F(SmithsPerformance, TheTransitionAltitudeIsOneForBothUnits) {
    Show(kSmithsPerfInit);
    ASSERT_EQ(Enter("9000", "R5"), "ok");
    ASSERT_EQ(Enter("95", "R1"), "ok");
    EXPECT_EQ(Value("R1"), "FL095");
    MakePlan();
    EXPECT_THAT(unit.After("VNAV L5 ENTER"), ::testing::Contains("TRANS LEVEL|  9000"));
    Show(kSmithsForecasts);
    EXPECT_EQ(Value("L1"), "FL090");
}

TEST_F(SmithsPerformance, PositionsAreCopiedAsTheyAreTyped) {
    aircraft.latitude = -33.758333;
    aircraft.longitude = -5.0;
    Show(kSmithsPos);
    EXPECT_EQ(Value("R1"), "S33:45:29 W05:00:00");
    cdu.Press("R1 R4");
    EXPECT_EQ(Value("R4"), "S33:45:30 W05:00:00");
    aircraft.latitude = 0;
    aircraft.longitude = 0.8;
    aircraft.nav1DmeNm = 12.5;  // to ABCDE, 12 nm ahead
    simulator.variables[49] = 1;
    cdu.Press("NEXT_PAGE");
    EXPECT_EQ(cdu.Data(5).substr(1, 15), "00:00:00 E00:47") << "on the equator";
}

// ---- what waits for EXEC ----

TEST_F(SmithsPerformance, BeforeARouteIsFlownEntriesHoldAtOnce) {
    Show(kSmithsPerfInit);
    ASSERT_EQ(Enter("330", "R1"), "ok");
    EXPECT_EQ(planBook.cruiseAltitudeFt, 33000);
    EXPECT_EQ(planBook.status, RouteStatus::None);
    ASSERT_EQ(Enter("100", "L5"), "ok");
    EXPECT_EQ(performance.climbIas, 270);
    EXPECT_EQ(performance.cruiseIas, 270);
    EXPECT_EQ(performance.descentIas, 260);
    EXPECT_NEAR(performance.descentTas, IndicatedToTrue(260, 13000), 0.001);
    Show(kSmithsClimb);
    cdu.Press("L6");
    EXPECT_EQ(performance.climbIas, 230);
}

TEST_F(SmithsPerformance, ACruiseChangeWaitsForExec) {
    FlyRoute(24000);
    const double topNm = ActivePredictions().topOfClimb.distanceNm;
    cdu.Press("CRZ");
    EXPECT_EQ(cdu.Title(), "ACT|ECON  CRZ|1 / 1");
    EXPECT_EQ(Value("L1"), "FL240");
    cdu.Press("=310 L1");
    EXPECT_EQ(cdu.Title(), "MOD|ECON  CRZ|1 / 1");
    EXPECT_EQ(Value("L1"), "FL310");
    EXPECT_TRUE(SmithsExecLit());
    EXPECT_EQ(vnav.cruiseAltitude, 24000);
    EXPECT_EQ(ActivePredictions().topOfClimb.distanceNm, topNm);
    EXPECT_GT(ModifiedPredictions().topOfClimb.distanceNm, topNm + 10);
    EXPECT_EQ(ModifiedPredictions().cruiseAltitudeFt, 31000);
    cdu.Press("INIT_REF");
    EXPECT_EQ(cdu.Title(), "MOD|PERF  INIT| 1 /  2");
    EXPECT_EQ(Value("R1"), "FL310");
    const double waitingNm = ModifiedPredictions().topOfClimb.distanceNm;
    cdu.Press("EXEC");
    Update();
    EXPECT_FALSE(SmithsExecLit());
    EXPECT_EQ(vnav.cruiseAltitude, 31000);
    EXPECT_NEAR(ActivePredictions().topOfClimb.distanceNm, waitingNm, 0.1);
    EXPECT_THAT(unit.After("VNAV L5 ENTER"), ::testing::Contains("CRUISE ALT| 31000"));
    cdu.Press("CLB =350 L1");
    EXPECT_EQ(Value("L1"), "FL350");
    DropModification();
    cdu.Draw();
    EXPECT_EQ(Value("L1"), "FL310") << "what was erased is gone";
    cdu.Press("=330 L1 EXEC");
    EXPECT_EQ(vnav.cruiseAltitude, 33000);
}

TEST_F(SmithsPerformance, SpeedModesWaitForExecAndGoBackToEconomy) {
    FlyRoute();
    const struct {
        const char* page;
        const char* line;
        std::int32_t AircraftPerformance::*ias;
        std::int32_t chosen;
        const char* prompt;
        const char* back;
    } kCases[] = {
        {"CLB", "L5", &AircraftPerformance::climbIas, 270, "< MAX   RATE", "< ECON"},
        {"CLB", "L6", &AircraftPerformance::climbIas, 230, "< MAX   ANGLE", "< ECON"},
        {"CRZ", "L6", &AircraftPerformance::cruiseIas, 270, "< LRC", "< ECON"},
        {"DES", "R4", &AircraftPerformance::descentIas, 300, "SPEED >", "ECON >"},
    };
    smiths.scratchpad = "9";
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.prompt);
        const std::int32_t before = performance.*row.ias;
        cdu.Press(row.page);
        EXPECT_EQ(Value(row.line), row.prompt);
        cdu.Press(row.line);
        EXPECT_EQ(performance.*row.ias, before);
        EXPECT_EQ(Value(row.line), row.back);
        EXPECT_EQ(cdu.Bottom(), "9") << "a prompt leaves what is typed";
        EXPECT_THAT(Value("L2"), ::testing::StartsWith(std::to_string(row.chosen)));
        cdu.Press("EXEC");
        EXPECT_EQ(performance.*row.ias, row.chosen);
        EXPECT_EQ(Value(row.line), row.back);
        cdu.Press(std::string(row.line) + " EXEC");
        EXPECT_EQ(performance.*row.ias, before);
        EXPECT_EQ(Value(row.line), row.prompt);
    }
}

TEST_F(SmithsPerformance, TypedSpeedsAndTheCostIndexAreFlownAfterExec) {
    FlyRoute();
    cdu.Press("CLB =300 L2 =240/8000 L3 DES =280 L2");
    EXPECT_EQ(performance.climbIas, 280);
    EXPECT_EQ(performance.climbSpeedRestriction, 0);
    cdu.Press("EXEC");
    EXPECT_EQ(performance.climbIas, 300);
    EXPECT_NEAR(performance.climbTas, IndicatedToTrue(300, 13000), 0.001);
    EXPECT_EQ(performance.climbSpeedRestriction, 240);
    EXPECT_EQ(performance.climbRestrictionAltitude, 8000);
    EXPECT_EQ(performance.descentIas, 280);
    cdu.Press("INIT_REF =200 L5");
    EXPECT_EQ(Value("L5"), "200");
    EXPECT_EQ(performance.costIndex, -1);
    cdu.Press("CRZ");
    EXPECT_THAT(Value("L2"), ::testing::StartsWith("310"));
    cdu.Press("EXEC");
    EXPECT_EQ(performance.cruiseIas, 310);
    EXPECT_EQ(performance.climbIas, 300) << "typed, not by the cost index";
    cdu.Press("CLB DEL L3 EXEC");
    EXPECT_EQ(performance.climbSpeedRestriction, 0);
}

TEST_F(SmithsPerformance, SpeedsFollowTheirLimits) {
    const struct {
        const char* before;
        const char* limit;  // typed on PERF LIMITS
        std::int32_t AircraftPerformance::*ias;
        std::int32_t flown;
    } kCases[] = {
        {"", "=290 L2", &AircraftPerformance::climbIas, 290},
        {"", "=270 R2", &AircraftPerformance::climbIas, 270},
        {"", "=240 L2", &AircraftPerformance::climbIas, 280},
        {"", "=290 L3", &AircraftPerformance::cruiseIas, 290},
        {"", "=260 R4", &AircraftPerformance::descentIas, 260},
        {"INIT_REF =100 L5 EXEC", "=250 L2", &AircraftPerformance::climbIas, 280},
        {"CLB L6 EXEC", "=240 L2", &AircraftPerformance::climbIas, 240},  // MAX ANGLE
        {"CLB =300 L2 EXEC", "=290 R2", &AircraftPerformance::climbIas, 290},
        {"DES R4 EXEC", "=290 R4", &AircraftPerformance::descentIas, 290},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(std::string(row.before) + ' ' + row.limit);
        BeginAnew();
        FlyRoute();
        cdu.Press(row.before);
        const std::int32_t before = performance.*row.ias;
        cdu.Press(std::string("INIT_REF NEXT_PAGE ") + row.limit);
        EXPECT_EQ(cdu.Bottom(), "");
        EXPECT_EQ(SmithsExecLit(), before != row.flown);
        EXPECT_EQ(performance.*row.ias, before) << "not before EXEC";
        cdu.Press("EXEC");
        EXPECT_EQ(performance.*row.ias, row.flown);
    }
}

TEST_F(SmithsPerformance, AChosenSpeedStaysWhenTheTablesPlan) {
    const auto depart = [this](const char* keys) {
        BeginAnew();
        LoadNavDatabase();
        performanceTables.climb = {{.altitudeFt = 0, .speedTas = 250, .climbRate = 2000},
                                   {.altitudeFt = 30000, .speedTas = 420, .climbRate = 1500}};
        performanceTables.cruise = {{.altitudeFt = 30000, .speedTas = 450}};
        performanceTables.descent = {{.altitudeFt = 0, .speedTas = 250, .descentRate = 1500},
                                     {.altitudeFt = 30000, .speedTas = 420, .descentRate = 2000}};
        cdu.Press(keys);
        MakePlan();
        StartActivePlan();
        planBook.status = RouteStatus::Active;
        RefreshPredictions();
    };
    depart("");
    const std::int32_t byTables = performance.climbIas;
    ASSERT_NE(byTables, 280);
    const std::int32_t cruiseByTables = performance.cruiseIas;
    cdu.Press("CRZ");
    EXPECT_THAT(Value("R1"), ::testing::MatchesRegex("FL[23][0-9]0 / FL350"));
    depart("CLB =300 L2");
    EXPECT_EQ(performance.climbIas, 300);
    EXPECT_NEAR(performance.climbTas, IndicatedToTrue(300, 13000), 0.001);
    EXPECT_EQ(performance.cruiseIas, cruiseByTables);
    cdu.Press("L5 L5 EXEC");
    EXPECT_EQ(performance.climbIas, byTables) << "economy is what the tables give";
    depart("INIT_REF L6 L3 =0 L5");
    EXPECT_EQ(performance.climbIas, 230) << "a typed cost index is above the tables";
}

TEST_F(SmithsPerformance, AChangedSpeedGoesToTheAutopilotByExec) {
    FlyRoute();
    guidance.vnavEngaged = 1;
    Update();
    simulator.events.clear();
    cdu.Press("CLB =305 L2");
    Update();
    EXPECT_EQ(simulator.CountEvents(66037), 0);
    cdu.Press("EXEC");
    Update();
    EXPECT_THAT(simulator.events, ::testing::Contains(::testing::Pair(66037, 305U)));
}

TEST_F(SmithsPerformance, ThePauseNeedsTheSettingsLeave) {
    FlyRoute();
    cdu.Press("CRZ R6");
    EXPECT_EQ(cdu.Bottom(), kInvalid);
    settings.ArmPauseAtTod = 1;
    cdu.Press("CLR");
    EXPECT_EQ(Value("R6"), "Pause at TOD (OFF)  >");
    cdu.Press("R6");
    EXPECT_EQ(Value("R6"), "Pause at TOD (ON) >");
    EXPECT_EQ(vnav.pauseArmed, 1);
    EXPECT_EQ(planBook.status, RouteStatus::Active) << "nothing waits for EXEC";
    cdu.Press("R6");
    EXPECT_EQ(vnav.pauseArmed, 0);
}

// ---- values ----

TEST_F(SmithsPerformance, WindsOfTheDescentSlowItDown) {
    FlyRoute(24000);
    const double calm = ActivePredictions().destination.minutes;
    const double cruiseCalm = ActivePredictions().topOfDescent.minutes;
    Show(kSmithsForecasts);
    ASSERT_EQ(Enter("100/", "L3"), kInvalid);
    smiths.message.clear();
    cdu.Press("CLR CLR CLR CLR =100 L3 =090/60 R3");
    RefreshPredictions();
    EXPECT_NEAR(ActivePredictions().topOfDescent.minutes, cruiseCalm, 0.01);
    const double steady = ActivePredictions().destination.minutes;
    EXPECT_GT(steady, calm + 1);
    cdu.Press("=240 L4 =090/0 R4");
    RefreshPredictions();
    const double fading = ActivePredictions().destination.minutes;
    EXPECT_LT(fading, steady - 0.3) << "calm above, windy below";
    EXPECT_GT(fading, calm + 0.3);
    cdu.Press("DEL L3 DEL L4");
    RefreshPredictions();
    EXPECT_NEAR(ActivePredictions().destination.minutes, calm, 0.01);
}

// ---- how the pages look ----

TEST_F(SmithsPerformance, PagesReadAsWhenLastLookedAt) {
    constexpr struct {
        const char* name;
        SmithsPage page;
        std::int32_t subPages = 1;
        bool vertical = false;  // looked at in each phase
    } kPages[] = {{"IDENT", kSmithsIdent},
                  {"POS", kSmithsPos, 3},
                  {"PERF INIT", kSmithsPerfInit, 2},
                  {"TAKEOFF REF", kSmithsTakeoffRef},
                  {"APPROACH REF", kSmithsApproachRef},
                  {"REF NAV DATA", kSmithsRefNavData},
                  {"CLB", kSmithsClimb, 1, true},
                  {"CRZ", kSmithsCruise, 1, true},
                  {"DES", kSmithsDescent, 1, true},
                  {"DES FORECASTS", kSmithsForecasts}};
    std::ostringstream now;
    const auto look = [&](const char* state, bool verticalOnly = false) {
        for (const auto& row : kPages) {
            for (std::int32_t n = 1; n <= row.subPages && (row.vertical || !verticalOnly); ++n) {
                Show(row.page, n);
                now << "# " << state << ", " << row.name << ' ' << n << '\n';
                for (const DrawnText& text : cdu.Texts()) {
                    now << Format("%3d %2d |", static_cast<int>(text.y),
                                  static_cast<int>(text.pixelSize))
                        << text.text << '\n';
                }
            }
        }
    };
    look("cold");
    ApplyAircraftText(
        "ModelId=DEMO-JET\nEngThrust=26\nV1=139\nVR=142\nV2=149\nTOFLAPS=5\nLDGFLAPS=30\n"
        "APPRFLAPSMIN=15\nAPPRFLAPSMID=30\nVREFMIN=152\nVREFMID=143\nVREF=143\n",
        performance);
    DatabaseCycle = "AIRAC 1401";
    DatabaseValidity = "JAN17FEB14/08";
    look("with the aircraft's file");
    simulator.variables[9] = 2009;
    Show(kSmithsIdent);
    EXPECT_EQ(Value("R3"), "OUT OF DATE");
    simulator.variables.erase(9);
    pilotEntries.zeroFuelLb = 98600;
    FlyRoute();
    Show(kSmithsRefNavData);
    Enter("KBBB", "L2");
    look("climbing");
    cdu.Press("CLB =300 L2 =240/8000 L3");
    look("a change waits", true);
    cdu.Press("EXEC");
    Update();
    EditActivePlan([](FlightPlan& plan) {
        return SetCrossing(plan, 1, {.altitudeFt = 9000}) &&
               SetCrossing(plan, 6, {.altitudeFt = 3000, .constraint = kCrossAtOrAbove});
    });
    settings.DispETALocalTime = 1;
    Update();
    look("restrictions ahead", true);
    vnav.topOfClimbReached = vnav.descentActive = 1;
    Update();
    look("descending", true);
    vnav.pathAltitude = 4000;
    vnav.targetAltitude = 3000;
    vnav.distanceToTarget = 10;
    vnav.requiredFpm = 650;
    aircraft.verticalSpeedFpm = -1000;
    look("above the path", true);
    vnav.pathAltitude = 4500;
    look("below the path", true);
    ExpectAsKept(now.str(), "cdu_smiths/performance.txt");
}

}  // namespace
}  // namespace avq1::test
