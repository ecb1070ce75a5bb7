// flightplan/pilot_points.h - points the pilot makes up: their names, and where two bearings cross.
//
// A made-up point stands in the search results under a name this topic keeps until it makes the
// next one. Names count on from the modified plan's entries.
#pragma once

#include <string>
#include <string_view>

#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {

inline constexpr std::string_view kPilotPointPrefix = "WPT";
inline constexpr std::string_view kPilotPointType = "WPT";

// The prefix and a two-digit number one higher than the highest one an entry of the modified plan
// carries after the same prefix.
std::string NextPilotPointName(std::string_view prefix);

// Makes the point the only search result.
void OfferPilotPoint(const LatLon& point, std::string_view prefix);
bool IsPilotPoint(const PointRecord& record);

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
