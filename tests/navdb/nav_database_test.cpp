#include "navdb/nav_database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "navdb/airport_detail.h"
#include "navdb/nearby.h"
#include "simlink/aircraft_state.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// A table's records, the fields of each with bars between them.
template <typename Table>
std::vector<std::string> Texts(const Table& table) {
    std::vector<std::string> texts;
    for (std::int32_t i = 1; i <= table.count; ++i) {
        const auto& point = table[i];
        std::ostringstream text;
        text << point.ident << '|' << point.name << '|' << point.latitude << '|' << point.longitude
             << '|' << KindText(point.kind) << '|' << point.frequency << '|' << point.elevation;
        texts.push_back(text.str());
    }
    return texts;
}

std::string Text(const Runway& runway) {
    return Format("%s|%g|%g|%g|%g|%s|%s|%g|%g", runway.ident.c_str(), double(runway.length),
                  runway.latitude, runway.longitude, double(runway.heading), runway.field6.c_str(),
                  runway.field7.c_str(), double(runway.field8), double(runway.reciprocalHeading));
}

class NavDatabaseTest : public testing::Test {
  protected:
    NavDatabaseTest() {
        ResetModuleState();
        SimFolder = folder_.root().string();
    }
    ~NavDatabaseTest() override { ResetModuleState(); }

    void WriteNavdata(const std::string& name, const std::string& contents) const {
        folder_.Write("avq/Navdata/" + name, contents);
    }
    static std::vector<std::string> Messages() {
        return {messages.lines.begin() + 1, messages.lines.begin() + 1 + messages.count};
    }
    static std::vector<std::string> SearchKinds(std::string_view ident, SearchCategory category) {
        SearchResults results;
        SearchIdent(ident, category, results);
        std::vector<std::string> kinds;
        for (std::int32_t i = 1; i <= results.count; ++i) {
            kinds.emplace_back(KindText(results[i].kind));
        }
        return kinds;
    }

    test::TempSimFolder folder_;
};

TEST_F(NavDatabaseTest, ReadsEveryFieldOfEveryFile) {
    WriteNavdata("avq_ints.txt", "\xEF\xBB\xBF;fixes\r\nAALAN SECOND 47.5 -122.25\r\n\r\n");
    WriteNavdata("FSB_AWY2.TXT", ";J0 1 NOTME 1 2\nJ1 0010 SEA 47.4 -122.3\nJ1 0020 FIXX 10 -20\n");
    WriteNavdata("avq_apts.txt",
                 ";KXX Odd_One 5 1 2\nKBOS Logan_Intl 20 42.36 -71.01 04L_1\nKSHORT\n");
    WriteNavdata("avq_navs.txt",
                 ";AIRAC x\nABC ALPHA 1.5 2.5 VOR 113.40\nABD B 1 2 VORTAC 110\nXY C x 2 NDB");
    LoadNavDatabase();

    EXPECT_THAT(Texts(navDatabase.intersections), ElementsAre("AALAN|SECOND|47.5|-122.25|I||"));
    // Identifiers below four characters are left out.
    EXPECT_THAT(Texts(navDatabase.airwayFixes), ElementsAre("FIXX|FIXX|10|-20|I||"));
    EXPECT_THAT(Texts(navDatabase.airports),  // no comments in this file
                ElementsAre(";KXX|Odd_One|1|2|APT||5", "KBOS|Logan_Intl|42.36|-71.01|APT||20",
                            "KSHORT||0|0|APT||"));
    EXPECT_THAT(Texts(navDatabase.navaids),  // only the exact word is a VOR
                ElementsAre("ABC|ALPHA|1.5|2.5|V|113.40|", "ABD|B|1|2|N|110|", "XY|C|0|2|N||"));
    // What lists take of a record, read another way.
    for (PointTable* table : {&navDatabase.intersections, &navDatabase.airwayFixes,
                              &navDatabase.airports, &navDatabase.navaids}) {
        PointList listed;
        PointList expected;
        for (std::int32_t i = 1; i <= table->count; ++i) {
            listed.Append(table->Listed(i));
            expected.Append((*table)[i]);
            expected.records.back().name = expected.records.back().elevation = "";
        }
        EXPECT_EQ(Texts(listed), Texts(expected));
    }
    EXPECT_THAT(Messages(), IsEmpty());
}

