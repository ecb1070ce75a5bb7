// Every line of every page of the Smiths-style unit: what it takes, what DELETE takes away again,
// and that whatever else is typed is refused with a message and changes nothing.
#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <optional>
#include <set>
#include <sstream>

#include "base/redraw.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/fake_smiths.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "cdu_smiths/smiths_views.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "guidance/radio_position.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "support/full_disk.h"
#include "support/plan_faults.h"

namespace avq1::test {
namespace {

constexpr const char* kInvalid = "INVALID ENTRY";
constexpr const char* kUnknown = "NOT IN DATABASE";
constexpr const char* kNoDelete = "INVALID DELETE";

// Typed on every line: too long, letters for numbers, slashes and signs in odd places, huge. A line
// that may take one of these says so.
constexpr const char* kOdd[] = {"0",
                                "-1",
                                "+7",
                                "7777777777777777777777",
                                "1E3",
                                "INF",
                                "A",
                                "KXXX",
                                "/",
                                "//",
                                "7/",
                                "/7",
                                "1/2/3",
                                "-/-",
                                ".",
                                "1.5.5",
                                "N9145.5W11154.3",
                                "WWWWWWWWWWWWWWWWWWWWWWWW"};

// What DELETE does on a line: refused, refused unless something was typed there, done.
enum Deletes : std::uint8_t { kNone, kWhatWasTyped, kAlways };

// What one line takes: texts with what stands there afterwards, blanks left out, behind ">". What
// it refuses beside the odd ones: INVALID ENTRY, with "?" NOT IN DATABASE. A line without a row
// takes nothing.
struct LineRow {
    const char* views;  // separated by ";"
    const char* lines;
    const char* takes;
    const char* refuses = "";
    Deletes deletes = kNone;
};

constexpr const char* kAltitudes = "61000 601 0.4 -350 FL350 350/ 350.A";
constexpr const char* kWinds = "270/45>270/45 000/0>000/0 360/250>360/250";
constexpr const char* kNoWinds = "361/20 270/251 27/45 270/ 270/-5 270/4/5 2A0/45 270/6A 27045";
constexpr const char* kPoints = "NEWPT KAAA N0030.0E00230.0 NEWPT090/10 NEWPT270/FLY360";
constexpr const char* kNoPoints =
    "NOWHE? NOW090/10? A/B/C ABCDEFGH NEWPT/10 NEWPT090/ -12 NEWPT361/9? NEWPT090/FLY360?";
constexpr const char* kCrossings =
    "250/FL180>250/18000 /5000A /5000B 230/ /FL050 /050A>----/5000A 999/60000>999/FL600 1/1>1/100 "
    "7/ /7";
constexpr const char* kNoCrossings =
    "250 250/A 250/FL 250/FL1800 250/5000C 250//5000 250/5000/ -250/5000 250/-5000 0/5000 250/0 "
    "1000/5000 250/60001 /601 99999999999/99999999999 ABC/DEF 250/50.0 250.5/5000";

constexpr LineRow kLines[] = {
    // reference pages
    {"POS INIT", "L2", "KBBB>KBBB", "ABCDE? KBBBB? KBB?", kWhatWasTyped},
    {"POS INIT", "L3", "", "A1"},
    {"POS INIT, airport", "L2", "KBBB>KBBB", "KBB?", kAlways},
    {"POS INIT, airport", "L3", "A1>A1 12345>12345 0 1E3 INF A KXXX", "A12345 A-1 A/1",
     kWhatWasTyped},
    {"POS INIT;POS INIT, airport", "R4", "N3345.5W11154.3>N33:45:30W111:54:18 S9000.0E18000.0",
     "N3345.5 S3360.0E01000.0 N3345.XW11154.3 N3345.5W11154.X N3345.5W18000.1 3345.5N11154.3W",
     kWhatWasTyped},
    {"PERF INIT", "R1", "350>FL350 35000>FL350 9500.9>9500 180>18000 600>FL600 1000>1000 +7>700",
     kAltitudes},
    {"PERF INIT", "R2", kWinds, kNoWinds, kWhatWasTyped},
    {"PERF INIT", "R3",
     "10>10 -12.4>-12 -0.2>0 1000>1000 0>0 -1>-1 +7>7 7777777777777777777777>---", "+-5 5-6",
     kWhatWasTyped},
    {"PERF INIT", "R4", "-56>-56 0>0 -1>-1 +7>7 7777777777777777777777>---", "+-5 5-6",
     kWhatWasTyped},
    {"PERF INIT", "R5", "10000.7>10000 500>500 1>1 60000>60000 +7>7", "0.9 60001 FL180 -180"},
    {"PERF INIT", "L3", "98.4>98.4 999.9>999.9 .5>0.5 +7>7.0", "1000 -3 98.4/ 98A", kWhatWasTyped},
    {"PERF INIT", "L4", "6.5>6.5 2000>2000.0 .1>0.1 +7>7.0", "2000.1 -3 6.5/"},
    {"PERF INIT", "L5", "0>0 200>200 045>45 7>7", "00 201 12.5 99999999999999999999"},
    {"PERF LIMITS", "L1", "5 30 +7", "4 31 10.5"},
    {"PERF LIMITS", "L2", "200>200/.391 60", "310 59 200.5 240/"},
    {"PERF LIMITS", "R2", "320>320/.626 500", "230 501 320.5"},
    {"PERF LIMITS", "L3", "240>240/.469", "310 240/"},
    {"PERF LIMITS", "R3", "300>300/.587", "230"},
    {"PERF LIMITS", "L4", "210>210/.411", "300"},
    {"PERF LIMITS", "R4", "290>290/.567", "219 220"},
    {"TAKEOFF", "L1", "15>15 1>1", "2 1,5 5/ 05 5.0"},
    {"TAKEOFF", "R1 R2 R3", "139>139KT 300>300KT 40>40KT", "39 301 140.5 139/"},
    {"APPROACH", "L1", "110.2>110.2 +7>7.0", "1000 -110", kWhatWasTyped},
    {"APPROACH", "R4", "30/143>30143 0/128>0128 99/300>99300",
     "100/143 -1/143 30 /143 30/ 30/14/3 30/39 30/301 3.5/143", kWhatWasTyped},
    {"APPROACH", "R5", "0>0KT 20>20KT +7>7KT", "21 1.5"},
    {"REF DATA", "L1", "NEWPT>NEWPT TWICE ABCDE KAAA", "NEWP? NEWPT/?", kWhatWasTyped},
    {"REF DATA", "R1", "TWICE>TWICE", "NEWPT? KAAA?", kWhatWasTyped},
    {"REF DATA", "L2", "KBBB>KBBB", "TWICE?", kWhatWasTyped},
    {"REF DATA", "R2", "", "09L"},
    {"REF DATA, airport", "L1", "NEWPT>NEWPT", "NEWP?"},
    {"REF DATA, airport", "R1", "TWICE>TWICE", "NEWPT?"},
    {"REF DATA, airport", "L2", "KAAA>KAAA", "TWICE?", kAlways},
    {"REF DATA, airport", "R2", "27R", "33? 09? 27R/?"},
    {"INDEX", "R6",
     "TRIP TRIP.X 0 -1 +7 7777777777777777777777 1E3 INF A KXXX 1.5.5 N9145.5W11154.3 "
     "WWWWWWWWWWWWWWWWWWWWWWWW",
     ".X A/B"},
    // route
    {"RTE 1", "L1", "KBBB KAAA", "ABCDE? KAAAKAAAKAAA?"},
    {"RTE 1", "L2", "CO1 CO1.RTE", "CO2? NEWFPL? ..? CO1.?"},
    {"RTE 1", "L3", "09 27", "09L? 9? 09/?", kWhatWasTyped},
    {"RTE 1", "R1", "KAAA KSID KBBB", "ABCDE?", kAlways},
    {"RTE 2", "L1", "", "J9", kAlways},
    {"RTE 2", "L2", "", "J9 NEWPT", kAlways},
    {"RTE 2", "L3", "J9", "J8 NEWPT JTWO", kAlways},
    {"RTE 2", "L4 L5", "", "J9", kAlways},
    {"RTE 2", "R1 R2 R3", kPoints, kNoPoints, kAlways},
    {"RTE 2", "R4 R5", "", "", kAlways},
    {"LEGS;DIRECT;INTERCEPT;HOLD AT", "L1 L2 L3 L4 L5", kPoints, kNoPoints, kAlways},
    {"LEGS 2", "L1 L2", kPoints, kNoPoints, kAlways},
    {"LEGS;DIRECT;INTERCEPT;HOLD AT", "R1 R2 R3 R4 R5", kCrossings, kNoCrossings, kWhatWasTyped},
    {"LEGS 2", "R1 R2", kCrossings, kNoCrossings, kWhatWasTyped},
    {"DIRECT", "L6", "LONGER NEWPT KAAA N0030.0E00230.0 NEWPT090/10", kNoPoints},
    {"DIRECT", "R6", "FLY KBBB", "NEWPT NOWHE 090"},
    {"INTERCEPT", "R6", "040>040 0>360 360>360 001>001", "361 -90 1234 9.5 0000 40/"},
    {"HOLD AT", "L6", "FLY PPOS NEWPT KAAA N0030.0E00230.0 NEWPT090/10", kNoPoints},
    {"DEP ARR", "L6 R6", "KAAA KSID", "NEWPT? KAAAAA?"},
    {"DEPARTURES", "L1 R1", "", "EAST1 09"},
    {"ARRIVALS", "L1 R1", "", "DOWN2 09L ILS"},
    // performance
    {"CLB;CRZ", "L1", "370>FL370 +7>700", kAltitudes},
    {"CLB", "L2", "300>300/0.57 300/>300/0.57 .5>264/0.50 .5/ /.5>264/0.50 230 310",
     "300/.57 229 311 250.5 .99 /280 ABC -250"},
    {"CLB", "L3", "250/10000>250/10000 250/100>250/10000 100/1 400/600",
     "250 250/ /10000 99/10000 401/10000 250/-100 250/601 250.5/100", kWhatWasTyped},
    {"CRZ", "L2", "230>230/0.45", "229 311"},
    {"DES", "L2", "300>300/0.59", "219 301"},
    {"DES", "L3", "240/9000>240/9000", "240 240/601", kWhatWasTyped},
    {"FORECASTS", "L1", "110>FL110 +7>FL007", kAltitudes},
    {"FORECASTS", "R1", "200/100>FL200/FL100", "200 200/ 200/-5 /100 601/100 200/601",
     kWhatWasTyped},
    {"FORECASTS", "L2", "450>450FPM 9999>9999FPM 1>1FPM +7>7FPM", "10000 4.5 -450", kWhatWasTyped},
    {"FORECASTS", "R2", "-5/1013>-5/1013 +7/900 0/1100 -99/1000 99/1000",
     "5 5/899 5/1101 100/1000 -100/1000 5/ /1013", kWhatWasTyped},
    {"FORECASTS", "L3 L4 L5", "340>FL340 +7>700", kAltitudes, kWhatWasTyped},
    {"FORECASTS", "R3 R4 R5", kWinds, kNoWinds, kWhatWasTyped},
    // on the way
    {"RTA", "L1", "FLY>FLY KBBB", "KAAA NOPE FLY/ NEWPT", kWhatWasTyped},
    {"RTA", "R1", "", "1300"},
    {"RTA, waypoint", "L1", "KBBB>KBBB", "KAAA", kAlways},
    {"RTA, waypoint", "R1", "1300>1300.0Z 0000Z>0000.0Z 2359.9>2359.9Z 1300.5Z",
     "2400 1260 130 13000 1300. 1300.A 1300.55 -130 13A0 13/0 1300L Z", kWhatWasTyped},
    {"NAV OPTIONS", "L1 R1 L2 R2", "ABCDE TWICE", "ABCDEF KAAA? NEWPT? A/B?", kWhatWasTyped},
    {"FIX", "L1", "NEWPT>NEWPT KAAA ABCDE", "NOPE?", kWhatWasTyped},
    {"FIX", "L2 L3 L4", "", "180 /20"},
    {"FIX, fix", "L5", "", "180"},
    {"FIX, fix", "L1", "KAAA>KAAA", "NOPE?", kAlways},
    {"FIX, fix", "L2 L3 L4", "180 0 360 /999 45/10.5 /7 /.5",
     "361 1800 18A -5 180/ /0 /-3 /999.1 18/1/2", kWhatWasTyped},
    {"HOLD", "L2", "NE/045>NE/045 /337>NW/337 N/338>N/338 180>S/180 0 /7",
     "N/045 NE/ 361 NE -45 NE/045/ 1800", kNone},
    {"HOLD", "L3", "270/L>270/LTURN 360/L /L 123 0", "361/R 2700/R 270/X 270/ 270/R/L A/R -1/R R"},
    {"HOLD", "L4", "1.5>1.5MIN .5>0.5MIN 99.9>99.9MIN +7>7.0MIN", "100 99.95 -1.5 1.5/",
     kWhatWasTyped},
    {"HOLD", "L5", "7.5>7.5-NM 99.9 +7", "100 7/5 -7", kWhatWasTyped},
    {"HOLD", "R3", "1430>1430Z 0000Z>0000Z 2359", "2400 1260 143 14300 ABCD -143 14/3 14.3 Z",
     kWhatWasTyped},
};

std::vector<std::string> Words(const std::string& text, char separator = ' ') {
    std::vector<std::string> words;
    std::istringstream in(text);
    for (std::string word; std::getline(in, word, separator);) {
        words.push_back(word);
    }
    return words;
}

bool Names(const char* list, const std::string& wanted, char separator = ' ') {
    return std::ranges::count(Words(list, separator), wanted) != 0;
}

// What a flight may have none of.
enum class Lack : std::uint8_t { Nothing, Route, Data, Room, Disk };

// A route of as many entries as a plan holds.
void FillPlan() {
    while (!activePlan.IsFull()) {
        PlanWaypoint entry = activePlan.entries[3];
        entry.ident = "P" + std::to_string(activePlan.lastIndex);
        entry.hasHold = 0;
        InsertBetween(activePlan, 4, entry);
    }
}

class SmithsEntries : public SmithsTest {
  protected:
    SmithsEntries() {
        MakeDatabase();
        folder.Write("avq/Navdata/avq_ints.txt",
                     "NEWPT NEWPT 0.5 2.5\nLATER LATER 0.5 3.5\nFLY FLY 0.0 2.0\n");
        StorePlan("CO1");
    }

