// guidance/vnav/table_optimum.h - the cruise altitude, speeds and rates that the aircraft's
// performance tables give for a route.
//
// Altitudes feet, distances nm, speeds kt true, rates feet a minute, durations seconds.
#pragma once

#include <vector>

#include "guidance/vnav/planning.h"
#include "settings/performance_tables.h"

namespace avq1 {

struct TableStep {
    double speedTas = 0;
    double rate = 0;
    double seconds = 0;
};

// What the steps of a climb or a descent average to, within the least and greatest of them.
struct TableAverages {
    double speedTas = 0;
    double rate = 0;
};

TableAverages AverageSteps(const std::vector<TableStep>& steps);

// Half the route, less 15 nm beyond 35 nm; 200 nm when half the route exceeds 450 nm.
double TablePhaseLimitNm(double routeLengthNm);

// The cruise altitude; 0 with `target` unchanged when a table is empty or gives no speed or rate.
// `target` gets the climb, cruise and descent airspeeds, true airspeeds, Mach numbers and rates.
double OptimumFromTables(const PlanningInput& input, const PerformanceTables& tables,
                         AircraftPerformance& target);

}  // namespace avq1
