// The navigation display and the layers it shares with the EHSI's map, read back from their
// pictures and from the texts they draw.
#include "displays/nd/nd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <tuple>

#include "displays/ehsi/ehsi.h"
#include "displays/nd/nd_panel.h"
#include "drawing/palette.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"
#include "navdb/boundaries.h"
#include "navdb/nav_database.h"
#include "navdb/nearby.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::HasColourNear;
using test::kNan;
using test::MeanDirection;
using test::Picture;

constexpr CanvasSize kDesign{244, 302};
constexpr CanvasSize kEhsiDesign{266, 230};
constexpr CanvasPoint kFull{122, 151};
constexpr CanvasPoint kArc{122, 249};
constexpr CanvasPoint kCentred{122, 171};

// Around 0 N 0 E a degree is 60 nm both ways; the aircraft heads north.
class Nd : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        atcBoundaries.loaded = true;
        aircraft.latitude = aircraft.longitude = 0;
        aircraft.groundSpeedKt = 300;
        aircraft.apHeadingBug = 180;
        SetNav1(true);
    }
    static void AddPoint(PointTable& table, PointKind kind, const char* ident, double northNm,
                         double eastNm) {
        PointRecord record;
        record.ident = ident;
        record.kind = kind;
        record.frequency = "113.40";
        record.latitude = northNm / 60;
        record.longitude = eastNm / 60;
        table.Append(record);
    }
    static void AddPoints() {
        AddPoint(navDatabase.navaids, PointKind::Vor, "VVV", 3, -3);
        AddPoint(navDatabase.navaids, PointKind::Navaid, "NN", 5, -2);
        AddPoint(navDatabase.airports, PointKind::Airport, "KAPT", 6, 2);
        AddPoint(navDatabase.airwayFixes, PointKind::Intersection, "FIXXX", 3, 3);
        AddPoint(navDatabase.airwayFixes, PointKind::Intersection, "FARFX", 20, 15);
    }

    // Records all around, closer than a map can show them.
    static void Crowd() {
        static std::array<std::string, 300> idents;
        for (std::size_t i = 0; i < idents.size(); ++i) {
            idents[i] = "P" + std::to_string(i);
            const char* const ident = idents[i].c_str();
            const double number = static_cast<double>(i);
            const double northNm = std::fmod(number * 0.61803, 1.0) * 42 - 21;
            const double eastNm = std::fmod(number * 0.75487, 1.0) * 42 - 21;
            const PointKind kind = i % 2 == 0 ? PointKind::Vor : PointKind::Navaid;
            AddPoint(navDatabase.navaids, kind, ident, northNm, eastNm);
            AddPoint(navDatabase.airports, kind, ident, northNm + 0.6, eastNm);
            AddPoint(navDatabase.airwayFixes, kind, ident, northNm + 0.6, eastNm + 0.78);
        }
        nd.ndShowStations = nd.ndShowAirports = nd.ndShowWaypoints = nd.ndShowAdf = 1;
    }

    static std::unique_ptr<Picture> Draw(int mode, int scale = 1,
                                         DisplayDrawMode drawMode = DisplayDrawMode::Normal) {
        nd.ndMode = mode;
        return test::DrawAt(DrawNd, kDesign, scale, drawMode);
    }
    static void ExpectDrawn(int mode, TextList shown, TextList hidden = {}) {
        Draw(mode);
        ExpectShown(shown);
        ExpectShown(hidden, false);
    }
    static void DrawOnEhsi(int mode) {
        ehsi.ehsiMode = mode;
        test::DrawAt(DrawEhsi, kEhsiDesign);
    }

    static void FlyPlan() {
        test::SetActivePlan({{"WP0", -5.0 / 60, 0}, {"WP1", 7.0 / 60, 0}, {"WP2", 6.0 / 60, 0.05}});
        planBook.activeIndex = 1;
        guidance.distanceToGoNm = 7;
        ehsi.navSource = NavSource::FlightManagement;
    }
};

TEST_F(Nd, StaysTransparentWhenCoveredOrWithoutPower) {
    for (nd.ndMode = 1; nd.ndMode <= 7; ++nd.ndMode) {
        test::ExpectDrawsOnlyWhenAsked(DrawNd);
    }
}

