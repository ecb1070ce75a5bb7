// flightlog/flight_log.h - follows the flight from loading to shutdown in phases and writes a line
// of aircraft data to \avq\FlightLog\fpl.log at every phase change, at waypoint passage and at
// intervals; the lines also go to the message list. When the flight is over it is condensed into a
// summary (summary.h).
//
// Times are the guidance's elapsed simulator seconds, weights pounds, speeds kt and ft/min. A file
// that cannot be written is skipped; phases advance all the same. Panel thread only.
#pragma once

#include <cstdint>
#include <string>

#include "guidance/guidance_events.h"

namespace avq1 {

inline constexpr std::int32_t kFlightLogWanted = -1;
inline constexpr std::int32_t kFlightLogDone = 11;
inline constexpr std::int32_t kNoFlightLog = 999;

// The phases a record can be written in are 0 to 10; they are listed with their names in
// flight_log.cpp.
struct FlightLogState {
    std::int32_t phase = kNoFlightLog;  // 999 no log yet, -1 wanted, 0 to 10 open, 11 closed
    double weightsRead = 0;             // 1 once the data service has answered for this log
    double zeroFuelWeight = 0;
    double payload = 0;  // of all stations
    double startFuel = 0;
    double lastRecordTime = 0;
    double lastRecordVerticalSpeed = 0;
    double stopTime = 0;          // when the aircraft came to a stop after landing
    std::string takeoffTimeText;  // UTC "12:34", empty before
    std::string landingTimeText;
    bool secondChanged = false;  // the simulator's clock second changed in this frame
};

extern FlightLogState flightLog;
extern std::int32_t FlightLogStarted;  // 1 once the start pass has run

enum class FlightLogMode : std::int32_t {
    FramePass = 0,
    WaypointPassage = 1,  // of guidance.passedIdent: always writes a record
    StartPass = 3,        // once the module is loaded: reads the weights, leaves a log alone
};

// Reads the weights until the data service has answered, moves the phases on and writes the records
// that are due. Without a log, and with a closed one, nothing is written.
void FlightLogUpdate(FlightLogMode mode);

// Begins a new log with an elapsed time of 0; one that is still open is given up.
void StartFlightLog();

// A log is open or closed, so its times and its start fuel mean something.
bool HasFlightLog();

// ---- heard from guidance ----
// A plan was started: on the ground a new log begins with it.
void LogStartedPlan(const GuidanceReport& report);
void LogPassedWaypoint(const GuidanceReport& report);

}  // namespace avq1
