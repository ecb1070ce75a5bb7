#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>

#include "avqdata/csv_table.h"
#include "avqdata/importers.h"
#include "avqdata/text_tools.h"
#include "avqdata/variation.h"
#include "base/text.h"

namespace avqdata {
namespace {

constexpr double kFeetPerNm = 6076.12;

void AddFault(Report& report, std::string_view file, const CsvRow& row, std::string_view text) {
    report.Add(Topic::Fault, "records that make no sense", AtLine(file, row.number, text));
}

const std::vector<std::string> kAirportColumns{
    "id",           "ident", "type",     "latitude_deg", "longitude_deg",
    "elevation_ft", "name",  "gps_code", "?icao_code",   "?iso_country"};
enum AirportColumn {
    kId,
    kIdent,
    kType,
    kLatitude,
    kLongitude,
    kElevation,
    kName,
    kGps,
    kIcao,
    kCountry
};

const std::vector<std::string> kRunwayColumns{
    "airport_ref", "length_ft",       "surface",          "closed",
    "le_ident",    "le_latitude_deg", "le_longitude_deg", "le_displaced_threshold_ft",
    "he_ident",    "he_latitude_deg", "he_longitude_deg", "he_displaced_threshold_ft"};
enum RunwayColumn { kAirportRef, kLength, kSurface, kClosed, kLowEnd, kHighEnd = kLowEnd + 4 };

const std::vector<std::string> kNavaidColumns{"ident",
                                              "name",
                                              "type",
                                              "frequency_khz",
                                              "latitude_deg",
                                              "longitude_deg",
                                              "?magnetic_variation_deg",
                                              "?iso_country"};
enum NavaidColumn {
    kNavIdent,
    kNavName,
    kNavType,
    kNavKhz,
    kNavLatitude,
    kNavLongitude,
    kNavVariation,
    kNavCountry
};

bool IsPaved(std::string surface) {
    std::transform(surface.begin(), surface.end(), surface.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    constexpr std::array<std::string_view, 6> kPaved{"ASP", "CON", "PEM", "BIT", "MAC", "PAV"};
    return std::any_of(kPaved.begin(), kPaved.end(),
                       [&](std::string_view paved) { return surface.starts_with(paved); });
}

std::string AirportIdent(const CsvRow& row) {
    for (const int column : {kIcao, kGps, kIdent}) {
        if (IsIcaoCode(row[static_cast<std::size_t>(column)])) {
            return row[static_cast<std::size_t>(column)];
        }
    }
    return row[kGps].empty() ? row[kIdent] : row[kGps];
}

// Both landing directions of a runway; nothing when its ends are not known.
std::vector<RunwayEnd> RunwayEnds(const CsvRow& row, Report& report) {
    std::array<std::optional<LatLon>, 2> at;
    std::array<std::string, 2> names;
    for (std::size_t i = 0; i < 2; ++i) {
        const std::size_t first = i == 0 ? kLowEnd : kHighEnd;
        names[i] = RunwayName(row[first]);
        at[i] = Position(row[first + 1], row[first + 2]);
    }
    if (!at[0] || !at[1]) {
        report.Add(Topic::Dropped, "runways without threshold positions");
        return {};
    }
    if (!IsRunwayIdent(names[0]) || !IsRunwayIdent(names[1])) {
        report.Add(Topic::Dropped, "runways without a number");
        return {};
    }
    std::vector<RunwayEnd> ends(2);
    for (std::size_t i = 0; i < 2; ++i) {
        RunwayEnd& end = ends[i];
        end.ident = names[i];
        const double measuredFt = DistanceNm(*at[0], *at[1]) * kFeetPerNm;
        end.lengthFt = WholeNumber(row[kLength]).value_or(Rounded(measuredFt));
        end.headingTrue = CourseTrue(*at[i], *at[1 - i]);
        end.needsVariation = true;
        const double displacedFt = Number(row[(i == 0 ? kLowEnd : kHighEnd) + 3]).value_or(0);
        avq1::PointAtDistance(at[i]->latitude, at[i]->longitude, end.headingTrue,
                              displacedFt / kFeetPerNm, end.at.latitude, end.at.longitude);
    }
    return ends;
}

bool IsOfCountries(const ImportOptions& options, const std::string& country) {
    return options.countries.empty() ||
           std::find(options.countries.begin(), options.countries.end(), country) !=
               options.countries.end();
}

void AddAirport(const CsvRow& row, const ImportContext& context, Dataset& data,
                std::unordered_map<std::string, std::size_t>& byId) {
    Report& report = context.report;
    if (!IsOfCountries(context.options, row[kCountry])) {
        report.Add(Topic::Dropped, "airports of other countries");
        return;
    }
    if (!row[kType].ends_with("_airport")) {
        report.Add(Topic::Dropped, "heliports, seaplane bases, balloon ports, closed airports");
        return;
    }
    const std::optional<LatLon> at = Position(row[kLatitude], row[kLongitude]);
    const std::string ident = AirportIdent(row);
    if (!at || !IsIdent(ident)) {
        AddFault(report, "airports.csv", row, "is no airport: " + ident);
        return;
    }
    byId.emplace(row[kId], data.airports.size());
    const double elevation = Number(row[kElevation]).value_or(0);
    if (Trim(row[kElevation]).empty()) {
        report.Add(Topic::Warning, "airports without an elevation: taken as 0", ident);
    }
    data.airports.push_back({ident, Token(row[kName]), Rounded(elevation), *at, {}, false});
}

}  // namespace

bool ReadOurAirports(std::string_view airports, std::string_view runways,
                     const ImportContext& context, Dataset& data, std::string& error) {
    Report& report = context.report;
    std::unordered_map<std::string, std::size_t> byId;
    std::string fault;
    if (!ReadCsv(
            airports, kAirportColumns,
            [&](const CsvRow& row) { AddAirport(row, context, data, byId); }, fault)) {
        error = "airports.csv: " + fault;
        return false;
    }
    const auto addRunway = [&](const CsvRow& row) {
        const auto found = byId.find(row[kAirportRef]);
        if (found == byId.end()) {
            return;
        }
        if (row[kClosed] == "1") {
            report.Add(Topic::Dropped, "closed runways");
            return;
        }
        Airport& airport = data.airports[found->second];
        const std::vector<RunwayEnd> ends = RunwayEnds(row, report);
        airport.paved = airport.paved || (!ends.empty() && IsPaved(row[kSurface]));
        airport.runways.insert(airport.runways.end(), ends.begin(), ends.end());
    };
    if (!ReadCsv(runways, kRunwayColumns, addRunway, fault)) {
        error = "runways.csv: " + fault;
        return false;
    }
    return true;
}

bool ReadOurNavaids(std::string_view navaids, const ImportContext& context, Dataset& data,
                    std::string& error) {
    Report& report = context.report;
    const auto addNavaid = [&](const CsvRow& row) {
        const std::optional<LatLon> at = Position(row[kNavLatitude], row[kNavLongitude]);
        const std::optional<double> khz = Number(row[kNavKhz]);
        const std::string& type = row[kNavType];
        if (!at || !khz || !IsIdent(row[kNavIdent])) {
            AddFault(report, "navaids.csv", row, "is no navaid: " + row[kNavIdent]);
            return;
        }
        const std::optional<double> variation = Number(row[kNavVariation]);
        if (variation && std::abs(*variation) <= 180) {
            data.variations.push_back({*at, *variation});
        }
        if (!IsOfCountries(context.options, row[kNavCountry])) {
            report.Add(Topic::Dropped, "navaids of other countries");
            return;
        }
        const bool isVor = type.starts_with("VOR");
        if (isVor || type.starts_with("NDB")) {
            data.stations.push_back({row[kNavIdent], avq1::ToUpper(Token(row[kNavName])), *at,
                                     isVor, isVor ? Megahertz(*khz / 1000) : Kilohertz(*khz)});
        } else {  // DME and TACAN stations give no bearing
            data.fixes.push_back({row[kNavIdent], *at});
        }
    };
    std::string fault;
    if (!ReadCsv(navaids, kNavaidColumns, addNavaid, fault)) {
        error = "navaids.csv: " + fault;
        return false;
    }
    return true;
}

bool ImportOurAirports(const std::string& folder, const ImportContext& context, Dataset& data,
                       std::string& error) {
    std::array<std::string, 3> texts;
    const std::array<std::string, 3> names{"airports.csv", "runways.csv", "navaids.csv"};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string path = FindSource(folder, {names[i]});
        if (path.empty()) {
            error = folder + ": holds no " + names[i];
            return false;
        }
        if (context.progress) {
            context.progress(names[i], 0);
        }
        if (!ReadSourceFile(path, texts[i], error)) {
            return false;
        }
    }
    if (!ReadOurNavaids(texts[2], context, data, error) ||
        !ReadOurAirports(texts[0], texts[1], context, data, error)) {
        return false;
    }
    FillHeadings(data, context.report);
    return true;
}

}  // namespace avqdata
