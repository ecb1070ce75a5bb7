// Every page of the GNS-style unit after each step of a session, compared with how it read when
// somebody last looked: screens.txt keeps what each key changed, places, colours and texts, and
// what became of the plans.
#include <sstream>

#include "base/redraw.h"
#include "cdu/pilot_entries.h"
#include "cdu_gns/gns_fixture.h"
#include "flightplan/plan_notation.h"
#include "guidance/progress.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "support/fake_data_service.h"
#include "support/kept_file.h"
#include "support/mixed_flows.h"
#include "support/screen_changes.h"

namespace avq1::test {
namespace {

// Flows of a pilot, each from a fresh state and looked at after every word. A line key twice asks
// for the row's other choice; CLR steps choices and erases characters.
struct Flow {
    const char* name;
    bool withPlan;
    const char* keys;
    bool fromTheList = false;  // of stored plans
    const char* weightUnit = "";
};

constexpr Flow kFlows[] = {
    {"page keys", true,
     "FPL FPL FPL FPL NEXT NEXT PREV NAV NAV NAV NAV NAV PREV VNAV VNAV VNAV FUEL FUEL FUEL FUEL "
     "FUEL FUEL FUEL PREV NAV DIRECT DIRECT DIRECT HOLD FPL"},
    {"what is typed leads on", true,
     "NAV FPL L3 =NEWPT ENTER NAV FPL L3 =NOWHER ENTER NAV FPL L3 CLR =A CLR ENTER NAV FPL L3 "
     "=TWICE* ENTER NAV FPL L3 =* ENTER NAV FPL L3 =#J9 ENTER NAV FPL L3 =#J8 ENTER NAV FPL L3 "
     "ENTER"},
    {"waypoints deleted", true,
     "FPL L3 L3 CLR L3 ENTER L3 L3 CLR ENTER L1 CLR ENTER NAV FPL L2 =A CLR CLR CLR ENTER NAV FPL "
     "L2 L2 CLR L3 ENTER"},
    {"a pilot's point", true,
     "FPL L3 =QQQ ENTER =E =7 =N =3 =33750 =9 CLR L8 =S33375 CLR =W L8 =N333750W1 =11 ENTER =5430 "
     "ENTER"},
    {"an offset", true,
     "FPL L3 =NEWPT* ENTER ENTER L8 =361 ENTER CLR CLR CLR =260 ENTER =10000 ENTER L8 L8 L8 ENTER "
     "=30 ENTER L10 CLR ENTER ENTER =LATER ENTER ENTER"},
    {"crossings", true,
     "FPL L7 ENTER =250*10000 ENTER L7 ENTER =*8000 ENTER L7 ENTER =A50 ENTER CLR CLR CLR "
     "=250*99999 ENTER NAV FPL L7 ENTER =*0 ENTER NAV FPL L7 ENTER =250*10*10 ENTER NAV FPL L7 "
     "ENTER ENTER L7 ENTER =A CLR ENTER L10 CLR ENTER L10 CLR ENTER L10 CLR ENTER"},
    {"nothing yet", false,
     "FPL NEXT PREV L1 CLR NAV NAV NAV NAV VNAV VNAV FUEL FUEL FUEL FUEL FUEL FUEL HOLD DIRECT"},
    {"a plan typed", false,
     "FPL L1 CLR ENTER FPL L1 =KAAA ENTER L10 L10 CLR ENTER ENTER =TWICE ENTER NEXT PREV ENTER "
     "=NEWPT ENTER ENTER "
     "=KBBB ENTER ENTER =NEWPT* ENTER L8 =260 ENTER =30 ENTER ENTER =QQQ ENTER =N0120 =00E "
     "=0023000 ENTER"},
    {"rows, columns and menus", true,
     "FPL L2 L2 CLR L2 L3 =A CLR CLR L3 L3 CLR ENTER NEXT L10 CLR CLR ENTER L10 CLR ENTER L10 CLR "
     "ENTER L10 CLR ENTER L4 L4 L5 L5 L5 L9 L10 PREV NEXT"},
    {"restrictions", true,
     "FPL L7 ENTER =250*8000 CLR CLR =00 ENTER L3 L3 VNAV =*6000 ENTER L9 ENTER =A50 ENTER CLR CLR "
     "CLR CLR ENTER L2 L2 VNAV =A CLR ENTER"},
    {"a departure", true,
     "FPL NEXT L4 ENTER L6 =KXXX ENTER L6 =KSID ENTER L3 ENTER L3 L3 ENTER L4 ENTER NEXT L10 L5 "
     "ENTER"},
    {"a departure erased", true, "FPL NEXT L4 ENTER L6 =KSID ENTER ENTER L10 ENTER"},
    {"an arrival", true, "FPL NEXT L5 ENTER L6 L6 ENTER L3 ENTER L10 L5 ENTER"},
    {"an approach and an arrival over it", true,
     "FPL NEXT L5 L5 ENTER ENTER ENTER L5 ENTER NAV FPL NEXT L5 ENTER ENTER L3 ENTER L5 ENTER NAV "
     "FPL NEXT L5 ENTER ENTER L3 ENTER L10 ENTER"},
    {"an approach", true, "FPL NEXT L5 L5 ENTER L3 ENTER NEXT L2 ENTER L5 ENTER"},
    {"an airway", true,
     "FPL L3 =#J9 ENTER ENTER L7 L2 L8 L3 ENTER NAV FPL L3 =#J9 ENTER L3 FPL L3 =#J9 ENTER "
     "ENTER L2 ENTER NAV FPL L3 =#J9 ENTER L2 ENTER NAV FPL L3 =#J9 ENTER L2 NEXT"},
    {"navigation", true,
     "NAV L7 CLR ENTER L7 CLR CLR ENTER L10 L10 ENTER L10 CLR ENTER =120 ENTER L10 CLR ENTER =361 "
     "ENTER NEXT PREV NAV NAV NAV"},
    {"the profile", true,
     "VNAV L5 ENTER L7 =25000 ENTER L7 L7 =6000 ENTER L8 =75 ENTER L8 =0 ENTER L8 =25 ENTER L7 "
     "=ABC "
     "ENTER L9 L2 L1 VNAV VNAV VNAV FPL "
     "NEXT L10 CLR ENTER L10 CLR ENTER"},
    {"fuel", true,
     "FUEL FUEL L7 =1500 ENTER L7 L7 CLR FUEL FUEL FUEL FUEL FUEL L2 L7 =99999 ENTER FUEL FUEL "
     "PREV PREV L7 "
     "NEXT PREV"},
    {"fuel in kilograms", true, "FUEL FUEL FUEL FUEL FUEL FUEL L5 ENTER PREV PREV", false, "KGS"},
    {"a message goes with the next key", true,
     "FPL L3 =NOWHE* ENTER DIRECT FPL L3 =NOWHE* ENTER NAV FPL L3 =NOWHE* ENTER FUEL FPL L3 "
     "=NOWHE* "
     "ENTER VNAV FPL L3 =NOWHE* ENTER HOLD FPL L3 =NOWHE* ENTER L2 FPL L3 =NOWHE* ENTER CLR FPL L2 "
     "=AB HOLD =1"},
    {"a hold", true,
     "FPL L1 HOLD FPL L2 L2 HOLD L7 =361 ENTER L7 L7 =360 ENTER L8 CLR ENTER L9 =15 ENTER L9 L9 "
     "=125 ENTER L9 =1000 ENTER L9 =1000 ENTER L9 L10 CLR "
     "ENTER L6 L5 ENTER FPL L2 L2 CLR ENTER"},
    {"more typed than there is room for", true,
     "FPL L1 HOLD L7 =12345 ENTER FPL L2 L2 HOLD L7 =12345 CLR ENTER L9 =123456 ENTER L9 L9 "
     "=123456 "
     "ENTER VNAV L5 ENTER L7 =12345678 ENTER L7 L7 =12345678 ENTER L8 =12345678 ENTER FUEL L7 "
     "=123456789 ENTER NAV L10 CLR ENTER =123456789 ENTER FPL L3 =ABCDEFGHIJKL ENTER FPL L3 "
     "=NEWPT* ENTER L8 =12345678 ENTER CLR CLR CLR CLR CLR CLR =90 ENTER =123456789 ENTER DIRECT "
     "=ABCDEFGHIJKL ENTER FPL NEXT L4 ENTER L6 =ABCDEFGHIJ ENTER FPL NEXT L9 ENTER L2 "
     "=ABCDEFGHIJKLMNOP ENTER FPL L7 ENTER =123456789012345 ENTER"},
    {"direct", true,
     "DIRECT L2 L2 ENTER DIRECT L2 =LATER ENTER DIRECT =LATER ENTER L10 L10 CLR ENTER ENTER DIRECT "
     "=NOWHER ENTER CLR CLR "
     "DIRECT NEXT L4 ENTER"},
    {"nearest airports", true, "DIRECT PREV L3 L8 L2 L2 ENTER"},
    {"a plan saved", true, "FPL NEXT L9 ENTER L2 =MYPLAN ENTER"},
    {"stored plans", false,
     "FPL FPL L8 L8 L7 L7 ENTER L2 L2 =LATER ENTER ENTER L7 ENTER =180*5000 ENTER L3 L3 CLR "
     "ENTER "
     "NEXT PREV L5 L5 L10 L10 CLR CLR ENTER L10 ENTER FPL NEXT",
     true},
    {"a stored plan activated", false, "FPL FPL L7 L7 ENTER L10 ENTER NEXT", true},
    {"a stored plan erased", false, "FPL FPL L7 L7 ENTER L10 L10 ENTER", true},
    {"a new plan", false, "FPL FPL L8 ENTER L1 =KAAA ENTER ENTER =KBBB ENTER ENTER L10 ENTER",
     true},
};

class GnsScreens : public GnsTest {
  protected:
    // A climb with all weights known.
    void Begin(const Flow& flow) {
        BeginAnew();
        MakeDatabase();
        StorePlan("STORED");
        settings.WeightUnit = flow.weightUnit;
        aircraft.radioAltitudeFt = 4000;
        Climb();
        service.Set<std::int32_t>(0x3BFC, 90000 * 256);  // zero fuel weight
        service.Set<std::int32_t>(0x13FC, 1);
        service.Set<double>(0x1400, 5000);  // payload
        RefreshAircraftWeights();
        changes_ = {};
        gns.listWanted = flow.fromTheList;
        if (flow.withPlan) {
            MakePlan();
            SetCruiseAltitude(24000);
        }
    }

