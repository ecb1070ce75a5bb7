// The airspace layer, read back from the texts and lines it draws.
#include "displays/boundaries.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "base/module_state.h"
#include "displays/ehsi.h"
#include "navdb/boundaries.h"
#include "simlink/aircraft_state.h"
#include "support/fake_simulator.h"
#include "support/picture.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::Picture;

constexpr std::uint32_t kBoundaryColour = 0xFF979700;

void PrepareAtOrigin() {
    ResetModuleState();
    test::FakeSimulator::Install();
    aircraft.latitude = 0;
    aircraft.longitude = 0;
}

// A boundary that begins `firstPointNm` north of the aircraft at 0/0 and passes near it.
AtcBoundary Reaching(const char* ident, double firstPointNm) {
    AtcBoundary boundary;
    boundary.ident = ident;
    boundary.name = "OCEANIC";
    boundary.points = {{firstPointNm / 60, 0}, {0.1, 0.1}};
    boundary.label = {0.1, 0};
    return boundary;
}

// On a map of 200 x 200 with the aircraft in the middle, 50 pixels for 20 nm.
void DrawLayer(Picture& picture, double circleRadius = 100, double bottom = 200) {
    Surface surface(picture.Target(), 200, 200);
    const MapView view = ViewFromAircraft(100, 100, 50, 20);
    TextBoxes texts;
    const MapFrame frame{surface, view, 20, {100, 100}, circleRadius, {0, 0, 200, bottom},
                         texts,   texts};
    DrawAtcBoundaries(frame);
    DrawAtcBoundaryNames(frame);
}

TEST(BoundaryLayer, LeavesOutWhatBeginsFarAway) {
    struct Case {
        const char* ident;
        double firstPointNm;
        bool drawn;
    };
    const Case cases[] = {
        {"KZBW", 10, true},      {"KZBW", 999, true},     {"KZBW", 1001, false},
        {"YM00142", 1200, true}, {"YB00001", 4999, true}, {"NZ00084", 5001, false},
        {"YM0014", 1200, false},
    };
    for (const Case& c : cases) {
        PrepareAtOrigin();
        atcBoundaries.loaded = true;
        atcBoundaries.items = {Reaching(c.ident, c.firstPointNm)};
        Picture picture(200, 200);
        DrawLayer(picture);
        EXPECT_EQ(Picture::Shows("OCE"), c.drawn) << c.ident << " at " << c.firstPointNm;
        EXPECT_EQ(picture.IsClear(), !c.drawn) << c.ident << " at " << c.firstPointNm;
    }
}

TEST(BoundaryLayer, PlacesOutlineAndNameByTheirDistance) {
    PrepareAtOrigin();
    atcBoundaries.loaded = true;
    AtcBoundary& boundary = atcBoundaries.items.emplace_back();
    boundary.ident = "KZBW";
    boundary.name = "BW";
    // 8 nm north of the aircraft, from 8 nm west to 8 nm east: 20 pixels with 50 for 20 nm.
    boundary.points = {{8.0 / 60, -8.0 / 60}, {8.0 / 60, 8.0 / 60}};
    boundary.label = {0, 12.0 / 60};
    Picture picture(200, 200);
    DrawLayer(picture);
    const test::DrawnText* name = Picture::Find("BW");
    ASSERT_NE(name, nullptr);
    EXPECT_NEAR(name->x, 100 + 30 - 15, 0.1);
    EXPECT_NEAR(name->y, 100, 0.6);
    EXPECT_EQ(name->argb, kBoundaryColour);
    EXPECT_EQ(name->pixelSize, 14);
    const auto isLine = [&](int x, int y) { return picture.At(x, y) != 0; };
    EXPECT_TRUE(isLine(100, 79) || isLine(100, 80));
    EXPECT_TRUE(isLine(85, 79) || isLine(85, 80));
    EXPECT_FALSE(isLine(70, 79) || isLine(70, 80));
}

