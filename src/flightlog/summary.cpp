#include "flightlog/summary.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

#include "base/text.h"
#include "flightlog/log_files.h"
#include "platform/files.h"
#include "platform/services.h"
#include "settings/aircraft_performance.h"

namespace avq1 {
namespace {

constexpr std::size_t kLineLength = 298;
constexpr double kFineClass = 5000;
constexpr double kCoarseClass = 10000;
constexpr double kCoarseFromLb = 95500;
constexpr std::size_t kFlightTimeLength = 5;  // "01:23" of "01:23:45"

enum Column : std::size_t {
    kTime,
    kSegment,
    kWaypoint,
    kGroundSpeed,
    kAirspeed,
    kVerticalSpeed,
    kAltitude,
    kFuelFlow,
    kFuel,
    kZeroFuel,
    kPayload,
    kColumns,
};
using Words = std::array<std::string_view, kColumns>;

struct WeightClass {
    double weightLb = 0;
    double fuelFlow = 0;  // summed over `count` records, as below
    double count = 0;
};

struct AltitudeClass {
    double altitudeFt = 0;
    double airspeed = 0;
    double verticalSpeed = 0;
    double fuelFlow = 0;
    double count = 0;
    std::vector<WeightClass> weights;
};

using Classes = std::vector<AltitudeClass>;

// The class of this value, made at the end when there is none yet.
template <typename Class>
Class& ClassOf(std::vector<Class>& classes, double Class::*key, double value) {
    const auto found = std::find_if(classes.begin(), classes.end(),
                                    [&](const Class& one) { return one.*key == value; });
    if (found != classes.end()) {
        return *found;
    }
    classes.push_back({});
    classes.back().*key = value;
    return classes.back();
}

double Rounded(double value, double step) {
    return step * std::trunc(value / step + 0.5);
}

void AddRecord(const Words& words, Classes& classes) {
    const double gross =
        ToNumber(words[kFuel]) + ToNumber(words[kZeroFuel]) + ToNumber(words[kPayload]);
    const double fuelFlow = ToNumber(words[kFuelFlow]);
    AltitudeClass& level =
        ClassOf(classes, &AltitudeClass::altitudeFt,
                std::max(Rounded(ToNumber(words[kAltitude]), kFineClass), kFineClass));
    level.airspeed += ToNumber(words[kAirspeed]);
    level.verticalSpeed += ToNumber(words[kVerticalSpeed]);
    level.fuelFlow += fuelFlow;
    level.count += 1;
    WeightClass& weight =
        ClassOf(level.weights, &WeightClass::weightLb,
                Rounded(gross, gross < kCoarseFromLb ? kFineClass : kCoarseClass));
    weight.fuelFlow += fuelFlow;
    weight.count += 1;
}

std::string ClimbItems(const AltitudeClass& level) {
    std::string text;
    for (const WeightClass& weight : level.weights) {
        text += Format("%.0f_%.0f_%.0f_%.0f_%.0f ", level.altitudeFt, level.airspeed / level.count,
                       level.verticalSpeed / level.count, weight.weightLb,
                       weight.fuelFlow / weight.count);
    }
    return text;
}

std::string CruiseItems(const AltitudeClass& level) {
    std::string text;
    for (const WeightClass& weight : level.weights) {
        text += Format("%.0f_%.0f_%.0f_%.0f ", level.altitudeFt, level.airspeed / level.count,
                       weight.weightLb, weight.fuelFlow / weight.count);
    }
    return text;
}

std::string DescentItems(const AltitudeClass& level) {
    return Format("%.0f_%.0f_%d_%.0f ", level.altitudeFt, level.airspeed / level.count,
                  TruncateToInteger(std::fabs(level.verticalSpeed / level.count)),
                  level.fuelFlow / level.count);
}

struct SegmentRow {
    const char* name;  // in the records, and of the summary's line
    std::string (*items)(const AltitudeClass& level);
};

constexpr std::array<SegmentRow, 3> kSegments{{
    {kClimbSegment, ClimbItems},
    {kCruiseSegment, CruiseItems},
    {kDescentSegment, DescentItems},
}};

struct FlightTotals {
    bool started = false;
    double startFuelLb = 0;
    double fuelUsedLb = 0;
    std::string_view time;
    std::array<Classes, kSegments.size()> segments;
};

void Add(const Words& words, FlightTotals& totals) {
    const double fuelLb = ToNumber(words[kFuel]);
    if (!totals.started && words[kTime] == "00:00:00") {
        totals.started = true;
        totals.startFuelLb = fuelLb;
    }
    if (words[kSegment] == kEndSegment) {  // of two stops the last one ended the flight
        totals.time = words[kTime].substr(0, kFlightTimeLength);
        totals.fuelUsedLb = totals.startFuelLb - fuelLb;
    }
    for (std::size_t i = 0; i < kSegments.size(); ++i) {
        if (words[kSegment] == kSegments[i].name) {
            AddRecord(words, totals.segments[i]);
        }
    }
}

}  // namespace

std::string SummaryText(std::string_view records, std::string_view aircraftName) {
    FlightTotals totals;
    LineReader lines(records, kLineLength);
    std::string_view line;
    Words words;
    while (lines.Next(line)) {
        if (!line.starts_with(';') && SplitWords(line, words) == words.size()) {
            Add(words, totals);
        }
    }
    std::string text =
        Format("FlightTime=%.*s\nAircraft=%.*s\nFuelUsed=%.0f\n",
               static_cast<int>(totals.time.size()), totals.time.data(),
               static_cast<int>(aircraftName.size()), aircraftName.data(), totals.fuelUsedLb);
    for (std::size_t i = 0; i < kSegments.size(); ++i) {
        if (totals.segments[i].empty()) {
            continue;
        }
        text += std::string(kSegments[i].name) + "=";
        for (const AltitudeClass& level : totals.segments[i]) {
            text += kSegments[i].items(level);
        }
        text += "\n";
    }
    return text;
}

void WriteSummary() {
    std::string records;
    if (!ReadWholeFile(LogPath(kRecordFile), records)) {
        return;
    }
    const LocalTime now = ReadLocalTime();
    if (!AircraftName.empty()) {
        const std::string summary = "[" + LogRoute() + "]\n" +
                                    Format("Date=%d/%02d/%02d\n", now.year, now.month, now.day) +
                                    SummaryText(records, AircraftName) + "\n";
        AppendToFile(LogPath(kSummaryFile), summary, FileStart::AtEnd);
    }
    const std::string kept = Format("fpl-%04d%02d%02d-%02d%02d%02d.log", now.year, now.month,
                                    now.day, now.hour, now.minute, now.second);
    AppendToFile(LogPath(kept), records, FileStart::Anew);
}

}  // namespace avq1
