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

}  // namespace
}  // namespace panelhost
