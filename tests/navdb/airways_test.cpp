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

std::string Read(std::string_view file, std::string_view name, std::string_view entry) {
    const AirwayLookup lookup = ReadAirway(file, name, entry);
    EXPECT_EQ(lookup.text, std::string(name) + (lookup.entryIndex == 0 ? " (N/A)" : ""));
    std::string text = Format("%d %d %d:", lookup.entryIndex, lookup.exitIndex, lookup.entryPage);
    for (std::int32_t i = 1; i <= lookup.fixes.count; ++i) {
        const FoundPoint& fix = lookup.fixes[i];
        text += Format(" %s/%s/%g/%g", fix.name.c_str(), fix.ident.c_str(), fix.latitude,
                       fix.longitude);
    }
    return text;
}

// Until the entry fix is found all lines of the name count, then those up to another airway's.
TEST(Airways, AreFoundByNameWithTheEntryFix) {
    const std::string text =
        "; J1 0 SSSS 1 1\nJ1 10 AAAA 1 1\n; inside\nJ1 20 BBBB 2 2\n\n  J1 30 CCCC 3 3\r\n"
        "J10 10 AAAA 1 1\nJ1 40 DDDD 4 4\n  V3 1 EEEE 5 5\nJ2 1 EEEE 5 5 " +
        std::string(200 - 14, ' ') + "J1 50 FFFF 6 6\n;J1 2 CCCC 3 3\nV3 2 GGGG 7 7\n";
    const std::string all = " J1/AAAA/1/1 J1/BBBB/2/2 J1/CCCC/3/3 J1/DDDD/4/4 J1/FFFF/6/6";
    const struct {
        const char* name;
        const char* entry;
        std::string expected;
    } cases[] = {
        {"J1", "AAAA", "1 1 1: J1/AAAA/1/1 J1/BBBB/2/2 J1/CCCC/3/3"},
        {"J1", "BBBB", "2 2 1: J1/AAAA/1/1 J1/BBBB/2/2 J1/CCCC/3/3"},
        {"J1", "DDDD", "4 4 1:" + all.substr(0, all.size() - 12)},
        {"J1", "FFFF", "5 5 1:" + all},
        {"J1", "XXXX", "0 0 0:" + all},
        {"J1", "", "0 0 0:" + all},
        {"J10", "AAAA", "1 1 1: J10/AAAA/1/1"},
        {"V3", "EEEE", "1 1 1: V3/EEEE/5/5"},
        {"j1", "AAAA", "0 0 0:"},
        {"", "AAAA", "0 0 0:"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Read(text, c.name, c.entry), c.expected) << c.name << " " << c.entry;
    }
}

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

TEST(Boundaries, BeginWhereTheIdentifierChangesAndLabelTheMiddle) {
    const std::pair<const char*, const char*> cases[] = {
        {"; c\nA ZBW 1 1\nA ZZZ 2 2\n\nB ZNY 5 5\nA ZBW 8 8\nINIT X 1 2\n",
         "A ZBW 2 1.5/1.5; B ZNY 1 5/5; A ZBW 1 8/8; INIT X 1 1/2; "},
        {"A ZBW 40 10\nA ZBW 44 12\nA ZBW 41 20\nA ZBW 40 11\n", "A ZBW 4 42/15; "},
        {"A ZBW 40 -70\nA ZBW 44 -60\n", "A ZBW 2 42/-65; "},
        {"A ZBW 40 -5\nA ZBW 44 3\n", "A ZBW 2 42/-179.9; "},
    };
    for (const auto& [text, expected] : cases) {
        std::vector<AtcBoundary> items;
        ReadAtcBoundaries(text, items);
        std::string read;
        for (const AtcBoundary& item : items) {
            read += Format("%s %s %zu %g/%g; ", item.ident.c_str(), item.name.c_str(),
                           item.points.size(), item.label.latitude, item.label.longitude);
        }
        EXPECT_EQ(read, expected);
    }
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
