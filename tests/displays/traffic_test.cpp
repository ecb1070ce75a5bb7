// Traffic on the displays that show it, from a traffic module in memory: read back from altitudes
// and symbols.
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "displays/ehsi/ehsi.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "displays/traffic/tcas.h"
#include "drawing/palette.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/fake_traffic.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

using test::FakeTarget;
using test::HasColourNear;
using test::kNan;
using test::Picture;

constexpr CanvasSize kNdDesign{244, 302};
constexpr CanvasSize kEhsiDesign{266, 230};
constexpr CanvasPoint kCentre{129, 114};  // of EHSI and traffic gauge

class Traffic : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        aircraft.trueHeading = aircraft.headingMag = 350;
        source_ = std::make_unique<test::FakeTraffic>();
        ehsi.ehsiMode = kEhsiTrafficMode;
        ehsi.ehsiMode8Range = 5;
    }

    std::unique_ptr<test::FakeTraffic> source_;
};

TEST_F(Traffic, StandsAtItsBearingAndRangeOnEveryDisplay) {
    source_->Tell({{0, 2.5, 5, 1, 1}, {90, 3, -12, -1, 1}});
    const std::tuple<test::DrawDisplay, CanvasSize, int, CanvasPoint, double, double> cases[] = {
        {DrawEhsi, kEhsiDesign, 0, kCentre, 18, 13},
        {DrawTcas, kEhsiDesign, 0, kCentre, 18, 16},
        {DrawNd, kNdDesign, 4, {122, 249}, 21.5, 13},
        {DrawNd, kNdDesign, 6, {122, 171}, 11, 13}};
    for (const auto& [draw, design, ndMode, centre, pxPerNm, labelRight] : cases) {
        nd.ndMode = ndMode;
        nd.showTraffic = 1;
        const auto picture = test::DrawAt(draw, design, 2);
        const CanvasPoint ahead{centre.x, centre.y - std::trunc(2.5 * pxPerNm)};
        const CanvasPoint right{centre.x + std::trunc(3 * pxPerNm), centre.y};
        EXPECT_TRUE(HasColourNear(*picture, 2, ahead, colour::Cyan)) << ndMode;
        const test::DrawnText* const above = Picture::Find("+05");
        ASSERT_NE(above, nullptr);
        EXPECT_NEAR(above->x / 2, ahead.x + labelRight, 0.1);
        EXPECT_EQ(above->argb, colour::Cyan);
        const test::DrawnText* const below = Picture::Find("-12");
        ASSERT_NE(below, nullptr) << ndMode;
        EXPECT_NEAR(below->x / 2, right.x + labelRight, 1.1);
    }
}

// Shapes by where their colour is: an open diamond has none in the middle, a square reaches its
// corner, a circle does not but is wider beside its top than a diamond.
TEST_F(Traffic, ShowsThreatsInTheirColoursAndShapes) {
    const struct {
        int threat;
        std::uint32_t argb;
        bool middle, beside, corner;
    } cases[] = {{0, colour::Cyan, false, false, false}, {1, colour::Cyan, true, false, false},
                 {2, colour::Amber, true, true, false},  {3, colour::Red, true, true, true},
                 {4, colour::Cyan, false, false, false}, {-1, colour::Cyan, false, false, false}};
    const std::pair<test::DrawDisplay, double> displays[] = {{DrawEhsi, 1.0}, {DrawTcas, 1.25}};
    for (const auto& display : displays) {
        for (const auto& row : cases) {
            source_->Tell({{0, 3, 100, 0, row.threat}});
            const auto picture = test::DrawAt(display.first, kEhsiDesign, 4);
            ASSERT_NE(Picture::Find("+100"), nullptr);
            EXPECT_EQ(Picture::Find("+100")->argb, row.argb) << row.threat;
            const auto has = [&](double offset) {
                const double away = offset * display.second;
                return HasColourNear(*picture, 4, {129 + away, 114 - 54 - away}, row.argb);
            };
            EXPECT_EQ(has(0), row.middle) << row.threat;
            EXPECT_EQ(has(3.6), row.beside) << row.threat;
            EXPECT_EQ(has(4.6), row.corner) << row.threat;
        }
    }
}

