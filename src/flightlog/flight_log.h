// flightlog/flight_log.h - the flight log's phase and its start.
//
// Phase 999 before the first plan is flown, -1 when a new log is asked for, 0 once it has begun,
// 11 when the flight is over. Times are the guidance's elapsed simulator seconds.
#pragma once

#include <cstdint>

#include "guidance/guidance_events.h"

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

// The start pass, a new log is asked for, and the flight's elapsed time begins at 0.
void StartFlightLog();

// A plan was started: on the ground a new log begins with it.
void LogStartedPlan(const GuidanceReport& report);

}  // namespace avq1
