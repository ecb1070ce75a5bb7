#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <utility>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/redraw.h"
#include "cdu_gns/fake_unit.h"
#include "flightplan/flight_plan.h"
#include "flightplan/hold_pattern.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_notation.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"
#include "guidance/progress.h"
#include "navdb/nav_database.h"
#include "simlink/aircraft_state.h"
#include "simlink/keyboard.h"
#include "support/fake_keyboard.h"
#include "support/kept_file.h"
#include "support/leak_suppressions.h"
#include "support/mixed_flows.h"
#include "support/nav_points.h"
#include "support/screen_changes.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

class McuTest : public ::testing::Test {
  protected:
    McuTest() {
        ResetModuleState();
        avionicsPower = 1;
        aircraft.latitude = 0;
        aircraft.longitude = 0.5;
        aircraft.groundSpeedKt = 240;
    }

    // Five entries along the equator, one degree (60 nm) apart; the aircraft is half way to ABCDE.
    static void MakePlan() {
        SetActivePlan({{"KAAA", 0, 0, "APT"},
                       {"ABCDE", 0, 1, "VOR"},
                       {"FLY", 0, 2, "INT", "", "", 1},
                       {"OVERLONG", 0, 3, "WPT"},
                       {"KBBB", 0, 4, "APT"}});
        activePlan.Edit(1).via = "J521";
        activePlan.Edit(2).altitude = 8000;
        SetActiveWaypoint(1);
    }

    // What the per-frame update does with the unit's requests.
    static void ServeRequests() {
        if (requests.planLoadMode != 0) {
            LoadPlanToActive(requests.planLoadName);
            requests.planLoadMode = 0;
        }
    }

    FakeSimulator& simulator = FakeSimulator::Install();
    FakeUnit unit;
};

TEST_F(McuTest, ToPageSaysWhatIsMissing) {
    unit.Draw();
    EXPECT_EQ(unit.Rows().front(), "TO:   NO FLIGHT PLAN 0/0");
    MakePlan();
    aircraft.groundSpeedKt = 25;
    PredictArrivalIn(7.6);
    unit.Draw();
    EXPECT_EQ(unit.Rows()[3], "ETE:  --:-- (--:--)");
    SetActiveWaypoint(kNoWaypoint);
    unit.Draw();
    EXPECT_THAT(unit.Rows(),
                ElementsAre("TO:   NO ACTIVE WPT  0/4", "DIST: ---- NM", "BRG:  ---",
                            "ETE:  --:-- (--:--)", "NEXT to fly to the first waypoint"));
}

TEST_F(McuTest, ToPageStatusLine) {
    constexpr struct {
        int lnav, trackLeg, vnav, holdActive, corner;
        const char* status;
        Side side = Side::Left;
    } kCases[] = {{1, 1, 0, 0, 0, "LNAV(2.0R) ", Side::Right},
                  {1, 1, 1, 0, 0, "LNAV(2.0L) VNAV"},
                  {1, 1, 0, 1, 2, "LNAV(2.0L) HOLD(Dwind) "},
                  {1, 0, 0, 1, 0, "DCTTO ( 87D) HOLD(FLY) "},
                  {1, 0, 0, 1, 2, "HOLD(Dwind) "}};  // the hold commands another heading
    MakePlan();
    holdList.holds[1].fixIndex = 2;
    holdList.holds[1].corners[2].name = "Dwind";
    guidance.crossTrackNm = 2.0;
    guidance.headingCommandMag = 87.4;
    for (const auto& c : kCases) {
        guidance.lnavEngaged = c.lnav;
        guidance.trackLeg = c.trackLeg;
        guidance.crossTrackSide = c.side;
        guidance.vnavEngaged = c.vnav;
        holdFlight.holdActive = c.holdActive;
        holdFlight.holdTargetCorner = c.corner;
        unit.Draw();
        EXPECT_EQ(unit.Rows().back(), c.status);
    }
}

TEST_F(McuTest, PrevAndNextGoAroundThePlanAndPassGaps) {
    unit.Press("NEXT");
    EXPECT_FALSE(HasActiveWaypoint()) << "nothing to fly to in an empty plan";
    MakePlan();
    activePlan.Edit(3).ident = std::string(kDiscontinuity);
    constexpr struct {
        std::int32_t from;
        const char* key;
        std::int32_t active;
    } kCases[] = {{1, "NEXT", 2},           {2, "NEXT", 4},          {4, "NEXT", 1},
                  {1, "PREV", 4},           {4, "PREV", 2},          {2, "PREV*2", 4},
                  {kNoWaypoint, "NEXT", 1}, {kNoWaypoint, "PREV", 4}};
    for (const auto& c : kCases) {
        SetActiveWaypoint(c.from);
        unit.Press(c.key);
        EXPECT_EQ(planBook.activeIndex, c.active) << c.from << c.key;
        EXPECT_EQ(guidance.activeLongitude, c.active);
    }
}

