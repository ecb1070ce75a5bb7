// Pages of the Smiths-style unit after each step of a session, compared with how they read when
// somebody last looked: screens.txt keeps what each key changed, places and texts, and what became
// of the plans.
#include <set>
#include <sstream>

#include "base/redraw.h"
#include "cdu_smiths/fake_smiths.h"
#include "flightplan/plan_edit.h"
#include "guidance/progress.h"
#include "guidance/vnav.h"
#include "settings/aircraft_performance.h"
#include "support/kept_file.h"
#include "support/mixed_flows.h"
#include "support/screen_changes.h"

namespace avq1::test {
namespace {

// Flows of a pilot, each from a fresh state and looked at after every word.
struct Flow {
    const char* name;
    RouteStatus status;  // None: without a route
    const char* keys;
};

constexpr Flow kFlows[] = {
    {"page keys", RouteStatus::None,
     "RTE CLB CRZ DES LEGS DEP_ARR HOLD PROG FIX INIT_REF L6 L1 =12 L1 CLR CLR CLR DEL L1 CLR L1 "
     "DIR_INTC"},
    {"pages called by others", RouteStatus::Active,
     "INIT_REF DIR_INTC LEGS PROG PREV_PAGE L6 L6 L3 PROG PREV_PAGE L6 L6 L4 L5 PROG PREV_PAGE L6 "
     "RTE R6 PROG PREV_PAGE L6 INIT_REF CLB R6 PROG R6 R6 L6 L2"},
    {"from a cold panel to a route that is flown", RouteStatus::None,
     "INIT_REF =KAAA L2 R2 R4 R6 =KAAA L1 =KBBB R1 NEXT_PAGE =ABCDE R1 PREV_PAGE R6 R6 =98.6 L3 "
     "=4.2 L4 =100 L5 =240 R1 =270/45 R2 =10 R3 =9000 R5 =310 R1 =-46.4 R4 =350 R1 R6 =15 L1 =139 "
     "R1 =142 R2 =149 R3 EXEC R6 CLB INIT_REF INIT_REF L6 L5 R1 R4 PROG R6 R6 L6 L2 NEXT_PAGE "
     "=A12345 L3 CLR CLR CLR CLR CLR CLR CLR =A12 L3"},
    {"reference data", RouteStatus::Active,
     "INIT_REF L6 R1 =TWICE R1 NEXT_PAGE =KBBB L2 R2 =33 R2 CLR CLR CLR =09L R2 R6 INIT_REF L6 R1 "
     "=KSID L2 DEP_ARR =KSID L6 DEP_ARR =KAAA R6 INIT_REF L6 R1 R2"},
    {"an airway", RouteStatus::Active,
     "RTE NEXT_PAGE =J9 L3 =JTHR R3 R6 EXEC =J9 L5 CLR CLR CLR L6"},
    {"a new origin over the route", RouteStatus::Active,
     "RTE =KAAA L1 CRZ RTE EXEC CLR L6 CRZ RTE =A1 L2 CRZ EXEC CRZ"},
    {"a new destination and none", RouteStatus::Active,
     "RTE =KAAA R1 L6 DEL R1 DEL R1 CLR =09 L3 DEL L3 DEL L3 CLR DEL L1 CLR L6 =27 L3 DEP_ARR L1 "
     "L6"},
    {"restrictions on the legs", RouteStatus::Active,
     "LEGS =250/FL240 R2 =220/ R3 =240/9000A R3 R3 CLR CLR CLR CLR CLR CLR CLR CLR CLR R4 EXEC "
     "NEXT_PAGE NEXT_PAGE DEL R2 EXEC DEL R2 CLR CLB DES"},
    {"one of several points", RouteStatus::Active, "LEGS =TWICE L2 L3 CLR L6 L2 L6 L2 L1 EXEC"},
    {"four holds", RouteStatus::Active,
     "HOLD L6 L4 L4 EXEC HOLD L6 L2 L2 EXEC HOLD NEXT_PAGE NEXT_PAGE =123/L L3 L6 =123/L L3 EXEC "
     "LEGS R6 HOLD L6 L1 L1 EXEC L6 CLR HOLD L6 R6"},
    {"points of a fix", RouteStatus::Active, "FIX =NEWPT L1 L2 =180 L2 L2 LEGS R6 LEGS L5"},
    {"the index", RouteStatus::None,
     "INIT_REF L6 =A L1 CLR CLR R6 CLR R2 NEXT_PAGE NEXT_PAGE PREV_PAGE L6 =X L1 CLR CLR L1 RTE"},
    {"a route built", RouteStatus::None,
     "RTE =KAAA L1 =KBBB R1 =09 L3 =NONE L2 CLR CLR CLR CLR CLR NEXT_PAGE =ABCDE R1 =J9 L2 CLR CLR "
     "CLR =NEWPT R2 R1 =LATER R1 DEL L1 PREV_PAGE R6 L6 EXEC NEXT_PAGE"},
    {"legs", RouteStatus::Active,
     "LEGS L2 CLR CLR CLR CLR =250/9000A R2 R2 CLR =B R3 DEL SP DEL L3 R6 NEXT_PAGE L6 L6 =TWICE "
     "L2 NEXT_PAGE L2 EXEC DEL L3 DEL L5"},
    {"direct-to and intercept", RouteStatus::Active,
     "DIR_INTC L3 =045 R6 EXEC DIR_INTC =NEWPT L6 L6 DIR_INTC =LONGER R6 LEGS EXEC"},
    {"a hold chosen", RouteStatus::Active,
     "HOLD L2 L2 LEGS EXEC DEL L2 EXEC HOLD =PPOS L6 EXEC LEGS"},
    {"a plan saved", RouteStatus::Active,
     "INIT_REF L6 R6 CLR =MINE R6 CLR =A/B R6 CLR CLR CLR CLR =A.B R6 CLR DEL R6 R2"},
    {"a stored plan over a route", RouteStatus::Active, "INIT_REF L6 R2 L1 EXEC"},
    {"a departure", RouteStatus::Active,
     "DEP_ARR L1 R2 L2 R1 R1 L1 L1 L2 L2 L3 EXEC L2 L2 L2 L3 L6 DEL L2 L6 L1 DEL L1 L6 L6"},
    {"a departure before the route is flown", RouteStatus::BeingBuilt,
     "DEP_ARR L1 R1 L1 L2 DEL R2 CLR =X L1 CLR CLR DEL R1 L6 R6"},
    {"an arrival", RouteStatus::Active,
     "DEP_ARR R1 L1 L2 R1 R2 EXEC R1 R1 R5 R2 DEL R2 L6 DEL R1 L6 DEL L1 DEL R2"},
    {"an approach", RouteStatus::Active, "DEP_ARR R1 R3 L1 R1 R4 R2 R1 NEXT_PAGE R5 EXEC R6"},
    {"another airport", RouteStatus::Active,
     "DEP_ARR L6 R6 =KAAA L6 L1 R1 DEL L1 CLR L6 R6 DEP_ARR =NONE R6 CLR CLR CLR CLR CLR R6 L6 DEL "
     "L6 DEL L6"},
    {"no airports", RouteStatus::None, "DEP_ARR L1 L1 R1 L6 R1 L1 L6"},
    {"progress", RouteStatus::Active,
     "PROG NEXT_PAGE NEXT_PAGE =FLY L1 =1259.7 R1 DEL R1 DEL L1 DEL L1 CLR NEXT_PAGE R6"},
    {"stations", RouteStatus::Active,
     "PROG R6 NEXT_PAGE =ABCDE L1 =TWICE R2 L3 L4 L4 DEL L1 DEL R1 CLR L6"},
    {"fixes", RouteStatus::Active,
     "FIX =NEWPT L1 =180 L2 =/40 L3 =225/10 L4 DEL L3 NEXT_PAGE PREV_PAGE L5 DEL L1 DEL L1"},
    {"holds", RouteStatus::Active,
     "HOLD =270/L L3 =1.5 L4 =NE/045 L2 =1430 R3 =7.5 L5 EXEC DEL L5 DEL R3 L6 NEXT_PAGE R6 HOLD"},
};

class SmithsScreens : public SmithsTest {
  protected:
    // A climb with two stations received.
    void Begin(const Flow& flow) {
        BeginAnew();
        MakeDatabase();
        Climb();
        aircraft.headingMag = 87;
        aircraft.trueHeading = 90;
        aircraft.value800 = 4;
        aircraft.nav1DmeNm = 28.8;
        aircraft.nav2DmeNm = 107.3;
        aircraft.nav2RelativeBearing = -33.8;
        simulator.variables[49] = simulator.variables[58] = 1;
        performance.holdIas = 210;
        AppendMessage("Nav data loaded");
        for (const char* name : {"A1", "B2", "C3", "D4", "E5", "F6"}) {
            StorePlan(name);
        }
        folder.Write("avq/flightplans/LONGNAMEOFPLAN.RTE", "[FlightPlan]\n");
        InstallSmiths();
        changes_ = {};
        if (flow.status != RouteStatus::None) {
            MakeRoute();
            activePlan.Edit(0).ident = planBook.originIdent = "KSID";
            activePlan.Edit(0).latitude = 1;
            SetCruiseAltitude(24000);
            HoldAt(activePlan, 3, NewHold());
            CopyActiveToModified();
            planBook.status = flow.status;
            guidance.passedIdent = "KSID";
            guidance.passedTimeZulu = "12 5Z";
            guidance.passedAltitude = 50;
            guidance.passedFuel = 12300;
        }
    }

