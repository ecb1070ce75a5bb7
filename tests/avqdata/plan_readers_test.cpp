// Plans of other programs and routes in words: what is read, what the data adds, what is said.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "avqdata/plan_check.h"
#include "avqdata/plan_helpers.h"
#include "avqdata/plan_resolve.h"
#include "avqdata/xml_text.h"

namespace avqdata {
namespace {

using testing::HasSubstr;

// ---- routes in words ----

TEST(PlanRoutes, WordsBecomeAPlan) {
    const struct {
        const char* text;
        const char* route;    // behind the fuel
        const char* choices;  // where it names any
        const char* said;     // a part; empty: nothing
    } cases[] = {
        {"AAAA DCT MID L12 CROSS DCT BBBB",
         "AAAA/APT/// MID/VOR/113.70// ALPHA/INT//L12/ CROSS/INT//L12/ BBBB/APT///", "", ""},
        {"AAAA..MID.L12.CROSS..BBBB",
         "AAAA/APT/// MID/VOR/113.70// ALPHA/INT//L12/ CROSS/INT//L12/ BBBB/APT///", "", ""},
        // Backwards, and from one airway to another where they meet.
        {"BBBB PAN T9 L12 MID AAAA",
         "BBBB/APT/// PAN/NDB/365// CROSS/INT//T9/ ALPHA/INT//L12/ MID/VOR/113.70/L12/ AAAA/APT///",
         "", ""},
        // The nearer DUP; the PAN that the airway passes, and the one on the way.
        {"AAAA DUP CROSS T9 PAN BBBB",
         "AAAA/APT/// DUP/INT/// CROSS/INT/// PAN/NDB/365/T9/ BBBB/APT///", "", ""},
        {"AAAA PAN BBBB", "AAAA/APT/// PAN/NDB/365// BBBB/APT///", "", ""},
        {"AAAA QB BBBB", "AAAA/APT/// QB/VOR/112.00// BBBB/APT///", "", ""},
        {"AAAA QF BBBB", "AAAA/APT/// QF/NDB/302// BBBB/APT///", "", ""},
        // A fix that only an airway has.
        {"WESTF T9 CROSS", "WESTF/INT/// CROSS/INT//T9/", "", ""},
        // Positions, and places beside a place: 8 degrees east has less than four degrees of
        // variation.
        {"AAAA 5030N00800E 51N008E 513030N0080000E MID090030 BBBB",
         "AAAA/APT/// WPT01/WPT/// 51N008E/WPT/// WPT03/WPT/// MID090030/WPT/// BBBB/APT///", "",
         ""},
        // Runways, procedures with the transition that the route goes on from, levels.
        {"AAAA/23 SIDP1A MID L12 CROSS T9 PAN STAR2B BBBB/07C",
         "AAAA/APT/// SIDPT/INT//SIDP1A.MID/SID MID/VOR/113.70/SIDP1A.MID/SID ALPHA/INT//L12/ "
         "CROSS/INT//L12/ PAN/NDB/365/T9/ STARP/INT//STAR2B.PAN/STAR BBBB/APT///",
         "RW23/SIDP1A/MID RW07C/STAR2B/PAN//", ""},
        {"AAAA SID MID STAR BBBB", "AAAA/APT/// MID/VOR/113.70// BBBB/APT///", "", ""},
        // What cannot be placed or followed is said with its word.
        {"AAAA NOWHR BBBB", "AAAA/APT/// BBBB/APT///", "",
         "plan: word 2, NOWHR is not in the data"},
        {"AAAA MID J99 CROSS BBBB", "AAAA/APT/// MID/VOR/113.70// CROSS/INT//J99/ BBBB/APT///", "",
         "word 4, the data has no airway J99"},
        {"AAAA MID FB350 CROSS BBBB", "AAAA/APT/// MID/VOR/113.70// CROSS/INT//FB350/ BBBB/APT///",
         "", "word 4, the data has no airway FB350"},
        {"AAAA MID T9 PAN BBBB", "AAAA/APT/// MID/VOR/113.70// PAN/NDB/365/T9/ BBBB/APT///", "",
         "word 4, T9 does not lead from MID to PAN"},
        {"AAAA MID L12 J99 PAN BBBB", "AAAA/APT/// MID/VOR/113.70// PAN/NDB/365/J99/ BBBB/APT///",
         "", "the airway L12 meets the next one nowhere"},
        {"AAAA OTHER3 MID BBBB", "AAAA/APT/// MID/VOR/113.70// BBBB/APT///", "/OTHER3/ ////",
         "names the departure 'OTHER3', which is not in the data"},
        {"AAAA/05 SIDP1A BBBB", "AAAA/APT/// BBBB/APT///", "RW05/SIDP1A/ ////",
         "has no points for this runway"},
    };
    const PlanData data = SamplePlanData();
    for (const auto& c : cases) {
        const PlanReading read(c.text, &data);
        EXPECT_EQ(ShowRoute(read.plan), std::string("0 0 0: ") + c.route) << c.text;
        if (*c.choices != '\0') {
            EXPECT_EQ(ShowChoices(read.plan), c.choices) << c.text;
        }
        EXPECT_THAT(read.Said(),
                    *c.said == '\0' ? testing::Matcher<const std::string&>("") : HasSubstr(c.said))
            << c.text;
    }
    const PlanReading levels("AAAA N0450F350 MID/N0450F370 M082F390 BBBB", &data);
    EXPECT_EQ(levels.plan.cruiseAltitudeFt, 35000);
    EXPECT_EQ(levels.plan.entries.at(1).altitude, 37000);
    EXPECT_EQ(PlanReading("K0830S1130 AAAA BBBB", &data).plan.cruiseAltitudeFt, 37073);
    const PlanReading blind("AAAA SIDP1A MID L12 CROSS BBBB");
    EXPECT_EQ(blind.report.Count(Topic::Fault), 4U);  // procedure and airway are told by shape
    EXPECT_THAT(blind.Said(), HasSubstr("word 3, MID has no position in the file, and no data"));
}

TEST(PlanRoutes, OfSeveralPlacesTheOneOnTheWay) {
    const struct {
        const char* text;
        std::size_t entry;
        avq1::LatLon at;
        const char* why;
    } cases[] = {
        {"AAAA ONLYL BBBB", 1, {54.5, 8}, "the shorter way"},
        {"MID L12 ONLYL BBBB", 3, {54.5, 8.5}, "on the airway that leads there"},
        {"AAAA ONLYL L12 MID BBBB", 1, {54.5, 8.5}, "on the airway that leads on"},
        {"AAAA ONLYL L12 MID BBBB", 2, {54, 8}, "the first fix on the way back along it"},
        {"AAAA TWICE BBBB", 1, {52.5, 8}, "ahead, though farther from the point before"},
        {"TWICE AAAA", 0, {49, 8}, "the first one by what follows"},
        {"AAAA DUP", 1, {51, 8}, "the last one by what is before"},
    };
    const PlanData data = SamplePlanData();
    for (const auto& c : cases) {
        const PlanReading read(c.text, &data);
        ASSERT_GT(read.plan.entries.size(), c.entry) << c.why;
        EXPECT_EQ(read.plan.entries[c.entry].latitude, c.at.latitude) << c.why;
        EXPECT_EQ(read.plan.entries[c.entry].longitude, c.at.longitude) << c.why;
    }
}

TEST(PlanRoutes, PositionsAsRoutesWriteThem) {
    const struct {
        const char* word;
        double latitude;
        double longitude;
    } cases[] = {
        {"45N010W", 45, -10},
        {"4530S01015E", -45.5, 10.25},
        {"453015N0101500W", 45.504167, -10.25},
        {"N49570E008316", 49.95, 8.526667},
        {"N45W010", 45, -10},
    };
    for (const auto& c : cases) {
        const std::optional<avq1::LatLon> at = RoutePosition(c.word);
        ASSERT_TRUE(at) << c.word;
        EXPECT_NEAR(at->latitude, c.latitude, 1e-6) << c.word;
        EXPECT_NEAR(at->longitude, c.longitude, 1e-6) << c.word;
    }
    for (const char* word : {"", "N", "NE", "91N010W", "4560N01000W", "45N10W", "45N010WX", "SWEEN",
                             "4N010W", "45N181E"}) {
        EXPECT_FALSE(RoutePosition(word)) << word;
    }
}

// Ninety degrees magnetic are ninety and the variation true, which is 3 to 4 degrees there.
TEST(PlanRoutes, ABearingFromAPlaceIsMagnetic) {
    const PlanData data = SamplePlanData();
    const PlanReading read("AAAA MID090030 BBBB", &data);
    double distanceNm = 0;
    double courseTrue = 0;
    avq1::DistanceAndCourse(52, 8, read.plan.entries.at(1).latitude,
                            read.plan.entries.at(1).longitude, distanceNm, courseTrue);
    EXPECT_NEAR(distanceNm, 30, 0.01);
    EXPECT_NEAR(courseTrue, 93.2, 0.5);
}

// ---- other programs' plans ----

const std::string kFpl =
    "<?xml version='1.0'?><flight-plan xmlns=\"x\"><waypoint-table>"
    "<waypoint><identifier>AAAA</identifier><type>AIRPORT</type><country-code/><lat>50</lat>"
    "<lon>8</lon></waypoint>"
    "<waypoint><identifier>MID</identifier><type>VOR</type><country-code>ED</country-code>"
    "<lat>52</lat><lon>8</lon></waypoint>"
    "<waypoint><identifier>OWN1</identifier><type>USER "
    "WAYPOINT</type><country-code/><lat>53.5</lat>"
    "<lon>8.25</lon></waypoint></waypoint-table><route>"
    "<route-point><waypoint-identifier>AAAA</waypoint-identifier><waypoint-type>AIRPORT"
    "</waypoint-type><waypoint-country-code/></route-point>"
    "<route-point><waypoint-identifier>OWN1</waypoint-identifier><waypoint-type>USER WAYPOINT"
    "</waypoint-type><waypoint-country-code/></route-point>"
    "<route-point><waypoint-identifier>MID</waypoint-identifier><waypoint-type>VOR</waypoint-type>"
    "<waypoint-country-code>ED</waypoint-country-code></route-point>";
const std::string kFplEnd = "</route></flight-plan>";

const std::string kNavmap =
    "<LittleNavmap><Flightplan><Header><CruisingAlt>9000</CruisingAlt><CruisingAltF>9500.4"
    "</CruisingAltF></Header><NavData Cycle=\"2308\">X</NavData><Procedures>"
    "<SID><Name>SIDP1A</Name><Runway>23</Runway></SID>"
    "<Approach><Name>X</Name><Runway>07C</Runway><Type>ILS</Type><Suffix>Z</Suffix></Approach>"
    "</Procedures><Waypoints>"
    "<Waypoint><Ident>AAAA</Ident><Type>AIRPORT</Type><Pos Lon=\"8.0\" Lat=\"50.0\" Alt=\"300\"/>"
    "</Waypoint>"
    "<Waypoint><Ident>MID</Ident><Airway>L1&amp;2</Airway><Type>VOR</Type>"
    "<Pos Lat='52' Lon='8' Alt='0'/></Waypoint>"
    "<Waypoint><Ident>BAD</Ident><Type>VOR</Type></Waypoint>"
    "<Waypoint><Ident>BBBB</Ident><Type>AIRPORT</Type><Pos Lat='58' Lon='8'/></Waypoint>"
    "</Waypoints></Flightplan></LittleNavmap>";

const std::string kFlightGear =
    "<?xml version=\"1.0\"?><PropertyList><version type=\"int\">2</version><departure>"
    "<airport type=\"string\">AAAA</airport><runway>23</runway><sid>SIDP1A</sid></departure>"
    "<destination><airport>BBBB</airport><runway>7C</runway><star>DEFAULT</star></destination>"
    "<cruise><flight-level type=\"int\">310</flight-level></cruise><route>"
    "<wp><type>runway</type><departure type=\"bool\">true</departure><ident>23</ident>"
    "<icao>AAAA</icao><lat>50</lat><lon>8</lon></wp>"
    "<wp n=\"1\"><type>navaid</type><departure type=\"bool\">true</departure><ident>SIDPT</ident>"
    "<lon>8</lon><lat>50.5</lat><altitude-ft type=\"double\">4000</altitude-ft></wp>"
    "<wp n=\"2\"><type>hdgToAlt</type><ident>(4000)</ident></wp>"
    "<wp n=\"3\"><type>navaid</type><ident>MID</ident><lon>8</lon><lat>52</lat></wp>"
    "<wp n=\"4\"><type>via</type><airway>L12</airway><ident>CROSS</ident></wp>"
    "<wp n=\"5\"><type>basic</type><ident>OWN</ident><lon>9</lon><lat>55</lat></wp>"
    "</route></PropertyList>";

const std::string kSimbrief =
    "<OFP><params><airac>2307</airac><units>lbs</units></params><general><initial_altitude>36000"
    "</initial_altitude></general><fuel><plan_ramp>20000</plan_ramp><reserve>3000</reserve></fuel>"
    "<origin><icao_code>AAAA</icao_code><pos_lat>50.0</pos_lat><pos_long>8.0</pos_long><plan_rwy>23"
    "</plan_rwy></origin><destination><icao_code>BBBB</icao_code><pos_lat>58</pos_lat><pos_long>8"
    "</pos_long><plan_rwy>07C</plan_rwy></destination><navlog>"
    "<fix><ident>SIDPT</ident><type>wpt</type><pos_lat>50.5</pos_lat><pos_long>8</pos_long>"
    "<via_airway>SIDP1A</via_airway><is_sid_star>1</is_sid_star><altitude_feet>4000</altitude_feet>"
    "</fix><fix><ident>TOC</ident><type>ltlg</type><pos_lat>51</pos_lat><pos_long>8</pos_long></"
    "fix>"
    "<fix><ident>MID</ident><type>vor</type><frequency>113.70</frequency><pos_lat>52</pos_lat>"
    "<pos_long>8</pos_long><via_airway>DCT</via_airway><is_sid_star>0</is_sid_star></fix>"
    "<fix><ident>CROSS</ident><type>wpt</type><pos_lat>54</pos_lat><pos_long>8</pos_long>"
    "<via_airway>L12</via_airway><is_sid_star>0</is_sid_star></fix>"
    "<fix><ident>STARP</ident><type>wpt</type><pos_lat>57.5</pos_lat><pos_long>8</pos_long>"
    "<via_airway>STAR2B</via_airway><is_sid_star>1</is_sid_star></fix>"
    "<fix><ident>BBBB</ident><type>apt</type><pos_lat>58</pos_lat><pos_long>8</pos_long>"
    "<via_airway>STAR2B</via_airway><is_sid_star>1</is_sid_star></fix></navlog></OFP>";

const char* const kSimbriefRoute =
    "36000 20000 3000: AAAA/APT/// SIDPT/INT//SIDP1A/SID MID/VOR/113.70// CROSS/INT//L12/ "
    "STARP/INT//STAR2B/STAR BBBB/APT///";

// The same fields as JSON, numbers in quotes or not.
std::string SimbriefJson(bool listOfFixes) {
    using nlohmann::json;
    const auto fix = [](const char* ident, const char* type, double latitude, const char* via,
                        const char* procedure) {
        return json{{"ident", ident},       {"type", type},      {"pos_lat", latitude},
                    {"pos_long", "8"},      {"via_airway", via}, {"is_sid_star", procedure},
                    {"frequency", "113.70"}};
    };
    const json fixes{fix("SIDPT", "wpt", 50.5, "SIDP1A", "1"), fix("MID", "vor", 52, "DCT", "0"),
                     fix("CROSS", "wpt", 54, "L12", "0"), fix("STARP", "wpt", 57.5, "STAR2B", "1"),
                     fix("BBBB", "apt", 58, "STAR2B", "1")};
    json plan{{"params", {{"airac", "2307"}, {"units", "lbs"}}},
              {"general", {{"initial_altitude", "36000"}}},
              {"fuel", {{"plan_ramp", 20000}, {"reserve", "3000"}}},
              {"origin",
               {{"icao_code", "AAAA"}, {"pos_lat", "50"}, {"pos_long", "8"}, {"plan_rwy", "23"}}},
              {"destination",
               {{"icao_code", "BBBB"}, {"pos_lat", "58"}, {"pos_long", "8"}, {"plan_rwy", "07C"}}}};
    plan["navlog"] = listOfFixes ? fixes : json{{"fix", fixes}};
    return plan.dump(1);
}

std::string Efb(const std::string& waypoints) {
    return "<SimBase.Document><FlightPlan.FlightPlan><DepartureID>AAAA</DepartureID>"
           "<DestinationID>BBBB</DestinationID><CruisingAlt>28000</CruisingAlt><AppVersion>"
           "<AppVersionMajor>12</AppVersionMajor></AppVersion><DepartureDetails><RunwayNumberFP>23"
           "</RunwayNumberFP><DepartureFP>SIDP1A</DepartureFP><TransitionFP>MID</TransitionFP>"
           "</DepartureDetails>\n" +
           waypoints +
           "<ApproachDetails><ApproachTypeFP>ILS</ApproachTypeFP><SuffixFP>Z</SuffixFP>"
           "<RunwayNumberFP>7</RunwayNumberFP><RunwayDesignatorFP>CENTER</RunwayDesignatorFP>"
           "</ApproachDetails></FlightPlan.FlightPlan></SimBase.Document>";
}

const char* const kMidToCross =
    "<ATCWaypoint><ATCWaypointType>VOR</ATCWaypointType><ICAO><ICAOIdent>MID</ICAOIdent></ICAO>"
    "</ATCWaypoint><ATCWaypoint><ATCWaypointType>Intersection</ATCWaypointType><ATCAirway>L12"
    "</ATCAirway><ICAO><ICAOIdent>CROSS</ICAOIdent></ICAO></ATCWaypoint>";

TEST(PlanReaders, PlansOfOtherPrograms) {
    const std::string sid = "SIDPT/INT//SIDP1A.MID/SID MID/VOR/113.70/SIDP1A.MID/SID ";
    const std::string approach = "FINAL/INT//I07CZ/APPR BBBB/APT///";
    const struct {
        const char* format;
        std::string text;
        bool withData;
        std::string route;
        const char* choices;
        const char* said;  // a part; empty: nothing
    } cases[] = {
        {"fpl", kFpl + kFplEnd, false, "0 0 0: AAAA/APT/// OWN1/WPT/// MID/VOR///", "// ////", ""},
        {"fpl", kFpl, false, "0 0 0: AAAA/APT/// OWN1/WPT/// MID/VOR///", "// ////",
         "plan: ends in the middle"},
        {"fpl",
         kFpl + "\n<route-point><waypoint-identifier>ALPHA</waypoint-identifier></route-point>" +
             kFplEnd,
         false, "0 0 0: AAAA/APT/// OWN1/WPT/// MID/VOR///", "// ////",
         "plan:2: ALPHA has no position in the file"},
        {"fpl",
         kFpl + "<route-point><waypoint-identifier>ALPHA</waypoint-identifier></route-point>" +
             kFplEnd,
         true, "0 0 0: AAAA/APT/// OWN1/WPT/// MID/VOR/113.70// ALPHA/INT///", "// ////", ""},
        {"lnmpln", kNavmap, false, "9500 0 0: AAAA/APT/// MID/VOR//L1&2/ BBBB/APT///",
         "RW23/SIDP1A/ RW07C///I07CZ/", "plan:1: BAD has no position"},
        {"lnmpln", kNavmap, true, "9500 0 0: AAAA/APT/// " + sid + approach,
         "RW23/SIDP1A/MID RW07C///I07CZ/", "BAD"},
        {"fgfp", kFlightGear, true,
         "31000 0 0: AAAA/APT/// SIDPT/INT//SIDP1A/SID MID/VOR/113.70// ALPHA/INT//L12/ "
         "CROSS/INT//L12/ OWN/WPT/// BBBB/APT///",
         "RW23/SIDP1A/ RW07C////", "plan:1: a leg of kind hdgToAlt has no place"},
        {"simbrief-xml", kSimbrief, false, kSimbriefRoute, "RW23/SIDP1A/ RW07C/STAR2B///", ""},
        {"simbrief-json", SimbriefJson(true), false, kSimbriefRoute, "RW23/SIDP1A/ RW07C/STAR2B///",
         ""},
        {"simbrief-json", SimbriefJson(false), false, kSimbriefRoute,
         "RW23/SIDP1A/ RW07C/STAR2B///", ""},
        {"pln-efb", Efb(kMidToCross), true,
         "28000 0 0: AAAA/APT/// " + sid + "ALPHA/INT//L12/ CROSS/INT//L12/ " + approach,
         "RW23/SIDP1A/MID RW07C///I07CZ/", ""},
        {"pln-efb",
         Efb("<ATCWaypoint id='OWN'><ATCWaypointType>User</ATCWaypointType><WorldPosition>N51* 30' "
             "0.00\",E8* 0' 0.00\",+003000.00</WorldPosition></ATCWaypoint><ATCWaypoint>"
             "<ATCWaypointType>VOR</ATCWaypointType><ICAO><ICAOIdent>NIL</ICAOIdent></ICAO>"
             "</ATCWaypoint>"),
         false, "28000 0 0: OWN/WPT///", "RW23/SIDP1A/MID RW07C///I07CZ/",
         "plan:2: NIL has no position"},
        {"gfp",
         "FPN/RI:DA:AAAA:D:SIDP1A.MID:R:23O:F:MID.L12.CROSS:F:OWN,N55000E008300:AA:BBBB:AP:"
         "I07CZ.STARP\r\n",
         true,
         "0 0 0: AAAA/APT/// " + sid +
             "ALPHA/INT//L12/ CROSS/INT//L12/ OWN/INT/// STARP/INT//I07CZ/APPR " + approach,
         "RW23/SIDP1A/MID RW07C///I07CZ/STARP", ""},
        {"gfp", "FPN/RI:DA:AAAA:AA:BBBB:F:MID.L12.CROSS", true,
         "0 0 0: AAAA/APT/// MID/VOR/113.70// ALPHA/INT//L12/ CROSS/INT//L12/ BBBB/APT///",
         "// ////", ""},
        {"gfp", "FPN/RI:F:AAAA:F:N51000E008000:F:NIL:F:BBBB", true,
         "0 0 0: AAAA/APT/// N51000E008000/WPT/// BBBB/APT///", "// ////",
         "plan: part 3, NIL is not in the data"},
    };
    const PlanData data = SamplePlanData();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        const PlanReading read(c.text, c.withData ? &data : nullptr);
        ASSERT_NE(read.format, nullptr);
        EXPECT_STREQ(read.format->name, c.format);
        EXPECT_EQ(ShowRoute(read.plan), c.route);
        EXPECT_EQ(ShowChoices(read.plan), c.choices);
        for (const avq1::PlanWaypoint& entry : read.plan.entries) {
            EXPECT_NEAR(entry.longitude, 8, 1) << entry.ident;
        }
        EXPECT_THAT(read.Said(),
                    *c.said == '\0' ? testing::Matcher<const std::string&>("") : HasSubstr(c.said));
    }
    EXPECT_EQ(PlanReading(kSimbrief).plan.cycle, "2307");
    EXPECT_EQ(PlanReading(kNavmap).plan.cycle, "2308");
}

// A form that names procedures gets back what it was read from, points left to the data.
TEST(PlanReaders, NamedProceduresComeBack) {
    const PlanData data = SamplePlanData();
    const PlanReading read("AAAA/23 SIDP1A MID L12 CROSS T9 PAN STAR2B BBBB/07C", &data);
    for (const char* format : {"lnmpln", "fgfp", "pln-efb", "route", "fms1100"}) {
        ExchangePlan plan = read.plan;
        plan.cycle = "2309";
        const PlanReading again(PlanWriting(format, plan).text, &data);
        EXPECT_EQ(again.Said(), "") << format;
        EXPECT_EQ(ShowChoices(again.plan), ShowChoices(plan)) << format;
        EXPECT_EQ(again.Idents(), "AAAA SIDPT MID ALPHA CROSS PAN STARP BBBB") << format;
    }
}

// ---- a plan against the data ----

TEST(PlanCheck, SaysWhatTheDataHasOtherwise) {
    const std::string head = "[FlightPlan]\nAAAA 50 8 APT ---\n";
    const std::string end = "BBBB 58 8 APT ---\n";
    const struct {
        std::string lines;
        const char* said;  // empty: nothing
        std::size_t faults;
    } cases[] = {
        {"MID 52 8 VOR 113.70\nALPHA 53 8 INT --- L12\n", "", 0},
        {"OWN 1 1 WPT ---\nRW07C 58.01 7.99 INT ---\n", "", 0},
        {"NIL 52 8 VOR ---\n", "plan: 2 NIL is not in the data\n", 1},
        {"DUP 51.1 8 INT ---\n", "plan: 2 DUP lies 6.0 nm from where the data has it\n", 1},
        {"ALPHA 53 8 INT ---\nMID 52 8 VOR --- J99\n",
         "plan: airway J99 to MID is not in the data\n", 1},
        {"DUP 51 8 INT ---\nMID 52 8 VOR --- L12\n",
         "plan: airway L12 does not lead from DUP to MID\n", 1},
        {"MID 52 8 VOR ---\nCROSS 54 8 INT --- L12\n",
         "plan: airway L12 passes 1 fixes between MID and CROSS\n", 0},
        {"MID 52 8 VOR --- SIDP1A.MID SID\nSTARP 57.5 8 INT --- STAR9 STAR\n",
         "plan: arrival STAR9 is not in the data\n", 1},
    };
    const PlanData data = SamplePlanData();
    for (const auto& c : cases) {
        PlanReading read(head + c.lines + end);
        CheckPlan(data, read.plan, "plan", read.report);
        EXPECT_EQ(read.Said(), c.said) << c.lines;
        EXPECT_EQ(read.report.Count(Topic::Fault), c.faults) << c.lines;
    }
    PlanReading old(head + end);
    old.plan.cycle = "2301";
    CheckPlan(data, old.plan, "plan", old.report);
    EXPECT_EQ(old.Said(), "plan: is of cycle 2301, the data of 2309\n");
}

// ---- XML ----

TEST(XmlTexts, ReadsElementsLeniently) {
    const XmlText xml = ParseXml(
        "\xEF\xBB\xBF<?xml?><!DOCTYPE a><!-- <b>no</b> --><x:a one='1 > 0' two = "
        "\"&lt;&#65;&#x42;\">"
        " t<b>in<![CDATA[<&]]>ner</b>u &amp; &bogus; < 5<c/><b>second</b></wrong></x:a >");
    EXPECT_FALSE(xml.isCut);
    ASSERT_EQ(xml.elements.size(), 4U);
    EXPECT_EQ(xml.elements[0].name, "a");
    EXPECT_EQ(xml.elements[0].text, "tu & &bogus; < 5");
    EXPECT_EQ(Attribute(xml.elements[0], "one"), "1 > 0");
    EXPECT_EQ(Attribute(xml.elements[0], "two"), "<AB");
    EXPECT_EQ(Attribute(xml.elements[0], "wo"), "");
    EXPECT_EQ(xml.Children(0, "b").size(), 2U);
    EXPECT_EQ(xml.Text(0, "b"), "in<&ner");
    EXPECT_EQ(xml.Text(0, "c"), "");
    EXPECT_EQ(xml.Find(0, "b/c"), nullptr);
    const struct {
        const char* text;
        std::size_t elements;
    } cut[] = {
        {"<a><b>x", 2}, {"<a><b", 1}, {"<a attribute=\"never", 0}, {"<a><!-- ", 1}, {"<", 0}};
    for (const auto& c : cut) {
        const XmlText part = ParseXml(c.text);
        EXPECT_TRUE(part.isCut) << c.text;
        EXPECT_EQ(part.elements.size(), c.elements) << c.text;
    }
    std::string deep;
    for (int i = 0; i < 100000; ++i) {
        deep += "<a>\n";
    }
    EXPECT_TRUE(ParseXml(deep).isCut);
    EXPECT_EQ(ParseXml("<a>\n\n<b/>").elements[1].line, 3U);
}

}  // namespace
}  // namespace avqdata
