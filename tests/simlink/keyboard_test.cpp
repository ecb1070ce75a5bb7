#include "simlink/keyboard.h"

#include <gtest/gtest.h>

#include <string>

#include "base/module_state.h"
#include "base/redraw.h"
#include "simlink/aircraft_state.h"
#include "support/fake_keyboard.h"
#include "support/fake_simulator.h"

namespace avq1 {
namespace {

using test::FakeKeyboard;
namespace scan = test::scan;

int timesGone = 0;
const KeyboardUser kUser{[] { ++timesGone; }};
const KeyboardUser kOtherUser{[] {}};

class KeyboardTest : public ::testing::Test {
  protected:
    KeyboardTest() {
        ResetModuleState();
        avionicsPower = 1;
    }
    ~KeyboardTest() override { PlatformTable.services = nullptr; }

    // Holds exactly these keys for a poll.
    KeyboardPoll Hold(std::initializer_list<std::uint8_t> scanCodes) {
        keyboard.keys.fill(0);
        for (const std::uint8_t key : scanCodes) {
            keyboard.Down(key);
        }
        return PollKeyboard(text);
    }
    void Type(std::uint8_t scanCode) {
        Hold({scanCode});
        Hold({});
    }

    PlatformServices services;
    FakeKeyboard keyboard{services};
    std::string text;
};

TEST_F(KeyboardTest, EveryLetterAndDigitKeyTypesItsCharacter) {
    // The rows of a keyboard from the upper left: each run of scan codes is a run of keys.
    const struct {
        std::uint8_t first;
        const char* characters;
    } runs[] = {{0x02, "1234567890"}, {0x10, "QWERTYUIOP"}, {0x1E, "ASDFGHJKL"}, {0x2C, "ZXCVBNM"}};
    StartKeyboardEntry(kUser);
    EXPECT_EQ(KeyboardMessage, "");
    for (const auto& run : runs) {
        text.clear();
        const std::string expected = run.characters;
        for (std::size_t i = 0; i < expected.size(); ++i) {
            Type(static_cast<std::uint8_t>(run.first + i));
        }
        EXPECT_EQ(text, expected);
    }
    text.clear();
    for (int code = 0; code < 256; ++code) {
        if (code != scan::kEnter && code != scan::kKeypadEnter && code != scan::kBackspace) {
            Type(static_cast<std::uint8_t>(code));
        }
    }
    EXPECT_EQ(text.size(), 36U) << "no other key types";
    text.assign(254, 'X');
    Type(scan::kA);
    Type(scan::kB);
    EXPECT_EQ(text.size(), 255U) << "the longest text";
}

TEST_F(KeyboardTest, KeysPressedTogetherAreTypedLettersFirstThenDigits) {
    StartKeyboardEntry(kUser);
    Hold({scan::k9, scan::k1, scan::k0, scan::kZ, scan::kB, scan::kA});
    PollKeyboard(text);
    EXPECT_EQ(text, "ABZ019") << "once, however long they are held";
}

TEST_F(KeyboardTest, ModifiersTypeNothingAndTheKeyMustBePressedAgain) {
    StartKeyboardEntry(kUser);
    for (const std::uint8_t modifier : {0x2A, 0x36, 0x1D, 0x9D, 0x38}) {
        text = "X";
        EXPECT_EQ(Hold({modifier, scan::kA, scan::kBackspace, scan::kUp}), KeyboardPoll{})
            << int{modifier};
        EXPECT_FALSE(Hold({scan::kA, scan::kUp}).up) << int{modifier};
        EXPECT_EQ(text, "X") << int{modifier};
        Hold({});
        Type(scan::kA);
        EXPECT_EQ(text, "XA") << int{modifier};
    }
    Hold({0xB8, scan::kB});  // the right Alt key is none of them
    EXPECT_EQ(text, "XAB");
}

TEST_F(KeyboardTest, BackspaceErasesAtEveryPollWhileHeld) {
    StartKeyboardEntry(kUser);
    text = "ABC";
    for (const char* const left : {"AB", "A", "", ""}) {
        Hold({scan::kBackspace});
        EXPECT_EQ(text, left);
    }
}

TEST_F(KeyboardTest, ArrowAndPageKeysAskOncePerPress) {
    const struct {
        std::uint8_t key;
        bool KeyboardPoll::*request;
    } rows[] = {{scan::kUp, &KeyboardPoll::up},
                {scan::kDown, &KeyboardPoll::down},
                {scan::kPageUp, &KeyboardPoll::pageUp},
                {scan::kPageDown, &KeyboardPoll::pageDown}};
    StartKeyboardEntry(kUser);
    for (const auto& row : rows) {
        KeyboardPoll expected{.read = true};
        expected.*row.request = true;
        const std::uint32_t redraws = UnitRedrawCount();
        EXPECT_EQ(Hold({row.key}), expected);
        EXPECT_EQ(UnitRedrawCount(), redraws + 1);
        EXPECT_FALSE(PollKeyboard(text).*row.request) << "held";
        EXPECT_EQ(UnitRedrawCount(), redraws + 1) << "held";
    }
}

TEST_F(KeyboardTest, EnterEndsEntryEvenWithModifiersAndWithoutText) {
    timesGone = 0;
    for (const std::uint8_t enter : {scan::kEnter, scan::kKeypadEnter}) {
        keyboard.keys.fill(0);
        StartKeyboardEntry(kUser);
        EXPECT_NE(keyboard.hook, nullptr);
        EXPECT_TRUE(Hold({0x2A, enter}).enter);
        EXPECT_EQ(KeyboardEntryOn, 0);
        EXPECT_EQ(keyboard.hook, nullptr);
        EXPECT_FALSE(HasKeyboard(kUser));
    }
    EXPECT_EQ(timesGone, 2);
    const int reads = keyboard.reads;
    PollKeyboard(text);
    EXPECT_EQ(keyboard.reads, reads) << "the keyboard is let go";
}

TEST_F(KeyboardTest, AKeyHeldAcrossEntryPeriodsIsNotTypedAgain) {
    for (int period = 0; period < 2; ++period) {
        StartKeyboardEntry(kUser);
        Hold({scan::kA});
        StopKeyboardEntry();
    }
    EXPECT_EQ(text, "A");
    keyboard.Down(scan::kB);  // while nobody reads the keyboard
    StartKeyboardEntry(kUser);
    PollKeyboard(text);
    Hold({});
    EXPECT_EQ(text, "A");
    Type(scan::kB);
    EXPECT_EQ(text, "AB");
}

TEST_F(KeyboardTest, AnotherUnitTakesTheKeyboardAndTheFirstIsTold) {
    timesGone = 0;
    StartKeyboardEntry(kUser);
    StartKeyboardEntry(kUser);
    EXPECT_EQ(timesGone, 0);
    StartKeyboardEntry(kOtherUser);
    EXPECT_EQ(timesGone, 1);
    EXPECT_FALSE(HasKeyboard(kUser));
    EXPECT_TRUE(HasKeyboard(kOtherUser));
    EXPECT_NE(keyboard.hook, nullptr);
    StopKeyboardEntry();
    StopKeyboardEntry();
    EXPECT_EQ(timesGone, 1);
    EXPECT_FALSE(HasKeyboard(kOtherUser));
}

// The simulator's ticks go on, or start anew with another flight, without a poll.
TEST_F(KeyboardTest, WithoutPollsTheHookLetsKeysPass) {
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    keyboard.virtualKeys = {'S'};
    const struct {
        double tick;
        std::int32_t swallowed;
    } rows[] = {{1000 + kKeyboardIdleTicks, 1}, {1001 + kKeyboardIdleTicks, 0}, {3, 0}};
    for (const auto& row : rows) {
        simulator.variables[1] = 1000;
        StartKeyboardEntry(kUser);
        simulator.variables[1] = row.tick;
        EXPECT_EQ(keyboard.hook(0), row.swallowed) << row.tick;
        TakeKeyboardFromUnseenUnit();
        EXPECT_EQ(HasKeyboard(kUser), row.swallowed == 1) << row.tick;
        StopKeyboardEntry();
    }
    ImportTable.panel.services = nullptr;
}

TEST_F(KeyboardTest, WithoutADeviceEntryIsOnWithAMessage) {
    services.read_keyboard = nullptr;
    StartKeyboardEntry(kUser);
    EXPECT_EQ(KeyboardEntryOn, 1);
    EXPECT_EQ(KeyboardMessage, "CreateDevice failed");
    EXPECT_FALSE(Hold({scan::kA}).read);
    StopKeyboardEntry();
    EXPECT_EQ(KeyboardMessage, "");
}

TEST_F(KeyboardTest, AKeyboardTakenAwayTypesNothingUntilItIsBack) {
    StartKeyboardEntry(kUser);
    for (const std::int32_t failure : {kKeyboardInputLost, -1}) {
        keyboard.result = failure;
        EXPECT_EQ(Hold({scan::kA}), KeyboardPoll{});
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
    const struct {
        std::int32_t code;
        std::set<std::int32_t> keys;
        std::int32_t swallowed;
    } rows[] = {{0, {'S'}, 1},       {0, {'G'}, 1},       {3, {'A', 'Z'}, 1},
                {-1, {'S'}, 0},      {0, {'A'}, 0},       {0, {'S', 0x10}, 0},
                {0, {'G', 0x11}, 0}, {0, {'Z', 0x12}, 0}, {0, {0x10, 'A'}, 0}};
    for (const auto& row : rows) {
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
