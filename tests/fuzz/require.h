// tests/fuzz/require.h - what a fuzz target promises: a promise broken ends the program.
#pragma once

#include <cstdlib>

inline void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}
