// The GNS-style unit by its keys' labels and the texts on its screen.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "base/redraw.h"
#include "cdu/pilot_entries.h"
#include "cdu_gns/gns_fixture.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_notation.h"
#include "guidance/activation.h"
#include "guidance/vnav.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "support/full_disk.h"

namespace avq1::test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;

using Rows = std::vector<std::string>;

// ---- keys and pages ----

TEST_F(GnsTest, PageKeysOpenTheirPagesAndStepThem) {
    MakePlan();
    constexpr struct {
        const char* keys;
        const char* title;
    } kCases[] = {{"FPL", "ACTIVE FPL   1/2"},
                  {"FPL", "ACTIVE FPL   2/2"},
                  {"FPL", "FLIGHT PLAN LIST 1/1"},
                  {"FPL", "ACTIVE FPL   1/2"},
                  {"NEXT", "ACTIVE FPL   2/2"},
                  {"NEXT", "ACTIVE FPL   1/2"},
                  {"PREV", "ACTIVE FPL   2/2"},
                  {"NAV", "NAVIGATION   1/4"},
                  {"NAV NAV NAV", "NAVIGATION   4/4"},
                  {"NAV", "NAVIGATION   1/4"},
                  {"PREV", "NAVIGATION   4/4"},
                  {"VNAV", "VNAV   1/2"},
                  {"VNAV", "VNAV   2/2"},
                  {"VNAV", "VNAV   1/2"},
                  {"FUEL", "PLAN 1/6"},
                  {"FUEL*6", "PLAN 1/6"},
                  {"PREV", "PLAN 6/6"},
                  {"NAV", "NAVIGATION   1/4"},
                  {"DIRECT", "DIRECT 1/2"},
                  {"DIRECT", "DIR CLOSEST ARP 2/2"},
                  {"DIRECT", "DIRECT 1/2"},
                  {"HOLD", "HOLDING PATTERN 1/1"},
                  {"FPL", "ACTIVE FPL   1/2"}};
    for (const auto& c : kCases) {
        EXPECT_EQ(unit.After(c.keys).front(), c.title) << c.keys;
    }
}

TEST_F(GnsTest, InstallationShowsTheListOfStoredPlans) {
    unit.Press("NAV");
    InstallGns();
    unit.Draw();
    EXPECT_EQ(unit.Rows().front(), "FLIGHT PLAN LIST 1/1");
}

// ---- page 1 ----

TEST_F(GnsTest, TheColumnChangesWhenItIsConfirmed) {
    MakePlan();
    activePlan.Edit(7).altitude = 8000;
    activePlan.Edit(7).altitudeConstraint = 1;
    const std::string ete = "APPRA|" + TimeTo(6);
    const struct {
        const char* keys;
        const char* menu;
        std::string row;
    } kCases[] = {{"FPL NEXT", "ARRIVE|ETE", ete},
                  {"L10 CLR", "ARRIVE|ETA?", ete},
                  {"ENTER", "ARRIVE|ETA", "APPRA|" + ClockAt(6)},
                  {"L10 CLR ENTER", "ARRIVE|DIS", "APPRA|  329"},
                  {"L10 CLR CLR L10", "ARRIVE|DIS", "APPRA|  329"},
                  {"L10 CLR ENTER", "ARRIVE|ALT", "KBBB| 8000"}};
    for (const auto& c : kCases) {
        const Rows rows = unit.After(c.keys);
        EXPECT_THAT(rows, Contains(c.menu)) << c.keys;
        EXPECT_THAT(rows, Contains(StartsWith(c.row))) << c.keys;
    }
    aircraft.groundSpeedKt = 50;
    EXPECT_THAT(unit.After("L10 CLR ENTER"), Contains("APPRA|------"));
}

TEST_F(GnsTest, APlanIsTypedFromNothing) {
    MakeDatabase();
    EXPECT_EQ(unit.After("FPL L1 CLR ENTER").front(), "PILOT ENTERED WPT") << "an empty field";
    unit.Press("FPL");
    EXPECT_THAT(unit.Rows(), AllOf(Contains("ACTIVE FPL   1/1"), Contains("******")));
    unit.Press("L1 =KAAA ENTER");
    EXPECT_THAT(unit.Rows(), IsSupersetOf(Rows{"DATABASE WPT 1/1", "WAYPOINT|KAAA", "TYPE|APT",
                                               "ELEV|100 FT", "FLYOVER:|NO"}));
    unit.Press("ENTER");
    EXPECT_EQ(unit.Rows().front(), "ACTIVE FPL   1/1");
    unit.Press("=TWICE ENTER");
    EXPECT_EQ(unit.Rows().front(), "DATABASE WPT 1/2");
    EXPECT_THAT(unit.After("NEXT L10 CLR"),
                IsSupersetOf(Rows{"DATABASE WPT 2/2", "FREQ|385", "FLYOVER:|YES?"}));
    unit.Press("ENTER ENTER =NEWPT ENTER ENTER =KBBB ENTER ENTER");
    EXPECT_EQ(Show(activePlan), "KAAA >TWICE NEWPT KBBB");
    EXPECT_EQ(planBook.activeIndex, 1) << "the second waypoint makes entry 1 active";
    EXPECT_EQ(activePlan.entries[1].type, "NDB");
    EXPECT_EQ(activePlan.entries[1].flyover, 1);
    EXPECT_EQ(activePlan.entries[2].flyover, 0) << "the choice holds for one waypoint";
}

