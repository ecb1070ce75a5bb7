// A second of the link to FlightGear: sixty packets heard and twenty-five frames brought into the
// world; and the lower bound of reading the same packets' numbers once.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "bench/allocation_counter.h"
#include "panelhost/base/text.h"
#include "panelhost/flightgear/live_link.h"

namespace panelhost {
namespace {

constexpr int kPacketsASecond = 60;
constexpr int kFramesASecond = 25;

std::string Datagram(const LiveLink& link, double clockS) {
    std::string text = link.stateOpening + Format(" %.6f", clockS);
    for (std::size_t i = 0; i < kStateFields; ++i) {
        text += Format("\t%.6f", 42.0 + 0.001 * static_cast<double>(i));
    }
    return text + "\n";
}

std::vector<std::string> SecondOf(const LiveLink& link, double fromS) {
    std::vector<std::string> packets;
    for (int i = 0; i < kPacketsASecond; ++i) {
        packets.push_back(Datagram(link, fromS + 1.0 * i / kPacketsASecond));
    }
    return packets;
}

void SecondOfTheLink(benchmark::State& state) {
    LiveLink link;
    OpenLink(AutopilotMapping{}, "0123456789abcdef", link);
    World world;
    Traffic traffic;
    const std::vector<std::string> packets = SecondOf(link, 100);
    double startS = 0;
    long allocations = 0;
    for (auto _ : state) {
        const long before = avq1::bench::AllocationCount();
        startS += 2;  // after a silence any clock is taken
        int heard = 0;
        for (int frame = 1; frame <= kFramesASecond; ++frame) {
            const double nowS = startS + 1.0 * frame / kFramesASecond;
            for (; heard < kPacketsASecond * frame / kFramesASecond; ++heard) {
                Hear(link, packets[static_cast<std::size_t>(heard)],
                     startS + 1.0 * heard / kPacketsASecond);
            }
            benchmark::DoNotOptimize(StepLink(link, nowS, world, traffic));
        }
        allocations = avq1::bench::AllocationCount() - before;
    }
    state.counters["packets taken"] = static_cast<double>(link.counts.taken);
    state.counters["allocations"] = static_cast<double>(allocations);
}
BENCHMARK(SecondOfTheLink)->Unit(benchmark::kMicrosecond);

void NumbersOfASecond(benchmark::State& state) {
    LiveLink link;
    OpenLink(AutopilotMapping{}, "0123456789abcdef", link);
    const std::vector<std::string> packets = SecondOf(link, 100);
    std::vector<std::vector<std::string_view>> fields;
    for (const std::string& packet : packets) {
        fields.push_back(SplitOn(packet, '\t'));
    }
    for (auto _ : state) {
        double sum = 0;
        for (const auto& packet : fields) {
            for (std::size_t i = 1; i <= kToldCount; ++i) {
                sum += NumberIn(packet[i]);
            }
        }
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(NumbersOfASecond)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace panelhost
