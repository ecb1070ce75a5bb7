#include <algorithm>
#include <array>
#include <cmath>
#include <unordered_map>
#include <utility>

#include "avqdata/clean.h"
#include "avqdata/csv_table.h"
#include "avqdata/cycle.h"
#include "avqdata/importers.h"
#include "avqdata/text_tools.h"
#include "avqdata/variation.h"
#include "base/text.h"
#include "magneticfield/magnetic_field.h"

namespace avqdata {
namespace {

constexpr double kFeetPerNm = 6076.12;

void AddFault(Report& report, std::string_view file, const CsvRow& row, std::string_view text) {
    report.Add(Topic::Fault, "records that make no sense", AtLine(file, row.number, text));
}

const std::vector<std::string> kAirportColumns{
    "id",   "ident",    "type",       "latitude_deg", "longitude_deg",     "elevation_ft",
    "name", "gps_code", "?icao_code", "?iso_country", "?scheduled_service"};
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
    kCountry,
    kScheduled
};

const std::vector<std::string> kRunwayColumns{"airport_ref",
                                              "length_ft",
                                              "surface",
                                              "closed",
                                              "le_ident",
                                              "le_latitude_deg",
                                              "le_longitude_deg",
                                              "le_displaced_threshold_ft",
                                              "?le_heading_degT",
                                              "he_ident",
                                              "he_latitude_deg",
                                              "he_longitude_deg",
                                              "he_displaced_threshold_ft",
                                              "?he_heading_degT"};
// Of either end: designator, latitude, longitude, displacement, heading.
enum RunwayColumn { kAirportRef, kLength, kSurface, kClosed, kLowEnd, kHighEnd = kLowEnd + 5 };
constexpr std::size_t kDisplacement = 3;
constexpr std::size_t kHeading = 4;

const std::vector<std::string> kNavaidColumns{
    "ident", "name", "type", "frequency_khz", "latitude_deg", "longitude_deg", "?iso_country"};
enum NavaidColumn {
    kNavIdent,
    kNavName,
    kNavType,
    kNavKhz,
    kNavLatitude,
    kNavLongitude,
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

LatLon Along(const LatLon& from, double courseTrue, double distanceFt) {
    LatLon to;
    avq1::PointAtDistance(from.latitude, from.longitude, courseTrue, distanceFt / kFeetPerNm,
                          to.latitude, to.longitude);
    return to;
}

// The true direction of the runway from its low end: as the table says of either end, else as it is
// numbered by the compass.
double RunwayCourse(const CsvRow& row, const std::string& lowName, const Airport& airport,
                    double year) {
    if (const std::optional<double> low = Number(row[kLowEnd + kHeading])) {
        return Normalized(*low);
    }
    if (const std::optional<double> high = Number(row[kHighEnd + kHeading])) {
        return Normalized(*high + 180);
    }
    const double number = WholeNumber(lowName.substr(0, 2)).value_or(0);
    return Normalized(number * 10 +
                      magneticfield::Variation(airport.at.latitude, airport.at.longitude, year));
}

// Gives a runway's ends their places: those that are missing by its length and direction from the
// other end, or from the middle at the airport's position. False when there is no length.
bool PlaceEnds(const CsvRow& row, const std::string& lowName, const Airport& airport, double year,
               std::array<std::optional<LatLon>, 2>& at) {
    const std::optional<double> lengthFt = Number(row[kLength]);
    if (!lengthFt || *lengthFt < kShortestRunwayFt || *lengthFt > kLongestRunwayFt) {
        return false;
    }
    const double course = RunwayCourse(row, lowName, airport, year);
    if (!at[0] && !at[1]) {
        at[0] = Along(airport.at, course + 180, *lengthFt / 2);
    }
    if (!at[0]) {
        at[0] = Along(*at[1], course + 180, *lengthFt);
    } else {
        at[1] = Along(*at[0], course, *lengthFt);
    }
    return true;
}

// Both landing directions of a runway; nothing when its ends cannot be placed.
std::vector<RunwayEnd> RunwayEnds(const CsvRow& row, const Airport& airport, double year,
                                  Report& report) {
    std::array<std::optional<LatLon>, 2> at;
    std::array<std::string, 2> names;
    for (std::size_t i = 0; i < 2; ++i) {
        const std::size_t first = i == 0 ? kLowEnd : kHighEnd;
        names[i] = RunwayName(row[first]);
        at[i] = Position(row[first + 1], row[first + 2]);
    }
    if (!IsRunwayIdent(names[0]) || !IsRunwayIdent(names[1])) {
        report.Add(Topic::Dropped, "runways without a number");
        return {};
    }
    if (!at[0] || !at[1]) {
        if (!PlaceEnds(row, names[0], airport, year, at)) {
            report.Add(Topic::Dropped, "runways without threshold positions or a length",
                       airport.ident + " " + names[0]);
            return {};
        }
        report.Add(Topic::Warning,
                   "runways placed by length and direction, as their thresholds are not known",
                   airport.ident + " " + names[0]);
    }
    std::vector<RunwayEnd> ends(2);
    for (std::size_t i = 0; i < 2; ++i) {
        RunwayEnd& end = ends[i];
        end.ident = names[i];
        const double measuredFt = DistanceNm(*at[0], *at[1]) * kFeetPerNm;
        end.lengthFt = WholeNumber(row[kLength]).value_or(Rounded(measuredFt));
        end.headingTrue = CourseTrue(*at[i], *at[1 - i]);
        end.needsVariation = true;
        const std::size_t first = i == 0 ? kLowEnd : kHighEnd;
        end.at = Along(*at[i], end.headingTrue, Number(row[first + kDisplacement]).value_or(0));
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
    data.airports.push_back(
        {ident, Token(row[kName]), Rounded(elevation), *at, {}, false, row[kScheduled] == "yes"});
}

// Of several with one code: the one with runways, then with airlines, then the first of the list.
void DropTwins(std::vector<Airport>& airports, Report& report) {
    const auto rank = [](const Airport& airport) {
        return std::pair(!airport.runways.empty(), airport.isScheduled);
    };
    std::unordered_map<std::string_view, std::size_t> best;
    for (std::size_t i = 0; i < airports.size(); ++i) {
        const auto [found, isNew] = best.emplace(airports[i].ident, i);
        if (!isNew) {
            report.Add(Topic::Dropped, "airports listed twice", airports[i].ident);
            found->second = rank(airports[i]) > rank(airports[found->second]) ? i : found->second;
        }
    }
    std::vector<bool> isBest(airports.size());
    for (const auto& [ident, i] : best) {
        isBest[i] = true;
    }
    std::vector<Airport> kept;
    kept.reserve(best.size());
    for (std::size_t i = 0; i < airports.size(); ++i) {
        if (isBest[i]) {
            kept.push_back(std::move(airports[i]));
        }
    }
    airports = std::move(kept);
}

}  // namespace

bool ReadOurAirports(std::string_view airports, std::string_view runways,
                     const ImportContext& context, Dataset& data, std::string& error) {
    Report& report = context.report;
    const double year = YearOfCycle(context.CycleFor(0)).value_or(magneticfield::kModelEpoch);
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
        const std::vector<RunwayEnd> ends = RunwayEnds(row, airport, year, report);
        airport.paved = airport.paved || (!ends.empty() && IsPaved(row[kSurface]));
        airport.runways.insert(airport.runways.end(), ends.begin(), ends.end());
    };
    if (!ReadCsv(runways, kRunwayColumns, addRunway, fault)) {
        error = "runways.csv: " + fault;
        return false;
    }
    DropTwins(data.airports, report);
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
        if (!IsOfCountries(context.options, row[kNavCountry])) {
            report.Add(Topic::Dropped, "navaids of other countries");
            return;
        }
        const std::vector<std::string>& told = context.options.countriesToldElsewhere;
        if (std::find(told.begin(), told.end(), row[kNavCountry]) != told.end()) {
            report.Add(Topic::Dropped, "navaids of countries whose own list comes along");
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

bool ImportOurAirports(const SourceFiles& files, const ImportContext& context, Dataset& data,
                       std::string& error) {
    struct SourceRow {
        SourceKind kind;
        const char* name;
    };
    constexpr std::array<SourceRow, 3> kSources{{{SourceKind::OurAirports, "airports.csv"},
                                                 {SourceKind::OurRunways, "runways.csv"},
                                                 {SourceKind::OurNavaids, "navaids.csv"}}};
    std::array<std::string, kSources.size()> texts;
    for (std::size_t i = 0; i < kSources.size(); ++i) {
        const FoundFile* const file = FileOf(files, kSources[i].kind);
        if (file == nullptr) {
            error = std::string("OurAirports' data comes without ") + kSources[i].name;
            return false;
        }
        if (context.progress) {
            context.progress(kSources[i].name, 0);
        }
        if (!ReadSourceFile(file->file, texts[i], error)) {
            return false;
        }
    }
    if (!ReadOurNavaids(texts[2], context, data, error) ||
        !ReadOurAirports(texts[0], texts[1], context, data, error)) {
        return false;
    }
    FillHeadings(context.CycleFor(0), data, context.report);
    return true;
}

}  // namespace avqdata
