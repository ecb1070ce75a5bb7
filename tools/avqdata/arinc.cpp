#include "avqdata/arinc.h"

#include <algorithm>
#include <utility>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr std::string_view kRunwaySection = "PG";

std::string Reference(std::string_view section, std::string_view airport, std::string_view ident,
                      std::string_view region) {
    // Terminal points belong to an airport, others to a region.
    const bool terminal = section.starts_with('P') || section.starts_with('H');
    std::string key(section);
    key += '|';
    key += terminal ? airport : region;
    key += '|';
    key += ident;
    return key;
}

std::optional<double> Angle(std::string_view text, std::size_t degreeDigits, double most) {
    const std::string_view digits = text.substr(std::min<std::size_t>(1, text.size()));
    if (digits.size() != degreeDigits + 6 ||
        !std::all_of(digits.begin(), digits.end(), [](char c) { return c >= '0' && c <= '9'; })) {
        return std::nullopt;
    }
    const double degrees = *Number(digits.substr(0, degreeDigits));
    const double minutes = *Number(digits.substr(degreeDigits, 2));
    const double hundredths = *Number(digits.substr(degreeDigits + 2));  // of a second
    // In one division: the number that the same angle in decimals reads as, halves included.
    const double value = (degrees * 360000 + minutes * 6000 + hundredths) / 360000;
    if (minutes >= 60 || hundredths >= 6000 || value > most) {
        return std::nullopt;
    }
    return text.front() == 'S' || text.front() == 'W' ? -value : value;
}

// "05000" as "5000", "FL180" as it is; empty when blank.
std::string AltitudeText(std::string_view text) {
    if (text.starts_with("FL")) {
        return IsIdent(text) ? std::string(text) : std::string();
    }
    const std::optional<int> feet = WholeNumber(text);
    return feet ? std::to_string(*feet) : std::string();
}

}  // namespace

bool IsArincRecord(std::string_view line) {
    constexpr std::size_t kLongest = 132;
    const auto isWord = [](char c) {
        return c == ' ' || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    };
    while (line.size() > kLongest && line.ends_with(' ')) {
        line.remove_suffix(1);
    }
    return line.size() >= kArincColumns && line.size() <= kLongest &&
           (line[0] == 'S' || line[0] == 'T') && line[4] >= 'A' && line[4] <= 'Z' &&
           std::all_of(line.begin() + 1, line.begin() + 6, isWord) &&
           std::all_of(line.begin(), line.end(), [](char c) { return c >= ' ' && c <= '~'; });
}

int CycleOfRecord(std::string_view record) {
    // Those of the last century would stand before all others.
    const std::optional<int> cycle = WholeNumber(Raw(record, 129, 132));
    const bool isCycle = cycle && *cycle / 100 < 70 && *cycle % 100 >= 1 && *cycle % 100 <= 14;
    return isCycle ? *cycle : 0;
}

std::string_view Raw(std::string_view record, std::size_t first, std::size_t last) {
    constexpr std::string_view kBlank = "                                ";
    return first <= record.size() && last <= record.size() && first <= last
               ? record.substr(first - 1, last - first + 1)
               : kBlank.substr(0, last - first + 1);
}

std::string_view Column(std::string_view record, std::size_t first, std::size_t last) {
    return Trim(Raw(record, first, last));
}

std::optional<LatLon> ArincPosition(std::string_view record, std::size_t first) {
    const std::string_view latitude = Raw(record, first, first + 8);
    const std::string_view longitude = Raw(record, first + 9, first + 18);
    const bool hemispheres =
        (latitude[0] == 'N' || latitude[0] == 'S') && (longitude[0] == 'E' || longitude[0] == 'W');
    const std::optional<double> lat = Angle(latitude, 2, 90);
    const std::optional<double> lon = Angle(longitude, 3, 180);
    if (!hemispheres || !lat || !lon) {
        return std::nullopt;
    }
    return LatLon{*lat, *lon};
}

std::optional<double> ArincTenths(std::string_view text) {
    const std::optional<int> value = WholeNumber(text);
    return value ? std::optional(*value / 10.0) : std::nullopt;
}

std::optional<double> ArincVariation(std::string_view text) {
    if (text.size() != 5 || (text[0] != 'E' && text[0] != 'W')) {
        return std::nullopt;
    }
    const std::optional<double> value = ArincTenths(text.substr(1));
    return value && text[0] == 'W' ? -*value : value;
}

std::string RestrictionText(char kind, std::string_view altitude1, std::string_view altitude2,
                            std::string_view speed) {
    const std::string first = AltitudeText(altitude1);
    const std::string second = AltitudeText(altitude2);
    std::string altitude;
    if (kind == 'B' && !first.empty() && !second.empty()) {
        altitude = second + "A" + first + "B";
    } else if (!first.empty()) {
        constexpr std::string_view kAbove = "+JHVD";
        constexpr std::string_view kBelow = "-YL";
        altitude = first;
        altitude += kAbove.find(kind) != std::string_view::npos ? "A" : "";
        altitude += kBelow.find(kind) != std::string_view::npos ? "B" : "";
    } else if (kind == 'C' && !second.empty()) {
        altitude = second + "A";
    }
    if (const std::optional<int> knots = WholeNumber(speed)) {
        return std::to_string(*knots) + "/" + altitude;
    }
    return altitude.empty() ? "---" : altitude;
}

