#include "flightplan/procedures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "base/messages.h"
#include "base/module_state.h"
#include "flightplan/airway_entry.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_notation.h"
#include "navdb/airport_detail.h"
#include "settings/parking.h"
#include "settings/settings.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::SetPlan;
using test::TempSimFolder;

std::string Show(const FlightPlan& plan) {
    return test::Show(plan, true);
}

// Waypoints of a chosen procedure, "P1 P2 P3"; all but the first carry the via label.
std::vector<ProcedureWaypoint> List(std::string_view idents, std::string_view viaLabel = "") {
    std::vector<ProcedureWaypoint> list;
    for (std::string_view word = NextWord(idents); !word.empty(); word = NextWord(idents)) {
        ProcedureWaypoint waypoint;
        waypoint.ident = word;
        waypoint.viaLabel = list.empty() ? std::string_view{} : viaLabel;
        waypoint.latitude = 42;
        list.push_back(waypoint);
    }
    return list;
}

void SetAirports() {
    ResetModuleState();
    airportSlots[kDepartureSlot].ident = "KJFK";
    airportSlots[kDepartureSlot].latitude = 40.6;
    airportSlots[kArrivalSlot].ident = "KBOS";
    airportSlots[kArrivalSlot].latitude = 42.36;
    lastAirportElevationText = "20";
    planBook.status = RouteStatus::BeingBuilt;
}

struct SpliceCase {
    const char* what;
    const char* before;
    const char* list;
    const char* after;
};

TEST(InsertSid, StandsBehindTheDepartureAirport) {
    const SpliceCase cases[] = {
        {"new", "KJFK >AAA BBB KBOS", "P1 P2", "KJFK P1/SID P2/SID(S1) >AAA BBB KBOS"},
        {"replaces, longer", "KJFK O1/SID >AAA BBB KBOS", "P1 P2",
         "KJFK P1/SID P2/SID(S1) >AAA BBB KBOS"},
        {"replaces, shorter", "KJFK O1/SID O2/SID(S0) O3/SID(S0) >AAA@ BBB KBOS", "P1",
         "KJFK P1/SID >AAA@ BBB KBOS"},
        {"the tracked one was in the old departure", "KJFK O1/SID >O2/SID AAA KBOS", "P1 P2 P3",
         "KJFK >P1/SID P2/SID(S1) P3/SID(S1) AAA KBOS"},
        {"none of its legs left", "KJFK O1/SID >AAA KBOS", "", "KJFK >AAA KBOS"},
        {"meets en route", "KJFK AAA BBB(J1) >KBOS", "P1 AAA", "KJFK P1/SID AAA BBB(J1) >KBOS"},
        {"meets an arrival: one entry that keeps its tag", "KJFK AAA/STAR BBB/STAR(T1) >KBOS",
         "P1 AAA", "KJFK P1/SID AAA/STAR BBB/STAR(T1) >KBOS"},
        {"a hold of the old departure goes", "KJFK O1@/SID >AAA KBOS", "P1",
         "KJFK P1/SID >AAA KBOS"},
        {"a merged entry's hold stays", "KJFK AAA@ BBB >KBOS", "P1 AAA",
         "KJFK P1/SID AAA@ BBB >KBOS"},
    };
    for (const SpliceCase& c : cases) {
        SetAirports();
        SetPlan(modifiedPlan, c.before);
        planBook.editIndex = 1;
        procedureLists.sid = List(c.list, "S1");
        EXPECT_TRUE(InsertSid(modifiedPlan)) << c.what;
        EXPECT_EQ(Show(modifiedPlan), c.after) << c.what;
    }
}

TEST(InsertSid, OfTheActivePlanIsFlownFromItsFirstWaypoint) {
    SetAirports();
    SetPlan(activePlan, "KLGA O1/SID AAA@ >BBB KBOS");
    planBook.verticalTargetIndex = 3;
    procedureLists.sid = List("P1 P2 P3", "S1.TRANS");
    ASSERT_TRUE(InsertSid(activePlan));
    EXPECT_EQ(Show(activePlan), "KJFK >P1/SID P2/SID(S1.TRANS) P3/SID(S1.TRANS) AAA@ BBB KBOS");
    EXPECT_EQ(planBook.verticalTargetIndex, 5);
    EXPECT_EQ(activePlan.entries[0].latitude, 40.6);
    SetPlan(activePlan, "KJFK AAA BBB KBOS");  // nothing is flown
    ASSERT_TRUE(InsertSid(activePlan));
    EXPECT_EQ(Show(activePlan), "KJFK >P1/SID P2/SID(S1.TRANS) P3/SID(S1.TRANS)");
}

