// Typing into the GNS-style unit on the computer keyboard: letters and digits are its character
// keys, Backspace its CLR, the arrow and page keys its PREV and NEXT, Enter its ENTER, which gives
// the keyboard back.
#include <string>

#include "cdu_gns/gns.h"
#include "cdu_gns/gns_pages.h"
#include "guidance/guidance_state.h"
#include "simlink/keyboard.h"

namespace avq1 {

const KeyboardUser kGnsKeyboard{[] { gns.editing = 0; }};

void ToggleGnsKeyboard() {
    if (HasKeyboard(kGnsKeyboard)) {
        StopKeyboardEntry();
        return;
    }
    gns.editing = 1;
    StartKeyboardEntry(kGnsKeyboard);
    guidance.blinkCounter = kRestartBlink;
    gns.notice = KeyboardMessage;
}

void PollGnsKeyboard() {
    if (!HasKeyboard(kGnsKeyboard)) {
        return;
    }
    // One character to begin with shows whether Backspace has taken it.
    std::string text = ".";
    const KeyboardPoll poll = PollKeyboard(text);
    if (poll.read && text.empty()) {
        gns.notice.clear();
        PressGnsClear();
    }
    for (std::size_t i = 1; poll.read && i < text.size(); ++i) {
        gns.notice.clear();
        TypeGnsCharacter(std::string_view(text).substr(i, 1));
    }
    const std::int32_t step = (poll.down || poll.pageDown) - (poll.up || poll.pageUp);
    if (step != 0) {
        gns.notice.clear();
        PressGnsPaging(step);
    }
    if (poll.enter) {
        gns.enteredOnLm = false;
        gns.input.enterPressed = true;
    }
}

}  // namespace avq1
