// navdb/airways.h - one airway's fixes, looked up in the airway file by name.
//
// The fixes become the search results, in file order, with the airway's name as their name and no
// kind. The airway file's text is the one the database keeps. Reading ends with the lines of the
// airway that held the entry fix; lines of other airways cost no more than finding their ends.
#pragma once

#include <cstdint>
#include <string_view>

#include "navdb/nav_database.h"

namespace avq1 {

inline constexpr std::int32_t kAirwayFixesOnPage = 16;

// What the control units pick an exit from. Indexes into the fixes, 0 = none.
struct AirwayLookup {
    PointTable fixes;  // the search results, as they were: another unit may search meanwhile
    std::int32_t entryIndex = 0;
    std::int32_t exitIndex = 0;  // set by the unit; the entry until then
    std::int32_t entryPage = 0;  // of kAirwayFixesOnPage fixes, from 1
};

extern AirwayLookup airwayLookup;

// Fills `results` with the airway's fixes and returns where the entry fix stands. Comments and
// blank lines belong to no airway.
AirwayLookup ReadAirway(std::string_view text, std::string_view name, std::string_view entryFix,
                        PointTable& results);

// Looks the airway up in the database's file. False when there is no such file; `airwayLookup` and
// the search results are then empty.
bool FindAirway(std::string_view name, std::string_view entryFix);

// Takes over the text that the database has just loaded and keeps.
void SetAirwayText(std::string_view text, bool fileExists);

}  // namespace avq1
