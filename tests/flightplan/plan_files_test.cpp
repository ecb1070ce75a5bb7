#include "flightplan/plan_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "base/messages.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_notation.h"
#include "settings/settings.h"
#include "support/full_disk.h"

namespace avq1 {
namespace {

using test::SetPlan;
using test::Show;
using testing::ElementsAre;

constexpr const char* kFolder = "avq/flightplans/";
constexpr const char* kBostonPlan =
    "CruiseAlt=32000\nTripFuel=4000\nResvFuel=1500\n[FlightPlan]\n"
    "KJFK             40.63945  -73.77932  APT ---            \n"
    "; over the sound\n"
    "GDM              42.54592  -72.05819  VOR 110.60 T608    STAR\n"
    "KBOS             42.36197  -71.00790  APT ---            \n";
constexpr const char* kAirports =
    "KJFK John_F_Kennedy 13 40.63945 -73.77932 04L_12079_40.6_-73.7_31.2_x_y_0 "
    "22R_12079_40.7_-73.7_211.2_x_y_224\n"
    "KBOS Logan 20 42.36197 -71.00790 04R_10006_42.3_-71.0_35_x_y_35 9_7001_42.3_-71.0_92_x_y_92\n";

struct PlanFiles : test::FolderTest {
    void Store(const std::string& name, const std::string& text) const {
        folder_.Write(kFolder + name, text);
    }
};

TEST_F(PlanFiles, LinesHaveFixedColumns) {
    SetPlan(activePlan, "KJFK J1 AAA BBB DISCO THEN KBOS");
    activePlan.Edit(0).latitude = -0.5;
    activePlan.Edit(1).type = "VOR";
    activePlan.Edit(1).frequency = "113.10";
    activePlan.Edit(1).procedure = "SID";
    activePlan.Edit(2).procedure = "STAR";  // has no column without an airway
    activePlan.Edit(4).type = "OAWY";
    EXPECT_EQ(PlanText(activePlan),
              "[FlightPlan]\n"
              "KJFK             -0.50000  -70.00000  APT ---            \n"
              "AAA              40.50000  -70.00000  VOR 113.10 J1      SID\n"
              "BBB              41.00000  -70.00000  INT ---            \n"
              "DISCO            0.00000  0.00000  WPT ---            \n"
              "THEN             42.00000  -70.00000  WPT ---            \n"
              "KBOS             42.50000  -70.00000  APT ---            \n");
    EXPECT_EQ(activePlan.entries[4].type, "WPT");
    EXPECT_EQ(activePlan.entries[3].type, "");
}

TEST_F(PlanFiles, WaypointsBeyondTheLastEntryAreIgnored) {
    std::string text = "[FlightPlan]\n";
    for (int i = 0; i < 230; ++i) {
        text += "P" + std::to_string(i) + " 1 2 INT ---\n";
    }
    Store("LONG.RTE", text);
    EXPECT_TRUE(ReadPlanToActive("LONG.RTE"));
    EXPECT_EQ(activePlan.lastIndex, 200);
    EXPECT_EQ(activePlan.entries[200].ident, "P200");
    EXPECT_EQ(modifiedPlan.entries[200].ident, "P200");  // no empty row: there is no room for it
    EXPECT_EQ(planBook.entryNotice, kPlanFullMessage);
}

TEST_F(PlanFiles, ListHoldsPlansByTheirExtension) {
    for (const char* name : {"B.RTE", "A.RTE", "LOWER.rte", "SIM.PLN", "sim.pln", "TEMP.RTE",
                             "temp.rte", "NOTES.TXT", "RTE", "EMPTY.RTE"}) {
        Store(name, std::string(name) == "EMPTY.RTE" ? "" : kBostonPlan);
    }
    storedPlans.currentPage = 7;
    ListStoredPlans();
    std::vector<std::string> rows;
    for (const StoredPlan& plan : storedPlans.plans) {
        rows.push_back(plan.fileName + "|" + plan.firstIdent + "|" + plan.lastIdent);
    }
    EXPECT_THAT(rows, ElementsAre("A.RTE|KJFK|KBOS", "B.RTE|KJFK|KBOS", "EMPTY.RTE||", "SIM.PLN||",
                                  "NEW FPL|NEXT FPL|"));
    EXPECT_EQ(storedPlans.pageCount, 1);
    EXPECT_EQ(storedPlans.currentPage, 1);
    EXPECT_EQ(messages.count, 0);
}

TEST_F(PlanFiles, ListIsBoundedAndPaged) {
    const struct {
        int files;
        std::size_t listed;
        int pages;
    } cases[] = {{0, 1, 1}, {7, 8, 1}, {8, 9, 2}, {210, 200, 25}};
    int stored = 0;
    for (const auto& c : cases) {
        for (; stored < c.files; ++stored) {
            Store("P" + std::to_string(1000 + stored) + ".RTE", kBostonPlan);
        }
        ListStoredPlans();
        EXPECT_EQ(storedPlans.plans.size(), c.listed);
        EXPECT_EQ(storedPlans.pageCount, c.pages);
        EXPECT_EQ(storedPlans.plans.back().fileName, "NEW FPL");
    }
}

TEST_F(PlanFiles, WhatHoldsNoWaypointIsRefusedInWords) {
    Store("SIM.PLN", "[flightplan]\ndeparture_id=KJFK\n");
    Store("OTHER.RTE", "RM:KJFK:40.6:-73.8\n");
    Store("BARE.RTE", "[FlightPlan]\n; none yet\n");
    for (const char* name : {"SIM.PLN", "sim.pln", "NONE.PLN", "OTHER.RTE", "BARE.RTE"}) {
        messages = {};
        SetPlan(modifiedPlan, "KPIT KBUF");
        LoadPlan(name);
        EXPECT_EQ(modifiedPlan.lastIndex, -1);
        EXPECT_EQ(messages.count, 1);
        EXPECT_EQ(messages.lines[1], "Unable to load FP");
        EXPECT_FALSE(ReadPlanToActive(name));
    }
}

TEST_F(PlanFiles, LoadToActiveFillsBothPlansAndTheDestination) {
    Store("A.RTE", kBostonPlan);
    folder_.Write("avq/navdata/avq_apts.txt", kAirports);
    SetPlan(activePlan, "KPIT >AAA@ KBUF");
    planBook.activeIndex = kNoWaypoint;
    planBook.verticalTargetIndex = planBook.editIndex = 9;  // of the plan before
    EXPECT_TRUE(ReadPlanToActive("A.RTE"));
    EXPECT_EQ(planBook.editIndex, 2);
    EXPECT_EQ(planBook.verticalTargetIndex, 2);
    EXPECT_EQ(Show(activePlan), "KJFK T608 STAR(GDM) KBOS");
    EXPECT_EQ(Show(modifiedPlan), "KJFK T608 STAR(GDM) KBOS");
    EXPECT_EQ(planBook.reserveFuelInUse, 1500);
    EXPECT_EQ(planBook.destinationIdent, "KBOS");
    EXPECT_EQ(planAirports.destinationIdent, "KBOS");
    EXPECT_EQ(planAirports.destinationElevation, 20);
    EXPECT_EQ(activePlan.entries[0].altitude, airportSlots[kDepartureSlot].elevationFt);
    EXPECT_EQ(activePlan.entries[2].altitude, 20);
    EXPECT_EQ(airportSlots[kArrivalSlot].runways.size(), 2U);
    EXPECT_EQ(holdList.count, 0);

    SetPlan(activePlan, "KPIT >AAA@ KBUF");
    EXPECT_FALSE(ReadPlanToActive("MISSING.RTE"));
    EXPECT_EQ(planBook.editIndex, kNoWaypoint);
    EXPECT_EQ(holdList.count, 0);
    EXPECT_EQ(activePlan.lastIndex, -1);
    EXPECT_EQ(modifiedPlan.lastIndex, -1);
    EXPECT_EQ(planBook.fuelTotal, 0);
    EXPECT_EQ(planBook.reserveFuel, 0);
}

TEST_F(PlanFiles, NamesThatLeadOutOfTheFolderAreRefusedInWords) {
    folder_.Write("avq/A.RTE", kBostonPlan);
    Store("B.RTE", kBostonPlan);
    SetPlan(activePlan, "KPIT KBUF");
    for (const char* name :
         {"", "..\\A.RTE", "../A.RTE", "sub\\A.RTE", "C:A.RTE", "..", "/A.RTE"}) {
        SCOPED_TRACE(name);
        messages = {};
        EXPECT_FALSE(SavePlan(name));
        EXPECT_EQ(messages.lines[1], "FPL '" + std::string(name) + "' not saved");
        PreviewPlan(name);
        EXPECT_EQ(previewPlan.lastIndex, -1);
        EXPECT_EQ(messages.lines[2], "Unable to load FP");
    }
    EXPECT_EQ(folder_.Read("avq/A.RTE"), kBostonPlan);
    EXPECT_TRUE(SavePlan("A..B.RTE"));  // dots within a name lead nowhere
    PreviewPlan("A..B.RTE");
    EXPECT_EQ(previewPlan.lastIndex, 1);
}

TEST_F(PlanFiles, MissingFoldersAreCreatedOnSave) {
    SetPlan(activePlan, "KPIT KBUF");
    for (const char* folder : {"", "My Plans", "One\\Two\\Three"}) {
        SCOPED_TRACE(folder);
        settings.FlightPlansFolder = *folder == '\0' ? "" : folder_.root().string() + "\\" + folder;
        EXPECT_TRUE(SavePlan("NEW.RTE"));
        ListStoredPlans();
        ASSERT_EQ(storedPlans.plans.size(), 2U);
        EXPECT_EQ(storedPlans.plans[0].lastIdent, "KBUF");
    }
}

TEST_F(PlanFiles, AFailedSaveKeepsTheOldPlanAndLeavesNothingBehind) {
    SetPlan(activePlan, "KPIT AAA KBUF");
    const std::string text = PlanText(activePlan);
    const std::filesystem::path folder = folder_.root() / kFolder;
    std::filesystem::create_directories(folder / "FOLDER.RTE" / "x");
    const struct {
        const char* name;
        std::size_t bytes;
        bool saved;
    } cases[] = {
        {"A.RTE", 0, false},
        {"A.RTE", text.size() - 1, false},
        {"FOLDER.RTE", text.size(), false},
        {"A.RTE", text.size(), true},
    };
    for (const auto& [name, bytes, saved] : cases) {
        SCOPED_TRACE(testing::Message() << name << bytes);
        Store("A.RTE", kBostonPlan);
        messages = {};
        {
            const test::FullDisk disk(bytes);
            EXPECT_EQ(SavePlan(name), saved);
        }
        EXPECT_EQ(folder_.Read(std::string(kFolder) + "A.RTE"), saved ? text : kBostonPlan);
        EXPECT_EQ(messages.lines.back(), saved ? "" : "FPL '" + std::string(name) + "' not saved");
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            names.insert(entry.path().filename());
        }
        EXPECT_EQ(names, (std::set<std::string>{"A.RTE", "FOLDER.RTE"}));
    }
    ListStoredPlans();
    EXPECT_EQ(storedPlans.plans.size(), 2U);  // a folder is no plan
}

}  // namespace
}  // namespace avq1
