#include "simlink/calendar.h"

#include <gtest/gtest.h>

namespace avq1::test {
namespace {

TEST(Calendar, DayOfYearToDate) {
    constexpr struct {
        int day, year;
        const char* month;
        int dateDay, dateMonth;
    } kCases[] = {{1, 2009, "JAN", 1, 1},   {31, 2009, "JAN", 31, 1},   {32, 2009, "FEB", 1, 2},
                  {60, 2008, "FEB", 29, 2}, {60, 2009, "MAR", 1, 3},    {61, 2024, "MAR", 1, 3},
                  {60, 2028, "MAR", 1, 3},  // beyond the leap years that are known
                  {60, 1996, "MAR", 1, 3},  {365, 2009, "DEC", 31, 12}, {366, 2008, "DEC", 31, 12},
                  {0, 2009, "JAN", 1, 1},   {181, 2009, "JUN", 30, 6},  {335, 2009, "DEC", 1, 12}};
    for (const auto& c : kCases) {
        const CalendarDate date = DayOfYearToDate(c.day, c.year);
        EXPECT_EQ(date.dateMonthText, c.month) << c.day << ' ' << c.year;
        EXPECT_EQ(date.dateDay, c.dateDay) << c.day << ' ' << c.year;
        EXPECT_EQ(date.dateMonth, c.dateMonth) << c.day << ' ' << c.year;
    }
}

}  // namespace
}  // namespace avq1::test
