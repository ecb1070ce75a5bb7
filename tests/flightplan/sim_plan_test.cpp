#include "flightplan/sim_plan.h"

#include <gtest/gtest.h>

#include "base/messages.h"
#include "flightplan/plan_files.h"
#include "flightplan/plan_notation.h"

namespace avq1 {
namespace {

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
        {"an airport named in words",
         Xml("Quax", "Airport", kUtf8 + "</WorldPosition><ICAOIdent>QAAA"),
         "QAAA     54.65389 -6.21972  APT\n"},
        {"waypoints without an id",
         "<ATCWaypoint>\n<WorldPosition>" + kLatin1 +
             "</WorldPosition></ATCWaypoint><ATCWaypoint\n>" + "<WorldPosition>" + kLatin1 +
             "</WorldPosition><ICAOIdent>ABC</ICAOIdent>",
         "WPT01    -33.00000 151.17500  WPT\nABC      -33.00000 151.17500  WPT\n"},
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
        const char* route;
        double altitude;
        double speed;
    } cases[] = {
        {xml.waypoints.at(0),
         {54.0 + 2354.99 / 3600, -6 - 791.78 / 3600},
         "SIDA1 SID",
         268,
         kUnset},
        {xml.waypoints.at(1), {1, 1}, "L12 ", kUnset, 250},
        {keys.waypoints.at(0), {52 + 40.61 / 60, -1 - 17.07 / 60}, "L12 ", 9500, kUnset},
        {keys.waypoints.at(1), {1, 1}, " ", kUnset, kUnset},
    };
    for (const auto& [waypoint, exact, route, altitude, speed] : cases) {
        EXPECT_NEAR(waypoint.exact.latitude, exact.latitude, 1e-9);
        EXPECT_NEAR(waypoint.exact.longitude, exact.longitude, 1e-9);
        EXPECT_EQ(waypoint.airway + " " + std::string(waypoint.procedure), route);
        EXPECT_EQ(waypoint.altitude, altitude);
        EXPECT_EQ(waypoint.speed, speed);
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

struct SimPlanFiles : test::FolderTest {
    SimPlanFiles() {
        const std::string place = "N54\xB0 39' 14.04\",W6\xB0 13' 11.78\",+000000.00";
        const std::string start = Xml("KAAA", "Airport", place);
        folder_.Write("avq/flightplans/SIM.PLN", start + Xml("KBBB", "Airport", place));
        folder_.Write("avq/flightplans/PART.PLN", start + Xml("X", "VOR", "?"));
        folder_.Write("avq/flightplans/BAD.PLN", "[FSCFP]\nWP=1\n");
    }
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
    for (const auto& [name, said] : {std::pair{"PART.PLN", "FPL: 1 without position left out"},
                                     {"SIM.PLN", ""},
                                     {"BAD.PLN", "Unable to load FP"}}) {
        messages = {};
        LoadPlan(name);
        EXPECT_EQ(planBook.entryNotice, said) << name;
        EXPECT_EQ(messages.lines.back(), said) << name;
    }
}

}  // namespace
}  // namespace avq1
