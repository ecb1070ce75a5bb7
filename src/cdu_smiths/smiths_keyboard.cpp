// Typing into the Smiths-style unit on the computer keyboard: letters and digits go to the
// scratchpad, Backspace is CLR, the arrow and page keys page, Enter gives the keyboard back.
#include <string>

#include "cdu_smiths/smiths.h"
#include "cdu_smiths/smiths_pages.h"
#include "guidance/guidance_state.h"
#include "simlink/keyboard.h"

namespace avq1 {

const KeyboardUser kSmithsKeyboard{[] { smiths.editing = 0; }};

void ToggleSmithsKeyboard() {
    if (HasKeyboard(kSmithsKeyboard)) {
        StopKeyboardEntry();
        return;
    }
    smiths.editing = 1;
    StartKeyboardEntry(kSmithsKeyboard);
    guidance.blinkCounter = kRestartBlink;
    if (!KeyboardMessage.empty()) {
        SaySmiths(KeyboardMessage);
    }
}

void PollSmithsKeyboard() {
    if (!HasKeyboard(kSmithsKeyboard)) {
        return;
    }
    // One character to begin with shows whether Backspace has taken it.
    std::string text = ".";
    const KeyboardPoll poll = PollKeyboard(text);
    if (poll.read && text.empty()) {
        PressSmithsClear();
    }
    for (std::size_t i = 1; poll.read && i < text.size(); ++i) {
        TypeSmithsCharacter(text[i]);
    }
    const std::int32_t step = (poll.down || poll.pageDown) - (poll.up || poll.pageUp);
    if (step != 0) {
        PressSmithsPaging(step);
    }
}

}  // namespace avq1
