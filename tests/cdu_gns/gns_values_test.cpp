// What the unit shows of the flight: every page, and the compact unit, tells the same.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cdu_gns/gns_fixture.h"
#include "guidance/progress.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "simlink/keyboard.h"
#include "support/fake_keyboard.h"

namespace avq1::test {
namespace {

using ::testing::Contains;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

// What stands behind a label on the screen: the last text of its row.
std::string ValueOf(const std::vector<std::string>& rows, const std::string& label) {
    for (const std::string& row : rows) {
        if (row.starts_with(label)) {
            return row.substr(row.find_last_of("|:") < row.find('|') ? 0 : row.rfind('|') + 1);
        }
    }
    return "no " + label;
}

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first);
}

class GnsValuesTest : public GnsTest {
  protected:
    // What the per-frame update works out.
    static void Update() {
        SetActiveWaypoint(planBook.activeIndex);
        UpdateDerivedState();
        UpdateRouteDistance();
        UpdateTimeToGo();
        RunVerticalGuidance();
        RefreshPredictions();
    }
};

TEST_F(GnsValuesTest, NoTwoPagesDisagree) {
    MakePlan();
    FakeUnit compact;
    for (int situation = 0; situation < 10; ++situation) {
        SCOPED_TRACE(situation);
        planBook.activeIndex = 1 + situation % 6;
        aircraft.longitude = 0.13 + situation * 0.41;
        aircraft.latitude = 0.03 * situation;
        aircraft.groundSpeedKt = 140 + 37 * situation;
        aircraft.magneticVariation = situation - 5;
        aircraft.headingMag = 70 + 5 * situation;
        aircraft.trueHeading = aircraft.headingMag + aircraft.magneticVariation;
        Update();
        const auto plan = unit.After("NAV FPL");
        const auto first = unit.After("NAV");
        const auto second = unit.After("NAV");
        const auto third = unit.After("NAV");
        const auto trip = unit.After("FUEL FUEL");
        const auto to = compact.After("TO");
        const std::string active = activePlan.entries[planBook.activeIndex].ident;
        const std::string next = activePlan.entries[planBook.activeIndex + 1].ident;
        EXPECT_THAT(plan, Contains(StartsWith("TO |" + active)));
        EXPECT_EQ(ValueOf(first, "NX|" + next), ValueOf(plan, next));
        EXPECT_THAT(to, Contains("DIST: " + Trimmed(ValueOf(first, "DIS")) + " NM"));
        EXPECT_THAT(to, Contains("BRG:  " + ValueOf(third, "BRG")));
        EXPECT_EQ(ValueOf(second, "ETA-KBBB"), ValueOf(trip, "ETA @ KBBB"));
        const std::string route = ValueOf(trip, "FPL");
        const auto last = unit.After(planBook.activeIndex <= 2 ? "NAV FPL NEXT" : "NAV FPL");
        EXPECT_EQ(ValueOf(last, "KBBB"), route.substr(route.find('/') + 1));
        gns.columnMode = kColumnDis;
        unit.Draw();
        EXPECT_EQ(ValueOf(unit.Rows(), "KBBB"), route.substr(0, route.find('/')));
        gns.columnMode = kColumnEta;
        unit.Draw();
        EXPECT_EQ(ValueOf(unit.Rows(), "KBBB"), ValueOf(second, "ETA-KBBB"));
        gns.columnMode = kColumnEte;
    }
}

TEST_F(GnsValuesTest, VnavTellsTheTargetAndTheProfile) {
    MakePlan();
    aircraft.altitudeFt = 5000;
    EXPECT_THAT(unit.After("VNAV"),
                IsSupersetOf(std::vector<std::string>{"INVALID|-----", "TO ------|-----",
                                                      "REQUIRED FPM    |----"}));
    SetCruiseAltitude(25000);
    activePlan.Edit(5).altitude = 8000;
    activePlan.Edit(5).altitudeConstraint = 1;
    SetCruiseAltitude(24000);
    aircraft.verticalSpeedFpm = 1200;
    Update();
    EXPECT_THAT(unit.After("VNAV NAV VNAV"),
                IsSupersetOf(std::vector<std::string>{
                    "CLIMB|24000", "TO #TOC|24000", "ACTUAL   FPM UP|1200", "CLIMB GRAD| 300/NM"}));
    EXPECT_THAT(unit.After("VNAV"),
                IsSupersetOf(std::vector<std::string>{"#TOC|24000", "#TOD|24000", "STARB| 8000"}));
    vnav.topOfClimbReached = 1;
    vnav.descentActive = 1;
    vnav.pathAltitude = 4600;
    EXPECT_THAT(unit.After("VNAV"), Contains("VERT DEV HIGH|    400"));
    vnav.pathAltitude = 5600;
    EXPECT_THAT(unit.After("VNAV VNAV"), Contains("VERT DEV LOW|    600"));
}

