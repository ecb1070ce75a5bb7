#include "flightplan/sim_plan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>

#include "base/messages.h"
#include "base/module_state.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_notation.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

const std::filesystem::path kSharedPlans = AVQ1_SOURCE_DIR "/../shared/data/flightplans";

std::string ContentsOf(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// One letter an entry: A, V, N, I, W.
std::string TypeLetters(const FlightPlan& plan) {
    std::string letters;
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        letters += plan.entries[i].type.substr(0, 1);
    }
    return letters;
}

// Positions are checked at the last entry and, for all of them, by their sums. Coordinates lose
// what is finer than a second, so a reading lies up to a second nearer to 0.
TEST(SharedSimPlans, ReadAsTheyWereWritten) {
    if (!std::filesystem::exists(kSharedPlans)) {
        GTEST_SKIP() << "no plans at " << kSharedPlans;
    }
    const struct {
        const char* file;
        const char* idents;
        const char* types;
        double lastLatitude;
        double lastLongitude;
        double latitudeSum;
        double longitudeSum;
    } cases[] = {
        {"fsx/EGAA-EGKK.pln", "EGAA GIGTO MALUD EPOXI AMPIT RISLA KEPAD TELBA VIDOK EGKK",
         "AIIIIIIIIA", 51.14880, -0.19192, 530.2926, -30.4913},
        {"fsx/LEPP_LFBP Procs.pln", "LEPP BEGUY LFBP", "AIA", 43.37990, -0.41851, 129.2082,
         -3.5157},
        {"fsx/ENHD_local_flight.pln", "ENHD SV002 SV003 SV004 SV005 SV006 SV007 SV008 ENHD",
         "AWWWWWWWA", 59.34325, 5.21260, 531.9409, 54.0009},
        {"fsx/IFR Hamburg - Fuhlsbuettel (EDDH) to Muenchen Franz-Josef Strauss (EDDM).pln",
         "EDDH HLZ ERT HOD BAY ERL DKB NEU EDDM", "AVNVVVVVA", 48.35210, 11.78943, 453.1141,
         99.5878},
        {"fsx/LFPO-FMEE.pln",
         "LFPO PILUL AVLON LUSAR SAUNI LIRKO DINIG SOVAD GVA MOBLO LURAG VEROB TOP NEDED LAGEN "
         "ANAKI IXITO UNITA TIDKA KONER EVROG BAKRO ELB ROTIR GISPA ROTUN NERAR RCA DODEL ABAKO "
         "VENIM BINKO EMLAR INBIN KUTOS BONAR RAMLI PUFER ATOLL BNA ARADA DITAR TULOP ATMUL UMIDA "
         "KUVTI TIKAT ANTUM APLIR ETONI ETOKO GETIN ITPOG ETIVA GETOL MASLO UVDEB UTSOR IBTAN MAV "
         "TULAP RAGGS ITLOX MITCH ANTIS UVESO ANKOR UVDUK IXEBU MIDRI MAEVA ANVOR UVENA FMEE",
         "AIIIIIIIVIIIVIIIIIIIIIVIIIINIIIIIIIIIIIVIIIIIIIIIIIIIIIIIIIVIIIIIIIIIIIIIA", -20.89000,
         55.51639, 1787.7641, 1853.2439},
        {"fsx/_test_flp_user.pln", "UT02 WP1 WP3 AE __ WP1 BGS 6TE6 TA24 BGS 58R 6T4",
         "AWWNWWVAAVAA", 28.98082, -96.62192, 401.9052, -1234.9489},
        {"fsx/khwo-fsx.pln", "KEYW RW27 RW273 EYW MTH JOMIN VKZ RW28L3 RW28L KHWO", "AWWVNIVWWA",
         26.00122, -80.24072, 251.9393, -809.3731},
        {"fsx/BPRL2_decimal_degrees_AIRPORT_uppercase_BOM.pln",
         "CYPR SV001 SV002 SV003 SV004 SV005 SV006 SV007 SV008 SV009 SV010 SV011 SV012 CZST SV013 "
         "SV014 SV015 SV016 SV017 SV018 SV019 SV020 SV021 SV022 SV023 SV024 SV025 PAWG",
         "AWWWWWWWWWWWWAWWWWWWWWWWWWWA", 56.48433, -132.36983, 1563.3582, -3658.7638},
        {"newer/khwo-msfs2020.pln", "KEYW RW27 RW273 EYW MTH JOMIN VKZ RW28L3 RW28L KHWO",
         "AWWVNIVWWA", 26.00122, -80.24072, 251.9393, -809.3731},
        {"newer/MSFS EDDH EDDF.PLN",
         "EDDH D0 DH111 D2 DH115 AMLUH ORTAG MIPSI BAMKI KEGOS ASPAT GIMAX SIRIO TOSTU LEPSA SPESA "
         "CHA DF635 DF636 DF640 DF641 DF642 DF643 DF644 EDDF",
         "AWIWIIIIIIIIIIIIVIIIIIIIA", 50.03261, 8.54066, 1270.5834, 239.6610},
        {"fs2004/EGSH-EGBB_flightplandatabase.pln", "EGSH MAM EGBB", "AVA", 52.45600, -1.75033,
         157.7802, 0.0875},
        {"fs2004/LSGG-EGMC_fsnavigator_shortform.pln", "LSGG DJL TRO BSN BNE DVR EGMC", "AVVVVVA",
         51.57133, 0.69550, 344.3072, 22.1885},
        {"fs2004/ESSA-ESSP_flt_keyform_user_waypoints_degree_sign.flt", "ESSA POI1 POI2 POI3 ESSP",
         "AWWWA", 58.58755, 16.24548, 296.2669, 88.3314},
    };
    ResetModuleState();  // no entry is tracked
    constexpr double kSecondDeg = 1.0 / 3600 + 1e-5;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        const ConvertedPlan converted = ConvertSimPlan(ContentsOf(kSharedPlans / c.file));
        ParsePlanText(converted.text, previewPlan, nullptr, false);
        EXPECT_EQ(test::Show(previewPlan), c.idents);
        EXPECT_EQ(TypeLetters(previewPlan), c.types);
        EXPECT_EQ(converted.leftOut, 0);
        ASSERT_GE(previewPlan.lastIndex, 0);
        double latitudeSum = 0;
        double longitudeSum = 0;
        for (std::int32_t i = 0; i <= previewPlan.lastIndex; ++i) {
            latitudeSum += previewPlan.entries[i].latitude;
            longitudeSum += previewPlan.entries[i].longitude;
        }
        const PlanWaypoint& last = previewPlan.entries[previewPlan.lastIndex];
        EXPECT_NEAR(last.latitude, c.lastLatitude, kSecondDeg);
        EXPECT_NEAR(last.longitude, c.lastLongitude, kSecondDeg);
        const double sumTolerance = kSecondDeg * (previewPlan.lastIndex + 1);
        EXPECT_NEAR(latitudeSum, c.latitudeSum, sumTolerance);
        EXPECT_NEAR(longitudeSum, c.longitudeSum, sumTolerance);
    }
}

