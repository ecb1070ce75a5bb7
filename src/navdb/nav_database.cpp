#include "navdb/nav_database.h"

#include <utility>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "geometry/geometry.h"
#include "navdb/airways.h"
#include "navdb/navdata_text.h"
#include "navdb/nearby.h"
#include "navdb/procedures.h"
#include "platform/files.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::string_view kNavaidFile = "\\avq\\navdata\\avq_navs.txt";

// The contents the tables' texts are views of.
struct FileContents {
    std::string intersections;
    std::string airwayFixes;
    std::string airports;
    std::string navaids;
};

FileContents files;

void ClearTables() {
    navDatabase.navaids.Clear();
    navDatabase.intersections.Clear();
    navDatabase.airwayFixes.Clear();
    navDatabase.airports.Clear();
    navDatabase.letterGroupCount = 0;
    // Lists hold views of contents that are about to go.
    nearby = {};
}

const StateReset kReset([] {
    navDatabase = {};
    nearby = {};
    files = {};
    DatabaseCycle.clear();
    DatabaseValidity.clear();
});

void AppendMatches(const PointTable& table, std::string_view ident, SearchResults& results) {
    for (std::int32_t i = 1; i <= table.count && results.count < kSearchResultCapacity; ++i) {
        if (table.Ident(i) == ident) {
            FoundPoint result(table[i]);
            result.name.clear();
            results.Append(result);
        }
    }
}

// Whether a navaid may stand for a plan entry of this kind.
bool KindMatches(const Navaid& navaid, std::string_view kind) {
    if ((kind.empty() || kind == "INT") && navaid.kind == PointKind::Vor) {
        return true;
    }
    return !kind.empty() && kind.front() == KindText(navaid.kind).front();
}

}  // namespace

NavDatabase navDatabase;
std::string DatabaseCycle;
std::string DatabaseValidity;

std::string_view KindText(PointKind kind) {
    switch (kind) {
        case PointKind::Vor:
            return "V";
        case PointKind::Navaid:
            return "N";
        case PointKind::Intersection:
        case PointKind::PilotPoint:
            return "I";
        case PointKind::Airport:
            return "APT";
        case PointKind::None:
            break;
    }
    return "";
}

FoundPoint::FoundPoint(const PointRecord& record)
    : BasicPoint{std::string(record.ident),
                 std::string(record.name),
                 record.latitude,
                 record.longitude,
                 record.kind,
                 std::string(record.frequency),
                 std::string(record.elevation)} {}

void LoadNavDatabase() {
    ClearTables();
    if (ReadWholeFile(SimPath("\\avq\\navdata\\avq_ints.txt"), files.intersections)) {
        ReadIntersections(files.intersections, navDatabase.intersections);
    }
    const FileStamp airwaysStamp = StampOf(SimPath(kAirwayFile));
    const bool hasAirways = ReadWholeFile(SimPath(kAirwayFile), files.airwayFixes);
    if (hasAirways) {
        ReadAirwayFixes(files.airwayFixes, navDatabase.airwayFixes);
    }
    SetAirwayText(files.airwayFixes, hasAirways, airwaysStamp);
    if (ReadWholeFile(SimPath("\\avq\\navdata\\avq_apts.txt"), files.airports)) {
        ReadAirports(files.airports, navDatabase.airports);
    }
    if (ReadWholeFile(SimPath(kNavaidFile), files.navaids)) {
        ReadNavaids(files.navaids, navDatabase.navaids);
        BuildNavaidLetterIndex();
    }
    IndexProcedureFiles();
}

void BuildNavaidLetterIndex() {
    navDatabase.letterGroupCount = 0;
    for (std::int32_t i = 1; i <= navDatabase.navaids.count; ++i) {
        const std::string_view ident = navDatabase.navaids.Ident(i);
        const char letter = ident.empty() ? '\0' : ident.front();
        std::int32_t& groups = navDatabase.letterGroupCount;
        if (groups > 0 &&
            navDatabase.letterIndex[static_cast<std::size_t>(groups)].letter == letter) {
            continue;
        }
        if (groups == kLetterGroupCapacity) {
            return;
        }
        navDatabase.letterIndex[static_cast<std::size_t>(++groups)] = {letter, i};
    }
}

void ReadDatabaseCycle() {
    std::string text;
    if (ReadWholeFile(SimPath(kNavaidFile), text)) {
        ReadCycleText(text, DatabaseCycle, DatabaseValidity);
    }
}

void SearchIdent(std::string_view ident, SearchCategory category, SearchResults& results) {
    SearchResults found;  // `ident` may be one of the old results'
    const bool all = category <= SearchCategory::All;
    if (all || category == SearchCategory::Navaids) {
        AppendMatches(navDatabase.navaids, ident, found);
    }
    if (all || category == SearchCategory::Intersections) {
        AppendMatches(navDatabase.intersections, ident, found);
    }
    if (all || category == SearchCategory::Airports) {
        AppendMatches(navDatabase.airports, ident, found);
    }
    results = std::move(found);
}

std::int32_t NearestResult(const SearchResults& results) {
    std::int32_t nearest = 0;
    double nearestNm = 0;
    for (std::int32_t i = 1; i <= results.count; ++i) {
        const double distanceNm = GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude,
                                                        results[i].latitude, results[i].longitude);
        if (nearest == 0 || distanceNm < nearestNm) {
            nearest = i;
            nearestNm = distanceNm;
        }
    }
    return nearest;
}

std::int32_t FindNavaid(std::string_view ident, std::string_view kind, double latitude) {
    if (ident.empty()) {
        return 0;
    }
    std::int32_t group = 1;
    while (group <= navDatabase.letterGroupCount &&
           navDatabase.letterIndex[static_cast<std::size_t>(group)].letter != ident.front()) {
        ++group;
    }
    if (group > navDatabase.letterGroupCount) {
        return 0;
    }
    const PointTable& navaids = navDatabase.navaids;
    const std::int32_t wholeDegrees = TruncateToInteger(latitude);
    for (std::int32_t i = navDatabase.letterIndex[static_cast<std::size_t>(group)].firstIndex;
         i <= navaids.count && navaids.Ident(i).starts_with(ident.front()); ++i) {
        if (navaids.Ident(i) != ident) {
            continue;
        }
        const Navaid navaid = navaids[i];
        if (KindMatches(navaid, kind) && TruncateToInteger(navaid.latitude) == wholeDegrees) {
            return i;
        }
    }
    return 0;
}

}  // namespace avq1
