// The flight log through the per-frame update: what its files hold after each second of a flight.
#include "flightlog/flight_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "flightlog/summary.h"
#include "guidance/activation.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "host/update_frame.h"
#include "settings/aircraft_performance.h"
#include "support/fake_data_service.h"
#include "support/placement.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::StartsWith;

constexpr const char* kRecords = "avq/FlightLog/fpl.log";
constexpr const char* kSummaries = "avq/FlightLog/Flight.log";

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        lines.push_back(line);
    }
    return lines;
}

class FlightLogTest : public ::testing::Test {
  protected:
    FlightLogTest() {
        ResetModuleState();
        SimFolder = folder.root().string();
        test::Placement("LNAV", nullptr).Send(PanelEvent::Install);
        AircraftName = "twin-jet";
        simulator.variables[289] = 8388608;  // one full tank of a pound a gallon
        simulator.variables[290] = 20000;
        simulator.variables[306] = 1;
        simulator.variables[6] = 14;
        simulator.variables[7] = 5;
        simulator.variables[323] = 1;
        simulator.variables[106] = 1;
        test::SetActivePlan({{"KAAA", 0, 0, "APT"}, {"BBB", 0, 1}, {"KCCC", 0, 2, "APT"}});
    }
    ~FlightLogTest() override {
        ImportTable.panel.services = nullptr;
        test::FakeDataService::Remove();
    }

    void Set(double groundSpeedKt, double verticalFpm, double heightFt, double longitude) {
        simulator.SetGroundSpeedKt(groundSpeedKt);
        simulator.variables[65] = verticalFpm / 0.7689468503937007;
        simulator.variables[614] = heightFt / 3.280839895013123;
        simulator.variables[74] = heightFt;
        simulator.SetPosition(0, longitude);
    }
    void Seconds(int count) {
        for (int i = 0; i < count; ++i) {
            simulator.variables[5] = ++clock % 60;
            simulator.NextTick();
            UpdateFrame();
        }
    }

    // Time, segment and waypoint of the records behind the header that were not told yet.
    std::vector<std::string> NewRecords() {
        std::vector<std::string> records;
        const std::vector<std::string> lines = Lines(folder.Read(kRecords));
        for (std::size_t i = std::max<std::size_t>(told, 6); i < lines.size(); ++i) {
            std::array<std::string_view, 3> words;
            SplitWords(lines[i], words);
            records.push_back(std::string(words[0]) + " " + std::string(words[1]) + " " +
                              std::string(words[2]));
        }
        told = lines.size();
        return records;
    }

    test::TempSimFolder folder;
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    test::FakeDataService& service = test::FakeDataService::Install();
    int clock = 0;
    std::size_t told = 0;
};