TEST(SharedSimPlans, OtherProgramsPlansAreNotTakenForOne) {
    if (!std::filesystem::exists(kSharedPlans)) {
        GTEST_SKIP() << "no plans at " << kSharedPlans;
    }
    int plans = 0;
    for (const auto& entry : std::filesystem::directory_iterator(kSharedPlans / "other")) {
        EXPECT_EQ(ConvertSimPlan(ContentsOf(entry.path())).text, "") << entry.path();
        ++plans;
    }
    EXPECT_GT(plans, 0);
}

std::string Xml(const std::string& ident, const std::string& type, const std::string& position) {
    return "<ATCWaypoint id=\"" + ident + "\">\n<ATCWaypointType>" + type +
           "</ATCWaypointType>\n<WorldPosition>" + position + "</WorldPosition>\n</ATCWaypoint>\n";
}

TEST(ConvertSimPlan, WritesTheLinesOfAPlan) {
    const std::string kUtf8 = "N54\xC2\xB0 39' 14.99\",W6\xC2\xB0 13' 11.78\",+000000.00";
    const std::string kLatin1 = "S33\xB0 0' 0.00\",E151\xB0 10' 30.00\",+000021.00";
    const struct {
        const char* what;
        std::string text;
        const char* lines;  // after the section line
        std::int32_t leftOut = 0;
    } cases[] = {
        {"seconds are cut, UTF-8 degree sign", Xml("EGAA", "Airport", kUtf8),
         "EGAA     54.65389 -6.21972  APT\n"},
        {"Latin-1 degree sign, south and east", Xml("YSSY", "VOR", kLatin1),
         "YSSY     -33.00000 151.17500  VOR\n"},
        {"types",
         Xml("A", "NDB", kLatin1) + Xml("B", "Intersection", kLatin1) + Xml("C", "User", kLatin1) +
             Xml("D", "", kLatin1),
         "A        -33.00000 151.17500  NDB\nB        -33.00000 151.17500  INT\n"
         "C        -33.00000 151.17500  WPT\nD        -33.00000 151.17500  WPT\n"},
        {"signed decimal degrees", Xml("P", "AIRPORT", "54.285833 , -130.444678,+116.0"),
         "P        54.28583 -130.44468  APT\n"},
        {"identifiers are one word",
         Xml("La Rochelle", "User", kLatin1) + Xml("", "User", kLatin1) +
             Xml(";X", "User", kLatin1),
         "LaRochelle -33.00000 151.17500  WPT\nWPT01    -33.00000 151.17500  WPT\n"
         "X        -33.00000 151.17500  WPT\n"},
        {"a comment is no waypoint",
         "<!-- " + Xml("OLD", "VOR", kUtf8) + " -->" + Xml("NEW", "VOR", kUtf8) + "<!-- open",
         "NEW      54.65389 -6.21972  VOR\n"},
        {"positions that are none",
         Xml("A", "VOR", "") + Xml("B", "VOR", "N91\xB0 0' 0\",E0\xB0 0' 0\",0") +
             Xml("C", "VOR", "N90\xB0 0' 1.00\",E0\xB0 0' 0\",0") + Xml("D", "VOR", "N1\xB0") +
             Xml("E", "VOR", "N1\xB0 61' 0\",E1\xB0 0' 0\",0") + Xml("F", "VOR", kUtf8),
         "F        54.65389 -6.21972  VOR\n", 5},
        {"a plan that ends inside a line",
         Xml("A", "VOR", kUtf8) + "<ATCWaypoint id=\"B\">\n<WorldPosition>N54\xB0 3",
         "A        54.65389 -6.21972  VOR\n", 1},
        {"decimal minutes",
         "[flightplan]\r\nwaypoint.0=KA, A, N52* 40.50', E001* 17.25', +0,\r\n"
         "waypoint.1=B, V, S52* 33.20', W6* 6', +0,\r\n",
         "KA       52.67500 1.28750  APT\nB        -52.55333 -6.10000  VOR\n"},
        {"degrees with a fraction", Xml("A", "VOR", "N54.285\xB0,W6.5083,0"),
         "A        54.28500 -6.50806  VOR\n"},
        {"types of the key form",
         "waypoint.0=A, N, N1* 0.0', E1* 0.0',\nwaypoint.1=B, I, N1* 0.0', E1* 0.0',\n"
         "waypoint.2=C, U, N1* 0.0', E1* 0.0',\nwaypoint.3=D, , N1* 0.0', E1* 0.0'",
         "A        1.00000 1.00000  NDB\nB        1.00000 1.00000  INT\n"
         "C        1.00000 1.00000  WPT\nD        1.00000 1.00000  WPT\n"},
        {"numbers tell the order",
         "waypoint.10=K, V, N3* 0', E1* 0'\nwaypoint.2=B, V, N2* 0', E1* 0'\n"
         "WAYPOINT.1=A, V, N1* 0', E1* 0'\n",
         "A        1.00000 1.00000  VOR\nB        2.00000 1.00000  VOR\n"
         "K        3.00000 1.00000  VOR\n"},
        {"the longer lines of saved flights",
         "Waypoint.0=EU, MAM, UL9, MAM, V, N52\xC2\xB0 38' 50.40\", E0\xB0 33' 12.00\", +9,\n",
         "MAM      52.64722 0.55333  VOR\n"},
        {"identifiers that look like latitudes",
         "waypoint.0=N07, A, N40* 57.0', W074* 18.0', +0,\n"
         "Waypoint.1=K1, S50, S50, N07, A, N47* 19.0', W122* 13.0', +0,\n",
         "N07      40.95000 -74.30000  APT\nS50      47.31667 -122.21667  APT\n"},
        {"lines cut short", "waypoint.0=A, V, N1* 0'\nwaypoint.1=\nwaypoint.2=B, V, N1* 0', E1* 0'",
         "B        1.00000 1.00000  VOR\n", 2},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const ConvertedPlan converted = ConvertSimPlan("\xEF\xBB\xBF" + c.text);
        EXPECT_EQ(converted.text, std::string("[FlightPlan]\n") + c.lines);
        EXPECT_EQ(converted.leftOut, c.leftOut);
    }
}

