// flightplan/pilot_points.h - points the pilot makes up: their names, and where two bearings cross.
//
// Names count on from the entries of the plan the point is meant for.
#pragma once

#include <string>
#include <string_view>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {

inline constexpr std::string_view kPilotPointPrefix = "WPT";
inline constexpr std::string_view kPilotPointType = "WPT";

// The prefix and a two-digit number one higher than the highest one an entry of the plan carries
// after the same prefix.
std::string NextPilotPointName(const FlightPlan& plan, std::string_view prefix);

FoundPoint PilotPoint(const LatLon& position, std::string name);

// The point where the great circles that leave two places on their true courses meet. False when
// they do not meet ahead of both within kCrossingRangeNm: bearings that part meet again only on
// the far side of the earth.
inline constexpr double kCrossingRangeNm = 2000;
bool CrossingOfCourses(const LatLon& place1, double course1True, const LatLon& place2,
                       double course2True, LatLon& crossing);

// Reads "N3345.5W11154.3". False, with `point` unchanged, for any other form and for positions
// that do not exist.
bool ParseTypedPosition(std::string_view text, LatLon& point);

}  // namespace avq1
