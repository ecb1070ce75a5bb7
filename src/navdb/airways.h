// navdb/airways.h - one airway's fixes, looked up in the airway file by name.
//
// The fixes come in file order, with the airway's name as their name and no kind. The airway file's
// text is the one the database keeps, or, when its size or time says that it was written since,
// read anew. Reading ends with the lines of the airway that held the entry fix; lines of other
// airways cost no more than finding their ends.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "navdb/nav_database.h"
#include "platform/files.h"

namespace avq1 {

inline constexpr std::int32_t kAirwayFixesOnPage = 16;

// What a control unit picks an exit from, and owns. Indexes into the fixes, 0 = none.
struct AirwayLookup {
    SearchResults fixes;
    std::string text;  // the name, " (N/A)" behind it where the airway misses the entry
    std::int32_t entryIndex = 0;
    std::int32_t exitIndex = 0;  // set by the unit; the entry until then
    std::int32_t entryPage = 0;  // of kAirwayFixesOnPage fixes, from 1
};

// Reads the airway's fixes from a file's text. Comments and blank lines belong to no airway.
AirwayLookup ReadAirway(std::string_view text, std::string_view name, std::string_view entryFix);

// Looks the airway up in the database's file. False when there is no such file; `lookup` then has
// no fixes and keeps its text.
bool FindAirway(std::string_view name, std::string_view entryFix, AirwayLookup& lookup);

inline constexpr std::string_view kAirwayFile = "\\avq\\navdata\\fsb_awy2.txt";

// Takes over the text that the database has just loaded and keeps, of the file as it was then.
void SetAirwayText(std::string_view text, bool fileExists, const FileStamp& stamp);

}  // namespace avq1