TEST(ReadSimPlan, KeepsWhatAPlanOfThisSystemHasNoPlaceFor) {
    const SimPlan xml = ReadSimPlan(
        "<CruisingAlt>25000.000</CruisingAlt><!-- left\nout -->\n"
        "<ATCWaypoint id=\"A\"><WorldPosition>N54\xB0 39' 14.99\",W6\xB0 13' 11.78\",+000268.00"
        "</WorldPosition><DepartureFP>SIDA1</DepartureFP><SpeedMaxFP>-1</SpeedMaxFP></"
        "ATCWaypoint>\n"
        "<ATCWaypoint id=\"B\"><WorldPosition>nowhere</WorldPosition></ATCWaypoint>\n"
        "<ATCWaypoint id=\"C\"><WorldPosition>N1\xB0 0' 0\",E1\xB0 0' 0\",+000000.00"
        "</WorldPosition><ATCAirway>L12</ATCAirway><SpeedMaxFP>250</SpeedMaxFP></ATCWaypoint>");
    const SimPlan keys = ReadSimPlan(
        "Cruising_Altitude = 9500\nwaypoint.0=A, V, N52* 40.61', W1* 17.07', +009500.00, L12\n"
        "waypoint.1=EU, B, , Bee, I, N1* 0', E1* 0', +000000.00, \n");
    EXPECT_EQ(xml.cruisingAltitudeFt, 25000);
    EXPECT_EQ(xml.leftOutAt.size(), 1U);
    EXPECT_EQ(keys.cruisingAltitudeFt, 9500);
    const struct {
        const SimWaypoint& waypoint;
        LatLon exact;
        const char* airway;
        const char* procedure;
        double altitude;
        double speed;
    } cases[] = {
        {xml.waypoints.at(0),
         {54 + 39 / 60.0 + 14.99 / 3600, -6 - 13 / 60.0 - 11.78 / 3600},
         "SIDA1",
         "SID",
         268,
         kUnset},
        {xml.waypoints.at(1), {1, 1}, "L12", "", kUnset, 250},
        {keys.waypoints.at(0), {52 + 40.61 / 60, -1 - 17.07 / 60}, "L12", "", 9500, kUnset},
        {keys.waypoints.at(1), {1, 1}, "", "", kUnset, kUnset},
    };
    for (const auto& c : cases) {
        EXPECT_NEAR(c.waypoint.exact.latitude, c.exact.latitude, 1e-9);
        EXPECT_NEAR(c.waypoint.exact.longitude, c.exact.longitude, 1e-9);
        EXPECT_EQ(c.waypoint.airway, c.airway);
        EXPECT_EQ(c.waypoint.procedure, c.procedure);
        EXPECT_EQ(c.waypoint.altitude, c.altitude);
        EXPECT_EQ(c.waypoint.speed, c.speed);
    }
}

