// The attitude display, read back from its picture and from the texts it draws.
#include "displays/eadi.h"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <set>

#include "base/module_state.h"
#include "displays/ehsi.h"
#include "drawing/palette.h"
#include "guidance/guidance_state.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/fake_simulator.h"
#include "support/leak_suppressions.h"

namespace avq1 {
namespace {

using test::FakeSimulator;
using test::IsColour;
using test::kInfinity;
using test::kNan;
using test::Picture;

constexpr int kWidth = 266;
constexpr int kHeight = 230;
constexpr int kCentreX = 129;
constexpr int kCentreY = 114;
constexpr std::uint32_t kSky = 0xFF0060C4;
constexpr std::uint32_t kGround = 0xFF946239;
constexpr CanvasSize kDesign{kWidth, kHeight};

class Eadi : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetModuleState();
        simulator_ = &FakeSimulator::Install();
        settings = Settings{};
        avionicsPower = 1;
        aircraft.headingMag = 10;
    }

    static std::unique_ptr<Picture> Draw(int scale = 1,
                                         DisplayDrawMode mode = DisplayDrawMode::Normal) {
        return test::DrawAt(DrawEadi, kDesign, scale, mode);
    }

    static std::set<std::string> DrawnTexts() {
        Draw();
        std::set<std::string> texts;
        for (const test::DrawnText& drawn : Picture::Texts()) {
            texts.insert(drawn.text);
        }
        return texts;
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

    FakeSimulator* simulator_ = nullptr;
};

// ---- annunciations ----

TEST_F(Eadi, AnnouncesModesOnlyWhileTheAutopilotIsOn) {
    struct Case {
        const char* name;
        bool master, heading, nav, approach, lnav, yawDamper, altitude, vnav;
        std::set<std::string> shown;
    };
    const Case cases[] = {
        {"off", false, true, true, true, true, true, true, true, {}},
        {"bare", true, false, false, false, false, false, false, false, {"AP"}},
        {"heading wins", true, true, true, false, false, false, false, false, {"AP", "HDG"}},
        {"nav", true, false, true, false, false, false, false, false, {"AP", "NAV"}},
        {"approach wins", true, false, false, true, true, false, false, false, {"AP", "APR"}},
        {"lnav", true, true, false, false, true, true, false, false, {"AP", "HDG", "LNAV", "YD"}},
        {"altitude", true, false, false, false, false, false, true, false, {"AP", "ALT"}},
        {"vnav holds", true, false, false, false, false, false, true, true, {"AP", "VNAV"}},
        {"vnav flies", true, false, false, false, false, false, false, true, {"AP"}},
    };
    const std::set<std::string> modes{"AP", "HDG", "NAV", "APR", "LNAV", "YD", "ALT", "VNAV"};
    for (const Case& c : cases) {
        aircraft.autopilotOn = c.master;
        aircraft.headingHoldOn = c.heading;
        aircraft.autopilotNav1Lock = c.nav;
        aircraft.approachHoldOn = c.approach;
        guidance.lnavEngaged = c.lnav;
        aircraft.yawDamperOn = c.yawDamper;
        aircraft.apAltitudeLockOn = c.altitude;
        guidance.vnavEngaged = c.vnav;
        std::set<std::string> shown;
        for (const std::string& text : DrawnTexts()) {
            if (modes.contains(text)) {
                shown.insert(text);
            }
        }
        EXPECT_EQ(shown, c.shown) << c.name;
    }
}

TEST_F(Eadi, AnnouncesAtTheirPlaces) {
    aircraft.autopilotOn = aircraft.headingHoldOn = aircraft.yawDamperOn = 1;
    guidance.lnavEngaged = 1;
    for (const int scale : {1, 2}) {
        Draw(scale);
        for (const auto& [text, x, y] : {std::tuple{"AP", -119, -114},
                                         {"HDG", -54, -114},
                                         {"LNAV", -54, -107},
                                         {"YD", -119, -94}}) {
            const test::DrawnText* const drawn = Picture::Find(text);
            ASSERT_NE(drawn, nullptr) << text;
            EXPECT_NEAR(drawn->x, scale * (kCentreX + x), 0.01) << text;
            EXPECT_NEAR(drawn->y, scale * (kCentreY + y), 0.01) << text;
        }
    }
}

TEST_F(Eadi, ShowsHeightsWithinTheirBounds) {
    struct Case {
        double heightFt;
        const char* value;  // null: hidden
    };
    for (const Case& c : {Case{-20.5, nullptr}, Case{-20, "  -20"}, Case{-0.3, "    0"},
                          Case{187, "  187"}, Case{2500, " 2500"}, Case{2501, nullptr},
                          Case{kNan, nullptr}, Case{kInfinity, nullptr}}) {
        aircraft.radioAltitudeFt = c.heightFt;
        ehsi.decisionHeight = 250;
        const std::set<std::string> texts = DrawnTexts();
        EXPECT_TRUE(texts.contains("DH") && texts.contains("250")) << c.heightFt;
        EXPECT_EQ(texts.contains("RA"), c.value != nullptr) << c.heightFt;
        EXPECT_TRUE(c.value == nullptr || texts.contains(c.value)) << c.heightFt;
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
        const std::set<std::string> texts = DrawnTexts();
        EXPECT_FALSE(texts.contains("OM") || texts.contains("MM") || texts.contains("IM")) << none;
    }
}

TEST_F(Eadi, ShowsSpeedDeviationNearTheSelectedSpeedOnly) {
    struct Case {
        double selectedKt, indicatedKt;
        std::optional<double> offset;  // of the pointer, down
        double holdTargetKt = 0;
    };
    for (const Case& c : {Case{150, 150, 0}, Case{163, 150, 52}, Case{163.9, 150, 52},
                          Case{164, 150, {}}, Case{137, 150, -52}, Case{136, 150, {}},
                          Case{40, 41, {}}, Case{41, 40, {}}, Case{1, 1, {}}, Case{1, 150, 24, 156},
                          Case{0, 150, {}, 156}, Case{kNan, 150, {}}, Case{150, kInfinity, {}}}) {
        aircraft.apSpeed115 = c.selectedKt;
        aircraft.apAirspeedTargetKt = c.holdTargetKt;
        aircraft.indicatedAirspeedKt = c.indicatedKt;
        const auto picture = Draw();
        EXPECT_EQ(Picture::Shows("F"), c.offset.has_value()) << c.selectedKt;
        EXPECT_EQ(Picture::Shows("S"), c.offset.has_value()) << c.selectedKt;
        const auto pointer = CentreOf(*picture, colour::Green, -121, -90, -103, 70);
        ASSERT_EQ(pointer.has_value(), c.offset.has_value()) << c.selectedKt;
        if (pointer) {
            EXPECT_NEAR(pointer->y, -11 + *c.offset, 1.0) << c.selectedKt;
        }
    }
}

TEST_F(Eadi, LabelsTheHeadingTape) {
    settings.EADIHdgTape = 1;
    const std::pair<double, std::set<std::string>> cases[] = {
        {0, {"N", "3", "33"}},    {359.9, {"N", "3", "33"}},      {45, {"N", "3", "6", "E"}},
        {180, {"S", "15", "21"}}, {285, {"24", "W", "30", "33"}}, {120, {"E", "12", "15"}}};
    for (const auto& [heading, labels] : cases) {
        aircraft.headingMag = heading;
        std::set<std::string> shown;
        for (const std::string& text : DrawnTexts()) {
            if (Picture::Find(text)->y > kCentreY + 90 && text != "DH" && text != "200" &&
                text != "RA" && text != "    0") {
                shown.insert(text);
            }
        }
        EXPECT_EQ(shown, labels) << heading;
    }
}

// ---- geometry ----

TEST_F(Eadi, HorizonFollowsPitchAndBank) {
    struct Case {
        double pitchDown, bankLeft;
    };
    for (const Case& c :
         {Case{0, 0}, Case{-5, 0}, Case{8, 0}, Case{0, 20}, Case{0, -30}, Case{-6, 15}}) {
        aircraft.pitch = c.pitchDown;
        aircraft.bank = c.bankLeft;
        const auto picture = Draw();
        const double tangent = std::tan(c.bankLeft * 0.017453292519943295);
        const double drop = -3.8 * c.pitchDown * std::sqrt(1 + tangent * tangent);
        for (const int x : {-90, 90}) {
            EXPECT_NEAR(HorizonAt(*picture, x), drop + x * tangent, 2.5)
                << c.pitchDown << " " << c.bankLeft << " at " << x;
        }
        EXPECT_TRUE(IsColour(picture->At(kCentreX - 95, kCentreY - 90), kSky, 20));
        EXPECT_TRUE(IsColour(picture->At(kCentreX + 50, kCentreY + 80), kGround, 20));
    }
}

TEST_F(Eadi, LayoutFollowsSettingsAndLnav) {
    struct Case {
        int expand, expandWithLnav, lnav;
        bool expanded;
    };
    for (const Case& c :
         {Case{0, 0, 1, false}, Case{1, 0, 0, true}, Case{0, 1, 0, false}, Case{0, 1, 1, true}}) {
        settings.ExpandEADI = c.expand;
        settings.ExpandEADILnav = c.expandWithLnav;
        guidance.lnavEngaged = c.lnav;
        aircraft.bank = 40;
        aircraft.radioAltitudeFt = 3000;
        const auto picture = Draw();
        const int left = c.expanded ? -124 : -99;
        const int right = c.expanded ? 124 : 99;
        const int top = c.expanded ? -114 : -94;
        const int bottom = c.expanded ? 113 : 88;
        int outside = 0;
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const bool world = IsColour(picture->At(x, y), kSky, 12) ||
                                   IsColour(picture->At(x, y), kGround, 12);
                outside += world && (x < kCentreX + left || x >= kCentreX + right ||
                                     y < kCentreY + top || y >= kCentreY + bottom);
            }
        }
        EXPECT_EQ(outside, 0);
        for (const int y : {top + 2, -40, 40}) {
            EXPECT_TRUE(IsColour(picture->At(kCentreX + right - 2, kCentreY + y), kSky, 12) ||
                        IsColour(picture->At(kCentreX + right - 2, kCentreY + y), kGround, 12))
                << c.expand << c.expandWithLnav << c.lnav << " row " << y;
        }
    }
}

