#include "flightplan/route_walk.h"

#include <gtest/gtest.h>

#include "base/text.h"
#include "flightplan/plan_notation.h"

namespace avq1 {
namespace {

constexpr double kLegNm = 30;  // the notation's entries lie half a degree of latitude apart

struct RouteWalk : testing::Test {
    RouteWalk() { ResetModuleState(); }
};

TEST_F(RouteWalk, LegsLeaveOutWhatHasNoPosition) {
    const struct {
        const char* plan;
        std::int32_t first;
        std::int32_t last;
        const char* legs;  // from-to/miles walked, "*" across a gap
    } cases[] = {
        {"KJFK AAA BBB KBOS", 0, 3, "0-1/30 1-2/60 2-3/90 "},
        {"KJFK AAA BBB KBOS", 3, 0, "2-3/30 1-2/60 0-1/90 "},
        {"KJFK AAA BBB KBOS", 1, 2, "1-2/30 "},
        {"KJFK AAA BBB KBOS", 2, 1, "1-2/30 "},
        {"KJFK AAA DISCO THEN BBB KBOS", -4, 999, "0-1/30 1-4/120* 4-5/150 "},
        {"KJFK AAA DISCO THEN BBB KBOS", 999, -4, "4-5/30 1-4/120* 0-1/150 "},
        {"KJFK AAA DISCO THEN BBB KBOS", 2, 5, "4-5/30 "},
        {"KJFK AAA DISCO THEN BBB KBOS", 3, 0, "0-1/30 "},
        {"KJFK AAA DISCO THEN BBB KBOS", 0, 3, "0-1/30 "},
        {"KJFK AAA DISCO THEN BBB KBOS", 5, 3, "4-5/30 "},
        {"KJFK DISCO KBOS", 0, 2, "0-2/60* "},
        {"DISCO KJFK DISCO", 0, 2, ""},
        {"KJFK AAA KBOS", 1, 1, ""},
        {"DISCO", 0, 0, ""},
        {"", 0, 5, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.plan << ", " << c.first << " to " << c.last);
        test::SetPlan(previewPlan, c.plan);
        std::string legs;
        double walkedNm = 0;
        for (const RouteLeg& leg : RouteLegs(previewPlan, c.first, c.last)) {
            legs +=
                Format("%d-%d/%.0f%s ", leg.from, leg.to, leg.walkedNm, leg.acrossGap ? "*" : "");
            EXPECT_EQ(leg.start.latitude, previewPlan.entries[leg.from].latitude);
            EXPECT_EQ(leg.end.latitude, previewPlan.entries[leg.to].latitude);
            EXPECT_NEAR(leg.distanceNm, kLegNm * (leg.to - leg.from), 1e-6);
            EXPECT_EQ(leg.CourseTrue(), 360);
            walkedNm = leg.walkedNm;
        }
        EXPECT_EQ(legs, c.legs);
        EXPECT_EQ(RouteLengthNm(previewPlan, c.first, c.last), walkedNm);
    }
}

TEST_F(RouteWalk, EntriesWithAPositionAreFoundBothWays) {
    const struct {
        std::int32_t index;
        std::int32_t ahead;
        std::int32_t back;
    } cases[] = {{-9, 1, kNoEntry}, {0, 1, kNoEntry}, {1, 1, 1},  {2, 4, 1},
                 {3, 4, 1},         {4, 4, 4},        {5, -1, 4}, {99, -1, 4}};
    test::SetPlan(previewPlan, "DISCO AAA DISCO THEN BBB DISCO");
    for (const auto& c : cases) {
        EXPECT_EQ(PositionedEntryFrom(previewPlan, c.index), c.ahead) << c.index;
        EXPECT_EQ(PositionedEntryBack(previewPlan, c.index), c.back) << c.index;
    }
}

TEST_F(RouteWalk, PointsAreFoundAheadOfAnEntryAndBeforeIt) {
    const struct {
        std::int32_t index;
        double alongNm;
        std::int32_t from;  // of the leg it lies on; kNoEntry: the route ends before
        double latitude;
    } cases[] = {
        {0, 0, 0, 40},       {0, 45, 1, 40.75},      {1, 30, 1, 41},          {1, 75, 3, 41.75},
        {0, 120, 3, 42},     {0, 121, kNoEntry, 0},  {4, -12, 3, 41.8},       {4, -60, 1, 41},
        {4, -120, 0, 40},    {4, -121, kNoEntry, 0}, {1, -30.5, kNoEntry, 0}, {4, 1, kNoEntry, 0},
        {99, -15, 3, 41.75},
    };
    test::SetPlan(previewPlan, "KJFK AAA DISCO BBB KBOS");
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.alongNm << " from " << c.index);
        RoutePoint point;
        EXPECT_EQ(FindPointOnRoute(previewPlan, c.index, c.alongNm, point), c.from != kNoEntry);
        EXPECT_EQ(point.leg.from, c.from);
        EXPECT_NEAR(point.position.latitude, c.latitude, 1e-9);
        EXPECT_NEAR(point.position.longitude, c.from == kNoEntry ? 0 : -70, 1e-9);
    }
    RoutePoint none;
    test::SetPlan(previewPlan, "KJFK");
    EXPECT_FALSE(FindPointOnRoute(previewPlan, 0, 0, none));
}

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
