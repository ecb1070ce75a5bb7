#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>

#include "avqdata/airspace.h"
#include "avqdata/clean.h"
#include "avqdata/limits.h"
#include "avqdata/merge.h"
#include "avqdata/points_by_name.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

// Keeps the `most` records of the lowest rank, the earlier ones of equals; order stays. `onDropped`
// is called with each of the others and returns what the report calls it.
template <typename Record, typename RankOf, typename OnDropped>
void KeepBest(std::vector<Record>& records, std::size_t most, const char* reason, RankOf rankOf,
              OnDropped onDropped, Report& report) {
    if (records.size() <= most) {
        return;
    }
    using Rank = decltype(rankOf(records.front()));
    std::vector<std::pair<Rank, std::size_t>> ranked;
    ranked.reserve(records.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        ranked.emplace_back(rankOf(records[i]), i);
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<bool> dropped(records.size(), false);
    for (std::size_t i = most; i < ranked.size(); ++i) {
        dropped[ranked[i].second] = true;
        report.Add(Topic::Dropped, reason, onDropped(records[ranked[i].second]));
    }
    std::size_t index = 0;
    std::erase_if(records, [&](const Record&) { return dropped[index++]; });
}

bool IsFiveLetters(const std::string& ident) {
    return ident.size() == 5 &&
           std::all_of(ident.begin(), ident.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

// Calls `onPoint` with what airways and procedures run over.
template <typename OnPoint>
void WalkUsedPoints(const Dataset& data, OnPoint onPoint) {
    for (const Airway& airway : data.airways) {
        for (const Fix& point : airway.points) {
            onPoint(point);
        }
    }
    for (std::size_t kind = 0; kind < kProcedureKinds; ++kind) {
        for (const auto& [airport, lines] : data.procedures[kind]) {
            for (const std::string& line : lines) {
                if (const std::optional<Fix> fix = FixOfLine(line, kind == kApproaches)) {
                    onPoint(*fix);
                }
            }
        }
    }
}

// Of what went out of its table stays a fix where an airway or a procedure runs over it.
void KeepAsFixes(const PointsByName& dropped, Dataset& data, Report& report) {
    if (dropped.Size() == 0) {
        return;
    }
    PointsByName fixes;
    WalkUsedPoints(data, [&](const Fix& used) {
        if (Nearest(dropped, used.ident, used.at, kSamePointNm) != nullptr &&
            Nearest(fixes, used.ident, used.at, kSamePointNm) == nullptr) {
            fixes.Add(used.ident, used.at);
            data.fixes.push_back(used);
            report.Add(Topic::Changed, "points of airways and procedures kept as fixes",
                       used.ident);
        }
    });
}

// Airports by whole degrees, to find the nearest of a place.
class AirportGrid {
  public:
    explicit AirportGrid(const std::vector<Airport>& airports) {
        for (const Airport& airport : airports) {
            cells_[{Cell(airport.at.latitude), Cell(airport.at.longitude)}].push_back(airport.at);
        }
    }
    // Whole nm, as far as the cells around the place reach; kFar beyond.
    int NearestNm(const LatLon& at) const {
        double nearest = kFar;
        for (int row = -1; row <= 1; ++row) {
            for (int column = -1; column <= 1; ++column) {
                const auto cell =
                    cells_.find({Cell(at.latitude) + row, Cell(at.longitude) + column});
                if (cell == cells_.end()) {
                    continue;
                }
                for (const LatLon& airport : cell->second) {
                    nearest = std::min(nearest, DistanceNm(airport, at));
                }
            }
        }
        return static_cast<int>(nearest);
    }

  private:
    static constexpr double kFar = 999;
    static int Cell(double degrees) { return static_cast<int>(std::floor(degrees)); }
    std::map<std::pair<int, int>, std::vector<LatLon>> cells_;
};

void FitFixes(Dataset& data, Report& report) {
    if (data.fixes.size() <= kMostFixes) {
        return;
    }
    PointsByName used;
    WalkUsedPoints(data, [&](const Fix& point) { used.Add(point.ident, point.at); });
    const AirportGrid airports(data.airports);
    const auto rankOf = [&](const Fix& fix) {
        const bool isUsed = Nearest(used, fix.ident, fix.at, kSamePointNm) != nullptr;
        const int use = isUsed ? 0 : IsFiveLetters(fix.ident) ? 1 : 2;
        return std::pair(use, use == 0 ? 0 : airports.NearestNm(fix.at));
    };
    KeepBest(
        data.fixes, kMostFixes,
        "fixes beyond the table: in no airway or procedure, names of other than five letters, far "
        "from airports first",
        rankOf, [](const Fix& fix) { return fix.ident; }, report);
}

// A field a pilot would file to comes before one he might look out of the window for.
void FitAirports(Dataset& data, Report& report) {
    const auto rankOf = [&](const Airport& airport) {
        const bool hasProcedures =
            std::any_of(std::begin(data.procedures), std::end(data.procedures),
                        [&](const ProcedureFile& file) { return file.contains(airport.ident); });
        int longestFt = 0;
        for (const RunwayEnd& end : airport.runways) {
            longestFt = std::max(longestFt, end.lengthFt);
        }
        return std::tuple(!hasProcedures, !airport.isScheduled, airport.runways.empty(),
                          !IsIcaoCode(airport.ident), !airport.paved, -longestFt);
    };
    PointsByName dropped;
    KeepBest(
        data.airports, kMostAirports,
        "airports beyond the table: without procedures, airlines, runways or a code of four "
        "letters, unpaved, short ones first",
        rankOf,
        [&](const Airport& airport) {
            dropped.Add(airport.ident, airport.at);
            return airport.ident + " " + airport.name;
        },
        report);
    KeepAsFixes(dropped, data, report);
}

void FitRunways(Dataset& data, Report& report) {
    for (Airport& airport : data.airports) {
        KeepBest(
            airport.runways, kMostRunways, "runway ends beyond an airport's line: short ones",
            [](const RunwayEnd& end) { return -end.lengthFt; },
            [&](const RunwayEnd& end) { return airport.ident + " " + end.ident; }, report);
    }
}

std::size_t TableFixes(const Airway& airway) {
    return static_cast<std::size_t>(
        std::count_if(airway.points.begin(), airway.points.end(),
                      [](const Fix& point) { return point.ident.size() >= kShortestFix; }));
}

// Short pieces go first when an airway, or the table of airway fixes, is too long.
void FitAirways(Dataset& data, Report& report) {
    std::size_t linesOfName = 0;
    const std::string* name = nullptr;
    std::erase_if(data.airways, [&](const Airway& airway) {
        linesOfName = name != nullptr && *name == airway.name ? linesOfName : 0;
        name = &airway.name;
        const bool tooMany = linesOfName + airway.points.size() > kMostFixesOfAirway;
        if (tooMany) {
            report.Add(Topic::Dropped, "airway pieces beyond what a look-up lists: short ones",
                       airway.name + " from " + airway.points.front().ident);
            return true;
        }
        linesOfName += airway.points.size();
        return false;
    });
    std::vector<std::pair<std::size_t, std::size_t>> bySize;
    std::size_t total = 0;
    for (std::size_t i = 0; i < data.airways.size(); ++i) {
        bySize.emplace_back(data.airways[i].points.size(), i);
        total += TableFixes(data.airways[i]);
    }
    std::sort(bySize.begin(), bySize.end());
    std::vector<bool> dropped(data.airways.size(), false);
    for (std::size_t i = 0; i < bySize.size() && total > kMostAirwayFixes; ++i) {
        const Airway& airway = data.airways[bySize[i].second];
        total -= TableFixes(airway);
        dropped[bySize[i].second] = true;
        report.Add(Topic::Dropped, "airway pieces beyond the table of airway fixes: short ones",
                   airway.name + " from " + airway.points.front().ident);
    }
    std::size_t index = 0;
    std::erase_if(data.airways, [&](const Airway&) { return dropped[index++]; });
}

}  // namespace

void FitCapacities(Dataset& data, Report& report) {
    PointsByName dropped;
    KeepBest(
        data.stations, kMostStations, "stations beyond the table: NDBs first",
        [](const Station& station) { return !station.isVor; },
        [&](const Station& station) {
            dropped.Add(station.ident, station.at);
            return station.ident;
        },
        report);
    KeepAsFixes(dropped, data, report);
    SortDataset(data);
    FitAirways(data, report);
    FitAirports(data, report);
    FitFixes(data, report);
    FitRunways(data, report);
    KeepBest(
        data.boundaries, kMostBoundaries, "boundaries beyond the table: the lesser classes first",
        [](const Boundary& boundary) { return RankOfBoundary(boundary.ident); },
        [](const Boundary& boundary) { return boundary.ident; }, report);
    SortDataset(data);
}

}  // namespace avqdata
