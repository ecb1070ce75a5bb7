// Runways and procedures by name: how the forms spell them, and when a name stands for its points.
#include <algorithm>

#include "avqdata/plan_exchange.h"
#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

constexpr std::string_view kFix = "RW";

// One type of approach: the letter of coded names, and the words of the module's files and of the
// simulator's planner. The first row of a letter or word counts.
struct ApproachKind {
    char letter;
    std::string_view word;
    std::string_view simWord;
};

constexpr std::array<ApproachKind, 17> kApproachKinds{{
    {'I', "ILS", "ILS"},
    {'L', "LOC", "LOCALIZER"},
    {'R', "RNAV", "RNAV"},
    {'H', "RNP", "RNAV"},
    {'J', "GLS", "GLS"},
    {'V', "VOR", "VOR"},
    {'D', "VORDME", "VORDME"},
    {'S', "VOR", "VOR"},
    {'N', "NDB", "NDB"},
    {'Q', "NDBDME", "NDBDME"},
    {'X', "LDA", "LDA"},
    {'B', "LOCBC", "LOCALIZER_BACKCOURSE"},
    {'U', "SDF", "SDF"},
    {'P', "GPS", "GPS"},
    {'T', "TACAN", "TACAN"},
    {'F', "FMS", "FMS"},
    {'G', "IGS", "IGS"},
}};

// What is removed or unnamed at one end of a route.
struct NamedProcedure {
    std::string_view tag;
    TerminalChoice ExchangePlan::*end;
    std::string TerminalChoice::*name;
    std::string TerminalChoice::*transition;
};

constexpr std::array<NamedProcedure, 3> kNamedProcedures{{
    {"SID", &ExchangePlan::departure, &TerminalChoice::procedure, &TerminalChoice::transition},
    {"STAR", &ExchangePlan::arrival, &TerminalChoice::procedure, &TerminalChoice::transition},
    {"APPR", &ExchangePlan::arrival, &TerminalChoice::approach,
     &TerminalChoice::approachTransition},
}};

// The module's plans have "NORTA2.ABC" in the airway's place.
void NameByPoints(const NamedProcedure& row, const std::vector<PlanWaypoint*>& points,
                  ExchangePlan& plan) {
    std::string& name = plan.*row.end.*row.name;
    for (const PlanWaypoint* point : points) {
        if (name.empty() && !point->via.empty()) {
            const std::size_t dot = std::min(point->via.find('.'), point->via.size());
            name = point->via.substr(0, dot);
            plan.*row.end.*row.transition = point->via.substr(std::min(dot + 1, point->via.size()));
        }
    }
}

void NameInstead(const NamedProcedure& row, ExchangePlan& plan) {
    std::vector<PlanWaypoint*> points;
    for (PlanWaypoint& entry : plan.entries) {
        if (entry.procedure == row.tag && entry.type != avq1::kAirportType) {
            points.push_back(&entry);
        }
    }
    if (points.empty()) {
        return;
    }
    if ((plan.*row.end).runway.empty()) {
        (plan.*row.end.*row.name).clear();
        (plan.*row.end.*row.transition).clear();
        return;
    }
    NameByPoints(row, points, plan);
    if ((plan.*row.end.*row.name).empty()) {
        return;
    }
    if (row.tag == "SID") {  // the module's plans have no tag on a departure's first point
        for (PlanWaypoint* point = &plan.entries.front() + 1; point < points.back(); ++point) {
            point->procedure = row.tag;
        }
    }
    const PlanWaypoint* const before = points.front() - (points.front() != &plan.entries.front());
    const bool beginsBefore = row.tag == "STAR" && before->ident == plan.*row.end.*row.transition;
    if (row.tag != "APPR" && !beginsBefore) {  // the airways on the way begin and end there
        PlanWaypoint& joint = row.tag == "SID" ? *points.back() : *points.front();
        joint.procedure.clear();
        joint.via.clear();
    }
    std::erase_if(plan.entries, [&](const PlanWaypoint& entry) {
        return entry.procedure == row.tag && entry.type != avq1::kAirportType;
    });
}

}  // namespace

std::string RunwayFix(std::string_view runway) {
    const std::string name =
        RunwayName(runway.starts_with(kFix) ? runway.substr(kFix.size()) : runway);
    return IsRunwayIdent(name) ? std::string(kFix) + name : std::string();
}

std::string ApproachName(std::string_view type, std::string_view runway, std::string_view suffix) {
    const std::string fix = RunwayFix(runway);
    const auto* const row =
        std::find_if(kApproachKinds.begin(), kApproachKinds.end(), [&](const ApproachKind& kind) {
            return avq1::EqualsIgnoreCase(kind.word, type) ||
                   avq1::EqualsIgnoreCase(kind.simWord, type);
        });
    if (row == kApproachKinds.end() || fix.empty()) {
        return {};
    }
    std::string name = row->letter + fix.substr(kFix.size());
    if (!suffix.empty()) {  // behind two digits a variant's letter would read as a side
        name += (name.size() == 3 ? "-" : "") + std::string(suffix.substr(0, 1));
    }
    return name;
}

ApproachParts PartsOfApproach(std::string_view name) {
    const auto* const row = std::find_if(
        kApproachKinds.begin(), kApproachKinds.end(),
        [&](const ApproachKind& kind) { return !name.empty() && kind.letter == name.front(); });
    if (row == kApproachKinds.end()) {
        return {};
    }
    ApproachParts parts{std::string(row->word), std::string(row->simWord), {}, {}};
    for (const std::size_t length : {std::size_t{3}, std::size_t{2}}) {
        const std::string_view runway = name.substr(1, length);
        if (parts.runway.empty() && runway.size() == length && IsRunwayIdent(runway)) {
            parts.runway = runway;
            parts.suffix = name.substr(1 + length);
        }
    }
    if (parts.suffix.starts_with('-')) {
        parts.suffix.erase(0, 1);
    }
    return parts.runway.empty() ? ApproachParts{} : parts;
}

ExchangePlan AsFormatHolds(const PlanFormat& format, const ExchangePlan& plan) {
    ExchangePlan held = plan;
    if ((format.carries & kCarriesTerminal) != 0 && (format.carries & kCarriesProcedures) == 0 &&
        !held.entries.empty()) {
        for (const NamedProcedure& row : kNamedProcedures) {
            if (row.tag != "APPR" || (format.carries & kCarriesApproaches) != 0) {
                NameInstead(row, held);
            }
        }
    }
    return held;
}

}  // namespace avqdata
