// cdu_gns/gns_values.h - the numbers of the flight that several pages of the GNS-style unit show,
// each taken from one place, so that no two pages disagree.
//
// Minutes are the simulator's, counted from now; NaN where there is nothing to show.
#pragma once

#include <cstdint>

#include "cdu/unit_text.h"
#include "flightplan/flight_plan.h"
#include "guidance/predictions.h"

namespace avq1 {

// Times to entries of the plan are shown above this ground speed, on all pages of the unit alike.
// (The compact unit and the displays show the same times from 25 kt on.)
inline constexpr double kGnsTimesFromKt = 50;

// Route distance from the aircraft to entry `index` of the active plan, nm. NaN for entries that
// lie behind, have no position, or without an active waypoint.
double GnsDistanceTo(std::int32_t index);

// The same to a point predicted for the route: the predictions' own distances are some seconds old.
double GnsDistanceTo(const PredictedPoint& point);

// What is predicted for an entry of the active plan; nothing known of one it does not have.
const PredictedPoint& GnsPredictionOf(std::int32_t index);
// Where an entry is restricted, the restriction, else what is predicted once there is a cruise
// altitude, else what the plan says; feet, NaN when nothing does.
double GnsAltitudeAt(const FlightPlan& plan, std::int32_t index);
double GnsMinutesTo(const PredictedPoint& point);
double GnsMinutesTo(std::int32_t index);
// The time of day there: UTC, or the simulator's local time when the setting asks for it.
UnitText GnsClockText(const PredictedPoint& point);
// Fuel on board there, pounds.
double GnsFuelAtPounds(const PredictedPoint& point);

// Where the aircraft moves to, degrees magnetic.
double GnsTrackMag();
// From one direction to another the shorter way, -180 to 180, negative to the left.
double GnsTurnDeg(double fromDeg, double toDeg);

// Until the fix of the hold being flown is passed again; NaN when none is or without speed.
double GnsSecondsToHoldFix();

// "01:07" from minutes, six dashes when there are none.
UnitText GnsMinutesText(double minutes);
// The entry of the active plan after the active one that has a position; kNoWaypoint without.
std::int32_t GnsNextIndex();

// "N33:37:22" or "(33.622900)", as the setting asks.
UnitText GnsLatitudeText(double latitude);
UnitText GnsLongitudeText(double longitude);

}  // namespace avq1
