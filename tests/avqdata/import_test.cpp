// Each source's format, from small hand-made inputs to records.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "avqdata/airspace.h"
#include "avqdata/airway_pieces.h"
#include "avqdata/import_helpers.h"
#include "avqdata/outline_union.h"
#include "avqdata/text_tools.h"
#include "avqdata/variation.h"
#include "avqdata/xplane.h"
#include "base/text.h"
#include "magneticfield/magnetic_field.h"

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

TEST(Variation, ComesFromTheFieldAtTheCyclesDate) {
    Dataset data;
    Airport airport{"QAAA", "-", 0, {50, -50}, {}, true};
    for (const auto& [ident, headingTrue] :
         {std::pair{"09", 75}, {"36", 345}, {"18", 90}, {"27", 270}}) {
        RunwayEnd& end = airport.runways.emplace_back();
        end.ident = ident;
        end.headingTrue = headingTrue;
        end.courseMag = 1;  // of the approach, against the runway
        end.needsVariation = true;
    }
    airport.runways[3].needsVariation = false;
    airport.runways[3].headingMag = 271;
    data.airports.push_back(airport);
    Report report;
    FillHeadings(2309, data, report);
    const std::vector<RunwayEnd>& ends = data.airports[0].runways;
    ASSERT_EQ(ends.size(), 3U);  // 18 cannot point east
    EXPECT_EQ(report.Count(Topic::Dropped), 1U);
    const double variation = magneticfield::Variation(50, -50, 2023.0 + 249.0 / 365.0);
    EXPECT_LT(variation, -15);
    EXPECT_NEAR(ends[0].headingMag, 75 - variation, 1e-6);
    EXPECT_NEAR(ends[0].courseMag, 76 - variation, 1e-6);
    EXPECT_NEAR(ends[1].headingMag, Normalized(345 - variation), 1e-6);
    EXPECT_EQ(ends[2].headingMag, 271);
    // By another date another heading, by none that of the model's own.
    for (const auto& [cycle, year] : {std::pair{0, 2025.0}, {2601, 2026.0 + 21.0 / 365.0}}) {
        Dataset again;
        again.airports.push_back(airport);
        FillHeadings(cycle, again, report);
        EXPECT_NEAR(again.airports[0].runways[0].headingMag,
                    75 - magneticfield::Variation(50, -50, year), 1e-6);
    }
    // A runway near the pole is numbered by true north.
    data.airports = {airport};
    data.airports[0].at = {83, -62};
    FillHeadings(0, data, report);
    EXPECT_EQ(data.airports[0].runways.at(0).headingMag, 75);
}

