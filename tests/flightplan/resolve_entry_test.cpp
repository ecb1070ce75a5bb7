#include <gtest/gtest.h>

#include "base/module_state.h"
#include "flightplan/pilot_points.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_notation.h"
#include "geometry/geometry.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

using test::SetPlan;
using test::Show;

class ResolveEntryForms : public testing::Test {
  protected:
    void SetUp() override {
        ResetModuleState();
        aircraft.latitude = 42;
        aircraft.longitude = -71;
        aircraft.magneticVariation = -15;
        const std::pair<const char*, LatLon> navaids[] = {
            {"BOS", {10, 10}}, {"BOS", {42, -71}}, {"JFK", {40.6, -73.8}}, {"2Q", {46, -75}}};
        for (const auto& [ident, at] : navaids) {
            navDatabase.navaids.Append(
                {ident, "", at.latitude, at.longitude, PointKind::Vor, "112.70", ""});
        }
        SetPlan(modifiedPlan, "KJFK AAA KBOS");
    }
    void Resolve(std::string_view text, SearchCategory category = SearchCategory::All) {
        ResolveEntry(modifiedPlan, text, category, results_);
    }
    bool Insert(std::int32_t position) {
        return InsertNamedPoint(modifiedPlan, position, results_, 1);
    }
    std::int32_t Count() const { return results_.count; }
    const FoundPoint& First() const { return results_[1]; }
    static double CourseFrom(double latitude, double longitude, const auto& point) {
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(latitude, longitude, point.latitude, point.longitude, distanceNm,
                          courseTrue);
        return courseTrue;
    }

    SearchResults results_;
};

TEST_F(ResolveEntryForms, Positions) {
    const struct {
        const char* text;
        double latitude;
        double longitude;
    } valid[] = {
        {"N3345.5W11154.3", 33 + 45.5 / 60, -(111 + 54.3 / 60)},
        {"S0000.0E00959.9", 0, 9 + 59.9 / 60},
        {"S9000.0W18000.0", -90, -180},
        {"N3345.5W11154.3X", 33 + 45.5 / 60, -(111 + 54.3 / 60)},
        {"N3345.5W11154.", 33 + 45.5 / 60, -(111 + 54.0 / 60)},
    };
    for (const auto& c : valid) {
        Resolve(c.text);
        ASSERT_EQ(Count(), 1) << c.text;
        EXPECT_NEAR(First().latitude, c.latitude, 1e-12) << c.text;
        EXPECT_NEAR(First().longitude, c.longitude, 1e-12) << c.text;
        EXPECT_EQ(First().ident, "WPT01");
        EXPECT_EQ(KindText(First().kind), "I");
    }
    for (const char* text :
         {"", "N", "N3345.5", "N3345.5W1115", "N3345.5W1115.43", "X3345.5W11154.3",
          "N33455.W11154.3", "N3345.5X11154.3", "N3A45.5W11154.3", "N3360.0W11154.3",
          "N3345.XW11154.3", "N3345.5W11154.X", "N9000.1W11154.3", "N3345.5W18000.1",
          "N3345.5W11154.3XXXXXXXXXXXXXXXXX"}) {
        Resolve(text);
        EXPECT_EQ(Count(), 0) << text;
    }
}

TEST_F(ResolveEntryForms, PilotPointsAreNumberedOnFromThePlan) {
    const std::pair<const char*, const char*> cases[] = {{"KJFK WPT01 WPT04 KBOS", "WPT05"},
                                                         {"KJFK WPT99 KBOS", "WPT100"},
                                                         {"KJFK WPTXX WPT0A KBOS", "WPT01"}};
    for (const auto& [plan, next] : cases) {
        SetPlan(modifiedPlan, plan);
        Resolve("N3345.5W11154.3");
        EXPECT_EQ(First().ident, next);
    }
    SetPlan(modifiedPlan, "KJFK WPT04 KBOS");
    Resolve("N3345.5W11154.3");
    ASSERT_TRUE(Insert(2));
    EXPECT_EQ(Show(modifiedPlan), "KJFK WPT04 WPT05 KBOS");
    EXPECT_EQ(modifiedPlan.entries[2].type, "WPT");
}

