// TAKEOFF REF: flaps, thrust and take-off speeds of the aircraft's file, and what is left to do.
#include <cmath>

#include "base/text.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_procedures.h"
#include "cdu_smiths/smiths_reference.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/flight_plan.h"
#include "guidance/performance_entries.h"
#include "settings/aircraft_performance.h"

namespace avq1 {
namespace {

constexpr std::int32_t AircraftPerformance::*kSpeeds[] = {
    &AircraftPerformance::v1, &AircraftPerformance::vr, &AircraftPerformance::v2};

void ShowFlaps(const FieldRow&, UnitText& text) {
    text.Set("- -");
    if (performance.takeoffFlaps > 0) {
        text.Put("%d", performance.takeoffFlaps);
    }
}

// One of the settings the aircraft may take off with.
EntryResult EnterFlaps(const FieldRow&, std::string_view entry) {
    const std::string wanted = "," + std::string(entry) + ",";
    const bool oneNumber = entry.find_first_not_of("0123456789") == std::string_view::npos;
    if (!oneNumber || performance.takeoffFlapsRange.find(wanted) == std::string::npos) {
        return EntryResult::InvalidEntry;
    }
    performance.takeoffFlaps = ToInteger(entry);
    return EntryResult::Accepted;
}

void ShowThrustLabel(const FieldRow&, UnitText& text) {
    text.Set("- - K   N 1");
    if (performance.engineThrust > 0) {
        text.Put("%d K   N 1", performance.engineThrust);
    }
}

void ShowSpeed(const FieldRow& field, UnitText& text) {
    text = SmithsKnotsText(performance.*kSpeeds[field.item]);
}

EntryResult EnterSpeed(const FieldRow& field, std::string_view entry) {
    return ReadSmithsKnots(entry, performance.*kSpeeds[field.item]) ? EntryResult::Accepted
                                                                    : EntryResult::InvalidEntry;
}

bool PreflightComplete() {
    return std::isfinite(GrossWeightLb()) && ChosenCruiseAltitude() > 0 && SmithsRouteIsActive() &&
           performance.takeoffFlaps > 0;
}

void ShowPreflight(const FieldRow&, UnitText& text) {
    text.Set(PreflightComplete() ? "P R E     F L T   C O M P L E T E"
                                 : "P R E     F L T   S T A T U S");
}

void ShowNothingKnown(const FieldRow& field, UnitText& text) {
    text.Set(field.item == 0 ? "- - . -" : "-  -  . - %");
}

constexpr FieldRow Speed(std::int32_t line, const char* label, std::int32_t item) {
    return SmithsField(line,
                       {.label = label, .show = ShowSpeed, .enter = EnterSpeed, .item = item});
}

constexpr FieldRow kFields[] = {
    SmithsTitle("TAKEOFF  REF"),
    SmithsField(kL1, {.label = "F L A P S", .show = ShowFlaps, .enter = EnterFlaps}),
    Speed(kR1, "V 1", 0),
    SmithsShownLabel(kL2, ShowThrustLabel),
    SmithsField(kL2, {.show = ShowNothingKnown, .item = 0}),
    Speed(kR2, "V R", 1),
    SmithsField(kL3, {.label = "C G             T R I M", .show = ShowNothingKnown, .item = 1}),
    Speed(kR3, "V 2", 2),
    SmithsShownLabel(kL4, ShowPreflight),
    SmithsPrompt(kL5, "<PERF  INIT", kSmithsPerfInit,
                 {.press = AtSmithsSubPage<SmithsCounter::PerfInit, 1>}),
    SmithsPrompt(kR5, "ROUTE>", kSmithsRoute),
    SmithsSeparatorRow(),
    SmithsPrompt(kL6, "<INDEX", kSmithsIndex),
    SmithsPrompt(kR6, "DEPARTURE>", kSmithsDepartures, {.press = PressSmithsDepartures}),
};

void HandleTakeoff(const UnitInput&) {
    KeepAircraftWeights();
}

void ComposeTakeoff(Screen& screen) {
    PutSmithsCounter(screen, {});
}

}  // namespace

constinit const PageRow kSmithsTakeoffRefPage{.page = kSmithsTakeoffRef,
                                              .fields = kFields,
                                              .handle = HandleTakeoff,
                                              .compose = ComposeTakeoff};

}  // namespace avq1
