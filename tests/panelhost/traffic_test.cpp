// Other aircraft: scenes read from text, flown, judged, and told of in the traffic module's block.
#include "panelhost/world/traffic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "panelhost/world/traffic_threat.h"

namespace panelhost {
namespace {

TEST(TrafficThreats, FollowTimeAndSeparation) {
    // closing at 480 kt 8 nm take a minute, at 360 kt 6 nm
    const struct {
        Encounter encounter;
        double altitudeFt;
        Threat threat;
    } cases[] = {
        {{10, -480, 0, 0}, 32000, Threat::Other},
        {{4.9, -480, 690, 0}, 32000, Threat::Resolution},
        {{4.9, -480, 710, 0}, 32000, Threat::Traffic},
        {{4.9, -480, -840, 0}, 32000, Threat::Traffic},
        {{4.9, -480, -860, 0}, 32000, Threat::Proximate},
        {{4.9, -480, 1190, 0}, 32000, Threat::Proximate},
        {{4.9, -480, 1210, 0}, 32000, Threat::Other},
        {{4.9, -480, -1210, 2500}, 32000, Threat::Resolution},  // the same altitude in 29 s
        {{4.9, -480, -1210, -2500}, 32000, Threat::Other},
        {{4.9, -480, 1210, -1800}, 32000, Threat::Traffic},  // in 40 s
        {{5.9, 0, 0, 0}, 32000, Threat::Proximate},
        {{6.1, 0, 0, 0}, 32000, Threat::Other},
        {{1.25, 300, 0, 0}, 32000, Threat::Traffic},  // near, whichever way it flies
        {{1.05, 300, 0, 0}, 32000, Threat::Resolution},
        {{4.9, -480, 900, 0}, 43000, Threat::Traffic},
        {{4.9, -480, 0, 0}, 15000, Threat::Traffic},  // less time lower down
        {{4.9, -480, 0, 0}, 3000, Threat::Proximate},
        {{1.2, -180, 0, 0}, 1500, Threat::Traffic},
        {{0.6, -180, 0, 0}, 1500, Threat::Resolution},
        {{0.6, -180, 0, 0}, 900, Threat::Traffic},  // nothing to resolve near the ground
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ThreatOf(c.encounter, c.altitudeFt, c.altitudeFt), c.threat)
            << c.encounter.rangeNm << " nm, " << c.encounter.relativeAltitudeFt << " ft, "
            << c.encounter.relativeClimbFpm << " ft/min at " << c.altitudeFt;
    }
    // a mile a second
    const struct {
        double altitudeFt, trafficS, resolutionS;
    } times[] = {{900, 20, 0},    {1500, 25, 15},  {3000, 30, 20}, {7000, 40, 25},
                 {15000, 45, 30}, {32000, 48, 35}, {45000, 48, 35}};
    for (const auto& row : times) {
        const auto threatIn = [&row](double seconds) {
            return ThreatOf({seconds, -3600, 0, 0}, row.altitudeFt, row.altitudeFt);
        };
        SCOPED_TRACE(row.altitudeFt);
        EXPECT_EQ(threatIn(row.trafficS - 0.1), Threat::Traffic);
        EXPECT_EQ(threatIn(row.trafficS + 0.1), Threat::Other);
        if (row.resolutionS > 0) {
            EXPECT_EQ(threatIn(row.resolutionS - 0.1), Threat::Resolution);
            EXPECT_EQ(threatIn(row.resolutionS + 0.1), Threat::Traffic);
        }
    }
    // over high ground height counts for the lowest rows, altitude for the others
    EXPECT_EQ(ThreatOf({0.6, -180, 0, 0}, 6000, 900), Threat::Traffic);
}

World EastBound() {
    World world;
    world.aircraft.position = {45, 10};
    world.aircraft.altitudeFt = 32000;
    world.aircraft.headingTrue = world.aircraft.trackTrue = 90;
    world.aircraft.groundSpeedKt = 480;
    return world;
}

// The world and its traffic flown on, a second at a time.
void Fly(World& world, Traffic& traffic, int seconds) {
    for (int i = 0; i < seconds; ++i) {
        world.aircraft.position = Destination(world.aircraft.position, world.aircraft.trackTrue,
                                              world.aircraft.groundSpeedKt / 3600);
        StepTraffic(world, traffic, 1);
    }
}

Traffic Reading(const char* text) {
    Traffic traffic;
    std::vector<std::string> warnings;
    traffic.scenes = ParseTrafficScenes(text, warnings);
    EXPECT_TRUE(warnings.empty()) << warnings.front();
    return traffic;
}

int ThreatOf(const avq1::TrafficRecord& record) {
    return static_cast<int>(record.flags >> avq1::kTrafficThreatBit & 0xFU);
}
int TrendOf(const avq1::TrafficRecord& record) {
    const int bits = static_cast<int>(record.flags >> avq1::kTrafficTrendBit & 0xFU);
    return bits < 8 ? bits : bits - 16;
}
double BearingDeg(const avq1::TrafficRecord& record) {
    return AngleDifference(0, record.relativeBearingRad * kDegreesPerRadian);
}

TEST(TrafficScenes, MeetTheOwnAircraftAsWritten) {
    const struct {
        const char* plan;
        double bearing;    // at the start, from the nose
        double rangeNm;    // then
        double meetingFt;  // between them at the meeting
        int trend;
    } cases[] = {{"[s]\nA meets 60 90 0 200 0", -45, 8 * std::sqrt(2.0), 200, 0},
                 {"[s]\nA meets 60 -90 0 0 0", 45, 8 * std::sqrt(2.0), 0, 0},
                 {"[s]\nA meets 60 180 0 -500 0", 0, 16, -500, 0},
                 {"[s]\nA meets 60 0 60 0 0", 180, 1, 0, 0},
                 {"[s]\nA meets 60 0 -60 0 2400", 0, 1, 0, 1},
                 {"[s]\nA meets 60 180 0 100 -1800", 0, 16, 100, -1}};
    for (const auto& c : cases) {
        World world = EastBound();
        Traffic traffic = Reading(c.plan);
        StartTraffic(traffic, &traffic.scenes[0]);
        StepTraffic(world, traffic, 0.05);
        ASSERT_EQ(traffic.block.count, 1) << c.plan;
        EXPECT_LT(std::abs(AngleDifference(c.bearing, BearingDeg(traffic.records[0]))), 1.5)
            << c.plan;
        EXPECT_NEAR(traffic.records[0].rangeNm, c.rangeNm, 0.05) << c.plan;
        EXPECT_EQ(TrendOf(traffic.records[0]), c.trend) << c.plan;
        Fly(world, traffic, 60);
        EXPECT_LT(traffic.records[0].rangeNm, 0.15) << c.plan;
        EXPECT_NEAR(traffic.records[0].relativeAltitudeFt, c.meetingFt, 45) << c.plan;
    }
}

TEST(TrafficScenes, ThreatsGrowUntilTheMeetingAndPass) {
    World world = EastBound();
    Traffic traffic = Reading("[s]\nA meets 90 180 0 -500 0");
    StartTraffic(traffic, &traffic.scenes[0]);
    std::map<int, int> seconds;  // spent in each threat
    int before = 0;
    for (int second = 0; second < 90; ++second) {
        Fly(world, traffic, 1);
        const int threat = ThreatOf(traffic.records[0]);
        EXPECT_GE(threat, before) << second;
        before = threat;
        ++seconds[threat];
    }
    EXPECT_NEAR(seconds[0], 90 - 48, 2);
    EXPECT_NEAR(seconds[2], 48 - 35, 2);
    EXPECT_NEAR(seconds[3], 35, 2);
    Fly(world, traffic, 60);
    EXPECT_EQ(ThreatOf(traffic.records[0]), 0);
}

TEST(TrafficScenes, FlyTheirRoutesRoundAndRound) {
    World world = EastBound();
    // 30 nm north in 6 minutes at 300 kt, climbing 3000 ft, and again
    Traffic traffic = Reading(
        "[s]\nA flies 300 60 45,10,30000 45.5,10,33000\nB flies 300 0 "
        "45.2,10,30000 45.5,10,30000 45.5,12,30000");
    StartTraffic(traffic, &traffic.scenes[0]);
    StepTraffic(world, traffic, 1);
    const OtherAircraft& first = traffic.aircraft[0];
    EXPECT_NEAR(DistanceNm(first.position, {45, 10}), 5, 0.01);
    EXPECT_NEAR(first.altitudeFt, 30500, 2);
    for (int i = 0; i < 150; ++i) {
        StepTraffic(world, traffic, 1);
    }
    EXPECT_NEAR(first.altitudeFt, 31750, 2);
    StepTraffic(world, traffic, 200);  // 410 s: once round and 50 s
    EXPECT_NEAR(DistanceNm(first.position, {45, 10}), 50 * 300.0 / 3600, 0.03);
    EXPECT_LT(first.altitudeFt, 30500);
    const OtherAircraft& second = traffic.aircraft[1];
    EXPECT_GT(second.position.longitude, 10.1);  // round its corner
    StepTraffic(world, traffic, 36000);
    EXPECT_LE(first.position.latitude, 45.51);
    // an hour's leg east ends to the second, then it goes north
    Traffic hours = Reading("[s]\nC flies 300 0 0,10,30000 0,15,30000 5,15,30000");
    StartTraffic(hours, &hours.scenes[0]);
    StepTraffic(world, hours, 0);
    StepTraffic(world, hours, DistanceNm({0, 10}, {0, 15}) / 300 * 3600 + 0.5);
    EXPECT_NEAR(hours.aircraft[0].trackTrue, 0, 0.01);
}

TEST(TrafficScenes, TellTheMostThreateningLast) {
    World world = EastBound();
    Traffic traffic = Reading(
        "[s]\nFAR meets 0 0 0 9000 0\nNEAR meets 30 180 0 0 0\nGONE flies 300 0 50,20,1 51,20,1\n"
        "SIDE meets 60 90 0 0 0");
    StartTraffic(traffic, &traffic.scenes[0]);
    const std::uint16_t before = traffic.block.updateCounter;
    StepTraffic(world, traffic, 0.05);
    ASSERT_EQ(traffic.block.count, 3);  // one is out of hearing
    EXPECT_EQ(ThreatOf(*traffic.block.records[2]), 3);
    EXPECT_EQ(ThreatOf(*traffic.block.records[1]), 0);
    EXPECT_LT(traffic.block.records[1]->rangeNm, traffic.block.records[0]->rangeNm);
    EXPECT_EQ(traffic.block.updateCounter, static_cast<std::uint16_t>(before + 1));
    EXPECT_EQ(traffic.block.taken, 1U);
    for (int i = 0; i < 45; ++i) {
        StepTraffic(world, traffic, 0.05);  // two seconds and a bit more
    }
    EXPECT_EQ(traffic.block.updateCounter, static_cast<std::uint16_t>(before + 3));
    StartTraffic(traffic, nullptr);
    StepTraffic(world, traffic, 0.05);
    EXPECT_EQ(traffic.block.count, 0);
}

TEST(TrafficScenes, AreReadLineByLine) {
    std::vector<std::string> warnings;
    const auto scenes = ParseTrafficScenes(
        "\xEF\xBB\xBF; other aircraft\r\nLOST meets 1 2 3 4 5\r\n[One] First scene ; of two\r\n"
        "A meets 1 2 3 4 5 ; good\r\nB meets 1 2 3 4\r\nC meets 1 2 3 4 x\r\nD meets -1 0 0 0 0\r\n"
        "E flies 300 0 45,10,1000\r\nF flies 300 0 45,10,1000 46,10\r\nG flies 300 0 45,10,1 95,1,1"
        "\r\nH flies 0 0 45,10,1000 46,10,1000\r\nI dances 1\r\n\r\n[]\r\n[two words] x\r\n"
        "[two]\r\nJ flies 300 0 45,10,1000 46,10,1000\r\n[broken",
        warnings);
    ASSERT_EQ(scenes.size(), 2U);
    EXPECT_EQ(scenes[0].name, "one");
    EXPECT_EQ(scenes[0].title, "First scene");
    ASSERT_EQ(scenes[0].plans.size(), 1U);
    EXPECT_EQ(scenes[0].plans[0].aboveFt, 4);
    EXPECT_EQ(scenes[1].plans.size(), 1U);
    const int wrong[] = {2, 5, 6, 7, 8, 9, 10, 11, 12, 14, 15, 18};
    ASSERT_EQ(warnings.size(), std::size(wrong));
    for (std::size_t i = 0; i < std::size(wrong); ++i) {
        EXPECT_EQ(warnings[i], "traffic.txt line " + std::to_string(wrong[i]) + " cannot be read");
    }
}

}  // namespace
}  // namespace panelhost
