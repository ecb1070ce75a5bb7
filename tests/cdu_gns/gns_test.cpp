// The GNS-style unit by its keys' labels and the texts on its screen: what cannot be done, and what
// its screens alone do not tell. (Its pages key by key: gns_screens_test.cpp. That no two pages
// disagree: tests/host/agreement_test.cpp.)
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "base/redraw.h"
#include "cdu_gns/gns_fixture.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_notation.h"
#include "guidance/activation.h"
#include "guidance/holds.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "simlink/keyboard.h"
#include "support/fake_keyboard.h"
#include "support/full_disk.h"

namespace avq1::test {
namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::StartsWith;

using Rows = std::vector<std::string>;

// ---- keys and pages ----

TEST_F(GnsTest, InstallationShowsTheListOfStoredPlans) {
    unit.Press("NAV");
    InstallGns();
    unit.Draw();
    EXPECT_EQ(unit.Rows().front(), "FLIGHT PLAN LIST 1/1");
}

TEST_F(GnsTest, AnExpiredCycleIsSaid) {
    DatabaseCycle = "AIRAC2309";
    DatabaseValidity = "SEP07OCT05/23";
    unit.Press("NAV NAV NAV NAV");
    EXPECT_THAT(unit.Rows(), Contains("SEP07OCT05/23"));
    simulator.variables[9] = 2024;
    unit.Draw();
    EXPECT_THAT(unit.Rows(), Contains("EXPIRED|SEP07OCT05/23"));
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

// ---- direct-to ----

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

TEST_F(GnsTest, AnOffsetLiesAtItsTrueBearing) {
    MakeDatabase();
    MakePlan();
    aircraft.magneticVariation = 10;
    unit.Press("FPL L3 =NEWPT* ENTER L8 =260 ENTER =30 ENTER ENTER");
    EXPECT_NEAR(activePlan.entries[3].longitude, 2.0, 1e-3) << "30 nm west of NEWPT";
}

TEST_F(GnsTest, FilesAreWrittenUnderTheTypedNameAndNeverErased) {
    MakePlan();
    for (int i = 1; i <= 9; ++i) {
        folder.Write("avq/flightplans/P" + std::to_string(i) + ".RTE",
                     "[FlightPlan]\nKAAA 0 0 APT ---\nKBBB 0 7 APT ---\n");
    }
    unit.Press("FPL NEXT L9 ENTER");
    EXPECT_THAT(unit.After("L2 =A*B ENTER").front(), StartsWith("INVALID ENTRY"));
    unit.Press("L2 L2 =ELEVENCHARS ENTER");
    EXPECT_TRUE(folder.Exists("avq/flightplans/ELEVENCHAR.RTE"));
    EXPECT_EQ(unit.After("NAV FPL FPL FPL").front(), "FLIGHT PLAN LIST 1/2");
    unit.Press("L7 ENTER L10 L10 ENTER");
    EXPECT_TRUE(folder.Exists("avq/flightplans/ELEVENCHAR.RTE"));
    activePlan.Edit(7).type = "WPT";
    unit.Press("FPL NEXT L9 ENTER");
    EXPECT_EQ(gns.page, kGnsPlan) << "not between airports";
}

TEST_F(GnsTest, TheHoldPageFollowsItsWaypoint) {
    MakePlan();
    EXPECT_THAT(unit.After("FPL L3 HOLD"), Contains("AT LONGER"));
    InsertBetween(activePlan, 2, activePlan.entries[1]);
    EXPECT_THAT(unit.After("L9"), Contains("AT LONGER"));
    EXPECT_EQ(holdList.holds[1].corners[0].name, "Fix");
}

TEST_F(GnsTest, TheTimeToAFlownHoldsFixGoesAroundThePattern) {
    MakePlan();
    SetActiveWaypoint(1);
    HoldAt(activePlan, 1, NewHold());
    LayOutHold(holdList.holds[1], activePlan.entries[1]);
    holdFlight.holdActive = 1;
    holdFlight.holdTargetCorner = 4;
    const HoldCorner& last = holdList.holds[1].corners[4];
    aircraft.latitude = last.latitude - 2.0 / 60;
    aircraft.longitude = last.longitude;
    aircraft.groundSpeedKt = 120;  // a minute to the corner, and from there to the fix
    const double onwardNm = GreatCircleDistanceNm(last.latitude, last.longitude, 0, 1);
    EXPECT_THAT(
        unit.After("NAV"),
        Contains(HasSubstr(Format("HOLDING %s", HoursMinutesText(0, 60 + 30 * onwardNm).c_str()))));
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

TEST_F(GnsTest, VnavTellsWhereThePathLies) {
    MakePlan();
    aircraft.altitudeFt = 5000;
    SetCruiseAltitude(24000);
    Update();
    vnav.topOfClimbReached = vnav.descentActive = 1;
    vnav.pathAltitude = 4600;
    EXPECT_THAT(unit.After("VNAV"), Contains("VERT DEV HIGH|    400"));
    vnav.pathAltitude = 5600;
    EXPECT_THAT(unit.After("VNAV VNAV"), Contains("VERT DEV LOW|    600"));
}

// ---- typing on the computer keyboard ----

TEST_F(GnsTest, TheKeyboardTypesWhileThePilotHasAskedForIt) {
    FakeKeyboard keyboard{Picture::Services()};
    const auto tap = [&](std::initializer_list<std::uint8_t> keys) {
        for (const std::uint8_t key : keys) {
            keyboard.Down(key);
            PollGnsKeyboard();
            unit.Draw();
            keyboard.Up(key);
            PollGnsKeyboard();
            unit.Draw();
        }
    };
    MakeDatabase();
    MakePlan();
    unit.Press("FPL L2");
    tap({scan::kA});
    EXPECT_THAT(gns.scratchpad, StartsWith("ABCDE")) << "typing is off";
    unit.Press("FPL FPL FPL # L2");
    EXPECT_EQ(gns.editing, 1);
    tap({scan::kK, scan::kA, scan::kX, scan::kBackspace, scan::kA, scan::kA});
    EXPECT_THAT(gns.scratchpad, StartsWith("KAAA"));
    tap({scan::kEnter});
    EXPECT_EQ(unit.Rows().front(), "DATABASE WPT 1/1");
    EXPECT_EQ(gns.editing, 0) << "ENTER gives the keyboard back";
    unit.Press("NAV #");
    tap({scan::kPageDown});
    EXPECT_EQ(unit.Rows().front(), "NAVIGATION   2/4");
    tap({scan::kUp});
    EXPECT_EQ(unit.Rows().front(), "NAVIGATION   1/4");
    unit.Press("#");
    EXPECT_EQ(KeyboardEntryOn + gns.editing, 0);
    keyboard.window = nullptr;
    EXPECT_EQ(unit.After("#").front().substr(0, 19), "SetCooperativeLevel");
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
