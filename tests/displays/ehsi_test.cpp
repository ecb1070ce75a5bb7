// The EHSI, read back from its picture and from the texts it draws.
#include "displays/ehsi/ehsi.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <tuple>
#include <utility>

#include "drawing/palette.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::AngleBetween;
using test::HasColourNear;
using test::IsColour;
using test::MeanDirection;
using test::Picture;

constexpr CanvasSize kDesign{266, 230};
constexpr CanvasPoint kFullCentre{129, 114};
constexpr CanvasPoint kArcCentre{129, 190};

class Ehsi : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        aircraft.latitude = 40;
        aircraft.longitude = -75;
        SetNav1(true);
        simulator_->variables[58] = 1;
    }

    // A plan through points given in nm north and east of the aircraft; entry 1 is flown to.
    void FlyPlan(std::initializer_list<CanvasPoint> northEastNm) {
        activePlan = FlightPlan{};
        for (const CanvasPoint& place : northEastNm) {
            PlanWaypoint entry;
            entry.ident = "WP" + std::to_string(activePlan.lastIndex + 1);
            entry.type = "WPT";
            entry.latitude = aircraft.latitude + place.x / 60;
            entry.longitude =
                aircraft.longitude + place.y / 60 / std::cos(aircraft.latitude * kDegToRad);
            entry.longitude -= entry.longitude > 180 ? 360 : 0;
            activePlan.Append(std::move(entry));
        }
        planBook.activeIndex = 1;
        ehsi.navSource = NavSource::FlightManagement;
        guidance.crossTrackNm = 0;
        guidance.desiredTrackMag = 90;
    }

    // Draws `mode` at a whole multiple of the design size.
    static std::unique_ptr<Picture> Draw(int mode, int scale = 1) {
        ehsi.ehsiMode = mode;
        return test::DrawAt(DrawEhsi, kDesign, scale);
    }
    static void ExpectDrawn(int mode, TextList shown, TextList hidden = {}) {
        Draw(mode);
        ExpectShown(shown);
        ExpectShown(hidden, false);
    }
};

// Full compasses have the aircraft in the middle, arcs below it.
CanvasPoint CentreOf(int mode) {
    return mode <= 3 ? kFullCentre : kArcCentre;
}
double RadiusOf(int mode) {
    return mode <= 3 ? 100 : 160;
}
bool IsMap(int mode) {
    return mode == 2 || mode == 3 || mode == 5 || mode == 6;
}

TEST_F(Ehsi, StaysTransparentWhenCoveredOrWithoutPower) {
    for (ehsi.ehsiMode = 1; ehsi.ehsiMode <= 8; ++ehsi.ehsiMode) {
        test::ExpectDrawsOnlyWhenAsked(DrawEhsi);
    }
}

TEST_F(Ehsi, SaysNoMapWhenTheSourceHasNothingToShow) {
    for (const NavSource source : {NavSource::NavReceiver, NavSource::FlightManagement}) {
        for (const bool hasData : {false, true}) {
            for (int mode = 1; mode <= 8; ++mode) {
                SetNav1(hasData);
                FlyPlan({{0, -10}, {0, 10}});
                planBook.activeIndex = hasData ? 1 : kNoWaypoint;
                ehsi.navSource = source;
                Picture::Forget();
                Draw(mode);
                EXPECT_EQ(Picture::Shows("NO MAP"), IsMap(mode) && !hasData) << mode;
                EXPECT_EQ(Picture::Shows("WX OFF"), mode == 2 || mode == 6 || mode == 7) << mode;
                // beside the next waypoint's data it stands on the map
                const bool route = IsMap(mode) && source == NavSource::FlightManagement;
                const int shown = mode == 8 || !hasData ? 0 : 1 + route;
                EXPECT_EQ(test::CountTexts("WP1"), shown) << mode;
            }
        }
    }
}

TEST_F(Ehsi, PointerLabelsNameTheirSourceAndDistance) {
    aircraft.nav1DmeNm = 42.66;
    aircraft.nav2DmeNm = 8.04;
    ehsi.bearingPointer1 = BearingSource::Vor;
    ehsi.bearingPointer2 = BearingSource::Vor;
    ExpectDrawn(1, {"VOR 1", "42.7", "VOR 2", "8.0"});
    aircraft.nav1DmeNm = 0;  // a station without distance
    ExpectDrawn(1, {"---"}, {"0.0"});
    aircraft.nav1DmeNm = 42.66;
    SetNav1(false);
    simulator_->variables[58] = 0;
    ExpectDrawn(5, {"VOR 1", "---"}, {"42.7", "8.0"});
    ehsi.bearingPointer1 = BearingSource::Fms;
    ehsi.bearingPointer2 = BearingSource::Adf;
    ExpectDrawn(1, {"FMS", "ADF"});
}

