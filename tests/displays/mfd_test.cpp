#include "displays/mfd/mfd.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <span>
#include <string>
#include <type_traits>
#include <utility>

#include "displays/ehsi/ehsi.h"
#include "displays/nd/nd_panel.h"
#include "drawing/palette.h"
#include "flightplan/flight_plan.h"
#include "flightplan/plan_airports.h"
#include "guidance/guidance_state.h"
#include "navdb/nav_database.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/fake_traffic.h"
#include "support/nav_points.h"
#include "support/press_key.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::Half;
using test::HasColourNear;
using test::kNan;
using test::Picture;
using test::PressKey;

constexpr CanvasSize kDesign{272, 314};
constexpr CanvasPoint kCentre{134, 148};

class Mfd : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        aircraft.latitude = aircraft.longitude = 0;
        aircraft.groundSpeedKt = 240;
        guidance.blinkCounter = 30;
    }

    static void Key(std::string_view label, Half half = Half::Left) {
        PressKey(kMfdKeys, label, half);
    }
    static void PanelKey(std::string_view label, Half half = Half::Left) {
        PressKey(kMfdPanelKeys, label, half);
    }
    static void WithPanel() {
        DrawMfdPanel();
        guidance.blinkCounter = 30;
    }
    static std::unique_ptr<Picture> Draw(int scale = 1) {
        return test::DrawAt(DrawMfd, kDesign, scale);
    }
};

TEST_F(Mfd, SoftKeysSwitchLayersWithoutTheControlPanel) {
    const std::pair<const char*, std::int32_t*> keys[] = {{"1", &mfd.mfdLayerA},
                                                          {"2", &mfd.mfdLayerB},
                                                          {"3", &mfd.mfdLayerC},
                                                          {"4", &nd.showTraffic},
                                                          {"5", &ehsi.mapOverlayOn}};
    for (const auto& [key, layer] : keys) {
        for (const std::int32_t on : {1, 0, 1}) {
            guidance.blinkCounter = 30;
            Key(key);
            EXPECT_EQ(*layer, on) << key;
            EXPECT_EQ(guidance.blinkCounter, kRestartBlink) << key;
        }
    }
    Draw();
    ExpectShown({"APT", "NAV", "---", "TCAS", "ATC", "BDRY"});
    ExpectShown({"VNAV", "SET"}, false);
    guidance.blinkCounter = 30;
    Key("SET", Half::Right);
    EXPECT_EQ(guidance.blinkCounter, 30);
}

TEST_F(Mfd, PanelButtonsSwitchLayers) {
    WithPanel();
    const std::pair<const char*, std::int32_t*> keys[] = {{"APT", &mfd.mfdLayerA},
                                                          {"NAV", &mfd.mfdLayerB},
                                                          {"TCAS", &nd.showTraffic},
                                                          {"MAP", &mfd.mfdMapModeOn}};
    for (const auto& [key, flag] : keys) {
        for (const std::int32_t on : {1, 0, 1}) {
            guidance.blinkCounter = 30;
            PanelKey(key);
            EXPECT_EQ(*flag, on) << key;
            EXPECT_EQ(guidance.blinkCounter, kRestartBlink) << key;
        }
    }
    mfd.mfdMapModeOn = 0;
    guidance.blinkCounter = 30;
    Draw();
    ExpectShown({"APT", "NAV", "TCAS", "TCAS OFF"});  // what is on, in the corner
    ExpectShown({"BDRY", "---"}, false);
}

// From a start, the ranges that steps in one direction give.
struct RangeWalk {
    bool traffic;
    double start;
    Half half;
    std::initializer_list<double> ranges;
};

const RangeWalk kRangeWalks[] = {
    {false, 0.5, Half::Right, {1, 2.5, 5, 12.5, 25, 40, 80, 160, 0.5}},
    {false, 160, Half::Left, {80, 40, 25, 12.5, 5, 2.5, 1, 0.5, 160}},
    {false, 7, Half::Right, {0.5}},
    {false, 7, Half::Left, {160}},
    {true, 5, Half::Right, {12.5, 25, 40, 5}},
    {true, 40, Half::Left, {25, 12.5, 5, 40}},
    {true, 7, Half::Right, {5}},
    {true, 7, Half::Left, {40}},
};

