// Loading one airport with its procedures, and one airway, from world-size files, against reading
// the same bytes. A pilot waits for either: 10 ms are the budget.
#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "bench/world_data.h"
#include "flightplan/airway_entry.h"
#include "flightplan/procedures.h"
#include "navdb/airport_detail.h"
#include "navdb/airways.h"
#include "navdb/nav_database.h"
#include "navdb/procedures.h"
#include "navdb/section_index.h"
#include "platform/files.h"

namespace avq1 {
namespace {

constexpr const char* kProcedureFiles[] = {"\\avq\\navdata\\avq_sids.txt",
                                           "\\avq\\navdata\\avq_stars.txt",
                                           "\\avq\\navdata\\avq_apps.txt"};
// The world's files with procedures beside them, loaded.
bool LoadWorld(benchmark::State& state) {
    ResetModuleState();
    SimFolder = bench::WorldWithProceduresSimFolder();
    if (SimFolder.empty()) {
        state.SkipWithError("../shared/data/xplane is not there");
        return false;
    }
    LoadNavDatabase();
    return true;
}

// An airport from the front, the middle and the end of the files, all of them busy.
std::string BusyAirport(std::int64_t which) {
    const std::int32_t count = navDatabase.airports.count;
    const std::int32_t numbers[] = {40, count / 80 * 40, count};
    return std::string(navDatabase.airports.Ident(numbers[which]));
}

void LoadAirportWithProcedures(benchmark::State& state) {
    if (!LoadWorld(state)) {
        return;
    }
    const std::string ident = BusyAirport(state.range(0));
    const auto slot = static_cast<std::int32_t>(state.range(1));
    for (auto _ : state) {
        benchmark::DoNotOptimize(LoadAirportDetail(ident, slot));
    }
    const AirportProcedures& read = airportSlots[static_cast<std::size_t>(slot)].procedures;
    state.counters["procedures"] =
        static_cast<double>(read.sids.size() + read.stars.size() + read.approaches.size());
}
BENCHMARK(LoadAirportWithProcedures)
    ->ArgNames({"place", "slot"})
    ->ArgsProduct({{0, 1, 2}, {kDepartureSlot, kArrivalSlot}})
    ->Unit(benchmark::kMicrosecond);

// The lower bound: the airport file, which is read for the runways, and the airport's own sections.
void ReadTheSameBytes(benchmark::State& state) {
    if (!LoadWorld(state)) {
        return;
    }
    std::string text;
    std::size_t sizes[3] = {};
    for (std::size_t i = 0; i < 3; ++i) {
        SectionIndex index;
        ReadSection(SimPath(kProcedureFiles[i]), BusyAirport(2), index, text);
        sizes[i] = text.size();
    }
    const bool departure = state.range(0) == kDepartureSlot;
    for (auto _ : state) {
        ReadWholeFile(SimPath("\\avq\\navdata\\avq_apts.txt"), text);
        for (std::size_t i = departure ? 0 : 1; i < (departure ? 1U : 3U); ++i) {
            ReadFilePart(SimPath(kProcedureFiles[i]), 4096, sizes[i], text);
        }
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(ReadTheSameBytes)
    ->ArgName("slot")
    ->Arg(kDepartureSlot)
    ->Arg(kArrivalSlot)
    ->Unit(benchmark::kMicrosecond);

// What a load without an index would cost at least: every byte of the files.
void ReadProcedureFilesWhole(benchmark::State& state) {
    if (!LoadWorld(state)) {
        return;
    }
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const char* file : kProcedureFiles) {
            std::string text;
            ReadWholeFile(SimPath(file), text);
            bytes += text.size();
        }
    }
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(ReadProcedureFilesWhole)->Unit(benchmark::kMicrosecond);

void IndexFiles(benchmark::State& state) {
    if (!LoadWorld(state)) {
        return;
    }
    for (auto _ : state) {
        IndexProcedureFiles();
    }
}
BENCHMARK(IndexFiles)->Unit(benchmark::kMicrosecond);

std::string WorldAirways() {
    std::string text;
    ReadWholeFile(SimPath("\\avq\\navdata\\fsb_awy2.txt"), text);
    return text;
}

// An airway of the file, and one that is not there: the whole file is passed over.
void LookUpAirway(benchmark::State& state) {
    if (!LoadWorld(state)) {
        return;
    }
    const std::string text = WorldAirways();
    const char* const name = state.range(0) != 0 ? "J121" : "NONE1";
    SetAirwayText(text, true, StampOf(SimPath(kAirwayFile)));
    AirwayLookup lookup;
    for (auto _ : state) {
        benchmark::DoNotOptimize(FindAirway(name, "NO", lookup));
    }
    state.counters["fixes"] = lookup.fixes.count;
    state.counters["bytes"] = static_cast<double>(text.size());
}
BENCHMARK(LookUpAirway)->ArgName("known")->Arg(1)->Arg(0)->Unit(benchmark::kMicrosecond);

// The lower bound of a look-up: the line ends of the file found.
void FindAirwayLineEnds(benchmark::State& state) {
    if (!LoadWorld(state)) {
        return;
    }
    const std::string text = WorldAirways();
    for (auto _ : state) {
        std::size_t lines = 0;
        const char* at = text.data();
        const char* const end = at + text.size();
        while ((at = static_cast<const char*>(
                    std::memchr(at, '\n', static_cast<std::size_t>(end - at)))) != nullptr) {
            ++at;
            ++lines;
        }
        benchmark::DoNotOptimize(lines);
    }
}
BENCHMARK(FindAirwayLineEnds)->Unit(benchmark::kMicrosecond);

void SpliceDeparture(benchmark::State& state) {
    ResetModuleState();
    for (std::int32_t i = 0; i <= 150; ++i) {
        PlanWaypoint entry;
        entry.ident = Format("W%04d", i);
        entry.type = i % 150 == 0 ? kAirportType : "INT";
        modifiedPlan.Append(std::move(entry));
    }
    planBook.editIndex = 1;
    for (int i = 0; i < 40; ++i) {
        procedureLists.sid.push_back({Format("S%04d", i), "", "", "", 40.0, -70.0, 0});
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(InsertSid(modifiedPlan));
    }
}
BENCHMARK(SpliceDeparture)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace avq1
