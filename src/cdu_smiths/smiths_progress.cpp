// PROGRESS: how the flight goes on; winds and deviations; RTA PROGRESS, a time wanted at a
// waypoint.
//
// It is about the route that is flown, whatever modification of it waits.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "base/module_state.h"
#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_vertical.h"
#include "guidance/guidance_state.h"
#include "guidance/predictions.h"
#include "guidance/vnav.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr std::int32_t kPages = 3;
constexpr std::int16_t kTailLabelX = 90;  // of what stands behind an identifier
constexpr std::int16_t kDistanceRightX = 138;
constexpr std::int16_t kTimeX = 164;
constexpr double kThousand = 1000;
constexpr double kMinutesPerDay = 1440;
constexpr double kMinutesPerHour = 60;
constexpr double kIsaSeaLevelC = 15;
constexpr double kIsaPerThousandFt = 1.98;

// The time wanted at a waypoint ahead, as minutes of the day as the pages show times.
struct RequiredArrival {
    std::string ident;  // empty = none
    bool timed = false;
    double minutes = 0;
};

RequiredArrival required;
const StateReset requiredReset([] { required = RequiredArrival{}; });

// ---- rows ----
template <std::int32_t n>
constexpr FieldRow On(FieldRow field) {
    field.visible = OnSmithsSubPage<SmithsCounter::Progress, n>;
    return field;
}

// A value in a column of page 1, beside the line key of a row; it takes no key.
constexpr FieldRow InColumn(std::int32_t line, std::int16_t x, bool endsThere, FieldRow::Show show,
                            std::int32_t item = 0) {
    FieldRow field = SmithsField(line, {.show = show, .item = item});
    field.line = 0;
    field.style = endsThere ? kSmithsDataRight : kSmithsData;
    field.valueAt.x = x;
    return On<1>(field);
}

// ---- page 1: waypoints ----
enum WaypointRow : std::int32_t { kTo, kNext, kDestination };

// The entry itself, or the first behind it that is no gap.
std::int32_t PositionedFrom(std::int32_t index) {
    while (activePlan.Holds(index) && !HasPosition(activePlan.entries[index])) {
        ++index;
    }
    return activePlan.Holds(index) ? index : kNoWaypoint;
}

std::int32_t IndexOf(std::int32_t row) {
    if (!HasActiveWaypoint()) {
        return kNoWaypoint;
    }
    if (row == kDestination) {
        return PositionedFrom(activePlan.lastIndex);
    }
    const std::int32_t to = PositionedFrom(planBook.activeIndex);
    return row == kTo ? to : PositionedFrom(to + 1);
}

const PredictedPoint& PointOf(std::int32_t row) {
    static const PredictedPoint unknown;
    const std::int32_t index = IndexOf(row);
    return index == kNoWaypoint ? unknown
                                : ActivePredictions().entries[static_cast<std::size_t>(index)];
}

bool ShowsLocalTime() {
    return settings.DispETALocalTime == 1;
}

double ClockMinutes(const PredictedPoint& point) {
    return ShowsLocalTime() ? point.clockMinutes : point.zuluMinutes;
}

const char* ClockLetter() {
    return ShowsLocalTime() ? "L" : "Z";
}

UnitText FuelText(double pounds) {
    UnitText text("- - . -");
    if (std::isfinite(pounds)) {
        text.Put("%3.1f", InWeightUnit(pounds) / kThousand);
    }
    return text;
}

void ShowFromIdent(const FieldRow&, UnitText& text) {
    text.Set(guidance.passedIdent.empty() ? "- - - - -" : guidance.passedIdent.substr(0, 6));
}

void ShowFromAltitude(const FieldRow&, UnitText& text) {
    if (!guidance.passedIdent.empty()) {
        text = AltitudeText(guidance.passedAltitude, pilotEntries.transitionAltitudeFt);
    }
}

