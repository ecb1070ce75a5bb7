#include "panelhost/module/resources.h"

#include <gtest/gtest.h>

#include "panelhost/base/text.h"
#include "panelhost/panel/compose.h"
#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

std::string ProbeFile() {
    return ReadWholeFile(ProbePath(), 64U << 20U).value_or("");
}

TEST(Resources, ReadsAModuleFilesSection) {
    const std::string file = ProbeFile();
    const ModuleResources resources = ParseResources(FindElfSection(file, ".avq_res"));
    EXPECT_TRUE(resources.problems.empty());
    ASSERT_EQ(resources.bitmaps.size(), 3U);
    const Picture& icon = resources.bitmaps.at(0x102);
    EXPECT_EQ(icon.pixels[0], 0xFF000000U) << "the last row of the file is the top";
    EXPECT_EQ(icon.pixels[4], 0xFF00FF00U);
    EXPECT_EQ(KeyOutBlack(icon).pixels[0], 0U);
    ASSERT_EQ(resources.keyNames.at(0x100).size(), 4U);
    EXPECT_EQ(resources.keyNames.at(0x100)[3].label, "LINE KEY 1");
    EXPECT_TRUE(FindElfSection(file, ".no_such").empty());
}

TEST(Resources, SurvivesFilesCutAnywhereAndBytesTurned) {
    const std::string file = ProbeFile();
    const std::string section(FindElfSection(file, ".avq_res"));
    // Behind the last resource the linker may have padded the section.
    const std::size_t used = section.find("LINE KEY 1") + 10;
    for (std::size_t length = 0; length < used; length += 7) {
        EXPECT_FALSE(ParseResources(section.substr(0, length)).problems.empty()) << length;
    }
    for (std::size_t at = 0; at < 200; ++at) {
        std::string turned = section;
        turned[at] = static_cast<char>(0xFF);
        ParseResources(turned);
        turned = file;
        turned[at] = static_cast<char>(0xFF);
        FindElfSection(turned, ".avq_res");
        FindElfSection(turned.substr(0, at), ".avq_res");
    }
}

TEST(Resources, ReadsKeyNamesAndSkipsWhatIsNone) {
    const std::vector<KeyName> names =
        ParseKeyNames("1 2 30 40 PREV PAGE\r\n\nx 2 3 4 BAD\n1 2 3\n-1 0 9 9 Ä\n1 2 3 99999 FAR\n");
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names[0].label, "PREV PAGE");
    EXPECT_EQ(names[0].height, 40);
    EXPECT_EQ(names[1].label, "Ä");
}

TEST(Compose, ResamplingKeepsMeans) {
    Picture board{8, 8, {}};
    for (int i = 0; i < 64; ++i) {
        board.pixels.push_back((i + i / 8) % 2 == 0 ? 0xFFFFFFFFU : 0xFF000000U);
    }
    const Picture half = Resample(board, 4, 4);
    EXPECT_NEAR(half.pixels[5] & 0xFFU, 128, 4);
    EXPECT_EQ(Resample(board, 8, 4).pixels.size(), 32U);
}

// A gauge of one element, as large as its bitmap.
std::unique_ptr<Placement> OneElement(const Picture& bitmap) {
    auto placement = std::make_unique<Placement>();
    placement->width = placement->bitmapWidth = bitmap.width;
    placement->height = placement->bitmapHeight = bitmap.height;
    placement->elements.push_back(std::make_unique<ElementCopy>());
    ElementCopy& copy = *placement->elements.front();
    copy.bitmap = &bitmap;
    copy.sourceImage.width = bitmap.width;
    copy.sourceImage.height = bitmap.height;
    return placement;
}

TEST(Compose, WhatIsHalfTransparentLiesOverWhatIsBelow) {
    const Picture glass{3, 1, {0x80400000U, 0xFF102030U, 0x00000000U}};
    const auto placement = OneElement(glass);
    PanelPicture target;
    target.picture = {3, 1, {}};
    target.background = {3, 1, {0xFF0000FFU, 0xFF0000FFU, 0xFF0000FFU}};
    target.stale = {0, 0, 3, 1};
    PaintStale(target, {placement.get()});
    EXPECT_EQ(target.picture.pixels,
              (std::vector<std::uint32_t>{0xFF40007FU, 0xFF102030U, 0xFF0000FFU}));
}

// Where a surface is drawn on, and whether a text of 8 letters at its top left still stands there.
TEST(Compose, ATextGoesWhenItsPixelsChange) {
    const struct {
        std::size_t x, y;
        bool stays;
    } rows[] = {{0, 0, false}, {40, 9, false}, {47, 4, false}, {60, 4, true}, {20, 12, true}};
    for (const auto& row : rows) {
        const Picture surface{80, 20, std::vector<std::uint32_t>(1600, 0)};
        const auto placement = OneElement(surface);
        ElementCopy& copy = *placement->elements.front();
        copy.context.width = 80;
        copy.context.height = 20;
        copy.element.deviceContext = &copy.context;
        copy.shown = surface;
        copy.shown.pixels[85] = 0xFFFFFFFFU;  // its ink
        copy.pixels = copy.shown.pixels;
        copy.pixels[row.y * 80 + row.x] = 0xFF00FF00U;
        copy.texts = {{"ABCDEFGH", 0, 0, 10, 0xFFFFFFFFU}};
        PixelArea stale;
        EXPECT_TRUE(SettlePlacement(*placement, 1, stale));
        EXPECT_EQ(copy.texts.size(), row.stays ? 1U : 0U) << row.x << " " << row.y;
    }
}

}  // namespace
}  // namespace panelhost
