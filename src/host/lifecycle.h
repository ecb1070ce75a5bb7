// host/lifecycle.h - what each gauge does on the panel system's events.
//
// All state is module-wide and lives as long as the module; nothing is saved at unload. Elements
// are reached only through the header handed in, since a host clones it for every placement.
#pragma once

#include <cstdint>

#include "host/gauge_table.h"

namespace avq1 {

// The drawing library's start token, 0 while it is not running.
extern std::uintptr_t GdiplusToken;

// Handles one event of a placement of gauge `row`. Unknown events are ignored.
void HandleGaugeEvent(const GaugeRow& row, GaugeHeader* gauge, std::int32_t event);

// The module is about to be unloaded: what it holds of the simulator's thread is given back.
void ReleaseModule();

// Draw mode of a placement with this parameter text (may be null).
DisplayDrawMode DrawModeFor(const GaugeBehaviour& behaviour, const char* parameters);

// The element at this depth: 0 is the background, n the first child of n-1; null when the tree is
// not that deep.
ElementHeader* ElementAtDepth(GaugeHeader* gauge, int depth);

}  // namespace avq1
