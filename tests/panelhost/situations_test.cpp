#include "panelhost/session/situations.h"

#include <gtest/gtest.h>

#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

using SituationTest = HostTest;

// From any of them to any other: nothing of the one before is left, and what it sets stays.
TEST_F(SituationTest, PlaceTuneAndEngageFromAnyOther) {
    ASSERT_TRUE(Open("[Window00]\nsize_mm=100,100\nident=0\n"));
    for (std::size_t pair = 0; pair < 16; ++pair) {
        const Situation& to = Situations()[pair % 4];
        ApplySituation(session_, Situations()[pair / 4]);
        ApplySituation(session_, to);
        SCOPED_TRACE(to.name);
        SessionStatus status = session_.Status();
        EXPECT_NEAR(status.latitude, to.latitude, 1e-6);
        EXPECT_NEAR(status.longitude, to.longitude, 1e-6);
        EXPECT_NEAR(status.nav1.frequencyMhz * 100, to.nav1Frequency, 0.1);
        EXPECT_NEAR(status.nav2.frequencyMhz * 100, to.nav2Frequency, 0.1);
        EXPECT_NEAR(status.adf.frequencyMhz * 1000, to.adfKhz, 0.1);
        EXPECT_NEAR(status.nav1.courseMag, to.nav1CourseTrue - status.magneticVariation, 0.6);
        EXPECT_EQ(status.autopilot.master, to.autopilot);
        EXPECT_EQ(status.autopilot.headingHold, to.hold == SituationHold::Heading);
        EXPECT_EQ(status.autopilot.approachHold, to.hold == SituationHold::Approach);
        EXPECT_EQ(status.onGround, to.altitudeFt < 0);
        EXPECT_EQ(session_.NumberedVariable(323).value_or(0) > 0, to.altitudeFt < 0);
        const double altitudeFt = status.altitudeFt;
        for (int frame = 0; frame < 20 * 20; ++frame) {
            session_.Step(0.05, false);
        }
        status = session_.Status();
        EXPECT_NEAR(status.altitudeFt, altitudeFt, 60);
        EXPECT_NEAR(status.indicatedAirspeedKt, to.indicatedAirspeedKt, 12);
        EXPECT_NEAR(status.headingTrue, to.headingTrue, 1.5);
    }
}

// Among the demonstration's stations: what the pilot finds tuned, and how far off course.
TEST_F(SituationTest, FindTheirStations) {
    std::filesystem::remove(folder_ / "avq/NavData");
    std::filesystem::copy(AVQ1_SOURCE_DIR "/demo/avq/Navdata", folder_ / "avq/Navdata",
                          std::filesystem::copy_options::recursive);
    ASSERT_TRUE(Open("[Window00]\nsize_mm=100,100\nident=0\n"));
    const struct {
        const char *name, *nav1, *nav2, *adf;
        int courseMag;
        double deviation;  // -127 to 127
        double altitudeFt, headingTrue, indicatedAirspeedKt;
    } rows[] = {
        {"runway", "IMOH", "JFK", "FR", 314, -1.4, 13, 300.86, 0},
        {"en-route", "ALB", "CTR", "PFH", 297, -84.2, 32000, 285, 280},
        {"approach", "IMOH", "JFK", "FR", 314, -3.8, 2200, 300.86, 160},
        {"navaids", "JFK", "LGA", "FR", 258, 24.4, 9000, 260, 250},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ApplySituation(session_, *FindSituation(row.name));
        session_.Step(0.05);
        const SessionStatus status = session_.Status();
        EXPECT_EQ((std::array{status.nav1.ident, status.nav2.ident, status.adf.ident}),
                  (std::array<std::string, 3>{row.nav1, row.nav2, row.adf}));
        EXPECT_EQ(status.nav1.courseMag, row.courseMag);
        EXPECT_NEAR(status.nav1.deviation, row.deviation, 0.1);
        EXPECT_NEAR(status.altitudeFt, row.altitudeFt, 1);
        EXPECT_NEAR(status.headingTrue, row.headingTrue, 0.01);
        EXPECT_NEAR(status.indicatedAirspeedKt, row.indicatedAirspeedKt, 0.1);
    }
    for (const char* name : {"crossing", "overtaking", "climbing", "head-on"}) {
        const Situation& row = *FindSituation(name);
        EXPECT_EQ(std::string(row.traffic), name);
    }
}

}  // namespace
}  // namespace panelhost
