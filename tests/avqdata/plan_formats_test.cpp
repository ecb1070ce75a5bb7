// Plans in every format: what comes back, what is written, what is refused, what is said.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

#include "avqdata/plan_helpers.h"
#include "base/text.h"

namespace avqdata {
namespace {

using avq1::PlanWaypoint;
using testing::HasSubstr;

// ---- there and back ----

// All types, airways, procedures, a gap, the keys; both sides of 180 degrees.
constexpr const char* kSample =
    "CruiseAlt=37000\nTripFuel=40000\nResvFuel=5000.5\n[FlightPlan]\n"
    "NZAA -37.00806 174.79167 APT ---\n"
    "POINT -37.10000 175.10000 INT --- POIN2A SID\n"
    "MOGRA -30.00000 179.99999 NDB 322 B599\n"
    "DISCO 0 0 WPT ---\n"
    "AB123 -20.00000 -180.00000 WPT --- B599\n"
    "NAVAI -0.00001 -179.99999 VOR 114.70 J1.TR STAR\n"
    "NFFN -17.75528 177.44333 APT --- B600\n";

// The places of a plan as data, and the airways between them.
PlanData DataOf(const ExchangePlan& plan) {
    Dataset data;
    data.airways = {{"B599", {}}, {"B600", {}}};
    for (const PlanWaypoint& entry : plan.entries) {
        const LatLon at{entry.latitude, entry.longitude};
        if (entry.type == "VOR" || entry.type == "NDB") {
            data.stations.push_back({entry.ident, "-", at, entry.type == "VOR", entry.frequency});
        } else if (entry.type == "APT") {
            data.airports.push_back({entry.ident, "-", 0, at, {}});
        } else if (entry.type == "INT") {
            data.fixes.push_back({entry.ident, at});
        }
        const bool isEarly = entry.latitude < -25;
        data.airways[isEarly ? 0 : 1].points.push_back({entry.ident, at});
    }
    return PlanDataOf(data);
}

// What a format has no place for is gone when a plan comes back, and nothing else.
TEST(PlanFormats, RoundTrips) {
    const char* const simRoute =
        "37000 0 0: NZAA/APT/// POINT/INT/// MOGRA/NDB//B599/ AB123/WPT//B599/ NAVAI/VOR/// "
        "NFFN/APT//B600/";
    const struct {
        const char* format;
        double toleranceDeg;  // half of the last digit written, and half of the fifth decimal
        const char* route;
    } cases[] = {
        {"rte", 1e-9,
         "37000 45000.5 5000.5: NZAA/APT/// POINT/INT//POIN2A/SID MOGRA/NDB/322/B599/ DISCO//// "
         "AB123/WPT//B599/ NAVAI/VOR/114.70/J1.TR/STAR NFFN/APT//B600/"},
        {"pln-xml", 0.5e-5 + 0.005 / 3600, simRoute},
        {"pln-keys", 0.5e-5 + 0.005 / 60, simRoute},
        {"fms1100", 0.6e-5,
         "0 0 0: NZAA/APT/// POINT/INT/// MOGRA/NDB//B599/ AB123/WPT//B599/ NAVAI/VOR/// "
         "NFFN/APT///"},
        {"fms3", 0.6e-5,
         "0 0 0: NZAA/APT/// POINT/INT/// MOGRA/NDB/// AB123/WPT/// NAVAI/VOR/// NFFN/APT///"},
        {"fpl", 0.6e-5,
         "0 0 0: NZAA/APT/// POINT/INT/// MOGRA/NDB/// AB123/WPT/// NAVAI/VOR/// NFFN/APT///"},
        {"lnmpln", 0.6e-5, simRoute},
        // Forms that leave types or positions to the data, which has frequencies too.
        {"fgfp", 0.6e-5,
         "37000 0 0: NZAA/APT/// POINT/INT/// MOGRA/NDB/322/B599/ DISCO//// AB123/WPT//B599/ "
         "NAVAI/VOR/114.70// NFFN/APT//B600/"},
        {"pln-efb", 0.5e-5 + 0.005 / 3600,
         "37000 0 0: NZAA/APT/// POINT/INT/// MOGRA/NDB/322/B599/ AB123/WPT//B599/ "
         "NAVAI/VOR/114.70// NFFN/APT///"},
        {"route", 0.5e-5 + 0.5 / 3600,
         "0 0 0: NZAA/APT/// POINT/INT/// MOGRA/NDB/322/B599/ WPT01/WPT/// NAVAI/VOR/114.70// "
         "NFFN/APT//B600/"},
    };
    const PlanReading original(kSample);
    const PlanData data = DataOf(original.plan);
    for (const auto& c : cases) {
        SCOPED_TRACE(c.format);
        ExchangePlan plan = original.plan;
        plan.cycle = "2309";
        const PlanWriting written(c.format, plan);
        const bool needsData = FormatNamed(c.format) == FormatNamed("fgfp") ||
                               (FormatNamed(c.format)->carries & kCarriesPositions) == 0;
        const PlanReading abroad(written.text, needsData ? &data : nullptr);
        EXPECT_EQ(abroad.format, FormatNamed(c.format)) << written.error;
        EXPECT_EQ(abroad.Said(), "");
        const PlanReading back(PlanWriting("rte", abroad.plan).text);
        EXPECT_EQ(ShowRoute(back.plan), c.route);
        auto entry = back.plan.entries.begin();
        for (const PlanWaypoint& want : original.plan.entries) {
            const bool isGapped = entry != back.plan.entries.end() && avq1::HasPosition(*entry);
            if (avq1::HasPosition(want) == isGapped) {
                EXPECT_NEAR(entry->latitude, want.latitude, c.toleranceDeg) << want.ident;
                EXPECT_NEAR(entry->longitude, want.longitude, c.toleranceDeg) << want.ident;
                ++entry;
            }
        }
        EXPECT_EQ(entry, back.plan.entries.end());
    }
}

// Altitudes and X-Plane's choices of procedures have no place in the module's plans.
TEST(PlanFormats, RoundTripOfAnFmsPlan) {
    const std::string text =
        "I\n1100 Version\nCYCLE 1710\nADEP KGSO\nDEPRWY RW14\nSID TRSHA1\nSIDTRANS BAWDS\n"
        "ADES KRDU\nDESRWY RW05L\nSTAR ALDAN1\nSTARTRANS ROA\nAPP I05L\nAPPTRANS LEONE\nNUMENR 3\n"
        "1 KGSO ADEP 925.000000 36.097750 -79.937300\n"
        "11 BAWDS J61 12000.000000 35.500000 -79.400000\n"
        "1 KRDU ADES 435.000000 35.877639 -78.787472\n";
    const PlanReading read(text);
    const PlanWriting written("fms1100", read.plan);
    EXPECT_EQ(written.text, text) << written.error;
    EXPECT_THAT(read.Said(), HasSubstr("names the departure 'TRSHA1'; its points are not"));
    EXPECT_EQ(NotCarried(*FormatNamed("rte"), read.plan),
              "altitudes (3), runway and procedure choices (6), approach (2)");
    EXPECT_EQ(NotCarried(*FormatNamed("fms1100"), read.plan), "");
}

// ---- what is written ----

TEST(PlanFormats, WritesEachFormAsItsProgramsDo) {
    ExchangePlan plan = PlanReading(
                            "CruiseAlt=9500\n[FlightPlan]\n"
                            "EGSH 52.67683 1.28450 APT ---\n"
                            "MAM -0.99995 -0.99999 VOR 113.00 L1\n"
                            "EGBB 52.45600 -1.75033 APT ---\n")
                            .plan;
    plan.cycle = "2309";
    plan.entries[1].altitude = 9500;
    const struct {
        const char* format;
        const char* part;
    } cases[] = {
        {"pln-keys", "[flightplan]\r\ntitle=EGSH to EGBB\r\n"},
        {"pln-keys", "routetype=2\r\ncruising_altitude=9500\r\n"},
        {"pln-keys", "departure_id=EGSH, N52* 40.61', E001* 17.07', +000000.00\r\n"},
        {"pln-keys", "waypoint.1=MAM, V, S01* 00.00', W001* 00.00', +009500.00, L1\r\n"},
        {"pln-xml", "<RouteType>LowAlt</RouteType>\r\n"},
        {"pln-xml", "<DestinationLLA>N52\xC2\xB0 27' 21.60\",W1\xC2\xB0 45' 01.19\",+000000.00<"},
        {"pln-xml", "<WorldPosition>S0\xC2\xB0 59' 59.82\",W0\xC2\xB0 59' 59.96\",+009500.00<"},
        {"pln-xml", "<ATCAirway>L1</ATCAirway>"},
        {"fms3", "I\n3 version\n1\n2\n1 EGSH 0.000000 52.676830 1.284500\n"},
        {"fms1100", "I\n1100 Version\nCYCLE 2309\nADEP EGSH\nADES EGBB\nNUMENR 3\n"},
        {"fms1100", "3 MAM L1 9500.000000 -0.999950 -0.999990\n1 EGBB ADES 0.000000 "},
        {"rte", "CruiseAlt=9500\n[FlightPlan]\nEGSH             52.67683  1.28450  APT ---"},
        {"kml", "<name>MAM</name><description>VOR 113.00, L1, 9500 ft</description>"},
    };
    for (const auto& c : cases) {
        const PlanWriting written(c.format, plan);
        EXPECT_THAT(written.text, HasSubstr(c.part)) << c.format << written.error;
    }
    plan.entries.front().type = "WPT";
    EXPECT_THAT(PlanWriting("fms1100", plan).text, HasSubstr("\nDEP EGSH\nADES EGBB\nNUMENR"));
    plan.departure.runway = "RW09";
    EXPECT_THAT(PlanWriting("fms1100", plan).error, HasSubstr("only at an airport"));
}

// A later planner's plan: its departure's points, its arrival's, an approach named at the airport.
TEST(PlanFormats, NamesProceduresWhereTheFormHasAPlaceForThem) {
    const auto waypoint = [](const char* ident, const char* type, int latitude, const char* more) {
        return avq1::Format(
            "<ATCWaypoint id=\"%s\"><ATCWaypointType>%s</ATCWaypointType>"
            "<WorldPosition>N%d* 0' 0.00\",E8* 0' 0.00\",+0</WorldPosition>%s"
            "</ATCWaypoint>",
            ident, type, latitude, more);
    };
    const std::string sid =
        waypoint("SIDPT", "Intersection", 51, "<DepartureFP>SIDP1A</DepartureFP>") +
        waypoint("SIDEX", "Intersection", 51, "<DepartureFP>SIDP1A</DepartureFP>");
    const std::string rest =
        waypoint("ROUTE", "Intersection", 52, "<ATCAirway>L12</ATCAirway>") +
        waypoint("STARP", "Intersection", 53,
                 "<ArrivalFP>STAR2B</ArrivalFP><RunwayNumberFP>7</RunwayNumberFP>"
                 "<RunwayDesignatorFP>CENTER</RunwayDesignatorFP>") +
        waypoint("Town", "Airport", 54,
                 "<ApproachTypeFP>ILS</ApproachTypeFP><SuffixFP>Z</SuffixFP><RunwayNumberFP>7"
                 "</RunwayNumberFP><RunwayDesignatorFP>CENTER</RunwayDesignatorFP>"
                 "<ICAO><ICAOIdent>BBBB</ICAOIdent></ICAO>");
    const struct {
        const char* departure;  // what the departure airport's element adds
        const char* block;      // of the written plan
        const char* lines;
        const char* lost;
    } cases[] = {
        {"<RunwayNumberFP>23</RunwayNumberFP>",
         "ADEP AAAA\nDEPRWY RW23\nSID SIDP1A\nADES BBBB\nDESRWY RW07C\nSTAR STAR2B\nAPP I07CZ\n",
         "AAAA SIDEX ROUTE STARP BBBB", "points of procedures that are named instead (1)"},
        {"", "ADEP AAAA\nADES BBBB\nDESRWY RW07C\nSTAR STAR2B\nAPP I07CZ\n",
         "AAAA SIDPT SIDEX ROUTE STARP BBBB", "procedures (2)"},
    };
    for (const auto& c : cases) {
        PlanReading read(waypoint("AAAA", "Airport", 50, c.departure) + sid + rest);
        EXPECT_EQ(read.Idents(), "AAAA SIDPT SIDEX ROUTE STARP BBBB");
        EXPECT_EQ(read.plan.entries.back().via + read.plan.entries.back().procedure, "");
        read.plan.cycle = "2309";
        const PlanWriting written("fms1100", read.plan);
        EXPECT_THAT(written.text, HasSubstr(c.block)) << written.error;
        EXPECT_EQ(PlanReading(written.text).Idents(), c.lines);
        EXPECT_EQ(NotCarried(*FormatNamed("fms1100"), read.plan), c.lost);
    }
}

TEST(PlanFormats, NamesOfApproaches) {
    const struct {
        const char* type;
        const char* runway;
        const char* suffix;
        const char* name;
        const char* back;  // type, the planner's word, runway and suffix of the name
    } cases[] = {
        {"ILS", "5L", "", "I05L", "ILS ILS 05L "},
        {"LOCALIZER", "RW23", "Z", "L23-Z", "LOC LOCALIZER 23 Z"},
        {"RNAV", "16C", "Y", "R16CY", "RNAV RNAV 16C Y"},
        {"VORDME", "07", "", "D07", "VORDME VORDME 07 "},
        {"CIRCLING", "07", "", "", "   "},
        {"ILS", "37", "", "", "   "},
    };
    for (const auto& c : cases) {
        const std::string name = ApproachName(c.type, c.runway, c.suffix);
        EXPECT_EQ(name, c.name);
        const ApproachParts parts = PartsOfApproach(name);
        EXPECT_EQ(parts.type + " " + parts.simType + " " + parts.runway + " " + parts.suffix,
                  c.back);
    }
}

// ---- what is refused ----

TEST(PlanFormats, RefusesWhatTheFormatsProgramsWouldNotRead) {
    const PlanWaypoint gap = avq1::Discontinuity();
    const auto with = [](auto change) {
        PlanWaypoint entry;
        entry.ident = "AAAA";
        entry.type = "APT";
        change(entry);
        return entry;
    };
    const auto place = [&](const char* ident, const char* type = "APT") {
        return with([&](auto& e) { e.ident = ident, e.type = type; });
    };
    const auto at = [&](double latitude, double longitude) {
        return with([&](auto& e) { e.latitude = latitude, e.longitude = longitude; });
    };
    const PlanWaypoint end = place("BBBB");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const std::vector<PlanWaypoint> many(202, end);
    const struct {
        const char* format;
        std::vector<PlanWaypoint> entries;
        const char* why;
    } cases[] = {
        {"kml", {}, "two waypoints"},
        {"geojson", {end, gap}, "two waypoints"},
        {"rte", many, "202 waypoints are more than the 201"},
        {"fms3", many, "more than the 100"},
        {"fms1100", {end, at(nan, 0)}, "waypoint 2 has no position"},
        {"geojson", {at(0, nan), end}, "waypoint 1 has no position"},
        {"kml", {at(90.1, 0), end}, "no position"},
        {"rte", {at(0, -180.1), end}, "no position"},
        {"rte", {place(""), end}, "no identifier"},
        {"rte", {place("SEVENTEENLETTERS1"), end}, "more than 16 characters"},
        {"pln-xml", {end, place("SIXLET", "INT"), end}, "2 has an identifier of more than 5"},
        {"pln-keys", {end, place("ELEVENCHARS", "WPT"), end}, "more than 10"},
        {"fms3", {place("AB CD"), end}, "more than letters"},
        {"fms1100", {place("\xC3\x84RGER"), end}, "more than letters"},
        {"pln-keys", {end, place("A,B", "WPT"), end}, "more than letters"},
        {"rte", {place(";AB"), end}, "more than letters"},
        {"rte", {end, with([](auto& e) { e.via = "TWO WORDS"; })}, "no plain word"},
        {"geojson", {end, with([](auto& e) { e.frequency = "1\n2"; })}, "no plain word"},
        {"fms3", {end, with([nan](auto& e) { e.altitude = nan; })}, "no possible altitude"},
        {"kml", {end, with([](auto& e) { e.speed = -5; })}, "no possible speed"},
        {"rte", {end, place("THEN", "OAWY"), end}, "an airway that is not entered"},
        {"pln-xml", {end, place("POINT", "INT")}, "an airport at both ends"},
        {"fms1100", {end, end}, "cycle in four digits"},
    };
    for (const auto& c : cases) {
        ExchangePlan plan;
        plan.entries = c.entries;
        const PlanWriting written(c.format, plan);
        EXPECT_FALSE(written.done) << c.format << " " << c.why;
        EXPECT_EQ(written.text, "") << c.format;
        EXPECT_THAT(written.error, HasSubstr(c.why)) << c.format;
    }
    ExchangePlan noRunway;
    noRunway.entries = {end, end};
    noRunway.cycle = "2309";
    noRunway.arrival.procedure = "ALDAN1";
    EXPECT_THAT(PlanWriting("fms1100", noRunway).error, HasSubstr("without its runway"));
}

// ---- what is odd in a file ----

const std::string kFmsHead = "I\n3 version\n1\n1\n";
const std::string kFmsRows = "1 AAAA 0 50 8\n1 BBBB 0 51 8\n";
const std::string kNewHead = "I\n1100 Version\nCYCLE 2309\nADEP AAAA\nADES BBBB\nNUMENR 2\n";
const std::string kNewRows = "1 AAAA ADEP 0 50 8\n1 BBBB ADES 0 51 8\n";
const std::string kRteHead = "[FlightPlan]\n";

TEST(PlanFormats, ReadsWhatItCanAndSaysTheRest) {
    const struct {
        std::string text;
        const char* idents;
        const char* said;  // a part of it; empty: nothing is said
        std::size_t faults;
    } cases[] = {
        // Line ends, marks, blanks, extra and missing things that do no harm.
        {"\xEF\xBB\xBF" + kFmsHead + kFmsRows, "AAAA BBBB", "", 0},
        {"A\r\n3 version\r\n1\r\n1\r\n1 AAAA 0 50 8\r\n1 BBBB 0 51 8", "AAAA BBBB", "", 0},
        {"A\r3 version\r1\r1\r1 AAAA 0 50 8\r1 BBBB 0 51 8\r", "AAAA BBBB",
         "plan: has the line ends", 0},
        {"I\n3 version\n1\n1\n\n\t1\tAAAA 0  50 8 extra fields\n 1 BBBB 0 51 8\n\n", "AAAA BBBB",
         "", 0},
        {kFmsHead + kFmsRows + "0 ---- 0.000000 0.000000 0.000000\n", "AAAA BBBB", "", 0},
        {kNewHead + "FUTURE KEY\n" + kNewRows, "AAAA BBBB", "", 0},
        {kNewHead + "DEPRWY R\n" + kNewRows, "AAAA BBBB", "plan: R is no runway, left out", 0},
        {"I\n1200 Version\n" + kNewRows, "AAAA BBBB", "plan:2: version 1200 is not known", 0},
        // A waypoint that cannot be used is left out, and the line named.
        {kFmsHead + "1 AAAA 0 5O.1 8\n" + kFmsRows, "AAAA BBBB", "plan:5: '5O.1' '8' is no pos", 1},
        {kFmsHead + "1 AAAA 0 91 8\n" + kFmsRows, "AAAA BBBB", "plan:5: '91' '8' is no position",
         1},
        {kFmsHead + kFmsRows + "11 CCC", "AAAA BBBB", "plan:7: has 2 of 5 columns", 1},
        {kNewHead + "1 AAAA 0 50 8\n" + kNewRows, "AAAA BBBB", "plan:7: has 5 of 6 columns", 1},
        {kFmsHead + kFmsRows + "garbage here\n", "AAAA BBBB", "plan:7: begins with 'garbage'", 1},
        {kFmsHead + "1 AAAA high 50 8\n1 BBBB 0 51 8\n", "AAAA BBBB", "'high' is no altitude", 0},
        {kFmsHead + "77 AAAA 0 50 8\n1 BBBB 0 51 8\n", "AAAA BBBB", "type '77' is not known", 0},
        {"I\n3 version\n1\n5\n" + kFmsRows, "AAAA BBBB", "ends after 2 of 5 waypoints", 0},
        {"I\n3 version\n1\n2\n" + kFmsRows, "AAAA BBBB", "", 0},
        {kFmsHead + "28 +13.691_+100.760X 0 50 8\n1 BBBB 0 51 8\n", "+13.691_+100.760 BBBB",
         "is cut to 16", 0},
        // Names that would mean something else here.
        {kFmsHead + "11 DISCO 0 50 8\n11 THEN 0 51 8\n", "DISCOX THENX", "", 0},
        // Nothing to be had.
        {"", "", "is empty, no flight plan", 0},
        {"\xEF\xBB\xBF \r\n", "", "is empty, no flight plan", 0},
        {"garbage here", "", "no flight plan in a form that is known", 0},
        {"I\n3 version\n1\n1\n1 AAAA", "", "holds no waypoint", 1},
        {"\xFF\xFEI", "", "is UTF-16", 0},
        {"[flightplan]\nAAAA 50 8 APT ---\n", "", "must read exactly [FlightPlan]", 1},
        // The module's own plans, whose reader passes over everything in silence.
        {kRteHead + "AAAA x 8 APT ---\nBBBB 51 8 APT ---\n", "AAAA BBBB",
         "plan:2: AAAA has a coord", 1},
        {kRteHead + "AAAA\n", "AAAA", "plan:2: AAAA has no position", 1},
        {kRteHead + "; note\n\nAAAA 50 8 XYZ\n", "AAAA", "plan:4: AAAA has no known type", 0},
        {kRteHead + "AAAA 50 8 APT " + std::string(140, '-') + "\n", "AAAA",
         "plan:2: has more than 148 characters", 0},
        // The simulator's, in both forms: Latin-1 and UTF-8 degree signs, truncated lines.
        {"[flightplan]\nwaypoint.0=AAAA, A, N50\xB0 00.00', E008* 00.00', +0\nwaypoint.1=BBBB, A, "
         "N5",
         "AAAA", "plan:3: has no position that makes sense", 1},
        {"<ATCWaypoint id=\"AAAA\"><WorldPosition>N50\xB0 0' 0\",E8\xC2\xB0 0' 0\",+0</"
         "WorldPosition></ATCWaypoint>\n<!-- a\n b -->\n<ATCWaypoint id=\"BBBB\"><WorldPosition>N",
         "AAAA", "plan:4: has no position", 1},
    };
    for (const auto& c : cases) {
        const PlanReading read(c.text);
        EXPECT_EQ(read.Idents(), c.idents) << c.text;
        EXPECT_EQ(read.report.Count(Topic::Fault), c.faults) << c.text << "\n" << read.Said();
        EXPECT_EQ(read.done, *c.idents != '\0') << c.text;
        if (*c.said == '\0') {
            EXPECT_EQ(read.Said(), "") << c.text;
        } else {
            EXPECT_THAT(read.Said(), HasSubstr(c.said)) << c.text;
        }
    }
}

TEST(PlanFormats, LongPlans) {
    std::string rte = kRteHead;
    for (int i = 0; i < 250; ++i) {
        rte += "P" + std::to_string(i) + " 10 20 INT ---\n";
    }
    const PlanReading read(rte);
    EXPECT_EQ(read.plan.entries.size(), 201U);
    EXPECT_EQ(read.report.Count(Topic::Fault), 49U);
    EXPECT_THAT(read.Said(), HasSubstr("plan:203: is beyond the 201 waypoints"));
}

}  // namespace
}  // namespace avqdata
