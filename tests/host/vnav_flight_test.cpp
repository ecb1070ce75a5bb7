// Whole flights under vertical guidance: climb, cruise and descent through restrictions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <span>
#include <string>
#include <utility>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "cdu_gns/fake_unit.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/lnav.h"
#include "platform/services.h"
#include "settings/settings.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"
#include "support/vertical_flight.h"

namespace avq1 {
namespace {

using test::RouteFix;
using test::VerticalPilot;
using ::testing::AllOf;
using ::testing::Ge;
using ::testing::Le;

constexpr double kFrameS = 0.5;

// What a flight is judged by.
struct Flown {
    double topOfClimbNm = -1;
    double topOfClimbS = 0;
    double topOfDescentNm = -1;
    double arrivalS = -1;
    double arrivalLb = 0;
    PredictedPoint arrivalAtTop;  // as predicted at the top of climb
    double worstPathFt = 0;
};

class VnavFlight : public ::testing::Test {
  public:
    VnavFlight() { ResetModuleState(); }
    ~VnavFlight() override { ImportTable.panel.services = nullptr; }

    // From the ground or, cheaper, in cruise from some miles along the route on.
    void Depart(const std::vector<RouteFix>& fixes, std::int32_t cruiseFt, double tailwindKt,
                double fromNm = 0) {
        test::FakeSimulator::Install().variables[773] = 1;  // the units have power
        performance = file();
        test::SetActiveRoute(fixes);
        planBook.cruiseAltitudeFt = cruiseFt;
        pilot = {};
        pilot.tailwindKt = tailwindKt;
        if (fromNm > 0) {
            pilot.longitude = fromNm / 60;
            pilot.altitudeFt = pilot.targetFt = cruiseFt;
            pilot.airspeedKt = pilot.targetKt = performance.cruiseIas;
        }
        pilot.Report();
        RefreshAircraftState();
        StartActivePlan();
        for (std::int32_t i = 2; fixes[i - 1].longitude * 60 < fromNm; ++i) {
            SetActiveWaypoint(i);
        }
        pilot.Fly(kFrameS);
        EngageLnav();
        ToggleVnav();
        atFixes.assign(fixes.size(), {});
    }

    double AlongNm() const { return pilot.longitude * 60; }
    static bool InDescent() { return vnav.descentActive != 0; }
    bool Once() { return !std::exchange(done, true); }

    void Watch(const std::vector<RouteFix>& fixes) {
        if (vnav.topOfClimbReached != 0 && flown.topOfClimbNm < 0) {
            flown.topOfClimbNm = AlongNm();
            flown.arrivalAtTop = ActivePredictions().destination;
            flown.arrivalAtTop.minutes -= 3 / flown.arrivalAtTop.groundSpeedKt * 60;
            flown.topOfClimbS = pilot.seconds;
        }
        if (vnav.descentActive != 0 && flown.topOfDescentNm < 0) {
            flown.topOfDescentNm = AlongNm();
        }
        const bool settled = vnav.descentActive != 0 && vnav.distanceSinceTod > 5 &&
                             vnav.distanceToTarget > 5 && vnav.crossingIndex == 0;
        if (settled && pilot.verticalEvents.size() > seen) {
            settledEvents.push_back(pilot.verticalEvents.back());
        }
        seen = pilot.verticalEvents.size();
        if (vnav.descentActive != 0 && vnav.distanceSinceTod > 0) {
            const double offFt = std::fabs(pilot.altitudeFt - vnav.pathAltitude);
            if (offFt > flown.worstPathFt) {
                flown.worstPathFt = offFt;
            }
        }
        for (std::size_t i = 0; i < fixes.size(); ++i) {
            const double climbSide = fixes[i].longitude < fixes.back().longitude / 2 ? 3.0 : 0.0;
            if (AlongNm() <= fixes[i].longitude * 60 - climbSide) {
                atFixes[i] = pilot;
            }
        }
    }