TEST(InsertSid, TakesTheAirportBeingChosenForAPlanWithoutOne) {
    SetAirports();
    airportSlots[kDepartureSlot] = {};
    const TempSimFolder folder;
    folder.Write("avq/Navdata/avq_apts.txt", "KLGA LaGuardia 22 40.77 -73.87\n");
    procedureChoice.airport = "KLGA";
    procedureLists.sid = List("P1");
    ASSERT_TRUE(InsertSid(modifiedPlan));
    EXPECT_EQ(Show(modifiedPlan), "KLGA P1/SID");
    EXPECT_EQ(modifiedPlan.entries[0].latitude, 40.77);
}

TEST(InsertStar, StandsBeforeTheArrivalAirport) {
    const SpliceCase cases[] = {
        {"new", "KJFK >AAA BBB KBOS", "P1 P2", "KJFK >AAA BBB P1/STAR P2/STAR(S1) KBOS"},
        {"replaces, and drops the approach behind it", "KJFK >AAA O1/STAR O2/STAR(S0) X1/APPR KBOS",
         "P1", "KJFK >AAA P1/STAR KBOS"},
        {"in front of an approach", "KJFK >AAA X1/APPR X2/APPR KBOS", "P1 P2",
         "KJFK >AAA P1/STAR P2/STAR(S1) X1/APPR X2/APPR KBOS"},
        {"an approach behind a gap: never two arrivals",
         "KJFK AAA O1/STAR >O2/STAR(S0) DISCO X1/APPR KBOS", "P1",
         "KJFK >AAA DISCO P1/STAR X1/APPR KBOS"},
        {"behind the gap of an approach without waypoints", "KJFK >AAA O1/STAR DISCO KBOS", "P1",
         "KJFK >AAA P1/STAR KBOS"},
        {"meets the departure", "KJFK P1/SID P2/SID(D1) >KBOS", "P2 P3",
         "KJFK P1/SID P2/SIDSTAR P3/STAR(S1) >KBOS"},
        {"tracked behind the cut", "KJFK AAA >O1/STAR KBOS", "P1", "KJFK >AAA P1/STAR KBOS"},
        {"only airports", "KJFK >KBOS", "P1", "KJFK P1/STAR >KBOS"},
        {"the old arrival's hold goes", "KJFK >AAA O1@/STAR KBOS", "P1", "KJFK >AAA P1/STAR KBOS"},
    };
    for (const SpliceCase& c : cases) {
        SetAirports();
        SetPlan(modifiedPlan, c.before);
        procedureLists.star = List(c.list, "S1");
        EXPECT_TRUE(InsertStar(modifiedPlan)) << c.what;
        EXPECT_EQ(Show(modifiedPlan), c.after) << c.what;
    }
}

TEST(InsertStar, KeepsWhatIsFlownAndTheTrackedAirportsAltitude) {
    SetAirports();
    SetPlan(activePlan, "KJFK AAA BBB >O1/STAR KBOS");
    planBook.verticalTargetIndex = 4;
    procedureLists.star = List("P1", "S1");
    ASSERT_TRUE(InsertStar(activePlan));
    EXPECT_EQ(Show(activePlan), "KJFK AAA >BBB P1/STAR KBOS");
    EXPECT_EQ(planBook.verticalTargetIndex, 4);
    SetPlan(modifiedPlan, "KJFK AAA >KLGA");
    modifiedPlan.entries[2].altitude = 1500;
    ASSERT_TRUE(InsertStar(modifiedPlan));
    EXPECT_EQ(Show(modifiedPlan), "KJFK AAA P1/STAR >KBOS");
    EXPECT_EQ(modifiedPlan.entries[3].altitude, 1500);
    EXPECT_EQ(modifiedPlan.entries[3].latitude, 42.36);
}

struct ApproachCase {
    const char* what;
    const char* before;
    const char* list;
    bool gap;
    const char* after;
};

