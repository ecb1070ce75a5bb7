#include "simlink/data_service.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <numeric>

#include "base/module_state.h"
#include "panelhost/session/host_state.h"
#include "panelhost/session/services.h"
#include "support/fake_data_service.h"

namespace avq1 {
namespace {

using test::FakeDataService;

class DataService : public testing::Test {
  protected:
    void SetUp() override { ResetModuleState(); }
    void TearDown() override {
        DsClose();
        FakeDataService::Remove();
    }
    static DsError Open(std::int32_t wanted = kAnySimulator) {
        return DsOpen(wanted, dsBuffer.data(), dsBuffer.size());
    }

    FakeDataService& service_ = FakeDataService::Install();
};

TEST_F(DataService, OpensOnlyWithAServiceItCanTrust) {
    const struct {
        std::uint32_t version, identity;
        int answers;
        std::int32_t wanted;
        std::size_t size;
        DsError error;
    } cases[] = {
        {0x19980005, 0xFADE0007, 9, 0, 52, DsError::None},
        {0x20000000, 0xFADE0007, 9, 7, 1024, DsError::None},
        {0x20000000, 0xFADEC107, 9, 0xC107, 1024, DsError::None},  // all its low half counts
        {0x20000000, 0xFADEC107, 9, 7, 1024, DsError::WrongSimulator},
        {0x19980004, 0xFADE0007, 9, 0, 1024, DsError::WrongVersion},
        {0x19980005, 0xFADD0007, 9, 0, 1024, DsError::WrongVersion},
        {0x19980005, 0xFADE0007, 9, 8, 1024, DsError::WrongSimulator},
        {0x19980005, 0xFADE0007, 0, 0, 1024, DsError::NotAcknowledged},
        {0x19980005, 0xFADE0007, 9, 0, 31, DsError::NoBuffer},
        {0x19980005, 0xFADE0007, 9, 0, 51, DsError::BufferFull},
    };
    for (const auto& c : cases) {
        service_.answers = c.answers;
        service_.Set(13060, c.version);
        service_.Set(13064, c.identity);
        EXPECT_EQ(DsOpen(c.wanted, dsBuffer.data(), c.size), c.error) << &c - cases;
        EXPECT_EQ(DsProcess(),
                  c.error == DsError::None ? DsError::NothingQueued : DsError::NotOpen);
        DsClose();
    }
    EXPECT_EQ(service_.Written<std::uint16_t>(13066), 0x4B0) << "our version";
    service_.present = false;
    EXPECT_EQ(Open(), DsError::NoService);
    std::uint32_t word = 0;
    EXPECT_EQ(DsRead(1, 4, &word), DsError::NotOpen);
    EXPECT_EQ(DsOpen(0, nullptr, 1024), DsError::NoBuffer);
}

TEST_F(DataService, RecordsLieInTheBufferAsTheServiceReadsThem) {
    ASSERT_EQ(Open(), DsError::None);
    service_.Set<std::uint16_t>(0x1234, 0xBEEF);
    const std::uint8_t byte = 0x5A;
    std::uint16_t answer = 0;
    DsWrite(0x88, 1, &byte);
    DsRead(0x1234, 2, &answer);
    ASSERT_EQ(DsProcess(), DsError::None);
    EXPECT_EQ(answer, 0xBEEF);
    const std::pair<std::size_t, std::uint32_t> words[] = {
        {4, 2}, {8, 0x88}, {12, 1}, {17, 1}, {21, 0x1234}, {25, 2}, {35, 0}};
    for (const auto& [at, expected] : words) {
        std::uint32_t value = 0;
        std::memcpy(&value, &dsBuffer[at], sizeof value);
        EXPECT_EQ(value, expected) << at;
    }
    EXPECT_EQ(dsBuffer[16], std::byte{0x5A});
    EXPECT_EQ(DsProcess(), DsError::NothingQueued);
}

TEST_F(DataService, AFullBufferDropsWhatDoesNotFit) {
    ASSERT_EQ(Open(), DsError::None);
    std::array<std::uint8_t, 1024> data{};
    EXPECT_EQ(DsRead(1, 1024 - 4 - 24 + 1, data.data()), DsError::BufferFull);
    EXPECT_EQ(DsWrite(1, 1024 - 4 - 20 + 1, data.data()), DsError::BufferFull);
    EXPECT_EQ(DsWrite(1, SIZE_MAX - 8, data.data()), DsError::BufferFull);
    EXPECT_EQ(DsWrite(1, 1024 - 4 - 20, data.data()), DsError::None);
    EXPECT_EQ(DsRead(1, 1, data.data()), DsError::BufferFull);
    EXPECT_EQ(DsProcess(), DsError::None);
}

TEST_F(DataService, WhatCannotBeTrustedIsNotDelivered) {
    const struct {
        const char* what;
        int answers;
        std::int64_t acknowledgement;
        std::uint32_t spoiledKind;
        DsError error;
        std::uint32_t first;  // what the two reads around a write bring
        std::uint32_t second;
    } cases[] = {
        {"all is well", 9, 1, 0, DsError::None, 77, 78},
        {"read records overwritten", 9, 1, 1, DsError::None, 5, 6},
        {"the write record overwritten", 9, 1, 2, DsError::None, 77, 6},
        {"another result than 1", 9, 2, 0, DsError::NotAcknowledged, 5, 6},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        FakeDataService::Install();
        ASSERT_EQ(Open(), DsError::None);
        service_.Set<std::uint32_t>(0x10, 77);
        service_.Set<std::uint32_t>(0x20, 78);
        service_.answers = c.answers;
        service_.acknowledgement = c.acknowledgement;
        service_.spoiledKind = c.spoiledKind;
        std::uint32_t first = 5;
        std::uint32_t second = 6;
        DsRead(0x10, sizeof first, &first);
        DsWrite(0x30, sizeof first, &first);
        DsRead(0x20, sizeof second, &second);
        EXPECT_EQ(DsProcess(), c.error);
        EXPECT_EQ(first, c.first);
        EXPECT_EQ(second, c.second);
        service_.answers = 1;
        service_.acknowledgement = 1;
        service_.spoiledKind = 0;
        const bool kept = c.error == DsError::NotAcknowledged;  // and sent once more
        EXPECT_EQ(DsProcess(), kept ? DsError::None : DsError::NothingQueued);
        EXPECT_EQ(second, kept ? 78 : c.second);
        DsClose();
    }
}

TEST_F(DataService, PayloadIsSummedOverAllStations) {
    service_.Set<std::int32_t>(0x3BFC, 90000 * 256 + 128);
    for (std::uint32_t k = 0; k < 99; ++k) {
        service_.Set<double>(0x1400 + 48 * k, k + 1.0);
    }
    AircraftWeights weights;
    for (const auto& [stations, payloadLb] :
         {std::pair{42, 903}, {43, 946}, {99, 1891}, {-5, 0}, {61, 1891}}) {
        service_.Set<std::int32_t>(0x13FC, stations);
        EXPECT_TRUE(ReadAircraftWeights(weights));
        EXPECT_EQ(weights.zeroFuelLb, 90000.5);
        EXPECT_EQ(weights.payloadLb, payloadLb) << stations;
        EXPECT_LE(service_.mostBytes, 1024U);
    }
    for (const int answers : {0, 1, 2, 3}) {  // it falls silent; a batch is then missing
        service_.answers = answers;
        weights = {};
        EXPECT_FALSE(ReadAircraftWeights(weights));
        EXPECT_EQ(weights.zeroFuelLb, 0);
    }
    service_.answers = 9;
    service_.Set<double>(0x1400, std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(ReadAircraftWeights(weights));  // once it answers again
    EXPECT_EQ(weights.payloadLb, 1890);
}

// The panel host's side of the same protocol, on an aircraft of its own.
TEST_F(DataService, ThePanelHostsAircraftIsWeighedStationByStation) {
    const auto host = std::make_unique<panelhost::HostState>();
    panelhost::Aircraft& aircraft = host->world.aircraft;
    panelhost::SetActiveHost(host.get());
    PlatformTable.services = panelhost::PlatformServiceTable();
    aircraft.payloadLb.resize(70);
    std::iota(aircraft.payloadLb.begin(), aircraft.payloadLb.end(), 1);
    AircraftWeights weights;
    EXPECT_TRUE(ReadAircraftWeights(weights));
    EXPECT_EQ(weights.payloadLb, 61 * 62 / 2);
    EXPECT_EQ(weights.zeroFuelLb, 70 * 71 / 2 + aircraft.emptyWeightLb);
    const double pounds = 1234.5;
    ASSERT_EQ(Open(), DsError::None);
    DsWrite(0x1400 + 48 * 60, sizeof pounds, &pounds);
    EXPECT_EQ(DsProcess(), DsError::None);
    EXPECT_EQ(aircraft.payloadLb[60], 1234.5);
    panelhost::SetActiveHost(nullptr);
}

}  // namespace
}  // namespace avq1
