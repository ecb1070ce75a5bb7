#include "avqdata/xplane.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <unordered_map>

#include "avqdata/airway_pieces.h"
#include "avqdata/importers.h"
#include "avqdata/points_by_name.h"
#include "avqdata/text_tools.h"
#include "avqdata/variation.h"

namespace avqdata {
namespace {

constexpr double kFeetPerMetre = 1.0 / 0.3048;
constexpr double kFeetPerNm = 1852.0 * kFeetPerMetre;
constexpr int kRegionsFrom = 1100;  // from this version on rows name their area and region
constexpr std::string_view kEnRoute = "ENRT";

using Row = std::vector<std::string_view>;

// Steps over the two header lines. 0, with `error`, when they are not such a file's; the first of
// them ("I" or "A") may be empty.
int ReadHeader(LineSource& lines, Dataset& data, std::string& error) {
    constexpr int kOldest = 600;
    constexpr int kNewest = 1299;
    std::string_view first;
    std::string_view line;
    lines.Next(first);
    const bool origin = Trim(first).empty() || Trim(first) == "I" || Trim(first) == "A";
    if (!lines.Next(line) || !origin) {
        error = lines.Error().empty() ? lines.Name() + ": has no X-Plane header" : lines.Error();
        return 0;
    }
    const Row words = Words(line);
    const std::optional<int> version = words.empty() ? std::nullopt : WholeNumber(words[0]);
    if (!version || *version < kOldest || *version > kNewest) {
        error = AtLine(lines.Name(), 2, "is no X-Plane version line");
        return 0;
    }
    const int cycle = CycleOfHeader(line);
    data.cycle = cycle != 0 ? cycle : data.cycle;
    return *version;
}

bool IsAnyRow(std::string_view) {
    return true;
}

// Walks the rows behind the header up to the line "99". `isWanted` spares lines that it does not
// hold for from being taken apart.
template <typename OnRow, typename IsWanted = bool (*)(std::string_view)>
bool ReadRows(LineSource& lines, Dataset& data, std::string& error, OnRow onRow,
              IsWanted isWanted = IsAnyRow) {
    const int version = ReadHeader(lines, data, error);
    if (version == 0) {
        return false;
    }
    std::string_view line;
    Row words;
    while (lines.Next(line)) {
        if (!isWanted(line)) {
            continue;
        }
        SplitWords(line, words);
        if (words.size() == 1 && words[0] == "99") {
            break;
        }
        if (!words.empty()) {
            onRow(words, line, version);
        }
    }
    error = lines.Error();
    return error.empty();
}

void AddFault(Report& report, const LineSource& lines, std::string_view text) {
    report.Add(Topic::Fault, "lines that make no sense",
               AtLine(lines.Name(), lines.LineNumber(), text));
}

// What stands behind the first `count` words of a line.
std::string_view AfterWords(std::string_view line, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        line = Trim(line);
        line.remove_prefix(std::min(line.find_first_of(" \t"), line.size()));
    }
    return Trim(line);
}

// Localizers by airport and runway.
using LocalizerIndex = ByName<std::size_t>;

std::string LocalizerKey(const Row& words) {
    return std::string(words[8]) + ' ' + RunwayName(words[9]);
}

void AddLocalizer(const Row& words, Dataset& data, LocalizerIndex& index) {
    Localizer localizer;
    localizer.ident = words[7];
    localizer.frequency = Megahertz(Number(words[4]).value_or(0) / 100.0);
    localizer.antenna = Position(words[1], words[2]).value_or(LatLon{});
    localizer.courseTrue = Normalized(Number(words[6]).value_or(0));
    localizer.airport = words[8];
    localizer.runway = RunwayName(words[9]);
    index.Add(LocalizerKey(words), data.localizers.size());
    data.localizers.push_back(std::move(localizer));
}

// Angle and course stand in one number: 300281.700 is 3.00 degrees along 281.7. False when its
// localizer does not stand before it.
bool AddGlideslope(const Row& words, const LocalizerIndex& index, Dataset& data) {
    bool found = false;
    index.ForEach(LocalizerKey(words), [&](std::size_t number) {
        Localizer& localizer = data.localizers[number];
        localizer.glideDeg = std::floor(Number(words[6]).value_or(0) / 1000.0) / 100.0;
        localizer.elevationFt = Rounded(Number(words[3]).value_or(0));
        found = true;
        return false;  // the latest of the runway
    });
    return found;
}

struct NavRow {
    int code = 0;
    LatLon at;
    double frequency = 0;
    double extra = 0;
    std::string ident;
    std::string name;
    std::string area;  // "ENRT", or the airport's; empty in the older form, as the region is
    std::string region;
};

bool ReadNavRow(const Row& words, std::string_view line, int version, NavRow& row) {
    const std::size_t nameAt = version >= kRegionsFrom ? 10 : 8;
    if (words.size() < nameAt) {
        return false;
    }
    const std::optional<LatLon> at = Position(words[1], words[2]);
    const std::optional<double> frequency = Number(words[4]);
    const std::optional<double> extra = Number(words[6]);
    if (!at || !frequency || !extra || !IsIdent(words[7])) {
        return false;
    }
    row.at = *at;
    row.frequency = *frequency;
    row.extra = *extra;
    row.ident = words[7];
    if (version >= kRegionsFrom) {
        row.area = words[8];
        row.region = words[9];
    }
    row.name = Token(AfterWords(line, nameAt));
    return true;
}

// "A P HILL NDB" is the station A_P_HILL: the kind has a field of its own.
std::string StationName(const std::string& token) {
    for (const std::string_view kind :
         {"_VOR_DME", "_VORTAC", "_NDB_DME", "_VOR", "_NDB", "_TACAN", "_DME"}) {
        if (token.size() > kind.size() && token.ends_with(kind)) {
            return token.substr(0, token.size() - kind.size());
        }
    }
    return token;
}

constexpr int kNdb = 2;
constexpr int kVor = 3;
constexpr int kPairedDme = 12;

bool IsOfAirport(const NavRow& row) {
    return !row.area.empty() && row.area != kEnRoute;
}

// As procedures refer to it: by its airport, or by its region.
void AddToBook(const NavRow& row, CifpBook& book) {
    const bool terminal = IsOfAirport(row);
    const char* const section =
        row.code == kNdb ? (terminal ? "PN" : "DB") : (terminal ? "PI" : "D");
    book.points.Add(section, terminal ? row.area : "", row.ident, row.region, row.at);
}

void AddNavRow(const NavRow& row, Report& report, Dataset& data, XplaneTables& tables) {
    if (!row.region.empty()) {
        AddToBook(row, tables.book);
    }
    if (row.code == kPairedDme || (row.code != kNdb && row.code != kVor && IsOfAirport(row))) {
        report.Add(Topic::Dropped, "DMEs that belong to another station");
        return;
    }
    if (row.code == kNdb || row.code == kVor) {
        const bool isVor = row.code == kVor;
        data.stations.push_back(
            {row.ident, StationName(row.name), row.at, isVor,
             isVor ? Megahertz(row.frequency / 100) : Kilohertz(row.frequency)});
    } else {  // a DME that stands alone gives no bearing
        data.fixes.push_back({row.ident, row.at});
    }
    if (!row.region.empty()) {  // the older form's airways have their points in them
        tables.Add(row.ident, row.region, row.code == kNdb ? kNdb : kVor,
                   {row.at, row.area == kEnRoute});
    }
}

Fix AirwayFix(const Row& words, std::size_t first, int version, const XplaneTables& tables,
              bool& found) {
    Fix fix{std::string(words[first]), {}};
    if (version < kRegionsFrom) {
        const std::optional<LatLon> at = Position(words[first + 1], words[first + 2]);
        found = at.has_value();
        fix.at = at.value_or(LatLon{});
        return fix;
    }
    const auto point = tables.points.find(
        {fix.ident, std::string(words[first + 1]), WholeNumber(words[first + 2]).value_or(0)});
    found = point != tables.points.end();
    if (found) {
        fix.at = point->second.at;
    }
    return fix;
}

// ---- airports ----

struct AirportInWork {
    Airport airport;
    bool taken = false;
    std::optional<double> datumLatitude;
    std::optional<double> datumLongitude;
};

LatLon ShiftAlong(const LatLon& from, double courseTrue, double distanceNm) {
    LatLon to;
    avq1::PointAtDistance(from.latitude, from.longitude, courseTrue, distanceNm, to.latitude,
                          to.longitude);
    return to;
}

void AddRunway(const Row& words, const LineSource& lines, Report& report, Airport& airport) {
    constexpr std::size_t kEnds[2] = {8, 17};
    constexpr int kLastPaved = 2;  // 1 asphalt, 2 concrete
    if (words.size() < 21) {
        AddFault(report, lines, "a runway row is too short");
        return;
    }
    std::optional<LatLon> ends[2];
    for (int i = 0; i < 2; ++i) {
        ends[i] = Position(words[kEnds[i] + 1], words[kEnds[i] + 2]);
    }
    if (!ends[0] || !ends[1]) {
        AddFault(report, lines, "a runway end has no position on earth");
        return;
    }
    const double lengthNm = DistanceNm(*ends[0], *ends[1]);
    airport.paved = airport.paved || WholeNumber(words[2]).value_or(kLastPaved + 1) <= kLastPaved;
    for (int i = 0; i < 2; ++i) {
        RunwayEnd end;
        end.ident = RunwayName(words[kEnds[i]]);
        if (!IsRunwayIdent(end.ident)) {
            report.Add(Topic::Dropped, "runway ends without a number",
                       airport.ident + " " + end.ident);
            continue;
        }
        end.lengthFt = Rounded(lengthNm * kFeetPerNm);
        end.headingTrue = CourseTrue(*ends[i], *ends[1 - i]);
        end.needsVariation = true;
        const double displacedFt = Number(words[kEnds[i] + 3]).value_or(0) * kFeetPerMetre;
        end.at = ShiftAlong(*ends[i], end.headingTrue, displacedFt / kFeetPerNm);
        airport.runways.push_back(std::move(end));
    }
}

void CloseAirport(AirportInWork& work, Report& report, Dataset& data) {
    Airport& airport = work.airport;
    if (!work.taken) {
        return;
    }
    work.taken = false;
    if (work.datumLatitude && work.datumLongitude) {
        airport.at = {*work.datumLatitude, *work.datumLongitude};
    } else if (!airport.runways.empty()) {
        const RunwayEnd& first = airport.runways.front();
        const double halfNm = first.lengthFt / kFeetPerNm / 2;
        airport.at = ShiftAlong(first.at, first.headingTrue, halfNm);
    } else {
        report.Add(Topic::Dropped, "airports without a runway or position", airport.ident);
        return;
    }
    if (IsPosition(airport.at)) {
        data.airports.push_back(std::move(airport));
    }
}

void OpenAirport(const Row& words, std::string_view line, const LineSource& lines, Report& report,
                 AirportInWork& work) {
    const std::optional<int> elevation = words.size() > 4 ? WholeNumber(words[1]) : std::nullopt;
    if (!elevation || !IsIdent(words[4])) {
        AddFault(report, lines, "an airport row has no elevation or identifier");
        return;
    }
    const std::string_view name = AfterWords(line, 5);
    if (name.starts_with("[X]") || name.find("CLOSED") != std::string_view::npos) {
        report.Add(Topic::Dropped, "closed airports");
        return;
    }
    work = {};
    work.taken = true;
    work.airport = {std::string(words[4]), Token(name), *elevation, {}, {}, false};
}

void AddDatum(const Row& words, AirportInWork& work) {
    if (words.size() < 3) {
        return;
    }
    if (words[1] == "datum_lat") {
        work.datumLatitude = Number(words[2]);
    } else if (words[1] == "datum_lon") {
        work.datumLongitude = Number(words[2]);
    }
}

using Reader = bool (*)(LineSource&, Report&, Dataset&, XplaneTables&, std::string&);

struct SourceRow {
    SourceKind kind;
    const char* name;  // null for one whose absence is not worth a word
    Reader read;
};

bool ReadAirwaysRow(LineSource& lines, Report& report, Dataset& data, XplaneTables& tables,
                    std::string& error) {
    return ReadXplaneAirways(lines, report, data, tables, error);
}

bool ReadAirportsRow(LineSource& lines, Report& report, Dataset& data, XplaneTables&,
                     std::string& error) {
    return ReadXplaneAirports(lines, report, data, error);
}

// Whether a line of the airport file can say anything here: most lines are pavements, lights,
// frequencies and taxi routes.
bool MayBeOfAirport(std::string_view line) {
    constexpr auto kNumber = [](std::string_view code) {
        std::uint32_t number = 0;
        for (const char c : code) {
            number = (number << 8U) | static_cast<unsigned char>(c);
        }
        return number;
    };
    constexpr std::array<std::uint32_t, 6> kCodes{kNumber("1"),   kNumber("16"),   kNumber("17"),
                                                  kNumber("100"), kNumber("1302"), kNumber("99")};
    std::size_t size = 0;
    while (size < std::min<std::size_t>(line.size(), 5) && line[size] != ' ' &&
           line[size] != '\t') {
        ++size;
    }
    const std::uint32_t code = kNumber(line.substr(0, size));
    return size == 0 || (size < 5 && std::find(kCodes.begin(), kCodes.end(), code) != kCodes.end());
}

// Rows of the navaid file that make no station; null for a code that the file has not.
const char* UnusedNavRow(int code) {
    if (code >= 7 && code <= 9) {
        return "marker beacons";
    }
    return code >= 14 && code <= 16 ? "points of satellite approaches (codes 14 to 16)" : nullptr;
}

}  // namespace