// ---- ALT/FL and LEGS ----

TEST_F(McuTest, AltitudeStepsStopAtTheirLimits) {
    constexpr struct {
        double autopilotAltitude;
        const char* keys;
        std::int32_t altitude;
    } kCases[] = {{12700, "ALT", 12000},
                  {12700, "ALT UP", 13000},
                  {12700, "ALT RIGHT DOWN LEFT DOWN", 10500},
                  {97000, "ALT UP*3", 99000},
                  {97000, "ALT RIGHT UP*3", 98000},
                  {900, "ALT RIGHT UP LEFT DOWN", 500},
                  {-300, "ALT", 0}};
    for (const auto& c : kCases) {
        aircraft.apAltitudeTargetFt = c.autopilotAltitude;
        unit.Press(c.keys);
        EXPECT_EQ(mcu.newAltitude, c.altitude) << c.autopilotAltitude << c.keys;
    }
}

TEST_F(McuTest, TheLegAtTheCursorStaysWhenAnotherUnitChangesTheRoute) {
    MakePlan();
    EXPECT_EQ(unit.After("LEGS NEXT*2")[3], ">|OVERLONG   60 090");
    PlanWaypoint inserted;
    inserted.ident = "NEW";
    inserted.longitude = 1.5;
    EditActivePlan([&](FlightPlan& plan) { return InsertBetween(plan, 2, inserted); });
    unit.Draw();
    EXPECT_EQ(unit.Rows()[0], "LEGS:|    4/5");
    EXPECT_THAT(unit.Rows(), Contains(HasSubstr(">|OVERLONG")));
}

TEST_F(McuTest, AGapHasNoCrossing) {
    MakePlan();
    activePlan.Edit(2).ident = std::string(kDiscontinuity);
    EXPECT_EQ(unit.After("CROSS NEXT UP ENTER").back(), "> No crossing at a gap");
    activePlan.Edit(2).ident = "FLY";
    unit.Press("ENTER");
    EXPECT_EQ(activePlan.entries[2].altitude, 1000);
}

// ---- DIRTO and typing ----

TEST_F(McuTest, DirectToStartsAPlanOfItsOwn) {
    test::AddPoint(navDatabase.navaids, "KBBB", 0, 2.5, PointKind::Navaid, "385");
    MakePlan();
    activePlan.Edit(4).via = "V252";
    planBook.verticalTargetIndex = 4;
    unit.Press("DIRTO");
    mcu.entryText = "KBBB";
    unit.Press("ENTER");
    ASSERT_EQ(activePlan.lastIndex, 2) << "a beacon named like the airport is not the airport";
    EXPECT_EQ(activePlan.entries[2].type, "APT");
    EXPECT_EQ(activePlan.entries[2].via, "") << "no airway leads on from the chosen point";
    EXPECT_EQ(planBook.verticalTargetIndex, 2);
}

TEST_F(McuTest, EditingBelongsToPagesThatTakeText) {
    constexpr std::uint32_t kPurple = 0xFF800080;
    for (const auto& [page, editing] : {std::pair{"TO", 0}, {"ALT", 0}, {"APT", 1}, {"LEGS", 1}}) {
        unit.Press(page);
        unit.Press("EDIT");
        EXPECT_EQ(mcu.editing, editing) << page;
        EXPECT_EQ(unit.CountPixels(kPurple) > 0, editing == 1) << page;
    }
    guidance.blinkCounter = 5;
    unit.Press("TO DIRTO EDIT");
    EXPECT_EQ(guidance.blinkCounter, kRestartBlink);
    mcu.entryText = "ABC";
    unit.Press("EDIT");
    EXPECT_EQ(mcu.entryText, "");
}

class McuTypingTest : public McuTest {
  protected:
    // Presses and lets go the keys one after the other, a draw of the gauge for each.
    void Type(std::initializer_list<std::uint8_t> scanCodes) {
        for (const std::uint8_t key : scanCodes) {
            keyboard.Down(key);
            PollMcuKeyboard();
            unit.Draw();
            keyboard.Up(key);
            PollMcuKeyboard();
            unit.Draw();
        }
    }

    FakeKeyboard keyboard{Picture::Services()};
    TempSimFolder folder;
};

TEST_F(McuTypingTest, MessagesGiveWayToTheEntryFrame) {
    AppendMessage("FPL 'A.RTE' loaded");
    for (const char* const page : {"APT", "DIRTO", "LEGS"}) {
        EXPECT_EQ(unit.After(page).back(), "FPL 'A.RTE' loaded") << page;
        EXPECT_THAT(unit.After("EDIT"), ::testing::Not(Contains(HasSubstr("loaded")))) << page;
        unit.Press("TO");
    }
}

