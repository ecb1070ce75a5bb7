#include "panelhost/world/variables.h"

#include <gtest/gtest.h>

#include <cmath>

#include "panelhost/world/flight_model.h"

namespace panelhost {
namespace {

double Read(const World& world, int number) {
    const std::optional<double> value = ReadVariable(world, number);
    EXPECT_TRUE(value.has_value()) << number;
    return value.value_or(NAN);
}

TEST(Variables, PositionsComeInTheSimulatorsUnits) {
    // What a gauge makes of the raw values: metres to degrees, a 48-bit turn to degrees.
    const double places[][2] = {{48.35, 11.78}, {0, -0.0001}, {-89, 179.9}};
    for (const auto& place : places) {
        World world;
        world.aircraft.position = {place[0], place[1]};
        const double rawLongitude = Read(world, 72);
        const double degrees = rawLongitude * 1.278976924368144e-12;
        EXPECT_NEAR(Read(world, 71) * 8.998425275459816e-06, place[0], 1e-8);
        EXPECT_NEAR(rawLongitude > 140737488355332.0 ? degrees - 360 : degrees, place[1], 1e-9);
        EXPECT_GE(rawLongitude, 0);
        EXPECT_LT(rawLongitude, 281474976710656.0);
    }
}

TEST(Variables, UnitsInvertTheReadersConversions) {
    World world;
    Aircraft& aircraft = world.aircraft;
    aircraft.verticalSpeedFpm = -1800;
    aircraft.groundSpeedKt = 440;
    aircraft.altitudeFt = 12500;
    world.groundElevationFt = 500;
    aircraft.pitchUpDeg = 5;
    aircraft.bankRightDeg = 20;
    aircraft.headingTrue = 2;
    world.magneticVariation = 5;
    world.aircraft.position.longitude = -71;
    world.clock.flightTimeS = 13 * 3600 + 62;
    aircraft.fuelFlowPph = 5000;
    const std::pair<int, double> rows[] = {
        {638, 2500}, {657, 2500}, {676, 0}, {695, 0},   {74, 12500},  {77, -5}, {80, -20},
        {81, 357},   {86, 2},     {82, 5},  {6, 1},     {7, 1},       {8, 173}, {9, 2008},
        {3, 20},     {4, 1},      {5, 2},   {306, 6.7}, {800, -9.765}};
    for (const auto& [number, expected] : rows) {
        EXPECT_NEAR(Read(world, number), expected, 1e-6) << number;
    }
    EXPECT_NEAR(Read(world, 65) * 0.7689468503937007, -1800, 1e-6);
    EXPECT_NEAR(Read(world, 551) * 0.5924837511331251, 440, 1e-6);
    EXPECT_NEAR(Read(world, 614) * 3.2808399, 12000, 1e-6);
}

TEST(Variables, TheYearTurns) {
    World world;
    world.clock.startDayOfYear = 366;
    world.clock.startSecondUtc = 86399;
    EXPECT_EQ(Read(world, 8), 366) << "2008 was a leap year";
    world.clock.flightTimeS = 1;
    EXPECT_EQ(Read(world, 8), 1);
    EXPECT_EQ(Read(world, 9), 2009);
}

TEST(Variables, TankPairsGiveTheFuelOnBoard) {
    World world;
    FillTanks(world.aircraft, 25000);
    const int pairs[][2] = {{289, 290}, {291, 292}, {297, 298}, {293, 294},
                            {299, 300}, {295, 296}, {301, 302}};
    double pounds = 0;
    for (const auto& pair : pairs) {
        pounds += Read(world, pair[0]) / 8388608 * Read(world, pair[1]) * Read(world, 306);
    }
    EXPECT_NEAR(pounds, 25000, 1e-6);
}

TEST(Variables, SimulationRateCountsAsTheSimulatorDoes) {
    World world;
    world.simulationRate = 4;
    world.laterSimulator = true;
    EXPECT_EQ(Read(world, 336), 1024);
    EXPECT_FALSE(ReadVariable(world, 2).has_value());
}

}  // namespace
}  // namespace panelhost
