#include <gtest/gtest.h>

#include <cstring>
#include <span>

#include "base/module_state.h"
#include "displays/ehsi.h"
#include "displays/mfd.h"
#include "displays/nd_panel.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "support/fake_simulator.h"

namespace avq1 {
namespace {

using test::FakeSimulator;

enum class Half { Left, Right };

void Press(std::span<const KeyArea> keys, std::string_view label, Half half = Half::Left) {
    for (const KeyArea& key : keys) {
        if (key.label == label) {
            KeyClick click;
            click.box = key.box;
            click.point = {half == Half::Left ? key.box.width / 2 - 1 : key.box.width / 2, 3};
            ASSERT_NE(key.action, nullptr) << label;
            key.action(click);
            return;
        }
    }
    FAIL() << "no key " << label;
}

class PanelKeys : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetModuleState();
        simulator_ = &FakeSimulator::Install();
    }
    FakeSimulator* simulator_ = nullptr;
};

TEST_F(PanelKeys, DecisionHeightStepsByOneBelow500AndByTenAbove) {
    struct Case {
        int start;
        Half half;
        std::vector<int> walk;
    };
    // the right half turns the height down
    const Case cases[] = {
        {498, Half::Left, {499, 500, 510, 520}},
        {520, Half::Right, {510, 500, 499, 498}},
        {2480, Half::Left, {2490, 2490}},
        {2489, Half::Left, {2499, 2499}},
        {3, Half::Right, {2, 1, 1}},
        {505, Half::Right, {495, 494}},
    };
    for (const Case& each : cases) {
        ehsi.decisionHeight = each.start;
        for (const int expected : each.walk) {
            Press(kEhsiPanelKeys, "DH", each.half);
            EXPECT_EQ(ehsi.decisionHeight, expected) << "from " << each.start;
        }
    }
}

TEST_F(PanelKeys, RangesWalkTheirListsAndWrap) {
    struct Case {
        int mode;
        const char* key;
        double start;
        std::vector<double> walk;
    };
    const Case cases[] = {
        {1, "RNG+", 0.5, {1, 2.5, 5, 12.5, 25, 40, 80, 160, 0.5}},
        {6, "RNG-", 160, {80, 40, 25, 12.5, 5, 2.5, 1, 0.5, 160}},
        {2, "RNG+", 7, {0.5}},
        {2, "RNG-", 7, {160}},
        {8, "RNG+", 2, {5, 10, 20, 40, 2}},
        {8, "RNG-", 40, {20, 10, 5, 2, 40}},
    };
    for (const Case& each : cases) {
        ehsi = EhsiState{};
        ehsi.ehsiMode = each.mode;
        double& range = each.mode == 8 ? ehsi.ehsiMode8Range : ehsi.ehsiRange;
        const double& other = each.mode == 8 ? ehsi.ehsiRange : ehsi.ehsiMode8Range;
        const double otherBefore = other;
        range = each.start;
        for (const double expected : each.walk) {
            Press(kEhsiPanelKeys, each.key);
            EXPECT_EQ(range, expected) << each.key << " from " << each.start;
        }
        EXPECT_EQ(other, otherBefore);
    }
}

TEST_F(PanelKeys, ModesStepInTheirGroup) {
    struct Case {
        const char* key;
        int start;
        std::vector<int> walk;
    };
    const Case cases[] = {
        {"HSI", 1, {2, 3, 1}}, {"HSI", 6, {1}},          {"HSI", 8, {1}},
        {"ARC", 2, {4}},       {"ARC", 4, {5, 6, 7, 4}}, {"ARC", 8, {4}},
    };
    for (const Case& each : cases) {
        ehsi.ehsiMode = each.start;
        for (const int expected : each.walk) {
            Press(kEhsiPanelKeys, each.key);
            EXPECT_EQ(ehsi.ehsiMode, expected) << each.key << " from " << each.start;
        }
    }
    for (int mode = 1; mode <= 7; ++mode) {
        ehsi.ehsiMode = mode;
        Press(kEhsiPanelKeys, "TCAS");
        EXPECT_EQ(ehsi.ehsiMode, 8);
        Press(kEhsiPanelKeys, "TCAS");
        EXPECT_EQ(ehsi.ehsiMode, mode);
    }
}

