// The attitude display, read back from its picture and from the texts it draws.
#include "displays/eadi/eadi.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "displays/ehsi/ehsi.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/leak_suppressions.h"

namespace avq1 {
namespace {

using test::IsColour;
using test::kInfinity;
using test::kNan;
using test::Picture;

constexpr int kCentreX = 129;
constexpr int kCentreY = 114;
constexpr std::uint32_t kSky = 0xFF0060C4;
constexpr std::uint32_t kGround = 0xFF946239;
constexpr CanvasSize kDesign{266, 230};

class Eadi : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        aircraft.headingMag = 10;
    }

    static std::unique_ptr<Picture> Draw() { return test::DrawAt(DrawEadi, kDesign); }

    // The texts the picture shows, of those asked for.
    static std::set<std::string> DrawnOf(std::set<std::string> texts) {
        Draw();
        std::erase_if(texts, [](const std::string& text) { return !Picture::Shows(text); });
        return texts;
    }

    static bool IsWorld(const Picture& picture, int x, int y) {
        const std::uint32_t pixel = picture.At(kCentreX + x, kCentreY + y);
        return IsColour(pixel, kSky, 12) || IsColour(pixel, kGround, 12);
    }

    // The centre of a colour's pixels in a part of the design, from the figure's centre.
    static std::optional<CanvasPoint> CentreOf(const Picture& picture, std::uint32_t argb, int left,
                                               int top, int right, int bottom) {
        double sumX = 0;
        double sumY = 0;
        int count = 0;
        for (int y = top; y <= bottom; ++y) {
            for (int x = left; x <= right; ++x) {
                if (IsColour(picture.At(kCentreX + x, kCentreY + y), argb, 40)) {
                    sumX += x + 0.5;
                    sumY += y + 0.5;
                    ++count;
                }
            }
        }
        return count == 0 ? std::nullopt : std::optional(CanvasPoint{sumX / count, sumY / count});
    }

    // Where the ground begins in a column, from the figure's centre; `x` likewise.
    static double HorizonAt(const Picture& picture, int x) {
        int y = -94;
        while (y < 88 && !IsColour(picture.At(kCentreX + x, kCentreY + y), kGround, 25)) {
            ++y;
        }
        return y;
    }
};

// ---- annunciations ----

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

TEST_F(Eadi, ShowsMarkerBeaconsInTheirColours) {
    const std::tuple<double, const char*, std::uint32_t> cases[] = {
        {1, "OM", colour::Cyan}, {2, "MM", colour::Amber}, {3, "IM", colour::White}};
    for (const auto& [value, text, argb] : cases) {
        aircraft.markerBeacon = value;
        Draw();
        ASSERT_TRUE(Picture::Shows(text));
        EXPECT_EQ(Picture::Find(text)->argb, argb);
    }
    for (const double none : {0.0, 4.0, kNan}) {
        aircraft.markerBeacon = none;
        EXPECT_EQ(DrawnOf({"OM", "MM", "IM"}), std::set<std::string>{}) << none;
    }
}

TEST_F(Eadi, ShowsSpeedDeviationNearTheSelectedSpeedOnly) {
    struct Case {
        double selectedKt, indicatedKt;
        std::optional<double> offset;  // of the pointer, down
        double holdTargetKt = 0;
    };
    for (const Case& c :
         {Case{163.9, 150, 52}, Case{164, 150, {}}, Case{137, 150, -52}, Case{136, 150, {}},
          Case{40, 41, {}}, Case{41, 40, {}}, Case{1, 1, {}}, Case{1, 150, 24, 156},
          Case{0, 150, {}, 156}, Case{kNan, 150, {}}, Case{150, kInfinity, {}}}) {
        aircraft.apSpeed115 = c.selectedKt;
        aircraft.apAirspeedTargetKt = c.holdTargetKt;
        aircraft.indicatedAirspeedKt = c.indicatedKt;
        const auto picture = Draw();
        EXPECT_EQ(Picture::Shows("F") && Picture::Shows("S"), c.offset.has_value()) << c.selectedKt;
        if (c.offset) {
            EXPECT_LT(Picture::Find("F")->y, Picture::Find("S")->y - 100);
        }
        const auto pointer = CentreOf(*picture, colour::Green, -121, -90, -103, 70);
        ASSERT_EQ(pointer.has_value(), c.offset.has_value()) << c.selectedKt;
        EXPECT_NEAR(pointer ? pointer->y : -11, -11 + c.offset.value_or(0), 1) << c.selectedKt;
    }
}

