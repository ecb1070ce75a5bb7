// The navigation display and the layers it shares with the EHSI's map, read back from their
// pictures and from the texts they draw.
#include "displays/nd.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/module_state.h"
#include "displays/ehsi.h"
#include "displays/nd_panel.h"
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
#include "support/fake_simulator.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::FakeSimulator;
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
class Nd : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetModuleState();
        simulator_ = &FakeSimulator::Install();
        avionicsPower = 1;
        settings = Settings{};
        navDatabase = NavDatabase{};
        atcBoundaries = AtcBoundaries{};
        atcBoundaries.loaded = true;
        aircraft.latitude = aircraft.longitude = 0;
        aircraft.groundSpeedKt = 300;
        aircraft.apHeadingBug = 180;
        SetNav1(true);
    }
    void TearDown() override {
        navDatabase = NavDatabase{};
        atcBoundaries = AtcBoundaries{};
    }

    void SetNav1(bool signal) {
        simulator_->variables[49] = simulator_->variables[852] = signal ? 1 : 0;
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

    static std::unique_ptr<Picture> Draw(int mode, int scale = 1,
                                         DisplayDrawMode drawMode = DisplayDrawMode::Normal) {
        nd.ndMode = mode;
        return test::DrawAt(DrawNd, kDesign, scale, drawMode);
    }

    static void FlyPlan() {
        test::SetActivePlan({{"WP0", -5.0 / 60, 0}, {"WP1", 7.0 / 60, 0}, {"WP2", 6.0 / 60, 0.05}});
        planBook.activeIndex = 1;
        guidance.distanceToGoNm = 7;
        ehsi.navSource = NavSource::FlightManagement;
    }

    FakeSimulator* simulator_ = nullptr;
};

// Records all around, closer than a map can show them.
void Crowd() {
    static std::vector<std::string> idents;
    idents.clear();
    for (int i = 0; i < 300; ++i) {
        idents.push_back("P" + std::to_string(i));
    }
    for (int i = 0; i < 300; ++i) {
        PointRecord record;
        record.ident = idents[static_cast<std::size_t>(i)];
        record.kind = i % 2 == 0 ? PointKind::Vor : PointKind::Navaid;
        record.latitude = std::fmod(i * 0.61803, 1.0) * 0.7 - 0.35;
        record.longitude = std::fmod(i * 0.75487, 1.0) * 0.7 - 0.35;
        navDatabase.navaids.Append(record);
        record.latitude += 0.01;
        navDatabase.airports.Append(record);
        record.longitude += 0.013;
        navDatabase.airwayFixes.Append(record);
    }
    nd.ndShowStations = nd.ndShowAirports = nd.ndShowWaypoints = nd.ndShowAdf = 1;
}

TEST_F(Nd, StaysTransparentWhenCoveredOrWithoutPower) {
    for (nd.ndMode = 1; nd.ndMode <= 7; ++nd.ndMode) {
        test::ExpectDrawsOnlyWhenAsked(DrawNd);
    }
}

TEST_F(Nd, LayersShowInTheirModesRangesAndDrawModes) {
    AddPoints();
    atcBoundaries.items = {{"X1", "BDY", {4.0 / 60, 0}, {{0.1, 0}, {0.1, 0.1}, {0, 0.1}}}};
    for (int mode = 1; mode <= 7; ++mode) {
        for (const int range : {10, 40, 80}) {
            for (const bool on : {false, true}) {
                for (const bool second : {false, true}) {
                    nd.ndShowStations = nd.ndShowAirports = nd.ndShowWaypoints = on;
                    ehsi.mapOverlayOn = on;
                    nd.ndRange = range;
                    Draw(mode, 1,
                         second ? DisplayDrawMode::SecondCockpit : DisplayDrawMode::Normal);
                    const bool map = mode >= 5 && on;
                    const std::string where = "mode " + std::to_string(mode) + " range " +
                                              std::to_string(range) + (second ? " second" : "");
                    if (range == 10) {  // farther out they crowd each other
                        EXPECT_EQ(Picture::Shows("VVV"), map) << where;
                        EXPECT_EQ(Picture::Shows("NN"), map) << where;
                        EXPECT_EQ(Picture::Shows("KAPT"), map) << where;
                    }
                    EXPECT_EQ(Picture::Shows(range == 10 ? "FIXXX" : "FARFX"),
                              map && range <= 40 && !second)
                        << where;
                    EXPECT_EQ(Picture::Shows("BDY"), map && mode != 7 && !second) << where;
                }
            }
        }
    }
}