TEST(OurAirports, RunwaysJoinTheirAirports) {
    Import import;
    Dataset data;
    const char* airports =
        "id,ident,type,name,latitude_deg,longitude_deg,elevation_ft,gps_code,iso_country,"
        "scheduled_service\n"
        "1,QAAA,large_airport,\"Quax, the \"\"Great\"\"\",50.0,8.0,361,QAAB,DE,yes\n"
        "2,X1,small_airport,Strip,51.0,8.0,,,DE,no\n3,QHHH,heliport,H,50,8,1,,DE\n"
        "4,QBAD,small_airport,Bad,95,8,1,,DE\n";
    // Of those with one code: with runways, then with airlines, then the first.
    const char* twins =
        "5,A1,medium_airport,New,50,8,361,QAAB,DE,yes\n6,QCCC,small_airport,Old,52,8,0,,DE,no\n"
        "7,A2,medium_airport,Used,52,8.1,0,QCCC,DE,yes\n8,A3,medium_airport,Other,52,8.2,0,QCCC,"
        "DE,yes\n9,A4,small_airport,Grass,51,8.1,,X1,DE,no\n10,A5,small_airport,Town,51,8.2,,X1,"
        "DE,yes\n";
    const char* runways =
        "airport_ref,length_ft,surface,closed,le_ident,le_latitude_deg,le_longitude_deg,"
        "le_displaced_threshold_ft,le_heading_degT,he_ident,he_latitude_deg,he_longitude_deg,"
        "he_displaced_threshold_ft,he_heading_degT\n"
        "1,11700,ASPH,0,9,50.0,8.0,,,27,50.0,8.05,,\n1,4000,GRS,1,18,50,8,,,36,49.9,8,,\n"
        "1,3000,CON,0,H1,50,8,,,H2,50,8.1,,\n2,6076,GRS,0,02,,,,,20,,,608,\n"
        "2,6076,GRS,0,09,51,8,,90,27,,,,\n2,6076,GRS,0,18,,,,,36,51,8,,0\n"
        "2,,GRS,0,04,,,,40,22,,,,\n";
    ASSERT_TRUE(ReadOurAirports(std::string(airports) + twins, runways, import.Context(), data,
                                import.error))
        << import.error;
    ASSERT_EQ(data.airports.size(), 3U);
    EXPECT_EQ(data.airports[2].name, "Used");
    EXPECT_EQ(import.report.Count(Topic::Dropped, "airports listed twice"), 5U);
    EXPECT_EQ(data.airports[0].ident, "QAAB");
    EXPECT_EQ(data.airports[0].name, "Quax_the_Great");
    ASSERT_EQ(data.airports[0].runways.size(), 2U);
    EXPECT_EQ(data.airports[0].runways[0].ident, "09");
    EXPECT_TRUE(data.airports[0].paved);
    EXPECT_FALSE(data.airports[1].paved);
    EXPECT_TRUE(data.airports[0].isScheduled);
    EXPECT_FALSE(data.airports[1].isScheduled);
    EXPECT_EQ(import.report.Count(Topic::Fault), 1U);

    // Without thresholds: about the airport's position, from the other end, by number or heading.
    const Airport& strip = data.airports[1];
    ASSERT_EQ(strip.runways.size(), 6U);
    const auto expectEnd = [&](std::size_t i, const char* ident, double course, double fromNm,
                               double courseFrom) {
        EXPECT_EQ(strip.runways[i].ident, ident);
        EXPECT_EQ(strip.runways[i].lengthFt, 6076);
        EXPECT_NEAR(TurnDeg(strip.runways[i].headingTrue, course), 0, 0.05) << ident;
        EXPECT_NEAR(DistanceNm(strip.at, strip.runways[i].at), fromNm, 0.001) << ident;
        if (fromNm > 0) {
            EXPECT_NEAR(TurnDeg(CourseTrue(strip.at, strip.runways[i].at), courseFrom), 0, 0.1)
                << ident;
        }
    };
    const double byNumber = 20 + magneticfield::Variation(51, 8, magneticfield::kModelEpoch);
    expectEnd(0, "02", byNumber, 0.5, byNumber + 180);
    expectEnd(1, "20", byNumber + 180, 0.4, byNumber);  // 608 ft displaced
    expectEnd(2, "09", 90, 0, 0);
    expectEnd(3, "27", 270, 1, 90);
    expectEnd(4, "18", 180, 1, 0);
    expectEnd(5, "36", 0, 0, 0);
    EXPECT_EQ(import.report.Count(Topic::Warning,
                                  "runways placed by length and direction, as their thresholds are "
                                  "not known"),
              3U);
    EXPECT_EQ(
        import.report.Count(Topic::Dropped, "runways without threshold positions or a length"), 1U);

    import.options.countries = {"CA"};
    Dataset none;
    ASSERT_TRUE(
        ReadOurNavaids("ident,name,type,frequency_khz,latitude_deg,longitude_deg,iso_country\n"
                       "QV,Quv,VOR-DME,113700,50,8,DE\nQW,Quw,NDB,365,50,8,CA\n",
                       import.Context(), none, import.error));
    ASSERT_EQ(none.stations.size(), 1U);
    EXPECT_EQ(none.stations[0].name, "QUW");
    EXPECT_EQ(import.report.Count(Topic::Dropped, "navaids of other countries"), 1U);
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

TEST(Nasr, AirwaysOfLegsAndRunwaysOfTwoTables) {
    NasrTexts texts;
    texts.navaids =
        "EFF_DATE,NAV_ID,NAV_TYPE,NAME,LAT_DECIMAL,LONG_DECIMAL,FREQ\n"
        "2023/09/07,QV,VORTAC,QUV,40.0,-70.0,113.7\n";
    texts.fixes =
        "FIX_ID,LAT_DECIMAL,LONG_DECIMAL\nAAAAA,40.0,-69.0\nBBBBB,40.0,-71.0\nCCCCC,40.0,-72.0\n"
        "DDDDD,40,-73\n";
    // The last leg ends at the station; one leads to a border, one is a gap.
    texts.airwayLegs =
        "AWY_LOCATION,AWY_ID,POINT_SEQ,FROM_POINT,FROM_PT_TYPE,TO_POINT,AWY_SEG_GAP_FLAG\n"
        "C,V1,10,DDDDD,WP,CCCCC,N\nC,V1,20,CCCCC,WP,BBBBB,Y\nC,V1,30,BBBBB,WP,AAAAA,N\n"
        "C,V1,40,AAAAA,WP,QV,N\nC,V2,10,AAAAA,WP,BBBBB,N\nC,V2,20,BBBBB,WP,U.S. BORDER-4,N\n";
    texts.airports =
        "SITE_NO,ARPT_ID,ICAO_ID,SITE_TYPE_CODE,ARPT_NAME,LAT_DECIMAL,LONG_DECIMAL,ELEV\n"
        "7,QAA,KQAA,A,QUAX,40.0,-70.0,361\n8,QHH,,H,PAD,40.0,-70.0,361\n";
    texts.runways =
        "SITE_NO,RWY_ID,RWY_LEN,SURFACE_TYPE_CODE\n7,9/27,11700,ASPH-G\n7,18/36,2000,TURF\n"
        "7,01/19,2000,TURF\n8,H1,50,CONC\n";
    texts.runwayEnds =
        "SITE_NO,RWY_ID,RWY_END_ID,TRUE_ALIGNMENT,LAT_DECIMAL,LONG_DECIMAL,"
        "LAT_DISPLACED_THR_DECIMAL,LONG_DISPLACED_THR_DECIMAL\n"
        "7,9/27,9,81,40.0,-70.02,40.0,-70.01\n7,9/27,27,,40.0,-69.98,,\n"
        "7,18/36,18,172,40.01,-70,,\n7,18/36,36,,,,,\n7,01/19,01,,40.0,-70,,\n8,H1,H1,,40,-70,,\n";
    Report report;
    Dataset data;
    std::string error;
    ASSERT_TRUE(ReadNasr(texts, report, data, error)) << error;
    ASSERT_EQ(data.airways.size(), 3U);
    EXPECT_THAT(Idents(data.airways[0]), ElementsAre("DDDDD", "CCCCC"));
    EXPECT_THAT(Idents(data.airways[1]), ElementsAre("BBBBB", "AAAAA", "QV"));
    EXPECT_THAT(Idents(data.airways[2]), ElementsAre("AAAAA", "BBBBB"));
    EXPECT_EQ(report.Count(Topic::Unresolved), 0U);
    ASSERT_EQ(data.airports.size(), 1U);
    const Airport& airport = data.airports[0];
    ASSERT_EQ(airport.runways.size(), 3U);  // 01 has neither a direction nor another end
    EXPECT_TRUE(airport.paved);
    EXPECT_EQ(airport.runways[0].ident, "18");
    EXPECT_EQ(airport.runways[0].headingTrue, 172);
    EXPECT_EQ(airport.runways[1].ident, "09");
    EXPECT_EQ(airport.runways[1].lengthFt, 11700);
    EXPECT_NEAR(airport.runways[1].headingTrue, 90, 0.1);  // not the whole degrees published
    EXPECT_DOUBLE_EQ(airport.runways[1].at.longitude, -70.01);
    EXPECT_EQ(airport.runways[2].ident, "27");

    texts.airwayLegs =
        "AWY_LOCATION,AWY_ID,POINT_SEQ,FROM_POINT,FROM_PT_TYPE,TO_POINT,"
        "AWY_SEG_GAP_FLAG\n";
    EXPECT_FALSE(ReadNasr(texts, report, data = {}, error));
    EXPECT_EQ(error, "AWY_SEG_ALT.csv: gives no airway");
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
    EXPECT_EQ(data.boundaries[0].ident, "CLASS_C_QUAX");
    EXPECT_EQ(data.boundaries[0].name, "QUA");
    for (const LatLon& at : data.boundaries[0].points) {
        EXPECT_NEAR(avq1::GreatCircleDistanceNm(50, 8, at.latitude, at.longitude), 5.0, 0.001);
    }
    const Boundary& area = data.boundaries[1];
    EXPECT_EQ(area.ident, "RESTRICTED_R_123");
    // Counter-clockwise from north to west is a quarter: steps of 7 degrees keep within 0.02 nm.
    ASSERT_GE(area.points.size(), 14U);
    for (std::size_t i = 1; i <= 13; ++i) {
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

// Square nautical miles inside a closed ring around 50 N.
double AreaNm(const Ring& ring) {
    const double shrink = std::cos(50 * avq1::kDegToRad);
    double area = 0;
    for (std::size_t i = 1; i < ring.size(); ++i) {
        const LatLon& a = ring[i - 1];
        const LatLon& b = ring[i];
        const double east = TurnDeg(ring[0].longitude, a.longitude);
        area += (east * (b.latitude - a.latitude) -
                 TurnDeg(a.longitude, b.longitude) * (a.latitude - ring[0].latitude)) *
                shrink * 1800;
    }
    return area;
}

// A square of a side in nm with its south-west corner so many nm off 50 N and a longitude.
Ring Square(double eastNm, double northNm, double sideNm, double longitude = 8) {
    const double nm = 1 / 60.0;
    const double shrink = std::cos(50 * avq1::kDegToRad);
    const auto corner = [&](double east, double north) {
        return LatLon{50 + north * nm, TurnDeg(0, longitude + east * nm / shrink)};
    };
    return {corner(eastNm, northNm), corner(eastNm + sideNm, northNm),
            corner(eastNm + sideNm, northNm + sideNm), corner(eastNm, northNm + sideNm),
            corner(eastNm, northNm)};
}

TEST(Airspace, ShelvesBecomeTheOutlineAroundAll) {
    const struct {
        const char* what;
        std::vector<Ring> shelves;
        std::vector<double> areas;  // nm2, of what they become
        std::size_t corners = 0;    // of the first; 0 = any
    } cases[] = {
        {"one beside the other", {Square(0, 0, 10), Square(10, 0, 10)}, {200}, 6},
        {"a crack of 0.04 nm between", {Square(0, 0, 10), Square(10.04, 0, 10)}, {200}},
        {"one across the other", {Square(0, 0, 10), Square(5, 5, 10)}, {175}, 8},
        {"one within the other", {Square(3, 3, 2), Square(0, 0, 10)}, {100}, 4},
        {"the same again", {Square(0, 0, 10), Square(0, 0, 10)}, {100}, 4},
        {"apart, the western first", {Square(20, 0, 10), Square(0, 0, 5)}, {25, 100}, 4},
        {"at one corner", {Square(0, 0, 10), Square(10, 10, 10)}, {200}, 8},
        {"around a hole",
         {Square(0, 0, 10), Square(10, 0, 10), Square(20, 0, 10), Square(0, 10, 10),
          Square(20, 10, 10), Square(0, 20, 10), Square(10, 20, 10), Square(20, 20, 10)},
         {900}},
        {"across the date line", {Square(0, 0, 10, 179.95), Square(10, 0, 10, 179.95)}, {200}, 6},
        {"a shelf that is a line", {Square(0, 0, 10), Square(10, 5, 0.01)}, {100}},
        {"nothing", {{}, {}}, {}},
        {"too many points", {Ring(kMostUnionPoints, {50, 8}), Square(0, 0, 10)}, {}},
        {"a line alone", {{{50, 8}, {50, 9}, {50, 8}}}, {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const std::vector<Ring> rings = OuterRings(c.shelves);
        ASSERT_EQ(rings.size(), c.areas.size());
        for (std::size_t i = 0; i < rings.size(); ++i) {
            EXPECT_NEAR(AreaNm(rings[i]), c.areas[i], 1.5);
            EXPECT_EQ(rings[i].front().longitude, rings[i].back().longitude);
        }
        if (c.corners > 0) {
            EXPECT_EQ(rings[0].size(), c.corners + 1);
        }
    }
}

TEST(Airspace, NamesAndClasses) {
    const struct {
        const char *name, *shelf;
    } names[] = {{"ATLANTA CLASS B AREA C", "ATLANTA"},
                 {"PARIS TMA 2", "PARIS TMA"},
                 {"Frankfurt C", "Frankfurt"},
                 {"SANTA FE CLASS D", "SANTA FE"},
                 {"NANTES TMA 1A", "NANTES TMA"},
                 {"BALE SECTOR 3", "BALE"},
                 {"D", "D"},
                 {"", ""}};
    for (const auto& c : names) {
        EXPECT_EQ(NameOfShelf(c.name), c.shelf);
    }
    const struct {
        const char *word, *airspaceClass;
    } words[] = {{"b", "CLASS_B"}, {"R", "RESTRICTED"}, {"4", "CTR"},    {"7", "TMA"},
                 {"UIR", "FIR"},   {"", "OTHER"},       {"MOA ", "MOA"}, {"CLASS E5", "CLASS_E5"}};
    for (const auto& c : words) {
        EXPECT_EQ(AirspaceClass(c.word), c.airspaceClass) << c.word;
    }
    // The user's own before all; then what is talked to; what has no known class last.
    const char* const order[] = {"EGTT",     "CLASS_B_ATL", "CLASS_C_X",    "TMA_X",
                                 "FIR_EDGG", "CLASS_D_ATL", "RESTRICTED_X", "CLASS_E5_X"};
    for (std::size_t i = 1; i < std::size(order); ++i) {
        EXPECT_LT(RankOfBoundary(order[i - 1]), RankOfBoundary(order[i])) << order[i];
    }
    EXPECT_EQ(RankOfBoundary("OTHER_X"), RankOfBoundary("CLASS_E5_X"));
}

TEST(Airspace, WhatAFeatureIsCalled) {
    const struct {
        const char *feature, *ident, *name;
    } cases[] = {
        {R"("properties":{"id":"EDGG-S","oceanic":"0"})", "FIR_EDGG_S", "EDG"},
        {R"("properties":{},"id":"KZAB")", "FIR_KZAB", "KZA"},
        {R"("properties":{"id":"EDGG","type":"CTR","name":"BONN CTR"})", "CTR_BONN_CTR", "BON"},
        {R"("properties":{"type":4,"icaoClass":3,"name":"BONN"})", "CTR_BONN", "BON"},
        {R"("properties":{"type":0,"icaoClass":2,"name":"BONN C"})", "CLASS_C_BONN", "BON"},
        {R"("properties":{"TYPE_CODE":"CLASS","LOCAL_TYPE":"CLASS_B","IDENT":"ATL"})",
         "CLASS_B_ATL", "ATL"},
        {R"("properties":{"type":"ARTCC","identifier":"ZAB","artccStratum":"HIGH"})", "ARTCC_ZAB",
         "ZAB"},
        {R"("properties":{"type":"CLASS_D"})", nullptr, nullptr},
        {R"("properties":{"id":7})", nullptr, nullptr},
    };
    for (const auto& c : cases) {
        Import import;
        Dataset data;
        const std::string text = R"({"features":[{"geometry":{"type":"Polygon","coordinates":)"
                                 R"([[[8,50],[9,50],[9,51],[8,50]]]},)" +
                                 std::string(c.feature) + "}]}";
        ASSERT_TRUE(ReadGeoJson(text, "a.geojson", import.Context(), data, import.error));
        ASSERT_EQ(data.boundaries.size(), c.ident != nullptr ? 1U : 0U) << c.feature;
        if (c.ident != nullptr) {
            EXPECT_EQ(data.boundaries[0].ident, c.ident);
            EXPECT_EQ(data.boundaries[0].name, c.name);
        } else {
            EXPECT_EQ(import.report.Count(Topic::Dropped, "airspaces without a name"), 1U);
        }
    }
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
