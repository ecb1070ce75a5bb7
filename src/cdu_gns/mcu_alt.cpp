// ALT/FL: the autopilot's altitude, set by the arrows in thousands or five hundreds of feet.
#include "cdu_gns/mcu_pages.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

void HandleAltFl(const UnitInput& input) {
    StepMcuAltitude(input.arrowKey);
}

void ShowAutopilotAltitude(const FieldRow&, UnitText& text) {
    text.Put("AP ALT:   %05.0f", aircraft.apAltitudeTargetFt);
}

void ShowNewAltitude(const FieldRow&, UnitText& text) {
    text.Put("NEW ALT:  %05.0f", static_cast<double>(mcu.newAltitude));
}

EntryResult SendNewAltitude(const FieldRow&) {
    SendKeyEvent(KeyEvent::AltitudeSet, mcu.newAltitude);
    return EntryResult::Accepted;
}

void PutSteps(Screen& screen) {
    screen.Put(mcu.altStep == 1 ? kMcuHighlight : kMcuData, 0, kMcuRowY[5], "< 1000");
    screen.Put(mcu.altStep == 2 ? kMcuHighlight : kMcuData, 84, kMcuRowY[5], "500 >");
}

constexpr FieldRow kFields[] = {
    {.label = "ALT/FL:", .labelStyle = kMcuTitle},
    {.show = ShowAutopilotAltitude, .style = kMcuData, .valueAt = {0, kMcuRowY[2]}},
    {.line = kEnterLine,
     .show = ShowNewAltitude,
     .press = SendNewAltitude,
     .opens = kMcuTo,
     .style = kMcuActive,
     .valueAt = {0, kMcuRowY[3]}},
};

}  // namespace

void StepMcuAltitude(UnitArrow arrow) {
    if (arrow == UnitArrow::Left || arrow == UnitArrow::Right) {
        mcu.altStep = arrow == UnitArrow::Left ? 1 : 2;
        return;
    }
    if (mcu.altStep == 0) {
        return;
    }
    const std::int32_t step = mcu.altStep == 1 ? 1000 : 500;
    const std::int32_t highest = mcu.altStep == 1 ? 98000 : 97500;
    if (arrow == UnitArrow::Up && mcu.newAltitude <= highest) {
        mcu.newAltitude += step;
    } else if (arrow == UnitArrow::Down && mcu.newAltitude >= step) {
        mcu.newAltitude -= step;
    }
}

constinit const PageRow kMcuAltFlPage{
    .page = kMcuAltFl, .fields = kFields, .handle = HandleAltFl, .compose = PutSteps};

}  // namespace avq1
