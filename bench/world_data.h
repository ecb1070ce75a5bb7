// bench/world_data.h - a world-size navigation folder, built for the benchmarks from
// ../shared/data/xplane (or AVQ1_SHARED_DATA) as avqdata builds it, into a temporary folder that is
// kept between runs: delete avq1-bench-* there to have it built anew.
#pragma once

#include <string>

namespace avq1::bench {

// The simulator folder holding it, without procedure files; empty when the source data is not there
// or not enough.
std::string WorldSimFolder();

// The same with procedure files of 61 MB, made up for every airport of the world: up to 60
// departures and arrivals and 30 approaches, the busiest first in the alphabet and last alike.
std::string WorldWithProceduresSimFolder();

}  // namespace avq1::bench
