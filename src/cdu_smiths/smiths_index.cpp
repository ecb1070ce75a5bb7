// INIT/REF INDEX: what opens the pages that no key of its own opens, and saving the flown plan.
#include <string>

#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/plan_files.h"

namespace avq1 {
namespace {

// A name without an extension gets the stored plans' own.
EntryResult SaveAs(std::string_view typed) {
    if (!SmithsRouteIsActive() || activePlan.lastIndex < 0) {
        SaySmiths("NO ACTIVE FLIGHT PLAN");
        return EntryResult::None;
    }
    if (typed.find('/') != std::string_view::npos || typed.starts_with('.')) {
        return EntryResult::InvalidEntry;
    }
    std::string name(typed);
    if (name.empty()) {
        name = activePlan.entries[0].ident + activePlan.entries[activePlan.lastIndex].ident;
    }
    if (name.find('.') == std::string::npos) {
        name += ".RTE";
    }
    if (!SavePlan(name)) {
        SaySmiths("UNABLE TO SAVE FPL");
        return EntryResult::None;
    }
    ListStoredPlans();
    SaySmiths(name + " Saved");
    return EntryResult::Accepted;
}

// Plans that came since the list was read are there at once.
EntryResult ReadStoredPlans(const FieldRow&) {
    ListStoredPlans();
    smiths.Counter(SmithsCounter::StoredPlans).n = 1;
    return EntryResult::None;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("INIT/REF   INDEX"),
    {.label = "1 / 1", .labelStyle = kSmithsData, .labelAt = {kSmithsCounterX, 0}},
    SmithsPrompt(kL1, "<IDENT", kSmithsIdent),
    SmithsPrompt(kL2, "<POS", kSmithsPos, {.press = AtSmithsSubPage<SmithsCounter::Pos, 1>}),
    SmithsPrompt(kL3, "<PERF", kSmithsPerfInit,
                 {.press = AtSmithsSubPage<SmithsCounter::PerfInit, 1>}),
    SmithsPrompt(kL4, "<TAKEOFF", kSmithsTakeoffRef),
    SmithsPrompt(kL5, "<APPROACH", kSmithsApproachRef),
    SmithsPrompt(kR1, "NAV DATA>", kSmithsRefNavData),
    SmithsPrompt(kR2, "FLIGHT PLANS>", kSmithsStoredPlans, {.press = ReadStoredPlans}),
    // What has been typed is its entry.
    SmithsField(kR6,
                {.show = [](const FieldRow&, UnitText& text) { text.Set("SAVE FPL>"); },
                 .enter = [](const FieldRow&, std::string_view typed) { return SaveAs(typed); },
                 .press = [](const FieldRow&) { return SaveAs({}); }}),
};

}  // namespace

constinit const PageRow kSmithsIndexPage{.page = kSmithsIndex, .fields = kFields};

}  // namespace avq1
