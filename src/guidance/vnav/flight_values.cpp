#include "guidance/vnav/flight_values.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "geometry/geometry.h"
#include "guidance/predictions.h"
#include "settings/airspeed.h"
#include "settings/performance_tables.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {
namespace {

constexpr double kFlyingKt = 80;
constexpr double kShortfallKt = 3;  // slower than told: the aircraft has reached a limit
constexpr double kSettledKt = 0.5;  // gained since the last note
constexpr double kWindDecayNm = 150;
constexpr double kTropopauseFt = 36089;
constexpr double kFlowsKept = 40;
constexpr double kFlowsNeeded = 6;
constexpr double kLeastSpreadFpm2 = 200.0 * 200.0;
constexpr double kIdleShare = 0.33;  // of the level flow
constexpr double kNewShare = 0.3;    // of a reading in what has been learned

double DensityRatio(double altitudeFt) {
    const double theta = 1 - 6.8756e-6 * std::min(altitudeFt, kTropopauseFt);
    const double below = std::pow(theta, 4.2559);
    return altitudeFt <= kTropopauseFt ? below
                                       : below * std::exp((kTropopauseFt - altitudeFt) / 20806);
}

double StandardTas(double indicatedKt, double altitudeFt) {
    return indicatedKt / std::sqrt(DensityRatio(altitudeFt));
}

// Between the rows of a table in which altitudes rise.
template <typename Row, typename Flow>
double FlowBetween(const std::vector<Row>& rows, double altitudeFt, const Flow& flow) {
    if (rows.empty()) {
        return 0;
    }
    const auto above = std::find_if(rows.begin(), rows.end(),
                                    [&](const Row& row) { return row.altitudeFt > altitudeFt; });
    if (above == rows.begin() || above == rows.end()) {
        return flow(above == rows.end() ? rows.back() : rows.front());
    }
    const Row& below = *(above - 1);
    const double share = (altitudeFt - below.altitudeFt) / (above->altitudeFt - below.altitudeFt);
    return flow(below) + share * (flow(*above) - flow(below));
}

// Of the middle weight: the ratio that is learned takes care of the others. 0 without flows.
template <typename Row>
double MiddleFlow(const Row& row) {
    const auto middle = static_cast<std::size_t>(std::max(row.fuelFlowCount - 1, 0) / 2);
    return row.fuelFlow[middle];
}

double TableFlow(VerticalPhase phase, double altitudeFt) {
    switch (phase) {
        case VerticalPhase::Climb:
            return FlowBetween(performanceTables.climb, altitudeFt, MiddleFlow<ClimbRow>);
        case VerticalPhase::Descent:
            return FlowBetween(performanceTables.descent, altitudeFt,
                               [](const DescentRow& row) { return row.fuelFlow; });
        case VerticalPhase::Cruise:
            break;
    }
    return FlowBetween(performanceTables.cruise, altitudeFt, MiddleFlow<CruiseRow>);
}

void Blend(double& learned, double reading) {
    learned += kNewShare * (reading - learned);
}

// An aircraft that stays below the speed it was told to fly has reached its limit.
void LearnLimit(FlightExperience& experience, double trueKt) {
    const double gainKt = aircraft.indicatedAirspeedKt - experience.indicatedKt;
    const bool settled = experience.targetKt == aircraft.apAirspeedTargetKt &&
                         gainKt < kSettledKt && gainKt > -kShortfallKt;
    if (settled && aircraft.apSpeed115 == 1.0 &&
        aircraft.apAirspeedTargetKt - aircraft.indicatedAirspeedKt > kShortfallKt) {
        experience.machLimit =
            trueKt / SpeedOfSoundKt(std::min(aircraft.altitudeFt, kTropopauseFt));
    }
    experience.indicatedKt = aircraft.indicatedAirspeedKt;
    experience.targetKt = aircraft.apAirspeedTargetKt;
}

// A straight line through the flows and vertical speeds seen lately: what level flight burns shows
// before the first level minute.
void LearnFlow(FlightExperience& experience, double flowPph) {
    experience.seen = std::min(experience.seen + 1, kFlowsKept);
    const double share = 1 / experience.seen;
    const double flowOff = flowPph - experience.meanFlowPph;
    const double fpmOff = aircraft.verticalSpeedFpm - experience.meanFpm;
    experience.meanFlowPph += share * flowOff;
    experience.meanFpm += share * fpmOff;
    const double together =
        (1 - share) * (experience.flowPerFpm * experience.spreadFpm2 + share * fpmOff * flowOff);
    experience.spreadFpm2 = (1 - share) * (experience.spreadFpm2 + share * fpmOff * fpmOff);
    if (experience.spreadFpm2 > kLeastSpreadFpm2) {
        experience.flowPerFpm = together / experience.spreadFpm2;
    }
}

// Where a wind comes from, by components.
struct Wind {
    double northKt = 0;
    double eastKt = 0;
};

Wind WindOf(double directionTrue, double speedKt) {
    return {speedKt * std::cos(directionTrue * kDegToRad),
            speedKt * std::sin(directionTrue * kDegToRad)};
}

// `share` 0 to 1 is the second one's.
Wind Between(const Wind& a, const Wind& b, double share) {
    return {a.northKt + share * (b.northKt - a.northKt), a.eastKt + share * (b.eastKt - a.eastKt)};
}

// The rows of the descent's winds next below and above an altitude; null where there is none.
struct Neighbours {
    const DescentWind* below = nullptr;
    const DescentWind* above = nullptr;
};

Neighbours DescentNeighbours(double altitudeFt) {
    Neighbours next;
    for (const DescentWind& row : EnteredDescentWinds()) {
        if (!row.wind.entered || row.altitudeFt <= 0) {
            continue;
        }
        const bool below = row.altitudeFt <= altitudeFt;
        const DescentWind*& nearest = below ? next.below : next.above;
        if (nearest == nullptr ||
            (below ? row.altitudeFt > nearest->altitudeFt : row.altitudeFt < nearest->altitudeFt)) {
            nearest = &row;
        }
    }
    return next;
}

// What has been entered for the place; in the descent its own winds, else that of the cruise.
std::optional<Wind> ForecastWind(const WindPlace& place) {
    const auto windOf = [](const CruiseWind& wind) {
        return WindOf(wind.directionTrue, wind.speedKt);
    };
    if (place.descending) {
        const Neighbours next = DescentNeighbours(place.altitudeFt);
        if (next.below != nullptr && next.above != nullptr) {
            const double share = (place.altitudeFt - next.below->altitudeFt) /
                                 (next.above->altitudeFt - next.below->altitudeFt);
            return Between(windOf(next.below->wind), windOf(next.above->wind), share);
        }
        if (next.below != nullptr || next.above != nullptr) {
            return windOf((next.below != nullptr ? next.below : next.above)->wind);
        }
    }
    const CruiseWind& cruise = EnteredCruiseWind();
    return cruise.entered ? std::optional(windOf(cruise)) : std::nullopt;
}

}  // namespace

