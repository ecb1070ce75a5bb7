#include "simlink/calendar.h"

#include <algorithm>
#include <array>

namespace avq1 {
namespace {

struct MonthRow {
    std::string_view name;
    std::int32_t days;
};

constexpr std::array<MonthRow, 12> kMonths = {{{"JAN", 31},
                                               {"FEB", 28},
                                               {"MAR", 31},
                                               {"APR", 30},
                                               {"MAY", 31},
                                               {"JUN", 30},
                                               {"JUL", 31},
                                               {"AUG", 31},
                                               {"SEP", 30},
                                               {"OCT", 31},
                                               {"NOV", 30},
                                               {"DEC", 31}}};
constexpr std::size_t kFebruary = 1;

bool IsLeapYear(std::int32_t year) {
    return year >= 2000 && year <= 2024 && year % 4 == 0;
}

}  // namespace

CalendarDate DayOfYearToDate(std::int32_t dayOfYear, std::int32_t year) {
    std::int32_t day = std::max(dayOfYear, 1);
    std::size_t month = 0;
    for (; month + 1 < kMonths.size(); ++month) {
        const std::int32_t days =
            kMonths[month].days + (month == kFebruary && IsLeapYear(year) ? 1 : 0);
        if (day <= days) {
            break;
        }
        day -= days;
    }
    return {kMonths[month].name, day, static_cast<std::int32_t>(month) + 1};
}

std::int32_t MonthNumber(std::string_view dateMonthText) {
    const auto* const month = std::ranges::find(kMonths, dateMonthText, &MonthRow::name);
    return month == kMonths.end() ? 0 : static_cast<std::int32_t>(month - kMonths.begin()) + 1;
}

}  // namespace avq1
