#include "panelhost/world/flight_model.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

#include "panelhost/world/key_events.h"

namespace panelhost {
namespace {

World Cruising(double headingTrue, double altitudeFt, double airspeedKt) {
    World world;
    world.aircraft.position = {45, 10};
    world.aircraft.headingTrue = headingTrue;
    world.aircraft.altitudeFt = altitudeFt;
    world.aircraft.indicatedAirspeedKt = airspeedKt;
    world.aircraft.heldAirspeedKt = airspeedKt;
    FillTanks(world.aircraft, 30000);
    world.autopilot.master = true;
    StepFlight(world, 0.05);
    return world;
}

struct Event {
    int number;
    int value = 0;
};

void Send(World& world, std::initializer_list<Event> events) {
    for (const Event& event : events) {
        ASSERT_NE(FindKeyEvent(event.number), nullptr) << event.number;
        FindKeyEvent(event.number)->apply(world, static_cast<std::uint32_t>(event.value));
    }
}

TEST(KeyEvents, KeepTheirTargetsWithinLimits) {
    using A = Autopilot;
    const struct {
        Event event;
        int times;
        int A::*target;
        int expected;
    } rows[] = {
        {{65892}, 1, &A::altitudeTargetFt, 100},
        {{65892}, 500, &A::altitudeTargetFt, 45000},
        {{65893}, 1, &A::altitudeTargetFt, 0},
        {{66124, 9000}, 1, &A::altitudeTargetFt, 9000},
        {{66124, -1}, 1, &A::altitudeTargetFt, 0},
        {{66124, INT_MAX}, 1, &A::altitudeTargetFt, 45000},
        {{65894}, 1, &A::verticalSpeedTargetFpm, 100},
        {{65894}, 61, &A::verticalSpeedTargetFpm, 6000},
        {{65895}, 61, &A::verticalSpeedTargetFpm, -6000},
        {{66036, INT_MIN}, 1, &A::verticalSpeedTargetFpm, -6000},
        {{66036, INT_MAX}, 1, &A::verticalSpeedTargetFpm, 6000},
        {{65896}, 1, &A::airspeedTargetKt, 1},
        {{65896}, 401, &A::airspeedTargetKt, 400},
        {{65897}, 1, &A::airspeedTargetKt, 0},
        {{66037, INT_MIN}, 1, &A::airspeedTargetKt, 0},
        {{66037, INT_MAX}, 1, &A::airspeedTargetKt, 400},
        {{65879}, 1, &A::headingBugMag, 1},
        {{65880}, 1, &A::headingBugMag, 359},
        {{66042, 0}, 1, &A::headingBugMag, 360},
        {{66042, INT_MIN}, 1, &A::headingBugMag, 232},
        {{66042, INT_MAX}, 1, &A::headingBugMag, 127},
    };
    for (const auto& row : rows) {
        World world;
        for (int i = 0; i < row.times; ++i) {
            Send(world, {row.event});
        }
        EXPECT_EQ(world.autopilot.*row.target, row.expected)
            << row.event.number << " " << row.event.value;
    }
}

void Fly(World& world, double seconds) {
    for (double t = 0; t < seconds; t += 0.05) {
        StepFlight(world, 0.05);
    }
}

TEST(FlightModel, TurnsTheShortWayAndCapturesTheHeading) {
    const struct {
        double from;
        int bug;
        double variation, airspeedKt;
        bool toTheRight;
    } rows[] = {{350, 20, 0, 250, true}, {10, 340, 0, 250, false}, {200, 40, -12, 300, false}};
    for (const auto& row : rows) {
        World world = Cruising(row.from, 10000, row.airspeedKt);
        world.magneticVariation = row.variation;
        Send(world, {{66042, row.bug}, {65803}});
        double steepest = 0;
        double overshoot = 0;
        for (int i = 0; i < 20 * 150; ++i) {
            StepFlight(world, 0.05);
            steepest = std::max(steepest, std::fabs(world.aircraft.bankRightDeg));
            const double past =
                AngleDifference(row.bug, HeadingMag(world)) * (row.toTheRight ? 1 : -1);
            overshoot = std::max(overshoot, past < 90 ? past : 0);
            if (i == 40) {
                EXPECT_EQ(world.aircraft.bankRightDeg > 0, row.toTheRight) << row.from;
            }
        }
        EXPECT_LE(steepest, kMaxBankDeg + 0.01);
        EXPECT_LT(overshoot, 1.0) << row.from << " to " << row.bug;
        EXPECT_NEAR(AngleDifference(row.bug, HeadingMag(world)), 0, 0.1);
    }
}

TEST(FlightModel, TurnsOnTheRadiusOfItsBank) {
    World world = Cruising(0, 10000, 250);
    Send(world, {{66042, 180}, {65803}});
    Fly(world, 10);
    const double speed = world.aircraft.trueAirspeedKt * 1852 / 3600;
    const double bank = world.aircraft.bankRightDeg / kDegreesPerRadian;
    EXPECT_NEAR(world.aircraft.bankRightDeg, kMaxBankDeg, 0.05);
    const GeoPoint start = world.aircraft.position;
    const double startHeading = world.aircraft.headingTrue;
    Fly(world, 20);
    const double turned = AngleDifference(startHeading, world.aircraft.headingTrue);
    const double chordM = DistanceNm(start, world.aircraft.position) * 1852;
    const double radius = chordM / 2 / std::sin(turned / 2 / kDegreesPerRadian);
    EXPECT_NEAR(radius, speed * speed / (9.80665 * std::tan(bank)), radius * 0.01);
}

TEST(FlightModel, ClimbsAtItsRateAndCapturesTheAltitude) {
    const struct {
        double fromFt;
        int targetFt, verticalSpeedFpm;
        bool verticalSpeedHold;
        double expectedFpm;
    } rows[] = {{10000, 14000, 0, false, 1800},
                {10000, 6000, -2400, true, -2400},
                {10000, 7000, 1500, false, -1500}};
    for (const auto& row : rows) {
        World world = Cruising(90, row.fromFt, 250);
        Send(world, {{66124, row.targetFt},
                     {66036, row.verticalSpeedFpm},
                     {row.verticalSpeedHold ? 66102 : 65804}});
        Fly(world, 40);
        EXPECT_NEAR(world.aircraft.verticalSpeedFpm, row.expectedFpm, 1) << row.targetFt;
        double worst = 0;
        for (int i = 0; i < 20 * 300; ++i) {
            StepFlight(world, 0.05);
            worst = std::max(worst, (world.aircraft.altitudeFt - row.targetFt) *
                                        (row.targetFt > row.fromFt ? 1 : -1));
        }
        EXPECT_NEAR(world.aircraft.altitudeFt, row.targetFt, 5);
        EXPECT_LT(worst, 25) << "overshoot";
        EXPECT_TRUE(world.autopilot.altitudeHold);
    }
}

TEST(FlightModel, AVerticalSpeedAwayFromTheTargetFliesOn) {
    World world = Cruising(90, 10000, 250);
    Send(world, {{66124, 12000}, {66036, -1000}, {66102}});
    Fly(world, 120);
    EXPECT_NEAR(world.aircraft.altitudeFt, 10000 - 1000 * 2, 150);
    EXPECT_TRUE(world.autopilot.verticalSpeedHold);
}

TEST(FlightModel, HoldsAirspeedAndStopsAtMach) {
    World world = Cruising(90, 10000, 250);
    Send(world, {{66037, 300}});
    Fly(world, 60);
    EXPECT_NEAR(world.aircraft.indicatedAirspeedKt, 250, 0.1) << "not engaged";
    Send(world, {{65858}});
    Fly(world, 90);
    EXPECT_NEAR(world.aircraft.indicatedAirspeedKt, 300, 0.1);
    Send(world, {{66037, 250}});
    Fly(world, 20);
    EXPECT_NEAR(world.aircraft.indicatedAirspeedKt, 300 - 20 * 1.2, 0.1);
    Send(world, {{65859}});
    const double letGoKt = world.aircraft.indicatedAirspeedKt;
    Fly(world, 60);
    EXPECT_NEAR(world.aircraft.indicatedAirspeedKt, letGoKt, 0.1) << "what it had when let go";
    World high = Cruising(90, 36000, 250);
    Send(high, {{66037, 330}, {65858}});
    Fly(high, 200);
    EXPECT_NEAR(high.aircraft.trueAirspeedKt, 0.82 * 573.6, 2);
}

TEST(FlightModel, FollowsAGreatCircleWithoutAHeading) {
    World world = Cruising(60, 35000, 260);
    world.aircraft.position = {50, -10};
    const GeoPoint start = world.aircraft.position;
    Fly(world, 7200);
    EXPECT_LT(std::fabs(CrossTrackNm(start, 60, world.aircraft.position)), 0.05);
    EXPECT_GT(DistanceNm(start, world.aircraft.position), 800);
}

TEST(FlightModel, DriftsWithTheWind) {
    World world = Cruising(0, 50, 200);
    world.air.windDirectionTrue = 270;
    world.air.windSpeedKt = 50;
    Fly(world, 1);
    EXPECT_NEAR(world.aircraft.trackTrue, std::atan2(50, 200) * kDegreesPerRadian, 0.05);
    EXPECT_NEAR(world.aircraft.groundSpeedKt, std::hypot(50, 200), 0.3);
}

TEST(FlightModel, GustsAreAsStrongAsAskedFor) {
    World world = Cruising(90, 10000, 250);
    world.air.turbulenceKt = 8;
    double squares = 0;
    constexpr int kSteps = 20000;
    for (int i = 0; i < kSteps; ++i) {
        StepFlight(world, 0.05);
        squares += world.air.gustEastKt * world.air.gustEastKt +
                   world.air.gustNorthKt * world.air.gustNorthKt;
    }
    EXPECT_NEAR(std::sqrt(squares / (2 * kSteps)), 8, 0.6);
}

TEST(FlightModel, TakesOffAndLands) {
    World world;
    world.aircraft.position = {45, 10};
    world.aircraft.headingTrue = 90;
    world.aircraft.onGround = true;
    world.aircraft.parkingBrake = true;
    world.groundElevationFt = 1500;
    FillTanks(world.aircraft, 20000);
    Send(world, {{66037, 200}, {65858}, {66124, 5000}});
    Fly(world, 60);
    EXPECT_EQ(world.aircraft.indicatedAirspeedKt, 0) << "the brake is set";
    EXPECT_EQ(world.aircraft.altitudeFt, 1500);
    Send(world, {{65752}});
    Fly(world, 240);
    EXPECT_FALSE(world.aircraft.onGround);
    EXPECT_NEAR(world.aircraft.altitudeFt, 5000, 10);
    Send(world, {{66124, 0}});
    Fly(world, 400);
    EXPECT_TRUE(world.aircraft.onGround);
    EXPECT_EQ(world.aircraft.altitudeFt, 1500);
    EXPECT_EQ(world.aircraft.groundSpeedKt, 0);
}

TEST(FlightModel, BurnsTheFuelItsFlowSaysCentreTankFirst) {
    World world = Cruising(90, 30000, 270);
    const double before = FuelPounds(world.aircraft);
    const double wing = world.aircraft.fuelGallons[1];
    Fly(world, 600);
    const double burnt = before - FuelPounds(world.aircraft);
    EXPECT_NEAR(burnt, world.aircraft.fuelFlowPph / 6, burnt * 0.02);
    EXPECT_EQ(world.aircraft.fuelGallons[1], wing);
    FillTanks(world.aircraft, 100);
    Fly(world, 300);
    EXPECT_EQ(FuelPounds(world.aircraft), 0);
    EXPECT_EQ(world.aircraft.fuelFlowPph, 0);
    EXPECT_LT(world.aircraft.verticalSpeedFpm, -1400) << "gliding";
}

TEST(Earth, VariationIsCloseToTheCharts) {
    // Boston, Seattle, Munich, Sydney, Tokyo, Cape Town; charts of 2025.
    const std::pair<GeoPoint, double> rows[] = {{{42.4, -71.0}, -14.3}, {{47.4, -122.3}, 15.4},
                                                {{48.4, 11.8}, 3.9},    {{-33.9, 151.2}, 12.6},
                                                {{35.7, 139.8}, -7.6},  {{-33.9, 18.4}, -25.2}};
    for (const auto& [at, chartDeg] : rows) {
        EXPECT_NEAR(WorldVariation(at), chartDeg, 3) << at.latitude;
    }
}

}  // namespace
}  // namespace panelhost
