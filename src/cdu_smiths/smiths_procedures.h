// cdu_smiths/smiths_procedures.h - what DEPARTURES and ARRIVALS share: two columns of things to
// choose from, five rows to a page.
//
// A chosen item stands alone, with what it is chosen along with below it, until its key gives its
// list back. Every choice is put into the modified plan at once. An airport that is not the
// route's is only looked at: its runways and procedures are kept apart from the plan's.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cdu_smiths/smiths_pages.h"
#include "flightplan/flight_plan.h"

namespace avq1 {

enum class PickKind : std::uint8_t {
    Procedure,  // a departure or an arrival
    Transition,
    Runway,
    Approach,
    ApproachTransition,
    kCount,
};

// One thing to choose.
struct PickItem {
    PickKind kind = PickKind::Procedure;
    std::string name;
    std::string runway;  // of an approach
};

struct PickColumn {
    std::vector<PickItem> chosen;  // on the first rows of every page
    std::vector<PickItem> offered;
    PickKind offeredKind = PickKind::Procedure;
    bool offers = false;  // false: there is nothing left to choose
};

// What the lists were made from; they are made anew when it changes.
struct PickSource {
    std::int32_t page = 0;
    std::string airport;
    const FlightPlan* plan = nullptr;
    std::uint32_t revision = 0;
    std::uint32_t activeRevision = 0;
    RouteStatus status = RouteStatus::None;
    std::uint32_t opened = 0;

    friend bool operator==(const PickSource&, const PickSource&) = default;
};

struct ProcedurePick {
    std::string departureReference;  // an airport to look at in place of the route's
    std::string arrivalReference;
    std::uint32_t listsOpened = 0;  // bits by PickKind: the list is given back
    PickSource source;
    PlanProcedures shown;   // of the plan the pages show
    PlanProcedures active;  // of the route that is flown; empty while none is
    PickColumn left;
    PickColumn right;
};

extern ProcedurePick procedurePick;

// The airport a page is about: the one looked at, else the route's; empty without.
std::string SmithsPickAirport(SmithsPage page);
// The same airport's identifier as the route has it.
std::string SmithsRouteAirport(bool departure);

// Shows DEPARTURES or ARRIVALS of the route's airport, or of one to look at.
void OpenSmithsProcedures(SmithsPage page, std::string_view reference = {});

// For a prompt that opens DEPARTURES of the route's origin.
EntryResult PressSmithsDepartures(const FieldRow& field);

// The origin's runway, one of its file, is the one departed from: its departure is laid out anew.
// False, and nothing changed, for a full plan.
bool PutSmithsDepartureRunway(std::string_view runway);

// The rows of the columns, their marks and labels, title and counter.
void ComposeSmithsProcedures(Screen& screen);

// ---- field actions of both pages; `item` is the row, 0 to 4, plus kPickRight on the right ----
inline constexpr std::int32_t kPickRight = 8;
inline constexpr std::int32_t kPickRows = 5;

EntryResult PressSmithsPick(const FieldRow& field);
EntryResult EraseSmithsPick(const FieldRow& field);
bool SmithsPickWaits(const FieldRow& field);
bool NoSmithsPickWaits(const FieldRow& field);
EntryResult DropSmithsPicks(const FieldRow& field);

constexpr FieldRow SmithsPickField(std::int32_t row, bool right) {
    return {.line = SmithsLineOf(row, right),
            .erase = EraseSmithsPick,
            .press = PressSmithsPick,
            .item = row + (right ? kPickRight : 0)};
}

// Both pages have the same keys.
inline constexpr std::array<FieldRow, 14> kSmithsPickFields = [] {
    std::array<FieldRow, 14> fields{};
    for (std::size_t row = 0; row < kPickRows; ++row) {
        const auto number = static_cast<std::int32_t>(row);
        fields[row] = SmithsPickField(number, false);
        fields[row + kPickRows] = SmithsPickField(number, true);
    }
    fields[10] = SmithsSeparatorRow();
    fields[11] =
        SmithsPrompt(kL6, "<ERASE", 0, {.visible = SmithsPickWaits, .press = DropSmithsPicks});
    fields[12] = SmithsPrompt(kL6, "<INDEX", kSmithsDepArr, {.visible = NoSmithsPickWaits});
    fields[13] = SmithsPrompt(kR6, "ROUTE>", kSmithsRoute);
    return fields;
}();

}  // namespace avq1
