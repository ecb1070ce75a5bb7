// Loading and searching the navigation database against the cost of reading the same bytes.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstring>
#include <fstream>
#include <string>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "bench/world_data.h"
#include "geometry/geometry.h"
#include "navdb/airport_detail.h"
#include "navdb/nav_database.h"
#include "navdb/nearby.h"
#include "platform/files.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr const char* kFiles[] = {"\\avq\\navdata\\avq_ints.txt", "\\avq\\navdata\\fsb_awy2.txt",
                                  "\\avq\\navdata\\avq_apts.txt", "\\avq\\navdata\\avq_navs.txt",
                                  "\\avq\\navdata\\avq_sids.txt", "\\avq\\navdata\\avq_stars.txt",
                                  "\\avq\\navdata\\avq_apps.txt"};

enum DataSet { kDemo, kWorld, kWorldWithProcedures };

bool UseDataSet(benchmark::State& state) {
    ResetModuleState();
    SimFolder = state.range(0) == kDemo    ? AVQ1_SOURCE_DIR "/demo"
                : state.range(0) == kWorld ? bench::WorldSimFolder()
                                           : bench::WorldWithProceduresSimFolder();
    if (SimFolder.empty()) {
        state.SkipWithError("../shared/data/xplane is not there");
        return false;
    }
    return true;
}

double ResidentMegabytes() {
    std::ifstream status("/proc/self/statm");
    long total = 0;
    long resident = 0;
    status >> total >> resident;
    return static_cast<double>(resident) * 4096 / 1e6;
}

void BuildLists() {
    const LatLon here{aircraft.latitude, aircraft.longitude};
    BuildNearbyAirports(here);
    BuildNearbyNavaids(here);
    BuildNearbyFixes(here);
}

void PlaceAircraft() {
    aircraft.latitude = 42.36;
    aircraft.longitude = -71.01;
}

// A load, as a module makes one; with the first lists of a map, which read the positions.
void LoadAnew(benchmark::State& state, bool withLists) {
    malloc_trim(0);
    const double before = ResidentMegabytes();
    if (!UseDataSet(state)) {
        return;
    }
    const std::string folder = SimFolder;
    for (auto _ : state) {
        state.PauseTiming();
        ResetModuleState();
        SimFolder = folder;
        PlaceAircraft();
        state.ResumeTiming();
        LoadNavDatabase();
        if (withLists) {
            BuildLists();
        }
    }
    state.counters["records"] = navDatabase.navaids.count + navDatabase.intersections.count +
                                navDatabase.airwayFixes.count + navDatabase.airports.count;
    state.counters["resident_mb_grown"] = ResidentMegabytes() - before;
    state.counters["resident_mb"] = ResidentMegabytes();
}

void LoadDatabase(benchmark::State& state) {
    LoadAnew(state, false);
}
BENCHMARK(LoadDatabase)
    ->ArgName("world")
    ->DenseRange(kDemo, kWorldWithProcedures)
    ->Unit(benchmark::kMillisecond);

void LoadDatabaseAndFirstLists(benchmark::State& state) {
    LoadAnew(state, true);
}
BENCHMARK(LoadDatabaseAndFirstLists)
    ->ArgName("world")
    ->DenseRange(kDemo, kWorldWithProcedures)
    ->Unit(benchmark::kMillisecond);

// The lower bound of a load: the same files read whole and their line ends found.
void ReadBytesAndFindLineEnds(benchmark::State& state) {
    if (!UseDataSet(state)) {
        return;
    }
    std::size_t bytes = 0;
    for (auto _ : state) {
        std::size_t lines = 0;
        bytes = 0;
        for (const char* file : kFiles) {
            std::string text;
            ReadWholeFile(SimPath(file), text);
            bytes += text.size();
            const char* at = text.data();
            const char* end = at + text.size();
            while ((at = static_cast<const char*>(std::memchr(at, '\n', end - at))) != nullptr) {
                ++at;
                ++lines;
            }
        }
        benchmark::DoNotOptimize(lines);
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(ReadBytesAndFindLineEnds)
    ->ArgName("world")
    ->DenseRange(kDemo, kWorldWithProcedures)
    ->Unit(benchmark::kMillisecond);

bool LoadDataSet(benchmark::State& state) {
    if (!UseDataSet(state)) {
        return false;
    }
    LoadNavDatabase();
    PlaceAircraft();
    return true;
}

void BuildNearbyLists(benchmark::State& state) {
    if (!LoadDataSet(state)) {
        return;
    }
    for (auto _ : state) {
        BuildLists();
    }
}
BENCHMARK(BuildNearbyLists)
    ->ArgName("world")
    ->Arg(kDemo)
    ->Arg(kWorld)
    ->Unit(benchmark::kMicrosecond);

void NarrowNearbyLists(benchmark::State& state) {
    if (!LoadDataSet(state)) {
        return;
    }
    BuildLists();
    for (auto _ : state) {
        NarrowNearbyAirports();
        NarrowNearbyNavaids();
        NarrowNearbyFixes();
    }
}
BENCHMARK(NarrowNearbyLists)
    ->ArgName("world")
    ->Arg(kDemo)
    ->Arg(kWorld)
    ->Unit(benchmark::kMicrosecond);

// The lower bound of the lists: one bare great circle for every record in them.
void GreatCirclesOverTheTables(benchmark::State& state) {
    if (!LoadDataSet(state)) {
        return;
    }
    PointTable* tables[] = {&navDatabase.airports, &navDatabase.navaids, &navDatabase.airwayFixes};
    for (auto _ : state) {
        double sum = 0;
        for (PointTable* table : tables) {
            for (const LatLon& at : table->Positions()) {
                sum += GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude, at.latitude,
                                             at.longitude);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(GreatCirclesOverTheTables)
    ->ArgName("world")
    ->Arg(kDemo)
    ->Arg(kWorld)
    ->Unit(benchmark::kMicrosecond);

void SearchOneIdent(benchmark::State& state) {
    if (!LoadDataSet(state)) {
        return;
    }
    SearchResults results;
    for (auto _ : state) {
        SearchIdent("BOS", SearchCategory::All, results);
        benchmark::DoNotOptimize(NearestResult(results));
    }
    state.counters["results"] = results.count;
}
BENCHMARK(SearchOneIdent)->ArgName("world")->Arg(kDemo)->Arg(kWorld)->Unit(benchmark::kMicrosecond);

void LoadOneAirport(benchmark::State& state) {
    if (!LoadDataSet(state)) {
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(LoadAirportDetail("KBOS", kDepartureSlot));
    }
    state.counters["runways"] = static_cast<double>(airportSlots[kDepartureSlot].runways.size());
}
BENCHMARK(LoadOneAirport)->ArgName("world")->Arg(kDemo)->Arg(kWorld)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace avq1
