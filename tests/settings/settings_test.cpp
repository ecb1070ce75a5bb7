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
                {[](const Settings& s) { return 1.0 * s.WptProcChgDist; },
                 {{3.5, {"WptProcChgDist=3.5"}}, {2.5, {"WptProcChgDist=0.5"}}}},
                {[](const Settings& s) { return 1.0 * s.FlyoverWptChgDist; },
                 {{2.25, {"FlyoverWptChgDist=2.25"}}, {1.5, {"FlyoverWptChgDist=0.25"}}}},
                {[](const Settings& s) { return 1.0 * s.TcasVertRange; },
                 {{27, {"TcasVertRange=2700"}},
                  {10, {"TcasVertRange=1099"}},
                  {140, {"TcasVertRange=900"}}}},
                {[](const Settings& s) { return 1.0 * s.VnavSetSpd; },
                 {{2, {"VnavSetSpd=2"}}, {1, {"VnavSetSpd=0", "VnavSetSpd = 2"}}}},
                {[](const Settings& s) { return 1.0 * s.VnavSetAlts; },
                 {{0, {"VnavSetAlts=0", "VnavSetAlts=no"}}}},
                {[](const Settings& s) { return 1.0 * s.SetDestLoadTowerViewDist; },
                 {{1, {"SetDestLoadTowerViewDist=25"}}, {0, {"SetDestLoadTowerViewDist=-1"}}}},
                {[](const Settings& s) { return 1.0 * s.LnavOffAtLastWpt; },
                 {{1, {"LnavOffAtLastWpt=1\nLnavOffAtLastWpt=0"}}}},
                {[](const Settings& s) { return 1.0 * s.DecLatLonDisp; },
                 {{1, {"DecLatLonDisp=1\nDecLatLonDisp=-1"}}}},
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

TEST(Settings, EachPlainSwitchReachesItsOwnMember) {
    const struct {
        const char* key;
        std::int32_t Settings::*member;
    } cases[] = {{"ArmPauseAtTod", &Settings::ArmPauseAtTod},
                 {"DispAppPtrnAlts", &Settings::DispAppPtrnAlts},
                 {"DispETALocalTime", &Settings::DispETALocalTime},
                 {"DispPrevWpt", &Settings::DispPrevWpt},
                 {"EadiDualCue", &Settings::EadiDualCue},
                 {"EADIHdgTape", &Settings::EADIHdgTape},
                 {"EhsiStaticHdgPointer", &Settings::EhsiStaticHdgPointer},
                 {"ExpandEADI", &Settings::ExpandEADI},
                 {"ExpandEADILnav", &Settings::ExpandEADILnav},
                 {"LoadFuelonFlightPlanLoad", &Settings::LoadFuelonFlightPlanLoad},
                 {"Lnav1xAtTod", &Settings::Lnav1xAtTod},
                 {"LnavSetEnRouteFreqs", &Settings::LnavSetEnRouteFreqs},
                 {"SetSpdOffwhenAPMasterSetOff", &Settings::SetSpdOffwhenAPMasterSetOff},
                 {"SetWptBaro", &Settings::SetWptBaro},
                 {"ShowTodBodIndicators", &Settings::ShowTodBodIndicators},
                 {"VnavOffAtLastWpt", &Settings::VnavOffAtLastWpt},
                 {"VnavOffOnManAltChg", &Settings::VnavOffOnManAltChg},
                 {"VnavSetAlts", &Settings::VnavSetAlts},
                 {"VnavSetSpdOffOnManSpdChg", &Settings::VnavSetSpdOffOnManSpdChg}};
    for (const auto& c : cases) {
        const Settings read = Read(std::string(c.key) + "=7\n");
        for (const auto& other : cases) {
            const std::int32_t expected = &c == &other ? 7 : Settings{}.*(other.member);
            EXPECT_EQ(read.*(other.member), expected) << c.key << " and " << other.key;
        }
    }
}

TEST(Settings, TextsKeepTheirBlanks) {
    const Settings read = Read(
        "flightplansfolder=D:\\Flight Plans 2\\\nParkingFile=my gates.txt\n"
        "weightunit=kgs\n");
    EXPECT_EQ(read.FlightPlansFolder, "D:\\Flight Plans 2\\");
    EXPECT_EQ(read.ParkingFile, "my gates.txt");
    EXPECT_EQ(read.WeightUnit, "KGS");
}

TEST(Settings, ALongLineIsReadInPieces) {
    // The piece after character 298 is a line of its own.
    EXPECT_EQ(Read(std::string(298, 'x') + "WptChgDist=5\n").WptChgDist, 5.0);
    EXPECT_EQ(Read(std::string(297, 'x') + "WptChgDist=5\n").WptChgDist, 3.0);
    std::string rubbish;
    for (std::uint32_t i = 0; i < 10'000'000; ++i) {
        rubbish += static_cast<char>(i * 7919U >> 5);
    }
    Read(rubbish);
    EXPECT_EQ(Read(std::string(10'000'000, '=') + "\nWptChgDist=5").WptChgDist, 5.0);
}

TEST(Settings, ComeFromTheUsersFileThenFromTheAircrafts) {
    ResetModuleState();
    const TempSimFolder folder;
    LoadSettings();
    EXPECT_EQ(SettingsLoaded, 1);
    EXPECT_EQ(settings.WptChgDist, 3.0);
    ResetModuleState();
    SimFolder = folder.root().string();
    folder.Write("AVQ/Avq.CFG",
                 "WptChgDist=4.5\r\nVnavSetSpd=2\nWptProcChgDist=2.75\nTcasVertRange=2700");
    folder.Write("AVQ/aircraft/Demo Jet.cfg",
                 ";climb\r\nClimbIas=250\r\nwptchgdist=2.2\r\nVnavSetSpd=0\r\nWeightUnit=kgs\r\n"
                 "FlightPlansFolder=\\elsewhere\\\r\nLnavSetEnRouteFreqs=1\r\nLnav1xAtTod=1\r\n");
    LoadSettings();
    EXPECT_EQ(settings.WptChgDist, 4.5);
    AircraftName = "demo jet";
    LoadAircraftFile();
    EXPECT_EQ(settings.WptChgDist, 2.2);
    EXPECT_EQ(settings.WptProcChgDist, 2.75);
    EXPECT_EQ(settings.TcasVertRange, 27);
    EXPECT_EQ(settings.VnavSetSpd, 2);
    EXPECT_EQ(settings.WeightUnit, "KGS");
    EXPECT_EQ(settings.LnavSetEnRouteFreqs, 1);
    EXPECT_EQ(settings.FlightPlansFolder, "");
    EXPECT_EQ(settings.Lnav1xAtTod, 0);
    ResetModuleState();
}

TEST(SimVersion, NeedsThreeEntriesOfTheLaterGeneration) {
    const struct {
        std::vector<const char*> entries;
        std::int32_t version;
    } cases[] = {{{}, 9},
                 {{"FSX.EXE", "SimObjects/x"}, 9},
                 {{"fs9.exe", "SimObjects/x", "Missions/x"}, 9},
                 {{"FSX.EXE", "SimObjects/x", "MISSIONS/x"}, 10},
                 {{"Ace.exe", "fsx.exe", "missions/x"}, 10},
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
    SimFolder = "/nonexistent folder";
    SimVersion = 10;
    DetectSimVersion();
    EXPECT_EQ(SimVersion, 10);
    ResetModuleState();
}

}  // namespace
}  // namespace avq1
