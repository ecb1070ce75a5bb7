// avqdata/main.cpp - the avqdata program: imports public navigation data into a Navdata folder and
// checks such folders; shows and converts flight plans and flight logs.
//
// Status: 0 done, 1 the folder (check) or the plan has faults, 2 nothing could be done.
#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "avqdata/build_verb.h"
#include "avqdata/check.h"
#include "avqdata/cycle.h"
#include "avqdata/folder.h"
#include "avqdata/importers.h"
#include "avqdata/log_verb.h"
#include "avqdata/merge.h"
#include "avqdata/os.h"
#include "avqdata/plan_verb.h"
#include "avqdata/source_formats.h"
#include "avqdata/text_tools.h"

namespace {

using namespace avqdata;

constexpr int kDone = 0;
constexpr int kFaulty = 1;
constexpr int kFailed = 2;

struct Arguments {
    std::string source;
    std::string into;
    std::string folder;
    std::string region;
    std::vector<std::string> only;
    std::string classes;
    std::string countries;
    bool verbose = false;
    bool dryRun = false;
    bool list = false;
    ImportOptions options;
    BuildRequest build;
    PlanRequest plan;
    LogRequest log;
};

// One line on a terminal that is written over and over.
struct ProgressLine {
    std::string shown;

    void Show(std::string_view what, double done) {
        std::array<char, 100> text{};
        std::snprintf(text.data(), text.size(), "%.*s %3.0f%%", static_cast<int>(what.size()),
                      what.data(), done * 100);
        if (shown != text.data()) {
            shown = text.data();
            std::fprintf(stderr, "\r%-40s", shown.c_str());
            std::fflush(stderr);
        }
    }
    ~ProgressLine() {
        if (!shown.empty()) {
            std::fprintf(stderr, "\r%-40s\r", "");
        }
    }
};

// Shows how far the work is, where somebody watches.
Progress ShowOn(ProgressLine& line, const ImportOptions& options) {
    if (!options.progress && !IsErrorsTerminal()) {
        return {};
    }
    return [&line](std::string_view what, double done) { line.Show(what, done); };
}

int Fail(const std::string& error) {
    std::cerr << "avqdata: " << error << "\n";
    return kFailed;
}

bool ReadRegion(const std::string& text, Region& region) {
    const std::vector<std::string> parts = SplitList(text, ',');
    if (parts.size() != 4) {
        return false;
    }
    const std::optional<LatLon> first = Position(parts[0], parts[1]);
    const std::optional<LatLon> second = Position(parts[2], parts[3]);
    if (!first || !second) {
        return false;
    }
    region = {std::min(first->latitude, second->latitude), first->longitude,
              std::max(first->latitude, second->latitude), second->longitude};
    return true;
}

// "navaids,fixes", or "nasr=navaids,fixes" for one source of several.
bool ReadOnly(const std::string& text, Arguments& arguments, std::string& error) {
    constexpr std::array<std::string_view, 7> kTables{
        "navaids", "fixes", "airports", "airways", "procedures", "boundaries", "localizers"};
    const std::size_t equals = text.find('=');
    const std::string format = equals == std::string::npos ? "" : text.substr(0, equals);
    const std::vector<std::string> tables =
        SplitList(equals == std::string::npos ? text : text.substr(equals + 1), ',');
    for (const std::string& table : tables) {
        if (std::find(kTables.begin(), kTables.end(), table) == kTables.end()) {
            error =
                "--only knows navaids, fixes, airports, airways, procedures, boundaries, "
                "localizers; not " +
                table;
            return false;
        }
    }
    if (format.empty()) {
        arguments.options.only = tables;
        return true;
    }
    arguments.build.onlyOf[format] = tables;
    const bool known = std::any_of(kSourceFormats.begin(), kSourceFormats.end(),
                                   [&](const SourceFormat& row) { return row.name == format; });
    error = known ? "" : "--only knows no source " + format;
    return known;
}

bool ReadOptions(Arguments& arguments, std::string& error) {
    ImportOptions& options = arguments.options;
    if (!arguments.region.empty() && !ReadRegion(arguments.region, options.region)) {
        error = "--region wants south,west,north,east in decimal degrees";
        return false;
    }
    if (options.cycle != 0 && CycleLine(options.cycle).empty()) {
        error = "--cycle wants year and number of a cycle, as in 2309";
        return false;
    }
    options.classes = SplitList(arguments.classes, ',');
    options.countries = SplitList(arguments.countries, ',');
    return std::all_of(arguments.only.begin(), arguments.only.end(),
                       [&](const std::string& text) { return ReadOnly(text, arguments, error); });
}

int RunImport(const SourceFormat& format, Arguments& arguments) {
    std::string error;
    FolderTexts texts;
    SourceFiles files;
    if (!ReadOptions(arguments, error) || !FindFilesOf(format, arguments.source, files, error) ||
        !ReadFolder(arguments.into, texts, error)) {
        return Fail(error);
    }
    Report report;
    report.keepAll = arguments.verbose;
    Dataset folder = ParseFolder(texts, report);
    ProgressLine line;
    const ImportContext context{arguments.options, report, ShowOn(line, arguments.options), &folder,
                                CycleOfLine(folder.cycleLine)};
    Dataset incoming;
    if (!format.import(files, context, incoming, error)) {
        return Fail(error + "; nothing was written");
    }
    Report read;
    CountTables(incoming, read);
    for (const ReportEntry& entry : read.entries) {
        report.AddCount(Topic::Read, entry.kind, entry.count);
    }
    Combine(std::move(incoming), format.coverage, arguments.options, folder, report);
    const FolderTexts result = FormatFolder(folder);
    if (!arguments.dryRun && !WriteFolder(arguments.into, result, error)) {
        return Fail(error);
    }
    CountTables(folder, report);
    PrintReport(report, std::cout);
    return kDone;
}

int RunBuildVerb(Arguments& arguments) {
    std::string error;
    if (arguments.list) {
        PrintSourceList(std::cout);
        return kDone;
    }
    BuildRequest& build = arguments.build;
    if (!ReadOptions(arguments, error)) {
        return Fail(error);
    }
    if (build.target.empty() || build.sources.empty()) {
        return Fail("build wants the folder to make and its sources; --list tells which there are");
    }
    build.options = arguments.options;
    build.dryRun = arguments.dryRun;
    build.verbose = arguments.verbose;
    ProgressLine line;
    return RunBuild(build, ShowOn(line, arguments.options), std::cout, std::cerr);
}

int RunCheck(const Arguments& arguments) {
    std::error_code code;
    if (!std::filesystem::is_directory(PathOf(arguments.folder), code)) {
        return Fail(arguments.folder + ": is no folder");
    }
    std::string error;
    FolderTexts texts;
    if (!ReadFolder(arguments.folder, texts, error)) {
        return Fail(error);
    }
    if (std::all_of(texts.begin(), texts.end(), [](const auto& text) { return text.empty(); })) {
        return Fail(arguments.folder + ": holds none of the navigation files (avq_navs.txt, ...)");
    }
    Report report;
    report.keepAll = arguments.verbose;
    CheckFolder(texts, report);
    PrintReport(report, std::cout);
    const std::size_t faults = report.Count(Topic::Fault);
    std::cout << faults << " faults, " << report.Count(Topic::Warning) << " warnings\n";
    return faults > 0 ? kFaulty : kDone;
}

void DescribeImportOptions(CLI::App& app, Arguments& arguments) {
    ImportOptions& options = arguments.options;
    app.add_option("--region", arguments.region,
                   "only what lies in south,west,north,east (decimal degrees)");
    app.add_option("--only", arguments.only,
                   "only these tables: navaids,fixes,airports,airways,procedures,boundaries,"
                   "localizers; of one source of several: nasr=navaids,fixes");
    app.add_option("--min-runway", options.minRunwayFt,
                   "only airports with a paved runway this long, feet")
        ->check(CLI::Range(0, 30000));
    app.add_flag("--icao-only", options.icaoOnly, "only airports with a code of four letters");
    app.add_option("--countries", arguments.countries,
                   "only these countries' (OurAirports: ISO codes, as in US,CA)");
    app.add_option("--classes", arguments.classes,
                   "only these airspace classes, as in ARTCC,CLASS_B,R");
    app.add_option("--simplify", options.simplifyNm,
                   "drop airspace points that lie this near to the line without them, nm")
        ->check(CLI::Range(0.0, 50.0));
    app.add_option("--cycle", options.cycle, "the cycle to name, as in 2309")
        ->check(CLI::Range(1, 9914));
    app.add_flag("--dry-run", arguments.dryRun, "report, but write nothing");
    app.add_flag("--progress", options.progress, "show progress though nobody watches");
    app.add_flag("--verbose", arguments.verbose, "list every case, not only the first ones");
}

CLI::App* DescribeBuild(CLI::App& app, Arguments& arguments) {
    CLI::App* const verb = app.add_subcommand(
        "build", "make a Navdata folder of what you have, in one step: folders, files, archives");
    verb->add_option("TARGET", arguments.build.target,
                     "the Navdata folder; its tables are replaced, other files stay");
    verb->add_option(
        "SOURCE", arguments.build.sources,
        "a simulator's folder, a source's folder or file, a zip archive; in any order");
    verb->add_flag("--list", arguments.list, "which sources there are and where people get them");
    DescribeImportOptions(*verb, arguments);
    return verb;
}

CLI::App* DescribePlan(CLI::App& app, PlanRequest& plan) {
    CLI::App* const verb =
        app.add_subcommand("plan", "show a flight plan, or write it in another format");
    verb->add_option("FILE", plan.file,
                     "the plan, in any format that is read, or a route in quotes: \"KBOS DCT GDM "
                     "T608 ALB KBUF\"")
        ->required();
    verb->add_option("--data", plan.data,
                     "a Navdata folder, for plans that give names instead of positions, for the "
                     "points of named procedures, for frequencies");
    CLI::Option* const check = verb->add_option(
        "--check", plan.check,
        "a Navdata folder: say which fixes, airways and procedures it does not have as the plan "
        "has them, and whether it is of another cycle");
    CLI::Option* const to =
        verb->add_option("--to", plan.to, "the file to write; its extension tells the format");
    to->excludes(check);
    verb->add_option("--as", plan.as, "the format, where an extension has two")->needs(to);
    verb->add_option("--cycle", plan.cycle,
                     "the data's cycle, as in 2309, for fms1100 (else the plan's, else today's)")
        ->needs(to);
    verb->add_flag("--force", plan.force, "write over a file that is there")->needs(to);
    verb->footer("Formats, of which the first with an extension is that extension's:\n" +
                 PlanFormatList());
    return verb;
}

CLI::App* DescribeLog(CLI::App& app, LogRequest& log) {
    CLI::App* const verb = app.add_subcommand(
        "log", "list the flights of the flight log, or show one; write them in another form");
    verb->add_option("LOG", log.source,
                     "the FlightLog folder, Flight.log (the list) or fpl.log (one flight)")
        ->required();
    CLI::Option* const to = verb->add_option(
        "--to", log.to,
        "the file to write: .csv (either), .kml (one flight), .per (rows for the aircraft's "
        "performance tables, from either)");
    verb->add_option("--plan", log.plan, "the plan that was flown, for the track of a .kml")
        ->needs(to);
    verb->add_option("--aircraft", log.aircraft, "of a list, only this aircraft's flights");
    verb->add_flag("--force", log.force, "write over a file that is there")->needs(to);
    return verb;
}

// The verbs of `import`, in the table's order.
std::vector<CLI::App*> DescribeImports(CLI::App& app, Arguments& arguments) {
    CLI::App* const import = app.add_subcommand("import", "add one source to a Navdata folder");
    import->require_subcommand(1);
    std::vector<CLI::App*> verbs;
    for (const SourceFormat& format : kSourceFormats) {
        CLI::App* const verb = verbs.emplace_back(
            import->add_subcommand(format.name, std::string(format.title) + ": " + format.gives +
                                                    ". Licence: " + format.licence + "."));
        verb->add_option(format.argument, arguments.source, "what to read: folder, file or archive")
            ->required();
        verb->add_option("--into", arguments.into,
                         "Navdata folder to fill; what it holds is kept and combined")
            ->required();
        DescribeImportOptions(*verb, arguments);
    }
    return verbs;
}

// The words behind the program's name, last first as the library wants them.
std::vector<std::string> WordsOf(int argc, char** argv) {
    std::vector<std::string> words = CommandLine(argc, argv);
    words.erase(words.begin());
    std::reverse(words.begin(), words.end());
    return words;
}

}  // namespace