TEST_F(PanelKeys, SourcesAndPointersGoRound) {
    Press(kEhsiPanelKeys, "NAV");
    EXPECT_EQ(ehsi.navSource, NavSource::FlightManagement);
    Press(kEhsiPanelKeys, "NAV");
    EXPECT_EQ(ehsi.navSource, NavSource::NavReceiver);
    for (const BearingSource expected :
         {BearingSource::Vor, BearingSource::Fms, BearingSource::Adf, BearingSource::Off}) {
        Press(kEhsiPanelKeys, "BRG1");
        EXPECT_EQ(ehsi.bearingPointer1, expected);
        EXPECT_EQ(ehsi.bearingPointer2, BearingSource::Off);
    }
    Press(kEhsiPanelKeys, "BRG2");
    EXPECT_EQ(ehsi.bearingPointer2, BearingSource::Vor);
}

TEST_F(PanelKeys, KnobsSendCourseAndHeadingEvents) {
    struct Case {
        const char* knob;
        Half half;
        std::int32_t event;
    };
    for (const Case& each : {Case{"CRS", Half::Left, 65662}, Case{"CRS", Half::Right, 65663},
                             Case{"HDG", Half::Right, 65879}, Case{"HDG", Half::Left, 65880}}) {
        simulator_->events.clear();
        Press(kEhsiPanelKeys, each.knob, each.half);
        ASSERT_EQ(simulator_->events.size(), 1u) << each.knob;
        EXPECT_EQ(simulator_->events[0].first, each.event);
        EXPECT_EQ(simulator_->events[0].second, 0u);
    }
}

TEST_F(PanelKeys, LnavEngagesOnlyWithAnActiveWaypoint) {
    Press(kEhsiPanelKeys, "LNAV");
    EXPECT_EQ(guidance.lnavEngaged, 0);
    activePlan.lastIndex = 1;
    activePlan.entries[1].ident = "FJC";
    planBook.activeIndex = 1;
    Press(kEhsiPanelKeys, "LNAV");
    EXPECT_EQ(guidance.lnavEngaged, 1);
    Press(kEhsiPanelKeys, "LNAV");
    EXPECT_EQ(guidance.lnavEngaged, 0);
}

TEST_F(PanelKeys, NavigationDisplaySelectorsAndLayers) {
    struct Case {
        const char* label;
        int mode;
        int range;
    };
    for (const Case& each :
         {Case{"PLAN", 7, 10}, Case{"320", 7, 320}, Case{"EXP VOR", 3, 320}, Case{"20", 3, 20}}) {
        Press(kNdPanelKeys, each.label);
        EXPECT_EQ(nd.ndMode, each.mode) << each.label;
        EXPECT_EQ(nd.ndRange, each.range) << each.label;
    }
    struct Layer {
        const char* label;
        std::int32_t* value;
    };
    for (const Layer& each : {Layer{"WPT", &nd.ndShowWaypoints}, Layer{"ARPT", &nd.ndShowAirports},
                              Layer{"STA", &nd.ndShowStations}, Layer{"ADF", &nd.ndShowAdf},
                              Layer{"BDRY", &ehsi.mapOverlayOn}, Layer{"TFC", &nd.showTraffic}}) {
        Press(kNdPanelKeys, each.label);
        EXPECT_EQ(*each.value, 1) << each.label;
        Press(kNdPanelKeys, each.label);
        EXPECT_EQ(*each.value, 0) << each.label;
    }
}

TEST_F(PanelKeys, ScreenCentresToggleTheirWindows) {
    struct Case {
        std::span<const KeyArea> keys;
        const char* label;
        std::uint32_t ident;
    };
    for (const Case& each :
         {Case{kEadiKeys, "EADI window", 4005}, Case{kEhsiKeys, "EHSI window", 4008},
          Case{kEhsiNbKeys, "EHSI window", 4009}, Case{kNdKeys, "ND window", 4011},
          Case{kMfdKeys, "MFD window", 4002}}) {
        Press(each.keys, each.label);
        EXPECT_TRUE(simulator_->windows[each.ident]) << each.ident;
        EXPECT_EQ(simulator_->windows.size(), 1u) << each.ident;
        simulator_->windows.clear();
    }
}

TEST_F(PanelKeys, TheMfdPanelCountsItsDraws) {
    guidance.blinkCounter = 40;
    DrawMfdPanel();
    EXPECT_EQ(mfd.mfdPanelPresent, 1);
    EXPECT_EQ(mfd.panelFrameCounter, 1);
    EXPECT_EQ(guidance.blinkCounter, kRestartBlink);
    guidance.blinkCounter = 40;
    mfd.panelFrameCounter = 29999;
    DrawMfdPanel();
    EXPECT_EQ(mfd.panelFrameCounter, 30000);
    DrawMfdPanel();
    EXPECT_EQ(mfd.panelFrameCounter, 1);
    EXPECT_EQ(guidance.blinkCounter, 40);
}

}  // namespace
}  // namespace avq1
