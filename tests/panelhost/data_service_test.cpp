#include "panelhost/world/data_service.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace panelhost {
namespace {

// Sends a request of these words behind its leading one; the words after it, as answered.
std::int64_t Send(World& world, std::vector<std::uint32_t>& words) {
    std::vector<std::uint8_t> bytes(4 + 4 * words.size());
    std::memcpy(bytes.data() + 4, words.data(), 4 * words.size());
    const std::int64_t answer = ServeDataRequest(world, 4 * words.size(), bytes.data());
    std::memcpy(words.data(), bytes.data() + 4, 4 * words.size());
    return answer;
}

TEST(DataServiceRequests, KeepTheAircraftWithinItsLimits) {
    World world;
    const auto write = [&](std::uint32_t offset, std::uint32_t value) {
        std::vector<std::uint32_t> words{2, offset, 4, value};
        EXPECT_EQ(Send(world, words), 1);
    };
    const auto read = [&](std::uint32_t offset) {
        std::vector<std::uint32_t> words{1, offset, 4, 0, 99};
        EXPECT_EQ(Send(world, words), 1);
        return words[4];
    };
    write(0x0B7C, 4194304);
    write(0x0B94, 0xFFFFFFFF);
    write(0x0B74, 0x7FFFFFFF);
    EXPECT_EQ(world.aircraft.fuelGallons[1], 644);
    EXPECT_EQ(world.aircraft.fuelGallons[4], 0);
    EXPECT_EQ(world.aircraft.fuelGallons[0], 4299);
    EXPECT_EQ(read(0x0B7C), 4194304U);
    const auto beyond = static_cast<std::uint32_t>(0x1400 + 48 * world.aircraft.payloadLb.size());
    write(beyond, 7);  // there is no such station
    EXPECT_EQ(read(beyond), 0U);
    EXPECT_EQ(read(0x7777), 0U);
}

TEST(DataServiceRequests, ThatAreBrokenChangeNothing) {
    std::vector<std::uint32_t> requests[] = {
        {2, 0x0B7C, 4, 8388608, 3, 0, 0},          // an unknown kind behind a good record
        {2, 0x0B7C, 4, 8388608, 1, 0x0B7C, 4, 0},  // no room for the answer
        {2, 0x0B7C, 4, 8388608, 2, 0x0B7C},        // half a header
        {2, 0x0B7C, 0xFFFFFFFF, 8388608},
    };
    World world;
    for (std::vector<std::uint32_t>& words : requests) {
        EXPECT_EQ(Send(world, words), 0);
        EXPECT_EQ(world.aircraft.fuelGallons[1], 0);
    }
    EXPECT_EQ(ServeDataRequest(world, 16, nullptr), 0);
}

}  // namespace
}  // namespace panelhost
