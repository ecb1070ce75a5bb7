#include <algorithm>
#include <array>
#include <cmath>

#include "base/text.h"
#include "flightplan/plan_files.h"

namespace avq1 {
namespace {

constexpr std::size_t kLineLimit = 148;
constexpr std::size_t kMaxColumnLength = 16;  // keeps every written line within the limit
constexpr std::string_view kSectionLine = "[FlightPlan]";
constexpr std::string_view kNoFrequency = "---";
constexpr std::string_view kUntyped = "WPT";
constexpr std::array<std::string_view, 5> kStoredTypes = {"APT", "VOR", "NDB", "INT", "WPT"};

bool IsStoredType(std::string_view type) {
    return std::find(kStoredTypes.begin(), kStoredTypes.end(), type) != kStoredTypes.end();
}

std::string Column(std::string_view word) {
    return std::string(word.substr(0, kMaxColumnLength));
}

// A coordinate beyond its range is as malformed as one that is no number: 0.
double Coordinate(std::string_view word, double limit) {
    const double value = ToNumber(word);
    return std::abs(value) <= limit ? value : 0;
}

void ApplyKeyLine(std::string_view line, PlanBook& book, bool anyFuelKey) {
    std::string blanked(line);
    std::replace(blanked.begin(), blanked.end(), '=', ' ');
    std::array<std::string_view, 2> words;
    SplitWords(blanked, words);
    const auto& [key, value] = words;
    constexpr std::string_view kFuel = "Fuel";
    const std::string_view fuelPart = anyFuelKey ? key.substr(0, kFuel.size()) : key;
    if (EqualsIgnoreCase(key, "CruiseAlt")) {
        book.cruiseAltitudeFt = ToInteger(value);
    } else if (EqualsIgnoreCase(key, "TripFuel")) {
        book.fuelTotal = ToNumber(value);
    } else if (EqualsIgnoreCase(key, "ResvFuel")) {
        book.reserveFuel = ToNumber(value);
        book.fuelTotal += book.reserveFuel;
    } else if (EqualsIgnoreCase(fuelPart, kFuel)) {
        book.fuelTotal = ToNumber(value);
    }
}

PlanWaypoint EntryFromLine(std::string_view line) {
    std::array<std::string_view, 7> words;
    SplitWords(line, words);
    if (words[0] == kDiscontinuity) {
        return Discontinuity();
    }
    PlanWaypoint entry;
    entry.ident = Column(words[0]);
    entry.latitude = Coordinate(words[1], 90);
    entry.longitude = Coordinate(words[2], 180);
    entry.type = IsStoredType(words[3]) ? words[3] : kUntyped;
    entry.frequency = words[4] == kNoFrequency ? std::string() : Column(words[4]);
    entry.via = Column(words[5]);
    entry.procedure = Column(words[6]);
    return entry;
}

// Blank lines and lines whose first word starts with ";" hold no waypoint.
bool HoldsWaypoint(std::string_view line) {
    const std::string_view first = NextWord(line);
    return !first.empty() && first.front() != ';';
}

std::string EntryLine(const PlanWaypoint& entry, std::string_view type) {
    const bool hasVia = !entry.via.empty();
    const std::string typeText(type);
    return Format("%-16s %-2.5f  %-3.5f  %-3s %-6s %-7s %s\n", entry.ident.c_str(), entry.latitude,
                  entry.longitude, typeText.c_str(),
                  entry.frequency.empty() ? kNoFrequency.data() : entry.frequency.c_str(),
                  hasVia ? entry.via.c_str() : "", hasVia ? entry.procedure.c_str() : "");
}

}  // namespace

std::int32_t ParsePlanText(std::string_view text, FlightPlan& plan, PlanBook* book,
                           bool anyFuelKey) {
    PlanBook ignored;
    PlanBook& keys = book != nullptr ? *book : ignored;
    keys.cruiseAltitudeFt = 0;
    keys.fuelTotal = 0;
    keys.reserveFuel = 0;
    plan.CutTo(-1);
    LineReader reader(text.substr(0, text.find('\0')), text.size());
    std::string_view line;
    bool inPlan = false;
    std::int32_t withoutRoom = 0;
    while (reader.Next(line)) {
        line = line.substr(0, kLineLimit);
        if (!inPlan) {
            inPlan = line == kSectionLine;
            if (!inPlan) {
                ApplyKeyLine(line, keys, anyFuelKey);
            }
        } else if (HoldsWaypoint(line) && plan.IsFull()) {
            ++withoutRoom;
        } else if (HoldsWaypoint(line)) {
            plan.Append(EntryFromLine(line));
        }
    }
    return withoutRoom;
}

std::string PlanText(FlightPlan& plan) {
    std::string text(kSectionLine);
    text += '\n';
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        const PlanWaypoint& entry = plan.entries[i];
        if (!IsDiscontinuity(entry) && !IsStoredType(entry.type)) {
            plan.Edit(i).type = kUntyped;
        }
        text += EntryLine(entry, IsDiscontinuity(entry) ? kUntyped : entry.type);
    }
    return text;
}

}  // namespace avq1
