// ECON PATH DES: end of descent, descent speeds, what comes next, and how the path is followed.
#include <cmath>
#include <limits>

#include "cdu/formats.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "cdu_smiths/smiths_vertical.h"
#include "geometry/geometry.h"
#include "guidance/vnav.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr auto kPhase = static_cast<std::int32_t>(VerticalPhase::Descent);
constexpr double kFeetPerNm = 6076.115;
constexpr double kFeetPerMinutePerKnot = kFeetPerNm / 60;
constexpr double kMovingKt = 50;
constexpr double kAnywhere = std::numeric_limits<double>::infinity();
constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();

// What has to be met on the way down: none of the climb's.
std::int32_t Restriction() {
    const PredictedPoint& top = SmithsPredictions().topOfDescent;
    return SmithsNextRestriction(top.known ? top.distanceNm : 0, kAnywhere);
}

bool Descending() {
    return vnav.Phase() == VerticalPhase::Descent && vnav.cruiseAltitude > 0;
}

// ---- what comes next: the top of descent, below it the next restriction ----
void ShowNextLabel(const FieldRow&, UnitText& text) {
    if (SmithsPredictions().topOfDescent.known) {
        text.Set("T O   T / D");
    } else {
        PutSmithsPassageLabel(Restriction(), text);
    }
}

void ShowNext(const FieldRow&, UnitText& text) {
    const PredictedPoint& top = SmithsPredictions().topOfDescent;
    const std::int32_t restriction = Restriction();
    text = SmithsPassageText(
        top.known
            ? top
            : SmithsPredictionOf(restriction != kNoWaypoint ? restriction : SmithsFlownIndex()));
}

void ShowEndOfDescent(const FieldRow&, UnitText& text) {
    const PredictedPoint& end = SmithsPredictions().destination;
    const bool planned = end.known && SmithsPredictions().cruiseAltitudeFt > 0;
    text = planned ? NumberText(end.altitudeFt, 5) : SpacedDashes(5);
}

void ShowRestriction(const FieldRow&, UnitText& text) {
    const std::int32_t index = Restriction();
    text.Set("- - - - - -/- - - - -");
    if (index != kNoWaypoint) {
        const PlanWaypoint& entry = SmithsPlan().entries[index];
        text.Put("%6.6s/%5.0f", entry.ident.c_str(), entry.altitude);
    }
}

// ---- following the path ----
void ShowDeviation(const FieldRow&, UnitText& text) {
    const double feet = ShownAircraft().altitudeFt - vnav.pathAltitude;
    text = SpacedDashes(5);
    if (Descending() && std::isfinite(feet)) {
        text.Put("%5.0f %s", std::abs(feet), feet < 0 ? "LO" : "HI");
    }
}

double PathAngleDeg(double downFt, double alongFt) {
    return std::atan2(downFt, alongFt) * kRadToDeg;
}

// Down to the target from where the aircraft is.
double BearingDownDeg() {
    const double downFt = ShownAircraft().altitudeFt - vnav.targetAltitude;
    return Descending() && vnav.distanceToTarget > 0
               ? PathAngleDeg(downFt, vnav.distanceToTarget * kFeetPerNm)
               : kUnknown;
}

double FlownAngleDeg() {
    const double speedFpm = ShownAircraft().groundSpeedKt * kFeetPerMinutePerKnot;
    return ShownAircraft().groundSpeedKt > kMovingKt
               ? PathAngleDeg(0.0 - ShownAircraft().verticalSpeedFpm, speedFpm)
               : kUnknown;
}

void ShowAngles(const FieldRow&, UnitText& text) {
    text.Put("%s   %s     %s", NumberText(FlownAngleDeg(), 3, 1).c_str(),
             NumberText(BearingDownDeg(), 3, 1).c_str(),
             NumberText(Descending() ? std::abs(vnav.requiredFpm) : kUnknown, 4).c_str());
}

void ShowSpeedMode(const FieldRow&, UnitText& text) {
    text.Set(SmithsSpeedModeChosen(VerticalPhase::Descent, SpeedMode::Fastest) ? "ECON >"
                                                                               : "SPEED >");
}

EntryResult PressSpeedMode(const FieldRow&) {
    return PressSmithsSpeedMode(VerticalPhase::Descent, SpeedMode::Fastest);
}

constexpr FieldRow kFields[] = {
    SmithsTitle("ECON  PATH  DES"),
    SmithsField(kL1, {.label = "E / D    A L T", .show = ShowEndOfDescent}),
    SmithsShownLabel(kR1, ShowNextLabel),
    SmithsField(kR1, {.show = ShowNext}),
    SmithsSpeedRow(kPhase),
    SmithsField(kR2, {.label = "W P T / A L T", .show = ShowRestriction}),
    SmithsSpeedLimitRow(kPhase),
    SmithsField(kR3, {.label = "V E R T  D E V", .show = ShowDeviation}),
    SmithsField(kL4, {.label = "F P A  V / B        V / S", .show = ShowAngles}),
    SmithsShownPrompt(kR4, {.show = ShowSpeedMode, .press = PressSpeedMode}),
    SmithsPrompt(kR5, "FORECAST >", kSmithsForecasts),
    SmithsSeparatorRow(),
    SmithsPrompt(kR6, "RTA >", kSmithsProgress, {.press = PressSmithsRta}),
};

void ComposeDescent(Screen& screen) {
    PutSmithsRouteTag(screen);
    PutSmithsCounter(screen, {});
}

}  // namespace

constinit const PageRow kSmithsDescentPage{
    .page = kSmithsDescent, .fields = kFields, .compose = ComposeDescent};

}  // namespace avq1