    static const SmithsView& ViewCalled(const std::string& name) {
        return *std::ranges::find(kSmithsViews, name, &SmithsView::name);
    }

    // A climb from KSID to KBBB with a hold ahead, or what is left of it.
    void Begin(const SmithsView& view, Lack lack = Lack::Nothing) {
        BeginAnew();
        LoadNavDatabase();
        ListStoredPlans();
        SetJet();
        settings.ArmPauseAtTod = 1;
        if (lack != Lack::Route) {
            MakeRoute();
            activePlan.Edit(0).ident = planBook.originIdent = "KSID";
            activePlan.Edit(0).latitude = 1;
            HoldAt(activePlan, 3, NewHold());
        }
        if (lack == Lack::Room) {
            FillPlan();
        }
        InstallSmiths();
        cdu.Press(view.keys);
        smiths.scratchpad.clear();
        if (lack == Lack::Data) {  // it goes while the page is shown
            SimFolder = (folder.root() / "none").string();
            LoadNavDatabase();
        }
        cdu.Draw();
    }

    // The plans, what is planned at their entries and what the pilot has told all units.
    static std::string World() {
        std::ostringstream out;
        const bool edited = planBook.status != RouteStatus::Active;
        out << smiths.page << ' ' << static_cast<int>(planBook.status) << '\n'
            << Show(activePlan, true) << '\n'
            << (edited ? Show(modifiedPlan, true) : "") << '\n'
            << planBook.originIdent << ' ' << planBook.destinationIdent << ' '
            << planBook.cruiseAltitudeFt << ' ' << planBook.reserveFuelInUse << '\n';
        for (std::int32_t i = 1; i <= holdList.count; ++i) {
            const HoldPattern& hold = holdList.holds[static_cast<std::size_t>(i)];
            const HoldShape& shape = edited ? PendingShape(hold) : hold;
            out << hold.fixIndex << ' ' << shape.inboundCourseMag << ' ' << shape.legMinutes << ' '
                << shape.legDistanceNm << ' ' << static_cast<int>(shape.turnDirection) << ' '
                << hold.clearanceMinutes << '\n';
        }
        for (std::int32_t i = 0; edited && i <= modifiedPlan.lastIndex; ++i) {
            const PlanWaypoint& entry = modifiedPlan.entries[i];
            out << entry.altitude << entry.speed << entry.altitudeConstraint << ' ';
        }
        char entries[sizeof(PilotEntries)];
        std::memcpy(entries, &pilotEntries, sizeof(entries));
        return out.str() + std::string(entries, sizeof(entries));
    }

