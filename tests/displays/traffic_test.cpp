// Traffic targets on the displays that show them, read back from their altitudes and symbols.
#include "traffic/targets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>

#include "displays/ehsi.h"
#include "displays/nd.h"
#include "displays/nd_panel.h"
#include "drawing/palette.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"

namespace avq1 {
namespace {

using test::HasColourNear;
using test::kNan;
using test::Picture;

constexpr CanvasSize kNdDesign{244, 302};
constexpr CanvasSize kEhsiDesign{266, 230};
constexpr double kLabelRightOfTarget = 13;

class Traffic : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        aircraft.trueHeading = aircraft.headingMag = 350;
        traffic.sourceFound = true;
        ehsi.ehsiMode = kEhsiTrafficMode;
        ehsi.ehsiMode8Range = 5;
    }
    static void Add(const TrafficTarget& target) {
        traffic.items[static_cast<std::size_t>(traffic.count++)] = target;
    }
};

TEST_F(Traffic, StandsAtItsBearingAndRangeOnEveryDisplay) {
    Add({350, 2.5, 5, '^', 'P'});  // straight ahead
    Add({80, 3, -12, 'v', 'P'});   // to the right
    const std::tuple<test::DrawDisplay, CanvasSize, int, CanvasPoint, double> cases[] = {
        {DrawEhsi, kEhsiDesign, 0, {129, 114}, 18},
        {DrawNd, kNdDesign, 4, {122, 249}, 21.5},
        {DrawNd, kNdDesign, 6, {122, 171}, 11}};
    for (const auto& [draw, design, ndMode, centre, pxPerNm] : cases) {
        nd.ndMode = ndMode;
        nd.showTraffic = 1;
        const auto picture = test::DrawAt(draw, design, 2);
        const CanvasPoint ahead{centre.x, centre.y - std::trunc(2.5 * pxPerNm)};
        const CanvasPoint right{centre.x + std::trunc(3 * pxPerNm), centre.y};
        EXPECT_TRUE(HasColourNear(*picture, 2, ahead, colour::Cyan)) << ndMode;
        const test::DrawnText* const above = Picture::Find("+05");
        ASSERT_NE(above, nullptr);
        EXPECT_NEAR(above->x / 2, ahead.x + kLabelRightOfTarget, 0.1);
        EXPECT_EQ(above->argb, colour::Cyan);
        const test::DrawnText* const below = Picture::Find("-12");
        ASSERT_NE(below, nullptr) << ndMode;
        EXPECT_NEAR(below->x / 2, right.x + kLabelRightOfTarget, 1.1);
    }
}

TEST_F(Traffic, ShowsThreatsInTheirColours) {
    for (const auto& [threatCode, argb] : {std::pair{'O', colour::Cyan},
                                           {'P', colour::Cyan},
                                           {'T', colour::Amber},
                                           {'R', colour::Red}}) {
        traffic.count = 0;
        Add({350, 2, 100, '-', threatCode});
        const auto picture = test::DrawAt(DrawEhsi, kEhsiDesign, 2);
        ASSERT_NE(Picture::Find("+100"), nullptr);
        EXPECT_EQ(Picture::Find("+100")->argb, argb) << threatCode;
        // an open diamond shows nothing in its middle
        EXPECT_EQ(HasColourNear(*picture, 2, {129, 114 - 36}, argb), threatCode != 'O');
    }
}

TEST_F(Traffic, LeavesOutWhatIsOutsideTheBandOrNoNumber) {
    const std::tuple<double, double, double, bool> cases[] = {
        {0, 2, 140, true},   {0, 2, 141, false},  {0, 2, -139, true},
        {0, 2, -140, false}, {0, 2, -0.4, true},  {kNan, 2, 0, false},
        {0, kNan, 0, false}, {0, 2, kNan, false}, {0, 7, 0, false}};  // beyond the range: clipped
    for (const auto& [bearing, rangeNm, altitude, shown] : cases) {
        traffic.count = 0;
        Add({bearing, rangeNm, altitude, '-', 'O'});
        test::DrawAt(DrawEhsi, kEhsiDesign);
        const std::size_t withoutTarget = 1;  // the range
        EXPECT_EQ(Picture::Texts().size() > withoutTarget, shown) << altitude << " at " << rangeNm;
        EXPECT_FALSE(Picture::Shows("-00"));
    }
}

TEST_F(Traffic, ShowsOnTheNavigationDisplayInItsModesWhenSwitchedOn) {
    Add({350, 2, 7, '-', 'O'});
    for (const int on : {0, 1}) {
        for (nd.ndMode = 1; nd.ndMode <= 7; ++nd.ndMode) {
            nd.showTraffic = on;
            test::DrawAt(DrawNd, kNdDesign);
            EXPECT_EQ(Picture::Shows("+07"), on == 1 && nd.ndMode >= 3 && nd.ndMode <= 6)
                << nd.ndMode;
        }
    }
    EXPECT_FALSE(Picture::Shows("OFF"));
    traffic = TrafficTargets{};
    test::DrawAt(DrawNd, kNdDesign);
    EXPECT_TRUE(Picture::Shows("OFF"));
    test::DrawAt(DrawEhsi, kEhsiDesign);
    EXPECT_TRUE(Picture::Shows("TCAS OFF"));
}

}  // namespace
}  // namespace avq1
