#include "cdu_gns/gns_entry.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "cdu_gns/gns.h"

namespace avq1 {

bool ReadTypedWhole(double& value) {
    const std::string_view text = TypedText(gns);
    std::int32_t whole = 0;
    const bool digits = std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    if (text.empty() || !digits ||
        std::from_chars(text.data(), text.data() + text.size(), whole).ec != std::errc{}) {
        return false;
    }
    value = whole;
    return true;
}

bool ReadTypedTenths(double& value) {
    double tenths = 0;
    if (!ReadTypedWhole(tenths)) {
        return false;
    }
    value = tenths / 10;
    return true;
}

void OfferWhole(double value, std::size_t length) {
    UnitText text;
    if (std::isfinite(value) && value >= 0) {
        text.Put("%.0f", value);
    }
    LoadScratchpad(gns, text.view().substr(0, length), length);
}

void OfferTenths(double value, std::size_t length) {
    OfferWhole(value * 10, length);
}

void ShowTypedTenths(const LineRow&, UnitText& text) {
    const std::string_view digits = TypedText(gns);
    if (!digits.empty()) {
        const auto whole = static_cast<int>(digits.size()) - 1;
        text.Put("%.*s.%c", whole, digits.data(), digits.back());
    }
}

}  // namespace avq1
