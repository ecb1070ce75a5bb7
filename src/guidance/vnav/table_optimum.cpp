#include "guidance/vnav/table_optimum.h"

#include <algorithm>
#include <cmath>

namespace avq1 {
namespace {

constexpr double kStepNm = 20;
constexpr double kSecondsPerHour = 3600;
constexpr double kLowAltitudeFt = 10000;
constexpr double kLowSpeedTas = 300;
constexpr double kLongHalfNm = 450;
constexpr double kLongLimitNm = 200;
constexpr double kLowestFt = 3000;
constexpr double kThousandFt = 1000;
constexpr int kSearches = 3;

double RateOf(const ClimbRow& row) {
    return row.climbRate;
}
double RateOf(const DescentRow& row) {
    return row.descentRate;
}

template <typename Row>
const Row& NearestRow(const std::vector<Row>& rows, double altitudeFt) {
    return *std::min_element(rows.begin(), rows.end(), [&](const Row& a, const Row& b) {
        return std::trunc(std::fabs(a.altitudeFt - altitudeFt)) <
               std::trunc(std::fabs(b.altitudeFt - altitudeFt));
    });
}

struct SpeedRestriction {
    double indicatedKt = 0;  // 0 = none
    double belowFt = 0;
};

double LimitSpeed(double speedTas, double altitudeFt, const SpeedRestriction& restriction) {
    if (altitudeFt >= kLowAltitudeFt) {
        return speedTas;
    }
    if (restriction.indicatedKt > 0 && altitudeFt < restriction.belowFt) {
        speedTas = IndicatedToTrue(restriction.indicatedKt, altitudeFt);
    }
    return std::min(speedTas, kLowSpeedTas);
}

// From one altitude up to another in steps of 20 nm, at most as far as the phase may be. Steps of
// one speed are one step.
template <typename Row>
std::vector<TableStep> Simulate(const std::vector<Row>& rows, double fromFt, double toFt,
                                double limitNm, const SpeedRestriction& restriction) {
    std::vector<TableStep> steps;
    double altitudeFt = fromFt;
    for (double flownNm = 0; altitudeFt < toFt && flownNm < limitNm; flownNm += kStepNm) {
        const Row& row = NearestRow(rows, altitudeFt);
        const double speedTas = LimitSpeed(row.speedTas, altitudeFt, restriction);
        if (!(speedTas > 0)) {
            return {};
        }
        const double seconds = kStepNm / speedTas * kSecondsPerHour;
        altitudeFt += RateOf(row) / 60 * seconds;
        if (!steps.empty() && steps.back().speedTas == speedTas) {
            TableStep& same = steps.back();
            same.rate =
                (same.rate * same.seconds + RateOf(row) * seconds) / (same.seconds + seconds);
            same.seconds += seconds;
        } else {
            steps.push_back({speedTas, RateOf(row), seconds});
        }
    }
    return steps;
}

struct PhaseAverages {
    TableAverages climb;
    TableAverages descent;

    bool AreUsable() const {
        return climb.rate > 0 && climb.speedTas > 0 && descent.rate > 0 && descent.speedTas > 0;
    }
};

double PhaseNm(double altitudeFt, const TableAverages& averages) {
    return altitudeFt / averages.rate * averages.speedTas / 60;
}

PhaseAverages AveragePhases(const PlanningInput& input, const PerformanceTables& tables,
                            const AircraftPerformance& from, double cruiseFt, double limitNm) {
    return {
        AverageSteps(Simulate(tables.climb, input.altitudeFt, cruiseFt, limitNm,
                              {from.climbSpeedRestriction, from.climbRestrictionAltitude})),
        AverageSteps(Simulate(tables.descent, DescentEndFt(*input.route, 0), cruiseFt, limitNm,
                              {from.descentSpeedRestriction, from.descentRestrictionAltitude}))};
}

void TakeAverages(const PhaseAverages& averages, const PerformanceTables& tables, double cruiseFt,
                  AircraftPerformance& target) {
    target.climbTas = averages.climb.speedTas;
    target.descentTas = averages.descent.speedTas;
    target.climbIas =
        static_cast<std::int32_t>(TrueToIndicated(target.climbTas, kClimbSpeedAltitudeFt));
    target.descentIas =
        static_cast<std::int32_t>(TrueToIndicated(target.descentTas, kClimbSpeedAltitudeFt));
    target.cruiseIas = static_cast<std::int32_t>(
        TrueToIndicated(NearestRow(tables.cruise, cruiseFt).speedTas, cruiseFt));
    target.climbRate = static_cast<std::int32_t>(averages.climb.rate);
    target.descentRate = averages.descent.rate;
    target.climbMach = IndicatedToMach(target.climbIas, kClimbSpeedAltitudeFt);
    target.cruiseMach = IndicatedToMach(target.cruiseIas, cruiseFt);
    target.descentMach = IndicatedToMach(target.descentIas, kCruiseSpeedAltitudeFt);
}

}  // namespace

TableAverages AverageSteps(const std::vector<TableStep>& steps) {
    TableAverages averages;
    if (steps.empty()) {
        return averages;
    }
    double seconds = 0;
    TableStep least = steps.front();
    TableStep greatest = steps.front();
    for (const TableStep& step : steps) {
        averages.speedTas += step.speedTas / step.seconds;
        averages.rate += step.rate / step.seconds;
        seconds += step.seconds;
        least = {std::min(least.speedTas, step.speedTas), std::min(least.rate, step.rate)};
        greatest = {std::max(greatest.speedTas, step.speedTas), std::max(greatest.rate, step.rate)};
    }
    const auto count = static_cast<double>(steps.size());
    const double share = seconds / (count * count);
    averages.speedTas = std::clamp(averages.speedTas * share, least.speedTas, greatest.speedTas);
    averages.rate = std::clamp(averages.rate * share, least.rate, greatest.rate);
    return averages;
}

double TablePhaseLimitNm(double routeLengthNm) {
    return routeLengthNm / 2 > kLongHalfNm ? kLongLimitNm : ClimbLimitNm(routeLengthNm);
}

double OptimumFromTables(const PlanningInput& input, const PerformanceTables& tables,
                         AircraftPerformance& target) {
    if (tables.climb.empty() || tables.cruise.empty() || tables.descent.empty()) {
        return 0;
    }
    double cruiseFt = target.maxCruiseAltitude;
    for (const AltitudeRow& row : tables.altitudes) {
        cruiseFt = std::max(cruiseFt, row.first);
    }
    const double limitNm = TablePhaseLimitNm(input.route->LengthNm());
    PhaseAverages averages;
    for (int search = 0; search < kSearches; ++search) {
        averages = AveragePhases(input, tables, target, cruiseFt, limitNm);
        if (!averages.AreUsable()) {
            return 0;
        }
        while (cruiseFt > kLowestFt && (PhaseNm(cruiseFt, averages.climb) > limitNm ||
                                        PhaseNm(cruiseFt, averages.descent) > limitNm)) {
            cruiseFt -= kThousandFt;
        }
        cruiseFt = LevelAboveAirports(input, cruiseFt);
    }
    TakeAverages(averages, tables, cruiseFt, target);
    return cruiseFt;
}

}  // namespace avq1
