// The link to FlightGear without FlightGear: packets as its generic protocol writes them, key
// events as the module sends them, and what goes out.
#include "panelhost/flightgear/live_link.h"

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <sstream>

#include "panelhost/base/text.h"
#include "panelhost/world/key_events.h"
#include "panelhost/world/variables.h"

namespace panelhost {
namespace {

constexpr const char* kKey = "0123456789abcdef";

std::string FileText(const std::string& name) {
    std::ifstream file(std::string(AVQ1_SOURCE_DIR "/") + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

AutopilotMapping Mapping(const char* name = "generic") {
    std::string problem;
    const auto mapping =
        ReadMapping(FileText(std::string("demo/flightgear/") + name + ".json"), problem);
    EXPECT_TRUE(mapping.has_value()) << problem;
    return mapping.value_or(AutopilotMapping{});
}

// The simulator's properties; one that is not here is absent.
using Properties = std::map<std::string, std::string>;

Properties InFlight() {
    return {{"/position/latitude-deg", "42.5"},
            {"/position/longitude-deg", "-71.25"},
            {"/position/altitude-ft", "10000"},
            {"/position/altitude-agl-ft", "9500"},
            {"/orientation/heading-deg", "350"},
            {"/orientation/track-deg", "352"},
            {"/orientation/pitch-deg", "3"},
            {"/orientation/roll-deg", "-12"},
            {"/velocities/airspeed-kt", "250"},
            {"/velocities/groundspeed-kt", "300"},
            {"/velocities/vertical-speed-fps", "-10"},
            {"/environment/magnetic-variation-deg", "-14"},
            {"/environment/wind-from-heading-deg", "280"},
            {"/environment/wind-speed-kt", "30"},
            {"/environment/pressure-sea-level-inhg", "29.53"},
            {"/sim/time/elapsed-sec", "100"},
            {"/sim/time/utc/day-seconds", "45296"},
            {"/sim/time/utc/year", "2024"},
            {"/sim/time/utc/month", "3"},
            {"/sim/time/utc/day", "1"},
            {"/sim/time/local-offset", "-14400"},
            {"/sim/speed-up", "1"},
            {"/sim/freeze/clock", "false"},
            {"/sim/freeze/master", "false"},
            {"/controls/gear/brake-parking", "0"},
            {"/engines/engine[0]/fuel-flow-gph", "400"},
            {"/engines/engine[1]/fuel-flow-gph", "300"},
            {"/consumables/fuel/tank[0]/level-gal_us", "500"},
            {"/consumables/fuel/tank[0]/level-norm", "0.5"},
            {"/consumables/fuel/tank[1]/level-gal_us", "250"},
            {"/consumables/fuel/tank[1]/level-norm", "0.25"},
            {"/consumables/fuel/tank[0]/density-ppg", "6.5"},
            {"/yasim/gross-weight-lbs", "90000"},
            {"/instrumentation/nav[0]/frequencies/selected-mhz", "111.3"},
            {"/instrumentation/nav[0]/radials/selected-deg", "224"},
            {"/instrumentation/nav[0]/in-range", "true"},
            {"/instrumentation/nav[0]/nav-loc", "true"},
            {"/instrumentation/nav[0]/gs-in-range", "true"},
            {"/instrumentation/nav[0]/heading-deg", "20"},
            {"/instrumentation/nav[0]/heading-needle-deflection-norm", "0.5"},
            {"/instrumentation/nav[0]/gs-needle-deflection-norm", "-0.5"},
            {"/instrumentation/nav[0]/to-flag", "true"},
            {"/instrumentation/nav[0]/nav-id", "IBUF"},
            {"/instrumentation/nav[1]/in-range", "true"},
            {"/instrumentation/nav[1]/nav-loc", "false"},
            {"/instrumentation/nav[1]/gs-in-range", "true"},
            {"/instrumentation/nav[1]/heading-deg", "80"},
            {"/instrumentation/nav[1]/heading-needle-deflection-norm", "-0.2"},
            {"/instrumentation/nav[1]/gs-needle-deflection-norm", "0.4"},
            {"/instrumentation/nav[1]/from-flag", "true"},
            {"/instrumentation/nav[1]/nav-id", "BUF"},
            {"/instrumentation/dme[0]/in-range", "true"},
            {"/instrumentation/dme[0]/indicated-distance-nm", "12.5"},
            {"/instrumentation/dme[0]/indicated-ground-speed-kt", "150"},
            {"/instrumentation/dme[1]/in-range", "true"},
            {"/instrumentation/dme[1]/indicated-distance-nm", "7.5"},
            {"/instrumentation/dme[1]/indicated-ground-speed-kt", "140"},
            {"/instrumentation/adf[0]/in-range", "true"},
            {"/instrumentation/adf[0]/indicated-bearing-deg", "30"},
            {"/instrumentation/adf[0]/ident", "LO"},
            {"/instrumentation/marker-beacon/outer", "false"},
            {"/instrumentation/marker-beacon/middle", "true"},
            {"/autopilot/locks/heading", ""},
            {"/autopilot/locks/altitude", ""},
            {"/autopilot/locks/speed", ""},
            {"/autopilot/settings/heading-bug-deg", "350"},
            {"/autopilot/settings/target-altitude-ft", "10000"},
            {"/autopilot/settings/vertical-speed-fpm", "0"},
            {"/autopilot/settings/target-speed-kt", "250"}};
}

// The simulator's side of the protocol, as the files written for it say.
std::vector<std::string> NodesOf(const std::string& protocol) {
    std::vector<std::string> nodes;
    for (std::size_t at = protocol.find("<node>"); at != std::string::npos;
         at = protocol.find("<node>", at + 1)) {
        nodes.push_back(protocol.substr(at + 6, protocol.find("</node>", at) - at - 6));
    }
    return nodes;
}

std::string Datagram(const std::string& protocol, const char* kind, double clockS,
                     const Properties& properties) {
    std::string text = OpeningOf(kind, kKey) + Format(" %.6f", clockS);
    const std::vector<std::string> nodes = NodesOf(protocol);
    for (std::size_t i = 1; i < nodes.size(); ++i) {
        const auto found = properties.find(nodes[i]);
        text += "\t" + (found != properties.end() ? found->second : "");
    }
    return text + "\n";
}

class LiveLinkTest : public testing::Test {
  protected:
    void Start(const AutopilotMapping& mapping) {
        mapping_ = mapping;
        protocol_ = StateProtocol(mapping_, kKey);
        OpenLink(mapping_, kKey, link_);
        Step();
    }
    void SetUp() override { Start(Mapping()); }

    PacketFault Tell(double clockS) {
        return Hear(link_, Datagram(protocol_, kStateKind, clockS, simulator_), nowS_);
    }

    // One packet and one frame of 40 ms; what was sent is obeyed when `obeys`.
    void Step(bool tells = true) {
        nowS_ += 0.04;
        if (tells) {
            EXPECT_EQ(Tell(nowS_), PacketFault::None);
        }
        sent_ = StepLink(link_, nowS_, world_, traffic_);
        if (!sent_.empty()) {
            ++sends_;
        }
        if (obeys_ && !sent_.empty()) {
            Obey(sent_);
        }
    }
    void Run(double seconds, bool tells = true) {
        for (double t = 0; t < seconds - 1e-9; t += 0.04) {
            Step(tells);
        }
    }

    void Obey(const std::string& packet) {
        const std::vector<std::string> nodes = NodesOf(ControlProtocol(mapping_));
        const std::string text = packet.substr(0, packet.find('\n'));
        std::size_t node = 0;
        for (const std::string_view value : SplitOn(text, '\t')) {
            simulator_[nodes[node++]] = std::string(value);
        }
    }

    void Event(int number, int value = 0) {
        FindKeyEvent(number)->apply(world_, static_cast<std::uint32_t>(value));
    }

    double Read(int number) const { return ReadVariable(world_, number).value_or(-9999); }

    AutopilotMapping mapping_;
    std::string protocol_;
    Properties simulator_ = InFlight();
    LiveLink link_;
    World world_;
    Traffic traffic_;
    double nowS_ = 1000;
    bool obeys_ = true;
    std::string sent_;
    int sends_ = 0;
};

TEST_F(LiveLinkTest, EveryVariableComesInItsUnitAndSign) {
    Run(0.2);
    const std::pair<int, double> rows[] = {{71, 42.5 * 10001750 / 90},
                                           {74, 10000},
                                           {77, -3},
                                           {80, 12},
                                           {81, 4},
                                           {86, 350},
                                           {82, -14},
                                           {61, 250},
                                           {343, 30},
                                           {344, 280},
                                           {3, 8},
                                           {4, 34},
                                           {5, 56},
                                           {6, 12},
                                           {7, 34},
                                           {8, 61},
                                           {9, 2024},
                                           {336, 1},
                                           {638, 350 * 6.5},
                                           {657, 350 * 6.5},
                                           {291, 8388608 * 0.5},
                                           {292, 1000},
                                           {297, 8388608 * 0.25},
                                           {298, 1000},
                                           {306, 6.5},
                                           {40, 63.5},
                                           {41, 60},
                                           {45, 224},
                                           {46, 0xC1},
                                           {49, 256},
                                           {550, 30},
                                           {58, 256},
                                           {59, 90},
                                           {31, 12.5},
                                           {32, 150},
                                           {35, 7.5},
                                           {20, 256},
                                           {39, 30},
                                           {354, 2},
                                           {107, 350},
                                           {109, 10000},
                                           {116, 250},
                                           {323, 0},
                                           {852, 1},
                                           {773, 1}};
    for (const auto& [number, expected] : rows) {
        EXPECT_NEAR(Read(number), expected, 1e-6) << number;
    }
    EXPECT_NEAR(Read(551) * 0.5924837511331251, 300, 1e-6);
    EXPECT_NEAR(Read(65) * 0.7689468503937007, -600, 1e-6);
    EXPECT_NEAR(Read(614) * 3.2808399, 9500, 1e-6);
    EXPECT_NEAR(world_.aircraft.emptyWeightLb, 90000 - 750 * 6.5, 1e-6);
    EXPECT_EQ(PayloadPounds(world_.aircraft), 0) << "part of the weight told";
    const struct {
        const Receiver& nav;
        const char* ident;
        double deviationDeg, glideslopeDeg, dmeSpeedKt;
        int toFrom;
        bool isLocalizer, hasGlideslope;
    } receivers[] = {{world_.nav1, "IBUF", 1.25, 0.35, 150, 1, true, true},
                     {world_.nav2, "BUF", -2, -0.28, 140, 2, false, true}};
    for (const auto& row : receivers) {
        EXPECT_EQ(row.nav.ident, row.ident);
        EXPECT_NEAR(row.nav.deviationDeg, row.deviationDeg, 1e-9) << row.ident;
        EXPECT_NEAR(row.nav.glideslopeDeg, row.glideslopeDeg, 1e-9) << row.ident;
        EXPECT_EQ(row.nav.dmeSpeedKt, row.dmeSpeedKt) << row.ident;
        EXPECT_EQ(row.nav.toFrom, row.toFrom) << row.ident;
        EXPECT_EQ(row.nav.isLocalizer, row.isLocalizer) << row.ident;
        EXPECT_EQ(row.nav.hasGlideslope, row.hasGlideslope) << row.ident;
    }
    EXPECT_EQ(world_.adf.ident, "LO");
    EXPECT_EQ(sends_, 0) << "what was only told is not sent back";
    simulator_["/sim/time/utc/day"] = "40";
    simulator_["/consumables/fuel/tank[0]/level-gal_us"] = "0.102";
    simulator_["/consumables/fuel/tank[0]/level-norm"] = "0.000102";
    Run(0.12);
    EXPECT_EQ(Read(8), 91) << "no month has a fortieth";
    simulator_["/instrumentation/marker-beacon/outer"] = "true";
    Step();
    EXPECT_EQ(Read(354), 1);
    for (const char* const wheels : {"", "1", "2"}) {
        simulator_["/gear/gear[" + std::string(wheels) + "]/wow"] = "true";
        Step();
        EXPECT_EQ(world_.aircraft.onGround, *wheels != '\0') << wheels;
        simulator_["/gear/gear[" + std::string(wheels) + "]/wow"] = "false";
    }
    EXPECT_NEAR(Read(292), 1000, 1e-6);
    simulator_["/consumables/fuel/tank[0]/level-norm"] = "0.00009";
    Run(0.12);
    EXPECT_NEAR(Read(292), 1000, 1e-6) << "nearly empty: as large as it was";
}

TEST_F(LiveLinkTest, WhatTheAircraftDoesNotHaveIsNotZero) {
    struct Row {
        const char* property;
        std::vector<int> variables;
    };
    const Row rows[] = {{"/position/altitude-agl-ft", {614}},
                        {"/environment/wind-speed-kt", {343}},
                        {"/instrumentation/nav[0]/in-range", {46, 49, 852}},
                        {"/instrumentation/dme[0]/indicated-distance-nm", {31}},
                        {"/instrumentation/adf[0]/indicated-bearing-deg", {39}},
                        {"/autopilot/settings/target-speed-kt", {116}},
                        {"/consumables/fuel/tank[0]/level-norm",
                         {289, 290, 291, 292, 293, 294, 295, 296, 299, 300, 301, 302}},
                        {"/consumables/fuel/tank[1]/level-norm", {297, 298}},
                        {"/engines/engine[1]/fuel-flow-gph", {657}}};
    for (const Row& row : rows) {
        simulator_ = InFlight();
        simulator_.erase(row.property);
        Run(0.12);
        for (const int number : row.variables) {
            EXPECT_TRUE(std::isnan(Read(number))) << row.property << " " << number;
        }
        for (const char* nonsense : {"nan", "1e23", "-2e9"}) {
            simulator_[row.property] = nonsense;
            Step();
            EXPECT_TRUE(std::isnan(Read(row.variables[0]))) << row.property << " " << nonsense;
        }
    }
}

TEST_F(LiveLinkTest, KeyEventsSetTheSimulator) {
    struct Row {
        std::vector<std::pair<int, int>> events;
        const char* property;
        const char* value;
    };
    const Row rows[] = {
        {{{66042, 120}}, "/autopilot/settings/heading-bug-deg", "120"},
        {{{65879, 0}, {65879, 0}}, "/autopilot/settings/heading-bug-deg", "352"},
        {{{66036, -1500}}, "/autopilot/settings/vertical-speed-fpm", "-1500"},
        {{{66037, 230}}, "/autopilot/settings/target-speed-kt", "230"},
        {{{66124, 9000}}, "/autopilot/settings/target-altitude-ft", "9000"},
        {{{65580, 0}, {65803, 0}}, "/autopilot/locks/heading", "dg-heading-hold"},
        {{{65580, 0}, {65807, 0}}, "/autopilot/locks/heading", "nav1-hold"},
        {{{65580, 0}, {65804, 0}}, "/autopilot/locks/altitude", "altitude-hold"},
        {{{65580, 0}, {66102, 0}}, "/autopilot/locks/altitude", "vertical-speed-hold"},
        {{{65858, 0}}, "/autopilot/locks/speed", "speed-with-throttle"},
        {{{65708, 0x11090}}, "/instrumentation/nav[0]/frequencies/selected-mhz", "110.9"},
        {{{65716, 31}}, "/instrumentation/nav[0]/radials/selected-deg", "31"},
        {{{65714, 0x385}}, "/instrumentation/adf[0]/frequencies/selected-khz", "385"},
        {{{65584, 0}}, "/instrumentation/altimeter/setting-inhg", "29.53"},
        {{{65561, 0}}, "/sim/freeze/clock", "true"},
        {{{65561, 0}}, "/sim/freeze/master", "true"},
        {{{65752, 0}}, "/controls/gear/brake-parking", "1"},
    };
    for (const Row& row : rows) {
        simulator_ = InFlight();
        world_ = World{};
        Start(Mapping());
        for (const auto& [number, value] : row.events) {
            Event(number, value);
        }
        const Properties before = simulator_;
        Run(0.2);
        EXPECT_EQ(simulator_[row.property], row.value) << row.events[0].first;
        Properties after = simulator_;
        after[row.property] = before.contains(row.property) ? before.at(row.property) : "";
        for (const auto& [property, value] : before) {
            EXPECT_TRUE(after[property] == value || property.starts_with("/sim/freeze"))
                << row.events[0].first << " changes " << property;
        }
    }
    world_.aircraft.fuelGallons[1] = 100;
    world_.simulationRate = 16;
    Run(0.2);
    EXPECT_EQ(simulator_["/consumables/fuel/tank[0]/level-gal_us"], "100");
    EXPECT_EQ(simulator_["/sim/speed-up"], "16");
}

TEST_F(LiveLinkTest, ThePilotsOwnChangesComeBack) {
    const struct {
        const char* property;
        const char* text;
        double (*read)(const World& world);
        double expected;
    } rows[] = {
        {"/autopilot/settings/heading-bug-deg", "45.4",
         [](const World& w) { return 1.0 * w.autopilot.headingBugMag; }, 45},
        {"/autopilot/settings/heading-bug-deg", "359.7",
         [](const World& w) { return 1.0 * w.autopilot.headingBugMag; }, 360},
        {"/autopilot/settings/target-altitude-ft", "60001",
         [](const World& w) { return 1.0 * w.autopilot.altitudeTargetFt; }, 60000},
        {"/autopilot/settings/target-altitude-ft", "-1",
         [](const World& w) { return 1.0 * w.autopilot.altitudeTargetFt; }, 0},
        {"/autopilot/settings/vertical-speed-fpm", "6001",
         [](const World& w) { return 1.0 * w.autopilot.verticalSpeedTargetFpm; }, 6000},
        {"/autopilot/settings/vertical-speed-fpm", "-6001",
         [](const World& w) { return 1.0 * w.autopilot.verticalSpeedTargetFpm; }, -6000},
        {"/autopilot/settings/target-speed-kt", "402",
         [](const World& w) { return 1.0 * w.autopilot.airspeedTargetKt; }, 400},
        {"/instrumentation/nav[0]/frequencies/selected-mhz", "113.5",
         [](const World& w) { return 1.0 * w.nav1.frequency; }, 11350},
        {"/instrumentation/nav[1]/frequencies/selected-mhz", "200.02",
         [](const World& w) { return 1.0 * w.nav2.frequency; }, 20000},
        {"/instrumentation/nav[1]/radials/selected-deg", "0",
         [](const World& w) { return 1.0 * w.nav2.courseMag; }, 360},
        {"/instrumentation/adf[0]/frequencies/selected-khz", "379",
         [](const World& w) { return 1.0 * w.adf.frequency; }, 379},
        {"/instrumentation/adf[0]/frequencies/selected-khz", "2002",
         [](const World& w) { return 1.0 * w.adf.frequency; }, 2000},
        {"/sim/speed-up", "66", [](const World& w) { return w.simulationRate; }, 64},
        {"/sim/speed-up", "0.2", [](const World& w) { return w.simulationRate; }, 0.25},
        {"/sim/speed-up", "0", [](const World& w) { return w.simulationRate; }, 1},
        {"/sim/freeze/master", "true", [](const World& w) { return w.paused ? 1.0 : 0; }, 1},
        {"/controls/gear/brake-parking", "1",
         [](const World& w) { return w.aircraft.parkingBrake ? 1.0 : 0; }, 1},
        {"/consumables/fuel/tank[0]/level-gal_us", "-3",
         [](const World& w) { return w.aircraft.fuelGallons[1]; }, 0},
    };
    for (const auto& row : rows) {
        simulator_ = InFlight();
        simulator_[row.property] = row.text;
        Run(0.2);
        EXPECT_EQ(row.read(world_), row.expected) << row.property << " " << row.text;
    }
    simulator_ = InFlight();
    simulator_["/autopilot/locks/heading"] = "dg-heading-hold";
    simulator_["/autopilot/locks/altitude"] = "vertical-speed-hold";
    Run(0.2);
    EXPECT_EQ(Read(106), 1);
    EXPECT_EQ(Read(103), 1);
    EXPECT_TRUE(world_.autopilot.verticalSpeedHold);
    simulator_["/autopilot/locks/heading"] = "";
    simulator_["/autopilot/locks/altitude"] = "";
    Run(0.2);
    EXPECT_EQ(Read(106), 0);
    EXPECT_EQ(Read(103), 0);
    EXPECT_EQ(sends_, 0);
}

TEST_F(LiveLinkTest, AnAutopilotThatFliesAlreadyIsTakenOver) {
    simulator_["/autopilot/locks/heading"] = "wing-leveler";
    world_ = World{};
    Start(Mapping());
    EXPECT_EQ(Read(103), 1);
    Event(65802);
    Run(0.2);
    EXPECT_EQ(simulator_["/autopilot/locks/heading"], "nav1-hold");
}

TEST_F(LiveLinkTest, AnOldValueOnItsWayIsNoPilot) {
    obeys_ = false;
    Event(66042, 120);
    Run(0.52);
    EXPECT_EQ(Read(107), 120) << "the old value is still told";
    EXPECT_EQ(sends_, 1);
    Step();
    EXPECT_EQ(sends_, 2) << "lost on the way: once more";
    Run(0.48);
    EXPECT_EQ(Read(107), 120);
    Step();
    EXPECT_EQ(sends_, 2);
    EXPECT_EQ(Read(107), 350) << "the simulator does not take it";
    Event(66042, 130);
    Run(3, false);
    EXPECT_EQ(world_.autopilot.headingBugMag, 130) << "a silent simulator refuses nothing";
    Run(0.04);
    EXPECT_EQ(Read(107), 350);
}

TEST_F(LiveLinkTest, ASendCarriesAlongOnlyWhatStandsBeforeIt) {
    Event(66042, 120);
    Step();
    EXPECT_EQ(sent_, "120\n");
    Event(66124, 9000);
    Step();
    EXPECT_EQ(sent_, "120\t0\t250\t9000\n");
}

TEST_F(LiveLinkTest, ASelectedAltitudeIsClimbedToAndHeld) {
    Event(65580);
    Event(65804);
    Event(66036, 1500);
    Event(66124, 12000);
    Run(0.2);
    EXPECT_EQ(simulator_["/autopilot/locks/altitude"], "vertical-speed-hold");
    EXPECT_EQ(simulator_["/autopilot/settings/vertical-speed-fpm"], "1500");
    EXPECT_EQ(Read(108), 1) << "for the module it is altitude hold";
    const struct {
        int selectedFt;
        const char* altitudeFt;
        const char* mode;
        const char* fpm;
    } rows[] = {{12000, "11800", "vertical-speed-hold", "800"},
                {12000, "11925", "vertical-speed-hold", "300"},
                {12000, "11926", "altitude-hold", "1500"},
                {12176, "11926", "altitude-hold", "1500"},
                {12177, "11926", "vertical-speed-hold", "1000"},
                {12282, "11926", "vertical-speed-hold", "1400"},
                {8000, "11926", "vertical-speed-hold", "-1500"}};
    for (const auto& row : rows) {
        Event(66124, row.selectedFt);
        simulator_["/position/altitude-ft"] = row.altitudeFt;
        Run(0.2);
        EXPECT_EQ(simulator_["/autopilot/locks/altitude"], row.mode) << row.altitudeFt;
        EXPECT_EQ(simulator_["/autopilot/settings/vertical-speed-fpm"], row.fpm) << row.altitudeFt;
    }
}

TEST_F(LiveLinkTest, AnApproachCapturesItsGlideslope) {
    simulator_["/instrumentation/nav[0]/heading-needle-deflection-norm"] = "0.1";
    simulator_["/instrumentation/nav[0]/gs-needle-deflection-norm"] = "0.9";
    Event(65580);
    Event(65804);
    Event(65802);
    Run(0.2);
    EXPECT_EQ(simulator_["/autopilot/locks/heading"], "nav1-hold");
    EXPECT_EQ(simulator_["/autopilot/locks/altitude"], "altitude-hold");
    EXPECT_EQ(Read(112), 1);
    simulator_["/instrumentation/nav[0]/gs-needle-deflection-norm"] = "0.1";
    Run(0.2);
    EXPECT_EQ(simulator_["/autopilot/locks/altitude"], "gs1-hold");
    simulator_["/autopilot/locks/heading"] = "dg-heading-hold";
    Run(0.2);
    EXPECT_EQ(Read(112), 0) << "the pilot has left the approach";
}

TEST_F(LiveLinkTest, AnAirlinersModesAreItsOwnNumbers) {
    world_ = World{};
    Start(Mapping("777"));
    Event(65580);
    Event(65803);
    Event(65804);
    Event(65858);
    Run(0.2);
    EXPECT_EQ(simulator_["/instrumentation/afds/inputs/AP"], "true");
    EXPECT_EQ(simulator_["/instrumentation/afds/inputs/lateral-index"], "2");
    EXPECT_EQ(simulator_["/instrumentation/afds/inputs/vertical-index"], "1");
    EXPECT_EQ(simulator_["/instrumentation/afds/inputs/autothrottle-index"], "5");
}

TEST_F(LiveLinkTest, AnApproachModeOfItsOwnIsNoNavHold) {
    AutopilotMapping mapping = Mapping();
    mapping.lateral.modes[2] = "loc-hold";
    Start(mapping);
    const struct {
        const char* mode;
        int nav, approach;
    } rows[] = {{"nav1-hold", 1, 0}, {"loc-hold", 0, 1}, {"dg-heading-hold", 0, 0}};
    for (const auto& row : rows) {
        simulator_["/autopilot/locks/heading"] = row.mode;
        Step();
        Step();
        EXPECT_EQ(Read(105), row.nav) << row.mode;
        EXPECT_EQ(Read(112), row.approach) << row.mode;
    }
    const std::pair<int, const char*> events[] = {{65807, "nav1-hold"}, {65802, "loc-hold"}};
    for (const auto& [number, mode] : events) {
        Event(number);
        Run(0.12);
        EXPECT_EQ(simulator_["/autopilot/locks/heading"], mode);
    }
}

TEST(FlightGearPackets, ValuesAreNumbersOrNone) {
    const std::pair<const char*, double> rows[] = {
        {"true", 1}, {"false", 0}, {"-1.5e2", -150}, {"1e9", 1e9}, {"-1e9", -1e9}};
    for (const auto& [text, number] : rows) {
        EXPECT_EQ(NumberIn(text), number) << text;
    }
    for (const char* const none : {"", "True", "5x", " 5", "1.01e9", "-1.01e9", "nan", "inf"}) {
        EXPECT_TRUE(std::isnan(NumberIn(none))) << none;
    }
}

TEST_F(LiveLinkTest, OnlyNewPacketsOfThisLinkAreTaken) {
    const std::string good = Datagram(protocol_, kStateKind, nowS_ + 5, simulator_);
    std::string control = good;
    control[good.size() / 2] = '\x01';
    const struct {
        std::string datagram;
        PacketFault fault;
    } rows[] = {{"", PacketFault::Alien},
                {"\n", PacketFault::Alien},
                {"AVQ1-state-fedcba9876543210 5" + good.substr(27), PacketFault::Alien},
                {good.substr(0, good.size() - 1), PacketFault::Malformed},
                {good.substr(0, good.size() / 2) + "\n", PacketFault::Malformed},
                {good.substr(0, good.size() - 1) + "\t1\n", PacketFault::Malformed},
                {control, PacketFault::Malformed},
                {OpeningOf(kStateKind, kKey) + " soon" + good.substr(good.find('\t')),
                 PacketFault::Malformed},
                {good + std::string(kMostPacketBytes, '\n'), PacketFault::Malformed},
                {Datagram(protocol_, kStateKind, nowS_, simulator_), PacketFault::OutOfOrder},
                {Datagram(protocol_, kStateKind, nowS_ - 1, simulator_), PacketFault::OutOfOrder},
                {good, PacketFault::None},
                {good, PacketFault::OutOfOrder}};
    for (const auto& row : rows) {
        EXPECT_EQ(Hear(link_, row.datagram, nowS_), row.fault) << row.datagram.substr(0, 60);
    }
}

TEST_F(LiveLinkTest, ALostLinkFlagsTheFlightAndComesBackByItself) {
    Event(65580);
    Event(65803);
    Run(0.2);
    const double tick = Read(1);
    Run(0.8, false);
    EXPECT_FALSE(std::isnan(Read(71)));
    Run(0.3, false);
    for (const int lost : {71, 72, 74, 77, 80, 81, 61, 551, 107, 40}) {
        EXPECT_TRUE(std::isnan(Read(lost))) << lost;
    }
    for (const int kept : {291, 306, 46, 49, 638, 773}) {
        EXPECT_FALSE(std::isnan(Read(kept))) << kept;
    }
    EXPECT_EQ(Read(1), tick);
    const double flightTimeS = world_.clock.flightTimeS;
    simulator_["/sim/time/elapsed-sec"] = "2";  // started again
    simulator_["/orientation/heading-deg"] = "180";
    EXPECT_EQ(Tell(3), PacketFault::None);
    sent_ = StepLink(link_, nowS_, world_, traffic_);
    EXPECT_NEAR(Read(86), 180, 1e-9) << "and not between then and now";
    EXPECT_EQ(Read(106), 1);
    EXPECT_EQ(world_.clock.flightTimeS, flightTimeS);
}

TEST_F(LiveLinkTest, FramesLieBetweenPackets) {
    StateHistory history;
    HeardState state;
    for (int i = 0; i < 40; ++i) {
        state.arrivalS = i / 60.0;
        state.values[At(Told::Longitude)] = AngleDifference(0, 179.99 + 0.001 * i);
        state.values[At(Told::Heading)] = Normalise360(359.8 + 0.01 * i);
        state.values[At(Told::Altitude)] = 1000 + i;
        Remember(history, state);
    }
    const double nowS = 39.4 / 60;
    const ToldValues values = ValuesAt(history, nowS);
    EXPECT_NEAR(values[At(Told::Altitude)], 1038.4, 0.02) << "one packet before";
    EXPECT_NEAR(AngleDifference(values[At(Told::Longitude)], 179.99 + 0.0384), 0, 1e-4);
    EXPECT_NEAR(AngleDifference(values[At(Told::Heading)], 359.8 + 0.384), 0, 1e-3);
    EXPECT_NEAR(ValuesAt(history, 2)[At(Told::Altitude)], 1039, 1e-9) << "never beyond the last";
    EXPECT_TRUE(std::isnan(ValuesAt({}, 2)[At(Told::Altitude)]));
}

TEST_F(LiveLinkTest, OtherAircraftBecomeTargets) {
    Properties others;
    const auto add = [&others](const std::string& node, double latitude, double speed) {
        const char* const texts[] = {"true", "", "-71.25", "10200", "170", "", "0"};
        for (std::size_t i = 0; i < kTrafficProperties.size(); ++i) {
            others[node + "/" + kTrafficProperties[i]] = texts[i];
        }
        others[node + "/position/latitude-deg"] = Format("%.4f", latitude);
        others[node + "/velocities/true-airspeed-kt"] = Format("%.0f", speed);
    };
    add("/ai/models/aircraft[3]", 42.59, 400);
    add("/ai/models/multiplayer[0]", 43, 300);
    add("/ai/models/multiplayer[1]", 43, 300);
    others["/ai/models/multiplayer[1]/valid"] = "false";
    const std::string protocol = TrafficProtocol(kKey);
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(Hear(link_, Datagram(protocol, kTrafficKind, nowS_, others), nowS_),
                  PacketFault::None);
        simulator_["/sim/time/elapsed-sec"] = Format("%.3f", 100 + nowS_);
        Step();
    }
    ASSERT_EQ(traffic_.block.count, 2);
    const std::uint32_t threat = traffic_.block.records[1]->flags >> avq1::kTrafficThreatBit & 0xFU;
    EXPECT_EQ(threat, 3U) << "half a minute ahead, head-on";
    EXPECT_NEAR(traffic_.block.records[1]->rangeNm, 5.4, 0.2);
    const std::uint16_t told = traffic_.block.updateCounter;
    for (int i = 0; i < 200; ++i) {
        simulator_["/sim/time/elapsed-sec"] = Format("%.3f", 100 + nowS_);
        Step();
    }
    EXPECT_TRUE(traffic_.aircraft.empty()) << "no longer told";
    EXPECT_NEAR(traffic_.block.updateCounter, told + 3, 1) << "silent after three seconds";
}

TEST(FlightGearFiles, AMappingFileIsReadWholeOrNotAtAll) {
    const std::pair<const char*, const char*> rows[] = {
        {"", "not a JSON object"},
        {"[1]", "not a JSON object"},
        {R"({"lateral": 1})", "lateral.property is not a property"},
        {R"({"lateral": {"property": "autopilot/locks"}})", "lateral.property is not a property"},
        {R"({"targets": {"altitude": "/a<b"}})", "targets.altitude is not a property"},
        {R"({"speed": {"airspeed": 5}})", "speed.airspeed is not a text"},
        {R"({"speed": {"property": "speed"}})", "speed.property is not a property"},
        {R"({"tanks": {"centre": 7}})", "tanks: whole numbers from -1 to 6"},
        {R"({"tanks": {"leftTip": -2}})", "tanks: whole numbers from -1 to 6"},
        {R"({"tanks": 1})", "tanks: whole numbers from -1 to 6"},
        {R"({"engines": 0})", "engines: a whole number from 1 to 4"},
        {R"({"engines": 5})", "engines: a whole number from 1 to 4"},
    };
    for (const auto& [json, expected] : rows) {
        std::string problem;
        EXPECT_FALSE(ReadMapping(json, problem).has_value()) << json;
        EXPECT_EQ(problem, expected) << json;
    }
    std::string problem;
    const auto nothing = ReadMapping("{}", problem);
    ASSERT_TRUE(nothing.has_value()) << problem;
    EXPECT_EQ(nothing->engines, 2);
    const auto most =
        ReadMapping(R"({"engines": 4, "tanks": {"centre": -1, "rightTip": 6}})", problem);
    ASSERT_TRUE(most.has_value()) << problem;
    EXPECT_EQ(most->engines, 4);
    EXPECT_EQ(most->tanks, (std::array<int, kTankCount>{-1, -1, -1, -1, -1, -1, 6}));
    using M = AutopilotMapping;
    const struct {
        const char* json;
        std::string (*read)(const M& mapping);
    } texts[] = {
        {R"({"name": "x"})", [](const M& m) { return m.name; }},
        {R"({"lateral": {"off": "x"}})", [](const M& m) { return m.lateral.off; }},
        {R"({"lateral": {"approach": "x"}})", [](const M& m) { return m.lateral.modes[2]; }},
        {R"({"vertical": {"off": "x"}})", [](const M& m) { return m.vertical.off; }},
        {R"({"vertical": {"glideslope": "x"}})", [](const M& m) { return m.vertical.modes[2]; }},
        {R"({"speed": {"off": "x"}})", [](const M& m) { return m.speed.off; }},
        {R"({"master": {"property": "/x"}})",
         [](const M& m) { return m.master.property.substr(1); }},
        {R"({"master": {"on": "x"}})", [](const M& m) { return m.master.on; }},
        {R"({"master": {"off": "x"}})", [](const M& m) { return m.master.off; }},
        {R"({"avionics": {"property": "/x"}})",
         [](const M& m) { return m.avionics.property.substr(1); }},
        {R"({"avionics": {"on": "x"}})", [](const M& m) { return m.avionics.on; }},
        {R"({"avionics": {"off": "x"}})", [](const M& m) { return m.avionics.off; }},
    };
    for (const auto& row : texts) {
        const auto mapping = ReadMapping(row.json, problem);
        ASSERT_TRUE(mapping.has_value()) << problem;
        EXPECT_EQ(row.read(*mapping), "x") << row.json;
    }
}

TEST(FlightGearFiles, TheLineToStartWithNamesAddressesAndPorts) {
    EXPECT_EQ(StartOptions("/a b", {}),
              "--data='/a b' --generic=socket,out,60,127.0.0.1,5510,udp,avq1-state"
              " --generic=socket,out,5,127.0.0.1,5510,udp,avq1-traffic"
              " --generic=socket,in,60,127.0.0.1,5511,udp,avq1-controls");
    EXPECT_EQ(StartOptions("/a", {"192.0.2.1", 6000}),
              "--data='/a' --generic=socket,out,60,ADDRESS_OF_THIS_MACHINE,6000,udp,avq1-state"
              " --generic=socket,out,5,ADDRESS_OF_THIS_MACHINE,6000,udp,avq1-traffic"
              " --generic=socket,in,60,,6001,udp,avq1-controls");
}

TEST(FlightGearFiles, TheDocumentedTablesAreTheOnesFlownWith) {
    const std::string docs = FileText("docs/flightgear.md");
    const std::size_t tables = docs.find("| AVQ1 variable |");
    ASSERT_NE(tables, std::string::npos);
    EXPECT_EQ(docs.substr(tables), PropertyTables(Mapping()));
}

TEST(FlightGearFiles, StateRowsStandInThePacketsOrder) {
    ASSERT_EQ(StateTable().size(), kToldCount);
    for (std::size_t i = 0; i < kToldCount; ++i) {
        EXPECT_EQ(At(StateTable()[i].told), i) << StateTable()[i].property;
    }
}

}  // namespace
}  // namespace panelhost
