// What the unit shows of the flight. (That no two pages disagree: tests/host/agreement_test.cpp.)
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
