#include "cdu_gns/mcu_pages.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

void PutAltitudeStep(McuScreen& screen) {
    screen.Put(mcu.altStep == 1 ? McuStyle::Highlight : McuStyle::Data, 0, kMcuRowY[5], "< 1000");
    screen.Put(mcu.altStep == 2 ? McuStyle::Highlight : McuStyle::Data, 84, kMcuRowY[5], "500 >");
}

}  // namespace

void StepMcuAltitude() {
    switch (mcu.arrowKey) {
        case McuArrow::Left:
            mcu.altStep = 1;
            return;
        case McuArrow::Right:
            mcu.altStep = 2;
            return;
        case McuArrow::None:
            return;
        default:
            break;
    }
    if (mcu.altStep == 0) {
        return;
    }
    const std::int32_t step = mcu.altStep == 1 ? 1000 : 500;
    const std::int32_t highest = mcu.altStep == 1 ? 98000 : 97500;
    if (mcu.arrowKey == McuArrow::Up && mcu.newAltitude <= highest) {
        mcu.newAltitude += step;
    } else if (mcu.arrowKey == McuArrow::Down && mcu.newAltitude >= step) {
        mcu.newAltitude -= step;
    }
}

void HandleAltFlKeys() {
    StepMcuAltitude();
    if (mcu.enterPressed) {
        SendKeyEvent(KeyEvent::AltitudeSet, mcu.newAltitude);
        mcu.page = McuPage::To;
    }
}

void ComposeAltFl(McuScreen& screen) {
    screen.Put(McuStyle::Title, 0, kMcuRowY[0], "ALT/FL:");
    screen.Put(McuStyle::Data, 0, kMcuRowY[2], "AP ALT:   %05.0f", aircraft.apAltitudeTargetFt);
    screen.Put(McuStyle::Active, 0, kMcuRowY[3], "NEW ALT:  %05.0f",
               static_cast<double>(mcu.newAltitude));
    PutAltitudeStep(screen);
}

}  // namespace avq1
