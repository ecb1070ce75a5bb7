// flightlog/log_files.h - the flight log's files and the names in their lines, shared by the record
// writer and the summary. Panel thread only.
#pragma once

#include <string>
#include <string_view>

namespace avq1 {

inline constexpr std::string_view kRecordFile = "fpl.log";
inline constexpr std::string_view kSummaryFile = "Flight.log";

inline constexpr const char* kClimbSegment = "Climb";
inline constexpr const char* kCruiseSegment = "Cruise";
inline constexpr const char* kDescentSegment = "Descent";
inline constexpr const char* kEndSegment = "End_Flight";

// A file's path in \avq\FlightLog below the simulator's folder; empty, which no file can be opened
// by, as long as that folder is not known.
std::string LogPath(std::string_view file);

// "KBOS-KBUF": the first and the last entry of the active plan.
std::string LogRoute();

}  // namespace avq1