int CycleOfHeader(std::string_view line) {
    constexpr std::string_view kLabel = "data cycle ";
    const std::size_t label = line.find(kLabel);
    if (label == std::string_view::npos) {
        return 0;
    }
    std::string digits;  // "2013.10" or "1310"
    for (const char c : line.substr(label + kLabel.size())) {
        if (c != '.' && (c < '0' || c > '9' || digits.size() == 6)) {
            break;
        }
        digits += c != '.' ? std::string(1, c) : "";
    }
    return WholeNumber(digits.substr(digits.size() > 4 ? 2 : 0)).value_or(0);
}

void XplaneTables::Add(std::string_view ident, std::string_view region, int type,
                       const XplanePoint& point) {
    const auto [found, isNew] =
        points.try_emplace({std::string(ident), std::string(region), type}, point);
    if (!isNew && point.isEnRoute && !found->second.isEnRoute) {
        found->second = point;
    }
}

bool ReadXplaneFixes(LineSource& lines, Report& report, Dataset& data, XplaneTables& tables,
                     std::string& error) {
    constexpr int kFixType = 11;
    return ReadRows(lines, data, error, [&](const Row& words, std::string_view, int version) {
        const std::optional<LatLon> at =
            words.size() > 2 ? Position(words[0], words[1]) : std::nullopt;
        if (!at || !IsIdent(words[2])) {
            AddFault(report, lines, "is no fix");
            return;
        }
        data.fixes.push_back({std::string(words[2]), *at});
        if (version >= kRegionsFrom && words.size() > 4) {
            const bool enRoute = words[3] == kEnRoute;
            tables.Add(words[2], words[4], kFixType, {*at, enRoute});
            tables.book.points.Add(enRoute ? "EA" : "PC", words[3], words[2], words[4], *at);
        }
    });
}