TEST_F(GnsTest, WhatIsTypedDecidesWhereItLeads) {
    MakeDatabase();
    MakePlan();
    constexpr struct {
        const char* typed;
        const char* title;
        const char* shows;
    } kCases[] = {{"=NEWPT", "DATABASE WPT 1/1", "WAYPOINT|NEWPT"},
                  {"=NOWHER", "PILOT ENTERED WPT", "WAYPOINT|NOWHER"},
                  {"CLR =A CLR", "PILOT ENTERED WPT", "WAYPOINT|TMP00"},
                  {"=NEWPT*", "OFFSET WPT    1/1", "WAYPOINT|NEWPT*"},
                  {"=TWICE*", "OFFSET WPT    1/2", "WAYPOINT|TWICE*"},
                  {"=*", "OFFSET WPT    1/1", "WAYPOINT|TMPXX*"},
                  {"=NOWHE*", "NOT IN DATABASE|ACTIVE FPL   1/2", "NOWHE*"},
                  {"=#J9", "AIRWAY|J9|1/1", "FR|FLY"},
                  {"=#J8", "AIRWAY|J8|(N/A)", "FR|FLY"},
                  {"", "ACTIVE FPL   1/2", "FLY"}};  // nothing typed: nothing happens
    for (const auto& c : kCases) {
        const std::string keys = std::string("NAV FPL L3 ") + c.typed + " ENTER";
        const Rows rows = unit.After(keys);
        EXPECT_THAT(rows, Contains(c.title)) << keys;
        EXPECT_THAT(rows, Contains(StartsWith(c.shows))) << keys;
    }
    EXPECT_EQ(activePlan.lastIndex, 7);
}

TEST_F(GnsTest, ASelectedWaypointIsDeletedWithItsProceduresTag) {
    MakePlan();
    unit.Press("FPL L3 L3");
    EXPECT_THAT(unit.After("CLR"), Contains(StartsWith("DELETE?")));
    EXPECT_THAT(unit.After("L3 ENTER"), Contains(StartsWith("STARA"))) << "a line key cancels";
    unit.Press("L3 L3 CLR ENTER");
    EXPECT_EQ(Show(activePlan), "KAAA >ABCDE FLY LONGER STARB APPR(APPRA) KBBB");
    unit.Press("L1 CLR ENTER");
    EXPECT_EQ(activePlan.lastIndex, 5);
    unit.Press("NAV FPL L2 =A CLR CLR CLR ENTER");
    EXPECT_EQ(unit.Rows().front(), "PILOT ENTERED WPT") << "typed already: CLR takes characters";
}

TEST_F(GnsTest, TheSelectionFollowsItsWaypointWhenTheRouteMovesOn) {
    MakeDatabase();
    MakePlan();
    unit.Press("FPL L3 =NEWPT");
    SetActiveWaypoint(2);
    unit.Draw();
    EXPECT_THAT(unit.Rows(), Contains(StartsWith("NEWPT")));
    unit.Press("ENTER ENTER");
    EXPECT_EQ(Show(activePlan), "KAAA ABCDE >FLY NEWPT LONGER STAR(STARA,STARB) APPR(APPRA) KBBB");
}

// ---- what cannot be done ----

struct Refusal {
    const char* what;
    enum Lacking { Nothing, Room, Plan, Database, Power, Disk, File } lacking;
    const char* keys;
    const char* says;
};

// Power, disk and file are lost before the last word; power is back after it.
constexpr Refusal kRefusals[] = {
    {"a waypoint", Refusal::Room, "FPL L2 =NEWPT ENTER ENTER", "FLIGHT PLAN FULL"},
    {"until the next key", Refusal::Room, "FPL L2 =NEWPT ENTER ENTER NEXT", "ACTIVE FPL   2/34"},
    {"a pilot's point", Refusal::Room, "FPL L2 =Q ENTER =N0120000E0023000 ENTER",
     "FLIGHT PLAN FULL"},
    {"an offset", Refusal::Room, "FPL L2 =NEWPT* ENTER L8 =260 ENTER =30 ENTER ENTER",
     "FLIGHT PLAN FULL"},
    {"an airway", Refusal::Room, "FPL L3 =#J9 ENTER L3 ENTER", "FLIGHT PLAN FULL"},
    {"a direct-to", Refusal::Room, "DIRECT =LATER ENTER ENTER", "FLIGHT PLAN FULL"},
    {"a departure", Refusal::Room, "FPL PREV L4 ENTER L6 =KSID ENTER ENTER ENTER ENTER L5 ENTER",
     "FLIGHT PLAN FULL"},
    {"direct-to", Refusal::Plan, "NAV DIRECT", "NAVIGATION   1/4"},
    {"LNAV", Refusal::Plan, "NAV L10 ENTER", "NO ACTIVE ROUTE"},
    {"a time there", Refusal::Plan, "NAV L7 ENTER", "TO|------|------"},
    {"a hold", Refusal::Plan, "FPL L1 HOLD L7 =90 ENTER", "AT ------"},
    {"a deletion", Refusal::Plan, "FPL L1 CLR ENTER", "PILOT ENTERED WPT"},
    {"a departure", Refusal::Plan, "FPL L4 ENTER", "ENTER AIRPORT ID"},
    {"saving", Refusal::Plan, "FPL L9 ENTER", "ACTIVE FPL   1/1"},
    {"a profile", Refusal::Plan, "VNAV VNAV", "INVALID"},
    {"a waypoint", Refusal::Database, "FPL L3 =NEWPT ENTER", "PILOT ENTERED WPT"},
    {"an offset", Refusal::Database, "FPL L3 =NEWPT* ENTER", "NOT IN DATABASE"},
    {"an airway", Refusal::Database, "FPL L3 =#J9 ENTER L1 ENTER", "AIRWAY|J9|(N/A)"},
    {"a direct-to", Refusal::Database, "DIRECT =LATER ENTER", "NOT IN DATABASE"},
    {"nearest airports", Refusal::Database, "DIRECT PREV L1 ENTER", "DIR CLOSEST ARP 2/2"},
    {"an approach", Refusal::Database, "FPL PREV L5 L5 ENTER ENTER", "AIRPORT NOT FOUND"},
    {"half an identifier", Refusal::Power, "FPL L3 =NEWPT", "NEWPT"},
    {"a search", Refusal::Power, "FPL L3 =NEWPT ENTER", "DATABASE WPT 1/1"},
    {"half a position", Refusal::Power, "FPL L3 =Q ENTER =N012000 =E00", "E      .00"},
    {"a restriction", Refusal::Power, "FPL L7 ENTER =250*", "250/"},
    {"saving", Refusal::Disk, "FPL PREV L9 ENTER ENTER", "UNABLE TO SAVE FPL"},
    {"a stored plan", Refusal::File, "FPL FPL FPL L7 ENTER", "UNABLE TO LOAD FPL"},
};

