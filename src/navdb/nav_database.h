// navdb/nav_database.h - the tables of navaids, intersections, airway fixes and airports, loaded
// from the text files in \avq\Navdata\ and kept while the module is loaded.
//
// Tables are indexed from 1; a count is the index of the last record, 0 when empty. Latitudes and
// longitudes are decimal degrees. Texts are views into the files' contents, which the database
// keeps until the next LoadNavDatabase; a caller that keeps a text longer copies it. A file that
// cannot be opened leaves its table empty; lines beyond a table's capacity are dropped, with one
// message near the limit. Panel thread only.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace avq1 {

// "V" a VOR, "N" any other navaid, "I" an intersection or airway fix, "APT" an airport.
enum class PointKind : std::uint8_t { None, Vor, Navaid, Intersection, Airport };
std::string_view KindText(PointKind kind);

struct PointRecord {
    std::string_view ident;
    std::string_view name;
    double latitude = 0;
    double longitude = 0;
    PointKind kind = PointKind::None;
    std::string_view frequency;  // navaids, as written
    std::string_view elevation;  // airports, as written, feet
};
using Navaid = PointRecord;
using Intersection = PointRecord;
using Airport = PointRecord;

inline constexpr std::int32_t kNavaidCapacity = 17000;
inline constexpr std::int32_t kIntersectionCapacity = 180000;
inline constexpr std::int32_t kAirwayFixCapacity = 100000;
inline constexpr std::int32_t kAirportCapacity = 10000;
inline constexpr std::int32_t kLetterGroupCapacity = 74;
inline constexpr std::int32_t kSearchResultCapacity = 250;

// Records 1..count of one kind; slot 0 exists and holds nothing.
struct PointTable {
    std::vector<PointRecord> records{1};
    std::int32_t count = 0;

    void Clear();
    void Append(const PointRecord& record);
    const PointRecord& operator[](std::int32_t index) const { return records[index]; }
};

struct LetterGroup {
    char letter = 0;
    std::int32_t firstIndex = 0;
};

struct NavDatabase {
    PointTable navaids;
    PointTable intersections;
    PointTable airwayFixes;
    PointTable airports;
    std::array<LetterGroup, kLetterGroupCapacity + 1> letterIndex{};  // from 1
    std::int32_t letterGroupCount = 0;
    PointTable searchResults;
};

extern NavDatabase navDatabase;
extern std::string DatabaseCycle;     // "AIRAC" and the cycle, empty until read
extern std::string DatabaseValidity;  // "JAN17FEB14/08", empty until read

void LoadNavDatabase();
void BuildNavaidLetterIndex();
void ReadDatabaseCycle();

enum class SearchCategory : std::int32_t { All = 0, Navaids = 1, Intersections = 2, Airports = 3 };

// Fills navDatabase.searchResults with every record whose ident equals `ident` exactly.
void SearchIdent(std::string_view ident, SearchCategory category);

// Index of the search result nearest to the aircraft, the earlier one of equals; 0 without any.
std::int32_t NearestResult();

// Index of the navaid of this ident whose latitude has the same whole degrees, or 0. `kind` is a
// plan or table kind text; empty and "INT" accept any VOR.
std::int32_t FindNavaid(std::string_view ident, std::string_view kind, double latitude);

}  // namespace avq1
