#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
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

// ---- shapes, one row of pixels as how much of each is covered, of 9 ----
std::string RowOf(const Picture& picture, int y) {
    std::string row;
    for (int x = 0; x < picture.width(); ++x) {
        const std::uint32_t alpha = picture.At(x, y) >> 24;
        row += alpha == 0 ? '.' : static_cast<char>('0' + alpha * 9 / 255);
    }
    return row;
}

struct ShapeRow {
    const char* what;
    void (*draw)(Canvas& canvas);
    int y;
    const char* covered;
};

constexpr double kDashes[] = {3, 2};
constexpr double kOddDashes[] = {2, 1, 1};
constexpr CanvasPen kWide{kRed, 2};

constexpr ShapeRow kShapes[] = {
    {"parts of pixels", [](Canvas& c) { c.FillRectangle(kRed, 2.25, 0, 5.25, 9); }, 4,
     "..699994........"},
    {"half a row", [](Canvas& c) { c.FillRectangle(kRed, 2, 4.5, 3, 2); }, 4, "..444..........."},
    {"beyond every edge", [](Canvas& c) { c.FillRectangle(kRed, -900, -900, 1800, 1800); }, 9,
     "9999999999999999"},
    {"to the right edge", [](Canvas& c) { c.FillRectangle(kRed, 14.5, 0, 1.5, 9); }, 4,
     "..............49"},
    {"from beyond the left edge",
     [](Canvas& c) {
         const CanvasPoint corners[] = {{-8, -2}, {8, 4}, {-8, 10}};
         c.FillPolygon(kRed, corners);
     },
     4, "99999851........"},
    {"turned the other way",
     [](Canvas& c) {
         const CanvasPoint corners[] = {{2, 0}, {2, 9}, {6, 9}, {6, 0}};
         c.FillPolygon(kRed, corners);
     },
     4, "..9999.........."},
    {"a hollow inside",
     [](Canvas& c) {
         const CanvasPoint corners[] = {{1, 0}, {9, 0}, {9, 9}, {1, 9}, {1, 0},
                                        {3, 1}, {3, 8}, {7, 8}, {7, 1}, {3, 1}};
         c.FillPolygon(kRed, corners);
     },
     4, ".99....99......."},
    {"half of it see-through", [](Canvas& c) { c.FillRectangle(0x80FF0000, 2, 0, 3, 9); }, 4,
     "..444..........."},
    {"without smoothing",
     [](Canvas& c) {
         c.SetAntialias(false);
         c.FillRectangle(kRed, 2.25, 0, 5.5, 9);
     },
     4, "..999999........"},
    {"lines over each other count once",
     [](Canvas& c) {
         const CanvasPoint ends[] = {{2, 4.5}, {9, 4.5}, {4, 4.5}, {7, 4.5}};
         c.DrawSegments({kRed, 1}, ends);
     },
     4, "..9999999......."},
    {"dashes",
     [](Canvas& c) {
         c.DrawLine({kRed, 2, kDashes}, 0, 4, 16, 4);
     },
     4, "999..999..999..9"},
    {"an odd number of dashes",
     [](Canvas& c) {
         c.DrawLine({kRed, 2, kOddDashes}, 0, 4, 16, 4);
     },
     4, "99.9..9.99.9..9."},
    {"dashes go round a corner",
     [](Canvas& c) {
         const CanvasPoint line[] = {{6, -2}, {6, 4}, {16, 4}};
         c.DrawPolyline({kRed, 2, kDashes}, line, false);
     },
     4, ".....999..999..9"},
    {"dashes end where a closed line began",
     [](Canvas& c) {
         const CanvasPoint box[] = {{2, 0}, {14, 0}, {14, 4}, {2, 4}};
         c.DrawPolyline({kRed, 2, kDashes}, box, true);
     },
     4, "..999..999..999."},
    {"ends square", [](Canvas& c) { c.DrawLine(kWide, 3, 4, 7, 4); }, 4, "...9999........."},
    {"a right corner is filled",
     [](Canvas& c) {
         const CanvasPoint line[] = {{3, 9}, {3, 5}, {9, 5}};
         c.DrawPolyline(kWide, line, false);
     },
     4, "..9999999......."},
    {"and so to the other side",
     [](Canvas& c) {
         const CanvasPoint line[] = {{12, 9}, {12, 5}, {6, 5}};
         c.DrawPolyline(kWide, line, false);
     },
     4, "......9999999..."},
    {"a closed line's corners too",
     [](Canvas& c) {
         const CanvasPoint box[] = {{3, 5}, {9, 5}, {9, 12}, {3, 12}};
         c.DrawPolyline(kWide, box, true);
     },
     4, "..99999999......"},
    {"a point of the line twice",
     [](Canvas& c) {
         const CanvasPoint line[] = {{3, 4}, {5, 4}, {5, 4}, {8, 4}};
         c.DrawPolyline(kWide, line, false);
     },
     4, "...99999........"},
    {"a sharp corner is pointed",
     [](Canvas& c) {
         const CanvasPoint line[] = {{0, 1}, {8, 5}, {0, 9}};
         c.DrawPolyline(kWide, line, false);
     },
     4, "...03799730....."},
    {"the sharpest are blunt",
     [](Canvas& c) {
         const CanvasPoint line[] = {{0, 4}, {8, 4.2}, {0, 4.4}};
         c.DrawPolyline(kWide, line, false);
     },
     4, "999999990......."},
    {"a disc", [](Canvas& c) { c.FillEllipse(kRed, 2, 1, 8, 8); }, 4, "..89999998......"},
    {"a ring", [](Canvas& c) { c.DrawEllipse(kWide, 3, 1, 10, 7.99); }, 4, "..891......198.."},
    {"its right half only",
     [](Canvas& c) {
         c.DrawArc(kWide, {3, 1}, {10, 8}, -90, 180);
     },
     4, "...........198.."},
    {"and backwards",
     [](Canvas& c) {
         c.DrawArc(kWide, {3, 1}, {10, 8}, 90, -180);
     },
     4, "...........198.."},
    {"scaled more across than down",
     [](Canvas& c) {
         c.Scale(2, 1);
         c.DrawLine({kRed, 2}, 3, 0, 3.0001, 9);
     },
     4, "....9999........"},
    {"a round clip",
     [](Canvas& c) {
         c.ClipEllipse(3.5, 0, 9, 9);
         c.EndClip();
         c.FillRectangle(kRed, 0, 0, 16, 16);
     },
     4, "...4999999994..."},
    {"a clip in a clip, and out of both",
     [](Canvas& c) {
         c.FillRectangle(kRed, 0, 0, 1, 9);
         c.SaveState();
         c.ClipRectangle(3, 0, 9, 9);
         c.EndClip();
         c.SaveState();
         c.ClipEllipse(5, 0, 20, 9);
         c.EndClip();
         c.FillRectangle(kRed, 0, 0, 16, 2);
         c.RestoreState();
         c.FillRectangle(kRed, 0, 4, 8, 1);
         c.ClipRectangle(90, 0, 9, 9);
         c.EndClip();
         c.FillRectangle(kRed, 0, 0, 16, 16);
         c.RestoreState();
         c.FillRectangle(kRed, 15, 0, 1, 9);
     },
     4, "9..99999.......9"},
    {"a clip of lines and an arc",
     [](Canvas& c) {
         c.ClipLine(2, 0, 2, 9);
         c.ClipLine(8, 9, 8, 0);
         c.EndClip();
         c.FillRectangle(kRed, 0, 0, 16, 16);
         c.ResetClip();
         c.ClipArc({8, -4.5}, {6, 18}, -90, 180);
         c.EndClip();
         c.FillRectangle(kRed, 0, 0, 16, 16);
     },
     4, "..999999...999.."},
    {"a clip without an inside",
     [](Canvas& c) {
         c.EndClip();
         c.FillRectangle(kRed, 0, 0, 16, 16);
     },
     4, "................"},
};

