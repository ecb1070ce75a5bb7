// flightplan/procedures.h - departures, arrivals and approaches in the plan.
//
// A chosen procedure is first built into a list of waypoints, which the pages show, and then
// spliced into a plan in place of an earlier one of its kind. Entries that move take what points at
// them with them (plan_moves.h); the fix at which two parts join stands once; the vertical target
// is the next restriction. A plan without room refuses the splice: it returns false, says so in the
// message list and changes nothing. Guidance must learn that the active plan's legs changed: splice
// through EditPlan (guidance/activation.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "flightplan/flight_plan.h"
#include "navdb/procedures.h"

namespace avq1 {

// What the pages set before a build. A number is the procedure's place in its airport's table,
// from 1; 0 = none.
struct ProcedureChoice {
    std::string airport = {};  // whose procedures are being chosen
    std::int32_t sidNumber = 0;
    std::string sidName = {};
    std::string sidTransition{kNoChoice};
    std::string departureRunway{kNoChoice};
    std::int32_t starNumber = 0;
    std::string starName = {};
    std::string starTransition{kNoChoice};
    std::string arrivalRunway{kNoChoice};
    std::string approachType = {};
    std::string approachTransition = {};
};

extern ProcedureChoice procedureChoice;

struct ProcedureWaypoint {
    std::string ident;
    std::string roleText;  // approaches: "IAF", "FAF", "MAF" ... or empty
    std::string legText;   // restriction, for the pages only
    std::string viaLabel;  // departures and arrivals: the procedure, from the second waypoint on
    double latitude = 0;
    double longitude = 0;
    std::int32_t flyover = 0;
};

inline constexpr std::size_t kProcedureWaypointCapacity = 40;  // later legs are left out

struct ProcedureLists {
    std::vector<ProcedureWaypoint> sid;
    std::vector<ProcedureWaypoint> star;
    std::vector<ProcedureWaypoint> approach;
    bool approachReady = false;  // built and not yet spliced
};

extern ProcedureLists procedureLists;

void BuildSidWaypoints();
void BuildStarWaypoints();
void BuildApproachWaypoints();

// Several edits as one: where one of them is refused, the plan and all that points at its entries
// are as they were before the first.
bool EditWhole(FlightPlan& plan, const std::function<bool(FlightPlan&)>& edits);

// Splices the list after the departure airport. In the active plan the first waypoint of the
// departure becomes the active one.
bool InsertSid(FlightPlan& plan);

// Puts in the departure `wanted` names, with its transition and runway; of none only the runway is
// kept. The departure slot holds the airport.
bool PutDeparture(FlightPlan& plan, const PlanProcedures& wanted);

// Splices the list before the arrival airport, or before an approach that no arrival precedes.
bool InsertStar(FlightPlan& plan);

// Splices the list, but its missed approach, before the arrival airport; `withDiscontinuity` puts a
// gap in front of it unless the plan is the active one.
bool InsertApproach(FlightPlan& plan, bool withDiscontinuity);

// What the plan's procedures are called: as they were put in or, of a plan from a file, as its
// entries say where they were flown along them.
PlanProcedures ProceduresOf(const FlightPlan& plan);

// Takes out the entries of one procedure, "SID", "STAR" or "APPR"; the fix that a departure and an
// arrival share stays with the other one.
bool RemoveProcedure(FlightPlan& plan, std::string_view tag);

}  // namespace avq1
