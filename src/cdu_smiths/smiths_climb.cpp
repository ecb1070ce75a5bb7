// ECON CLB: cruise altitude, climb speeds, the next restriction and the top of climb.
#include <limits>

#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "cdu_smiths/smiths_vertical.h"

namespace avq1 {
namespace {

constexpr auto kPhase = static_cast<std::int32_t>(VerticalPhase::Climb);

// What has to be met on the way up.
std::int32_t Restriction() {
    const PredictedPoint& top = SmithsPredictions().topOfClimb;
    return top.known ? SmithsNextRestriction(0, top.distanceNm) : kNoWaypoint;
}

const PredictedPoint& NextPoint() {
    const std::int32_t restriction = Restriction();
    return SmithsPredictionOf(restriction != kNoWaypoint ? restriction : SmithsFlownIndex());
}

void ShowNextLabel(const FieldRow&, UnitText& text) {
    PutSmithsPassageLabel(Restriction(), text);
}

void ShowNext(const FieldRow&, UnitText& text) {
    text = SmithsPassageText(NextPoint());
}

void ShowTopOfClimb(const FieldRow&, UnitText& text) {
    const PredictedPoint& top = SmithsPredictions().topOfClimb;
    text.Put("%s / ---", SmithsClockText(top).c_str());
    if (top.known) {
        text.Put("%s / %.1f", SmithsClockText(top).c_str(), top.distanceNm);
    }
}

template <SpeedMode mode>
EntryResult PressMode(const FieldRow&) {
    return PressSmithsSpeedMode(VerticalPhase::Climb, mode);
}

template <SpeedMode mode>
void ShowMode(const FieldRow& field, UnitText& text) {
    constexpr const char* kNames[] = {"< MAX   RATE", "< MAX   ANGLE"};
    text.Set(SmithsSpeedModeChosen(VerticalPhase::Climb, mode) ? "< ECON" : kNames[field.item]);
}

constexpr FieldRow kFields[] = {
    SmithsTitle("ECON  CLB"),
    SmithsField(kL1, {.label = "C R Z    A L T",
                      .show = ShowSmithsCruiseAltitude,
                      .enter = EnterSmithsCruiseAltitude}),
    SmithsShownLabel(kR1, ShowNextLabel),
    SmithsField(kR1, {.show = ShowNext}),
    SmithsSpeedRow(kPhase),
    SmithsField(kR2, {.label = "T O   T / C", .show = ShowTopOfClimb}),
    SmithsSpeedLimitRow(kPhase),
    SmithsShownPrompt(
        kL5,
        {.show = ShowMode<SpeedMode::MaxRate>, .press = PressMode<SpeedMode::MaxRate>, .item = 0}),
    SmithsSeparatorRow(),
    SmithsShownPrompt(kL6, {.show = ShowMode<SpeedMode::MaxAngle>,
                            .press = PressMode<SpeedMode::MaxAngle>,
                            .item = 1}),
    SmithsPrompt(kR6, "RTA >", kSmithsProgress, {.press = PressSmithsRta}),
};

void ComposeClimb(Screen& screen) {
    PutSmithsRouteTag(screen);
    PutSmithsCounter(screen, {});
}

}  // namespace

constinit const PageRow kSmithsClimbPage{
    .page = kSmithsClimb, .fields = kFields, .compose = ComposeClimb};

}  // namespace avq1
