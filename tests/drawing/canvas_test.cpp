#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include "drawing/fixed_text.h"
#include "drawing/palette.h"
#include "drawing/surface.h"
#include "support/leak_suppressions.h"
#include "support/picture.h"

namespace avq1 {
namespace {

using test::Picture;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr std::uint32_t kRed = 0xFFFF0000;

TEST(Canvas, ContextsThatCannotBeUsedDrawNothing) {
    void (*const faults[])(PixelDeviceContext&) = {
        [](PixelDeviceContext& c) { c.size = 8; },
        [](PixelDeviceContext& c) { c.width = 0; },
        [](PixelDeviceContext& c) { c.height = -40; },
        [](PixelDeviceContext& c) { c.bytesPerRow -= 4; },  // rows too short
        [](PixelDeviceContext& c) { c.bytesPerRow += 2; },  // rows of half pixels
        [](PixelDeviceContext& c) { c.width = 0x7FFFFFFF; },
        [](PixelDeviceContext& c) { c.pixels = nullptr; },
    };
    for (std::size_t i = 0; i < std::size(faults); ++i) {
        Picture picture(40, 40);
        faults[i](picture.context());
        Canvas canvas(&picture.context(), 40, 40);
        EXPECT_FALSE(canvas.IsOpen()) << i;
        canvas.Clear(kRed);
        canvas.FillRectangle(kRed, 0, 0, 40, 40);
        canvas.DrawText("X", {}, kRed, 5, 5);
        canvas.RestoreState();
        EXPECT_NE(canvas.LastStatus(), 0) << i;
        EXPECT_TRUE(picture.IsClear()) << i;
        EXPECT_TRUE(Picture::Texts().empty()) << i;
    }
    Canvas none(nullptr, 40, 40);
    EXPECT_GT(none.MeasureText("A", {}).width, 0);
}

TEST(Canvas, ClearReplacesAlphaPremultipliedWhateverClipAndTransformSay) {
    Picture picture(10, 4, kRed);
    Canvas canvas(&picture.context(), 10, 4);
    canvas.Scale(0.1, 0.1);
    canvas.ClipRectangle(0, 0, 1, 1);
    canvas.EndClip();
    canvas.Clear(0x80FF0000);
    for (const std::uint32_t pixel : picture.pixels()) {
        EXPECT_EQ(pixel, 0x80800000u);
    }
}

TEST(Canvas, OneUnusableValueDrawsNothingAndSpoilsNothing) {
    constexpr CanvasPen kPen{kRed, 2};
    constexpr double kBadDashes[] = {0, 0};
    for (const double bad : {kNan, kInfinity, -kInfinity}) {
        Picture picture(24, 24);
        Canvas canvas(&picture.context(), 24, 24);
        const CanvasPoint points[] = {{1, 1}, {bad, 5}, {9, 19}};
        canvas.DrawLine(kPen, 0, 0, bad, 20);
        canvas.DrawLine({kRed, bad}, 0, 0, 20, 20);
        canvas.DrawLine({kRed, 1, kBadDashes}, 0, 0, 20, 20);
        canvas.DrawPolyline(kPen, points, true);
        canvas.FillPolygon(kRed, points);
        canvas.FillRectangle(kRed, 1, 1, bad, 5);
        canvas.DrawRectangle(kPen, 1, bad, 9, 5);
        canvas.FillEllipse(kRed, 1, 1, 9, bad);
        canvas.FillEllipse(kRed, 1, 1, 9, 0);
        canvas.DrawArc(kPen, {1, 1}, {9, 9}, bad, 90);
        canvas.DrawText("AB", {}, kRed, bad, 3);
        canvas.DrawText("AB", {"Arial", bad}, kRed, 3, 3);
        canvas.SaveState();
        canvas.Rotate(bad);
        canvas.FillRectangle(kRed, 0, 0, 20, 20);
        canvas.DrawText("AB", {}, kRed, 3, 3);
        canvas.RestoreState();
        canvas.SaveState();
        canvas.Scale(0, 1);
        canvas.FillRectangle(kRed, 0, 0, 20, 20);
        canvas.RestoreState();
        EXPECT_TRUE(picture.IsClear()) << bad;
        EXPECT_TRUE(Picture::Texts().empty()) << bad;
        canvas.DrawLine(kPen, 0, 12, 24, 12);
        EXPECT_EQ(picture.At(12, 12), kRed) << bad;
    }
}

TEST(Canvas, LevelAndUprightHairlinesFillOneRowOfPixels) {
    for (const double y : {5.0, 5.3, 5.9}) {
        Picture picture(20, 20);
        Canvas canvas(&picture.context(), 20, 20);
        canvas.DrawLine({kRed, 1}, 0, y, 20, y);
        EXPECT_EQ(picture.At(10, 5), kRed) << y;
        EXPECT_EQ(picture.At(10, 4), 0u) << y;
        EXPECT_EQ(picture.At(10, 6), 0u) << y;
    }
}

TEST(Canvas, ARectangleTurnsWithItsPlace) {
    Picture picture(20, 20);
    Canvas canvas(&picture.context(), 20, 20);
    canvas.Rotate(90);
    canvas.DrawRectangle({kRed, 2}, 5, -15, 10, 6);
    for (const auto& [x, y] : {std::pair{9, 10}, {15, 10}, {12, 5}, {12, 15}}) {
        EXPECT_TRUE(test::IsColour(picture.At(x, y), kRed)) << x << ' ' << y;
    }
    EXPECT_EQ(picture.At(12, 10), 0u);
}

TEST(Canvas, ALineToAFarPlaceKeepsItsDirection) {
    for (const double far : {1.0e4, 3.0e6, 1.0e12}) {
        Picture picture(64, 64);
        Canvas canvas(&picture.context(), 64, 64);
        canvas.DrawLine({kRed, 1.5}, 0, 0, far, far / 2);
        const CanvasPoint bent[] = {{-far, 60}, {64, 60}};
        canvas.DrawPolyline({kRed, 2}, bent, false);
        EXPECT_TRUE(test::IsColour(picture.At(40, 20), kRed)) << far;
        EXPECT_EQ(picture.At(40, 30), 0u) << far;
        EXPECT_TRUE(test::IsColour(picture.At(30, 60), kRed)) << far;
    }
}

TEST(Canvas, StateIsNestedAndMissingSavesAreHarmless) {
    Picture picture(20, 20);
    {
        Canvas canvas(&picture.context(), 20, 20);
        canvas.RestoreState();
        canvas.SaveState();
        canvas.Translate(100, 0);
        canvas.SaveState();
        canvas.ClipEllipse(0, 0, 4, 4);
        canvas.EndClip();
    }
    Canvas next(&picture.context(), 20, 20);  // starts clean whatever the last one left
    next.FillRectangle(kRed, 0, 0, 20, 20);
    EXPECT_EQ(picture.At(0, 0), kRed);
    EXPECT_EQ(picture.At(19, 19), kRed);
}

TEST(CanvasText, IsLatin1AndReportedAsUtf8) {
    const std::pair<std::string, std::string> cases[] = {
        {"45\xB0", "45\xC2\xB0"},
        {"\xE9\xFF", "\xC3\xA9\xC3\xBF"},
        {std::string("A\0B\n\x85", 5), "A B  "},
    };
    for (const auto& [text, reported] : cases) {
        Picture picture(100, 30);
        Canvas canvas(&picture.context(), 100, 30);
        canvas.DrawText(std::string(1000, '\xC0'), {}, colour::White, 2, 2);
        canvas.DrawText(text, {}, colour::White, 2, 2);
        EXPECT_EQ(canvas.LastStatus(), 0);
        ASSERT_EQ(Picture::Texts().size(), 2u);
        EXPECT_EQ(Picture::Texts()[1].text, reported);
    }
}

TEST(CanvasText, OffThePictureOrClippedAwayIsNotReported) {
    Picture picture(100, 100);
    Canvas canvas(&picture.context(), 100, 100);
    canvas.DrawText("OUTSIDE", {}, colour::White, 150, 10);
    canvas.DrawText("", {}, colour::White, 10, 10);
    canvas.ClipRectangle(0, 50, 100, 50);
    canvas.EndClip();
    canvas.DrawText("CLIPPED", {}, colour::White, 10, 10);
    EXPECT_TRUE(Picture::Texts().empty());
    canvas.DrawText("SHOWN", {}, colour::White, 10, 60);
    EXPECT_TRUE(Picture::Shows("SHOWN"));
}

TEST(CanvasText, MeasuresScaleWithTheFontAndIgnoreTheTransform) {
    Picture picture(100, 100);
    Canvas canvas(&picture.context(), 100, 100);
    const CanvasSize small = canvas.MeasureText("CRS 123", {"Arial", 10});
    canvas.Scale(3, 3);
    const CanvasSize large = canvas.MeasureText("CRS 123", {"Arial", 20});
    EXPECT_NEAR(large.width, 2 * small.width, 1e-9);
    EXPECT_NEAR(large.height, 2 * small.height, 1e-9);
    EXPECT_NEAR(small.height, 11.5, 0.5);  // Arial's line box is 1.15 times its size
    const CanvasSize variant = canvas.MeasureText("CRS 123", {"HW Arial", 10});
    EXPECT_EQ(variant.width, small.width);
    // a typewriter face: every letter 0.6 of the size
    EXPECT_NEAR(canvas.MeasureText("iiiiiiiiii", {"Courier New", 10}).width, 60, 0.2);
}

TEST(CanvasText, StandsBelowItsTopLeftCorner) {
    Picture picture(60, 60);
    Canvas canvas(&picture.context(), 60, 60);
    canvas.DrawText("H", {"Arial", 40}, kRed, 10, 8);
    int top = 60;
    int bottom = 0;
    for (int i = 0; i < 60 * 60; ++i) {
        if (picture.At(i % 60, i / 60) != 0) {
            top = std::min(top, i / 60);
            bottom = i / 60;
        }
    }
    // capitals rise 0.72 of the size above the baseline, which lies 0.905 of it below the top
    EXPECT_NEAR(top, 8 + 40 * (0.905 - 0.72), 2);
    EXPECT_NEAR(bottom, 8 + 40 * 0.905, 2);
}

TEST(DrawingLibrary, ScreensGoOnAfterAStopAndWithMorePicturesThanTheCacheHolds) {
    const std::uintptr_t token = StartDrawingLibrary();
    EXPECT_NE(token, 0u);
    std::vector<std::unique_ptr<Picture>> pictures;
    for (int i = 0; i < 150; ++i) {
        pictures.push_back(std::make_unique<Picture>(12, 12));
    }
    for (int round = 0; round < 2; ++round) {
        for (const auto& picture : pictures) {
            Canvas canvas(&picture->context(), 12, 12);
            canvas.Clear(colour::Clear);
            canvas.FillRectangle(kRed, 2, 2, 4, 4);
            canvas.DrawText("A", {}, kRed, 0, 0);
            EXPECT_EQ(picture->At(3, 3), kRed);
        }
        StopDrawingLibrary(token);
    }
}

TEST(FixedTextTest, CutsWhatDoesNotFit) {
    EXPECT_EQ(std::string_view(FixedText("%.1f", 1e60)).size(), 31u);
}

}  // namespace
}  // namespace avq1