    // Writes what the key changed on the screen and in the plans.
    void Look(const std::string& key, std::ostream& out) {
        cdu.Press(key);
        if (key.front() == '=' || key == "CLR" || key == "DEL") {
            return;  // seen in other tests
        }
        Update();
        RequestUnitRedraw();
        cdu.Draw();
        std::set<std::string> shown;
        for (const DrawnText& text : cdu.Texts()) {
            shown.insert(Format("%3d %3d %2d |", static_cast<int>(text.y), static_cast<int>(text.x),
                                static_cast<int>(text.pixelSize)) +
                         text.text);
        }
        shown.insert(SmithsExecLit() ? "EXEC    lit" : "EXEC    dark");
        changes_.Note(std::move(shown), out);
    }

  private:
    ScreenChanges changes_;
};

TEST_F(SmithsScreens, ReadAsTheyDidWhenLastLookedAt) {
    std::ostringstream now;
    for (const Flow& flow : kFlows) {
        Begin(flow);
        WalkFlow(flow.name, flow.keys, now, [&](const std::string& word) { Look(word, now); });
    }
    ExpectAsKept(now.str(), "cdu_smiths/screens.txt");
}

TEST_F(SmithsScreens, ReadAsTheyDidAfterFlowsInAnyOrder) {
    const std::string sums = MixFlows(
        std::span<const Flow>(kFlows),
        "L1 L2 L3 L4 L5 L6 R1 R2 R3 R4 R5 R6 CLR DEL EXEC EXEC NEXT_PAGE PREV_PAGE RTE CLB CRZ DES "
        "LEGS DEP_ARR HOLD PROG FIX INIT_REF DIR_INTC",
        [&](const Flow& flow) { Begin(flow); },
        [&](const std::string& word, std::ostream& out) { Look(word, out); });
    ExpectAsKept(sums, "cdu_smiths/mixed.txt");
}

}  // namespace
}  // namespace avq1::test