    // Everything on the screen but the bottom line.
    std::vector<std::string> Page() {
        const std::string pad = std::exchange(smiths.scratchpad, "");
        smiths.message.clear();
        RequestUnitRedraw();
        cdu.Draw();
        smiths.scratchpad = pad;
        return cdu.Rows();
    }

    // The value beside a line key, without blanks.
    std::string Value(const std::string& line) const {
        const std::string row = cdu.Data(line[1] - '0');
        const std::size_t bar = row.rfind('|');
        std::string value = line[0] == 'L'             ? row.substr(0, row.find('|'))
                            : bar == std::string::npos ? row
                                                       : row.substr(bar + 1);
        std::erase(value, ' ');
        return value;
    }

    // Types and presses; what became of it.
    std::string Answer(const std::string& typed, const std::string& line) {
        smiths.scratchpad = typed;
        smiths.message.clear();
        cdu.Press(line);
        return smiths.message;
    }

    std::string AnswerToDelete(const std::string& line) {
        smiths.scratchpad.clear();
        cdu.Press("DEL " + line);
        return smiths.message;
    }

    void ExpectRefused(const std::string& typed, const std::string& line,
                       std::initializer_list<const char*> answers, const std::string& before) {
        const std::string answer = Answer(typed, line);
        EXPECT_TRUE(std::ranges::count(answers, answer) != 0) << typed << ": '" << answer << "'";
        EXPECT_EQ(smiths.scratchpad, typed) << "a refused entry stays";
        EXPECT_EQ(World(), before) << typed;
    }

