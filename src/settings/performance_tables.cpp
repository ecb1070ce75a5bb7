#include "settings/performance_tables.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "platform/files.h"
#include "settings/aircraft_performance.h"

namespace avq1 {
namespace {

constexpr std::size_t kMaxLineLength = 1500;
constexpr std::size_t kMaxWords = 28;
constexpr double kGrossWeightUnit = 1000;
constexpr std::string_view kGrossWeightSection = "GRWT";
constexpr std::string_view kCruiseSection = "CRUISE";

using Words = std::array<std::string_view, kMaxWords>;

const StateReset kReset([] { performanceTables = {}; });

// Takes the words from `first` on as fuel flows.
template <std::size_t N>
std::int32_t ReadFuelFlows(const Words& words, std::size_t first, std::array<double, N>& flows) {
    std::int32_t count = 0;
    for (std::size_t i = 0; i < N && first + i < words.size() && !words[first + i].empty(); ++i) {
        flows[i] = ToNumber(words[first + i]);
        ++count;
    }
    return count;
}

void ReadClimbRow(const Words& words, PerformanceTables& tables) {
    ClimbRow row{ToNumber(words[0]), ToNumber(words[1]), ToNumber(words[2]), {}, 0};
    row.fuelFlowCount = ReadFuelFlows(words, 3, row.fuelFlow);
    tables.climb.push_back(row);
}

void ReadCruiseRow(const Words& words, PerformanceTables& tables) {
    CruiseRow row{ToNumber(words[0]), ToNumber(words[1]), {}, 0};
    row.fuelFlowCount = ReadFuelFlows(words, 2, row.fuelFlow);
    tables.cruise.push_back(row);
}

void ReadDescentRow(const Words& words, PerformanceTables& tables) {
    tables.descent.push_back(
        {ToNumber(words[0]), ToNumber(words[1]), ToNumber(words[2]), ToNumber(words[3])});
}

void ReadAltitudeRow(const Words& words, PerformanceTables& tables) {
    tables.altitudes.push_back({ToNumber(words[0]), ToNumber(words[1])});
}

// A section [UNITS] names the file's units for its reader; no value depends on it.
struct SectionRow {
    std::string_view name;
    void (*read)(const Words& words, PerformanceTables& tables);
    std::size_t (*count)(const PerformanceTables& tables);
};

const SectionRow kSections[] = {
    {"CLIMB", ReadClimbRow, [](const PerformanceTables& t) { return t.climb.size(); }},
    {kCruiseSection, ReadCruiseRow, [](const PerformanceTables& t) { return t.cruise.size(); }},
    {"DESCENT", ReadDescentRow, [](const PerformanceTables& t) { return t.descent.size(); }},
    {"ALTITUDE", ReadAltitudeRow, [](const PerformanceTables& t) { return t.altitudes.size(); }},
};

// "[GRWT 90 100 110]" gives the weights of the columns and begins the cruise rows.
std::string ReadHeader(std::string_view line, PerformanceTables& tables) {
    std::string text(line);
    text.erase(
        std::remove_if(text.begin(), text.end(), [](char c) { return c == '[' || c == ']'; }),
        text.end());
    Words words;
    SplitWords(std::string_view(text), words);
    if (!EqualsIgnoreCase(words[0], kGrossWeightSection)) {
        return std::string(words[0]);
    }
    for (std::size_t i = 1; i <= kGrossWeightCapacity && !words[i].empty(); ++i) {
        if (tables.grossWeights.size() < kGrossWeightCapacity) {
            tables.grossWeights.push_back(ToNumber(words[i]) * kGrossWeightUnit);
        }
    }
    return std::string(kCruiseSection);
}

void ReadRow(std::string_view section, const Words& words, PerformanceTables& tables) {
    const auto* const row =
        std::find_if(std::begin(kSections), std::end(kSections),
                     [&](const SectionRow& r) { return EqualsIgnoreCase(r.name, section); });
    if (row != std::end(kSections) && row->count(tables) < kPerformanceRowCapacity) {
        row->read(words, tables);
    }
}

}  // namespace

PerformanceTables performanceTables;

void ReadPerformanceTables(std::string_view text, PerformanceTables& tables) {
    std::string section;
    LineReader lines(text, kMaxLineLength);
    std::string_view line;
    while (lines.Next(line)) {
        if (line.starts_with(';')) {
            continue;
        }
        if (line.starts_with('[')) {
            section = ReadHeader(line, tables);
            continue;
        }
        Words words;
        if (SplitWords(line, words) > 0) {
            ReadRow(section, words, tables);
        }
    }
}

void LoadPerformanceTables() {
    performanceTables = {};
    std::string text;
    if (ReadWholeFile(SimPath("\\avq\\aircraft\\") + performance.performanceData, text)) {
        ReadPerformanceTables(text, performanceTables);
    }
}

}  // namespace avq1