TEST_F(Traffic, MarksClimbAndDescentBesideTheSymbol) {
    const struct {
        int trend;
        bool top, bottom;  // the side that has the arrow's head
    } cases[] = {{1, true, false},
                 {-1, false, true},
                 {0, false, false},
                 {2, false, false},
                 {-8, false, false}};
    for (const auto& [trend, top, bottom] : cases) {
        source_->Tell({{0, 3, 2, trend, 1}});
        const auto picture = test::DrawAt(DrawEhsi, kEhsiDesign, 4);
        const auto head = [&](double y) {
            return HasColourNear(*picture, 4, {129 + 10.5, 114 - 54 + y}, colour::Cyan);
        };
        EXPECT_EQ(head(-2.7), top) << trend;
        EXPECT_EQ(head(2.7), bottom) << trend;
    }
}

TEST_F(Traffic, LeavesOutWhatIsOutsideTheBandOrNoNumber) {
    const std::tuple<double, double, double, bool> cases[] = {{10, 2, 140, true},
                                                              {10, 2, 141, false},
                                                              {10, 2, -139, true},
                                                              {10, 2, -140, false},
                                                              {10, 2, -0.4, true},
                                                              {kNan, 2, 0, false},
                                                              {10, kNan, 0, false},
                                                              {10, 2, kNan, false},
                                                              {10, 7, 0, false},  // clipped
                                                              {1e9, 2, 0, true},
                                                              {-350, 2, 0, true},
                                                              {10, -2, 0, false},
                                                              {10, 1e30, 0, false},
                                                              {test::kInfinity, 2, 0, false}};
    for (const test::DrawDisplay draw : {DrawEhsi, DrawTcas}) {
        for (const auto& [bearing, rangeNm, hundreds, shown] : cases) {
            source_->Tell({{bearing, rangeNm, hundreds}});
            test::DrawAt(draw, kEhsiDesign);
            const std::size_t withoutTarget = 1;  // the range
            EXPECT_EQ(Picture::Texts().size() > withoutTarget, shown)
                << hundreds << " at " << rangeNm << ", " << bearing;
            EXPECT_FALSE(Picture::Shows("-00"));
            test::ExpectNoNonsenseTexts();
        }
    }
    settings.TcasVertRange = 27;
    source_->Tell({{10, 2, 27}, {10, 3, 28}});
    test::DrawAt(DrawTcas, kEhsiDesign);
    EXPECT_TRUE(Picture::Shows("+27"));
    EXPECT_FALSE(Picture::Shows("+28"));
}

TEST_F(Traffic, DrawsNothingOutsideItsCircle) {
    for (const test::DrawDisplay draw : {DrawEhsi, DrawTcas}) {
        source_->Tell({});
        const auto without = test::DrawAt(draw, kEhsiDesign);
        source_->Tell({{0, 5.5, 5, 1, 3}, {90, 5.5, 5, 1, 3}, {180, 5.6, 5, -1, 2}, {135, 5.4, 1}});
        const auto with = test::DrawAt(draw, kEhsiDesign);
        int inside = 0;
        for (int y = 0; y < with->height(); ++y) {
            for (int x = 0; x < with->width(); ++x) {
                const bool differs = with->At(x, y) != without->At(x, y);
                const bool out = std::hypot(x + 0.5 - kCentre.x, y + 0.5 - kCentre.y) > 101.5;
                EXPECT_FALSE(differs && out) << x << ' ' << y;
                inside += differs;
            }
        }
        EXPECT_GT(inside, 50);
        source_->Tell({{45, 5.5, 5, 0, 1}});  // its altitude would stand beyond the circle
        test::DrawAt(draw, kEhsiDesign);
        EXPECT_FALSE(Picture::Shows("+05"));
    }
}