TEST(BoundaryLayer, NamesKeepClearOfEachOther) {
    PrepareAtOrigin();
    atcBoundaries.loaded = true;
    for (const double labelNm : {0.0, 1.0, 8.0, 42.0}) {  // free, taken, free, half beside the map
        AtcBoundary boundary = Reaching("KZBW", 10);
        boundary.label = {labelNm / 60, 0};
        atcBoundaries.items.push_back(boundary);
    }
    Picture picture(200, 200);
    DrawLayer(picture);
    EXPECT_EQ(Picture::Texts().size(), 2u);
}

TEST(BoundaryLayer, DrawsALineAcrossTheMapBetweenFarPoints) {
    PrepareAtOrigin();
    atcBoundaries.loaded = true;
    AtcBoundary boundary = Reaching("KZBW", 400);
    boundary.points = {{0, 400.0 / 60}, {0, -400.0 / 60}};
    atcBoundaries.items = {boundary};
    Picture picture(200, 200);
    DrawLayer(picture);
    EXPECT_NE(picture.At(60, 100) | picture.At(60, 99), 0u);
}

TEST(BoundaryLayer, IsCutAtTheMapsEdge) {
    PrepareAtOrigin();
    atcBoundaries.loaded = true;
    AtcBoundary boundary = Reaching("KZBW", 400);
    boundary.points.clear();
    for (int i = 0; i < 40; ++i) {  // to and fro across the map
        const double side = i % 2 == 0 ? 0.7 : -0.7;
        boundary.points.push_back({side * std::cos(i * 0.4), side * std::sin(i * 0.4)});
    }
    atcBoundaries.items = {boundary};
    Picture picture(200, 200);
    DrawLayer(picture, 60, 140);
    int inside = 0;
    for (int y = 0; y < 200; ++y) {
        for (int x = 0; x < 200; ++x) {
            const bool onMap = std::hypot(x + 0.5 - 100, y + 0.5 - 100) <= 61.5 && y <= 140;
            const bool drawn = picture.At(x, y) != 0;
            inside += onMap && drawn;
            ASSERT_TRUE(onMap || !drawn) << x << "," << y;
        }
    }
    EXPECT_GT(inside, 1000);
}

TEST(BoundaryLayer, ReadsItsFileAtTheFirstDrawing) {
    PrepareAtOrigin();
    const test::TempSimFolder folder;
    folder.Write("avq/navdata/atc_bdry.txt", "KZBW ZBW 0.1 0.1\nKZBW ZBW 0.1 0.2\n");
    Picture picture(200, 200);
    DrawLayer(picture);
    EXPECT_TRUE(Picture::Shows("ZBW"));
}

TEST(BoundaryLayer, StandsOnTheMapsThatAskForIt) {
    struct Case {
        int mode;
        int overlay;
        DisplayDrawMode draw;
        bool drawn;
    };
    constexpr auto kNormal = DisplayDrawMode::Normal;
    const Case cases[] = {
        {2, 1, kNormal, true},  {3, 1, kNormal, true},
        {5, 1, kNormal, true},  {6, 1, kNormal, true},
        {1, 1, kNormal, false}, {4, 1, kNormal, false},
        {2, 0, kNormal, false}, {2, 1, DisplayDrawMode::SecondCockpit, false},
    };
    for (const Case& c : cases) {
        PrepareAtOrigin();
        avionicsPower = 1;
        atcBoundaries.loaded = true;
        atcBoundaries.items = {Reaching("KZBW", 10)};
        ehsi.ehsiMode = c.mode;
        ehsi.mapOverlayOn = c.overlay;
        Picture picture(266, 230);
        DrawEhsi(picture.Target(c.draw));
        const auto& pixels = picture.pixels();
        const auto coloured = std::count_if(pixels.begin(), pixels.end(), [](std::uint32_t pixel) {
            return (pixel & 0xFF) == 0 && ((pixel >> 16) & 0xFF) > 60 &&
                   ((pixel >> 16) & 0xFF) == ((pixel >> 8) & 0xFF);
        });
        EXPECT_EQ(coloured > 10, c.drawn) << c.mode << " " << c.overlay;
    }
}

}  // namespace
}  // namespace avq1
