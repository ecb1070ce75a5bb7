#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>

#include "base/messages.h"
#include "base/module_state.h"
#include "flightplan/plan_airports.h"
#include "flightplan/route_walk.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/progress.h"
#include "guidance/radio_tuning.h"
#include "guidance/route_table.h"
#include "guidance/vnav.h"
#include "settings/parking.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::EventList;
using test::FakeSimulator;
using test::SetActivePlan;
using ::testing::ElementsAre;

class GuidanceTest : public ::testing::Test {
  protected:
    GuidanceTest() {
        ResetModuleState();
        PlaceAt(0, 0);
    }
    ~GuidanceTest() override { ImportTable.panel.services = nullptr; }

    static void PlaceAt(double latitude, double longitude) {
        aircraft.latitude = latitude;
        aircraft.longitude = longitude;
    }

    FakeSimulator& simulator = FakeSimulator::Install();
};

TEST_F(GuidanceTest, CrossTrackSidesAndLimits) {
    const struct {
        double latitude;
        CrossTrackMode mode;
        double crossTrackNm;
        Side side;
    } rows[] = {
        {-8.0 / 60, CrossTrackMode::Clamp5Nm, 5, Side::Right},
        {-8.0 / 60, CrossTrackMode::Guidance, 8, Side::Right},
        {4, CrossTrackMode::Guidance, 125, Side::Left},
    };
    for (const auto& row : rows) {
        SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, 10}});
        PlaceAt(row.latitude, 2);
        SetActiveWaypoint(1);
        ComputeCrossTrack(row.mode);
        EXPECT_NEAR(guidance.crossTrackNm, row.crossTrackNm, 0.02) << row.latitude;
        EXPECT_EQ(guidance.crossTrackSide, row.side) << row.latitude;
    }
}

TEST_F(GuidanceTest, LooksAheadByCrossTrack) {
    struct Row {
        double offsetNm;
        double longitude;  // at 0, the leg's start, the abeam point is the aircraft's own
        double lookAheadNm;
    };
    for (const Row& row : {Row{2, 1, 3}, Row{3.45, 1, 3}, Row{3.55, 1, 5}, Row{0, 0, 5}}) {
        SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, 2}});
        PlaceAt(-row.offsetNm / 60, row.longitude);
        SetActiveWaypoint(1);
        Steer();
        const double alongNm = guidance.legLengthNm - guidance.distanceToGoNm;
        EXPECT_NEAR(guidance.lookAheadLongitude * 60, alongNm + row.lookAheadNm, 1e-6)
            << row.offsetNm;
    }
}

TEST_F(GuidanceTest, TheRouteDistanceFollowsEveryChangeOfThePlan) {
    SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, 1}, {"CCC", 1, 2}, {"DDD", 0, 3}, {"EEE", 2, 4}});
    SetActiveWaypoint(1);
    using Change = void (*)();
    const Change changes[] = {[] {},
                              [] { activePlan.Edit(2).latitude = -1; },
                              [] { activePlan.Edit(4).longitude = 5; },
                              [] { activePlan.Edit(2) = Discontinuity(); },
                              [] { planBook.activeIndex = 3; },
                              [] { planBook.activeIndex = 1; },
                              [] { activePlan.CutTo(3); }};
    int number = 0;
    for (const Change change : changes) {
        change();
        UpdateRouteDistance();
        const PlanWaypoint& next = activePlan.entries[planBook.activeIndex];
        EXPECT_NEAR(progress.routeDistanceToDestination,
                    GreatCircleDistanceNm(0, 0, next.latitude, next.longitude) +
                        RouteLengthNm(activePlan, planBook.activeIndex, activePlan.lastIndex),
                    1e-9)
            << number;
        const PlanWaypoint& last = activePlan.entries[activePlan.lastIndex];
        double directNm = 0;
        double bearingTrue = 0;
        DistanceAndCourse(0, 0, last.latitude, last.longitude, directNm, bearingTrue);
        EXPECT_EQ(progress.destinationDistanceDirect, directNm) << number;
        EXPECT_EQ(progress.destinationBearingMag, bearingTrue) << number;
        ++number;
    }
    activePlan.Edit(0) = activePlan.Edit(1) = Discontinuity();
    EXPECT_EQ(ActiveRoute().alongNm[1], 0) << "as the first that has a position";
    planBook.activeIndex = kNoWaypoint;
    UpdateRouteDistance();
    EXPECT_EQ(progress.routeDistanceToDestination + progress.destinationDistanceDirect +
                  progress.destinationBearingMag,
              0);
}

