// tests/support/fake_traffic.h - a traffic module in memory: publishes a block of records that
// tests fill in, the way another gauge module would.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <vector>

#include "platform/traffic_interface.h"
#include "support/fake_simulator.h"

namespace avq1::test {

struct FakeTarget {
    double relativeBearingDeg = 0;
    double rangeNm = 0;
    double hundreds = 0;  // of feet above the aircraft
    int trend = 0;
    int threat = 0;
    bool valid = true;
};

class FakeTraffic {
  public:
    // Publishes an empty block; the simulator is already installed.
    FakeTraffic() {
        Current() = this;
        FakeSimulator::Get().foreign[kTrafficVariableName] = {
            reinterpret_cast<void*>(&FakeTraffic::Enter), VariableType::Pointer};
    }

    // The highest entry is the first that is looked at.
    void Tell(std::initializer_list<FakeTarget> targets) {
        records_.clear();
        for (const FakeTarget& target : targets) {
            records_.push_back({static_cast<float>(target.hundreds * 100),
                                (static_cast<std::uint32_t>(target.trend) & 0xFU) << 16 |
                                    (static_cast<std::uint32_t>(target.threat) & 0xFU) << 20,
                                static_cast<std::uint8_t>(target.valid ? 1 : 0),
                                {},
                                static_cast<float>(target.rangeNm),
                                static_cast<float>(target.relativeBearingDeg / 57.29577951308232)});
        }
        for (std::size_t i = 0; i < records_.size(); ++i) {
            block.records[i] = &records_[i];
        }
        block.count = static_cast<std::uint8_t>(records_.size());
        block.taken = 1;
        ++block.updateCounter;
    }

    std::vector<TrafficRecord>& records() { return records_; }

    TrafficBlock block;
    int entries = 0;  // how often it was asked

  private:
    static FakeTraffic*& Current() {
        static FakeTraffic* current = nullptr;
        return current;
    }
    static void* AVQ1_PANEL_CALL Enter(std::int32_t version, std::int32_t* result) {
        *result = version == kTrafficInterfaceVersion ? 0 : 2;
        ++Current()->entries;
        return *result == 0 ? &Current()->block : nullptr;
    }

    std::vector<TrafficRecord> records_;
};

}  // namespace avq1::test
