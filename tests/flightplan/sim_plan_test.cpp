#include "flightplan/sim_plan.h"

#include <gtest/gtest.h>

#include "base/messages.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_notation.h"

namespace avq1 {
namespace {

std::string Xml(const std::string& ident, const std::string& type, const std::string& position) {
    return "<ATCWaypoint id=\"" + ident + "\">\n<ATCWaypointType>" + type +
           "</ATCWaypointType>\n<WorldPosition>" + position + "</WorldPosition>\n</ATCWaypoint>\n";
}

struct SimPlanFiles : test::FolderTest {
    SimPlanFiles() {
        const std::string place = "N54\xB0 39' 14.04\",W6\xB0 13' 11.78\",+000000.00";
        const std::string start = Xml("KAAA", "Airport", place);
        folder_.Write("avq/flightplans/SIM.PLN", start + Xml("KBBB", "Airport", place));
        folder_.Write("avq/flightplans/PART.PLN", start + Xml("X", "VOR", "?"));
        folder_.Write("avq/flightplans/BAD.PLN", "[FSCFP]\nWP=1\n");
    }
};

TEST_F(SimPlanFiles, LoadLikeStoredOnesAndLeaveACopy) {
    ListStoredPlans();
    ASSERT_EQ(storedPlans.plans.size(), 4U);
    EXPECT_EQ(storedPlans.plans[0].firstIdent, "");
    EXPECT_EQ(storedPlans.plans[2].firstIdent + storedPlans.plans[2].lastIdent, "KAAAKBBB");
    EXPECT_FALSE(folder_.Exists("avq/flightplans/temp.rte"));
    EXPECT_EQ(messages.count, 0);

    LoadPlan("SIM.PLN");
    EXPECT_EQ(test::Show(modifiedPlan), "KAAA KBBB");
    EXPECT_EQ(planBook.destinationIdent, "KBBB");
    EXPECT_EQ(folder_.Read("avq/flightplans/temp.rte"),
              "[FlightPlan]\nKAAA     54.65389 -6.21972  APT\nKBBB     54.65389 -6.21972  APT\n");
    EXPECT_TRUE(ReadPlanToActive("sim.pln"));
    EXPECT_EQ(test::Show(activePlan), "KAAA KBBB");
}

TEST_F(SimPlanFiles, WhatIsMissingIsSaid) {
    for (const auto& [name, said] : {std::pair{"PART.PLN", "FPL: 1 without position left out"},
                                     {"SIM.PLN", ""},
                                     {"BAD.PLN", "Unable to load FP"}}) {
        messages = {};
        LoadPlan(name);
        EXPECT_EQ(planBook.entryNotice, said) << name;
        EXPECT_EQ(messages.lines.back(), said) << name;
    }
}

}  // namespace
}  // namespace avq1
