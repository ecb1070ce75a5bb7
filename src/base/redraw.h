// base/redraw.h - the control units' one request to be painted anew.
//
// A unit paints when what it shows changed; it finds that out itself. This request is for what it
// cannot see: a key was pressed, or a part of the module changed something behind its texts. Each
// unit compares the count with the one it painted last, so one request reaches every unit and every
// surface, and asking twice in a frame costs one painting. Panel thread only; never fails.
#pragma once

#include <cstdint>

namespace avq1 {

void RequestUnitRedraw();

// How often a redraw has been asked for; wraps around, only its change counts.
std::uint32_t UnitRedrawCount();

}  // namespace avq1
