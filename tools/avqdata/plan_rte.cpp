// The module's own plans: its reader and writer do the work, the judging of lines is added.
#include <memory>

#include "avqdata/plan_exchange.h"
#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"
#include "base/text.h"
#include "flightplan/plan_files.h"

namespace avqdata {
namespace {

constexpr std::string_view kSection = "[FlightPlan]";
constexpr std::size_t kLongestPlanLine = 148;

bool IsRte(std::string_view text) {
    LineSource lines = LineSource::OfText(text, "");
    std::string_view line;
    while (lines.Next(line)) {
        if (avq1::EqualsIgnoreCase(Trim(line), kSection)) {
            return true;
        }
    }
    return false;
}

void JudgeWaypoint(const PlanSource& source, std::size_t number, std::string_view line) {
    const auto fault = [&](const char* kind, const std::string& text) {
        source.report.Add(Topic::Fault, kind, AtLine(source.name, number, text));
    };
    const std::vector<std::string_view> words = Words(line);
    if (words[0] == avq1::kDiscontinuity) {
        return;
    }
    if (words.size() < 3) {
        fault("waypoints without a position",
              std::string(words[0]) + " has no position: read as 0");
    } else if (!Position(words[1], words[2])) {
        fault("positions that make no sense",
              std::string(words[0]) +
                  " has a coordinate that is no number in its range; no number reads as 0");
    } else if (words.size() < 4 || TypeFromName(source.format, words[3]).empty()) {
        source.report.Add(
            Topic::Warning, "types that are not known",
            AtLine(source.name, number, std::string(words[0]) + " has no known type: read as WPT"));
    }
}

// What the module's reader passes over in silence.
void JudgeLines(const PlanSource& source) {
    LineSource lines = LineSource::OfText(source.text.substr(0, source.text.find('\0')), "");
    std::string_view line;
    bool inPlan = false;
    std::int32_t count = 0;
    while (lines.Next(line)) {
        if (!inPlan) {
            inPlan = line == kSection;
            if (!inPlan && avq1::EqualsIgnoreCase(Trim(line), kSection)) {
                source.report.Add(
                    Topic::Fault, "section lines",
                    AtLine(source.name, lines.LineNumber(),
                           "must read exactly [FlightPlan]: what follows is no plan"));
            }
            continue;
        }
        std::string_view rest = line;
        const std::string_view first = avq1::NextWord(rest);
        if (first.empty() || first.front() == ';') {
            continue;
        }
        if (line.size() > kLongestPlanLine) {
            source.report.Add(Topic::Warning, "lines too long",
                              AtLine(source.name, lines.LineNumber(),
                                     "has more than 148 characters: the rest does not count"));
        }
        if (++count > avq1::kPlanCapacity) {
            source.report.Add(Topic::Fault, "waypoints left out",
                              AtLine(source.name, lines.LineNumber(),
                                     "is beyond the 201 waypoints of a plan: left out"));
        } else {
            JudgeWaypoint(source, lines.LineNumber(), line);
        }
    }
}

void ReadRte(const PlanSource& source, ExchangePlan& plan) {
    const auto stored = std::make_unique<avq1::FlightPlan>();
    avq1::PlanBook book;
    avq1::ParsePlanText(source.text, *stored, &book, false);
    plan.entries.assign(stored->entries.begin(), stored->entries.begin() + stored->lastIndex + 1);
    plan.cruiseAltitudeFt = book.cruiseAltitudeFt;
    plan.fuelTotal = book.fuelTotal;
    plan.reserveFuel = book.reserveFuel;
    JudgeLines(source);
}

// The reserve comes first: its line adds to the total, which the next line then sets.
std::string KeyLines(const ExchangePlan& plan) {
    std::string text;
    if (plan.cruiseAltitudeFt != 0) {
        text += avq1::Format("CruiseAlt=%d\n", plan.cruiseAltitudeFt);
    }
    if (plan.reserveFuel != 0) {
        text += avq1::Format("ResvFuel=%.10g\n", plan.reserveFuel);
    }
    if (plan.reserveFuel != 0 || plan.fuelTotal != 0) {
        text += avq1::Format("Fuel=%.10g\n", plan.fuelTotal);
    }
    return text;
}

bool WriteRte(const PlanFormat&, const ExchangePlan& plan, std::string& text, std::string&) {
    const auto stored = std::make_unique<avq1::FlightPlan>();
    for (const avq1::PlanWaypoint& entry : plan.entries) {
        stored->Append(entry);
    }
    text = KeyLines(plan) + avq1::PlanText(*stored);
    return true;
}

}  // namespace

const PlanFormat kRtePlanFormat{
    .name = "rte",
    .title = "AVQ1 plan",
    .extensions = "rte",
    .sniff = IsRte,
    .read = ReadRte,
    .write = WriteRte,
    .carries = kCarriesPlaces | kCarriesAirways | kCarriesEndAirways | kCarriesProcedures |
               kCarriesFrequencies | kCarriesGaps | kCarriesCruise | kCarriesFuel,
    .typeNames = kPlanTypes,
    .longestIdent = 16,
    .longestPointIdent = 16,
    .endsAreAirports = false,
    .mostEntries = avq1::kPlanCapacity,
};

}  // namespace avqdata