TEST(InsertApproach, StandsBeforeTheArrivalAirport) {
    const ApproachCase cases[] = {
        {"new", "KJFK >AAA KBOS", "P1 P2", false, "KJFK >AAA P1/APPR P2/APPR KBOS"},
        {"keeps the arrival, replaces an approach",
         "KJFK >AAA T1/STAR T2/STAR(S1) O1/APPR O2/APPR O3/APPR KBOS", "P1", false,
         "KJFK >AAA T1/STAR T2/STAR(S1) P1/APPR KBOS"},
        {"with a gap", "KJFK >AAA KBOS", "P1", true, "KJFK >AAA DISCO P1/APPR KBOS"},
        {"one gap is enough", "KJFK >AAA DISCO O1/APPR KBOS", "P1 P2", true,
         "KJFK >AAA DISCO P1/APPR P2/APPR KBOS"},
        {"an old gap goes with its approach", "KJFK >AAA DISCO O1/APPR KBOS", "P1", false,
         "KJFK >AAA P1/APPR KBOS"},
        {"no legs", "KJFK >AAA O1/APPR KBOS", "", false, "KJFK >AAA KBOS"},
        {"tracked in the old approach", "KJFK AAA O1/APPR >O2/APPR KBOS", "P1 P2", true,
         "KJFK AAA DISCO >P1/APPR P2/APPR KBOS"},
        {"the old approach's hold goes", "KJFK >AAA O1@/APPR KBOS", "P1", false,
         "KJFK >AAA P1/APPR KBOS"},
    };
    for (const ApproachCase& c : cases) {
        SetAirports();
        SetPlan(modifiedPlan, c.before);
        procedureLists.approach = List(c.list);
        procedureLists.approachReady = true;
        EXPECT_TRUE(InsertApproach(modifiedPlan, c.gap)) << c.what;
        EXPECT_EQ(Show(modifiedPlan), c.after) << c.what;
        EXPECT_FALSE(procedureLists.approachReady);
        EXPECT_EQ(modifiedPlan.entries[modifiedPlan.lastIndex].altitude, kUnset);
        EXPECT_EQ(modifiedPlan.entries[modifiedPlan.lastIndex].auxValue, -999);
    }
}

TEST(InsertApproach, OfTheActivePlanEndsAtTheAirportsElevation) {
    SetAirports();
    SetPlan(activePlan, "KJFK >AAA BBB KBOS");
    planBook.verticalTargetIndex = 2;  // the last entry before the approach is appended
    procedureLists.approach = List("P1 P2");
    ASSERT_TRUE(InsertApproach(activePlan, true));  // a gap is for modifications only
    EXPECT_EQ(Show(activePlan), "KJFK >AAA BBB P1/APPR P2/APPR KBOS");
    EXPECT_EQ(planBook.verticalTargetIndex, 4);
    EXPECT_EQ(activePlan.entries[5].altitude, 20);
    EXPECT_EQ(activePlan.entries[5].auxValue, -1);
    EXPECT_EQ(planBook.status, RouteStatus::BeingBuilt);
}

TEST(Splices, OpenAModificationOfTheActiveRoute) {
    SetAirports();
    SetPlan(modifiedPlan, "KJFK >AAA KBOS");
    planBook.status = RouteStatus::Active;
    procedureLists.star = List("P1");
    InsertStar(modifiedPlan);
    EXPECT_EQ(planBook.status, RouteStatus::Modified);
}

// A plan of the departure, `count` entries and the arrival.
void FillPlan(FlightPlan& plan, int count) {
    std::string notation = "KJFK >A1@";
    for (int i = 2; i <= count; ++i) {
        notation += Format(" W%04d", i);
    }
    SetPlan(plan, notation + " KBOS");
}

