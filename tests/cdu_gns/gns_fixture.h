// tests/cdu_gns/gns_fixture.h - what the tests of the GNS-style unit begin with.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/messages.h"
#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu_gns/fake_unit.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"
#include "guidance/progress.h"
#include "guidance/vnav.h"
#include "navdb/nav_database.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1::test {

class GnsTest : public ::testing::Test {
  protected:
    GnsTest() { BeginAnew(); }

    // Nothing known but where the aircraft is, on the equator, and that it moves.
    void BeginAnew() {
        ResetModuleState();
        SimFolder = folder.root().string();
        avionicsPower = 1;
        aircraft.latitude = 0;
        aircraft.longitude = 0.52;
        aircraft.groundSpeedKt = 240;
        aircraft.headingMag = 90;
        aircraft.zuluHour = 12;
    }

    // A climb with wind, weights and fuel on board.
    void Climb() {
        aircraft.altitudeFt = 4300;
        aircraft.verticalSpeedFpm = 1200;
        aircraft.indicatedAirspeedKt = 230;
        aircraft.windSpeedKt = 25;
        aircraft.windDirection = 40;
        aircraft.magneticVariation = 3;
        aircraft.trueHeading = 93;
        aircraft.simRateRaw = 256;
        aircraft.clockHour = aircraft.zuluHour = 12;
        aircraft.zuluMinute = 34;
        simulator.variables[306] = 6.7;
        simulator.variables[291] = simulator.variables[297] = 8388608;
        simulator.variables[292] = simulator.variables[298] = 1000;
        simulator.variables[638] = 2000;
        simulator.variables[657] = 2200;
        performance.climbRate = 2000;
    }

    // Stores a plan from KAAA over NEWPT to KBBB.
    void StorePlan(const std::string& name) const {
        folder.Write("avq/flightplans/" + name + ".RTE",
                     "CruiseAlt=31000\n[FlightPlan]\nKAAA  0.0  0.0  APT  ---\n"
                     "NEWPT  0.5  2.5  INT  ---\nKBBB  0.0  7.0  APT  ---\n");
    }

    // Eight entries along the equator, one degree (60 nm) apart; the aircraft is half way to
    // ABCDE, 28.8 nm before it.
    static void MakePlan() {
        SetActivePlan({{"KAAA", 0, 0, "APT"},
                       {"ABCDE", 0, 1, "VOR"},
                       {"FLY", 0, 2, "INT", "", "", 1},
                       {"LONGER", 0, 3, "WPT"},
                       {"STARA", 0, 4, "INT", "STAR"},
                       {"STARB", 0, 5, "INT", "STAR"},
                       {"APPRA", 0, 6, "INT", "APPR"},
                       {"KBBB", 0, 7, "APT"}});
        SetActiveWaypoint(1);
        RefreshPredictions();
    }

    // Points to type, an airway that passes FLY, airports, and KSID's departures and arrivals.
    void MakeDatabase() {
        folder.Write("avq/Navdata/avq_navs.txt",
                     "ABCDE ALPHA 0.0 1.0 VOR 110.00\nTWICE ONE 1.0 2.0 VOR 113.90\n"
                     "TWICE TWO 10.0 20.0 NDB 385\n");
        folder.Write("avq/Navdata/avq_ints.txt", "NEWPT NEWPT 0.5 2.5\nLATER LATER 0.5 3.5\n");
        folder.Write(
            "avq/Navdata/avq_apts.txt",
            "KAAA First 100 0.0 0.0 09_9000_0.0_0.0_88_x_y_90\n"
            "KBBB Last 1234 0.0 7.0 09L_9000_0.0_7.0_88_x_y_90 27R_9000_0.0_7.1_88_x_y_270\n"
            "KSID Third 50 1.0 0.0 09_9000_1.0_0.0_88_x_y_90 27_9000_1.0_0.1_88_x_y_270\n");
        folder.Write(
            "avq/Navdata/avq_sids.txt",
            "[KSID]\nT EAST1 --- 09\nEAST1 EAAA 3000A --- 1.0 0.3 ---\n"
            "EAST1.NORTH ENNN --- --- 1.5 0.5 ---\nEAST1.SOUTH ESSS --- --- 0.6 0.5 FO\n;\n"
            "T WEST1 --- 27\nWEST1 WAAA --- --- 1.0 -0.3 ---\n;\n"
            "T BOTH1 ---\nBOTH1 BAAA --- --- 1.2 0.2 ---\n;\n");
        folder.Write("avq/Navdata/avq_stars.txt",
                     "[KBBB]\nT DOWN2 ---\nDOWN2.WEST DWWW --- --- 0.2 5.5 ---\n"
                     "DOWN2 DAAA --- --- 0.1 6.2 ---\n;\n");
        folder.Write("avq/Navdata/avq_apps.txt",
                     "[KBBB]\n09L ILS INAAA IAF --- 0.1 6.5 0 0 ---\n"
                     "09L ILS FAAA FAF 1500A 0.0 6.8 0 0 ---\n"
                     "09L VOR IVAAA IAF --- 0.2 6.5 0 0 ---\n"
                     "09L VOR FVAAA FAF 1500A 0.1 6.8 0 0 ---\n"
                     "09L LOC FLAAA FAF 1500A 0.1 6.7 0 0 ---\n");
        folder.Write("avq/Navdata/fsb_awy2.txt",
                     "J9 0010 JONE 0.0 1.5\nJ9 0020 FLY 0.0 2.0\nJ9 0030 JTWO 0.0 2.5\n"
                     "J9 0040 JTHR 0.0 2.8\n");
        LoadNavDatabase();
    }

    // What the per-frame update works out.
    static void Update() {
        SetActiveWaypoint(planBook.activeIndex);
        UpdateDerivedState();
        UpdateRouteDistance();
        UpdateTimeToGo();
        RunVerticalGuidance();
        RefreshPredictions();
    }

    TempSimFolder folder;
    FakeSimulator& simulator = FakeSimulator::Install();
    FakeGns unit;
};

}  // namespace avq1::test
