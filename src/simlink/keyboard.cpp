#include "simlink/keyboard.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/module_state.h"
#include "base/redraw.h"
#include "base/sim_folder.h"
#include "platform/services.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {

std::int32_t KeyboardEntryOn = 0;
std::string KeyboardMessage;

namespace {

constexpr const char* kModuleFile = "\\GAUGES\\avq1.gau";
constexpr std::uint8_t kDown = 0x80;

// A keyboard taken away by another window is asked back this often in one poll, then at the next.
constexpr int kAcquireAttempts = 8;

// What is typed does not need a limit of its own, only an end.
constexpr std::size_t kTextLimit = 255;

struct TypedKey {
    std::uint8_t scanCode;
    char character;
};

// In the order in which keys pressed together are typed.
constexpr std::array<TypedKey, 36> kTypedKeys = {{
    {0x1E, 'A'}, {0x30, 'B'}, {0x2E, 'C'}, {0x20, 'D'}, {0x12, 'E'}, {0x21, 'F'},
    {0x22, 'G'}, {0x23, 'H'}, {0x17, 'I'}, {0x24, 'J'}, {0x25, 'K'}, {0x26, 'L'},
    {0x32, 'M'}, {0x31, 'N'}, {0x18, 'O'}, {0x19, 'P'}, {0x10, 'Q'}, {0x13, 'R'},
    {0x1F, 'S'}, {0x14, 'T'}, {0x16, 'U'}, {0x2F, 'V'}, {0x11, 'W'}, {0x2D, 'X'},
    {0x15, 'Y'}, {0x2C, 'Z'}, {0x0B, '0'}, {0x02, '1'}, {0x03, '2'}, {0x04, '3'},
    {0x05, '4'}, {0x06, '5'}, {0x07, '6'}, {0x08, '7'}, {0x09, '8'}, {0x0A, '9'},
}};

// Left and right Shift, left and right Ctrl, left Alt. The right Alt key types on some layouts.
constexpr std::array<std::uint8_t, 5> kModifiers = {0x2A, 0x36, 0x1D, 0x9D, 0x38};
constexpr std::uint8_t kBackspace = 0x0E;
constexpr std::uint8_t kEnter = 0x1C;
constexpr std::uint8_t kKeypadEnter = 0x9C;

struct RequestKey {
    std::uint8_t scanCode;
    bool KeyboardPoll::*request;
};
constexpr std::array<RequestKey, 4> kRequestKeys = {{
    {0xC8, &KeyboardPoll::up},
    {0xD0, &KeyboardPoll::down},
    {0xC9, &KeyboardPoll::pageUp},
    {0xD1, &KeyboardPoll::pageDown},
}};

// Virtual keys of the hook: what the simulator would act on although it is being typed.
constexpr std::array<std::int32_t, 3> kHookModifiers = {0x10, 0x11, 0x12};
constexpr std::array<std::int32_t, 3> kSwallowedKeys = {'S', 'G', 'Z'};

using KeyStates = std::array<std::uint8_t, 256>;

struct KeyboardState {
    KeyStates previousKeys{};  // of the last poll; kept between entry periods
    const KeyboardUser* user = nullptr;
    double lastUseTick = 0;
    bool deviceOpen = false;
    bool hookInstalled = false;
};

KeyboardState keyboard;
const StateReset resetKeyboard([] {
    KeyboardEntryOn = 0;
    KeyboardMessage.clear();
    keyboard = KeyboardState{};
});

// A tick behind the last use belongs to another flight.
bool IsIdle() {
    return std::abs(ReadTick() - keyboard.lastUseTick) > kKeyboardIdleTicks;
}

// The simulator's thread goes on when no gauge is drawn at all: then the keys are its own again.
std::int32_t OnKeyMessage(std::int32_t code) {
    const auto down = [](std::int32_t key) { return KeyState(key) != 0; };
    return code >= 0 && std::ranges::none_of(kHookModifiers, down) &&
                   std::ranges::any_of(kSwallowedKeys, down) && !IsIdle()
               ? 1
               : 0;
}

bool ReadKeys(KeyStates& keys) {
    if (ReadKeyboardState(keys.data()) == 0) {
        return true;
    }
    for (int i = 0; i < kAcquireAttempts && AcquireKeyboard() == kKeyboardInputLost; ++i) {
    }
    return false;
}

// Keys down before the keyboard was given are not typed.
void RememberHeldKeys() {
    KeyStates keys{};
    if (keyboard.deviceOpen && ReadKeys(keys)) {
        for (std::size_t i = 0; i < keys.size(); ++i) {
            keyboard.previousKeys[i] |= keys[i];
        }
    }
}

// Whether anything was typed or erased.
bool TypeCharacters(const KeyStates& keys, std::string& text) {
    bool typed = false;
    for (const TypedKey& key : kTypedKeys) {
        const bool pressed =
            (keys[key.scanCode] & kDown) != 0 && (keyboard.previousKeys[key.scanCode] & kDown) == 0;
        if (pressed && text.size() < kTextLimit) {
            text += key.character;
            typed = true;
        }
    }
    if ((keys[kBackspace] & kDown) != 0 && !text.empty()) {
        text.pop_back();
        typed = true;
    }
    return typed;
}

}  // namespace

