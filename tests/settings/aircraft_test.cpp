#include <gtest/gtest.h>

#include <algorithm>
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

TEST(AirspeedRules, UndoEachOther) {
    for (const double altitudeFt : {0.0, 13000.0, 35000.0}) {
        EXPECT_NEAR(TrueToIndicated(IndicatedToTrue(280, altitudeFt), altitudeFt), 280, 1e-9);
        EXPECT_NEAR(MachToIndicated(IndicatedToMach(280, altitudeFt), altitudeFt), 280, 1e-9);
    }
    EXPECT_NEAR(IndicatedToTrue(200, 10000), 230, 1e-9);
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
