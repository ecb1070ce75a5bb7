// The keys of the EHSI's control panel. Steps through a list wrap at its ends.
#include "displays/ehsi/ehsi.h"
#include "displays/range_steps.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr double kTrafficRanges[] = {2, 5, 10, 20, 40};

constexpr std::int32_t kFineHeightLimitFt = 500;  // single feet up to here, then tens
constexpr std::int32_t kHighestHeightFt = 2490;
constexpr std::int32_t kLowestHeightFt = 2;

// The next mode of the group first..last; from a mode outside it, the first.
std::int32_t NextMode(std::int32_t mode, std::int32_t first, std::int32_t last) {
    return mode < first || mode >= last ? first : mode + 1;
}

BearingSource NextSource(BearingSource source) {
    return source == BearingSource::Adf
               ? BearingSource::Off
               : static_cast<BearingSource>(static_cast<std::int32_t>(source) + 1);
}

void TurnCourse(const KeyClick& click) {
    SendKeyEvent(click.InRightHalf() ? KeyEvent::CourseUp : KeyEvent::CourseDown, 0);
}

void TurnHeading(const KeyClick& click) {
    SendKeyEvent(click.InRightHalf() ? KeyEvent::HeadingBugUp : KeyEvent::HeadingBugDown, 0);
}

void TurnDecisionHeight(const KeyClick& click) {
    std::int32_t& height = ehsi.decisionHeight;
    if (click.InRightHalf()) {  // this knob turns down to the right
        if (height >= kLowestHeightFt) {
            height -= height <= kFineHeightLimitFt ? 1 : 10;
        }
    } else if (height < kHighestHeightFt) {
        height += height < kFineHeightLimitFt ? 1 : 10;
    }
}

void PressFullCompass(const KeyClick& /*click*/) {
    ehsi.ehsiMode = NextMode(ehsi.ehsiMode, 1, 3);
}

void PressArcCompass(const KeyClick& /*click*/) {
    ehsi.ehsiMode = NextMode(ehsi.ehsiMode, 4, 7);
}

void PressNavSource(const KeyClick& /*click*/) {
    ehsi.navSource = ehsi.navSource == NavSource::NavReceiver ? NavSource::FlightManagement
                                                              : NavSource::NavReceiver;
}

void PressTraffic(const KeyClick& /*click*/) {
    if (ehsi.ehsiMode == kEhsiTrafficMode) {
        ehsi.ehsiMode = ehsi.ehsiSavedMode;
    } else {
        ehsi.ehsiSavedMode = ehsi.ehsiMode;
        ehsi.ehsiMode = kEhsiTrafficMode;
    }
}

void PressRangeUp(const KeyClick& /*click*/) {
    if (ehsi.ehsiMode == kEhsiTrafficMode) {
        ehsi.ehsiMode8Range = StepUp(kTrafficRanges, ehsi.ehsiMode8Range);
    } else {
        ehsi.ehsiRange = StepUp(kMapRanges, ehsi.ehsiRange);
    }
}

void PressRangeDown(const KeyClick& /*click*/) {
    if (ehsi.ehsiMode == kEhsiTrafficMode) {
        ehsi.ehsiMode8Range = StepDown(kTrafficRanges, ehsi.ehsiMode8Range);
    } else {
        ehsi.ehsiRange = StepDown(kMapRanges, ehsi.ehsiRange);
    }
}

void PressPointer1(const KeyClick& /*click*/) {
    ehsi.bearingPointer1 = NextSource(ehsi.bearingPointer1);
}

void PressPointer2(const KeyClick& /*click*/) {
    ehsi.bearingPointer2 = NextSource(ehsi.bearingPointer2);
}

void PressLnav(const KeyClick& /*click*/) {
    ToggleLnav();
}

void PressBoundaries(const KeyClick& /*click*/) {
    ehsi.mapOverlayOn = 1 - ehsi.mapOverlayOn;
}

constexpr bool kRepeats = true;

}  // namespace

const std::array<KeyArea, kEhsiPanelKeyCount> kEhsiPanelKeys = {{
    {"CRS", {54, 100, 55, 55}, TurnCourse, 0, KeyArt::Knob, kRepeats},
    {"DH", {60, 18, 36, 40}, TurnDecisionHeight, 0, KeyArt::Knob, kRepeats},
    {"HSI", {135, 46, 45, 30}, PressFullCompass},
    {"ARC", {198, 46, 45, 30}, PressArcCompass},
    {"NAV", {260, 46, 45, 30}, PressNavSource},
    {"RNG+", {324, 46, 45, 30}, PressRangeUp},
    {"BRG1", {135, 83, 45, 30}, PressPointer1},
    {"BRG2", {198, 83, 45, 30}, PressPointer2},
    {"TCAS", {260, 83, 45, 30}, PressTraffic},
    {"RNG-", {324, 83, 45, 30}, PressRangeDown},
    {"LNAV", {198, 120, 45, 30}, PressLnav},
    {"BDRY", {260, 120, 45, 30}, PressBoundaries},
    {"HDG", {384, 106, 54, 54}, TurnHeading, 0, KeyArt::Knob, kRepeats},
}};

}  // namespace avq1
