// avqdata/log_records.h - the flight log's two files: the records of one flight (fpl.log) and the
// summaries of all flights (Flight.log).
//
// Speeds kt, vertical speeds ft/min, altitudes feet, weights pounds, flows lb/h, times seconds
// since the log began. A line that cannot be understood is left out and reported as a fault with
// its number; numbers are finite and of a size that any program can print.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "avqdata/report.h"

namespace avqdata {

inline constexpr std::string_view kNoLogWaypoint = "---";

struct LogRecord {
    int seconds = 0;
    std::string segment;
    std::string waypoint;  // "---" for none
    double groundSpeedKt = 0;
    double airspeedKt = 0;  // true
    double verticalFpm = 0;
    double altitudeFt = 0;
    double flowPph = 0;
    double fuelLb = 0;
    double zeroFuelLb = 0;  // with the payload, as the data service tells it
    double payloadLb = 0;
    double indicatedKt = 0;
};

struct LoggedFlight {
    std::string route;  // "KBOS-KBUF"
    std::string aircraft;
    std::vector<LogRecord> records;
};

// The mean of some records of one segment, altitude class and weight class.
struct SummaryItem {
    double altitudeFt = 0;
    double airspeedKt = 0;
    double rateFpm = 0;   // up in the climb, down in the descent; 0 in the cruise
    double weightLb = 0;  // 0 in the descent
    double flowPph = 0;
};

struct FlightSummary {
    std::string route;
    std::string date;  // "2026/11/23"
    std::string time;  // "01:23"
    std::string aircraft;
    double fuelUsedLb = 0;
    std::vector<SummaryItem> climb;
    std::vector<SummaryItem> cruise;
    std::vector<SummaryItem> descent;
};

// Whether a text is a list of summaries and not the records of one flight.
bool IsSummaryText(std::string_view text);

LoggedFlight ReadLoggedFlight(std::string_view text, std::string_view name, Report& report);
std::vector<FlightSummary> ReadSummaries(std::string_view text, std::string_view name,
                                         Report& report);

}  // namespace avqdata
