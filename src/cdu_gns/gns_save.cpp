// SAVE ACTIVE FPL: the active plan under a name, into the folder of the stored plans.
#include <string>

#include "base/module_state.h"
#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "flightplan/plan_files.h"

namespace avq1 {
namespace {

constexpr std::int32_t kNameLength = 10;
constexpr std::int16_t kNameY = 120;

std::string planFileName;
const StateReset nameReset([] { planFileName.clear(); });

const PlanWaypoint& First() {
    return activePlan.entries[0];
}

const PlanWaypoint& Last() {
    return activePlan.entries[activePlan.lastIndex];
}

bool HasPlan(const FieldRow&) {
    return activePlan.lastIndex >= 1;
}

// A plan that cannot be written leaves the file there was, and says so.
EntryResult SavePlanAs(std::string_view name) {
    const bool isFileName = !name.empty() && name.find('*') == std::string_view::npos;
    if (!isFileName || activePlan.lastIndex < 1) {
        return EntryResult::InvalidEntry;
    }
    const bool saved = SavePlan(std::string(name) + ".RTE");
    if (saved) {
        ListStoredPlans();
    }
    ReturnToGnsPlan();
    gns.notice = saved ? "" : "UNABLE TO SAVE FPL";
    return EntryResult::None;
}

EntryResult SaveTyped(const LineRow&) {
    return SavePlanAs(std::string(TypedText(gns)));
}

EntryResult SaveOffered(const FieldRow&) {
    return SavePlanAs(planFileName);
}

constexpr FieldRow kFields[] = {
    {.line = kEnterLine, .press = SaveOffered},
    {.label = "SAVE ACTIVE FPL ", .labelAt = {90, 0}},
    {.show = [](const FieldRow&, UnitText& t) { t.Set(First().ident.substr(0, 7)); },
     .visible = HasPlan,
     .style = kGnsData,
     .valueAt = {96, 40}},
    {.label = "-", .labelAt = {240, 40}},
    {.show = [](const FieldRow&, UnitText& t) { t.Set(Last().ident.substr(0, 8)); },
     .visible = HasPlan,
     .style = kGnsData,
     .valueAt = {280, 40}},
    {.label = "Filename:", .labelAt = {kGnsLabelX, 80}},
};

constexpr LineRow kLines[] = {
    {.line = 2,
     .show = [](const LineRow&, UnitText& t) { t.Put("%s.RTE", planFileName.c_str()); },
     .entryLength = kNameLength,
     .select = [](const LineRow&) { LoadScratchpad(gns, planFileName, kNameLength); },
     .enter = SaveTyped,
     .style = kGnsData,
     .at = {kGnsLabelX, kNameY}},
};

void ComposeSave(Screen& screen) {
    if (IsSelected(gns, kLines[0])) {
        screen.Put(kGnsData, 230, kNameY, ".RTE");
    }
}

}  // namespace

// Only a plan between two airports is stored.
void OpenGnsSave() {
    const bool storable =
        activePlan.lastIndex >= 1 && First().type == kAirportType && Last().type == kAirportType;
    if (storable) {
        planFileName = (First().ident + Last().ident).substr(0, kNameLength);
        OpenGnsPage(kGnsSave);
    }
}

constinit const PageRow kGnsSavePage{
    .page = kGnsSave, .fields = kFields, .lines = kLines, .compose = ComposeSave};

}  // namespace avq1
