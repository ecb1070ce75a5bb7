// cdu_smiths/smiths_route.h - the route as the Smiths-style unit shows and changes it.
//
// While a route is being built or an active one has a modification, the pages show the modified
// plan, else the active one; every change is made to the modified plan and is flown by EXEC only.
#pragma once

#include <cstdint>

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

// The modified plan, ready to be changed: a change of the active route begins with a copy of it.
FlightPlan& BeginSmithsEdit();

// Runs bool(FlightPlan&), one of flightplan/plan_edit.h, on the modified plan.
template <typename Edit>
bool EditSmithsPlan(Edit&& edit) {
    return EditPlan(BeginSmithsEdit(), edit);
}

// EXEC; without anything that waits for it nothing happens.
void ExecuteSmithsRoute();

// For "< ERASE": shown while a modification waits, which its key drops.
bool SmithsEraseShown(const FieldRow& field);
EntryResult EraseSmithsModification(const FieldRow& field);

}  // namespace avq1
