#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <span>
#include <type_traits>
#include <utility>
#include <vector>

#include "displays/ehsi/ehsi.h"
#include "displays/mfd/mfd.h"
#include "displays/nd/nd_panel.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "support/display_checks.h"
#include "support/press_key.h"

namespace avq1 {
namespace {

using test::Half;
using test::PressKey;

// Presses a key once for each of the values it must then have set.
template <typename T>
void Walk(std::span<const KeyArea> keys, std::string_view label, T& value,
          std::type_identity_t<T> start, std::initializer_list<std::type_identity_t<T>> walk,
          Half half = Half::Left) {
    value = start;
    for (const auto& expected : walk) {
        PressKey(keys, label, half);
        EXPECT_EQ(value, expected) << label;
    }
}

using PanelKeys = test::DisplayTest;

TEST_F(PanelKeys, LieApartAndRepeatWhereTheyTurn) {
    constexpr std::int32_t kSharedEdgePx = 4;
    for (const std::span<const KeyArea> keys :
         {std::span<const KeyArea>(kEhsiPanelKeys), std::span<const KeyArea>(kNdPanelKeys)}) {
        for (const KeyArea& a : keys) {
            EXPECT_EQ(a.repeats, a.art == KeyArt::Knob) << a.label;
            for (const KeyArea& b : keys) {
                const std::int32_t across = std::min(a.box.x + a.box.width, b.box.x + b.box.width) -
                                            std::max(a.box.x, b.box.x);
                const std::int32_t down = std::min(a.box.y + a.box.height, b.box.y + b.box.height) -
                                          std::max(a.box.y, b.box.y);
                EXPECT_TRUE(&a == &b || std::min(across, down) <= kSharedEdgePx)
                    << a.label << " over " << b.label;
            }
        }
    }
}

TEST_F(PanelKeys, DecisionHeightStepsByOneBelow500AndByTenAbove) {
    Walk(kEhsiPanelKeys, "DH", ehsi.decisionHeight, 498, {499, 500, 510, 520});
    Walk(kEhsiPanelKeys, "DH", ehsi.decisionHeight, 520, {510, 500, 499, 498}, Half::Right);
    Walk(kEhsiPanelKeys, "DH", ehsi.decisionHeight, 2489, {2499, 2499});
    Walk(kEhsiPanelKeys, "DH", ehsi.decisionHeight, 2480, {2490, 2490});
    Walk(kEhsiPanelKeys, "DH", ehsi.decisionHeight, 3, {2, 1, 1}, Half::Right);
    Walk(kEhsiPanelKeys, "DH", ehsi.decisionHeight, 505, {495, 494}, Half::Right);
}

TEST_F(PanelKeys, RangesWalkTheirListsAndWrap) {
    Walk(kEhsiPanelKeys, "RNG+", ehsi.ehsiRange, 0.5, {1, 2.5, 5, 12.5, 25, 40, 80, 160, 0.5});
    Walk(kEhsiPanelKeys, "RNG-", ehsi.ehsiRange, 160, {80, 40, 25, 12.5, 5, 2.5, 1, 0.5, 160});
    Walk(kEhsiPanelKeys, "RNG+", ehsi.ehsiRange, 7, {0.5});
    Walk(kEhsiPanelKeys, "RNG-", ehsi.ehsiRange, 7, {160});
    EXPECT_EQ(ehsi.ehsiMode8Range, 5);
    ehsi.ehsiMode = kEhsiTrafficMode;
    Walk(kEhsiPanelKeys, "RNG+", ehsi.ehsiMode8Range, 2, {5, 10, 20, 40, 2});
    Walk(kEhsiPanelKeys, "RNG-", ehsi.ehsiMode8Range, 40, {20, 10, 5, 2, 40});
    EXPECT_EQ(ehsi.ehsiRange, 160);
}

TEST_F(PanelKeys, ModesStepInTheirGroup) {
    Walk(kEhsiPanelKeys, "HSI", ehsi.ehsiMode, 1, {2, 3, 1});
    Walk(kEhsiPanelKeys, "HSI", ehsi.ehsiMode, 8, {1});
    Walk(kEhsiPanelKeys, "ARC", ehsi.ehsiMode, 2, {4, 5, 6, 7, 4});
    Walk(kEhsiPanelKeys, "ARC", ehsi.ehsiMode, 8, {4});
    for (int mode = 1; mode <= 7; ++mode) {
        Walk(kEhsiPanelKeys, "TCAS", ehsi.ehsiMode, mode, {8, mode});
    }
}

TEST_F(PanelKeys, SourcesAndPointersGoRound) {
    Walk(kEhsiPanelKeys, "NAV", ehsi.navSource, NavSource::NavReceiver,
         {NavSource::FlightManagement, NavSource::NavReceiver});
    Walk(kEhsiPanelKeys, "BRG1", ehsi.bearingPointer1, BearingSource::Off,
         {BearingSource::Vor, BearingSource::Fms, BearingSource::Adf, BearingSource::Off});
    Walk(kEhsiPanelKeys, "BRG2", ehsi.bearingPointer2, BearingSource::Off, {BearingSource::Vor});
    EXPECT_EQ(ehsi.bearingPointer1, BearingSource::Off);
}

TEST_F(PanelKeys, KnobsSendCourseAndHeadingEvents) {
    for (const auto& [knob, half] : {std::pair{"CRS", Half::Left},
                                     {"CRS", Half::Right},
                                     {"HDG", Half::Right},
                                     {"HDG", Half::Left}}) {
        PressKey(kEhsiPanelKeys, knob, half);
    }
    const std::vector<std::pair<std::int32_t, std::uint32_t>> sent = {
        {65662, 0}, {65663, 0}, {65879, 0}, {65880, 0}};
    EXPECT_EQ(simulator_->events, sent);
}

TEST_F(PanelKeys, LnavEngagesOnlyWithAnActiveWaypoint) {
    Walk(kEhsiPanelKeys, "LNAV", guidance.lnavEngaged, 0, {0});
    activePlan.Append({});
    activePlan.Append({});
    planBook.activeIndex = 1;
    Walk(kEhsiPanelKeys, "LNAV", guidance.lnavEngaged, 0, {1, 0});
}

TEST_F(PanelKeys, NavigationDisplaySelectorsAndLayers) {
    Walk(kNdPanelKeys, "PLAN", nd.ndMode, 1, {7});
    Walk(kNdPanelKeys, "320", nd.ndRange, 10, {320});
    Walk(kNdPanelKeys, "EXP VOR", nd.ndMode, 7, {3});
    Walk(kNdPanelKeys, "20", nd.ndRange, 320, {20});
    Walk(kNdPanelKeys, "WPT", nd.ndShowWaypoints, 0, {1, 0});
    Walk(kNdPanelKeys, "ARPT", nd.ndShowAirports, 0, {1, 0});
    Walk(kNdPanelKeys, "STA", nd.ndShowStations, 0, {1, 0});
    Walk(kNdPanelKeys, "ADF", nd.ndShowAdf, 0, {1, 0});
    Walk(kNdPanelKeys, "BDRY", ehsi.mapOverlayOn, 0, {1, 0});
    Walk(kEhsiPanelKeys, "BDRY", ehsi.mapOverlayOn, 0, {1, 0});
    Walk(kNdPanelKeys, "TFC", nd.showTraffic, 0, {1, 0});
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
