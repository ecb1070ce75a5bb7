#include "avqdata/plan_table.h"

#include <algorithm>

#include "avqdata/text_tools.h"
#include "base/text.h"
#include "geometry/geometry.h"

namespace avqdata {
namespace {

using avq1::Format;
using avq1::PlanWaypoint;

constexpr double kLeastLegNm = 0.05;  // below it a leg has no course worth saying

struct TableRow {
    const PlanWaypoint& entry;
    std::size_t number;
    bool hasLeg;
    double courseTrue;
    double legNm;
    double totalNm;
};

std::string PositionOf(const PlanWaypoint& entry) {
    if (!avq1::HasPosition(entry)) {
        return "route gap";
    }
    avq1::PositionText latitude;
    avq1::PositionText longitude;
    avq1::FormatLatLon(entry.latitude, entry.longitude, latitude, longitude);
    return std::string(latitude.data()) + " " + longitude.data();
}

std::string NumberUnless(double none, double value) {
    return value == none ? std::string() : Format("%.0f", value);
}

struct Column {
    const char* title;
    bool toTheRight;
    std::string (*cell)(const TableRow& row);
};

constexpr std::array<Column, 12> kColumns{{
    {"no", true, [](const TableRow& r) { return std::to_string(r.number); }},
    {"ident", false, [](const TableRow& r) { return Printable(r.entry.ident); }},
    {"type", false, [](const TableRow& r) { return Printable(r.entry.type); }},
    {"position", false, [](const TableRow& r) { return PositionOf(r.entry); }},
    {"true", true,
     [](const TableRow& r) {
         return r.legNm >= kLeastLegNm ? Format("%03.0f", r.courseTrue) : std::string();
     }},
    {"leg nm", true,
     [](const TableRow& r) { return r.hasLeg ? Format("%.1f", r.legNm) : std::string(); }},
    {"total nm", true,
     [](const TableRow& r) { return r.hasLeg ? Format("%.1f", r.totalNm) : std::string(); }},
    {"via", false, [](const TableRow& r) { return Printable(r.entry.via); }},
    {"procedure", false, [](const TableRow& r) { return Printable(r.entry.procedure); }},
    {"freq", true, [](const TableRow& r) { return Printable(r.entry.frequency); }},
    {"alt ft", true,
     [](const TableRow& r) { return NumberUnless(avq1::kUnset, r.entry.altitude); }},
    {"kt", true, [](const TableRow& r) { return NumberUnless(avq1::kUnset, r.entry.speed); }},
}};

std::vector<TableRow> RowsOf(const ExchangePlan& plan) {
    std::vector<TableRow> rows;
    const PlanWaypoint* previous = nullptr;
    double totalNm = 0;
    for (const PlanWaypoint& entry : plan.entries) {
        TableRow row{entry, rows.size() + 1, false, 0, 0, totalNm};
        if (avq1::HasPosition(entry)) {
            row.hasLeg = previous != nullptr;
            if (row.hasLeg) {
                avq1::DistanceAndCourse(previous->latitude, previous->longitude, entry.latitude,
                                        entry.longitude, row.legNm, row.courseTrue);
                totalNm += row.legNm;
                row.totalNm = totalNm;
            }
            previous = &entry;
        }
        rows.push_back(row);
    }
    return rows;
}

// A column's title and below it the cells; no cells at all when none of them says anything.
std::vector<std::string> CellsOf(const Column& column, const std::vector<TableRow>& rows) {
    std::vector<std::string> cells{column.title};
    bool any = false;
    for (const TableRow& row : rows) {
        cells.push_back(column.cell(row));
        any = any || !cells.back().empty();
    }
    return any ? cells : std::vector<std::string>{};
}

std::string ChoiceLine(const char* what, const TerminalChoice& choice) {
    std::string text;
    for (const auto& [label, value] :
         {std::pair("runway ", &choice.runway), std::pair("", &choice.procedure),
          std::pair("transition ", &choice.transition), std::pair("approach ", &choice.approach),
          std::pair("transition ", &choice.approachTransition)}) {
        if (!value->empty()) {
            text += (text.empty() ? "" : ", ") + std::string(label) + Printable(*value);
        }
    }
    return text.empty() ? text : std::string(what) + ": " + text + "\n";
}

}  // namespace

std::string PlanTable(const ExchangePlan& plan, const PlanFormat& format) {
    std::string text = Printable(IdentOfFirst(plan)) + " to " + Printable(IdentOfLast(plan)) +
                       " (" + format.title + ")";
    text += plan.cruiseAltitudeFt != 0 ? Format(", cruise %d ft", plan.cruiseAltitudeFt) : "";
    text += plan.fuelTotal != 0
                ? Format(", fuel %.0f with reserve %.0f", plan.fuelTotal, plan.reserveFuel)
                : "";
    text += plan.cycle.empty() ? "\n" : ", cycle " + plan.cycle + "\n";
    text += ChoiceLine("Departure", plan.departure) + ChoiceLine("Arrival", plan.arrival);

    const std::vector<TableRow> rows = RowsOf(plan);
    std::vector<std::string> lines(rows.size() + 1);
    for (const Column& column : kColumns) {
        AppendCells(CellsOf(column, rows), column.toTheRight, lines);
    }
    for (std::string& line : lines) {
        line.erase(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    const auto gaps = std::count_if(plan.entries.begin(), plan.entries.end(),
                                    [](const PlanWaypoint& e) { return !avq1::HasPosition(e); });
    text += Format("Total %.1f nm, courses true", rows.back().totalNm);
    text += gaps > 0 ? ", the way across a gap counts straight\n" : "\n";
    return text;
}

}  // namespace avqdata
