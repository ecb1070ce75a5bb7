#include "navdb/database_cycle.h"

#include <tuple>

#include "base/text.h"
#include "navdb/nav_database.h"
#include "simlink/calendar.h"
#include "simlink/sim_variables.h"

namespace avq1 {

bool IsDatabaseExpired() {
    constexpr std::size_t kLength = std::string_view("JAN17FEB14/08").size();
    constexpr std::int32_t kCentury = 2000;
    const std::int32_t year = TruncateToInteger(ReadUtcYear());
    if (year < kCentury || DatabaseValidity.size() != kLength) {
        return false;
    }
    const std::string_view text = DatabaseValidity;
    const std::int32_t endMonth = MonthNumber(text.substr(5, 3));
    const CalendarDate today = DayOfYearToDate(TruncateToInteger(ReadUtcDayOfYear()), year);
    return endMonth != 0 && std::tuple(year, today.dateMonth, today.dateDay) >
                                std::tuple(kCentury + ToInteger(text.substr(11)), endMonth,
                                           ToInteger(text.substr(8, 2)));
}

}  // namespace avq1
