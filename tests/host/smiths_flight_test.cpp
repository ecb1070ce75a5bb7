// A flight with cruise altitude and speeds entered on the Smiths-style unit as it goes on.
#include <gmock/gmock.h>

#include <algorithm>

#include "base/module_state.h"
#include "cdu_smiths/fake_smiths.h"
#include "flightplan/hold_pattern.h"
#include "guidance/activation.h"
#include "guidance/lnav.h"
#include "settings/settings.h"
#include "support/vertical_flight.h"

namespace avq1::test {
namespace {

constexpr double kFrameS = 0.5;
constexpr double kLongestS = 4000;
constexpr std::int32_t kPauseEvent = 65561;

class SmithsFlight : public ::testing::Test {
  protected:
    SmithsFlight() {
        ResetModuleState();
        FakeSimulator::Install();
        performance = JetPerformance();
        SetActivePlan(
            {{"KAAA", 0, 0, "APT"}, {"FIXAA", 0, 1}, {"FIXBB", 0, 2}, {"KBBB", 0, 3, "APT"}});
        FakeSimulator::Get().variables[773] = 1;
        pilot.Report();
        RefreshAircraftState();
        StartActivePlan();
        InstallSmiths();
        pilot.Fly(kFrameS);
    }

    // Until `done`; false when it never is.
    template <typename Done>
    bool FlyUntil(Done done) {
        while (!done() && pilot.seconds < kLongestS) {
            pilot.Fly(kFrameS);
            pauses = FakeSimulator::Get().CountEvents(kPauseEvent);
        }
        return pilot.seconds < kLongestS;
    }
    bool FlyFor(double seconds) {
        const double until = pilot.seconds + seconds;
        return FlyUntil([&] { return pilot.seconds >= until; });
    }

    VerticalPilot pilot;
    FakeSmiths cdu;
    int pauses = 0;
};

TEST_F(SmithsFlight, WhatIsExecutedIsFlown) {
    settings.ArmPauseAtTod = 1;
    cdu.Press("INIT_REF =160 R1");
    EXPECT_NE(vnav.cruiseAltitude, 16000);
    cdu.Press("EXEC");
    EXPECT_EQ(vnav.cruiseAltitude, 16000);
    EngageLnav();
    ToggleVnav();
    ASSERT_TRUE(FlyUntil([&] { return pilot.altitudeFt > 6000; }));
    cdu.Press("CLB =295 L2");
    ASSERT_TRUE(FlyFor(20));
    EXPECT_NEAR(pilot.targetKt, 250, 0) << "below 10000 ft, and not executed";
    cdu.Press("EXEC");
    ASSERT_TRUE(FlyUntil([&] { return pilot.altitudeFt > 14000; }));
    EXPECT_NEAR(pilot.airspeedKt, 295, 3);
    ASSERT_TRUE(FlyUntil([] { return vnav.Phase() == VerticalPhase::Cruise; }));
    ASSERT_TRUE(FlyFor(30));
    EXPECT_NEAR(pilot.altitudeFt, 16000, 60);
    cdu.Press("CRZ =180 L1 R6");
    ASSERT_TRUE(FlyFor(30));
    EXPECT_NEAR(pilot.altitudeFt, 16000, 60) << "waits for EXEC";
    cdu.Press("EXEC L6 EXEC");
    ASSERT_TRUE(FlyFor(180));
    EXPECT_NEAR(pilot.altitudeFt, 18000, 60);
    EXPECT_NEAR(pilot.airspeedKt, 270, 3) << "long range";
    cdu.Press("DES R4 EXEC");
    EXPECT_EQ(pauses, 0);
    ASSERT_TRUE(FlyUntil([] { return vnav.Phase() == VerticalPhase::Descent; }));
    ASSERT_TRUE(FlyUntil([&] { return pilot.altitudeFt < 12000; }));
    EXPECT_EQ(pauses, 1);
    EXPECT_NEAR(pilot.airspeedKt, 300, 3);
    cdu.Press("CLB DES");
    EXPECT_THAT(cdu.Title(), ::testing::HasSubstr("ACT|ECON  PATH  DES"));
    ASSERT_TRUE(FlyUntil([&] { return pilot.longitude * 60 > 175; }));
    EXPECT_NEAR(pilot.airspeedKt, 250, 5);
    EXPECT_LT(pilot.altitudeFt, 2500);
}

TEST_F(SmithsFlight, AHoldIsFlownAsExecutedAndLeft) {
    EngageLnav();
    cdu.Press("HOLD L2 L2 =90/L L3 =8 L5");
    EXPECT_THAT(cdu.Title(), ::testing::HasSubstr("MOD|RTE        HOLD|1 / 1"));
    EXPECT_THAT(cdu.Data(1), ::testing::StartsWith("FIXBB|"));
    cdu.Press("EXEC");
    double mostNorth = 0;
    double mostSouth = 0;
    ASSERT_TRUE(FlyUntil([&] {
        mostNorth = std::max(mostNorth, pilot.latitude * 60);
        mostSouth = std::min(mostSouth, pilot.latitude * 60);
        return holdFlight.holdTargetCorner == 4;
    }));
    EXPECT_NEAR(mostNorth, 4, 2) << "to the left, half as wide as long";
    EXPECT_GT(mostSouth, -1);
    cdu.Press("HOLD R6");
    EXPECT_EQ(holdList.count, 1) << "it goes on to its exit point";
    ASSERT_TRUE(FlyUntil([] { return holdList.count == 0; }));
    EXPECT_NEAR(pilot.longitude, 2, 0.1);
    ASSERT_TRUE(FlyUntil([] { return planBook.activeIndex == 3; }));
    cdu.Press("LEGS");
    EXPECT_EQ(cdu.Data(1).substr(0, 4), "KBBB");
}

}  // namespace
}  // namespace avq1::test
