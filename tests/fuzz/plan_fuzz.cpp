// Any text read as a stored plan gives a plan that writes and reads back as itself.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "flightplan/plan_files.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static avq1::FlightPlan plan;
    avq1::PlanBook book;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    avq1::ParsePlanText(text, plan, &book, size % 2 == 0);
    const std::int32_t lastIndex = plan.lastIndex;
    const std::string written = avq1::PlanText(plan);
    avq1::ParsePlanText(written, plan, nullptr, false);
    if (plan.lastIndex != lastIndex || avq1::PlanText(plan) != written) {
        std::abort();
    }
    return 0;
}
