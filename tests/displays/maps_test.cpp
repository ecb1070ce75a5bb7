// What decides which things the maps show and where their records come from. (How they look:
// pictures_test.cpp.)
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <utility>

#include "displays/ehsi/ehsi.h"
#include "displays/map/boundaries.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "drawing/palette.h"
#include "flightplan/plan_airports.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"
#include "navdb/boundaries.h"
#include "navdb/nav_database.h"
#include "navdb/nearby.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/nav_points.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::HasColourNear;
using test::Picture;

constexpr CanvasPoint kArc{122, 249};
constexpr CanvasPoint kCentred{122, 171};

// Around 0 N 0 E a degree is 60 nm both ways; the aircraft heads north.
class Maps : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        atcBoundaries.loaded = true;
        aircraft.latitude = aircraft.longitude = 0;
        aircraft.groundSpeedKt = 300;
        aircraft.apHeadingBug = 180;
        SetNav1(true);
    }
    static void AddStation(const char* ident, double northNm, double eastNm,
                           PointKind kind = PointKind::Vor) {
        test::AddPoint(navDatabase.navaids, ident, northNm / 60, eastNm / 60, kind);
    }
    static std::unique_ptr<Picture> Draw(int mode, int scale = 1) {
        nd.ndMode = mode;
        return test::DrawAt(DrawNd, {244, 302}, scale);
    }
    static void ExpectDrawn(int mode, TextList shown, TextList hidden = {}) {
        Draw(mode);
        ExpectShown(shown);
        ExpectShown(hidden, false);
    }
    static void DrawOnEhsi(int mode) {
        ehsi.ehsiMode = mode;
        test::DrawAt(DrawEhsi, {266, 230});
    }
    static void FlyPlan() {
        test::SetActivePlan({{"WP0", -5.0 / 60, 0}, {"WP1", 7.0 / 60, 0}, {"WP2", 6.0 / 60, 0.05}});
        planBook.activeIndex = 1;
        guidance.distanceToGoNm = 7;
        ehsi.navSource = NavSource::FlightManagement;
    }
};

TEST_F(Maps, SaysNoMapWhenTheSourceHasNothingToShow) {
    for (const NavSource source : {NavSource::NavReceiver, NavSource::FlightManagement}) {
        for (const bool hasData : {false, true}) {
            for (int mode = 1; mode <= 8; ++mode) {
                SetNav1(hasData);
                FlyPlan();
                planBook.activeIndex = hasData ? 1 : kNoWaypoint;
                ehsi.navSource = source;
                DrawOnEhsi(mode);
                const bool isMap = mode < 7 && mode % 3 != 1;
                EXPECT_EQ(Picture::Shows("NO MAP"), isMap && !hasData) << mode;
                // beside the next waypoint's data it stands on the map
                const bool route = isMap && source == NavSource::FlightManagement;
                const int shown = mode == 8 || !hasData ? 0 : 1 + route;
                EXPECT_EQ(test::CountTexts("WP1"), shown) << mode;
            }
        }
    }
}

TEST_F(Maps, PlanModeIsCentredOnTheChosenWaypoint) {
    FlyPlan();
    PlanSelection& centre = planBook.selections[static_cast<std::size_t>(PlanUnit::MapCentre)];
    centre = {&activePlan, 2};
    Draw(7);
    const test::DrawnText* const ident = Picture::Find("WP2");
    ASSERT_NE(ident, nullptr);
    EXPECT_NEAR(ident->x, kCentred.x, 10);
    EXPECT_NEAR(ident->y, kCentred.y, 15);
    // records are seen around it, also far from the aircraft
    activePlan.Edit(2).latitude = 300.0 / 60;
    AddStation("FAR", 303, -3);
    nd.ndShowStations = 1;
    Draw(7);
    EXPECT_TRUE(Picture::Shows("FAR"));
    EXPECT_FALSE(HasColourNear(*Draw(7, 2), 2, {kCentred.x + 6, kCentred.y + 17}, colour::White));
    centre.index = 99;  // gone from the plan: the aircraft again
    const auto picture = Draw(7, 2);
    EXPECT_TRUE(HasColourNear(*picture, 2, {kCentred.x, kCentred.y + 17}, colour::White));
}

