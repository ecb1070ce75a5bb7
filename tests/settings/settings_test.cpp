#include "settings/settings.h"

#include <gtest/gtest.h>

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
