#include <algorithm>
#include <array>
#include <cmath>
#include <map>

#include "avqdata/airspace.h"
#include "avqdata/arinc.h"
#include "avqdata/importers.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

struct RunwayRecord {
    std::string airport;
    RunwayEnd end;
};

struct LocalizerRecord {
    Localizer localizer;
    double courseMag = 0;
    double variation = 0;
};

struct AirwayRecord {
    int sequence = 0;
    std::string fix;
    std::string region;
    std::string section;
    double legNm = 0;  // to the next; 0 where it is not told
    bool isEnd = false;
    std::size_t line = 0;
};

struct CifpReader {
    const ImportContext& context;
    const LineSource& lines;
    Dataset& data;
    CifpBook book;
    std::vector<RunwayRecord> runways;
    std::vector<LocalizerRecord> localizers;
    // By customer area and name: areas use names of their own.
    std::map<std::pair<std::string, std::string>, std::vector<AirwayRecord>> airways;
    AirspaceRecords airspaces;
};

void AddFault(CifpReader& reader, std::string_view text) {
    reader.context.report.Add(Topic::Fault, "records that make no sense",
                              AtLine(reader.lines.Name(), reader.lines.LineNumber(), text));
}

bool IsPrimary(std::string_view record, std::size_t column) {
    const char number = Raw(record, column, column)[0];
    return number == '0' || number == '1' || number == ' ';
}

// A record's position; says when it has none that makes sense.
std::optional<LatLon> PositionOf(CifpReader& reader, std::string_view record, std::size_t first) {
    const std::optional<LatLon> at = ArincPosition(record, first);
    if (!at) {
        AddFault(reader, "has no position in columns " + std::to_string(first) + " to " +
                             std::to_string(first + 18));
    }
    return at;
}

void ReadAirport(CifpReader& reader, std::string_view record) {
    const std::optional<LatLon> at = PositionOf(reader, record, 33);
    const std::string ident(Column(record, 7, 10));
    const std::optional<int> elevation = WholeNumber(Column(record, 57, 61));
    if (!at || !IsIdent(ident)) {
        return;
    }
    reader.book.points.Add("PA", ident, ident, "", *at);
    reader.book.airports.try_emplace(ident, *at);  // of two the first is kept
    reader.data.airports.push_back(
        {ident, Token(Column(record, 94, 123)), elevation.value_or(0), *at, {}, true});
}

void ReadRunway(CifpReader& reader, std::string_view record) {
    const std::string_view ident = Column(record, 14, 18);
    const std::string airport(Column(record, 7, 10));
    if (!ident.starts_with("RW") || !IsRunwayIdent(ident.substr(2))) {
        reader.context.report.Add(Topic::Dropped, "runways without a number",
                                  airport + " " + std::string(ident));
        return;
    }
    const std::optional<LatLon> at = PositionOf(reader, record, 33);
    if (!at) {
        return;
    }
    reader.book.points.Add("PG", airport, ident, "", *at);
    reader.book.runways[airport].emplace_back(ident.substr(2));
    const std::optional<double> bearing = ArincTenths(Column(record, 28, 31));
    if (!bearing) {
        reader.context.report.Add(Topic::Dropped, "runways without a magnetic bearing",
                                  airport + " " + std::string(ident));
        return;
    }
    RunwayEnd end;
    end.ident = ident.substr(2);
    end.lengthFt = WholeNumber(Column(record, 23, 27)).value_or(0);
    end.at = *at;
    end.headingMag = *bearing;
    end.courseMag = *bearing;
    reader.runways.push_back({airport, std::move(end)});
}

void ReadLocalizer(CifpReader& reader, std::string_view record) {
    LocalizerRecord entry;
    const std::optional<LatLon> antenna = ArincPosition(record, 33);
    const std::optional<int> glide = WholeNumber(Column(record, 88, 90));
    const std::optional<double> course = ArincTenths(Column(record, 52, 55));
    const std::optional<double> variation = ArincVariation(Raw(record, 91, 95));
    const std::optional<int> frequency = WholeNumber(Column(record, 23, 27));
    const std::string_view runway = Column(record, 28, 32);
    if (!antenna || !course || !variation || !frequency || !runway.starts_with("RW")) {
        AddFault(reader, "is no localizer");
        return;
    }
    entry.localizer.ident = Column(record, 14, 17);
    entry.localizer.frequency = Megahertz(*frequency / 100.0);
    entry.localizer.antenna = *antenna;
    entry.localizer.glideDeg = glide.value_or(0) / 100.0;
    entry.localizer.elevationFt = WholeNumber(Column(record, 98, 102)).value_or(0);
    entry.localizer.airport = Column(record, 7, 10);
    entry.localizer.runway = runway.substr(2);
    entry.courseMag = *course;
    entry.variation = *variation;
    reader.localizers.push_back(std::move(entry));
}

