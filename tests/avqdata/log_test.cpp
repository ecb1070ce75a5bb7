// `avqdata log`: both of the flight log's files read, shown and written in other forms.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "avqdata/log_formats.h"
#include "avqdata/log_performance.h"
#include "avqdata/log_verb.h"
#include "avqdata/plan_helpers.h"
#include "settings/performance_tables.h"
#include "support/temp_sim_folder.h"

namespace avqdata {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const char* kRecordsText =
    "FlightPlan=KAAA-KCCC\r\n"
    "Aircraft=twin-jet\n"
    ";---\n; TIME   Segment  Waypoint\n"
    "00:00:00 InitLoad      ---     0      0       0       0   4000   20000    90000    5000 0  \n"
    "00:10:00 Climb         ---   300    310    1800    6000  12000   19000    90000    5000 280\n"
    "00:20:00 Climb         BBB   300    310      -9    6400   9000   18000    90000    5000 280\n"
    "00:30:00 Cruise        ---   300    410       0   31000   5000   17000    90000    5000 280\n"
    "01:00:00 Descent       ---   300    380   -1850   12600   1500   16000    90000    5000 270\n"
    "01:10:00 Landing       ---    50     50       0       0   1000   15000    90000    5000 59 \n";

constexpr const char* kSummaryText =
    "[KAAA-KCCC]\nDate=2026/03/05\nFlightTime=01:10\nAircraft=twin-jet\nFuelUsed=5000\n"
    "Climb=5000_300_2000_110000_12000 5000_300_2000_120000_12400 15000_340_1500_110000_9000 \n"
    "Cruise=30000_410_105000_5000 35000_430_105000_4800 \nDescent=10000_300_1800_1500 \n\n"
    "[KCCC-KAAA]\nDate=2026/03/06\nFlightTime=01:20\nAircraft=twin-jet\nFuelUsed=5200\n"
    "Climb=5000_310_2200_110000_12200 \n\n"
    "[X-Y]\nDate=2026/03/07\nFlightTime=00:20\nAircraft=other, \"two\"\nFuelUsed=700\n\n";

std::string Said(const Report& report) {
    std::ostringstream said;
    PrintCases(report, said);
    return said.str();
}

TEST(Log, ShowsAFlightAsATableWithItsProfile) {
    Report report;
    const std::string table = FlightTable(ReadLoggedFlight(kRecordsText, "fpl.log", report));
    EXPECT_EQ(Said(report), "");
    EXPECT_THAT(
        table,
        StartsWith(
            "KAAA-KCCC, twin-jet\n"
            "time      segment   waypoint  GS kt  TAS kt  IAS kt  ft/min  alt ft   lb/h  fuel lb  "
            "ZFW lb  payload\n"
            "00:00:00  InitLoad                0       0       0       0       0   4000    20000  "
            " 90000     5000\n"
            "00:10:00  Climb                 300     310     280    1800    6000  12000    19000  "
            " 90000     5000\n"
            "00:20:00  Climb     BBB         300     310     280      -9    6400   9000    18000  "
            " 90000     5000\n"));
    EXPECT_THAT(table, HasSubstr("\n 30000 |                           *****\n"));
    EXPECT_THAT(table, HasSubstr("\n     0 |*"));
    EXPECT_THAT(table, EndsWith("00:00:00" + std::string(50, ' ') + "01:10:00\n"));
}

TEST(Log, ListsTheFlightsAndWritesThemForASpreadsheet) {
    Report report;
    const std::vector<FlightSummary> flights = ReadSummaries(kSummaryText, "Flight.log", report);
    EXPECT_EQ(Said(report), "");
    EXPECT_EQ(SummaryTable(flights),
              "date        route      aircraft      time   fuel lb  cruise ft  TAS kt  lb/h\n"
              "2026/03/05  KAAA-KCCC  twin-jet      01:10     5000      35000     430  4800\n"
              "2026/03/06  KCCC-KAAA  twin-jet      01:20     5200\n"
              "2026/03/07  X-Y        other, \"two\"  00:20      700\n");
    EXPECT_THAT(SummaryCsv(flights),
                EndsWith("\r\n2026/03/07,X-Y,\"other, \"\"two\"\"\",00:20,700,,,\r\n"));
    EXPECT_THAT(FlightCsv(ReadLoggedFlight(kRecordsText, "fpl.log", report)),
                HasSubstr("\r\n00:20:00,Climb,BBB,300,310,280,-9,6400,9000,18000,90000,5000\r\n"));
}

TEST(Log, LinesThatCannotBeReadAreNamed) {
    const std::string good = "00:00:01 Taxi --- 1 2 3 4 5 6 7 8 9\n";
    for (const char* bad :
         {"00:00:02 Taxi --- 1 2 3 4 5 6 7 8\n", "00:00:02 Taxi --- 1 2 3 4 5 6 7 8 9 10\n",
          "00:02 Taxi --- 1 2 3 4 5 6 7 8 9\n", "00:00:-2 Taxi --- 1 2 3 4 5 6 7 8 9\n",
          "00:00:02 Taxi --- 1 2 3 nan 5 6 7 8 9\n", "00:00:02 Taxi --- 1 2 3 4 5 6e9 7 8 9\n",
          "00:00:00 Taxi --- 1 2 3 4 5 6 7 8 9\n", "\x1B[2J\n"}) {
        Report report;
        EXPECT_EQ(ReadLoggedFlight(good + bad + good, "fpl.log", report).records.size(), 2U) << bad;
        EXPECT_THAT(Said(report), StartsWith("fpl.log:2: line is no record of a flight log"))
            << bad;
        EXPECT_EQ(Said(report).find('\x1B'), std::string::npos);
    }
    for (const char* bad : {"Climb=1_2_3_4\n", "Cruise=1_2_3_x\n", "Descent=1_2_3_4_5\n",
                            "FuelUsed=\n", "Nothing=1\n"}) {
        Report report;
        ReadSummaries(std::string("[A-B]\n") + bad, "Flight.log", report);
        EXPECT_THAT(Said(report), StartsWith("Flight.log:2: line is no part")) << bad;
        ReadSummaries(bad, "alone", report);
        EXPECT_THAT(Said(report), HasSubstr("alone:1: line is no part")) << bad;
    }
}

TEST(Log, FlownFlightsMakeRowsThatTheModuleReads) {
    Report report;
    std::vector<FlightSummary> flights = ReadSummaries(kSummaryText, "Flight.log", report);
    flights.pop_back();
    avq1::PerformanceTables tables;
    avq1::ReadPerformanceTables(PerformanceTablesText(flights), tables);
    EXPECT_EQ(tables.grossWeights, (std::vector<double>{105000, 110000, 120000}));
    ASSERT_EQ(tables.climb.size(), 2U);
    EXPECT_EQ(tables.climb[0].altitudeFt, 5000);
    EXPECT_EQ(tables.climb[0].speedTas, 303);
    EXPECT_EQ(tables.climb[0].climbRate, 2067);
    EXPECT_EQ(tables.climb[0].fuelFlow[0], 12100);  // the nearest weight's
    EXPECT_EQ(tables.climb[0].fuelFlow[1], 12100);
    EXPECT_EQ(tables.climb[0].fuelFlow[2], 12400);
    EXPECT_EQ(tables.climb[1].fuelFlowCount, 3);
    ASSERT_EQ(tables.cruise.size(), 2U);
    EXPECT_EQ(tables.cruise[1].altitudeFt, 35000);
    EXPECT_EQ(tables.cruise[1].fuelFlow[2], 4800);
    ASSERT_EQ(tables.descent.size(), 1U);
    EXPECT_EQ(tables.descent[0].descentRate, 1800);
    EXPECT_EQ(tables.descent[0].fuelFlow, 1500);

    avq1::ReadPerformanceTables(
        PerformanceTablesText({ItemsOfRecords(ReadLoggedFlight(kRecordsText, "fpl.log", report))}),
        tables = {});
    EXPECT_EQ(tables.grossWeights, (std::vector<double>{105000, 110000}));
    ASSERT_EQ(tables.climb.size(), 1U) << "a level record is none of a climb";
    EXPECT_EQ(tables.climb[0].climbRate, 1800);
    ASSERT_EQ(tables.descent.size(), 1U);
    EXPECT_EQ(tables.descent[0].descentRate, 1850);
    EXPECT_EQ(PerformanceTablesText({FlightSummary{}}), "");

    FlightSummary many;
    for (int i = 0; i < 20; ++i) {
        many.cruise.push_back({30000, 400, 0, 100000 + 5000. * i, 4000 + 10. * i});
    }
    avq1::ReadPerformanceTables(PerformanceTablesText({many}), tables = {});
    EXPECT_EQ(tables.grossWeights.size(), 6U) << "columns of 20000 lb";
}

// A degree along the equator is 60 nm: KAAA 0, BBB 1, KCCC 3.
TEST(Log, ATrackFollowsTheRouteThroughTheWaypointsPassed) {
    Report report;
    const PlanReading plan(
        "[FlightPlan]\nKAAA 0 0 APT ---\nBBB 0 1 INT ---\nDISCO 0 0 WPT ---\nKCCC 0 3 APT ---\n");
    LoggedFlight flight = ReadLoggedFlight(kRecordsText, "fpl.log", report);
    const std::string kml = FlightKml(flight, plan.plan);
    // 25 nm and 50 nm flown to BBB make a third; from there to the end 50, 150, 29.2 nm.
    EXPECT_THAT(kml, HasSubstr("<coordinates>0.000000,0.000000,0 0.333333,0.000000,1829 "
                               "1.000000,0.000000,1951 "));
    EXPECT_THAT(kml, HasSubstr(" 3.000000,0.000000,0</coordinates></LineString>"));
    EXPECT_THAT(kml, HasSubstr("<name>BBB</name><description>6400 ft, 300 kt over ground"));
    flight.records.resize(4);
    EXPECT_THAT(FlightKml(flight, plan.plan), HasSubstr(" 1.833333,0.000000,9449</coordinates>"))
        << "still under way: as far as it has flown";
    flight.records[0].groundSpeedKt = flight.records[1].groundSpeedKt = 1e9;
    flight.records[3].groundSpeedKt = 1e9;
    EXPECT_THAT(FlightKml(flight, plan.plan), HasSubstr(" 3.000000,0.000000,9449</coordinates>"));
    EXPECT_EQ(FlightKml(flight, PlanReading("[FlightPlan]\nKAAA 0 0 APT ---\n").plan), "");
    EXPECT_EQ(FlightKml({}, plan.plan), "");
}

TEST(Log, TheProgramSaysWhatItCannotDo) {
    const avq1::test::TempSimFolder folder;
    const std::string root = folder.root().string() + "/";
    folder.Write("log/fpl.log", kRecordsText);
    folder.Write("log/Flight.log", kSummaryText);
    folder.Write("empty/fpl.log", "FlightPlan=A-B\n");
    folder.Write("faulty.log", std::string(kRecordsText) + "x\n");
    folder.Write("KAAAKCCC.RTE", "[FlightPlan]\nKAAA 0 0 APT ---\nKCCC 0 3 APT ---\n");
    const struct {
        const char* source;
        const char* to;
        const char* plan;
        const char* aircraft;
        int status;
        const char* said;
    } kCases[] = {
        {"log", "", "", "", kLogDone, "KCCC-KAAA"},
        {"log/fpl.log", "", "", "", kLogDone, "Landing"},
        {"log", "", "", "nobody", kLogFailed, "holds no flight of nobody"},
        {"empty", "", "", "", kLogFailed, "holds no Flight.log"},
        {"empty/fpl.log", "", "", "", kLogFailed, "holds no flight"},
        {"none.log", "", "", "", kLogFailed, "none.log"},
        {"faulty.log", "", "", "", kLogFaulty, "faulty.log:11: line is no record"},
        {"log", "a.csv", "", "", kLogDone, "a.csv: 3 flights"},
        {"log", "a.csv", "", "", kLogFailed, "is there already"},
        {"log", "a.txt", "", "", kLogFailed, "extension tells the form"},
        {"log", "a.kml", "", "", kLogFailed, "a list of flights has no tracks"},
        {"log/fpl.log", "a.kml", "", "", kLogFailed, "--plan FILE"},
        {"log/fpl.log", "a.kml", "none.RTE", "", kLogFailed, "none.RTE"},
        {"log/fpl.log", "a.kml", "KAAAKCCC.RTE", "", kLogDone, "a.kml: 6 records"},
        {"log", "a.per", "", "", kLogFailed, "--aircraft names one: other, \"two\" twin-jet"},
        {"log", "a.per", "", "other, \"two\"", kLogFailed, "no climb"},
        {"log", "a.per", "", "twin-jet", kLogDone, "a.per: 2 flights"},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(std::string(c.source) + " " + c.to + " " + c.said);
        LogRequest request{root + c.source, c.to[0] != '\0' ? root + c.to : "",
                           c.plan[0] != '\0' ? root + c.plan : "", c.aircraft, false};
        std::ostringstream out;
        std::ostringstream err;
        EXPECT_EQ(RunLog(request, out, err), c.status);
        EXPECT_THAT(out.str() + err.str(), HasSubstr(c.said));
        EXPECT_EQ(out.str().empty(), c.status == kLogFailed);
    }
    EXPECT_THAT(folder.Read("a.csv"), StartsWith("date,route,aircraft,"));
    EXPECT_THAT(folder.Read("a.kml"), HasSubstr("</kml>"));
    EXPECT_THAT(folder.Read("a.per"), HasSubstr("[GRWT 105 110 120]"));
}

}  // namespace
}  // namespace avqdata
