// APPROACH REF: the reference speeds of the aircraft's flap settings, and the one that is chosen.
#include <cmath>
#include <string>

#include "base/text.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_reference.h"
#include "settings/aircraft_performance.h"

namespace avq1 {
namespace {

constexpr double kThousand = 1000;
constexpr std::int32_t kGreatestCorrectionKt = 20;
constexpr std::int16_t kFlapsX = 150;
constexpr std::int32_t kMostFlaps = 99;

struct FlapRow {
    std::string AircraftPerformance::*flaps;
    std::int32_t AircraftPerformance::*vref;
};

constexpr FlapRow kFlapRows[] = {
    {&AircraftPerformance::approachFlapsMin, &AircraftPerformance::vrefMin},
    {&AircraftPerformance::approachFlapsMid, &AircraftPerformance::vrefMid},
    {&AircraftPerformance::approachFlapsMax, &AircraftPerformance::vrefMax},
};

double ApproachWeightLb() {
    return std::isfinite(pilotEntries.approachWeightLb) ? pilotEntries.approachWeightLb
                                                        : GrossWeightLb();
}

void ShowGrossWeight(const FieldRow&, UnitText& text) {
    text = SmithsThousandsText(ApproachWeightLb(), 3, "- - - . -");
}

EntryResult EnterGrossWeight(const FieldRow&, std::string_view entry) {
    double thousands = 0;
    if (!ReadSmithsNumber(entry, thousands) || thousands >= kThousand ||
        !ReadSmithsThousands(entry, pilotEntries.approachWeightLb)) {
        return EntryResult::InvalidEntry;
    }
    return EntryResult::Accepted;
}

EntryResult EraseGrossWeight(const FieldRow&) {
    if (!std::isfinite(pilotEntries.approachWeightLb)) {
        return EntryResult::InvalidDelete;
    }
    pilotEntries.approachWeightLb = kNotEntered;
    return EntryResult::Accepted;
}

// Only settings that the aircraft's file names have a speed.
bool HasFlaps(const FieldRow& field) {
    return !(performance.*kFlapRows[field.item].flaps).empty();
}

void ShowFlaps(const FieldRow& field, UnitText& text) {
    text.Set("- -");
    if (HasFlaps(field)) {
        text.Put("%.5s", (performance.*kFlapRows[field.item].flaps).c_str());
    }
}

void ShowVref(const FieldRow& field, UnitText& text) {
    text = SmithsKnotsText(HasFlaps(field) ? performance.*kFlapRows[field.item].vref : 0);
}

// Into the scratchpad, to be put on the line of the chosen one.
EntryResult CopyRow(const FieldRow& field) {
    if (!HasFlaps(field)) {
        return EntryResult::None;
    }
    const FlapRow& row = kFlapRows[field.item];
    smiths.scratchpad = Format("%.5s/%d", (performance.*row.flaps).c_str(), performance.*row.vref);
    return EntryResult::None;
}

void ShowChosen(const FieldRow&, UnitText& text) {
    text.Set("- -  - - -");
    if (performance.vref > 0) {
        text.Put("%d  %3d", performance.landingFlaps, performance.vref);
    }
}

EntryResult EnterChosen(const FieldRow&, std::string_view entry) {
    const std::size_t slash = entry.find('/');
    double flaps = 0;
    if (slash == std::string_view::npos || !ReadSmithsNumber(entry.substr(0, slash), flaps) ||
        flaps != std::trunc(flaps) || flaps < 0 || flaps > kMostFlaps ||
        !ReadSmithsKnots(entry.substr(slash + 1), performance.vref)) {
        return EntryResult::InvalidEntry;
    }
    performance.landingFlaps = static_cast<std::int32_t>(flaps);
    return EntryResult::Accepted;
}

EntryResult EraseChosen(const FieldRow&) {
    if (performance.vref == 0) {
        return EntryResult::InvalidDelete;
    }
    performance.vref = 0;
    return EntryResult::Accepted;
}

void ShowCorrection(const FieldRow&, UnitText& text) {
    text.Put("%2d K T", pilotEntries.windCorrectionKt);
}

EntryResult EnterCorrection(const FieldRow&, std::string_view entry) {
    double knots = 0;
    if (!ReadSmithsNumber(entry, knots) || knots != std::trunc(knots) || knots < 0 ||
        knots > kGreatestCorrectionKt) {
        return EntryResult::InvalidEntry;
    }
    pilotEntries.windCorrectionKt = static_cast<std::int32_t>(knots);
    return EntryResult::Accepted;
}

constexpr FieldRow Flaps(std::int32_t line, std::int32_t item) {
    FieldRow field = SmithsField(line, {.show = ShowFlaps, .item = item});
    field.line = 0;
    field.style = kSmithsData;
    field.valueAt.x = kFlapsX;
    return field;
}

constexpr FieldRow Vref(std::int32_t line, std::int32_t item, const char* label = "") {
    return SmithsField(line, {.label = label, .show = ShowVref, .press = CopyRow, .item = item});
}

constexpr FieldRow kFields[] = {
    SmithsTitle("APPROACH REF"),
    SmithsField(kL1, {.label = "G R O S S   W T",
                      .show = ShowGrossWeight,
                      .enter = EnterGrossWeight,
                      .erase = EraseGrossWeight}),
    SmithsNote("F L A P S", kFlapsX, kSmithsLabelY[0]),
    Flaps(kR1, 0),
    Flaps(kR2, 1),
    Flaps(kR3, 2),
    Vref(kR1, 0, "V R E F"),
    Vref(kR2, 1),
    Vref(kR3, 2),
    SmithsField(kR4, {.label = "F L A P / S P D",
                      .show = ShowChosen,
                      .enter = EnterChosen,
                      .erase = EraseChosen}),
    SmithsField(kR5,
                {.label = "W I N D    C O R R", .show = ShowCorrection, .enter = EnterCorrection}),
    SmithsSeparatorRow(),
    SmithsPrompt(kL6, "< INDEX", kSmithsIndex),
};

void HandleApproach(const UnitInput&) {
    KeepAircraftWeights();
}

void ComposeApproach(Screen& screen) {
    PutSmithsCounter(screen, {});
}

}  // namespace

constinit const PageRow kSmithsApproachRefPage{.page = kSmithsApproachRef,
                                               .fields = kFields,
                                               .handle = HandleApproach,
                                               .compose = ComposeApproach};

}  // namespace avq1
