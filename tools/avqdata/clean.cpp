#include "avqdata/clean.h"

#include <algorithm>
#include <array>

#include "avqdata/folder.h"
#include "avqdata/points_by_name.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

constexpr double kSameRecordNm = 10.0;

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

void AddFix(const Fix& fix, PointsByName& points, Dataset& data) {
    points.Add(fix.ident, fix.at);
    data.fixes.push_back(fix);
}

void TieAirways(PointsByName& points, Dataset& data, Report& report) {
    for (Airway& airway : data.airways) {
        for (Fix& point : airway.points) {
            if (const LatLon* at = Nearest(points, point.ident, point.at, kSameRecordNm)) {
                point.at = *at;
                continue;
            }
            report.Add(Topic::Unresolved, "airway points that no table had, added as fixes",
                       airway.name + " " + point.ident);
            AddFix(point, points, data);
        }
    }
}

void TieProcedures(PointsByName& points, Dataset& data, Report& report) {
    for (std::size_t kind = 0; kind < kProcedureKinds; ++kind) {
        for (const auto& [airport, lines] : data.procedures[kind]) {
            for (const std::string& line : lines) {
                const std::optional<Fix> fix = FixOfLine(line, kind == kApproaches);
                if (fix && Nearest(points, fix->ident, fix->at, kSamePointNm) == nullptr) {
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
    std::array<std::string_view, 7> words;
    const std::size_t count = avq1::SplitWords(line, words);
    const std::size_t fixAt = isApproach ? 2 : 1;
    const std::size_t positionAt = isApproach ? 5 : 4;
    if (count <= positionAt + 1 || line.starts_with(';') || line.starts_with('*') ||
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
    PointsByName points(data.stations.size() + data.fixes.size() + data.airports.size());
    for (const Station& station : data.stations) {
        points.Add(station.ident, station.at);
    }
    for (const Fix& fix : data.fixes) {
        points.Add(fix.ident, fix.at);
    }
    for (const Airport& airport : data.airports) {
        points.Add(airport.ident, airport.at);
    }
    TieAirways(points, data, report);
    TieProcedures(points, data, report);
}

}  // namespace avqdata
