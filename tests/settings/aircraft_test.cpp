#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>
#include <string>

#include "base/module_state.h"
#include "settings/aircraft_performance.h"
#include "settings/parking.h"
#include "settings/performance_tables.h"
#include "settings/settings.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::TempSimFolder;

AircraftPerformance Read(std::string_view text) {
    ResetModuleState();
    AircraftPerformance read;
    ApplyAircraftText(text, read);
    return read;
}

TEST(AircraftFile, NumbersFollowTheRulesOfTheirKeys) {
    const struct {
        double (*value)(const AircraftPerformance&);
        std::map<double, std::vector<const char*>> rows;  // texts that give the value
    } keys[] = {{[](const AircraftPerformance& p) { return 1.0 * p.climbIas; },
                 {{0, {"", "ClimbIas =280", ";ClimbIas=280", "ClimbIas=fast"}},
                  {119, {"ClimbTas=100"}},
                  {279, {"ClimbIas=279.9"}},
                  {280, {"climbias=280"}},
                  {290, {"ClimbIas=280\nClimbIas=290\n"}}}},
                {[](const AircraftPerformance& p) { return 1.0 * p.cruiseIas; },
                 {{250, {""}}, {122, {"CruiseTas=100"}}}},
                {[](const AircraftPerformance& p) { return 1.0 * p.descentIas; },
                 {{239, {"DescentTas=200"}}}},
                {[](const AircraftPerformance& p) { return 1.0 * p.holdIas; },
                 {{0, {"", "DescentTas=200"}},
                  {210, {"DescentIas=210", "BestHoldIas=190\nDescentIas=210\n"}},
                  {190, {"DescentIas=210\nBestHoldIas=190.9\n"}}}},
                {[](const AircraftPerformance& p) { return 1.0 * p.holdLegMinutes; },
                 {{1.0, {"", "HoldLegMins=0", "HoldLegMins=none"}}, {1.5, {"HoldLegMins=1.5"}}}},
                {[](const AircraftPerformance& p) { return 1.0 * p.engineThrust; },
                 {{26, {"EngThrust=26"}},
                  {1000, {"EngThrust=1000"}},
                  {27, {"EngThrust=27300"}},
                  {1, {"EngThrust=1001"}}}},
                {[](const AircraftPerformance& p) { return 1.0 * p.vnavSpeedDistanceNm; },
                 {{40, {"VnavSetSpdRestDist=40"}},
                  {25, {"VnavSetSpdRestDist=0", "VnavSetSpdRestDist=-5"}}}},
                {[](const AircraftPerformance& p) { return 1.0 * p.flightPathAngleDeg; },
                 {{3.1, {"FPA=3.1"}}}}};
    for (const auto& [value, rows] : keys) {
        for (const auto& [expected, texts] : rows) {
            for (const char* const text : texts) {
                EXPECT_DOUBLE_EQ(value(Read(text)), expected) << text;
            }
        }
    }
}

TEST(AircraftFile, TextsKeepTheirBlanks) {
    const AircraftPerformance read = Read(
        "ModelId=TWIN JET 150\r\nTOFLAPSRANGE=0,7,14\r\nAPPRFLAPSMID=FULL DOWN\r\n"
        "PerformanceData=twin jet.per\r\n");
    EXPECT_EQ(read.modelId, "TWIN JET 150");
    EXPECT_EQ(read.takeoffFlapsRange, ",0,7,14,");
    EXPECT_EQ(read.approachFlapsMid, "FULL DOWN");
    EXPECT_EQ(read.performanceData, "twin jet.per");
    EXPECT_EQ(Read("").takeoffFlapsRange, ",1,5,10,15,25,");
}