TEST_F(McuTypingTest, EveryPageWithoutTextEndsTyping) {
    for (const char* const key : {"TO", "FPLN", "LEGS", "ALT", "APT", "ENTER", "EDIT"}) {
        unit.Press("DIRTO EDIT");
        ASSERT_EQ(KeyboardEntryOn, 1) << key;
        unit.Press(key);
        EXPECT_EQ(KeyboardEntryOn + mcu.editing, 0) << key;
    }
}

TEST_F(McuTypingTest, AKeyboardThatCannotBeOpenedIsSaidOnEveryTypingPage) {
    MakePlan();
    keyboard.window = nullptr;
    for (const char* const page : {"APT", "DIRTO", "LEGS", "CROSS"}) {
        unit.Press(page);
        EXPECT_EQ(unit.After("EDIT").back(), "SetCooperativeLevel failed") << page;
        EXPECT_EQ(mcu.editing, 1) << page;
        EXPECT_THAT(unit.After("EDIT"), ::testing::Not(Contains(HasSubstr("failed")))) << page;
    }
}

// ---- every page as it was when somebody last looked ----

// Flows of a pilot, each from a fresh state and looked at after every word: keys by their labels,
// and "=KX" on the computer keyboard, with u, d, p and n for its arrow and page keys, b and e for
// Backspace and Enter.
struct Flow {
    const char* name;
    bool withPlan;
    const char* keys;
};

constexpr Flow kFlows[] = {
    {"nothing yet", false,
     "TO PREV ENTER NEXT HOLD LNAV LEGS NEXT EDIT =K ENTER CROSS UP NEXT ENTER APT ENTER NEXT "
     "DIRTO ENTER ALT ENTER EDIT"},
    {"the leg being flown", true,
     "TO HOLD LNAV HOLD NEXT HOLD LNAV PREV NEXT NEXT NEXT NEXT PREV UP ENTER EDIT"},
    {"a stored plan", false,
     "FPLN NEXT NEXT NEXT NEXT PREV PREV PREV PREV DOWN RIGHT RIGHT LEFT UP LEFT NEXT ENTER TO "
     "FPLN RIGHT RIGHT ENTER TO"},
    {"legs", true,
     "NEXT LEGS PREV PREV NEXT NEXT NEXT NEXT NEXT UP LEFT RIGHT EDIT =K =X =p =n =u EDIT =A "
     "EDIT =OVe LEGS EDIT =d ENTER LEGS"},
    {"a crossing", true,
     "CROSS UP UP RIGHT UP NEXT NEXT NEXT DOWN LEFT ENTER LEGS CROSS NEXT ENTER CROSS EDIT "
     "=d =1A1000 =9 EDIT UP EDIT =1b =9e ENTER LEGS CROSS NEXT NEXT ENTER"},
    {"an altitude", false, "ALT UP RIGHT UP DOWN DOWN LEFT DOWN ENTER EDIT"},
    {"an airport", false,
     "APT EDIT =KXA =e EDIT =b EDIT EDIT =KZZe NEXT ENTER ENTER NEXT DOWN NEXT NEXT NEXT ENTER "
     "PREV UP "
     "LEFT RIGHT EDIT ENTER EDIT =KZZe EDIT =K TO APT"},
    {"direct to", true,
     "DIRTO =A EDIT =KA ENTER EDIT =bX =u =d =u =e ENTER DIRTO EDIT =KX EDIT ENTER EDIT =KXe "
     "NEXT ENTER LEGS DIRTO EDIT =ZZd PREV PREV =e ENTER"},
};

class McuScreens : public McuTypingTest {
  protected:
    McuScreens() {
        folder.Write("avq/Navdata/avq_apts.txt",
                     "KZZ NAME 1234 40.0 -73.0 09L_9000_40.1_-73.9_88_ILS_110.30_90 "
                     "09R_8000_40.1_-73.9_88_x_y_90 18_12079_40.1_-73.9_180_110.30_LOC_180 "
                     "27L_9000_40.1_-73.9_88_x_y_270 27R_9000_40.1_-73.9_88_x_y_270\n");
        for (const char digit : {'1', '2', '3', '4', '5'}) {
            folder.Write(
                std::string("avq/flightplans/P") + digit + ".RTE",
                std::string("[FlightPlan]\nKA") + digit +
                    "A  10.0  20.0  APT  ---\nMID  10.0  21.0  WPT  ---\nKBBB  10.0  22.0  "
                    "APT  ---\n");
        }
        folder.Write("avq/flightplans/ALONGNAMEOFAPLAN.RTE", "[FlightPlan]\n");
    }

