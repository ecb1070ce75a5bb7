// RTE, RTE LEGS, SELECT WAYPOINT and the life of a modification.
#include <gmock/gmock.h>

#include "cdu_smiths/fake_smiths.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "displays/nd/nd_panel.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "flightplan/procedures.h"
#include "guidance/activation.h"
#include "guidance/performance_entries.h"
#include "guidance/vnav.h"

namespace avq1::test {
namespace {

class SmithsRoute : public SmithsTest {
  protected:
    SmithsRoute() {
        MakeDatabase();
        folder.Write("avq/Navdata/avq_ints.txt",
                     "NEWPT NEWPT 0.5 2.5\nLATER LATER 0.5 3.5\nFLY FLY 0.0 2.0\n");
        folder.Write("avq/Navdata/fsb_awy2.txt",
                     "J9 0010 JONE 0.0 1.5\nJ9 0020 FLY 0.0 2.0\nJ9 0030 JTWO 0.0 2.5\n"
                     "J9 0040 JTHR 0.0 2.8\nV7 0010 FLY 0.0 2.0\nV7 0020 VTWO 0.3 2.5\n");
        LoadNavDatabase();
    }

    std::string Modified() const { return Show(modifiedPlan); }
    std::string Active() const { return Show(activePlan); }
};

// ---- building a route ----
TEST_F(SmithsRoute, WaysAreEnteredShortenedAndDeleted) {
    const struct {
        const char* plan;
        const char* keys;
        const char* after;
        const char* message = "";
    } kCases[] = {
        {"KAAA ABCDE FLY KBBB", "=J9 L1", "KAAA ABCDE FLY KBBB", "INVALID ENTRY"},  // the first row
        {"KAAA ABCDE FLY KBBB", "=J9 L2", "KAAA ABCDE FLY KBBB", "INVALID ENTRY"},  // not on it
        {"KAAA ABCDE FLY KBBB", "=Q1 L3", "KAAA ABCDE FLY KBBB", "INVALID ENTRY"},
        {"KAAA ABCDE FLY KBBB", "=J9 L5", "KAAA ABCDE FLY KBBB", "INVALID ENTRY"},
        {"KAAA ABCDE FLY KBBB", "=J9 L3", "KAAA ABCDE FLY J9 THEN KBBB"},
        {"KAAA ABCDE FLY DISCO KBBB", "=J9 L4", "KAAA ABCDE FLY DISCO KBBB", "INVALID ENTRY"},
        {"KAAA ABCDE FLY JTHR KBBB", "=J9 L3", "KAAA ABCDE FLY J9 JTWO J9 JTHR KBBB"},
        {"KAAA ABCDE FLY KBBB", "=V7 L3", "KAAA ABCDE FLY V7 THEN KBBB"},  // it begins there
        {"KAAA ABCDE FLY J9 THEN KBBB", "=V7 L3", "KAAA ABCDE FLY V7 THEN KBBB"},
        {"KAAA ABCDE FLY J9 THEN KBBB", "=JTWO R3", "KAAA ABCDE FLY J9 JTWO KBBB"},
        {"KAAA ABCDE FLY J9 THEN KBBB", "=JONE R3", "KAAA ABCDE FLY J9 JONE KBBB"},  // backwards
        {"KAAA ABCDE FLY J9 THEN KBBB", "=NEWPT R3", "KAAA ABCDE FLY J9 THEN KBBB",
         "INVALID ENTRY"},
        {"KAAA ABCDE FLY J9 THEN KBBB", "=FLY R3", "KAAA ABCDE FLY J9 THEN KBBB", "INVALID ENTRY"},
        {"KAAA FLY J9 THEN LATER JTHR KBBB", "=JTHR R2", "KAAA FLY J9 JTWO J9 JTHR KBBB"},
        {"KAAA FLY J9 THEN NEWPT KBBB", "=KBBB R2", "KAAA FLY KBBB"},
        {"KAAA ABCDE FLY J9 THEN KBBB", "DEL L3", "KAAA ABCDE FLY KBBB"},
        {"KAAA FLY DISCO NEWPT KBBB", "DEL L1", "KAAA NEWPT KBBB"},  // no gap is flown to
        {"KAAA FLY DISCO NEWPT KBBB", "LEGS DEL L1", "KAAA NEWPT KBBB"},
        {"KAAA ABCDE FLY J9 JTWO J9 JTHR KBBB", "=JTWO R3", "KAAA ABCDE FLY J9 JTWO KBBB"},
        {"KAAA ABCDE FLY LATER KBBB", "=LATER R1", "KAAA LATER KBBB"},
        {"KAAA ABCDE FLY LATER KBBB", "=KBBB R2", "KAAA ABCDE KBBB"},
        {"KAAA ABCDE FLY LATER KBBB", "=NEWPT R2", "KAAA ABCDE NEWPT DISCO FLY LATER KBBB"},
        {"KAAA ABCDE FLY KBBB", "=NEWPT R3", "KAAA ABCDE FLY NEWPT KBBB"},
        {"KAAA ABCDE FLY KBBB", "=KBBB R3", "KAAA ABCDE FLY KBBB"},  // it ends there already
        {"KAAA ABCDE FLY KBBB", "=NEWPT R4", "KAAA ABCDE FLY KBBB", "INVALID ENTRY"},
        {"KAAA ABCDE DCT FLY LATER KBBB", "=NEWPT R2",
         "KAAA ABCDE NEWPT DISCO DCT FLY LATER KBBB"},  // "DCT" is no airway
        {"KAAA ABCDE FLY KBBB", "=NOWHE R3", "KAAA ABCDE FLY KBBB", "NOT IN DATABASE"},
        {"KAAA ABCDE FLY KBBB", "=A/B/C R3", "KAAA ABCDE FLY KBBB", "INVALID ENTRY"},
        {"KAAA ABCDE FLY LATER KBBB", "DEL L2", "KAAA ABCDE DISCO LATER KBBB"},
        {"KAAA ABCDE DISCO LATER KBBB", "DEL R2", "KAAA ABCDE LATER KBBB"},
        {"KAAA ABCDE DISCO J9 JTWO J9 JTHR KBBB", "DEL R2", "KAAA ABCDE JTWO J9 JTHR KBBB"},
        {"KAAA ABCDE DISCO J9 JTWO KBBB", "LEGS DEL L2", "KAAA ABCDE JTWO KBBB"},
        {"KAAA J9 FLY DISCO J9 JTHR KBBB", "LEGS DEL L2", "KAAA J9 FLY J9 JTHR KBBB"},
        {"KAAA ABCDE FLY J9 JTWO J9 JTHR LATER KBBB", "DEL L3", "KAAA ABCDE FLY DISCO LATER KBBB"},
        {"KAAA ABCDE FLY LATER KBBB", "DEL L1", "KAAA FLY LATER KBBB"},
        {"KAAA ABCDE FLY LATER KBBB", "DEL L3", "KAAA ABCDE FLY KBBB"},
        {"KAAA ABCDE FLY LATER KBBB", "DEL L4", "KAAA ABCDE FLY LATER KBBB", "INVALID DELETE"},
        {"KAAA KBBB", "=NEWPT R1", "KAAA NEWPT KBBB"},
        {"KAAA", "=NEWPT R1", "KAAA NEWPT"},
        {"", "=NEWPT R1", "", "INVALID ENTRY"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(std::string(row.plan) + ' ' + row.keys);
        SetPlan(modifiedPlan, row.plan);
        planBook.status = RouteStatus::BeingBuilt;
        smiths.scratchpad.clear();
        smiths.message.clear();
        cdu.Press("RTE NEXT_PAGE");
        cdu.Press(row.keys);
        EXPECT_EQ(Without(Modified(), ">"), row.after);
        EXPECT_EQ(smiths.message, row.message);
    }
}

// ---- legs ----
TEST_F(SmithsRoute, LeftKeysInsertLeaveOutAndDelete) {
    const struct {
        const char* keys;
        const char* after;
        const char* bottom = "";
    } kCases[] = {
        {"=NEWPT L2", "KAAA >ABCDE NEWPT DISCO FLY LONGER KBBB"},
        {"=NEWPT L4", "KAAA >ABCDE FLY LONGER NEWPT KBBB"},
        {"=NEWPT L1", "KAAA >NEWPT DISCO ABCDE FLY LONGER KBBB"},       // flown first
        {"=NEWPT L5", "KAAA >ABCDE FLY LONGER KBBB", "INVALID ENTRY"},  // behind the airport
        {"=LONGER L1", "KAAA >LONGER KBBB"},
        {"=LONGER L2", "KAAA >ABCDE LONGER KBBB"},
        {"=FLY L2", "KAAA >ABCDE FLY LONGER KBBB"},  // it is there
        {"=NOWHE L2", "KAAA >ABCDE FLY LONGER KBBB", "NOT IN DATABASE"},
        {"=ABCDE L2", "KAAA >ABCDE ABCDE DISCO FLY LONGER KBBB"},  // behind it: a point like others
        {"=A/ L2", "KAAA >ABCDE FLY LONGER KBBB", "INVALID ENTRY"},
        {"=-12 L2", "KAAA >ABCDE FLY LONGER KBBB", "INVALID ENTRY"},
        {"=/ L2", "KAAA >ABCDE FLY LONGER KBBB", "INVALID ENTRY"},
        {"=NOW090/10 L2", "KAAA >ABCDE FLY LONGER KBBB", "NOT IN DATABASE"},
        {"=N0030.0E00230.0 L2", "KAAA >ABCDE WPT01 DISCO FLY LONGER KBBB"},
        {"=NEWPT090/10 L2", "KAAA >ABCDE NEW01 DISCO FLY LONGER KBBB"},
        {"L2", "KAAA >ABCDE FLY LONGER KBBB", "FLY"},
        {"L5", "KAAA >ABCDE FLY LONGER KBBB", ""},
        {"DEL L2", "KAAA >ABCDE DISCO LONGER KBBB"},
        {"DEL L2 DEL L2", "KAAA >ABCDE LONGER KBBB"},
        {"DEL L2 =LONGER L2", "KAAA >ABCDE LONGER KBBB"},             // closes the gap
        {"DEL L2 =NEWPT L2", "KAAA >ABCDE NEWPT DISCO LONGER KBBB"},  // one gap, not two
        {"DEL L1", "KAAA >FLY LONGER KBBB"},
        {"DEL L2 DEL L1", "KAAA >LONGER KBBB"},  // the gap behind it goes along
        {"DEL L3", "KAAA >ABCDE FLY KBBB"},
        {"DEL L5", "KAAA >ABCDE FLY LONGER KBBB", "INVALID DELETE"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.keys);
        smiths.scratchpad.clear();
        smiths.message.clear();
        SetActivePlan({{"KAAA", 0, 0, "APT"},
                       {"ABCDE", 0, 1, "VOR"},
                       {"FLY", 0, 2},
                       {"LONGER", 0, 3},
                       {"KBBB", 0, 7, "APT"}});
        SetActiveWaypoint(1);
        planBook.status = RouteStatus::Active;
        const std::string flown = Active();
        cdu.Press("LEGS");
        cdu.Press(row.keys);
        EXPECT_EQ(cdu.Bottom(), row.bottom);
        EXPECT_EQ(Active(), flown) << "never before EXEC";
        const bool changed = std::string(row.after) != flown;
        EXPECT_EQ(planBook.status == RouteStatus::Modified, changed);
        EXPECT_EQ(Show(SmithsPlan()), row.after);
        cdu.Press("EXEC");
        EXPECT_EQ(Active(), row.after);
        EXPECT_EQ(planBook.status, RouteStatus::Active);
    }
}

// ---- the life of a modification ----
TEST_F(SmithsRoute, AModificationWaitsThroughAPassageAndIsErased) {
    MakeRoute();
    cdu.Press("LEGS =NEWPT L2");
    SetActiveWaypoint(2);
    TrackPassage(activePlan.entries[1]);
    cdu.Draw();
    EXPECT_THAT(cdu.Data(1), testing::StartsWith("NEWPT")) << "put in behind the passed one";
    cdu.Press("L6");
    SetActiveWaypoint(1);
    cdu.Press("LEGS DEL L3");
    EXPECT_EQ(cdu.Title(), "MOD|RTE    LEGS| 1 /  2");
    EXPECT_EQ(cdu.Data(6), "< ERASE|RTE DATA >");
    SetActiveWaypoint(2);
    TrackPassage(activePlan.entries[1]);
    cdu.Draw();
    EXPECT_THAT(cdu.Data(1), testing::StartsWith("FLY")) << "the passed waypoint has left it";
    EXPECT_EQ(planBook.status, RouteStatus::Modified);
    cdu.Press("EXEC");
    EXPECT_EQ(Active(), "KAAA ABCDE >FLY DISCO STAR(STARA,STARB) APPR(APPRA) KBBB");
    cdu.Press("DEL L1");
    EXPECT_TRUE(SmithsExecLit());
    cdu.Press("L6");
    EXPECT_FALSE(SmithsExecLit());
    EXPECT_EQ(Active(), "KAAA ABCDE >FLY DISCO STAR(STARA,STARB) APPR(APPRA) KBBB");
    EXPECT_EQ(cdu.Data(6), "RTE DATA >");
}

TEST_F(SmithsRoute, WhatIsPredictedIsTheModification) {
    MakeRoute();
    aircraft.indicatedAirspeedKt = 240;
    RefreshPredictions();
    cdu.Press("LEGS =LONGER L1 R6");
    EXPECT_EQ(cdu.Title(), "MOD|RTE    DATA| 1 /  1");
    const PredictedPoint& there = ModifiedPredictions().entries[1];
    ASSERT_TRUE(there.known);
    UnitText eta;
    eta.Put("LONGER|%02.0f%02.0fZ", std::floor(there.zuluMinutes / 60),
            std::floor(std::fmod(there.zuluMinutes, 60) + 0.5));
    EXPECT_THAT(cdu.Data(1), testing::StartsWith(eta.c_str()));
    EXPECT_EQ(Enter("X", "L1"), "INVALID ENTRY");
    cdu.Press("CLR CLR L6");
    EXPECT_EQ(cdu.Title(), "MOD|RTE    LEGS| 1 /  1");
}

// ---- direct-to ----
TEST_F(SmithsRoute, DirectToWaitsForExecAndBeginsThere) {
    const struct {
        const char* keys;
        const char* after;
        const char* bottom = "";
    } kCases[] = {
        {"L3", "KAAA ABCDE FLY DCT DIRECT >LONGER STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"=LONGER L6", "KAAA ABCDE FLY DCT DIRECT >LONGER STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"=LONGER L3", "KAAA ABCDE FLY DCT DIRECT >LONGER STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"=NEWPT L6",
         "KAAA DCT DIRECT >NEWPT DISCO ABCDE FLY LONGER STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"L3 LEGS DIR_INTC",
         "KAAA ABCDE FLY DCT DIRECT >LONGER STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"=NOWHE L6", "KAAA >ABCDE FLY LONGER STAR(STARA,STARB) APPR(APPRA) KBBB",
         "NOT IN DATABASE"},
        {"=NOWHE R6", "KAAA >ABCDE FLY LONGER STAR(STARA,STARB) APPR(APPRA) KBBB", "INVALID ENTRY"},
        {"=090 R6", "KAAA >ABCDE FLY LONGER STAR(STARA,STARB) APPR(APPRA) KBBB", "INVALID ENTRY"},
        {"L3 L6", "KAAA >ABCDE FLY LONGER STAR(STARA,STARB) APPR(APPRA) KBBB"},  // erased
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.keys);
        MakeRoute();
        smiths.message.clear();
        smiths.scratchpad.clear();
        const std::string flown = Active();
        cdu.Press("DIR_INTC");
        EXPECT_EQ(cdu.Label(6), "D I R E C T    T O|I N T C    L E G");
        EXPECT_EQ(cdu.Data(6), "- - - - - - -|- - - - - - - - - -");
        cdu.Press(row.keys);
        EXPECT_EQ(cdu.Bottom(), row.bottom);
        EXPECT_EQ(Active(), flown) << "never before EXEC";
        EXPECT_EQ(Show(SmithsPlan()), row.after);
        aircraft.longitude = 0.75;
        cdu.Press("EXEC");
        EXPECT_EQ(Active(), row.after);
        if (std::string(row.after).find("DIRECT") != std::string::npos) {
            EXPECT_EQ(activePlan.entries[planBook.activeIndex - 1].longitude, 0.75)
                << "from where the aircraft is at EXEC";
        }
        aircraft.longitude = 0.52;
    }
    MakeRoute();
    cdu.Press("DIR_INTC L3");
    DropModification();  // by another unit
    cdu.Press("LEGS DEL L3 EXEC");
    EXPECT_EQ(Active(), "KAAA >ABCDE FLY DISCO STAR(STARA,STARB) APPR(APPRA) KBBB");
}

TEST_F(SmithsRoute, ANewRouteMayBeginWithADirectLeg) {
    cdu.Press("RTE =KAAA L1 =KBBB R1 NEXT_PAGE =NEWPT R1 =LATER R2 R6 DIR_INTC L2 EXEC");
    EXPECT_EQ(Active(), "KAAA NEWPT DCT DIRECT >LATER KBBB");
    EXPECT_EQ(guidance.trackLeg, 0);
    // an airway that was never completed is left out, and nothing is taken for what stood there
    cdu.Press("RTE =KAAA L1 =KBBB R1 NEXT_PAGE =FLY R1 =J9 L2 =LATER R3 EXEC");
    EXPECT_EQ(Active(), "KAAA >FLY LATER KBBB");
    cdu.Press("RTE NEXT_PAGE =J9 L2 DIR_INTC =LATER L6 EXEC");
    EXPECT_EQ(Active(), "KAAA FLY DCT DIRECT >LATER KBBB");
}

TEST_F(SmithsRoute, AnInterceptCourseLeadsIn) {
    MakeRoute();
    aircraft.magneticVariation = 5;
    cdu.Press("DIR_INTC L2");
    EXPECT_EQ(cdu.Label(6), "I N T C    C R S");
    EXPECT_EQ(cdu.Data(6), "< ERASE|085") << "direct";
    for (const char* const wrong : {"361", "-90", "1234", "A", "9.5"}) {
        EXPECT_EQ(Enter(wrong, "R6"), "INVALID ENTRY") << wrong;
    }
    EXPECT_EQ(Enter("040", "R6"), "ok");
    EXPECT_EQ(cdu.Data(6), "< ERASE|040");
    const PlanWaypoint& start = modifiedPlan.entries[planBook.trackedIndex - 1];
    double distanceNm = 0;
    double courseTrue = 0;
    DistanceAndCourse(start.latitude, start.longitude, 0, 2, distanceNm, courseTrue);
    EXPECT_NEAR(courseTrue, 45, 0.1);
    EXPECT_NEAR(distanceNm, 88.8, 0.1) << "as far before it as the aircraft is";
    cdu.Press("EXEC");
    EXPECT_NEAR(guidance.desiredTrackMag, 40, 0.1);
    EXPECT_EQ(guidance.trackLeg, 1);
    // the leg to a waypoint of the route, on its own course
    MakeRoute();
    cdu.Press("DIR_INTC =FLY R6");
    EXPECT_EQ(cdu.Data(6), "< ERASE|085");
}

// ---- holds ----
TEST_F(SmithsRoute, HoldsAreChosenOnTheLegsPage) {
    MakeRoute();
    const struct {
        const char* typed;
        const char* line;
        const char* result;
        const char* after;
    } kCases[] = {
        {"NOWHE", "L6", "NOT IN DATABASE",
         "KAAA >ABCDE FLY LONGER STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"LONGER", "L6", "ok", "KAAA >ABCDE FLY LONGER@ STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"NEWPT", "L6", "ok",
         "KAAA >NEWPT@ DISCO ABCDE FLY LONGER@ STAR(STARA,STARB) APPR(APPRA) KBBB"},
        {"PPOS", "L6", "ok",
         "KAAA HOLD PPOS(>WPT01@) NEWPT@ DISCO ABCDE FLY LONGER@ STAR(STARA,STARB) APPR(APPRA) "
         "KBBB"},
        {"", "R6", "ok",
         "KAAA HOLD PPOS(>WPT02@,WPT01@) NEWPT@ DISCO ABCDE FLY LONGER@ STAR(STARA,STARB) "
         "APPR(APPRA) "
         "KBBB"},
        {"FLY", "L6", "INVALID ENTRY",
         "KAAA HOLD PPOS(>WPT02@,WPT01@) NEWPT@ DISCO ABCDE FLY LONGER@ STAR(STARA,STARB) "
         "APPR(APPRA) "
         "KBBB"},  // the fifth
    };
    aircraft.headingMag = 75;
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.typed);
        OpenSmithsPage(kSmithsLegs);
        smiths.legsMode = LegsMode::Hold;
        EXPECT_EQ(Enter(row.typed, row.line), row.result);
        EXPECT_EQ(Show(SmithsPlan()), row.after);
    }
    EXPECT_EQ(holdList.count, kHoldCapacity);
    EXPECT_NEAR(holdList.holds[3].inboundCourseMag, 75, 0.1) << "here, as the aircraft goes";
    smiths.scratchpad.clear();
    cdu.Press("CLR HOLD NEXT_PAGE HOLD");
    EXPECT_EQ(cdu.Title(), "MOD|RTE        HOLD|1 / 4") << "the next one first";
}

