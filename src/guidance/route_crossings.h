// guidance/route_crossings.h - where the route ahead passes a place: on a radial of it, at a
// distance from it, or abeam.
//
// The route is the active plan's, from the aircraft straight to the entry flown to and on along
// the legs; a gap is crossed straight. Distances nm on the sphere, radials and bearings degrees
// true, from the place. One walk answers all queries; nothing is kept.
#pragma once

#include <span>

#include "geometry/geometry.h"
#include "guidance/predictions.h"

namespace avq1 {

struct RouteCrossing {
    enum class Kind : std::uint8_t { Radial, Distance, Abeam };

    Kind kind = Kind::Abeam;
    double value = 0;  // the radial or the distance asked for
    // Found: the first place of its kind; of several abeam the nearest. Else nothing below counts.
    bool found = false;
    double aheadNm = 0;  // along the route from the aircraft
    double bearingTrue = 0;
    double distanceNm = 0;
};

// Fills what is found of each query; without an active waypoint nothing is.
void FindRouteCrossings(const LatLon& place, std::span<RouteCrossing> queries);

// What is predicted for the point `aheadNm` from the aircraft, between the entries before and
// behind it; its position is not filled. Not known behind the last entry.
PredictedPoint PredictionAhead(const Predictions& predictions, double aheadNm);

}  // namespace avq1