ProcedureLegRecord ReadLeg(std::string_view record, std::size_t line) {
    ProcedureLegRecord leg;
    leg.routeType = Raw(record, 20, 20)[0];
    leg.transition = Column(record, 21, 25);
    leg.sequence = WholeNumber(Column(record, 27, 29)).value_or(0);
    leg.fix = Column(record, 30, 34);
    leg.region = Column(record, 35, 36);
    leg.section = Column(record, 37, 38);
    leg.description = Raw(record, 40, 43);
    leg.turn = Raw(record, 44, 44)[0];
    leg.path = Column(record, 48, 49);
    leg.restriction = RestrictionText(Raw(record, 83, 83)[0], Column(record, 85, 89),
                                      Column(record, 90, 94), Column(record, 100, 102));
    const bool aboutStation = leg.path == "AF";
    leg.centre = aboutStation ? Column(record, 51, 54) : Column(record, 107, 111);
    leg.centreRegion = aboutStation ? Column(record, 55, 56) : Column(record, 113, 114);
    leg.centreSection = aboutStation ? Column(record, 79, 80) : Column(record, 115, 116);
    leg.radiusNm = aboutStation ? ArincTenths(Column(record, 67, 70)).value_or(0)
                                : WholeNumber(Column(record, 57, 62)).value_or(0) / 1000.0;
    leg.lengthNm = ArincTenths(Column(record, 75, 78)).value_or(0);
    leg.radialDeg = ArincTenths(Column(record, 63, 66));
    leg.courseDeg = ArincTenths(Column(record, 71, 74));
    leg.line = line;
    return leg;
}

bool AddLeg(std::string_view airport, std::string_view name, const std::string& file,
            ProcedureLegRecord&& leg, ProcedureMap& procedures) {
    if (!IsIdent(airport) || !IsIdent(name) ||
        (!leg.transition.empty() && !IsIdent(leg.transition))) {
        return false;
    }
    ProcedureRecord& procedure = procedures[{std::string(airport), std::string(name)}];
    procedure.airport = airport;
    procedure.name = name;
    procedure.file = file;
    procedure.legs.push_back(std::move(leg));
    return true;
}

void PointBook::Add(std::string_view section, std::string_view airport, std::string_view ident,
                    std::string_view region, const LatLon& at) {
    byReference_.insert_or_assign(Reference(section, airport, ident, region), at);
    if (section != kRunwaySection) {  // every airport has runways of the same names
        byIdent_.emplace(std::string(ident), Point{at, true});
    }
}

void PointBook::AddFolder(const Dataset& folder) {
    for (const Airport& airport : folder.airports) {
        for (const RunwayEnd& end : airport.runways) {
            byReference_.try_emplace(Reference(kRunwaySection, airport.ident, "RW" + end.ident, ""),
                                     end.at);
        }
    }
    for (const Station& station : folder.stations) {
        byIdent_.emplace(station.ident, Point{station.at, false});
    }
    for (const Fix& fix : folder.fixes) {
        byIdent_.emplace(fix.ident, Point{fix.at, false});
    }
}

std::optional<LatLon> PointBook::Find(std::string_view section, std::string_view airport,
                                      std::string_view ident, std::string_view region,
                                      const std::optional<LatLon>& near) const {
    const auto found = byReference_.find(Reference(section, airport, ident, region));
    if (found != byReference_.end()) {
        return found->second;
    }
    constexpr double kFarthestNm = 300;
    std::optional<LatLon> best;
    double bestNm = kFarthestNm;
    const auto [first, last] = byIdent_.equal_range(ident);
    for (auto point = first; near && point != last; ++point) {
        const double nm = DistanceNm(*near, point->second.at);
        if (nm < bestNm) {
            best = point->second.at;
            bestNm = nm;
        }
    }
    return best;
}

bool PointBook::HasOwn(std::string_view ident) const {
    const auto [first, last] = byIdent_.equal_range(ident);
    return std::any_of(first, last, [](const auto& point) { return point.second.isOwn; });
}

void AddFolderTo(CifpBook& book, const Dataset& folder) {
    book.points.AddFolder(folder);
    for (const Airport& airport : folder.airports) {
        book.airports.try_emplace(airport.ident, airport.at);
        auto [runways, isNew] = book.runways.try_emplace(airport.ident);
        for (const RunwayEnd& end : airport.runways) {
            if (isNew) {
                runways->second.push_back(end.ident);
            }
        }
    }
}

}  // namespace avqdata