TEST(ConvertSimPlan, WhatIsNoPlanGivesNothing) {
    for (const char* text :
         {"", "[flightplan]\ndeparture_id=KJFK, N40* 38.0', W73* 46.0', +0\n", "<ATCWaypoint id=",
          "waypoint.", "waypoint.0", "waypoint.0=,,,,", "[FSCFP]\nWP=1,Fix,80VOR,X,46.1,11.1\n",
          "<FlightPlan.FlightPlan><DepartureID>KJFK</DepartureID></FlightPlan.FlightPlan>"}) {
        EXPECT_EQ(ConvertSimPlan(text).text, "") << text;
    }
}

class SimPlanFiles : public testing::Test {
  protected:
    void SetUp() override {
        const std::string position = "N54\xB0 39' 14.04\",W6\xB0 13' 11.78\",+000000.00";
        folder_.Write("avq/flightplans/SIM.PLN",
                      Xml("KAAA", "Airport", position) + Xml("KBBB", "Airport", position));
        folder_.Write("avq/flightplans/PART.PLN",
                      Xml("KAAA", "Airport", position) + Xml("X", "VOR", "?"));
        folder_.Write("avq/flightplans/BAD.PLN", "[FSCFP]\nWP=1\n");
    }

  private:
    struct FreshState {
        FreshState() { ResetModuleState(); }
    } freshState_;

