// displays/deviation_scale.h - scales of dots with a diamond, and the one that shows how far the
// aircraft is off its descent path.
//
// Design pixels; positions are of a scale's centre.
#pragma once

#include "displays/map/text_boxes.h"
#include "drawing/surface.h"

namespace avq1 {

// Two dots either side of a centre mark; (dx, dy) leads from the centre to the outer dot.
void DrawScaleDots(Canvas& canvas, double x, double y, double dx, double dy);
void DrawScaleDiamond(Canvas& canvas, std::uint32_t argb, double x, double y);

// In the descent, while a waypoint is flown to.
bool ShowsPathDeviation();
TextBox PathDeviationBox(double x, double y);

// The diamond is the path, 400 ft to the outer dots and not beyond; below stand the feet, to the
// next ten, + for an aircraft above the path. A flag without an altitude.
void DrawPathDeviation(Surface& surface, double x, double y);

// The received glideslope, full needle at the outer dots; a flag when the needle is lost.
void DrawGlideslopeDeviation(Surface& surface, double x, double y);

}  // namespace avq1