    // Flies on to 3 nm, the change distance of the last entry; `disturb` may do something in any
    // frame.
    void Arrive(const std::vector<RouteFix>& fixes, void (*disturb)(VnavFlight&) = nullptr) {
        const double lastNm = fixes.back().longitude * 60;
        while (AlongNm() < lastNm - 3 && pilot.seconds < 4 * 3600) {
            pilot.Fly(kFrameS * pilot.simRate);
            Watch(fixes);
            if (disturb != nullptr) {
                disturb(*this);
            }
        }
        flown.arrivalS = pilot.seconds;
        flown.arrivalLb = pilot.fuelLb;
    }

    // The most vertical speeds sent within any minute, of all or of those on a settled path.
    static std::ptrdiff_t BusiestMinute(const std::vector<double>& sent) {
        std::ptrdiff_t most = 0;
        for (auto from = sent.begin(); from != sent.end(); ++from) {
            const auto to =
                std::find_if(from, sent.end(), [&](double at) { return at >= *from + 60; });
            most = std::max(most, to - from);
        }
        return most;
    }

    void ExpectMet(const std::vector<RouteFix>& fixes, std::size_t i) {
        EXPECT_NEAR(atFixes[i].altitudeFt, fixes[i].altitudeFt, 200) << fixes[i].ident;
        EXPECT_NEAR(atFixes[i].airspeedKt, fixes[i].speedKt, 10) << fixes[i].ident;
    }

    void ExpectCommandsInRange() {
        for (const auto& [event, parameter] : test::FakeSimulator::Get().events) {
            const auto value = static_cast<std::int32_t>(parameter);
            if (event == 66036) {
                EXPECT_LE(std::abs(value), 6000);
            } else if (event == 66124) {
                EXPECT_THAT(value, AllOf(Ge(0), Le(60000)));
            } else if (event == 66037) {
                EXPECT_THAT(value, AllOf(Ge(140), Le(310)));
            }
        }
    }