TEST_F(Maps, OpenPlacesOfAPendingRouteAreNamed) {
    FlyPlan();
    modifiedPlan = activePlan;
    modifiedPlan.Edit(0).latitude = 3.0 / 60;
    modifiedPlan.Edit(1) = Discontinuity();
    modifiedPlan.Append({});
    modifiedPlan.Edit(3).ident = kAirwayPlaceholder;
    for (const RouteStatus status :
         {RouteStatus::None, RouteStatus::BeingBuilt, RouteStatus::AwaitsExecution,
          RouteStatus::Active, RouteStatus::Modified}) {
        planBook.status = status;
        const bool pending = status != RouteStatus::None && status != RouteStatus::Active;
        for (int mode = 1; mode <= 7; ++mode) {
            Draw(mode);
            ExpectShown({"DISCO", "THEN"}, pending && mode >= 5);
        }
    }
}

TEST_F(Maps, TheAltitudeArcLiesWhereTheAltitudeIsReached) {
    const auto shown = [](int mode, void (*spoil)()) {
        aircraft.autopilotOn = aircraft.apAltitudeLockOn = 1;
        aircraft.altitudeFt = 5000;
        aircraft.apAltitudeTargetFt = 4000;
        aircraft.verticalSpeedFpm = -1000;  // one minute, 5 nm
        spoil();
        const CanvasPoint centre = mode == 5 ? kArc : kCentred;
        const double radius = mode == 5 ? 107.5 : 55;
        // off the track line and the range mark's dashes
        const CanvasPoint beside{centre.x + radius * std::sin(0.17),
                                 centre.y - radius * std::cos(0.17)};
        return HasColourNear(*Draw(mode, 2), 2, beside, colour::Green);
    };
    for (const int mode : {5, 6, 7}) {
        EXPECT_EQ(shown(mode, [] {}), mode != 7) << mode;
    }
    EXPECT_FALSE(shown(5, [] { aircraft.autopilotOn = 0; }));
    EXPECT_FALSE(shown(5, [] { aircraft.apAltitudeLockOn = 0; }));
    EXPECT_FALSE(shown(5, [] { aircraft.apAltitudeTargetFt = 5000; }));
    EXPECT_FALSE(shown(5, [] { aircraft.verticalSpeedFpm = -200; }));
    EXPECT_FALSE(shown(5, [] { aircraft.verticalSpeedFpm = -500; }));  // 10 nm: elsewhere
    EXPECT_FALSE(shown(5, [] { aircraft.groundSpeedKt = test::kNan; }));
}

TEST_F(Maps, TheReceiverIsNamedWithFrequencyDistanceAndSense) {
    AddStation("VVV", 3, -3);
    AddStation("NN", 5, -2, PointKind::Navaid);
    aircraft.nav1DmeNm = std::hypot(3, 3);  // VVV, at 315 degrees
    aircraft.nav1RelativeBearing = 315;
    aircraft.nav1Course = 300;
    for (int mode = 1; mode <= 7; ++mode) {
        ExpectDrawn(mode, {"VOR 1", "113.40", "4.2"}, {"FROM"});
        ExpectShown({"VVV"}, mode == 5 || mode == 6);  // the tuned station, on the map
    }
    aircraft.nav1Course = 120;
    nd.ndShowStations = 1;
    ExpectDrawn(5, {"FROM", "NN"});
    EXPECT_EQ(test::CountTexts("VVV"), 1);  // once only, though the stations show
    nd.ndShowStations = 0;
    simulator_->variables[46] = 0x80;
    ExpectDrawn(5, {"ILS 1"}, {"FROM", "VVV", "113.40"});
    simulator_->variables[46] = 0;
    aircraft.nav1RelativeBearing = 300;  // no station there
    ExpectDrawn(5, {}, {"113.40", "VVV"});
    aircraft.nav1DmeNm = 0;
    ExpectDrawn(5, {}, {"0.0"});
    SetNav1(false);
    ExpectDrawn(1, {"NO SIGNAL"});
}

