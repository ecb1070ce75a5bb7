// displays/boundaries.h - the airspace boundary layer of the map displays.
//
// Outlines with short names; boundaries far from the aircraft are left out. The boundary file is
// read at the first drawing.
#pragma once

#include "displays/map_view.h"
#include "drawing/surface.h"

namespace avq1 {

void DrawAtcBoundaries(Surface& surface, const MapView& view);

}  // namespace avq1