TEST(Splices, RefuseWholeWhenThePlanHasNoRoom) {
    struct Case {
        const char* what;
        bool (*splice)(FlightPlan& plan);
        int roomFor;  // entries of the list that just fit
    };
    const Case cases[] = {
        {"SID", InsertSid, 3},
        {"STAR", InsertStar, 3},
        {"approach", [](FlightPlan& plan) { return InsertApproach(plan, false); }, 3},
        {"approach and gap", [](FlightPlan& plan) { return InsertApproach(plan, true); }, 2},
    };
    for (const Case& c : cases) {
        for (FlightPlan* plan : {&modifiedPlan, &activePlan}) {
            SetAirports();
            FillPlan(*plan, 196);
            planBook.editIndex = 1;
            planBook.verticalTargetIndex = 197;
            const int room = plan == &activePlan ? 3 : c.roomFor;
            procedureLists.sid = List(room == 3 ? "P1 P2 P3 P4" : "P1 P2 P3");
            procedureLists.star = procedureLists.sid;
            procedureLists.approach = procedureLists.sid;
            const std::string before = Show(*plan);
            EXPECT_FALSE(c.splice(*plan)) << c.what;
            EXPECT_TRUE(Show(*plan) == before) << c.what;
            EXPECT_EQ(planBook.verticalTargetIndex, 197) << c.what;
            EXPECT_EQ(messages.lines[messages.count], kPlanFullMessage);
            procedureLists.sid.pop_back();
            procedureLists.star.pop_back();
            procedureLists.approach.pop_back();
            EXPECT_TRUE(c.splice(*plan)) << c.what;
            EXPECT_EQ(plan->lastIndex, kMaxPlanIndex) << c.what;
        }
    }
}

// Any series of splices keeps the route between the airports, the holds on it and the indexes, and
// leaves one procedure of each kind, the one spliced last.
TEST(Splices, AnySeriesKeepsTheRoute) {
    std::mt19937 random(4);
    for (int round = 0; round < 300; ++round) {
        FlightPlan& plan = round % 2 == 0 ? modifiedPlan : activePlan;
        SetAirports();
        SetPlan(plan, "KJFK AAA BBB@ >CCC KBOS");
        planBook.editIndex = 1;
        planBook.verticalTargetIndex = 4;
        std::string history;
        std::size_t counts[3] = {};
        for (int step = 0; step < 12; ++step) {
            const std::size_t kind = random() % 3;
            static constexpr const char* kSuffixes[] = {"D", "S", "A"};
            static constexpr const char* kLists[] = {"", "P1", "P1 P2", "P1 P2 P3 P4"};
            const std::vector<ProcedureWaypoint> list = List(kLists[random() % 4], "V");
            std::vector<ProcedureWaypoint>* const lists[] = {
                &procedureLists.sid, &procedureLists.star, &procedureLists.approach};
            *lists[kind] = list;
            for (ProcedureWaypoint& waypoint : *lists[kind]) {
                waypoint.ident += kSuffixes[kind];
            }
            counts[kind] = list.size();
            const bool gap = random() % 2 == 0;
            history += Format(" %zu/%zu/%d", kind, list.size(), gap ? 1 : 0);
            ASSERT_TRUE(kind == 0   ? InsertSid(plan)
                        : kind == 1 ? InsertStar(plan)
                                    : InsertApproach(plan, gap));
            std::string route;
            std::size_t found[3] = {};
            for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
                const PlanWaypoint& entry = plan.entries[i];
                found[0] += entry.procedure == "SID" ? 1 : 0;
                found[1] += entry.procedure == "STAR" ? 1 : 0;
                found[2] += entry.procedure == "APPR" ? 1 : 0;
                if (entry.procedure.empty() && !IsDiscontinuity(entry)) {
                    route += entry.ident + (test::HasHoldAt(plan, i) ? "@ " : " ");
                }
            }
            ASSERT_EQ(route, "KJFK AAA BBB@ CCC KBOS ") << history << ": " << Show(plan);
            ASSERT_EQ(found[0], counts[0]) << history << ": " << Show(plan);
            ASSERT_EQ(found[kind], counts[kind]) << history << ": " << Show(plan);
            ASSERT_LE(found[1], counts[1]) << history << ": " << Show(plan);
            ASSERT_LE(found[2], counts[2]) << history << ": " << Show(plan);
            const std::int32_t followed =
                &plan == &activePlan ? planBook.activeIndex : planBook.trackedIndex;
            ASSERT_TRUE(followed >= 1 && followed <= plan.lastIndex) << history;
            ASSERT_TRUE(&plan != &activePlan || planBook.verticalTargetIndex <= plan.lastIndex)
                << history;
        }
    }
}

