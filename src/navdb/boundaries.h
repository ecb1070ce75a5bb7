// navdb/boundaries.h - airspace boundaries with a short name, from \avq\navdata\atc_bdry.txt.
//
// Read once, when they are first wanted, and kept; a missing file leaves the table empty and is not
// looked for again. Boundaries beyond kBoundaryCapacity and points beyond kBoundaryPointCapacity
// are dropped. Decimal degrees.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "geometry/geometry.h"

namespace avq1 {

inline constexpr std::size_t kBoundaryCapacity = 400;
inline constexpr std::size_t kBoundaryPointCapacity = 800;

struct AtcBoundary {
    std::string ident;
    std::string name;
    LatLon label;
    std::vector<LatLon> points;  // the outline in file order
};

struct AtcBoundaries {
    std::vector<AtcBoundary> items;
    bool loaded = false;
};

extern AtcBoundaries atcBoundaries;

void LoadAtcBoundaries();
void ReadAtcBoundaries(std::string_view text, std::vector<AtcBoundary>& items);

}  // namespace avq1
