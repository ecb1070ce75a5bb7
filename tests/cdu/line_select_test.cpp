// Selecting lines and typing into them, key by key.
#include "cdu/line_select.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>
#include <string>

#include "cdu/screen.h"

namespace avq1::test {
namespace {

LineSelection selection;
bool lateRowShown;
std::string log;

EntryResult Log(const char* what) {
    log += what;
    return EntryResult::None;
}

constexpr LineRow kRows[] = {
    {.line = 1, .text = "DEPART", .prompt = "DEPART?", .at = {30, 40}},
    {.line = 2,
     .text = "KJFK",
     .entryLength = 6,
     .select = [](const LineRow&) { LoadScratchpad(selection, "KJFK", 6); },
     .enter =
         [](const LineRow&) {
             log += "<" + std::string(TypedText(selection)) + ">";
             return TypedText(selection) == "BAD" ? EntryResult::InvalidEntry
                                                  : EntryResult::Accepted;
         },
     .clear = [](const LineRow&) { return Log("clear "); },
     .at = {30, 80}},
    {.line = 2, .state = 2, .text = "ARRIVE", .prompt = "ARRIVE?", .at = {30, 120}},
    {.line = 3,
     .state = 2,
     .text = "LATE",
     .visible = [](const LineRow&) { return lateRowShown; },
     .clear = [](const LineRow&) { return Log("step "); },
     .at = {30, 160}},
    {.line = 4,
     .entryLength = 10,
     .again = [](const LineRow&) { return Log("again "); },
     .at = {30, 200}},
};

std::string SelectedText() {
    const LineRow* row = SelectedRow(kRows, selection);
    return row == nullptr ? "-" : std::to_string(row->line) + "." + std::to_string(row->state);
}

// "L2" presses line key 2, "=AB" types, "CLR" and "ENTER" are keys.
void Press(const std::string& keys) {
    std::istringstream words(keys);
    for (std::string word; words >> word;) {
        const LineRow* row = SelectedRow(kRows, selection);
        const std::size_t length = row == nullptr ? 6 : static_cast<std::size_t>(row->entryLength);
        if (word.front() == '=') {
            for (const char each : word.substr(1)) {
                TypeCharacter(selection, std::string_view(&each, 1), length);
            }
        } else if (word == "CLR" && ClearActs(kRows, selection)) {
            ClearSelected(kRows, selection);
        } else if (word == "CLR") {
            TypeCharacter(selection, kBackspaceToken, length);
        } else if (word == "ENTER") {
            EnterSelected(kRows, selection);
        } else {
            PressSelectableLine(kRows, selection, std::stoi(word.substr(1)));
        }
    }
}

struct LineSelectTest : ::testing::Test {
    LineSelectTest() {
        selection = LineSelection{};
        lateRowShown = true;
        log.clear();
    }
};

TEST_F(LineSelectTest, KeysStepTheRowsOfTheirLineAndCharactersGoToTheOneThatTakesThem) {
    constexpr struct {
        const char* keys;
        const char* selected;
        const char* scratchpad;
        const char* log;
    } kCases[] = {
        {"", "-", "", ""},
        {"=ABC", "-", "", ""},  // nothing waits for an entry
        {"L1", "1.1", "", ""},
        {"L1 L1", "-", "", ""},
        {"L1 =A", "1.1", "", ""},  // a line without an entry
        {"L2", "2.1", "KJFK  ", ""},
        {"L2 L2", "2.2", "KJFK  ", ""},
        {"L2 L2 =A", "2.2", "KJFK  ", ""},  // disarmed
        {"L2 L2 L2", "-", "KJFK  ", ""},
        {"L2 L1", "1.1", "KJFK  ", ""},  // one line at a time
        {"L2 L1 =A", "1.1", "KJFK  ", ""},
        {"L9", "-", "", ""},
        {"L2 L9", "2.1", "KJFK  ", ""},
        {"L3", "3.2", "", ""},  // straight to the only state
        {"L3 L3", "-", "", ""},
        {"L3 CLR CLR", "3.2", "", "step step "},
        {"L2 =A", "2.1", "A     ", ""},  // replaces
        {"L2 =SEVENTH", "2.1", "SEVENT", ""},
        {"L2 =AB CLR", "2.1", "A     ", ""},
        {"L2 =AB CLR CLR CLR", "2.1", "      ", ""},
        {"L2 CLR", "2.1", "KJFK  ", "clear "},  // nothing typed yet: the line's own
        {"L2 =A ENTER", "-", "A     ", "<A>"},
        {"L2 =BAD ENTER", "2.1", "BAD   ", "<BAD>"},  // refused: the entry stays
        {"L2 =A ENTER ENTER", "-", "A     ", "<A>"},
        {"L4 =ELEVENCHARS", "4.1", "ELEVENCHAR", ""},
        {"L4 CLR", "4.1", "          ", ""},  // no answer of its own: a backspace
        {"L4 =AB L4", "-", "AB        ", "again "},
    };
    for (const auto& c : kCases) {
        selection = LineSelection{};
        log.clear();
        Press(c.keys);
        EXPECT_EQ(SelectedText(), c.selected) << c.keys;
        EXPECT_EQ(selection.scratchpad, c.scratchpad) << c.keys;
        EXPECT_EQ(log, c.log) << c.keys;
    }
}

TEST_F(LineSelectTest, PlaceholdersGiveWayToTheFirstCharacterAndABackspaceEmptiesThem) {
    constexpr struct {
        const char* field;
        const char* typed;
        const char* after;
    } kCases[] = {{"******", "A", "A     "},  {"------", "7", "7     "},
                  {"KJFK  ", "7", "KJFK7 "},  {"ABCDEF", "7", "ABCDEF"},
                  {"------", "*1", "      "}, {"      ", "*1", "      "}};
    for (const auto& c : kCases) {
        selection = {.entryArmed = true, .freshEntry = false, .scratchpad = c.field};
        TypeCharacter(selection, c.typed, 6);
        EXPECT_EQ(selection.scratchpad, c.after) << c.field << c.typed;
    }
}

TEST_F(LineSelectTest, ARowThatGoesAwayIsSelectedNoMore) {
    Press("L3");
    lateRowShown = false;
    EXPECT_EQ(SelectedText(), "-");
    EXPECT_FALSE(ClearActs(kRows, selection));
    Press("L3 CLR ENTER");
    EXPECT_EQ(log, "");
}

TEST_F(LineSelectTest, SelectedRowsShowTheirPromptOrTheirEntryOnAHighlight) {
    enum : std::uint8_t { kData, kPrompt, kEntry, kHighlight };
    const auto drawn = [](const std::string& keys) {
        selection = LineSelection{};
        Press(keys);
        Screen screen;
        DrawLineRows(kRows, selection, {kPrompt, kEntry, kHighlight}, screen);
        std::string texts;
        for (const ScreenItem& item : screen.items()) {
            texts += item.kind == ScreenItem::Kind::Fill ? "[" + std::to_string(item.size.x) + "]"
                                                         : std::string(item.text.view());
            texts += std::to_string(item.style) + " ";
        }
        return texts;
    };
    EXPECT_EQ(drawn(""), "DEPART0 KJFK0 ARRIVE0 LATE0 ");
    EXPECT_EQ(drawn("L1"), "DEPART?1 KJFK0 ARRIVE0 LATE0 ");
    EXPECT_EQ(drawn("L2 =AB"), "DEPART0 [126]3 AB2 ARRIVE0 LATE0 ");
    EXPECT_EQ(drawn("L3"), "DEPART0 KJFK0 ARRIVE0 LATE1 ");
    lateRowShown = false;
    EXPECT_EQ(drawn("L4"), "DEPART0 KJFK0 ARRIVE0 [210]3 ");
}

}  // namespace
}  // namespace avq1::test