TEST_F(Mfd, RangesWalkTheirListsAndWrap) {
    EXPECT_EQ(mfd.mfdMapRange, 12.5);
    EXPECT_EQ(mfd.mfdTrafficRange, 5);
    for (const bool panel : {false, true}) {
        mfd.mfdPanelPresent = panel ? 1 : 0;
        for (const RangeWalk& walk : kRangeWalks) {
            nd.showTraffic = walk.traffic ? 1 : 0;
            double& range = walk.traffic ? mfd.mfdTrafficRange : mfd.mfdMapRange;
            range = walk.start;
            for (const double expected : walk.ranges) {
                guidance.blinkCounter = 30;
                if (panel) {
                    PanelKey("RNG", walk.half);
                } else {
                    Key("RNG", walk.half);
                }
                EXPECT_EQ(range, expected);
                EXPECT_EQ(MfdRangeInUse(), expected);
                EXPECT_EQ(guidance.blinkCounter, kRestartBlink);
            }
        }
    }
    mfd.mfdTrafficRange = 5;
    guidance.blinkCounter = 30;
    Key("RNG", Half::Right);  // the display's own knob rests while there is a panel
    EXPECT_EQ(mfd.mfdTrafficRange, 5);
    EXPECT_EQ(guidance.blinkCounter, 30);
}

TEST_F(Mfd, TheMenuSelectsWhatTheKnobSets) {
    WithPanel();
    struct State {
        std::int32_t level, a, b, c;
    };
    const struct {
        const char* key;
        State after;
    } steps[] = {{"1", {1, 0, 0, 0}}, {"2", {2, 0, 0, 0}}, {"2", {2, 1, 0, 0}}, {"2", {2, 2, 0, 0}},
                 {"2", {2, 1, 0, 0}}, {"3", {2, 0, 1, 0}}, {"4", {2, 0, 0, 1}}, {"2", {2, 1, 0, 0}},
                 {"3", {2, 0, 1, 0}}, {"2", {2, 1, 0, 0}}, {"1", {1, 0, 0, 0}}, {"2", {2, 0, 0, 0}},
                 {"4", {2, 0, 0, 1}}, {"1", {1, 0, 0, 1}}, {"5", {1, 0, 0, 1}}};
    for (const auto& [key, after] : steps) {
        guidance.blinkCounter = 30;
        Key(key);
        EXPECT_EQ(mfd.mfdMenuLevel, after.level) << key;
        EXPECT_EQ(mfd.mfdSelA, after.a) << key;
        EXPECT_EQ(mfd.mfdSelB, after.b) << key;
        EXPECT_EQ(mfd.mfdSelC, after.c) << key;
        EXPECT_EQ(guidance.blinkCounter == kRestartBlink, std::string(key) != "5") << key;
    }
    EXPECT_EQ(ehsi.mapOverlayOn + nd.showTraffic + mfd.mfdLayerA + mfd.mfdLayerC, 0);
}

TEST_F(Mfd, TheKnobSetsDistanceAltitudeAndPathAngle) {
    WithPanel();
    Key("SET", Half::Right);
    EXPECT_EQ(guidance.blinkCounter, 30) << "nothing to set at the top level";
    Key("2");
    Key("SET", Half::Right);
    EXPECT_EQ(mfd.mfdValueA + mfd.mfdValueB, 0) << "nothing is selected";
    const auto turn = [](double& value, Half half, std::initializer_list<double> values) {
        for (const double expected : values) {
            Key("SET", half);
            EXPECT_NEAR(value, expected, 1e-12);
        }
    };
    for (int choice = 0; choice < 2; ++choice) {
        Key("2");
        turn(mfd.mfdValueA, Half::Right, {1, 2});
        turn(mfd.mfdValueA, Half::Left, {1, 0, 0});
    }
    mfd.mfdValueA = 10;
    Key("3");
    turn(mfd.mfdValueB, Half::Right, {100, 200});
    turn(mfd.mfdValueB, Half::Left, {100, 0, 0});
    mfd.mfdValueB = 99;
    turn(mfd.mfdValueB, Half::Left, {99});
    EXPECT_EQ(mfd.mfdValueA, 10);
    Key("4");
    EXPECT_EQ(mfd.mfdValueA, 0);
    EXPECT_EQ(mfd.mfdValueB, 0);
    mfd.mfdValueA = mfd.mfdValueB = 5;
    performance.flightPathAngleDeg = 2.9;
    turn(performance.flightPathAngleDeg, Half::Right, {3.0, 3.1});
    EXPECT_EQ(mfd.mfdValueA + mfd.mfdValueB, 0);
    performance.flightPathAngleDeg = 5.9;
    turn(performance.flightPathAngleDeg, Half::Right, {6, 6});
    performance.flightPathAngleDeg = 0.1;
    turn(performance.flightPathAngleDeg, Half::Left, {0, 0});
}

