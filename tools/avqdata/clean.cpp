#include "avqdata/clean.h"

#include <algorithm>
#include <unordered_map>

#include "avqdata/folder.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr double kSameRecordNm = 10.0;

using Points = std::unordered_multimap<std::string, LatLon>;

// The nearest point of that identifier within reach, null when there is none.
const LatLon* Nearest(const Points& points, const Fix& fix, double withinNm) {
    const LatLon* best = nullptr;
    const auto [first, last] = points.equal_range(fix.ident);
    for (auto candidate = first; candidate != last; ++candidate) {
        const double nm = DistanceNm(candidate->second, fix.at);
        if (nm < withinNm) {
            withinNm = nm;
            best = &candidate->second;
        }
    }
    return best;
}

void RoundPoints(Dataset& data) {
    for (Station& station : data.stations) {
        station.at = RoundedAsWritten(station.at, kPointDecimals);
    }
    for (Fix& fix : data.fixes) {
        fix.at = RoundedAsWritten(fix.at, kPointDecimals);
    }
    for (Airway& airway : data.airways) {
        for (Fix& point : airway.points) {
            point.at = RoundedAsWritten(point.at, kPointDecimals);
        }
    }
}

void AddFix(const Fix& fix, Points& points, Dataset& data) {
    points.emplace(fix.ident, fix.at);
    data.fixes.push_back(fix);
}

void TieAirways(Points& points, Dataset& data, Report& report) {
    for (Airway& airway : data.airways) {
        for (Fix& point : airway.points) {
            if (const LatLon* at = Nearest(points, point, kSameRecordNm)) {
                point.at = *at;
                continue;
            }
            report.Add(Topic::Unresolved, "airway points that no table had, added as fixes",
                       airway.name + " " + point.ident);
            AddFix(point, points, data);
        }
    }
}

void TieProcedures(Points& points, Dataset& data, Report& report) {
    for (std::size_t kind = 0; kind < kProcedureKinds; ++kind) {
        for (const auto& [airport, lines] : data.procedures[kind]) {
            for (const std::string& line : lines) {
                const std::optional<Fix> fix = FixOfLine(line, kind == kApproaches);
                if (fix && Nearest(points, *fix, kSamePointNm) == nullptr) {
                    report.Add(Topic::Unresolved,
                               "procedure fixes that no table had, added as fixes",
                               airport + " " + fix->ident);
                    AddFix(*fix, points, data);
                }
            }
        }
    }
}

const char* RunwayFault(const Airport& airport, const RunwayEnd& end) {
    if (end.lengthFt < kShortestRunwayFt || end.lengthFt > kLongestRunwayFt) {
        return "runway ends of an impossible length";
    }
    return DistanceNm(airport.at, end.at) > kFarthestRunwayNm ? "runway ends far from their airport"
                                                              : nullptr;
}

void CleanRunways(Airport& airport, Report& report) {
    std::vector<RunwayEnd> kept;
    for (RunwayEnd& end : airport.runways) {
        const char* fault = RunwayFault(airport, end);
        const bool twice = std::any_of(kept.begin(), kept.end(), [&](const RunwayEnd& have) {
            return have.ident == end.ident;
        });
        fault = fault == nullptr && twice ? "runway ends listed twice" : fault;
        if (fault != nullptr) {
            report.Add(Topic::Dropped, fault, airport.ident + " " + end.ident);
            continue;
        }
        kept.push_back(std::move(end));
    }
    airport.runways = std::move(kept);
}

}  // namespace

std::optional<Fix> FixOfLine(std::string_view line, bool isApproach) {
    const std::vector<std::string_view> words = Words(line);
    const std::size_t fixAt = isApproach ? 2 : 1;
    const std::size_t positionAt = isApproach ? 5 : 4;
    if (words.size() <= positionAt + 1 || line.starts_with(';') || line.starts_with('*') ||
        IsRunwayFix(words[fixAt])) {
        return std::nullopt;
    }
    const std::optional<LatLon> at = Position(words[positionAt], words[positionAt + 1]);
    return at ? std::optional(Fix{std::string(words[fixAt]), *at}) : std::nullopt;
}

bool IsFrequency(bool isVor, std::optional<double> frequency) {
    return frequency &&
           (isVor ? *frequency >= 108 && *frequency < 118 : *frequency >= 100 && *frequency < 2000);
}

void CleanDataset(Dataset& data, Report& report) {
    RoundPoints(data);
    std::erase_if(data.stations, [&](const Station& station) {
        const bool good = IsFrequency(station.isVor, Number(station.frequency));
        if (!good) {
            report.Add(Topic::Changed, "stations of an impossible frequency, taken as fixes",
                       station.ident + " " + station.frequency);
            data.fixes.push_back({station.ident, station.at});
        }
        return !good;
    });
    std::erase_if(data.airports, [&](const Airport& airport) {
        const bool good =
            airport.elevationFt >= kLowestAirportFt && airport.elevationFt <= kHighestAirportFt;
        if (!good) {
            report.Add(Topic::Dropped, "airports of an impossible elevation", airport.ident);
        }
        return !good;
    });
    for (Airport& airport : data.airports) {
        CleanRunways(airport, report);
    }
}

void TieToTables(Dataset& data, Report& report) {
    Points points;
    points.reserve(data.stations.size() + data.fixes.size() + data.airports.size());
    for (const Station& station : data.stations) {
        points.emplace(station.ident, station.at);
    }
    for (const Fix& fix : data.fixes) {
        points.emplace(fix.ident, fix.at);
    }
    for (const Airport& airport : data.airports) {
        points.emplace(airport.ident, airport.at);
    }
    TieAirways(points, data, report);
    TieProcedures(points, data, report);
}

}  // namespace avqdata
