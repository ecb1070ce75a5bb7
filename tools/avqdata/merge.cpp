#include "avqdata/merge.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <numeric>
#include <set>
#include <tuple>
#include <unordered_map>

#include "avqdata/airspace.h"
#include "avqdata/airway_pieces.h"
#include "avqdata/clean.h"
#include "avqdata/points_by_name.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr double kSamePlaceNm = 0.05;
constexpr double kSameRecordNm = 10.0;

bool IsOneKind(const Fix&, const Fix&) {
    return true;
}

bool IsOneKind(const Station& a, const Station& b) {
    return a.isVor == b.isVor;
}

// Puts points in by the rule of identifiers and distances.
template <typename Record>
void MergePoints(std::vector<Record>&& incoming, const char* kind, std::vector<Record>& target,
                 Report& report) {
    const std::size_t known = target.size();
    ByName<std::size_t> index(known + incoming.size());
    for (std::size_t i = 0; i < known; ++i) {
        index.Add(target[i].ident, i);
    }
    target.reserve(known + incoming.size());
    std::vector<bool> replaced(known, false);
    for (Record& record : incoming) {
        std::size_t best = target.size();
        double bestNm = kSameRecordNm;
        index.ForEach(record.ident, [&](std::size_t candidate) {
            if (!IsOneKind(target[candidate], record) ||
                LieFarApart(target[candidate].at, record.at, kSameRecordNm)) {
                return true;
            }
            const double nm = DistanceNm(target[candidate].at, record.at);
            // Of one source, two records are one only at the very place.
            const bool fresh = candidate >= known || replaced[candidate];
            if (nm < (fresh ? kSamePlaceNm : bestNm)) {
                best = candidate;
                bestNm = nm;
            }
            return true;
        });
        if (best == target.size()) {
            index.Add(record.ident, best);
            target.push_back(std::move(record));
            continue;
        }
        const bool fresh = best >= known || replaced[best];
        report.Add(fresh ? Topic::Dropped : Topic::Changed,
                   std::string(kind) + (fresh ? " listed twice" : " that were there already"));
        if (fresh) {
            continue;
        }
        replaced[best] = true;
        if (bestNm < kSamePlaceNm) {
            record.at = target[best].at;
        }
        target[best] = std::move(record);
    }
}

void MergeRunways(const std::vector<RunwayEnd>& incoming, std::vector<RunwayEnd>& target) {
    for (const RunwayEnd& end : incoming) {
        const auto found = std::find_if(target.begin(), target.end(), [&](const RunwayEnd& have) {
            return have.ident == end.ident;
        });
        if (found == target.end()) {
            target.push_back(end);
        } else {
            *found = end;
        }
    }
}

void MergeAirports(std::vector<Airport>&& incoming, Coverage coverage, std::vector<Airport>& target,
                   Report& report) {
    std::unordered_map<std::string, std::size_t> index;
    for (std::size_t i = 0; i < target.size(); ++i) {
        index.emplace(target[i].ident, i);
    }
    const std::size_t known = target.size();
    for (Airport& airport : incoming) {
        const auto [found, isNew] = index.emplace(airport.ident, target.size());
        if (isNew) {
            target.push_back(std::move(airport));
            continue;
        }
        Airport& have = target[found->second];
        airport.isScheduled = airport.isScheduled || have.isScheduled;
        if (found->second >= known) {
            report.Add(Topic::Dropped, "airports listed twice", airport.ident);
            continue;
        }
        const bool isElsewhere = DistanceNm(have.at, airport.at) > kFarthestRunwayNm;
        if (isElsewhere && (coverage == Coverage::Partial || airport.runways.empty())) {
            report.Add(Topic::Dropped, "airports far from the one that has their identifier",
                       airport.ident);
            continue;
        }
        report.Add(Topic::Changed, "airports that were there already");
        if (coverage == Coverage::Partial) {
            MergeRunways(airport.runways, have.runways);
            have.paved = have.paved || airport.paved;
            have.isScheduled = airport.isScheduled;
            continue;
        }
        if (airport.runways.empty()) {
            airport.runways = std::move(have.runways);
            airport.paved = have.paved;
        }
        have = std::move(airport);
    }
}

