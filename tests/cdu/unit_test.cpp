// The draw cycle and the field walker on a small unit: six lines, a scratchpad, a message line.
#include "cdu/unit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "base/module_state.h"
#include "base/redraw.h"
#include "drawing/palette.h"
#include "simlink/aircraft_state.h"
#include "support/leak_suppressions.h"
#include "support/picture.h"

namespace avq1::test {
namespace {

using ::testing::ElementsAre;

enum Style : std::uint8_t { kLabel, kValue, kBox };
constexpr std::array<ScreenStyle, 3> kStyles = {{
    {{"Arial", 12}, colour::Green},
    {{"Courier New", 18, true}, colour::Amber},
    {{}, colour::Yellow},
}};
enum Page : std::int32_t { kFirstPage = 3, kSecondPage = 7, kNoSuchPage = 99 };

struct SmallUnit : CduState {
    std::string scratchpad;
    std::string message;
    std::array<std::string, 2> values;
    std::vector<UnitInput> seen;
    bool showsSecret = false;
    std::string log;
};

SmallUnit state;
UnitPaint paint;

void ShowValue(const FieldRow& field, UnitText& text) {
    text.Set(state.values[static_cast<std::size_t>(field.item)]);
}

EntryResult EnterValue(const FieldRow& field, std::string_view entry) {
    if (entry == "BAD") {
        return EntryResult::NotInDatabase;
    }
    state.values[static_cast<std::size_t>(field.item)] = entry;
    return EntryResult::Accepted;
}

EntryResult EraseValue(const FieldRow& field) {
    std::string& value = state.values[static_cast<std::size_t>(field.item)];
    if (value.empty()) {
        return EntryResult::InvalidDelete;
    }
    value.clear();
    return EntryResult::Accepted;
}

EntryResult CopyValue(const FieldRow& field) {
    state.scratchpad = state.values[static_cast<std::size_t>(field.item)];
    return EntryResult::None;
}

EntryResult Refuse(const FieldRow&) {
    return EntryResult::NoActiveRoute;
}

constexpr FieldRow kFirstFields[] = {
    {1,
     "O R I G I N",
     ShowValue,
     nullptr,
     EnterValue,
     EraseValue,
     CopyValue,
     0,
     0,
     kValue,
     kLabel,
     {0, 30},
     {10, 20}},
    {2,
     "D E S T",
     ShowValue,
     nullptr,
     EnterValue,
     EraseValue,
     nullptr,
     0,
     1,
     kValue,
     kLabel,
     {0, 60},
     {10, 50}},
    {.line = 3,
     .label = "SECRET",
     .visible = [](const FieldRow&) { return state.showsSecret; },
     .opens = kSecondPage,
     .labelAt = {0, 90}},
    {.line = 3,
     .label = "OPEN >",
     .visible = [](const FieldRow&) { return !state.showsSecret; },
     .press = Refuse,
     .opens = kSecondPage,
     .labelAt = {0, 90}},
    {.line = kEnterLine,
     .press =
         [](const FieldRow&) {
             state.log += 'E';
             return EntryResult::Accepted;
         }},
};

const PageRow kFirst{.page = kFirstPage,
                     .fields = kFirstFields,
                     .handle = [](const UnitInput& input) { state.seen.push_back(input); },
                     .compose =
                         [](Screen& screen) {
                             screen.Fill(kBox, 0, 100, 20, 10);
                             screen.Put(kValue, 0, 0, "TITLE %d", 1);
                         }};
const PageRow kSecond{.page = kSecondPage,
                      .handle = [](const UnitInput& input) { state.seen.push_back(input); },
                      .compose = [](Screen& screen) { screen.Put(kValue, 0, 0, "SECOND"); },
                      .keyboardEnters = true};
constexpr std::array<const PageRow*, 2> kPages = {&kFirst, &kSecond};

const CduUnit kUnit{
    .state = state,
    .paint = paint,
    .pages = kPages,
    .styles = kStyles,
    .widthUnits = 100,
    .heightUnits = 120,
    .entry =
        [] {
            return PilotEntry{state.scratchpad, state.message == "DELETE"};
        },
    .entered =
        [](const FieldRow&, const FieldOutcome& outcome) {
            if (outcome.result == EntryResult::Accepted) {
                state.scratchpad.clear();
            }
            state.message = TextOf(outcome.result);
        },
    .overlay =
        [](Screen& screen) {
            screen.Put(kValue, 0, 110, "%s",
                       state.message.empty() ? state.scratchpad.c_str() : state.message.c_str());
        }};

class UnitTest : public ::testing::Test {
  protected:
    UnitTest() {
        ResetModuleState();
        state = SmallUnit{};
        state.page = kFirstPage;
        paint = UnitPaint{};
        avionicsPower = 1;
    }
    ~UnitTest() override {
        StopDrawingLibrary(drawingLibrary_);
        PlatformTable.services = nullptr;
    }

