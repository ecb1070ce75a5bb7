#include "avqdata/log_verb.h"

#include <algorithm>
#include <filesystem>
#include <ostream>
#include <set>
#include <system_error>

#include "avqdata/log_formats.h"
#include "avqdata/log_performance.h"
#include "avqdata/os.h"
#include "avqdata/output_file.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

namespace fs = std::filesystem;

struct LogContents {
    bool isList = false;
    std::vector<FlightSummary> list;
    LoggedFlight flight;
};

bool ReadContents(const LogRequest& request, LogContents& contents, Report& report,
                  std::string& error) {
    std::error_code code;
    std::string path = request.source;
    if (fs::is_directory(PathOf(path), code)) {
        path = FindSource(path, {"Flight.log"});
        if (path.empty()) {
            error = request.source + ": holds no Flight.log";
            return false;
        }
    }
    std::string text;
    if (!ReadBoundedFile(path, "a flight log", text, error)) {
        return false;
    }
    contents.isList = IsSummaryText(text);
    if (contents.isList) {
        contents.list = ReadSummaries(text, BaseName(path), report);
        std::erase_if(contents.list, [&](const FlightSummary& flight) {
            return !request.aircraft.empty() && flight.aircraft != request.aircraft;
        });
    } else {
        contents.flight = ReadLoggedFlight(text, BaseName(path), report);
    }
    if (contents.list.empty() && contents.flight.records.empty()) {
        error = path + ": holds no flight" +
                (request.aircraft.empty() ? "" : " of " + request.aircraft);
        return false;
    }
    return true;
}

bool MakeCsv(const LogRequest&, const LogContents& contents, std::string& text, std::string&) {
    text = contents.isList ? SummaryCsv(contents.list) : FlightCsv(contents.flight);
    return true;
}

bool MakeKml(const LogRequest& request, const LogContents& contents, std::string& text,
             std::string& error) {
    if (contents.isList) {
        error = "a list of flights has no tracks; take the records of one flight (fpl.log)";
        return false;
    }
    if (request.plan.empty()) {
        error = "the log has no positions: --plan FILE names the plan that was flown";
        return false;
    }
    std::string planText;
    ExchangePlan plan;
    const PlanFormat* format = nullptr;
    Report report;
    if (!ReadBoundedFile(request.plan, "a flight plan", planText, error) ||
        !ReadExchangePlan(planText, BaseName(request.plan), nullptr, plan, format, report, error)) {
        return false;
    }
    text = FlightKml(contents.flight, plan);
    error = text.empty() ? request.plan + ": has no leg" : "";
    return !text.empty();
}

bool MakeTables(const LogRequest&, const LogContents& contents, std::string& text,
                std::string& error) {
    std::set<std::string> aircraft;
    for (const FlightSummary& flight : contents.list) {
        aircraft.insert(flight.aircraft);
    }
    if (aircraft.size() > 1) {
        error = "the flights are of several aircraft; --aircraft names one:";
        for (const std::string& name : aircraft) {
            error += " " + Printable(name);
        }
        return false;
    }
    text = PerformanceTablesText(contents.isList
                                     ? contents.list
                                     : std::vector<FlightSummary>{ItemsOfRecords(contents.flight)});
    error = text.empty() ? "no climb, cruise or descent was flown" : "";
    return !text.empty();
}

struct LogFormat {
    const char* extension;
    bool (*make)(const LogRequest& request, const LogContents& contents, std::string& text,
                 std::string& error);
};

constexpr LogFormat kFormats[] = {{".csv", MakeCsv}, {".kml", MakeKml}, {".per", MakeTables}};

bool Write(const LogRequest& request, const LogContents& contents, std::string& error) {
    const auto* const format =
        std::find_if(std::begin(kFormats), std::end(kFormats),
                     [&](const LogFormat& one) { return request.to.ends_with(one.extension); });
    if (format == std::end(kFormats)) {
        error = request.to + ": the extension tells the form: .csv, .kml or .per";
        return false;
    }
    std::string text;
    return format->make(request, contents, text, error) &&
           WriteOutputFile(request.to, text, request.force, error);
}

}  // namespace

int RunLog(const LogRequest& request, std::ostream& out, std::ostream& err) {
    std::string error;
    LogContents contents;
    Report report;
    bool done = ReadContents(request, contents, report, error);
    PrintCases(report, err);
    if (done && request.to.empty()) {
        out << (contents.isList ? SummaryTable(contents.list) : FlightTable(contents.flight));
    } else if (done) {
        done = Write(request, contents, error);
    }
    if (!done) {
        err << "avqdata: " << error << "\n";
        return kLogFailed;
    }
    if (!request.to.empty()) {
        out << request.to << ": "
            << (contents.isList ? contents.list.size() : contents.flight.records.size())
            << (contents.isList ? " flights\n" : " records\n");
    }
    return report.Count(Topic::Fault) > 0 ? kLogFaulty : kLogDone;
}

}  // namespace avqdata
