#include "avqdata/build_verb.h"

#include <algorithm>
#include <ostream>

#include "avqdata/check.h"
#include "avqdata/cycle.h"
#include "avqdata/folder.h"
#include "avqdata/merge.h"
#include "avqdata/source_formats.h"

namespace avqdata {
namespace {

constexpr std::size_t kPathsShown = 8;

// What one format brought.
struct Contribution {
    const SourceFormat* format = nullptr;
    SourceFiles files = {};
    int cycle = 0;
    Report report = {};
};

struct Build {
    const BuildRequest& request;
    std::vector<Contribution> contributions = {};
    std::vector<std::string> unused = {};
    std::vector<std::string> refused = {};
    Dataset folder = {};
    Report together = {};
    int newestCycle = 0;  // of all files
};

// "2309 (07-SEP-2023 to 05-OCT-2023)"
std::string CycleText(int cycle) {
    const std::string line = CycleLine(cycle);
    return line.empty() ? "not told" : line.substr(line.find(": ") + 2);
}

bool FindAll(Build& build, SourceFiles& files, std::string& error) {
    for (const std::string& source : build.request.sources) {
        FoundSources found;
        if (!FindSources(source, found, error)) {
            return false;
        }
        if (found.files.empty()) {
            error = source + ": " +
                    (found.refused.empty() ? "nothing in it is known; `build --list` tells what is"
                                           : "nothing in it can be read: " + found.refused.front());
            return false;
        }
        files.insert(files.end(), found.files.begin(), found.files.end());
        build.refused.insert(build.refused.end(), found.refused.begin(), found.refused.end());
    }
    files = ChooseFiles(files, build.unused);
    for (const FoundFile& file : files) {
        build.newestCycle = std::max(build.newestCycle, YearOfCycle(file.cycle) ? file.cycle : 0);
    }
    return true;
}

ImportOptions OptionsOf(const BuildRequest& request, const SourceFormat& format,
                        const SourceFiles& files) {
    ImportOptions options = request.options;
    if (const auto only = request.onlyOf.find(format.name); only != request.onlyOf.end()) {
        options.only = only->second;
    }
    if (FileOf(files, SourceKind::NasrNavaids) != nullptr) {
        options.countriesToldElsewhere = {"US"};
    }
    return options;
}

// What is read and merged at a time: all files of a source that comes as several, else each by
// itself, the newest last.
std::vector<SourceFiles> BatchesOf(const SourceFormat& format, const SourceFiles& files) {
    SourceFiles all = FilesOf(format, files);
    std::vector<SourceFiles> batches;
    if (std::string_view(format.argument) != "FILE") {
        batches.push_back(std::move(all));
        return batches;
    }
    std::stable_sort(all.begin(), all.end(),
                     [](const FoundFile& a, const FoundFile& b) { return a.cycle < b.cycle; });
    for (FoundFile& file : all) {
        batches.push_back({std::move(file)});
    }
    return batches;
}

bool ImportBatch(Build& build, const SourceFormat& format, const SourceFiles& batch,
                 const ImportOptions& options, const Progress& progress, std::string& error) {
    Contribution part{&format, batch, 0, {}};
    part.report.keepAll = build.request.verbose;
    Dataset incoming;
    if (!format.import(batch, {options, part.report, progress, &build.folder, build.newestCycle},
                       incoming, error)) {
        return false;
    }
    part.cycle = incoming.cycle;
    const int newest = build.folder.cycle;
    Report read;
    CountTables(incoming, read);
    for (const ReportEntry& entry : read.entries) {
        part.report.AddCount(Topic::Read, entry.kind, entry.count);
    }
    Add(std::move(incoming), format.coverage, options, build.folder, part.report);
    if (options.cycle == 0) {  // an older list of one country does not make the others old
        build.folder.cycle = std::max(build.folder.cycle, newest);
    }
    build.contributions.push_back(std::move(part));
    return true;
}

bool ImportAll(Build& build, const SourceFiles& files, const Progress& progress,
               std::string& error) {
    for (const SourceFormat& format : kSourceFormats) {
        const ImportOptions options = OptionsOf(build.request, format, files);
        for (const SourceFiles& batch : BatchesOf(format, files)) {
            if (!batch.empty() && !ImportBatch(build, format, batch, options, progress, error)) {
                return false;
            }
        }
    }
    Finish(build.folder, build.together);
    CountTables(build.folder, build.together);
    return true;
}

void PrintPaths(const std::vector<std::string>& paths, bool all, std::ostream& out) {
    const std::size_t shown = all ? paths.size() : std::min(paths.size(), kPathsShown);
    for (std::size_t i = 0; i < shown; ++i) {
        out << "  " << paths[i] << '\n';
    }
    if (shown < paths.size()) {
        out << "  ... and " << paths.size() - shown << " more\n";
    }
}

// An older list that replaces what a newer one says is worth a look.
void WarnOfAge(Build& build) {
    int newest = 0;
    for (Contribution& part : build.contributions) {
        if (part.cycle != 0 && part.cycle < newest) {
            part.report.Add(Topic::Warning, "older than what it replaces",
                            "cycle " + CycleText(part.cycle) + " after " + CycleText(newest));
        }
        newest = std::max(newest, part.cycle);
    }
}

void PrintContributions(const Build& build, std::ostream& out) {
    for (const Contribution& part : build.contributions) {
        out << "== " << part.format->title << ", cycle " << CycleText(part.cycle) << '\n';
        std::vector<std::string> paths;
        std::size_t procedures = 0;
        for (const FoundFile& file : part.files) {
            if (file.kind == SourceKind::XplaneProcedures) {
                ++procedures;
            } else {
                paths.push_back(file.file.path + ": " + NameOf(file.kind));
            }
        }
        if (procedures > 0) {
            paths.push_back(std::to_string(procedures) + " airports' files of procedures");
        }
        PrintPaths(paths, true, out);
        PrintReport(part.report, out);
    }
}

}  // namespace

int RunBuild(const BuildRequest& request, const Progress& progress, std::ostream& out,
             std::ostream& err) {
    constexpr int kFaulty = 1;
    constexpr int kFailed = 2;
    Build build{request};
    build.together.keepAll = request.verbose;
    SourceFiles files;
    std::string error;
    if (!FindAll(build, files, error) || !ImportAll(build, files, progress, error)) {
        err << "avqdata: " << error << "; nothing was written\n";
        return kFailed;
    }
    const FolderTexts texts = FormatFolder(build.folder);
    Report check;
    check.keepAll = request.verbose;
    CheckFolder(texts, check);
    if (!request.dryRun && !WriteFolder(request.target, texts, error)) {
        err << "avqdata: " << error << '\n';
        return kFailed;
    }
    WarnOfAge(build);
    PrintContributions(build, out);
    out << "== Not used\n";
    PrintPaths(build.unused, request.verbose, out);
    PrintPaths(build.refused, request.verbose, out);
    out << "== All together, cycle " << CycleText(build.folder.cycle) << '\n';
    PrintReport(build.together, out);
    out << "== Check\n";
    PrintReport(check, out);
    const std::size_t faults = check.Count(Topic::Fault);
    out << faults << " faults, " << check.Count(Topic::Warning) << " warnings\n";
    return faults > 0 ? kFaulty : 0;
}

void PrintSourceList(std::ostream& out) {
    for (const SourceFormat& format : kSourceFormats) {
        out << format.title << "\n  gives:    " << format.gives << "\n  where:    " << format.where
            << "\n  licence:  " << format.licence << '\n';
    }
    out << "Each as a folder, single files, plain or gzip, or zip archives as they are given "
           "out.\n";
}

}  // namespace avqdata
