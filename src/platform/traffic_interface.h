// platform/traffic_interface.h - what a traffic module publishes for the displays to read.
//
// The traffic module registers a variable named kTrafficVariableName, of type Pointer (38), whose
// address is its entry function. Called with kTrafficInterfaceVersion and the address of a result
// slot it gives its traffic block, or null with the reason in the slot. The block stays where it is
// for as long as that module is loaded. A change of `updateCounter` tells of new targets; the
// reader clears `taken` when it has taken them. Records are packed to 4 bytes; pointers have the
// build's own size. Offsets: with 4-byte pointers / with 8-byte pointers.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/panel_interface.h"

namespace avq1 {

inline constexpr char kTrafficVariableName[] = "avq_traffic_source";
inline constexpr std::int32_t kTrafficInterfaceVersion = 1;
inline constexpr int kMostTrafficRecords = 255;

// Signed values of four bits each in a record's flags.
inline constexpr int kTrafficTrendBit = 16;   // -1 descending, 0 level, 1 climbing
inline constexpr int kTrafficThreatBit = 20;  // 0 other, 1 proximate, 2 traffic, 3 resolution

#pragma pack(push, 4)

struct TrafficRecord {
    float relativeAltitudeFt = 0;  // of the target above the aircraft
    std::uint32_t flags = 0;
    std::uint8_t valid = 0;  // 0: the record holds no target
    std::uint8_t spare[3] = {};
    float rangeNm = 0;
    float relativeBearingRad = 0;  // from the aircraft's heading, clockwise
};

// Only `count` of the pointers need exist.
struct TrafficBlock {
    std::uint32_t taken = 0;
    std::uint8_t spare1[10] = {};
    std::uint16_t updateCounter = 0;
    std::uint8_t spare2[28] = {};
    std::uint8_t count = 0;
    std::uint8_t spare3[3] = {};
    TrafficRecord* records[kMostTrafficRecords] = {};
};

#pragma pack(pop)

using TrafficEntry = void*(AVQ1_PANEL_CALL*)(std::int32_t interfaceVersion, std::int32_t* result);

static_assert(sizeof(TrafficRecord) == 20);
static_assert(offsetof(TrafficRecord, valid) == 8 && offsetof(TrafficRecord, rangeNm) == 12);
static_assert(offsetof(TrafficBlock, updateCounter) == 14);
static_assert(offsetof(TrafficBlock, count) == 44 && offsetof(TrafficBlock, records) == 48);

}  // namespace avq1
