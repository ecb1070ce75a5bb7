// flightlog/flight_log.h - the flight log's phase and its start.
//
// Phase -1 before a flight, 0 once started, 11 when the flight is over.
#pragma once

#include <cstdint>

namespace avq1 {

inline constexpr std::int32_t kFlightLogDone = 11;

struct FlightLog {
    std::int32_t phase = -1;
    bool secondChanged = false;  // the simulator's clock second changed in this frame
};

extern FlightLog flightLog;
extern std::int32_t FlightLogStarted;  // 1 once the start pass has run

// Readies the log for a flight; sets FlightLogStarted.
void StartFlightLog();

}  // namespace avq1
