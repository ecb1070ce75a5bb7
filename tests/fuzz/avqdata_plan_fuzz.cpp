// Any bytes as a plan of any format, with data to look names up in: what is read can be shown and
// checked, and what a format takes of it comes back from there with the same waypoints in the same
// places, where the format has places.
#include "avqdata/plan_check.h"
#include "avqdata/plan_helpers.h"
#include "avqdata/plan_table.h"
#include "fuzz/fuzz_text.h"

namespace {

using namespace avqdata;

constexpr double kCoarsestDeg = 1e-4;  // half a hundredth of a minute, and a little

std::vector<const avq1::PlanWaypoint*> Placed(const ExchangePlan& plan) {
    std::vector<const avq1::PlanWaypoint*> placed;
    for (const avq1::PlanWaypoint& entry : plan.entries) {
        if (avq1::HasPosition(entry)) {
            placed.push_back(&entry);
        }
    }
    return placed;
}

void RequireSame(const ExchangePlan& plan, const ExchangePlan& again, bool withTypes) {
    const auto before = Placed(plan);
    const auto after = Placed(again);
    Require(before.size() == after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
        Require(before[i]->ident == after[i]->ident);
        Require(!withTypes || before[i]->type == after[i]->type);
        Require(std::abs(before[i]->latitude - after[i]->latitude) < kCoarsestDeg);
        Require(std::abs(before[i]->longitude - after[i]->longitude) < kCoarsestDeg);
    }
}

}  // namespace

void FuzzText(std::string_view text) {
    static const PlanData data = SamplePlanData();
    ExchangePlan plan;
    const PlanFormat* format = nullptr;
    Report report;
    std::string error;
    if (!ReadExchangePlan(text, "fuzz", &data, plan, format, report, error)) {
        Require(!error.empty());
        return;
    }
    Require(!PlanTable(plan, *format).empty());
    CheckPlan(data, plan, "fuzz", report);
    plan.cycle = plan.cycle.empty() ? "2309" : plan.cycle;
    for (const PlanFormat* to : kPlanFormats) {
        std::string written;
        error.clear();
        if (!WriteExchangePlan(*to, plan, written, error)) {
            Require(!error.empty());
            continue;
        }
        if (to->read != nullptr) {
            ExchangePlan again;
            const PlanFormat* readAs = nullptr;
            const bool hasPlaces = (to->carries & kCarriesPositions) != 0;
            const bool isRead = ReadExchangePlan(written, "again", hasPlaces ? nullptr : &data,
                                                 again, readAs, report, error);
            Require(readAs == to);
            Require(isRead || !hasPlaces);
            if (hasPlaces) {
                RequireSame(AsFormatHolds(*to, plan), again, to != &kFlightGearPlanFormat);
            }
        }
    }
}