TEST_F(GnsTest, WhatCannotBeDoneIsSaidAndChangesNothing) {
    for (const Refusal& c : kRefusals) {
        SCOPED_TRACE(std::string(c.what) + " after " + c.keys);
        ResetModuleState();
        SimFolder = folder.root().string();
        avionicsPower = 1;
        MakePlan();
        std::filesystem::remove_all(folder.root() / "avq");
        if (c.lacking == Refusal::Database) {
            LoadNavDatabase();
        } else {
            MakeDatabase();
        }
        while (c.lacking == Refusal::Room && !activePlan.IsFull()) {
            activePlan.Append(activePlan.entries[2]);
        }
        if (c.lacking == Refusal::Plan) {
            activePlan.CutTo(-1);
            SetActiveWaypoint(kNoWaypoint);
        }
        folder.Write("avq/flightplans/KAAAKBBB.RTE",
                     "[FlightPlan]\nKAAA 0 0 APT ---\nKBBB 0 7 APT ---\n");
        const std::string before = Without(Show(activePlan, true), "=");
        const std::string keys = c.keys;
        const std::size_t last = keys.rfind(' ');
        unit.Press(keys.substr(0, last));
        if (c.lacking == Refusal::File) {
            std::filesystem::remove(folder.root() / "avq/flightplans/KAAAKBBB.RTE");
        }
        {
            std::optional<FullDisk> disk;
            if (c.lacking == Refusal::Disk) {
                disk.emplace(10);
            }
            avionicsPower = c.lacking == Refusal::Power ? 0 : 1;
            unit.Press(keys.substr(last + 1));
            EXPECT_EQ(unit.picture().IsClear(), avionicsPower == 0);
        }
        avionicsPower = 1;
        unit.Draw();
        EXPECT_THAT(unit.Rows(), Contains(HasSubstr(c.says)));
        EXPECT_EQ(Without(Show(activePlan, true), "="), before);
        if (c.lacking == Refusal::Disk) {
            EXPECT_EQ(folder.Read("avq/flightplans/KAAAKBBB.RTE").substr(0, 12), "[FlightPlan]");
        }
    }
}

// ---- waypoint pages ----

TEST_F(GnsTest, APilotsPointIsTypedDigitByDigit) {
    MakePlan();
    constexpr struct {
        const char* typed;
        const char* latitude;
        const char* longitude;
    } kCases[] = {{"", "----------", "----------"},
                  {"=E", "----------", "----------"},  // the latitude comes first
                  {"=7", "----------", "----------"},
                  {"=N", "N      .  ", "----------"},
                  {"=N3", "N      . 3", "----------"},
                  {"=N333750", "N 33 37.50", "----------"},
                  {"=N3337509", "N 33 37.50", "----------"},
                  {"=S33375 CLR", "S    33.37", "----------"},
                  {"=S CLR", "----------", "----------"},
                  {"=N333750W", "N 33 37.50", "W      .  "},
                  {"=N333750W1 =115430", "N 33 37.50", "W111 54.30"},
                  {"=N333750 L8", "----------", "----------"}};
    for (const auto& c : kCases) {
        unit.Press("NAV FPL L3 =QQQ ENTER");
        std::vector<std::string> shown;
        for (const std::string& row : unit.After(c.typed)) {
            shown.push_back(row.substr(row.find('|') == std::string::npos ? 0 : row.find('|') + 1));
        }
        unit.Draw();
        if (std::string_view(c.typed).empty()) {
            shown = unit.Rows();
            EXPECT_THAT(shown, Contains("POS|----------"));
            continue;
        }
        EXPECT_THAT(shown, Contains(StartsWith(c.latitude))) << c.typed;
        EXPECT_THAT(shown, Contains(StartsWith(c.longitude))) << c.typed;
    }
    unit.Press("NAV FPL L3 =QQQ ENTER =N333750W111 ENTER");
    EXPECT_EQ(unit.Rows().front().substr(0, 13), "INVALID ENTRY");
    unit.Press("=5430 ENTER");
    EXPECT_EQ(activePlan.entries[3].ident, "QQQ");
    EXPECT_EQ(activePlan.entries[3].type, "WPT");
    EXPECT_NEAR(activePlan.entries[3].latitude, 33 + 37.5 / 60, 1e-9);
    EXPECT_NEAR(activePlan.entries[3].longitude, -(111 + 54.3 / 60), 1e-9);
}

