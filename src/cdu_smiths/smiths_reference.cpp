#include "cdu_smiths/smiths_reference.h"

#include <cmath>

#include "cdu/pilot_entries.h"
#include "cdu_smiths/smiths_pages.h"

namespace avq1 {
namespace {

constexpr double kThousand = 1000;
constexpr double kHeaviestLb = 2000000;
constexpr double kSlowestKt = 40;
constexpr double kFastestKt = 300;

}  // namespace

UnitText SmithsThousandsText(double pounds, int width, const char* dashes) {
    UnitText text(dashes);
    if (std::isfinite(pounds)) {
        text.Put("%*.1f", width, InWeightUnit(pounds) / kThousand);
    }
    return text;
}

bool ReadSmithsThousands(std::string_view text, double& pounds) {
    double thousands = 0;
    if (!ReadSmithsNumber(text, thousands) || !(thousands > 0) ||
        PoundsFrom(thousands * kThousand) > kHeaviestLb) {
        return false;
    }
    pounds = PoundsFrom(thousands * kThousand);
    return true;
}

UnitText SmithsKnotsText(std::int32_t knots) {
    UnitText text("- - -");
    if (knots > 0) {
        text.Put("%3d K T", knots);
    }
    return text;
}

bool ReadSmithsKnots(std::string_view text, std::int32_t& knots) {
    double number = 0;
    if (!ReadSmithsNumber(text, number) || number != std::trunc(number) || number < kSlowestKt ||
        number > kFastestKt) {
        return false;
    }
    knots = static_cast<std::int32_t>(number);
    return true;
}

}  // namespace avq1
