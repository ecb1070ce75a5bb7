// DES FORECASTS: what the descent is planned with - transition level, anti-ice, temperature and
// pressure, and the winds on the way down.
#include <algorithm>
#include <array>
#include <cmath>

#include "cdu/formats.h"
#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_vertical.h"
#include "guidance/predictions.h"

namespace avq1 {
namespace {

constexpr double kFeetPerLevel = 100;
constexpr double kGreatestDeviationC = 99;
constexpr double kLeastQnh = 900;
constexpr double kGreatestQnh = 1100;
constexpr double kGreatestCabinFpm = 9999;

UnitText LevelText(double feet) {
    UnitText text("- - -");
    if (std::isfinite(feet)) {
        text.Put("FL%03.0f", feet / kFeetPerLevel);
    }
    return text;
}

void ShowTransitionLevel(const FieldRow&, UnitText& text) {
    text = LevelText(pilotEntries.transitionAltitudeFt);
}

EntryResult EnterTransitionLevel(const FieldRow&, std::string_view entry) {
    return ReadSmithsAltitude(entry, pilotEntries.transitionAltitudeFt) ? EntryResult::Accepted
                                                                        : EntryResult::InvalidEntry;
}

// Two values with a slash between them; false, and nothing changed, when either part is refused.
template <typename Read>
bool ReadPair(std::string_view entry, Read first, Read second, double& a, double& b) {
    const std::size_t slash = entry.find('/');
    double readA = 0;
    double readB = 0;
    if (slash == std::string_view::npos || !first(entry.substr(0, slash), readA) ||
        !second(entry.substr(slash + 1), readB)) {
        return false;
    }
    a = readA;
    b = readB;
    return true;
}

// ---- anti-ice ----
void ShowAntiIce(const FieldRow&, UnitText& text) {
    text.Put("%s / %s", LevelText(pilotEntries.antiIceOnFt).c_str(),
             LevelText(pilotEntries.antiIceOffFt).c_str());
}

EntryResult EnterAntiIce(const FieldRow&, std::string_view entry) {
    return ReadPair(entry, ReadSmithsAltitude, ReadSmithsAltitude, pilotEntries.antiIceOnFt,
                    pilotEntries.antiIceOffFt)
               ? EntryResult::Accepted
               : EntryResult::InvalidEntry;
}

EntryResult EraseAntiIce(const FieldRow&) {
    if (!std::isfinite(pilotEntries.antiIceOnFt)) {
        return EntryResult::InvalidDelete;
    }
    pilotEntries.antiIceOnFt = pilotEntries.antiIceOffFt = kNotEntered;
    return EntryResult::Accepted;
}

// ---- cabin ----
void ShowCabinRate(const FieldRow&, UnitText& text) {
    text.Set("- - - -");
    if (std::isfinite(pilotEntries.cabinRateFpm)) {
        text.Put("%.0f F P M", pilotEntries.cabinRateFpm);
    }
}

EntryResult EnterCabinRate(const FieldRow&, std::string_view entry) {
    double fpm = 0;
    if (!ReadSmithsNumber(entry, fpm) || fpm != std::trunc(fpm) || fpm < 1 ||
        fpm > kGreatestCabinFpm) {
        return EntryResult::InvalidEntry;
    }
    pilotEntries.cabinRateFpm = fpm;
    return EntryResult::Accepted;
}

EntryResult EraseCabinRate(const FieldRow&) {
    if (!std::isfinite(pilotEntries.cabinRateFpm)) {
        return EntryResult::InvalidDelete;
    }
    pilotEntries.cabinRateFpm = kNotEntered;
    return EntryResult::Accepted;
}

// ---- temperature and pressure ----
bool ReadDeviation(std::string_view text, double& celsius) {
    double number = 0;
    if (!ReadSmithsNumber(text, number) || std::abs(number) > kGreatestDeviationC) {
        return false;
    }
    celsius = number;
    return true;
}

bool ReadQnh(std::string_view text, double& hectopascal) {
    double number = 0;
    if (!ReadSmithsNumber(text, number) || number < kLeastQnh || number > kGreatestQnh) {
        return false;
    }
    hectopascal = number;
    return true;
}

void ShowDeviationQnh(const FieldRow&, UnitText& text) {
    text.Set("- - / - - - -");
    if (std::isfinite(pilotEntries.descentDeviationC)) {
        text.Put("%+.0f / %.0f", std::round(pilotEntries.descentDeviationC) + 0.0,
                 pilotEntries.descentQnh);
    }
}

EntryResult EnterDeviationQnh(const FieldRow&, std::string_view entry) {
    return ReadPair(entry, ReadDeviation, ReadQnh, pilotEntries.descentDeviationC,
                    pilotEntries.descentQnh)
               ? EntryResult::Accepted
               : EntryResult::InvalidEntry;
}

EntryResult EraseDeviationQnh(const FieldRow&) {
    if (!std::isfinite(pilotEntries.descentDeviationC)) {
        return EntryResult::InvalidDelete;
    }
    pilotEntries.descentDeviationC = pilotEntries.descentQnh = kNotEntered;
    return EntryResult::Accepted;
}

// ---- winds, by a field's item ----
const DescentWind& WindOf(const FieldRow& field) {
    return EnteredDescentWinds()[static_cast<std::size_t>(field.item)];
}

void ShowWindAltitude(const FieldRow& field, UnitText& text) {
    text = SmithsAltitudeText(WindOf(field).altitudeFt);
}

EntryResult EnterWindAltitude(const FieldRow& field, std::string_view entry) {
    double feet = 0;
    return ReadSmithsAltitude(entry, feet) &&
                   EnterDescentWindAltitude(static_cast<std::size_t>(field.item), feet)
               ? EntryResult::Accepted
               : EntryResult::InvalidEntry;
}

void ShowWind(const FieldRow& field, UnitText& text) {
    text = SmithsWindText(WindOf(field).wind);
}

EntryResult EnterWind(const FieldRow& field, std::string_view entry) {
    double directionTrue = 0;
    double speedKt = 0;
    return ReadSmithsWind(entry, directionTrue, speedKt) &&
                   EnterDescentWind(static_cast<std::size_t>(field.item), directionTrue, speedKt)
               ? EntryResult::Accepted
               : EntryResult::InvalidEntry;
}

EntryResult EraseWind(const FieldRow& field) {
    if (!WindOf(field).wind.entered && WindOf(field).altitudeFt <= 0) {
        return EntryResult::InvalidDelete;
    }
    ClearDescentWind(static_cast<std::size_t>(field.item));
    return EntryResult::Accepted;
}

constexpr FieldRow WindAltitude(std::int32_t line, std::int32_t item, const char* label = "") {
    return SmithsField(line, {.label = label,
                              .show = ShowWindAltitude,
                              .enter = EnterWindAltitude,
                              .erase = EraseWind,
                              .item = item});
}

constexpr FieldRow Wind(std::int32_t line, std::int32_t item, const char* label = "") {
    return SmithsField(
        line,
        {.label = label, .show = ShowWind, .enter = EnterWind, .erase = EraseWind, .item = item});
}

constexpr std::int16_t kWindLabelX = 120;

constexpr FieldRow kFields[] = {
    SmithsTitle("DES  FORECASTS"),
    SmithsField(kL1, {.label = "T R A N S    L V L               T A I    O N / O F F",
                      .show = ShowTransitionLevel,
                      .enter = EnterTransitionLevel}),
    SmithsField(kR1, {.show = ShowAntiIce, .enter = EnterAntiIce, .erase = EraseAntiIce}),
    SmithsField(kL2, {.label = "C A B I N    R A T E          I S A   D E V / Q N H",
                      .show = ShowCabinRate,
                      .enter = EnterCabinRate,
                      .erase = EraseCabinRate}),
    SmithsField(kR2,
                {.show = ShowDeviationQnh, .enter = EnterDeviationQnh, .erase = EraseDeviationQnh}),
    WindAltitude(kL3, 0, "A L T"),
    SmithsNote("W I N D", kWindLabelX, kSmithsLabelY[2]),
    Wind(kR3, 0, "D I R / S P D"),
    WindAltitude(kL4, 1),
    Wind(kR4, 1),
    WindAltitude(kL5, 2),
    Wind(kR5, 2),
};

void ComposeForecasts(Screen& screen) {
    PutSmithsCounter(screen, {});
}

}  // namespace

constinit const PageRow kSmithsForecastsPage{
    .page = kSmithsForecasts, .fields = kFields, .compose = ComposeForecasts};

}  // namespace avq1