TEST_F(GnsTest, AnOffsetIsInsertedAtRadialAndDistance) {
    MakeDatabase();
    MakePlan();
    aircraft.magneticVariation = 10;
    unit.Press("FPL L3 =NEWPT* ENTER");
    EXPECT_THAT(unit.Rows(), IsSupersetOf(Rows{"RAD|-----", "DIS|------"}));
    EXPECT_THAT(unit.After("ENTER").front(), HasSubstr("OFFSET")) << "nothing to insert yet";
    EXPECT_EQ(unit.After("L8 =361 ENTER").front().substr(0, 13), "INVALID ENTRY");
    unit.Press("CLR CLR CLR =260 ENTER =10000 ENTER");
    EXPECT_EQ(unit.Rows().front().substr(0, 13), "INVALID ENTRY") << "once around is far enough";
    unit.Press("L8 L8 L8 ENTER =30 ENTER");
    EXPECT_THAT(unit.Rows(), IsSupersetOf(Rows{"RAD|260", "DIS|30", "OK? ENTER"}));
    unit.Press("L10 CLR ENTER ENTER");
    EXPECT_EQ(activePlan.entries[3].ident, "NEWPT");
    EXPECT_EQ(activePlan.entries[3].flyover, 1);
    EXPECT_NEAR(activePlan.entries[3].longitude, 2.0, 1e-3) << "30 nm west of NEWPT";
    EXPECT_EQ(gns.page, kGnsPlan);
    unit.Press("=LATER ENTER ENTER");
    EXPECT_EQ(activePlan.entries[4].flyover, 0) << "the choice holds for one waypoint";
}

TEST_F(GnsTest, CrossingRestrictsTheSelectedWaypoint) {
    MakePlan();
    constexpr struct {
        const char* typed;
        double speed, altitude;  // 0: not looked at
        int constraint;
        bool accepted;
    } kCases[] = {{"=250*10000", 250, 10000, 1, true},
                  {"=*8000", 0, 8000, 1, true},
                  {"=A50", 0, 8000, 1, false},
                  {"=250*99999", 0, 8000, 1, false},
                  {"=*0", 0, 8000, 1, false},
                  {"=250*10*10", 0, 8000, 1, false},
                  {"=A CLR", 0, 0, 0, true}};
    for (const auto& c : kCases) {
        unit.Press("NAV FPL L7 ENTER");
        unit.Press(c.typed);
        unit.Press("ENTER");
        const PlanWaypoint& entry = activePlan.entries[2];
        EXPECT_EQ(gns.page, c.accepted ? kGnsPlan : kGnsCrossing) << c.typed;
        EXPECT_EQ(c.speed == 0 ? 0 : entry.speed, c.speed) << c.typed;
        EXPECT_EQ(c.altitude == 0 ? 0 : entry.altitude, c.altitude) << c.typed;
        EXPECT_EQ(entry.altitudeConstraint, c.constraint) << c.typed;
    }
    activePlan.Edit(2).altitude = 9000;
    activePlan.Edit(2).altitudeConstraint = kCrossAtOrAbove;
    unit.Press("NAV FPL L7 ENTER ENTER");
    EXPECT_EQ(activePlan.entries[2].altitudeConstraint, kCrossAtOrAbove) << "nothing typed";
    EXPECT_EQ(activePlan.entries[2].altitude, 9000);
    EXPECT_THAT(unit.After("NAV FPL L2 L2 VNAV =250*10000"),
                AllOf(Contains("AT FLY"), Contains(HasSubstr("250/10000"))));
    EXPECT_THAT(unit.After("ENTER"), Contains("FLY|" + TimeTo(2) + "|A"));
}

// ---- direct-to ----

TEST_F(GnsTest, DirectFliesToThePickedOrTypedWaypoint) {
    MakeDatabase();
    MakePlan();
    unit.Press("DIRECT");
    EXPECT_THAT(unit.Rows(), IsSupersetOf(Rows{"TO |ABCDE", "FLY", "******"}));
    unit.Press("ENTER");
    EXPECT_EQ(gns.page, kGnsDirect) << "nothing picked";
    unit.Press("L2 L2 ENTER");
    EXPECT_EQ(Show(activePlan),
              "KAAA ABCDE FLY DCT DIRECT >LONGER STAR(STARA,STARB) APPR(APPRA) KBBB");
    EXPECT_EQ(planBook.status, RouteStatus::Active);
    EXPECT_EQ(unit.Rows().front(), "ACTIVE FPL   1/2");
    unit.Press("DIRECT =LATER ENTER");
    EXPECT_THAT(unit.Rows(), Contains("DIRECTION:|DEFAULT"));
    unit.Press("ENTER");
    EXPECT_THAT(unit.Rows(), Contains("LATER"));
    unit.Press("ENTER");
    EXPECT_EQ(Show(activePlan),
              "KAAA ABCDE FLY DCT DIRECT >LATER LONGER STAR(STARA,STARB) APPR(APPRA) KBBB");
    EXPECT_EQ(unit.After("DIRECT =NOWHER ENTER").front().substr(0, 15), "NOT IN DATABASE");
}

