#include "avqdata/cycle.h"

#include <chrono>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

namespace chrono = std::chrono;
using chrono::sys_days;

constexpr int kCycleDays = 28;
constexpr std::string_view kMonths = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
constexpr sys_days kEpoch{chrono::year{2023} / 1 / 26};  // first day of cycle 2301

sys_days CycleStart(sys_days date) {
    int days = static_cast<int>((date - kEpoch).count()) % kCycleDays;
    days += days < 0 ? kCycleDays : 0;
    return date - chrono::days(days);
}

int NumberOf(sys_days start) {
    const chrono::year_month_day day(start);
    const sys_days newYear{day.year() / 1 / 1};
    const int number = static_cast<int>((start - newYear).count()) / kCycleDays + 1;
    return static_cast<int>(day.year()) % 100 * 100 + number;
}

// The first day of a cycle; nothing when its year has no such.
std::optional<sys_days> StartOf(int cycle) {
    if (cycle < 1 || cycle > 9914) {
        return std::nullopt;
    }
    const sys_days newYear{chrono::year{2000 + cycle / 100} / 1 / 1};
    const sys_days first = CycleStart(newYear + chrono::days(kCycleDays - 1));
    const sys_days start = first + chrono::days(kCycleDays * (cycle % 100 - 1));
    return NumberOf(start) == cycle ? std::optional(start) : std::nullopt;
}

std::string DateText(sys_days date) {
    const chrono::year_month_day day(date);
    const auto number = static_cast<unsigned>(day.day());
    std::string text = (number < 10 ? "0" : "") + std::to_string(number) + "-";
    text += kMonths.substr((static_cast<unsigned>(day.month()) - 1) * 3, 3);
    return text + "-" + std::to_string(static_cast<int>(day.year()));
}

}  // namespace

std::optional<int> CycleOfDate(int year, int month, int day) {
    const chrono::year_month_day date{chrono::year(year),
                                      chrono::month(static_cast<unsigned>(month)),
                                      chrono::day(static_cast<unsigned>(day))};
    if (!date.ok() || year < 2000 || year > 2099) {
        return std::nullopt;
    }
    return NumberOf(CycleStart(sys_days{date}));
}

int CycleOfDateText(std::string_view date) {
    if (date.size() != 10) {
        return 0;
    }
    return CycleOfDate(WholeNumber(date.substr(0, 4)).value_or(0),
                       WholeNumber(date.substr(5, 2)).value_or(0),
                       WholeNumber(date.substr(8, 2)).value_or(0))
        .value_or(0);
}

std::optional<int> DayOfText(std::string_view date) {
    if (date.size() != 11 || date[2] != '-' || date[6] != '-') {
        return std::nullopt;
    }
    const std::size_t month = kMonths.find(date.substr(3, 3));
    const std::optional<int> day = WholeNumber(date.substr(0, 2));
    const std::optional<int> year = WholeNumber(date.substr(7));
    if (month == std::string_view::npos || month % 3 != 0 || !day || !year || *day < 1) {
        return std::nullopt;
    }
    const chrono::year_month_day whole{chrono::year(*year),
                                       chrono::month(static_cast<unsigned>(month / 3 + 1)),
                                       chrono::day(static_cast<unsigned>(*day))};
    if (!whole.ok()) {
        return std::nullopt;
    }
    return static_cast<int>(sys_days{whole}.time_since_epoch().count());
}

std::optional<double> YearOfCycle(int cycle) {
    const std::optional<sys_days> start = StartOf(cycle);
    if (!start) {
        return std::nullopt;
    }
    const chrono::year year = chrono::year_month_day(*start).year();
    const sys_days newYear{year / 1 / 1};
    const sys_days next{(year + chrono::years(1)) / 1 / 1};
    return static_cast<int>(year) + static_cast<double>((*start - newYear).count()) /
                                        static_cast<double>((next - newYear).count());
}

int CycleOfLine(std::string_view line) {
    constexpr std::size_t kNumberAt = 3;
    const std::vector<std::string_view> words = Words(line);
    const int cycle = words.size() > kNumberAt ? WholeNumber(words[kNumberAt]).value_or(0) : 0;
    return StartOf(cycle) ? cycle : 0;
}

std::string CycleLine(int cycle) {
    const std::optional<sys_days> start = StartOf(cycle);
    if (!start) {
        return {};
    }
    std::string number = std::to_string(cycle);
    number.insert(0, 4 - number.size(), '0');
    return ";AIRAC cycle : " + number + " (" + DateText(*start) + " to " +
           DateText(*start + chrono::days(kCycleDays)) + ")";
}

}  // namespace avqdata