TEST_F(Nd, SymbolsStandWhereTheRecordsAre) {
    constexpr int kScale = 3;
    AddPoints();
    nd.ndShowStations = 1;
    nd.ndShowAirports = 1;
    struct Case {
        int mode;
        CanvasPoint centre;
        double radius;
    };
    for (const Case& each : {Case{5, kArc, 215}, Case{6, kCentred, 110}, Case{7, kCentred, 110}}) {
        const auto picture = Draw(each.mode, kScale);
        const double pxPerNm = each.radius / nd.ndRange;
        const CanvasPoint airport{each.centre.x + 2 * pxPerNm, each.centre.y - 6 * pxPerNm};
        EXPECT_TRUE(HasColourNear(*picture, kScale, {airport.x - 4, airport.y}, colour::Cyan));
        EXPECT_TRUE(HasColourNear(*picture, kScale, {airport.x + 4, airport.y}, colour::Cyan));
        const CanvasPoint vor{each.centre.x - 3 * pxPerNm, each.centre.y - 3 * pxPerNm};
        EXPECT_TRUE(HasColourNear(*picture, kScale, {vor.x + 5, vor.y}, colour::Cyan));
        EXPECT_FALSE(HasColourNear(*picture, kScale, vor, colour::Cyan));
        const CanvasPoint ndb{each.centre.x - 2 * pxPerNm, each.centre.y - 5 * pxPerNm};
        EXPECT_TRUE(HasColourNear(*picture, kScale, ndb, colour::Blue));
    }
    // heading up, but in mode 7 north is
    aircraft.headingMag = 90;
    const double pxPerNm = 110.0 / nd.ndRange;
    const CanvasPoint headingUp{kCentred.x - 6 * pxPerNm, kCentred.y - 2 * pxPerNm};
    const CanvasPoint northUp{kCentred.x + 2 * pxPerNm, kCentred.y - 6 * pxPerNm};
    const CanvasPoint edge{4, 0};
    for (const int mode : {6, 7}) {
        const auto picture = Draw(mode, kScale);
        EXPECT_EQ(
            HasColourNear(*picture, kScale, {headingUp.x + edge.x, headingUp.y}, colour::Cyan),
            mode == 6);
        EXPECT_EQ(HasColourNear(*picture, kScale, {northUp.x + edge.x, northUp.y}, colour::Cyan),
                  mode == 7);
    }
}

TEST_F(Nd, PlanModeIsCentredOnTheChosenWaypoint) {
    FlyPlan();
    nd.ndCentreIndex = 1;
    Draw(7);
    const test::DrawnText* ident = nullptr;
    for (const test::DrawnText& text : Picture::Texts()) {
        if (text.text == "WP1" && text.y > 50) {
            ident = &text;
        }
    }
    ASSERT_NE(ident, nullptr);
    EXPECT_NEAR(ident->x, kCentred.x, 10);
    EXPECT_NEAR(ident->y, kCentred.y, 15);
    // records are seen around it, also far from the aircraft
    activePlan.entries[1].latitude = 300.0 / 60;
    AddPoint(navDatabase.navaids, PointKind::Vor, "FAR", 303, -3);
    nd.ndShowStations = 1;
    Draw(7);
    EXPECT_TRUE(Picture::Shows("FAR"));
    nd.ndCentreIndex = 99;  // gone from the plan: the aircraft again
    const auto picture = Draw(7, 2);
    EXPECT_TRUE(HasColourNear(*picture, 2, {kCentred.x, kCentred.y + 17}, colour::White));
}

