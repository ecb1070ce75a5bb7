// avqdata/main.cpp - the avqdata program: imports public navigation data into a Navdata folder and
// checks such folders; shows and converts flight plans and flight logs.
//
// Status: 0 done, 1 the folder (check) or the plan has faults, 2 nothing could be done.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <string>
#include <vector>

#include "avqdata/check.h"
#include "avqdata/cycle.h"
#include "avqdata/folder.h"
#include "avqdata/importers.h"
#include "avqdata/log_verb.h"
#include "avqdata/merge.h"
#include "avqdata/plan_verb.h"
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
    std::string only;
    std::string classes;
    std::string countries;
    bool verbose = false;
    bool dryRun = false;
    ImportOptions options;
    PlanRequest plan;
    LogRequest log;
};

using ImportFunction = bool (*)(const std::string&, const ImportContext&, Dataset&, std::string&);

struct SourceVerb {
    const char* name;
    const char* argument;
    const char* description;
    ImportFunction import;
    Coverage coverage;
};

const std::array<SourceVerb, 5> kSources{{
    {"xplane", "DIR",
     "X-Plane's or FlightGear's nav.dat, fix.dat, awy.dat and apt.dat (also earth_*.dat), plain or "
     "gzip. Their licence is the GPL: use them for yourself, do not pass the result on.",
     ImportXplane, Coverage::Whole},
    {"ourairports", "DIR", "airports.csv, runways.csv and navaids.csv of ourairports.com",
     ImportOurAirports, Coverage::Whole},
    {"nasr", "DIR",
     "The FAA's NAV_BASE.csv, FIX_BASE.csv, AWY_SEG.csv (or AWY_SEG_ALT.csv), APT_BASE.csv, "
     "APT_RWY.csv and APT_RWY_END.csv (28-day subscription)",
     ImportNasr, Coverage::Partial},
    {"cifp", "FILE",
     "The FAA's coded instrument flight procedures (ARINC 424-18): departures, arrivals, "
     "approaches, and the points, runways, airways and airspaces that come with them",
     ImportCifp, Coverage::Partial},
    {"airspace", "FILE", "Airspace outlines as GeoJSON or OpenAir", ImportAirspace,
     Coverage::Partial},
}};

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

bool ReadOptions(Arguments& arguments, std::string& error) {
    constexpr std::array<std::string_view, 7> kTables{
        "navaids", "fixes", "airports", "airways", "procedures", "boundaries", "localizers"};
    ImportOptions& options = arguments.options;
    if (!arguments.region.empty() && !ReadRegion(arguments.region, options.region)) {
        error = "--region wants south,west,north,east in decimal degrees";
        return false;
    }
    if (options.cycle != 0 && CycleLine(options.cycle).empty()) {
        error = "--cycle wants year and number of a cycle, as in 2309";
        return false;
    }
    options.only = SplitList(arguments.only, ',');
    options.classes = SplitList(arguments.classes, ',');
    options.countries = SplitList(arguments.countries, ',');
    for (const std::string& table : options.only) {
        if (std::find(kTables.begin(), kTables.end(), table) == kTables.end()) {
            error =
                "--only knows navaids, fixes, airports, airways, procedures, boundaries, "
                "localizers; not " +
                table;
            return false;
        }
    }
    return true;
}

int RunImport(const SourceVerb& verb, Arguments& arguments) {
    std::string error;
    FolderTexts texts;
    if (!ReadOptions(arguments, error) || !ReadFolder(arguments.into, texts, error)) {
        return Fail(error);
    }
    Report report;
    report.keepAll = arguments.verbose;
    Dataset folder = ParseFolder(texts, report);
    ProgressLine line;
    ImportContext context{arguments.options, report, {}, &folder};
    if (arguments.options.progress || isatty(STDERR_FILENO) == 1) {
        context.progress = [&](std::string_view what, double done) { line.Show(what, done); };
    }
    Dataset incoming;
    if (!verb.import(arguments.source, context, incoming, error)) {
        return Fail(error + "; nothing was written");
    }
    Report read;
    CountTables(incoming, read);
    for (const ReportEntry& entry : read.entries) {
        report.AddCount(Topic::Read, entry.kind, entry.count);
    }
    Combine(std::move(incoming), verb.coverage, arguments.options, folder, report);
    const FolderTexts result = FormatFolder(folder);
    if (!arguments.dryRun && !WriteFolder(arguments.into, result, error)) {
        return Fail(error);
    }
    CountTables(folder, report);
    PrintReport(report, std::cout);
    return kDone;
}

int RunCheck(const Arguments& arguments) {
    std::error_code code;
    if (!std::filesystem::is_directory(arguments.folder, code)) {
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
    app.add_option("--into", arguments.into,
                   "Navdata folder to fill; what it holds is kept and "
                   "combined")
        ->required();
    app.add_option("--region", arguments.region,
                   "only what lies in south,west,north,east (decimal degrees)");
    app.add_option("--only", arguments.only,
                   "only these tables: navaids,fixes,airports,airways,procedures,boundaries,"
                   "localizers");
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

}  // namespace

int main(int argc, char** argv) {
    CLI::App app(
        "Turns public navigation data into the module's text files, and checks them; converts "
        "flight plans and flight logs.",
        "avqdata");
    app.require_subcommand(1);
    Arguments arguments;
    CLI::App* import = app.add_subcommand("import", "read a source into a Navdata folder");
    import->require_subcommand(1);
    std::array<CLI::App*, kSources.size()> verbs{};
    for (std::size_t i = 0; i < kSources.size(); ++i) {
        verbs[i] = import->add_subcommand(kSources[i].name, kSources[i].description);
        verbs[i]->add_option(kSources[i].argument, arguments.source, "what to read")->required();
        DescribeImportOptions(*verbs[i], arguments);
    }
    CLI::App* check = app.add_subcommand("check", "judge a Navdata folder line by line");
    check->add_option("DIR", arguments.folder, "the folder with avq_navs.txt and the others")
        ->required();
    check->add_flag("--verbose", arguments.verbose, "list every case, not only the first ones");
    const CLI::App* const plan = DescribePlan(app, arguments.plan);
    const CLI::App* const log = DescribeLog(app, arguments.log);
    CLI11_PARSE(app, argc, argv);
    if (plan->parsed()) {
        return RunPlan(arguments.plan, std::cout, std::cerr);
    }
    if (log->parsed()) {
        return RunLog(arguments.log, std::cout, std::cerr);
    }
    if (check->parsed()) {
        return RunCheck(arguments);
    }
    for (std::size_t i = 0; i < kSources.size(); ++i) {
        if (verbs[i]->parsed()) {
            return RunImport(kSources[i], arguments);
        }
    }
    return kFailed;
}
