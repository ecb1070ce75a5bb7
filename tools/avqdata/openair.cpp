#include <algorithm>
#include <array>

#include "avqdata/airspace.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

struct OpenAirReader {
    const LineSource& lines;
    Report& report;
    std::vector<AirspaceOutline> outlines;
    bool open = false;  // an airspace has begun
    LatLon centre;
    bool hasCentre = false;
    bool clockwise = true;
};

// "30:58:01", "30:58.02" or "30.967" with its hemisphere's letter behind it.
std::optional<double> Angle(std::string_view text, std::string_view hemispheres) {
    text = Trim(text);
    if (text.empty() || hemispheres.find(text.back()) == std::string_view::npos) {
        return std::nullopt;
    }
    const bool negative = text.back() == hemispheres[1];
    text.remove_suffix(1);
    double value = 0;
    double unit = 1;
    for (const std::string& part : SplitList(text, ':')) {
        const std::optional<double> number = Number(part);
        if (!number || *number < 0 || (unit < 1 && *number >= 60.5)) {
            return std::nullopt;
        }
        value += *number * unit;
        unit /= 60;
    }
    return negative ? -value : value;
}

// "30:58:01 N 084:49:00 W"
std::optional<LatLon> OpenAirPosition(std::string_view text) {
    const std::size_t split = text.find_first_of("NS");
    if (split == std::string_view::npos) {
        return std::nullopt;
    }
    const std::optional<double> latitude = Angle(text.substr(0, split + 1), "NS");
    const std::optional<double> longitude = Angle(text.substr(split + 1), "EW");
    if (!latitude || !longitude || !IsPosition({*latitude, *longitude})) {
        return std::nullopt;
    }
    return LatLon{*latitude, *longitude};
}

bool AddPoint(OpenAirReader& reader, std::string_view text) {
    const std::optional<LatLon> at = OpenAirPosition(text);
    if (at) {
        reader.outlines.back().points.push_back(*at);
    }
    return at.has_value();
}

void AddPoints(OpenAirReader& reader, const std::vector<LatLon>& points) {
    std::vector<LatLon>& outline = reader.outlines.back().points;
    outline.insert(outline.end(), points.begin(), points.end());
}

// "V X=..." a centre, "V D=+" a direction; others do not shape the outline.
bool SetVariable(OpenAirReader& reader, std::string_view text) {
    if (text.starts_with("X=")) {
        const std::optional<LatLon> at = OpenAirPosition(text.substr(2));
        reader.hasCentre = at.has_value();
        reader.centre = at.value_or(LatLon{});
        return reader.hasCentre;
    }
    if (text.starts_with("D=")) {
        reader.clockwise = Trim(text.substr(2)) != "-";
    }
    return true;
}

bool AddCircle(OpenAirReader& reader, std::string_view text) {
    constexpr double kLargestNm = 1000;
    const std::optional<double> radius = Number(text);
    if (!radius || *radius <= 0 || *radius > kLargestNm || !reader.hasCentre) {
        return false;
    }
    AddPoints(reader, CirclePoints(reader.centre, *radius));
    return true;
}

// "DB from, to": an arc between two points.
bool AddArcBetween(OpenAirReader& reader, std::string_view text) {
    const std::vector<std::string> ends = SplitList(text, ',');
    if (ends.size() != 2 || !reader.hasCentre) {
        return false;
    }
    const std::optional<LatLon> from = OpenAirPosition(ends[0]);
    const std::optional<LatLon> to = OpenAirPosition(ends[1]);
    if (!from || !to) {
        return false;
    }
    AddPoints(reader, ArcPoints(reader.centre, *from, *to, reader.clockwise));
    return true;
}