TEST_F(Nd, OpenPlacesOfAPendingRouteAreNamed) {
    FlyPlan();
    modifiedPlan = activePlan;
    modifiedPlan.entries[0].latitude = 3.0 / 60;
    modifiedPlan.entries[1] = Discontinuity();
    modifiedPlan.entries[3].ident = kAirwayPlaceholder;
    modifiedPlan.lastIndex = 3;
    Crowd();  // whose identifiers leave these their places
    for (const RouteStatus status :
         {RouteStatus::None, RouteStatus::BeingBuilt, RouteStatus::AwaitsExecution,
          RouteStatus::Active, RouteStatus::Modified}) {
        planBook.status = status;
        const bool pending = status != RouteStatus::None && status != RouteStatus::Active;
        for (int mode = 1; mode <= 7; ++mode) {
            Draw(mode);
            EXPECT_EQ(Picture::Shows("DISCO"), pending && mode >= 5) << mode;
            EXPECT_EQ(Picture::Shows("THEN"), pending && mode >= 5) << mode;
        }
    }
}

TEST_F(Nd, TheAltitudeArcLiesWhereTheAltitudeIsReached) {
    constexpr int kScale = 2;
    const auto descend = [] {
        aircraft.autopilotOn = aircraft.apAltitudeLockOn = 1;
        aircraft.altitudeFt = 5000;
        aircraft.apAltitudeTargetFt = 4000;
        aircraft.verticalSpeedFpm = -1000;  // one minute, 5 nm
    };
    const auto shown = [](int mode) {
        const CanvasPoint centre = mode == 5 ? kArc : kCentred;
        const double radius = mode == 5 ? 107.5 : 55;
        const auto picture = Draw(mode, kScale);
        // off the track line and the range mark's dashes
        int green = 0;
        for (double angle = -12; angle <= 12; angle += 1) {
            green += HasColourNear(*picture, kScale,
                                   {centre.x + radius * std::sin(angle * kDegToRad),
                                    centre.y - radius * std::cos(angle * kDegToRad)},
                                   colour::Green);
        }
        return green > 20;
    };
    for (const int mode : {5, 6, 7}) {
        descend();
        EXPECT_EQ(shown(mode), mode != 7) << mode;
    }
    const std::function<void()> spoilers[] = {
        [] { aircraft.autopilotOn = 0; },           [] { aircraft.apAltitudeLockOn = 0; },
        [] { aircraft.apAltitudeTargetFt = 5000; }, [] { aircraft.verticalSpeedFpm = -200; },
        [] { aircraft.verticalSpeedFpm = -500; },  // 10 nm: elsewhere
        [] { aircraft.groundSpeedKt = kNan; },
    };
    for (const auto& spoil : spoilers) {
        aircraft.groundSpeedKt = 300;
        descend();
        spoil();
        EXPECT_FALSE(shown(5));
    }
}

TEST_F(Nd, TheAdfNeedlePointsAtItsBearing) {
    constexpr int kScale = 3;
    nd.ndShowAdf = 1;
    for (const double bearing : {-50.0, 20.0, 135.0, 400.0}) {
        aircraft.adfActive = 1;
        aircraft.adfRelativeBearing = bearing;
        // near its tip the head outweighs the tail, which is opposite
        const double measured =
            MeanDirection(*Draw(2, kScale), kFull, 93, 99, kScale, colour::Blue);
        EXPECT_NEAR(PositiveModulo(measured - bearing + 180, 360), 180, 1.5) << bearing;
    }
    aircraft.adfActive = 0;
    EXPECT_TRUE(std::isnan(MeanDirection(*Draw(2, kScale), kFull, 60, 99, kScale, colour::Blue)));
    aircraft.adfActive = 1;
    EXPECT_TRUE(std::isnan(MeanDirection(*Draw(1, kScale), kFull, 60, 99, kScale, colour::Blue)));
    EXPECT_TRUE(Picture::Shows("ADF 1"));
    nd.ndShowAdf = 0;
    EXPECT_TRUE(std::isnan(MeanDirection(*Draw(2, kScale), kFull, 60, 99, kScale, colour::Blue)));
    EXPECT_FALSE(Picture::Shows("ADF 1"));
}

