// simlink/calendar.h - the simulator's date.
#pragma once

#include <cstdint>
#include <string_view>

namespace avq1 {

struct CalendarDate {
    std::string_view dateMonthText;  // "JAN" to "DEC"
    std::int32_t dateDay = 0;        // of the month, from 1
    std::int32_t dateMonth = 0;      // 1 to 12
};

// The date of a day of the year, from 1; days beyond the year fall into December. February has 29
// days in the leap years from 2000 to 2024.
CalendarDate DayOfYearToDate(std::int32_t dayOfYear, std::int32_t year);

std::int32_t MonthNumber(std::string_view dateMonthText);  // 0 for no month

}  // namespace avq1