// "DA radius, from, to": an arc between two directions.
bool AddArcOfAngles(OpenAirReader& reader, std::string_view text) {
    const std::vector<std::string> parts = SplitList(text, ',');
    const std::optional<double> radius = parts.size() == 3 ? Number(parts[0]) : std::nullopt;
    const std::optional<double> start = parts.size() == 3 ? Number(parts[1]) : std::nullopt;
    const std::optional<double> end = parts.size() == 3 ? Number(parts[2]) : std::nullopt;
    constexpr double kLargestNm = 1000;
    if (!radius || !start || !end || !reader.hasCentre || *radius <= 0 || *radius > kLargestNm) {
        return false;
    }
    LatLon from;
    LatLon to;
    const LatLon& centre = reader.centre;
    avq1::PointAtDistance(centre.latitude, centre.longitude, Normalized(*start), *radius,
                          from.latitude, from.longitude);
    avq1::PointAtDistance(centre.latitude, centre.longitude, Normalized(*end), *radius, to.latitude,
                          to.longitude);
    AddPoints(reader, ArcPoints(centre, from, to, reader.clockwise));
    return true;
}

void BeginAirspace(OpenAirReader& reader, std::string_view letters) {
    reader.outlines.push_back({AirspaceClass(letters), "", "", {}});
    reader.open = true;
    reader.clockwise = true;
    reader.hasCentre = false;
}

bool ReadLine(OpenAirReader& reader, std::string_view command, std::string_view rest) {
    if (command == "AC") {
        BeginAirspace(reader, rest);
        return true;
    }
    if (!reader.open) {
        return false;
    }
    if (command == "AN") {
        reader.outlines.back().label = rest;
        return true;
    }
    if (command == "AY") {  // what it is, where the class is that of its air
        const std::string type = AirspaceClass(rest);
        if (RankOfBoundary(type + "_") > 0) {
            reader.outlines.back().airspaceClass = type;
        }
        return true;
    }
    if (command == "DP") {
        return AddPoint(reader, rest);
    }
    if (command == "V") {
        return SetVariable(reader, rest);
    }
    if (command == "DC") {
        return AddCircle(reader, rest);
    }
    if (command == "DB") {
        return AddArcBetween(reader, rest);
    }
    if (command == "DA") {
        return AddArcOfAngles(reader, rest);
    }
    constexpr std::array<std::string_view, 11> kShapeless{"AL", "AH", "AT", "TO", "TC", "SP",
                                                          "SB", "AG", "AF", "AI", "AX"};
    return std::find(kShapeless.begin(), kShapeless.end(), command) != kShapeless.end();
}

}  // namespace

bool ReadOpenAir(LineSource& lines, const ImportContext& context, Dataset& data,
                 std::string& error) {
    OpenAirReader reader{lines, context.report, {}, false, {}, false, true};
    std::string_view line;
    while (lines.Next(line)) {
        line = Trim(line);
        if (line.empty() || line.starts_with('*')) {
            continue;
        }
        const std::size_t split = std::min(line.find_first_of(" \t"), line.size());
        if (!ReadLine(reader, line.substr(0, split), Trim(line.substr(split)))) {
            context.report.Add(Topic::Fault, "lines that make no sense",
                               AtLine(lines.Name(), lines.LineNumber(), line.substr(0, 60)));
        }
    }
    if (!lines.Error().empty() || reader.outlines.empty()) {
        error =
            lines.Error().empty() ? lines.Name() + ": holds no OpenAir airspace" : lines.Error();
        return false;
    }
    for (AirspaceOutline& outline : reader.outlines) {
        outline.ident =
            HasShelves(outline.airspaceClass) ? NameOfShelf(outline.label) : outline.label;
    }
    AddOutlines(std::move(reader.outlines), context, data);
    return true;
}

bool ImportAirspace(const SourceFiles& files, const ImportContext& context, Dataset& data,
                    std::string& error) {
    for (const FoundFile& file : files) {
        const bool isJson = file.kind == SourceKind::GeoJson;
        std::string text;
        if (!isJson && file.kind != SourceKind::OpenAir) {
            continue;
        }
        if (!ReadSourceFile(file.file, text, error)) {
            return false;
        }
        const std::string name = BaseName(file.file.path);
        if (context.progress) {
            context.progress(name, 0);
        }
        LineSource lines = LineSource::OfText(text, name);
        if (!(isJson ? ReadGeoJson(text, name, context, data, error)
                     : ReadOpenAir(lines, context, data, error))) {
            return false;
        }
    }
    return true;
}

}  // namespace avqdata
