#include "cdu_smiths/smiths_route.h"

#include "cdu_smiths/smiths_pages.h"
#include "flightplan/plan_edit.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"

namespace avq1 {
namespace {

constexpr int kTagX = 18;

}  // namespace

bool SmithsShowsActivePlan() {
    return planBook.status == RouteStatus::Active;
}

const FlightPlan& SmithsPlan() {
    return SmithsShowsActivePlan() ? activePlan : modifiedPlan;
}

std::int32_t SmithsFlownIndex() {
    return SmithsShowsActivePlan() ? planBook.activeIndex : planBook.trackedIndex;
}

const Predictions& SmithsPredictions() {
    return SmithsShowsActivePlan() ? ActivePredictions() : ModifiedPredictions();
}

bool SmithsModificationWaits() {
    return planBook.status == RouteStatus::Modified;
}

bool SmithsRouteIsActive() {
    return planBook.status == RouteStatus::Active || planBook.status == RouteStatus::Modified;
}

const char* SmithsRouteTag() {
    return SmithsShowsActivePlan() ? "ACT" : SmithsModificationWaits() ? "MOD" : "";
}

void PutSmithsRouteTag(Screen& screen) {
    screen.Put(kSmithsData, kTagX, 0, "%s", SmithsRouteTag());
}

FlightPlan& BeginSmithsEdit() {
    if (SmithsShowsActivePlan()) {
        CopyActiveToModified();
    }
    return modifiedPlan;
}

void ExecuteSmithsRoute() {
    ExecuteModification();
}

bool SmithsEraseShown(const FieldRow&) {
    return SmithsModificationWaits();
}

EntryResult EraseSmithsModification(const FieldRow&) {
    DropModification();
    return EntryResult::None;
}

}  // namespace avq1