TEST_F(Ehsi, DataTextsFollowTheFlight) {
    aircraft.nav1Course = 7.4;
    ExpectDrawn(1, {"CRS 007"});
    ehsi.navSource = NavSource::FlightManagement;
    ExpectDrawn(1, {"DTK ---"});
    FlyPlan({{0, -10}, {0, 300}});
    guidance.desiredTrackMag = 93.6;
    aircraft.headingMag = 359.7;
    aircraft.groundSpeedKt = 451.6;
    aircraft.windSpeedKt = 33.6;
    derived.trueAirspeedEstimateKt = 420.4;
    guidance.distanceToGoNm = 9.46;
    guidance.crossTrackNm = 1.26;
    guidance.crossTrackSide = Side::Left;
    test::PredictArrivalIn(119.7);
    ExpectDrawn(
        1, {" 452", " 420", "360/34", "360", "WP1", " 9.5 NM", " 2:00", "XTK 1.3L", "DTK 094"});
    aircraft.groundSpeedKt = 20;
    aircraft.windSpeedKt = 0;
    aircraft.headingMag = 0.3;
    ExpectDrawn(4, {"--:--", "360"}, {"34", "0"});
}

TEST_F(Ehsi, TheRoseTurnsUnderTheLubberLine) {
    constexpr int kScale = 3;
    for (const int mode : {1, 4}) {
        for (const double heading : {3.0, 67.0, 354.0}) {
            aircraft.headingMag = heading;
            aircraft.apHeadingBug = aircraft.nav1Course = heading + 90;
            const auto picture = Draw(mode, kScale);
            // only the ticks of each ten degrees reach this far in
            const double first = -40 - std::fmod(heading, 10);
            for (int i = 0; i <= 16; ++i) {
                const double turn = (first + 5 * i) * kDegToRad;
                const CanvasPoint at{CentreOf(mode).x + (RadiusOf(mode) - 7) * std::sin(turn),
                                     CentreOf(mode).y - (RadiusOf(mode) - 7) * std::cos(turn)};
                const bool atIndex = std::abs(first + 5 * i) < 4;
                EXPECT_TRUE(atIndex ||
                            HasColourNear(*picture, kScale, at, colour::White) == (i % 2 == 0))
                    << mode << " " << heading << " " << i;
            }
        }
    }
    // and the number in the middle is the heading's own
    aircraft.headingMag = 90;
    Draw(1, kScale);
    const test::DrawnText* east = Picture::Find("E");
    ASSERT_NE(east, nullptr);
    EXPECT_NEAR(east->x, kFullCentre.x * kScale, 15);
    EXPECT_LT(east->y, kFullCentre.y * kScale);
}

TEST_F(Ehsi, TheRouteLiesWhereItIsFlownAlsoAcrossTheDateLine) {
    constexpr int kScale = 2;
    aircraft.longitude = 179.99;
    struct Case {
        int mode;
        double rangeNm, headingMag, variation;
        CanvasPoint waypointNm;
        double directionDeg, distancePx;  // from straight up
    };
    for (const Case& each :
         {Case{3, 12.5, 0, 0, {12.5, 0}, 0, 40}, Case{2, 12.5, 350, 15, {0, 12.5}, 85, 40},
          Case{5, 25, 40, -10, {25, 0}, -30, 95}, Case{6, 160, 100, 0, {64, 48}, -63, 47.5}}) {
        aircraft.headingMag = each.headingMag;
        aircraft.magneticVariation = each.variation;
        ehsi.ehsiRange = each.rangeNm;
        FlyPlan({{0, 0}, each.waypointNm});
        Draw(each.mode, kScale);
        const test::DrawnText* ident = Picture::Find("WP1");
        ASSERT_NE(ident, nullptr) << each.mode;
        // the identifier ends at its symbol's height
        const double turn = each.directionDeg * kDegToRad;
        const CanvasPoint centre = CentreOf(each.mode);
        EXPECT_NEAR(ident->y / kScale + 1.15 * 9, centre.y - each.distancePx * std::cos(turn), 1.5)
            << each.mode;
        EXPECT_NEAR(ident->x / kScale, centre.x + 6 + each.distancePx * std::sin(turn), 1.5)
            << each.mode;
    }
}

