#include "panelhost/world/radios.h"

#include <gtest/gtest.h>

#include <cmath>

#include "panelhost/world/flight_model.h"
#include "panelhost/world/key_events.h"
#include "panelhost/world/variables.h"

namespace panelhost {
namespace {

constexpr double kVariation = 4;

double Variation(const World&, const GeoPoint&) {
    return kVariation;
}

Ground MakeGround() {
    Ground ground;
    std::vector<std::string> warnings;
    ParseStations(
        ";AIRAC cycle\n;AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)\nALF ALFA 45.0 10.0 VOR "
        "113.90\nFAR FARAWAY 49.0 10.0 VOR 113.90\n"
        "NB BEACON 45.5 10.0 NDB 385\nbad line\nBAD BAD north 1 VOR 110.00\n",
        ground);
    ParseAirports("LXXX FIELD 1500 45.0 11.0\nLYYY OTHER 300 45.0 12.5\nshort line\n", ground);
    ParseLocalizers("; header\nIXX 110.30 45.0 11.0 90 3.00 1500 LXXX 09\nIYY 99 0 0 0 0 0 X Y\n",
                    ground, warnings);
    EXPECT_EQ(warnings.size(), 1U);
    return ground;
}

class Radios : public testing::Test {
  protected:
    void Send(int event, std::uint32_t value) { FindKeyEvent(event)->apply(world, value); }
    double Read(int number) { return ReadVariable(world, number).value_or(-1); }
    void ReceiveAt(const GeoPoint& position, double altitudeFt) {
        world.aircraft.position = position;
        world.aircraft.altitudeFt = altitudeFt;
        UpdateReceivers(ground, Variation, world);
    }

