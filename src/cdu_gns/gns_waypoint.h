// cdu_gns/gns_waypoint.h - a waypoint on its way into a plan: what was typed, what it was found to
// be, and where it goes. The waypoint pages share it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "cdu/fields.h"
#include "cdu/line_select.h"
#include "cdu_gns/gns_pages.h"
#include "flightplan/flight_plan.h"
#include "navdb/nav_database.h"

namespace avq1 {

enum class GnsTurn : std::int32_t { Default, Left, Right };

struct GnsWaypoint {
    SearchResults found;  // the candidates for the typed identifier
    std::string name;     // of a point the pilot makes up
    std::int32_t flyover = 0;
    std::int32_t pendingFlyover = 0;  // what CLR has chosen and ENTER has not confirmed
    GnsTurn directTurn = GnsTurn::Default;
    GnsTurn pendingTurn = GnsTurn::Default;
};

extern GnsWaypoint gnsWaypoint;

// Where the next waypoint goes: the unit's selection in planBook, which follows its entry.
PlanSelection& GnsSelection();

// Shows the points that bear the identifier, for the page that asked; false without any.
bool FindGnsWaypoint(std::string_view ident, SearchCategory category, std::int32_t returnPage);

void OpenGnsDatabase(std::int32_t returnPage);
void OpenGnsPilotPoint(std::string_view name);
void OpenGnsOffset(std::string_view name);
void OpenGnsAirway(std::string_view typed);  // "#J521"

// Puts the waypoint into the plan of page 1 where its line was selected, and shows that page with
// the line behind it selected. A plan without room says so and stays as it is.
void InsertGnsWaypoint(PlanWaypoint entry);

// The candidate shown was taken for the DIRECT page or a procedure page.
void PickGnsDirect(const FoundPoint& point);
void TakeGnsProcedureAirport(const FoundPoint& point);

// "FLYOVER:" with its choice, on line key 10 of the waypoint pages.
void ShowGnsFlyover(const LineRow& row, UnitText& text);
EntryResult ConfirmGnsFlyover(const LineRow& row);
EntryResult StepGnsFlyover(const LineRow& row);
void OfferGnsFlyover(const LineRow& row);

// The fly-over choice as these pages have it, on line 10 with its value on row `y`.
constexpr LineRow GnsFlyoverRow(std::int16_t y) {
    return {.line = 10,
            .show = ShowGnsFlyover,
            .select = OfferGnsFlyover,
            .enter = ConfirmGnsFlyover,
            .clear = StepGnsFlyover,
            .style = kGnsData,
            .at = {320, y}};
}

}  // namespace avq1
