#include "panelhost/data_service.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace panelhost {
namespace {

// One record alone in a request.
struct Request {
    std::vector<std::uint8_t> bytes = std::vector<std::uint8_t>(4);

    template <typename T>
    void Append(T value) {
        const auto* const from = reinterpret_cast<const std::uint8_t*>(&value);
        bytes.insert(bytes.end(), from, from + sizeof value);
    }
    std::int64_t Send(World& world) {
        return ServeDataRequest(world, bytes.size() - 4, bytes.data());
    }
};

template <typename T>
T Read(World& world, std::uint32_t offset) {
    Request request;
    for (const std::uint32_t word : {1U, offset, static_cast<std::uint32_t>(sizeof(T)), 0U}) {
        request.Append(word);
    }
    request.Append(T{});
    EXPECT_EQ(request.Send(world), 1);
    T value{};
    std::memcpy(&value, request.bytes.data() + 20, sizeof value);
    return value;
}

template <typename T>
void Write(World& world, std::uint32_t offset, T value) {
    Request request;
    for (const std::uint32_t word : {2U, offset, static_cast<std::uint32_t>(sizeof(T))}) {
        request.Append(word);
    }
    request.Append(value);
    EXPECT_EQ(request.Send(world), 1);
}

TEST(DataServiceRequests, ReadAndChangeTheAircraft) {
    World world;
    EXPECT_GE(Read<std::uint32_t>(world, 13060), 0x19980005U);
    EXPECT_EQ(Read<std::uint32_t>(world, 13064) >> 16, 0xFADEU);
    Write<std::int32_t>(world, 0x0B7C, 4194304);
    Write<std::int32_t>(world, 0x0B94, -1);
    Write<std::int32_t>(world, 0x0B74, 0x7FFFFFFF);
    EXPECT_EQ(world.aircraft.fuelGallons[1], 644);
    EXPECT_EQ(world.aircraft.fuelGallons[4], 0);
    EXPECT_EQ(world.aircraft.fuelGallons[0], 4299);
    EXPECT_EQ(Read<std::int32_t>(world, 0x0B7C), 4194304);

    const auto stations = Read<std::uint32_t>(world, 0x13FC);
    ASSERT_EQ(stations, world.aircraft.payloadLb.size());
    double payloadLb = 0;
    for (std::uint32_t k = 0; k < stations; ++k) {
        Write<double>(world, 0x1400 + 48 * k, k + 0.5);
        payloadLb += Read<double>(world, 0x1400 + 48 * k);
    }
    EXPECT_EQ(payloadLb, 32);
    EXPECT_EQ(Read<std::int32_t>(world, 0x3BFC), (91300 + 32) * 256);
    Write<double>(world, 0x1400 + 48 * stations, 7);  // there is no such station
    EXPECT_EQ(Read<double>(world, 0x1400 + 48 * stations), 0);
    Write<std::int64_t>(world, 0x0D58, -5);
    EXPECT_EQ(world.tower.longitude, -5);
    EXPECT_EQ(Read<std::int64_t>(world, 0x7777), 0);
}

TEST(DataServiceRequests, ThatAreBrokenChangeNothing) {
    const std::vector<std::vector<std::uint32_t>> requests = {
        {2, 0x0B7C, 4, 8388608, 3, 0, 0},          // an unknown kind behind a good record
        {2, 0x0B7C, 4, 8388608, 1, 0x0B7C, 4, 0},  // no room for the answer
        {2, 0x0B7C, 4, 8388608, 2, 0x0B7C},        // half a header
        {2, 0x0B7C, 0xFFFFFFFF, 8388608},
    };
    for (const auto& words : requests) {
        World world;
        Request request;
        for (const std::uint32_t word : words) {
            request.Append(word);
        }
        EXPECT_EQ(request.Send(world), 0);
        EXPECT_EQ(world.aircraft.fuelGallons[1], 0);
    }
    World world;
    EXPECT_EQ(ServeDataRequest(world, 16, nullptr), 0);
}

}  // namespace
}  // namespace panelhost
