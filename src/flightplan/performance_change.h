// flightplan/performance_change.h - what the pilot asks of the aircraft's performance: cruise
// altitude, cost index, speeds. Of a route that is flown it waits with the modified plan for EXEC.
//
// Altitudes feet, speeds kt indicated. What has no value is not changed.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace avq1 {

// By what a phase's airspeed is chosen.
enum class SpeedMode : std::uint8_t {
    Economy,    // by the cost index, else as the aircraft's file or tables have it
    Selected,   // typed
    MaxAngle,   // the least of the climb
    MaxRate,    // the middle of the climb's limits
    LongRange,  // the middle of the cruise's limits
    Fastest,    // the greatest of the descent
};

struct SpeedChoice {
    SpeedMode mode = SpeedMode::Economy;
    std::int32_t ias = 0;

    friend bool operator==(const SpeedChoice&, const SpeedChoice&) = default;
};

// Not faster than `ias` below the altitude; 0 and 0 = no such restriction.
struct SpeedLimit {
    double ias = 0;
    double belowFt = 0;

    // As fast as the limit lets a speed be flown at an altitude.
    double Limited(double indicatedKt, double altitudeFt) const {
        return ias > 0 && altitudeFt < belowFt ? std::min(indicatedKt, ias) : indicatedKt;
    }

    friend bool operator==(const SpeedLimit&, const SpeedLimit&) = default;
};

inline constexpr std::size_t kFlightPhases = 3;  // climb, cruise, descent: VerticalPhase

struct PerformanceChange {
    std::optional<std::int32_t> cruiseAltitudeFt = {};
    std::optional<std::int32_t> costIndex = {};                         // 0 to 200
    std::array<std::optional<SpeedChoice>, kFlightPhases> speeds = {};  // by VerticalPhase
    std::array<std::optional<SpeedLimit>, kFlightPhases> limits = {};   // the same; none in cruise

    friend bool operator==(const PerformanceChange&, const PerformanceChange&) = default;
};

}  // namespace avq1
