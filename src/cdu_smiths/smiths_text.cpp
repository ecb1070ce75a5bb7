#include <charconv>
#include <cmath>

#include "cdu_smiths/smiths_pages.h"

namespace avq1 {

void PutSmithsCounter(Screen& screen, const SubPage& shown, const char* format, int x) {
    UnitText text;
    text.Put(format, shown.n, shown.m);
    screen.PutText(kSmithsCounter, {static_cast<std::int16_t>(x), 0}, text);
}

bool ReadSmithsNumber(std::string_view text, double& value) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data() + (text.starts_with('+') ? 1 : 0), end, number,
                                      std::chars_format::fixed);
    if (text.starts_with("+-") || read.ec != std::errc{} || read.ptr != end ||
        !std::isfinite(number)) {
        return false;
    }
    value = number;
    return true;
}

}  // namespace avq1
