#include "panelhost/situations.h"

#include <gtest/gtest.h>

#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

using SituationTest = HostTest;

// From any of them to any other: nothing of the one before is left.
TEST_F(SituationTest, PlaceTuneAndEngageFromAnyOther) {
    ASSERT_TRUE(Open("[Window00]\nsize_mm=100,100\nident=0\n"));
    for (int from = 0; from < 4; ++from) {
        for (const Situation& to : Situations()) {
            ApplySituation(session_, Situations()[static_cast<std::size_t>(from)]);
            ApplySituation(session_, to);
            SCOPED_TRACE(to.name);
            const SessionStatus status = session_.Status();
            EXPECT_NEAR(status.latitude, to.latitude, 1e-6);
            EXPECT_NEAR(status.longitude, to.longitude, 1e-6);
            EXPECT_NEAR(status.headingTrue, to.headingTrue, 1e-6);
            EXPECT_NEAR(status.indicatedAirspeedKt, to.indicatedAirspeedKt, 1e-6);
            EXPECT_NEAR(status.nav1.frequencyMhz * 100, to.nav1Frequency, 0.1);
            EXPECT_NEAR(status.nav2.frequencyMhz * 100, to.nav2Frequency, 0.1);
            EXPECT_NEAR(status.adf.frequencyMhz * 1000, to.adfKhz, 0.1);
            EXPECT_NEAR(status.nav1.courseMag, to.nav1CourseTrue - status.magneticVariation, 0.6);
            EXPECT_EQ(status.autopilot.master, to.autopilot);
            EXPECT_EQ(status.autopilot.headingHold, to.hold == SituationHold::Heading);
            EXPECT_EQ(status.autopilot.approachHold, to.hold == SituationHold::Approach);
            EXPECT_TRUE(status.autopilot.flightDirector);
            const bool ground = to.altitudeFt < 0;
            EXPECT_EQ(status.onGround, ground);
            EXPECT_EQ(session_.NumberedVariable(323).value_or(0) > 0, ground);
            EXPECT_EQ(FindSituation(to.name), &to);
        }
    }
    EXPECT_EQ(FindSituation("no-such"), nullptr);
}

// What a situation sets holds by itself while time passes.
TEST_F(SituationTest, StayAsTheyArePlaced) {
    ASSERT_TRUE(Open("[Window00]\nsize_mm=100,100\nident=0\n"));
    for (const Situation& row : Situations()) {
        ApplySituation(session_, row);
        const double altitudeFt = session_.Status().altitudeFt;
        for (int frame = 0; frame < 20 * 20; ++frame) {
            session_.Step(0.05, false);
        }
        const SessionStatus status = session_.Status();
        EXPECT_NEAR(status.altitudeFt, altitudeFt, 60) << row.name;
        EXPECT_NEAR(status.indicatedAirspeedKt, row.indicatedAirspeedKt, 12) << row.name;
        EXPECT_NEAR(status.headingTrue, row.headingTrue, 1.5) << row.name;
    }
}

}  // namespace
}  // namespace panelhost