TEST_F(Ehsi, ADiscontinuityLeavesAGap) {
    FlyPlan({{-5, 0}, {5, 0}, {0, 0}, {5, 10}, {-5, 10}});
    activePlan.Edit(2) = Discontinuity();
    const auto withGap = Draw(2, 2);
    ExpectShown({"DISCO"}, false);
    // 40 px are 12.5 nm: halfway between entries 1 and 3, and halfway between 3 and 4
    const auto lit = [](const Picture& picture, double northNm, double eastNm) {
        return picture.At(static_cast<int>(2 * (kFullCentre.x + eastNm * 3.2)),
                          static_cast<int>(2 * (kFullCentre.y - northNm * 3.2))) != colour::Black;
    };
    EXPECT_FALSE(lit(*withGap, 5, 5));
    EXPECT_TRUE(lit(*withGap, 1, 10));
    // nor does a leg lead to where the discontinuity has no position, far to the east
    for (double northNm = -6; northNm < 6; northNm += 0.1) {
        ASSERT_FALSE(lit(*withGap, northNm, 20)) << northNm;
    }
    FlyPlan({{-5, 0}, {5, 0}, {5, 10}, {-5, 10}});
    EXPECT_TRUE(lit(*Draw(2, 2), 5, 5));
}

TEST_F(Ehsi, NothingOfTheRouteLeavesItsClip) {
    constexpr int kScale = 2;
    for (const int mode : {2, 3, 5, 6}) {
        FlyPlan({{-20, 3}, {8, 3}});
        const auto without = Draw(mode, kScale);
        FlyPlan({{-20, 3}, {8, 3}, {30, 200}, {-40, 20}, {-15, -60}, {20, -20}, {60, 0}, {-3, -6}});
        const auto with = Draw(mode, kScale);
        int inside = 0;
        int outside = 0;
        for (int y = 0; y < with->height(); ++y) {
            for (int x = 0; x < with->width(); ++x) {
                const CanvasPoint at{(x + 0.5) / kScale - CentreOf(mode).x,
                                     (y + 0.5) / kScale - CentreOf(mode).y};
                const bool onMap = std::hypot(at.x, at.y) <= RadiusOf(mode) + 0.5 &&
                                   (mode <= 3 || y < 204 * kScale);
                (onMap ? inside : outside) += with->At(x, y) != without->At(x, y);
            }
        }
        EXPECT_GT(inside, 100) << mode;
        EXPECT_EQ(outside, 0) << mode;
    }
}

TEST_F(Ehsi, TheCourseBarStandsOnTheTracksSide) {
    constexpr int kScale = 2;
    const auto barOffset = [](std::uint32_t argb) {  // across the middle
        const auto picture = Draw(1, kScale);
        double sum = 0;
        int count = 0;
        for (int x = 60 * kScale; x < 200 * kScale; ++x) {
            const bool isBar = IsColour(picture->At(x, 110 * kScale), argb);
            sum += isBar ? (x + 0.5) / kScale - kFullCentre.x : 0;
            count += isBar;
        }
        return count > 0 ? sum / count : test::kNan;
    };
    aircraft.headingMag = aircraft.nav1Course = 50;
    for (const auto& [needle, offsetPx] : {std::pair{-63.5, -20}, {400.0, 40}}) {
        aircraft.nav1CdiNeedle = needle;
        EXPECT_NEAR(barOffset(colour::Green), offsetPx, 1) << needle;
    }
    SetNav1(false);
    EXPECT_TRUE(std::isnan(barOffset(colour::Green)));
    ExpectShown({"NO SIGNAL"});
    FlyPlan({{0, -10}, {0, 10}});
    guidance.desiredTrackMag = 50;
    guidance.crossTrackNm = 2.5;
    guidance.crossTrackSide = Side::Right;  // the aircraft is right of the track
    EXPECT_NEAR(barOffset(colour::Magenta), -20, 1);
    guidance.crossTrackNm = 60;
    guidance.crossTrackSide = Side::Left;
    EXPECT_NEAR(barOffset(colour::Magenta), 40, 1);
}