    Ground ground = MakeGround();
    World world;
};

TEST_F(Radios, VorNeedleAndToFromFollowTheRadial) {
    // Radial magnetic = radial true - 4. Inbound from the west (radial 270 true) is course 086.
    const struct {
        double radialTrue;  // where the aircraft is, from the station
        int courseMag;
        int toFrom;
        double needle;  // 127 is 10 degrees; positive: the course lies to the right
    } rows[] = {
        {270, 81, 1, 63.5},   {270, 91, 1, -63.5}, {270, 60, 1, 127}, {270, 271, 2, 63.5},
        {270, 261, 2, -63.5}, {0, 176, 1, 0},      {2, 360, 2, 25.4},
    };
    for (const auto& row : rows) {
        world = World{};
        world.aircraft.headingTrue = 40;
        Send(65708, 0x11390);
        Send(65716, static_cast<std::uint32_t>(row.courseMag));
        ReceiveAt(Destination({45, 10}, row.radialTrue, 30), 10000);
        ASSERT_EQ(world.nav1.ident, "ALF") << "the nearer of two on one frequency";
        EXPECT_EQ(world.nav1.toFrom, row.toFrom) << row.radialTrue << " " << row.courseMag;
        EXPECT_NEAR(Read(40), row.needle, 0.01) << row.radialTrue << " " << row.courseMag;
        EXPECT_NEAR(AngleDifference(Read(550), row.radialTrue + 180 - 40), 0, 0.6);
        EXPECT_NEAR(Read(31), std::hypot(30, 10000 / kFeetPerNm), 0.01);
        EXPECT_EQ(Read(46), 1);
        EXPECT_GT(Read(49), 0);
    }
}

TEST_F(Radios, FrequenciesComeInBinaryCodedDecimal) {
    Send(65708, 0x11390);
    Send(65708, 0x1030);
    EXPECT_EQ(world.nav1.frequency, 11030) << "four digits, as the simulator sends them";
    Send(65708, 0x1A30);
    Send(65708, 0x15000);
    EXPECT_EQ(world.nav1.frequency, 11030) << "no digits, out of the band";
}

TEST_F(Radios, OutOfReachThereIsNoSignal) {
    world.nav1.frequency = 11390;
    ReceiveAt(Destination({45, 10}, 90, 150), 5000);
    EXPECT_EQ(Read(49), 0);
    EXPECT_EQ(Read(31), 0);
    ReceiveAt(world.aircraft.position, 35000);
    EXPECT_GT(Read(49), 0) << "line of sight grows with height";
}

TEST_F(Radios, AdfPointsToTheBeacon) {
    world.aircraft.headingTrue = 90;
    Send(65714, 0x385);
    for (const std::uint32_t nonsense : {0U, 0x189U, 0x1800U, 0x38AU, 0x99999999U}) {
        Send(65714, nonsense);
    }
    ReceiveAt({45.0, 10.0}, 0);
    EXPECT_GT(Read(20), 0);
    EXPECT_NEAR(Read(39), 270, 0.01);
}

TEST_F(Radios, LocalizerAndGlideslopeGiveTheSidesOfThePath) {
    const GeoPoint touchdown = Destination({45, 11}, 90, 1000 / kFeetPerNm);
    Send(65708, 0x11030);
    const auto readAt = [&](int number, double alongNm, double rightNm, double aboveFt) {
        ReceiveAt(Destination(Destination(touchdown, 270, alongNm), 180, rightNm),
                  1500 + std::tan(3 / kDegreesPerRadian) * alongNm * kFeetPerNm + aboveFt);
        return Read(number);
    };
    EXPECT_LT(readAt(40, 8, 0.2, 0), -20) << "right of the centre line: fly left";
    EXPECT_GT(readAt(41, 8, 0, 300), 20) << "above the path: the pointer is low, counted positive";
    EXPECT_EQ(readAt(46, 40, 0, 0), 0) << "too far";
    EXPECT_EQ(readAt(354, 4.66, 0, 0), 1) << "outer marker";
}

TEST_F(Radios, TheDataAreOverBehindTheirLastDay) {
    EXPECT_EQ(ground.cycle.number, "2309");
    EXPECT_EQ(ground.cycle.begin, "07-SEP-2023");
    const struct {
        const char* end;
        int year, dayOfYear;
        bool over;
    } cases[] = {{"05-OCT-2023", 2023, 278, false},
                 {"05-OCT-2023", 2023, 279, true},
                 {"05-OCT-2023", 2008, 366, false},
                 {"05-OCT-2023", 2024, 1, true},
                 {"31-FEB-2023", 2024, 1, false},
                 {"05-ANF-2023", 2024, 1, false},
                 {"", 2024, 1, false}};
    for (const auto& c : cases) {
        world.clock.year = c.year;
        world.clock.startDayOfYear = c.dayOfYear;
        EXPECT_EQ(IsOver({"2309", "07-SEP-2023", c.end}, world), c.over) << c.end << c.year;
    }
}

TEST_F(Radios, FliesAnApproachToTheRunway) {
    // The other end of the runway on the same frequency: its antenna lies on our side.
    std::vector<std::string> warnings;
    ParseLocalizers("IZZ 110.30 45.0 11.04 270 3 1500 LXXX 27 45.0 10.995\n", ground, warnings);
    world.magneticVariation = kVariation;
    world.aircraft.position = Destination(Destination({45, 11}, 270, 15), 180, 2);
    world.aircraft.headingTrue = 60;
    world.aircraft.altitudeFt = 4000;
    world.aircraft.indicatedAirspeedKt = 160;
    world.aircraft.heldAirspeedKt = 160;
    FillTanks(world.aircraft, 10000);
    for (const int event : {65580, 65724, 65804}) {
        Send(event, 0);
    }
    world.autopilot.altitudeTargetFt = 4000;
    Send(65708, 0x11030);
    double worstFt = 0;
    for (int i = 0; i < 20 * 900 && !world.aircraft.onGround; ++i) {
        world.groundElevationFt = GroundElevationFt(ground, world.aircraft.position);
        UpdateReceivers(ground, Variation, world);
        StepFlight(world, 0.05);
        const double toGo = DistanceNm(world.aircraft.position, {45, 11});
        if (world.autopilot.glideslopeCaptured && toGo < 6 && toGo > 1) {
            worstFt =
                std::max(worstFt, std::fabs(CrossTrackNm({45, 11}, 270, world.aircraft.position)) *
                                      kFeetPerNm);
        }
    }
    EXPECT_TRUE(world.aircraft.onGround);
    EXPECT_LT(worstFt, 200) << "beside the centre line";
    const double beyondNm =
        (world.aircraft.position.longitude - 11) * 60 * std::cos(45 / kDegreesPerRadian);
    EXPECT_GT(beyondNm, 0) << "not before the runway";
    EXPECT_LT(beyondNm, 0.6);
    EXPECT_GT(world.aircraft.verticalSpeedFpm, -400) << "flared";
}

}  // namespace
}  // namespace panelhost