// ---- several points of one name ----
TEST_F(SmithsRoute, AWaypointPassedWhileThePilotChoosesKeepsThePlace) {
    MakeRoute();
    cdu.Press("LEGS =TWICE L3");
    EditActivePlan([](FlightPlan& plan) { return DeleteBetween(plan, 2); });
    cdu.Press("L1");
    EXPECT_EQ(Modified(), "KAAA >ABCDE TWICE DISCO LONGER STAR(STARA,STARB) APPR(APPRA) KBBB");
}

TEST_F(SmithsRoute, TheSixthPointOfANameIsTheFirstOfASecondPage) {
    std::string stations;
    for (int i = 1; i <= 7; ++i) {
        stations +=
            "MANY STATION 0." + std::to_string(i) + " 1.0 NDB " + std::to_string(380 + i) + "\n";
    }
    folder.Write("avq/Navdata/avq_navs.txt", stations);
    LoadNavDatabase();
    MakeRoute();
    cdu.Press("LEGS =MANY L3");
    EXPECT_EQ(cdu.Title(), "SELECT WAYPOINT| 1/ 2");
    cdu.Press("NEXT_PAGE");
    EXPECT_EQ(cdu.Title(), "SELECT WAYPOINT| 2/ 2");
    EXPECT_THAT(cdu.Label(1), testing::HasSubstr("386")) << "the nearest come first";
    EXPECT_THAT(cdu.Label(2), testing::HasSubstr("387"));
    EXPECT_EQ(cdu.Label(3), "");
    cdu.Press("L3 L1");
    ASSERT_EQ(modifiedPlan.entries[3].ident, "MANY");
    EXPECT_NEAR(modifiedPlan.entries[3].latitude, 0.6, 1e-9);
}