TEST_F(Eadi, LabelsTheHeadingTape) {
    settings.EADIHdgTape = 1;
    const std::pair<double, std::set<std::string>> cases[] = {
        {359.9, {"N", "3", "33"}}, {45, {"N", "3", "6", "E"}}, {285, {"24", "W", "30", "33"}}};
    for (const auto& [heading, labels] : cases) {
        aircraft.headingMag = heading;
        EXPECT_EQ(DrawnOf({"N", "3", "6", "E", "12", "15", "S", "21", "24", "W", "30", "33"}),
                  labels)
            << heading;
    }
}

// ---- geometry ----

TEST_F(Eadi, HorizonFollowsPitchAndBank) {
    for (const auto& [pitchDown, bankLeft] : {std::pair{-5, 0}, {8, 0}, {0, 20}, {-6, -30}}) {
        aircraft.pitch = pitchDown;
        aircraft.bank = bankLeft;
        const auto picture = Draw();
        const double tangent = std::tan(bankLeft * 0.017453292519943295);
        const double drop = -3.8 * pitchDown * std::sqrt(1 + tangent * tangent);
        for (const int x : {-90, 90}) {
            EXPECT_NEAR(HorizonAt(*picture, x), drop + x * tangent, 2.5)
                << pitchDown << " " << bankLeft << " at " << x;
        }
        EXPECT_TRUE(IsColour(picture->At(kCentreX - 95, kCentreY - 90), kSky, 20));
        EXPECT_TRUE(IsColour(picture->At(kCentreX + 50, kCentreY + 80), kGround, 20));
    }
}

TEST_F(Eadi, LayoutFollowsSettingsAndLnav) {
    aircraft.bank = 40;
    aircraft.radioAltitudeFt = 3000;
    for (const auto& [expand, expandWithLnav, lnav, expanded] :
         {std::tuple{0, 0, 1, false}, {1, 0, 0, true}, {0, 1, 0, false}, {0, 1, 1, true}}) {
        settings.ExpandEADI = expand;
        settings.ExpandEADILnav = expandWithLnav;
        guidance.lnavEngaged = lnav;
        const auto picture = Draw();
        for (const int y : {-40, 40}) {
            EXPECT_TRUE(IsWorld(*picture, 97, y)) << y;
            EXPECT_EQ(IsWorld(*picture, 122, y), expanded) << y;
            EXPECT_FALSE(IsWorld(*picture, 124, y)) << y;
        }
        EXPECT_EQ(IsWorld(*picture, 60, -112), expanded);
        EXPECT_EQ(IsWorld(*picture, 60, 111), expanded);
    }
}

TEST_F(Eadi, DeviationPointersStandAtTheirNeedles) {
    simulator_->variables[46] = 0xC0;
    for (const double needle : {-40.0, 110.0, 300.0}) {
        aircraft.nav1CdiNeedle = needle;
        aircraft.nav1GlideslopeNeedle = needle;
        const auto picture = Draw();
        EXPECT_TRUE(Picture::Shows("LOC"));
        const auto localizer = CentreOf(*picture, colour::Magenta, -98, 73, 98, 87);
        const auto glideslope = CentreOf(*picture, colour::Magenta, 104, -90, 120, 70);
        ASSERT_TRUE(localizer && glideslope);
        EXPECT_NEAR(localizer->x, std::min(needle, 127.0) * 0.6493506493506493, 1.0);
        EXPECT_NEAR(glideslope->y, std::min(needle, 120.0) * 0.5 - 11, 1.0);
    }
    simulator_->variables[46] = 0x80;
    EXPECT_FALSE(CentreOf(*Draw(), colour::Magenta, 104, -90, 120, 70));
    simulator_->variables[46] = 0x40;
    EXPECT_TRUE(CentreOf(*Draw(), colour::Magenta, 104, -90, 120, 70));
    EXPECT_FALSE(Picture::Shows("LOC"));
}