TEST_F(GuidanceTest, ThePassageIsTold) {
    SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, 0.01}, {"CCC", 0, 1}});
    for (const auto& [groundSpeedKt, onGround] : {std::pair{4.9, true}, {5.0, false}}) {
        test::HearGuidance();
        test::HearGuidance();  // once is enough
        SetActiveWaypoint(1);
        guidance.lnavEngaged = 1;
        aircraft.groundSpeedKt = groundSpeedKt;
        aircraft.altitudeFt = 9000;
        SequenceWaypoint();
        SequenceWaypoint();  // nothing to pass
        ASSERT_EQ(test::heard.size(), 1U);
        EXPECT_EQ(test::heard[0].event, GuidanceEvent::WaypointPassed);
        EXPECT_EQ(test::heard[0].entryIndex, 1);
        EXPECT_EQ(test::heard[0].altitudeFt, 9000);
        EXPECT_EQ(test::heard[0].onGround, onGround);
        EXPECT_EQ(guidance.passedIdent, "BBB");
    }
}

TEST_F(GuidanceTest, AnArrivalIsStampedWithinTheChangeDistanceAboveTaxiSpeed) {
    for (const auto& [toGoNm, speedKt, stamped] :
         {std::array{2.99, 65.1, 1.0}, {3, 65.1, 0}, {2.99, 65, 0}}) {
        SetActivePlan({{"AAA", 0, 0}, {"BBB", 0, 1}, {"CCC", 0, 2}});
        SetActiveWaypoint(1);
        guidance.distanceToGoNm = toGoNm;
        aircraft.groundSpeedKt = speedKt;
        StampArrivalTime();
        EXPECT_EQ(activePlan.entries[1].ataText, stamped == 1 ? "00:00" : "") << toGoNm << speedKt;
    }
}

TEST_F(GuidanceTest, NearTheDestinationItsTowerViewIsSentWhenAsked) {
    for (const auto& [toGoNm, viewNm, towerView, done] :
         {std::array{25.0, 1.0, 1.0, 1.0}, {25.1, 1, 0, 0}, {24, 0, 0, 1}}) {
        requests.towerView = guidance.destinationNearDone = 0;
        progress.routeDistanceToDestination = toGoNm;
        settings.SetDestLoadTowerViewDist = static_cast<std::int32_t>(viewNm);
        ApplyDestinationNear();
        EXPECT_EQ(requests.towerView, towerView) << toGoNm << ' ' << viewNm;
        EXPECT_EQ(guidance.destinationNearDone, done);
    }
}

TEST_F(GuidanceTest, RadiosFollowThePlan) {
    const test::PlanEntry a{"AAA", 0, 0};
    const test::PlanEntry b{"BBB", 0, 1};
    const auto vor = [](double longitude, const char* frequency = "113.90") {
        return test::PlanEntry{"VVV", 0, longitude, "VOR", "", frequency};
    };
    const test::PlanEntry gap{"DISCO", 0, 0, ""};
    const struct {
        std::initializer_list<test::PlanEntry> plan;
        double variation;
        EventList events;
    } rows[] = {{{a, b, vor(2)}, 10, {{65716, 80}, {65708, 0x11390}}},
                {{a, {"NNN", 0, 1, "NDB", "", "385"}}, 0, {{65716, 90}, {65714, 0x385}}},
                {{a, vor(3.82)}, 0, {{65716, 90}, {65708, 0x11390}}},  // 229 nm
                {{a, vor(3.85), vor(1)}, 0, {}},  // 231 nm; only the first with a frequency counts
                {{a, {"BBB", 1, 1}, gap, {"VVV", 1, 2, "VOR", "", "113.90"}},
                 0,
                 {{65716, 89}, {65708, 0x11390}}},
                {{a, vor(1, "x")}, 0, {{65716, 90}}},
                {{a, vor(1)}, 89.4, {{65708, 0x11390}}},  // no whole part
                {{a, vor(1)}, 1e12, {{65708, 0x11390}}},
                {{a, vor(1)}, -1e12, {{65708, 0x11390}}},
                {{a, vor(1)}, 89.7, {{65716, 360}, {65708, 0x11390}}},  // below half a degree
                {{vor(0), b}, 0, {{65716, 90}}},                        // just passed
                {{vor(0)}, 0, {}}};                                     // no active waypoint
    for (const auto& row : rows) {
        SetActivePlan(row.plan);
        aircraft.magneticVariation = row.variation;
        planBook.activeIndex = row.plan.size() > 1 ? 1 : kNoWaypoint;
        simulator.events.clear();
        TuneRadios(TuneMode::FlightPlan);
        EXPECT_EQ(simulator.events, row.events) << &row - rows;
    }
}

TEST_F(GuidanceTest, RadiosFollowThePilotsEntry) {
    const std::pair<const char*, EventList> rows[] = {
        {"90 385", {{65716, 90}, {65708, 0x385}}},
        {"0 1139", {{65708, 0x1139}}},
        {"270 38577", {{65716, 270}, {65708, 0x38}}},  // six characters count
        {"", {}}};
    for (const auto& [entry, events] : rows) {
        requests.radioEntry = entry;
        simulator.events.clear();
        TuneRadios(TuneMode::PilotEntry);
        EXPECT_EQ(simulator.events, events) << entry;
    }
}

class ActivationTest : public GuidanceTest {
  protected:
    ActivationTest() {
        folder.Write("avq/flightplans/ABCD.RTE",
                     "CruiseAlt=31000\nFuel=6000\n[FlightPlan]\n"
                     "AAA 0 0 APT ---\nBBB 0 1 VOR 113.90\nCCC 0 2 APT ---\n");
    }
    test::TempSimFolder folder;
};

