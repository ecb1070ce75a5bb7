// PERF INIT: weights, cruise and transition altitude, cost index and forecasts; behind it the
// limits the speeds are kept within.
#include <algorithm>
#include <array>
#include <cmath>

#include "base/text.h"
#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_reference.h"
#include "cdu_smiths/smiths_route.h"
#include "cdu_smiths/smiths_vertical.h"
#include "flightplan/flight_plan.h"
#include "guidance/performance_entries.h"
#include "guidance/predictions.h"
#include "settings/aircraft_performance.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kThousand = 1000;
constexpr std::int32_t kGreatestCostIndex = 200;
constexpr double kSeaLevelC = 15;
constexpr double kLapseCPerThousandFt = 1.98;
constexpr double kSlowestLimitKt = 60;
constexpr double kFastestLimitKt = 500;
constexpr std::int32_t kShortestTolerance = 5;
constexpr std::int32_t kLongestTolerance = 30;

bool OnFirst(const FieldRow& field) {
    return OnSmithsSubPage<SmithsCounter::PerfInit, 1>(field);
}
bool OnLimits(const FieldRow& field) {
    return OnSmithsSubPage<SmithsCounter::PerfInit, 2>(field);
}

// ---- weights ----
void ShowGrossWeight(const FieldRow&, UnitText& text) {
    text.Put("%s / - - . -", SmithsThousandsText(GrossWeightLb(), 3, "- - - . -").c_str());
}

void ShowFuel(const FieldRow&, UnitText& text) {
    text = SmithsThousandsText(FuelOnBoard(), 2, "- - . -");
}

void ShowZeroFuel(const FieldRow&, UnitText& text) {
    text = SmithsThousandsText(ZeroFuelLb(), 3, "- - - . -");
}

EntryResult EnterZeroFuel(const FieldRow&, std::string_view entry) {
    double thousands = 0;
    double pounds = 0;
    if (!ReadSmithsThousands(entry, pounds) || !ReadSmithsNumber(entry, thousands) ||
        thousands >= kThousand) {
        return EntryResult::InvalidEntry;
    }
    pilotEntries.zeroFuelLb = pounds;
    return EntryResult::Accepted;
}

EntryResult EraseZeroFuel(const FieldRow&) {
    if (!std::isfinite(pilotEntries.zeroFuelLb)) {
        return EntryResult::InvalidDelete;
    }
    pilotEntries.zeroFuelLb = kNotEntered;
    return EntryResult::Accepted;
}

void ShowReserves(const FieldRow&, UnitText& text) {
    text = SmithsThousandsText(
        planBook.reserveFuelInUse > 0 ? planBook.reserveFuelInUse : kNotEntered, 2, "- - . -");
}

EntryResult EnterReserves(const FieldRow&, std::string_view entry) {
    return ReadSmithsThousands(entry, planBook.reserveFuelInUse) ? EntryResult::Accepted
                                                                 : EntryResult::InvalidEntry;
}

// ---- cost index ----
void ShowCostIndex(const FieldRow&, UnitText& text) {
    text = SpacedDashes(3);
    if (ChosenCostIndex() >= 0) {
        text.Put("%3d", ChosenCostIndex());
    }
}

EntryResult EnterCostIndex(const FieldRow&, std::string_view entry) {
    const bool digits = std::ranges::all_of(entry, [](char c) { return c >= '0' && c <= '9'; });
    const std::int32_t index = ToInteger(entry);
    if (!digits || index > kGreatestCostIndex || (index == 0 && entry != "0")) {
        return EntryResult::InvalidEntry;
    }
    PerformanceChange change;
    change.costIndex = index;
    ChangePerformance(change);
    return EntryResult::Accepted;
}

// ---- forecasts ----
void ShowCruiseWind(const FieldRow&, UnitText& text) {
    text = SmithsWindText(EnteredCruiseWind());
}

EntryResult EnterWind(const FieldRow&, std::string_view entry) {
    double directionTrue = 0;
    double speedKt = 0;
    return ReadSmithsWind(entry, directionTrue, speedKt) && EnterCruiseWind(directionTrue, speedKt)
               ? EntryResult::Accepted
               : EntryResult::InvalidEntry;
}

EntryResult EraseWind(const FieldRow&) {
    if (!EnteredCruiseWind().entered) {
        return EntryResult::InvalidDelete;
    }
    ClearCruiseWind();
    return EntryResult::Accepted;
}

double StandardAtTopOfClimbC() {
    return kSeaLevelC - kLapseCPerThousandFt * ChosenCruiseAltitude() / kThousand;
}

double IsaDeviationC() {
    return std::isfinite(pilotEntries.topOfClimbC)
               ? pilotEntries.topOfClimbC - StandardAtTopOfClimbC()
               : pilotEntries.isaDeviationC;
}

double TopOfClimbC() {
    return std::isfinite(pilotEntries.topOfClimbC)
               ? pilotEntries.topOfClimbC
               : StandardAtTopOfClimbC() + pilotEntries.isaDeviationC;
}

