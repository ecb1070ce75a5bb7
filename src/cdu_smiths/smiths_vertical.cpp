#include "cdu_smiths/smiths_vertical.h"

#include <algorithm>
#include <cmath>

#include "base/text.h"
#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_route.h"
#include "guidance/performance_entries.h"
#include "settings/airspeed.h"
#include "settings/settings.h"

namespace avq1 {
namespace {

constexpr double kFeetPerLevel = 100;
constexpr double kLevelsBelow = 1000;  // a typed altitude below it is a flight level
constexpr double kMinutesPerHour = 60;
constexpr int kAltitudeDashes = 5;
constexpr std::int32_t kRtaProgress = 3;  // sub-page of PROGRESS

VerticalPhase PhaseOf(const FieldRow& field) {
    return static_cast<VerticalPhase>(field.item);
}

// Where a phase's airspeed is turned into Mach.
double MachAltitudeFt(VerticalPhase phase) {
    if (phase == VerticalPhase::Climb) {
        return kClimbSpeedAltitudeFt;
    }
    const bool inCruise = phase == VerticalPhase::Cruise && ChosenCruiseAltitude() > 0;
    return inCruise ? ChosenCruiseAltitude() : kCruiseSpeedAltitudeFt;
}

PerformanceChange SpeedChange(VerticalPhase phase, const SpeedChoice& choice) {
    PerformanceChange change;
    change.speeds[static_cast<std::size_t>(phase)] = choice;
    return change;
}

EntryResult ChangeLimit(VerticalPhase phase, const SpeedLimit& limit) {
    PerformanceChange change;
    change.limits[static_cast<std::size_t>(phase)] = limit;
    ChangePerformance(change);
    return EntryResult::Accepted;
}

}  // namespace

bool ReadSmithsAltitude(std::string_view text, double& feet) {
    double number = 0;
    if (!ReadSmithsNumber(text, number) || !(number > 0)) {
        return false;
    }
    number = std::trunc(number);
    number = number < kLevelsBelow ? number * kFeetPerLevel : number;
    if (number < 1 || number > kSmithsHighestFt) {
        return false;
    }
    feet = number;
    return true;
}

UnitText SmithsAltitudeText(double feet) {
    return feet > 0 ? AltitudeText(feet, pilotEntries.transitionAltitudeFt)
                    : SpacedDashes(kAltitudeDashes);
}

bool ReadSmithsWind(std::string_view text, double& directionTrue, double& speedKt) {
    constexpr std::size_t kSlash = 3;
    const auto isWhole = [](std::string_view part) {
        return std::ranges::all_of(part, [](char c) { return c >= '0' && c <= '9'; });
    };
    if (text.size() <= kSlash + 1 || text[kSlash] != '/' || !isWhole(text.substr(0, kSlash)) ||
        !isWhole(text.substr(kSlash + 1))) {
        return false;
    }
    directionTrue = ToNumber(text.substr(0, kSlash));
    speedKt = ToNumber(text.substr(kSlash + 1));
    return true;
}

UnitText SmithsWindText(const CruiseWind& wind) {
    UnitText text("- - - / - - -");
    if (wind.entered) {
        text.Put("%03.0f / %3.0f", wind.directionTrue, wind.speedKt);
    }
    return text;
}

void ShowSmithsCruiseAltitude(const FieldRow&, UnitText& text) {
    text = SmithsAltitudeText(ChosenCruiseAltitude());
}

EntryResult EnterSmithsCruiseAltitude(const FieldRow&, std::string_view entry) {
    double feet = 0;
    if (!ReadSmithsAltitude(entry, feet)) {
        return EntryResult::InvalidEntry;
    }
    PerformanceChange change;
    change.cruiseAltitudeFt = static_cast<std::int32_t>(feet);
    ChangePerformance(change);
    return EntryResult::Accepted;
}

void ShowSmithsSpeed(const FieldRow& field, UnitText& text) {
    const VerticalPhase phase = PhaseOf(field);
    const std::int32_t ias = ChosenSpeed(phase).ias;
    text.Set("- - - / - - -");
    if (ias > 0) {
        text.Put("%3d / %.2f", ias, IndicatedToMach(ias, MachAltitudeFt(phase)));
    }
}

EntryResult EnterSmithsSpeed(const FieldRow& field, std::string_view entry) {
    const VerticalPhase phase = PhaseOf(field);
    const std::size_t slash = entry.find('/');
    const bool isMach = slash == 0 || entry.starts_with('.');
    double speed = 0;
    if (slash != std::string_view::npos && slash != 0 && slash + 1 != entry.size()) {
        return EntryResult::InvalidEntry;
    }
    const std::string_view digits = slash == 0 ? entry.substr(1) : entry.substr(0, slash);
    if (!ReadSmithsNumber(digits, speed)) {
        return EntryResult::InvalidEntry;
    }
    const SpeedRange range = SpeedLimitsOf(performance, phase);
    const double ias = std::round(isMach ? MachToIndicated(speed, MachAltitudeFt(phase)) : speed);
    if (isMach ? !(speed < 1) : speed != std::trunc(speed)) {
        return EntryResult::InvalidEntry;
    }
    if (ias < range.leastIas || ias > range.greatestIas) {
        return EntryResult::InvalidEntry;
    }
    ChangePerformance(SpeedChange(phase, {SpeedMode::Selected, static_cast<std::int32_t>(ias)}));
    return EntryResult::Accepted;
}

void ShowSmithsSpeedLimit(const FieldRow& field, UnitText& text) {
    const SpeedLimit limit = ChosenSpeedLimit(PhaseOf(field));
    text.Set("- - - / - - - - -");
    if (limit.ias > 0 && limit.belowFt > 0) {
        text.Put("%3.0f / %-5.0f", limit.ias, limit.belowFt);
    }
}

EntryResult EnterSmithsSpeedLimit(const FieldRow& field, std::string_view entry) {
    constexpr double kLeastKt = 100;
    constexpr double kMostKt = 400;
    const std::size_t slash = entry.find('/');
    SpeedLimit limit;
    if (slash == std::string_view::npos || !ReadSmithsNumber(entry.substr(0, slash), limit.ias) ||
        !ReadSmithsAltitude(entry.substr(slash + 1), limit.belowFt) ||
        limit.ias != std::trunc(limit.ias) || limit.ias < kLeastKt || limit.ias > kMostKt) {
        return EntryResult::InvalidEntry;
    }
    return ChangeLimit(PhaseOf(field), limit);
}

EntryResult EraseSmithsSpeedLimit(const FieldRow& field) {
    const VerticalPhase phase = PhaseOf(field);
    return ChosenSpeedLimit(phase) == SpeedLimit{} ? EntryResult::InvalidDelete
                                                   : ChangeLimit(phase, {});
}

bool SmithsSpeedModeChosen(VerticalPhase phase, SpeedMode mode) {
    return ChosenSpeed(phase).mode == mode;
}

EntryResult PressSmithsSpeedMode(VerticalPhase phase, SpeedMode mode) {
    const SpeedMode wanted = SmithsSpeedModeChosen(phase, mode) ? SpeedMode::Economy : mode;
    ChangePerformance(SpeedChange(phase, SpeedOfMode(phase, wanted)));
    return EntryResult::None;
}

UnitText SmithsClockText(const PredictedPoint& point) {
    const bool local = settings.DispETALocalTime == 1;
    const double minutes = !std::isfinite(ShownMinutesTo(point)) ? kNotEntered
                           : local                               ? point.clockMinutes
                                                                 : point.zuluMinutes;
    UnitText text;
    text.Put("%s%c", ClockTenthsText(minutes / kMinutesPerHour).c_str(), local ? 'L' : 'Z');
    return text;
}

UnitText SmithsMinuteText(const PredictedPoint& point) {
    constexpr double kMinutesPerDay = 1440;
    const bool local = settings.DispETALocalTime == 1;
    UnitText text("- - - -");
    if (std::isfinite(ShownMinutesTo(point))) {
        const double minutes = std::floor((local ? point.clockMinutes : point.zuluMinutes) + 0.5);
        const WholeTime time = WholeMinutes(0, PositiveModulo(minutes, kMinutesPerDay));
        text.Put("%02.0f%02.0f%c", time.hours, time.minutes, local ? 'L' : 'Z');
    }
    return text;
}

UnitText SmithsPassageText(const PredictedPoint& point) {
    UnitText text;
    text.Put("%s/---- NM", SmithsClockText(point).c_str());
    if (point.known) {
        text.Put("%s/%.0f NM", SmithsClockText(point).c_str(), point.distanceNm);
    }
    return text;
}

const PredictedPoint& SmithsPredictionOf(std::int32_t index) {
    static const PredictedPoint unknown;
    return SmithsPlan().Holds(index) ? SmithsPredictions().entries[static_cast<std::size_t>(index)]
                                     : unknown;
}

std::int32_t SmithsNextRestriction(double fromNm, double toNm) {
    const FlightPlan& plan = SmithsPlan();
    for (std::int32_t i = SmithsFlownIndex(); i <= plan.lastIndex; ++i) {
        const PredictedPoint& point = SmithsPredictionOf(i);
        if (plan.entries[i].altitudeConstraint != kNoCrossing && point.known &&
            point.distanceNm >= fromNm && point.distanceNm <= toNm) {
            return i;
        }
    }
    return kNoWaypoint;
}

void PutSmithsPassageLabel(std::int32_t restriction, UnitText& text) {
    const FlightPlan& plan = SmithsPlan();
    const bool restricted = plan.Holds(restriction);
    const std::int32_t index = restricted ? restriction : SmithsFlownIndex();
    text.Put(restricted ? "A T  %6.6s" : "T O   %6.6s",
             plan.Holds(index) ? plan.entries[index].ident.c_str() : "------");
}

EntryResult PressSmithsRta(const FieldRow&) {
    smiths.Counter(SmithsCounter::Progress).n = kRtaProgress;
    return EntryResult::None;
}

}  // namespace avq1
