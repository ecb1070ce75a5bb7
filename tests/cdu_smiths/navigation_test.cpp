// Index, stored plans, procedures, progress, stations, fixes and holds of the Smiths-style unit:
// what they take and refuse, and what is behind what they show.
#include <gmock/gmock.h>

#include <cmath>

#include "cdu_smiths/fake_smiths.h"
#include "cdu_smiths/smiths_procedures.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/procedures.h"
#include "guidance/activation.h"
#include "guidance/vnav.h"
#include "settings/settings.h"

namespace avq1::test {
namespace {

class SmithsNavigation : public SmithsTest {
  protected:
    SmithsNavigation() { MakeDatabase(); }

    // The route from KSID, which has departures.
    void MakeDepartureRoute() {
        MakeRoute();
        activePlan.Edit(0).ident = planBook.originIdent = "KSID";
        activePlan.Edit(0).latitude = 1;
    }
};

// ---- stored plans ----
TEST_F(SmithsNavigation, OfAStoredPlanWhatThereIsRoomForIsTheRoute) {
    MakeDepartureRoute();
    std::string tooLong = "[FlightPlan]\nKAAA 0 0 APT ---\n";
    for (std::int32_t i = 0; i <= kMaxPlanIndex; ++i) {
        tooLong += "NEWPT 0.5 2.5 INT ---\n";
    }
    folder.Write("avq/flightplans/A.RTE", tooLong);
    cdu.Press("INIT_REF L6 R2 L1");
    EXPECT_EQ(cdu.Title(), "MOD|RTE| 1 / 41");
    EXPECT_EQ(cdu.Bottom(), kPlanFullMessage) << "what there is room for is the route";
    cdu.Press("CLR L6");
    folder.Write("avq/flightplans/A.RTE", "[FlightPlan]\n");
    cdu.Press("INIT_REF L6 R2 L1");
    EXPECT_EQ(cdu.Bottom(), "UNABLE TO LOAD FPL");
    EXPECT_EQ(smiths.page, kSmithsStoredPlans);
    EXPECT_EQ(planBook.status, RouteStatus::Active);
    folder.Write("avq/flightplans/B.PLN",
                 "waypoint.0=KAAA, A, N0* 0', E0* 0'\nwaypoint.1=CUT, V, N0* 0'\n"
                 "waypoint.2=KBBB, A, N0* 0', E7* 0'");
    messages = {};
    cdu.Press("INIT_REF L6 R2 L2");
    EXPECT_EQ(cdu.Bottom(), "FPL: 1 without position left out");
    EXPECT_EQ(messages.count, 1) << "said once";
}

// ---- procedures ----
TEST_F(SmithsNavigation, WhatAnotherUnitOrAFileChoseIsShown) {
    MakeDepartureRoute();
    cdu.Press("DEP_ARR L1");
    EXPECT_EQ(cdu.Data(1), "EAST1 |09 ");
    procedureChoice = ProcedureChoice{.airport = "KSID",
                                      .sidNumber = 1,
                                      .sidName = "EAST1",
                                      .sidTransition = "NORTH",
                                      .departureRunway = "09"};
    BuildSidWaypoints();
    EditActivePlan(InsertSid);
    cdu.Draw();
    EXPECT_EQ(cdu.At(38), "<ACT>|<ACT>");
    EXPECT_EQ(cdu.Data(2), "NORTH");
    activePlan.EditProcedures() = PlanProcedures{};  // as read from a file
    cdu.Draw();
    EXPECT_EQ(cdu.Data(1), "EAST1 |09 ") << "by the label of its legs";
    EXPECT_EQ(cdu.Data(2), "NORTH");
    EXPECT_EQ(cdu.At(38), "<ACT>");
}

TEST_F(SmithsNavigation, ListsOfProceduresBeginAtTheirFirstPage) {
    std::string airport = "KSID Third 50 1.0 0.0";
    std::string departures = "[KSID]\n";
    for (const char n : std::string("1234567")) {
        airport += std::string(" 0") + n + "_9000_1.0_0.0_88_x_y_" + n + "0";
        departures +=
            std::string("T DEP") + n + " ---\nDEP" + n + " FIX" + n + " --- --- 1.0 0.3 ---\n;\n";
    }
    folder.Write("avq/Navdata/avq_apts.txt", airport + "\nKBBB Last 1234 0.0 7.0\n");
    folder.Write("avq/Navdata/avq_sids.txt", departures);
    LoadNavDatabase();
    MakeDepartureRoute();
    const struct {
        const char* keys;
        const char* counter;
        const char* first;
        const char* mark = "";
    } kSteps[] = {
        {"DEP_ARR L1 NEXT_PAGE", " 2 /  2", "DEP6  |06 "},
        {"DEP_ARR L1", " 1 /  2", "DEP1  |01 "},
        {"NEXT_PAGE L2", " 1 /  2", "DEP7  |01 ", "<SEL>"},
        {"NEXT_PAGE L1", " 1 /  2", "DEP1  |01 "},          // the list again
        {"DEP_ARR L1", " 1 /  2", "DEP7  |01 ", "<SEL>"},   // what was chosen stands
        {"L1 R2", " 1 /  1", "DEP7  |02 ", "<SEL>|<SEL>"},  // and when another list is used
        {"R1 NEXT_PAGE R1", " 1 /  1", "DEP7  |06 ", "<SEL>|<SEL>"},
        {"L1 R1 DEL R2", " 1 /  2", "DEP1  |01 "},  // nothing of a list can be deleted
        {"CLR DEP_ARR L1 DEL R1", " 1 /  2", "DEP7  |01 ", "<SEL>"},
        {"L1 DEL L1", " 1 /  2", "DEP1  |01 "},
    };
    for (const auto& row : kSteps) {
        SCOPED_TRACE(row.keys);
        cdu.Press(row.keys);
        EXPECT_EQ(cdu.Title(), std::string("KSID DEPARTURES|") + row.counter);
        EXPECT_EQ(cdu.Data(1), row.first);
        EXPECT_EQ(cdu.At(38), row.mark);
    }
}

// ---- progress ----
TEST_F(SmithsNavigation, ProgressSaysWhereTheAircraftIs) {
    MakeRoute();
    cdu.Press("PROG NEXT_PAGE");
    guidance.crossTrackNm = 0.25;
    guidance.crossTrackSide = Side::Left;
    vnav.descentActive = 1;
    vnav.pathAltitude = 5000;
    aircraft.altitudeFt = 4300;
    derived.headwindKt = -12.6;
    derived.crosswindKt = -8;
    aircraft.value800 = 10;
    cdu.Draw();
    EXPECT_EQ(cdu.Label(1), "T A I L W I N D|C R O S S W I N D");
    EXPECT_EQ(cdu.Data(1), "13 KT|L   8 KT");
    EXPECT_EQ(cdu.Data(3), "L 0.25 NM|  700 LO");
    EXPECT_EQ(cdu.Data(2).substr(cdu.Data(2).find('|')), "|10 C / +4 C");
    aircraft.altitudeFt = 5100;
    guidance.crossTrackSide = Side::Right;
    derived.headwindKt = 3;
    cdu.Draw();
    EXPECT_EQ(cdu.Label(1), "H E A D W I N D|C R O S S W I N D");
    EXPECT_EQ(cdu.Data(3), "R 0.25 NM|  100 HI");
}

TEST_F(SmithsNavigation, ProgressTellsTheWaypointsApartAndWeighsAlike) {
    MakeRoute();
    activePlan.Edit(1).type = activePlan.Edit(1).ident = "DISCO";
    guidance.passedIdent = "KAAA";
    guidance.passedFuel = 12000 * kPoundsPerKilogram;  // as a passage is recorded
    settings.WeightUnit = "KGS";
    cdu.Press("PROG");
    EXPECT_THAT(cdu.Data(1), ::testing::EndsWith("|5.4"));
    EXPECT_THAT(cdu.Data(2), ::testing::StartsWith("FLY"));
    EXPECT_THAT(cdu.Data(3), ::testing::StartsWith("LONGER"));
}

TEST_F(SmithsNavigation, ATimeWantedIsComparedWithThePrediction) {
    const struct {
        double minutesLater;  // than predicted
        const char* error;
    } kCases[] = {{0.2, "ON TIME"}, {2.5, "EARLY 02:30"}, {-1.5, "LATE 01:30"}};
    MakeRoute();
    cdu.Press("PROG NEXT_PAGE NEXT_PAGE =FLY L1");
    const double eta = ActivePredictions().entries[2].zuluMinutes;
    for (const auto& row : kCases) {
        const double wanted = std::round((eta + row.minutesLater) * 10) / 10;
        const UnitText typed = ClockTenthsText(wanted / 60);
        EXPECT_EQ(Enter(typed.c_str(), "R1"), "ok");
        const double late = eta - wanted;
        EXPECT_EQ(cdu.Data(4).starts_with(std::string(row.error).substr(0, 4)), true)
            << cdu.Data(4) << " for " << late;
    }
    EXPECT_EQ(Enter("1200", "R1"), "ok");
    EXPECT_THAT(cdu.Data(4), ::testing::EndsWith("|- - - KT")) << "no speed takes it there by now";
    aircraft.groundSpeedKt = 20;
    cdu.Draw();
    EXPECT_EQ(cdu.Data(4), "- - : - -|- - - KT") << "no times while it stands";
}

// ---- holds ----
TEST_F(SmithsNavigation, AHoldIsLeftOrRemoved) {
    struct HoldCase {
        const char* what;
        bool inModification;  // planned there and not yet executed
        bool flown;
        int count;
        HoldState state;
    };
    const HoldCase kCases[] = {
        {"being flown", false, true, 1, HoldState::ExitRequested},
        {"ahead", false, false, 0, HoldState::Normal},
        {"not yet executed", true, false, 0, HoldState::Normal},
    };
    for (const HoldCase& row : kCases) {
        SCOPED_TRACE(row.what);
        holdList = {};
        holdFlight = {};
        MakeRoute();
        if (row.inModification) {
            EditSmithsPlan([](FlightPlan& plan) { return HoldAt(plan, 1, NewHold()); });
        } else {
            HoldAt(activePlan, 1, NewHold());
        }
        holdFlight.holdActive = row.flown ? 1 : 0;
        holdFlight.holdTargetCorner = row.flown ? 2 : 0;
        cdu.Press("LEGS R6 NEXT_PAGE HOLD R6");
        EXPECT_THAT(cdu.Title(), ::testing::EndsWith("RTE    LEGS| 1 /  2")) << "from RTE DATA";
        EXPECT_EQ(smiths.legsMode, LegsMode::Normal);
        EXPECT_EQ(holdList.count, row.count);
        EXPECT_EQ(holdFlight.holdState, row.state);
        EXPECT_EQ(activePlan.entries[1].hasHold, row.count);
        planBook.status = RouteStatus::None;
        modifiedPlan.CutTo(-1);
    }
}

TEST_F(SmithsNavigation, AHoldsTimesNeedSpeedAndFuel) {
    MakeRoute();
    simulator.variables[306] = 1;
    simulator.variables[291] = 8388608;
    simulator.variables[292] = 9000;
    simulator.variables[638] = 1000;
    HoldAt(activePlan, 1, NewHold());
    RefreshPredictions();
    planBook.reserveFuelInUse = ActivePredictions().destination.fuelLb - 1500;
    cdu.Press("HOLD");
    EXPECT_TRUE(cdu.Data(2).ends_with("Z")) << cdu.Data(2);
    EXPECT_EQ(cdu.Data(4), "1.0   M I N|1 + 30");
    aircraft.groundSpeedKt = 60;
    planBook.reserveFuelInUse += 5000;
    cdu.Draw();
    EXPECT_EQ(cdu.Data(2), "S / 180|- - - - . - Z");
    EXPECT_EQ(cdu.Data(4), "1.0   M I N|0 + 00");
}

}  // namespace
}  // namespace avq1::test