void LearnFlight(FlightExperience& experience) {
    const double indicatedKt = aircraft.indicatedAirspeedKt;
    const double trueKt = derived.trueAirspeedEstimateKt;
    const double flow = TotalFuelFlow();
    if (!(indicatedKt > kFlyingKt) || !(trueKt > kFlyingKt)) {
        return;
    }
    experience.altitudeFt = aircraft.altitudeFt;
    Blend(experience.airspeedRatio,
          std::clamp(trueKt / StandardTas(indicatedKt, aircraft.altitudeFt), 0.7, 1.2));
    LearnLimit(experience, trueKt);
    if (flow > 0) {
        LearnFlow(experience, flow);
    }
}

double TrueAirspeedKt(const FlightExperience& experience, double indicatedKt, double altitudeFt) {
    const double share =
        experience.altitudeFt > 0 ? std::min(altitudeFt / experience.altitudeFt, 1.0) : 1;
    const double ratio = 1 + (experience.airspeedRatio - 1) * share;
    const double limit = experience.machLimit * SpeedOfSoundKt(std::min(altitudeFt, kTropopauseFt));
    return std::min(StandardTas(indicatedKt, altitudeFt) * ratio, limit);
}

double GroundSpeedKt(double trueKt, double courseTrue, const WindPlace& place) {
    const Wind now = WindOf(aircraft.windDirection, aircraft.windSpeedKt);
    const std::optional<Wind> then = ForecastWind(place);
    const double present = then ? std::exp(-std::max(place.aheadNm, 0.0) / kWindDecayNm) : 1;
    const Wind wind = then ? Between(*then, now, present) : now;
    const double course = courseTrue * kDegToRad;
    const double head = wind.northKt * std::cos(course) + wind.eastKt * std::sin(course);
    const double cross = wind.eastKt * std::cos(course) - wind.northKt * std::sin(course);
    return std::max(std::sqrt(std::max(trueKt * trueKt - cross * cross, 0.0)) - head, 1.0);
}

double FuelFlowPph(const FlightExperience& experience, VerticalPhase phase, double altitudeFt,
                   double verticalFpm) {
    if (experience.seen < kFlowsNeeded) {
        const double table = TableFlow(phase, altitudeFt);
        return table > 0 ? table : TotalFuelFlow();
    }
    const double level = experience.meanFlowPph - experience.flowPerFpm * experience.meanFpm;
    return std::max(level + experience.flowPerFpm * verticalFpm, kIdleShare * std::max(level, 0.0));
}

}  // namespace avq1
