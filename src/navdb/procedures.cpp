#include "navdb/procedures.h"

#include <algorithm>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "base/text.h"
#include "navdb/airport_detail.h"
#include "navdb/section_index.h"

namespace avq1 {
namespace {

constexpr std::string_view kSidFile = "\\avq\\Navdata\\avq_sids.txt";
constexpr std::string_view kStarFile = "\\avq\\Navdata\\avq_stars.txt";
constexpr std::string_view kApproachFile = "\\avq\\Navdata\\avq_apps.txt";
constexpr std::string_view kInitialForAll = "IAF*";  // an initial fix of every transition

struct ProcedureIndexes {
    SectionIndex sids;
    SectionIndex stars;
    SectionIndex approaches;
};

ProcedureIndexes indexes;

const StateReset kReset([] { indexes = {}; });

std::vector<std::string> ListServedRunways(const AirportDetail& airport,
                                           const std::vector<Procedure>& table,
                                           std::string_view name) {
    std::vector<std::string> served;
    const Procedure* procedure = FindProcedure(table, name);
    for (const Runway& runway : airport.runways) {
        if (procedure != nullptr && ServesRunway(*procedure, runway.ident)) {
            served.push_back(runway.ident);
        }
    }
    return served;
}

void AddOnce(std::vector<std::string>& list, const std::string& text) {
    if (std::find(list.begin(), list.end(), text) == list.end()) {
        list.push_back(text);
    }
}

bool IsWanted(std::string_view have, std::string_view wanted) {
    return wanted == kNoChoice || have == wanted;
}

AirportDetail& ArrivalAirport() {
    return airportSlots[kArrivalSlot];
}

// Calls `visit` for every approach leg of the airport, or of the arrival airport.
template <typename Visit>
void ForEachApproachLeg(const AirportProcedures& procedures, Visit visit) {
    for (const Procedure& approach : procedures.approaches) {
        for (const ProcedureLeg& leg : approach.legs) {
            visit(approach, leg);
        }
    }
}

template <typename Visit>
void ForEachApproachLeg(Visit visit) {
    ForEachApproachLeg(ArrivalAirport().procedures, visit);
}

}  // namespace

void IndexProcedureFiles() {
    BuildSectionIndex(SimPath(kSidFile), indexes.sids);
    BuildSectionIndex(SimPath(kStarFile), indexes.stars);
    BuildSectionIndex(SimPath(kApproachFile), indexes.approaches);
}

void LoadSids(std::string_view airportIdent, AirportProcedures& target) {
    std::string text;
    ReadSection(SimPath(kSidFile), airportIdent, indexes.sids, text);
    ReadSids(text, airportIdent, target.sids);
}

void LoadStars(std::string_view airportIdent, AirportProcedures& target) {
    std::string text;
    ReadSection(SimPath(kStarFile), airportIdent, indexes.stars, text);
    ReadStars(text, airportIdent, target.stars);
}

void LoadApproaches(std::string_view airportIdent, AirportProcedures& target) {
    std::string text;
    ReadSection(SimPath(kApproachFile), airportIdent, indexes.approaches, text);
    ReadApproaches(text, airportIdent, target);
}

const Procedure* FindProcedure(const std::vector<Procedure>& table, std::string_view name) {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const Procedure& p) { return p.name == name; });
    return found != table.end() ? &*found : nullptr;
}

bool ServesRunway(const Procedure& procedure, std::string_view runway) {
    const std::string list = "," + procedure.runways + ",";
    return procedure.runways.empty() ||
           list.find("," + std::string(runway) + ",") != std::string::npos;
}

std::vector<std::string> ListSidRunways(std::string_view sidName) {
    const AirportDetail& airport = airportSlots[kDepartureSlot];
    return ListServedRunways(airport, airport.procedures.sids, sidName);
}

std::vector<std::string> ListStarRunways(std::string_view starName) {
    return ListServedRunways(ArrivalAirport(), ArrivalAirport().procedures.stars, starName);
}

std::vector<std::string> ListTransitions(const Procedure& procedure, bool commonOnly) {
    std::vector<std::string> transitions;
    for (const ProcedureLeg& leg : procedure.legs) {
        if (!leg.qualifier.empty() && (!commonOnly || leg.mark == kCommonMark)) {
            AddOnce(transitions, leg.qualifier);
        }
    }
    std::sort(transitions.begin(), transitions.end());
    return transitions;
}

void ListApproachTypes(std::string_view runway, std::string_view fix) {
    std::vector<std::string> groups;
    ForEachApproachLeg([&](const Procedure&, const ProcedureLeg& leg) {
        const bool initial = leg.role == "IAF" || leg.role == kInitialForAll;
        if (initial && (leg.text2.empty() || IsWanted(leg.text2, runway)) &&
            IsWanted(leg.fix, fix) && groups.size() < kApproachGroupCapacity) {
            AddOnce(groups, leg.group);
        }
    });
    ArrivalAirport().procedures.approachGroups = std::move(groups);
}

std::vector<ApproachChoice> ListApproaches(const AirportProcedures& procedures,
                                           std::string_view runway) {
    std::vector<ApproachChoice> choices;
    ForEachApproachLeg(procedures, [&](const Procedure& approach, const ProcedureLeg& leg) {
        ApproachChoice choice{leg.group, leg.text2};
        if (IsWanted(approach.name, runway) && (choices.empty() || choices.back() != choice)) {
            choices.push_back(std::move(choice));
        }
    });
    return choices;
}

std::vector<ApproachChoice> ListApproaches(std::string_view runway) {
    return ListApproaches(ArrivalAirport().procedures, runway);
}

std::vector<std::string> ListApproachTransitions(std::string_view type, std::string_view runway) {
    std::vector<std::string> transitions;
    ForEachApproachLeg([&](const Procedure&, const ProcedureLeg& leg) {
        // A qualifier that only repeats the fix names nothing, but where an approach begins.
        const bool named = !leg.qualifier.empty() && leg.qualifier != kInitialForAll &&
                           leg.qualifier != "MAP" &&
                           (leg.qualifier != leg.fix || leg.role == "IAF");
        if (named && leg.group == type && (leg.text2.empty() || IsWanted(leg.text2, runway))) {
            AddOnce(transitions, leg.qualifier);
        }
    });
    std::sort(transitions.begin(), transitions.end());
    return transitions;
}

}  // namespace avq1
