#include <gmock/gmock.h>

#include "cdu_smiths/fake_smiths.h"
#include "simlink/keyboard.h"
#include "support/fake_keyboard.h"
#include "support/leak_suppressions.h"

namespace avq1::test {
namespace {

TEST_F(SmithsTest, KeysWriteTheScratchpad) {
    const struct {
        const char* keys;
        const char* pad;
        const char* message = "";
    } kCases[] = {
        {"=ABC SP =1/.9", "ABC 1/.9"},
        {"=ABCDEFGHIJKLMNOPQRSTUVWX", "ABCDEFGHIJKLMNOPQRSTUVWX"},
        {"=ABCDEFGHIJKLMNOPQRSTUVWX Y +/-", "ABCDEFGHIJKLMNOPQRSTUVWX"},
        {"+/-", "-"},
        {"+/- +/-", "+"},
        {"+/- +/- +/-", "-"},
        {"=123 +/-", "123-"},
        {"=123 +/- +/-", "123+"},
        {"=AB CLR", "A"},
        {"=A CLR CLR", ""},
        {"=AB DEL", "AB", "DELETE"},
        {"=AB DEL CLR", "AB"},
        {"=AB DEL CLR CLR", "A"},
        {"=AB DEL SP", ""},
        {"=AB DEL =C", "ABC", "DELETE"},
        {"DIR_INTC =A", "A", "NO ACTIVE ROUTE"},
    };
    for (const auto& row : kCases) {
        SCOPED_TRACE(row.keys);
        smiths = SmithsState{};
        InstallSmiths();
        cdu.Press(row.keys);
        EXPECT_EQ(smiths.scratchpad, row.pad);
        EXPECT_EQ(smiths.message, row.message);
        EXPECT_EQ(cdu.Bottom(), *row.message != '\0' ? row.message : row.pad);
    }
}

TEST_F(SmithsTest, ThePageOfThePhaseIsShown) {
    const struct {
        std::int32_t page;
        GuidanceEvent event;
        std::int32_t shown;
    } kCases[] = {
        {kSmithsClimb, GuidanceEvent::TopOfClimb, kSmithsCruise},
        {kSmithsClimb, GuidanceEvent::TopOfDescent, kSmithsDescent},
        {kSmithsCruise, GuidanceEvent::TopOfDescent, kSmithsDescent},
        {kSmithsDescent, GuidanceEvent::BackToCruise, kSmithsCruise},
        {kSmithsClimb, GuidanceEvent::BackToCruise, kSmithsCruise},
        {kSmithsDescent, GuidanceEvent::TopOfClimb, kSmithsDescent},
        {kSmithsLegs, GuidanceEvent::TopOfDescent, kSmithsLegs},
    };
    for (const auto& row : kCases) {
        smiths.page = row.page;
        NoteSmithsPhase({.event = row.event});
        EXPECT_EQ(smiths.page, row.shown);
    }
}

TEST_F(SmithsTest, LettersFromGOnGoToTheOtherUnitToo) {
    MakePlan();
    unit.Press("FPL L3");
    ASSERT_TRUE(gns.entryArmed);
    cdu.Press("=FGZ");
    EXPECT_EQ(gns.scratchpad, "GZ    ");
    EXPECT_EQ(smiths.scratchpad, "FGZ");
}

TEST_F(SmithsTest, TheComputerKeyboardTypes) {
    FakeKeyboard keyboard{Picture::Services()};
    const auto type = [&](std::initializer_list<std::uint8_t> scanCodes) {
        for (const std::uint8_t key : scanCodes) {
            keyboard.Down(key);
            PollSmithsKeyboard();
            keyboard.Up(key);
            PollSmithsKeyboard();
            cdu.Draw();
        }
    };
    MakeRoute();
    cdu.Press("LEGS");
    type({scan::kA});
    EXPECT_EQ(smiths.scratchpad, "") << "not yet";
    cdu.Press("SP");
    EXPECT_TRUE(HasKeyboard(kSmithsKeyboard));
    EXPECT_EQ(smiths.scratchpad, " ") << "SP types its blank all the same";
    EXPECT_EQ(cdu.At(227), "K E Y B O A R D");
    type({scan::kA, scan::k9, scan::kX, scan::kBackspace});
    EXPECT_EQ(cdu.Bottom(), " A9");
    cdu.Press("DEL");
    type({scan::kBackspace});
    EXPECT_EQ(cdu.Bottom(), " A9") << "the message goes first, as with CLR";
    type({scan::kPageDown});
    EXPECT_EQ(cdu.Title(), "ACT|RTE    LEGS| 2 /  2");
    type({scan::kUp});
    EXPECT_EQ(cdu.Title(), "ACT|RTE    LEGS| 1 /  2");
    type({scan::kEnter});
    EXPECT_FALSE(HasKeyboard(kSmithsKeyboard));
    EXPECT_EQ(smiths.editing, 0);
    cdu.Press("CLR CLR SP SP");
    EXPECT_FALSE(HasKeyboard(kSmithsKeyboard)) << "SP gives it back";
    keyboard.window = nullptr;
    cdu.Press("SP");
    EXPECT_EQ(cdu.Bottom(), "SetCooperativeLevel failed");
    StopKeyboardEntry();
}

TEST_F(SmithsTest, KeysWaitForPower) {
    avionicsPower = 0;
    cdu.Press("INIT_REF L6");
    EXPECT_EQ(smiths.page, kSmithsPos);
    avionicsPower = 1;
    cdu.Draw();
    EXPECT_EQ(smiths.page, kSmithsIndex);
}

}  // namespace
}  // namespace avq1::test
