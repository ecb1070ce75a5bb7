#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "avqdata/airway_pieces.h"
#include "avqdata/csv_table.h"
#include "avqdata/cycle.h"
#include "avqdata/importers.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

const std::vector<std::string> kNavColumns{
    "EFF_DATE", "NAV_ID", "NAV_TYPE", "NAME", "LAT_DECIMAL", "LONG_DECIMAL", "FREQ", "?STATE_CODE"};
enum NavColumn {
    kNavDate,
    kNavId,
    kNavType,
    kNavName,
    kNavLatitude,
    kNavLongitude,
    kFreq,
    kNavState
};

const std::vector<std::string> kFixColumns{"FIX_ID", "LAT_DECIMAL", "LONG_DECIMAL",
                                           "?ICAO_REGION_CODE", "?FIX_USE_CODE"};
enum FixColumn { kFixId, kFixLatitude, kFixLongitude, kFixRegion, kFixUse };

const std::vector<std::string> kAirwayColumns{"AWY_LOCATION", "AWY_ID",   "POINT_SEQ",
                                              "SEG_VALUE",    "SEG_TYPE", "AWY_SEG_GAP_FLAG"};
enum AirwayColumn { kLocation, kAirwayId, kSequence, kSegValue, kSegType, kGap };

const std::vector<std::string> kAirportColumns{"ARPT_ID",   "ICAO_ID",     "SITE_TYPE_CODE",
                                               "ARPT_NAME", "LAT_DECIMAL", "LONG_DECIMAL",
                                               "ELEV",      "?ARPT_STATUS"};
enum AirportColumn {
    kArptId,
    kIcaoId,
    kSiteType,
    kArptName,
    kArptLatitude,
    kArptLongitude,
    kElev,
    kStatus
};

// What an airway can run over, by identifier and type; fixes have the type "".
using Points = std::multimap<std::pair<std::string, std::string>, LatLon>;

void AddFault(Report& report, std::string_view file, const CsvRow& row, const std::string& ident) {
    report.Add(Topic::Fault, "records that make no sense", AtLine(file, row.number, ident));
}

int CycleOfText(std::string_view date) {  // "2023/09/07"
    if (date.size() != 10) {
        return 0;
    }
    return CycleOfDate(WholeNumber(date.substr(0, 4)).value_or(0),
                       WholeNumber(date.substr(5, 2)).value_or(0),
                       WholeNumber(date.substr(8, 2)).value_or(0))
        .value_or(0);
}

void AddNavaid(const CsvRow& row, Report& report, Dataset& data, Points& points) {
    constexpr std::array<std::string_view, 5> kTypes{"VOR", "VOR/DME", "VORTAC", "NDB", "NDB/DME"};
    const std::string type(Trim(row[kNavType]));
    const bool bearing = std::find(kTypes.begin(), kTypes.end(), type) != kTypes.end();
    const bool distance = type == "DME" || type == "TACAN";
    if (!bearing && !distance) {
        report.Add(Topic::Dropped, "test stations, fan markers and marine beacons");
        return;
    }
    const std::optional<LatLon> at = Position(row[kNavLatitude], row[kNavLongitude]);
    const std::optional<double> frequency = Number(row[kFreq]);
    if (!at || (bearing && !frequency) || !IsIdent(row[kNavId])) {
        AddFault(report, "NAV_BASE.csv", row, "is no navaid: " + row[kNavId]);
        return;
    }
    points.insert({{row[kNavId], type}, *at});
    if (!bearing) {
        data.fixes.push_back({row[kNavId], *at});
        return;
    }
    const bool isVor = type.starts_with("VOR");
    data.stations.push_back({row[kNavId], Token(row[kNavName]), *at, isVor,
                             isVor ? Megahertz(*frequency) : Kilohertz(*frequency)});
}

void AddFix(const CsvRow& row, Report& report, Dataset& data, Points& points) {
    const std::optional<LatLon> at = Position(row[kFixLatitude], row[kFixLongitude]);
    if (!at || !IsIdent(row[kFixId])) {
        AddFault(report, "FIX_BASE.csv", row, "is no fix: " + row[kFixId]);
        return;
    }
    points.insert({{row[kFixId], ""}, *at});
    if (Trim(row[kFixUse]) == "RADAR") {
        report.Add(Topic::Dropped, "fixes for radar only");
        return;
    }
    data.fixes.push_back({row[kFixId], *at});
}

struct AirwayRow {
    int sequence = 0;
    std::string ident;
    std::string type;
    bool gapBehind = false;
    std::size_t number = 0;
};

// The point of that name nearest to the one before; identifiers are used more than once.
std::optional<LatLon> FindPoint(const Points& points, const AirwayRow& row,
                                const std::optional<LatLon>& previous) {
    std::optional<LatLon> best;
    for (const std::string& type : {row.type, std::string()}) {
        const auto [first, last] = points.equal_range({row.ident, type});
        for (auto point = first; point != last; ++point) {
            if (!best ||
                (previous && DistanceNm(*previous, point->second) < DistanceNm(*previous, *best))) {
                best = point->second;
            }
        }
        if (best) {
            break;
        }
    }
    return best;
}