TEST_F(GnsTest, ALongPlanIsPagedThroughOnDirect) {
    MakeDatabase();
    MakePlan();
    for (int i = 8; i <= 25; ++i) {
        PlanWaypoint entry = activePlan.entries[2];
        entry.ident = "P" + std::to_string(i);
        activePlan.Append(entry);
    }
    SetActiveWaypoint(21);
    constexpr struct {
        const char* keys;
        const char* title;
    } kCases[] = {{"DIRECT L2 NEXT ENTER", "DIRECT 2/3"},  // the pick is given up
                  {"L2 DIRECT PREV ENTER", "DIRECT 2/3"},
                  {"PREV =LATER", "DIRECT 1/3|LATER"},  // its row is on another page
                  {"NEXT", "DIRECT 2/3"},
                  {"NEXT ENTER", "DIR CLOSEST ARP 3/3"},
                  {"NEXT ENTER", "DATABASE WPT 1/1"},
                  {"L10 CLR ENTER ENTER", "DIRECT 2/3"},
                  {"ENTER", "ACTIVE FPL   1/2"}};
    for (const auto& c : kCases) {
        EXPECT_EQ(unit.After(c.keys).front(), c.title) << c.keys;
    }
    EXPECT_EQ(ActiveWaypoint().ident, "LATER");
    EXPECT_EQ(ActiveWaypoint().flyover, 1);
    EXPECT_THAT(unit.After("L3 =NEWPT ENTER"), Contains("FLYOVER:|NO")) << "held for one waypoint";
}

TEST_F(GnsTest, AForcedTurnBeginsOnItsSide) {
    MakeDatabase();
    MakePlan();
    aircraft.headingMag = 250;  // east lies to the left
    constexpr struct {
        const char* choose;
        int heading;
        Side side;
    } kCases[] = {{"", 0, Side::None}, {"CLR", 0, Side::None}, {"CLR CLR", 50, Side::Left}};
    for (const auto& c : kCases) {
        MakePlan();
        simulator.events.clear();
        unit.Press("NAV DIRECT =LATER ENTER L10 L10");
        unit.Press(c.choose);
        unit.Press("ENTER ENTER ENTER");
        const auto sent = std::ranges::find(simulator.events, kHeadingBugEvent,
                                            &std::pair<std::int32_t, std::uint32_t>::first);
        EXPECT_EQ(sent == simulator.events.end() ? 0 : static_cast<int>(sent->second), c.heading)
            << c.choose;
        EXPECT_EQ(guidance.pendingTurnSide, c.side) << c.choose;
    }
}

TEST_F(GnsTest, NearestAirportsAreOrderedAndFlownTo) {
    MakeDatabase();
    MakePlan();
    EXPECT_THAT(unit.After("DIRECT DIRECT"),
                ElementsAre("DIR CLOSEST ARP 2/2", "<", "KAAA     270/  31", "KSID     333/  68",
                            "<", "KBBB     090/ 389"));
    unit.Press("L2 ENTER");
    EXPECT_EQ(Show(activePlan), "DIRECT >KSID");
    EXPECT_EQ(planAirports.destinationIdent, "KSID");
}

// ---- procedures and airways ----

TEST_F(GnsTest, ADepartureIsChosenStepByStepAndSpliced) {
    MakeDatabase();
    MakePlan();
    unit.Press("FPL NEXT L4");
    EXPECT_THAT(unit.Rows(), Contains("DEPART?|SAVE FPL"));
    EXPECT_THAT(unit.After("ENTER"), Contains("DEPARTURE|KAAA|1/1"));
    EXPECT_THAT(unit.Rows(), Contains("NONE AVAILABLE"));
    EXPECT_THAT(unit.After("L6 =KXXX ENTER"), Contains("AIRPORT NOT FOUND"));
    EXPECT_THAT(unit.After("L6 L6"), Contains("AIRPORT NOT FOUND")) << "nothing was typed";
    EXPECT_THAT(unit.After("L6 =KSID ENTER"), IsSupersetOf(Rows{"RW09 ?", "RW27 "}));
    EXPECT_THAT(unit.After("L3 L3"), IsSupersetOf(Rows{"RW09 ", "RW27 "})) << "a third press";
    EXPECT_THAT(unit.After("L3 ENTER"), IsSupersetOf(Rows{"RUNWAY|RW09", "EAST1 ?", "BOTH1 "}));
    EXPECT_THAT(unit.After("ENTER"), IsSupersetOf(Rows{"SID|EAST1", "NORTH", "SOUTH"}));
    EXPECT_THAT(unit.After("L4 ENTER"),
                IsSupersetOf(Rows{"TRANSITION|SOUTH", "WAYPOINTS OF SID:", "SELECT|ERASE"}));
    EXPECT_THAT(unit.After("L5"), Contains("SELECT?|ERASE"));
    unit.Press("ENTER");
    EXPECT_EQ(gns.page, kGnsPlan);
    EXPECT_EQ(Show(activePlan).substr(0, 40), "KSID SID:EAST1.SOUTH(>EAAA,ESSS) ABCDE F");
}

