#include "flightlog/flight_log.h"

#include <cmath>
#include <string_view>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "flightlog/log_files.h"
#include "flightlog/summary.h"
#include "flightplan/flight_plan.h"
#include "flightplan/route_walk.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "platform/files.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"
#include "simlink/data_service.h"
#include "simlink/sim_variables.h"

namespace avq1 {

FlightLogState flightLog;
std::int32_t FlightLogStarted = 0;

namespace {

const StateReset resetFlightLog([] {
    flightLog = FlightLogState{};
    FlightLogStarted = 0;
});

constexpr double kMovingKt = 2;
constexpr double kTaxiKt = 10;
constexpr double kTakeoffKt = 60;
constexpr double kTakeoffHeightFt = 50;
constexpr double kClimbFpm = 400;
constexpr double kLevelFpm = 50;
constexpr double kDescentFpm = -400;
constexpr double kApproachNm = 20;
constexpr double kLandedKt = 60;
constexpr double kArrivalTaxiKt = 40;
constexpr double kStoppedKt = 5;
constexpr double kParkedSeconds = 120;
constexpr double kDescentAfterSeconds = 20;
constexpr double kSteepSeconds = 5;  // between records while much changes
constexpr double kCruiseSeconds = 60;
constexpr std::string_view kNoWaypointText = "---";

double SinceLastRecord() {
    return guidance.elapsedSeconds - flightLog.lastRecordTime;
}

std::string UtcText() {
    return Format("%02.0f:%02.0f", aircraft.zuluHour, std::floor(aircraft.zuluMinute));
}

bool Climbs() {
    return aircraft.verticalSpeedFpm > kClimbFpm;
}

bool Descends() {
    return aircraft.verticalSpeedFpm < kDescentFpm;
}

bool NearDestination() {
    const std::int32_t last = PositionedEntryBack(activePlan, activePlan.lastIndex);
    if (last == kNoEntry) {
        return false;
    }
    const PlanWaypoint& entry = activePlan.entries[static_cast<std::size_t>(last)];
    return GreatCircleDistanceNm(aircraft.latitude, aircraft.longitude, entry.latitude,
                                 entry.longitude) < kApproachNm;
}

// Parked for long enough, or the parking brake is released again.
bool IsOver() {
    return aircraft.groundSpeedKt <= kTaxiKt &&
           (guidance.elapsedSeconds - flightLog.stopTime > kParkedSeconds ||
            ReadParkingBrake() == 0);
}

struct PhaseRow {
    const char* name;  // the segment in the records
    bool (*begins)();  // asked while the phase before it lasts
    void (*onBegin)() = nullptr;
    bool (*recordDue)() = nullptr;
};

constexpr PhaseRow kPhases[kFlightLogDone + 1] = {
    {"InitLoad", [] { return true; },
     [] {
         flightLog.startFuel = FuelOnBoard();
         flightLog.takeoffTimeText.clear();
         flightLog.landingTimeText.clear();
     }},
    {"PushBack", [] { return aircraft.groundSpeedKt > kMovingKt; }},
    {"Taxi", [] { return aircraft.groundSpeedKt > kTaxiKt; }},
    {"Takeoff",
     [] {
         return aircraft.groundSpeedKt > kTakeoffKt && aircraft.radioAltitudeFt > kTakeoffHeightFt;
     },
     [] { flightLog.takeoffTimeText = UtcText(); }},
    {kClimbSegment, Climbs, nullptr, [] { return Climbs() && SinceLastRecord() > kSteepSeconds; }},
    {kCruiseSegment, [] { return std::fabs(aircraft.verticalSpeedFpm) < kLevelFpm; }, nullptr,
     [] { return SinceLastRecord() > kCruiseSeconds; }},
    {kDescentSegment,
     [] {
         return Descends() && flightLog.lastRecordVerticalSpeed < kDescentFpm &&
                SinceLastRecord() > kDescentAfterSeconds;
     },
     nullptr, [] { return Descends() && SinceLastRecord() > kSteepSeconds; }},
    {"Approach", NearDestination, nullptr, [] { return SinceLastRecord() > kSteepSeconds; }},
    {"Landing", [] { return aircraft.groundSpeedKt < kLandedKt; },
     [] { flightLog.landingTimeText = UtcText(); }},
    {"Arr_Taxi", [] { return aircraft.groundSpeedKt < kArrivalTaxiKt; }},
    {kEndSegment, [] { return aircraft.groundSpeedKt < kStoppedKt; },
     [] { flightLog.stopTime = guidance.elapsedSeconds; }},
    {"", IsOver},
};
constexpr std::int32_t kArrivalTaxiPhase = 9;
constexpr std::int32_t kEndPhase = 10;

// Moves on by one phase, or back to taxiing when a stop was none. False when the present one lasts.
bool ChangePhase() {
    if (flightLog.phase == kEndPhase && aircraft.groundSpeedKt > kTaxiKt) {
        flightLog.phase = kArrivalTaxiPhase;
        return true;
    }
    if (flightLog.phase >= kFlightLogDone || !kPhases[flightLog.phase + 1].begins()) {
        return false;
    }
    ++flightLog.phase;
    if (kPhases[flightLog.phase].onBegin != nullptr) {
        kPhases[flightLog.phase].onBegin();
    }
    return true;
}

void ReadWeights() {
    if (flightLog.weightsRead != 0) {
        return;
    }
    AircraftWeights weights;
    if (ReadAircraftWeights(weights)) {
        flightLog.zeroFuelWeight = weights.zeroFuelLb;
        flightLog.payload = weights.payloadLb;
        flightLog.weightsRead = 1;
    }
}

std::string HeaderText() {
    constexpr const char* kRule =
        ";--------------------------------------------------------------------------\n";
    return "FlightPlan=" + LogRoute() + "\nAircraft=" + AircraftName + "\n" + kRule + kRule +
           "; TIME   Segment  Waypoint   GSP   TAS       V/S    ALT    FF     FOB       ZFW     "
           "PLD "
           " IAS\n" +
           kRule;
}

std::string RecordText(std::string_view waypoint) {
    const std::int32_t seconds = TruncateToInteger(guidance.elapsedSeconds);
    return Format(
        "%02d:%02d:%02d %-10s %6.*s %5.0f  %5.0f   %5.0f  %6.0f  %5.0f %7.0f  %7.0f %7.0f %-3.0f",
        seconds / 3600, seconds / 60 % 60, seconds % 60, kPhases[flightLog.phase].name,
        static_cast<int>(waypoint.size()), waypoint.data(), aircraft.groundSpeedKt,
        derived.trueAirspeedEstimateKt, aircraft.verticalSpeedFpm, aircraft.altitudeFt,
        TotalFuelFlow(), FuelOnBoard(), flightLog.zeroFuelWeight, flightLog.payload,
        aircraft.indicatedAirspeedKt);
}

void NoteRecord() {
    flightLog.lastRecordTime = guidance.elapsedSeconds;
    flightLog.lastRecordVerticalSpeed = aircraft.verticalSpeedFpm;
}

void WriteRecord(std::string_view waypoint, FileStart start) {
    std::string text = start == FileStart::Anew ? HeaderText() : std::string{};
    const std::string record = RecordText(waypoint);
    text += record + "\n";
    if (AppendToFile(LogPath(kRecordFile), text, start)) {
        AppendLogRecord(record);
    }
    NoteRecord();
}

void CloseLog() {
    NoteRecord();
    WriteSummary();
}

// The passed waypoint as one word, so that the columns behind it keep their places.
std::string_view PassedWaypoint() {
    std::string_view rest = guidance.passedIdent;
    const std::string_view word = NextWord(rest);
    return word.empty() ? kNoWaypointText : word;
}

bool RecordDue() {
    const auto& due = kPhases[flightLog.phase].recordDue;
    return due != nullptr && due();
}

}  // namespace

std::string LogPath(std::string_view file) {
    return SimFolder.empty() ? std::string{} : SimPath("\\avq\\FlightLog\\") + std::string(file);
}

std::string LogRoute() {
    if (activePlan.lastIndex < 0) {
        return "-";
    }
    return activePlan.entries[0].ident + "-" +
           activePlan.entries[static_cast<std::size_t>(activePlan.lastIndex)].ident;
}

void FlightLogUpdate(FlightLogMode mode) {
    if (mode != FlightLogMode::StartPass && flightLog.phase >= kFlightLogDone) {
        return;
    }
    ReadWeights();
    if (mode == FlightLogMode::StartPass) {
        FlightLogStarted = 1;
        return;
    }
    const bool passage = mode == FlightLogMode::WaypointPassage;
    const std::string_view waypoint = passage ? PassedWaypoint() : kNoWaypointText;
    bool recorded = false;
    while (ChangePhase()) {
        if (flightLog.phase == kFlightLogDone) {
            CloseLog();
            return;
        }
        WriteRecord(waypoint, flightLog.phase == 0 ? FileStart::Anew : FileStart::AtEnd);
        recorded = true;
    }
    if (!recorded && (passage || RecordDue())) {
        WriteRecord(waypoint, FileStart::AtEnd);
    }
}

void StartFlightLog() {
    FlightLogStarted = 1;
    flightLog.weightsRead = 0;
    flightLog.phase = kFlightLogWanted;
    guidance.elapsedSeconds = 0;
    FlightLogUpdate(FlightLogMode::FramePass);
}

bool HasFlightLog() {
    return flightLog.phase >= 0 && flightLog.phase <= kFlightLogDone;
}

void LogStartedPlan(const GuidanceReport& report) {
    if (report.onGround) {
        StartFlightLog();
    }
}

void LogPassedWaypoint(const GuidanceReport&) {
    FlightLogUpdate(FlightLogMode::WaypointPassage);
}

}  // namespace avq1