TEST_F(Nd, TheReceiverIsNamedWithFrequencyDistanceAndSense) {
    AddPoints();
    aircraft.nav1DmeNm = std::hypot(3, 3);  // VVV, at 315 degrees
    aircraft.nav1RelativeBearing = 315;
    aircraft.nav1Course = 300;
    for (int mode = 1; mode <= 7; ++mode) {
        Draw(mode);
        EXPECT_TRUE(Picture::Shows("VOR 1")) << mode;
        EXPECT_TRUE(Picture::Shows("113.40")) << mode;
        EXPECT_TRUE(Picture::Shows("4.2")) << mode;
        EXPECT_FALSE(Picture::Shows("FROM")) << mode;
        // the tuned station is drawn on the map, with its name
        EXPECT_EQ(Picture::Shows("VVV"), mode == 5 || mode == 6) << mode;
    }
    aircraft.nav1Course = 120;
    nd.ndShowStations = 1;
    Draw(5);
    EXPECT_TRUE(Picture::Shows("FROM"));
    EXPECT_EQ(test::CountTexts("VVV"), 1);  // once only, though the stations show
    EXPECT_TRUE(Picture::Shows("NN"));
    nd.ndShowStations = 0;
    simulator_->variables[46] = 0x80;
    Draw(5);
    EXPECT_TRUE(Picture::Shows("ILS 1"));
    EXPECT_FALSE(Picture::Shows("FROM"));
    EXPECT_FALSE(Picture::Shows("VVV"));
    simulator_->variables[46] = 0;
    aircraft.nav1RelativeBearing = 300;  // no station there
    Draw(5);
    EXPECT_FALSE(Picture::Shows("113.40"));
    EXPECT_FALSE(Picture::Shows("VVV"));
    aircraft.nav1DmeNm = 0;
    Draw(5);
    EXPECT_TRUE(Picture::Shows("- - -"));
    SetNav1(false);
    Draw(1);
    EXPECT_TRUE(Picture::Shows("NO SIGNAL"));
}

TEST_F(Nd, DataTextsFollowTheFlight) {
    FlyPlan();
    aircraft.headingMag = 359.8;
    derived.driftDeg = 5;
    derived.trueAirspeedEstimateKt = 310.2;
    aircraft.windSpeedKt = 34;
    derived.windDirectionMag = 270;
    progress.eteWaypointMinutes = 61.2;
    guidance.desiredTrackMag = 7;
    nd.showTraffic = 1;
    Draw(5);
    for (const char* text :
         {"300", "310", "270/34", "360", "TRK 355", "DTK 007", "WP1", "7.0 NM", " 1:01", "TCAS"}) {
        EXPECT_TRUE(Picture::Shows(text)) << text;
    }
    planBook.activeIndex = kNoWaypoint;
    for (int mode = 1; mode <= 7; ++mode) {
        Draw(mode);
        EXPECT_EQ(Picture::Shows("NO FLIGHT PLAN"), mode != 1 && mode != 3) << mode;
    }
    nd.ndShowStations = 1;
    Draw(5);
    EXPECT_TRUE(Picture::Shows("NO NAV DATA"));
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
    constexpr double kCornerNm = 5;
    aircraft.latitude = -5.0 / 60;
    for (const int right : {0, 1}) {
        ChooseRunway(360, right);
        // on the EHSI, with 40 px for the range
        ehsi.ehsiMode = 2;
        ehsi.ehsiRange = 12.5;
        test::DrawAt(DrawEhsi, kEhsiDesign);
        const test::DrawnText* corner = Picture::Find("1900");
        ASSERT_NE(corner, nullptr);
        const double pxPerNm = 40 / 12.5;
        EXPECT_NEAR(corner->x, 129 + (right == 1 ? 1 : -1) * kCornerNm * pxPerNm, 0.3);
        EXPECT_NEAR(corner->y, 114 - 8 * pxPerNm + 7, 0.3);
        const test::DrawnText* approach = Picture::Find("3400");
        ASSERT_NE(approach, nullptr);
        EXPECT_NEAR(approach->x, 129, 0.3);
        EXPECT_NEAR(approach->y, 114 + 9 * pxPerNm + 7, 0.3);
        // and on the navigation display
        nd.ndRange = 10;
        Draw(6);
        corner = Picture::Find("1900");
        ASSERT_NE(corner, nullptr);
        EXPECT_NEAR(corner->x, kCentred.x + (right == 1 ? 1 : -1) * kCornerNm * 11, 0.3);
    }
    const auto labels = [](int ehsiMode, double ehsiRange, int ndMode, int ndRange) {
        Picture picture(266, 230);
        ehsi.ehsiMode = ehsiMode;
        ehsi.ehsiRange = ehsiRange;
        DrawEhsi(picture.Target());
        const bool onEhsi = Picture::Shows("1900");
        nd.ndRange = ndRange;
        Draw(ndMode);
        return std::pair(onEhsi, Picture::Shows("1900"));
    };
    using Both = std::pair<bool, bool>;
    EXPECT_EQ(labels(5, 12.5, 5, 10), Both(true, true));
    EXPECT_EQ(labels(6, 25, 5, 20), Both(false, false));
    EXPECT_EQ(labels(1, 12.5, 7, 10), Both(false, false));
    settings.DispAppPtrnAlts = 0;
    EXPECT_EQ(labels(5, 12.5, 5, 10), Both(false, false));
    settings.DispAppPtrnAlts = 1;
    planAirports.patternRunwayOffset = kNoPatternRunway;
    EXPECT_EQ(labels(5, 12.5, 5, 10), Both(false, false));
    planAirports.patternRunwayOffset = 77;  // beyond the airport's runways
    EXPECT_EQ(labels(5, 12.5, 5, 10), Both(false, false));
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
    const CanvasPoint east{kCentred.x + 2 * pxPerNm, kCentred.y - (7 - 1.2) * pxPerNm};
    const CanvasPoint west{kCentred.x - 2 * pxPerNm, east.y};
    EXPECT_TRUE(HasColourNear(*Draw(6, kScale), kScale, east, colour::White));
    EXPECT_FALSE(HasColourNear(*Draw(7, kScale), kScale, east, colour::White));
    hold.turnDirection = 2;
    EXPECT_TRUE(HasColourNear(*Draw(6, kScale), kScale, west, colour::White));
    holdList.holdActive = holdList.holdTargetCorner = 1;
    EXPECT_TRUE(HasColourNear(*Draw(6, kScale), kScale, west, colour::Magenta));
    hold.fixIndex = 150;  // beyond the plan
    EXPECT_FALSE(HasColourNear(*Draw(6, kScale), kScale, west, colour::White));
}