TEST_F(FlightLogTest, EachPhaseBeginsWhereItShould) {
    const struct {
        int seconds;
        double groundSpeedKt, verticalFpm, heightFt, longitude;
        std::vector<std::string> records;
    } kFlight[] = {
        {10, 1.99, 0, 0, 0, {"00:00:00 InitLoad ---"}},
        {1, 2.01, 0, 0, 0, {"00:00:11 PushBack ---"}},
        {5, 9.99, 0, 0, 0, {}},
        {1, 10.01, 0, 0, 0, {"00:00:17 Taxi ---"}},
        {1, 59.9, 900, 51, 0, {}},
        {1, 60.1, 900, 49, 0, {}},
        {1, 60.1, 399, 51, 0, {"00:00:20 Takeoff ---"}},
        {9, 150, 399, 900, 0, {}},
        {1, 150, 401, 900, 0, {"00:00:30 Climb ---"}},
        {5, 200, 2000, 2000, 0.1, {}},
        {2, 200, 2000, 2000, 0.1, {"00:00:36 Climb ---"}},
        {9, 200, 399, 2000, 0.1, {}},
        {1, 200, -51, 2000, 0.1, {}},
        {1, 200, 51, 2000, 0.1, {}},
        {1, 200, -49, 2000, 0.1, {"00:00:49 Cruise ---"}},
        {60, 300, 0, 9000, 0.5, {}},
        {2, 300, 0, 9000, 0.5, {"00:01:50 Cruise ---"}},
        {40, 300, -401, 9000, 0.9, {}},  // the last record was level
        {19, 300, -401, 9000, 0.9, {}},
        {1, 300, -401, 9000, 0.9, {"00:02:51 Cruise ---"}},
        {20, 300, -401, 9000, 0.9, {}},
        {1, 300, -401, 9000, 0.9, {"00:03:12 Descent ---"}},
        {5, 300, -1800, 8000, 0.9, {}},
        {1, 300, -1800, 8000, 0.9, {"00:03:18 Descent ---"}},
        {9, 300, -399, 8000, 1.66, {}},
        {1, 200, -800, 3000, 1.67, {"00:03:28 Approach ---"}},
        {7, 150, 0, 3000, 1.7, {"00:03:34 Approach ---"}},
        {1, 59.9, 0, 0, 1.99, {"00:03:36 Landing ---"}},
        {1, 40.1, 0, 0, 1.99, {}},
        {1, 39.9, 0, 0, 1.99, {"00:03:38 Arr_Taxi ---"}},
        {1, 4.9, 0, 0, 1.99, {"00:03:39 End_Flight ---"}},
        {99, 9.9, 0, 0, 1.99, {}},
        {1, 10.1, 0, 0, 1.99, {"00:05:19 Arr_Taxi ---"}},
        {1, 4.9, 0, 0, 2, {"00:05:20 End_Flight ---"}},
        {120, 0, 0, 0, 2, {}},
    };
    Set(0, 0, 0, 0);
    StartActivePlan();
    for (const auto& leg : kFlight) {
        SCOPED_TRACE(clock);
        Set(leg.groundSpeedKt, leg.verticalFpm, leg.heightFt, leg.longitude);
        Seconds(leg.seconds);
        EXPECT_THAT(NewRecords(), ElementsAreArray(leg.records));
    }
    EXPECT_EQ(flightLog.takeoffTimeText + flightLog.landingTimeText, "14:0514:05");
    EXPECT_EQ(flightLog.phase, 10);
    EXPECT_FALSE(folder.Exists(kSummaries));
    Seconds(1);
    EXPECT_EQ(flightLog.phase, kFlightLogDone);
    EXPECT_THAT(NewRecords(), IsEmpty());
    EXPECT_EQ(guidance.elapsedSeconds, 441);
    EXPECT_THAT(folder.Read(kSummaries), StartsWith("[KAAA-KCCC]\nDate=20"));
    const std::string summary = folder.Read(kSummaries);
    Seconds(300);
    EXPECT_EQ(guidance.elapsedSeconds, 441);
    EXPECT_EQ(folder.Read(kSummaries), summary);
    std::size_t kept = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder.root() / "avq/FlightLog")) {
        const std::string name = entry.path().filename().string();
        kept +=
            name.starts_with("fpl-20") && name.size() == std::size("fpl-YYYYMMDD-HHMMSS.log") - 1
                ? 1
                : 0;
        EXPECT_TRUE(!name.starts_with("fpl-") ||
                    folder.Read("avq/FlightLog/" + name) == folder.Read(kRecords));
    }
    EXPECT_EQ(kept, 1);
    StartActivePlan();
    Seconds(1);
    EXPECT_EQ(flightLog.takeoffTimeText + flightLog.landingTimeText, "") << "of another flight";
}

TEST_F(FlightLogTest, TheFileIsAsItsReadersKnowIt) {
    service.Set<std::int32_t>(0x3BFC, 90000 * 256);
    service.Set<std::int32_t>(0x13FC, 1);
    service.Set<double>(0x1400, 5000);
    simulator.variables[638] = 4321;
    simulator.variables[61] = 240;
    Set(0, 0, 0, 0);
    simulator.NextTick();
    UpdateFrame();
    StartActivePlan();
    Set(251.4, 1499.6, 3456, 0.1);
    Seconds(1);
    simulator.variables[290] = 19500.6;
    clock += 3700;
    guidance.elapsedSeconds += 3700;
    Seconds(1);
    const std::string rule =
        ";--------------------------------------------------------------------------";
    EXPECT_THAT(
        Lines(folder.Read(kRecords)),
        ElementsAre(
            "FlightPlan=KAAA-KCCC", "Aircraft=twin-jet", rule, rule,
            "; TIME   Segment  Waypoint   GSP   TAS       V/S    ALT    FF     FOB       ZFW     "
            "PLD  IAS",
            rule,
            "00:00:00 InitLoad      ---     0      0       0       0   4321   20000    90000    "
            "5000 72 ",
            "00:00:01 PushBack      ---   251    251    1500    3456   4321   20000    90000    "
            "5000 122",
            "00:00:01 Taxi          ---   251    251    1500    3456   4321   20000    90000    "
            "5000 122",
            "00:00:01 Takeoff       ---   251    251    1500    3456   4321   20000    90000    "
            "5000 122",
            "00:00:01 Climb         ---   251    251    1500    3456   4321   20000    90000    "
            "5000 122",
            "01:01:42 Climb         ---   251    251    1500    3456   4321   19501    90000    "
            "5000 158"));
    EXPECT_EQ(messages.lines[static_cast<std::size_t>(messages.count)] + "\n",
              folder.Read(kRecords).substr(folder.Read(kRecords).rfind("01:01:42")));
    EXPECT_EQ(flightLog.startFuel, 20000);
}