TEST_F(Nd, LayersShowInTheirModesRangesAndDrawModes) {
    AddPoints();
    atcBoundaries.items = {{"X1", "BDY", {4.0 / 60, 0}, {{0.1, 0}, {0.1, 0.1}, {0, 0.1}}}};
    const auto expectLayers = [](int mode, int range, bool on, DisplayDrawMode drawMode) {
        nd.ndShowStations = nd.ndShowAirports = nd.ndShowWaypoints = ehsi.mapOverlayOn = on;
        nd.ndRange = range;
        Draw(mode, 1, drawMode);
        const bool map = mode >= 5 && on;
        const bool second = drawMode == DisplayDrawMode::SecondCockpit;
        if (range == 10) {  // farther out they crowd each other
            ExpectShown({"VVV", "NN", "KAPT"}, map);
            ExpectShown({"BDY"}, map && mode != 7 && !second);
        }
        ExpectShown({range == 10 ? "FIXXX" : "FARFX"}, map && range <= 40 && !second);
    };
    for (int mode = 1; mode <= 7; ++mode) {
        expectLayers(mode, 10, true, DisplayDrawMode::Normal);
        expectLayers(mode, 40, true, DisplayDrawMode::Normal);
        expectLayers(mode, 80, true, DisplayDrawMode::Normal);
        expectLayers(mode, 10, false, DisplayDrawMode::Normal);
        expectLayers(mode, 10, true, DisplayDrawMode::SecondCockpit);
    }
}

TEST_F(Nd, SymbolsStandWhereTheRecordsAre) {
    constexpr int kScale = 3;
    AddPoints();
    nd.ndShowStations = nd.ndShowAirports = 1;
    aircraft.headingMag = 20;
    for (const auto& [mode, centre, radius] :
         {std::tuple{5, kArc, 215}, {6, kCentred, 110}, {7, kCentred, 110}}) {
        const auto picture = Draw(mode, kScale);
        const double pxPerNm = static_cast<double>(radius) / nd.ndRange;
        const double turn = mode == 7 ? 0 : 20 * kDegToRad;  // north up in mode 7
        const auto shows = [&, &middle = centre](double eastNm, double northNm, double rightPx,
                                                 std::uint32_t argb) {
            const double right = eastNm * std::cos(turn) - northNm * std::sin(turn);
            const double up = northNm * std::cos(turn) + eastNm * std::sin(turn);
            return HasColourNear(*picture, kScale,
                                 {middle.x + right * pxPerNm + rightPx, middle.y - up * pxPerNm},
                                 argb);
        };
        EXPECT_TRUE(shows(2, 6, -4, colour::Cyan)) << "the airport's ring, mode " << mode;
        EXPECT_TRUE(shows(-3, 3, 5, colour::Cyan)) << "the VOR's hexagon, mode " << mode;
        EXPECT_FALSE(shows(-3, 3, 0, colour::Cyan));
        EXPECT_TRUE(shows(-2, 5, 0, colour::Blue)) << "the NDB's dot, mode " << mode;
    }
}

TEST_F(Nd, PlanModeIsCentredOnTheChosenWaypoint) {
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
    AddPoint(navDatabase.navaids, PointKind::Vor, "FAR", 303, -3);
    nd.ndShowStations = 1;
    Draw(7);
    EXPECT_TRUE(Picture::Shows("FAR"));
    EXPECT_FALSE(HasColourNear(*Draw(7, 2), 2, {kCentred.x + 6, kCentred.y + 17}, colour::White));
    centre.index = 99;  // gone from the plan: the aircraft again
    const auto picture = Draw(7, 2);
    EXPECT_TRUE(HasColourNear(*picture, 2, {kCentred.x, kCentred.y + 17}, colour::White));
}

