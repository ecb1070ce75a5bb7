#include "navdb/airways.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/module_state.h"
#include "base/text.h"
#include "navdb/boundaries.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::TempSimFolder;

std::string Show(const AirwayLookup& lookup, const PointTable& results) {
    std::string text = Format("%d %d %d:", lookup.entryIndex, lookup.exitIndex, lookup.entryPage);
    for (std::int32_t i = 1; i <= results.count; ++i) {
        text += Format(" %s/%s/%g/%g", std::string(results[i].name).c_str(),
                       std::string(results[i].ident).c_str(), results[i].latitude,
                       results[i].longitude);
    }
    return text;
}

std::string Read(std::string_view text, std::string_view name, std::string_view entry) {
    PointTable results;
    const AirwayLookup lookup = ReadAirway(text, name, entry, results);
    return Show(lookup, results);
}

// The rule itself: read on from the start until another airway follows the entry fix.
std::string Scanned(std::string_view text, std::string_view name, std::string_view entry) {
    PointTable results;
    AirwayLookup lookup;
    LineReader lines(text, 200);
    std::string_view line;
    while (results.count < kSearchResultCapacity && lines.Next(line)) {
        std::array<std::string_view, 5> words;
        if (line.starts_with(';') || SplitWords(line, words) == 0) {
            continue;
        }
        if (words[0] != name) {
            if (lookup.entryIndex > 0) {
                break;
            }
            continue;
        }
        PointRecord record;
        record.ident = words[2];
        record.name = words[0];
        record.latitude = ToNumber(words[3]);
        record.longitude = ToNumber(words[4]);
        results.Append(record);
        if (!entry.empty() && words[2] == entry) {
            lookup.entryIndex = results.count;
            lookup.exitIndex = results.count;
            lookup.entryPage = (results.count + 15) / 16;
        }
    }
    return Show(lookup, results);
}

TEST(Airways, AreFoundByNameWithTheEntryFix) {
    const std::string text =
        "; J1 0 SSSS 1 1\nJ1 10 AAAA 1 1\n; inside\nJ1 20 BBBB 2 2\n\nJ1 30 CCCC 3 3\n"
        "J10 10 AAAA 1 1\nJ1 40 DDDD 4 4\n";
    struct Case {
        const char* name;
        const char* entry;
        const char* expected;
    };
    const Case cases[] = {
        {"J1", "BBBB", "2 2 1: J1/AAAA/1/1 J1/BBBB/2/2 J1/CCCC/3/3"},
        {"J1", "DDDD", "4 4 1: J1/AAAA/1/1 J1/BBBB/2/2 J1/CCCC/3/3 J1/DDDD/4/4"},
        {"J1", "XXXX", "0 0 0: J1/AAAA/1/1 J1/BBBB/2/2 J1/CCCC/3/3 J1/DDDD/4/4"},
        {"J10", "AAAA", "1 1 1: J10/AAAA/1/1"},
        {"j1", "AAAA", "0 0 0:"},
        {"", "AAAA", "0 0 0:"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Read(text, c.name, c.entry), c.expected) << c.name << " " << c.entry;
        EXPECT_EQ(Scanned(text, c.name, c.entry), c.expected) << c.name << " " << c.entry;
    }
}

TEST(Airways, TheSeventeenthFixStandsOnTheSecondPage) {
    std::string text;
    for (int i = 1; i <= 300; ++i) {
        text += Format("J1 %d FIX%03d 1 1\n", i, i);
    }
    PointTable results;
    EXPECT_EQ(ReadAirway(text, "J1", "FIX016", results).entryPage, 1);
    EXPECT_EQ(ReadAirway(text, "J1", "FIX017", results).entryPage, 2);
    EXPECT_EQ(ReadAirway(text, "J1", "FIX251", results).entryIndex, 0);
    EXPECT_EQ(results.count, kSearchResultCapacity);
}