// ---- map ----
TEST_F(SmithsRoute, StepMovesTheMapCentre) {
    MakeRoute();
    nd.ndMode = 7;
    cdu.Press("LEGS");
    EXPECT_EQ(cdu.Data(6), "STEP >");
    EXPECT_EQ(MapCentre(), nullptr);
    cdu.Press("R6");
    ASSERT_NE(MapCentre(), nullptr);
    EXPECT_EQ(MapCentre()->ident, "ABCDE");
    EXPECT_THAT(cdu.Label(1), testing::EndsWith("|M A P  C T R"));
    cdu.Press("R6 R6");
    EXPECT_EQ(MapCentre()->ident, "LONGER");
    cdu.Press("DEL L1");
    EXPECT_EQ(MapCentre()->ident, "LONGER") << "in the modification too";
    EXPECT_EQ(SmithsMapCentre(), 2);
    cdu.Press("EXEC");
    EXPECT_EQ(MapCentre()->ident, "LONGER");
    EXPECT_EQ(MapCentre(), &activePlan.entries[2]);
    cdu.Press("R6 R6 R6 R6 R6");
    EXPECT_EQ(MapCentre()->ident, "FLY") << "around to the one flown to";
    nd.ndMode = 6;
    cdu.Draw();
    EXPECT_EQ(cdu.Data(6), "RTE DATA >");
}

}  // namespace
}  // namespace avq1::test