// Figures worked out by hand from the rules: sound travels at 38.967854 x sqrt(258.432) =
// 626.4402 kt at 15000 ft, 38.967854 x sqrt(262.3944) = 631.2244 kt at 13000 ft.
TEST(AircraftFile, DerivesMachAndTrueSpeedsAndReadsTheTablesItNames) {
    ResetModuleState();
    const TempSimFolder folder;
    AircraftName = "jet";
    LoadAircraftFile();  // there is none: the defaults stay
    EXPECT_EQ(performance.cruiseIas, 250);
    EXPECT_NEAR(performance.descentTas, 220 * 1.195, 1e-9);
    EXPECT_TRUE(performanceTables.climb.empty());
    folder.Write("avq/Aircraft/jet.cfg",
                 "ClimbIas=280\nCruiseIas=290\nDescentIas=270\nClimbIasMin=210\nClimbIasMax=310\n"
                 "CruiseIasMin=240\nCruiseIasMax=330\nDescentIasMin=220\nDescentIasMax=300\n"
                 "PerformanceData=my jet.per\n");
    folder.Write("avq/Aircraft/my jet.per", "[CLIMB]\n0 250 3000\n");
    LoadAircraftFile();
    const std::pair<double AircraftPerformance::*, double> machs[] = {
        {&AircraftPerformance::climbMachMin, 210 * 1.225 / 626.4402},
        {&AircraftPerformance::climbMachMax, 310 * 1.225 / 626.4402},
        {&AircraftPerformance::cruiseMachMin, 240 * 1.225 / 626.4402},
        {&AircraftPerformance::cruiseMachMax, 330 * 1.225 / 626.4402},
        {&AircraftPerformance::descentMachMin, 220 * 1.225 / 626.4402},
        {&AircraftPerformance::descentMachMax, 300 * 1.225 / 626.4402},
        {&AircraftPerformance::climbMach, 280 * 1.195 / 631.2244},
        {&AircraftPerformance::cruiseMach, 290 * 1.225 / 626.4402},
        {&AircraftPerformance::descentMach, 270 * 1.225 / 626.4402}};
    for (const auto& [mach, expected] : machs) {
        EXPECT_NEAR(performance.*mach, expected, 1e-6) << expected;
    }
    EXPECT_NEAR(performance.climbTas, 334.6, 1e-9);
    EXPECT_NEAR(performance.descentTas, 322.65, 1e-9);
    EXPECT_EQ(performanceTables.climb.size(), 1U);
}

TEST(AircraftFile, CostIndexPicksSpeedsBetweenTheirLimits) {
    const struct {
        const char* costIndex;
        std::int32_t climb, cruise, descent;
    } cases[] = {
        {"-1", 275, 285, 265}, {"0", 230, 240, 220}, {"200", 311, 321, 301}, {"3", 231, 241, 221}};
    for (const auto& c : cases) {
        AircraftPerformance read = Read(
            "ClimbIas=275\nCruiseIas=285\nDescentIas=265\nClimbIasMin=230\nClimbIasMax=311\n"
            "CruiseIasMin=240\nCruiseIasMax=321\nDescentIasMin=220\nDescentIasMax=301\nCostIndex=" +
            std::string(c.costIndex));
        DeriveSpeeds(read);
        EXPECT_EQ((std::array{read.climbIas, read.cruiseIas, read.descentIas, read.holdIas}),
                  (std::array{c.climb, c.cruise, c.descent, 265}))
            << c.costIndex;
    }
}

TEST(AirspeedRules, UndoEachOther) {
    for (const double altitudeFt : {0.0, 13000.0, 35000.0}) {
        EXPECT_NEAR(TrueToIndicated(IndicatedToTrue(280, altitudeFt), altitudeFt), 280, 1e-9);
        EXPECT_NEAR(MachToIndicated(IndicatedToMach(280, altitudeFt), altitudeFt), 280, 1e-9);
    }
    EXPECT_NEAR(IndicatedToTrue(200, 10000), 230, 1e-9);
}

TEST(PerformanceTables, ReadsEverySection) {
    PerformanceTables tables;
    ReadPerformanceTables(
        "; comment\n12 34\n[UNITS]\nFUEL=LBS/HR\n"
        "[climb]\n 0 250 3000 9000 9500\n10000 300 2500 7000\n\n"
        "[GRWT 90 110.5 140]\n30000 450 4000 4500 5000\n35000 440 3800\n"
        "[DESCENT]\n0 250 1800 1200 77\n"
        "[Altitude]\n41000 90 8\n[OTHER]\n1 2 3\n",
        tables);
    EXPECT_EQ(tables.grossWeights, (std::vector<double>{90000, 110500, 140000}));
    ASSERT_EQ(tables.climb.size(), 2U);
    EXPECT_EQ(tables.climb[0].climbRate, 3000);
    EXPECT_EQ(tables.climb[0].fuelFlowCount, 2);
    EXPECT_EQ(tables.climb[0].fuelFlow[1], 9500);
    ASSERT_EQ(tables.cruise.size(), 2U);
    EXPECT_EQ(tables.cruise[0].fuelFlow[2], 5000);
    EXPECT_EQ(tables.cruise[1].speedTas, 440);
    ASSERT_EQ(tables.descent.size(), 1U);
    EXPECT_EQ(tables.descent[0].fuelFlow, 1200);
    ASSERT_EQ(tables.altitudes.size(), 1U);
    EXPECT_EQ(tables.altitudes[0].first, 41000);
}