TEST_F(Nd, ProfileMarkersShowWhileTheyLieAhead) {
    FlyPlan();
    vnav.tocLatitude = 3.0 / 60;
    vnav.todLatitude = 6.0 / 60;
    const auto shown = [] {
        Picture picture(266, 230);
        ehsi.ehsiMode = 2;
        DrawEhsi(picture.Target());
        return std::pair(Picture::Shows("T/C"), Picture::Shows("T/D"));
    };
    using Both = std::pair<bool, bool>;
    progress.routeDistanceToDestination = 8;
    EXPECT_EQ(shown(), Both(false, false));
    progress.routeDistanceToDestination = 8.1;
    EXPECT_EQ(shown(), Both(true, true));
    vnav.topOfClimbReached = 1;
    EXPECT_EQ(shown(), Both(false, true));
    vnav.todLatitude = 0;  // not known
    EXPECT_EQ(shown(), Both(false, false));
    vnav.todLatitude = 6.0 / 60;
    settings.ShowTodBodIndicators = 0;
    EXPECT_EQ(shown(), Both(false, false));
    settings.ShowTodBodIndicators = 1;
    // off the map only when the aircraft file asks, at the map's edge
    vnav.todLatitude = 5;
    EXPECT_EQ(shown(), Both(false, false));
    performance.showFloatingTodBod = 1;
    EXPECT_EQ(shown(), Both(false, true));
    EXPECT_NEAR(Picture::Find("T/D")->y, 114 - 90 - 5, 1);
    ehsi.navSource = NavSource::NavReceiver;
    EXPECT_EQ(shown(), Both(false, false));
}

