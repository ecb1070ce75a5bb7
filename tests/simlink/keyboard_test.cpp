#include "simlink/keyboard.h"

#include <gtest/gtest.h>

#include <string>

#include "base/module_state.h"
#include "support/fake_keyboard.h"

namespace avq1 {
namespace {

using test::FakeKeyboard;
namespace scan = test::scan;

class KeyboardTest : public ::testing::Test {
  protected:
    KeyboardTest() { ResetModuleState(); }
    ~KeyboardTest() override { PlatformTable.services = nullptr; }

    // One key down for a poll and up for the next.
    void Type(std::uint8_t scanCode) {
        keyboard.Down(scanCode);
        PollKeyboard(text);
        keyboard.Up(scanCode);
        PollKeyboard(text);
    }

    PlatformServices services;
    FakeKeyboard keyboard{services};
    std::string text;
};

TEST_F(KeyboardTest, EveryLetterAndDigitKeyTypesItsCharacter) {
    // The rows of a keyboard from the upper left: each run of scan codes is a run of keys.
    struct Run {
        std::uint8_t first;
        const char* characters;
    };
    const Run runs[] = {
        {0x02, "1234567890"}, {0x10, "QWERTYUIOP"}, {0x1E, "ASDFGHJKL"}, {0x2C, "ZXCVBNM"}};
    StartKeyboardEntry();
    EXPECT_EQ(KeyboardMessage, "");
    for (const Run& run : runs) {
        text.clear();
        const std::string expected = run.characters;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            Type(static_cast<std::uint8_t>(run.first + i));
        }
        EXPECT_EQ(text, expected);
    }
    text.clear();
    for (int code = 0; code < 256; ++code) {
        keyboard.keys.fill(0);
        PollKeyboard(text);
        const bool endsOrErases =
            code == scan::kEnter || code == scan::kKeypadEnter || code == scan::kBackspace;
        if (!endsOrErases) {
            keyboard.Down(static_cast<std::uint8_t>(code));
            PollKeyboard(text);
        }
    }
    EXPECT_EQ(text.size(), 36U) << "no other key types";
}

TEST_F(KeyboardTest, KeysPressedTogetherAreTypedLettersFirstThenDigits) {
    StartKeyboardEntry();
    for (const std::uint8_t key : {scan::k9, scan::k1, scan::k0, scan::kZ, scan::kB, scan::kA}) {
        keyboard.Down(key);
    }
    PollKeyboard(text);
    PollKeyboard(text);
    EXPECT_EQ(text, "ABZ019") << "once, however long they are held";
}

TEST_F(KeyboardTest, ModifiersTypeNothingAndTheKeyMustBePressedAgain) {
    StartKeyboardEntry();
    for (const std::uint8_t modifier : {0x2A, 0x36, 0x1D, 0x9D, 0x38}) {
        text = "X";
        keyboard.Down(modifier);
        keyboard.Down(scan::kA);
        keyboard.Down(scan::kBackspace);
        keyboard.Down(scan::kUp);
        EXPECT_EQ(PollKeyboard(text), KeyboardPoll{}) << int{modifier};
        keyboard.Up(modifier);
        keyboard.Up(scan::kBackspace);
        EXPECT_FALSE(PollKeyboard(text).up) << int{modifier};
        EXPECT_EQ(text, "X") << int{modifier};
        keyboard.keys.fill(0);
        PollKeyboard(text);
        Type(scan::kA);
        EXPECT_EQ(text, "XA") << int{modifier};
    }
    keyboard.Down(0xB8);  // the right Alt key is none of them
    Type(scan::kB);
    EXPECT_EQ(text, "XAB");
}

TEST_F(KeyboardTest, BackspaceErasesAtEveryPollWhileHeld) {
    StartKeyboardEntry();
    text = "ABC";
    keyboard.Down(scan::kBackspace);
    for (const char* const left : {"AB", "A", "", ""}) {
        PollKeyboard(text);
        EXPECT_EQ(text, left);
    }
}

TEST_F(KeyboardTest, ArrowAndPageKeysAskOncePerPress) {
    struct Row {
        std::uint8_t key;
        bool KeyboardPoll::*request;
    };
    const Row rows[] = {{scan::kUp, &KeyboardPoll::up},
                        {scan::kDown, &KeyboardPoll::down},
                        {scan::kPageUp, &KeyboardPoll::pageUp},
                        {scan::kPageDown, &KeyboardPoll::pageDown}};
    StartKeyboardEntry();
    for (const Row& row : rows) {
        keyboard.keys.fill(0);
        keyboard.Down(row.key);
        KeyboardPoll expected;
        expected.read = true;
        expected.*row.request = true;
        EXPECT_EQ(PollKeyboard(text), expected);
        EXPECT_FALSE(PollKeyboard(text).*row.request) << "held";
    }
}

TEST_F(KeyboardTest, EnterEndsEntryEvenWithModifiersAndWithoutText) {
    for (const std::uint8_t enter : {scan::kEnter, scan::kKeypadEnter}) {
        keyboard.keys.fill(0);
        StartKeyboardEntry();
        EXPECT_NE(keyboard.hook, nullptr);
        keyboard.Down(0x2A);
        keyboard.Down(enter);
        EXPECT_TRUE(PollKeyboard(text).enter);
        EXPECT_EQ(KeyboardEntryOn, 0);
        EXPECT_EQ(keyboard.hook, nullptr);
    }
    const int reads = keyboard.reads;
    PollKeyboard(text);
    EXPECT_EQ(keyboard.reads, reads) << "the keyboard is let go";
}

TEST_F(KeyboardTest, AKeyHeldAcrossEntryPeriodsIsNotTypedAgain) {
    StartKeyboardEntry();
    keyboard.Down(scan::kA);
    PollKeyboard(text);
    StopKeyboardEntry();
    StartKeyboardEntry();
    PollKeyboard(text);
    EXPECT_EQ(text, "A");
}

TEST_F(KeyboardTest, AFailedOpeningLeavesEntryOnWithItsMessage) {
    struct Row {
        bool keyboard;
        bool window;
        const char* message;
    };
    const Row rows[] = {{false, true, "CreateDevice failed"},
                        {true, false, "SetCooperativeLevel failed"},
                        {true, true, ""}};
    const auto read = services.read_keyboard;
    for (const Row& row : rows) {
        services.read_keyboard = row.keyboard ? read : nullptr;
        keyboard.window = row.window ? this : nullptr;
        keyboard.keys.fill(0);
        PollKeyboard(text);
        keyboard.Down(scan::kA);
        text.clear();
        StartKeyboardEntry();
        EXPECT_EQ(KeyboardEntryOn, 1);
        EXPECT_EQ(KeyboardMessage, row.message);
        EXPECT_EQ(PollKeyboard(text).read, *row.message == '\0');
        EXPECT_EQ(text, *row.message == '\0' ? "A" : "");
        StopKeyboardEntry();
        EXPECT_EQ(KeyboardMessage, "");
    }
}

TEST_F(KeyboardTest, AKeyboardTakenAwayTypesNothingUntilItIsBack) {
    StartKeyboardEntry();
    keyboard.Down(scan::kA);
    for (const std::int32_t failure : {kKeyboardInputLost, -1}) {
        keyboard.result = failure;
        EXPECT_EQ(PollKeyboard(text), KeyboardPoll{});
        EXPECT_EQ(KeyboardEntryOn, 1);
    }
    EXPECT_EQ(text, "");
    keyboard.result = 0;
    PollKeyboard(text);
    EXPECT_EQ(text, "A");
}

TEST_F(KeyboardTest, HookSwallowsTheSimulatorsLettersWithoutModifiers) {
    EXPECT_EQ(SetKeyboardHook(true), 1);
    EXPECT_EQ(SetKeyboardHook(true), 1);
    EXPECT_EQ(keyboard.hookChanges, 1) << "installed once";
    struct Row {
        std::int32_t code;
        std::set<std::int32_t> keys;
        std::int32_t swallowed;
    };
    const Row rows[] = {
        {0, {'S'}, 1},       {0, {'G'}, 1},       {3, {'Z'}, 1},       {0, {'A', 'Z'}, 1},
        {-1, {'S'}, 0},      {0, {'A'}, 0},       {0, {}, 0},          {0, {'S', 0x10}, 0},
        {0, {'G', 0x11}, 0}, {0, {'Z', 0x12}, 0}, {0, {0x10, 'A'}, 0},
    };
    for (const Row& row : rows) {
        keyboard.virtualKeys = row.keys;
        EXPECT_EQ(keyboard.hook(row.code), row.swallowed);
    }
    EXPECT_EQ(SetKeyboardHook(false), 0);
    EXPECT_EQ(SetKeyboardHook(false), 0);
    EXPECT_EQ(keyboard.hookChanges, 2);
    services.set_keyboard_hook = nullptr;
    EXPECT_EQ(SetKeyboardHook(true), 0) << "where there is none to set";
}

}  // namespace
}  // namespace avq1