void ShowFromTime(const FieldRow&, UnitText& text) {
    if (!guidance.passedIdent.empty()) {
        std::string time = guidance.passedTimeZulu;
        std::ranges::replace(time, ' ', '0');
        text.Set(time);
    }
}

// The record is not in pounds where weights are shown in kilograms: see GuidanceState.
void ShowFromFuel(const FieldRow&, UnitText& text) {
    if (!guidance.passedIdent.empty()) {
        text = FuelText(InWeightUnit(guidance.passedFuel));
    }
}

void ShowIdent(const FieldRow& field, UnitText& text) {
    const std::int32_t index = IndexOf(field.item);
    text.Put("%-5.6s",
             index == kNoWaypoint ? "- - - - -" : activePlan.entries[index].ident.c_str());
}

void ShowDistance(const FieldRow& field, UnitText& text) {
    const PredictedPoint& point = PointOf(field.item);
    text.Set("- - -");
    if (point.known) {
        text.Put("%03.0f", point.distanceNm);
    }
}

void ShowEta(const FieldRow& field, UnitText& text) {
    text = SmithsMinuteText(PointOf(field.item));
}

void ShowFuelAt(const FieldRow& field, UnitText& text) {
    const PredictedPoint& point = PointOf(field.item);
    text = FuelText(point.known ? point.fuelLb : kNotEntered);
}

// The top of climb, and behind it the top of descent.
const PredictedPoint& NextTop() {
    const Predictions& predictions = ActivePredictions();
    return predictions.topOfClimb.known ? predictions.topOfClimb : predictions.topOfDescent;
}

void ShowTopLabel(const FieldRow&, UnitText& text) {
    text.Set(ActivePredictions().topOfClimb.known ? "T O   T / C" : "T O   T / D");
}

void ShowTop(const FieldRow&, UnitText& text) {
    text = SmithsPassageText(NextTop());
}

void ShowFuelOnBoard(const FieldRow&, UnitText& text) {
    text = FuelText(FuelOnBoard());
}

// ---- page 2: winds and deviations ----
void ShowWind(const FieldRow&, UnitText& text) {
    text.Set("- - - / - - -");
    if (std::isfinite(ShownAircraft().windSpeedKt) &&
        std::isfinite(ShownDerived().windDirectionMag)) {
        text.Put("%s/%3.0f", CourseText(ShownDerived().windDirectionMag).c_str(),
                 ShownAircraft().windSpeedKt);
    }
}

void ShowHeadwindLabel(const FieldRow&, UnitText& text) {
    text.Set(ShownDerived().headwindKt < 0 ? "T A I L W I N D" : "H E A D W I N D");
}

void ShowHeadwind(const FieldRow&, UnitText& text) {
    const double wind = std::abs(ShownDerived().headwindKt);
    text.Set("- - KT");
    if (std::isfinite(wind)) {
        text.Put("%2d KT", static_cast<int>(std::floor(wind + 0.5)));
    }
}

void ShowCrosswind(const FieldRow&, UnitText& text) {
    const double wind = ShownDerived().crosswindKt;
    text.Set("- - - KT");
    if (std::isfinite(wind)) {
        text.Put("%s %3d KT", wind < 0 ? "L" : "R",
                 static_cast<int>(std::floor(std::abs(wind) + 0.5)));
    }
}

void ShowAirTemperature(const FieldRow&, UnitText& text) {
    const double airC = ShownAircraft().value800;
    const double isaC = kIsaSeaLevelC - kIsaPerThousandFt * ShownAircraft().altitudeFt / kThousand;
    text.Set("- - / - -");
    if (std::isfinite(airC - isaC)) {
        text.Put("%.0f C / %+.0f C", std::round(airC) + 0.0,
                 std::round(airC - isaC) + 0.0);  // no -0
    }
}

void ShowCrossTrack(const FieldRow&, UnitText& text) {
    text.Set("- . - - NM");
    if (HasActiveWaypoint() && guidance.crossTrackNm != kNoCrossTrack) {
        text.Put("%s %3.2f NM", guidance.crossTrackSide == Side::Left ? "L" : "R",
                 std::abs(guidance.crossTrackNm));
    }
}

