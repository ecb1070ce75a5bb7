// cdu_smiths/smiths_reference.h - what the reference pages show alike: weights in thousands of the
// setting's unit, speeds in knots.
#pragma once

#include <cstdint>
#include <string_view>

#include "cdu/unit_text.h"

namespace avq1 {

// "128.4" from pounds; spaced dashes of that many places when it is not known.
UnitText SmithsThousandsText(double pounds, int width, const char* dashes);

// A weight typed in thousands of the setting's unit: above 0, at most 2,000,000 lb. False, with
// `pounds` unchanged, for others.
bool ReadSmithsThousands(std::string_view text, double& pounds);

// "139 K T"; dashes for 0.
UnitText SmithsKnotsText(std::int32_t knots);

// A reference speed: whole, 40 to 300 kt. False, with `knots` unchanged, for others.
bool ReadSmithsKnots(std::string_view text, std::int32_t& knots);

}  // namespace avq1