    // The texts of a row that are refused, and all odd ones that it does not take.
    void ExpectAllRefused(const LineRow& row, const std::string& line, const std::string& before) {
        std::set<std::string> taken;
        for (const std::string& text : Words(row.takes)) {
            taken.insert(text.substr(0, text.find('>')));
        }
        for (const char* odd : kOdd) {
            if (!taken.contains(odd)) {
                ExpectRefused(odd, line, {kInvalid, kUnknown}, before);
            }
        }
        for (std::string text : Words(row.refuses)) {
            const bool unknown = text.ends_with('?');
            text.resize(text.size() - (unknown ? 1 : 0));
            ExpectRefused(text, line, {unknown ? kUnknown : kInvalid}, before);
        }
    }

    // An empty row where the table has none.
    static LineRow RowOf(const SmithsView& view, const char* line, std::set<const LineRow*>& used) {
        for (const LineRow& row : kLines) {
            if (Names(row.views, view.name, ';') && Names(row.lines, line)) {
                used.insert(&row);
                return row;
            }
        }
        return {"", "", ""};
    }

    void ExpectTaken(const SmithsView& view, const std::string& line, const std::string& taken,
                     Deletes deletes) {
        const std::size_t mark = std::min(taken.find('>'), taken.size());
        const std::string typed = taken.substr(0, mark);
        SCOPED_TRACE(typed);
        Begin(view);
        const std::string before = World();
        const std::vector<std::string> page = Page();
        EXPECT_THAT(Answer(typed, line), ::testing::AnyOf("", ::testing::EndsWith(" Saved")));
        EXPECT_EQ(smiths.scratchpad, "");
        EXPECT_TRUE(World() != before || Page() != page || smiths.page == kSmithsIndex);
        if (mark < taken.size()) {
            EXPECT_EQ(Value(line), taken.substr(mark + 1));
        }
        EXPECT_EQ(PlanFault(), "");
        if (deletes == kWhatWasTyped) {
            EXPECT_EQ(AnswerToDelete(line), "");
            EXPECT_NE(AnswerToDelete(line), "") << "there is no more";
        }
    }