void ShowTemperature(double celsius, UnitText& text) {
    constexpr double kWidestC = 9999;  // any number is taken; the field has room for this
    text = SpacedDashes(3);
    if (std::abs(celsius) <= kWidestC) {
        text.Put("%-3.0f", std::round(celsius) + 0.0);
    }
}

// One of the two is typed, the other follows from it.
EntryResult EnterTemperature(double PilotEntries::*typed, double PilotEntries::*other,
                             std::string_view entry) {
    double celsius = 0;
    if (!ReadSmithsNumber(entry, celsius)) {
        return EntryResult::InvalidEntry;
    }
    pilotEntries.*typed = celsius;
    pilotEntries.*other = kNotEntered;
    return EntryResult::Accepted;
}

EntryResult EraseTemperatures(const FieldRow&) {
    if (!std::isfinite(IsaDeviationC())) {
        return EntryResult::InvalidDelete;
    }
    pilotEntries.isaDeviationC = pilotEntries.topOfClimbC = kNotEntered;
    return EntryResult::Accepted;
}

void ShowTransitionAltitude(const FieldRow&, UnitText& text) {
    text.Put("%.0f", pilotEntries.transitionAltitudeFt);
}

EntryResult EnterTransitionAltitude(const FieldRow&, std::string_view entry) {
    double feet = 0;
    if (!ReadSmithsNumber(entry, feet) || !(std::trunc(feet) > 0) || feet > kSmithsHighestFt) {
        return EntryResult::InvalidEntry;
    }
    pilotEntries.transitionAltitudeFt = std::trunc(feet);
    return EntryResult::Accepted;
}

// ---- limits ----
// The two limits of a phase, by the field's item: the least one, or with kMost the greatest.
constexpr std::int32_t kMost = 10;

struct LimitRow {
    double AircraftPerformance::*ias[2];   // least, greatest
    double AircraftPerformance::*mach[2];  // as derived
};

constexpr LimitRow kLimits[kFlightPhases] = {
    {{&AircraftPerformance::climbIasMin, &AircraftPerformance::climbIasMax},
     {&AircraftPerformance::climbMachMin, &AircraftPerformance::climbMachMax}},
    {{&AircraftPerformance::cruiseIasMin, &AircraftPerformance::cruiseIasMax},
     {&AircraftPerformance::cruiseMachMin, &AircraftPerformance::cruiseMachMax}},
    {{&AircraftPerformance::descentIasMin, &AircraftPerformance::descentIasMax},
     {&AircraftPerformance::descentMachMin, &AircraftPerformance::descentMachMax}},
};

void ShowLimit(const FieldRow& field, UnitText& text) {
    const LimitRow& row = kLimits[field.item % kMost];
    const std::size_t side = field.item / kMost;
    text.Put(side == 0 ? "%3.0f /.%03.0f" : "%3.0f / .%03.0f", performance.*row.ias[side],
             performance.*row.mach[side] * kThousand);
}

// What the phase flies at, or will after EXEC, follows its limits: a speed chosen by them anew, any
// other one kept within.
void KeepWithinLimits(VerticalPhase phase) {
    const SpeedRange range = SpeedLimitsOf(performance, phase);
    const SpeedChoice chosen = ChosenSpeed(phase);
    SpeedChoice kept = SpeedOfMode(phase, chosen.mode);
    kept.ias = std::clamp(kept.ias, static_cast<std::int32_t>(range.leastIas),
                          static_cast<std::int32_t>(range.greatestIas));
    if (chosen.ias > 0 && kept != chosen) {
        PerformanceChange change;
        change.speeds[static_cast<std::size_t>(phase)] = kept;
        ChangePerformance(change);
    }
}

// The limits hold at once. The least one stays below the greatest.
EntryResult EnterLimit(const FieldRow& field, std::string_view entry) {
    const LimitRow& row = kLimits[field.item % kMost];
    const std::size_t side = field.item / kMost;
    double ias = 0;
    if (!ReadSmithsNumber(entry, ias) || ias != std::trunc(ias) || ias < kSlowestLimitKt ||
        ias > kFastestLimitKt) {
        return EntryResult::InvalidEntry;
    }
    const double other = performance.*row.ias[1 - side];
    if (side == 0 ? ias >= other : ias <= other) {
        return EntryResult::InvalidEntry;
    }
    performance.*row.ias[side] = ias;
    DeriveMachLimits(performance);
    KeepWithinLimits(static_cast<VerticalPhase>(field.item % kMost));
    return EntryResult::Accepted;
}

void ShowTolerance(const FieldRow&, UnitText& text) {
    const std::int32_t seconds = pilotEntries.timeToleranceS;
    text.Put("%d %d    S E C    A T    R T A    W P T", seconds / 10, seconds % 10);
}