bool ReadXplaneNavaids(LineSource& lines, Report& report, Dataset& data, XplaneTables& tables,
                       std::string& error) {
    LocalizerIndex localizers;
    return ReadRows(lines, data, error, [&](const Row& words, std::string_view line, int version) {
        const int code = WholeNumber(words[0]).value_or(0);
        const bool station = code == kNdb || code == kVor || code == kPairedDme || code == 13;
        const bool landing = code >= 4 && code <= 6;
        if (!station && !landing) {
            if (const char* const unused = UnusedNavRow(code)) {
                report.Add(Topic::Dropped, unused);
            } else {
                AddFault(report, lines, "is no navaid");
            }
            return;
        }
        NavRow row;
        row.code = code;
        if (!ReadNavRow(words, line, version, row) || (landing && words.size() < 10)) {
            AddFault(report, lines, "is no navaid");
            return;
        }
        if (station) {
            AddNavRow(row, report, data, tables);
        } else if (landing) {
            Row fields(words);
            if (version >= kRegionsFrom && words.size() > 10) {
                fields[9] = words[10];  // airport, region, runway
            }
            if (code != 6) {
                AddLocalizer(fields, data, localizers);
            } else if (!AddGlideslope(fields, localizers, data)) {
                report.Add(Topic::Unresolved, "glideslopes without their localizer",
                           AtLine(lines.Name(), lines.LineNumber(), words[7]));
            }
        }
    });
}

