#include "guidance/holds.h"

#include <gtest/gtest.h>

#include "base/module_state.h"
#include "flightplan/hold_pattern.h"
#include "guidance/guidance_state.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::FakeSimulator;
using test::SetActivePlan;
using test::StartAt;
using test::TestAircraft;

class HoldsTest : public ::testing::Test {
  protected:
    HoldsTest() {
        ResetModuleState();
        SetActivePlan({{"AAA", -0.5, 0}, {"FIX", 0, 0}, {"BBB", 0.5, 0}, {"CCC", 1, 0}});
        PlanHoldAt(1);
        pilot.latitude = -0.2;
        pilot.headingTrue = 360;
        pilot.speedKt = 200;
        pilot.turnRateDegPerSecond = 3;
    }
    ~HoldsTest() override { ImportTable.panel.services = nullptr; }

    static bool PlanHoldAt(std::int32_t fixIndex) {
        HoldPattern hold;
        hold.fixIndex = fixIndex;
        hold.inboundCourseMag = 360;
        hold.legByTime = 0;
        hold.legDistanceNm = 5;
        return AddHold(hold);
    }
    // The steps of a frame that move the hold and the route on.
    void Step() {
        pilot.Fly(0.5);
        RefreshAircraftState();
        BuildAndFlyHold();
        DeletePassedHolds();
        SequenceWaypoint();
        RefreshLegGeometry();
        Steer();
        SendHeadingBug();
    }
    // Flies until the corner is the target; false when that takes more than twenty minutes.
    bool FlyToCorner(std::int32_t corner) {
        for (int i = 0; i < 2400 && holdFlight.holdTargetCorner != corner; ++i) {
            Step();
        }
        return holdFlight.holdTargetCorner == corner;
    }

    FakeSimulator& simulator = FakeSimulator::Install();
    TestAircraft pilot;
};

// The pattern is 5 nm long and 2.5 nm wide; the third corner, "Base", ends its 5 nm side south.
TEST_F(HoldsTest, ACornerIsReachedOrMissed) {
    const struct {
        double northNm, eastNm;  // of the corner
        bool turns;
    } rows[] = {{1.3, 0, false},  {1.2, 0, true},    // a quarter of the leg
                {0.2, 2, false},  {-0.2, 2, true},   // it lies abeam: ahead and behind
                {12.4, 0, false}, {12.6, 0, true}};  // two and a half sides
    StartAt(pilot, 1);
    ASSERT_TRUE(FlyToCorner(3));
    const HoldFlight toBase = holdFlight;
    for (const auto& row : rows) {
        holdFlight = toBase;
        aircraft.latitude = (-4 + row.northNm) / 60;
        aircraft.longitude = (2.5 + row.eastNm) / 60;
        BuildAndFlyHold();
        EXPECT_EQ(holdFlight.holdTargetCorner, row.turns ? 4 : 3) << row.northNm << row.eastNm;
    }
}

TEST_F(HoldsTest, BeginsWithinAQuarterOfItsLegOrTheChangeDistance) {
    const struct {
        double legNm, atNm;
        bool begins;
    } rows[] = {{5, 3.1, false}, {5, 2.9, true}, {20, 5.1, false}, {20, 4.9, true}};
    for (const auto& row : rows) {
        holdFlight.holdActive = holdFlight.holdTargetCorner = 0;  // as a hold that was left
        holdList.holds[1].legDistanceNm = row.legNm;
        pilot.latitude = -row.atNm / 60;
        StartAt(pilot, 1);
        simulator.events.clear();
        BuildAndFlyHold();
        EXPECT_EQ(HoldBeingFlown(), row.begins) << row.atNm;
        EXPECT_EQ(simulator.CountEvents(test::kHeadingBugEvent), row.begins ? 1 : 0);
    }
}

TEST_F(HoldsTest, HoldsBehindTheRouteAreDeletedAndPendingOnesKept) {
    holdList.count = 4;
    holdList.holds[1].fixIndex = 0;
    holdList.holds[1].pendingFixIndex = 3;
    for (const std::int32_t fix : {1, 2, 3}) {
        holdList.holds[fix + 1].fixIndex = fix;
    }
    planBook.activeIndex = 3;
    DeletePassedHolds();
    ASSERT_EQ(holdList.count, 2);
    EXPECT_EQ(holdList.holds[1].pendingFixIndex, 3);
    EXPECT_EQ(holdList.holds[2].fixIndex, 3);
}

// Whoever turns LNAV off: the flight ends, an exit asked for is forgotten, every hold stays.
TEST_F(HoldsTest, DisengagingLnavEndsTheFlightAndDeletesNoHold) {
    PlanHoldAt(3);
    using Way = void (*)();
    const Way ways[] = {ToggleLnav, DisengageLnav, [] { SetActiveWaypoint(kNoWaypoint); }};
    for (const Way turnOff : ways) {
        for (const HoldState state : {HoldState::Normal, HoldState::ExitRequested}) {
            StartAt(pilot, 1);
            ASSERT_TRUE(FlyToCorner(2));
            holdFlight.holdState = state;
            turnOff();
            EXPECT_FALSE(HoldBeingFlown());
            EXPECT_EQ(holdFlight.holdState, HoldState::LnavOff);
            EXPECT_EQ(holdFlight.holdActive, 0);
            EXPECT_EQ(HoldNumberAt(1), 1);
            EXPECT_EQ(HoldNumberAt(3), 2);
            planBook.activeIndex = 1;
            const std::size_t sent = simulator.events.size();
            for (int i = 0; i < 480; ++i) {  // flies on for four minutes, across the fix or not
                Step();
            }
            EXPECT_EQ(simulator.events.size(), sent);
            EXPECT_EQ(planBook.activeIndex, 1);
        }
    }
    StartAt(pilot, 1);  // back to the fix, and round again
    for (const std::int32_t corner : {1, 2, 3, 4, 1, 2}) {
        ASSERT_TRUE(FlyToCorner(corner)) << corner;
    }
}

TEST_F(HoldsTest, AHoldPlannedAtTheActiveWaypointBeginsAfresh) {
    StartAt(pilot, 2);
    EndHoldFlight();
    holdFlight.holdTargetCorner = 3;
    EXPECT_TRUE(HoldAtActiveWaypoint());
    EXPECT_EQ(holdFlight.holdState, HoldState::Normal);
    EXPECT_EQ(holdFlight.holdTargetCorner, 0);
    EXPECT_EQ(holdFlight.holdActive, 1);
    EXPECT_EQ(holdList.holds[HoldNumberAt(2)].inboundCourseMag, guidance.desiredTrackMag);
    holdFlight.holdTargetCorner = 3;
    EXPECT_FALSE(HoldAtActiveWaypoint()) << "there is one";
    EXPECT_EQ(holdFlight.holdTargetCorner, 3);
}

}  // namespace
}  // namespace avq1
