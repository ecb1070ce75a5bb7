#include "navdb/airways.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "base/module_state.h"
#include "base/text.h"
#include "navdb/boundaries.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

// The airway fixes of the map stay those of the load.
TEST(Airways, AFileWrittenSinceTheLoadIsReadAnew) {
    ResetModuleState();
    const test::TempSimFolder folder;
    folder.Write("avq/Navdata/fsb_awy2.txt", "J1 10 AAAA 1 1\nJ1 20 BBBB 2 2\n");
    LoadNavDatabase();
    AirwayLookup lookup;
    const auto found = [&] {
        const bool exists = FindAirway("J1", "BBBB", lookup);
        return Format("%d %d of %d", exists ? 1 : 0, lookup.entryIndex, lookup.fixes.count);
    };
    EXPECT_EQ(found(), "1 2 of 2");
    folder.Write("avq/Navdata/fsb_awy2.txt", "J1 10 BBBB 2 2\nJ1 20 CCCC 3 3\nJ1 30 DDDD 4 4\n");
    EXPECT_EQ(found(), "1 1 of 3");
    EXPECT_EQ(navDatabase.airwayFixes.count, 2);
    std::filesystem::remove(folder.root() / "avq/Navdata/fsb_awy2.txt");
    EXPECT_EQ(found(), "0 0 of 0");
    folder.Write("avq/Navdata/fsb_awy2.txt", "J1 10 BBBB 2 2\n");
    EXPECT_EQ(found(), "1 1 of 1");
    ResetModuleState();
}

TEST(Airways, TheSeventeenthFixStandsOnTheSecondPage) {
    std::string text;
    for (int i = 1; i <= 300; ++i) {
        text += Format("J1 %d FIX%03d 1 1\n", i, i);
    }
    EXPECT_EQ(ReadAirway(text, "J1", "FIX016").entryPage, 1);
    EXPECT_EQ(ReadAirway(text, "J1", "FIX017").entryPage, 2);
    const AirwayLookup beyond = ReadAirway(text, "J1", "FIX251");
    EXPECT_EQ(beyond.entryIndex, 0);
    EXPECT_EQ(beyond.fixes.count, kSearchResultCapacity);
}

TEST(Boundaries, StopAtTheirCapacities) {
    std::string text;
    for (int i = 0; i < 805; ++i) {
        text += Format("A ZBW %d 1\n", i < 800 ? 2 : 50);
    }
    for (int i = 0; i < 405; ++i) {
        text += Format("B%d Z 4 %d\n", i, i % 100);
    }
    std::vector<AtcBoundary> items;
    ReadAtcBoundaries(text, items);
    ASSERT_EQ(items.size(), 400U);
    EXPECT_EQ(items[0].points.size(), 800U);
    EXPECT_DOUBLE_EQ(items[0].label.latitude, 2);
    EXPECT_DOUBLE_EQ(items[399].label.longitude, 398 % 100);
}

}  // namespace
}  // namespace avq1
