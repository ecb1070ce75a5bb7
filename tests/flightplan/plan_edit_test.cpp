#include "flightplan/plan_edit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/module_state.h"
#include "base/text.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_notation.h"
#include "flightplan/procedures.h"
#include "flightplan/route_entry.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

using test::Fix;
using test::SetPlan;
using test::Show;

class PlanEdit : public testing::Test {
  protected:
    void SetUp() override { ResetModuleState(); }
};

TEST_F(PlanEdit, AnotherDestinationForgetsTheArrivalChosen) {
    SetPlan(modifiedPlan, "KJFK AAA KBOS");
    modifiedPlan.EditProcedures() = {"S1", "ST", "09", "T1", "TT", "ILS", "AT", "27"};
    procedureChoice = {"KBOS", 1, "S1", "ST", "09", 2, "T1", "TT", "27", "ILS", "AT"};
    FoundPoint laGuardia;
    laGuardia.ident = "KLGA";
    laGuardia.kind = PointKind::Airport;
    ASSERT_TRUE(SetRouteDestination(laGuardia));
    EXPECT_EQ(modifiedPlan.procedures, (PlanProcedures{"S1", "ST", "09", "", "", "", "", ""}));
    const ProcedureChoice& left = procedureChoice;
    EXPECT_EQ(Format("%d %s %s %s", left.sidNumber, left.sidName.c_str(),
                     left.sidTransition.c_str(), left.departureRunway.c_str()),
              "1 S1 ST 09");
    EXPECT_EQ(left.starNumber, 0);
    EXPECT_EQ(left.starName + left.approachType + left.approachTransition, "");
    EXPECT_EQ(left.starTransition, kNoChoice);
    EXPECT_EQ(left.arrivalRunway, kNoChoice);
    EXPECT_EQ(planBook.destinationIdent, "KLGA");
}

TEST_F(PlanEdit, EntriesGetTheValuesOfTheirKind) {
    SetPlan(modifiedPlan, "KJFK AAA BBB KBOS");
    ASSERT_TRUE(InsertAirwayPlaceholder(modifiedPlan, 2, "J42"));
    ASSERT_TRUE(DirectTo(modifiedPlan, 3, {50, -60}));
    EXPECT_EQ(Show(modifiedPlan), "KJFK AAA J42 THEN DCT DIRECT >BBB KBOS");
    const PlanWaypoint& placeholder = modifiedPlan.entries[2];
    EXPECT_EQ(placeholder.type, "OAWY");
    EXPECT_EQ(placeholder.speed, -1);
    const PlanWaypoint& direct = modifiedPlan.entries[3];
    EXPECT_EQ(Format("%s %g %g", direct.type.c_str(), direct.latitude, direct.longitude),
              "WPT 50 -60");
    ASSERT_TRUE(HoldAt(modifiedPlan, 4, NewHold()));
    const HoldCorner& fix = holdList.holds[1].corners[0];
    EXPECT_EQ(Format("%s %g %g", fix.name.c_str(), fix.latitude, fix.longitude), "BBB 41 -70");
    EXPECT_FALSE(HoldAt(previewPlan, 1, NewHold()));
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
    EXPECT_EQ(planBook.editIndex, 4) << "before the destination";
    SetPlan(activePlan, "KJFK >AAA BBB");
    CopyActiveToModified();
    EXPECT_EQ(planBook.editIndex, 3);
}

TEST_F(PlanEdit, HoldDeletedInAModificationIsFlownUntilItIsExecuted) {
    for (const bool execute : {true, false}) {
        ResetModuleState();
        SetPlan(activePlan, "KJFK AAA >BBB@ CCC@ DDD KBOS");
        holdFlight.holdActive = 1;
        holdFlight.holdTargetCorner = 2;
        CopyActiveToModified();
        DeleteWaypoint(modifiedPlan, 2, true);
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

TEST_F(PlanEdit, HoldChangedInAModificationIsFlownSoOnceItIsExecuted) {
    for (const bool executed : {true, false}) {
        ResetModuleState();
        SetPlan(activePlan, "KJFK >AAA BBB@ CCC KBOS");
        CopyActiveToModified();
        HoldShape shape;
        shape.inboundCourseMag = 123;
        shape.turnDirection = HoldTurn::Left;
        EXPECT_FALSE(ReshapeHold(modifiedPlan, 0, shape));
        EXPECT_FALSE(ReshapeHold(modifiedPlan, 2, shape));
        EXPECT_FALSE(ReshapeHold(previewPlan, 1, shape));
        ASSERT_TRUE(ReshapeHold(modifiedPlan, 1, shape));
        const HoldPattern& hold = holdList.holds[1];
        EXPECT_EQ(hold.inboundCourseMag, 0);
        EXPECT_EQ(PendingShape(hold), shape);
        if (executed) {
            ExecutePendingHolds();
            EXPECT_FALSE(hold.shapeIsPending);
        } else {
            CopyActiveToModified();  // given up
        }
        EXPECT_EQ(hold.inboundCourseMag, executed ? 123 : 0);
        EXPECT_EQ(PendingShape(hold), static_cast<const HoldShape&>(hold));
        shape.legByTime = 0;
        EXPECT_TRUE(ReshapeHold(activePlan, 1, shape));
        EXPECT_EQ(hold.legByTime, 0);
    }
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
        SetPlan(modifiedPlan, "KJFK KBOS");
        for (int insertion = 0; insertion < 2; ++insertion) {  // the second goes on building
            InsertWaypoint(modifiedPlan, 1, Fix("NEW"));
            EXPECT_EQ(planBook.status, BeingBuilt);
        }
        EXPECT_EQ(planBook.reserveFuelInUse, c.readied ? 1500 : 0);
        EXPECT_EQ(planBook.fuelLoadRequested, c.fuelRequested);
    }
}

}  // namespace
}  // namespace avq1
