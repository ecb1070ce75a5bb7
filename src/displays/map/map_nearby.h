// displays/map/map_nearby.h - keeps the lists of records around the aircraft fresh for the maps.
//
// A list is built anew when the aircraft is far enough from where it was built, and narrowed when
// it moved a little; between, a draw only reads. Distances nm; a position that is not finite gives
// an empty list. Panel thread only.
#pragma once

#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {

// Every record within `rangeNm` (at most kMapReachNm) of the aircraft is in the list, further ones
// may be. `mapCentre` is what the map is centred on; the list that is built keeps it as reference.
inline constexpr double kMapReachNm = 540;

const PointList& AirportsAround(const LatLon& mapCentre, double rangeNm);
const PointList& NavaidsAround(const LatLon& mapCentre, double rangeNm);
const PointList& FixesAround(const LatLon& mapCentre, double rangeNm);

}  // namespace avq1