TEST(CanvasShapes, CoverTheirPartOfEachPixel) {
    for (const int width : {16, 90, 700}) {  // nothing that was drawn before is left over
        for (const ShapeRow& row : kShapes) {
            Picture picture(width, 16);
            Canvas canvas(&picture.context(), width, 16);
            row.draw(canvas);
            EXPECT_EQ(RowOf(picture, row.y).substr(0, 16), row.covered)
                << row.what << ", " << width;
        }
    }
}

TEST(CanvasShapes, OfAnySizeEndAtTheRightEdge) {
    for (int width = 1; width <= 140; ++width) {
        Picture picture(width, 3);
        Canvas canvas(&picture.context(), width, 3);
        canvas.FillRectangle(kRed, 0, 0, width + 7, 3);
        canvas.DrawLine({0xFF00FF00, 1}, -5, 1.5, width + 5, 1.5);
        EXPECT_EQ(RowOf(picture, 0), std::string(static_cast<std::size_t>(width), '9'));
        EXPECT_EQ(picture.At(width - 1, 1), 0xFF00FF00);
        EXPECT_EQ(picture.At(width - 1, 2), kRed);
    }
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

// Letters are as heavy and stand where they should, whatever way they are turned.
TEST(CanvasText, TurnsAboutItsPlace) {
    struct Weight {
        double all = 0;
        double x = 0;
        double y = 0;
    };
    const auto weigh = [](double degrees, double size) {
        Picture picture(120, 120);
        Canvas canvas(&picture.context(), 120, 120);
        canvas.Translate(60, 60);
        canvas.Rotate(degrees);
        canvas.DrawText("8F\xC4", {"Arial", size, true}, kRed, 4, 8);
        Weight weight;
        for (int i = 0; i < 120 * 120; ++i) {
            const double part = (picture.At(i % 120, i / 120) >> 24) / 255.0;
            weight.all += part;
            weight.x += part * (i % 120 + 0.5 - 60);
            weight.y += part * (i / 120 + 0.5 - 60);
        }
        return Weight{weight.all, weight.x / weight.all, weight.y / weight.all};
    };
    for (const double size : {11.0, 30.0}) {
        const Weight upright = weigh(0, size);
        for (const double degrees : {37.0, 90.0, 180.0, 268.5}) {
            const Weight turned = weigh(degrees, size);
            const double turn = degrees * 3.14159265 / 180;
            EXPECT_NEAR(turned.all, upright.all, 0.08 * upright.all) << degrees;
            EXPECT_NEAR(turned.x, upright.x * std::cos(turn) - upright.y * std::sin(turn), 0.8);
            EXPECT_NEAR(turned.y, upright.x * std::sin(turn) + upright.y * std::cos(turn), 0.8);
        }
    }
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
