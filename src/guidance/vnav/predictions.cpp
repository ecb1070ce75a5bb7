#include "guidance/predictions.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/module_state.h"
#include "flightplan/route_walk.h"
#include "guidance/guidance_state.h"
#include "guidance/performance_entries.h"
#include "guidance/vnav.h"
#include "guidance/vnav/flight_path.h"
#include "guidance/vnav/flight_values.h"
#include "guidance/vnav/flown.h"
#include "guidance/vnav/table_optimum.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/sim_variables.h"

namespace avq1 {

namespace {

constexpr double kMinutesPerDay = 1440;
constexpr double kRefreshS = 5;
constexpr double kSecondsPerDay = 86400;
constexpr double kStepNm = 10;
constexpr double kLeastStepNm = 1e-6;
constexpr double kLeastRestrictionKt = 50;
constexpr double kMovingKt = 25;  // ground speed above which times are shown
constexpr double kFlyingKt = 40;  // indicated, above which it is what is being flown
constexpr double kStrongestWindKt = 250;
constexpr double kHighestWindFt = 60000;
constexpr double kWholeCircle = 360;

// What a prediction was made from.
struct MadeFrom {
    std::uint32_t revision = 0;
    std::int32_t activeIndex = kNoWaypoint;
    std::int32_t cruiseAltitude = 0;
    VerticalPhase phase = VerticalPhase::Climb;
    std::int32_t climbIas = 0;
    std::int32_t cruiseIas = 0;
    std::int32_t descentIas = 0;
    bool keepsSpeed = false;
    double second = -kRefreshS;      // of the day
    PerformanceChange waiting = {};  // for EXEC

    bool operator==(const MadeFrom& other) const {
        return revision == other.revision && activeIndex == other.activeIndex &&
               cruiseAltitude == other.cruiseAltitude && phase == other.phase &&
               climbIas == other.climbIas && cruiseIas == other.cruiseIas &&
               descentIas == other.descentIas && keepsSpeed == other.keepsSpeed &&
               waiting == other.waiting && std::fabs(second - other.second) < kRefreshS;
    }
};

struct Predicted {
    Predictions values;
    MadeFrom from;
};

Predicted active;
Predicted modified;
FlightExperience experience;
double learnedSecond = -kRefreshS;  // of the day, when the last note was taken
CruiseWind cruiseWind;
std::array<DescentWind, kDescentWinds> descentWinds;
RouteTable modifiedRoute;
const StateReset resetPredictions([] {
    active = {};
    modified = {};
    experience = {};
    learnedSecond = -kRefreshS;
    cruiseWind = {};
    descentWinds = {};
    modifiedRoute = {};
});

// The speed flown now is the pilot's, not one that vertical guidance has commanded.
bool PilotKeepsSpeed() {
    return aircraft.indicatedAirspeedKt > kFlyingKt &&
           !(CommandsSpeed() && aircraft.apSpeed115 == 1.0);
}

double SecondOfDay() {
    return std::fmod((aircraft.clockHour * 60 + aircraft.clockMinute) * 60 + aircraft.clockSecond,
                     kSecondsPerDay);
}

double TimeOfDay(double hour, double minute, double second, double laterMinutes) {
    return PositiveModulo(hour * 60 + minute + second / 60 + laterMinutes, kMinutesPerDay);
}

// Flies a path on paper, leg by leg.
class PaperFlight {
  public:
    PaperFlight(const PlanningInput& input, const FlightPath& path, VerticalPhase phase,
                const AircraftPerformance& from)
        : input_(input),
          path_(path),
          from_(from),
          phase_(phase),
          keptPhase_(PilotKeepsSpeed() ? phase : VerticalPhase::Climb),
          alongNm_(input.at.alongNm),
          fuelLb_(FuelOnBoard()),
          descentIas_(from.descentIas),
          ias_(SpeedOf(phase)) {}

    void Fly(Predictions& predictions) {
        const RouteTable& route = *input_.route;
        for (std::int32_t i = input_.at.flownTo; i <= route.last; ++i) {
            const PlanWaypoint& entry = input_.Entry(i);
            if (!HasPosition(entry)) {
                continue;
            }
            FlyTo(i, predictions);
            predictions.entries[i] = Here({entry.latitude, entry.longitude});
            predictions.destination = predictions.entries[i];
        }
    }

