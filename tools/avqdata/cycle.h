// avqdata/cycle.h - the 28-day cycle of navigation data and the navaid file's line that names it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace avqdata {

// The cycle that holds a date: 2309 for 7 September 2023. Nothing for a date that is none.
std::optional<int> CycleOfDate(int year, int month, int day);

// The same for "2023/09/07"; 0 for no such date.
int CycleOfDateText(std::string_view date);

// ";AIRAC cycle : 2309 (07-SEP-2023 to 05-OCT-2023)"; empty when there is no such cycle.
std::string CycleLine(int cycle);

// The cycle of such a line; 0 where it names none.
int CycleOfLine(std::string_view line);

// The year, with its fraction, in which a cycle begins: 2023.68 for 2309. Nothing for no cycle.
std::optional<double> YearOfCycle(int cycle);

// "07-SEP-2023" as a count of days; nothing when it is no day of the calendar.
std::optional<int> DayOfText(std::string_view date);

}  // namespace avqdata