void ReadVhfNavaid(CifpReader& reader, std::string_view record) {
    const std::string ident(Column(record, 14, 17));
    const std::string_view region = Column(record, 20, 21);
    const std::string_view airport = Column(record, 7, 10);
    const bool isVor = Raw(record, 28, 28)[0] == 'V';
    const std::optional<LatLon> at = ArincPosition(record, isVor ? 33 : 56);
    const std::optional<int> frequency = WholeNumber(Column(record, 23, 27));
    if (!at || !frequency || !IsIdent(ident)) {
        AddFault(reader, "is no navaid");
        return;
    }
    reader.book.points.Add(airport.empty() ? "D" : "PI", airport, ident, region, *at);
    if (isVor) {
        reader.data.stations.push_back(
            {ident, Token(Column(record, 94, 123)), *at, true, Megahertz(*frequency / 100.0)});
    } else if (airport.empty()) {
        reader.data.fixes.push_back({ident, *at});
    } else {
        reader.context.report.Add(Topic::Dropped, "DMEs that belong to another station");
    }
}

void ReadNdb(CifpReader& reader, std::string_view record, std::string_view section) {
    const std::string ident(Column(record, 14, 17));
    const std::optional<LatLon> at = PositionOf(reader, record, 33);
    const std::optional<double> kilohertz = ArincTenths(Column(record, 23, 27));
    if (!at || !kilohertz || !IsIdent(ident)) {
        return;
    }
    reader.book.points.Add(section, Column(record, 7, 10), ident, Column(record, 20, 21), *at);
    reader.data.stations.push_back(
        {ident, Token(Column(record, 94, 123)), *at, false, Kilohertz(*kilohertz)});
}

void ReadWaypoint(CifpReader& reader, std::string_view record, std::string_view section) {
    const std::string ident(Column(record, 14, 18));
    const std::optional<LatLon> at = PositionOf(reader, record, 33);
    if (!at) {
        return;
    }
    if (!IsIdent(ident)) {
        AddFault(reader, "is no waypoint");
        return;
    }
    reader.book.points.Add(section, Column(record, 7, 10), ident, Column(record, 20, 21), *at);
    reader.data.fixes.push_back({ident, *at});
}

void ReadAirway(CifpReader& reader, std::string_view record) {
    const std::string name(Column(record, 14, 18));
    const std::optional<int> sequence = WholeNumber(Column(record, 26, 29));
    if (!sequence || !IsIdent(name)) {
        AddFault(reader, "is no airway point");
        return;
    }
    reader.airways[{std::string(Raw(record, 2, 4)), name}].push_back(
        {*sequence, std::string(Column(record, 30, 34)), std::string(Column(record, 35, 36)),
         std::string(Column(record, 37, 38)), ArincTenths(Column(record, 75, 78)).value_or(0),
         Raw(record, 41, 41) == "E", reader.lines.LineNumber()});
}

void ReadProcedureLeg(CifpReader& reader, std::string_view record, ProcedureKind kind) {
    if (!AddLeg(Column(record, 7, 10), Column(record, 14, 19), reader.lines.Name(),
                ReadLeg(record, reader.lines.LineNumber()), reader.book.procedures[kind])) {
        AddFault(reader, "is no procedure leg");
    }
}

// What the sections and subsections of airports hold.
void ReadAirportRecord(CifpReader& reader, std::string_view record) {
    const char subsection = Raw(record, 13, 13)[0];
    const bool isLeg = subsection == 'D' || subsection == 'E' || subsection == 'F';
    if (Raw(record, 5, 6) == "PN") {
        ReadNdb(reader, record, "PN");
    } else if (!IsPrimary(record, isLeg ? 39 : 22)) {
        reader.context.report.Add(Topic::Dropped, "continuation records");
    } else if (isLeg) {
        ReadProcedureLeg(reader, record,
                         subsection == 'D'   ? kSids
                         : subsection == 'E' ? kStars
                                             : kApproaches);
    } else if (subsection == 'A') {
        ReadAirport(reader, record);
    } else if (subsection == 'C') {
        ReadWaypoint(reader, record, "PC");
    } else if (subsection == 'G') {
        ReadRunway(reader, record);
    } else if (subsection == 'I') {
        ReadLocalizer(reader, record);
    } else {
        reader.context.report.Add(
            Topic::Dropped,
            std::string("records of a kind without use here (P") + subsection + ")");
    }
}

