// Typing into the compact unit: the computer keyboard's letters go to the text of the page shown,
// its arrow and page keys move the page's list, its Enter ends the entry.
#include "cdu_gns/mcu.h"
#include "cdu_gns/mcu_pages.h"
#include "simlink/keyboard.h"

namespace avq1 {

const KeyboardUser kMcuKeyboard{[] { mcu.editing = 0; }};

bool McuPageTakesText() {
    return mcu.page == kMcuApt || mcu.page == kMcuDirto || mcu.page == kMcuLegs;
}

std::string& McuTypedText() {
    return mcu.page == kMcuLegs ? mcu.secondEntryText : mcu.entryText;
}

void PollMcuKeyboard() {
    if (!HasKeyboard(kMcuKeyboard)) {
        return;
    }
    std::string text = McuTypedText();
    const KeyboardPoll poll = PollKeyboard(text);
    if (poll.read && McuPageTakesText()) {
        McuTypedText() = text;
    }
    mcu.input.upAsked |= poll.up;
    mcu.input.downAsked |= poll.down;
    mcu.input.pageUpAsked |= poll.pageUp;
    mcu.input.pageDownAsked |= poll.pageDown;
    mcu.input.entryComplete |= poll.enter;
}

}  // namespace avq1
