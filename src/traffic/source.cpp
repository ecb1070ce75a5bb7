// The outside traffic module: found by the variable it publishes, its block read byte by byte,
// since another module made it.
#include <algorithm>
#include <cstddef>
#include <cstring>

#include "base/module_state.h"
#include "geometry/geometry.h"
#include "platform/services.h"
#include "platform/traffic_interface.h"
#include "simlink/aircraft_state.h"
#include "traffic/targets.h"

namespace avq1 {

TrafficTargets traffic;
TrafficSource trafficSource;

namespace {

const StateReset resetTraffic{[] {
    traffic = TrafficTargets{};
    trafficSource = TrafficSource{};
}};

constexpr double kDegreesPerRadian = 57.29578158471181;

template <class Value>
Value ValueAt(const void* base, std::size_t offset) {
    Value value{};
    std::memcpy(&value, static_cast<const std::byte*>(base) + offset, sizeof value);
    return value;
}

int SignedFourBits(std::uint32_t flags, int firstBit) {
    const int bits = static_cast<int>(flags >> firstBit & 0xFU);
    return bits < 8 ? bits : bits - 16;
}

char TrendCode(int trend) {
    return trend == 1 ? '^' : trend == -1 ? 'v' : '-';
}

char ThreatCode(int threat) {
    constexpr char kCodes[] = {'O', 'P', 'T', 'R'};
    return threat >= 0 && threat <= 3 ? kCodes[threat] : 'O';
}

// A number that is not finite stays so; the drawing leaves it out.
TrafficTarget TargetOf(const TrafficRecord& record) {
    TrafficTarget target;
    target.bearingTrue = PositiveModulo(
        double{record.relativeBearingRad} * kDegreesPerRadian + aircraft.trueHeading, 360.0);
    target.rangeNm = record.rangeNm;
    target.relativeAltitudeHundreds = double{record.relativeAltitudeFt} * 0.01;
    target.trendCode = TrendCode(SignedFourBits(record.flags, kTrafficTrendBit));
    target.threatCode = ThreatCode(SignedFourBits(record.flags, kTrafficThreatBit));
    return target;
}

// The five highest entries, the highest first.
void TakeTargets() {
    const int count = ValueAt<std::uint8_t>(trafficSource.block, offsetof(TrafficBlock, count));
    traffic.count = 0;
    for (int i = count - 1; i >= std::max(count - kTrafficCapacity, 0); --i) {
        const void* const address =
            ValueAt<const void*>(trafficSource.block, offsetof(TrafficBlock, records) +
                                                          sizeof(void*) * static_cast<unsigned>(i));
        if (address == nullptr) {
            continue;
        }
        const auto record = ValueAt<TrafficRecord>(address, 0);
        if (record.valid != 0) {
            traffic.items[static_cast<std::size_t>(traffic.count++)] = TargetOf(record);
        }
    }
}

}  // namespace

void* QueryTrafficModule(std::int32_t& result) {
    ModuleVariable variable;
    InitializeVariableByName(variable, kTrafficVariableName);
    if (variable.address == nullptr ||
        variable.type != static_cast<std::int32_t>(VariableType::Pointer)) {
        result = 1;
        return nullptr;
    }
    const auto entry = reinterpret_cast<TrafficEntry>(variable.address);
    return entry(kTrafficInterfaceVersion, &result);
}

void RefreshTargets() {
    if (trafficSource.block == nullptr && trafficSource.attempts < kTrafficAttempts) {
        ++trafficSource.attempts;
        trafficSource.block = QueryTrafficModule(trafficSource.result);
    }
    if (trafficSource.block == nullptr) {
        return;
    }
    const std::int32_t update =
        ValueAt<std::uint16_t>(trafficSource.block, offsetof(TrafficBlock, updateCounter));
    if (update != trafficSource.lastUpdate) {
        trafficSource.lastUpdate = update;
        constexpr std::uint32_t kTaken = 0;
        std::memcpy(trafficSource.block, &kTaken, sizeof kTaken);
        TakeTargets();
    }
}

}  // namespace avq1