TEST_F(ActivationTest, ALoadedPlanIsFlownFromItsFirstWaypoint) {
    guidance.firstLegPrepared = 1;
    guidance.destinationNearDone = 1;
    guidance.trackLeg = 1;
    planAirports.patternRunwayOffset = 3;
    planAirports.destinationAirportState = 2;
    AppendMessage("kept");
    AppendMessage("dropped");
    settings.LoadFuelonFlightPlanLoad = 1;
    for (const auto& [speedKt, fuel] : {std::pair{5.0, 0.0}, {4.9, 6000}}) {
        aircraft.groundSpeedKt = speedKt;
        LoadPlanToActive("ABCD.RTE");
        EXPECT_EQ(planBook.fuelLoadRequested, fuel) << speedKt;
    }
    EXPECT_EQ(planBook.status, RouteStatus::Active);
    EXPECT_EQ(vnav.cruiseAltitude, 31000);
    EXPECT_NEAR(guidance.distanceToGoNm, 60, 1e-6);
    EXPECT_EQ(guidance.firstLegPrepared, 0);
    EXPECT_EQ(guidance.destinationNearDone, 0);
    EXPECT_EQ(guidance.trackLeg, 0);
    EXPECT_EQ(planAirports.patternRunwayOffset, kNoPatternRunway);
    EXPECT_EQ(planAirports.destinationAirportState, 1);
    ASSERT_EQ(messages.count, 2);
    EXPECT_EQ(messages.lines[1], "kept");
    EXPECT_EQ(messages.lines[2], "FPL 'ABCD.RTE' loaded");
    LoadPlanToActive("../ABCD.RTE");
    ASSERT_EQ(messages.count, 2);
    EXPECT_EQ(messages.lines[2], "Unable to load FP");
}

TEST_F(ActivationTest, TheDestinationIsLoadedOnceUnderWay) {
    folder.Write("avq/Navdata/avq_apts.txt", "CCC CHARLIE 1234 0.0 2.0\n");
    const struct {
        double longitude;
        const char* type;
        std::int32_t state;
        const char* elevation;
    } rows[] = {{7.9 / 60, "APT", 1, ""}, {8.1 / 60, "WPT", 1, ""}, {8.1 / 60, "APT", 2, "1234"}};
    for (const auto& row : rows) {
        planAirports = {};
        planAirports.destinationAirportState = 1;
        planAirports.patternRunwayOffset = 4;
        SetActivePlan({{"AAA", 0, 0, "APT"}, {"BBB", 0, 1}, {"CCC", 0, 2, row.type}});
        PlaceAt(0, row.longitude);
        LoadDestinationAirport();
        EXPECT_EQ(planAirports.destinationAirportState, row.state) << row.type;
        EXPECT_EQ(planAirports.destinationElevationText, row.elevation) << row.type;
        EXPECT_EQ(planAirports.patternRunwayOffset, row.state == 2 ? kNoPatternRunway : 4);
    }
}

// Whatever the pilot looks up meanwhile.
TEST_F(ActivationTest, TheDestinationIsReadAsThePlanStartsAndNoFileUnderWay) {
    using Way = void (*)();
    for (const Way start : {Way([] { LoadPlanToActive("ABCD.RTE"); }), Way([] {
                                SetActivePlan({{"AAA", 0, 0, "APT"}, {"CCC", 0, 2, "APT"}});
                                StartActivePlan();
                            })}) {
        ResetModuleState();
        SimFolder = folder.root().string();
        folder.Write("avq/Navdata/avq_apts.txt",
                     "BBB BRAVO 9 0.0 1.0\nCCC CHARLIE 1234 0.0 2.0 09_090_0.0_2.0_150_0_0_0\n");
        folder.Write("avq/Navdata/apt_additional_info.txt", "[CCC]\nRWY9=RIGHTPATTERN\n");
        folder.Write("avq/Aircraft/stands.txt", "CCC 1.5 2.5 90\n");
        settings.ParkingFile = "stands.txt";
        start();
        SetPlanAirport("BBB", PlanAirportMode::RunwaysOnly);
        for (const char* file :
             {"Navdata/avq_apts.txt", "Navdata/apt_additional_info.txt", "Aircraft/stands.txt"}) {
            folder.Write(std::string("avq/") + file, "");
        }
        PlaceAt(0, 1);
        LoadDestinationAirport();
        EXPECT_EQ(planAirports.destinationElevationText, "1234");
        EXPECT_EQ(activePlan.entries[activePlan.lastIndex].altitude, 1234);
        ASSERT_EQ(planAirports.runways.size(), 1U);
        EXPECT_EQ(planAirports.runways[0].rightPattern, 1);
        EXPECT_EQ(parkingPosition.headingDeg, 90);
        EXPECT_EQ(messages.lines[messages.count], "APT 'CCC' Set");
    }
}

}  // namespace
}  // namespace avq1
