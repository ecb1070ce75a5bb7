// avqdata/plan_table.h - a plan as a table for people: waypoints, legs, totals.
//
// Legs are great circles of geometry/, their courses true and as they begin. A gap has no leg; the
// way across it counts straight, as it does in the module. Columns without contents are left out.
#pragma once

#include <string>

#include "avqdata/plan_exchange.h"

namespace avqdata {

std::string PlanTable(const ExchangePlan& plan, const PlanFormat& format);

}  // namespace avqdata