    // Writes what the key changed on the screen and in the plans.
    void Look(const std::string& key, std::ostream& out) {
        unit.Press(key);
        Update();
        RequestUnitRedraw();
        unit.Draw();
        changes_.Note(ScreenLines(unit.Texts()), out);
    }

    ~GnsScreens() override {
        Picture::Services().find_window = nullptr;
        Picture::Services().send_message = nullptr;
    }

  private:
    FakeGns unit{kGnsKeys, 2};  // places to half a unit
    FakeDataService& service = FakeDataService::Install(&Picture::Services());
    ScreenChanges changes_;
};

TEST_F(GnsScreens, ReadAsTheyDidWhenLastLookedAt) {
    std::ostringstream now;
    for (const Flow& flow : kFlows) {
        Begin(flow);
        WalkFlow(flow.name, flow.keys, now, [&](const std::string& word) { Look(word, now); });
    }
    ExpectAsKept(now.str(), "cdu_gns/screens.txt");
}

TEST_F(GnsScreens, ReadAsTheyDidAfterFlowsInAnyOrder) {
    const std::string sums = MixFlows(
        std::span<const Flow>(kFlows),
        "L1 L2 L3 L4 L5 L6 L7 L8 L9 L10 ENTER ENTER CLR NEXT PREV FPL NAV VNAV FUEL DIRECT HOLD",
        [&](const Flow& flow) { Begin(flow); },
        [&](const std::string& word, std::ostream& out) { Look(word, out); });
    ExpectAsKept(sums, "cdu_gns/mixed.txt");
}

}  // namespace
}  // namespace avq1::test
