// avqdata/log_formats.h - logged flights as tables for a terminal, and in other programs' formats.
#pragma once

#include <string>
#include <vector>

#include "avqdata/log_records.h"
#include "avqdata/plan_exchange.h"

namespace avqdata {

// One flight a row, in the order of the file.
std::string SummaryTable(const std::vector<FlightSummary>& flights);
// The records, and the profile of altitude over time drawn below them.
std::string FlightTable(const LoggedFlight& flight);

// Comma-separated (RFC 4180) with a line of column names.
std::string SummaryCsv(const std::vector<FlightSummary>& flights);
std::string FlightCsv(const LoggedFlight& flight);

// KML (OGC 07-147r2). The log has no positions: a record is placed on the plan's route by the
// distance flown, ground speed over time, stretched between the waypoints that were passed. Empty
// when the plan has no leg or the flight no record.
std::string FlightKml(const LoggedFlight& flight, const ExchangePlan& plan);

}  // namespace avqdata
