#include <gtest/gtest.h>

#include "base/messages.h"
#include "base/module_state.h"
#include "flightplan/fuel_load.h"
#include "flightplan/plan_airports.h"
#include "flightplan/plan_notation.h"
#include "flightplan/tower_view.h"
#include "simlink/aircraft_state.h"
#include "support/fake_data_service.h"
#include "support/fake_simulator.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::FakeDataService;
using test::FakeSimulator;

class DataUses : public testing::Test {
  protected:
    DataUses() { ResetModuleState(); }
    void TearDown() override { FakeDataService::Remove(); }

    FakeDataService& service_ = FakeDataService::Install();
    FakeSimulator& simulator_ = FakeSimulator::Install();
};

TEST_F(DataUses, FuelFillsTheTanksInTheirOrder) {
    simulator_.variables = {
        {306, 2},  {290, 100}, {292, 25}, {298, 25},
        {294, 10}, {300, 10},  {296, 5},  {302, 5}};  // mains 100, centre 200, aux 40, tips 20
    constexpr std::int32_t kFull = 8388608;
    const struct {
        double quantity;
        std::int32_t mains, centre, auxiliaries, tips;
    } cases[] = {
        {50, kFull / 2, 0, 0, 0},           {150, kFull, kFull / 4, 0, 0},
        {310, kFull, kFull, kFull / 4, 0},  {355, kFull, kFull, kFull, kFull / 4 * 3},
        {9999, kFull, kFull, kFull, kFull}, {-5, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.quantity);
        service_.written.clear();
        messages = {};
        EXPECT_TRUE(LoadFuel(c.quantity));
        const std::pair<std::uint32_t, std::int32_t> levels[] = {
            {0x0B7C, c.mains},       {0x0B94, c.mains}, {0x0B74, c.centre}, {0x0B84, c.auxiliaries},
            {0x0B9C, c.auxiliaries}, {0x0B8C, c.tips},  {0x0BA4, c.tips}};
        for (const auto& [offset, level] : levels) {
            ASSERT_EQ(service_.written.count(offset), 1U) << std::hex << offset;
            EXPECT_EQ(service_.Written<std::int32_t>(offset), level) << std::hex << offset;
        }
        EXPECT_EQ(messages.lines[1], Format("FUEL '%6.0f' loaded", c.quantity));
    }
    messages = {};
    service_.answers = 1;  // it falls silent after the opening
    EXPECT_FALSE(LoadFuel(100));
    service_.present = false;
    EXPECT_FALSE(LoadFuel(100));
    EXPECT_EQ(messages.count, 0);
}

TEST_F(DataUses, TowerViewStandsWhereTheAirportSays) {
    const test::TempSimFolder folder;
    folder.Write("avq/Navdata/avq_apts.txt", "KBOS Logan 20 42.36 -71.00\n");
    test::SetPlan(activePlan, "KJFK KBOS");
    activePlan.Edit(1).latitude = 45;
    activePlan.Edit(1).longitude = -90;
    aircraft.magneticVariation = -20;
    PlanRunway runway;
    runway.latitude = 10;
    runway.longitude = 20;
    runway.heading = 5;  // the course is 0: due north of the threshold
    PlanRunway first = runway;
    first.latitude = 30;
    first.longitude = 40;
    const struct {
        const char* info;
        std::int32_t patternRunway;  // an offset to runway 1
        double latitude;
        double longitude;
        std::int32_t altitude;
    } cases[] = {
        {"", kNoPatternRunway, 45, -90, 120},
        {"", 0, 10 + 0.21 / 60, 20, 0},
        {"", -1, 30 + 0.21 / 60, 40, 0},  // the first
        {"", -2, 45, -90, 120},           // none
        {"", 1, 45, -90, 120},
        {"[KBOS]\ntowerviewLAT=42.5\nTowerViewLon = -71.5\nTowerViewAlt=250.9\n", 0, 42.5, -71.5,
         250},
        {"[KJFK]\nTowerViewLat=1\n\n[kbos]\r\nTowerViewLat=-42.5\r\nTowerViewLon=180\r\n\r\n"
         "TowerViewAlt=9\r\n",
         kNoPatternRunway, -42.5, -180, 0},
        {"[KBOS]\nRWY9=RIGHTPATTERN\n\nTowerViewLat=1\n", kNoPatternRunway, 45, -90, 120},
        {"[KBOS]\nTowerViewLat=42.5\nTowerViewAlt=9\n", kNoPatternRunway, 45, -90, 120},  // half
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.info);
        folder.Write("avq/Navdata/apt_additional_info.txt", c.info);
        planAirports.lastAirportIdent = "KBOS";
        planAirports.runways = {first, runway};
        planAirports.patternRunwayOffset = c.patternRunway;
        messages = {};
        EXPECT_TRUE(SendTowerView());
        const auto latitude = static_cast<double>(service_.Written<std::int64_t>(0x0D50));
        const auto longitude = static_cast<double>(service_.Written<std::int64_t>(0x0D58));
        EXPECT_NEAR(latitude / 4294967296.0 / 10001750 * 90, c.latitude, 1e-4);
        EXPECT_NEAR(longitude / 18446744073709551616.0 * 360, c.longitude, 1e-4);
        EXPECT_EQ(service_.Written<std::int64_t>(0x0D60), std::int64_t{c.altitude} << 32);
        EXPECT_EQ(messages.lines[1], "TWR Pos 'KBOS' set");
    }
    messages = {};
    service_.present = false;
    EXPECT_FALSE(SendTowerView());
    EXPECT_EQ(messages.count, 0);
}

}  // namespace
}  // namespace avq1