TEST_F(Mfd, RequiredVerticalSpeedComesFromTheValuesOrTheAngle) {
    WithPanel();
    performance.descentIas = 240;  // 294 kt true, 4.9 nm a minute
    const struct {
        double distance, altitude, aircraft, angle;
        std::int32_t selC;
        double required;
        const char* shown;
    } cases[] = {{20, 5000, 15000, 3, 0, -10000 / (20 / 4.9), "2450 DN"},
                 {49, 8000, 5000, 3, 0, 300, " 300 UP"},
                 {0, 5000, 15000, 3, 0, 1470, "1470 DN"},
                 {20, 0, 15000, 3, 0, 1470, "1470 DN"},
                 {20, 5000, 15000, 3, 1, 1470, "1470 DN"},
                 {0, 0, 15000, 0, 0, 0, "   0 DN"},
                 {20, 5000, kNan, 3, 0, kNan, "---- --"}};
    mfd.mfdMenuLevel = kMfdSettingLevel;
    for (const auto& c : cases) {
        mfd.mfdValueA = c.distance;
        mfd.mfdValueB = c.altitude;
        mfd.mfdSelC = c.selC;
        aircraft.altitudeFt = c.aircraft;
        performance.flightPathAngleDeg = c.angle;
        Draw();
        if (std::isfinite(c.required)) {
            EXPECT_NEAR(mfd.mfdRequiredVs, c.required, 1e-9) << c.shown;
        }
        EXPECT_TRUE(Picture::Shows(c.shown)) << c.shown;
    }
    aircraft.altitudeFt = 15000;
    mfd.mfdSelC = 0;
    mfd.mfdSelA = 1;
    mfd.mfdValueA = 19;
    mfd.mfdValueB = 5000;
    Key("SET", Half::Right);  // after a step at once
    EXPECT_NEAR(mfd.mfdRequiredVs, -2450, 1e-9);
    performance.descentIas = 0;
    EXPECT_EQ(MfdRequiredVerticalSpeed(), 0);
    Draw();
    ExpectShown({"---- --"});
}

TEST_F(Mfd, ThePathPageComparesRequiredAndActual) {
    WithPanel();
    performance.descentIas = 240;
    performance.flightPathAngleDeg = 3;
    Key("2");
    guidance.blinkCounter = 30;
    for (const auto& [actual, argb] : {std::pair{-1300.0, colour::Green},
                                       {-1200.0, colour::Amber},
                                       {-1700.0, colour::Amber},
                                       {1470.0, colour::Amber}}) {
        aircraft.verticalSpeedFpm = actual;
        Draw();
        const char* const text = actual > 0        ? "1470 UP"
                                 : actual == -1300 ? "1300 DN"
                                 : actual == -1200 ? "1200 DN"
                                                   : "1700 DN";
        ASSERT_NE(Picture::Find(text), nullptr) << actual;
        EXPECT_EQ(Picture::Find(text)->argb, argb) << actual;
    }
    ExpectShown({"VNAV", "SET", "ST EL", "VANG", "DIST", "3.0 DEG", "MAP", "VS REQ", "1470 DN"});
    ExpectShown({"SPEEDS", "T/O", "LNDG"}, false);
}

TEST_F(Mfd, SpeedPagesShowTheAircraftsSpeedsAndTheKnobChangesThem) {
    WithPanel();
    performance.v1 = 130;
    performance.vref = 0;
    performance.approachFlapsMid = "20";
    Draw();
    ExpectShown({"VNAV", "T/O", "LNDG", "SPEEDS"});
    ExpectShown({"MAP", "V1", "VREF"}, false);
    Key("3");
    guidance.blinkCounter = 30;
    Draw();
    ExpectShown({"T/O SPEEDS", "V1", "VR", "V2", "130 KT", "--- KT", "MAP"});
    EXPECT_EQ(Picture::Find("130 KT")->argb, colour::Black);  // chosen
    Key("SET", Half::Right);
    EXPECT_EQ(performance.v1, 131);
    Key("3");
    const struct {
        std::int32_t before;
        Half half;
        std::int32_t after;
    } turns[] = {{0, Half::Left, 100},    {100, Half::Left, 99}, {60, Half::Left, 60},
                 {250, Half::Right, 250}, {50, Half::Left, 50},  // a light aircraft's
                 {50, Half::Right, 51}};
    for (const auto& [before, half, after] : turns) {
        performance.vr = before;
        Key("SET", half);
        EXPECT_EQ(performance.vr, after) << before;
    }
    Key("4");
    guidance.blinkCounter = 30;
    Draw();
    ExpectShown({"LNDG SPEEDS", "VREF", "FLAPS 20", "145 KT"});
    Key("4");
    Key("4");
    Key("SET", Half::Right);
    EXPECT_EQ(performance.vrefMid, 146);
    for (int i = 0; i < 2; ++i) {
        Key("4");
    }
    EXPECT_EQ(mfd.speedRow, 0);
    Key("1");
    EXPECT_EQ(mfd.page, MfdPage::Map);
    EXPECT_EQ(mfd.mfdMenuLevel, 1);
    EXPECT_EQ(mfd.mfdSelB + mfd.mfdSelC, 0);
    Key("3");
    Key("2");  // the vertical path in place of the speeds
    guidance.blinkCounter = 30;
    Draw();
    ExpectShown({"VS REQ"});
    ExpectShown({"V1"}, false);
}

