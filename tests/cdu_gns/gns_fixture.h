// tests/cdu_gns/gns_fixture.h - what the tests of the GNS-style unit begin with.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/messages.h"
#include "base/module_state.h"
#include "cdu_gns/fake_unit.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"
#include "simlink/aircraft_state.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1::test {

class GnsTest : public ::testing::Test {
  protected:
    GnsTest() {
        ResetModuleState();
        avionicsPower = 1;
        aircraft.latitude = 0;
        aircraft.longitude = 0.5;
        aircraft.groundSpeedKt = 240;
        aircraft.headingMag = 90;
        aircraft.zuluHour = 12;
    }

    // Eight entries along the equator, one degree (60 nm) apart; the aircraft is half way to ABCDE.
    static void MakePlan() {
        SetActivePlan({{"KAAA", 0, 0, "APT"},
                       {"ABCDE", 0, 1, "VOR"},
                       {"FLY", 0, 2, "INT", "", "", 1},
                       {"LONGER", 0, 3, "WPT"},
                       {"STARA", 0, 4, "INT", "STAR"},
                       {"STARB", 0, 5, "INT", "STAR"},
                       {"APPRA", 0, 6, "INT", "APPR"},
                       {"KBBB", 0, 7, "APT"}});
        SetActiveWaypoint(1);
        RefreshPredictions();
    }

    FakeSimulator& simulator = FakeSimulator::Install();
    FakeGns unit;
};

}  // namespace avq1::test