void ShowVerticalDeviation(const FieldRow&, UnitText& text) {
    const double high = ShownAircraft().altitudeFt - vnav.pathAltitude;
    text.Set("- - - -");
    if (vnav.descentActive != 0 && std::isfinite(high)) {
        text.Put("%5.0f %s", std::abs(high), high < 0 ? "LO" : "HI");
    }
}

void ShowTrack(const FieldRow&, UnitText& text) {
    text = CourseText(TrueToMagnetic(ShownAircraft().headingMag - ShownDerived().driftDeg, 0));
}

void ShowTrueAirspeed(const FieldRow&, UnitText& text) {
    text.Put("%s KT", NumberText(ShownDerived().trueAirspeedEstimateKt, 3).c_str());
}

// ---- page 3: the time wanted ----
const PredictedPoint& RequiredPoint() {
    static const PredictedPoint unknown;
    for (std::int32_t i = planBook.activeIndex; activePlan.Holds(i); ++i) {
        if (activePlan.entries[i].ident == required.ident) {
            return ActivePredictions().entries[static_cast<std::size_t>(i)];
        }
    }
    return unknown;
}

EntryResult EnterRequiredPoint(const FieldRow&, std::string_view entry) {
    for (std::int32_t i = planBook.activeIndex; activePlan.Holds(i); ++i) {
        if (activePlan.entries[i].ident == entry && HasPosition(activePlan.entries[i])) {
            required = RequiredArrival{};
            required.ident = entry;
            return EntryResult::Accepted;
        }
    }
    return EntryResult::InvalidEntry;
}

// "1407", "1407.5", both with or without the letter that times are shown with.
bool ReadClock(std::string_view text, double& minutes) {
    if (text.ends_with(ClockLetter())) {
        text.remove_suffix(1);
    }
    const bool tenths = text.size() == 6 && text[4] == '.';
    if (text.size() != 4 && !tenths) {
        return false;
    }
    std::int32_t digits = 0;
    const auto read = std::from_chars(text.data(), text.data() + 4, digits);
    if (read.ptr != text.data() + 4 || text[0] == '-' ||
        (tenths && (text[5] < '0' || text[5] > '9'))) {
        return false;
    }
    const std::int32_t hours = digits / 100;
    const std::int32_t whole = digits % 100;
    if (hours >= 24 || whole >= 60) {
        return false;
    }
    minutes = hours * kMinutesPerHour + whole + (tenths ? (text[5] - '0') / 10.0 : 0);
    return true;
}

EntryResult EnterRequiredTime(const FieldRow&, std::string_view entry) {
    if (required.ident.empty() || !ReadClock(entry, required.minutes)) {
        return EntryResult::InvalidEntry;
    }
    required.timed = true;
    return EntryResult::Accepted;
}

EntryResult ForgetRequiredPoint(const FieldRow&) {
    if (required.ident.empty()) {
        return EntryResult::InvalidDelete;
    }
    required = RequiredArrival{};
    return EntryResult::Accepted;
}

EntryResult ForgetRequiredTime(const FieldRow&) {
    if (!required.timed) {
        return EntryResult::InvalidDelete;
    }
    required.timed = false;
    return EntryResult::Accepted;
}

void ShowRequiredPoint(const FieldRow&, UnitText& text) {
    text.Set(required.ident.empty() ? std::string_view("- - - - -")
                                    : std::string_view(required.ident).substr(0, 7));
}

void ShowRequiredTime(const FieldRow&, UnitText& text) {
    text.Set("- - - - . -");
    if (required.timed) {
        text.Put("%s%s", ClockTenthsText(required.minutes / kMinutesPerHour).c_str(),
                 ClockLetter());
    }
}

void ShowRequiredDistance(const FieldRow&, UnitText& text) {
    text.Set("- - - NM");
    if (RequiredPoint().known) {
        text.Put("%.0f NM", RequiredPoint().distanceNm);
    }
}