TEST_F(Ehsi, PointersTurnWithTheirBearings) {
    constexpr int kScale = 2;
    const auto tip = [](std::uint32_t argb, double inner, double outer) {
        return MeanDirection(*Draw(1, kScale), kFullCentre, inner, outer, kScale, argb, 90);
    };
    aircraft.headingMag = aircraft.nav1Course = 350;
    // the single pointer's arrow head
    aircraft.adfActive = 1;
    aircraft.adfRelativeBearing = 250;
    ehsi.bearingPointer1 = BearingSource::Adf;
    // three lines at the head outweigh one at the tail
    EXPECT_LT(AngleBetween(tip(colour::Blue, 86, 91), 250), 1.5);
    aircraft.adfActive = 0;
    EXPECT_TRUE(std::isnan(tip(colour::Blue, 86, 88)));
    // the heading bug
    aircraft.apHeadingBug = 20;
    EXPECT_LT(AngleBetween(tip(colour::Cyan, 95, 97), 30), 1);
    // a localizer has no bearing
    ehsi.bearingPointer1 = BearingSource::Vor;
    simulator_->variables[46] = 0x80;
    EXPECT_TRUE(std::isnan(tip(colour::Blue, 86, 88)));
    ExpectShown({"LOC 1"});
}

TEST_F(Ehsi, AHeadingBeyondTheArcKeepsItsPointerOnlyWhenAsked) {
    const auto bugDirection = [] {
        return MeanDirection(*Draw(4, 2), kArcCentre, 154, 160, 2, colour::Cyan);
    };
    aircraft.headingMag = 100;
    aircraft.apHeadingBug = 270;
    EXPECT_TRUE(std::isnan(bugDirection()));
    settings.EhsiStaticHdgPointer = 1;
    EXPECT_NEAR(bugDirection(), 48, 2);
    aircraft.apHeadingBug = 80;
    EXPECT_NEAR(bugDirection(), -20, 1);
}

TEST_F(Ehsi, TrafficModeMarksRangesAroundTheAircraft) {
    for (const auto& [rangeNm, ringPx, text] :  // 0: no ring
         {std::tuple{2, 0, " 2"}, {5, 40, " 5"}, {10, 20, "10"}, {40, 0, "40"}}) {
        ehsi.ehsiMode8Range = rangeNm;
        const auto picture = Draw(8);
        ExpectShown({text});
        for (const int radius : {40, 20}) {
            const CanvasPoint dot{kFullCentre.x + radius * 0.5,
                                  kFullCentre.y - radius * std::sqrt(3) / 2};
            EXPECT_EQ(HasColourNear(*picture, 1, dot, colour::White), ringPx == radius)
                << rangeNm << " at " << radius;
        }
        // a tick at 90 degrees, a dot at 80
        EXPECT_TRUE(IsColour(picture->At(129 + 92, 114), colour::White, 120));
        EXPECT_EQ(picture->At(static_cast<int>(129 + 92 * 0.985), 114 - 16), colour::Black);
        ExpectShown({"CRS 000"}, false);
    }
}

TEST_F(Ehsi, NoTextStandsOverAnotherOrBesideTheScreen) {
    ehsi.bearingPointer1 = BearingSource::Vor;
    ehsi.bearingPointer2 = BearingSource::Vor;
    aircraft.nav1DmeNm = aircraft.nav2DmeNm = 188.8;
    aircraft.windSpeedKt = 134;
    aircraft.groundSpeedKt = 1204;
    derived.trueAirspeedEstimateKt = 1150;
    guidance.distanceToGoNm = 4321.2;
    for (int variant = 0; variant < 3; ++variant) {
        // crowded: waypoints within a few pixels of each other
        FlyPlan({{-2, -3}, {5, -3}, {5.5, -2.6}, {6, -3.2}, {5, -1}, {7, -2}, {9, 0}, {9.4, .3}});
        guidance.crossTrackNm = 125;
        activePlan.Edit(1).ident = "LONGIDENT";
        SetNav1(variant != 1);
        planBook.activeIndex = variant == 2 ? kNoWaypoint : 1;
        ehsi.navSource = variant == 0 ? NavSource::FlightManagement : NavSource::NavReceiver;
        for (int mode = 1; mode <= 8; ++mode) {
            Draw(mode);
            test::ExpectTextsApart(kDesign, false, "mode " + std::to_string(mode));
        }
    }
}

}  // namespace
}  // namespace avq1
