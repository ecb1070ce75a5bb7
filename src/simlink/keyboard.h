// simlink/keyboard.h - typing on the computer keyboard while the simulator runs.
//
// While entry is on, each poll reads the whole keyboard by scan code and turns what was pressed
// since the last poll into text and requests; a hook on the simulator's thread keeps it from
// acting on the letters it uses itself. A device that cannot be opened leaves entry on and says
// why in KeyboardMessage; polls then do nothing.
//
// One unit at a time has the keyboard. It gives the keyboard back itself, or loses it: when the
// host takes the unit away, when another unit takes it, without avionics power, and when the unit
// has not polled for kKeyboardIdleTicks. Whichever way, its user is told. Panel thread only.
#pragma once

#include <cstdint>
#include <string>

namespace avq1 {

// A unit that takes typing; known by its address, so it must outlive the module's use of it.
struct KeyboardUser {
    void (*onKeyboardGone)();  // the unit leaves its entry mode; asks for no redraw
};

// Simulator ticks (18 a second) without a poll after which nobody sees what is typed.
inline constexpr double kKeyboardIdleTicks = 36;

extern std::int32_t KeyboardEntryOn;
extern std::string KeyboardMessage;  // the step of opening the keyboard that failed, else empty

// Gives the keyboard to a unit. Keys that are down by now are not typed before they are pressed
// anew.
void StartKeyboardEntry(const KeyboardUser& user);
void StopKeyboardEntry();  // whoever has the keyboard; nothing when nobody has

bool HasKeyboard(const KeyboardUser& user);

// Takes the keyboard from a unit nobody can see: no power, or not drawn any more. Once a frame.
void TakeKeyboardFromUnseenUnit();

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
// away at every poll while it is held. What was found asks the units for a redraw.
KeyboardPoll PollKeyboard(std::string& text);

}  // namespace avq1