TEST(ProcedureEntries, AreTiedToTheDatabase) {
    SetAirports();
    navDatabase.navaids.Append({"P1", "", 42.9, -71, PointKind::Vor, "112.7", ""});
    BuildNavaidLetterIndex();
    SetPlan(modifiedPlan, "KJFK >AAA KBOS");
    procedureLists.approach = List("P1 P2");
    procedureLists.approach[0].roleText = "FAF";
    procedureLists.approach[0].flyover = 1;
    ASSERT_TRUE(InsertApproach(modifiedPlan, false));
    const PlanWaypoint& first = modifiedPlan.entries[2];
    EXPECT_EQ(first.type, "VOR");
    EXPECT_EQ(first.frequency, "112.7");
    EXPECT_EQ(first.auxText, "FAF");
    EXPECT_EQ(first.flyover, 1);
    EXPECT_EQ(first.via, "");
    EXPECT_EQ(modifiedPlan.entries[3].type, "");
}

std::string Idents(const std::vector<ProcedureWaypoint>& list) {
    std::string text;
    for (const ProcedureWaypoint& waypoint : list) {
        text += (text.empty() ? "" : " ") + waypoint.ident;
        text += waypoint.viaLabel.empty() ? "" : "(" + waypoint.viaLabel + ")";
        text += waypoint.roleText.empty() ? "" : "/" + waypoint.roleText;
    }
    return text;
}

TEST(ProcedureLists, TakeTheLegsThatApply) {
    struct Case {
        const char* what;
        const char* transition;
        const char* runway;
        const char* expected;
    };
    const Case cases[] = {
        {"no transition, no runway", "------", "------", "ALL(S1) DASH(S1) JUN(S1)"},
        {"runway in a list", "------", "25R", "R25 ALL(S1) DASH(S1) JUN(S1)"},
        {"another runway", "", "07L", "R07 R25(S1) ALL(S1) DASH(S1) JUN(S1)"},
        {"transition", "ABC", "------", "ALL(S1.ABC) DASH(S1.ABC) JUN(S1.ABC) ABC(S1.ABC)"},
    };
    for (const Case& c : cases) {
        SetAirports();
        ReadSids(
            "[KJFK]\nS1 R07 - 07L 1 1\nS1 R25 - 07L,25R 1 1\nS1 ALL - --- 1 1\nS1 DASH - --- 1 1\n"
            "S1 JUN - --- 1 1\nS1.ABC ABC - --- 1 1\nS1.XYZ XYZ - --- 1 1\n",
            "KJFK", airportSlots[kDepartureSlot].procedures.sids);
        procedureChoice.sidNumber = 1;
        procedureChoice.sidName = "S1";
        procedureChoice.sidTransition = c.transition;
        procedureChoice.departureRunway = c.runway;
        BuildSidWaypoints();
        std::string expected = c.expected;  // the first waypoint has no via
        const std::size_t bracket = expected.find('(');
        if (const std::size_t blank = expected.find(' '); bracket < blank) {
            expected.erase(bracket, blank - bracket);
        }
        EXPECT_EQ(Idents(procedureLists.sid), expected) << c.what;
    }
}

TEST(ProcedureLists, AnApproachBeginsAtItsTransition) {
    struct Case {
        const char* type;
        const char* transition;
        const char* runway;
        const char* expected;
    };
    const Case cases[] = {
        {"ILS", "PROVI", "22L", "PROVI/IAF MID MILTT/FAF REPLY/MAF"},
        {"ILS", "WINNI", "22L", "WINNI STEP MID MILTT/FAF REPLY/MAF"},
        {"ILS", "", "22L", "MID MILTT/FAF REPLY/MAF"},
        {"RNAV", "", "22L", "RNV"},
        {"ILS", "", "04R", "OTHER/FAF"},
        {"VORA", "LWM", "09", "LWM/IAF"},  // an approach to no runway in particular
    };
    for (const Case& c : cases) {
        SetAirports();
        ReadApproaches(
            "[KBOS]\n22L ILS PROVI IAF\n22L ILS WINNI WINNI\n22L ILS STEP WINNI\n22L ILS MID ---\n"
            "22L ILS MILTT FAF\n22L ILS REPLY MAF\n22L RNAV RNV --\n04R ILS OTHER FAF\n"
            "-- VORA LWM IAF\n",
            "KBOS", airportSlots[kArrivalSlot].procedures);
        procedureChoice.approachType = c.type;
        procedureChoice.approachTransition = c.transition;
        procedureChoice.arrivalRunway = c.runway;
        BuildApproachWaypoints();
        EXPECT_EQ(Idents(procedureLists.approach), c.expected) << c.type << c.transition;
        EXPECT_TRUE(procedureLists.approachReady);
    }
}