TEST_F(GnsTest, ArrivalAndApproachAreSplicedAndErased) {
    MakeDatabase();
    MakePlan();
    unit.Press("FPL NEXT L5 L5 ENTER");
    EXPECT_THAT(unit.After("ENTER"),
                IsSupersetOf(Rows{"APCH|KBBB|1/1", "ILS   ?", "VOR   ", "LOC   "}));
    EXPECT_THAT(unit.After("ENTER"), Contains("WPTS OF APPROACH:"));
    unit.Press("L5 ENTER");
    EXPECT_EQ(Show(activePlan), "KAAA >ABCDE FLY LONGER STAR(STARA,STARB) APPR(INAAA,FAAA) KBBB");
    unit.Press("NAV FPL NEXT L5 ENTER ENTER");
    EXPECT_THAT(unit.Rows(), IsSupersetOf(Rows{"STAR|DOWN2"}));
    unit.Press("L3 ENTER L5 ENTER");
    EXPECT_EQ(Show(activePlan), "KAAA >ABCDE FLY LONGER STAR:DOWN2.WEST(DWWW,DAAA) KBBB");
    EXPECT_THAT(unit.Rows().front(), HasSubstr("APPROACH REMOVED"));
    unit.Press("NAV FPL NEXT L5 ENTER ENTER L3 ENTER L10 ENTER");
    EXPECT_EQ(Show(activePlan), "KAAA >ABCDE FLY LONGER KBBB");
}

TEST_F(GnsTest, AnAirwayIsInsertedUpToThePickedFix) {
    MakeDatabase();
    MakePlan();
    unit.Press("FPL L3 =#J9 ENTER");
    EXPECT_EQ(modifiedPlan.lastIndex, 7) << "looked up from a copy";
    EXPECT_THAT(unit.Rows(),
                IsSupersetOf(Rows{"FR|FLY", "TO|JONE", "JTWO", "JTHR", "SELECT ENDING WPT"}));
    unit.Press("ENTER");
    EXPECT_EQ(gns.page, kGnsAirway) << "none picked";
    EXPECT_THAT(unit.After("L3"), Contains("JTHR?"));
    unit.Press("ENTER");
    EXPECT_EQ(Show(activePlan).substr(0, 40), "KAAA >ABCDE FLY J9 JTWO J9 JTHR LONGER S");
    unit.Press("NAV FPL L3 =#J9 ENTER L2 ENTER");
    EXPECT_EQ(activePlan.entries[3].ident, "JONE") << "backwards before the entry";
}

// ---- stored plans ----

TEST_F(GnsTest, StoredPlansAreOpenedChangedAndActivated) {
    MakeDatabase();
    for (int i = 1; i <= 9; ++i) {
        folder.Write("avq/flightplans/P" + std::to_string(i) + ".RTE",
                     "[FlightPlan]\nKAAA  0.0  0.0  APT  ---\nNEWPT  0.5  2.5  INT  ---\n"
                     "KBBB  0.0  7.0  APT  ---\n");
    }
    gns.listWanted = true;
    EXPECT_THAT(unit.After("FPL FPL"), IsSupersetOf(Rows{"FLIGHT PLAN LIST 1/2"}));
    EXPECT_THAT(unit.After("L8 L8"), Contains(StartsWith(">|")));
    EXPECT_EQ(unit.After("L8 ENTER").front(), "FLIGHT PLAN LIST 1/2") << "nothing selected";
    unit.Press("L8 L8 ENTER");
    EXPECT_THAT(unit.Rows(), IsSupersetOf(Rows{"FLIGHT PLAN 4  1/1", "KAAA", "NEWPT", "KBBB",
                                               "******", "ARRIVE|SELECT", "APPROACH|ERASE"}));
    unit.Press("L2 L2 =LATER ENTER ENTER");
    EXPECT_EQ(activePlan.lastIndex, -1) << "the stored plan is changed, nothing is flown";
    EXPECT_EQ(unit.After("L10 ENTER").front(), "NO AIRCRAFT DATA|ACTIVE FPL   1/1");
    EXPECT_EQ(Show(activePlan), "KAAA >NEWPT LATER KBBB");
    unit.Press("FPL FPL L7 ENTER L10 L10 ENTER");
    EXPECT_EQ(modifiedPlan.lastIndex, -1);
    EXPECT_TRUE(folder.Exists("avq/flightplans/P1.RTE")) << "erasing never deletes a file";
}

TEST_F(GnsTest, TheActivePlanIsSavedUnderTheTypedName) {
    MakePlan();
    folder.Write("avq/flightplans/OLD.RTE", "old");
    unit.Press("FPL NEXT L9 ENTER");
    EXPECT_THAT(unit.Rows(), IsSupersetOf(Rows{"SAVE ACTIVE FPL ", "KAAA|-|KBBB", "KAAAKBBB.RTE"}));
    EXPECT_THAT(unit.After("L2 =A*B ENTER").front(), StartsWith("INVALID ENTRY"));
    unit.Press("L2 L2 =ELEVENCHARS ENTER");
    EXPECT_TRUE(folder.Exists("avq/flightplans/ELEVENCHAR.RTE"));
    EXPECT_EQ(gns.page, kGnsPlan);
    activePlan.Edit(7).type = "WPT";
    unit.Press("FPL NEXT L9 ENTER");
    EXPECT_EQ(gns.page, kGnsPlan) << "not between airports";
}

// ---- hold ----