void ShowRequiredEta(const FieldRow&, UnitText& text) {
    text = SmithsClockText(RequiredPoint());
}

void ShowRequiredAltitude(const FieldRow&, UnitText& text) {
    text.Set("- - - - -");
    if (RequiredPoint().known) {
        text = AltitudeText(RequiredPoint().altitudeFt, pilotEntries.transitionAltitudeFt);
    }
}

void ShowRequiredFuel(const FieldRow&, UnitText& text) {
    text = FuelText(RequiredPoint().known ? RequiredPoint().fuelLb : kNotEntered);
}

// Minutes by which the waypoint is passed after the time wanted; NaN without either.
double LateMinutes() {
    const double minutes = ShownMinutesTo(RequiredPoint());
    if (!required.timed || !std::isfinite(minutes)) {
        return kNotEntered;
    }
    const double late = ClockMinutes(RequiredPoint()) - required.minutes;
    return PositiveModulo(late + kMinutesPerDay / 2, kMinutesPerDay) - kMinutesPerDay / 2;
}

void ShowTimeError(const FieldRow&, UnitText& text) {
    const double late = LateMinutes();
    text.Set("- - : - -");
    if (std::isfinite(late)) {
        const bool onTime = std::abs(late) * 60 <= pilotEntries.timeToleranceS;
        const UnitText amount = HoursMinutesText(0, std::abs(late) * 60);  // minutes and seconds
        text.Set("ON TIME");
        if (!onTime) {
            text.Put("%s %s", late < 0 ? "EARLY" : "LATE", amount.c_str());
        }
    }
}

// The mean ground speed from here on that arrives in time.
void ShowRequiredSpeed(const FieldRow&, UnitText& text) {
    const double minutes = RequiredPoint().minutes - LateMinutes();
    text.Set("- - - KT");
    if (std::isfinite(minutes) && minutes > 0) {
        const double speedKt = RequiredPoint().distanceNm / minutes * kMinutesPerHour;
        if (speedKt < kThousand) {
            text.Put("%3.0f KT", speedKt);
        }
    }
}

constexpr FieldRow NavStatusPrompt() {
    return SmithsPrompt(kR6, "NAV  STATUS >", kSmithsNavStatus,
                        {.press = AtSmithsSubPage<SmithsCounter::NavStatus, 1>});
}