TEST(ProcedureLists, HoldFortyWaypoints) {
    SetAirports();
    std::string text = "[KBOS]\n";
    for (int i = 1; i <= 41; ++i) {
        text += Format("S1 F%d\n", i);
    }
    ReadStars(text, "KBOS", airportSlots[kArrivalSlot].procedures.stars);
    procedureChoice.starNumber = 1;
    BuildStarWaypoints();
    EXPECT_EQ(procedureLists.star.size(), 40U);
    procedureChoice.starNumber = 2;
    BuildStarWaypoints();
    EXPECT_TRUE(procedureLists.star.empty());
}

TEST(Airways, GoIntoThePlanForwardsAndBackwards) {
    struct Case {
        const char* entered;
        std::int32_t edit;
        std::int32_t exit;
        const char* text;
        const char* after;
    };
    const Case cases[] = {
        {"#J1", 1, 4, "J1", "KJFK BBB CCCC(J1) DDDD(J1) >EEE KBOS"},
        {"#J1", 1, 1, "J1", "KJFK BBB AAAA(J1) >EEE KBOS"},
        {"#J1", 1, 2, "J1", "KJFK BBB >EEE KBOS"},
        {"#J1", 2, 4, "J1 (N/A)", "KJFK BBB >EEE KBOS"},
        {"#J7", 1, 4, "J7 (N/A)", "KJFK BBB >EEE KBOS"},
        {"#J1", kNoWaypoint, 4, "J1 (N/A)", "KJFK BBB >EEE KBOS"},
        {"", 1, 4, " (N/A)", "KJFK BBB >EEE KBOS"},
    };
    for (const Case& c : cases) {
        SetAirports();
        const TempSimFolder folder;
        folder.Write("avq/navdata/fsb_awy2.txt",
                     "J1 10 AAAA 40 -70\nJ1 20 BBB 41 -70\nJ1 30 CCCC 42 -70\nJ1 40 DDDD 43 -70\n");
        LoadNavDatabase();
        SetPlan(modifiedPlan, "KJFK BBB >EEE KBOS");
        planBook.editIndex = c.edit;
        LookupAirway(c.entered);
        EXPECT_EQ(planBook.airwayText, c.text);
        airwayLookup.exitIndex = c.exit;
        EXPECT_TRUE(InsertAirway(modifiedPlan));
        EXPECT_EQ(Show(modifiedPlan), c.after) << c.text;
        SetPlan(activePlan, "KJFK BBB@ >EEE KBOS");
        EXPECT_TRUE(InsertAirway(activePlan));
        EXPECT_EQ(activePlan.lastIndex, modifiedPlan.lastIndex);
    }
}

TEST(Airways, NeedRoomForAllTheirFixes) {
    SetAirports();
    const TempSimFolder folder;
    folder.Write("avq/navdata/fsb_awy2.txt", "J1 1 A1 40 -70\nJ1 2 BBBB 41 -70\nJ1 3 CC 42 -70\n");
    LoadNavDatabase();
    for (const int entries : {198, 197}) {
        FillPlan(modifiedPlan, entries);
        planBook.editIndex = 1;
        LookupAirway("#J1");
        airwayLookup.exitIndex = 3;
        const std::string before = Show(modifiedPlan);
        EXPECT_EQ(InsertAirway(modifiedPlan), entries == 197);
        EXPECT_EQ(Show(modifiedPlan) == before, entries == 198);
    }
    EXPECT_EQ(modifiedPlan.lastIndex, kMaxPlanIndex);
}

TEST(Airways, AMissingFileLeavesTheText) {
    SetAirports();
    const TempSimFolder folder;
    LoadNavDatabase();
    SetPlan(modifiedPlan, "KJFK BBB KBOS");
    planBook.editIndex = 1;
    planBook.airwayText = "J9";
    LookupAirway("#J1");
    EXPECT_EQ(planBook.airwayText, "J9");
}

