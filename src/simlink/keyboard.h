// simlink/keyboard.h - typing on the computer keyboard while the simulator runs.
//
// While entry is on, each poll reads the whole keyboard by scan code and turns what was pressed
// since the last poll into text and requests; a hook on the simulator's thread keeps it from
// acting on the letters it uses itself. A device that cannot be opened leaves entry on and says
// why in KeyboardMessage; polls then do nothing. Panel thread only.
#pragma once

#include <cstdint>
#include <string>

namespace avq1 {

extern std::int32_t KeyboardEntryOn;
extern std::string KeyboardMessage;  // the step of opening the keyboard that failed, else empty

void StartKeyboardEntry();
void StopKeyboardEntry();

// Installs or removes the hook; asking twice does nothing. 1 while it is installed.
std::int32_t SetKeyboardHook(bool on);

// What one poll found beside the text it changed; all newly pressed, except enter: down.
struct KeyboardPoll {
    bool read = false;  // the keyboard was read and no modifier was down: the text is current
    bool up = false;
    bool down = false;
    bool pageUp = false;
    bool pageDown = false;
    bool enter = false;  // entry has been stopped

    bool operator==(const KeyboardPoll&) const = default;
};

// Letters and digits typed since the last poll are added to `text`; Backspace takes one character
// away at every poll while it is held.
KeyboardPoll PollKeyboard(std::string& text);

}  // namespace avq1