TEST_F(Nd, OpenPlacesOfAPendingRouteAreNamed) {
    FlyPlan();
    modifiedPlan = activePlan;
    modifiedPlan.Edit(0).latitude = 3.0 / 60;
    modifiedPlan.Edit(1) = Discontinuity();
    modifiedPlan.Append({});
    modifiedPlan.Edit(3).ident = kAirwayPlaceholder;
    Crowd();  // whose identifiers leave these their places
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

TEST_F(Nd, TheAltitudeArcLiesWhereTheAltitudeIsReached) {
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
    EXPECT_FALSE(shown(5, [] { aircraft.groundSpeedKt = kNan; }));
}

TEST_F(Nd, TheTrackLineLeansWithTheDrift) {
    aircraft.headingMag = 10;
    for (const double driftDeg : {-20.0, 25.0}) {
        derived.driftDeg = driftDeg;
        const auto picture = Draw(5, 3);
        const auto whiteAt = [&](double turnDeg) {
            int dashes = 0;
            for (int radius = 60; radius < 100; ++radius) {
                const double turn = turnDeg * kDegToRad;
                dashes += HasColourNear(
                    *picture, 3,
                    {kArc.x + radius * std::sin(turn), kArc.y - radius * std::cos(turn)},
                    colour::White);
            }
            return dashes;
        };
        EXPECT_GT(whiteAt(-driftDeg), 10);
        EXPECT_EQ(whiteAt(driftDeg), 0);
    }
}

TEST_F(Nd, TheAdfNeedlePointsAtItsBearing) {
    const auto needle = [](int mode, double inner) {
        return MeanDirection(*Draw(mode, 3), kFull, inner, 99, 3, colour::Blue);
    };
    nd.ndShowAdf = aircraft.adfActive = 1;
    for (const double bearing : {-50.0, 135.0, 400.0}) {
        aircraft.adfRelativeBearing = bearing;
        // near its tip the head outweighs the tail, which is opposite
        EXPECT_LT(test::AngleBetween(needle(2, 93), bearing), 1.5) << bearing;
    }
    aircraft.adfActive = 0;
    EXPECT_TRUE(std::isnan(needle(2, 60)));
    aircraft.adfActive = 1;
    EXPECT_TRUE(std::isnan(needle(1, 60)));
    ExpectShown({"ADF 1"});
    nd.ndShowAdf = 0;
    EXPECT_TRUE(std::isnan(needle(2, 60)));
    ExpectShown({"ADF 1"}, false);
}

TEST_F(Nd, TheReceiverIsNamedWithFrequencyDistanceAndSense) {
    AddPoints();
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
    const auto stationDrawn = [] {
        return HasColourNear(*Draw(5, 2), 2, {kArc.x - 3 * 21.5, kArc.y - 3 * 21.5}, colour::Green);
    };
    EXPECT_TRUE(stationDrawn());
    simulator_->variables[46] = 0x80;
    ExpectDrawn(5, {"ILS 1"}, {"FROM", "VVV", "113.40"});
    EXPECT_FALSE(stationDrawn());
    simulator_->variables[46] = 0;
    aircraft.nav1RelativeBearing = 300;  // no station there
    ExpectDrawn(5, {}, {"113.40", "VVV"});
    aircraft.nav1DmeNm = 0;
    ExpectDrawn(5, {}, {"0.0"});
    SetNav1(false);
    ExpectDrawn(1, {"NO SIGNAL"});
}

TEST_F(Nd, DataTextsFollowTheFlight) {
    FlyPlan();
    aircraft.headingMag = 359.8;
    derived.driftDeg = 5;
    derived.trueAirspeedEstimateKt = 310.2;
    aircraft.windSpeedKt = 34;
    derived.windDirectionMag = 270;
    test::PredictArrivalIn(6.2);
    guidance.desiredTrackMag = 7;
    nd.showTraffic = 1;
    Draw(5);
    ExpectShown(
        {"300", "310", "270/34", "360", "TRK 355", "DTK 007", "WP1", "7.0 NM", " 0:06", "TCAS"});
    planBook.activeIndex = kNoWaypoint;
    for (int mode = 1; mode <= 7; ++mode) {
        Draw(mode);
        ExpectShown({"NO FLIGHT PLAN"}, mode != 1 && mode != 3);
    }
    nd.ndShowStations = 1;
    ExpectDrawn(5, {"NO NAV DATA"});
}

// ---- layers shared with the EHSI ----
void ChooseRunway(double heading, int rightPattern) {
    PlanRunway runway;
    runway.heading = runway.field8 = heading;
    runway.rightPattern = rightPattern;
    planAirports.runways = {PlanRunway{}, runway};
    planAirports.selectedRunway = 1;
    planAirports.patternRunwayOffset = 0;
    planAirports.destinationElevationText = "433";
    settings.DispAppPtrnAlts = 1;
}

TEST_F(Nd, TheRunwayPatternLiesOnItsSideWithItsAltitudes) {
    aircraft.latitude = -5.0 / 60;
    ehsi.ehsiRange = 12.5;
    for (const int side : {-1, 1}) {
        ChooseRunway(360, side == 1 ? 1 : 0);
        DrawOnEhsi(2);  // 40 px for the range, the corners 5 nm to the side
        const double pxPerNm = 40 / 12.5;
        const test::DrawnText* corner = Picture::Find("1900");
        const test::DrawnText* const approach = Picture::Find("3400");
        ASSERT_TRUE(corner != nullptr && approach != nullptr);
        EXPECT_NEAR(corner->x, 129 + side * 5 * pxPerNm, 0.3);
        EXPECT_NEAR(corner->y, 114 - 8 * pxPerNm + 7, 0.3);
        EXPECT_NEAR(approach->x, 129, 0.3);
        EXPECT_NEAR(approach->y, 114 + 9 * pxPerNm + 7, 0.3);
        Draw(6);
        corner = Picture::Find("1900");
        ASSERT_NE(corner, nullptr);
        EXPECT_NEAR(corner->x, kCentred.x + side * 5 * 11, 0.3);
    }
    const auto expectLabels = [](int ehsiMode, double ehsiRange, int ndMode, int ndRange,
                                 bool shown) {
        ehsi.ehsiRange = ehsiRange;
        nd.ndRange = ndRange;
        DrawOnEhsi(ehsiMode);
        ExpectShown({"1900"}, shown);
        Draw(ndMode);
        ExpectShown({"1900"}, shown);
    };
    expectLabels(5, 12.5, 5, 10, true);
    expectLabels(6, 25, 5, 20, false);
    expectLabels(1, 12.5, 7, 10, false);
    settings.DispAppPtrnAlts = 0;
    expectLabels(5, 12.5, 5, 10, false);
    settings.DispAppPtrnAlts = 1;
    for (const std::int32_t offset : {kNoPatternRunway, 77}) {  // beyond the airport's runways
        planAirports.patternRunwayOffset = offset;
        expectLabels(5, 12.5, 5, 10, false);
    }
}

TEST_F(Nd, HoldsAreDrawnAsTheyAreFlown) {
    constexpr int kScale = 3;
    FlyPlan();
    HoldPattern& hold = holdList.holds[1];
    hold.fixIndex = 1;
    hold.inboundCourseMag = 360;
    hold.legByTime = 0;
    hold.legDistanceNm = 4;
    holdList.count = 1;
    nd.ndRange = 20;
    const double pxPerNm = 110.0 / 20;
    // the middle of the downwind side: 2 nm east of the fix, 1.2 nm south of it
    const auto shows = [&](int mode, int eastNm, std::uint32_t argb) {
        const CanvasPoint side{kCentred.x + eastNm * pxPerNm, kCentred.y - (7 - 1.2) * pxPerNm};
        return HasColourNear(*Draw(mode, kScale), kScale, side, argb);
    };
    EXPECT_TRUE(shows(6, 2, colour::White));
    EXPECT_FALSE(shows(7, 2, colour::White));
    hold.turnDirection = HoldTurn::Left;
    EXPECT_TRUE(shows(6, -2, colour::White));
    holdFlight.holdActive = holdFlight.holdTargetCorner = 1;
    EXPECT_TRUE(shows(6, -2, colour::Magenta));
    hold.fixIndex = 150;  // beyond the plan
    EXPECT_FALSE(shows(6, -2, colour::White));
}

TEST_F(Nd, ProfileMarkersShowWhileTheyLieAhead) {
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

// The path 200 ft below: half the scale.
TEST_F(Nd, ThePathIsShownInTheDescent) {
    FlyPlan();
    vnav.cruiseAltitude = 30000;
    vnav.topOfClimbReached = vnav.descentActive = 1;
    aircraft.altitudeFt = 5000;
    const struct {
        double pathFt;
        const char* text;
        double diamondPx;
    } rows[] = {{4796, "+200", 13}, {5004, "+0", 0}, {6000, "-1000", -26}};
    for (const auto& row : rows) {
        vnav.pathAltitude = row.pathFt;
        const auto picture = Draw(5, 2);
        EXPECT_TRUE(Picture::Shows(row.text)) << row.text;
        EXPECT_TRUE(HasColourNear(*picture, 2, {233, 221 + row.diamondPx}, colour::Magenta));
        DrawOnEhsi(2);
        EXPECT_TRUE(Picture::Shows(row.text));
    }
    nd.ndShowAdf = nd.showTraffic = 1;
    const auto shown = [](int mode, bool onEhsi) {
        onEhsi ? static_cast<void>(DrawOnEhsi(mode)) : static_cast<void>(Draw(mode));
        test::ExpectTextsApart(onEhsi ? kEhsiDesign : kDesign, false, std::to_string(mode));
        return Picture::Shows("-1000");
    };
    for (int mode = 1; mode <= 7; ++mode) {
        EXPECT_EQ(shown(mode, false), mode == 5 || mode == 6) << mode;
        EXPECT_EQ(shown(mode, true), mode == 2 || mode == 3 || mode == 5 || mode == 6) << mode;
    }
    aircraft.altitudeFt = kNan;
    for (const bool onEhsi : {false, true}) {
        onEhsi ? static_cast<void>(DrawOnEhsi(5)) : static_cast<void>(Draw(5));
        EXPECT_TRUE(Picture::Shows("VDEV"));
        test::ExpectTextsApart(onEhsi ? kEhsiDesign : kDesign, true, "VDEV");
    }
    vnav.descentActive = 0;
    Draw(5);
    EXPECT_FALSE(Picture::Shows("VDEV"));
}

TEST_F(Nd, NearbyListsAreMadeAnewOnlyFarAway) {
    AddPoints();
    AddPoint(navDatabase.navaids, PointKind::Vor, "EDGE", 189, 0);
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
    AddPoint(navDatabase.navaids, PointKind::Vor, "FAR", 40 * 60 + 5, 0);
    ExpectDrawn(5, {"FAR"}, {"VVV"});
}

// ---- the picture as a whole ----
TEST_F(Nd, NoTextStandsOverAnotherOrBesideTheScreen) {
    FlyPlan();
    Crowd();
    planBook.status = RouteStatus::Modified;
    modifiedPlan = activePlan;
    nd.showTraffic = 1;
    aircraft.nav1DmeNm = 188.8;
    aircraft.nav1Course = 180;
    aircraft.nav1RelativeBearing = 10;
    aircraft.windSpeedKt = 134;
    aircraft.groundSpeedKt = derived.trueAirspeedEstimateKt = 1204;
    guidance.distanceToGoNm = 4321.2;
    aircraft.headingMag = 77;
    for (int mode = 1; mode <= 7; ++mode) {
        for (const int range : {10, 40}) {
            nd.ndRange = range;
            Draw(mode);
            test::ExpectTextsApart(kDesign, false, "mode " + std::to_string(mode));
            // farther out they crowd around the aircraft
            EXPECT_GT(Picture::Texts().size(), mode < 5 ? 0u : range == 10 ? 40u : 30u) << mode;
        }
    }
}

TEST_F(Nd, ValuesThatAreNoNumbersNeverSpoilThePicture) {
    FlyPlan();
    Crowd();
    ChooseRunway(360, 0);
    for (const double latitude : {89.99, -89.99}) {
        aircraft.latitude = latitude;
        aircraft.longitude = -180;
        ExpectDrawn(6, {"WP1"});
    }
    ehsi.bearingPointer1 = BearingSource::Fms;
    ehsi.bearingPointer2 = BearingSource::Vor;
    for (const double bad : test::kNonsense) {
        aircraft.headingMag = aircraft.nav1Course = aircraft.nav1CdiNeedle = bad;
        aircraft.nav1RelativeBearing = aircraft.apHeadingBug = aircraft.windSpeedKt = bad;
        aircraft.groundSpeedKt = aircraft.nav1DmeNm = aircraft.magneticVariation = bad;
        aircraft.latitude = aircraft.longitude = aircraft.altitudeFt = aircraft.trueHeading = bad;
        aircraft.adfActive = aircraft.adfRelativeBearing = guidance.bearingToWaypointMag = bad;
        guidance.desiredTrackMag = guidance.crossTrackNm = guidance.distanceToGoNm = bad;
        derived.driftDeg = derived.windDirectionMag = derived.trueAirspeedEstimateKt = bad;
        for (int mode = 1; mode <= 8; ++mode) {
            const bool ehsiMap = mode % 3 != 1 && mode < 7;
            for (const bool onEhsi : {true, false}) {
                onEhsi ? DrawOnEhsi(mode) : static_cast<void>(Draw(std::min(mode, 7)));
                test::ExpectNoNonsenseTexts();
                if (!std::isfinite(bad)) {
                    ExpectShown({"NO MAP"}, onEhsi ? ehsiMap : mode >= 5);
                    ExpectShown({"HDG"});
                }
            }
        }
    }
}

}  // namespace
}  // namespace avq1
