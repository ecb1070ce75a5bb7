#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/module_state.h"
#include "simlink/aircraft_state.h"
#include "simlink/exported_variables.h"
#include "simlink/key_events.h"
#include "simlink/sim_variables.h"
#include "support/fake_simulator.h"

namespace avq1 {
namespace {

using test::FakeSimulator;

const double kNan = std::numeric_limits<double>::quiet_NaN();

class SimlinkTest : public ::testing::Test {
  protected:
    SimlinkTest() { ResetModuleState(); }
    ~SimlinkTest() override { ImportTable.panel.services = nullptr; }
    FakeSimulator& simulator = FakeSimulator::Install();
};

TEST_F(SimlinkTest, SnapshotConvertsToTheUnitsOfItsFields) {
    const struct {
        std::int32_t variable;
        double raw;
        double AircraftState::*field;
        double expected, tolerance;
    } rows[] = {
        {71, -10001750, &AircraftState::latitude, -90.0, 1e-8},
        {72, 140737488355332, &AircraftState::longitude, 180.0, 1e-9},
        {72, 211106232532992, &AircraftState::longitude, -90.0, 1e-9},
        {72, 281474976700000, &AircraftState::longitude, -1.363e-8, 1e-10},  // just west
        {551, 100 * 1.6878098571, &AircraftState::groundSpeedKt, 100.0, 1e-4},
        {614, 100, &AircraftState::radioAltitudeFt, 328.08399, 1e-9},
        {65, 5.08 * 256, &AircraftState::verticalSpeedFpm, 1000.0, 1e-3},
    };
    for (const auto& row : rows) {
        simulator.variables[row.variable] = row.raw;
        RefreshAircraftState();
        EXPECT_NEAR(aircraft.*row.field, row.expected, row.tolerance) << row.variable;
    }
}

// What every simulator of the family numbers alike and hands over in the field's own unit.
TEST_F(SimlinkTest, EveryOtherVariableGoesToItsFieldAsItIs) {
    using A = AircraftState;
    const std::pair<std::int32_t, std::vector<double A::*>> rows[] = {
        {1, {&A::tick}},
        {3, {&A::clockHour}},
        {4, {&A::clockMinute}},
        {5, {&A::clockSecond, &A::clockSecondShown}},
        {6, {&A::zuluHour}},
        {7, {&A::zuluMinute}},
        {20, {&A::adfActive}},
        {31, {&A::nav1DmeNm}},
        {32, {&A::nav1DmeSpeedKt}},
        {35, {&A::nav2DmeNm}},
        {39, {&A::adfRelativeBearing}},
        {40, {&A::nav1CdiNeedle}},
        {41, {&A::nav1GlideslopeNeedle}},
        {45, {&A::nav1Course}},
        {59, {&A::nav2RelativeBearing}},
        {74, {&A::altitudeFt}},
        {77, {&A::pitch}},
        {80, {&A::bank}},
        {81, {&A::headingMag}},
        {82, {&A::magneticVariation}},
        {86, {&A::trueHeading}},
        {103, {&A::autopilotOn}},
        {105, {&A::autopilotNav1Lock}},
        {106, {&A::headingHoldOn}},
        {107, {&A::apHeadingBug}},
        {108, {&A::apAltitudeLockOn}},
        {109, {&A::apAltitudeTargetFt}},
        {112, {&A::approachHoldOn}},
        {114, {&A::yawDamperOn}},
        {115, {&A::apSpeed115}},
        {116, {&A::apAirspeedTargetKt}},
        {336, {&A::simRateRaw}},
        {343, {&A::windSpeedKt}},
        {344, {&A::windDirection}},
        {354, {&A::markerBeacon}},
        {550, {&A::nav1RelativeBearing}},
        {793, {&A::flightDirectorPitch}},
        {794, {&A::flightDirectorBank}},
        {800, {&A::value800}}};
    for (const auto& [variable, fields] : rows) {
        simulator.variables[variable] = variable + 0.25;
    }
    RefreshAircraftState();
    for (const auto& [variable, fields] : rows) {
        for (double A::*const field : fields) {
            EXPECT_EQ(aircraft.*field, variable + 0.25);
        }
    }
}

TEST_F(SimlinkTest, ValuesOfTheMomentAreReadByTheirNumbers) {
    const std::pair<std::int32_t, double (*)()> numbers[] = {
        {1, ReadTick}, {8, ReadUtcDayOfYear}, {9, ReadUtcYear}, {323, ReadParkingBrake}};
    for (const auto& [variable, read] : numbers) {
        simulator.variables[variable] = variable + 0.25;
        EXPECT_EQ(read(), variable + 0.25);
    }
    const std::pair<std::int32_t, bool (*)()> flags[] = {{49, Nav1HasSignal},
                                                         {58, Nav2HasSignal},
                                                         {792, FlightDirectorOn},
                                                         {852, HorizontalDeviationValid}};
    for (const auto& [variable, read] : flags) {
        EXPECT_FALSE(read()) << variable;
        simulator.variables[variable] = 0.25;
        EXPECT_TRUE(read()) << variable;
    }
    simulator.variables[46] = 0xC1;
    EXPECT_EQ(ReadNavFlagWord(), 0xC1U);
}

TEST_F(SimlinkTest, AirspeedIsSmoothedAndAReadingThatIsNoNumberChangesNothing) {
    simulator.SetPosition(40, -70);
    simulator.variables[61] = 100;
    simulator.variables[773] = 1.9;
    RefreshAircraftState();
    EXPECT_EQ(avionicsPower, 1);
    for (const double bad : {kNan, std::numeric_limits<double>::infinity(), -HUGE_VAL}) {
        for (const std::int32_t variable : {61, 71, 72, 773}) {
            simulator.variables[variable] = bad;
        }
        RefreshAircraftState();
        EXPECT_NEAR(aircraft.latitude, 40, 1e-9);
        EXPECT_NEAR(aircraft.longitude, -70, 1e-9);
        EXPECT_NEAR(aircraft.indicatedAirspeedKt, 30, 1e-9);
        EXPECT_EQ(avionicsPower, 1);
    }
    simulator.variables[61] = 100;
    RefreshAircraftState();
    EXPECT_NEAR(aircraft.indicatedAirspeedKt, 51, 1e-9);
}

TEST_F(SimlinkTest, AFieldIsLostAfterEighteenBadReadingsInARow) {
    derived.driftDeg = 3;
    derived.windDirectionMag = 5;
    simulator.variables[82] = simulator.variables[551] = 10;
    const auto read = [&](double variation, int times) {
        simulator.variables[82] = variation;
        for (int i = 0; i < times; ++i) {
            RefreshAircraftState();
        }
        return IsLost(&AircraftState::magneticVariation);
    };
    EXPECT_FALSE(read(10, 1));
    EXPECT_FALSE(read(kNan, 18));
    EXPECT_FALSE(read(11, 1)) << "in a row";
    EXPECT_FALSE(read(kNan, 18));
    EXPECT_EQ(ShownAircraft().magneticVariation, 11);
    EXPECT_TRUE(read(kNan, 1));
    EXPECT_EQ(aircraft.magneticVariation, 11) << "guidance keeps the last good value";
    EXPECT_TRUE(std::isnan(ShownAircraft().magneticVariation));
    EXPECT_EQ(ShownAircraft().groundSpeedKt, aircraft.groundSpeedKt);
    EXPECT_TRUE(std::isnan(ShownDerived().windDirectionMag));
    EXPECT_EQ(ShownDerived().driftDeg, 3) << "of other fields";
    EXPECT_FALSE(read(12, 1));
    EXPECT_EQ(ShownAircraft().magneticVariation, 12);
    EXPECT_EQ(ShownDerived().windDirectionMag, 5);
    simulator.variables[614] = 1e308;  // a number of metres, but none of feet
    read(12, 19);
    EXPECT_TRUE(IsLost(&AircraftState::radioAltitudeFt));
}

TEST_F(SimlinkTest, ReadingsBeyondAllBeliefAreNone) {
    using A = AircraftState;
    const struct {
        std::int32_t variable;
        double A::*field;
        double most, beyond;  // in the variable's unit
    } rows[] = {
        {1, &A::tick, 2147483647, 2147483648},
        {5, &A::clockSecond, 60, 61},
        {31, &A::nav1DmeNm, 9999, 10000},
        {40, &A::nav1CdiNeedle, -9999, -10000},
        {65, &A::verticalSpeedFpm, 99999 / 0.7689468504, 100000 / 0.7689468503},
        {71, &A::latitude, -90.49 * 111130.5556, 90.51 * 111130.5556},
        {72, &A::longitude, 281474976710656, 3e15},
        {74, &A::altitudeFt, 999999, 1000000},
        {81, &A::headingMag, -3600, -3601},
        {343, &A::windSpeedKt, 9999, 1e300},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.variable);
        simulator.variables[row.variable] = row.most;
        RefreshAircraftState();
        const double believed = aircraft.*row.field;
        simulator.variables[row.variable] = row.beyond;
        for (int reading = 0; reading < 19; ++reading) {
            EXPECT_FALSE(IsLost(row.field));
            RefreshAircraftState();
        }
        EXPECT_TRUE(IsLost(row.field));
        EXPECT_EQ(aircraft.*row.field, believed);
    }
    for (const auto& [variable, value] : {std::pair{1, 1e16}, {8, 367}, {9, 10000}, {46, 1e16}}) {
        simulator.variables[variable] = value;
    }
    EXPECT_EQ(ReadTick() + ReadUtcDayOfYear() + ReadUtcYear() + ReadNavFlagWord(), 0);
    simulator.variables[289] = 8388608;
    simulator.variables[290] = 1000;
    simulator.variables[306] = 1000;  // pounds
    EXPECT_EQ(TankCapacityLb(FuelTank::Centre) + FuelOnBoard(), 0);
    simulator.variables[638] = 1e6;
    EXPECT_EQ(TotalFuelFlow() + EngineFuelFlow(1), 0);
    simulator.variables[638] = 999999;
    EXPECT_EQ(TotalFuelFlow() + EngineFuelFlow(1), 2 * 999999);
}

TEST_F(SimlinkTest, FuelIsSummedOverSevenTanks) {
    simulator.variables[306] = 6.7;
    EXPECT_EQ(FuelOnBoard(), 0);
    for (std::int32_t level = 289; level <= 301; level += 2) {
        simulator.variables[level] = 8388608 / 2.0;
        simulator.variables[level + 1] = 100;
    }
    EXPECT_NEAR(FuelOnBoard(), 7 * 50 * 6.7, 1e-9);
}

TEST_F(SimlinkTest, FuelFlowTakesThePistonFamilyWhenItsFirstEngineFlows) {
    const std::int32_t pistons[] = {421, 460, 499, 538};
    const std::int32_t turbines[] = {638, 657, 676, 695};
    for (int i = 0; i < 4; ++i) {
        simulator.variables[pistons[i]] = i == 0 ? 0 : 10;
        simulator.variables[turbines[i]] = 1000;
    }
    EXPECT_EQ(TotalFuelFlow(), 4000);
    simulator.variables[421] = 10;
    EXPECT_EQ(TotalFuelFlow(), 40);
}

TEST_F(SimlinkTest, EventValuesAreTruncatedTowardZero) {
    SendKeyEvent(KeyEvent::VerticalSpeedSet, -1870.9);
    SendKeyEvent(KeyEvent::AltitudeSet, 35000.9);
    SendKeyEvent(KeyEvent::AltitudeSet, kNan);
    EXPECT_THAT(simulator.events,
                ::testing::ElementsAre(std::pair{66036, static_cast<std::uint32_t>(-1870)},
                                       std::pair{66124, 35000U}));
}

TEST_F(SimlinkTest, NumbersBecomeParameters) {
    const std::pair<std::int32_t, std::int32_t> codes[] = {
        {11390, 0x11390}, {-5, 0}, {2147483647, 0x47483647}};
    for (const auto& [value, bcd] : codes) {
        EXPECT_EQ(ToBcd(value), bcd) << value;
    }
    const std::pair<double, std::int32_t> headings[] = {{0.6, 360}, {360.4, 360}, {123.7, 123},
                                                        {361, 1},   {-10, 350},   {-1e300, 232}};
    for (const auto& [degrees, whole] : headings) {
        EXPECT_EQ(WholeHeading(degrees), whole) << degrees;
    }
}

TEST_F(SimlinkTest, WithoutAHostNothingHappens) {
    PanelServices empty;
    for (PanelServices* const services : {static_cast<PanelServices*>(nullptr), &empty}) {
        ImportTable.panel.services = services;
        RefreshAircraftState();
        SendKeyEvent(KeyEvent::PauseToggle, 0);
        RegisterExportedVariables();
        UnregisterExportedVariables();
        TogglePanelWindow(4001);
        EXPECT_FALSE(PanelWindowShown(0));
        EXPECT_EQ(FuelOnBoard(), 0);
    }
}

TEST(PlatformServicesTest, MembersBeyondTheStatedSizeDoNotExist) {
    PlatformServices services;
    services.key_state = [](std::int32_t) -> std::int32_t { return 1; };
    PlatformTable.services = &services;
    services.size = static_cast<std::uint32_t>(offsetof(PlatformServices, key_state) +
                                               sizeof(services.key_state));
    EXPECT_EQ(KeyState(0x41), 1);
    services.size -= 1;
    EXPECT_EQ(KeyState(0x41), 0);
    services.vertical_profile = [](const VerticalProfileRecord*) {};
    EXPECT_FALSE(HostDrawsProfile());
    PlatformTable.services = nullptr;
    std::uint8_t keys[256];
    keys[30] = 0x80;
    EXPECT_EQ(ReadKeyboardState(keys), 0);
    EXPECT_EQ(keys[30], 0);
    EXPECT_EQ(SetThreadKeyboardHook(nullptr), 0);
    ReportTextDrawn(nullptr, "", 0, 0, 0, 0);
}

}  // namespace
}  // namespace avq1