bool ReadXplaneAirways(LineSource& lines, Report& report, Dataset& data, const XplaneTables& tables,
                       std::string& error) {
    std::vector<AirwaySegment> segments;
    const bool read =
        ReadRows(lines, data, error, [&](const Row& words, std::string_view, int version) {
            const std::size_t size = version >= kRegionsFrom ? 11 : 10;
            if (words.size() < size || !IsIdent(words[0]) || !IsIdent(words[3])) {
                AddFault(report, lines, "is no airway segment");
                return;
            }
            bool hasFrom = false;
            bool hasTo = false;
            const Fix from = AirwayFix(words, 0, version, tables, hasFrom);
            const Fix to = AirwayFix(words, 3, version, tables, hasTo);
            if (!hasFrom || !hasTo) {
                report.Add(
                    Topic::Unresolved, "airway segments whose fix is not known",
                    AtLine(lines.Name(), lines.LineNumber(), hasFrom ? to.ident : from.ident));
                return;
            }
            for (std::string_view names = words[size - 1]; !names.empty();) {
                const std::string_view name = NextPart(names, '-');
                if (IsIdent(name)) {
                    segments.push_back({std::string(name), from, to});
                }
            }
        });
    report.AddCount(Topic::Read, "airway segments", segments.size());
    std::vector<Airway> pieces = JoinSegments(segments);
    data.airways.insert(data.airways.end(), std::make_move_iterator(pieces.begin()),
                        std::make_move_iterator(pieces.end()));
    return read;
}