TEST(Airways, SkippingLinesFindsWhatAPlainScanFinds) {
    static const char* const kNames[] = {"J1", "J2", "V3", "J1", "UL9"};
    static const char* const kFixes[] = {"AAAA", "BBBB", "CCCC", "DDDD", "EE"};
    std::mt19937 random(7);
    for (int round = 0; round < 500; ++round) {
        std::string text;
        const int lines = static_cast<int>(random() % 30);
        for (int i = 0; i < lines; ++i) {
            const std::string line = Format("%s%s %d %s %d 2", random() % 9 == 0 ? "  " : "",
                                            kNames[random() % 5], i, kFixes[random() % 5], i);
            const int kind = static_cast<int>(random() % 12);
            text += kind == 0   ? "; " + line
                    : kind == 1 ? std::string()
                    : kind == 2 ? line + std::string(random() % 300, ' ') + line
                                : line;
            text += random() % 5 == 0 ? "\r\n" : "\n";
        }
        for (const char* name : kNames) {
            for (const char* fix : kFixes) {
                ASSERT_EQ(Read(text, name, fix), Scanned(text, name, fix))
                    << name << " from " << fix << " in\n"
                    << text;
            }
        }
    }
}

TEST(Airways, ComeFromTheLoadedDatabase) {
    ResetModuleState();
    const TempSimFolder folder;
    EXPECT_FALSE(FindAirway("J1", "AAAA"));
    folder.Write("avq/navdata/fsb_awy2.txt", "J1 10 AAAA 1 1\nJ1 20 BBBB 2 2\n");
    LoadNavDatabase();
    EXPECT_TRUE(FindAirway("J1", "BBBB"));
    EXPECT_EQ(airwayLookup.entryIndex, 2);
    EXPECT_EQ(navDatabase.searchResults.count, 2);
    EXPECT_TRUE(FindAirway("J9", "BBBB"));
    EXPECT_EQ(airwayLookup.entryIndex, 0);
    EXPECT_EQ(navDatabase.searchResults.count, 0);
}

TEST(Boundaries, LabelsStandInTheMiddle) {
    struct Case {
        const char* what;
        const char* text;
        double latitude;
        double longitude;
    };
    const Case cases[] = {
        {"east", "A ZBW 40 10\nA ZBW 44 12\nA ZBW 41 20\nA ZBW 40 11\n", 42, 15},
        {"west", "A ZBW 40 -70\nA ZBW 44 -60\n", 42, -65},
        {"both signs", "A ZBW 40 -5\nA ZBW 44 3\n", 42, -179.9},
        {"one point", "A ZBW -40 -5\n", -40, -5},
    };
    for (const Case& c : cases) {
        std::vector<AtcBoundary> items;
        ReadAtcBoundaries(c.text, items);
        ASSERT_EQ(items.size(), 1U) << c.what;
        EXPECT_DOUBLE_EQ(items[0].label.latitude, c.latitude) << c.what;
        EXPECT_DOUBLE_EQ(items[0].label.longitude, c.longitude) << c.what;
    }
}

TEST(Boundaries, BeginWhereTheIdentifierChanges) {
    std::vector<AtcBoundary> items;
    ReadAtcBoundaries("; c\nA ZBW 1 1\nA ZZZ 2 2\n\nB ZNY 5 5\nA ZBW 8 8\nINIT X 1 2\n", items);
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items[0].name, "ZBW");
    EXPECT_EQ(items[0].points.size(), 2U);
    EXPECT_DOUBLE_EQ(items[0].label.latitude, 1.5);
    EXPECT_EQ(items[1].ident, "B");
    EXPECT_DOUBLE_EQ(items[2].label.latitude, 8);
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

TEST(Boundaries, AMissingFileIsNotLookedForAgain) {
    ResetModuleState();
    const TempSimFolder folder;
    LoadAtcBoundaries();
    EXPECT_TRUE(atcBoundaries.loaded);
    EXPECT_TRUE(atcBoundaries.items.empty());
}

}  // namespace
}  // namespace avq1
