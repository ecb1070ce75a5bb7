// Any bytes as an aircraft file and as performance tables: no crash, every derived speed inside
// what its limits allow, no table beyond its capacity.
#include "base/module_state.h"
#include "fuzz/fuzz_text.h"
#include "settings/aircraft_performance.h"
#include "settings/performance_tables.h"

void FuzzText(std::string_view text) {
    using namespace avq1;
    ResetModuleState();
    ApplyAircraftText(text, performance);
    DeriveMachLimits(performance);
    DeriveSpeeds(performance);
    Require(performance.holdLegMinutes != 0);
    Require(performance.vnavSpeedDistanceNm > 0);
    Require(performance.takeoffFlapsRange.front() == ',' &&
            performance.takeoffFlapsRange.back() == ',');
    Require(!std::isnan(performance.climbMach) && !std::isnan(performance.cruiseMachMax));

    PerformanceTables tables;
    ReadPerformanceTables(text, tables);
    Require(tables.grossWeights.size() <= kGrossWeightCapacity);
    Require(tables.climb.size() <= kPerformanceRowCapacity);
    for (const CruiseRow& row : tables.cruise) {
        Require(row.fuelFlowCount >= 0 &&
                row.fuelFlowCount <= static_cast<std::int32_t>(kCruiseFlowCapacity));
    }
    for (const ClimbRow& row : tables.climb) {
        Require(std::isfinite(row.altitudeFt) && std::isfinite(row.fuelFlow.back()));
    }
}
