// Coded procedures: records built column by column, read back through the module's own loaders.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "avqdata/arinc.h"
#include "avqdata/import_helpers.h"
#include "navdb/procedures.h"

namespace avqdata {
namespace {

using testing::ElementsAre;

// A record under construction: texts put at their columns, counted from 1.
struct Record {
    std::string text = std::string(132, ' ');

    explicit Record(const char* section) {
        Put(1, "SUSA");
        Put(5, section);
    }
    Record& Put(std::size_t column, std::string_view value) {
        text.replace(column - 1, value.size(), value);
        return *this;
    }
};

std::string Waypoint(const char* ident, const char* position) {
    return Record("EA").Put(7, "ENRT").Put(14, ident).Put(20, "Q1").Put(33, position).text + "\n";
}

std::string Runway(const char* ident, const char* position) {
    return Record("P")
               .Put(7, "QAAAQ1G")
               .Put(14, ident)
               .Put(22, "0080000900")
               .Put(33, position)
               .text +
           "\n";
}

struct LegRow {
    char kind;  // D, E, F
    const char* name;
    char type;
    const char* transition;
    const char* sequence;
    const char* fix;
    const char* section;
    const char* description;
    const char* path;
    const char* altitude = "";  // sign in column 83 and feet
};

std::string Leg(const LegRow& row) {
    Record record("P");
    record.Put(7, "QAAAQ1").Put(13, std::string(1, row.kind)).Put(14, row.name);
    record.Put(20, std::string(1, row.type)).Put(21, row.transition).Put(27, row.sequence);
    record.Put(30, row.fix).Put(35, "Q1").Put(37, row.section).Put(39, "0");
    record.Put(40, row.description).Put(48, row.path);
    if (*row.altitude != '\0') {
        record.Put(83, std::string_view(row.altitude).substr(0, 1));
        record.Put(85, std::string_view(row.altitude).substr(1));
    }
    return record.text + "\n";
}

std::string Ground() {
    return Record("P")
               .Put(7, "QAAAQ1A")
               .Put(22, "0")
               .Put(33, "N50000000E008000000")
               .Put(57, "00100")
               .Put(94, "QUAX INTL")
               .text +
           "\n" + Runway("RW09L", "N50000000E008000000") + Runway("RW09R", "N49590000E008000000") +
           Waypoint("AAAAA", "N50000000E008100000") + Waypoint("BBBBB", "N50000000E008200000") +
           Waypoint("CCCCC", "N50100000E008300000") + Waypoint("DDDDD", "N50200000E008300000");
}

struct CifpTest : testing::Test {
    Import import;
    FolderTexts texts;