int main(int argc, char** argv) {
    PrintUtf8();
    CLI::App app(
        "Turns public navigation data into the module's text files, and checks them; converts "
        "flight plans and flight logs.",
        "avqdata");
    app.require_subcommand(1);
    Arguments arguments;
    const CLI::App* const build = DescribeBuild(app, arguments);
    const std::vector<CLI::App*> imports = DescribeImports(app, arguments);
    CLI::App* check = app.add_subcommand("check", "judge a Navdata folder line by line");
    check->add_option("DIR", arguments.folder, "the folder with avq_navs.txt and the others")
        ->required();
    check->add_flag("--verbose", arguments.verbose, "list every case, not only the first ones");
    const CLI::App* const plan = DescribePlan(app, arguments.plan);
    const CLI::App* const log = DescribeLog(app, arguments.log);
    try {
        app.parse(WordsOf(argc, argv));
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    if (build->parsed()) {
        return RunBuildVerb(arguments);
    }
    if (plan->parsed()) {
        return RunPlan(arguments.plan, std::cout, std::cerr);
    }
    if (log->parsed()) {
        return RunLog(arguments.log, std::cout, std::cerr);
    }
    if (check->parsed()) {
        return RunCheck(arguments);
    }
    for (std::size_t i = 0; i < imports.size(); ++i) {
        if (imports[i]->parsed()) {
            return RunImport(kSourceFormats[i], arguments);
        }
    }
    return kFailed;
}
