// cdu_smiths/smiths_route.h - the route as the Smiths-style unit shows and changes it.
//
// While a route is being built or an active one has a modification, the pages show the modified
// plan, else the active one; every change is made to the modified plan and is flown by EXEC only.
#pragma once

#include <cstdint>
#include <string_view>

#include "cdu/fields.h"
#include "cdu/screen.h"
#include "flightplan/flight_plan.h"
#include "guidance/activation.h"
#include "guidance/predictions.h"

namespace avq1 {

// The plan the pages show.
const FlightPlan& SmithsPlan();
bool SmithsShowsActivePlan();
// In the plan shown: the entry flown to, or that will be after EXEC; kNoWaypoint without.
std::int32_t SmithsFlownIndex();
// When, how high and with how much fuel the entries of the plan shown will be passed.
const Predictions& SmithsPredictions();

// An active route with a modification awaiting EXEC: "< ERASE" is there.
bool SmithsModificationWaits();
// The route is flown, modified or not.
bool SmithsRouteIsActive();
// "ACT" or "MOD" in front of a title, empty while a route is being built.
const char* SmithsRouteTag();
void PutSmithsRouteTag(Screen& screen);

// The modified plan, ready to be changed: a change of the active route begins with a copy of it,
// whose entries have the same numbers.
FlightPlan& BeginSmithsEdit();
// The change is made, or was refused.
void EndSmithsEdit();

// Runs bool(FlightPlan&), one of flightplan/plan_edit.h, on the modified plan.
template <typename Edit>
bool EditSmithsPlan(Edit&& edit) {
    const bool edited = EditPlan(BeginSmithsEdit(), edit);
    EndSmithsEdit();
    return edited;
}

// A direct-to in the modified plan that waits for EXEC: it begins where the aircraft is then,
// unless an intercept course was chosen.
struct SmithsDirect {
    bool waits = false;
    bool onCourse = false;
    double courseMag = 0;  // into the waypoint, as chosen
};
extern SmithsDirect smithsDirect;

// Direct to an entry of the plan shown. With `onCourse` it is intercepted on that course, degrees
// magnetic. False, and nothing changed, where that cannot be.
bool ChooseSmithsDirect(std::int32_t index);
bool ChooseSmithsIntercept(std::int32_t index, double courseMag);

// A stored plan becomes the route: one to be activated, or, over an active one, a modification that
// starts from entry 1 once it is executed. False, with a message and the route as it was, where the
// file holds no plan.
bool LoadSmithsRoute(std::string_view fileName);

// EXEC; without anything that waits for it nothing happens.
void ExecuteSmithsRoute();

// ---- rows that several pages have ----
// "< ERASE": there while a modification waits, which its key drops.
bool SmithsEraseShown(const FieldRow& field);
EntryResult EraseSmithsModification(const FieldRow& field);
// "ACTIVATE >": there while a route is being built, which awaits EXEC from then on.
bool SmithsActivateShown(const FieldRow& field);
EntryResult ActivateSmithsRoute(const FieldRow& field);

// ---- typed waypoints ----
// What takes a point that was typed.
using SmithsTakePoint = EntryResult (*)(const PlanWaypoint& entry);

// Looks up what was typed, an identifier, a position or a place with a bearing. One point is taken
// at once; of several the pilot chooses on SELECT WAYPOINT, and the page that asked is back then.
EntryResult TakeSmithsPoint(std::string_view text, SmithsTakePoint take);

// The row of the route that an entry is typed for, as long as the pilot chooses; it follows its
// entry.
PlanSelection& SmithsSelection();

// Puts the point before that entry.
EntryResult InsertAtSmithsSelection(const PlanWaypoint& entry);

// Shows RTE HOLD with the hold at an entry of the plan shown.
void OpenSmithsHold(std::int32_t index);

// ---- plan mode of the maps ----
bool SmithsMapStepShown(const FieldRow& field);
// The entry of the plan shown that the map is centred on; kNoWaypoint without.
std::int32_t SmithsMapCentre();
EntryResult StepSmithsMap(const FieldRow& field);

}  // namespace avq1