    void Read(const std::string& text) {
        Dataset data;
        LineSource lines = LineSource::OfText(text, "test.pc");
        ASSERT_TRUE(ReadCifp(lines, import.Context(), data, import.error)) << import.error;
        import.Add(std::move(data), Coverage::Partial);
        texts = import.Texts();
    }
};

std::vector<std::string> Legs(const avq1::Procedure& procedure) {
    std::vector<std::string> legs;
    for (const avq1::ProcedureLeg& leg : procedure.legs) {
        legs.push_back(leg.qualifier + "|" + leg.fix + "|" + leg.text1 + "|" + leg.text2 +
                       (leg.flyover != 0 ? "|FO" : ""));
    }
    return legs;
}

TEST_F(CifpTest, DepartureBranchesMeetAtOneFix) {
    Read(Ground() + Leg({'D', "QUAX1", '4', "RW09B", "010", "", "", "    ", "VA", "+00500"}) +
         Leg({'D', "QUAX1", '4', "RW09B", "020", "AAAAA", "EA", "EY  ", "DF", "+02000"}) +
         Leg({'D', "QUAX1", '4', "RW09B", "030", "BBBBB", "EA", "EE  ", "TF", "-05000"}) +
         Leg({'D', "QUAX1", '5', "", "010", "BBBBB", "EA", "E   ", "IF"}) +
         Leg({'D', "QUAX1", '5', "", "020", "CCCCC", "EA", "EE  ", "TF"}) +
         Leg({'D', "QUAX1", '6', "DDDDD", "010", "CCCCC", "EA", "E   ", "IF"}) +
         Leg({'D', "QUAX1", '6', "DDDDD", "020", "DDDDD", "EA", "EE  ", "TF"}));
    std::vector<avq1::Procedure> sids;
    avq1::ReadSids(texts[kSidFile], "QAAA", sids);
    ASSERT_EQ(sids.size(), 1U) << texts[kSidFile];
    EXPECT_EQ(sids[0].name, "QUAX1");
    EXPECT_EQ(sids[0].runways, "09L,09R");
    EXPECT_THAT(Legs(sids[0]), ElementsAre("|AAAAA|2000A|09L,09R|FO", "|BBBBB|5000B|---",
                                           "CCCCC|CCCCC|---|---", "DDDDD|DDDDD|---|---"));
    EXPECT_EQ(sids[0].legs[2].mark, "*");  // where transitions leave
    EXPECT_EQ(import.report.Count(Topic::Dropped, "legs to no fix (VA)"), 1U);
}

TEST_F(CifpTest, WithoutACommonRouteTheMeetingFixBecomesOne) {
    Read(Ground() + Leg({'D', "QUAX2", '4', "RW09L", "010", "AAAAA", "EA", "EE  ", "CF"}) +
         Leg({'D', "QUAX2", '4', "RW09R", "010", "AAAAA", "EA", "EE  ", "CF"}) +
         Leg({'D', "QUAX2", '6', "CCCCC", "010", "AAAAA", "EA", "E   ", "IF"}) +
         Leg({'D', "QUAX2", '6', "CCCCC", "020", "CCCCC", "EA", "EE  ", "TF"}) +
         Leg({'D', "VECT1", 'T', "RW09L", "010", "", "", "    ", "VM"}));
    std::vector<avq1::Procedure> sids;
    avq1::ReadSids(texts[kSidFile], "QAAA", sids);
    ASSERT_EQ(sids.size(), 1U) << texts[kSidFile];
    EXPECT_THAT(Legs(sids[0]), ElementsAre("AAAAA|AAAAA|---|---", "CCCCC|CCCCC|---|---"));
    EXPECT_EQ(sids[0].runways, "09L,09R");
    EXPECT_EQ(import.report.Count(Topic::Dropped, "procedures that are vectors only"), 1U);
}

TEST_F(CifpTest, ArrivalRunsInward) {
    Read(Ground() +
         Leg({'E', "QUIN1", '4', "DDDDD", "010", "DDDDD", "EA", "E   ", "IF", "BFL200"}) +
         Leg({'E', "QUIN1", '4', "DDDDD", "020", "CCCCC", "EA", "EE  ", "TF"}) +
         Leg({'E', "QUIN1", '5', "ALL", "010", "CCCCC", "EA", "E   ", "IF"}) +
         Leg({'E', "QUIN1", '5', "ALL", "020", "BBBBB", "EA", "EE  ", "TF"}) +
         Leg({'E', "QUIN1", '6', "RW09L", "010", "BBBBB", "EA", "E   ", "IF"}) +
         Leg({'E', "QUIN1", '6', "RW09L", "020", "AAAAA", "EA", "EE  ", "TF"}));
    std::vector<avq1::Procedure> stars;
    avq1::ReadStars(texts[kStarFile], "QAAA", stars);
    ASSERT_EQ(stars.size(), 1U) << texts[kStarFile];
    EXPECT_EQ(stars[0].runways, "09L");
    EXPECT_THAT(Legs(stars[0]), ElementsAre("DDDDD|DDDDD|FL200|---", "CCCCC|CCCCC|---|---",
                                            "BBBBB|BBBBB|---|---", "AAAAA|AAAAA|---|09L"));
}

TEST_F(CifpTest, ApproachRolesAndMissedApproach) {
    Read(Ground() +
         Leg({'F', "R09LY", 'A', "DDDDD", "010", "DDDDD", "EA", "E  A", "IF", "+03000"}) +
         Leg({'F', "R09LY", 'A', "DDDDD", "020", "DDDDD", "EA", "EE A", "HF", "+03000"}) +
         Leg({'F', "R09LY", 'A', "DDDDD", "030", "CCCCC", "EA", "EE B", "TF"}) +
         Leg({'F', "R09LY", 'R', "", "010", "CCCCC", "EA", "E  I", "IF", "+02000"}) +
         Leg({'F', "R09LY", 'R', "", "020", "BBBBB", "EA", "E  F", "TF", "+01500"}) +
         Leg({'F', "R09LY", 'R', "", "030", "RW09L", "PG", "GY M", "TF", " 00150"}) +
         Leg({'F', "R09LY", 'R', "", "040", "", "", "  M ", "CA", "+00500"}) +
         Leg({'F', "R09LY", 'R', "", "050", "AAAAA", "EA", "EY  ", "DF", "+03000"}) +
         Leg({'F', "R09LY", 'R', "", "060", "DDDDD", "EA", "EE  ", "HM", "+03000"}) +
         Leg({'F', "VOR-A", 'V', "", "010", "BBBBB", "EA", "E  F", "IF"}));
    avq1::AirportProcedures procedures;
    avq1::ReadApproaches(texts[kApproachFile], "QAAA", procedures);
    ASSERT_EQ(procedures.approaches.size(), 2U) << texts[kApproachFile];
    const avq1::Procedure& approach = procedures.approaches[0];
    EXPECT_EQ(approach.name, "09L");
    std::vector<std::string> legs;
    for (const avq1::ProcedureLeg& leg : approach.legs) {
        legs.push_back(leg.group + "|" + leg.fix + "|" + leg.role + "|" + leg.qualifier);
    }
    EXPECT_THAT(legs, ElementsAre("RNAVY|DDDDD|IAF|DDDDD", "RNAVY|CCCCC||", "RNAVY|BBBBB|FAF|",
                                  "RNAVY|RW09L|MAF|", "RNAVY|AAAAA||MISSED"));
    EXPECT_EQ(approach.legs[3].flyover, 1);
    EXPECT_EQ(procedures.approaches[1].name, "");  // circling: any runway
    EXPECT_EQ(procedures.approaches[1].legs[0].group, "VOR-A");
    // The hold that ends the missed approach is flown at the transition's own fix.
    EXPECT_EQ(
        import.report.Count(Topic::Dropped,
                            "legs of missed approaches back to a fix that names a transition"),
        1U);
}

TEST_F(CifpTest, WhatDoesNotResolveIsNamedWithItsLine) {
    Read(Ground() + Leg({'D', "QUAX3", '5', "", "010", "NOFIX", "EA", "E   ", "IF"}) +
         Leg({'D', "QUAX3", '5', "", "020", "CCCCC", "EA", "EE  ", "TF"}) + "short\n" +
         Record("EA").Put(7, "ENRT").Put(14, "BADLA").Put(33, "N95000000E008000000").text + "\n" +
         Record("ZZ").text + "\n" +
         Record("EA").Put(14, "MINUT").Put(33, "N10600000E008000000").text);
    EXPECT_EQ(import.report.Count(Topic::Unresolved), 1U);
    for (const ReportEntry& entry : import.report.entries) {
        if (entry.topic == Topic::Unresolved) {
            EXPECT_EQ(entry.cases.at(0), "test.pc:8: QAAA QUAX3  IF NOFIX");
        }
    }
    EXPECT_EQ(import.report.Count(Topic::Fault), 3U);
    EXPECT_EQ(LineOf(texts[kFixFile], "BADLA"), "");
}

TEST_F(CifpTest, AirspaceOfArcsEnds) {
    const auto record = [](const char* sequence, const char* via, const char* point,
                           const char* centre) {
        return Record("UC")
                   .Put(7, "Q1ZQAAA PAC  A")
                   .Put(21, sequence)
                   .Put(25, "0")
                   .Put(31, via)
                   .Put(33, point)
                   .Put(52, centre)
                   .Put(71, "0060")
                   .text +
               "\n";
    };
    Read(Ground() + record("0010", "R", "N50060000E008000000", "N50000000E008000000") +
         record("0020", "GE", "N49540000E008000000", "                   "));
    ASSERT_EQ(import.folder.boundaries.size(), 1U);
    const Boundary& boundary = import.folder.boundaries[0];
    EXPECT_EQ(boundary.name, "AAA");
    EXPECT_GT(boundary.points.size(), 25U);  // half a circle in steps, and back
    for (const LatLon& at : boundary.points) {
        EXPECT_NEAR(avq1::GreatCircleDistanceNm(50, 8, at.latitude, at.longitude), 6.0, 0.02);
        EXPECT_GE(at.longitude, 7.9999);  // clockwise from north to south: the eastern half
    }
}

TEST(Cifp, OtherFilesAreRefused) {
    Import import;
    Dataset data;
    for (const char* text : {"", "ident,name\n", "HDR01 FAACIFP18\n"}) {
        LineSource lines = LineSource::OfText(text, "x");
        EXPECT_FALSE(ReadCifp(lines, import.Context(), data, import.error)) << text;
    }
}

}  // namespace
}  // namespace avqdata