    AircraftPerformance (*file)() = test::JetPerformance;
    bool done = false;                  // what disturbs has happened
    std::size_t seen = 0;               // of the vertical speeds sent
    std::vector<double> settledEvents;  // when, on a settled path
    VerticalPilot pilot;
    Flown flown;
    std::vector<VerticalPilot> atFixes;  // as each was judged
};

const std::vector<RouteFix> kFixes = {{"KAAA", 0, 0, 20},
                                      {"SPEED", 0, 0.3, 5000, 1, 230},
                                      {"LEVEL", 0, 0.7, 12000, 1, 270},
                                      {"CLIMB", 0, 1.5},
                                      {"CRUIS", 0, 3.0},
                                      {"HIGH", 0, 4.3, 24000, 1, 270},
                                      {"MIDDL", 0, 4.9, 11000, 1, 250},
                                      {"LOW", 0, 5.3, 5000, 1, 230},
                                      {"KBBB", 0, 5.6, 700, 1}};

const std::vector<RouteFix> kShortFixes = {{"KAAA", 0, 0, 20},
                                           {"SPEED", 0, 0.3, 5000, 1, 160},
                                           {"LEVEL", 0, 0.7, 9000, 1, 170},
                                           {"CLIMB", 0, 1.0},
                                           {"CRUIS", 0, 2.0},
                                           {"HIGH", 0, 2.9, 14000, 1, 210},
                                           {"MIDDL", 0, 3.3, 9000, 1, 200},
                                           {"LOW", 0, 3.6, 4000, 1, 190},
                                           {"KBBB", 0, 3.9, 700, 1}};

TEST_F(VnavFlight, KeepsEveryRestrictionInAnyWind) {
    const struct {
        AircraftPerformance (*file)();
        const std::vector<RouteFix>& fixes;
        std::int32_t cruiseFt;
        double tailwindKt;
    } flights[] = {{test::JetPerformance, kFixes, 33000, 0},
                   {test::JetPerformance, kFixes, 33000, 40},
                   {test::JetPerformance, kFixes, 33000, -40},
                   {test::TurbopropPerformance, kShortFixes, 21000, 0},
                   {test::TurbopropPerformance, kShortFixes, 21000, 40},
                   {test::TurbopropPerformance, kShortFixes, 21000, -40}};
    for (const auto& [itsFile, fixes, cruiseFt, tailwindKt] : flights) {
        SCOPED_TRACE(cruiseFt);
        SCOPED_TRACE(tailwindKt);
        ResetModuleState();
        flown = {};
        seen = 0;
        settledEvents.clear();
        file = itsFile;
        Depart(fixes, cruiseFt, tailwindKt);
        RefreshPredictions();
        const Predictions before = ActivePredictions();
        Arrive(fixes);
        for (const std::size_t i : {1U, 2U, 5U, 6U, 7U}) {
            ExpectMet(fixes, i);
        }
        EXPECT_LE(flown.worstPathFt, 300);
        EXPECT_LE(BusiestMinute(pilot.verticalEvents), 12);
        EXPECT_LE(BusiestMinute(settledEvents), 6);
        EXPECT_FALSE(settledEvents.empty());
        EXPECT_NEAR(before.topOfClimb.distanceNm, flown.topOfClimbNm, 5);
        EXPECT_NEAR(before.topOfDescent.distanceNm, flown.topOfDescentNm, 3);
        EXPECT_NEAR(flown.topOfClimbS + flown.arrivalAtTop.minutes * 60, flown.arrivalS,
                    0.02 * (flown.arrivalS - flown.topOfClimbS));
        EXPECT_NEAR(flown.arrivalAtTop.fuelLb, flown.arrivalLb, 0.03 * flown.arrivalLb);
        EXPECT_LT(pilot.altitudeFt, 2200);
        ExpectCommandsInRange();
    }
}

TEST_F(VnavFlight, WhatThePilotChangesInTheDescentIsFlown) {
    using Disturb = void (*)(VnavFlight&);
    const struct {
        const char* what;
        Disturb disturb;
        std::vector<std::size_t> kept;  // restrictions that are met all the same
    } flights[] = {
        {"the altitude knob in the descent, VNAV stays on",
         [](VnavFlight& f) {
             settings.VnavOffOnManAltChg = 0;
             if (f.pilot.altitudeFt < 30000 && f.Once()) {
                 f.pilot.targetFt = 27000;
             }
         },
         {7}},
        {"a direct-to past a restriction, by the unit's keys",
         [](VnavFlight& f) {
             if (f.InDescent() && f.Once()) {
                 test::FakeGns().Press("DIRECT L4 ENTER");
                 EXPECT_EQ(ActiveWaypoint().ident, "MIDDL");
             }
         },
         {6, 7}},
        {"a restriction changed in the descent, by the unit's keys",
         [](VnavFlight& f) {
             if (f.InDescent() && f.Once()) {
                 test::FakeUnit().Press("CROSS UP*26 ENTER");
                 EXPECT_EQ(activePlan.entries[5].altitude, 26000);
             } else if (f.AlongNm() > 257 && f.AlongNm() < 258) {
                 EXPECT_NEAR(f.pilot.altitudeFt, 26000, 200);
             }
         },
         {6, 7}},
        {"a modification executed in the descent",
         [](VnavFlight& f) {
             if (f.InDescent() && f.Once()) {
                 CopyActiveToModified();
                 SetCrossing(modifiedPlan, 6, {12000, 250});
                 planBook.status = RouteStatus::Modified;
                 EXPECT_TRUE(ModifiedPredictions().entries[6].known);
                 EXPECT_NEAR(ModifiedPredictions().entries[6].altitudeFt, 12000, 100);
                 EXPECT_NEAR(ActivePredictions().entries[6].altitudeFt, 11000, 100);
                 EXPECT_TRUE(ExecuteModification());
                 EXPECT_NE(vnav.descentActive, 0);
             }
         },
         {5, 7}},
    };
    for (const auto& row : flights) {
        SCOPED_TRACE(row.what);
        ResetModuleState();
        flown = {};
        done = false;
        Depart(kFixes, 33000, 0, 200);  // in cruise, 20 nm before the descent
        Arrive(kFixes, row.disturb);
        EXPECT_TRUE(done);
        for (const std::size_t i : row.kept) {
            ExpectMet(kFixes, i);
        }
        EXPECT_EQ(guidance.vnavEngaged, 1);
        ExpectCommandsInRange();
    }
}

TEST_F(VnavFlight, BadInputIdlesOrIsSettled) {
    using Simulator = test::FakeSimulator;
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    const std::string good =
        "AAA 0.0 1.0 INT ---\nBBB 0.0 2.0 INT ---\nCCC 0.0 3.0 INT ---\nKBBB 0.0 4.0 APT ---\n";
    const struct {
        const char* what;
        const char* aircraftFile;
        const char* cruise;
        std::string plan;  // behind KAAA
        const char* keys;  // pressed on the compact unit
        bool idle;
        void (*spoil)(Simulator& simulator, int frame);
    } rows[] = {
        {"no aircraft file", nullptr, "CruiseAlt=20000\n", good, "TO", false, nullptr},
        {"no cruise altitude", "ClimbRate=1800\n", "", good, "TO", false, nullptr},
        {"none to be found", "ClimbRate=10\nClimbIas=20\n", "", good, "TO", true, nullptr},
        {"below 0", "ClimbRate=1800\n", "CruiseAlt=-5000\n", good, "TO", false, nullptr},
        {"far too high", "ClimbRate=3000\n", "CruiseAlt=99999\n", good, "TO", false, nullptr},
        {"no climb rate", "ClimbRate=0\n", "CruiseAlt=20000\n", good, "TO", true, nullptr},
        {"a rate downwards", "DescentRate=-900\n", "CruiseAlt=20000\n", good, "TO", true, nullptr},
        {"no descent speed", "DescentIas=0\n", "CruiseAlt=20000\n", good, "TO", true, nullptr},
        {"no speed at all", "ClimbIas=x\nCruiseIas=0\nClimbIasMin=0\nClimbIasMax=0\n",
         "CruiseAlt=20000\n", good, "TO", true, nullptr},
        {"limits exchanged", "ClimbIas=240\nClimbIasMin=300\nClimbIasMax=200\n",
         "CruiseAlt=20000\n", good, "TO", false, nullptr},
        {"a restriction above the cruise", nullptr, "CruiseAlt=20000\n", good,
         "CROSS UP*40 NEXT ENTER", false, nullptr},
        {"restrictions out of order", nullptr, "CruiseAlt=20000\n", good,
         "CROSS UP*4 NEXT*2 ENTER CROSS UP*9 NEXT*3 ENTER CROSS UP*12 ENTER CROSS UP*2 NEXT ENTER",
         false, nullptr},
        {"an empty plan", nullptr, "CruiseAlt=20000\n", "", "TO", true, nullptr},
        {"two entries", nullptr, "CruiseAlt=20000\n", "KBBB 0.0 4.0 APT ---\n", "TO", false,
         nullptr},
        {"two in one place", nullptr, "CruiseAlt=20000\n", "KBBB 0.0 0.0 APT ---\n", "TO", true,
         nullptr},
        {"gaps only", nullptr, "CruiseAlt=20000\n", "DISCO 0 0 --- ---\nDISCO 0 0 --- ---\n", "TO",
         true, nullptr},
        {"a gap in the descent", nullptr, "CruiseAlt=20000\n",
         "AAA 0.0 3.0 INT ---\nDISCO 0 0 --- ---\nKBBB 0.0 4.0 APT ---\n", "TO", false, nullptr},
        {"a gap at the end", nullptr, "CruiseAlt=20000\n", good + "DISCO 0 0 --- ---\n", "TO",
         false, nullptr},
        {"altitudes lost", nullptr, "CruiseAlt=20000\n", good, "TO", false,
         [](Simulator& simulator, int frame) {
             simulator.variables[74] = frame > 100 ? kNan : simulator.variables[74];
         }},
        {"positions lost", nullptr, "CruiseAlt=20000\n", good, "TO", false,
         [](Simulator& simulator, int frame) {
             simulator.variables[71] = frame > 100 ? kNan : simulator.variables[71];
         }},
        {"no altitude from the start", nullptr, "CruiseAlt=20000\n", good, "TO", false,
         [](Simulator& simulator, int) { simulator.variables[74] = kNan; }},
        {"speeds beyond any", nullptr, "CruiseAlt=20000\n", good, "TO", false,
         [](Simulator& simulator, int frame) {
             simulator.variables[551] = frame % 3 == 0 ? 1e300 : -1e300;
             simulator.variables[61] = frame % 2 == 0 ? kNan : 1e300;
             simulator.variables[343] = 1e300;
         }},
        {"standing still in the air", nullptr, "CruiseAlt=20000\n", good, "TO", false,
         [](Simulator& simulator, int) { simulator.variables[551] = 0; }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        ResetModuleState();
        test::TempSimFolder folder;
        Simulator& simulator = Simulator::Install();
        simulator.variables[773] = 1;
        AircraftName = "bad";
        if (row.aircraftFile != nullptr) {
            folder.Write("avq/Aircraft/bad.cfg", row.aircraftFile);
        }
        LoadAircraftFile();
        folder.Write("avq/flightplans/BAD.RTE",
                     row.cruise + ("[FlightPlan]\nKAAA 0.0 0.0 APT ---\n" + row.plan));
        requests.planLoadMode = 1;
        requests.planLoadName = "BAD.RTE";
        pilot = {};
        pilot.Fly(kFrameS);
        test::FakeUnit().Press(row.keys);
        EngageLnav();
        ToggleVnav();
        for (int frame = 0; frame < 800; ++frame) {
            pilot.ObeyEvents();
            pilot.Move(3);
            pilot.Report();
            if (row.spoil != nullptr) {
                row.spoil(simulator, frame);
            }
            simulator.NextTick();
            UpdateFrame();
            EXPECT_TRUE(std::isfinite(ActivePredictions().destination.minutes +
                                      ActivePredictions().topOfDescent.altitudeFt));
        }
        EXPECT_EQ(simulator.CountEvents(66124) == 0, row.idle);
        EXPECT_EQ(simulator.CountEvents(66036) == 0, row.idle);
        ExpectCommandsInRange();
        test::FakeGns unit;
        unit.Press("VNAV");
        const auto shown = unit.Rows();
        EXPECT_EQ(shown.at(1) == "INVALID|-----", row.idle) << shown[1];
    }
}

// What a host was told last.
VerticalProfileRecord toldProfile;
std::string toldPoints;

TEST_F(VnavFlight, AHostThatDrawsTheProfileIsToldIt) {
    PlatformServices services;
    services.size = sizeof services;
    services.vertical_profile = [](const VerticalProfileRecord* record) {
        toldProfile = *record;
        toldPoints.clear();
        for (const VerticalProfilePoint& point : std::span(record->points, record->count)) {
            toldPoints += Format("%s %.0f %d %.0f ", point.name, point.altitudeFt,
                                 static_cast<int>(point.kind), point.restrictionFt);
            toldPoints += point.restriction != 0 ? "! " : "";
        }
    };
    PlatformTable.services = &services;
    const struct {
        double fromNm;
        std::int32_t phase;
        const char* points;
    } rows[] = {{0, 0, "T/C 17000 1 0 AAA 17000 0 0 T/D 17000 2 0 BBB 9000 0 9000 ! KBBB 250 0 0 "},
                {60, 1, "T/D 17000 2 0 BBB 9000 0 9000 ! KBBB 250 0 0 "},
                {100, 2, "KBBB 250 0 0 "}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.fromNm);
        Depart({{"KAAA", 0, 0, 20}, {"AAA", 0, 1}, {"BBB", 0, 1.7, 9000, 1}, {"KBBB", 0, 2, 50}},
               17000, 0, row.fromNm);
        for (int frame = 0; frame < 4; ++frame) {
            pilot.Fly(kFrameS);
        }
        EXPECT_EQ(toldProfile.phase, row.phase);
        EXPECT_EQ(toldProfile.engaged, guidance.vnavEngaged);
        EXPECT_EQ(toldProfile.cruiseAltitudeFt, 17000);
        EXPECT_EQ(toldProfile.targetAltitudeFt, vnav.targetAltitude);
        EXPECT_EQ(toldProfile.pathAltitudeFt, vnav.pathAltitude);
        EXPECT_EQ(toldPoints, row.points);
    }
    PlatformTable.services = nullptr;
    ResetModuleState();
}

}  // namespace
}  // namespace avq1