  private:
    // A climb accelerates yet; a cruise or descent of the pilot's goes on as it is.
    double SpeedOf(VerticalPhase phase) const {
        if (phase == keptPhase_ && phase != VerticalPhase::Climb) {
            return aircraft.indicatedAirspeedKt;
        }
        return phase == VerticalPhase::Climb     ? input_.speeds.climbIas
               : phase == VerticalPhase::Descent ? descentIas_
                                                 : from_.cruiseIas;
    }

    // As the speed schedule has it: a restriction's speed towards it, from the distance on at which
    // speeds are commanded.
    double IndicatedTowards(const PlanWaypoint& entry, double toGoNm, double altitudeFt) {
        double speed = SpeedOf(phase_);
        const bool restricted = HasSpeedRestriction(entry) && entry.speed > kLeastRestrictionKt;
        if (restricted && toGoNm <= from_.vnavSpeedDistanceNm) {
            speed = entry.speed;
            if (phase_ == VerticalPhase::Descent) {
                descentIas_ = std::min(descentIas_, speed);
            }
        }
        const bool descending = phase_ == VerticalPhase::Descent;
        return SpeedLimitOf(from_, descending ? VerticalPhase::Descent : VerticalPhase::Climb)
            .Limited(speed, altitudeFt);
    }

    // The next place where something changes, at most a step ahead.
    double NextStop(double endNm, double toGoNm) {
        double stop = std::min(endNm, alongNm_ + kStepNm);
        while (node_ < path_.count && path_.nodes[node_].alongNm <= alongNm_ + kLeastStepNm) {
            ++node_;
        }
        if (node_ < path_.count) {
            stop = std::min(stop, path_.nodes[node_].alongNm);
        }
        if (toGoNm > from_.vnavSpeedDistanceNm) {
            stop = std::min(stop, endNm - from_.vnavSpeedDistanceNm);
        }
        return std::max(stop, std::min(endNm, alongNm_ + kLeastStepNm));
    }

    void ChoosePhase(double lowFt, double highFt) {
        if (highFt < lowFt - 1) {
            phase_ = VerticalPhase::Descent;
        } else if (phase_ == VerticalPhase::Climb && path_.topOfClimbNm >= 0 &&
                   alongNm_ >= path_.topOfClimbNm - kLeastStepNm) {
            phase_ = VerticalPhase::Cruise;
        }
    }

    void FlyTo(std::int32_t index, Predictions& predictions) {
        const RouteTable& route = *input_.route;
        const PlanWaypoint& entry = input_.Entry(index);
        const double endNm = route.alongNm[index];
        while (alongNm_ < endNm) {
            Mark(path_.topOfClimbNm, predictions.topOfClimb);
            Mark(path_.topOfDescentNm, predictions.topOfDescent);
            const double stop = NextStop(endNm, endNm - alongNm_);
            const double beforeFt = AltitudeNow(alongNm_);
            const double afterFt = AltitudeNow(stop);
            ChoosePhase(beforeFt, afterFt);
            Advance(entry, stop, endNm, (beforeFt + afterFt) / 2, afterFt - beforeFt);
        }
    }

    void Mark(double markNm, PredictedPoint& point) {
        if (markNm >= 0 && !point.known && alongNm_ >= markNm - kLeastStepNm &&
            markNm >= input_.at.alongNm) {
            point = Here(PointAlong(*input_.route, input_.at, markNm));
        }
    }

    double AltitudeNow(double alongNm) const { return path_.AltitudeAt(alongNm); }

    void Advance(const PlanWaypoint& entry, double stopNm, double endNm, double middleFt,
                 double gainFt) {
        ias_ = IndicatedTowards(entry, endNm - alongNm_, middleFt);
        const double trueKt = TrueAirspeedKt(experience, ias_, middleFt);
        groundKt_ = GroundSpeedKt(
            trueKt, CourseTo(entry),
            {alongNm_ - input_.at.alongNm, middleFt, phase_ == VerticalPhase::Descent});
        const double minutes = (stopNm - alongNm_) / groundKt_ * 60;
        const VerticalPhase burning =
            phase_ == VerticalPhase::Descent && gainFt > -1 ? VerticalPhase::Cruise : phase_;
        fuelLb_ -= FuelFlowPph(experience, burning, middleFt, gainFt / minutes) * minutes / 60;
        minutes_ += minutes;
        alongNm_ = stopNm;
    }

    // From the entry before it, or from the aircraft.
    double CourseTo(const PlanWaypoint& entry) {
        if (courseEntry_ != &entry) {
            courseEntry_ = &entry;
            double distanceNm = 0;
            DistanceAndCourse(from_position_.latitude, from_position_.longitude, entry.latitude,
                              entry.longitude, distanceNm, courseTrue_);
            from_position_ = {entry.latitude, entry.longitude};
        }
        return courseTrue_;
    }

