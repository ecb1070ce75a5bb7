// flightlog/flight_log.h - the flight log's phase and its start.
//
// Phase 999 before the first plan is flown, -1 when a new log is asked for, 0 once it has begun,
// 11 when the flight is over. Times are the guidance's elapsed seconds.
#pragma once

#include <cstdint>

namespace avq1 {

inline constexpr std::int32_t kFlightLogWanted = -1;
inline constexpr std::int32_t kFlightLogDone = 11;
inline constexpr std::int32_t kNoFlightLog = 999;

struct FlightLog {
    std::int32_t phase = kNoFlightLog;
    bool secondChanged = false;  // the simulator's clock second changed in this frame
};

extern FlightLog flightLog;
extern std::int32_t FlightLogStarted;  // 1 once the start pass has run

// The start pass, once the module is loaded: sets FlightLogStarted and leaves a running log alone.
void RunFlightLogStartPass();

// A plan became active on the ground: the start pass, and with a plan to fly a new log is asked
// for and the flight's elapsed time begins at 0. Without a plan there is no flight to log yet.
void StartFlightLog();

}  // namespace avq1