TEST_F(FlightLogTest, AWaypointPassedIsRecordedAlsoBeforeTheAircraftMoves) {
    Set(0, 0, 0, 0);
    StartActivePlan();
    EngageLnav();
    Set(1, 0, 0, 0.999);  // phase 0
    Seconds(2);
    EXPECT_THAT(NewRecords(), ElementsAre("00:00:00 InitLoad ---", "00:00:02 InitLoad BBB"));
    SetActiveWaypoint(1);
    EngageLnav();
    activePlan.Edit(1).ident = "B B";
    Set(20, 0, 0, 0.999);
    Seconds(1);
    EXPECT_THAT(NewRecords(), ElementsAre("00:00:03 PushBack B", "00:00:03 Taxi B"));
    flightLog.phase = kFlightLogDone;
    SetActiveWaypoint(1);
    EngageLnav();
    Seconds(2);
    EXPECT_THAT(NewRecords(), IsEmpty());
}

TEST_F(FlightLogTest, TheParkingBrakeReleasedAtTheGateEndsTheFlight) {
    for (const double brake : {1.0, std::nan(""), 0.0}) {
        Set(0, 0, 0, 0);
        StartActivePlan();
        flightLog.phase = 9;
        simulator.variables[323] = brake;
        Seconds(1);
        EXPECT_EQ(flightLog.phase, brake == 0 ? kFlightLogDone : 10);
    }
}

TEST_F(FlightLogTest, ANewLogForgetsTheLastOne) {
    service.present = false;
    Set(0, 0, 0, 0);
    StartActivePlan();
    Set(70, 0, 60, 0);
    Seconds(3);
    EXPECT_EQ(flightLog.takeoffTimeText, "14:05");
    EXPECT_EQ(flightLog.weightsRead, 0);
    service.present = true;
    service.Set<std::int32_t>(0x3BFC, 90000 * 256);
    Seconds(1);
    EXPECT_EQ(flightLog.zeroFuelWeight, 90000);
    const int asked = service.messages;
    Seconds(9);
    EXPECT_EQ(service.messages, asked) << "asked again though it has answered";
    service.Set<std::int32_t>(0x3BFC, 80000 * 256);
    simulator.variables[290] = 15000;
    Set(0, 0, 0, 0);
    Seconds(1);
    StartActivePlan();
    EXPECT_EQ(flightLog.zeroFuelWeight, 80000);
    EXPECT_EQ(flightLog.startFuel, 15000);
    EXPECT_EQ(flightLog.takeoffTimeText, "");
    EXPECT_EQ(flightLog.phase, 0);
    EXPECT_THAT(NewRecords(), ElementsAre("00:00:00 InitLoad ---"));
    FlightLogUpdate(FlightLogMode::StartPass);
    EXPECT_EQ(flightLog.phase, 0);
    EXPECT_THAT(NewRecords(), IsEmpty());
}

TEST_F(FlightLogTest, TheMessageListTakesNoMoreThanFourHundredLines) {
    Set(0, 0, 0, 0);
    StartActivePlan();
    CutMessages(0);
    for (int i = 0; i < 398; ++i) {
        AppendMessage("x");
    }
    Set(70, 0, 60, 0);
    Seconds(1);
    EXPECT_EQ(messages.count, 400);
    EXPECT_THAT(messages.lines[400], StartsWith("00:00:01 Taxi"));
    EXPECT_THAT(NewRecords(), SizeIs(4));
}

