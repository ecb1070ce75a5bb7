// cdu_smiths/smiths_vertical.h - fields that several of the performance pages show and take: the
// cruise altitude, the speeds of a phase, and when a point is passed.
//
// A field of one phase has it as its item. What is shown is what the pilot has chosen: the change
// that waits for EXEC, else what is in force.
#pragma once

#include <cstdint>
#include <string_view>

#include "cdu/fields.h"
#include "cdu_smiths/smiths_pages.h"
#include "flightplan/performance_change.h"
#include "guidance/predictions.h"
#include "guidance/vnav/profile.h"

namespace avq1 {

inline constexpr double kSmithsHighestFt = 60000;

// A typed altitude, "5000", or a flight level below 1000, "350": whole feet above 0, at most
// kSmithsHighestFt. False, with `feet` unchanged, for others.
bool ReadSmithsAltitude(std::string_view text, double& feet);

// "FL350" above the transition altitude, else feet; dashes for 0.
UnitText SmithsAltitudeText(double feet);

void ShowSmithsCruiseAltitude(const FieldRow& field, UnitText& text);
EntryResult EnterSmithsCruiseAltitude(const FieldRow& field, std::string_view entry);

// A typed wind, "270/45": three digits, a slash, whole knots. False for other forms; the bounds are
// the predictions'.
bool ReadSmithsWind(std::string_view text, double& directionTrue, double& speedKt);
UnitText SmithsWindText(const CruiseWind& wind);  // "270 /  45"; dashes when none is entered

// "280 / 0.74": the phase's airspeed and Mach. Typed "280", "280/" or a Mach number, ".74".
void ShowSmithsSpeed(const FieldRow& field, UnitText& text);
EntryResult EnterSmithsSpeed(const FieldRow& field, std::string_view entry);

// "250 / 10000": the phase's speed restriction and the altitude below which it holds.
void ShowSmithsSpeedLimit(const FieldRow& field, UnitText& text);
EntryResult EnterSmithsSpeedLimit(const FieldRow& field, std::string_view entry);
EntryResult EraseSmithsSpeedLimit(const FieldRow& field);

// The rows of a phase's page, L2 and L3.
constexpr FieldRow SmithsSpeedRow(std::int32_t phase) {
    return SmithsField(kL2, {.label = "T G T    S P D",
                             .show = ShowSmithsSpeed,
                             .enter = EnterSmithsSpeed,
                             .item = phase});
}
constexpr FieldRow SmithsSpeedLimitRow(std::int32_t phase) {
    return SmithsField(kL3, {.label = "S P D / R E S T",
                             .show = ShowSmithsSpeedLimit,
                             .enter = EnterSmithsSpeedLimit,
                             .erase = EraseSmithsSpeedLimit,
                             .item = phase});
}

// Chooses a speed mode for the phase, or the economy speed again when it is chosen already.
EntryResult PressSmithsSpeedMode(VerticalPhase phase, SpeedMode mode);
bool SmithsSpeedModeChosen(VerticalPhase phase, SpeedMode mode);

// "1407.3Z/123 NM": when and how far away the point is passed, as the pages show it; local time
// with "L" where the setting asks for it. `format` takes the time, the letter and the distance.
UnitText SmithsPassageText(const PredictedPoint& point);
UnitText SmithsClockText(const PredictedPoint& point);   // "1407.3Z"
UnitText SmithsMinuteText(const PredictedPoint& point);  // "1407Z"

// In the plan shown, from the entry flown to on, the first with an altitude to keep that is passed
// `fromNm` to `toNm` ahead; kNoWaypoint without one.
std::int32_t SmithsNextRestriction(double fromNm, double toNm);

// "A T   FIXAA" for a restriction, else "T O   FIXAA" for the entry flown to.
void PutSmithsPassageLabel(std::int32_t restriction, UnitText& text);
const PredictedPoint& SmithsPredictionOf(std::int32_t index);

// Opens RTA PROGRESS.
EntryResult PressSmithsRta(const FieldRow& field);

}  // namespace avq1
