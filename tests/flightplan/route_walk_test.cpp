#include "flightplan/route_walk.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "flightplan/plan_notation.h"

namespace avq1 {
namespace {

struct RouteWalk : testing::Test {
    RouteWalk() { ResetModuleState(); }
};

// A course of half a degree cannot be told from north by its figure, and the date line is no end.
TEST_F(RouteWalk, PointsLieOnTheGreatCircleBetweenTheEnds) {
    const LatLon ends[][2] = {{{40, -70}, {50, -69.9}}, {{10, 175}, {20, -175}}, {{0, 1}, {0, 9}}};
    for (const auto& [start, end] : ends) {
        test::SetPlan(previewPlan, "KJFK KBOS");
        previewPlan.Edit(0).latitude = start.latitude;
        previewPlan.Edit(0).longitude = start.longitude;
        previewPlan.Edit(1).latitude = end.latitude;
        previewPlan.Edit(1).longitude = end.longitude;
        RoutePoint point;
        ASSERT_TRUE(FindPointOnRoute(previewPlan, 0, 100, point));
        const LatLon& at = point.position;
        EXPECT_NEAR(
            GreatCircleDistanceNm(start.latitude, start.longitude, at.latitude, at.longitude), 100,
            1e-5);
        EXPECT_NEAR(GreatCircleDistanceNm(at.latitude, at.longitude, end.latitude, end.longitude),
                    point.leg.distanceNm - 100, 1e-5);
    }
}

TEST_F(RouteWalk, EveryChangeOfAPlanMovesItsRevisionOn) {
    test::SetPlan(previewPlan, "KJFK AAA KBOS");
    const FlightPlan other = previewPlan;
    void (*const changes[])(const FlightPlan&) = {
        [](const FlightPlan&) { previewPlan.Edit(1).flyover = 1; },
        [](const FlightPlan&) { previewPlan.Append({}); },
        [](const FlightPlan&) { previewPlan.CutTo(1); },
        [](const FlightPlan& another) { previewPlan = another; },
        [](const FlightPlan&) { ResetModuleState(); },
    };
    for (const auto change : changes) {
        const std::uint32_t before = previewPlan.revision;
        EXPECT_EQ(previewPlan.entries[0].ident, "KJFK");
        EXPECT_EQ(previewPlan.revision, before) << "reading is no change";
        change(other);
        EXPECT_NE(previewPlan.revision, before);
    }
    EXPECT_EQ(other.revision, FlightPlan{}.revision) << "a copy has a count of its own";
}

}  // namespace
}  // namespace avq1