void ReadRecord(CifpReader& reader, std::string_view record) {
    const std::string_view section = Raw(record, 5, 6);
    if (section[0] == 'P') {
        ReadAirportRecord(reader, record);
    } else if (section[0] == 'H') {
        reader.context.report.Add(Topic::Dropped, "records of heliports");
    } else if (section == "UC" || section == "UR") {
        if (!AddAirspaceRecord(record, reader.airspaces)) {
            AddFault(reader, "is no airspace boundary");
        }
    } else if (section == "ER") {
        if (IsPrimary(record, 39)) {
            ReadAirway(reader, record);
        }
    } else if (section == "D " || section == "DB" || section == "EA") {
        if (!IsPrimary(record, 22)) {
            reader.context.report.Add(Topic::Dropped, "continuation records");
        } else if (section == "D ") {
            ReadVhfNavaid(reader, record);
        } else if (section == "DB") {
            ReadNdb(reader, record, section);
        } else {
            ReadWaypoint(reader, record, section);
        }
    } else {
        reader.context.report.Add(Topic::Dropped, "records of a kind without use here (" +
                                                      std::string(Token(section)) + ")");
    }
}

// Whether a leg is as long as the file says; where it is not, points between are missing.
bool IsLegWhole(const AirwayRecord& from, const LatLon& fromAt, const LatLon& toAt) {
    constexpr double kRoundingNm = 1;
    constexpr double kPart = 0.05;
    return from.legNm == 0 ||
           std::fabs(DistanceNm(fromAt, toAt) - from.legNm) <= kRoundingNm + kPart * from.legNm;
}

void BuildAirway(CifpReader& reader, const std::string& name, std::vector<AirwayRecord>& points) {
    std::stable_sort(
        points.begin(), points.end(),
        [](const AirwayRecord& a, const AirwayRecord& b) { return a.sequence < b.sequence; });
    Airway piece{name, {}};
    const auto close = [&] {
        if (piece.points.size() > 1) {
            reader.data.airways.push_back(piece);
        }
        piece.points.clear();
    };
    std::optional<LatLon> previous;
    const AirwayRecord* before = nullptr;  // of the last point of the piece
    for (const AirwayRecord& point : points) {
        const std::optional<LatLon> at =
            reader.book.points.Find(point.section, "", point.fix, point.region, previous);
        if (!at || !IsIdent(point.fix)) {
            reader.context.report.Add(
                Topic::Unresolved, "airway points that are not in the source",
                AtLine(reader.lines.Name(), point.line, name + " " + point.fix));
            close();
            continue;
        }
        if (!piece.points.empty() && !IsLegWhole(*before, *previous, *at)) {
            reader.context.report.Add(Topic::Unresolved, "legs of airways without points between",
                                      AtLine(reader.lines.Name(), before->line,
                                             name + " " + before->fix + " to " + point.fix));
            close();
        }
        piece.points.push_back({point.fix, *at});
        previous = at;
        before = &point;
        if (point.isEnd) {
            close();
        }
    }
    close();
}

using RunwayEnds = std::map<std::pair<std::string, std::string>, RunwayEnd*>;

// By airport and designator; of a runway listed twice, the later.
RunwayEnds IndexRunways(CifpReader& reader) {
    RunwayEnds ends;
    for (RunwayRecord& runway : reader.runways) {
        if (!ends.insert_or_assign({runway.airport, runway.end.ident}, &runway.end).second) {
            reader.context.report.Add(Topic::Dropped, "runway ends listed twice",
                                      runway.airport + " " + runway.end.ident);
        }
    }
    return ends;
}