constexpr FieldRow kFields[] = {
    // page 1
    On<1>(SmithsNote("F R O M          A L T              A T A     F U E L", kSmithsLabelX,
                     kSmithsLabelY[0])),
    On<1>(SmithsField(kL1, {.show = ShowFromIdent})),
    InColumn(kL1, kDistanceRightX, true, ShowFromAltitude),
    InColumn(kL1, kTimeX, false, ShowFromTime),
    InColumn(kL1, kSmithsRightX, true, ShowFromFuel),
    On<1>(SmithsNote("T O", kSmithsLabelX, kSmithsLabelY[1])),
    On<1>(SmithsNote("D T G              E T A     F U E L", kTailLabelX, kSmithsLabelY[1])),
    On<1>(SmithsNote("N E X T", kSmithsLabelX, kSmithsLabelY[2])),
    On<1>(SmithsNote("D E S T", kSmithsLabelX, kSmithsLabelY[3])),
    InColumn(kL2, 0, false, ShowIdent, kTo),
    InColumn(kL2, kDistanceRightX, true, ShowDistance, kTo),
    InColumn(kL2, kTimeX, false, ShowEta, kTo),
    InColumn(kL2, kSmithsRightX, true, ShowFuelAt, kTo),
    InColumn(kL3, 0, false, ShowIdent, kNext),
    InColumn(kL3, kDistanceRightX, true, ShowDistance, kNext),
    InColumn(kL3, kTimeX, false, ShowEta, kNext),
    InColumn(kL3, kSmithsRightX, true, ShowFuelAt, kNext),
    InColumn(kL4, 0, false, ShowIdent, kDestination),
    InColumn(kL4, kDistanceRightX, true, ShowDistance, kDestination),
    InColumn(kL4, kTimeX, false, ShowEta, kDestination),
    InColumn(kL4, kSmithsRightX, true, ShowFuelAt, kDestination),
    On<1>(SmithsShownLabel(kL5, ShowTopLabel)),
    On<1>(SmithsField(kL5, {.show = ShowTop})),
    On<1>(SmithsField(kR5, {.label = "F U E L    Q T Y", .show = ShowFuelOnBoard})),
    On<1>(SmithsField(kL6, {.label = "W I N D         I R S  (   )", .show = ShowWind})),
    On<1>(NavStatusPrompt()),
    // page 2
    On<2>(SmithsShownLabel(kL1, ShowHeadwindLabel)),
    On<2>(SmithsField(kL1, {.show = ShowHeadwind})),
    On<2>(SmithsField(kR1, {.label = "C R O S S W I N D", .show = ShowCrosswind})),
    On<2>(SmithsField(kL2, {.label = "W I N D                         S A T / I S A    D E V",
                            .show = ShowWind})),
    On<2>(SmithsField(kR2, {.show = ShowAirTemperature})),
    On<2>(SmithsField(kL3, {.label = "X T K   E R R O R", .show = ShowCrossTrack})),
    On<2>(SmithsField(kR3, {.label = "V E R T  D E V", .show = ShowVerticalDeviation})),
    On<2>(SmithsField(
        kL4, {.label = "G P S - L    T R K                             T A S", .show = ShowTrack})),
    On<2>(SmithsField(kR4, {.show = ShowTrueAirspeed})),
    On<2>(NavStatusPrompt()),
    // page 3
    On<3>(SmithsField(kL1, {.label = "R T A    W P T",
                            .show = ShowRequiredPoint,
                            .enter = EnterRequiredPoint,
                            .erase = ForgetRequiredPoint})),
    On<3>(SmithsField(kR1, {.label = "R T A",
                            .show = ShowRequiredTime,
                            .enter = EnterRequiredTime,
                            .erase = ForgetRequiredTime})),
    On<3>(SmithsField(kL2, {.label = "D T G", .show = ShowRequiredDistance})),
    On<3>(SmithsField(kR2, {.label = "E T A", .show = ShowRequiredEta})),
    On<3>(SmithsField(kL3, {.label = "A L T", .show = ShowRequiredAltitude})),
    On<3>(SmithsField(kR3, {.label = "F U E L", .show = ShowRequiredFuel})),
    On<3>(SmithsField(kL4, {.label = "T I M E    E R R O R", .show = ShowTimeError})),
    On<3>(SmithsField(kR4, {.label = "R E Q    G / S", .show = ShowRequiredSpeed})),
    On<3>(SmithsPrompt(kL6, "< LIMITS", kSmithsPerfInit,
                       {.press = AtSmithsSubPage<SmithsCounter::PerfInit, 2>})),
    On<3>(NavStatusPrompt()),
    On<2>(SmithsSeparatorRow()),
    On<3>(SmithsSeparatorRow()),
};

SubPage& CounterShown() {
    return smiths.Counter(SmithsCounter::Progress).SetCount(kPages);
}

void HandleProgress(const UnitInput& input) {
    if (input.openedPage == kSmithsProgress) {
        CounterShown().n = 1;
    }
}

void ComposeProgress(Screen& screen) {
    const SubPage& shown = CounterShown();
    screen.Put(kSmithsData, kSmithsTitleX, 0, "%s",
               shown.n == kPages ? "RTA  PROGRESS" : "PROGRESS");
    PutSmithsCounter(screen, shown);
}

}  // namespace

constinit const PageRow kSmithsProgressPage{.page = kSmithsProgress,
                                            .fields = kFields,
                                            .handle = HandleProgress,
                                            .compose = ComposeProgress};

}  // namespace avq1