TEST_F(Eadi, FlightDirectorShowsWhereToFly) {
    for (const int dualCue : {0, 1}) {
        settings.EadiDualCue = dualCue;
        aircraft.pitch = -2;
        aircraft.bank = 5;
        simulator_->variables[792] = 0;
        const auto centreOf = [](int left, int top, int right) {
            return CentreOf(*Draw(), colour::Magenta, left, top, right, 70);
        };
        EXPECT_FALSE(centreOf(-70, -70, 70)) << dualCue;
        simulator_->variables[792] = 1;
        aircraft.flightDirectorPitch = -2;
        aircraft.flightDirectorBank = 5;
        const auto flown = centreOf(-70, -70, 70);
        aircraft.flightDirectorPitch = -7;  // 5 degrees up
        const auto up = centreOf(-70, -70, 70);
        ASSERT_TRUE(flown && up);
        EXPECT_LT(up->y, flown->y - 5) << dualCue;
        aircraft.flightDirectorPitch = -2;
        aircraft.flightDirectorBank = 20;  // to the left
        if (dualCue == 1) {
            EXPECT_LT(centreOf(-70, 20, 70)->x, -20);
        } else {
            EXPECT_GT(centreOf(-70, -70, -2)->y, centreOf(2, -70, 70)->y + 10);
        }
    }
}

// ---- nothing to show, and nonsense ----

TEST_F(Eadi, ClearsWithoutPowerAndWhenAskedTo) {
    test::ExpectDrawsOnlyWhenAsked(DrawEadi);
}

TEST_F(Eadi, FlagsWhatIsNotANumber) {
    settings.EADIHdgTape = 1;
    simulator_->variables[46] = 0xC0;
    simulator_->variables[792] = 1;
    const std::pair<double AircraftState::*, std::string> cases[] = {
        {&AircraftState::bank, "ATT"},
        {&AircraftState::pitch, "ATT"},
        {&AircraftState::flightDirectorBank, "FD"},
        {&AircraftState::headingMag, "HDG"},
        {&AircraftState::nav1GlideslopeNeedle, "GS"}};
    for (const auto& [value, flag] : cases) {
        EXPECT_TRUE(DrawnOf({flag}).empty());
        for (const double nonsense : {kNan, kInfinity}) {
            aircraft.*value = nonsense;
            const auto picture = Draw();
            ASSERT_TRUE(Picture::Shows(flag));
            EXPECT_EQ(Picture::Find(flag)->argb, flag == "FD" ? colour::Amber : colour::Red);
            EXPECT_EQ(!CentreOf(*picture, kSky, -99, -94, 98, -40), flag == "ATT");
        }
        aircraft.*value = 0;
    }
    for (const double huge : {1e9, -1e300}) {
        aircraft.pitch = aircraft.bank = aircraft.headingMag = huge;
        aircraft.nav1CdiNeedle = aircraft.flightDirectorPitch = huge;
        EXPECT_FALSE(Draw()->IsClear());
    }
}

TEST_F(Eadi, TextsKeepClearOfEachOther) {
    settings.EADIHdgTape = 1;
    aircraft.autopilotOn = aircraft.headingHoldOn = aircraft.yawDamperOn = 1;
    aircraft.apAltitudeLockOn = guidance.lnavEngaged = guidance.vnavEngaged = 1;
    aircraft.markerBeacon = 2;
    aircraft.radioAltitudeFt = 2500;
    aircraft.apSpeed115 = aircraft.indicatedAirspeedKt = 150;
    ehsi.decisionHeight = 2500;
    simulator_->variables[46] = 0xC0;
    for (const auto& [pitch, bank] : {std::pair{0, 0}, {-10, 30}, {12, -25}, {-20, 60}}) {
        aircraft.pitch = pitch;
        aircraft.bank = bank;
        aircraft.headingMag = 44 + bank;
        Draw();
        test::ExpectTextsApart(kDesign, true, "bank " + std::to_string(bank));
    }
}

}  // namespace
}  // namespace avq1