void TieLocalizers(CifpReader& reader, const RunwayEnds& ends) {
    for (LocalizerRecord& entry : reader.localizers) {
        Localizer& localizer = entry.localizer;
        const auto found = ends.find({localizer.airport, localizer.runway});
        if (found == ends.end()) {
            reader.context.report.Add(
                Topic::Unresolved, "localizers without their runway",
                localizer.ident + " at " + localizer.airport + " " + localizer.runway);
            continue;
        }
        RunwayEnd& end = *found->second;
        end.ilsFrequency = localizer.frequency;
        end.ils = localizer.glideDeg > 0 ? "ILS" : "LOC";
        end.courseMag = entry.courseMag;
        localizer.at = end.at;
        // The published course is as coarse as the station's whole degree of variation; the one
        // from threshold to antenna is exact unless the localizer is offset from its runway.
        const double published = Normalized(entry.courseMag + entry.variation);
        const double along = CourseTrue(end.at, localizer.antenna);
        localizer.courseTrue = std::abs(TurnDeg(published, along)) < 0.5 ? along : published;
        if (localizer.glideDeg > 0) {
            reader.data.localizers.push_back(localizer);
        } else {
            reader.context.report.Add(Topic::Dropped, kLocalizersWithoutGlideslope,
                                      localizer.ident + " at " + localizer.airport);
        }
    }
}

// The folder's airport, for runways whose airport is not in the source; null when not there either.
const Airport* FolderAirport(const CifpReader& reader, const std::string& ident) {
    const Dataset* folder = reader.context.folder;
    if (folder == nullptr) {
        return nullptr;
    }
    const auto have = std::find_if(folder->airports.begin(), folder->airports.end(),
                                   [&](const Airport& airport) { return airport.ident == ident; });
    return have != folder->airports.end() ? &*have : nullptr;
}

void TieRunways(CifpReader& reader, const RunwayEnds& ends) {
    std::vector<Airport>& airports = reader.data.airports;
    std::map<std::string, std::size_t> byIdent;
    for (std::size_t i = 0; i < airports.size(); ++i) {
        byIdent.emplace(airports[i].ident, i);
    }
    for (const auto& [key, end] : ends) {
        const std::string& ident = key.first;
        if (!byIdent.contains(ident)) {
            const Airport* known = FolderAirport(reader, ident);
            if (known == nullptr) {
                reader.context.report.Add(Topic::Unresolved, "runways without their airport",
                                          ident + " " + end->ident);
                continue;
            }
            byIdent.emplace(ident, airports.size());
            airports.push_back({ident, known->name, known->elevationFt, known->at, {}, true});
        }
        airports[byIdent[ident]].runways.push_back(*end);
    }
}

}  // namespace

bool ReadCifp(LineSource& lines, const ImportContext& context, Dataset& data, std::string& error) {
    CifpReader reader{context, lines, data, {}, {}, {}, {}, {}};
    std::string_view line;
    std::size_t records = 0;
    std::size_t others = 0;
    bool ofAirports = false;
    while (lines.Next(line)) {
        if (line.starts_with("HDR") || Trim(line).empty()) {
            continue;
        }
        if (!IsArincRecord(line)) {
            ++others;
            ofAirports = ofAirports || line.starts_with("SID:") || line.starts_with("STAR:") ||
                         line.starts_with("APPCH:") || line.starts_with("RWY:");
            AddFault(reader, "is no record of 132 columns");
            continue;
        }
        ++records;
        data.cycle = std::max(data.cycle, CycleOfRecord(line));
        ReadRecord(reader, line);
    }
    if (!lines.Error().empty() || records <= others) {
        error = lines.Error();
        if (error.empty()) {
            error = lines.Name() + ": is no file of ARINC 424 records (" + std::to_string(records) +
                    " of its " + std::to_string(records + others) + " lines are)" +
                    (ofAirports ? "; procedures a file an airport come with `import xplane`" : "");
        }
        return false;
    }
    if (context.folder != nullptr) {
        AddFolderTo(reader.book, *context.folder);
    }
    const RunwayEnds ends = IndexRunways(reader);
    TieLocalizers(reader, ends);
    TieRunways(reader, ends);
    for (auto& [key, points] : reader.airways) {
        BuildAirway(reader, key.second, points);
    }
    BuildProcedures(reader.book, context.report, data);
    BuildAirspaces(reader.airspaces, context, data);
    return true;
}

bool ImportCifp(const SourceFiles& files, const ImportContext& context, Dataset& data,
                std::string& error) {
    for (const FoundFile& file : files) {
        LineSource lines = LineSource::OfFile(file.file, context.progress);
        if (file.kind == SourceKind::Cifp && !ReadCifp(lines, context, data, error)) {
            return false;
        }
    }
    return true;
}

}  // namespace avqdata