TEST(SetPlanAirport, PutsTheAirportWhereTheModeSays) {
    struct Case {
        PlanAirportMode mode;
        const char* active;
        const char* modified;
        std::int32_t verticalTarget;
        double firstAltitude;
        double lastAltitude;
        double parkingLatitude;
        const char* destination;
    };
    using Mode = PlanAirportMode;
    const char* const plan = "KJFK AAA KBOS";
    const Case cases[] = {
        {Mode::DepartureElevation, plan, plan, 0, 20, kUnset, 1.5, ""},
        {Mode::ActiveDestination, plan, plan, 0, kUnset, 20, 1.5, "KBOS"},
        {Mode::LoadedDestination, plan, plan, 0, kUnset, 20, 0, "KBOS"},
        {Mode::ActiveOrigin, "KBOS AAA KBOS", plan, 0, kUnset, kUnset, 1.5, ""},
        {Mode::AppendToActive, "KJFK AAA KBOS KBOS", plan, 3, kUnset, 20, 1.5, "KBOS"},
        {Mode::ModifiedOrigin, plan, "KBOS AAA KBOS", 0, kUnset, kUnset, 1.5, ""},
        {Mode::AppendToModified, plan, "KJFK AAA KBOS KBOS", 0, kUnset, kUnset, 1.5, ""},
    };
    for (const Case& c : cases) {
        ResetModuleState();
        const TempSimFolder folder;
        folder.Write("avq/Navdata/avq_apts.txt",
                     "KBOS Boston 20 42.36 -71.01 09_7000_42.3_-71_92_0_0_0 27_7000_42_-71_272\n");
        folder.Write("avq/Navdata/apt_additional_info.txt",
                     "[KJFK]\nRWY27=RIGHTPATTERN\n[KBOS]\nRWY9=rightpattern\nRWY27=LEFT\n[KLGA]\n"
                     "RWY27=RIGHTPATTERN\n");
        folder.Write("avq/Aircraft/stands.txt", "KBOS 1.5 2.5 90\n");
        settings.ParkingFile = "stands.txt";
        SetPlan(activePlan, plan);
        SetPlan(modifiedPlan, plan);
        const int mode = static_cast<int>(c.mode);
        SetPlanAirport("KBOS", c.mode);
        EXPECT_EQ(Show(activePlan), c.active) << mode;
        EXPECT_EQ(Show(modifiedPlan), c.modified) << mode;
        EXPECT_EQ(planBook.verticalTargetIndex, c.verticalTarget) << mode;
        EXPECT_EQ(activePlan.entries[0].altitude, c.firstAltitude) << mode;
        EXPECT_EQ(activePlan.entries[activePlan.lastIndex].altitude, c.lastAltitude) << mode;
        EXPECT_EQ(parkingPosition.latitude, c.parkingLatitude) << mode;
        EXPECT_EQ(planAirports.destinationIdent, c.destination) << mode;
        EXPECT_EQ(planAirports.destinationLatitude, c.mode == Mode::AppendToActive ? 42.36 : 0);
        ASSERT_EQ(planAirports.runways.size(), 2U);
        EXPECT_EQ(planAirports.runways[0].rightPattern, 1);
        EXPECT_EQ(planAirports.runways[1].rightPattern, 0);
        EXPECT_EQ(planAirports.runways[0].field8, 92);
        EXPECT_EQ(messages.lines[messages.count], "APT 'KBOS' Set");
    }
}

TEST(SetPlanAirport, AFullPlanRefusesOneMore) {
    SetAirports();
    const TempSimFolder folder;
    folder.Write("avq/Navdata/avq_apts.txt", "KBOS Boston 20 42.36 -71.01\n");
    FillPlan(activePlan, 199);
    SetPlanAirport("KBOS", PlanAirportMode::AppendToActive);
    EXPECT_EQ(activePlan.lastIndex, kMaxPlanIndex);
    EXPECT_EQ(planBook.verticalTargetIndex, 0);
    EXPECT_EQ(messages.lines[1], kPlanFullMessage);
}

}  // namespace
}  // namespace avq1
