#include "cdu_smiths/smiths_route.h"

#include <utility>

#include "base/module_state.h"
#include "base/redraw.h"
#include "cdu_smiths/smiths_pages.h"
#include "displays/nd/nd_panel.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_moves.h"
#include "flightplan/route_entry.h"
#include "flightplan/route_walk.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "simlink/aircraft_state.h"

namespace avq1 {

SmithsDirect smithsDirect;

namespace {

constexpr int kTagX = 18;
constexpr std::int32_t kPlanMode = 7;  // of the navigation display

const StateReset directReset([] { smithsDirect = SmithsDirect{}; });

PlanSelection& Centre() {
    return planBook.selections[static_cast<std::size_t>(PlanUnit::MapCentre)];
}

// The plans have the same entries now: the map stays where it is.
void CentreIn(const FlightPlan& plan) {
    if (Centre().plan != nullptr) {
        Centre().plan = &plan;
    }
}

LatLon PresentPosition() {
    return {aircraft.latitude, aircraft.longitude};
}

}  // namespace

bool SmithsShowsActivePlan() {
    return planBook.status == RouteStatus::Active;
}

const FlightPlan& SmithsPlan() {
    return SmithsShowsActivePlan() ? activePlan : modifiedPlan;
}

std::int32_t SmithsFlownIndex() {
    return FlownIndex(SmithsPlan());
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
        CentreIn(modifiedPlan);
        smithsDirect = {};
    }
    return modifiedPlan;
}

void EndSmithsEdit() {
    CentreIn(SmithsPlan());
}

bool ChooseSmithsDirect(std::int32_t index) {
    if (!EditSmithsPlan(
            [index](FlightPlan& plan) { return DirectTo(plan, index, PresentPosition()); })) {
        return false;
    }
    smithsDirect = {.waits = true};
    return true;
}

bool ChooseSmithsIntercept(std::int32_t index, double courseMag) {
    if (!ChooseSmithsDirect(index)) {
        return false;
    }
    LeadInOnCourse(modifiedPlan, courseMag + aircraft.magneticVariation, PresentPosition());
    smithsDirect.onCourse = true;
    smithsDirect.courseMag = courseMag;
    return true;
}

bool LoadSmithsRoute(std::string_view fileName) {
    const bool overActive = SmithsRouteIsActive();
    PreviewPlan(fileName);
    if (previewPlan.lastIndex < 0) {
        SaySmiths("UNABLE TO LOAD FPL");
        return false;
    }
    const std::int32_t flownCruiseFt = planBook.cruiseAltitudeFt;
    LoadPlan(fileName);
    planBook.waitingPerformance = {};
    if (overActive) {  // the plan's altitude waits with it
        planBook.waitingPerformance.cruiseAltitudeFt =
            std::exchange(planBook.cruiseAltitudeFt, flownCruiseFt);
    }
    smithsDirect = {};
    planBook.trackedIndex = kNoWaypoint;  // nothing of the flown route is kept
    planBook.status = overActive ? RouteStatus::Modified : RouteStatus::None;
    if (!overActive) {
        AdvanceRouteStatus();  // the plan's fuel belongs to it
    }
    if (!planBook.entryNotice.empty()) {
        SaySmiths(planBook.entryNotice);
    }
    RequestUnitRedraw();
    return true;
}

void ExecuteSmithsRoute() {
    if (!SmithsExecLit()) {
        return;
    }
    RemovePlaceholders(modifiedPlan);  // the entry directed to keeps its number from here on
    if (modifiedPlan.lastIndex < kFirstWaypoint) {
        SaySmiths(TextOf(EntryResult::InvalidEntry));
        return;
    }
    if (smithsDirect.waits && !smithsDirect.onCourse) {
        BeginDirectLegAt(modifiedPlan, PresentPosition());
    }
    const std::int32_t directTo = planBook.trackedIndex;
    if (ExecuteModification()) {
        if (smithsDirect.waits) {
            if (planBook.activeIndex != directTo) {  // a new route begins with its direct leg
                SetActiveWaypoint(directTo);
                planBook.trackedIndex = directTo;
            }
            guidance.trackLeg = guidance.joinLeg = smithsDirect.onCourse ? 1 : 0;
        }
        smithsDirect = {};
        smiths.legsMode = LegsMode::Normal;
        CentreIn(activePlan);
    }
}

bool SmithsEraseShown(const FieldRow&) {
    return SmithsModificationWaits();
}

EntryResult EraseSmithsModification(const FieldRow&) {
    DropModification();
    smiths.legsMode = LegsMode::Normal;
    if (Centre().plan == &modifiedPlan) {
        Centre() = {&activePlan, planBook.activeIndex};
    }
    return EntryResult::Accepted;
}

bool SmithsActivateShown(const FieldRow&) {
    return planBook.status == RouteStatus::BeingBuilt;
}

EntryResult ActivateSmithsRoute(const FieldRow&) {
    AdvanceRouteStatus();
    return EntryResult::Accepted;
}

PlanSelection& SmithsSelection() {
    return planBook.selections[static_cast<std::size_t>(PlanUnit::Smiths)];
}

bool SmithsMapStepShown(const FieldRow&) {
    return nd.ndMode == kPlanMode;
}

std::int32_t SmithsMapCentre() {
    return nd.ndMode == kPlanMode && Centre().plan == &SmithsPlan() && MapCentre() != nullptr
               ? Centre().index
               : kNoWaypoint;
}

EntryResult StepSmithsMap(const FieldRow&) {
    const FlightPlan& plan = SmithsPlan();
    const std::int32_t flown = SmithsFlownIndex();
    const std::int32_t first = PositionedEntryFrom(plan, flown == kNoWaypoint ? 0 : flown);
    const std::int32_t now = SmithsMapCentre();
    const std::int32_t next = now == kNoWaypoint ? first : PositionedEntryFrom(plan, now + 1);
    const std::int32_t index = next == kNoEntry ? first : next;
    Centre() = {&plan, index == kNoEntry ? kNoWaypoint : index};
    return EntryResult::Accepted;
}

EntryResult InsertAtSmithsSelection(const PlanWaypoint& entry) {
    const PlanSelection& at = SmithsSelection();
    if (at.plan != &SmithsPlan() || at.index == kNoWaypoint) {
        return EntryResult::InvalidEntry;
    }
    const std::int32_t index = at.index;
    return EditSmithsPlan([&](FlightPlan& plan) { return InsertLeg(plan, index, entry); })
               ? EntryResult::Accepted
               : EntryResult::PlanFull;
}

}  // namespace avq1
