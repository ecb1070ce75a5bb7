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

}  // namespace

void HandleFplnKeys() {
    if (mcu.fplnPressed) {
        ListStoredPlans();  // plans that came since the module was loaded are there at once
    }
    std::int32_t rows = McuRowsToMove(true);
    rows += kMcuListRows * ((mcu.arrowKey == McuArrow::Right) - (mcu.arrowKey == McuArrow::Left));
    MoveMcuCursor(mcu.planCursor, mcu.planScroll, rows, PlanCount());
    if (mcu.enterPressed && mcu.planCursor < PlanCount()) {
        requests.planLoadMode = kPlanLoadRequest;
        requests.planLoadName =
            storedPlans.plans[static_cast<std::size_t>(mcu.planCursor)].fileName;
    }
}

void ComposeFpln(McuScreen& screen) {
    screen.Put(McuStyle::Title, 0, kMcuRowY[0], "FPLN:");
    const std::int32_t count = PlanCount();
    PutMcuPosition(screen, count == 0 ? 0 : mcu.planCursor + 1, count);
    if (count == 0) {
        screen.Put(McuStyle::Data, kMcuColumnWidth, kMcuListY[0], "NO STORED PLANS");
    }
    for (int i = 0; i < kMcuListRows && mcu.planScroll + i < count; ++i) {
        const std::int32_t index = mcu.planScroll + i;
        const StoredPlan& plan = storedPlans.plans[static_cast<std::size_t>(index)];
        const bool highlighted = index == mcu.planCursor;
        const McuStyle style = highlighted ? McuStyle::Highlight : McuStyle::Data;
        const int y = kMcuListY[static_cast<std::size_t>(i)];
        if (highlighted) {
            PutMcuCursor(screen, y);
        }
        screen.Put(style, kMcuColumnWidth, y, "%.26s", plan.fileName.c_str());
        if (plan.fileName.size() <= kNameBesideIdents && !plan.lastIdent.empty()) {
            screen.Put(style, kIdentsX, y, "%.5s-%.5s", plan.firstIdent.c_str(),
                       plan.lastIdent.c_str());
        }
    }
    PutMcuMessage(screen);
}

}  // namespace avq1
