// The airspace layer, read back from the texts and lines it draws.
#include "displays/map/boundaries.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "displays/ehsi/ehsi.h"
#include "navdb/boundaries.h"
#include "simlink/aircraft_state.h"
#include "support/display_checks.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::Picture;

constexpr std::uint32_t kBoundaryColour = 0xFF979700;

class BoundaryLayer : public test::DisplayTest {
  protected:
    void SetUp() override {
        DisplayTest::SetUp();
        aircraft.latitude = aircraft.longitude = 0;
        atcBoundaries.loaded = true;
    }
};

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
    Surface surface(picture.Target(), 200, 200, true);
    surface.canvas().Clear(colour::Clear);
    const MapView view = ViewFromAircraft(100, 100, 50, 20);
    TextBoxes texts;
    const MapFrame frame{
        surface,      view,  20,    {100, 100},     circleRadius, {0, 0, 200, bottom},
        circleRadius, texts, texts, EmptyMapNames()};
    DrawAtcBoundaries(frame);
    DrawAtcBoundaryNames(frame);
}

TEST_F(BoundaryLayer, LeavesOutWhatBeginsFarAway) {
    const std::tuple<const char*, int, bool> cases[] = {
        {"KZBW", 999, true},     {"KZBW", 1001, false},    {"YM00142", 1200, true},
        {"YB00001", 4999, true}, {"NZ00084", 5001, false}, {"YM0014", 1200, false}};
    for (const auto& [ident, firstPointNm, drawn] : cases) {
        SetUp();
        atcBoundaries.items = {Reaching(ident, firstPointNm)};
        Picture picture(200, 200);
        DrawLayer(picture);
        EXPECT_EQ(Picture::Shows("OCE"), drawn) << ident << " at " << firstPointNm;
        EXPECT_EQ(picture.IsClear(), !drawn) << ident << " at " << firstPointNm;
    }
}

TEST_F(BoundaryLayer, PlacesOutlineAndNameByTheirDistance) {
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

TEST_F(BoundaryLayer, NamesKeepClearOfEachOtherAndComeOnce) {
    const std::pair<const char*, double> labels[] = {
        {"ONE", 0}, {"TAKEN", 1}, {"TWO", 8}, {"ONE", -8}, {"HALF BESIDE THE MAP", 42}};
    for (const auto& [name, northNm] : labels) {
        AtcBoundary boundary = Reaching("KZBW", 10);
        boundary.name = name;
        boundary.label = {northNm / 60, 0};
        atcBoundaries.items.push_back(boundary);
    }
    Picture picture(200, 200);
    DrawLayer(picture);
    EXPECT_EQ(Picture::Texts().size(), 2u);
}

TEST_F(BoundaryLayer, IsCutAtTheMapsEdge) {
    AtcBoundary& boundary = atcBoundaries.items.emplace_back();
    for (int i = 0; i < 40; ++i) {  // to and fro across the map
        const double side = i % 2 == 0 ? 0.7 : -0.7;
        boundary.points.push_back({side * std::cos(i * 0.4), side * std::sin(i * 0.4)});
    }
    Picture picture(200, 200);
    DrawLayer(picture, 60, 140);
    int inside = 0;
    int outside = 0;
    for (int i = 0; i < 200 * 200; ++i) {
        const int y = i / 200;
        const bool onMap = std::hypot(i % 200 + 0.5 - 100, y + 0.5 - 100) <= 61.5 && y <= 140;
        (onMap ? inside : outside) += picture.At(i % 200, y) != 0;
    }
    EXPECT_EQ(outside, 0);
    EXPECT_GT(inside, 1000);
}

TEST_F(BoundaryLayer, ReadsItsFileAtTheFirstDrawing) {
    atcBoundaries.loaded = false;
    const test::TempSimFolder folder;
    folder.Write("avq/navdata/atc_bdry.txt", "KZBW ZBW 0.1 0.1\nKZBW ZBW 0.1 0.2\n");
    Picture picture(200, 200);
    DrawLayer(picture);
    EXPECT_TRUE(Picture::Shows("ZBW"));
}

TEST_F(BoundaryLayer, StandsOnTheMapsThatAskForIt) {
    atcBoundaries.items = {Reaching("KZBW", 10)};
    atcBoundaries.items[0].label = {0.19, 0};
    const auto isDrawn = [](int mode, int overlay, DisplayDrawMode draw = DisplayDrawMode::Normal) {
        ehsi.ehsiMode = mode;
        ehsi.mapOverlayOn = overlay;
        Picture picture(266, 230);
        DrawEhsi(picture.Target(draw));
        return Picture::Shows("OCE");
    };
    for (int mode = 1; mode <= 7; ++mode) {
        EXPECT_EQ(isDrawn(mode, 1), mode % 3 != 1 && mode != 7) << mode;
    }
    EXPECT_FALSE(isDrawn(2, 0));
    EXPECT_FALSE(isDrawn(2, 1, DisplayDrawMode::SecondCockpit));
}

}  // namespace
}  // namespace avq1
