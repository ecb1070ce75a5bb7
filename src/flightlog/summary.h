// flightlog/summary.h - condenses the records of a flight into the performance summary that is
// appended to \avq\FlightLog\Flight.log. Altitudes are feet in classes of 5000, weights pounds in
// classes of 5000 below 95500 and of 10000 from there on; speeds kt and ft/min, fuel flows lb/h.
#pragma once

#include <string>
#include <string_view>

namespace avq1 {

// The summary of the records in a log's text, from "FlightTime=" to the "Descent=" line; segments
// without records have no line. Lines that are no records are skipped.
std::string SummaryText(std::string_view records, std::string_view aircraftName);

// Reads fpl.log back, appends its summary to Flight.log when there is an aircraft's name, and keeps
// the records under a name with the computer's date and time. What cannot be read or written is
// skipped.
void WriteSummary();

}  // namespace avq1
