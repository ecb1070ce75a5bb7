// Any text read as a stored plan gives a plan that writes and reads back as itself.
#include "flightplan/plan_files.h"
#include "fuzz/fuzz_text.h"

void FuzzText(std::string_view text) {
    static avq1::FlightPlan plan;
    avq1::PlanBook book;
    avq1::ParsePlanText(text, plan, &book, text.size() % 2 == 0);
    const std::int32_t lastIndex = plan.lastIndex;
    const std::string written = avq1::PlanText(plan);
    avq1::ParsePlanText(written, plan, nullptr, false);
    Require(plan.lastIndex == lastIndex && avq1::PlanText(plan) == written);
}