void MergeBoundaries(std::vector<Boundary>&& incoming, std::vector<Boundary>& target,
                     Report& report) {
    std::unordered_map<std::string, std::size_t> index;
    for (std::size_t i = 0; i < target.size(); ++i) {
        index.emplace(target[i].ident, i);
    }
    for (Boundary& boundary : incoming) {
        const auto [found, isNew] = index.emplace(boundary.ident, target.size());
        if (isNew) {
            target.push_back(std::move(boundary));
        } else {
            report.Add(Topic::Changed, "boundaries replaced");
            target[found->second] = std::move(boundary);
        }
    }
}

// One a runway: of one source the later, of two the later source's.
void MergeLocalizers(std::vector<Localizer>&& incoming, std::vector<Localizer>& target,
                     Report& report) {
    std::map<std::pair<std::string, std::string>, Localizer> byRunway;
    std::set<std::pair<std::string, std::string>> ofSource;
    for (std::vector<Localizer>* list : {&target, &incoming}) {
        for (Localizer& localizer : *list) {
            const auto key = std::pair(localizer.airport, localizer.runway);
            if (list == &incoming && !ofSource.insert(key).second) {
                report.Add(Topic::Dropped, "localizers of a runway that has another",
                           byRunway[key].ident + " at " + key.first + " " + key.second);
            }
            byRunway.insert_or_assign(key, std::move(localizer));
        }
    }
    target.clear();
    for (auto& [key, localizer] : byRunway) {
        target.push_back(std::move(localizer));
    }
}

// ---- options ----

bool Wanted(const ImportOptions& options, std::string_view table) {
    return options.only.empty() ||
           std::find(options.only.begin(), options.only.end(), table) != options.only.end();
}

int LongestRunwayFt(const Airport& airport) {
    int longest = 0;
    for (const RunwayEnd& end : airport.runways) {
        longest = std::max(longest, end.lengthFt);
    }
    return longest;
}

void KeepAirports(const ImportOptions& options, Dataset& data, Report& report) {
    std::erase_if(data.airports, [&](const Airport& airport) {
        const char* reason = nullptr;
        if (!options.region.Contains(airport.at)) {
            reason = "airports outside the region";
        } else if (options.icaoOnly && !IsIcaoCode(airport.ident)) {
            reason = "airports without a code of four letters";
        } else if (options.minRunwayFt > 0 &&
                   (!airport.paved || LongestRunwayFt(airport) < options.minRunwayFt)) {
            reason = "airports without a paved runway as long as asked for";
        }
        if (reason != nullptr) {
            report.Add(Topic::Dropped, reason);
        }
        return reason != nullptr;
    });
}

// An airport whose place the source does not tell has no place in a region.
void KeepProcedures(const ImportOptions& options, Dataset& data, Report& report) {
    if (options.region.IsWorld()) {
        return;
    }
    std::set<std::string> inside;
    for (const Airport& airport : data.airports) {
        if (options.region.Contains(airport.at)) {
            inside.insert(airport.ident);
        }
    }
    for (ProcedureFile& file : data.procedures) {
        report.AddCount(Topic::Dropped, "airports' procedure sections outside the region",
                        std::erase_if(file, [&](const auto& section) {
                            return !inside.contains(section.first);
                        }));
    }
}

void KeepRegion(const ImportOptions& options, Dataset& data, Report& report) {
    if (options.region.IsWorld()) {
        return;
    }
    const auto outside = [&](const auto& record) { return !options.region.Contains(record.at); };
    report.AddCount(Topic::Dropped, "stations outside the region",
                    std::erase_if(data.stations, outside));
    report.AddCount(Topic::Dropped, "fixes outside the region", std::erase_if(data.fixes, outside));
    report.AddCount(Topic::Dropped, "localizers outside the region",
                    std::erase_if(data.localizers, outside));
    report.AddCount(Topic::Dropped, "boundaries outside the region",
                    std::erase_if(data.boundaries, [&](const Boundary& boundary) {
                        return std::none_of(
                            boundary.points.begin(), boundary.points.end(),
                            [&](const LatLon& at) { return options.region.Contains(at); });
                    }));
    std::vector<Airway> cut;
    for (const Airway& airway : data.airways) {
        std::vector<Airway> parts = CutToRegion(airway, options.region);
        if (parts.empty()) {
            report.Add(Topic::Dropped, "airway pieces outside the region");
        }
        cut.insert(cut.end(), parts.begin(), parts.end());
    }
    data.airways = std::move(cut);
}