TEST_F(FlightLogTest, AFolderThatCannotBeWrittenStopsNothing) {
    folder.Write("avq/FlightLog", "a file of this name");
    Set(0, 0, 0, 0);
    StartActivePlan();
    CutMessages(0);
    Set(70, 500, 60, 0);
    Seconds(1);
    EXPECT_EQ(flightLog.phase, 4);
    EXPECT_EQ(flightLog.lastRecordTime, 1);
    EXPECT_EQ(messages.count, 0);
    flightLog.phase = 9;
    Set(0, 0, 0, 0);
    Seconds(130);
    EXPECT_EQ(flightLog.phase, kFlightLogDone);
}

// ---- the summary ----

std::string Record(const char* time, const char* segment, double airspeed, double climb,
                   double altitude, double flow, double fuel, double zeroFuel) {
    return Format("%s %-10s %6s %5.0f  %5.0f   %5.1f  %6.0f  %5.0f %7.0f  %7.0f %7.0f %-3.0f\n",
                  time, segment, "---", 99., airspeed, climb, altitude, flow, fuel, zeroFuel, 1000.,
                  200.);
}

TEST(FlightLogSummary, GroupsTheRecordsInClasses) {
    const std::string heading = "FlightPlan=A-B\nAircraft=x Climb\n;00:00:00 Climb\n";
    const struct {
        std::string records;
        std::string items;
    } kCases[] = {
        {"", ""},
        {Record("00:01:00", "Climb", 200, 1000, 2000, 3000, 1, 94399) +
             Record("00:01:05", "Climb", 210, 1500, 4000, 4000, 1000, 94000) +
             Record("00:01:10", "Climb", 301, 2000, 12600, 5000, 1000, 141000) +
             Record("00:01:15", "Climb", 220, 2000, 7400, 3500, 1, 94399),
         "Climb=5000_210_1500_95000_3250 5000_210_1500_100000_4000 15000_301_2000_140000_5000 \n"},
        {Record("00:20:00", "Cruise", 450, 9, 37400, 5000, 1, 94498) +
             Record("00:21:00", "Cruise", 451, 9, 37400, 5100, 1, 94499) +
             Record("00:22:00", "Cruise", 300, 9, 12400, 2000, 1, 92500),
         "Cruise=35000_450_95000_5000 35000_450_100000_5100 10000_300_95000_2000 \n"},
        {Record("00:30:00", "Descent", 400, -1850.2, 12500, 900, 1, 1) +
             Record("00:30:05", "Descent", 300, -1851, 12500, 1000, 1, 1) +
             Record("00:31:00", "Approach", 9, 9, 9, 9, 9, 9) +
             "00:31:05 Descent --- 1 2 3 4 5 6\n",
         "Descent=15000_350_1850_950 \n"},
    };
    for (const auto& c : kCases) {
        const std::string records = heading + Record("00:00:00", "InitLoad", 0, 0, 0, 0, 20000, 9) +
                                    Record("00:00:00", "PushBack", 0, 0, 0, 0, 19999, 9) +
                                    c.records +
                                    Record("01:23:45", "End_Flight", 0, 0, 0, 0, 15000, 9) +
                                    Record("01:24:59", "End_Flight", 0, 0, 0, 0, 14900, 9);
        EXPECT_EQ(SummaryText(records, "b 7"),
                  "FlightTime=01:24\nAircraft=b 7\nFuelUsed=5100\n" + c.items);
    }
    EXPECT_EQ(SummaryText("", "x"), "FlightTime=\nAircraft=x\nFuelUsed=0\n");
}

TEST_F(FlightLogTest, OnlyAnAircraftWithANameHasASummary) {
    for (const char* name : {"", "twin-jet"}) {
        AircraftName = name;
        Set(0, 0, 0, 0);
        StartActivePlan();
        flightLog.phase = 9;
        Seconds(122);
        EXPECT_EQ(flightLog.phase, kFlightLogDone);
        EXPECT_EQ(folder.Exists(kSummaries), name[0] != '\0');
    }
    EXPECT_THAT(folder.Read(kSummaries),
                testing::EndsWith("FlightTime=00:00\nAircraft=twin-jet\nFuelUsed=0\n\n"));
}

}  // namespace
}  // namespace avq1