TEST_F(GnsValuesTest, FuelPagesCountInTheSettingsUnit) {
    MakePlan();
    Update();
    simulator.variables[306] = 6.7;  // a gallon's weight
    simulator.variables[291] = simulator.variables[297] = 8388608;
    simulator.variables[292] = simulator.variables[298] = 1000;
    simulator.variables[638] = 2000;
    simulator.variables[657] = 2200;
    constexpr struct {
        const char* unitSetting;
        const char* keys;
        const char* row;
    } kCases[] = {{"", "NAV FUEL", "REMAINING| 13400|LB"},
                  {"", "", "FLOW|  4200|LB"},
                  {"", "", "HOURS|03:11"},
                  {"", "", "RANGE|  766"},
                  {"", "", "NM/LB|  57"},
                  {"KGS", "", "REMAINING|  6078|KG"},
                  {"", "FUEL FUEL", "FLOW|4200"},
                  {"", "FUEL", "ENGINE   2|2200"},
                  {"", "", "TOTAL|4200"},
                  {"", "FUEL FUEL", "FUEL ON BOARD| 13400"},
                  {"", "", "GROSS WEIGHT|------"},
                  {"", "", "FUEL USED|------"},
                  {"", "PREV", "TAKEOFF|--:--"},
                  {"", "", "LAND|--:--"},
                  {"", "L5", "NEW LOG?"},
                  {"", "ENTER", "NEW LOG"},
                  {"", "", "TAKEOFF|09:37"},
                  {"", "", "FLIGHT TIME|00:00"},
                  {"", "FUEL", "FUEL USED|     0"}};
    aircraft.radioAltitudeFt = 3000;
    aircraft.zuluHour = 9;
    aircraft.zuluMinute = 37.9;
    for (const auto& c : kCases) {
        settings.WeightUnit = c.unitSetting;
        unit.Press(c.keys);
        unit.Draw();
        EXPECT_THAT(unit.Rows(), Contains(c.row)) << c.keys;
    }
}

// ---- typing on the computer keyboard ----

TEST_F(GnsValuesTest, TheKeyboardTypesWhileThePilotHasAskedForIt) {
    FakeKeyboard keyboard{Picture::Services()};
    const auto tap = [&](std::initializer_list<std::uint8_t> keys) {
        for (const std::uint8_t key : keys) {
            keyboard.Down(key);
            PollGnsKeyboard();
            unit.Draw();
            keyboard.Up(key);
            PollGnsKeyboard();
            unit.Draw();
        }
    };
    MakeDatabase();
    MakePlan();
    unit.Press("FPL L2");
    tap({scan::kA});
    EXPECT_THAT(gns.scratchpad, StartsWith("ABCDE")) << "typing is off";
    unit.Press("FPL FPL FPL # L2");
    EXPECT_EQ(gns.editing, 1);
    tap({scan::kK, scan::kA, scan::kX, scan::kBackspace, scan::kA, scan::kA});
    EXPECT_THAT(gns.scratchpad, StartsWith("KAAA"));
    tap({scan::kEnter});
    EXPECT_EQ(unit.Rows().front(), "DATABASE WPT 1/1");
    EXPECT_EQ(gns.editing, 0) << "ENTER gives the keyboard back";
    unit.Press("NAV #");
    tap({scan::kPageDown});
    EXPECT_EQ(unit.Rows().front(), "NAVIGATION   2/4");
    tap({scan::kUp});
    EXPECT_EQ(unit.Rows().front(), "NAVIGATION   1/4");
    unit.Press("#");
    EXPECT_EQ(KeyboardEntryOn + gns.editing, 0);
    keyboard.window = nullptr;
    EXPECT_EQ(unit.After("#").front().substr(0, 19), "SetCooperativeLevel");
}

}  // namespace
}  // namespace avq1::test