    FakeSmiths cdu{0.1};
};

TEST_F(SmithsEntries, EveryLineTakesWhatItMayAndRefusesTheRest) {
    std::set<const LineRow*> used;
    for (const SmithsView& view : kSmithsViews) {
        Begin(view);
        const std::vector<std::string> page = Page();
        for (const char* line :
             {"L1", "L2", "L3", "L4", "L5", "L6", "R1", "R2", "R3", "R4", "R5", "R6"}) {
            SCOPED_TRACE(std::string(view.name) + ' ' + line);
            if (Names(view.prompts, line)) {
                Begin(view);
                EXPECT_EQ(Answer("77", line), "");
                EXPECT_EQ(
                    smiths.scratchpad,
                    view.name == std::string("SELECT") && line != std::string("L6") ? "" : "77");
                Begin(view);
                continue;
            }
            const LineRow row = RowOf(view, line, used);
            const std::string before = World();
            ExpectAllRefused(row, line, before);
            if (row.deletes != kAlways) {
                EXPECT_EQ(AnswerToDelete(line), kNoDelete);
                EXPECT_EQ(World(), before);
            }
            EXPECT_EQ(Page(), page) << "what is refused changes nothing";
            for (const std::string& text : Words(row.takes)) {
                ExpectTaken(view, line, text, row.deletes);
                if (!Words(row.lines).empty() && Words(row.lines)[0] != line) {
                    break;  // of lines that are alike the first is looked at closely
                }
            }
            if (row.deletes == kAlways) {
                Begin(view);
                EXPECT_EQ(AnswerToDelete(line), "");
                EXPECT_TRUE(World() != before || Page() != page);
            }
            if (*row.takes != '\0' || row.deletes == kAlways) {
                Begin(view);
            }
        }
    }
    EXPECT_EQ(used.size(), std::size(kLines)) << "a row that no line has";
}

// ---- what is missing ----

struct LackRow {
    Lack lack;
    const char* view;
    const char* line;
    const char* typed;
    const char* answer;
};

constexpr const char* kFull = kPlanFullMessage.data();
constexpr LackRow kLacks[] = {
    {Lack::Route, "RTE 1", "R1", "KBBB", kInvalid},
    {Lack::Route, "RTE 1", "L3", "09", kUnknown},
    {Lack::Route, "RTE 1", "L2", "BAD", "UNABLE TO LOAD FPL"},
    {Lack::Route, "RTE 2", "R1", "NEWPT", kInvalid},
    {Lack::Route, "LEGS", "L1", "NEWPT", kInvalid},
    {Lack::Route, "LEGS", "R1", "250/5000", kInvalid},
    {Lack::Route, "HOLD AT", "L6", "NEWPT", kInvalid},
    {Lack::Route, "HOLD AT", "R6", "", kInvalid},
    {Lack::Route, "DEPARTURES", "L1", "", ""},
    {Lack::Route, "INDEX", "R6", "TRIP", "NO ACTIVE FLIGHT PLAN"},
    {Lack::Route, "RTA", "L1", "FLY", kInvalid},
    {Lack::Data, "RTE 1", "L1", "KAAA", kUnknown},
    {Lack::Data, "RTE 1", "L2", "CO1", kUnknown},
    {Lack::Data, "RTE 1", "L3", "09", kUnknown},
    {Lack::Data, "RTE 1", "R1", "KBBB", kUnknown},
    {Lack::Data, "RTE 2", "L3", "J9", kInvalid},
    {Lack::Data, "RTE 2", "R1", "NEWPT", kUnknown},
    {Lack::Data, "LEGS", "L2", "NEWPT", kUnknown},
    {Lack::Data, "LEGS", "L2", "NEWPT090/9", kUnknown},
    {Lack::Data, "DIRECT", "L6", "NEWPT", kUnknown},
    {Lack::Data, "HOLD AT", "L6", "NEWPT", kUnknown},
    {Lack::Data, "DEP ARR", "L6", "KAAA", kUnknown},
    {Lack::Data, "POS INIT", "L2", "KAAA", kUnknown},
    {Lack::Data, "REF DATA", "L1", "NEWPT", kUnknown},
    {Lack::Data, "FIX", "L1", "NEWPT", kUnknown},
    {Lack::Data, "NAV OPTIONS", "L1", "ABCDE", kUnknown},
    {Lack::Data, "STORED", "L1", "", "UNABLE TO LOAD FPL"},
    {Lack::Disk, "INDEX", "R6", "TRIP", "UNABLE TO SAVE FPL"},
    {Lack::Room, "LEGS", "L2", "NEWPT", kFull},
    {Lack::Room, "DIRECT", "L2", "", kFull},
    {Lack::Room, "DIRECT", "L6", "FLY", kFull},
    {Lack::Room, "DIRECT", "L6", "NEWPT", kFull},
    {Lack::Room, "DIRECT", "R6", "FLY", kFull},
    {Lack::Room, "HOLD AT", "L6", "NEWPT", kFull},
    {Lack::Room, "HOLD AT", "R6", "", kFull},
    {Lack::Room, "RTE 2", "R2", "NEWPT", kFull},
    {Lack::Room, "RTE 2", "L3", "J9", kFull},
    {Lack::Room, "DEPARTURES", "L1", "", kFull},
    {Lack::Room, "ARRIVALS", "L1", "", ""},  // in the place of a longer one
    {Lack::Room, "ARRIVALS", "R1", "", kFull},
};

TEST_F(SmithsEntries, WhatIsMissingIsSaid) {
    folder.Write("avq/flightplans/BAD.RTE", "[FlightPlan]\n");
    for (const LackRow& row : kLacks) {
        SCOPED_TRACE(std::string(row.view) + ' ' + row.line + ' ' + row.typed);
        Begin(ViewCalled(row.view), row.lack);
        const std::string before = World();
        std::optional<FullDisk> disk;
        if (row.lack == Lack::Disk) {
            disk.emplace(20);
        }
        EXPECT_EQ(Answer(row.typed, row.line), row.answer);
        EXPECT_EQ(smiths.scratchpad, row.typed);
        EXPECT_FALSE(folder.Exists("avq/flightplans/TRIP.RTE"));
        if (*row.answer != '\0') {
            EXPECT_EQ(World(), before);
        }
    }
}

// Every page without a route, without its files and without room for another entry: each line is
// tried with something it may take and with nothing, and what is refused changes nothing.
TEST_F(SmithsEntries, NothingIsSpoiltByWhatIsMissing) {
    for (const Lack lack : {Lack::Route, Lack::Data, Lack::Room}) {
        for (const SmithsView& view : kSmithsViews) {
            Begin(view, lack);
            for (const LineRow& row : kLines) {
                if (!Names(row.views, view.name, ';') || *row.takes == '\0') {
                    continue;
                }
                const std::string taken = Words(row.takes)[0];
                for (const std::string& typed : {taken.substr(0, taken.find('>')), std::string()}) {
                    const std::string line = Words(row.lines).back();
                    SCOPED_TRACE(std::string(view.name) + ' ' + line + ' ' + typed);
                    const std::string before = World();
                    const std::string answer = Answer(typed, line);
                    if (!answer.empty() && smiths.scratchpad == typed) {
                        EXPECT_EQ(World(), before) << answer;
                    } else {
                        Begin(view, lack);
                    }
                    ASSERT_EQ(PlanFault(), "");
                }
            }
        }
    }
}

}  // namespace
}  // namespace avq1::test
