// navdb/nav_database.h - the tables of navaids, intersections, airway fixes and airports, loaded
// from the text files in \avq\Navdata\ and kept while the module is loaded.
//
// Tables are indexed from 1; a count is the index of the last record, 0 when empty. Latitudes and
// longitudes are decimal degrees. A load finds where the records stand; a record is read from its
// line by whoever asks for it. Its texts are views into the files' contents, which the database
// keeps until the next LoadNavDatabase; what a search finds has texts of its own. A file that
// cannot be opened leaves its table empty; lines beyond a table's capacity are dropped, with one
// message near the limit. Panel thread only.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/geometry.h"

namespace avq1 {

// "V" a VOR, "N" any other navaid, "I" an intersection or airway fix and a point the pilot made up,
// "APT" an airport.
enum class PointKind : std::uint8_t { None, Vor, Navaid, Intersection, Airport, PilotPoint };
std::string_view KindText(PointKind kind);

// Text is a view in records of the tables and in lists of them.
template <typename Text>
struct BasicPoint {
    Text ident{};
    Text name{};
    double latitude = 0;
    double longitude = 0;
    PointKind kind = PointKind::None;
    Text frequency{};  // navaids, as written
    Text elevation{};  // airports, as written, feet
};
using PointRecord = BasicPoint<std::string_view>;
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
template <typename Record>
struct RecordTable {
    std::vector<Record> records{1};
    std::int32_t count = 0;

    void Clear() {
        records.resize(1);
        count = 0;
    }
    void Append(const Record& record) {
        records.push_back(record);
        ++count;
    }
    bool Holds(std::int32_t index) const { return index >= 1 && index <= count; }
    const Record& operator[](std::int32_t index) const { return records[index]; }
};
using PointList = RecordTable<PointRecord>;

// What stands on a line behind the identifier.
enum class LineForm : std::uint8_t { Intersection, AirwayFix, Airport, Navaid };

// Where a record stands in its file.
struct PointLine {
    const char* ident = nullptr;
    std::uint16_t identLength = 0;
    std::uint16_t restLength = 0;  // of the line behind the identifier, or beyond its end
    LineForm form = LineForm::Intersection;
};

// Records 1..count of one file; slot 0 exists and holds nothing.
class PointTable {
  public:
    std::int32_t count = 0;

    void Clear() { *this = {}; }
    void Reserve(std::size_t more) { lines_.reserve(lines_.size() + more); }
    void Append(const PointLine& line) {
        lines_.push_back(line);
        ++count;
    }
    PointRecord operator[](std::int32_t index) const;  // read anew by each call
    PointRecord Listed(std::int32_t index);            // without name and elevation, quicker
    std::string_view Ident(std::int32_t index) const {
        return {lines_[index].ident, lines_[index].identLength};
    }
    // Of every record, by their indexes; read by the first call since the table was filled. For
    // those who go through the table by position.
    const std::vector<LatLon>& Positions();

  private:
    std::vector<PointLine> lines_{1};
    std::vector<LatLon> positions_;
};

// A point found or made up; valid for as long as its owner keeps it.
struct FoundPoint : BasicPoint<std::string> {
    FoundPoint() = default;
    explicit FoundPoint(const PointRecord& record);
};

// What a search found, which belongs to whoever asked. A place-bearing-distance entry leaves its
// reference as the one point and the rest pending; -1 = nothing pending.
struct SearchResults : RecordTable<FoundPoint> {
    double pendingBearingMag = -1;
    double pendingDistanceNm = -1;  // whole

    bool HasPendingPoint() const { return pendingBearingMag >= 0 && pendingDistanceNm >= 0; }
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
};

extern NavDatabase navDatabase;
extern std::string DatabaseCycle;     // "AIRAC" and the cycle, empty until read
extern std::string DatabaseValidity;  // "JAN17FEB14/08", empty until read

void LoadNavDatabase();
void BuildNavaidLetterIndex();
void ReadDatabaseCycle();

enum class SearchCategory : std::int32_t { All = 0, Navaids = 1, Intersections = 2, Airports = 3 };

// Fills `results` anew with every record whose ident equals `ident` exactly, without its name.
void SearchIdent(std::string_view ident, SearchCategory category, SearchResults& results);

// Index of the result nearest to the aircraft, the earlier one of equals; 0 without any.
std::int32_t NearestResult(const SearchResults& results);

// Index of the navaid of this ident whose latitude has the same whole degrees, or 0. `kind` is a
// plan or table kind text; empty and "INT" accept any VOR.
std::int32_t FindNavaid(std::string_view ident, std::string_view kind, double latitude);

}  // namespace avq1