bool ReadXplaneAirports(LineSource& lines, Report& report, Dataset& data, std::string& error) {
    AirportInWork work;
    Dataset ignoredCycle;
    const auto onRow = [&](const Row& words, std::string_view line, int) {
        if (words[0] == "1" || words[0] == "16" || words[0] == "17") {
            CloseAirport(work, report, data);
            if (words[0] == "1") {
                OpenAirport(words, line, lines, report, work);
            } else {
                report.Add(Topic::Dropped, "seaplane bases and heliports");
            }
        } else if (words[0] == "100" && work.taken) {
            AddRunway(words, lines, report, work.airport);
        } else if (words[0] == "1302" && work.taken) {
            AddDatum(words, work);
        }
    };
    const bool read = ReadRows(lines, ignoredCycle, error, onRow, MayBeOfAirport);
    CloseAirport(work, report, data);
    return read;
}

bool ReadXplaneHolds(LineSource& lines, Report& report, Dataset&, XplaneTables&,
                     std::string& error) {
    Dataset ignoredCycle;
    std::size_t count = 0;
    const bool read =
        ReadRows(lines, ignoredCycle, error, [&](const Row&, std::string_view, int) { ++count; });
    report.AddCount(Topic::Dropped, "published holds: the files have no place for them", count);
    return read;
}

void TieLocalizers(Report& report, Dataset& data) {
    std::unordered_map<std::string, std::size_t> byIdent;
    for (std::size_t i = 0; i < data.airports.size(); ++i) {
        byIdent.emplace(data.airports[i].ident, i);
    }
    std::vector<Localizer> kept;
    for (Localizer& localizer : data.localizers) {
        const auto found = byIdent.find(localizer.airport);
        if (found == byIdent.end()) {
            report.Add(Topic::Unresolved, "localizers without their airport");
            continue;
        }
        auto& runways = data.airports[found->second].runways;
        const auto end = std::find_if(runways.begin(), runways.end(), [&](const RunwayEnd& runway) {
            return runway.ident == localizer.runway;
        });
        if (end == runways.end()) {
            report.Add(Topic::Unresolved, "localizers without their runway",
                       localizer.ident + " at " + localizer.airport + " " + localizer.runway);
            continue;
        }
        end->ilsFrequency = localizer.frequency;
        end->ils = localizer.glideDeg > 0 ? "ILS" : "LOC";
        end->courseMag = TurnDeg(end->headingTrue, localizer.courseTrue);  // until headings are
        localizer.at = end->at;
        if (localizer.glideDeg > 0) {
            kept.push_back(std::move(localizer));
        } else {
            report.Add(Topic::Dropped, kLocalizersWithoutGlideslope);
        }
    }
    data.localizers = std::move(kept);
}

bool ImportXplane(const SourceFiles& files, const ImportContext& context, Dataset& data,
                  std::string& error) {
    // The newer airway form refers to fixes and navaids by name, so those come first.
    constexpr std::array<SourceRow, 5> kSources{{
        {SourceKind::XplaneNavaids, "nav.dat", ReadXplaneNavaids},
        {SourceKind::XplaneFixes, "fix.dat", ReadXplaneFixes},
        {SourceKind::XplaneAirways, "awy.dat", ReadAirwaysRow},
        {SourceKind::XplaneAirports, "apt.dat", ReadAirportsRow},
        {SourceKind::XplaneHolds, nullptr, ReadXplaneHolds},
    }};
    XplaneTables tables;
    std::size_t found = 0;
    for (const SourceRow& source : kSources) {
        const FoundFile* const file = FileOf(files, source.kind);
        if (file == nullptr) {
            if (source.name != nullptr) {
                context.report.Add(Topic::Warning, "files that are not in the folder", source.name);
            }
            continue;
        }
        ++found;
        LineSource lines = LineSource::OfFile(file->file, context.progress);
        if (!source.read(lines, context.report, data, tables, error)) {
            return false;
        }
    }
    if (found == 0) {
        error = "X-Plane's data comes with none of nav.dat, fix.dat, awy.dat, apt.dat";
        return false;
    }
    if (FileOf(files, SourceKind::XplaneProcedures) != nullptr &&
        !ImportXplaneProcedures(files, context, tables.book, data, error)) {
        return false;
    }
    TieLocalizers(context.report, data);
    FillHeadings(context.CycleFor(data.cycle), data, context.report);
    return true;
}

}  // namespace avqdata
