// Each source's format, from small hand-made inputs to records.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "avqdata/airway_pieces.h"
#include "avqdata/import_helpers.h"
#include "avqdata/variation.h"
#include "avqdata/xplane.h"
#include "base/text.h"

namespace avqdata {
namespace {

using testing::ElementsAre;

std::vector<std::string> Idents(const Airway& airway) {
    std::vector<std::string> idents;
    for (const Fix& point : airway.points) {
        idents.push_back(point.ident);
    }
    return idents;
}

struct XplaneTest : testing::Test {
    Report report;
    Dataset data;
    XplaneTables tables;
    std::string error;

    bool Navaids(const std::string& text) { return Read(ReadXplaneNavaids, "nav.dat", text); }
    bool Fixes(const std::string& text) { return Read(ReadXplaneFixes, "fix.dat", text); }
    bool Airways(const std::string& text) { return Read(ReadXplaneAirways, "awy.dat", text); }
    bool Airports(const std::string& text) {
        LineSource lines = LineSource::OfText(text, "apt.dat");
        return ReadXplaneAirports(lines, report, data, error);
    }
    template <typename Reader>
    bool Read(const Reader& reader, const char* name, const std::string& text) {
        LineSource lines = LineSource::OfText(text, name);
        return reader(lines, report, data, tables, error);
    }
};

TEST_F(XplaneTest, OldNavaidRows) {
    ASSERT_TRUE(
        Navaids("\r\n810 Version - data cycle 2013.10, build 1\r\n\r\n"
                "2  10.50000000 -020.25000000  0  365  50  0.0 QX  QUIX HILL NDB\r\n"
                "3  11.00000000  020.00000000 57 11370 100  1.5 QVR QUVER VOR-DME\r\n"
                "13 12.00000000  020.00000000 57 11370 100  0.0 QTC QUTAC TACAN\r\n"
                "7  12.00000000  020.00000000  0 0 0 90.0 ---- KXXX 09 OM\r\n"
                "12 12.00000000  020.00000000 57 11370 100  0.0 QVR QUVER VOR-DME\r\n"
                "6  12.0 020.0 57 11090 10 300090.000 IQNO KXXX 09 GS\r\n"
                "3  95.00000000  020.00000000 57 11370 100  1.5 BAD NOWHERE VOR\r\n99\r\n"))
        << error;
    EXPECT_EQ(data.stations.size(), 2U);
    const std::string navaids = FormatFolder(data)[kNavaidFile];
    EXPECT_EQ(LineOf(navaids, "QX"), "QX QUIX_HILL 10.50000 -20.25000 NDB 365");
    EXPECT_EQ(LineOf(navaids, "QVR"), "QVR QUVER 11.00000 20.00000 VOR 113.70");
    EXPECT_DOUBLE_EQ(data.variations.at(0).variation, 1.5);
    EXPECT_EQ(data.fixes.at(0).ident, "QTC");
    EXPECT_EQ(data.cycle, 1310);
    EXPECT_EQ(report.Count(Topic::Dropped, "marker beacons"), 1U);
    EXPECT_EQ(report.Count(Topic::Dropped, "DMEs that belong to another station"), 1U);
    EXPECT_EQ(report.Count(Topic::Unresolved, "glideslopes without their localizer"), 1U);
    EXPECT_EQ(report.Count(Topic::Fault), 1U);
    EXPECT_EQ(report.entries.back().cases.at(0), "nav.dat:10: is no navaid");
}

TEST_F(XplaneTest, NewRowsFindFixesByRegion) {
    ASSERT_TRUE(
        Navaids("I\n1150 Version - data cycle 2309\n\n"
                "2 11.5 20.0 57 365 25 0.0 QVR QAAA LF QUVER NDB\n"
                "3 11.0 20.0 57 11370 100 1.5 QVR ENRT LF QUVER VOR/DME\n"
                "14 11.0 20.0 57 45678 0 90.0 QAPP QAAA LF 09 LPV\n99\n"))
        << error;
    ASSERT_TRUE(
        Fixes("I\n1101 Version - data cycle 2309\n\n"
              "10.3 20.0 AAAAA QAAA LF 2105430\n"  // an airport's own of the name
              "10.0 20.0 AAAAA ENRT LF 2105430\n10.4 20.0 AAAAA QBBB LF 2105430\n50.0 20.0 AAAAA "
              "ENRT ED\n"
              "10.5 20.2 BBBBB ENRT LF\n99\n"))
        << error;
    ASSERT_TRUE(
        Airways("I\n1100 Version - data cycle 2309\n\n"
                "AAAAA LF 11 BBBBB LF 11 N 1 50 200 Q1-Q2\n"
                "BBBBB LF 11 QVR LF 3 F 1 50 200 Q1\n"
                "BBBBB LF 11 NOFIX LF 11 N 1 50 200 Q1\n99\n"))
        << error;
    EXPECT_EQ(data.cycle, 2309);
    ASSERT_EQ(data.airways.size(), 2U);
    EXPECT_THAT(Idents(data.airways[0]), ElementsAre("AAAAA", "BBBBB", "QVR"));
    EXPECT_DOUBLE_EQ(data.airways[0].points[0].at.latitude, 10.0);  // LF's, en route, not ED's
    EXPECT_EQ(report.Count(Topic::Unresolved), 1U);
    EXPECT_EQ(report.Count(Topic::Dropped), 1U);  // of the satellite approach
}

TEST_F(XplaneTest, AirportsWithDisplacedThresholds) {
    ASSERT_TRUE(Airports(
        "I\n1000 Version\n\n"
        "1 130 1 0 QAAA Quax Intl\n"
        "100 45.0 1 0 0.00 1 2 1 09 50.00000 8.00000 300.0 0.0 3 0 0 1 27 50.00000 8.05000 0.0 0.0 "
        "3 0 0 1\n"
        "1 100 0 0 QBBB [X] CLOSED Old\n"
        "100 45.0 1 0 0.00 1 2 1 09 50.0 8.0 0 0 3 0 0 1 27 50.0 8.1 0 0 3 0 0 1\n"
        "17 100 0 0 QHEL Heli\n"
        "1 100 0 0 QCCC No runway\n99\n"))
        << error;
    ASSERT_EQ(data.airports.size(), 1U);
    const Airport& airport = data.airports[0];
    EXPECT_EQ(airport.ident + " " + airport.name, "QAAA Quax_Intl");
    EXPECT_TRUE(airport.paved);
    ASSERT_EQ(airport.runways.size(), 2U);
    // 0.05 degrees along 50 N are 3.58 km: 11,740 ft or so; 300 m of them before the threshold.
    EXPECT_NEAR(airport.runways[0].lengthFt, 11727, 30);
    EXPECT_NEAR(airport.runways[0].at.longitude, 8.0 + 300.0 / 71600.0, 0.0001);
    EXPECT_NEAR(airport.runways[0].headingTrue, 90.0, 0.1);
    EXPECT_NEAR(airport.runways[1].at.longitude, 8.05, 1e-6);
    EXPECT_EQ(report.Count(Topic::Dropped, "closed airports"), 1U);
    EXPECT_EQ(report.Count(Topic::Dropped, "airports without a runway or position"), 1U);
}

// Designators of one digit are those of two, on the runway and on its localizer.
TEST_F(XplaneTest, OneDigitRunwaysKeepTheirLocalizers) {
    ASSERT_TRUE(
        Navaids("I\n810 Version\n\n"
                "4  50.0 8.06 57 10950 18 90.0 IQAA QAAA 9L ILS-cat-I\n"
                "6  50.0 8.00 57 10950 10 300090.000 IQAA QAAA 9L GS\n"
                "5  50.0 7.99 57 10970 18 270.0 IQAB QAAA 27 LOC\n99\n"))
        << error;
    ASSERT_TRUE(
        Airports("I\n1000 Version\n\n1 130 1 0 QAAA Quax Intl\n"
                 "100 45.0 1 0 0.00 1 2 1 9L 50.0 8.0 0 0 3 0 0 1 27 50.0 8.05 0 0 3 0 0 1\n99\n"))
        << error;
    TieLocalizers(report, data);
    ASSERT_EQ(data.airports.at(0).runways.size(), 2U);
    EXPECT_EQ(data.airports[0].runways[0].ident, "09L");
    EXPECT_EQ(data.airports[0].runways[0].ils, "ILS");
    EXPECT_EQ(data.airports[0].runways[1].ils, "LOC");
    ASSERT_EQ(data.localizers.size(), 1U);
    EXPECT_EQ(data.localizers[0].runway, "09L");
    EXPECT_DOUBLE_EQ(data.localizers[0].glideDeg, 3.0);
    EXPECT_EQ(report.Count(Topic::Dropped, kLocalizersWithoutGlideslope), 1U);
}

TEST_F(XplaneTest, OtherTextsAreRefused) {
    for (const char* text :
         {"", "hello", "ident,name\n1,2\n", "I\n99999 Version\n", "X\n810 V\n"}) {
        error.clear();
        EXPECT_FALSE(Navaids(text)) << text;
        EXPECT_NE(error, "") << text;
    }
}

TEST(AirwayPieces, RunsForksAndRingsKeepEverySegmentOnce) {
    const Fix a{"AAAA", {0, 0}};
    const Fix b{"BBBB", {0, 1}};
    const Fix c{"CCCC", {0, 2}};
    const Fix d{"DDDD", {1, 1}};
    const Fix far{"AAAA", {40, 40}};
    const Fix farB{"EEEE", {40, 41}};
    // Given out of order, one twice and turned round; D forks off at B; another of the name far
    // away.
    const std::vector<Airway> pieces =
        JoinSegments({{"Q1", c, b}, {"Q1", b, d}, {"Q1", a, b}, {"Q1", b, a}, {"Q1", far, farB}});
    ASSERT_EQ(pieces.size(), 3U);
    EXPECT_THAT(Idents(pieces[0]), ElementsAre("CCCC", "BBBB", "AAAA"));
    EXPECT_THAT(Idents(pieces[1]), testing::UnorderedElementsAre("BBBB", "DDDD"));
    EXPECT_THAT(Idents(pieces[2]), testing::UnorderedElementsAre("AAAA", "EEEE"));
    const std::vector<Airway> ring = JoinSegments({{"R", a, b}, {"R", b, d}, {"R", d, a}});
    ASSERT_EQ(ring.size(), 1U);
    EXPECT_EQ(ring[0].points.size(), 4U);
}

TEST(Variation, WeighsNeighboursAndTrustsDesignators) {
    const VariationField field({{{50, 8}, 2.0}, {{50, 10}, 4.0}, {{-60, 100}, 90.0}});
    EXPECT_NEAR(*field.At({50, 9}), 3.0, 0.01);
    EXPECT_NEAR(*field.At({50, 8.01}), 2.0, 0.01);
    EXPECT_FALSE(field.At({0, -100}));
    EXPECT_NEAR(*VariationField({{{0, 179}, 10.0}, {{0, -179}, 12.0}}).At({0, 180}), 11.0, 0.1);

    Dataset data;
    data.variations = {{{50, 8}, -10.0}};
    Airport airport{"QAAA", "-", 0, {50, 8}, {}, true};
    for (const auto& [ident, headingTrue] : {std::pair{"09", 80}, {"36", 3}, {"18", 90}}) {
        RunwayEnd& end = airport.runways.emplace_back();
        end.ident = ident;
        end.headingTrue = headingTrue;
        end.needsVariation = true;
    }
    data.airports.push_back(airport);
    Report report;
    FillHeadings(data, report);
    ASSERT_EQ(data.airports[0].runways.size(), 2U);  // 18 cannot point east
    EXPECT_NEAR(data.airports[0].runways[0].headingMag, 90.0, 0.01);
    EXPECT_NEAR(data.airports[0].runways[1].headingMag, 13.0, 0.01);
    EXPECT_EQ(report.Count(Topic::Dropped), 1U);
}

TEST(OurAirports, RunwaysJoinTheirAirports) {
    Import import;
    Dataset data;
    const char* airports =
        "id,ident,type,name,latitude_deg,longitude_deg,elevation_ft,gps_code,iso_country\n"
        "1,QAAA,large_airport,\"Quax, the \"\"Great\"\"\",50.0,8.0,361,QAAB,DE\n"
        "2,X1,small_airport,Strip,51.0,8.0,,,DE\n3,QHHH,heliport,H,50,8,1,,DE\n"
        "4,QBAD,small_airport,Bad,95,8,1,,DE\n";
    const char* runways =
        "airport_ref,length_ft,surface,closed,le_ident,le_latitude_deg,le_longitude_deg,"
        "le_displaced_threshold_ft,he_ident,he_latitude_deg,he_longitude_deg,"
        "he_displaced_threshold_ft\n"
        "1,11700,ASPH,0,9,50.0,8.0,,27,50.0,8.05,\n1,4000,GRS,1,18,50,8,,36,49.9,8,\n"
        "1,3000,CON,0,H1,50,8,,H2,50,8.1,\n2,1500,GRS,0,02,,,,20,,,\n";
    ASSERT_TRUE(ReadOurAirports(airports, runways, import.Context(), data, import.error))
        << import.error;
    ASSERT_EQ(data.airports.size(), 2U);
    EXPECT_EQ(data.airports[0].ident, "QAAB");
    EXPECT_EQ(data.airports[0].name, "Quax_the_Great");
    ASSERT_EQ(data.airports[0].runways.size(), 2U);
    EXPECT_EQ(data.airports[0].runways[0].ident, "09");
    EXPECT_TRUE(data.airports[0].paved);
    EXPECT_FALSE(data.airports[1].paved);
    EXPECT_EQ(import.report.Count(Topic::Fault), 1U);

    import.options.countries = {"CA"};
    Dataset none;
    ASSERT_TRUE(
        ReadOurNavaids("ident,name,type,frequency_khz,latitude_deg,longitude_deg,"
                       "magnetic_variation_deg,iso_country\nQV,Quv,VOR-DME,113700,50,8,2,DE\n"
                       "QW,Quw,NDB,365,50,8,2,CA\n",
                       import.Context(), none, import.error));
    ASSERT_EQ(none.stations.size(), 1U);
    EXPECT_EQ(none.stations[0].name, "QUW");
    EXPECT_EQ(none.variations.size(), 2U);
    EXPECT_FALSE(ReadOurAirports(runways, airports, import.Context(), none, import.error));
}

TEST(Nasr, AirwaysResolveByTypeAndBreakAtBordersAndGaps) {
    NasrTexts texts;
    texts.navaids =
        "EFF_DATE,NAV_ID,NAV_TYPE,NAME,LAT_DECIMAL,LONG_DECIMAL,FREQ\n"
        "2023/09/07,QV,VORTAC,QUV,40.0,-70.0,113.7\n2023/09/07,QV,NDB,QUVY,40.1,-70.1,365\n"
        "2023/09/07,QT,VOT,TEST,40,-70,111\n2023/09/07,QD,DME,DEE,40,-71,\n";
    texts.fixes =
        "FIX_ID,LAT_DECIMAL,LONG_DECIMAL,ICAO_REGION_CODE,FIX_USE_CODE\n"
        "AAAAA,40.0,-69.0,K6,WP   \nBBBBB,40.0,-71.0,K6,WP\nBBBBB,10.0,-71.0,K2,WP\n"
        "CCCCC,40.0,-72.0,K6,RADAR\nDDDDD,40,-73,K6,WP\n";
    texts.airways =
        "AWY_LOCATION,AWY_ID,POINT_SEQ,SEG_VALUE,SEG_TYPE,AWY_SEG_GAP_FLAG\n"
        "C,V1,30,BBBBB,RP,N\nC,V1,10,AAAAA,WP,N\nC,V1,20,QV,VORTAC,N\nC,V1,40,BORDER-1,,N\n"
        "C,V1,50,CCCCC,WP,N\nC,V1,60,DDDDD,WP,N\nC,V1,70,NONE,WP,N\nH,V1,10,AAAAA,WP,Y\n"
        "H,V1,20,DDDDD,WP,N\n";
    Report report;
    Dataset data;
    std::string error;
    ASSERT_TRUE(ReadNasr(texts, report, data, error)) << error;
    EXPECT_EQ(data.cycle, 2309);
    EXPECT_EQ(data.stations.size(), 2U);
    EXPECT_EQ(data.fixes.size(), 5U);  // with the DME, without the one for radar
    ASSERT_EQ(data.airways.size(), 2U);
    EXPECT_THAT(Idents(data.airways[0]), ElementsAre("AAAAA", "QV", "BBBBB"));
    EXPECT_DOUBLE_EQ(data.airways[0].points[1].at.latitude, 40.0);  // the VORTAC, not the NDB
    EXPECT_DOUBLE_EQ(data.airways[0].points[2].at.latitude, 40.0);  // the near one
    EXPECT_THAT(Idents(data.airways[1]), ElementsAre("CCCCC", "DDDDD"));
    EXPECT_EQ(report.Count(Topic::Unresolved), 1U);
}

// ---- airspace ----

TEST(Airspace, OpenAirArcsAndCircles) {
    Import import;
    Dataset data;
    LineSource lines = LineSource::OfText(
        "* comment\nDP 50:00:00 N 008:00:00 E\nAC C\nAN QUAX C\nAL SFC\nAH 5000 MSL\n"
        "V X=50:00:00 N 008:00:00 E\nDC 5\n\n"
        "AC R\nAN R-123\nDP 51:00:00 N 008:00:00 E\nV D=-\nV X=51:00:00 N 009:00:00 E\n"
        "DB 51:10:00 N 009:00:00 E, 51:00:00 N 008:44:06 E\nDA 10,270,180\nDP 91:00:00 N 008:00:00 "
        "E\n"
        "DP 51:30.5N 8:30.25W\n",
        "areas.txt");
    ASSERT_TRUE(ReadOpenAir(lines, import.Context(), data, import.error)) << import.error;
    ASSERT_EQ(data.boundaries.size(), 2U);
    EXPECT_EQ(data.boundaries[0].ident, "CLASS_C_QUAX_C");
    EXPECT_EQ(data.boundaries[0].name, "QUA");
    for (const LatLon& at : data.boundaries[0].points) {
        EXPECT_NEAR(avq1::GreatCircleDistanceNm(50, 8, at.latitude, at.longitude), 5.0, 0.001);
    }
    const Boundary& area = data.boundaries[1];
    EXPECT_EQ(area.ident, "RESTRICTED_R_123");
    // Counter-clockwise from north to west is a quarter: 15 steps of 6 degrees.
    ASSERT_GE(area.points.size(), 17U);
    for (std::size_t i = 1; i <= 16; ++i) {
        EXPECT_LT(area.points[i].longitude, 9.0001);
        EXPECT_GT(area.points[i].latitude, 50.9999);
    }
    EXPECT_NEAR(area.points.back().longitude, -8.50417, 0.0001);
    EXPECT_EQ(import.report.Count(Topic::Fault), 2U);  // a point before any area, one off the earth
}

TEST(Airspace, GeoJsonLongitudeFirst) {
    Import import;
    Dataset data;
    const std::string text =
        R"({"features":[{"geometry":{"type":"Polygon","coordinates":[[[8,50],[9,50],[9,51],[8,50]],
        [[8.1,50],[8.2,50],[8.2,50.1],[8.1,50]]]},"properties":{"type":"CLASS_C","name":"QUAX",
        "identifier":"QAA"}},{"geometry":null,"properties":{}},{"geometry":{"type":"Polygon",
        "coordinates":[[["x",1]]]},"properties":{"type":"CLASS_B"}}, 7]})";
    ASSERT_TRUE(ReadGeoJson(text, "a.geojson", import.Context(), data, import.error));
    ASSERT_EQ(data.boundaries.size(), 1U);
    EXPECT_EQ(data.boundaries[0].ident, "CLASS_C_QAA");
    EXPECT_DOUBLE_EQ(data.boundaries[0].points[1].latitude, 50.0);
    EXPECT_DOUBLE_EQ(data.boundaries[0].points[1].longitude, 9.0);
    EXPECT_EQ(import.report.Count(Topic::Fault), 3U);
    EXPECT_EQ(import.report.Count(Topic::Dropped, "holes in airspaces"), 1U);
    EXPECT_FALSE(ReadGeoJson("{\"features\": [", "x", import.Context(), data, import.error));
    EXPECT_FALSE(ReadGeoJson("[]", "x", import.Context(), data, import.error));
}

TEST(Airspace, LongOutlinesAreThinnedToWhatIsRead) {
    Import import;
    Dataset data;
    std::string text = R"({"features":[{"properties":{"name":"RING"},"geometry":{"type":"Polygon",)"
                       R"("coordinates":[[[9.0,50.0])";
    for (int i = 1; i <= 4000; ++i) {
        const double angle = i * avq1::kTwoPi / 4000;
        text += avq1::Format(",[%f,%f]", 8 + std::cos(angle), 50 + std::sin(angle));
    }
    ASSERT_TRUE(ReadGeoJson(text + "]]}}]}", "x", import.Context(), data, import.error));
    ASSERT_EQ(data.boundaries.size(), 1U);
    EXPECT_LE(data.boundaries[0].points.size(), 800U);
    EXPECT_GE(data.boundaries[0].points.size(), 100U);
}

}  // namespace
}  // namespace avqdata
