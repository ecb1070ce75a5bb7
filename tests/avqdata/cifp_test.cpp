// Coded procedures: records built column by column, read back through the module's own loaders.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <map>

#include "avqdata/arinc.h"
#include "avqdata/import_helpers.h"
#include "avqdata/procedure_arcs.h"
#include "avqdata/xplane.h"
#include "base/text.h"
#include "navdb/procedures.h"

namespace avqdata {
namespace {

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

// Legs one a line, "kind name type transition fix description path altitude": "-" and "_" stand for
// blanks, legs of one branch are numbered in turn.
std::string Legs(std::string_view rows) {
    std::string text;
    std::string branch;
    int sequence = 0;
    avq1::LineReader reader(rows, rows.size());
    std::string_view line;
    while (reader.Next(line)) {
        std::array<std::string_view, 8> words;
        avq1::SplitWords(line, words);
        const auto& [kind, name, type, transition, fix, description, path, altitude] = words;
        const std::string thisBranch =
            std::string(name) + " " + std::string(type) + " " + std::string(transition);
        sequence = thisBranch == branch ? sequence + 10 : 10;
        branch = thisBranch;
        std::string blanked(description);
        std::replace(blanked.begin(), blanked.end(), '_', ' ');
        Record record("P");
        record.Put(7, "QAAAQ1").Put(13, kind).Put(14, name).Put(20, type);
        record.Put(21, transition == "-" ? "" : transition).Put(27, avq1::Format("%03d", sequence));
        if (fix != "-") {
            record.Put(30, fix).Put(35, "Q1").Put(37, fix.starts_with("RW") ? "PG" : "EA");
        }
        record.Put(39, "0").Put(40, blanked).Put(48, path);
        if (!altitude.empty()) {
            record.Put(83, altitude.front() == '=' ? " " : altitude.substr(0, 1));
            record.Put(85, altitude.substr(1));
        }
        text += record.text + "\n";
    }
    return text;
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

// "NAME runways: qualifier|fix|restriction|runways ..." of departures and arrivals, "runway:
// group|fix|role|qualifier ..." of approaches; "*" marks a common leg, "!" one to fly over.
std::string Show(const std::vector<avq1::Procedure>& procedures, bool approaches) {
    std::string text;
    for (const avq1::Procedure& procedure : procedures) {
        text += text.empty() ? "" : "; ";
        text += procedure.name + (procedure.runways.empty() ? "" : " " + procedure.runways) + ":";
        for (const avq1::ProcedureLeg& leg : procedure.legs) {
            text += " " + (approaches
                               ? leg.group + "|" + leg.fix + "|" + leg.role + "|" + leg.qualifier +
                                     (leg.text1 == "---" ? "" : "|" + leg.text1)
                               : leg.qualifier + "|" + leg.fix + "|" + leg.text1 + "|" + leg.text2);
            text += leg.mark + (leg.flyover != 0 ? "!" : "");
        }
    }
    return text;
}

// What the module makes of the folder's text of this kind.
std::string Load(char kind, const FolderTexts& texts) {
    avq1::AirportProcedures loaded;
    avq1::ReadSids(texts[kSidFile], "QAAA", loaded.sids);
    avq1::ReadStars(texts[kStarFile], "QAAA", loaded.stars);
    avq1::ReadApproaches(texts[kApproachFile], "QAAA", loaded);
    return kind == 'D'   ? Show(loaded.sids, false)
           : kind == 'E' ? Show(loaded.stars, false)
                         : Show(loaded.approaches, true);
}

TEST_F(CifpTest, ProceduresReadBackThroughTheModule) {
    const struct {
        const char* what;
        const char* legs;
        const char* loaded;
        const char* dropped = nullptr;  // one case of this
    } cases[] = {
        {"branches of a departure meet at one fix, where transitions leave",
         "D QUAX1 4 RW09B - ____ VA +00500\nD QUAX1 4 RW09B AAAAA EY__ DF +02000\n"
         "D QUAX1 4 RW09B BBBBB EE__ TF -05000\nD QUAX1 5 - BBBBB E___ IF\n"
         "D QUAX1 5 - CCCCC EE__ TF\nD QUAX1 6 DDDDD CCCCC E___ IF\nD QUAX1 6 DDDDD DDDDD EE__ "
         "TF\n",
         "QUAX1 09L,09R: |AAAAA|2000A|09L,09R! |BBBBB|5000B|09L,09R |BBBBB|---|--- "
         "CCCCC|CCCCC|---|---* "
         "DDDDD|DDDDD|---|---",
         "legs that end at an altitude"},
        {"without a common route the meeting fix becomes one",
         "D QUAX2 1 RW09L AAAAA EE__ CF\nD QUAX2 1 RW09R AAAAA EE__ CF\n"
         "D QUAX2 3 CCCCC AAAAA E___ IF\nD QUAX2 3 CCCCC CCCCC EE__ TF\nD VECT1 T RW09L - ____ "
         "VM\n",
         "QUAX2 09L,09R: AAAAA|AAAAA|---|---* CCCCC|CCCCC|---|---",
         "procedures that are vectors only"},
        {"an arrival runs inward",
         "E QUIN1 4 DDDDD DDDDD E___ IF BFL200\nE QUIN1 4 DDDDD CCCCC EE__ TF\n"
         "E QUIN1 5 ALL CCCCC E___ IF\nE QUIN1 5 ALL BBBBB EE__ TF\n"
         "E QUIN1 6 RW09L BBBBB E___ IF\nE QUIN1 6 RW09L AAAAA EE__ TF\n",
         "QUIN1 09L: DDDDD|DDDDD|FL200|--- CCCCC|CCCCC|---|---* BBBBB|BBBBB|---|---* "
         "AAAAA|AAAAA|---|09L*"},
        // The hold that ends the missed approach is at the transition's own fix; the second
        // approach circles to any runway.
        {"roles of an approach and its missed approach",
         "F R09LY A DDDDD DDDDD E__A IF +03000\nF R09LY A DDDDD DDDDD EE_A HF +03000\n"
         "F R09LY A DDDDD CCCCC EE_B TF\nF R09LY R - CCCCC E__I IF +02000\n"
         "F R09LY R - BBBBB E__F TF +01500\nF R09LY R - RW09L GY_M TF =00150\n"
         "F R09LY R - - __M_ CA +00500\nF R09LY R - AAAAA EY__ DF +03000\n"
         "F R09LY R - DDDDD EE__ HM +03000\nF VOR-A V - BBBBB E__F IF\n",
         "09L: RNAVY|DDDDD|IAF|DDDDD|3000A RNAVY|CCCCC|||2000A RNAVY|BBBBB|FAF||1500A "
         "RNAVY|RW09L|MAF||150! RNAVY|AAAAA|MAF||3000A! RNAVY|DDDDD|MAF||3000A; : "
         "VOR-A|BBBBB|FAF|"},
        {"each transition keeps what it alone says of the joint; one that says nothing drops it",
         "F R09LY A AAAAA AAAAA E__A IF\nF R09LY A AAAAA CCCCC EE_B TF +03200\n"
         "F R09LY A BBBBB BBBBB E__A IF\nF R09LY A BBBBB CCCCC EY_B TF\n"
         "F R09LY A DDDDD DDDDD E__A IF\nF R09LY A DDDDD CCCCC EE_B TF\n"
         "F R09LY R - CCCCC E__I IF +02000\nF R09LY R - RW09L GY_M TF\n",
         "09L: RNAVY|AAAAA|IAF|AAAAA RNAVY|CCCCC||AAAAA|3200A RNAVY|BBBBB|IAF|BBBBB "
         "RNAVY|CCCCC||BBBBB! RNAVY|DDDDD|IAF|DDDDD RNAVY|CCCCC|||2000A RNAVY|RW09L|MAF|!"},
        {"no marks of one branch at the meeting fix of all",
         "D QUAX3 1 RW09L AAAAA EE__ CF +04000\nD QUAX3 1 RW09R AAAAA EY__ CF\n"
         "D QUAX3 3 CCCCC AAAAA E___ IF\nD QUAX3 3 CCCCC CCCCC EE__ TF\n",
         "QUAX3 09L,09R: |AAAAA|4000A|09L |AAAAA|---|09R! AAAAA|AAAAA|---|---* "
         "CCCCC|CCCCC|---|---"},
        {"where both sides say something of one common fix, each has it",
         "D QUAX4 1 RW09L AAAAA EE__ CF +04000\nD QUAX4 1 RW09R AAAAA EE__ CF\n"
         "D QUAX4 3 CCCCC AAAAA EY__ IF\nD QUAX4 3 CCCCC CCCCC EE__ TF\n",
         "QUAX4 09L,09R: |AAAAA|4000A|09L AAAAA|AAAAA|---|09R* CCCCC|AAAAA|---|---! "
         "CCCCC|CCCCC|---|---"},
        {"a runway without a letter",
         "D QUAX5 4 RW27 AAAAA EY__ CF\nD QUAX5 4 RW27 BBBBB EE__ TF\nD QUAX5 5 - BBBBB E___ IF\n"
         "D QUAX5 5 - CCCCC EE__ TF\n",
         "QUAX5 27: |AAAAA|---|27! |BBBBB|---|--- CCCCC|CCCCC|---|---*"},
        {"a transition of one fix keeps it",
         "F R09RZ A AAAAA AAAAA E__A IF\nF R09RZ A AAAAA BBBBB E__D TF\n"
         "F R09RZ A CCCCC CCCCC E__A IF\nF R09RZ R - CCCCC E__I IF\nF R09RZ R - RW09R E__M TF\n",
         "09R: RNAVZ|AAAAA|IAF|AAAAA RNAVZ|BBBBB||AAAAA RNAVZ|CCCCC|IAF|CCCCC RNAVZ|CCCCC|| "
         "RNAVZ|RW09R|MAF|"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        import = {};
        Read(Ground() + Legs(c.legs));
        EXPECT_EQ(Load(c.legs[0], texts), c.loaded);
        if (c.dropped != nullptr) {
            EXPECT_EQ(import.report.Count(Topic::Dropped, c.dropped), 1U);
        }
    }
}

// Ten miles around a station: a quarter from north to east, or the rest of the circle; the same
// place has the same name whatever approach passes it.
TEST_F(CifpTest, ArcsAreFollowedFromPointToPoint) {
    const std::string points = Ground() + Waypoint("NORTH", "N50100000E008000000") +
                               Waypoint("EASTS", "N50000000E008153340") +
                               Record("D")
                                   .Put(14, "QVR")
                                   .Put(20, "Q1")
                                   .Put(23, "11300VDHW")
                                   .Put(33, "N50000000E008000000")
                                   .text +
                               "\n";
    const auto arc = [](const char* name, const char* path, char turn, const char* centre) {
        const bool aboutStation = std::string(path) == "AF";
        Record record("P");
        record.Put(7, "QAAAQ1F").Put(14, name).Put(20, "VQVR").Put(27, "020").Put(30, "EASTSQ1EA");
        record.Put(39, "0EE  ").Put(44, std::string(1, turn)).Put(48, path);
        if (aboutStation) {
            record.Put(51, centre).Put(55, "Q1").Put(63, "088001003580").Put(79, "D ");
        } else {
            record.Put(57, "010000").Put(107, centre).Put(113, "Q1D ");
        }
        return record.text + "\n";
    };
    const std::string fromNorth = "F %s V QVR NORTH E__A IF\n";
    const std::string byHeading = "F %s V QVR - ____ VI\n";
    const struct {
        const char* what;
        std::string before;
        const char* path;
        char turn;
        const char* centre;
        const char* names;  // of all fixes
        double turnedDeg = 0;
    } cases[] = {
        {"clockwise", fromNorth, "AF", 'R', "QVR", "NORTH EAS01 EAS02 EAS03 EASTS", 90},
        {"the long way", fromNorth, "AF", 'L', "QVR",
         "NORTH EAS01 EAS02 EAS03 EAS04 EAS05 EAS06 EAS07 EAS08 EAS09 EASTS", -270},
        {"about a fix", fromNorth, "RF", 'R', "QVR", "NORTH EAS01 EAS02 EAS03 EASTS", 90},
        {"met on a heading, it begins at its radial", byHeading, "AF", 'R', "QVR",
         "EAS01 EAS02 EAS03 EAS04 EASTS", 90},
        {"nobody knows where it begins", byHeading, "RF", 'R', "QVR", "EASTS"},
        {"its centre follows from the turn", fromNorth, "RF", 'R', "NOFIX",
         "NORTH EAS01 EAS02 EAS03 EASTS", 90},
        {"nobody knows its centre", fromNorth, "AF", 'R', "NOFIX", "NORTH EASTS"},
        {"its centre is another", fromNorth, "AF", 'R', "AAAAA", "NORTH EASTS"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        import = {};
        std::string text = points;
        for (const char* name : {"VOR-A", "VOR-B"}) {
            text +=
                Legs(avq1::Format(c.before.c_str(), name)) + arc(name, c.path, c.turn, c.centre);
        }
        Read(text);
        avq1::AirportProcedures loaded;
        avq1::ReadApproaches(texts[kApproachFile], "QAAA", loaded);
        ASSERT_EQ(loaded.approaches.size(), 1U);
        std::map<std::string, std::string> names;
        std::map<std::string, std::vector<LatLon>> ways;
        for (const avq1::ProcedureLeg& leg : loaded.approaches[0].legs) {
            names[leg.group] += (names[leg.group].empty() ? "" : " ") + leg.fix;
            ways[leg.group].push_back({leg.latitude, leg.longitude});
            EXPECT_NE(LineOf(texts[kFixFile], leg.fix), "");
        }
        EXPECT_EQ(names["VOR-A"], c.names);
        EXPECT_EQ(names["VOR-B"], c.names);
        const LatLon centre{50, 8};
        EXPECT_EQ(import.report.Count(Topic::Warning), c.turnedDeg == 0 ? 2U : 0U);
        if (c.turnedDeg != 0) {
            EXPECT_LE(FarthestOffArcNm(ways["VOR-A"], centre, 10), kFarthestOffArcNm);
            EXPECT_NEAR(TurnedDeg(ways["VOR-A"], centre), c.turnedDeg, 0.5);
        }
    }
}

// A file an airport: fields between commas; a terminal fix of its own airport, an en-route one, a
// runway's threshold, a navaid, a side of a pair of runways.
TEST(XplaneProcedures, FieldsBecomeTheLegsOfTheirColumns) {
    CifpBook book;
    book.points.Add("PC", "QAAA", "AAAAA", "Q1", {50, 8.1});
    book.points.Add("PC", "QBBB", "AAAAA", "Q1", {50.5, 8.1});
    book.points.Add("EA", "", "AAAAA", "Q1", {51, 8.1});
    book.points.Add("D", "", "QVR", "Q1", {50, 8.2});
    Report report;
    std::string error;
    LineSource lines = LineSource::OfText(
        "SID:010,4,QUAX1,RW09B,AAAAA,Q1,P,C,EY  , ,   ,CF, , , , , ,      ,    ,    ,    ,    ,B,"
        "FL120,05000,     , ,250,    ,   , , , , , , , , ;\r\n"
        "SID:020,5,QUAX1, ,AAAAA,Q1,E,A,E   , ,   ,TF, , , , , ,      ,    ,    ,    ,    ,+,"
        "05000,     ,     , ,   ,    ,   , , , , , , , , ;\n"
        "APPCH:010,D,D09LZ, ,QVR,Q1,D, ,VY F, ,   ,CF, , , , , ,      ,    ,    ,    ,    , ,"
        "     ,     ,     , ,   ,    ,   , , , , , , , , ;\n"
        "APPCH:020,D,D09LZ, ,RW09L,Q1,P,G,GY M, ,   ,CF, , , , , ,      ,    ,    ,    ,    , ,"
        "00150,     ,     , ,   ,    ,   , , , , , , , , ;\n"
        "PRDAT:1,2;\nAPPCH:010,D;\nRWY:RW09L,     ,      ,00820, ,    , ,   "
        ";N50000000,E008000000,0000;\nRWY:RW09R,,,,,,,;N50001000,E008000000,0000;\n"
        "RWY:RW27,     ,;N95000000,E008000000,0000;\n",
        "QAAA.dat");
    ASSERT_TRUE(ReadXplaneProcedures(lines, "QAAA", report, book, error)) << error;
    EXPECT_EQ(report.Count(Topic::Fault), 2U);
    EXPECT_EQ(report.Count(Topic::Dropped), 1U);
    Dataset data;
    BuildProcedures(book, report, data);
    EXPECT_EQ(data.procedures[kSids]["QAAA"],
              (SectionLines{"T QUAX1 --- 09L,09R",
                            "QUAX1 AAAAA 250/5000AFL120B 09L,09R 50.00000 8.10000 FO",
                            "QUAX1 AAAAA 5000A --- 51.00000 8.10000 ---", ";"}));
    EXPECT_EQ(data.procedures[kApproaches]["QAAA"],
              (SectionLines{"09L VORDMEZ QVR FAF --- 50.00000 8.20000 0 0 FO",
                            "09L VORDMEZ RW09L MAF 150 50.00000 8.00000 0 0 FO", ";"}));
}

// A leg that is not as long as its record says has lost points: it is none.
TEST_F(CifpTest, AirwaysBreakAtTheirEndsAndWhereRecordsAreMissing) {
    const struct {
        const char* legs[3];    // tenths of a mile; true are 6.4, 11.9 and 10.0
        const char* lastPoint;  // marked as an airway's last
        const char* pieces;
    } rows[] = {
        {{"0064", "0119", "0100"}, "", "AAAAA BBBBB CCCCC DDDDD"},
        {{"", "0000", ""}, "", "AAAAA BBBBB CCCCC DDDDD"},
        {{"", "", ""}, "BBBBB", "AAAAA BBBBB | CCCCC DDDDD"},
        {{"", "0105", "0114"}, "", "AAAAA BBBBB CCCCC DDDDD"},
        {{"", "0102", ""}, "", "AAAAA BBBBB | CCCCC DDDDD"},
        {{"", "0137", ""}, "", "AAAAA BBBBB | CCCCC DDDDD"},
        {{"0150", "", "0060"}, "", "BBBBB CCCCC"},
    };
    for (const auto& row : rows) {
        std::string text = Ground();
        const char* const fixes[] = {"AAAAA", "BBBBB", "CCCCC", "DDDDD"};
        for (std::size_t i = 4; i-- > 0;) {  // their numbers order them
            Record record("ER");
            record.Put(14, "V1").Put(26, "0" + std::to_string(i + 1) + "00").Put(30, fixes[i]);
            record.Put(35, "Q1EA0").Put(75, i < 3 ? row.legs[i] : "");
            text += record.Put(41, row.lastPoint == std::string(fixes[i]) ? "E" : " ").text + "\n";
        }
        import = {};
        Read(text);
        std::string pieces;
        avq1::LineReader lines(texts[kAirwayFile], 200);
        for (std::string_view line; lines.Next(line);) {
            pieces += (pieces.empty() ? "" : line.substr(3, 4) == "0010" ? " | " : " ");
            pieces += line.substr(8, 5);
        }
        EXPECT_EQ(pieces, row.pieces) << row.legs[0] << row.legs[1] << row.legs[2];
    }
}

TEST_F(CifpTest, WhatDoesNotResolveIsNamedWithItsLine) {
    Read(Ground() + Legs("D QUAX3 5 - NOFIX E___ IF\nD QUAX3 5 - CCCCC EE__ TF\n") + "short\n" +
         Record("EA").Put(7, "ENRT").Put(14, "BADLA").Put(33, "N95000000E008000000").text + "\n" +
         Record("ZZ").text + "\n" + Record("UC").Put(25, "0").text + "\n" +
         Record("EA").Put(14, "MINUT").Put(33, "N10600000E008000000").text);
    EXPECT_EQ(import.report.Count(Topic::Unresolved), 1U);
    for (const ReportEntry& entry : import.report.entries) {
        if (entry.topic == Topic::Unresolved) {
            EXPECT_EQ(entry.cases.at(0), "test.pc:8: QAAA QUAX3  IF NOFIX");
        }
    }
    EXPECT_EQ(import.report.Count(Topic::Fault), 4U);
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
    EXPECT_GT(boundary.points.size(), 15U);  // half a circle in steps, and back
    for (const LatLon& at : boundary.points) {
        EXPECT_NEAR(avq1::GreatCircleDistanceNm(50, 8, at.latitude, at.longitude), 6.0, 0.02);
        EXPECT_GE(at.longitude, 7.9999);  // clockwise from north to south: the eastern half
    }
}

TEST(Cifp, OtherFilesAreRefused) {
    Import import;
    Dataset data;
    const std::string record = Waypoint("AAAAA", "N50000000E008100000");
    const std::string broken = record.substr(0, 60) + '\x80' + record.substr(61);
    const std::string ofAirport =  // the form of a file an airport, which begins with an S too
        "SID:010,5,QUAX1, ,AAAAA,Q1,E,A,EY  , ,   ,IF, , , , , ,      ,    ,    ,    ,    , , "
        ",     ,     , ,   ,    ,   , , , , , , , , ;\n";
    ASSERT_GT(ofAirport.size(), kArincColumns);
    for (const std::string& text :
         {std::string(), std::string("ident,name\n"), std::string("HDR01 FAACIFP18\n"), ofAirport,
          "S" + std::string(200000, 'A') + "\n", broken, record + ofAirport}) {
        LineSource lines = LineSource::OfText(text, "x");
        import.error.clear();
        EXPECT_FALSE(ReadCifp(lines, import.Context(), data, import.error)) << text.substr(0, 80);
        EXPECT_NE(import.error.find("x: is no file of ARINC 424 records"), std::string::npos);
        EXPECT_EQ(import.error.ends_with("`import xplane`"), text.find("SID:") != text.npos);
    }
}

}  // namespace
}  // namespace avqdata
