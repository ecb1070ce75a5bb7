#include "flightplan/plan_edit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/module_state.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_notation.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

using test::Offer;
using test::SetPlan;
using test::Show;

class PlanEdit : public testing::Test {
  protected:
    void SetUp() override { ResetModuleState(); }
};

struct EditCase {
    const char* before;
    std::int32_t position;
    const char* after;
};

TEST_F(PlanEdit, InsertionKeepsTrackedEntryAndHoldsAndLeavesAGap) {
    const EditCase cases[] = {
        {"KJFK AAA BBB >CCC@ KBOS", 3, "KJFK AAA BBB NEW DISCO >CCC@ KBOS"},
        {"KJFK AAA BBB CCC KBOS", 5, "KJFK AAA BBB CCC KBOS NEW"},
        {"KJFK >AAA@ BBB KBOS", 0, "KJFK NEW DISCO >AAA@ BBB KBOS"},
        {"KJFK >AAA BBB KBOS", kNoWaypoint, "KJFK NEW DISCO >AAA BBB KBOS"},
        {"KJFK KBOS", 1, "KJFK NEW KBOS"},
        {"KJFK AAA KBOS", 60, "KJFK AAA KBOS NEW"},
        {"", 1, "NEW"},
    };
    for (const EditCase& c : cases) {
        SCOPED_TRACE(c.before);
        ResetModuleState();
        SetPlan(modifiedPlan, c.before);
        Offer("NEW");
        EXPECT_TRUE(InsertWaypoint(c.position));
        EXPECT_EQ(Show(modifiedPlan), c.after);
    }
}

TEST_F(PlanEdit, FullPlanRefusesAndStaysAsItIs) {
    const struct {
        std::int32_t entries;
        std::int32_t position;
        bool named;
        bool taken;
    } cases[] = {
        {201, 5, true, false},   {201, 201, false, false},
        {200, 5, false, false},  // no room for the gap that belongs to it
        {200, 199, false, true}, {200, 5, true, true},
        {199, 5, false, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.entries << " entries, at " << c.position);
        std::string notation;
        for (std::int32_t i = 0; i < c.entries; ++i) {
            notation += "FIX" + std::to_string(i) + " ";
        }
        SetPlan(modifiedPlan, notation);
        const std::string before = Show(modifiedPlan);
        Offer("NEW");
        EXPECT_EQ(c.named ? InsertNamedPoint(c.position, 1) : InsertWaypoint(c.position), c.taken);
        EXPECT_EQ(Show(modifiedPlan) == before, !c.taken);
        EXPECT_LE(modifiedPlan.lastIndex, kMaxPlanIndex);
    }
    SetPlan(modifiedPlan, "KJFK KBOS");
    navDatabase.searchResults.Clear();
    EXPECT_FALSE(InsertWaypoint(1));
    EXPECT_FALSE(InsertNamedPoint(1, 1));
    EXPECT_EQ(Show(modifiedPlan), "KJFK KBOS");
}

TEST_F(PlanEdit, DeletionClosesUpAtTheEndsAndLeavesAGapInside) {
    const struct {
        const char* before;
        std::int32_t position;
        bool force;
        const char* after;
    } cases[] = {
        {"KJFK AAA >BBB@ CCC DDD KBOS", 1, false, "KJFK >BBB@ CCC DDD KBOS"},
        {"KJFK AAA BBB CCC >DDD KBOS", 4, false, "KJFK AAA BBB CCC >KBOS"},
        {"KJFK AAA BBB CCC@ DDD KBOS", 3, false, "KJFK AAA BBB DISCO DDD KBOS"},
        {"KJFK AAA BBB CCC@ DDD@ >KBOS", 3, true, "KJFK AAA BBB DDD@ >KBOS"},
        {"KJFK AAA DISCO CCC >DDD KBOS", 2, true, "KJFK AAA CCC >DDD KBOS"},
        {"KJFK AAA BBB >KBOS", 3, false, "KJFK AAA >BBB"},
        {"KJFK AAA KBOS", 0, false, "AAA KBOS"},
        {"KJFK KBOS", 1, true, "KJFK KBOS"},
        {"KJFK AAA BBB KBOS", 4, true, "KJFK AAA BBB KBOS"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.before);
        ResetModuleState();
        SetPlan(modifiedPlan, c.before);
        DeleteWaypoint(c.position, c.force);
        EXPECT_EQ(Show(modifiedPlan), c.after);
    }
}

