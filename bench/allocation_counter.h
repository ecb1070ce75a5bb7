// bench/allocation_counter.h - counts this program's heap allocations, so a benchmark can say how
// many one pass makes, the libraries' included. Link bench/allocation_counter.cpp, which stands in
// front of malloc.
#pragma once

namespace avq1::bench {

long AllocationCount();

}  // namespace avq1::bench