TEST_F(Traffic, ShowsOnTheNavigationDisplayInItsModesWhenSwitchedOn) {
    source_->Tell({{0, 2, 7}});
    for (const int on : {0, 1}) {
        for (nd.ndMode = 1; nd.ndMode <= 7; ++nd.ndMode) {
            nd.showTraffic = on;
            test::DrawAt(DrawNd, kNdDesign);
            EXPECT_EQ(Picture::Shows("+07"), on == 1 && nd.ndMode >= 3 && nd.ndMode <= 6)
                << nd.ndMode;
        }
    }
    EXPECT_FALSE(Picture::Shows("OFF"));
}

TEST_F(Traffic, GaugeTakesTheRangeOfTheMapDisplaysTrafficMode) {
    test::ExpectDrawsOnlyWhenAsked(DrawTcas);
    const std::pair<double, double> rings[] = {{2, 0}, {5, 40}, {10, 20}, {20, 10}, {40, 0}};
    for (const test::DrawDisplay draw : {DrawEhsi, DrawTcas}) {
        for (const auto& [rangeNm, ring] : rings) {
            ehsi.ehsiMode8Range = rangeNm;
            const auto picture = test::DrawAt(draw, kEhsiDesign, 2);
            EXPECT_TRUE(Picture::Shows(rangeNm < 10 ? (rangeNm < 5 ? " 2" : " 5")
                                                    : std::to_string(static_cast<int>(rangeNm))));
            const std::uint32_t argb = draw == DrawTcas ? colour::Blue : colour::White;
            for (const double radius : {10.0, 20.0, 40.0}) {
                const CanvasPoint right{kCentre.x + radius * std::cos(kDegToRad * 30),
                                        kCentre.y - radius / 2};
                EXPECT_EQ(HasColourNear(*picture, 2, right, argb), radius == ring)
                    << radius << " at " << rangeNm;
            }
        }
    }
}

std::int32_t refusedResult = 0;
void* AVQ1_PANEL_CALL Refuse(std::int32_t, std::int32_t* result) {
    *result = refusedResult = 7;
    return nullptr;
}

TEST_F(Traffic, IsLookedForTwentyTimesInAll) {
    void* const refuse = reinterpret_cast<void*>(&Refuse);
    const struct {
        void* address;
        VariableType type;
        std::int32_t result;
    } cases[] = {{nullptr, VariableType::Pointer, 1},
                 {refuse, VariableType::PointerToUint32, 1},
                 {refuse, VariableType::Pointer, 7}};
    for (const auto& [address, type, result] : cases) {
        trafficSource = TrafficSource{};
        simulator_->foreign = {{kTrafficVariableName, {address, type}}};
        simulator_->foreignQueries = 0;
        for (int drawing = 1; drawing <= 25; ++drawing) {
            test::DrawAt(DrawTcas, kEhsiDesign);
            EXPECT_EQ(simulator_->foreignQueries, std::min(drawing, 20));
            EXPECT_TRUE(Picture::Shows("TCAS OFF"));
        }
        EXPECT_EQ(trafficSource.result, result);
    }
    nd.showTraffic = 1;
    test::DrawAt(DrawNd, kNdDesign);
    EXPECT_TRUE(Picture::Shows("OFF"));
    // too late
    test::FakeTraffic source;
    source.Tell({{0, 2, 7}});
    test::DrawAt(DrawEhsi, kEhsiDesign);
    EXPECT_TRUE(Picture::Shows("TCAS OFF"));
    trafficSource = TrafficSource{};
    simulator_->foreign.clear();
    for (int drawing = 1; drawing < 20; ++drawing) {
        RefreshTargets();
    }
    test::FakeTraffic late;
    RefreshTargets();
    EXPECT_TRUE(HasTrafficSource());
}

