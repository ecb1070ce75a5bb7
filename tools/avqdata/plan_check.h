// avqdata/plan_check.h - whether a plan can be flown with a folder's data.
#pragma once

#include <string_view>

#include "avqdata/plan_data.h"
#include "avqdata/plan_exchange.h"
#include "avqdata/report.h"

namespace avqdata {

// Faults: fixes, airways and procedures that the data does not have or has elsewhere (a mile and
// more), airways that do not lead from their fix to the next. Warnings: another cycle, fixes that
// an airway passes and the plan leaves out. The pilot's own points are not looked for.
void CheckPlan(const PlanData& data, const ExchangePlan& plan, std::string_view name,
               Report& report);

}  // namespace avqdata
