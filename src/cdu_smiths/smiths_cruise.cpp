// ECON CRZ: cruise altitude with the optimum and the highest one, cruise speed, wind, and the pause
// at the top of descent.
#include <cmath>

#include "cdu/formats.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "cdu_smiths/smiths_vertical.h"
#include "guidance/performance_entries.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr auto kPhase = static_cast<std::int32_t>(VerticalPhase::Cruise);
constexpr std::int16_t kOptimumX = 92;  // below its part of the label

void ShowOptimum(const FieldRow&, UnitText& text) {
    text.Put("%s / %s", SmithsAltitudeText(OptimumCruiseAltitude()).c_str(),
             SmithsAltitudeText(performance.maxCruiseAltitude).c_str());
}

void ShowWind(const FieldRow&, UnitText& text) {
    text.Set("- - - / - - -");
    if (std::isfinite(ShownAircraft().windSpeedKt) &&
        std::isfinite(ShownDerived().windDirectionMag)) {
        text.Put("%s / %3.0f", CourseText(ShownDerived().windDirectionMag).c_str(),
                 ShownAircraft().windSpeedKt);
    }
}

void ShowTurbulenceSpeed(const FieldRow&, UnitText& text) {
    text.Set("- - . -");
}

void ShowLongRange(const FieldRow&, UnitText& text) {
    text.Set(SmithsSpeedModeChosen(VerticalPhase::Cruise, SpeedMode::LongRange) ? "< ECON"
                                                                                : "< LRC");
}

EntryResult PressLongRange(const FieldRow&) {
    return PressSmithsSpeedMode(VerticalPhase::Cruise, SpeedMode::LongRange);
}

void ShowPause(const FieldRow&, UnitText& text) {
    text.Set(vnav.pauseArmed != 0 ? "Pause at TOD (ON) >" : "Pause at TOD (OFF)  >");
}

EntryResult TogglePause(const FieldRow&) {
    if (settings.ArmPauseAtTod == 0) {
        return EntryResult::InvalidEntry;
    }
    vnav.pauseArmed = vnav.pauseArmed == 0 ? 1 : 0;
    return EntryResult::None;
}

constexpr FieldRow OptimumField() {
    FieldRow field = SmithsField(kR1, {.show = ShowOptimum});
    field.style = kSmithsData;
    field.valueAt.x = kOptimumX;
    return field;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("ECON  CRZ"),
    SmithsField(kL1, {.label = "C R Z    A L T    O P T / M A X",
                      .show = ShowSmithsCruiseAltitude,
                      .enter = EnterSmithsCruiseAltitude}),
    OptimumField(),
    SmithsSpeedRow(kPhase),
    SmithsField(kL3, {.label = "T U R B    N 1                  A C T U A L    W I N D",
                      .show = ShowTurbulenceSpeed}),
    SmithsField(kR3, {.show = ShowWind}),
    SmithsSeparatorRow(),
    SmithsShownPrompt(kL6, {.show = ShowLongRange, .press = PressLongRange}),
    SmithsShownPrompt(kR6, {.show = ShowPause, .press = TogglePause}),
};

void ComposeCruise(Screen& screen) {
    PutSmithsRouteTag(screen);
    PutSmithsCounter(screen, {});
}

}  // namespace

constinit const PageRow kSmithsCruisePage{
    .page = kSmithsCruise, .fields = kFields, .compose = ComposeCruise};

}  // namespace avq1
