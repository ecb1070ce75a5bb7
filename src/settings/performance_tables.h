// settings/performance_tables.h - the aircraft's climb, cruise and descent tables, from which the
// predictions derive speeds, rates and fuel.
//
// The file is named by the aircraft file and lies in \avq\aircraft\. Altitudes in feet, speeds in
// knots true, rates in feet per minute; weights and fuel flows in the file's own units. Rows keep
// the file's order; rows beyond kPerformanceRowCapacity are dropped. A missing file leaves the
// tables empty.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace avq1 {

inline constexpr std::size_t kGrossWeightCapacity = 8;
inline constexpr std::size_t kCruiseFlowCapacity = 26;
inline constexpr std::size_t kPerformanceRowCapacity = 500;

struct ClimbRow {
    double altitudeFt = 0;
    double speedTas = 0;
    double climbRate = 0;
    std::array<double, kGrossWeightCapacity> fuelFlow{};  // one for each gross weight
    std::int32_t fuelFlowCount = 0;
};

struct CruiseRow {
    double altitudeFt = 0;
    double speedTas = 0;
    std::array<double, kCruiseFlowCapacity> fuelFlow{};
    std::int32_t fuelFlowCount = 0;
};

struct DescentRow {
    double altitudeFt = 0;
    double speedTas = 0;
    double descentRate = 0;
    double fuelFlow = 0;
};

struct AltitudeRow {
    double first = 0;  // raises the highest cruise altitude considered
    double second = 0;
};

struct PerformanceTables {
    std::vector<double> grossWeights;  // the written number times 1000
    std::vector<ClimbRow> climb;
    std::vector<CruiseRow> cruise;
    std::vector<DescentRow> descent;
    std::vector<AltitudeRow> altitudes;
};

extern PerformanceTables performanceTables;

// Reads the file the aircraft names.
void LoadPerformanceTables();

void ReadPerformanceTables(std::string_view text, PerformanceTables& tables);

}  // namespace avq1
