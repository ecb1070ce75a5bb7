// Traffic on the displays that show it, from a traffic module in memory: and the protocol
// it is told by. (How it looks: pictures_test.cpp.)
#include <gtest/gtest.h>

#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include "displays/ehsi/ehsi.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "displays/traffic/tcas.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/fake_traffic.h"
#include "traffic/targets.h"

namespace avq1 {
namespace {

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
