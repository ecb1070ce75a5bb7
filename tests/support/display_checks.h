// tests/support/display_checks.h - what every display must keep to, and angles measured back from
// its pixels. Points and radii are design pixels of a picture drawn at `scale`.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <limits>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/module_state.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/predictions.h"
#include "guidance/vnav.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"
#include "support/fake_simulator.h"
#include "support/picture.h"

namespace avq1::test {

inline constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNonsense[] = {kNan, kInfinity, -kInfinity, 1e300, -1e300};

// A display with power and nothing to show.
class DisplayTest : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetModuleState();
        simulator_ = &FakeSimulator::Install();
        avionicsPower = 1;
    }

    void SetNav1(bool signal) {
        simulator_->variables[49] = simulator_->variables[852] = signal ? 1 : 0;
    }

    using TextList = std::initializer_list<const char*>;
    static void ExpectShown(TextList texts, bool shown = true) {
        for (const char* text : texts) {
            EXPECT_EQ(Picture::Shows(text), shown) << text;
        }
    }

    FakeSimulator* simulator_ = nullptr;
};

// Plans the active plan so that it climbs on for some miles, and ends in a descent of others.
inline void PlanMarks(double climbNm, double descentNm) {
    performance.climbIas = 250;
    performance.climbTas = performance.descentTas = 300;
    performance.climbRate = 2000;
    const double cruiseFt = aircraft.altitudeFt + 400 * climbNm;
    performance.descentRate = 5 * cruiseFt / descentNm;
    activePlan.Edit(activePlan.lastIndex).altitude = 0;
    PlanVerticalProfile(cruiseFt, 0);
    RefreshPredictions();
}

using DrawDisplay = void (*)(const DrawTarget&);

// A display drawn at a multiple of its design.
inline std::unique_ptr<Picture> DrawAt(DrawDisplay draw, const CanvasSize& design, int scale = 1,
                                       DisplayDrawMode mode = DisplayDrawMode::Normal) {
    auto picture = std::make_unique<Picture>(static_cast<int>(design.width) * scale,
                                             static_cast<int>(design.height) * scale);
    draw(picture->Target(mode));
    return picture;
}

inline int CountTexts(std::string_view text) {
    const auto& texts = Picture::Texts();
    return static_cast<int>(std::count_if(
        texts.begin(), texts.end(), [&](const DrawnText& drawn) { return drawn.text == text; }));
}

// Draws in draw modes 1 and 3 only, and only with power.
inline void ExpectDrawsOnlyWhenAsked(DrawDisplay draw) {
    Picture picture(280, 262, 0xFF123456);
    draw(picture.Target(DisplayDrawMode::ClearOnly));
    EXPECT_TRUE(picture.IsClear());
    for (const DisplayDrawMode mode : {DisplayDrawMode::Normal, DisplayDrawMode::SecondCockpit}) {
        draw(picture.Target(mode));
        EXPECT_FALSE(picture.IsClear());
        avionicsPower = 0;
        Picture::Forget();
        draw(picture.Target(mode));
        EXPECT_TRUE(picture.IsClear());
        EXPECT_TRUE(Picture::Texts().empty());
        avionicsPower = 1;
    }
    draw({nullptr, 280, 262, DisplayDrawMode::Normal});
    draw({nullptr, 0, 0, DisplayDrawMode::Normal});
}

// Texts of the present picture lie inside it and keep clear of each other, as far as their capitals
// reach. Rose numbers are turned and left out.
inline void ExpectTextsApart(const CanvasSize& design, bool bold, const std::string& where) {
    static const std::set<std::string> kRose = {"N", "3",  "6",  "E", "12", "15",
                                                "S", "21", "24", "W", "30", "33"};
    struct Box {
        std::string text;
        double left, top, right, bottom;
    };
    Canvas measure(nullptr, 0, 0);
    std::vector<Box> boxes;
    for (const DrawnText& drawn : Picture::Texts()) {
        if (kRose.contains(drawn.text)) {
            continue;
        }
        const CanvasSize size = measure.MeasureText(drawn.text, {"Arial", drawn.pixelSize, bold});
        const Box box{drawn.text, drawn.x, drawn.y + 0.19 * drawn.pixelSize, drawn.x + size.width,
                      drawn.y + 0.92 * drawn.pixelSize};
        EXPECT_TRUE(box.left >= 0 && box.top >= 0 && box.right <= design.width &&
                    box.bottom <= design.height)
            << box.text << " leaves the screen, " << where;
        for (const Box& other : boxes) {
            EXPECT_TRUE(box.left >= other.right || other.left >= box.right ||
                        box.top >= other.bottom || other.top >= box.bottom)
                << box.text << " over " << other.text << ", " << where;
        }
        boxes.push_back(box);
    }
}

// Whatever the values, the present picture shows no nonsense number.
inline void ExpectNoNonsenseTexts() {
    constexpr std::size_t kLongest = 21;
    for (const DrawnText& drawn : Picture::Texts()) {
        EXPECT_EQ(drawn.text.find("nan"), std::string::npos) << drawn.text;
        EXPECT_EQ(drawn.text.find("inf"), std::string::npos) << drawn.text;
        EXPECT_LE(drawn.text.size(), kLongest) << drawn.text;
    }
}

// Mean direction, clockwise from straight up, of this colour's pixels between two radii; NaN
// without any.
inline double MeanDirection(const Picture& picture, const CanvasPoint& centre, double inner,
                            double outer, int scale, std::uint32_t argb, int tolerance = 60) {
    double sines = 0;
    double cosines = 0;
    const auto reach = [&](double middle) { return static_cast<int>((middle + outer) * scale); };
    for (int y = 0; y < std::min(reach(centre.y), picture.height()); ++y) {
        for (int x = 0; x < std::min(reach(centre.x), picture.width()); ++x) {
            const double dx = (x + 0.5) / scale - centre.x;
            const double dy = (y + 0.5) / scale - centre.y;
            const double radius = std::hypot(dx, dy);
            if (radius >= inner && radius <= outer && IsColour(picture.At(x, y), argb, tolerance)) {
                sines += dx / radius;
                cosines -= dy / radius;
            }
        }
    }
    return sines == 0 && cosines == 0 ? kNan : std::atan2(sines, cosines) * kRadToDeg;
}

inline double AngleBetween(double a, double b) {
    return std::abs(PositiveModulo(a - b + 180, 360) - 180);
}

inline bool HasColourNear(const Picture& picture, int scale, const CanvasPoint& at,
                          std::uint32_t argb) {
    for (int y = -1; y <= 1; ++y) {
        for (int x = -1; x <= 1; ++x) {
            if (IsColour(picture.At(static_cast<int>(at.x * scale) + x,
                                    static_cast<int>(at.y * scale) + y),
                         argb, 90)) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace avq1::test