    PredictedPoint Here(const LatLon& position) const {
        PredictedPoint point;
        point.known = true;
        point.distanceNm = std::max(alongNm_ - input_.at.alongNm, 0.0);
        point.minutes = minutes_;
        point.clockMinutes =
            TimeOfDay(aircraft.clockHour, aircraft.clockMinute, aircraft.clockSecond, minutes_);
        point.zuluMinutes =
            TimeOfDay(aircraft.zuluHour, aircraft.zuluMinute, aircraft.clockSecond, minutes_);
        point.altitudeFt = AltitudeNow(alongNm_);
        point.speedKt = ias_;
        point.groundSpeedKt = groundKt_;
        point.fuelLb = std::max(fuelLb_, 0.0);
        point.position = position;
        return point;
    }

    const PlanningInput& input_;
    const FlightPath& path_;
    const AircraftPerformance& from_;
    VerticalPhase phase_;
    const VerticalPhase keptPhase_;  // flown at the present airspeed, unless it is the climb
    double alongNm_;
    double minutes_ = 0;
    double fuelLb_;
    double descentIas_;
    double ias_;
    double groundKt_ = aircraft.groundSpeedKt;
    double courseTrue_ = 0;
    const PlanWaypoint* courseEntry_ = nullptr;
    LatLon from_position_ = input_.at.position;
    std::size_t node_ = 0;
};

// The ground speed a climb is flown at: towards the entry flown to.
struct ClimbContext {
    const PlanningInput& input;
    const AircraftPerformance& from;
    double courseTrue;
};

double ClimbGroundSpeed(const void* context, double altitudeFt) {
    const auto& climb = *static_cast<const ClimbContext*>(context);
    const double speed = SpeedLimitOf(climb.from, VerticalPhase::Climb)
                             .Limited(climb.input.speeds.climbIas, altitudeFt);
    return GroundSpeedKt(TrueAirspeedKt(experience, speed, altitudeFt), climb.courseTrue, {});
}

// Without a profile: at the present altitude and speed.
FlightPath LevelPath(const PlanningInput& input) {
    FlightPath path;
    path.Add(input.at.alongNm, input.altitudeFt);
    return path;
}

void Predict(const PlanningInput& input, const PlannedProfile& profile, VerticalPhase phase,
             std::int32_t targetIndex, const AircraftPerformance& from, Predictions& predictions) {
    predictions = {};
    if (input.at.flownTo == kNoWaypoint || !std::isfinite(input.altitudeFt + input.at.toEntryNm)) {
        return;
    }
    predictions.cruiseAltitudeFt = profile.cruiseAltitude;
    const PlanWaypoint& next = input.Entry(input.at.flownTo);
    ClimbContext context{input, from, 0};
    double distanceNm = 0;
    DistanceAndCourse(input.at.position.latitude, input.at.position.longitude, next.latitude,
                      next.longitude, distanceNm, context.courseTrue);
    const bool planned = profile.cruiseAltitude > 0 && input.speeds.AreUsable();
    const FlightPath path = planned
                                ? BuildFlightPath(input, profile, phase, targetIndex,
                                                  settings.WptChgDist, {ClimbGroundSpeed, &context})
                                : LevelPath(input);
    PaperFlight(input, path, planned ? phase : VerticalPhase::Cruise, from).Fly(predictions);
}

MadeFrom PresentOf(const FlightPlan& plan, std::int32_t activeIndex) {
    return {plan.revision,          activeIndex,          vnav.cruiseAltitude,
            vnav.Phase(),           performance.climbIas, performance.cruiseIas,
            performance.descentIas, PilotKeepsSpeed(),    SecondOfDay()};
}

// What executing the modification will cruise at, and with which speeds.
double ModifiedCruiseAltitude(PlanningInput& input, AircraftPerformance& from, bool startsAnew) {
    if (!startsAnew && ChosenCruiseAltitude() > 0) {
        return ChosenCruiseAltitude();
    }
    const std::int32_t ofPlanFt =
        planBook.waitingPerformance.cruiseAltitudeFt.value_or(planBook.cruiseAltitudeFt);
    if (ofPlanFt > 0) {
        return ofPlanFt;
    }
    const double cruiseFt = OptimumFromTables(input, performanceTables, from);
    if (cruiseFt > 0) {
        from.flightPathAngleDeg = 0;
        KeepChosenSpeeds(from);
        input.speeds = SpeedsOf(from);
        return cruiseFt;
    }
    return ChooseCruiseAltitude(input, from.maxCruiseAltitude);
}

bool IsWind(double directionTrue, double speedKt) {
    return directionTrue >= 0 && directionTrue <= kWholeCircle && speedKt >= 0 &&
           speedKt <= kStrongestWindKt;
}

void MakeAnew() {
    active.from = {};
    modified.from = {};
}

}  // namespace

const CruiseWind& EnteredCruiseWind() {
    return cruiseWind;
}

bool EnterCruiseWind(double directionTrue, double speedKt) {
    if (!IsWind(directionTrue, speedKt)) {
        return false;
    }
    cruiseWind = {true, directionTrue, speedKt};
    MakeAnew();
    return true;
}

void ClearCruiseWind() {
    cruiseWind = {};
    MakeAnew();
}

const std::array<DescentWind, kDescentWinds>& EnteredDescentWinds() {
    return descentWinds;
}

bool EnterDescentWindAltitude(std::size_t row, double altitudeFt) {
    if (!(altitudeFt > 0 && altitudeFt <= kHighestWindFt)) {
        return false;
    }
    descentWinds[row].altitudeFt = altitudeFt;
    MakeAnew();
    return true;
}

bool EnterDescentWind(std::size_t row, double directionTrue, double speedKt) {
    if (!IsWind(directionTrue, speedKt)) {
        return false;
    }
    descentWinds[row].wind = {true, directionTrue, speedKt};
    MakeAnew();
    return true;
}

void ClearDescentWind(std::size_t row) {
    descentWinds[row] = {};
    MakeAnew();
}

double ShownMinutesTo(const PredictedPoint& point) {
    return point.known && ShownAircraft().groundSpeedKt > kMovingKt
               ? point.minutes
               : std::numeric_limits<double>::quiet_NaN();
}

const PredictedPoint& ActiveWaypointPrediction() {
    static const PredictedPoint unknown;
    return HasActiveWaypoint()
               ? active.values.entries[static_cast<std::size_t>(planBook.activeIndex)]
               : unknown;
}

const Predictions& ActivePredictions() {
    return active.values;
}

const Predictions& ModifiedPredictions() {
    MadeFrom now = PresentOf(modifiedPlan, planBook.trackedIndex);
    now.waiting = planBook.waitingPerformance;
    if (now == modified.from) {
        return modified.values;
    }
    modified.from = now;
    MeasureRoute(modifiedPlan, modifiedRoute);
    const std::int32_t flownTo =
        modifiedPlan.Holds(planBook.trackedIndex) ? planBook.trackedIndex : kFirstWaypoint;
    AircraftPerformance from = performance;
    TakeSpeeds(planBook.waitingPerformance, from);
    PlannedProfile profile;
    const bool startsAnew = planBook.status == RouteStatus::AwaitsExecution;
    const bool climbs = startsAnew || ChosenCruiseAltitude() > vnav.cruiseAltitude;
    const VerticalPhase phase = climbs ? VerticalPhase::Climb : vnav.Phase();
    PlanningInput input = FlownInput();
    input.speeds = SpeedsOf(from);
    input.route = &modifiedRoute;
    input.activeIndex = flownTo;
    input.climbOver = phase != VerticalPhase::Climb;
    input.at = FindRoutePosition(modifiedRoute, flownTo, {aircraft.latitude, aircraft.longitude});
    if (input.at.flownTo != kNoWaypoint && input.speeds.AreUsable()) {
        const double cruiseFt = ModifiedCruiseAltitude(input, from, startsAnew);
        if (cruiseFt > 0) {
            PlanOnPaper(input, from, cruiseFt, profile);
        }
    }
    Predict(input, profile, phase, flownTo, from, modified.values);
    return modified.values;
}

void RefreshPredictions() {
    const std::int32_t flownTo = HasActiveWaypoint() ? planBook.activeIndex : kNoWaypoint;
    const MadeFrom now = PresentOf(activePlan, flownTo);
    if (now == active.from) {
        return;
    }
    active.from = now;
    if (std::fabs(now.second - learnedSecond) >= kRefreshS) {  // notes are compared with each other
        learnedSecond = now.second;
        LearnFlight(experience);
    }
    if (flownTo == kNoWaypoint) {
        active.values = {};
        return;
    }
    Predict(FlownInput(), vnav, vnav.Phase(), planBook.verticalTargetIndex, performance,
            active.values);
}

}  // namespace avq1