    static std::vector<std::string> Draw(Picture& picture) {
        Picture::Forget();
        DrawUnit(kUnit, picture.Target());
        std::vector<std::string> texts;
        for (const DrawnText& text : Picture::Texts()) {
            texts.push_back(text.text);
        }
        return texts;
    }
    void PressLine(std::int32_t line) {
        state.input.lineKey = line;
        Draw(main);
    }

    std::uintptr_t drawingLibrary_ = StartDrawingLibrary();
    Picture main{200, 240, 0xFF123456};
};

TEST_F(UnitTest, ShowsPageFieldsAndEntryLineInTheirStyles) {
    state.values = {"KBOS", ""};
    state.scratchpad = "ABC";
    EXPECT_THAT(Draw(main),
                ElementsAre("TITLE 1", "O R I G I N", "KBOS", "D E S T", "OPEN >", "ABC"));
    const DrawnText* value = Picture::Find("KBOS");
    EXPECT_EQ(value->argb, colour::Amber);
    EXPECT_EQ(value->y, 60) << "scaled to the surface";
    EXPECT_EQ(Picture::Find("D E S T")->argb, colour::Green);
    EXPECT_EQ(main.At(30, 210), colour::Yellow);
    EXPECT_EQ(main.At(150, 230), colour::Black);
}

TEST_F(UnitTest, FieldsTakeEntriesDeletionsAndPresses) {
    constexpr struct {
        const char* scratchpad;
        const char* message;
        std::int32_t line;
        const char* scratchpadAfter;
        const char* messageAfter;
        const char* origin;
    } kCases[] = {
        {"KBOS", "", 1, "", "", "KBOS"},
        {"BAD", "", 1, "BAD", "NOT IN DATABASE", "KBOS"},
        {"", "", 1, "KBOS", "", "KBOS"},  // copied by its own press
        {"X", "DELETE", 1, "", "", ""},
        {"", "DELETE", 1, "", "INVALID DELETE", ""},
        {"", "DELETE", 3, "", "INVALID DELETE", ""},
        {"X", "", 3, "X", "INVALID ENTRY", ""},
        {"", "", 3, "", "NO ACTIVE ROUTE", ""},  // refused: the page it would open stays away
        {"", "", 2, "", "", ""},
        {"X", "", 4, "X", "INVALID ENTRY", ""},  // no field there
        {"X", "", 0, "X", "", ""},
    };
    for (const auto& c : kCases) {
        state.scratchpad = c.scratchpad;
        state.message = c.message;
        PressLine(c.line);
        EXPECT_EQ(state.scratchpad, c.scratchpadAfter) << c.scratchpad << c.line;
        EXPECT_EQ(state.message, c.messageAfter) << c.scratchpad << c.line;
        EXPECT_EQ(state.values[0], c.origin) << c.scratchpad << c.line;
        EXPECT_EQ(state.page, kFirstPage);
    }
    state.scratchpad.clear();
    state.showsSecret = true;
    PressLine(3);
    EXPECT_EQ(state.page, kSecondPage) << "only what is visible takes the key";
    EXPECT_TRUE(Picture::Shows("SECOND")) << "in the same draw";
}

TEST_F(UnitTest, EveryPressIsSeenByExactlyOneDraw) {
    Picture popup(50, 60);
    state.input = {.lineKey = 4, .prevPressed = true, .openedPage = kFirstPage};
    state.input.lineKey = 5;
    state.lineKeyRepost = 2;
    Draw(popup);
    Draw(main);
    Draw(popup);
    ASSERT_EQ(state.seen.size(), 3U);
    EXPECT_EQ(state.seen[0],
              (UnitInput{.lineKey = 5, .prevPressed = true, .openedPage = kFirstPage}));
    EXPECT_EQ(state.seen[1], UnitInput{.lineKey = 2}) << "posted again for the next draw";
    EXPECT_EQ(state.seen[2], UnitInput{});
}

TEST_F(UnitTest, KeysWaitForPowerAndForAPageThatExists) {
    Draw(main);
    EXPECT_EQ(main.At(5, 5), colour::Black);
    state.input.enterPressed = true;
    avionicsPower = 0;
    Draw(main);
    EXPECT_TRUE(main.IsClear());
    avionicsPower = 1;
    state.page = kNoSuchPage;
    EXPECT_TRUE(Draw(main).empty());
    EXPECT_EQ(main.At(5, 5), colour::Black) << "an empty screen";
    EXPECT_EQ(state.log, "");
    state.page = kFirstPage;
    EXPECT_FALSE(Draw(main).empty());
    EXPECT_EQ(state.log, "E");
    EXPECT_EQ(state.seen.size(), 2U);
}

TEST_F(UnitTest, TheKeyboardsEnterIsThePagesChoice) {
    state.input.entryComplete = true;
    Draw(main);
    EXPECT_EQ(state.log, "");
    state.input = {.enterPressed = true, .entryComplete = true};
    Draw(main);
    EXPECT_EQ(state.log, "E") << "once";
}

TEST_F(UnitTest, EverySurfaceIsPaintedOncePerChange) {
    Picture popup(50, 60);
    const auto painted = [&] { return std::pair{!Draw(main).empty(), !Draw(popup).empty()}; };
    constexpr std::pair kBoth{true, true};
    constexpr std::pair kNeither{false, false};
    EXPECT_EQ(painted(), kBoth);
    EXPECT_EQ(painted(), kNeither);
    state.values[0] = "A";
    EXPECT_EQ(painted(), kBoth);
    RequestUnitRedraw();
    EXPECT_EQ(painted(), kBoth) << "asked for";
    EXPECT_EQ(painted(), kNeither);
    popup.context().width = 40;
    EXPECT_EQ(painted(), (std::pair{false, true})) << "the surface is another one";
    std::array<std::unique_ptr<Picture>, 16> crowd;
    for (std::unique_ptr<Picture>& picture : crowd) {
        picture = std::make_unique<Picture>(20, 20);
        EXPECT_FALSE(Draw(*picture).empty());
    }
    EXPECT_FALSE(Draw(main).empty()) << "forgotten among too many surfaces: painted anew";
}

TEST_F(UnitTest, PagesKnowTheirWayBack) {
    CallPage(state, kSecondPage);
    CallPage(state, 8);
    ReturnPage(state, 1);
    EXPECT_EQ(state.page, kSecondPage);
    ReturnPage(state, 1);
    EXPECT_EQ(state.page, kFirstPage);
    ReturnPage(state, 1);
    EXPECT_EQ(state.page, 1);
    for (int page = 10; page < 20; ++page) {
        CallPage(state, page);
    }
    for (int page = 18; page > 10; --page) {
        ReturnPage(state, 1);
        EXPECT_EQ(state.page, page);
    }
    ReturnPage(state, 1);
    EXPECT_EQ(state.page, 1) << "the oldest steps were forgotten";
    CallPage(state, 5);
    OpenPage(state, 6);
    ReturnPage(state, 1);
    EXPECT_EQ(state.page, 1) << "a page key forgets the way back";
}

TEST_F(UnitTest, AFullScreenDropsTheRest) {
    Screen screen;
    for (int i = 0; i < 200; ++i) {
        screen.Put(kValue, 0, i, "%d", i);
        screen.Frame(kBox, 0, i, 2, 2);
        screen.Put(kValue, 0, i, "%s", "");
    }
    EXPECT_EQ(screen.items().size(), 72U);
    EXPECT_EQ(screen.items()[2].text.view(), "1");
}

}  // namespace
}  // namespace avq1::test
