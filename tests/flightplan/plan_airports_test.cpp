#include "flightplan/plan_airports.h"

#include <gtest/gtest.h>

#include "base/messages.h"
#include "flightplan/flight_plan.h"
#include "flightplan/plan_notation.h"
#include "settings/parking.h"
#include "settings/settings.h"

namespace avq1 {
namespace {

using test::SetPlan;
using test::Show;

constexpr const char* kPlan = "KJFK AAA KBOS";

struct PlanAirport : test::FolderTest {
    PlanAirport() {
        folder_.Write("avq/Navdata/avq_apts.txt",
                      "KJFK John_F_Kennedy 13 40.63945 -73.77932 "
                      "04L_12079_40.6_-73.7_31.2_x_y_0 22R_12079_40.7_-73.7_211.2_x_y_224\n"
                      "KBOS Logan 20 42.36 -71.01 04R_10006_42.3_-71.0_35_x_y_35 "
                      "09_7001_42.3_-71.0_92_x_y_92\nKPVD Green\n");
        folder_.Write("avq/Aircraft/stands.txt", "KBOS 1.5 2.5 90\n");
        settings.ParkingFile = "stands.txt";
        SetPlans();
    }
    static void SetPlans() {
        SetPlan(activePlan, kPlan);
        SetPlan(modifiedPlan, kPlan);
        activePlan.Edit(2).altitudeConstraint = 1;
        activePlan.Edit(2).speed = 140;
    }
};

TEST_F(PlanAirport, StandsWhereTheModeSays) {
    using enum PlanAirportMode;
    const struct {
        PlanAirportMode mode;
        const char* active;
        const char* modified;
        const char* altitudes;  // of the first and the last entry, constraint and speed of the last
        std::int32_t verticalTarget;
        double parkingLatitude;
        const char* destination;  // with its elevation and latitude
    } cases[] = {
        {DepartureElevation, kPlan, kPlan, "20 - 1 140", 0, 1.5, " 0 0"},
        {ActiveDestination, kPlan, kPlan, "- 20 0 140", 0, 1.5, "KBOS 0 0"},
        {LoadedDestination, kPlan, kPlan, "- 20 1 -", 0, 0, "KBOS 20 0"},
        {ActiveOrigin, "KBOS AAA KBOS", kPlan, "- - 1 140", 0, 1.5, " 0 0"},
        {AppendToActive, "KJFK AAA KBOS KBOS", kPlan, "- 20 0 -", 3, 1.5, "KBOS 20 42.36"},
        {ModifiedOrigin, kPlan, "KBOS AAA KBOS", "- - 1 140", 0, 1.5, " 0 0"},
        {AppendToModified, kPlan, "KJFK AAA KBOS KBOS", "- - 1 140", 0, 1.5, " 0 0"},
        {RunwaysOnly, kPlan, kPlan, "- - 1 140", 0, 1.5, " 0 0"},
    };
    const auto number = [](double value) { return value == kUnset ? "-" : Format("%g", value); };
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.mode));
        SetPlans();
        planBook.verticalTargetIndex = 0;
        parkingPosition = {};
        planAirports = {};
        planAirports.selectedRunway = 5;
        SetPlanAirport("KBOS", c.mode);
        EXPECT_EQ(Show(activePlan), c.active);
        EXPECT_EQ(Show(modifiedPlan), c.modified);
        const PlanWaypoint& last = activePlan.entries[activePlan.lastIndex];
        EXPECT_EQ(number(activePlan.entries[0].altitude) + " " + number(last.altitude) + " " +
                      number(last.altitudeConstraint) + " " + number(last.speed),
                  c.altitudes);
        EXPECT_EQ(planBook.verticalTargetIndex, c.verticalTarget);
        EXPECT_EQ(parkingPosition.latitude, c.parkingLatitude);
        EXPECT_EQ(planAirports.destinationIdent + " " + number(planAirports.destinationElevation) +
                      " " + number(planAirports.destinationLatitude),
                  c.destination);
        const bool elevationShown =
            c.mode == RunwaysOnly || planAirports.destinationIdent == "KBOS";
        EXPECT_EQ(planAirports.destinationElevationText, elevationShown ? "20" : "");
        EXPECT_EQ(planAirports.selectedRunway, 1);
        EXPECT_EQ(planAirports.lastAirportIdent + lastAirportElevationText, "KBOS20");
        EXPECT_EQ(messages.lines[messages.count], "APT 'KBOS' Set");
    }
}

