#include "flightplan/procedures.h"

#include <algorithm>
#include <iterator>
#include <string_view>

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

// A leg at the transition's fix counts whichever transition it stands in; one of a qualifier that
// is no transition belongs to all.
bool IsChosenApproachLeg(const ProcedureLeg& leg, const std::vector<std::string>& transitions) {
    static constexpr std::string_view kEveryTransition[] = {"IAF*", "---", "MAP", "FAF", ""};
    const ProcedureChoice& choice = procedureChoice;
    return leg.group == choice.approachType &&
           (leg.text2.empty() || leg.text2.find(choice.arrivalRunway) != std::string::npos) &&
           (leg.fix == choice.approachTransition || leg.qualifier == choice.approachTransition ||
            IsOneOf(leg.qualifier, kEveryTransition) ||
            std::find(transitions.begin(), transitions.end(), leg.qualifier) == transitions.end());
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
    static constexpr std::string_view kShownRoles[] = {"IAF", "MAP", "FAF", "MAF", "ARC", "HP"};
    std::vector<ProcedureWaypoint>& list = procedureLists.approach;
    list.clear();
    const std::vector<std::string> transitions =
        ListApproachTransitions(procedureChoice.approachType, kNoChoice);
    for (const Procedure& approach : airportSlots[kArrivalSlot].procedures.approaches) {
        for (const ProcedureLeg& leg : approach.legs) {
            if (IsChosenApproachLeg(leg, transitions) && HasRoom(list)) {
                list.push_back({leg.fix, IsOneOf(leg.role, kShownRoles) ? leg.role : "", leg.text1,
                                "", leg.latitude, leg.longitude, leg.flyover});
            }
        }
    }
    procedureLists.approachReady = true;
}

}  // namespace avq1
