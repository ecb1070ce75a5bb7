// What the pages of two units and the displays tell in one moment of a flight, in every kind of
// situation, compared with what they told when somebody last looked: in_flight.txt has it side by
// side, so that a value that one of them takes from elsewhere shows.
#include <gtest/gtest.h>

#include <sstream>

#include "base/module_state.h"
#include "cdu_gns/fake_unit.h"
#include "displays/ehsi/ehsi.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/lnav.h"
#include "settings/settings.h"
#include "support/kept_file.h"
#include "support/test_flight.h"
#include "support/vertical_flight.h"

namespace avq1::test {
namespace {

struct Situation {
    const char* name;
    std::int32_t active;  // entry flown to; kNoWaypoint: the plan is taken away
    double degrees;       // along the route
    double altitudeFt;
    double seconds;  // flown before anybody looks
    void (*also)(VerticalPilot& pilot) = nullptr;
    const char* keys = "";  // pressed on the unit
};

const Situation kSituations[] = {
    {"on the ground", 1, 0.01, 20, 1, [](VerticalPilot& p) { p.airspeedKt = p.targetKt = 0; }},
    {"taxiing", 1, 0.02, 20, 1, [](VerticalPilot& p) { p.airspeedKt = p.targetKt = 40; }},
    {"climbing under a restriction", 1, 0.3, 6000, 60},
    {"cruising in the wind", 3, 2.2, 33000, 60, [](VerticalPilot& p) { p.tailwindKt = 77; }},
    {"descending", 4, 3.9, 33000, 600, [](VerticalPilot& p) { p.tailwindKt = -31; }},
    {"in a hold", 2, 1.95, 20000, 300, nullptr, "FPL L2 HOLD L7 =97 ENTER"},
    {"direct to", 3, 2.4, 33000, 45, nullptr, "DIRECT L3 L3 ENTER"},
    {"beside the route, counted in kilograms", 2, 1.4, 24000, 15,
     [](VerticalPilot& p) {
         p.latitude = 0.21;
         settings.WeightUnit = "KGS";
     }},
    {"past the last waypoint", 6, 7.2, 4000, 30},
    {"while a modification waits", 2, 1.4, 24000, 15,
     [](VerticalPilot&) {
         CopyActiveToModified();
         EXPECT_TRUE(DeleteWaypoint(modifiedPlan, 3, true));
         NoteEdit(modifiedPlan);
     }},
    {"without a plan", kNoWaypoint, 1, 9000, 5},
};

void Fly(const Situation& s, VerticalPilot& pilot, FakeGns& unit) {
    ResetModuleState();
    FakeSimulator::Install().variables[773] = 1;
    FakeSimulator::Get().variables[6] = 13;
    FakeSimulator::Get().variables[7] = 29;
    ehsi.navSource = NavSource::FlightManagement;
    nd.ndMode = 2;
    performance = JetPerformance();
    SetActivePlan({{"KAAA", 0, 0, "APT"},
                   {"ABCDE", 0, 1},
                   {"FLY", 0, 2},
                   {"LONGER", 0.1, 3},
                   {"STARA", 0, 4.8, "INT", "STAR"},
                   {"STARB", 0, 6, "INT", "STAR"},
                   {"KBBB", 0, 7, "APT"}});
    SetCrossing(activePlan, 1, {.altitudeFt = 9000});
    SetCrossing(activePlan, 5, {.altitudeFt = 8000, .speedKt = 240});
    pilot.Report();
    RefreshAircraftState();
    StartActivePlan();
    SetCruiseAltitude(33000);
    pilot.Fly(1);
    EngageLnav();
    ToggleVnav();
    SetActiveWaypoint(s.active == kNoWaypoint ? 1 : s.active);
    pilot.longitude = s.degrees;
    pilot.altitudeFt = pilot.targetFt = s.altitudeFt;
    pilot.airspeedKt = 280;
    if (s.also != nullptr) {
        s.also(pilot);
    }
    unit.Press(s.keys);
    if (s.active == kNoWaypoint) {
        activePlan.CutTo(-1);
        SetActiveWaypoint(kNoWaypoint);
    }
    for (double flown = 0; flown < s.seconds; flown += 1) {
        pilot.Fly(1);
    }
    pilot.Fly(0);  // all of one moment
}

void WriteDisplay(const char* name, void (*draw)(const DrawTarget&), int width, int height,
                  std::ostream& out) {
    Picture picture(width, height);
    draw(picture.Target());
    out << name << ':';
    for (const DrawnText& text : Picture::Texts()) {
        out << ' ' << text.text << ';';
    }
    out << '\n';
}

template <class Unit>
void WritePage(Unit& unit, const char* keys, std::ostream& out) {
    const std::vector<std::string> rows = unit.After(keys);
    out << keys << ":\n";
    for (const std::string& row : rows) {
        out << (row.find_first_not_of("<|>") == std::string::npos ? "" : "  " + row + '\n');
    }
}

TEST(ScreensInFlight, TellWhatTheyToldWhenLastLookedAt) {
    std::ostringstream now;
    for (const Situation& situation : kSituations) {
        VerticalPilot pilot;
        FakeGns unit;
        FakeUnit compact;
        Fly(situation, pilot, unit);
        now << "# " << situation.name << '\n';
        for (const GnsColumn column : {kColumnEte, kColumnEta, kColumnDis, kColumnAlt}) {
            gns.columnMode = column;
            WritePage(unit, "NAV FPL", now);
            WritePage(unit, "NEXT", now);
        }
        for (const char* keys : {"NAV", "NAV", "NAV", "VNAV", "VNAV", "NAV FUEL", "FUEL", "FUEL"}) {
            WritePage(unit, keys, now);
        }
        WritePage(compact, "TO", now);
        WriteDisplay("EHSI", DrawEhsi, 266, 230, now);
        WriteDisplay("ND", DrawNd, 244, 302, now);
    }
    ImportTable.panel.services = nullptr;
    ExpectAsKept(now.str(), "host/in_flight.txt");
}

}  // namespace
}  // namespace avq1::test