TEST_F(NavDatabaseTest, MissingFilesLeaveTheirTablesEmpty) {
    WriteNavdata("avq_ints.txt", "AALAN X 1 2\n");
    LoadNavDatabase();
    EXPECT_EQ(navDatabase.intersections.count, 1);
    EXPECT_EQ(navDatabase.airports.count, 0);
    EXPECT_EQ(FindNavaid("AALAN", "", 1), 0);

    // A second load starts again; what was found keeps its texts.
    SearchResults results;
    SearchIdent("AALAN", SearchCategory::All, results);
    BuildNearbyFixes({});
    NarrowNearbyFixes();
    WriteNavdata("avq_ints.txt", "BBBBB X 3 4\nCCCCC Y 5 6\n");
    LoadNavDatabase();
    EXPECT_THAT(Texts(navDatabase.intersections),
                ElementsAre("BBBBB|X|3|4|I||", "CCCCC|Y|5|6|I||"));
    EXPECT_THAT(Texts(results), ElementsAre("AALAN||1|2|I||"));
    EXPECT_FALSE(nearby.fixes600.madeAt);
    EXPECT_FALSE(nearby.fixes200.madeAt);
}

TEST_F(NavDatabaseTest, TablesFillToTheirLimitsWithOneMessageEach) {
    const struct {
        const char *file, *line;
        const PointTable& table;
        std::int32_t limit, warnedAt;
        const char* message;
    } cases[] = {{"avq_apts.txt", "K%d N 1 2 3\n", navDatabase.airports, 10000, 9998,
                  "Apts '9998' approaching struct_limit"},
                 {"avq_navs.txt", "N%d N 1 2 VOR 113\n", navDatabase.navaids, 17000, 9998,
                  "Navs '9998' approaching struct_limit"},
                 {"avq_ints.txt", "I%d N 1 2\n", navDatabase.intersections, 180000, 179998,
                  "Ints '179998' approaching struct_limit"},
                 {"fsb_awy2.txt", "J1 0010 FIX%d 1 2\n", navDatabase.airwayFixes, 100000, 99998,
                  "Ints '99998' approaching struct_limit"}};
    for (const auto& c : cases) {
        std::string contents;
        for (std::int32_t i = 1; i < c.warnedAt; ++i) {
            contents += Format(c.line, i);
        }
        ResetModuleState();
        SimFolder = folder_.root().string();
        WriteNavdata(c.file, contents);
        LoadNavDatabase();
        EXPECT_EQ(c.table.count, c.warnedAt - 1) << c.file;
        EXPECT_THAT(Messages(), IsEmpty()) << c.file;

        for (std::int32_t i = c.warnedAt; i <= c.limit + 1; ++i) {
            contents += Format(c.line, i);
        }
        WriteNavdata(c.file, contents);
        LoadNavDatabase();
        EXPECT_EQ(c.table.count, c.limit) << c.file;
        EXPECT_THAT(Messages(), ElementsAre(c.message)) << c.file;
        std::filesystem::remove(folder_.root() / "avq/Navdata" / c.file);
    }
}

TEST_F(NavDatabaseTest, ALineMayHave1699Characters) {
    const std::string head = "KAAA N ";
    const std::string fits = head + std::string(1699 - head.size() - 4, '1') + " 2 3";
    WriteNavdata("avq_apts.txt", fits + "\r\n" + fits + "4\r\n" + std::string(10'000'000, 'x') +
                                     "\nKBOS N 1 2 3\n");
    LoadNavDatabase();
    // The last character of the second is the next line; the long one is 5886 lines.
    ASSERT_EQ(navDatabase.airports.count, 3 + 5886 + 1);
    EXPECT_EQ(navDatabase.airports[2].longitude, 3);
    EXPECT_EQ(navDatabase.airports[3].ident, "4");
    EXPECT_TRUE(LoadAirportDetail("KBOS", kDepartureSlot));
}

TEST_F(NavDatabaseTest, TheLetterIndexStopsAt74Groups) {
    const auto ident = [](int group) {
        return std::string(1, static_cast<char>('<' + group - 1)) + "A";
    };
    std::string contents;
    for (int group = 1; group <= 80; ++group) {
        contents += ident(group) + " N 1 2 VOR 113\n";
    }
    WriteNavdata("avq_navs.txt", contents);
    LoadNavDatabase();
    EXPECT_EQ(navDatabase.letterGroupCount, 74);
    EXPECT_EQ(FindNavaid(ident(74), "", 1), 74);
    EXPECT_EQ(FindNavaid(ident(75), "", 1), 0);
}

