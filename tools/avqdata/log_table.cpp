// Logged flights for a terminal and as comma-separated values.
#include <algorithm>
#include <array>
#include <cmath>

#include "avqdata/log_formats.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::Format;

constexpr int kProfileWidth = 66;
constexpr int kProfileHeight = 12;  // rows at most
constexpr double kRowStepFt = 500;

// "01:02:03"
std::string ClockText(int seconds) {
    return Format("%02d:%02d:%02d", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

template <typename Row>
struct Column {
    const char* title;  // in the table
    const char* name;   // in the CSV file
    bool toTheRight;
    std::string (*cell)(const Row& row);
};

constexpr std::array<Column<LogRecord>, 12> kRecordColumns{{
    {"time", "time", false, [](const LogRecord& r) { return ClockText(r.seconds); }},
    {"segment", "segment", false, [](const LogRecord& r) { return r.segment; }},
    {"waypoint", "waypoint", false,
     [](const LogRecord& r) { return r.waypoint == kNoLogWaypoint ? std::string() : r.waypoint; }},
    {"GS kt", "ground_speed_kt", true,
     [](const LogRecord& r) { return Format("%.0f", r.groundSpeedKt); }},
    {"TAS kt", "true_airspeed_kt", true,
     [](const LogRecord& r) { return Format("%.0f", r.airspeedKt); }},
    {"IAS kt", "indicated_airspeed_kt", true,
     [](const LogRecord& r) { return Format("%.0f", r.indicatedKt); }},
    {"ft/min", "vertical_speed_fpm", true,
     [](const LogRecord& r) { return Format("%.0f", r.verticalFpm); }},
    {"alt ft", "altitude_ft", true,
     [](const LogRecord& r) { return Format("%.0f", r.altitudeFt); }},
    {"lb/h", "fuel_flow_lb_h", true, [](const LogRecord& r) { return Format("%.0f", r.flowPph); }},
    {"fuel lb", "fuel_lb", true, [](const LogRecord& r) { return Format("%.0f", r.fuelLb); }},
    {"ZFW lb", "zero_fuel_weight_lb", true,
     [](const LogRecord& r) { return Format("%.0f", r.zeroFuelLb); }},
    {"payload", "payload_lb", true, [](const LogRecord& r) { return Format("%.0f", r.payloadLb); }},
}};

// The cruise at the highest altitude; an item of zeros without any.
SummaryItem HighestCruise(const FlightSummary& flight) {
    const auto highest = std::max_element(
        flight.cruise.begin(), flight.cruise.end(),
        [](const SummaryItem& a, const SummaryItem& b) { return a.altitudeFt < b.altitudeFt; });
    return highest == flight.cruise.end() ? SummaryItem{} : *highest;
}

std::string UnlessZero(double value) {
    return value == 0 ? std::string() : Format("%.0f", value);
}

constexpr std::array<Column<FlightSummary>, 8> kSummaryColumns{{
    {"date", "date", false, [](const FlightSummary& f) { return f.date; }},
    {"route", "route", false, [](const FlightSummary& f) { return f.route; }},
    {"aircraft", "aircraft", false, [](const FlightSummary& f) { return f.aircraft; }},
    {"time", "flight_time", false, [](const FlightSummary& f) { return f.time; }},
    {"fuel lb", "fuel_used_lb", true,
     [](const FlightSummary& f) { return Format("%.0f", f.fuelUsedLb); }},
    {"cruise ft", "cruise_ft", true,
     [](const FlightSummary& f) { return UnlessZero(HighestCruise(f).altitudeFt); }},
    {"TAS kt", "cruise_true_airspeed_kt", true,
     [](const FlightSummary& f) { return UnlessZero(HighestCruise(f).airspeedKt); }},
    {"lb/h", "cruise_fuel_flow_lb_h", true,
     [](const FlightSummary& f) { return UnlessZero(HighestCruise(f).flowPph); }},
}};

template <typename Row, std::size_t N>
std::string TableText(const std::array<Column<Row>, N>& columns, const std::vector<Row>& rows) {
    std::vector<std::string> lines(rows.size() + 1);
    for (const Column<Row>& column : columns) {
        std::vector<std::string> cells{column.title};
        for (const Row& row : rows) {
            cells.push_back(Printable(column.cell(row)));
        }
        AppendCells(cells, column.toTheRight, lines);
    }
    std::string text;
    for (std::string& line : lines) {
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

// A field that would count as several is quoted.
std::string CsvField(const std::string& value) {
    if (value.find_first_of(",\"\r\n") == std::string::npos) {
        return value;
    }
    std::string quoted = "\"";
    for (const char c : value) {
        quoted += c == '"' ? "\"\"" : std::string(1, c);
    }
    return quoted + "\"";
}

template <typename Row, std::size_t N>
std::string CsvText(const std::array<Column<Row>, N>& columns, const std::vector<Row>& rows) {
    std::string text;
    for (const Column<Row>& column : columns) {
        text += (text.empty() ? "" : ",") + std::string(column.name);
    }
    text += "\r\n";
    for (const Row& row : rows) {
        std::string line;
        for (const Column<Row>& column : columns) {
            line += (&column == columns.data() ? "" : ",") + CsvField(column.cell(row));
        }
        text += line + "\r\n";
    }
    return text;
}

// The altitude at a time, on the straight line between the records around it.
double AltitudeAt(const std::vector<LogRecord>& records, double seconds) {
    const auto after = std::find_if(records.begin(), records.end(), [&](const LogRecord& record) {
        return record.seconds > seconds;
    });
    if (after == records.begin() || after == records.end()) {
        return after == records.end() ? records.back().altitudeFt : records.front().altitudeFt;
    }
    const LogRecord& before = *(after - 1);
    const double share = (seconds - before.seconds) / (after->seconds - before.seconds);
    return before.altitudeFt + share * (after->altitudeFt - before.altitudeFt);
}

std::string ProfileText(const std::vector<LogRecord>& records) {
    const int first = records.front().seconds;
    const int last = records.back().seconds;
    double topFt = 0;
    for (const LogRecord& record : records) {
        topFt = std::max(topFt, record.altitudeFt);
    }
    if (last <= first || topFt <= 0) {
        return {};
    }
    const double rowFt = std::ceil(topFt / (kProfileHeight - 1) / kRowStepFt) * kRowStepFt;
    std::array<int, kProfileWidth> rows{};
    for (std::size_t x = 0; x < rows.size(); ++x) {
        const double share = static_cast<double>(x) / (kProfileWidth - 1);
        rows[x] = Rounded(AltitudeAt(records, first + share * (last - first)) / rowFt);
    }
    std::string text = "\n";
    for (int y = Rounded(topFt / rowFt); y >= 0; --y) {
        std::string line = y % 2 == 0 ? Format("%6.0f |", rowFt * y) : "       |";
        for (const int row : rows) {
            line += row == y ? '*' : ' ';
        }
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    text += "    ft +" + std::string(kProfileWidth, '-') + "\n        " + ClockText(first);
    return text + std::string(kProfileWidth - 16, ' ') + ClockText(last) + "\n";
}

}  // namespace

std::string SummaryTable(const std::vector<FlightSummary>& flights) {
    return TableText(kSummaryColumns, flights);
}

std::string FlightTable(const LoggedFlight& flight) {
    std::string text = Printable(flight.route);
    text += flight.aircraft.empty() ? "\n" : ", " + Printable(flight.aircraft) + "\n";
    text += TableText(kRecordColumns, flight.records);
    return flight.records.empty() ? text : text + ProfileText(flight.records);
}

std::string SummaryCsv(const std::vector<FlightSummary>& flights) {
    return CsvText(kSummaryColumns, flights);
}

std::string FlightCsv(const LoggedFlight& flight) {
    return CsvText(kRecordColumns, flight.records);
}

}  // namespace avqdata
