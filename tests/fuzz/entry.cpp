// The entry the fuzzer calls, the same for all targets.
#include <cstddef>
#include <cstdint>

#include "fuzz/fuzz_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzText({reinterpret_cast<const char*>(data), size});
    return 0;
}
