// tests/fuzz/fuzz_text.h - what a fuzz target is: any bytes taken as a text, and promises kept.
#pragma once

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

// The target's own.
void FuzzText(std::string_view text);

// A promise broken ends the program.
inline void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

// The texts of several files in one input, divided by the byte 1.
inline std::string_view TakeFile(std::string_view& rest) {
    const std::string_view file = rest.substr(0, rest.find('\1'));
    rest.remove_prefix(file.size() < rest.size() ? file.size() + 1 : file.size());
    return file;
}
