// STORED FLIGHT PLANS: six to a page; a line key makes the plan beside it the route.
#include <string_view>

#include "cdu_smiths/smiths_pages.h"
#include "cdu_smiths/smiths_route.h"
#include "flightplan/plan_files.h"

namespace avq1 {
namespace {

constexpr std::int32_t kPlansPerPage = 6;
constexpr int kCounterX = 225;
constexpr int kNameLength = 13;

// The list ends with the place of a new plan, which is no stored one.
std::int32_t PlanCount() {
    return std::max(static_cast<std::int32_t>(storedPlans.plans.size()) - 1, 0);
}

SubPage& CounterShown() {
    return smiths.Counter(SmithsCounter::StoredPlans)
        .SetCount(PageCount(PlanCount(), kPlansPerPage));
}

// Null behind the last plan.
const StoredPlan* PlanOn(const FieldRow& field) {
    const std::int32_t plan = (CounterShown().n - 1) * kPlansPerPage + field.item;
    return plan < PlanCount() ? &storedPlans.plans[static_cast<std::size_t>(plan)] : nullptr;
}

void ShowName(const FieldRow& field, UnitText& text) {
    if (const StoredPlan* plan = PlanOn(field)) {
        const std::string_view file = plan->fileName;
        const std::string_view name =
            file.ends_with(".RTE") ? file.substr(0, file.size() - 4) : file;
        text.Set(name.substr(0, kNameLength));
    }
}

void ShowEnds(const FieldRow& field, UnitText& text) {
    const StoredPlan* plan = PlanOn(field);
    if (plan != nullptr && !plan->firstIdent.empty()) {
        text.Put("%.5s-%.5s", plan->firstIdent.c_str(), plan->lastIdent.c_str());
    }
}

EntryResult LoadPlanOn(const FieldRow& field) {
    const StoredPlan* plan = PlanOn(field);
    if (plan != nullptr && LoadSmithsRoute(plan->fileName)) {
        smiths.Counter(SmithsCounter::Route).n = 1;
        OpenPage(smiths, kSmithsRoute);
    }
    return EntryResult::None;
}

constexpr FieldRow PlanRow(std::int32_t row) {
    FieldRow field =
        SmithsField(SmithsLineOf(row, false), {.show = ShowName, .press = LoadPlanOn, .item = row});
    field.style = kSmithsFitted;
    return field;
}

constexpr FieldRow EndsRow(std::int32_t row) {
    FieldRow field = SmithsField(SmithsLineOf(row, true), {.show = ShowEnds, .item = row});
    field.line = 0;
    field.style = kSmithsFittedRight;
    return field;
}

constexpr FieldRow kFields[] = {
    SmithsTitle("STORED FLIGHT PLANS", 10),
    PlanRow(0),
    EndsRow(0),
    PlanRow(1),
    EndsRow(1),
    PlanRow(2),
    EndsRow(2),
    PlanRow(3),
    EndsRow(3),
    PlanRow(4),
    EndsRow(4),
    PlanRow(5),
    EndsRow(5),
};

void ComposeStoredPlans(Screen& screen) {
    PutSmithsCounter(screen, CounterShown(), "%2d / %2d", kCounterX);
    if (PlanCount() == 0) {
        screen.Put(kSmithsData, 0, kSmithsDataY[0], "- N O N E -");
    }
}

}  // namespace

constinit const PageRow kSmithsStoredPlansPage{
    .page = kSmithsStoredPlans, .fields = kFields, .compose = ComposeStoredPlans};

}  // namespace avq1