TEST_F(ResolveEntryForms, PlaceBearingDistanceBecomesAPoint) {
    Resolve("BOS105/25.9");
    ASSERT_EQ(Count(), 1);
    EXPECT_EQ(First().latitude, 42);  // the nearer of the two
    EXPECT_EQ(results_.pendingBearingMag, 105);
    EXPECT_EQ(results_.pendingDistanceNm, 25);
    ASSERT_TRUE(Insert(kNoWaypoint));
    EXPECT_EQ(Show(modifiedPlan), "KJFK BOS01 AAA KBOS");
    const PlanWaypoint& point = modifiedPlan.entries[1];
    EXPECT_NEAR(GreatCircleDistanceNm(42, -71, point.latitude, point.longitude), 25, 1e-6);
    EXPECT_NEAR(CourseFrom(42, -71, point), 90, 1e-6);
    EXPECT_EQ(point.type, "WPT");
    EXPECT_EQ(point.frequency, "");  // nobody tunes the reference for a point 25 nm off
    EXPECT_EQ(results_.pendingBearingMag, -1);

    Resolve("BOS180/5");
    Insert(2);
    EXPECT_EQ(Show(modifiedPlan), "KJFK BOS01 BOS02 AAA KBOS");

    Resolve("BOS180/5");
    Resolve("JFK");  // the first entry was given up
    Insert(1);
    EXPECT_EQ(modifiedPlan.entries[1].ident, "JFK");
    EXPECT_EQ(modifiedPlan.entries[1].type, "VOR");
}

TEST_F(ResolveEntryForms, PlaceBearingEntriesThatAreNone) {
    for (const char* text :
         {"090/25", "/25", "BOS-10/25", "BOS361/25", "BOS09X/25", "BOS090/0", "BOS090/-5",
          "BOS090/", "XYZ090/25", "BOS090/99999", "BOS090/JFK09", "BOS090/XYZ180", "XYZ090/JFK180",
          "BOS090/JFK400", "BOS090/2Q180X", "BOS325/0002Q150" /* no place */,
          "BOS030/JFK250" /* each away from the other */}) {
        Resolve(text);
        EXPECT_EQ(Count(), 0) << text;
        EXPECT_EQ(results_.pendingDistanceNm, -1) << text;
    }
    Resolve("BOS090/25", SearchCategory::Airports);
    EXPECT_EQ(Count(), 0);
}

TEST_F(ResolveEntryForms, BearingsThatCrossGiveOnePoint) {
    Resolve("BOS265/JFK030");  // true 250 and 015
    ASSERT_EQ(Count(), 1);
    EXPECT_EQ(First().ident, "BOS01");
    EXPECT_NEAR(CourseFrom(42, -71, First()), 250, 1e-6);
    EXPECT_NEAR(CourseFrom(40.6, -73.8, First()), 15, 1e-6);
    ASSERT_TRUE(InsertWaypoint(modifiedPlan, 1, EntryFrom(First())));
    EXPECT_EQ(modifiedPlan.entries[1].ident, "BOS01");
    EXPECT_EQ(modifiedPlan.entries[1].type, "WPT");
    EXPECT_EQ(results_.pendingBearingMag, -1);
}

TEST_F(ResolveEntryForms, CrossingsOnTheSphere) {
    const struct {
        const char* what;
        LatLon place1;
        double course1;
        LatLon place2;
        double course2;
        bool crosses;
        LatLon point;
    } cases[] = {
        {"meridian and equator", {10, 5}, 180, {0, -5}, 90, true, {0, 5}},
        {"across the date line", {10, 179}, 180, {0, -175}, 270, true, {0, 179}},
        {"place on the other's bearing", {0, 5}, 45, {0, -5}, 90, true, {0, 5}},
        {"behind the first", {10, 5}, 0, {0, -5}, 90, false, {}},
        {"meet only at the pole", {40, -75}, 0, {40, -70}, 0, false, {}},
        {"one line", {0, 0}, 90, {0, 5}, 90, false, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        LatLon point{-1, -1};
        EXPECT_EQ(CrossingOfCourses(c.place1, c.course1, c.place2, c.course2, point), c.crosses);
        EXPECT_NEAR(point.latitude, c.crosses ? c.point.latitude : -1, 1e-9);
        EXPECT_NEAR(point.longitude, c.crosses ? c.point.longitude : -1, 1e-9);
    }
}

TEST_F(ResolveEntryForms, HoldAtPresentPositionIsANumberedPoint) {
    results_.Append(PilotPoint({41, -72}, "HOLD PPOS"));
    SetPlan(modifiedPlan, "KJFK >WPT01 KBOS");
    ASSERT_TRUE(Insert(1));
    EXPECT_EQ(Show(modifiedPlan), "KJFK HOLD PPOS(WPT02) >WPT01 KBOS");
    EXPECT_EQ(modifiedPlan.entries[1].type, "WPT");
}

}  // namespace
}  // namespace avq1
