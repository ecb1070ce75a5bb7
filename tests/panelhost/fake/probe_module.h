// tests/panelhost/fake/probe_module.h - what the probe module writes down for the tests.
#pragma once

#include <cstdint>

struct ProbeRecord {
    enum Kind : int { Event, Mouse } kind;
    const void* gauge;     // the placement's header
    std::int32_t event;    // Event only
    std::uintptr_t extra;  // Event only
    std::uint32_t flags;   // Mouse only
    std::int32_t x;        // Mouse only
    std::int32_t y;
};

struct ProbeLog {
    int count = 0;
    int initCalls = 0;
    int deinitCalls = 0;
    ProbeRecord records[16384];
};

inline constexpr int kProbeWidth = 40;
inline constexpr int kProbeHeight = 30;
inline constexpr int kProbeSurfaceWidth = 16;
inline constexpr int kProbeSurfaceHeight = 10;
inline constexpr int kProbeSurfaceX = 12;
inline constexpr int kProbeSurfaceY = 8;
