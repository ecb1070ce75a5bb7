// Any bytes as either of the flight log's files: what is read can be shown and written, and the
// rows made of it are rows the module reads.
#include "avqdata/log_formats.h"
#include "avqdata/log_performance.h"
#include "fuzz/fuzz_text.h"
#include "settings/performance_tables.h"

using namespace avqdata;

namespace {

void RequirePrintable(const std::string& text) {
    for (const char c : text) {
        Require(c == '\n' || (c >= ' ' && c <= '~'));
    }
}

void RequireRows(const std::vector<FlightSummary>& flights) {
    avq1::PerformanceTables tables;
    const std::string text = PerformanceTablesText(flights);
    avq1::ReadPerformanceTables(text, tables);
    Require(tables.grossWeights.size() <= avq1::kGrossWeightCapacity);
    Require(text.empty() ==
            (tables.climb.empty() && tables.cruise.empty() && tables.descent.empty()));
}

}  // namespace

void FuzzText(std::string_view text) {
    Report report;
    const std::vector<FlightSummary> flights = ReadSummaries(text, "fuzz", report);
    RequirePrintable(SummaryTable(flights));
    Require(!SummaryCsv(flights).empty());
    RequireRows(flights);
    const LoggedFlight flight = ReadLoggedFlight(text, "fuzz", report);
    RequirePrintable(FlightTable(flight));
    Require(!FlightCsv(flight).empty());
    RequireRows({ItemsOfRecords(flight)});
    ExchangePlan plan;
    for (const double longitude : {179.0, -179.0, 0.0}) {
        avq1::PlanWaypoint entry;
        entry.ident = "BBB";
        entry.longitude = longitude;
        plan.entries.push_back(entry);
    }
    const std::string kml = FlightKml(flight, plan);
    Require(kml.empty() == flight.records.empty());
    Require(kml.find("nan") == std::string::npos || text.find("nan") != std::string::npos);
}