TEST_F(Traffic, IsAskedForItsBlockOnce) {
    source_->Tell({{0, 2, 7}});
    test::DrawAt(DrawEhsi, kEhsiDesign);
    simulator_->foreign.clear();
    test::DrawAt(DrawEhsi, kEhsiDesign);
    EXPECT_EQ(source_->entries, 1);
    EXPECT_TRUE(Picture::Shows("+07"));
}

TEST_F(Traffic, KeepsItsTargetsUntilTheCounterChanges) {
    source_->block.updateCounter = 0xFFFF;
    source_->Tell({{0, 2, 7}});  // wraps to 0
    ASSERT_EQ(source_->block.updateCounter, 0);
    RefreshTargets();
    EXPECT_EQ(traffic.count, 1);  // whatever its counter
    EXPECT_EQ(source_->block.taken, 0u);
    source_->block.taken = 5;
    source_->records()[0].rangeNm = 3;
    RefreshTargets();
    EXPECT_EQ(traffic.items[0].rangeNm, 2);
    EXPECT_EQ(source_->block.taken, 5u);
    source_->block.updateCounter = 0xFFFF;
    RefreshTargets();
    EXPECT_EQ(traffic.items[0].rangeNm, 3);
    source_->Tell({});
    RefreshTargets();
    EXPECT_EQ(traffic.count, 0);
}

TEST_F(Traffic, TakesTheFiveHighestEntries) {
    const auto told = [] {
        std::vector<double> hundreds;
        for (std::int32_t i = 0; i < traffic.count; ++i) {
            hundreds.push_back(traffic.items[static_cast<std::size_t>(i)].relativeAltitudeHundreds);
        }
        return hundreds;
    };
    source_->Tell({{0, 2, 0},
                   {0, 2, 1},
                   {0, 2, 2},
                   {0, 2, 3},
                   {0, 2, 4, 0, 0, false},
                   {0, 2, 5},
                   {0, 2, 6},
                   {0, 2, 7}});
    RefreshTargets();
    EXPECT_EQ(told(), (std::vector<double>{7, 6, 5, 3}));
    source_->block.records[7] = nullptr;
    source_->block.records[6] = &source_->records()[0];  // moved since
    ++source_->block.updateCounter;
    RefreshTargets();
    EXPECT_EQ(told(), (std::vector<double>{0, 5, 3}));
    std::fill(std::begin(source_->block.records), std::end(source_->block.records),
              &source_->records()[1]);
    source_->block.count = 255;
    ++source_->block.updateCounter;
    RefreshTargets();
    EXPECT_EQ(told(), (std::vector<double>{1, 1, 1, 1, 1}));
    source_->Tell({{0, 2, 0}, {0, 2, 1}});
    RefreshTargets();
    EXPECT_EQ(told(), (std::vector<double>{1, 0}));
}

TEST_F(Traffic, TurnsRelativeBearingsWithTheHeading) {
    const std::pair<double, double> cases[] = {
        {0, 350}, {20, 10}, {10, 0}, {-355, 355}, {350, 340}};
    for (const auto& [relative, bearingTrue] : cases) {
        source_->Tell({{relative, 2, 0}});
        RefreshTargets();
        EXPECT_LT(test::AngleBetween(traffic.items[0].bearingTrue, bearingTrue), 0.001) << relative;
        EXPECT_LT(traffic.items[0].bearingTrue, 360);
        EXPECT_GE(traffic.items[0].bearingTrue, 0);
    }
    source_->Tell({{0, 3, 7}});
    RefreshTargets();
    aircraft.trueHeading = 320;  // the target stays where it was over the ground
    test::DrawAt(DrawEhsi, kEhsiDesign);
    EXPECT_NEAR(Picture::Find("+07")->x, kCentre.x + 54 * 0.5 + 13, 1.1);
}

}  // namespace
}  // namespace avq1
