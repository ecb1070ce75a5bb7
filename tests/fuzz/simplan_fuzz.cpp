// Any text read as one of the simulator's plans gives a plan this system reads, entry for entry.
#include <algorithm>

#include "flightplan/plan_files.h"
#include "flightplan/sim_plan.h"
#include "fuzz/fuzz_text.h"

void FuzzText(std::string_view text) {
    static avq1::FlightPlan plan;
    const std::string converted = avq1::ConvertSimPlan(text).text;
    if (converted.empty()) {
        return;
    }
    avq1::ParsePlanText(converted, plan, nullptr, false);
    const auto lines = std::count(converted.begin(), converted.end(), '\n') - 1;
    Require(plan.lastIndex + 1 == std::min<std::ptrdiff_t>(lines, avq1::kPlanCapacity));
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        const avq1::PlanWaypoint& entry = plan.entries[i];
        Require(!entry.ident.empty());
        Require(std::abs(entry.latitude) <= 90 && std::abs(entry.longitude) <= 180);
    }
}
