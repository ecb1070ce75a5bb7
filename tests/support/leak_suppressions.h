// tests/support/leak_suppressions.h - for one source file of a test program that draws texts.
//
// The font system keeps its patterns linked by offsets, which the leak checker cannot follow.
#pragma once

extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions() {
    return "leak:libfontconfig";
}
