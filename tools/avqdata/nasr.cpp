#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "avqdata/airway_pieces.h"
#include "avqdata/csv_table.h"
#include "avqdata/cycle.h"
#include "avqdata/importers.h"
#include "avqdata/text_tools.h"
#include "avqdata/variation.h"

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

// The points of airways are in one of two tables: a row a point, or a row a leg.
const std::vector<std::string> kPointColumns{"AWY_LOCATION", "AWY_ID",   "POINT_SEQ",
                                             "SEG_VALUE",    "SEG_TYPE", "AWY_SEG_GAP_FLAG"};
const std::vector<std::string> kLegColumns{"AWY_LOCATION", "AWY_ID",       "POINT_SEQ",
                                           "FROM_POINT",   "FROM_PT_TYPE", "AWY_SEG_GAP_FLAG",
                                           "TO_POINT"};
enum AirwayColumn { kLocation, kAirwayId, kSequence, kSegValue, kSegType, kGap, kToPoint };

const std::vector<std::string> kAirportColumns{"ARPT_ID",   "ICAO_ID",      "SITE_TYPE_CODE",
                                               "ARPT_NAME", "LAT_DECIMAL",  "LONG_DECIMAL",
                                               "ELEV",      "?ARPT_STATUS", "?SITE_NO"};
enum AirportColumn {
    kArptId,
    kIcaoId,
    kSiteType,
    kArptName,
    kArptLatitude,
    kArptLongitude,
    kElev,
    kStatus,
    kSite
};

const std::vector<std::string> kRunwayColumns{"SITE_NO", "RWY_ID", "RWY_LEN", "?SURFACE_TYPE_CODE"};
enum RunwayColumn { kRunwaySite, kRunwayId, kRunwayLength, kRunwaySurface };

const std::vector<std::string> kEndColumns{"SITE_NO",
                                           "RWY_ID",
                                           "RWY_END_ID",
                                           "TRUE_ALIGNMENT",
                                           "LAT_DECIMAL",
                                           "LONG_DECIMAL",
                                           "?LAT_DISPLACED_THR_DECIMAL",
                                           "?LONG_DISPLACED_THR_DECIMAL"};
enum EndColumn {
    kEndSite,
    kEndRunway,
    kEndId,
    kAlignment,
    kEndLatitude,
    kEndLongitude,
    kThresholdLatitude,
    kThresholdLongitude
};

// What an airway can run over, by identifier and type; fixes have the type "".
using Points = std::multimap<std::pair<std::string, std::string>, LatLon>;

void AddFault(Report& report, std::string_view file, const CsvRow& row, const std::string& ident) {
    report.Add(Topic::Fault, "records that make no sense", AtLine(file, row.number, ident));
}