TEST_F(Maps, TheRunwayPatternHasItsAltitudesNearTheRunwayAndWhenAskedFor) {
    PlanRunway runway;
    runway.heading = runway.field8 = 360;
    planAirports.runways = {PlanRunway{}, runway};
    planAirports.selectedRunway = 1;
    planAirports.destinationElevationText = "433";
    aircraft.latitude = -5.0 / 60;
    const struct {
        int ehsiMode;
        double ehsiRange;
        int ndMode;
        std::int32_t ndRange;
        bool shown;
        std::int32_t asked = 1;
        std::int32_t offset = 0;
    } rows[] = {{5, 12.5, 5, 10, true},
                {6, 25, 5, 20, false},
                {1, 12.5, 7, 10, false},
                {5, 12.5, 5, 10, false, 0},
                {5, 12.5, 5, 10, false, 1, kNoPatternRunway},
                {5, 12.5, 5, 10, false, 1, 77}};  // beyond the airport's runways
    for (const auto& row : rows) {
        settings.DispAppPtrnAlts = row.asked;
        planAirports.patternRunwayOffset = row.offset;
        ehsi.ehsiRange = row.ehsiRange;
        nd.ndRange = row.ndRange;
        DrawOnEhsi(row.ehsiMode);
        ExpectShown({"1900"}, row.shown);
        Draw(row.ndMode);
        ExpectShown({"1900"}, row.shown);
    }
}

TEST_F(Maps, ProfileMarkersShowWhileTheyLieAhead) {
    FlyPlan();
    aircraft.altitudeFt = 5000;
    test::PlanMarks(3, 4);  // descending 6 nm from here
    const auto expectMarkers = [](bool climb, bool descent) {
        RefreshPredictions();
        DrawOnEhsi(2);
        EXPECT_EQ(Picture::Shows("T/C"), climb);
        Draw(5);
        EXPECT_EQ(Picture::Shows("T/C"), climb);
        DrawOnEhsi(2);
        EXPECT_EQ(Picture::Shows("T/D"), descent);
    };
    progress.routeDistanceToDestination = 8;
    expectMarkers(false, false);
    progress.routeDistanceToDestination = 8.1;
    expectMarkers(true, true);
    vnav.topOfClimbReached = 1;
    expectMarkers(false, true);
    settings.ShowTodBodIndicators = 0;
    expectMarkers(false, false);
    settings.ShowTodBodIndicators = 1;
    // off the map only when the aircraft file asks, at the map's edge
    ehsi.ehsiRange = 2.5;
    expectMarkers(false, false);
    performance.showFloatingTodBod = 1;
    expectMarkers(false, true);
    EXPECT_NEAR(Picture::Find("T/D")->y, 114 - 90 - 5, 1);
    ehsi.navSource = NavSource::NavReceiver;
    expectMarkers(false, false);
    ehsi.navSource = NavSource::FlightManagement;
    vnav = {};
    expectMarkers(false, false);
}