TEST_F(GnsTest, AHoldIsPlannedAtTheSelectedWaypointAndChanged) {
    MakePlan();
    EXPECT_THAT(unit.After("FPL L1 HOLD"), Contains("AT ------")) << "the row flown from";
    EXPECT_EQ(holdList.count, 0);
    EXPECT_THAT(unit.After("FPL L2 L2 HOLD"),
                IsSupersetOf(Rows{"AT FLY", "INBOUND CRS|090", "TURN DIR|RIGHT", "LEG TIME|1.0",
                                  "LEG DIST|(4.0)"}));
    ASSERT_EQ(holdList.count, 1);
    EXPECT_EQ(holdList.holds[1].fixIndex, 2);
    EXPECT_EQ(holdList.holds[1].corners[0].name, "Fix");
    constexpr struct {
        const char* keys;
        const char* row;
    } kCases[] = {{"L7 =360 ENTER", "INBOUND CRS|000"},
                  {"L7 =361 ENTER", "INBOUND CRS|361"},  // refused: still being typed
                  {"L7", "INBOUND CRS|000"},
                  {"L7 L8 CLR", "TURN DIR|LEFT"},
                  {"ENTER", "TURN DIR|LEFT"},
                  {"L9 =15 ENTER", "LEG TIME|1.5"},
                  {"L9 L9 =125 ENTER", "LEG DIST|12.5"},
                  {"", "LEG TIME|(3.1)"},
                  {"L9 =1000 ENTER", "LEG TIME|100.0"},  // refused
                  {"L9 =1000 ENTER", "LEG DIST|100.0"},
                  {"L9 L10 CLR ENTER", "EXIT MODE|AUTO"}};
    for (const auto& c : kCases) {
        EXPECT_THAT(unit.After(c.keys), Contains(StartsWith(c.row))) << c.keys;
    }
    const HoldPattern& hold = holdList.holds[1];
    EXPECT_EQ(hold.inboundCourseMag, 0);
    EXPECT_EQ(hold.turnDirection, HoldTurn::Left);
    EXPECT_EQ(hold.legDistanceNm, 12.5);
    EXPECT_EQ(hold.legByTime, 0);
    EXPECT_EQ(hold.exitAutomatic, 1);
    EXPECT_THAT(unit.After("FPL L3 HOLD"),
                IsSupersetOf(Rows{"AT LONGER", "LEG TIME|1.0", "LEG DIST|(4.0)"}))
        << "one that is not the next to be flown";
    InsertBetween(activePlan, 2, activePlan.entries[1]);
    EXPECT_THAT(unit.After("L9"), Contains("AT LONGER")) << "the page follows its waypoint";
}

// ---- navigation, vertical, fuel ----

TEST_F(GnsTest, ThePauseIsToggledByItsKeyWhereTheSettingsAllowIt) {
    const auto hasPause = Contains(HasSubstr("PAUSE AT TOD"));
    EXPECT_THAT(unit.After("NAV PREV"), Not(hasPause));
    settings.ArmPauseAtTod = 1;
    EXPECT_THAT(unit.After("NAV"), Not(hasPause)) << "only where the unit tells its own data";
    EXPECT_THAT(unit.After("PREV"), Contains("PAUSE AT TOD (OFF)"));
    EXPECT_THAT(unit.After("L5"), Contains("PAUSE AT TOD (ON)"));
    EXPECT_EQ(vnav.pauseArmed, 1);
    EXPECT_THAT(unit.After("L5"), Contains("PAUSE AT TOD (OFF)"));
}

TEST_F(GnsTest, WhatIsLostIsShownAsDashes) {
    MakePlan();
    aircraft.verticalSpeedFpm = 700;
    for (const std::int32_t variable : {551, 81, 86, 82}) {  // ground speed, headings, variation
        simulator.variables[variable] = std::numeric_limits<double>::quiet_NaN();
    }
    for (int i = 0; i < 2 * kReadingsUntilLost; ++i) {
        RefreshAircraftState();
    }
    avionicsPower = 1;
    EXPECT_THAT(unit.After("NAV"), IsSupersetOf(Rows{"GS|---", "ETE|--:----", "DTK|090"}));
    EXPECT_THAT(unit.After("NAV"), Contains("TKE|- ---"));
    EXPECT_THAT(unit.After("NAV"), IsSupersetOf(Rows{"HDG|---", "VAR|- ---", "TK|---"}));
}

// What of the painted texts touches another one or runs off the screen of 495 x 400.
std::string Touching(const std::vector<DrawnText>& texts) {
    struct Ink {
        double left, right, top, bottom;
    };
    const auto inkOf = [](const DrawnText& text) {
        const double width = 0.6 * text.pixelSize;
        const auto first = static_cast<double>(text.text.find_first_not_of(' '));
        const auto last = static_cast<double>(text.text.find_last_not_of(' '));
        return Ink{text.x + width * first + 1, text.x + width * (last + 1) - 1,
                   text.y + 0.27 * text.pixelSize, text.y + 0.85 * text.pixelSize};
    };
    std::string found;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        const Ink a = inkOf(texts[i]);
        found += a.right > 495 ? texts[i].text + " runs off; " : "";
        for (std::size_t k = i + 1; k < texts.size(); ++k) {
            const Ink b = inkOf(texts[k]);
            if (a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom) {
                found += texts[i].text + " on " + texts[k].text + "; ";
            }
        }
    }
    return found;
}

