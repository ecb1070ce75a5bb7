#include "flightplan/procedures.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "base/module_state.h"
#include "navdb/airport_detail.h"

namespace avq1 {

ProcedureChoice procedureChoice;
ProcedureLists procedureLists;

namespace {

constexpr std::string_view kAllRunways = "---";

const StateReset resetProcedures([] {
    procedureChoice = {};
    procedureLists = {};
});

template <std::size_t N>
bool IsOneOf(std::string_view text, const std::string_view (&choices)[N]) {
    return std::find(std::begin(choices), std::end(choices), text) != std::end(choices);
}

bool HasRoom(const std::vector<ProcedureWaypoint>& list) {
    return list.size() < kProcedureWaypointCapacity;
}

// What is chosen for a departure or an arrival.
struct RouteChoice {
    const std::vector<Procedure>& table;
    std::int32_t number;
    std::string_view name;
    std::string_view transition;
    std::string_view runway;
};

bool LegAppliesToRunway(const ProcedureLeg& leg, std::string_view runway) {
    return leg.text2.empty() || leg.text2 == kAllRunways ||
           (runway != kNoChoice && leg.text2.find(runway) != std::string::npos);
}

void BuildRouteWaypoints(const RouteChoice& choice, std::vector<ProcedureWaypoint>& list) {
    list.clear();
    if (choice.number < 1 || static_cast<std::size_t>(choice.number) > choice.table.size()) {
        return;
    }
    std::string viaLabel(choice.name);
    if (choice.transition != kNoChoice && !choice.transition.empty()) {
        viaLabel += "." + std::string(choice.transition);
    }
    for (const ProcedureLeg& leg : choice.table[static_cast<std::size_t>(choice.number - 1)].legs) {
        const bool flown =
            leg.qualifier.empty() || leg.qualifier == choice.transition || leg.mark == kCommonMark;
        if (flown && LegAppliesToRunway(leg, choice.runway) && HasRoom(list)) {
            list.push_back({leg.fix, "", leg.text1, list.empty() ? "" : viaLabel, leg.latitude,
                            leg.longitude, leg.flyover});
        }
    }
}

// Of the chosen type and to the chosen runway.
bool IsOfChosenApproach(const ProcedureLeg& leg) {
    const ProcedureChoice& choice = procedureChoice;
    return leg.group == choice.approachType &&
           (leg.text2.empty() || leg.text2.find(choice.arrivalRunway) != std::string::npos);
}

bool IsOfChosenTransition(const ProcedureLeg& leg) {
    static constexpr std::string_view kEveryTransition[] = {"IAF*", "---", "MAP", "FAF", ""};
    return leg.qualifier == procedureChoice.approachTransition ||
           IsOneOf(leg.qualifier, kEveryTransition);
}

bool Holds(const std::vector<ProcedureWaypoint>& list, std::string_view ident) {
    return std::any_of(list.begin(), list.end(),
                       [&](const ProcedureWaypoint& waypoint) { return waypoint.ident == ident; });
}

// A fix twice in a row, where a transition meets the common part, is one waypoint.
void AppendApproachWaypoint(const ProcedureLeg& leg, std::vector<ProcedureWaypoint>& list) {
    static constexpr std::string_view kShownRoles[] = {"IAF", "MAP", "FAF", "MAF", "ARC", "HP"};
    ProcedureWaypoint waypoint{leg.fix,      IsOneOf(leg.role, kShownRoles) ? leg.role : "",
                               leg.text1,    "",
                               leg.latitude, leg.longitude,
                               leg.flyover};
    if (list.empty() || list.back().ident != leg.fix) {
        if (HasRoom(list)) {
            list.push_back(std::move(waypoint));
        }
        return;
    }
    if (waypoint.roleText.empty()) {
        waypoint.roleText = list.back().roleText;
    }
    waypoint.flyover = std::max(waypoint.flyover, list.back().flyover);
    list.back() = std::move(waypoint);
}

}  // namespace

void BuildSidWaypoints() {
    const ProcedureChoice& choice = procedureChoice;
    BuildRouteWaypoints({airportSlots[kDepartureSlot].procedures.sids, choice.sidNumber,
                         choice.sidName, choice.sidTransition, choice.departureRunway},
                        procedureLists.sid);
}

void BuildStarWaypoints() {
    const ProcedureChoice& choice = procedureChoice;
    BuildRouteWaypoints({airportSlots[kArrivalSlot].procedures.stars, choice.starNumber,
                         choice.starName, choice.starTransition, choice.arrivalRunway},
                        procedureLists.star);
}

void BuildApproachWaypoints() {
    const std::string& transition = procedureChoice.approachTransition;
    std::vector<ProcedureWaypoint>& list = procedureLists.approach;
    list.clear();
    for (const Procedure& approach : airportSlots[kArrivalSlot].procedures.approaches) {
        for (const ProcedureLeg& leg : approach.legs) {
            // The transition's own fix counts wherever it stands; other transitions that pass it
            // do not bring it back later on.
            const bool begins = leg.fix == transition && !Holds(list, transition);
            if (IsOfChosenApproach(leg) && (begins || IsOfChosenTransition(leg))) {
                AppendApproachWaypoint(leg, list);
            }
        }
    }
    procedureLists.approachReady = true;
}

}  // namespace avq1
