#include "avqdata/log_records.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <optional>

#include "avqdata/source_file.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

constexpr double kLargest = 1e9;  // nothing an aircraft does is more
constexpr std::string_view kNoRecord = "line is no record of a flight log";
constexpr std::string_view kNoSummary = "line is no part of a flight's summary";

// The numbers of a record, in the order of its columns from the fourth on.
constexpr std::array<double LogRecord::*, 9> kNumbers{
    &LogRecord::groundSpeedKt, &LogRecord::airspeedKt, &LogRecord::verticalFpm,
    &LogRecord::altitudeFt,    &LogRecord::flowPph,    &LogRecord::fuelLb,
    &LogRecord::zeroFuelLb,    &LogRecord::payloadLb,  &LogRecord::indicatedKt};
constexpr std::size_t kFirstNumber = 3;

std::optional<double> SaneNumber(std::string_view text) {
    const std::optional<double> value = Number(text);
    return value && std::abs(*value) <= kLargest ? value : std::nullopt;
}

std::optional<int> SecondsOf(std::string_view text) {
    const std::vector<std::string> parts = SplitList(text, ':');
    int seconds = 0;
    if (parts.size() != 3) {
        return std::nullopt;
    }
    for (const std::string& part : parts) {
        const std::optional<int> value = WholeNumber(part);
        if (!value || *value < 0 || *value > 9999) {
            return std::nullopt;
        }
        seconds = seconds * 60 + *value;
    }
    return seconds;
}

bool ReadRecord(std::string_view line, LogRecord& record) {
    const std::vector<std::string_view> words = Words(line);
    if (words.size() != kFirstNumber + kNumbers.size()) {
        return false;
    }
    const std::optional<int> seconds = SecondsOf(words[0]);
    if (!seconds) {
        return false;
    }
    record.seconds = *seconds;
    record.segment = words[1];
    record.waypoint = words[2];
    for (std::size_t i = 0; i < kNumbers.size(); ++i) {
        const std::optional<double> value = SaneNumber(words[kFirstNumber + i]);
        if (!value) {
            return false;
        }
        record.*kNumbers[i] = *value;
    }
    return true;
}

// "key=value": true when the line has this key, and `value` is what stands behind it.
bool TakeKey(std::string_view line, std::string_view key, std::string& value) {
    if (!line.starts_with(key) || line.substr(key.size(), 1) != "=") {
        return false;
    }
    value = line.substr(key.size() + 1);
    return true;
}

// The numbers of an item, in their order; a place without a member is skipped.
using ItemForm = std::array<double SummaryItem::*, 5>;
constexpr ItemForm kClimbItem{&SummaryItem::altitudeFt, &SummaryItem::airspeedKt,
                              &SummaryItem::rateFpm, &SummaryItem::weightLb, &SummaryItem::flowPph};
constexpr ItemForm kCruiseItem{&SummaryItem::altitudeFt, &SummaryItem::airspeedKt,
                               &SummaryItem::weightLb, &SummaryItem::flowPph, nullptr};
constexpr ItemForm kDescentItem{&SummaryItem::altitudeFt, &SummaryItem::airspeedKt,
                                &SummaryItem::rateFpm, &SummaryItem::flowPph, nullptr};

struct ItemRow {
    const char* key;
    std::vector<SummaryItem> FlightSummary::*items;
    ItemForm form;
};

constexpr std::array<ItemRow, 3> kItemRows{{
    {"Climb", &FlightSummary::climb, kClimbItem},
    {"Cruise", &FlightSummary::cruise, kCruiseItem},
    {"Descent", &FlightSummary::descent, kDescentItem},
}};

bool ReadItems(std::string_view text, const ItemForm& form, std::vector<SummaryItem>& items) {
    const std::size_t wanted = form.back() == nullptr ? form.size() - 1 : form.size();
    for (const std::string_view word : Words(text)) {
        const std::vector<std::string> parts = SplitList(word, '_');
        SummaryItem item;
        if (parts.size() != wanted) {
            return false;
        }
        for (std::size_t i = 0; i < wanted; ++i) {
            const std::optional<double> value = SaneNumber(parts[i]);
            if (!value) {
                return false;
            }
            item.*form[i] = *value;
        }
        items.push_back(item);
    }
    return true;
}

bool ReadSummaryLine(std::string_view line, FlightSummary& flight) {
    std::string value;
    for (const ItemRow& row : kItemRows) {
        if (TakeKey(line, row.key, value)) {
            return ReadItems(value, row.form, flight.*row.items);
        }
    }
    if (TakeKey(line, "FuelUsed", value)) {
        const std::optional<double> fuel = SaneNumber(value);
        flight.fuelUsedLb = fuel.value_or(0);
        return fuel.has_value();
    }
    return TakeKey(line, "Date", flight.date) || TakeKey(line, "FlightTime", flight.time) ||
           TakeKey(line, "Aircraft", flight.aircraft);
}

void AddFault(const LineSource& lines, std::string_view kind, std::string_view line,
              Report& report) {
    constexpr std::size_t kShown = 60;
    report.Add(Topic::Fault, kind,
               AtLine(lines.Name(), lines.LineNumber(),
                      std::string(kind) + ": " + Printable(line.substr(0, kShown))));
}

}  // namespace

bool IsSummaryText(std::string_view text) {
    return Trim(text).starts_with('[');
}

LoggedFlight ReadLoggedFlight(std::string_view text, std::string_view name, Report& report) {
    LoggedFlight flight;
    LineSource lines = LineSource::OfText(text, std::string(name));
    std::string_view line;
    while (lines.Next(line)) {
        LogRecord record;
        if (Trim(line).empty() || line.starts_with(';') ||
            TakeKey(line, "FlightPlan", flight.route) ||
            TakeKey(line, "Aircraft", flight.aircraft)) {
            continue;
        }
        if (ReadRecord(line, record) &&
            (flight.records.empty() || record.seconds >= flight.records.back().seconds)) {
            flight.records.push_back(std::move(record));
        } else {
            AddFault(lines, kNoRecord, line, report);
        }
    }
    return flight;
}

std::vector<FlightSummary> ReadSummaries(std::string_view text, std::string_view name,
                                         Report& report) {
    std::vector<FlightSummary> flights;
    LineSource lines = LineSource::OfText(text, std::string(name));
    std::string_view line;
    while (lines.Next(line)) {
        const std::string_view trimmed = Trim(line);
        if (trimmed.empty()) {
            continue;
        }
        if (trimmed.starts_with('[') && trimmed.ends_with(']')) {
            flights.push_back({});
            flights.back().route = trimmed.substr(1, trimmed.size() - 2);
        } else if (flights.empty() || !ReadSummaryLine(trimmed, flights.back())) {
            AddFault(lines, kNoSummary, line, report);
        }
    }
    return flights;
}

}  // namespace avqdata
