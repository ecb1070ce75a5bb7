#include "guidance/route_crossings.h"

#include <gtest/gtest.h>

#include "base/module_state.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::SetActivePlan;
using enum RouteCrossing::Kind;

class RouteCrossings : public testing::Test {
  protected:
    RouteCrossings() {
        ResetModuleState();
        SetActivePlan({{"KAAA", 0, 0, "APT"},
                       {"ABC", 0, 1},
                       {"DISCO", 0, 0, ""},
                       {"DEF", 0, 2},
                       {"GHI", 1, 2},
                       {"KBBB", 1, 1, "APT"}});
        planBook.activeIndex = 1;
        aircraft.latitude = 0;
        aircraft.longitude = 0.5;
    }
    ~RouteCrossings() override { ImportTable.panel.services = nullptr; }

    test::FakeSimulator& simulator = test::FakeSimulator::Install();
};

// East along the equator to 2 degrees, north, and back west: 30 + 60 + 60 + 60 nm.
TEST_F(RouteCrossings, AreWhereTheRouteMeetsRadialsAndCircles) {
    const struct {
        const char* what;
        LatLon place;
        RouteCrossing::Kind kind;
        double value;
        bool found;
        double aheadNm = 0, bearingTrue = 0, distanceNm = 0;
    } rows[] = {
        {"abeam on a leg", {0.25, 0.75}, Abeam, 0, true, 15, 180, 15},
        {"of two the nearer", {0.6, 1.75}, Abeam, 0, true, 126, 90, 15},
        {"on the route", {0, 1.5}, Radial, 90, true, 60, 0, 0},
        {"behind, abeam of a later leg", {0.25, 0.25}, Abeam, 0, true, 105, 90, 105},
        {"a radial across a leg", {0.5, 1.5}, Radial, 180, true, 60, 180, 30},
        {"a slanting one", {0.5, 1.5}, Radial, 225, true, 30, 225, 42.4},
        {"of the third leg", {0.5, 1.5}, Radial, 90, true, 120, 90, 30},
        {"of the last", {0.5, 1.5}, Radial, 360, true, 180, 0, 30},
        {"its other side does not count", {-0.5, 1.5}, Radial, 180, false},
        {"one that misses", {0.5, 0.25}, Radial, 270, false},
        {"the first of two of a circle", {0.5, 1.5}, Distance, 42.43, true, 30, 225, 42.4},
        {"across the gap", {0.25, 1.5}, Distance, 16, true, 54.4, 200.4, 16},
        {"one entered behind", {0, 0.5}, Distance, 60, true, 60, 90, 60},
        {"too small", {0.5, 1.5}, Distance, 29, false},
        {"too large", {0.5, 1.5}, Distance, 300, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        RouteCrossing query{row.kind, row.value, true, 99, 99, 99};
        FindRouteCrossings(row.place, {&query, 1});
        ASSERT_EQ(query.found, row.found);
        if (row.found) {
            EXPECT_NEAR(query.aheadNm, row.aheadNm, 0.1);
            EXPECT_NEAR(query.distanceNm, row.distanceNm, 0.1);
            EXPECT_NEAR(row.distanceNm > 0 ? SmallerAngle(query.bearingTrue, row.bearingTrue) : 0,
                        0, 0.3);
        }
    }
    planBook.activeIndex = kNoWaypoint;
    RouteCrossing query{Abeam, 0, true};
    FindRouteCrossings({0.5, 1.5}, {&query, 1});
    EXPECT_FALSE(query.found);
}

TEST_F(RouteCrossings, PredictionsLieBetweenTheirNeighbours) {
    static Predictions predictions;
    const auto put = [](PredictedPoint& point, double nm, double minutes, double feet) {
        point.known = true;
        point.distanceNm = nm;
        point.minutes = minutes;
        point.zuluMinutes = PositiveModulo(1430.5 + minutes, 1440);
        point.clockMinutes = 600.5 + minutes;
        point.altitudeFt = feet;
        point.fuelLb = 900 - 10 * minutes;
    };
    put(predictions.entries[1], 30, 6, 6000);
    put(predictions.entries[3], 90, 18, 10000);
    put(predictions.topOfClimb, 60, 12, 10000);
    simulator.variables[306] = 1;
    simulator.variables[291] = 8388608;
    simulator.variables[292] = 900;
    aircraft.altitudeFt = 2000;
    aircraft.zuluHour = 23;
    aircraft.zuluMinute = 50;
    aircraft.clockHour = 10;
    aircraft.clockSecond = 30;
    const struct {
        double nm;
        bool known;
        double minutes, zulu, feet;
    } rows[] = {{0, true, 0, 1430.5, 2000},  {15, true, 3, 1433.5, 4000},
                {30, true, 6, 1436.5, 6000}, {45, true, 9, 1439.5, 8000},
                {75, true, 15, 5.5, 10000},  {90, true, 18, 8.5, 10000},
                {90.5, false, 0, 0, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.nm);
        const PredictedPoint point = PredictionAhead(predictions, row.nm);
        ASSERT_EQ(point.known, row.known);
        if (row.known) {
            EXPECT_NEAR(point.distanceNm, row.nm, 1e-9);
            EXPECT_NEAR(point.minutes, row.minutes, 1e-9);
            EXPECT_NEAR(point.zuluMinutes, row.zulu, 1e-9);
            EXPECT_NEAR(point.clockMinutes, 600.5 + row.minutes, 1e-9);
            EXPECT_NEAR(point.altitudeFt, row.feet, 1e-9);
            EXPECT_NEAR(point.fuelLb, 900 - 10 * row.minutes, 1e-9);
        }
    }
}

}  // namespace
}  // namespace avq1
