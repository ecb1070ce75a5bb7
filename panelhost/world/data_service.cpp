#include "panelhost/world/data_service.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace panelhost {
namespace {

constexpr std::uint32_t kReadKind = 1;
constexpr std::uint32_t kWriteKind = 2;
constexpr std::size_t kReadHeaderSize = 16;
constexpr std::size_t kWriteHeaderSize = 12;
constexpr std::uint64_t kMostBytes = 32512;
constexpr double kFullLevel = 8388608;
constexpr std::uint32_t kFirstStationOffset = 0x1400;
constexpr std::uint32_t kStationSize = 48;

struct Record {
    std::uint32_t kind = 0;
    std::uint32_t offset = 0;
    std::uint32_t size = 0;
};

// A value is up to 8 bytes, carried as the low bytes of a word.
struct ValueRow {
    std::uint32_t offset;
    std::uint32_t size;
    std::uint64_t (*read)(const World& world);
    void (*write)(World& world, std::uint64_t bits);  // null: writes change nothing
};

template <std::size_t kTank>
std::uint64_t ReadLevel(const World& world) {
    const double capacity = world.aircraft.tankCapacityGallons[kTank];
    return capacity > 0 ? static_cast<std::uint64_t>(world.aircraft.fuelGallons[kTank] / capacity *
                                                     kFullLevel)
                        : 0;
}

template <std::size_t kTank>
void WriteLevel(World& world, std::uint64_t bits) {
    const auto level = static_cast<std::int32_t>(bits);
    world.aircraft.fuelGallons[kTank] =
        world.aircraft.tankCapacityGallons[kTank] * std::clamp(level / kFullLevel, 0.0, 1.0);
}

std::uint64_t ReadZeroFuelWeight(const World& world) {
    const double pounds = world.aircraft.emptyWeightLb + PayloadPounds(world.aircraft);
    return static_cast<std::uint64_t>(pounds * 256);
}

std::uint64_t ReadStationCount(const World& world) {
    return std::min(world.aircraft.payloadLb.size(), kMostPayloadStations);
}

constexpr ValueRow kValues[] = {
    {0x0B74, 4, ReadLevel<0>, WriteLevel<0>},
    {0x0B7C, 4, ReadLevel<1>, WriteLevel<1>},
    {0x0B84, 4, ReadLevel<2>, WriteLevel<2>},
    {0x0B8C, 4, ReadLevel<3>, WriteLevel<3>},
    {0x0B94, 4, ReadLevel<4>, WriteLevel<4>},
    {0x0B9C, 4, ReadLevel<5>, WriteLevel<5>},
    {0x0BA4, 4, ReadLevel<6>, WriteLevel<6>},
    {0x0D50, 8, [](const World& w) { return static_cast<std::uint64_t>(w.tower.latitude); },
     [](World& w, std::uint64_t bits) { w.tower.latitude = static_cast<std::int64_t>(bits); }},
    {0x0D58, 8, [](const World& w) { return static_cast<std::uint64_t>(w.tower.longitude); },
     [](World& w, std::uint64_t bits) { w.tower.longitude = static_cast<std::int64_t>(bits); }},
    {0x0D60, 8, [](const World& w) { return static_cast<std::uint64_t>(w.tower.altitude); },
     [](World& w, std::uint64_t bits) { w.tower.altitude = static_cast<std::int64_t>(bits); }},
    {0x13FC, 4, ReadStationCount, nullptr},
    {0x3304, 4, [](const World&) -> std::uint64_t { return 0x19980005; }, nullptr},
    {0x3308, 4, [](const World&) -> std::uint64_t { return 0xFADE0007; }, nullptr},
    {0x3BFC, 4, ReadZeroFuelWeight, nullptr},
};

// The payload station at an offset; null for none.
double* StationAt(World& world, const Record& record) {
    if (record.offset < kFirstStationOffset || record.size != sizeof(double)) {
        return nullptr;
    }
    const std::uint32_t distance = record.offset - kFirstStationOffset;
    const std::size_t index = distance / kStationSize;
    return distance % kStationSize == 0 && index < ReadStationCount(world)
               ? &world.aircraft.payloadLb[index]
               : nullptr;
}

void Answer(World& world, const Record& record, std::byte* data) {
    if (const double* const station = StationAt(world, record)) {
        std::memcpy(data, station, sizeof *station);
        return;
    }
    std::fill_n(data, record.size, std::byte{0});
    for (const ValueRow& row : kValues) {
        if (row.offset == record.offset) {
            const std::uint64_t bits = row.read(world);
            std::memcpy(data, &bits, std::min(row.size, record.size));
        }
    }
}

void Change(World& world, const Record& record, const std::byte* data) {
    if (double* const station = StationAt(world, record)) {
        double pounds = 0;
        std::memcpy(&pounds, data, sizeof pounds);
        *station = std::isfinite(pounds) ? std::max(pounds, 0.0) : *station;
        return;
    }
    for (const ValueRow& row : kValues) {
        if (row.offset == record.offset && row.size == record.size && row.write != nullptr) {
            std::uint64_t bits = 0;
            std::memcpy(&bits, data, row.size);
            row.write(world, bits);
        }
    }
}

// Walks the records; false when one is of no known kind or does not lie in the request.
template <typename Visit>
bool WalkRecords(std::byte* at, std::uint64_t left, Visit visit) {
    while (left > 0) {
        Record record;
        if (left < sizeof record) {
            return false;
        }
        std::memcpy(&record, at, sizeof record);
        const std::size_t header = record.kind == kReadKind ? kReadHeaderSize : kWriteHeaderSize;
        if ((record.kind != kReadKind && record.kind != kWriteKind) || left < header ||
            record.size > left - header) {
            return false;
        }
        visit(record, at + header);
        at += header + record.size;
        left -= header + record.size;
    }
    return true;
}

}  // namespace

std::int64_t ServeDataRequest(World& world, std::uint64_t size, void* buffer) {
    static_assert(std::endian::native == std::endian::little);
    if (buffer == nullptr || size > kMostBytes) {
        return 0;
    }
    std::byte* const records = static_cast<std::byte*>(buffer) + sizeof(std::uint32_t);
    if (!WalkRecords(records, size, [](const Record&, std::byte*) {})) {
        return 0;
    }
    WalkRecords(records, size, [&world](const Record& record, std::byte* data) {
        record.kind == kReadKind ? Answer(world, record, data) : Change(world, record, data);
    });
    return 1;
}

}  // namespace panelhost
