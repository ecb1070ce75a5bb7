// Importing the world set against reading (and unpacking) the same bytes, and checking the result.
#include <benchmark/benchmark.h>

#include <array>
#include <filesystem>
#include <string>

#include "avqdata/check.h"
#include "avqdata/folder.h"
#include "avqdata/importers.h"
#include "avqdata/merge.h"
#include "avqdata/source_formats.h"

namespace avqdata {
namespace {

const std::string kWorld = AVQ1_SOURCE_DIR "/../shared/data/xplane";

bool HasWorld(benchmark::State& state) {
    if (!std::filesystem::exists(kWorld)) {
        state.SkipWithError("../shared/data/xplane is not there");
        return false;
    }
    return true;
}

bool ImportWorld(FolderTexts& texts) {
    const ImportOptions options;
    Report report;
    Dataset folder;
    Dataset incoming;
    std::string error;
    SourceFiles files;
    if (!FindFilesOf(FormatOf(SourceKind::XplaneNavaids), kWorld, files, error) ||
        !ImportXplane(files, {options, report, {}, &folder}, incoming, error)) {
        return false;
    }
    Combine(std::move(incoming), Coverage::Whole, options, folder, report);
    texts = FormatFolder(folder);
    return true;
}

void UnpackOnly(benchmark::State& state) {
    if (!HasWorld(state)) {
        return;
    }
    std::size_t bytes = 0;
    for (auto _ : state) {
        bytes = 0;
        for (const char* name : {"nav.dat.gz", "fix.dat.gz", "awy.dat.gz", "apt.dat.gz"}) {
            LineSource lines = LineSource::OfFile(kWorld + "/" + name, {});
            std::string_view line;
            while (lines.Next(line)) {
                bytes += line.size() + 1;
            }
        }
    }
    state.counters["megabytes"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(UnpackOnly)->Unit(benchmark::kMillisecond);

void ImportWorldSet(benchmark::State& state) {
    if (!HasWorld(state)) {
        return;
    }
    FolderTexts texts;
    for (auto _ : state) {
        if (!ImportWorld(texts)) {
            state.SkipWithError("the world set cannot be imported");
            return;
        }
    }
    std::size_t bytes = 0;
    for (const std::string& text : texts) {
        bytes += text.size();
    }
    state.counters["megabytes_written"] = static_cast<double>(bytes) / 1e6;
}
BENCHMARK(ImportWorldSet)->Unit(benchmark::kMillisecond);

void CheckWorldSet(benchmark::State& state) {
    FolderTexts texts;
    if (!HasWorld(state) || !ImportWorld(texts)) {
        return;
    }
    std::size_t faults = 0;
    for (auto _ : state) {
        Report report;
        CheckFolder(texts, report);
        faults = report.Count(Topic::Fault);
    }
    state.counters["faults"] = static_cast<double>(faults);
}
BENCHMARK(CheckWorldSet)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace avqdata
