#include "avqdata/log_performance.h"

#include <cmath>
#include <map>
#include <set>

#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::Format;

constexpr double kAltitudeStepFt = 5000;
constexpr double kFirstWeightStepLb = 5000;
constexpr std::size_t kMostColumns = 8;  // a tables file has no more

struct Mean {
    double sum = 0;
    double count = 0;

    void Add(double value) {
        sum += value;
        count += 1;
    }
    double Value() const { return sum / count; }
};

// All flights of one segment at one altitude.
struct Level {
    Mean airspeed;
    Mean rate;
    Mean flow;
    std::map<double, Mean> flowAtWeight;
};

using Levels = std::map<double, Level>;
using Items = std::vector<SummaryItem> FlightSummary::*;

double Nearest(double value, double step) {
    return step * std::round(value / step);
}

// The weights of the columns: as fine as eight columns allow.
double WeightStep(const std::vector<FlightSummary>& flights, std::set<double>& columns) {
    for (double step = kFirstWeightStepLb;; step *= 2) {
        columns.clear();
        for (const FlightSummary& flight : flights) {
            for (const Items items : {&FlightSummary::climb, &FlightSummary::cruise}) {
                for (const SummaryItem& item : flight.*items) {
                    columns.insert(Nearest(item.weightLb, step));
                }
            }
        }
        if (columns.size() <= kMostColumns) {
            return step;
        }
    }
}

Levels LevelsOf(const std::vector<FlightSummary>& flights, Items items, double weightStep) {
    Levels levels;
    for (const FlightSummary& flight : flights) {
        for (const SummaryItem& item : flight.*items) {
            Level& level =
                levels[std::max(Nearest(item.altitudeFt, kAltitudeStepFt), kAltitudeStepFt)];
            level.airspeed.Add(item.airspeedKt);
            level.rate.Add(item.rateFpm);
            level.flow.Add(item.flowPph);
            level.flowAtWeight[Nearest(item.weightLb, weightStep)].Add(item.flowPph);
        }
    }
    return levels;
}

// The flow at a column's weight, or at the nearest weight that was flown at this altitude.
double FlowAt(const Level& level, double weightLb) {
    const auto above = level.flowAtWeight.lower_bound(weightLb);
    if (above == level.flowAtWeight.end()) {
        return level.flowAtWeight.rbegin()->second.Value();
    }
    if (above == level.flowAtWeight.begin()) {
        return above->second.Value();
    }
    const auto below = std::prev(above);
    return weightLb - below->first < above->first - weightLb ? below->second.Value()
                                                             : above->second.Value();
}

std::string FlowsText(const Level& level, const std::set<double>& columns) {
    std::string text;
    for (const double weightLb : columns) {
        text += Format(" %7.0f", FlowAt(level, weightLb));
    }
    return text + "\n";
}

void AddItem(const LogRecord& record, double rateFpm, std::vector<SummaryItem>& items) {
    items.push_back({record.altitudeFt, record.airspeedKt, rateFpm,
                     record.fuelLb + record.zeroFuelLb, record.flowPph});
}

}  // namespace

FlightSummary ItemsOfRecords(const LoggedFlight& flight) {
    FlightSummary summary;
    summary.route = flight.route;
    summary.aircraft = flight.aircraft;
    for (const LogRecord& record : flight.records) {
        if (record.segment == "Climb" && record.verticalFpm > 0) {
            AddItem(record, record.verticalFpm, summary.climb);
        } else if (record.segment == "Cruise") {
            AddItem(record, 0, summary.cruise);
        } else if (record.segment == "Descent" && record.verticalFpm < 0) {
            AddItem(record, -record.verticalFpm, summary.descent);
        }
    }
    return summary;
}

std::string PerformanceTablesText(const std::vector<FlightSummary>& flights) {
    std::set<double> columns;
    const double weightStep = WeightStep(flights, columns);
    const Levels climb = LevelsOf(flights, &FlightSummary::climb, weightStep);
    const Levels cruise = LevelsOf(flights, &FlightSummary::cruise, weightStep);
    const Levels descent = LevelsOf(flights, &FlightSummary::descent, weightStep);
    if (climb.empty() && cruise.empty() && descent.empty()) {
        return {};
    }
    std::string text = Format(
        "; Means of %lu flights. Altitudes feet, speeds knots true, rates feet per minute,\n"
        "; weights thousands of pounds, fuel flows pounds an hour. A weight that was not\n"
        "; flown at an altitude has the flow of the nearest one that was.\n\n"
        "[UNITS]\nFUEL=LBS/HR\nWEIGHT=LBS\n",
        static_cast<unsigned long>(flights.size()));
    text += "\n[CLIMB]\n; altitude  speed   rate   fuel flow at each weight\n";
    for (const auto& [altitudeFt, level] : climb) {
        text += Format("  %8.0f %6.0f %6.0f  ", altitudeFt, level.airspeed.Value(),
                       level.rate.Value()) +
                FlowsText(level, columns);
    }
    text += "\n[GRWT";
    for (const double weightLb : columns) {
        text += Format(" %g", weightLb / 1000);
    }
    text += "]\n; altitude  speed          fuel flow at each weight\n";
    for (const auto& [altitudeFt, level] : cruise) {
        text += Format("  %8.0f %6.0f         ", altitudeFt, level.airspeed.Value()) +
                FlowsText(level, columns);
    }
    text += "\n[DESCENT]\n; altitude  speed   rate   fuel flow\n";
    for (const auto& [altitudeFt, level] : descent) {
        text += Format("  %8.0f %6.0f %6.0f   %7.0f\n", altitudeFt, level.airspeed.Value(),
                       std::abs(level.rate.Value()), level.flow.Value());
    }
    return text;
}

}  // namespace avqdata
