// FLIGHT PLAN LIST: the stored plans, eight to a page; ENTER opens the highlighted one.
#include <string_view>

#include "cdu_gns/gns_pages.h"
#include "cdu_gns/gns_plan.h"
#include "flightplan/plan_files.h"

namespace avq1 {
namespace {

constexpr std::int32_t kRows = 8;
constexpr std::int32_t kNameLength = 10;
constexpr int kIdentsX = 250;

std::int32_t PlanCount() {
    return static_cast<std::int32_t>(storedPlans.plans.size());
}

std::int32_t PlanOnRow(std::int32_t row) {
    return kRows * (gns.Counter(GnsCounter::List).n - 1) + row;
}

// A stored plan is called by its name alone.
std::string_view NameOf(const StoredPlan& plan) {
    const std::string_view file = plan.fileName;
    return file.ends_with(".RTE") ? file.substr(0, file.size() - 4) : file;
}

void PutPlan(Screen& screen, const StoredPlan& plan, std::int32_t row, bool highlighted) {
    const ScreenPoint at{kGnsLabelX, kGnsRowY[static_cast<std::size_t>(row) + 1]};
    UnitText name(NameOf(plan).substr(0, kNameLength));
    if (highlighted) {
        screen.Put(kGnsPrompt, at.x - kGnsCharacterWidth, at.y, ">");
        PutHighlighted({kGnsPrompt, kGnsEntry, kGnsHighlight}, at, name, kNameLength, screen);
    } else {
        screen.PutText(kGnsData, at, name);
    }
    if (!plan.lastIdent.empty()) {
        screen.Put(highlighted ? kGnsPrompt : kGnsData, kIdentsX, at.y, "%.4s-%.5s",
                   plan.firstIdent.c_str(), plan.lastIdent.c_str());
    }
}

}  // namespace

bool GnsShowsPlanList() {
    return gns.planView == kStoredView && gns.storedPlanOpen == 0;
}

bool GnsPlanOnRow(std::int32_t row) {
    return PlanOnRow(row) < PlanCount();
}

EntryResult OpenGnsStoredPlan(std::int32_t row) {
    const std::int32_t plan = PlanOnRow(row);
    const StoredPlan& stored = storedPlans.plans[static_cast<std::size_t>(plan)];
    LoadPlan(stored.fileName);
    gns.storedPlanNumber = plan + 1;
    gns.storedPlanOpen = 1;
    gns.Counter(GnsCounter::StoredPlan).n = 1;
    gns.notice = planBook.entryNotice;
    if (gns.notice.empty() && modifiedPlan.lastIndex < 0 && !stored.lastIdent.empty()) {
        gns.notice = "UNABLE TO LOAD FPL";  // there was a plan when the list was read
    }
    ClearGnsSelections();
    return EntryResult::None;
}

void HandleGnsPlanList(const UnitInput& input) {
    if (input.openedPage == kGnsPlan && gns.listWanted) {
        ListStoredPlans();  // plans that came since the module was loaded are there at once
        gns.listWanted = false;
    }
}

void ComposeGnsPlanList(Screen& screen) {
    const SubPage& shown = SetGnsPageCount(GnsCounter::List, PageCount(PlanCount(), kRows));
    screen.Put(kGnsLabel, 45, 0, "FLIGHT PLAN LIST %d/%d", shown.n, shown.m);
    const LineRow* selected = GnsSelectedLine();
    for (std::int32_t row = 0; row < kRows && GnsPlanOnRow(row); ++row) {
        PutPlan(screen, storedPlans.plans[static_cast<std::size_t>(PlanOnRow(row))], row,
                selected != nullptr && selected->item == row);
    }
}

}  // namespace avq1
