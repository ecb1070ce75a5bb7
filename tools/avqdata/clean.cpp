#include "avqdata/clean.h"

#include <algorithm>
#include <unordered_map>

#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr double kSameRecordNm = 10.0;

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

bool IsFrequency(bool isVor, std::optional<double> frequency) {
    return frequency &&
           (isVor ? *frequency >= 108 && *frequency < 118 : *frequency >= 100 && *frequency < 2000);
}

void CleanDataset(Dataset& data, Report& report) {
    std::erase_if(data.stations, [&](const Station& station) {
        const bool good = IsFrequency(station.isVor, Number(station.frequency));
        if (!good) {
            report.Add(Topic::Changed, "stations of an impossible frequency, taken as fixes",
                       station.ident + " " + station.frequency);
            data.fixes.push_back({station.ident, station.at});
        }
        return !good;
    });
    for (Airport& airport : data.airports) {
        CleanRunways(airport, report);
    }
}

void TieAirwaysToTables(Dataset& data, Report& report) {
    std::unordered_multimap<std::string, LatLon> points;
    points.reserve(data.stations.size() + data.fixes.size() + data.airports.size());
    for (const Station& station : data.stations) {
        points.emplace(station.ident, station.at);
    }
    for (const Fix& fix : data.fixes) {
        points.emplace(fix.ident, fix.at);
    }
    for (Airway& airway : data.airways) {
        for (Fix& point : airway.points) {
            const LatLon* best = nullptr;
            double bestNm = kSameRecordNm;
            const auto [first, last] = points.equal_range(point.ident);
            for (auto candidate = first; candidate != last; ++candidate) {
                const double nm = DistanceNm(candidate->second, point.at);
                if (nm < bestNm) {
                    bestNm = nm;
                    best = &candidate->second;
                }
            }
            if (best != nullptr) {
                point.at = *best;
                continue;
            }
            report.Add(Topic::Unresolved, "airway points that no table had, added as fixes",
                       airway.name + " " + point.ident);
            points.emplace(point.ident, point.at);
            data.fixes.push_back(point);
        }
    }
}

}  // namespace avqdata
