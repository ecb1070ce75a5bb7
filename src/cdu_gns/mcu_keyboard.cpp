// Typing into the compact unit: the computer keyboard's letters go to the text of the page shown,
// its arrow and page keys move the page's list, its Enter ends the entry.
#include "cdu_gns/mcu.h"
#include "cdu_gns/mcu_pages.h"
#include "simlink/keyboard.h"

namespace avq1 {

const KeyboardUser kMcuKeyboard{[] { mcu.editing = 0; }};

bool McuPageTakesText() {
    return mcu.page == McuPage::Apt || mcu.page == McuPage::Dirto || mcu.page == McuPage::Legs;
}

std::string& McuTypedText() {
    return mcu.page == McuPage::Legs ? mcu.secondEntryText : mcu.entryText;
}

void PollMcuKeyboard() {
    if (!HasKeyboard(kMcuKeyboard)) {
        return;
    }
    std::string text = McuTypedText();
    const KeyboardPoll poll = PollKeyboard(text);
    if (poll.read && McuPageTakesText() && text != McuTypedText()) {
        McuTypedText() = text;
    }
    mcu.navigation.up |= poll.up;
    mcu.navigation.down |= poll.down;
    mcu.navigation.pageUp |= poll.pageUp;
    mcu.navigation.pageDown |= poll.pageDown;
    if (poll.enter) {
        mcu.entryComplete = true;
    }
}

}  // namespace avq1
