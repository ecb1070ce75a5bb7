// FPLN: the stored flight plans; ENTER asks for the highlighted one.
#include "cdu_gns/mcu_pages.h"
#include "flightplan/plan_files.h"
#include "guidance/guidance_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kPlanLoadRequest = 1;
constexpr std::size_t kNameBesideIdents = 14;
constexpr int kIdentsX = kMcuColumnWidth + 127;

std::int32_t PlanCount() {
    return static_cast<std::int32_t>(storedPlans.plans.size());
}

const StoredPlan& PlanAt(std::int32_t row) {
    return storedPlans.plans[static_cast<std::size_t>(row)];
}

void HandleFpln(const UnitInput& input) {
    if (input.openedPage != 0) {
        ListStoredPlans();  // plans that came since the module was loaded are there at once
    }
    const std::int32_t pages =
        (input.arrowKey == UnitArrow::Right) - (input.arrowKey == UnitArrow::Left);
    mcu.plans.Move(RowsToMoveWithArrows(input, kMcuListRows) + kMcuListRows * pages, PlanCount(),
                   kMcuListRows);
}

EntryResult RequestHighlightedPlan(const FieldRow&) {
    if (mcu.plans.row >= PlanCount()) {
        return EntryResult::None;
    }
    requests.planLoadMode = kPlanLoadRequest;
    requests.planLoadName = PlanAt(mcu.plans.row).fileName;
    return EntryResult::Accepted;
}

void PutPlan(Screen& screen, const StoredPlan& plan, int y, bool highlighted) {
    const McuStyle style = PutMcuCursor(screen, y, highlighted);
    screen.Put(style, kMcuColumnWidth, y, "%.26s", plan.fileName.c_str());
    if (plan.fileName.size() <= kNameBesideIdents && !plan.lastIdent.empty()) {
        screen.Put(style, kIdentsX, y, "%.5s-%.5s", plan.firstIdent.c_str(),
                   plan.lastIdent.c_str());
    }
}

void ComposeFpln(Screen& screen) {
    const std::int32_t count = PlanCount();
    PutMcuPosition(screen, count == 0 ? 0 : mcu.plans.row + 1, count);
    if (count == 0) {
        screen.Put(kMcuData, kMcuColumnWidth, kMcuListY[0], "NO STORED PLANS");
    }
    mcu.plans.ForEachShown(
        count, kMcuListRows, [&](std::int32_t slot, std::int32_t row, bool highlighted) {
            PutPlan(screen, PlanAt(row), kMcuListY[static_cast<std::size_t>(slot)], highlighted);
        });
    PutMcuMessage(screen);
}

constexpr FieldRow kFields[] = {
    {.line = kEnterLine,
     .label = "FPLN:",
     .press = RequestHighlightedPlan,
     .labelStyle = kMcuTitle},
};

}  // namespace

constinit const PageRow kMcuFplnPage{
    .page = kMcuFpln, .fields = kFields, .handle = HandleFpln, .compose = ComposeFpln};

}  // namespace avq1
