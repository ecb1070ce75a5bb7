// guidance/predictions.h - when, how high, how fast and with how much fuel each entry of a plan
// will be passed: the one source of every time, altitude, speed and fuel that a page or a display
// shows. (`progress` keeps the plain distance by ground speed; no page shows it.)
//
// Flown with the speeds of the aircraft's file where vertical guidance commands them or they are
// still to come; with the present airspeed in a cruise or descent that the pilot flies.
//
// The active plan's are refreshed by the per-frame update when something they depend on has changed
// and at least every 5 s of simulated time; those of a modification waiting in the modified plan
// are worked out when they are asked for. Distances are nm along the route, times simulated
// minutes, altitudes feet, speeds kt, fuel pounds on board. What is not known has `known` false and
// no other value: an entry already passed, one without a position, everything without an active
// waypoint.
#pragma once

#include <array>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"

namespace avq1 {

struct PredictedPoint {
    bool known = false;
    double distanceNm = 0;    // from the aircraft
    double minutes = 0;       // from now
    double clockMinutes = 0;  // local time of day, minutes since midnight, [0, 1440)
    double zuluMinutes = 0;   // the same, UTC
    double altitudeFt = 0;
    double speedKt = 0;  // indicated
    double groundSpeedKt = 0;
    double fuelLb = 0;  // never below 0
    LatLon position;
};

struct Predictions {
    std::array<PredictedPoint, kPlanCapacity> entries;  // by the plan's indexes
    PredictedPoint topOfClimb;                          // not known once it has been passed
    PredictedPoint topOfDescent;                        // the same
    PredictedPoint destination;                         // the last entry with a position
    double cruiseAltitudeFt = 0;                        // 0 = none: altitudes stay as they are
};

// The wind the pilot has entered for the cruise: the present one turns into it along the way.
struct CruiseWind {
    bool entered = false;
    double directionTrue = 0;
    double speedKt = 0;
};

const CruiseWind& EnteredCruiseWind();

// Direction 0 to 360 degrees true, speed 0 to 250 kt. False, and nothing changed, for others.
bool EnterCruiseWind(double directionTrue, double speedKt);
void ClearCruiseWind();

// The winds forecast for the descent, in no order: between two altitudes they turn from one to the
// other, beyond them they stay. A row counts with altitude and wind.
inline constexpr std::size_t kDescentWinds = 3;
struct DescentWind {
    double altitudeFt = 0;  // 0 = none
    CruiseWind wind;
};

const std::array<DescentWind, kDescentWinds>& EnteredDescentWinds();

// Altitude above 0, up to 60000 ft; the wind as that of the cruise. False, and nothing changed, for
// others.
bool EnterDescentWindAltitude(std::size_t row, double altitudeFt);
bool EnterDescentWind(std::size_t row, double directionTrue, double speedKt);
void ClearDescentWind(std::size_t row);

// Of the active plan, from the aircraft through the active waypoint on.
const Predictions& ActivePredictions();

// Of the modified plan as if it were executed now. Not for every frame: the first call after a
// change, and one every 5 s, plans the whole route on the side.
const Predictions& ModifiedPredictions();

// The active plan's entry flown to; not known without one.
const PredictedPoint& ActiveWaypointPrediction();

// Minutes from now as pages and displays show them: NaN when they are not known, and at a ground
// speed of 25 kt or less or a lost one.
double ShownMinutesTo(const PredictedPoint& point);

// ---- step of the per-frame update ----
void RefreshPredictions();

}  // namespace avq1
