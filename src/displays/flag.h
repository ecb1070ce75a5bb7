// displays/flag.h - the boxed warning that stands in place of what cannot be shown.
#pragma once

#include <cstdint>
#include <string_view>

#include "drawing/surface.h"

namespace avq1 {

// Centred on the point, on a black ground of its own.
void DrawFlag(Surface& surface, std::string_view text, std::uint32_t argb, double centreX,
              double centreY);

}  // namespace avq1