std::int32_t SetKeyboardHook(bool on) {
    if (on != keyboard.hookInstalled) {
        const std::int32_t installed = SetThreadKeyboardHook(on ? OnKeyMessage : nullptr);
        keyboard.hookInstalled = on && installed == 1;
    }
    return keyboard.hookInstalled ? 1 : 0;
}

void StartKeyboardEntry(const KeyboardUser& user) {
    if (keyboard.user != &user) {
        StopKeyboardEntry();
    }
    KeyboardEntryOn = 1;
    keyboard.user = &user;
    keyboard.lastUseTick = ReadTick();
    SetKeyboardHook(true);
    if (!keyboard.deviceOpen) {
        const char* const failure = OpenKeyboard(SimPath(kModuleFile).c_str());
        keyboard.deviceOpen = failure == nullptr;
        KeyboardMessage = failure != nullptr ? failure : "";
        RememberHeldKeys();
    }
    RequestUnitRedraw();
}

void StopKeyboardEntry() {
    KeyboardEntryOn = 0;
    SetKeyboardHook(false);
    if (keyboard.deviceOpen) {
        CloseKeyboard();
        keyboard.deviceOpen = false;
    }
    KeyboardMessage.clear();
    if (const KeyboardUser* const user = std::exchange(keyboard.user, nullptr)) {
        user->onKeyboardGone();
        RequestUnitRedraw();
    }
}

bool HasKeyboard(const KeyboardUser& user) {
    return keyboard.user == &user;
}

void TakeKeyboardFromUnseenUnit() {
    if (keyboard.user != nullptr && (avionicsPower == 0 || IsIdle())) {
        StopKeyboardEntry();
    }
}

KeyboardPoll PollKeyboard(std::string& text) {
    KeyboardPoll poll;
    keyboard.lastUseTick = ReadTick();
    KeyStates keys{};
    if (KeyboardEntryOn == 0 || !keyboard.deviceOpen || !ReadKeys(keys)) {
        return poll;
    }
    const auto down = [&keys](std::uint8_t scanCode) { return (keys[scanCode] & kDown) != 0; };
    if (std::ranges::none_of(kModifiers, down)) {
        poll.read = true;
        bool found = TypeCharacters(keys, text);
        for (const RequestKey& key : kRequestKeys) {
            poll.*key.request =
                down(key.scanCode) && (keyboard.previousKeys[key.scanCode] & kDown) == 0;
            found |= poll.*key.request;
        }
        if (found) {
            RequestUnitRedraw();
        }
    }
    if (down(kEnter) || down(kKeypadEnter)) {
        poll.enter = true;
        StopKeyboardEntry();
    }
    keyboard.previousKeys = keys;
    return poll;
}

}  // namespace avq1