TEST_F(Nd, NearbyListsAreMadeAnewOnlyFarAway) {
    AddPoints();
    nd.ndShowStations = 1;
    Draw(5);
    EXPECT_EQ(nearby.navaids600.points.count, 2);
    EXPECT_EQ(nearby.airports600.points.count, 0);  // not shown: not built
    const LatLon before = nearby.navaids600.reference;
    aircraft.latitude = 59.0 / 60;
    Draw(5);
    EXPECT_EQ(nearby.navaids600.reference.latitude, before.latitude);
    aircraft.latitude = 61.0 / 60;
    Draw(5);
    EXPECT_NEAR(nearby.navaids600.reference.latitude, 61.0 / 60, 1e-12);
    // a jump across the world shows what is there
    aircraft.latitude = 40;
    AddPoint(navDatabase.navaids, PointKind::Vor, "FAR", 40 * 60 + 5, 0);
    Draw(5);
    EXPECT_TRUE(Picture::Shows("FAR"));
    EXPECT_FALSE(Picture::Shows("VVV"));
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
    for (const double heading : {0.0, 77.0}) {
        for (int mode = 1; mode <= 7; ++mode) {
            for (const int range : {10, 40}) {
                aircraft.headingMag = heading;
                nd.ndRange = range;
                Draw(mode);
                test::ExpectTextsApart(kDesign, false, "mode " + std::to_string(mode));
                if (mode >= 5) {
                    // farther out they crowd around the aircraft
                    EXPECT_GT(Picture::Texts().size(), range == 10 ? 40u : 30u) << mode;
                }
            }
        }
    }
}

TEST_F(Nd, ALargerSurfaceShowsTheSameTextsInTheSamePlaces) {
    FlyPlan();
    Crowd();
    for (nd.ndMode = 1; nd.ndMode <= 7; ++nd.ndMode) {
        test::ExpectSharpAtTwice(DrawNd, kDesign, "mode " + std::to_string(nd.ndMode));
    }
}

TEST_F(Nd, ValuesThatAreNoNumbersNeverSpoilThePicture) {
    FlyPlan();
    Crowd();
    ChooseRunway(360, 0);
    const AircraftState good = aircraft;
    for (const double bad : test::kNonsense) {
        for (int mode = 1; mode <= 7; ++mode) {
            aircraft.headingMag = aircraft.nav1Course = aircraft.nav1CdiNeedle = bad;
            aircraft.nav1RelativeBearing = aircraft.apHeadingBug = aircraft.windSpeedKt = bad;
            aircraft.groundSpeedKt = aircraft.nav1DmeNm = aircraft.magneticVariation = bad;
            aircraft.latitude = aircraft.longitude = aircraft.altitudeFt = bad;
            aircraft.adfActive = aircraft.adfRelativeBearing = bad;
            guidance.desiredTrackMag = guidance.crossTrackNm = guidance.distanceToGoNm = bad;
            derived.driftDeg = derived.windDirectionMag = derived.trueAirspeedEstimateKt = bad;
            Draw(mode);
            test::ExpectNoNonsenseTexts();
            if (!std::isfinite(bad)) {
                EXPECT_EQ(Picture::Shows("NO MAP"), mode >= 5) << mode;
                EXPECT_TRUE(Picture::Shows("HDG"));
            }
        }
    }
    for (const double latitude : {89.99, -89.99, 0.0}) {
        for (const double longitude : {179.99, -180.0}) {
            aircraft = good;
            aircraft.latitude = latitude;
            aircraft.longitude = longitude;
            Draw(6);
            EXPECT_TRUE(Picture::Shows("WP1"));
        }
    }
}

TEST_F(Nd, RecordsAcrossTheDateLineAreNear) {
    AddPoint(navDatabase.airports, PointKind::Airport, "ACROSS", 0, -179.96 * 60);
    AddPoint(navDatabase.navaids, PointKind::Vor, "WEST", 0, 179.96 * 60);
    nd.ndShowAirports = nd.ndShowStations = 1;
    for (const double longitude : {179.98, -179.98, 180.0, -180.0}) {
        aircraft.longitude = longitude;
        for (const int mode : {6, 7}) {
            Draw(mode);
            const test::DrawnText* const east = Picture::Find("ACROSS");
            const test::DrawnText* const west = Picture::Find("WEST");
            ASSERT_TRUE(east != nullptr && west != nullptr) << longitude;
            EXPECT_GT(east->x, kCentred.x);
            EXPECT_LT(west->x, kCentred.x);
        }
    }
}

}  // namespace
}  // namespace avq1
