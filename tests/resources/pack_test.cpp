// What the pictures are handed on in: the packed section, its key names, and the module itself.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <string>

#include "host/gauge_table.h"
#include "panelhost/module/resources.h"
#include "resources/painter/inventory.h"
#include "resources/painter/pack.h"

namespace avq1 {
namespace {

std::string FileContents(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Pack, ComesBackAsItWentIn) {
    const std::uint32_t pixels[] = {0xFF102030, 0xFF405060, 0xFF708090};
    const std::string bmp = EncodeBmp(pixels, 3, 1, false);
    const PackedResource entries[] = {{0x2600, kKindKeyNames, "1 2 3 4 A\n"},  // odd sizes
                                      {0x2600, kKindBitmap, bmp},
                                      {0x2700, kKindKeyNames, "5 6 7 8 INIT REF\n9 9 9 9 B\n"}};
    const auto resources = panelhost::ParseResources(PackResources(entries));
    EXPECT_TRUE(resources.problems.empty());
    ASSERT_EQ(resources.bitmaps.count(0x2600), 1U);
    const panelhost::Picture& picture = resources.bitmaps.at(0x2600);
    EXPECT_EQ(picture.pixels, std::vector<std::uint32_t>(std::begin(pixels), std::end(pixels)));
    ASSERT_EQ(resources.keyNames.at(0x2700).size(), 2U);
    EXPECT_EQ(resources.keyNames.at(0x2700)[0].label, "INIT REF");
    EXPECT_EQ(resources.keyNames.at(0x2700)[0].height, 8);
    EXPECT_EQ(resources.keyNames.at(0x2600).size(), 1U);
}

TEST(Pack, KeyNamesAreOneLineEach) {
    BitmapPlan plan;
    plan.keys = {{"INIT\nREF", {51, 298, 44, 30}}, {"", {1, 1, 1, 1}}};
    EXPECT_EQ(KeyNames(plan), "51 298 44 30 INIT REF\n");
}

TEST(Pack, ResourceScriptNamesBitmapsByDecimalNumber) {
    BitmapPlan plan;
    plan.number = 0x267A;
    EXPECT_EQ(ResourceScript(std::span(&plan, 1)), "9850 BITMAP \"267A.bmp\"\n");
}

TEST(Module, CarriesEveryPictureAndKeyName) {
    const std::string file = FileContents(AVQ1_MODULE);
    const std::string_view section = panelhost::FindElfSection(file, ".avq_res");
    ASSERT_FALSE(section.empty());
    const auto resources = panelhost::ParseResources(section);
    EXPECT_TRUE(resources.problems.empty());
    for (const BitmapPlan& plan : PlanBitmaps(GaugeTable())) {
        const auto number = static_cast<std::uint32_t>(plan.number);
        ASSERT_EQ(resources.bitmaps.count(number), 1U) << BitmapFileName(plan.number);
        EXPECT_EQ(resources.bitmaps.at(number).width, plan.size.x);
        EXPECT_EQ(resources.bitmaps.at(number).height, plan.size.y);
        const auto names = resources.keyNames.find(number);
        const std::size_t named = names == resources.keyNames.end() ? 0 : names->second.size();
        EXPECT_EQ(named, plan.keys.size()) << BitmapFileName(plan.number) << ": unnamed keys";
    }
}

TEST(Module, ExportsItsThreeTablesAndNothingElse) {
    void* module = dlopen(AVQ1_MODULE, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(module, nullptr) << dlerror();
    for (const char* name : {"Linkage", "ImportTable", "PlatformTable"}) {
        EXPECT_NE(dlsym(module, name), nullptr) << name;
    }
    EXPECT_EQ(dlsym(module, "_ZN4avq110GaugeTableEv"), nullptr);
    EXPECT_EQ(dlsym(module, "_ZN4avq16mcuE"), nullptr);
    dlclose(module);
}

}  // namespace
}  // namespace avq1