TEST_F(PlanEdit, RangeClosesUpWithoutRenumbering) {
    planBook.airwayText = "#J42";
    planBook.status = RouteStatus::Active;
    SetPlan(modifiedPlan, "KJFK AAA BBB CCC >DDD@ EEE KBOS");
    DeleteRange(1, 3);
    EXPECT_EQ(Show(modifiedPlan), "KJFK CCC DDD EEE >KBOS@");
    EXPECT_EQ(planBook.airwayText, "");
    EXPECT_EQ(planBook.status, RouteStatus::Modified);
    EXPECT_EQ(planBook.routeView.size(), 3U);

    for (const auto& [first, beyond] : {std::pair{3, 3}, {4, 2}, {-1, 2}, {1, 6}}) {
        DeleteRange(first, beyond);
        EXPECT_EQ(Show(modifiedPlan), "KJFK CCC DDD EEE >KBOS@") << first << " " << beyond;
    }
}

TEST_F(PlanEdit, PlaceholdersComeAndGoUnderTheirHolds) {
    planBook.airwayText = "J42";
    SetPlan(modifiedPlan, "KJFK AAA >BBB@ KBOS");
    ASSERT_TRUE(InsertAirwayPlaceholder(2));
    EXPECT_EQ(Show(modifiedPlan), "KJFK AAA J42 THEN >BBB@ KBOS");
    EXPECT_EQ(modifiedPlan.entries[2].type, "OAWY");
    EXPECT_EQ(modifiedPlan.entries[2].speed, -1);
    RemovePlaceholders();
    EXPECT_EQ(Show(modifiedPlan), "KJFK AAA >BBB@ KBOS");

    const std::pair<const char*, const char*> cases[] = {
        {"KJFK THEN AAA THEN THEN >BBB@ KBOS THEN", "KJFK AAA >BBB@ KBOS"},
        {"KJFK THEN AAA >THEN BBB KBOS", "KJFK AAA >BBB KBOS"},
        {"KJFK AAA KBOS >THEN", "KJFK AAA >KBOS"},
        {"THEN", ""},
    };
    for (const auto& [before, after] : cases) {
        ResetModuleState();
        SetPlan(modifiedPlan, before);
        RemovePlaceholders();
        EXPECT_EQ(Show(modifiedPlan), after) << before;
    }
}

TEST_F(PlanEdit, RouteViewGathersAirways) {
    const std::pair<const char*, const char*> cases[] = {
        {"KJFK AAA J1 BBB J1 CCC J2 DDD EEE KBOS", "AAA:DIRECT CCC:J1 DDD:J2 EEE:DIRECT "},
        {"KJFK J1 AAA J1 BBB CCC J1 DDD KBOS", "BBB:J1 CCC:DIRECT DDD:J1 "},
        {"KJFK J1 AAA J1 THEN KBOS", "AAA:J1 THEN:J1 "},
        {"", ""},
    };
    for (const auto& [plan, expected] : cases) {
        SetPlan(modifiedPlan, plan);
        BuildRouteView();
        std::string view;
        for (const RoutePair& pair : planBook.routeView) {
            view += pair.to + ":" + pair.via + " ";
        }
        EXPECT_EQ(view, expected) << plan;
    }
}

TEST_F(PlanEdit, CopyOfTheActivePlanFollowsTheActiveWaypoint) {
    SetPlan(activePlan, "KJFK AAA >BBB@ CCC KBOS");
    activePlan.Edit(1).ataText = "12:34";
    activePlan.Edit(1).altitude = 11000;
    HoldPattern& leftover = holdList.holds[++holdList.count];  // of a modification given up
    leftover.pendingFixIndex = 3;
    CopyActiveToModified();
    EXPECT_EQ(Show(modifiedPlan), "KJFK AAA >BBB@ CCC KBOS");
    EXPECT_EQ(holdList.count, 1);
    EXPECT_EQ(modifiedPlan.entries[1].ataText, "");
    EXPECT_EQ(modifiedPlan.entries[1].altitude, 11000);
    EXPECT_EQ(activePlan.entries[1].ataText, "12:34");
}

