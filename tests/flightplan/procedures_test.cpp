#include "flightplan/procedures.h"

#include <gtest/gtest.h>

#include "base/messages.h"
#include "base/module_state.h"
#include "flightplan/airway_entry.h"
#include "flightplan/plan_notation.h"
#include "navdb/airport_detail.h"
#include "support/nav_points.h"

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

bool Splice(FlightPlan& plan, std::string_view procedure) {
    procedureLists.sid = procedureLists.star =
        procedureLists.approach = {{"XX", "", "", "", 42, -71, 0}};
    return procedure == "SID"    ? InsertSid(plan)
           : procedure == "STAR" ? InsertStar(plan)
                                 : InsertApproach(plan, false);
}

TEST(Splices, RebuildTheAirports) {
    const struct {
        FlightPlan& plan;
        const char* splice;
        double arrivalAltitude;
        double arrivalValue;
    } cases[] = {
        {modifiedPlan, "STAR", 1500, -1},  // the tracked airport keeps its own
        {activePlan, "STAR", kUnset, -1},
        {modifiedPlan, "APPR", kUnset, -999},
        {activePlan, "APPR", 20, -1},
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
        ASSERT_TRUE(Splice(c.plan, "SID"));
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
        {"", "SID", "KLGA SID(XX)"},
        {"AAA >BBB", "SID", "KLGA SID(XX) >BBB"},
        {"KJFK >AAA", "STAR", "KJFK >AAA STAR(XX) KLGA"},
        {"KJFK >AAA", "APPR", "KJFK >AAA APPR(XX)"},  // it has none to go to
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

TEST(ProcedureEntries, AreTiedToTheDatabase) {
    SetAirports();
    test::AddPoint(navDatabase.navaids, "XX", 42.9, -71, PointKind::Vor, "112.7");
    test::AddPoint(navDatabase.navaids, "YY", 42.1, -71, PointKind::Navaid, "345.0");
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

}  // namespace
}  // namespace avq1
