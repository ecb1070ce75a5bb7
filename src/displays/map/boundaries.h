// displays/map/boundaries.h - the airspace boundary layer of the map displays.
//
// Outlines, and short names, drawn once the route's texts stand; boundaries far from the aircraft
// are left out, and names that would cover another text or leave the map. The boundary file is read
// at the first drawing.
#pragma once

#include "displays/map/map_layers.h"

namespace avq1 {

void DrawAtcBoundaries(const MapFrame& frame);
void DrawAtcBoundaryNames(const MapFrame& frame);

}  // namespace avq1
