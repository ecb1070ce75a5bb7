// bench/world_data.h - a world-size navigation folder, built for the benchmarks from
// ../shared/data/xplane (or AVQ1_SHARED_DATA) as avqdata builds it, into a temporary folder that is
// kept between runs.
#pragma once

#include <string>

namespace avq1::bench {

// The simulator folder holding it; empty when the source data is not there or not enough.
std::string WorldSimFolder();

}  // namespace avq1::bench
