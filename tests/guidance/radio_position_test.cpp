#include "guidance/radio_position.h"

#include <gtest/gtest.h>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

// Two VORs 30 nm east and 42.4 nm south-east of the aircraft, a beacon and an ILS's DME beside the
// first.
TEST(RadioPosition, IsThatOfTheStationWhereBearingAndDistancePoint) {
    constexpr std::int32_t kSignal1 = 49;
    constexpr std::int32_t kSignal2 = 58;
    constexpr std::int32_t kFlags = 46;
    const struct {
        const char* what;
        double relativeBearing, dmeNm, heightFt;
        const char* left;  // the station of the left receiver
        std::int32_t flags = 0;
        double signal = 1;
    } rows[] = {
        {"east", 0, 30, 0, "EAS"},
        {"a little off", 3, 31, 0, "EAS"},
        {"too far off", 9, 30, 0, ""},
        {"and farther", 0, 36, 0, ""},
        {"south-east", 45, 42.4, 0, "SOU"},
        {"more than once around", 405, 42.4, 0, "SOU"},
        {"to the left of the nose", -270, 60, 0, ""},
        {"on the slant", 0, 42.4, 182284, "EAS"},
        {"a localizer", 0, 30, 0, "", 0x80},
        {"without a signal", 0, 30, 0, "", 0, 0},
        {"without a distance", 0, 0, 0, ""},
    };
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        ResetModuleState();
        test::TempSimFolder folder;
        SimFolder = folder.root().string();
        folder.Write("avq/Navdata/avq_navs.txt",
                     "BEA BEACON 0.0 0.5 NDB 385\nEAS EAST 0.0 0.5 VOR 110.00\n"
                     "SOU SOUTH -0.5 0.5 VOR 113.90\n");
        LoadNavDatabase();
        aircraft.latitude = aircraft.longitude = 0;
        aircraft.headingMag = 80;
        aircraft.magneticVariation = 10;
        aircraft.radioAltitudeFt = row.heightFt;
        aircraft.nav1RelativeBearing = row.relativeBearing;
        aircraft.nav1DmeNm = row.dmeNm;
        simulator.variables[kSignal1] = row.signal;
        simulator.variables[kFlags] = row.flags;
        simulator.variables[kSignal2] = 0;
        const ReceivedStation left = StationReceived(NavReceiver::Left);
        EXPECT_EQ(navDatabase.navaids.Ident(left.navaid), row.left);
        EXPECT_EQ(StationReceived(NavReceiver::Right).navaid, 0);
        LatLon position{9, 9};
        const bool known = row.left[0] != '\0';
        EXPECT_NEAR(left.bearingTrue, known ? PositiveModulo(90 + row.relativeBearing, 360) : 0,
                    1e-9);
        EXPECT_EQ(RadioPosition(position), known);
        EXPECT_NEAR(position.latitude, known ? 0 : 9, 0.06);
        EXPECT_NEAR(position.longitude, known ? 0 : 9, 0.06);
    }
    ImportTable.panel.services = nullptr;
}

TEST(RadioPosition, LeavesOutWhatIsInhibited) {
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    ResetModuleState();
    test::TempSimFolder folder;
    SimFolder = folder.root().string();
    folder.Write("avq/Navdata/avq_navs.txt",
                 "EAS EAST 0.0 0.5 VOR 110.00\nSOU SOUTH -0.5 0.5 VOR 113.90\n");
    LoadNavDatabase();
    aircraft.latitude = aircraft.longitude = 0;
    aircraft.headingMag = 90;
    aircraft.nav1DmeNm = 31;  // a mile less than nothing: the two positions differ
    aircraft.nav2RelativeBearing = 45;
    aircraft.nav2DmeNm = 42.43;
    simulator.variables[49] = simulator.variables[58] = 1;
    const struct {
        NavOptions options;
        bool known;
        double longitude;
    } rows[] = {
        {{}, true, -1.0 / 60},
        {{.inhibitedDme = {"", "EAS"}}, true, 0},
        {{.inhibitedVor = {"EAS", ""}}, true, 0},
        {{.inhibitedVor = {"SOU", ""}}, true, -1.0 / 60},
        {{.inhibitedDme = {"SOU", ""}, .inhibitedVor = {"EAS", ""}}, false, 9},
        {{.dmeUpdate = false}, false, 9},
        {{.vorUpdate = false}, false, 9},
    };
    for (const auto& row : rows) {
        navOptions = row.options;
        LatLon position{9, 9};
        EXPECT_EQ(RadioPosition(position), row.known);
        EXPECT_NEAR(position.longitude, row.longitude, 0.001);
    }
    ImportTable.panel.services = nullptr;
}

}  // namespace
}  // namespace avq1