TEST_F(NavDatabaseTest, SearchFindsEqualIdentifiersOfTheAskedCategory) {
    WriteNavdata("avq_navs.txt", "ABC A 10 1 VOR 113\nABC B 40 1 NDB 300\nABCD C 1 1 VOR 114\n");
    std::string fixes = "ABC X 20 1\nabc Y 1 1\nAB Z 1 1\n";
    for (int i = 0; i < 300; ++i) {
        fixes += "SAME N 5 5\n";
    }
    WriteNavdata("avq_ints.txt", fixes);
    WriteNavdata("avq_apts.txt", "ABC Town 123 30 1\n");
    WriteNavdata("fsb_awy2.txt", "J1 1 ABCD 1 1\n");
    LoadNavDatabase();
    EXPECT_THAT(SearchKinds("ABC", SearchCategory::All), ElementsAre("V", "N", "I", "APT"));
    EXPECT_THAT(SearchKinds("ABC", SearchCategory::Navaids), ElementsAre("V", "N"));
    EXPECT_THAT(SearchKinds("ABC", SearchCategory::Intersections), ElementsAre("I"));
    EXPECT_THAT(SearchKinds("ABC", SearchCategory::Airports), ElementsAre("APT"));
    EXPECT_THAT(SearchKinds("ABC", SearchCategory{-1}), ElementsAre("V", "N", "I", "APT"));
    EXPECT_THAT(SearchKinds("ABCD", SearchCategory::All), ElementsAre("V"));
    EXPECT_THAT(SearchKinds("", SearchCategory::All), IsEmpty());

    SearchResults results;
    EXPECT_EQ(NearestResult(results), 0);
    results.pendingBearingMag = 90;  // of an entry that was given up
    SearchIdent("ABC", SearchCategory::All, results);
    EXPECT_FALSE(results.HasPendingPoint());
    EXPECT_THAT(Texts(results), ElementsAre("ABC||10|1|V|113|", "ABC||40|1|N|300|", "ABC||20|1|I||",
                                            "ABC||30|1|APT||123"));
    aircraft.longitude = 1;
    for (const auto& [latitude, nearest] : {std::pair{11.0, 1}, {22.0, 3}, {39.0, 2}}) {
        aircraft.latitude = latitude;
        EXPECT_EQ(NearestResult(results), nearest) << latitude;
    }
    EXPECT_EQ(SearchKinds("SAME", SearchCategory::All).size(), 250U) << "results stop there";
    SearchIdent("SAME", SearchCategory::All, results);
    EXPECT_EQ(NearestResult(results), 1) << "the earlier of equals";
}

TEST_F(NavDatabaseTest, AirportDetailFillsItsSlot) {
    std::string manyRunways = "KDEN Big 5434 39.8 -104.6";
    for (int i = 1; i <= 25; ++i) {
        manyRunways += " R" + std::to_string(i) + "_1000";
    }
    WriteNavdata("avq_apts.txt",
                 "KBOSX Wrong 1 1 1 01_1\r\nkbos logan 20 42.36 -71.01 "
                 "04l_7864_42.3_-71.1_35_x_y_35 22R_7864\r\nKBOS Second 9 9 9\r\n" +
                     manyRunways);
    EXPECT_TRUE(LoadAirportDetail("KBOS", kDepartureSlot));
    const AirportDetail& departure = airportSlots[kDepartureSlot];
    EXPECT_EQ(Format("%s|%s|%g|%g|%g", departure.ident.c_str(), departure.name.c_str(),
                     departure.elevationFt, departure.latitude, departure.longitude),
              "KBOS|LOGAN|20|42.36|-71.01");
    ASSERT_EQ(departure.runways.size(), 2U);
    EXPECT_EQ(Text(departure.runways[0]), "04L|7864|42.3|-71.1|35|X|Y|35|215");
    EXPECT_EQ(departure.runways[1].ident, "22R");
    EXPECT_EQ(lastAirportElevationText, "20");

    EXPECT_TRUE(LoadAirportDetail("KDEN", kArrivalSlot));
    EXPECT_EQ(airportSlots[kArrivalSlot].runways.size(), 20U);
    EXPECT_EQ(airportSlots[kArrivalSlot].runways[19].ident, "R20");
    EXPECT_EQ(departure.runways.size(), 2U);

    // Not found: no runways, the previous identity.
    for (const char* ident : {"NONE", "", "kbos", "KBOS "}) {
        ASSERT_TRUE(LoadAirportDetail("KBOS", kDepartureSlot));
        EXPECT_FALSE(LoadAirportDetail(ident, kDepartureSlot)) << ident;
        EXPECT_EQ(departure.ident, "KBOS");
        EXPECT_TRUE(departure.runways.empty());
    }
    EXPECT_FALSE(LoadAirportDetail("KBOS", 4));
    EXPECT_FALSE(LoadAirportDetail("KBOS", -1));
}

}  // namespace
}  // namespace avq1