TEST_F(PlanAirport, AnotherThanThePlansIsNotPutIntoItsEntries) {
    SetPlanAirport("KJFK", PlanAirportMode::LoadedDestination);
    EXPECT_EQ(activePlan.entries[0].altitude, kUnset);
    EXPECT_EQ(activePlan.entries[2].altitude, kUnset);
    const std::int32_t said = messages.count;
    SetPlanAirport("XXXX", PlanAirportMode::LoadedDestination);
    EXPECT_EQ(planAirports.destinationIdent, "KJFK");
    EXPECT_EQ(messages.count, said);
    SetPlanAirport("KPVD", PlanAirportMode::AppendToActive);  // too short a line to stand in a plan
    EXPECT_EQ(Show(activePlan), kPlan);
    EXPECT_TRUE(planAirports.runways.empty());
}

TEST_F(PlanAirport, APlanOfOneAirportHasItsElevation) {
    SetPlan(activePlan, "KBOS");
    SetPlanAirport("KBOS", PlanAirportMode::ActiveDestination);
    EXPECT_EQ(activePlan.entries[0].altitude, 20);
    SetPlan(activePlan, "");
    SetPlanAirport("KBOS", PlanAirportMode::ActiveDestination);
    EXPECT_EQ(activePlan.lastIndex, -1);
}

TEST_F(PlanAirport, RunwaysAndTheirPatternSides) {
    folder_.Write("avq/Navdata/apt_additional_info.txt",
                  "RWY04L=RIGHTPATTERN\r\n[KBOS]\r\nTOWER=1\r\nrwy4r=rightpattern\r\n"
                  "RWY9=LEFTPATTERN\r\n[KJFK]\r\nRWY9=RIGHTPATTERN\r\nRWY22R=RIGHTPATTERN x\r\n");
    const struct {
        const char* ident;
        const char* runways;  // designator, "R" for a right pattern, approach course
    } cases[] = {{"KBOS", "04R R 35;09 L 92;"}, {"KJFK", "04L L 31.2;22R R 224;"}};
    for (const auto& c : cases) {
        SetPlanAirport(c.ident, PlanAirportMode::ActiveDestination);
        std::string runways;
        for (const PlanRunway& runway : planAirports.runways) {
            runways += Format("%s %c %g;", runway.ident.c_str(),
                              runway.rightPattern == 1 ? 'R' : 'L', runway.field8);
        }
        EXPECT_EQ(runways, c.runways);
    }
}

TEST_F(PlanAirport, DepartureAltitudeGoesToThePlanItBelongsTo) {
    EXPECT_TRUE(LoadPlanAirportDetail("KBOS", kDepartureSlot));
    EXPECT_EQ(activePlan.entries[0].altitude, kUnset);
    EXPECT_TRUE(LoadPlanAirportDetail("KJFK", kArrivalSlot));
    EXPECT_EQ(activePlan.entries[0].altitude, kUnset);
    EXPECT_TRUE(LoadPlanAirportDetail("KJFK", kDepartureSlot));
    EXPECT_EQ(activePlan.entries[0].altitude, 13);
    EXPECT_FALSE(LoadPlanAirportDetail("XXXX", kDepartureSlot));
}

TEST_F(PlanAirport, AFullPlanRefusesOneMore) {
    while (!activePlan.IsFull()) {
        activePlan.Append({});
    }
    SetPlanAirport("KBOS", PlanAirportMode::AppendToActive);
    EXPECT_EQ(activePlan.lastIndex, kMaxPlanIndex);
    EXPECT_EQ(planBook.verticalTargetIndex, 0);
    EXPECT_EQ(messages.lines[1], kPlanFullMessage);
}

}  // namespace
}  // namespace avq1