bool Prefixed(bool ok, std::string_view file, std::string& error) {
    if (!ok) {
        error = std::string(file) + ": " + error;
    }
    return ok;
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

constexpr const char* kAnyType = "?";

struct AirwayRow {
    int sequence = 0;
    std::string ident;
    std::string type;
    bool gapBehind = false;
    std::size_t number = 0;
    std::string next;  // of a row a leg: where it ends
};

// The point of that name nearest to the one before; identifiers are used more than once.
std::optional<LatLon> FindPoint(const Points& points, const AirwayRow& row,
                                const std::optional<LatLon>& previous) {
    std::optional<LatLon> best;
    const auto take = [&](Points::const_iterator first, Points::const_iterator last) {
        for (auto point = first; point != last; ++point) {
            if (!best ||
                (previous && DistanceNm(*previous, point->second) < DistanceNm(*previous, *best))) {
                best = point->second;
            }
        }
    };
    if (row.type == kAnyType) {
        take(points.lower_bound({row.ident, ""}), points.lower_bound({row.ident + '\0', ""}));
        return best;
    }
    for (const std::string& type : {row.type, std::string()}) {
        const auto [first, last] = points.equal_range({row.ident, type});
        take(first, last);
        if (best) {
            break;
        }
    }
    return best;
}

// Rows a leg as rows a point: the end of a leg that the next one does not begin at follows it.
std::vector<AirwayRow> PointsOfLegs(const std::vector<AirwayRow>& legs) {
    std::vector<AirwayRow> rows;
    for (std::size_t i = 0; i < legs.size(); ++i) {
        rows.push_back(legs[i]);
        const bool ends = i + 1 == legs.size() || legs[i + 1].ident != legs[i].next;
        if (ends && !legs[i].next.empty() && !legs[i].gapBehind) {
            const bool isPoint = IsIdent(legs[i].next);  // else where a border is crossed
            rows.push_back({legs[i].sequence, legs[i].next, isPoint ? kAnyType : "", isPoint,
                            legs[i].number, ""});
        }
    }
    return rows;
}

void BuildAirway(const std::string& name, std::vector<AirwayRow>& rows, const Points& points,
                 Report& report, Dataset& data) {
    std::stable_sort(rows.begin(), rows.end(), [](const AirwayRow& a, const AirwayRow& b) {
        return a.sequence < b.sequence;
    });
    rows = PointsOfLegs(rows);
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

bool ReadAirways(const NasrTexts& texts, const Points& points, Report& report, Dataset& data,
                 std::string& error) {
    const bool areLegs = texts.airways.empty();
    const char* const file = areLegs ? "AWY_SEG_ALT.csv" : "AWY_SEG.csv";
    std::map<std::pair<std::string, std::string>, std::vector<AirwayRow>> airways;
    const auto addRow = [&](const CsvRow& row) {
        const std::optional<int> sequence = WholeNumber(row[kSequence]);
        if (!sequence || !IsIdent(row[kAirwayId])) {
            AddFault(report, file, row, "is no airway point: " + row[kAirwayId]);
            return;
        }
        airways[{row[kAirwayId], row[kLocation]}].push_back(
            {*sequence, row[kSegValue], std::string(Trim(row[kSegType])), row[kGap] == "Y",
             row.number, areLegs ? row[kToPoint] : ""});
    };
    if (!ReadCsv(areLegs ? texts.airwayLegs : texts.airways, areLegs ? kLegColumns : kPointColumns,
                 addRow, error)) {
        error = std::string(file) + ": " + error;
        return false;
    }
    for (auto& [key, rows] : airways) {
        BuildAirway(key.first, rows, points, report, data);
    }
    if (data.airways.empty()) {
        error = std::string(file) + ": gives no airway";
        return false;
    }
    return true;
}

// Airports by the number of their site.
using Sites = std::map<std::string, std::size_t>;

void AddAirport(const CsvRow& row, Report& report, Dataset& data, Sites& sites) {
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
    sites.emplace(row[kSite], data.airports.size());
    data.airports.push_back({ident, Token(row[kArptName]), Rounded(*elevation), *at, {}, false});
}

struct RunwayFacts {
    int lengthFt = 0;
    bool paved = false;
};
using RunwayTable = std::map<std::pair<std::string, std::string>, RunwayFacts>;

struct EndRow {
    RunwayEnd end;
    LatLon pavementEnd;
    bool hasCourse = false;
};
using EndTable = std::map<std::pair<std::string, std::string>, std::vector<EndRow>>;

void AddEnd(const CsvRow& row, Report& report, EndTable& ends) {
    EndRow entry;
    entry.end.ident = RunwayName(row[kEndId]);
    const std::optional<LatLon> at = Position(row[kEndLatitude], row[kEndLongitude]);
    if (!at || !IsRunwayIdent(entry.end.ident)) {
        report.Add(Topic::Dropped,
                   at ? "runway ends without a number" : "runway ends without a position");
        return;
    }
    entry.pavementEnd = *at;
    entry.end.at = Position(row[kThresholdLatitude], row[kThresholdLongitude]).value_or(*at);
    const std::optional<double> course = Number(row[kAlignment]);
    entry.hasCourse = course.has_value();
    entry.end.headingTrue = course.value_or(0);
    entry.end.needsVariation = true;
    ends[{row[kEndSite], row[kEndRunway]}].push_back(std::move(entry));
}

// The published direction is in whole degrees: both ends, where known, tell it better.
void TieRunways(const RunwayTable& runways, EndTable& ends, const Sites& sites, Report& report,
                Dataset& data) {
    for (auto& [key, pair] : ends) {
        const auto site = sites.find(key.first);
        if (site == sites.end()) {
            continue;  // of a field that was left out
        }
        Airport& airport = data.airports[site->second];
        const auto facts = runways.find(key);
        for (std::size_t i = 0; i < pair.size(); ++i) {
            const bool both =
                pair.size() == 2 && DistanceNm(pair[0].pavementEnd, pair[1].pavementEnd) > 0;
            if (facts == runways.end() || (!both && !pair[i].hasCourse)) {
                report.Add(Topic::Dropped, "runway ends without a length or direction",
                           airport.ident + " " + pair[i].end.ident);
                continue;
            }
            RunwayEnd& end = pair[i].end;
            if (both) {
                end.headingTrue = CourseTrue(pair[i].pavementEnd, pair[1 - i].pavementEnd);
            }
            end.lengthFt = facts->second.lengthFt;
            airport.paved = airport.paved || facts->second.paved;
            airport.runways.push_back(end);
        }
    }
}

bool ReadRunways(const NasrTexts& texts, const Sites& sites, Report& report, Dataset& data,
                 std::string& error) {
    RunwayTable runways;
    EndTable ends;
    const auto addRunway = [&](const CsvRow& row) {
        const std::string& surface = row[kRunwaySurface];
        runways[{row[kRunwaySite], row[kRunwayId]}] = {
            Rounded(Number(row[kRunwayLength]).value_or(0)),
            surface.starts_with("ASPH") || surface.starts_with("CONC")};
    };
    const auto addEnd = [&](const CsvRow& row) { AddEnd(row, report, ends); };
    if (!Prefixed(ReadCsv(texts.runways, kRunwayColumns, addRunway, error), "APT_RWY.csv", error) ||
        !Prefixed(ReadCsv(texts.runwayEnds, kEndColumns, addEnd, error), "APT_RWY_END.csv",
                  error)) {
        return false;
    }
    TieRunways(runways, ends, sites, report, data);
    return true;
}

}  // namespace

bool ReadNasr(const NasrTexts& texts, Report& report, Dataset& data, std::string& error) {
    Points points;
    const auto addNavaid = [&](const CsvRow& row) {
        data.cycle = data.cycle == 0 ? CycleOfDateText(row[kNavDate]) : data.cycle;
        AddNavaid(row, report, data, points);
    };
    if (!Prefixed(ReadCsv(texts.navaids, kNavColumns, addNavaid, error), "NAV_BASE.csv", error)) {
        return false;
    }
    const auto addFix = [&](const CsvRow& row) { AddFix(row, report, data, points); };
    if (!Prefixed(ReadCsv(texts.fixes, kFixColumns, addFix, error), "FIX_BASE.csv", error)) {
        return false;
    }
    if (!(texts.airways.empty() && texts.airwayLegs.empty()) &&
        !ReadAirways(texts, points, report, data, error)) {
        return false;
    }
    if (texts.airports.empty()) {
        return true;
    }
    Sites sites;
    const auto addAirport = [&](const CsvRow& row) { AddAirport(row, report, data, sites); };
    return Prefixed(ReadCsv(texts.airports, kAirportColumns, addAirport, error), "APT_BASE.csv",
                    error) &&
           (texts.runways.empty() || texts.runwayEnds.empty() ||
            ReadRunways(texts, sites, report, data, error));
}

bool ImportNasr(const SourceFiles& files, const ImportContext& context, Dataset& data,
                std::string& error) {
    struct SourceRow {
        SourceKind kind;
        const char* name;
        std::string NasrTexts::*text;
        bool needed;
    };
    constexpr std::array<SourceRow, 7> kSources{{
        {SourceKind::NasrNavaids, "NAV_BASE.csv", &NasrTexts::navaids, true},
        {SourceKind::NasrFixes, "FIX_BASE.csv", &NasrTexts::fixes, true},
        {SourceKind::NasrAirways, "AWY_SEG.csv", &NasrTexts::airways, false},
        {SourceKind::NasrAirwayLegs, "AWY_SEG_ALT.csv", &NasrTexts::airwayLegs, false},
        {SourceKind::NasrAirports, "APT_BASE.csv", &NasrTexts::airports, false},
        {SourceKind::NasrRunways, "APT_RWY.csv", &NasrTexts::runways, false},
        {SourceKind::NasrRunwayEnds, "APT_RWY_END.csv", &NasrTexts::runwayEnds, false},
    }};
    NasrTexts texts;
    for (const SourceRow& source : kSources) {
        const FoundFile* const file = FileOf(files, source.kind);
        if (file == nullptr && source.needed) {
            error = std::string("NASR's data comes without ") + source.name;
            return false;
        }
        if (file == nullptr) {
            context.report.Add(Topic::Warning, "files that are not in the folder", source.name);
            continue;
        }
        if (context.progress) {
            context.progress(source.name, 0);
        }
        if (!ReadSourceFile(file->file, texts.*source.text, error)) {
            return false;
        }
    }
    if (texts.airways.empty() && texts.airwayLegs.empty()) {
        error = "NASR's data comes with neither AWY_SEG.csv nor AWY_SEG_ALT.csv: no airways";
        return false;
    }
    if (!ReadNasr(texts, context.report, data, error)) {
        return false;
    }
    FillHeadings(context.CycleFor(data.cycle), data, context.report);
    return true;
}

}  // namespace avqdata
