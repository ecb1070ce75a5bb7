// Any bytes given to one form's reader, whatever it would be recognised as; the first byte tells
// which, and whether there is data.
#include "avqdata/plan_helpers.h"
#include "avqdata/plan_resolve.h"
#include "avqdata/plan_table.h"
#include "avqdata/text_tools.h"
#include "fuzz/fuzz_text.h"

void FuzzText(std::string_view text) {
    using namespace avqdata;
    static const PlanData data = SamplePlanData();
    if (text.empty()) {
        return;
    }
    const auto choice = static_cast<unsigned char>(text.front());
    const PlanFormat& format = *kPlanFormats.at(choice % kPlanFormats.size());
    if (format.read == nullptr) {
        return;
    }
    Report report;
    const PlanSource source{text.substr(1), "fuzz", format, report,
                            choice >= 128 ? &data : nullptr};
    ExchangePlan plan;
    format.read(source, plan);
    CompletePlan(source, plan);
    if (!plan.entries.empty()) {
        Require(!PlanTable(plan, format).empty());
    }
    for (const avq1::PlanWaypoint& entry : plan.entries) {
        Require(!avq1::HasPosition(entry) || IsPosition({entry.latitude, entry.longitude}));
    }
}
