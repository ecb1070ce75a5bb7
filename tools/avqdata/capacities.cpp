#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "avqdata/limits.h"
#include "avqdata/merge.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

// Keeps the `most` records of the lowest rank, the earlier ones of equals; order stays.
template <typename Record, typename RankOf, typename NameOf>
void KeepBest(std::vector<Record>& records, std::size_t most, const char* reason, RankOf rankOf,
              NameOf nameOf, Report& report) {
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
        report.Add(Topic::Dropped, reason, nameOf(records[ranked[i].second]));
    }
    std::size_t index = 0;
    std::erase_if(records, [&](const Record&) { return dropped[index++]; });
}

bool IsFiveLetters(const std::string& ident) {
    return ident.size() == 5 &&
           std::all_of(ident.begin(), ident.end(), [](char c) { return c >= 'A' && c <= 'Z'; });
}

void FitFixes(Dataset& data, Report& report) {
    std::set<std::string> used;
    for (const Airway& airway : data.airways) {
        for (const Fix& point : airway.points) {
            used.insert(point.ident);
        }
    }
    const auto rankOf = [&](const Fix& fix) {
        if (used.contains(fix.ident)) {
            return 0;
        }
        return IsFiveLetters(fix.ident) ? 1 : 2;
    };
    KeepBest(
        data.fixes, kMostFixes,
        "fixes beyond the table: not on airways, names of other than five letters first", rankOf,
        [](const Fix& fix) { return fix.ident; }, report);
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
        return std::tuple(!hasProcedures, !IsIcaoCode(airport.ident), !airport.paved, -longestFt);
    };
    KeepBest(
        data.airports, kMostAirports,
        "airports beyond the table: without procedures, without a code of four letters, "
        "unpaved, short ones first",
        rankOf, [](const Airport& airport) { return airport.ident + " " + airport.name; }, report);
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
    SortDataset(data);
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
    KeepBest(
        data.stations, kMostStations, "stations beyond the table: NDBs first",
        [](const Station& station) { return !station.isVor; },
        [](const Station& station) { return station.ident; }, report);
    FitAirways(data, report);
    FitFixes(data, report);
    FitAirports(data, report);
    FitRunways(data, report);
    KeepBest(
        data.boundaries, kMostBoundaries, "boundaries beyond the table: the lesser classes first",
        [](const Boundary& boundary) { return boundary.rank; },
        [](const Boundary& boundary) { return boundary.ident; }, report);
}

}  // namespace avqdata
