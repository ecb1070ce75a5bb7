#include "navdb/airways.h"

#include <algorithm>

#include "base/module_state.h"
#include "base/text.h"

namespace avq1 {
namespace {

// Shorter than a table's lines: a longer one comes in pieces.
constexpr std::size_t kAirwayLineLength = 200;

struct AirwayFile {
    std::string_view text;
    std::vector<AirwayRun> index;
    bool exists = false;
    bool indexed = false;
};

AirwayFile airwayFile;

const StateReset kReset([] {
    airwayFile = {};
    airwayLookup = {};
});

struct AirwayLine {
    std::string_view whole;
    std::string_view name;
    std::string_view rest;  // behind the name
};

// Joined files have marks in their middle; no pilot can type the name of such a line's airway.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The next line that belongs to an airway.
bool NextAirwayLine(LineReader& lines, AirwayLine& line) {
    while (lines.Next(line.whole)) {
        if (line.whole.starts_with(';') || line.whole.starts_with(kByteOrderMark)) {
            continue;
        }
        line.rest = line.whole;
        line.name = NextWord(line.rest);
        if (!line.name.empty()) {
            return true;
        }
    }
    return false;
}

struct ByName {
    bool operator()(const AirwayRun& run, std::string_view name) const { return run.name < name; }
    bool operator()(std::string_view name, const AirwayRun& run) const { return name < run.name; }
};

void AppendFix(const AirwayLine& line, PointTable& results) {
    std::string_view rest = line.rest;
    PointRecord fix;
    NextWord(rest);  // the sequence
    fix.ident = NextWord(rest);
    fix.name = line.name;
    fix.latitude = NextNumber(rest);
    fix.longitude = NextNumber(rest);
    results.Append(fix);
}

}  // namespace

AirwayLookup airwayLookup;

std::vector<AirwayRun> IndexAirways(std::string_view text) {
    std::vector<AirwayRun> runs;
    LineReader lines(text, kAirwayLineLength);
    AirwayLine line;
    while (NextAirwayLine(lines, line)) {
        const auto offset = static_cast<std::size_t>(line.whole.data() - text.data());
        if (runs.empty() || runs.back().name != line.name) {
            runs.push_back({line.name, offset, 0});
        }
        runs.back().size = offset + line.whole.size() - runs.back().offset;
    }
    std::stable_sort(runs.begin(), runs.end(),
                     [](const AirwayRun& a, const AirwayRun& b) { return a.name < b.name; });
    return runs;
}

AirwayLookup ReadAirway(std::string_view text, const std::vector<AirwayRun>& index,
                        std::string_view name, std::string_view entryFix, PointTable& results) {
    AirwayLookup lookup;
    results.Clear();
    const auto [first, last] = std::equal_range(index.begin(), index.end(), name, ByName{});
    for (auto run = first; run != last && lookup.entryIndex == 0; ++run) {
        LineReader lines(text.substr(run->offset, run->size), kAirwayLineLength);
        AirwayLine line;
        while (results.count < kSearchResultCapacity && NextAirwayLine(lines, line)) {
            AppendFix(line, results);
            if (!entryFix.empty() && results[results.count].ident == entryFix) {
                lookup.entryIndex = results.count;
            }
        }
    }
    lookup.exitIndex = lookup.entryIndex;
    lookup.entryPage = (lookup.entryIndex + kAirwayFixesOnPage - 1) / kAirwayFixesOnPage;
    return lookup;
}

bool FindAirway(std::string_view name, std::string_view entryFix) {
    if (!airwayFile.indexed) {
        airwayFile.index = IndexAirways(airwayFile.text);
        airwayFile.indexed = true;
    }
    airwayLookup =
        ReadAirway(airwayFile.text, airwayFile.index, name, entryFix, navDatabase.searchResults);
    return airwayFile.exists;
}

void SetAirwayText(std::string_view text, bool fileExists) {
    airwayFile = {text, {}, fileExists, false};
    airwayLookup = {};
}

}  // namespace avq1