TEST_F(PlanEdit, HoldDeletedInAModificationIsFlownUntilItIsExecuted) {
    for (const bool execute : {true, false}) {
        ResetModuleState();
        SetPlan(activePlan, "KJFK AAA >BBB@ CCC@ DDD KBOS");
        holdFlight.holdActive = 1;
        holdFlight.holdTargetCorner = 2;
        CopyActiveToModified();
        DeleteWaypoint(2, true);
        EXPECT_EQ(Show(modifiedPlan), "KJFK AAA >CCC@ DDD KBOS");
        EXPECT_EQ(Show(activePlan), "KJFK AAA >BBB@ CCC@ DDD KBOS");
        EXPECT_EQ(holdFlight.holdTargetCorner, 2);
        if (!execute) {
            CopyActiveToModified();  // erased instead
            EXPECT_EQ(Show(modifiedPlan), "KJFK AAA >BBB@ CCC@ DDD KBOS");
            continue;
        }
        ExecutePendingHolds();
        ASSERT_EQ(holdList.count, 1);
        EXPECT_EQ(holdList.holds[1].fixIndex, 2);
        EXPECT_EQ(holdList.holds[1].pendingFixIndex, 0);
        EXPECT_EQ(holdFlight.holdState, HoldState::RemovedWhileFlown);
        EXPECT_EQ(holdFlight.holdTargetCorner, 0);
    }
}

TEST_F(PlanEdit, DeletingAHoldMovesTheOthersUp) {
    const struct {
        std::int32_t fix;
        std::int32_t count;
        std::int32_t firstFix;
        HoldState state;
        std::int32_t corner;
    } cases[] = {
        {1, 2, 2, HoldState::RemovedWhileFlown, 0},  // the one being flown
        {3, 2, 1, HoldState::Normal, 3},
        {0, 3, 1, HoldState::Normal, 3},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fix);
        ResetModuleState();
        SetPlan(activePlan, "KJFK AAA@ BBB@ CCC@ KBOS");
        holdFlight.holdActive = 1;
        holdFlight.holdTargetCorner = 3;
        DeleteHold(c.fix);
        EXPECT_EQ(holdList.count, c.count);
        EXPECT_EQ(holdList.holds[1].fixIndex, c.firstFix);
        EXPECT_EQ(holdFlight.holdState, c.state);
        EXPECT_EQ(holdFlight.holdTargetCorner, c.corner);
        EXPECT_EQ(holdFlight.holdActive, 1);
    }
    SetPlan(activePlan, "KJFK AAA KBOS");
    DeleteHold(1);
    DeleteHold(2);
    EXPECT_EQ(holdList.count, 1);
    DeleteHold(3);
    EXPECT_EQ(holdList.count, 0);
    EXPECT_EQ(holdFlight.holdActive, 0);
}

TEST_F(PlanEdit, StatusAdvancesAndTheFirstStepOnGroundReadiesTheFlight) {
    using enum RouteStatus;
    const std::pair<RouteStatus, RouteStatus> steps[] = {{None, BeingBuilt},
                                                         {BeingBuilt, AwaitsExecution},
                                                         {AwaitsExecution, Active},
                                                         {Active, Modified},
                                                         {Modified, Active}};
    for (const auto& [from, to] : steps) {
        planBook.status = from;
        AdvanceRouteStatus();
        EXPECT_EQ(planBook.status, to);
    }
    const struct {
        double groundSpeedKt;
        std::int32_t loadFuel;
        double fuelTotal;
        bool readied;
        double fuelRequested;
    } cases[] = {{4.9, 1, 4.9, true, 0},
                 {4.9, 1, 5, true, 5},
                 {4.9, 0, 9000, true, 0},
                 {5, 1, 9000, false, 0}};
    for (const auto& c : cases) {
        ResetModuleState();
        settings.LoadFuelonFlightPlanLoad = c.loadFuel;
        aircraft.groundSpeedKt = c.groundSpeedKt;
        planBook.fuelTotal = c.fuelTotal;
        planBook.reserveFuel = 1500;
        Offer("NEW");
        SetPlan(modifiedPlan, "KJFK KBOS");
        for (int insertion = 0; insertion < 2; ++insertion) {  // the second goes on building
            InsertWaypoint(1);
            EXPECT_EQ(planBook.status, BeingBuilt);
        }
        EXPECT_EQ(planBook.reserveFuelInUse, c.readied ? 1500 : 0);
        EXPECT_EQ(planBook.fuelLoadRequested, c.fuelRequested);
    }
}

}  // namespace
}  // namespace avq1
