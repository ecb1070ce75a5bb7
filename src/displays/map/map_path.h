// displays/map/map_path.h - lines with the turns that are flown: each corner an arc that leaves the
// line before the corner and joins it as far behind.
#pragma once

#include <cstddef>
#include <vector>

#include "drawing/surface.h"

namespace avq1 {

struct PathPoint {
    CanvasPoint at;
    double turnPx =
        0;  // the turn begins this far before the corner, or half a leg when that is less
};

// The part of the path that belongs to leg `leg`, from point leg - 1 to point leg: from the middle
// of one turn to the middle of the next. `line` is emptied first. A path that is not closed has no
// turn at its ends.
void LegOfPath(const std::vector<PathPoint>& path, std::size_t leg, bool closed,
               std::vector<CanvasPoint>& line);

}  // namespace avq1
