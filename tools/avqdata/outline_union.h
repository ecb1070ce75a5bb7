// avqdata/outline_union.h - several outlines into the outer one of all they enclose.
//
// Sources draw the common border of two shelves twice, and not always alike: points and lines
// within kGridNm of each other become one, cracks and bays with a mouth of less than kMouthNm are
// closed. Corners that stay are the sources' own points. Outlines may cross the date line.
#pragma once

#include <cstddef>
#include <vector>

#include "geometry/geometry.h"

namespace avqdata {

using Ring = std::vector<avq1::LatLon>;

inline constexpr double kGridNm = 0.05;
inline constexpr double kMouthNm = 2 * kGridNm;

// One closed ring for each part that touches no other, from west to east; what lies inside a ring
// is left out. None when the outlines enclose nothing, or when there are more points and crossings
// than a file that means well has: the time goes with their square.
inline constexpr std::size_t kMostUnionPoints = 10000;
std::vector<Ring> OuterRings(const std::vector<Ring>& outlines);

}  // namespace avqdata
