#include "guidance/activation.h"

#include <gtest/gtest.h>

#include "base/module_state.h"
#include "base/redraw.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_notation.h"
#include "flightplan/procedures.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "navdb/airport_detail.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::SetPlan;
using test::Show;

class ActivePlan : public ::testing::Test {
  protected:
    ActivePlan() { ResetModuleState(); }
    ~ActivePlan() override { ImportTable.panel.services = nullptr; }

    static double DistanceToEntry(std::int32_t index) {
        const PlanWaypoint& entry = activePlan.entries[index];
        return GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude, entry.latitude,
                                     entry.longitude);
    }

    test::FakeSimulator& simulator_ = test::FakeSimulator::Install();
};

TEST_F(ActivePlan, ExecutionKeepsWhatIsFlownAndItsRestrictions) {
    const struct {
        const char* what;
        RouteStatus status;
        const char* active;
        const char* modified;
        const char* flown;  // null: nothing to execute
        bool started;       // as a plan of its own
    } cases[] = {
        {"a fix put in front of what is flown", RouteStatus::Modified, "KJFK AAA >BBB KBOS",
         "KJFK AAA CCC >BBB@ KBOS", "KJFK AAA CCC >BBB@ KBOS", false},
        {"a direct-to chosen in the modification", RouteStatus::Modified, "KJFK AAA >BBB CCC KBOS",
         "KJFK >CCC KBOS", "KJFK >CCC KBOS", false},
        {"airways that were not finished", RouteStatus::Modified, "KJFK >AAA KBOS",
         "KJFK >AAA J1 THEN J2 THEN KBOS", "KJFK >AAA KBOS", false},
        {"another destination", RouteStatus::Modified, "KJFK >AAA KBOS", "KJFK >AAA KPVD",
         "KJFK >AAA KPVD", true},
        {"nothing was flown", RouteStatus::Modified, "KJFK AAA KBOS", "KJFK AAA BBB KBOS",
         "KJFK >AAA BBB KBOS", true},
        {"a built route", RouteStatus::AwaitsExecution, "KPIT AAA >KBUF", "KJFK BBB >KBOS",
         "KJFK >BBB KBOS", true},
        {"a route without a leg", RouteStatus::AwaitsExecution, "KPIT >KBUF", "KJFK", "KJFK", true},
        {"nothing awaits execution", RouteStatus::Active, "KJFK >AAA KBOS", "KJFK >KBOS", nullptr,
         false},
        {"nor a route still being built", RouteStatus::BeingBuilt, "KJFK >AAA KBOS", "KJFK >KBOS",
         nullptr, false},
        {"an empty modification", RouteStatus::Modified, "KJFK >AAA KBOS", "", nullptr, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        ResetModuleState();
        SetPlan(activePlan, c.active);
        SetPlan(modifiedPlan, c.modified);
        PlanWaypoint& first = modifiedPlan.Edit(1);
        first.altitude = 9000;
        first.altitudeConstraint = 1;
        first.ataText = "12:00";
        planBook.status = c.status;
        planBook.cruiseAltitudeFt = 33000;  // of the stored route that was loaded
        guidance.trackLeg = 1;
        guidance.destinationNearDone = 1;
        planAirports.destinationAirportState = 2;
        planAirports.patternRunwayOffset = 3;
        test::HearGuidance();
        EXPECT_EQ(ExecuteModification(), c.flown != nullptr);
        EXPECT_EQ(Show(activePlan), c.flown != nullptr ? c.flown : c.active);
        if (c.status == RouteStatus::AwaitsExecution && activePlan.lastIndex >= 1) {
            EXPECT_EQ(vnav.cruiseAltitude, 33000);
        }
        EXPECT_EQ(guidance.destinationNearDone, c.started ? 0 : 1);
        EXPECT_EQ(planAirports.destinationAirportState, c.started ? 1 : 2);
        EXPECT_EQ(planAirports.patternRunwayOffset, c.started ? kNoPatternRunway : 3);
        ASSERT_EQ(test::heard.size(), c.flown != nullptr ? 1U : 0U);
        if (c.flown == nullptr) {
            EXPECT_EQ(planBook.status, c.status);
            continue;
        }
        EXPECT_EQ(planBook.status, RouteStatus::Active);
        if (activePlan.lastIndex < 1) {
            continue;
        }
        EXPECT_EQ(activePlan.entries[1].altitude, 9000);
        EXPECT_EQ(activePlan.entries[1].altitudeConstraint, 1);
        EXPECT_EQ(activePlan.entries[1].ataText, "");
        EXPECT_DOUBLE_EQ(guidance.distanceToGoNm, DistanceToEntry(planBook.activeIndex));
        EXPECT_EQ(test::heard[0].event, GuidanceEvent::PlanStarted);
        EXPECT_EQ(test::heard[0].entryIndex, planBook.activeIndex);
    }
}

TEST_F(ActivePlan, ExecutionAimsTheDescentAtTheNextAltitudeToKeep) {
    for (const std::int32_t constrained : {1, 2, 3, 4}) {
        SetPlan(activePlan, "KJFK AAA >BBB CCC DDD KBOS");
        SetPlan(modifiedPlan, "KJFK AAA >BBB CCC DDD KBOS");
        modifiedPlan.Edit(constrained).altitudeConstraint = 1;
        modifiedPlan.Edit(constrained).altitude = 5000;
        planBook.status = RouteStatus::Modified;
        ExecuteModification();
        EXPECT_EQ(planBook.verticalTargetIndex, constrained >= 2 ? constrained : 5);
    }
}

// While a modification waits the aircraft flies on.
TEST_F(ActivePlan, WaypointsPassedMeanwhileAreNotFlownAgain) {
    const struct {
        const char* modified;
        const char* after;  // AAA and BBB were passed
    } cases[] = {
        {"KJFK >AAA BBB CCC DDD KBOS", "KJFK AAA BBB >CCC DDD KBOS"},
        {"KJFK >AAA BBB XXX CCC DDD KBOS", "KJFK AAA BBB >XXX CCC DDD KBOS"},  // not passed
        {"KJFK >AAA DDD KBOS", "KJFK AAA >DDD KBOS"},  // what was flown meanwhile is gone
        {"KJFK AAA BBB CCC >DDD KBOS", "KJFK AAA BBB CCC >DDD KBOS"},  // a direct-to waits
    };
    for (const auto& c : cases) {
        ResetModuleState();
        SetPlan(activePlan, "KJFK >AAA BBB CCC DDD KBOS");
        SetPlan(modifiedPlan, c.modified);
        for (std::int32_t i = 1; i <= modifiedPlan.lastIndex; ++i) {  // where the active plan's are
            for (const PlanWaypoint& entry : activePlan.entries) {
                PlanWaypoint& moved = modifiedPlan.Edit(i);
                moved.latitude = entry.ident == moved.ident ? entry.latitude : moved.latitude;
            }
        }
        planBook.status = RouteStatus::Modified;
        guidance.lnavEngaged = 1;
        for (int passage = 0; passage < 2; ++passage) {
            guidance.distanceToGoNm = 0;
            SequenceWaypoint();
        }
        ExecuteModification();
        EXPECT_EQ(Show(activePlan), c.after);
    }
}

TEST_F(ActivePlan, AHoldPlannedMeanwhileIsInTheModificationToo) {
    SetPlan(activePlan, "KJFK >AAA BBB KBOS");
    planBook.status = RouteStatus::Active;
    CopyActiveToModified();
    PlanWaypoint inserted = activePlan.entries[1];
    inserted.ident = "NEW";
    ASSERT_TRUE(InsertBetween(modifiedPlan, 1, inserted));
    ASSERT_TRUE(HoldAt(activePlan, 2, NewHold()));
    EXPECT_EQ(Show(modifiedPlan), "KJFK NEW >AAA BBB@ KBOS");
    ASSERT_TRUE(ExecuteModification());
    EXPECT_EQ(Show(activePlan), "KJFK NEW >AAA BBB@ KBOS");
    CopyActiveToModified();
    DeleteHold(3);
    EXPECT_TRUE(test::FlagsMatchHolds(modifiedPlan)) << "gone from both";
    EXPECT_TRUE(HoldAt(activePlan, 3, NewHold()));
    LoadPlan("NEW FPL");
    SetPlan(modifiedPlan, "KPIT CCC BBB KBUF");
    ASSERT_TRUE(ActivateModifiedPlan());
    EXPECT_EQ(Show(activePlan), "KPIT >CCC BBB KBUF") << "another plan's hold";
    EXPECT_EQ(holdList.count, 0);
}

TEST_F(ActivePlan, AnEditThatChangesTheDestinationForgetsTheOldOne) {
    SetPlan(activePlan, "KJFK >AAA BBB KBOS");
    for (const auto& [position, state] : {std::pair{1, 2}, {3, 1}}) {
        planAirports.destinationAirportState = 2;
        guidance.destinationNearDone = 1;
        EditActivePlan([at = position](FlightPlan& plan) { return DeleteBetween(plan, at); });
        EXPECT_EQ(planAirports.destinationAirportState, state) << position;
        EXPECT_EQ(guidance.destinationNearDone, state - 1) << position;
        SetPlan(activePlan, "KJFK >AAA BBB KBOS");
    }
}

TEST_F(ActivePlan, AStoredPlanIsActivatedWithoutItsRestrictions) {
    const test::TempSimFolder folder;
    folder.Write("avq/Navdata/avq_apts.txt", "KJFK JFK 13 40.6 -73.8\nKBOS Logan 20 42.36 -71.0\n");
    EXPECT_FALSE(ActivateModifiedPlan());
    LoadPlan("NEW FPL");
    EXPECT_FALSE(ActivateModifiedPlan());
    SetPlan(activePlan, "KPIT AAA >BBB@ KBUF");
    SetPlan(modifiedPlan, "KJFK CCC DDD KBOS");
    DeleteAllPendingHolds();  // as loading a plan does
    modifiedPlan.Edit(1).altitude = 9000;
    modifiedPlan.Edit(1).altitudeConstraint = 1;
    modifiedPlan.Edit(1).speed = 210;
    guidance.directToTurn = "LEFT";
    procedureChoice.sidName = "OLD1";
    guidance.pendingTurnSide = Side::Right;
    settings.LoadFuelonFlightPlanLoad = 1;
    planBook.fuelTotal = 9000;
    planBook.reserveFuel = 1500;
    EXPECT_TRUE(ActivateModifiedPlan());
    EXPECT_EQ(Show(activePlan), "KJFK >CCC DDD KBOS");
    EXPECT_EQ(holdList.count, 0);
    EXPECT_NE(activePlan.entries[1].altitude, 9000);  // predicted
    EXPECT_EQ(activePlan.entries[1].altitudeConstraint, 0);
    EXPECT_EQ(activePlan.entries[3].altitude, 20);
    EXPECT_EQ(guidance.directToTurn, "DEFAULT");
    EXPECT_EQ(planAirports.destinationIdent, "KBOS");
    EXPECT_EQ(airportSlots[kDepartureSlot].ident, "KJFK");
    EXPECT_EQ(procedureChoice.sidName, "");
    EXPECT_EQ(guidance.pendingTurnSide, Side::None);
    EXPECT_EQ(planBook.fuelLoadRequested, 9000);
    EXPECT_EQ(planBook.reserveFuelInUse, 1500);
    EXPECT_EQ(planBook.verticalTargetIndex, 3);
    SetPlan(modifiedPlan, "EEE CCC DDD FFF");  // no airport gives an altitude
    modifiedPlan.Edit(0).altitude = modifiedPlan.Edit(3).altitude = 9000;
    EXPECT_TRUE(ActivateModifiedPlan());
    EXPECT_EQ(activePlan.entries[0].altitude, kUnset);
    EXPECT_EQ(activePlan.entries[3].altitude, kUnset);
}

TEST_F(ActivePlan, SwitchesSendWhatTheyAskForHoweverAPlanBecomesActive) {
    for (bool (*way)() : {ExecuteModification, ActivateModifiedPlan}) {
        for (const std::int32_t on : {0, 1}) {
            ResetModuleState();
            settings.LnavSetEnRouteFreqs = settings.SetWptBaro = on;
            aircraft.latitude = 40;
            aircraft.longitude = -70;
            SetPlan(activePlan, "KJFK >AAA KBOS");
            SetPlan(modifiedPlan, "KJFK >AAA KBOS");
            modifiedPlan.Edit(1).type = "VOR";
            modifiedPlan.Edit(1).frequency = "113.90";
            planBook.status = RouteStatus::Modified;
            simulator_.events.clear();
            EXPECT_TRUE(way());
            EXPECT_EQ(simulator_.CountEvents(test::kNavFrequencyEvent), on);
            EXPECT_EQ(simulator_.CountEvents(test::kAltimeterEvent), on);
        }
    }
}

TEST_F(ActivePlan, AnEditOfItMovesTheLegThatIsFlown) {
    airportSlots[kArrivalSlot].ident = "KBOS";
    procedureLists.sid = {{"XXX", "", "", "", 44, -72, 0}};
    procedureLists.star = {{"YYY", "", "", "", 45, -71, 0}};
    const std::pair<bool (*)(FlightPlan&), const char*> edits[] = {
        {InsertSid, "KJFK SID(>XXX) AAA BBB STAR(OLD) KBOS"},
        {InsertStar, "KJFK AAA >BBB STAR(YYY) KBOS"}};
    for (const auto& [edit, after] : edits) {
        SetPlan(activePlan, "KJFK AAA BBB STAR(>OLD) KBOS");
        SetActiveWaypoint(planBook.activeIndex);
        guidance.firstLegPrepared = 1;
        EXPECT_TRUE(EditActivePlan(edit));
        EXPECT_EQ(Show(activePlan), after);
        EXPECT_DOUBLE_EQ(guidance.distanceToGoNm, DistanceToEntry(planBook.activeIndex));
        EXPECT_EQ(guidance.firstLegPrepared, 0);
    }
    guidance.firstLegPrepared = 1;
    EXPECT_FALSE(EditActivePlan([](FlightPlan&) { return false; }));
    EXPECT_EQ(guidance.firstLegPrepared, 1);
}

TEST_F(ActivePlan, OnlyItsOwnEditsReachTheGuidance) {
    for (FlightPlan* plan : {&activePlan, &modifiedPlan, &previewPlan}) {
        ResetModuleState();
        SetPlan(activePlan, "KJFK >AAA ^BBB KBOS");
        SetActiveWaypoint(1);
        const double before = guidance.distanceToGoNm;
        SetPlan(*plan, "KJFK >AAA ^BBB KBOS");
        const auto redraws = UnitRedrawCount();
        const auto edit = [at = 1](FlightPlan& edited) {
            return InsertBetween(edited, at, test::Fix("NEW")) && SetCrossing(edited, 2, {7000});
        };
        EXPECT_TRUE(EditPlan(*plan, edit));
        EXPECT_EQ(plan->entries[1].ident, "NEW");
        EXPECT_NE(UnitRedrawCount(), redraws);
        const bool active = plan == &activePlan;
        EXPECT_EQ(guidance.distanceToGoNm != before, active);
        EXPECT_EQ(planBook.verticalTargetIndex, 2);
    }
}

TEST_F(ActivePlan, DirectToIsFlownAtOnce) {
    aircraft.latitude = 39;
    aircraft.longitude = -70;
    SetPlan(activePlan, "KJFK >AAA BBB@ !CCC KBOS");
    for (const std::int32_t again : {0, 1}) {  // the second takes the place of the first
        CopyActiveToModified();
        guidance.trackLeg = 1;
        EXPECT_FALSE(FlyDirectToEntry(60));
        EXPECT_EQ(guidance.trackLeg, 1);
        EXPECT_TRUE(FlyDirectToEntry(again == 0 ? 2 : 3));
        EXPECT_EQ(Show(activePlan, true), "KJFK AAA DCT DIRECT >BBB@ ^!CCC KBOS");
        EXPECT_EQ(guidance.trackLeg, 0);
        EXPECT_DOUBLE_EQ(guidance.legLengthNm, guidance.distanceToGoNm);
    }
    FlyDirectToPoint(test::Fix("NEW"), true);
    EXPECT_EQ(Show(activePlan, true), "DIRECT >NEW ^KBOS");
    EXPECT_EQ(Show(modifiedPlan), "DIRECT >NEW KBOS");
    EXPECT_DOUBLE_EQ(guidance.legLengthNm, guidance.distanceToGoNm);
    EXPECT_EQ(holdList.count, 0);
}

}  // namespace
}  // namespace avq1