TEST(PerformanceTables, StopAtTheirCapacities) {
    std::string text = "[GRWT 1 2 3 4 5 6 7 8 9]\n30000 450";
    for (int i = 0; i < 40; ++i) {
        text += " 1";
    }
    text += "\n[CLIMB]\n0 250 3000 1 2 3 4 5 6 7 8 9\n[DESCENT]\n";
    for (std::size_t i = 0; i < kPerformanceRowCapacity + 5; ++i) {
        text += "1 2 3 4\n";
    }
    PerformanceTables tables;
    ReadPerformanceTables(text, tables);
    EXPECT_EQ(tables.grossWeights.size(), kGrossWeightCapacity);
    EXPECT_EQ(tables.cruise.at(0).fuelFlowCount, 26);
    EXPECT_EQ(tables.climb.at(0).fuelFlowCount, 8);
    EXPECT_EQ(tables.descent.size(), kPerformanceRowCapacity);
}

TEST(DemoAircraft, LoadWhole) {
    const auto rises = [](const auto& rows) {
        return rows.size() > 3 &&
               std::ranges::is_sorted(rows, {}, [](const auto& row) { return row.altitudeFt; });
    };
    for (const char* name : {"demo-jet", "demo-turboprop"}) {
        SCOPED_TRACE(name);
        ResetModuleState();
        SimFolder = AVQ1_SOURCE_DIR "/demo";
        AircraftName = name;
        LoadAircraftFile();
        const AircraftPerformance& p = performance;
        EXPECT_TRUE(p.climbIasMin < p.climbIas && p.climbIas < p.climbIasMax);
        EXPECT_TRUE(p.cruiseIasMin < p.cruiseIas && p.cruiseIas < p.cruiseIasMax);
        EXPECT_TRUE(p.descentIasMin < p.descentIas && p.descentIas < p.descentIasMax);
        EXPECT_TRUE(p.holdIas < p.descentIas && p.v1 < p.v2 && !p.modelId.empty());
        const PerformanceTables& tables = performanceTables;
        const auto weights = static_cast<std::int32_t>(tables.grossWeights.size());
        EXPECT_GE(weights, 2);
        EXPECT_TRUE(rises(tables.climb) && rises(tables.cruise) && rises(tables.descent));
        for (const CruiseRow& row : tables.cruise) {
            EXPECT_EQ(row.fuelFlowCount, weights) << row.altitudeFt;
        }
        parkingPosition = FindParkingPosition("KBOS");
        EXPECT_NEAR(parkingPosition.latitude, 42.36, 0.02);
    }
    SimFolder.clear();
}

TEST(Parking, TakesTheFirstLineOfTheAirport) {
    ResetModuleState();
    const TempSimFolder folder;
    folder.Write(
        "avq/Aircraft/stands.txt",
        "KBO 1 2 3\nkbos 4 5 6\nKBOS 42.36 -71.01 360\nKBOS 7 8 9\nKJFK 40.6 -73.8 44.5\n");
    parkingPosition = FindParkingPosition("KBOS");
    EXPECT_EQ(parkingPosition.latitude, 0);  // no file is named yet
    settings.ParkingFile = "stands.txt";
    parkingPosition = FindParkingPosition("KBOS");
    EXPECT_EQ(parkingPosition.latitude, 42.36);
    EXPECT_EQ(parkingPosition.longitude, -71.01);
    EXPECT_EQ(parkingPosition.headingDeg, 0);
    parkingPosition = FindParkingPosition("LFPG");
    EXPECT_EQ(parkingPosition.latitude, 0);
}

}  // namespace
}  // namespace avq1
