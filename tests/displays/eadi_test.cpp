// When the attitude display shows which text, and in which colour. (How it looks:
// pictures_test.cpp.)
#include "displays/eadi/eadi.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "displays/ehsi/ehsi.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/leak_suppressions.h"

namespace avq1 {
namespace {

using test::kInfinity;
using test::kNan;
using test::Picture;

class Eadi : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        aircraft.headingMag = 10;
    }

    static void Draw() { test::DrawAt(DrawEadi, {266, 230}); }

    // The texts the picture shows, of those asked for.
    static std::set<std::string> DrawnOf(std::set<std::string> texts) {
        Draw();
        std::erase_if(texts, [](const std::string& text) { return !Picture::Shows(text); });
        return texts;
    }
};

TEST_F(Eadi, AnnouncesModesOnlyWhileTheAutopilotIsOn) {
    // the modes that are on: Master, Heading, Nav, aPproach, Lnav, Yaw damper, Altitude, Vnav
    const std::pair<std::string, std::set<std::string>> cases[] = {
        {"HNPLYAV", {}},       {"M", {"AP"}},           {"MHN", {"AP", "HDG"}},
        {"MN", {"AP", "NAV"}}, {"MPL", {"AP", "APR"}},  {"MHLY", {"AP", "HDG", "LNAV", "YD"}},
        {"MA", {"AP", "ALT"}}, {"MAV", {"AP", "VNAV"}}, {"MV", {"AP"}},
    };
    for (const auto& [modes, shown] : cases) {
        const auto on = [&on = modes](char mode) { return on.find(mode) != on.npos ? 1 : 0; };
        aircraft.autopilotOn = on('M');
        aircraft.headingHoldOn = on('H');
        aircraft.autopilotNav1Lock = on('N');
        aircraft.approachHoldOn = on('P');
        guidance.lnavEngaged = on('L');
        aircraft.yawDamperOn = on('Y');
        aircraft.apAltitudeLockOn = on('A');
        guidance.vnavEngaged = on('V');
        EXPECT_EQ(DrawnOf({"AP", "HDG", "NAV", "APR", "LNAV", "YD", "ALT", "VNAV"}), shown)
            << modes;
    }
}

TEST_F(Eadi, ShowsHeightsWithinTheirBounds) {
    ehsi.decisionHeight = 250;
    const std::tuple<double, const char*, std::uint32_t> cases[] = {// null: hidden
                                                                    {-20.5, nullptr, 0},
                                                                    {-20, "  -20", colour::Amber},
                                                                    {-0.3, "    0", colour::Amber},
                                                                    {250, "  250", colour::Amber},
                                                                    {250.6, "  251", colour::Green},
                                                                    {2500, " 2500", colour::Green},
                                                                    {2501, nullptr, 0},
                                                                    {kNan, nullptr, 0}};
    for (const auto& [heightFt, value, argb] : cases) {
        aircraft.radioAltitudeFt = heightFt;
        Draw();
        ExpectShown({"DH", "250"});
        ExpectShown({"RA", value == nullptr ? "RA" : value}, value != nullptr);
        if (value != nullptr) {
            EXPECT_EQ(Picture::Find(value)->argb, argb) << value;
        }
    }
}

TEST_F(Eadi, ShowsSpeedDeviationNearTheSelectedSpeedOnly) {
    const struct {
        double selectedKt, indicatedKt;
        bool shown;
        double holdTargetKt = 0;
    } cases[] = {{163.9, 150, true}, {164, 150, false},      {137, 150, true},
                 {136, 150, false},  {40, 41, false},        {41, 40, false},
                 {1, 1, false},      {1, 150, true, 156},    {0, 150, false, 156},
                 {kNan, 150, false}, {150, kInfinity, false}};
    for (const auto& c : cases) {
        aircraft.apSpeed115 = c.selectedKt;
        aircraft.apAirspeedTargetKt = c.holdTargetKt;
        aircraft.indicatedAirspeedKt = c.indicatedKt;
        Draw();
        ExpectShown({"F", "S"}, c.shown);
    }
}

}  // namespace
}  // namespace avq1