EntryResult EnterTolerance(const FieldRow&, std::string_view entry) {
    double seconds = 0;
    if (!ReadSmithsNumber(entry, seconds) || seconds != std::trunc(seconds) ||
        seconds < kShortestTolerance || seconds > kLongestTolerance) {
        return EntryResult::InvalidEntry;
    }
    pilotEntries.timeToleranceS = static_cast<std::int32_t>(seconds);
    return EntryResult::Accepted;
}

// ---- the two pages ----
constexpr FieldRow First(std::int32_t line, FieldRow field) {
    field.visible = OnFirst;
    return SmithsField(line, field);
}

constexpr FieldRow Limits(std::int32_t line, FieldRow field) {
    field.visible = OnLimits;
    return SmithsField(line, field);
}

constexpr FieldRow Limit(std::int32_t line, VerticalPhase phase, const char* label = "") {
    const std::int32_t side = IsOnTheRight(line) ? kMost : 0;
    return Limits(line, {.label = label,
                         .show = ShowLimit,
                         .enter = EnterLimit,
                         .item = static_cast<std::int32_t>(phase) + side});
}

constexpr FieldRow Tolerance() {
    FieldRow field = Limits(kL1, {.label = "T I M E    E R R O R    T O L E R A N C E",
                                  .show = ShowTolerance,
                                  .enter = EnterTolerance});
    field.style = kSmithsLabel;
    return field;
}

constexpr FieldRow kFields[] = {
    First(kL1, {.label = "G W  /  C R Z  C G", .show = ShowGrossWeight}),
    First(kR1, {.label = "C R Z   A L T",
                .show = ShowSmithsCruiseAltitude,
                .enter = EnterSmithsCruiseAltitude}),
    First(kL2, {.label = "F U E L", .show = ShowFuel}),
    First(kR2, {.label = "C R Z   W I N D",
                .show = ShowCruiseWind,
                .enter = EnterWind,
                .erase = EraseWind}),
    First(kL3,
          {.label = "Z F W", .show = ShowZeroFuel, .enter = EnterZeroFuel, .erase = EraseZeroFuel}),
    First(kR3,
          {.label = "I S A    D E V",
           .show = [](const FieldRow&, UnitText& text) { ShowTemperature(IsaDeviationC(), text); },
           .enter =
               [](const FieldRow&, std::string_view entry) {
                   return EnterTemperature(&PilotEntries::isaDeviationC, &PilotEntries::topOfClimbC,
                                           entry);
               },
           .erase = EraseTemperatures}),
    First(kL4, {.label = "R E S E R V E S", .show = ShowReserves, .enter = EnterReserves}),
    First(kR4,
          {.label = "T / C    O A T",
           .show = [](const FieldRow&, UnitText& text) { ShowTemperature(TopOfClimbC(), text); },
           .enter =
               [](const FieldRow&, std::string_view entry) {
                   return EnterTemperature(&PilotEntries::topOfClimbC, &PilotEntries::isaDeviationC,
                                           entry);
               },
           .erase = EraseTemperatures}),
    First(kL5, {.label = "C O S T   I N D E X", .show = ShowCostIndex, .enter = EnterCostIndex}),
    First(kR5, {.label = "T R A N S   A L T",
                .show = ShowTransitionAltitude,
                .enter = EnterTransitionAltitude}),
    Tolerance(),
    Limit(kL2, VerticalPhase::Climb, "M I N    S P D     - - C L B - -       M A X    S P D"),
    Limit(kR2, VerticalPhase::Climb),
    Limit(kL3, VerticalPhase::Cruise),
    Limit(kR3, VerticalPhase::Cruise),
    Limit(kL4, VerticalPhase::Descent),
    Limit(kR4, VerticalPhase::Descent),
    SmithsSeparatorRow(),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
    SmithsPrompt(kR6, "TAKEOFF >", kSmithsTakeoffRef, {.visible = OnFirst}),
    SmithsPrompt(kR6, "RTA >", kSmithsProgress, {.visible = OnLimits, .press = PressSmithsRta}),
};

void HandlePerfInit(const UnitInput&) {
    KeepAircraftWeights();
}

constexpr int kMiddleLabelX = 112;

void ComposePerfInit(Screen& screen) {
    SubPage& shown = smiths.Counter(SmithsCounter::PerfInit).SetCount(2);
    if (SmithsModificationWaits()) {
        PutSmithsRouteTag(screen);
    }
    screen.Put(kSmithsData, kSmithsTitleX, 0, shown.n == 1 ? "PERF  INIT" : "PERF  LIMITS");
    PutSmithsCounter(screen, shown, "%2d / %2d");
    if (shown.n == 2) {
        screen.Put(kSmithsLabel, kMiddleLabelX, kSmithsLabelY[2], "- -  C R Z - -");
        screen.Put(kSmithsLabel, kMiddleLabelX, kSmithsLabelY[3], "- -  D E S - -");
    }
}

}  // namespace

constinit const PageRow kSmithsPerfInitPage{.page = kSmithsPerfInit,
                                            .fields = kFields,
                                            .handle = HandlePerfInit,
                                            .compose = ComposePerfInit};

}  // namespace avq1
