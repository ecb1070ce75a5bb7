#include "settings/settings.h"

#include <gtest/gtest.h>

#include <map>

#include "base/module_state.h"
#include "settings/aircraft_performance.h"
#include "support/temp_sim_folder.h"

namespace avq1 {
namespace {

using test::TempSimFolder;

Settings Read(std::string_view text) {
    Settings read;
    ApplySettingsText(text, read);
    return read;
}

TEST(Settings, NumbersFollowTheRulesOfTheirKeys) {
    const struct {
        double (*value)(const Settings&);
        std::map<double, std::vector<const char*>> rows;  // texts that give the value
    } keys[] = {{[](const Settings& s) { return 1.0 * s.WptChgDist; },
                 {{3.0,
                   {"", "WptChgDist=0.8", "WptChgDist=-2", "WptChgDist=far", "WptChgDist =4.5",
                    " WptChgDist=4.5", ";WptChgDist=4.5"}},
                  {4.5,
                   {"WptChgDist=4.5", "wptchgdist=4.5", "WptChgDist=4.5\nWptChgDist=0.5\n",
                    "WptChgDist= 4.5", "\xEF\xBB\xBFWptChgDist=4.5\r\n"}},
                  {1.2, {"WptChgDist=1.2"}},
                  {5.0, {"WptChgDist=4.5\nWptChgDist=5\n"}}}},
                {[](const Settings& s) { return 1.0 * s.TcasVertRange; },
                 {{27, {"TcasVertRange=2700"}},
                  {10, {"TcasVertRange=1000", "TcasVertRange=1099"}},
                  {140, {"TcasVertRange=900"}}}},
                {[](const Settings& s) { return 1.0 * s.VnavSetSpd; },
                 {{2, {"VnavSetSpd=2"}}, {1, {"VnavSetSpd=0", "VnavSetSpd = 2"}}}},
                {[](const Settings& s) { return 1.0 * s.SetDestLoadTowerViewDist; },
                 {{1, {"SetDestLoadTowerViewDist=25"}}, {0, {"SetDestLoadTowerViewDist=-1"}}}},
                {[](const Settings& s) { return 1.0 * s.LnavOffAtLastWpt; },
                 {{1, {"LnavOffAtLastWpt=1\nLnavOffAtLastWpt=0"}}}},
                {[](const Settings& s) { return 1.0 * s.ShowTodBodIndicators; },
                 {{0, {"ShowTodBodIndicators=0"}}}}};
    for (const auto& [value, rows] : keys) {
        for (const auto& [expected, texts] : rows) {
            for (const char* const text : texts) {
                EXPECT_DOUBLE_EQ(value(Read(text)), expected) << text;
            }
        }
    }
}

TEST(Settings, TextsKeepTheirBlanks) {
    const Settings read = Read(
        "flightplansfolder=D:\\Flight Plans 2\\\nParkingFile=my*gates.txt\n"
        "weightunit=kgs\n");
    EXPECT_EQ(read.FlightPlansFolder, "D:\\Flight Plans 2\\");
    EXPECT_EQ(read.ParkingFile, "my gates.txt");
    EXPECT_EQ(read.WeightUnit, "KGS");
}

TEST(Settings, ALongLineIsReadInPieces) {
    // The piece after character 298 is a line of its own.
    EXPECT_EQ(Read(std::string(298, 'x') + "WptChgDist=5\n").WptChgDist, 5.0);
    EXPECT_EQ(Read(std::string(297, 'x') + "WptChgDist=5\n").WptChgDist, 3.0);
    EXPECT_EQ(Read(std::string(10'000'000, '=') + "\nWptChgDist=5").WptChgDist, 5.0);
}

TEST(Settings, ComeFromTheUsersFileThenFromTheAircrafts) {
    ResetModuleState();
    const TempSimFolder folder;
    folder.Write("AVQ/Avq.CFG",
                 "WptChgDist=4.5\r\nVnavSetSpd=2\nWptProcChgDist=2.75\nLnavOffAtLastWpt=1");
    folder.Write("AVQ/aircraft/Demo Jet.cfg",
                 ";climb\r\nClimbIas=250\r\nwptchgdist=2.2\r\nVnavSetSpd=0\r\nWeightUnit=kgs\r\n"
                 "FlightPlansFolder=\\elsewhere\\\r\nLnavOffAtLastWpt=0\r\nLnav1xAtTod=1\r\n");
    LoadSettings();
    EXPECT_EQ(settings.WptChgDist, 4.5);
    AircraftName = "demo jet";
    LoadAircraftFile();
    EXPECT_EQ(settings.WptChgDist, 2.2);
    EXPECT_EQ(settings.WptProcChgDist, 2.75);
    EXPECT_EQ(settings.VnavSetSpd, 2);
    EXPECT_EQ(settings.WeightUnit, "KGS");
    EXPECT_EQ(settings.LnavOffAtLastWpt, 0);
    EXPECT_EQ(settings.FlightPlansFolder, "");
    EXPECT_EQ(settings.Lnav1xAtTod, 0);
    ResetModuleState();
}

TEST(SimVersion, NeedsThreeEntriesOfTheLaterGeneration) {
    const struct {
        std::vector<const char*> entries;
        std::int32_t version;
    } cases[] = {{{"FSX.EXE", "SimObjects/x"}, 9},
                 {{"FSX.EXE", "SimObjects/x", "MISSIONS/x"}, 10},
                 {{"fsx.exe.bak", "xfsx.exe", "simobjects2/x", "missions/x"}, 9}};
    for (const auto& c : cases) {
        ResetModuleState();
        const TempSimFolder folder;
        for (const char* entry : c.entries) {
            folder.Write(entry, "");
        }
        LoadSettings();
        EXPECT_EQ(SimVersion, c.version);
    }
    ResetModuleState();
}

}  // namespace
}  // namespace avq1