TEST_F(Eadi, DeviationPointersStandAtTheirNeedles) {
    simulator_->variables[46] = 0xC0;
    for (const double needle : {-100.0, -40.0, 0.0, 60.0, 110.0}) {
        aircraft.nav1CdiNeedle = needle;
        aircraft.nav1GlideslopeNeedle = needle;
        const auto picture = Draw();
        EXPECT_TRUE(Picture::Shows("LOC"));
        const auto localizer = CentreOf(*picture, colour::Magenta, -98, 73, 98, 87);
        const auto glideslope = CentreOf(*picture, colour::Magenta, 104, -90, 120, 70);
        ASSERT_TRUE(localizer && glideslope);
        EXPECT_NEAR(localizer->x, needle * 0.6493506493506493, 1.0);
        EXPECT_NEAR(glideslope->y, needle * 0.5 - 11, 1.0);
    }
    simulator_->variables[46] = 0x40;
    Draw();
    EXPECT_FALSE(Picture::Shows("LOC"));
}

TEST_F(Eadi, FlightDirectorShowsWhereToFly) {
    for (const int dualCue : {0, 1}) {
        settings.EadiDualCue = dualCue;
        aircraft.pitch = -2;
        aircraft.bank = 5;
        simulator_->variables[792] = 0;
        EXPECT_FALSE(CentreOf(*Draw(), colour::Magenta, -70, -70, 70, 70)) << dualCue;
        simulator_->variables[792] = 1;
        aircraft.flightDirectorPitch = -2;
        aircraft.flightDirectorBank = 5;
        const auto flown = CentreOf(*Draw(), colour::Magenta, -70, -70, 70, 70);
        aircraft.flightDirectorPitch = -7;  // 5 degrees up
        const auto up = CentreOf(*Draw(), colour::Magenta, -70, -70, 70, 70);
        ASSERT_TRUE(flown && up);
        EXPECT_LT(up->y, flown->y - 5) << dualCue;
        aircraft.flightDirectorPitch = -2;
        aircraft.flightDirectorBank = 20;  // to the left
        const auto leftSide = CentreOf(*Draw(), colour::Magenta, -70, -70, -2, 70);
        const auto rightSide = CentreOf(*Draw(), colour::Magenta, 2, -70, 70, 70);
        if (dualCue == 1) {
            EXPECT_LT(CentreOf(*Draw(), colour::Magenta, -70, 20, 70, 70)->x, -20);
        } else {
            EXPECT_GT(leftSide->y, rightSide->y + 10);
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
    struct Case {
        double AircraftState::*value;
        const char* flag;
    };
    for (const Case& c :
         {Case{&AircraftState::bank, "ATT"}, Case{&AircraftState::pitch, "ATT"},
          Case{&AircraftState::flightDirectorBank, "FD"}, Case{&AircraftState::headingMag, "HDG"},
          Case{&AircraftState::nav1GlideslopeNeedle, "GS"}}) {
        EXPECT_FALSE(DrawnTexts().contains(c.flag));
        for (const double nonsense : {kNan, kInfinity, -kInfinity}) {
            aircraft.*c.value = nonsense;
            const auto picture = Draw();
            EXPECT_TRUE(Picture::Shows(c.flag));
            EXPECT_EQ(Picture::Find(c.flag)->argb,
                      std::string_view(c.flag) == "FD" ? colour::Amber : colour::Red);
            EXPECT_EQ(picture->pixels(), Draw()->pixels());
            const bool noSky = !CentreOf(*picture, kSky, -99, -94, 98, -40);
            EXPECT_EQ(noSky, std::string_view(c.flag) == "ATT");
        }
        aircraft.*c.value = 0;
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
        for (const double heading : {0.0, 15.0, 44.0, 284.0}) {
            aircraft.headingMag = heading;
            Draw();
            test::ExpectTextsApart(
                kDesign, true, "pitch " + std::to_string(pitch) + " bank " + std::to_string(bank));
        }
    }
}

}  // namespace
}  // namespace avq1
