#include "flightlog/flight_log.h"

#include "base/module_state.h"
#include "guidance/guidance_state.h"

namespace avq1 {

FlightLog flightLog;
std::int32_t FlightLogStarted = 0;

namespace {

const StateReset resetFlightLog([] {
    flightLog = FlightLog{};
    FlightLogStarted = 0;
});

}  // namespace

void RunFlightLogStartPass() {
    FlightLogStarted = 1;
}

void StartFlightLog() {
    RunFlightLogStartPass();
    flightLog.phase = kFlightLogWanted;
    guidance.elapsedSeconds = 0;
}

void LogStartedPlan(const GuidanceReport& report) {
    if (report.onGround) {
        StartFlightLog();
    }
}

}  // namespace avq1
