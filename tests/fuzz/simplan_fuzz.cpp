// Any text read as one of the simulator's plans gives a plan this system reads, entry for entry.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "flightplan/plan_files.h"
#include "flightplan/sim_plan.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static avq1::FlightPlan plan;
    const avq1::ConvertedPlan converted =
        avq1::ConvertSimPlan({reinterpret_cast<const char*>(data), size});
    if (converted.text.empty()) {
        return 0;
    }
    avq1::ParsePlanText(converted.text, plan, nullptr, false);
    const auto lines = std::count(converted.text.begin(), converted.text.end(), '\n') - 1;
    if (plan.lastIndex + 1 != std::min<std::ptrdiff_t>(lines, avq1::kPlanCapacity)) {
        std::abort();
    }
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        const avq1::PlanWaypoint& entry = plan.entries[i];
        if (entry.ident.empty() || std::abs(entry.latitude) > 90 ||
            std::abs(entry.longitude) > 180) {
            std::abort();
        }
    }
    return 0;
}