// Equals keep their order. Records are large: their numbers are sorted, and each moves once.
template <typename Record, typename Less>
void SortRecords(std::vector<Record>& records, Less less) {
    if (std::is_sorted(records.begin(), records.end(), less)) {
        return;
    }
    std::vector<std::uint32_t> order(records.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return less(records[a], records[b]);
    });
    std::vector<Record> sorted;
    sorted.reserve(records.size());
    for (const std::uint32_t number : order) {
        sorted.push_back(std::move(records[number]));
    }
    records = std::move(sorted);
}

}  // namespace

bool Region::IsWorld() const {
    return south <= -90 && north >= 90 && west <= -180 && east >= 180;
}

bool Region::Contains(const LatLon& at) const {
    const bool inLongitude = west <= east ? at.longitude >= west && at.longitude <= east
                                          : at.longitude >= west || at.longitude <= east;
    return at.latitude >= south && at.latitude <= north && inLongitude;
}

void ApplyOptions(const ImportOptions& options, Dataset& data, Report& report) {
    KeepProcedures(options, data, report);
    KeepRegion(options, data, report);
    KeepAirports(options, data, report);
    const auto clear = [&](const char* table, auto& records) {
        if (!Wanted(options, table)) {
            records.clear();
        }
    };
    clear("navaids", data.stations);
    clear("fixes", data.fixes);
    clear("airports", data.airports);
    clear("airways", data.airways);
    clear("boundaries", data.boundaries);
    clear("localizers", data.localizers);
    for (ProcedureFile& file : data.procedures) {
        clear("procedures", file);
    }
    if (!Wanted(options, "navaids")) {
        data.cycle = 0;  // the line tells how current the navaids are
    }
    data.cycle = options.cycle != 0 ? options.cycle : data.cycle;
}

void MergeDataset(Dataset incoming, Coverage coverage, Dataset& target, Report& report) {
    MergePoints(std::move(incoming.stations), "stations", target.stations, report);
    MergePoints(std::move(incoming.fixes), "fixes", target.fixes, report);
    MergeAirports(std::move(incoming.airports), coverage, target.airports, report);
    MergeAirways(std::move(incoming.airways), target.airways, report);
    MergeBoundaries(std::move(incoming.boundaries), target.boundaries, report);
    MergeLocalizers(std::move(incoming.localizers), target.localizers, report);
    for (std::size_t kind = 0; kind < kProcedureKinds; ++kind) {
        for (auto& [airport, lines] : incoming.procedures[kind]) {
            if (target.procedures[kind].contains(airport)) {
                report.Add(Topic::Changed, "airports' procedure sections replaced", airport);
            }
            target.procedures[kind].insert_or_assign(airport, std::move(lines));
        }
    }
    target.cycle = incoming.cycle != 0 ? incoming.cycle : target.cycle;
}

void SortDataset(Dataset& data) {
    SortRecords(data.stations, [](const Station& a, const Station& b) {
        return std::tie(a.ident, b.isVor, a.at.latitude, a.at.longitude) <
               std::tie(b.ident, a.isVor, b.at.latitude, b.at.longitude);
    });
    SortRecords(data.fixes, [](const Fix& a, const Fix& b) {
        return std::tie(a.ident, a.at.latitude, a.at.longitude) <
               std::tie(b.ident, b.at.latitude, b.at.longitude);
    });
    SortRecords(data.airports,
                [](const Airport& a, const Airport& b) { return a.ident < b.ident; });
    for (Airport& airport : data.airports) {
        SortRecords(airport.runways,
                    [](const RunwayEnd& a, const RunwayEnd& b) { return a.ident < b.ident; });
    }
    // Longer pieces of one name first: the one a pilot most likely means.
    SortRecords(data.airways, [](const Airway& a, const Airway& b) {
        const int order = a.name.compare(b.name);
        return order != 0 ? order < 0 : a.points.size() > b.points.size();
    });
    SortRecords(data.boundaries, [](const Boundary& a, const Boundary& b) {
        return RankOfBoundary(a.ident) < RankOfBoundary(b.ident);
    });
}

void Add(Dataset incoming, Coverage coverage, const ImportOptions& options, Dataset& folder,
         Report& report) {
    CleanDataset(incoming, report);
    ApplyOptions(options, incoming, report);
    MergeDataset(std::move(incoming), coverage, folder, report);
    TieToTables(folder, report);
}

void Finish(Dataset& folder, Report& report) {
    FitCapacities(folder, report);
}

void Combine(Dataset incoming, Coverage coverage, const ImportOptions& options, Dataset& folder,
             Report& report) {
    Add(std::move(incoming), coverage, options, folder, report);
    Finish(folder, report);
}

}  // namespace avqdata