void BuildAirway(const std::string& name, std::vector<AirwayRow>& rows, const Points& points,
                 Report& report, Dataset& data) {
    std::stable_sort(rows.begin(), rows.end(), [](const AirwayRow& a, const AirwayRow& b) {
        return a.sequence < b.sequence;
    });
    Airway piece{name, {}};
    const auto close = [&] {
        if (piece.points.size() > 1) {
            data.airways.push_back(piece);
        }
        piece.points.clear();
    };
    std::optional<LatLon> previous;
    for (const AirwayRow& row : rows) {
        if (row.type
                .empty()) {  // where it crosses a border: no fix, and what follows is not flown on
            close();
            continue;
        }
        const std::optional<LatLon> at = FindPoint(points, row, previous);
        if (!at || !IsIdent(row.ident)) {
            report.Add(Topic::Unresolved, "airway points that are not in the source",
                       AtLine("AWY_SEG.csv", row.number, name + " " + row.ident));
            close();
            continue;
        }
        piece.points.push_back({row.ident, *at});
        previous = at;
        if (row.gapBehind) {
            close();
        }
    }
    close();
}

bool ReadAirways(std::string_view text, const Points& points, Report& report, Dataset& data,
                 std::string& error) {
    std::map<std::pair<std::string, std::string>, std::vector<AirwayRow>> airways;
    const auto addRow = [&](const CsvRow& row) {
        const std::optional<int> sequence = WholeNumber(row[kSequence]);
        if (!sequence || !IsIdent(row[kAirwayId])) {
            AddFault(report, "AWY_SEG.csv", row, "is no airway point: " + row[kAirwayId]);
            return;
        }
        airways[{row[kAirwayId], row[kLocation]}].push_back({*sequence, row[kSegValue],
                                                             std::string(Trim(row[kSegType])),
                                                             row[kGap] == "Y", row.number});
    };
    if (!ReadCsv(text, kAirwayColumns, addRow, error)) {
        return false;
    }
    for (auto& [key, rows] : airways) {
        BuildAirway(key.first, rows, points, report, data);
    }
    return true;
}

void AddAirport(const CsvRow& row, Report& report, Dataset& data) {
    if (row[kSiteType] != "A" || (!row[kStatus].empty() && row[kStatus] != "O")) {
        report.Add(Topic::Dropped, "heliports, seaplane bases, glider and closed fields");
        return;
    }
    const std::optional<LatLon> at = Position(row[kArptLatitude], row[kArptLongitude]);
    const std::string& ident = row[kIcaoId].empty() ? row[kArptId] : row[kIcaoId];
    const std::optional<double> elevation = Number(row[kElev]);
    if (!at || !elevation || !IsIdent(ident)) {
        AddFault(report, "APT_BASE.csv", row, "is no airport: " + ident);
        return;
    }
    data.airports.push_back({ident, Token(row[kArptName]), Rounded(*elevation), *at, {}, false});
}

// The FAA writes Latin-1; names outside ASCII are few, and tokens drop what is not ASCII anyway.
bool Prefixed(bool ok, std::string_view file, std::string& error) {
    if (!ok) {
        error = std::string(file) + ": " + error;
    }
    return ok;
}

}  // namespace

bool ReadNasr(const NasrTexts& texts, Report& report, Dataset& data, std::string& error) {
    Points points;
    const auto addNavaid = [&](const CsvRow& row) {
        data.cycle = data.cycle == 0 ? CycleOfText(row[kNavDate]) : data.cycle;
        AddNavaid(row, report, data, points);
    };
    if (!Prefixed(ReadCsv(texts.navaids, kNavColumns, addNavaid, error), "NAV_BASE.csv", error)) {
        return false;
    }
    const auto addFix = [&](const CsvRow& row) { AddFix(row, report, data, points); };
    if (!Prefixed(ReadCsv(texts.fixes, kFixColumns, addFix, error), "FIX_BASE.csv", error)) {
        return false;
    }
    if (!texts.airways.empty() &&
        !Prefixed(ReadAirways(texts.airways, points, report, data, error), "AWY_SEG.csv", error)) {
        return false;
    }
    const auto addAirport = [&](const CsvRow& row) { AddAirport(row, report, data); };
    return texts.airports.empty() ||
           Prefixed(ReadCsv(texts.airports, kAirportColumns, addAirport, error), "APT_BASE.csv",
                    error);
}

bool ImportNasr(const std::string& folder, const ImportContext& context, Dataset& data,
                std::string& error) {
    struct SourceRow {
        const char* name;
        std::string NasrTexts::*text;
        bool needed;
    };
    constexpr std::array<SourceRow, 4> kSources{{
        {"NAV_BASE.csv", &NasrTexts::navaids, true},
        {"FIX_BASE.csv", &NasrTexts::fixes, true},
        {"AWY_SEG.csv", &NasrTexts::airways, false},
        {"APT_BASE.csv", &NasrTexts::airports, false},
    }};
    NasrTexts texts;
    for (const SourceRow& source : kSources) {
        const std::string path = FindSource(folder, {source.name});
        if (path.empty() && source.needed) {
            error = folder + ": holds no " + source.name;
            return false;
        }
        if (path.empty()) {
            context.report.Add(Topic::Warning, "files that are not in the folder", source.name);
            continue;
        }
        if (context.progress) {
            context.progress(source.name, 0);
        }
        if (!ReadSourceFile(path, texts.*source.text, error)) {
            return false;
        }
    }
    return ReadNasr(texts, context.report, data, error);
}

}  // namespace avqdata
