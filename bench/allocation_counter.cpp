#include "bench/allocation_counter.h"

#include <atomic>
#include <cstddef>

namespace avq1::bench {
namespace {
std::atomic<long> count{0};
}

long AllocationCount() {
    return count;
}

}  // namespace avq1::bench

// In front of the C library's own, so the drawing libraries' allocations count too.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

[[gnu::visibility("default")]] void* malloc(std::size_t size) {
    ++avq1::bench::count;
    return __libc_malloc(size);
}
[[gnu::visibility("default")]] void* calloc(std::size_t count, std::size_t size) {
    ++avq1::bench::count;
    return __libc_calloc(count, size);
}
[[gnu::visibility("default")]] void* realloc(void* memory, std::size_t size) {
    ++avq1::bench::count;
    return __libc_realloc(memory, size);
}
}
