#include "guidance/performance_entries.h"

#include "base/module_state.h"
#include "base/redraw.h"
#include "flightplan/plan_edit.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav.h"

namespace avq1 {
namespace {

constexpr std::array kPhases = {VerticalPhase::Climb, VerticalPhase::Cruise,
                                VerticalPhase::Descent};

// How the airspeeds in force came about.
struct SpeedsInForce {
    std::array<SpeedChoice, kFlightPhases> choices;
    std::array<std::int32_t, kFlightPhases> economyIas{};  // left for another mode
    bool costIndexTyped = false;
};

SpeedsInForce inForce;
const StateReset resetSpeeds([] { inForce = {}; });

std::size_t At(VerticalPhase phase) {
    return static_cast<std::size_t>(phase);
}

bool RouteIsFlown() {
    return planBook.status == RouteStatus::Active || planBook.status == RouteStatus::Modified;
}

const PerformanceChange& Waiting() {
    static const PerformanceChange nothing;
    return planBook.status == RouteStatus::Modified ? planBook.waitingPerformance : nothing;
}

std::int32_t IasOf(const AircraftPerformance& from, VerticalPhase phase) {
    switch (phase) {
        case VerticalPhase::Climb:
            return from.climbIas;
        case VerticalPhase::Cruise:
            return from.cruiseIas;
        case VerticalPhase::Descent:
            break;
    }
    return from.descentIas;
}

void SetIas(AircraftPerformance& target, VerticalPhase phase, std::int32_t ias) {
    switch (phase) {
        case VerticalPhase::Climb:
            target.climbIas = ias;
            target.climbMach = IndicatedToMach(ias, kClimbSpeedAltitudeFt);
            target.climbTas = IndicatedToTrue(ias, kClimbSpeedAltitudeFt);
            break;
        case VerticalPhase::Cruise:
            target.cruiseIas = ias;
            target.cruiseMach = IndicatedToMach(
                ias, vnav.cruiseAltitude > 0 ? vnav.cruiseAltitude : kCruiseSpeedAltitudeFt);
            break;
        case VerticalPhase::Descent:
            target.descentIas = ias;
            target.descentMach = IndicatedToMach(ias, kCruiseSpeedAltitudeFt);
            target.descentTas = IndicatedToTrue(ias, kClimbSpeedAltitudeFt);
            break;
    }
}

void SetLimit(AircraftPerformance& target, VerticalPhase phase, const SpeedLimit& limit) {
    const bool inClimb = phase == VerticalPhase::Climb;
    (inClimb ? target.climbSpeedRestriction : target.descentSpeedRestriction) = limit.ias;
    (inClimb ? target.climbRestrictionAltitude : target.descentRestrictionAltitude) = limit.belowFt;
}

std::int32_t EconomyIas(VerticalPhase phase, std::int32_t costIndex) {
    const SpeedRange range = SpeedLimitsOf(performance, phase);
    if (costIndex >= 0) {
        return EconomySpeed(range.leastIas, range.greatestIas, costIndex);
    }
    return inForce.choices[At(phase)].mode == SpeedMode::Economy ? IasOf(performance, phase)
                                                                 : inForce.economyIas[At(phase)];
}

void Merge(const PerformanceChange& change, PerformanceChange& into) {
    into.cruiseAltitudeFt =
        change.cruiseAltitudeFt ? change.cruiseAltitudeFt : into.cruiseAltitudeFt;
    into.costIndex = change.costIndex ? change.costIndex : into.costIndex;
    for (const VerticalPhase phase : kPhases) {
        const std::size_t at = At(phase);
        into.speeds[at] = change.speeds[at] ? change.speeds[at] : into.speeds[at];
        into.limits[at] = change.limits[at] ? change.limits[at] : into.limits[at];
        // A new cost index is the economy speed's, whichever came first.
        if (into.costIndex && into.speeds[at] && into.speeds[at]->mode == SpeedMode::Economy) {
            into.speeds[at]->ias = EconomyIas(phase, *into.costIndex);
        }
    }
}

// The speed of the present phase goes to the autopilot in the next frame.
void CommandAnew(VerticalPhase phase) {
    if (phase == vnav.Phase()) {
        vnav.speed.set = 0;
        vnav.forceSpeed = 1;
    }
}

}  // namespace

std::int32_t ChosenCruiseAltitude() {
    // A modification without the entry flown to is another route.
    const bool startsAnew =
        planBook.status == RouteStatus::Modified && !modifiedPlan.Holds(planBook.trackedIndex);
    const bool planned = !RouteIsFlown() || startsAnew;
    return Waiting().cruiseAltitudeFt.value_or(planned ? planBook.cruiseAltitudeFt
                                                       : vnav.cruiseAltitude);
}

std::int32_t ChosenCostIndex() {
    return Waiting().costIndex.value_or(performance.costIndex);
}

SpeedChoice ChosenSpeed(VerticalPhase phase) {
    const PerformanceChange& waiting = Waiting();
    if (waiting.speeds[At(phase)]) {
        return *waiting.speeds[At(phase)];
    }
    const SpeedMode mode = inForce.choices[At(phase)].mode;
    return {mode, waiting.costIndex && mode == SpeedMode::Economy
                      ? EconomyIas(phase, *waiting.costIndex)
                      : IasOf(performance, phase)};
}

SpeedLimit ChosenSpeedLimit(VerticalPhase phase) {
    return Waiting().limits[At(phase)].value_or(SpeedLimitOf(performance, phase));
}

SpeedLimit SpeedLimitOf(const AircraftPerformance& from, VerticalPhase phase) {
    return phase == VerticalPhase::Climb
               ? SpeedLimit{from.climbSpeedRestriction, from.climbRestrictionAltitude}
               : SpeedLimit{from.descentSpeedRestriction, from.descentRestrictionAltitude};
}

SpeedRange SpeedLimitsOf(const AircraftPerformance& from, VerticalPhase phase) {
    switch (phase) {
        case VerticalPhase::Climb:
            return {from.climbIasMin, from.climbIasMax};
        case VerticalPhase::Cruise:
            return {from.cruiseIasMin, from.cruiseIasMax};
        case VerticalPhase::Descent:
            break;
    }
    return {from.descentIasMin, from.descentIasMax};
}

SpeedChoice SpeedOfMode(VerticalPhase phase, SpeedMode mode) {
    const SpeedRange range = SpeedLimitsOf(performance, phase);
    double ias = ChosenSpeed(phase).ias;
    switch (mode) {
        case SpeedMode::Economy:
            ias = EconomyIas(phase, ChosenCostIndex());
            break;
        case SpeedMode::MaxAngle:
            ias = range.leastIas;
            break;
        case SpeedMode::MaxRate:
        case SpeedMode::LongRange:
            ias = (range.leastIas + range.greatestIas) / 2;
            break;
        case SpeedMode::Fastest:
            ias = range.greatestIas;
            break;
        case SpeedMode::Selected:
            break;
    }
    return {mode, static_cast<std::int32_t>(ias)};
}

void ChangePerformance(const PerformanceChange& change) {
    if (RouteIsFlown()) {
        if (planBook.status == RouteStatus::Active) {
            CopyActiveToModified();
        }
        Merge(change, planBook.waitingPerformance);
        NoteEdit(modifiedPlan);
    } else {
        ApplySpeeds(change);
        planBook.cruiseAltitudeFt = change.cruiseAltitudeFt.value_or(planBook.cruiseAltitudeFt);
    }
    RequestUnitRedraw();
}

void TakeSpeeds(const PerformanceChange& change, AircraftPerformance& target) {
    target.costIndex = change.costIndex.value_or(target.costIndex);
    for (const VerticalPhase phase : kPhases) {
        const std::size_t at = At(phase);
        if (change.speeds[at]) {
            SetIas(target, phase, change.speeds[at]->ias);
        } else if (change.costIndex && inForce.choices[at].mode == SpeedMode::Economy) {
            SetIas(target, phase, EconomyIas(phase, *change.costIndex));
        }
        if (change.limits[at]) {
            SetLimit(target, phase, *change.limits[at]);
        }
    }
}

void KeepChosenSpeeds(AircraftPerformance& target) {
    for (const VerticalPhase phase : kPhases) {
        const SpeedChoice& choice = inForce.choices[At(phase)];
        if (choice.mode != SpeedMode::Economy) {
            inForce.economyIas[At(phase)] = IasOf(target, phase);
            SetIas(target, phase, choice.ias);
        } else if (inForce.costIndexTyped) {
            SetIas(target, phase, EconomyIas(phase, target.costIndex));
        }
    }
}

void ApplySpeeds(const PerformanceChange& change) {
    const AircraftPerformance& now = performance;
    std::array<std::int32_t, kFlightPhases> before{};
    for (const VerticalPhase phase : kPhases) {
        before[At(phase)] = IasOf(now, phase);
    }
    TakeSpeeds(change, performance);
    inForce.costIndexTyped = inForce.costIndexTyped || change.costIndex;
    for (const VerticalPhase phase : kPhases) {
        const std::size_t at = At(phase);
        if (change.speeds[at]) {
            if (inForce.choices[at].mode == SpeedMode::Economy) {
                inForce.economyIas[at] = before[at];
            }
            inForce.choices[at] = *change.speeds[at];
        }
        if (before[at] != IasOf(now, phase) || change.limits[at]) {
            CommandAnew(phase);
        }
    }
}

}  // namespace avq1