TEST_F(Mfd, IsBlankForTwoFramesOfTheRefreshCycle) {
    for (const std::int32_t counter : {0, 1, 2, 91, kRestartBlink}) {
        guidance.blinkCounter = counter;
        EXPECT_EQ(Draw()->IsClear(), counter < 2) << counter;
        EXPECT_EQ(MfdKeepsPicture(), counter < 2) << counter;
    }
    guidance.blinkCounter = 0;
    avionicsPower = 0;
    EXPECT_FALSE(MfdKeepsPicture());
}

// Up to which ranges airports and stations show, with traffic at the traffic range.
TEST_F(Mfd, LayersStandAtTheRangeInUse) {
    test::FakeTraffic source;
    source.Tell({{0, 4, 5, 0, 1}});
    test::AddPoint(navDatabase.airports, "KAPT", 0, 7.0 / 60);
    test::AddPoint(navDatabase.navaids, "VVV", 0, 18.0 / 60);
    aircraft.headingMag = aircraft.trueHeading = 90;
    const struct {
        double mapRange;
        std::int32_t airports, stations, traffic;
        bool showsAirport, showsStation;
    } cases[] = {{12.5, 1, 0, 0, true, false}, {12.5, 0, 1, 0, false, true},
                 {12.5, 1, 1, 0, true, true},  {5, 1, 1, 0, true, false},
                 {160, 1, 1, 0, false, true},  {80, 1, 0, 0, true, false},
                 {160, 1, 0, 1, false, false},  // the airports' limit is the map range's
                 {80, 1, 1, 1, true, false}};
    for (const auto& c : cases) {
        mfd.mfdMapRange = c.mapRange;
        mfd.mfdLayerA = c.airports;
        mfd.mfdLayerB = c.stations;
        nd.showTraffic = c.traffic;
        Draw();
        ExpectShown({"KAPT"}, c.showsAirport);
        ExpectShown({"VVV"}, c.showsStation);
        ExpectShown({"+05"}, c.traffic == 1);
    }
}

TEST_F(Mfd, MapModeStaysNorthUpWhereItWasSwitchedOn) {
    WithPanel();
    test::FakeTraffic source;
    test::SetActivePlan({{"WP0", -5.0 / 60, 1}, {"WPONE", 0, 1 + 10.0 / 60}});
    planBook.activeIndex = 1;
    guidance.activeLongitude = 1 + 10.0 / 60;
    aircraft.longitude = 1;
    aircraft.headingMag = aircraft.trueHeading = 90;
    nd.showTraffic = 1;
    PanelKey("MAP");
    aircraft.longitude = 1 + 2.5 / 60;
    aircraft.latitude = 1.25 / 60;
    source.Tell({{0, 1.25, 5, 0, 1}});  // east of the aircraft
    guidance.blinkCounter = 30;
    const auto picture = Draw(2);
    ExpectShown({"NORTH UP", "WPONE 090 / 10.0 NM", "+05"});
    const double pxPerNm = mfd.map.radius / 5;
    EXPECT_GT(mfd.map.radius, 53);
    const double y = kCentre.y - 1.25 * pxPerNm;
    EXPECT_TRUE(HasColourNear(*picture, 2, {kCentre.x + 2.5 * pxPerNm, y}, colour::White));
    EXPECT_TRUE(HasColourNear(*picture, 2, {kCentre.x + 3.75 * pxPerNm, y}, colour::Cyan));
    EXPECT_NEAR(test::MeanDirection(*picture, kCentre, 100, 104, 2, colour::Cyan, 40), 0, 6)
        << "the heading bug at north";
    aircraft.longitude = 1 + 40.0 / 60;  // off the map
    Draw();
    ExpectShown({"+05"}, false);
    PanelKey("MAP");
    EXPECT_EQ(mfd.map.centreX, 134);
    EXPECT_EQ(mfd.map.centreY, 148);
    EXPECT_EQ(mfd.map.radius, 53);
    guidance.blinkCounter = 30;
    Draw();
    ExpectShown({"NORTH UP"}, false);
}

}  // namespace
}  // namespace avq1
