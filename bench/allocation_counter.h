// bench/allocation_counter.h - counts heap allocations of this program, so a benchmark can say how
// many one pass makes. Include it in exactly one source of a program.
#pragma once

#include <atomic>
#include <cstdlib>
#include <new>

namespace avq1::bench {
inline std::atomic<long> allocationCount{0};
}

void* operator new(std::size_t size) {
    ++avq1::bench::allocationCount;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) {
        return memory;
    }
    std::abort();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