  protected:
    test::TempSimFolder folder_;
};

TEST_F(SimPlanFiles, LoadLikeStoredOnesAndLeaveACopy) {
    ListStoredPlans();
    ASSERT_EQ(storedPlans.plans.size(), 4U);
    EXPECT_EQ(storedPlans.plans[0].firstIdent, "");
    EXPECT_EQ(storedPlans.plans[2].firstIdent + storedPlans.plans[2].lastIdent, "KAAAKBBB");
    EXPECT_FALSE(folder_.Exists("avq/flightplans/temp.rte"));
    EXPECT_EQ(messages.count, 0);

    LoadPlan("SIM.PLN");
    EXPECT_EQ(test::Show(modifiedPlan), "KAAA KBBB");
    EXPECT_EQ(planBook.destinationIdent, "KBBB");
    EXPECT_EQ(folder_.Read("avq/flightplans/temp.rte"),
              "[FlightPlan]\nKAAA     54.65389 -6.21972  APT\nKBBB     54.65389 -6.21972  APT\n");
    EXPECT_TRUE(ReadPlanToActive("sim.pln"));
    EXPECT_EQ(test::Show(activePlan), "KAAA KBBB");
}

TEST_F(SimPlanFiles, WhatIsMissingIsSaid) {
    const struct {
        const char* name;
        const char* said;
        std::int32_t lastIndex;
    } cases[] = {
        {"BAD.PLN", "Unable to load FP", -1},
        {"NONE.PLN", "Unable to load FP", -1},
        {"PART.PLN", "FPL: 1 without position left out", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        messages = {};
        LoadPlan("SIM.PLN");
        EXPECT_EQ(planBook.entryNotice, "");
        LoadPlan(c.name);
        EXPECT_EQ(modifiedPlan.lastIndex, c.lastIndex);
        EXPECT_EQ(planBook.entryNotice, c.said);
        ASSERT_GE(messages.count, 1);
        EXPECT_EQ(messages.lines[static_cast<std::size_t>(messages.count)], c.said);
    }
}

}  // namespace
}  // namespace avq1
