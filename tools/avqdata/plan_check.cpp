#include "avqdata/plan_check.h"

#include <limits>

#include "avqdata/text_tools.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;

constexpr double kSamePlaceNm = 1;

struct Checker {
    const PlanData& data;
    std::string_view name;
    Report& report;

    void Say(Topic topic, const char* kind, const std::string& text) const {
        report.Add(topic, kind, std::string(name) + ": " + text);
    }
};

// A runway's threshold is told by its name; it is in no table of fixes.
bool IsLookedFor(const PlanWaypoint& entry) {
    return avq1::HasPosition(entry) && entry.type != "WPT" && !IsRunwayFix(entry.ident);
}

void CheckFix(const Checker& checker, const PlanWaypoint& entry, std::size_t number) {
    const std::string what = std::to_string(number) + " " + Printable(entry.ident);
    const LatLon at{entry.latitude, entry.longitude};
    const PlanPoint* const nearest =
        checker.data.Nearest(entry.ident, at, std::numeric_limits<double>::max());
    if (nearest == nullptr) {
        checker.Say(Topic::Fault, "unknown fixes", what + " is not in the data");
        return;
    }
    const double distanceNm = DistanceNm(nearest->at, at);
    if (distanceNm > kSamePlaceNm) {
        checker.Say(Topic::Fault, "fixes elsewhere",
                    what + avq1::Format(" lies %.1f nm from where the data has it", distanceNm));
    }
}

void CheckAirway(const Checker& checker, const PlanWaypoint& from, const PlanWaypoint& to) {
    const std::string airway(AirwayOf(to));
    const std::string what = "airway " + Printable(airway);
    std::vector<Fix> between;
    if (checker.data.AirwayPieces(airway).empty()) {
        checker.Say(Topic::Fault, "unknown airways",
                    what + " to " + Printable(to.ident) + " is not in the data");
    } else if (!AirwayBetween(checker.data, airway, from, to, between)) {
        checker.Say(
            Topic::Fault, "airways that do not pass their fixes",
            what + " does not lead from " + Printable(from.ident) + " to " + Printable(to.ident));
    } else if (!between.empty()) {
        checker.Say(Topic::Warning, "fixes left out",
                    what + " passes " + std::to_string(between.size()) + " fixes between " +
                        Printable(from.ident) + " and " + Printable(to.ident));
    }
}

// Procedures that a plan has as points with the name in the airway's place.
void CheckTagged(const Checker& checker, const ExchangePlan& plan) {
    std::string checked;
    for (const PlanWaypoint& entry : plan.entries) {
        const std::string name = entry.via.substr(0, entry.via.find('.'));
        const bool departs = entry.procedure == "SID";
        if (name.empty() || name == checked || (!departs && entry.procedure != "STAR")) {
            continue;
        }
        checked = name;
        const bool isKnown = departs ? HasDeparture(checker.data, IdentOfFirst(plan), name)
                                     : HasArrival(checker.data, IdentOfLast(plan), name);
        if (!isKnown) {
            checker.Say(Topic::Fault, "unknown procedures",
                        std::string(departs ? "departure " : "arrival ") + Printable(name) +
                            " is not in the data");
        }
    }
}

}  // namespace

void CheckPlan(const PlanData& data, const ExchangePlan& plan, std::string_view name,
               Report& report) {
    const Checker checker{data, name, report};
    if (!plan.cycle.empty() && !data.cycle.empty() && plan.cycle != data.cycle) {
        checker.Say(Topic::Warning, "other cycles",
                    "is of cycle " + plan.cycle + ", the data of " + data.cycle);
    }
    const PlanWaypoint* previous = nullptr;
    for (std::size_t i = 0; i < plan.entries.size(); ++i) {
        const PlanWaypoint& entry = plan.entries[i];
        if (IsLookedFor(entry)) {
            CheckFix(checker, entry, i + 1);
        }
        if (previous != nullptr && !AirwayOf(entry).empty() && avq1::HasPosition(entry)) {
            CheckAirway(checker, *previous, entry);
        }
        previous = avq1::HasPosition(entry) ? &entry : nullptr;
    }
    CheckTagged(checker, plan);
}

}  // namespace avqdata