TEST_F(Maps, NearbyListsAreMadeAnewOnlyFarAway) {
    AddStation("VVV", 3, -3);
    AddStation("NN", 5, -2, PointKind::Navaid);
    AddStation("EDGE", 189, 0);
    test::AddPoint(navDatabase.airports, "KAPT", 0.1, 0);
    nd.ndShowStations = 1;
    Draw(5);
    EXPECT_EQ(nearby.navaids600.points.count, 3);
    EXPECT_EQ(nearby.airports600.points.count, 0);  // not shown: not built
    const LatLon before = nearby.navaids600.reference;
    for (const auto& [northNm, count] : {std::pair{9.9, 2}, {10.1, 3}, {0.2, 3}, {0.0, 2}}) {
        aircraft.latitude = northNm / 60;
        Draw(5);
        EXPECT_EQ(nearby.navaids180.points.count, count) << northNm;
    }
    aircraft.latitude = 59.0 / 60;
    Draw(5);
    EXPECT_EQ(nearby.navaids600.reference.latitude, before.latitude);
    aircraft.latitude = 61.0 / 60;
    Draw(5);
    EXPECT_NEAR(nearby.navaids600.reference.latitude, 61.0 / 60, 1e-12);
    // a jump across the world shows what is there
    aircraft.latitude = 40;
    AddStation("FAR", 40 * 60 + 5, 0);
    ExpectDrawn(5, {"FAR"}, {"VVV"});
    navDatabase = {};  // and a reload
    nearby = {};
    AddStation("NEW", 40 * 60 + 5, 0);
    ExpectDrawn(5, {"NEW"}, {"FAR"});
}

// ---- airspace ----

// A boundary that begins `firstPointNm` north of the aircraft at 0/0 and passes near it.
AtcBoundary Reaching(const char* ident, double firstPointNm) {
    AtcBoundary boundary;
    boundary.ident = ident;
    boundary.name = "OCEANIC";
    boundary.points = {{firstPointNm / 60, 0}, {0.1, 0.1}};
    boundary.label = {0.1, 0};
    return boundary;
}

// On a map of 200 x 200 with the aircraft in the middle, 50 pixels for 20 nm.
void DrawLayer(Picture& picture) {
    Surface surface(picture.Target(), 200, 200, true);
    surface.canvas().Clear(colour::Clear);
    const MapView view = ViewFromAircraft(100, 100, 50, 20);
    TextBoxes texts;
    const MapFrame frame{surface,          view, 20,    {100, 100}, 100,
                         {0, 0, 200, 200}, 100,  texts, texts,      EmptyMapNames()};
    DrawAtcBoundaries(frame);
    DrawAtcBoundaryNames(frame);
}

TEST_F(Maps, AirspaceLeavesOutWhatBeginsFarAway) {
    const std::tuple<const char*, int, bool> cases[] = {
        {"KZBW", 999, true},     {"KZBW", 1001, false},    {"YM00142", 1200, true},
        {"YB00001", 4999, true}, {"NZ00084", 5001, false}, {"YM0014", 1200, false}};
    for (const auto& [ident, firstPointNm, drawn] : cases) {
        SetUp();
        atcBoundaries.items = {Reaching(ident, firstPointNm)};
        Picture picture(200, 200);
        DrawLayer(picture);
        EXPECT_EQ(Picture::Shows("OCE"), drawn) << ident << " at " << firstPointNm;
        EXPECT_EQ(picture.IsClear(), !drawn) << ident << " at " << firstPointNm;
    }
}

TEST_F(Maps, AirspaceNamesKeepClearOfEachOtherAndComeOnce) {
    const std::pair<const char*, double> labels[] = {
        {"ONE", 0}, {"TAKEN", 1}, {"TWO", 8}, {"ONE", -8}, {"HALF BESIDE THE MAP", 42}};
    for (const auto& [name, northNm] : labels) {
        AtcBoundary boundary = Reaching("KZBW", 10);
        boundary.name = name;
        boundary.label = {northNm / 60, 0};
        atcBoundaries.items.push_back(boundary);
    }
    Picture picture(200, 200);
    DrawLayer(picture);
    EXPECT_EQ(Picture::Texts().size(), 2u);
}

TEST_F(Maps, AirspaceReadsItsFileAtTheFirstDrawing) {
    atcBoundaries.loaded = false;
    const test::TempSimFolder folder;
    folder.Write("avq/navdata/atc_bdry.txt", "KZBW ZBW 0.1 0.1\nKZBW ZBW 0.1 0.2\n");
    Picture picture(200, 200);
    DrawLayer(picture);
    EXPECT_TRUE(Picture::Shows("ZBW"));
}

}  // namespace
}  // namespace avq1
