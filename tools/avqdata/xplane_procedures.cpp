// Procedures as X-Plane keeps them: a file an airport, a leg a line, the columns of ARINC 424 as
// fields between commas.
#include <algorithm>
#include <array>

#include "avqdata/text_tools.h"
#include "avqdata/xplane.h"
#include "base/text.h"

namespace avqdata {
namespace {

// The fields of a leg.
enum LegField : std::size_t {
    kSequence,
    kRouteType,
    kProcedure,
    kTransition,
    kFix,
    kFixRegion,
    kFixSection,
    kFixSubsection,
    kDescription,
    kTurn,
    kPath = 11,
    kNavaid = 13,
    kNavaidRegion,
    kNavaidSection,
    kNavaidSubsection,
    kRadius,
    kRadial,
    kDistance,
    kCourse,
    kLength,
    kAltitudeKind,
    kAltitude1,
    kAltitude2,
    kSpeed = 27,
    kCentre = 30,
    kCentreRegion,
    kCentreSection,
    kCentreSubsection,
    kFewestFields,  // what follows is not used
};

using Fields = std::vector<std::string_view>;

Fields Split(std::string_view text, char separator) {
    Fields fields;
    std::size_t end = text.find(separator);
    for (; end != std::string_view::npos; end = text.find(separator)) {
        fields.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    fields.push_back(text);
    return fields;
}

char FirstOf(std::string_view field) {
    return field.empty() ? ' ' : field.front();
}

// "DB" of two fields, "D" where the second is blank.
std::string SectionOf(std::string_view section, std::string_view subsection) {
    const std::string both{FirstOf(section), FirstOf(subsection)};
    return std::string(Trim(both));
}

// Of an arc: what it is about and how far from it.
void SetCentre(const Fields& fields, ProcedureLegRecord& leg) {
    const bool aboutStation = leg.path == "AF";
    const std::size_t first = aboutStation ? kNavaid : kCentre;
    leg.centre = Trim(fields[first]);
    leg.centreRegion = Trim(fields[first + 1]);
    leg.centreSection = SectionOf(fields[first + 2], fields[first + 3]);
    leg.radiusNm = aboutStation ? ArincTenths(Trim(fields[kDistance])).value_or(0)
                                : WholeNumber(Trim(fields[kRadius])).value_or(0) / 1000.0;
    leg.lengthNm = ArincTenths(Trim(fields[kLength])).value_or(0);
    leg.radialDeg = ArincTenths(Trim(fields[kRadial]));
    leg.courseDeg = ArincTenths(Trim(fields[kCourse]));
}

ProcedureLegRecord LegOf(const Fields& fields, std::size_t line) {
    ProcedureLegRecord leg;
    leg.routeType = FirstOf(fields[kRouteType]);
    leg.transition = Trim(fields[kTransition]);
    leg.sequence = WholeNumber(fields[kSequence]).value_or(0);
    leg.fix = Trim(fields[kFix]);
    leg.region = Trim(fields[kFixRegion]);
    leg.section = SectionOf(fields[kFixSection], fields[kFixSubsection]);
    leg.description = fields[kDescription].substr(0, 4);
    leg.description.resize(4, ' ');
    leg.turn = FirstOf(fields[kTurn]);
    leg.path = Trim(fields[kPath]);
    leg.restriction = RestrictionText(FirstOf(fields[kAltitudeKind]), Trim(fields[kAltitude1]),
                                      Trim(fields[kAltitude2]), Trim(fields[kSpeed]));
    SetCentre(fields, leg);
    leg.line = line;
    return leg;
}

// "RW04 ,...;N37092107,W095471282,0000": its designator and threshold.
bool AddRunway(std::string_view text, const std::string& airport, CifpBook& book) {
    const Fields parts = Split(text, ';');
    const Fields place = parts.size() > 1 ? Split(parts[1], ',') : Fields{};
    const std::string_view ident = Trim(parts[0].substr(0, parts[0].find(',')));
    if (place.size() < 2) {
        return false;
    }
    const std::optional<LatLon> at =
        ArincPosition(std::string(place[0]) + std::string(place[1]), 1);
    if (!at || !IsRunwayFix(ident)) {
        return false;
    }
    book.points.Add("PG", airport, ident, "", *at);
    book.runways[airport].emplace_back(ident.substr(2));
    book.airports.try_emplace(airport, *at);
    return true;
}

struct KindRow {
    std::string_view name;
    ProcedureKind kind;
};
constexpr std::array<KindRow, 3> kKinds{{{"SID", kSids}, {"STAR", kStars}, {"APPCH", kApproaches}}};

bool ReadLine(std::string_view line, const LineSource& lines, const std::string& airport,
              CifpBook& book) {
    const std::size_t colon = std::min(line.find(':'), line.size());
    const std::string_view word = line.substr(0, colon);
    const std::string_view rest = line.substr(std::min(colon + 1, line.size()));
    if (word == "RWY") {
        return AddRunway(rest, airport, book);
    }
    const auto* const row = std::find_if(kKinds.begin(), kKinds.end(),
                                         [&](const KindRow& k) { return k.name == word; });
    const Fields fields = Split(rest.substr(0, rest.find(';')), ',');
    return row != kKinds.end() && fields.size() >= kFewestFields &&
           AddLeg(airport, Trim(fields[kProcedure]), lines.Name(),
                  LegOf(fields, lines.LineNumber()), book.procedures[row->kind]);
}

}  // namespace

bool ReadXplaneProcedures(LineSource& lines, const std::string& airport, Report& report,
                          CifpBook& book, std::string& error) {
    std::string_view line;
    while (lines.Next(line)) {
        if (line.starts_with("PRDAT:")) {
            report.Add(Topic::Dropped, "levels of service of approaches");
        } else if (!Trim(line).empty() && !ReadLine(line, lines, airport, book)) {
            report.Add(Topic::Fault, "lines that make no sense",
                       AtLine(lines.Name(), lines.LineNumber(), line.substr(0, 60)));
        }
    }
    error = lines.Error();
    return error.empty();
}

bool ImportXplaneProcedures(const SourceFiles& files, const ImportContext& context, CifpBook& book,
                            Dataset& data, std::string& error) {
    for (const Airport& airport : data.airports) {
        book.airports.try_emplace(airport.ident, airport.at);
    }
    if (context.folder != nullptr) {
        AddFolderTo(book, *context.folder);
    }
    std::size_t count = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (files[i].kind != SourceKind::XplaneProcedures) {
            continue;
        }
        ++count;
        if (context.progress) {
            context.progress("CIFP", static_cast<double>(i) / static_cast<double>(files.size()));
        }
        const std::string name = BaseName(files[i].file.path);
        const std::string airport = avq1::ToUpper(name.substr(0, name.find('.')));
        book.runways[airport].clear();  // the file has them all
        LineSource lines = LineSource::OfFile(files[i].file, {});
        if (!ReadXplaneProcedures(lines, airport, context.report, book, error)) {
            return false;
        }
        BuildProcedures(book, context.report, data);
        for (ProcedureMap& procedures : book.procedures) {
            procedures.clear();
        }
    }
    context.report.AddCount(Topic::Read, "airports' files of procedures", count);
    return true;
}

}  // namespace avqdata