    void Begin(const Flow& flow) {
        ResetModuleState();
        SimFolder = folder.root().string();
        avionicsPower = 1;
        aircraft.latitude = 0;
        aircraft.longitude = 0.5;
        aircraft.groundSpeedKt = 240;
        aircraft.magneticVariation = 3;
        aircraft.apAltitudeTargetFt = 12700;
        aircraft.apHeadingBug = 95;
        changes_ = {};
        simulator.events.clear();
        test::AddPoint(navDatabase.navaids, "KX", 40, 60, PointKind::Vor, "113.90");
        test::AddPoint(navDatabase.navaids, "ZZ", 0, 9, PointKind::Navaid, "385");
        test::AddPoint(navDatabase.intersections, "KX", 1, 2.5);
        if (flow.withPlan) {
            MakePlan();
        }
        Update();
    }

    // What the per-frame update does and works out.
    static void Update() {
        ServeRequests();
        SetActiveWaypoint(planBook.activeIndex);
        UpdateRouteDistance();
        RefreshPredictions();
    }

    void TypeWord(const std::string& word) {
        const std::map<char, std::uint8_t> keys = {
            {'A', scan::kA},    {'K', scan::kK},         {'X', scan::kX},       {'Z', scan::kZ},
            {'O', scan::kO},    {'V', scan::kV},         {'0', scan::k0},       {'1', scan::k1},
            {'9', scan::k9},    {'b', scan::kBackspace}, {'e', scan::kEnter},   {'u', scan::kUp},
            {'d', scan::kDown}, {'p', scan::kPageUp},    {'n', scan::kPageDown}};
        for (const char each : word.substr(1)) {
            Type({keys.at(each)});
        }
    }

    // Writes what the key changed on the screen and in the plans, and what it sent.
    void Look(const std::string& word, std::ostream& out) {
        word.front() == '=' ? TypeWord(word) : unit.Press(word);
        Update();
        RequestUnitRedraw();
        unit.Draw();
        std::set<std::string> lines = ScreenLines(unit.Texts());
        lines.insert(Format("lit %d%d%d", McuLnavLit(), McuHoldLit(), mcu.editing));
        changes_.Note(std::move(lines), out);
        for (const auto& [event, value] : std::exchange(simulator.events, {})) {
            out << "sent " << event << ' ' << value << '\n';
        }
    }

  private:
    ScreenChanges changes_;
};

TEST_F(McuScreens, ReadAsTheyDidWhenLastLookedAt) {
    std::ostringstream now;
    for (const Flow& flow : kFlows) {
        Begin(flow);
        WalkFlow(flow.name, flow.keys, now, [&](const std::string& word) { Look(word, now); });
    }
    ExpectAsKept(now.str(), "cdu_gns/mcu_screens.txt");
}

TEST_F(McuScreens, ReadAsTheyDidAfterFlowsInAnyOrder) {
    const std::string sums = MixFlows(
        std::span<const Flow>(kFlows),
        "TO LEGS FPLN APT DIRTO ALT CROSS ENTER ENTER NEXT PREV UP DOWN LEFT RIGHT HOLD LNAV EDIT",
        [&](const Flow& flow) { Begin(flow); },
        [&](const std::string& word, std::ostream& out) { Look(word, out); });
    ExpectAsKept(sums, "cdu_gns/mcu_mixed.txt");
}

// ---- painting ----

TEST_F(McuTest, EverySurfaceIsPaintedOncePerChange) {
    MakePlan();
    FakeUnit popup(2);
    for (int change = 0; change < 3; ++change) {
        EXPECT_GT(unit.Draw(), 0);
        EXPECT_GT(popup.Draw(), 0);
        EXPECT_EQ(unit.Draw() + popup.Draw(), 0);
        guidance.distanceToGoNm -= 1;
    }
    unit.Press("NEXT");
    EXPECT_GT(popup.Draw(), 0) << "a key changes both";
    EXPECT_EQ(planBook.activeIndex, 2) << "and acts once";
    guidance.distanceToGoNm -= 0.01;
    EXPECT_EQ(unit.Draw(), 0) << "not a tenth of a mile";
    RequestUnitRedraw();
    EXPECT_GT(unit.Draw(), 0);
}

TEST_F(McuTest, PowerOffClearsTheSurfaceAndKeysWaitForPower) {
    MakePlan();
    unit.Draw();
    EXPECT_EQ(unit.Pixel(5, 100), 0xFF000000U);
    avionicsPower = 0;
    unit.Press("NEXT");
    EXPECT_EQ(unit.Pixel(5, 100), 0U);
    EXPECT_EQ(planBook.activeIndex, 1);
    avionicsPower = 1;
    EXPECT_GT(unit.Draw(), 0);
    EXPECT_EQ(planBook.activeIndex, 2);
    avionicsPower = 0;
    unit.Draw();
    avionicsPower = 1;
    EXPECT_GT(unit.Draw(), 0) << "although nothing else changed";
}

}  // namespace
}  // namespace avq1::test