TEST_F(GnsTest, TheLongestTextsTouchNothing) {
    class LargeGns : public FakeGns {
      public:
        std::string TouchingAfter(const std::string& keys) {
            Press(keys);
            RequestUnitRedraw();
            Picture::Forget();
            DrawGns(large_.Target(DisplayDrawMode::Normal));
            return Touching(Picture::Texts());
        }

      private:
        Picture large_{495, 400};
    };
    MakeDatabase();
    MakePlan();
    while (!activePlan.IsFull()) {
        PlanWaypoint entry = activePlan.entries[3];
        entry.ident = "WWWWWW";
        entry.via = "UWW999W";
        entry.altitude = 99999;
        entry.altitudeConstraint = 1;
        activePlan.Append(entry);
    }
    SetActiveWaypoint(100);
    settings.DecLatLonDisp = 1;
    settings.ArmPauseAtTod = 1;
    aircraft.longitude = -122.25;
    aircraft.windSpeedKt = 135;
    aircraft.verticalSpeedFpm = -5999;
    aircraft.apAltitudeTargetFt = 99999;
    aircraft.magneticVariation = -12.5;
    guidance.crossTrackNm = 1234.56;
    derived.windDirectionMag = 272;
    planBook.reserveFuelInUse = 999999;
    simulator.variables[306] = 6.7;
    simulator.variables[291] = simulator.variables[297] = 8388608;
    simulator.variables[292] = simulator.variables[298] = 50000;
    LargeGns large;
    for (const char* keys : {"NAV",
                             "L7",
                             "L10",
                             "L10 L10 CLR ENTER =360000",
                             "NAV",
                             "NAV",
                             "NAV",
                             "VNAV",
                             "VNAV",
                             "L5 ENTER",
                             "L7 =999999",
                             "L8 =999999",
                             "FUEL",
                             "L7 =999999",
                             "FUEL",
                             "FUEL",
                             "FUEL",
                             "FUEL",
                             "FUEL",
                             "FPL",
                             "L7",
                             "NEXT L3 HOLD",
                             "L7 =999999",
                             "L9 =999999",
                             "L9 =999999",
                             "L10",
                             "DIRECT",
                             "=WWWWWW",
                             "DIRECT",
                             "NAV FPL L3 =KBBB ENTER",
                             "L10",
                             "NAV FPL L3 =NEWPT* ENTER L8 =270 ENTER =9999 ENTER",
                             "NAV FPL L3 =QQQQQQ ENTER",
                             "NAV FPL PREV L5 ENTER",
                             "L6 =KBBB ENTER"}) {
        EXPECT_EQ(large.TouchingAfter(keys), "") << keys;
    }
}

TEST_F(GnsTest, AutoEngagesLnavAndManHandsOverTheTypedHeading) {
    MakePlan();
    EXPECT_THAT(unit.After("NAV L10"), Contains("AUTO?"));
    unit.Press("ENTER");
    EXPECT_EQ(guidance.lnavEngaged, 1);
    aircraft.apHeadingBug = 95;
    EXPECT_THAT(unit.After("L10 ENTER"), Contains("095"));
    EXPECT_EQ(guidance.lnavEngaged, 1) << "not before the heading is confirmed";
    simulator.events.clear();
    EXPECT_THAT(unit.After("=120 ENTER"), Contains("MAN"));
    EXPECT_EQ(guidance.lnavEngaged, 0);
    EXPECT_THAT(simulator.events, Contains(std::pair<std::int32_t, std::uint32_t>{66042, 120}));
    unit.Press("L10 CLR ENTER =360 ENTER");
    EXPECT_THAT(simulator.events, Contains(std::pair<std::int32_t, std::uint32_t>{66042, 360}));
    EXPECT_EQ(unit.After("L10 CLR ENTER =361 ENTER").front().substr(0, 13), "INVALID ENTRY");
}

TEST_F(GnsTest, VnavDataTakesWhatCanBeFlown) {
    MakePlan();
    constexpr struct {
        const char* keys;
        double cruise, transition, angle;
    } kCases[] = {{"L7 =25000 ENTER", 25000, 18000, 0}, {"L7 L7 =6000 ENTER", 25000, 6000, 0},
                  {"L8 =75 ENTER", 25000, 6000, 6},     {"L8 =0 ENTER L8", 25000, 6000, 6},
                  {"L8 =25 ENTER", 25000, 6000, 2.5},   {"L7 =ABC ENTER", 25000, 6000, 2.5}};
    unit.Press("VNAV L5 ENTER");
    for (const auto& c : kCases) {
        unit.Press(c.keys);
        EXPECT_EQ(vnav.cruiseAltitude, c.cruise) << c.keys;
        EXPECT_EQ(pilotEntries.transitionAltitudeFt, c.transition) << c.keys;
        EXPECT_EQ(performance.flightPathAngleDeg, c.angle) << c.keys;
    }
}

TEST_F(GnsTest, TheReserveIsTypedInTheSettingsUnitOnOneGaugeAndInPoundsOnTheOther) {
    settings.WeightUnit = "KGS";
    unit.Press("FUEL L7 =1000 ENTER");
    EXPECT_NEAR(planBook.reserveFuelInUse, 2204.62, 0.01);
    EXPECT_THAT(unit.Rows(), Contains("RESERVE|>|  1000"));
    FakeGns luminous(kGnsLmKeys);
    luminous.Press("FPL FUEL L7 =1000 ENTER");
    EXPECT_EQ(planBook.reserveFuelInUse, 1000);
    luminous.Press("L7 =INF ENTER");
    EXPECT_EQ(planBook.reserveFuelInUse, 1000) << "no number";
    luminous.Press("L7 L7 ENTER");
    EXPECT_EQ(planBook.reserveFuelInUse, 1000) << "nothing typed";
}

// ---- both gauges ----

TEST_F(GnsTest, BothGaugesShowOnePageAndEachIsPaintedOncePerChange) {
    MakePlan();
    FakeGns popup(kGnsLmKeys, 2);
    unit.Press("NAV");
    EXPECT_GT(popup.Draw(), 0);
    EXPECT_EQ(popup.Rows(), unit.Rows());
    EXPECT_EQ(unit.Draw() + popup.Draw(), 0);
    popup.Press("NAV");
    EXPECT_GT(unit.Draw(), 0);
    EXPECT_EQ(unit.Rows().front(), "NAVIGATION   2/4");
}

}  // namespace
}  // namespace avq1::test
