// bench/world_data.h - a world-size navigation folder in the module's text format, made for the
// benchmarks from ../shared/data/xplane into a temporary folder and kept there between runs.
#pragma once

#include <string>

namespace avq1::bench {

// The simulator folder holding it; empty when the source data is not there.
std::string WorldSimFolder();

}  // namespace avq1::bench
