#include "flightplan/procedures.h"

#include <gtest/gtest.h>

#include "base/messages.h"
#include "base/module_state.h"
#include "flightplan/airway_entry.h"
#include "flightplan/plan_notation.h"
#include "navdb/airport_detail.h"

namespace avq1 {
namespace {

using test::SetPlan;
using test::TempSimFolder;

void SetAirports() {
    ResetModuleState();
    airportSlots[kDepartureSlot].ident = "KJFK";
    airportSlots[kDepartureSlot].latitude = 40.6;
    airportSlots[kArrivalSlot].ident = "KBOS";
    airportSlots[kArrivalSlot].latitude = 42.36;
    airportSlots[kArrivalSlot].elevationFt = 20;
    lastAirportElevationText = "13";  // of another airport
    planBook.status = RouteStatus::BeingBuilt;
}

// Splices "SID:NEION2(BETTE,NEION)", "APPR(FAF,MISS/MAF)" with a leg's role, or "DISCO APPR(AAA)"
// for an approach behind a gap.
bool Splice(FlightPlan& plan, std::string_view text) {
    constexpr std::string_view kGap = "DISCO ";
    const bool withGap = text.starts_with(kGap);
    test::RouteWord word = test::ReadRouteWord(text.substr(withGap ? kGap.size() : 0));
    std::vector<ProcedureWaypoint>& list = word.procedure == "SID"    ? procedureLists.sid
                                           : word.procedure == "STAR" ? procedureLists.star
                                                                      : procedureLists.approach;
    list.clear();
    while (!word.fixes.empty()) {
        ProcedureWaypoint waypoint;
        const std::string_view fix = test::NextFix(word.fixes);
        waypoint.ident = fix.substr(0, fix.find('/'));
        waypoint.roleText = fix.substr(std::min(waypoint.ident.size() + 1, fix.size()));
        waypoint.viaLabel = list.empty() ? std::string_view{} : word.name;
        waypoint.latitude = 42;
        list.push_back(std::move(waypoint));
    }
    return word.procedure == "SID"    ? InsertSid(plan)
           : word.procedure == "STAR" ? InsertStar(plan)
                                      : InsertApproach(plan, withGap);
}

struct SpliceCase {
    const char* what;
    const char* before;
    const char* splice;
    const char* after;
};

// ">" is the tracked entry here.
constexpr SpliceCase kIntoTheModifiedPlan[] = {
    {"a departure", "KJFK >AAA J121 BBB KBOS", "SID:NEION2(BETTE,NEION)",
     "KJFK SID:NEION2(BETTE,NEION) >AAA J121 BBB KBOS"},
    {"shorter", "KJFK SID:O1(OLD,OLE,OLF) >AAA@ BBB KBOS", "SID(XX)",
     "KJFK SID(XX) >AAA@ BBB KBOS"},
    {"what was tracked goes with the old one", "KJFK SID:O1(OLD,>OLE) AAA KBOS", "SID:N2(XX,YY,ZZ)",
     "KJFK SID:N2(>XX,YY,ZZ) AAA KBOS"},
    {"it ends where the route begins", "KJFK AAA J1 BBB >KBOS", "SID:N2(XX,AAA)",
     "KJFK SID(XX) AAA J1 BBB >KBOS"},
    {"it ends where the arrival begins", "KJFK STAR:T1(AAA,BBB) >KBOS", "SID:N2(XX,AAA)",
     "KJFK SID(XX) STAR:T1(AAA,BBB) >KBOS"},
    {"the old departure's hold goes", "KJFK SID(OLD@) >AAA KBOS", "SID(XX)",
     "KJFK SID(XX) >AAA KBOS"},
    {"a merged entry's hold stays", "KJFK AAA@ BBB >KBOS", "SID:N2(XX,AAA)",
     "KJFK SID(XX) AAA@ BBB >KBOS"},
    {"nothing is tracked", "KJFK AAA KBOS", "SID:N2(XX,YY)", "KJFK SID:N2(XX,YY) AAA KBOS"},

    {"an arrival", "KJFK >AAA BBB KBOS", "STAR:QUABN3(JFUND,QUABN)",
     "KJFK >AAA BBB STAR:QUABN3(JFUND,QUABN) KBOS"},
    {"it replaces another and drops the approach behind it",
     "KJFK >AAA STAR:O1(OLD,OLE) APPR(FAF) KBOS", "STAR(XX)", "KJFK >AAA STAR(XX) KBOS"},
    {"it stands in front of an approach", "KJFK >AAA APPR(IAF,FAF) KBOS@", "STAR:N2(XX,YY)",
     "KJFK >AAA STAR:N2(XX,YY) APPR(IAF,FAF) KBOS@"},
    {"an approach behind a gap: never two arrivals",
     "KJFK AAA STAR:O1(OLD,>OLE) DISCO APPR(FAF) KBOS", "STAR(XX)",
     "KJFK >AAA DISCO STAR(XX) APPR(FAF) KBOS"},
    {"a gap without the approach", "KJFK >AAA STAR(OLD) DISCO KBOS", "STAR(XX)",
     "KJFK >AAA STAR(XX) KBOS"},
    {"it begins where the departure ends", "KJFK SID:N2(XX,YY@) >KBOS", "STAR:T1(YY,ZZ)",
     "KJFK SID(XX) SIDSTAR(YY@) T1 STAR(ZZ) >KBOS"},
    {"what is tracked is merged", "KJFK STAR:T1(>AAA,BBB) KBOS", "SID:N2(XX,AAA)",
     "KJFK SID(XX) STAR:T1(>AAA,BBB) KBOS"},
    {"tracked in the old one", "KJFK AAA STAR(>OLD) KBOS", "STAR(XX)", "KJFK >AAA STAR(XX) KBOS"},
    {"nothing but airports", "KJFK >KBOS", "STAR(XX)", "KJFK STAR(XX) >KBOS"},

    {"an approach", "KJFK >AAA KBOS", "APPR(IAF,FAF)", "KJFK >AAA APPR(IAF,FAF) KBOS"},
    {"with a gap", "KJFK >AAA KBOS", "DISCO APPR(FAF)", "KJFK >AAA DISCO APPR(FAF) KBOS"},
    {"an old gap goes with its approach", "KJFK >AAA DISCO APPR(OLD) KBOS", "APPR(FAF)",
     "KJFK >AAA APPR(FAF) KBOS"},
    {"tracked in the old approach", "KJFK AAA APPR(OLD,>OLE) KBOS", "DISCO APPR(IAF,FAF)",
     "KJFK AAA DISCO APPR(>IAF,FAF) KBOS"},
    {"its missed approach is left out", "KJFK >AAA KBOS", "APPR(FAF,MISS/MAF)",
     "KJFK >AAA APPR(FAF) KBOS"},
    {"the old approach's hold goes", "KJFK >AAA APPR(OLD@) KBOS", "APPR(FAF)",
     "KJFK >AAA APPR(FAF) KBOS"},
};

TEST(Splices, IntoTheModifiedPlanAwaitExecution) {
    for (const SpliceCase& c : kIntoTheModifiedPlan) {
        SCOPED_TRACE(c.what);
        SetAirports();
        SetPlan(modifiedPlan, c.before);
        planBook.editIndex = NextEntryPlace(modifiedPlan);
        planBook.status = RouteStatus::Active;
        EXPECT_TRUE(Splice(modifiedPlan, c.splice));
        EXPECT_EQ(test::Show(modifiedPlan), c.after);
        EXPECT_TRUE(test::FlagsMatchHolds(modifiedPlan));
        EXPECT_EQ(planBook.status, RouteStatus::Modified);
        EXPECT_EQ(planBook.editIndex, modifiedPlan.lastIndex) << "before the destination";

        const std::string before = test::Show(modifiedPlan, true);
        SetPlan(previewPlan, test::Without(c.before, ">@"));
        EXPECT_TRUE(Splice(previewPlan, c.splice));
        EXPECT_EQ(test::Show(previewPlan), test::Without(c.after, ">@"));
        EXPECT_EQ(test::Show(modifiedPlan, true), before);
    }
}

// ">" is the active waypoint here. The vertical target becomes the next restriction.
constexpr SpliceCase kIntoTheActivePlan[] = {
    {"a departure is flown from its first waypoint", "KLGA SID(OLD) AAA@ >^!BBB KBOS",
     "SID:N2.TRANS(XX,YY,ZZ)", "KJFK SID:N2.TRANS(>XX,YY,ZZ) AAA@ ^!BBB KBOS"},
    {"nothing is flown", "KJFK AAA BBB ^KBOS", "SID(XX)", "KJFK SID(>XX) AAA BBB ^KBOS"},
    {"what a unit has selected", "KJFK >AAA =BBB ^KBOS", "SID(XX)", "KJFK SID(>XX) AAA =BBB ^KBOS"},
    {"an arrival that is flown is replaced", "KJFK AAA BBB STAR(>OLD) ^KBOS", "STAR:N2(XX,YY)",
     "KJFK AAA >BBB STAR:N2(XX,YY) ^KBOS"},
    {"a target in the old arrival", "KJFK >AAA STAR:O1(OLD,^!OLE) KBOS", "STAR(XX)",
     "KJFK >AAA STAR(XX) ^KBOS"},
    {"in front of an approach that is flown", "KJFK AAA APPR(>IAF,!FAF) ^KBOS", "STAR(XX)",
     "KJFK >AAA STAR(XX) APPR(IAF,^!FAF) KBOS"},
    {"the merged departure's last is flown", "KJFK SID:N2(XX,>!*YY) ^KBOS", "STAR:T1(YY,ZZ)",
     "KJFK SID(XX) SIDSTAR(>^!*YY) T1 STAR(ZZ) KBOS"},
    {"a gap is for modifications only", "KJFK >AAA BBB ^KBOS", "DISCO APPR(IAF,FAF)",
     "KJFK >AAA BBB APPR(IAF,FAF) ^KBOS"},
    {"an approach that is flown is replaced", "KJFK AAA APPR(OLD,>OLE) ^KBOS", "APPR(IAF,FAF)",
     "KJFK AAA APPR(>IAF,FAF) ^KBOS"},
    {"it begins where the arrival ends", "KJFK >AAA STAR:T1(BBB,!*CCC@) ^KBOS", "APPR(CCC,FAF)",
     "KJFK >AAA STAR:T1(BBB,^!*CCC@) APPR(FAF) KBOS"},
    {"it begins where the route ends", "KJFK >AAA J1 !CCC@ ^KBOS", "APPR(CCC,FAF)",
     "KJFK >AAA J1 ^!CCC@ APPR(FAF) KBOS"},
    {"an arrival that ends where it begins", "KJFK >AAA APPR(!*CCC@,FAF) ^KBOS", "STAR:T1(BBB,CCC)",
     "KJFK >AAA STAR:T1(BBB,^!*CCC@) APPR(FAF) KBOS"},
    {"both had a hold", "KJFK SID:N2(XX,YY@) >ZZ@ ^KBOS", "SID:N2(XX,ZZ)",
     "KJFK SID(>XX) ZZ@ ^KBOS"},
    {"a departure without waypoints", "^KJFK", "SID()", "^KJFK"},
    {"what was selected at the old end", "KJFK >AAA STAR(OLD,OLE,OLF) ^=KBOS", "STAR(XX)",
     "KJFK >AAA STAR(XX) ^KBOS ="},
    {"a restriction behind what is flown", "KJFK !AAA >BBB ^KBOS", "STAR(XX)",
     "KJFK !AAA >BBB STAR(XX) ^KBOS"},
};

TEST(Splices, IntoTheActivePlanKeepWhatIsFlown) {
    for (const SpliceCase& c : kIntoTheActivePlan) {
        SCOPED_TRACE(c.what);
        SetAirports();
        SetPlan(activePlan, c.before);
        EXPECT_TRUE(Splice(activePlan, c.splice));
        EXPECT_EQ(test::Show(activePlan, true), c.after);
        EXPECT_TRUE(test::FlagsMatchHolds(activePlan));
        EXPECT_EQ(planBook.status, RouteStatus::BeingBuilt);
    }
}

TEST(Splices, RebuildTheAirports) {
    const struct {
        FlightPlan& plan;
        const char* splice;
        double arrivalAltitude;
        double arrivalValue;
    } cases[] = {
        {modifiedPlan, "STAR(XX)", 1500, -1},  // the tracked airport keeps its own
        {activePlan, "STAR(XX)", kUnset, -1},
        {modifiedPlan, "APPR(XX)", kUnset, -999},
        {activePlan, "APPR(XX)", 20, -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.splice);
        SetAirports();
        procedureLists.approachReady = true;
        SetPlan(c.plan, "KLGA AAA >KPVD");
        c.plan.Edit(2).altitude = 1500;
        ASSERT_TRUE(Splice(c.plan, c.splice));
        const PlanWaypoint& arrival = c.plan.entries[3];
        EXPECT_EQ(arrival.ident + arrival.type, "KBOSAPT");
        EXPECT_EQ(arrival.latitude, 42.36);
        EXPECT_EQ(arrival.altitude, c.arrivalAltitude);
        EXPECT_EQ(arrival.auxValue, c.arrivalValue);
        EXPECT_EQ(procedureLists.approachReady, c.splice[0] == 'S');
        ASSERT_TRUE(Splice(c.plan, "SID(YY)"));
        EXPECT_EQ(c.plan.entries[0].ident, "KJFK");
        EXPECT_EQ(c.plan.entries[0].latitude, 40.6);
    }
}

TEST(Splices, TakeTheAirportBeingChosenForAPlanWithoutOne) {
    const struct {
        const char* before;
        const char* splice;
        const char* after;
    } cases[] = {
        {"", "SID(XX)", "KLGA SID(XX)"},
        {"AAA >BBB", "SID(XX)", "KLGA SID(XX) >BBB"},
        {"KJFK >AAA", "STAR(XX)", "KJFK >AAA STAR(XX) KLGA"},
        {"KJFK >AAA", "APPR(XX)", "KJFK >AAA APPR(XX)"},  // it has none to go to
    };
    for (const auto& c : cases) {
        SetAirports();
        airportSlots[kDepartureSlot] = {};
        airportSlots[kArrivalSlot] = {};
        const TempSimFolder folder;
        folder.Write("avq/Navdata/avq_apts.txt", "KLGA LaGuardia 22 40.77 -73.87\n");
        procedureChoice.airport = "KLGA";
        SetPlan(modifiedPlan, c.before);
        ASSERT_TRUE(Splice(modifiedPlan, c.splice));
        EXPECT_EQ(test::Show(modifiedPlan), c.after);
    }
}

TEST(Splices, AProcedureIsTakenOutAndWhatItSharesIsLeftToTheOther) {
    const struct {
        const char* before;
        const char* tag;
        const char* after;
    } cases[] = {
        {"KJFK SID(XX) SIDSTAR(>YY@) STAR(ZZ) KBOS", "SID", "KJFK STAR(>YY@,ZZ) KBOS"},
        {"KJFK SID(XX) SIDSTAR(>YY) STAR(ZZ@) KBOS", "STAR", "KJFK SID(XX,>YY) KBOS"},
        {"KJFK SIDSTAR(YY) APPR(>ZZ) KBOS", "APPR", "KJFK SIDSTAR(YY) >KBOS"},
    };
    for (const auto& c : cases) {
        SetAirports();
        SetPlan(activePlan, c.before);
        EXPECT_TRUE(RemoveProcedure(activePlan, c.tag));
        EXPECT_EQ(test::Show(activePlan), c.after) << c.tag;
        EXPECT_TRUE(test::FlagsMatchHolds(activePlan));
    }
}

// A plan of the departure, `count` entries and the arrival.
void FillPlan(FlightPlan& plan, int count) {
    std::string route = "KJFK >FIRST@";
    for (int i = 2; i <= count; ++i) {
        route += Format(" FIX%03d", i);
    }
    SetPlan(plan, route + " KBOS");
}

TEST(Splices, RefuseWholeWhenThePlanHasNoRoom) {
    const struct {
        FlightPlan& plan;
        const char* fits;  // to the last entry
        const char* doesNot;
    } cases[] = {
        {activePlan, "SID(A,B,C)", "SID(A,B,C,D)"},
        {modifiedPlan, "STAR(A,B,C)", "STAR(A,B,C,D)"},
        {activePlan, "APPR(A,B,C)", "APPR(A,B,C,D)"},
        {modifiedPlan, "DISCO APPR(A,B)", "DISCO APPR(A,B,C)"},
    };
    for (const auto& [plan, fits, doesNot] : cases) {
        SCOPED_TRACE(doesNot);
        SetAirports();
        FillPlan(plan, 196);
        planBook.verticalTargetIndex = 197;
        const std::string before = test::Show(plan);
        EXPECT_FALSE(Splice(plan, doesNot));
        EXPECT_TRUE(test::Show(plan) == before);
        EXPECT_EQ(planBook.verticalTargetIndex, 197);
        EXPECT_EQ(messages.lines[messages.count], kPlanFullMessage);
        EXPECT_TRUE(Splice(plan, fits));
        EXPECT_EQ(plan.lastIndex, kMaxPlanIndex);
    }
}

TEST(ProcedureEntries, AreTiedToTheDatabase) {
    SetAirports();
    navDatabase.navaids.Append({"XX", "", 42.9, -71, PointKind::Vor, "112.7", ""});
    navDatabase.navaids.Append({"YY", "", 42.1, -71, PointKind::Navaid, "345.0", ""});
    BuildNavaidLetterIndex();
    SetPlan(modifiedPlan, "KJFK >AAA KBOS");
    for (const char* ident : {"XX", "YY", "ZZ"}) {
        procedureLists.approach.push_back({ident, "FAF", "A3000", "", 42, -71, 1});
    }
    ASSERT_TRUE(InsertApproach(modifiedPlan, false));
    std::string tied;
    for (std::int32_t i = 2; i <= 4; ++i) {
        const PlanWaypoint& entry = modifiedPlan.entries[i];
        tied += Format("%s/%s/%s/%s/%d ", entry.ident.c_str(), entry.type.c_str(),
                       entry.frequency.c_str(), entry.auxText.c_str(), entry.flyover);
        EXPECT_EQ(entry.altitude, kUnset);
    }
    EXPECT_EQ(tied, "XX/VOR/112.7/FAF/1 YY/NDB/345.0/FAF/1 ZZ///FAF/1 ");
}

// "S1.ABC(ALL,JUN,ABC)": all but the first are reached by S1.ABC; "PROVI/IAF" has a role.
std::string Show(const std::vector<ProcedureWaypoint>& list) {
    const std::string via = list.size() > 1 ? list[1].viaLabel : "";
    std::string text;
    for (const ProcedureWaypoint& waypoint : list) {
        EXPECT_EQ(waypoint.viaLabel, text.empty() ? "" : via);
        text += (text.empty() ? "" : ",") + waypoint.ident;
        text += waypoint.roleText.empty() ? "" : "/" + waypoint.roleText;
    }
    return via + "(" + text + ")";
}

TEST(ProcedureLists, TakeTheLegsThatApply) {
    const struct {
        const char* transition;
        const char* runway;
        const char* expected;
    } cases[] = {
        {"------", "------", "S1(ALL,DASH,JUN)"},
        {"------", "25R", "S1(R25,ALL,DASH,JUN)"},
        {"", "07L", "S1(R07,R25,ALL,DASH,JUN)"},
        {"ABC", "------", "S1.ABC(ALL,DASH,JUN,ABC)"},
        {"XYZ", "07L", "S1.XYZ(R07,R25,ALL,DASH,JUN,XYZ)"},
    };
    for (const auto& c : cases) {
        SetAirports();
        ReadSids(
            "[KJFK]\nS1 R07 - 07L 1 1\nS1 R25 - 07L,25R 1 1\nS1 ALL\nS1 DASH - --- 1 1\n"
            "S1 JUN - --- 1 1\nS1.ABC ABC - --- 1 1\nS1.XYZ XYZ - --- 1 1\n",
            "KJFK", airportSlots[kDepartureSlot].procedures.sids);
        procedureChoice.sidNumber = 1;
        procedureChoice.sidName = "S1";
        procedureChoice.sidTransition = c.transition;
        procedureChoice.departureRunway = c.runway;
        BuildSidWaypoints();
        EXPECT_EQ(Show(procedureLists.sid), c.expected);
    }
}

TEST(ProcedureLists, AnApproachBeginsAtItsTransition) {
    const struct {
        const char* type;
        const char* transition;
        const char* runway;
        const char* expected;
    } cases[] = {
        {"ILS", "PROVI", "22L", "(PROVI/IAF,MID,MILTT/FAF,REPLY/MAF)"},
        {"ILS", "WINNI", "22L", "(WINNI,STEP,MID,MILTT/FAF,REPLY/MAF)"},
        {"ILS", "", "22L", "(MID,MILTT/FAF,REPLY/MAF)"},
        {"RNAV", "", "22L", "(RNV)"},
        {"ILS", "", "04R", "(OTHER/FAF)"},
        {"RNVZ", "", "31", "(ALONE,LAST/FAF)"},  // its own name is no transition
        {"VORA", "LWM", "09", "(LWM/IAF)"},      // an approach to no runway in particular
        // The transition's fix counts in the other transitions that pass it, too.
        {"RNVY", "JABAD", "31", "(JABAD,JABAD/IAF,BIPKE,GEMKE/FAF)"},
    };
    for (const auto& c : cases) {
        SetAirports();
        ReadApproaches(
            "[KBOS]\n22L ILS PROVI IAF\n22L ILS WINNI WINNI\n22L ILS STEP WINNI\n22L ILS MID ---\n"
            "22L ILS MILTT FAF\n22L ILS REPLY MAF\n22L RNAV RNV --\n04R ILS OTHER FAF\n"
            "-- VORA LWM IAF\n31 RNVY DRIES IAF\n31 RNVY WASBO DRIES\n31 RNVY JABAD DRIES\n"
            "31 RNVY JABAD IAF\n31 RNVY BIPKE JABAD\n31 RNVY GEMKE FAF\n31 RNVZ ALONE ALONE\n31 "
            "RNVZ LAST FAF\n",
            "KBOS", airportSlots[kArrivalSlot].procedures);
        procedureChoice.approachType = c.type;
        procedureChoice.approachTransition = c.transition;
        procedureChoice.arrivalRunway = c.runway;
        BuildApproachWaypoints();
        EXPECT_EQ(Show(procedureLists.approach), c.expected) << c.type << c.transition;
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

struct Airways : test::FolderTest {
    Airways() {
        folder_.Write("avq/navdata/fsb_awy2.txt",
                      "J1 10 AAAA 40 -70\nJ1 20 BBB 41 -70\nJ1 30 CCCC 42 -70\n"
                      "J1 40 DDDD 43 -70\n");
        folder_.Write("avq/navdata/avq_navs.txt", "CCCC CHARLIE 42.0 -70.0 VOR 113.00\n");
        LoadNavDatabase();
    }
};

TEST_F(Airways, GoIntoThePlanForwardsAndBackwards) {
    const struct {
        const char* before;
        const char* entered;
        std::int32_t edit;
        std::int32_t exit;
        const char* text;
        const char* after;
    } cases[] = {
        {"KJFK BBB >EEE KBOS", "#J1", 1, 4, "J1", "KJFK BBB J1 CCCC J1 DDDD >EEE KBOS"},
        {"KJFK BBB >EEE KBOS", "#J1", 1, 1, "J1", "KJFK BBB J1 AAAA >EEE KBOS"},
        {"KJFK BBB >EEE KBOS", "#J1", 1, 2, "J1", "KJFK BBB >EEE KBOS"},
        {"KJFK BBB >EEE KBOS", "#J1", 2, 4, "J1 (N/A)", "KJFK BBB >EEE KBOS"},
        {"KJFK BBB >EEE KBOS", "#J1", kNoWaypoint, 4, "J1 (N/A)", "KJFK BBB >EEE KBOS"},
        {"KJFK BBB >DDDD@ KBOS", "#J1", 1, 4, "J1", "KJFK BBB J1 CCCC J1 >DDDD@ KBOS"},
        {"KJFK BBB >EEE KBOS", "", 1, 4, " (N/A)", "KJFK BBB >EEE KBOS"},
    };
    for (const auto& c : cases) {
        for (FlightPlan* plan : {&activePlan, &modifiedPlan}) {
            holdList = {};
            SetPlan(*plan, c.before);
            planBook.status = RouteStatus::Active;
            AirwayLookup lookup;
            LookupAirway(*plan, c.edit, c.entered, lookup);
            EXPECT_EQ(lookup.text, c.text);
            lookup.exitIndex = c.exit;
            EXPECT_TRUE(InsertAirway(*plan, c.edit, lookup));
            EXPECT_EQ(test::Show(*plan), c.after) << c.text;
            const bool edited = plan == &modifiedPlan && std::string_view(c.before) != c.after;
            EXPECT_EQ(planBook.status, edited ? RouteStatus::Modified : RouteStatus::Active);
            for (std::int32_t i = 0; i <= plan->lastIndex; ++i) {
                const PlanWaypoint& entry = plan->entries[i];
                EXPECT_TRUE(entry.via.empty() || entry.ident == "DDDD" ||
                            entry.type == (entry.ident == "CCCC" ? "VOR" : "INT"))
                    << entry.ident << entry.type;
            }
        }
    }
    std::filesystem::remove(folder_.root() / "avq/navdata/fsb_awy2.txt");
    LoadNavDatabase();
    AirwayLookup lookup;
    lookup.text = "J9";
    LookupAirway(modifiedPlan, 1, "#J1", lookup);
    EXPECT_EQ(lookup.text, "J9");  // without the file nothing is looked up
}

TEST_F(Airways, NeedRoomForAllTheirFixes) {
    for (const int entries : {198, 197}) {
        FillPlan(modifiedPlan, entries);
        modifiedPlan.Edit(1).ident = "BBB";
        AirwayLookup lookup;
        LookupAirway(modifiedPlan, 1, "#J1", lookup);
        lookup.exitIndex = 4;
        const std::string before = test::Show(modifiedPlan);
        EXPECT_EQ(InsertAirway(modifiedPlan, 1, lookup), entries == 197);
        EXPECT_EQ(test::Show(modifiedPlan) == before, entries == 198);
    }
    EXPECT_EQ(modifiedPlan.lastIndex, kMaxPlanIndex);
}

}  // namespace
}  // namespace avq1
