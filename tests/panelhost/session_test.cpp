#include "panelhost/session/session.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdio>

#include "panelhost/base/text.h"
#include "panelhost/module/module_loader.h"
#include "panelhost/script/script.h"
#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;

constexpr const char* kTwoWindows =
    "[Window Titles]\nWindow00=Main\n"
    "[Window00]\nsize_mm=200,100\nident=0\n"
    "gauge00=probe!SERVER, 0,0\n"
    "gauge01=probe!PROBE, 10,20,,,first\n"
    "gauge02=probe!PROBE, 100,20,80,60,second\n"
    "[Window01]\nsize_mm=40,30\nident=4001\nvisible=0\n"
    "gauge00=probe!PROBE, 0,0\n";

std::uint32_t PixelAt(Session& session, int window, int x, int y) {
    const WindowPicture picture = session.Picture(window);
    return picture.pixels[y * picture.width + x];
}

std::vector<const void*> Gauges(const ProbeLog& log) {
    std::vector<const void*> gauges;
    for (int i = 0; i < log.count; ++i) {
        if (std::find(gauges.begin(), gauges.end(), log.records[i].gauge) == gauges.end()) {
            gauges.push_back(log.records[i].gauge);
        }
    }
    return gauges;
}

class SessionTest : public HostTest {
  protected:
    // How often the gauge was sent each of these events.
    static std::vector<long> Counts(const void* gauge, std::initializer_list<int> events) {
        const std::vector<int> sent = EventsOf(gauge);
        std::vector<long> counts;
        for (const int event : events) {
            counts.push_back(std::ranges::count(sent, event));
        }
        return counts;
    }
};

TEST_F(SessionTest, SendsEventsInTheSimulatorsOrderAndRates) {
    ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
    ProbeLog* const log = Log();
    EXPECT_EQ(log->initCalls, 1);
    const std::vector<const void*> gauges = Gauges(*log);
    ASSERT_EQ(gauges.size(), 4U);  // one header each, although three share a gauge
    for (const void* gauge : gauges) {
        EXPECT_THAT(EventsOf(gauge), ElementsAre(2, 3, 4, 5, 14));
    }
    EXPECT_NE(log->records[0].extra, 0U) << "the module's handle";
    EXPECT_NE(log->records[4].extra, 0U) << "the window";

    log->count = 0;
    for (int frame = 0; frame < 60; ++frame) {
        session_.Step(1.0 / 60);
    }
    EXPECT_THAT(Counts(gauges[1], {6, 7, 10, 11}), ElementsAre(18, 18, 60, 60));
    EXPECT_THAT(Counts(gauges[3], {6, 10}), ElementsAre(18, 0)) << "its window is closed";
    EXPECT_EQ(session_.NumberedVariable(1), 18);

    log->count = 0;
    void* const keep = dlopen(ProbePath().c_str(), RTLD_NOW);
    session_.Close();
    EXPECT_THAT(EventsOf(gauges[3]), ElementsAre(15, 12, 13));
    EXPECT_EQ(log->deinitCalls, 1);
    dlclose(keep);
}

TEST_F(SessionTest, ComposesBitmapsSurfacesAndIconsAtScale) {
    options_.surfaceScale = 2;
    ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
    session_.Step(0.01);
    EXPECT_EQ(session_.Windows()[0].width, 400);
    EXPECT_EQ(session_.Windows()[0].shownWidth, 200);
    constexpr std::uint32_t kPanel = 0xFF0A14C8;
    struct Row {
        int x, y;  // gauge pixels of the unscaled first placement at 10,20
        std::uint32_t argb;
        const char* what;
    };
    const auto check = [this](const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            EXPECT_EQ(PixelAt(session_, 0, (10 + row.x) * 2, (20 + row.y) * 2), row.argb)
                << row.what;
        }
    };
    check({{0, 0, kPanel, "background"},
           {kProbeSurfaceX, kProbeSurfaceY, 0xFF010101, "surface"},
           {kProbeSurfaceX + kProbeSurfaceWidth - 1, kProbeSurfaceY, 0xFF010101, "surface's end"},
           {kProbeSurfaceX + kProbeSurfaceWidth, kProbeSurfaceY, kPanel, "beside the surface"},
           {2, 26, kPanel, "hidden icon"}});
    const std::uint64_t before = session_.Windows()[0].revision;
    session_.Step(0.01, false);
    EXPECT_EQ(session_.Windows()[0].revision, before) << "nothing changed";
    ASSERT_TRUE(session_.Click(0, (10 + 3) * 2, (20 + 4) * 2));
    session_.Step(0.01, false);
    EXPECT_GT(session_.Windows()[0].revision, before) << "the icon appeared";
    check({{2, 26, 0xFF00FF00, "shown icon"},
           {2, 24, kPanel, "black of a transparent icon"},
           {94, 52, kPanel, "the other placement's icon stays hidden"}});
    const auto cornerOfTheSecond = [this] {  // twice its own size
        return PixelAt(session_, 0, (100 + (kProbeSurfaceX + kProbeSurfaceWidth) * 2) * 2 - 1,
                       (20 + (kProbeSurfaceY + kProbeSurfaceHeight) * 2) * 2 - 1);
    };
    const std::uint32_t level = cornerOfTheSecond();
    EXPECT_LT(level, 0xFF050505);
    session_.Step(0.01);
    EXPECT_EQ(cornerOfTheSecond(), level + 0x00010101) << "drawn anew, fitted anew";
}

TEST_F(SessionTest, RoutesClicksInTheGaugesOwnPixels) {
    ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
    // The second placement is twice its own size: key 2,3..8,9 lies at 104,26..116,38.
    ASSERT_TRUE(session_.MouseDown(0, 109, 33));
    for (int tick = 0; tick < 13; ++tick) {
        session_.Step(1.0 / 18, false);
    }
    session_.MouseUp();
    namespace flag = avq1::mouse_flag;
    const auto click = [gauge = Gauges(*Log())[2]](std::uint32_t flags) {
        return AllOf(Field(&ProbeRecord::flags, flags), Field(&ProbeRecord::gauge, gauge),
                     Field(&ProbeRecord::x, 2), Field(&ProbeRecord::y, 3));
    };
    EXPECT_THAT(Clicks(), ElementsAre(click(flag::kLeftSingle), click(flag::kDownRepeat),
                                      click(flag::kDownRepeat), click(flag::kDownRepeat),
                                      click(flag::kLeftRelease)));
    EXPECT_FALSE(session_.Click(0, 5, 5)) << "no gauge there";
    EXPECT_FALSE(session_.Click(1, 4, 5)) << "a closed window takes no clicks";
    EXPECT_FALSE(session_.Wheel(0, 109, 33, false)) << "only wheel up is asked for";
    EXPECT_TRUE(session_.Wheel(0, 109, 33, true));
    EXPECT_EQ(Clicks().back().flags, flag::kWheelUp);
}

TEST_F(SessionTest, SendsARectanglesKeyEventAndOpensWindows) {
    ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
    const double bug = session_.Status().autopilot.headingBugMag;
    ASSERT_TRUE(session_.Click(0, 10 + 23, 20 + 23));
    EXPECT_EQ(session_.Status().autopilot.headingBugMag, std::fmod(bug, 360) + 1);
    EXPECT_EQ(session_.ModuleEventCount(65879), 1U);
    EXPECT_EQ(session_.Status().lastEvents.back().name, "HEADING_BUG_INC");
    EXPECT_FALSE(session_.Windows()[1].visible);
    ASSERT_TRUE(session_.Click(0, 10 + 3, 20 + 4, MouseButton::Right));
    EXPECT_TRUE(session_.Windows()[1].visible);
}

TEST_F(SessionTest, ALampIsNamedAfterTheSmallestKeyItLiesOn) {
    ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
    const auto lamps = [this] {
        std::vector<std::string> names;
        for (const Lamp& lamp : session_.Lamps(0)) {
            names.push_back(lamp.name + (lamp.on ? " on" : " off"));
        }
        return names;
    };
    EXPECT_THAT(lamps(), ElementsAre("HOLD off", "HOLD 2 off"));
    ASSERT_TRUE(session_.Click(0, 109, 33));
    EXPECT_THAT(lamps(), ElementsAre("HOLD off", "HOLD 2 on"));
    EXPECT_TRUE(session_.Lamps(7).empty());
}

TEST_F(SessionTest, NamesWhatThePanelFileAsksInVain) {
    ASSERT_TRUE(
        Open("[Window00]\nsize_mm=100,100\ngauge00=probe!NOSUCH, 0,0\n"
             "gauge01=other!PROBE, 0,0\ngauge02=PROBE.GAU!probe, 0,0\nfile=absent.bmp\n"));
    const auto& warnings = session_.warnings();
    EXPECT_THAT(warnings, testing::Contains(HasSubstr("no gauge \"NOSUCH\"")));
    EXPECT_THAT(warnings, testing::Contains(HasSubstr("module \"other\" is not loaded")));
    EXPECT_THAT(warnings, testing::Contains(HasSubstr("\"absent.bmp\"")));
    EXPECT_EQ(session_.Gauges(0).size(), 1U) << "the rest is shown";
}

struct Said {
    std::string text;
    int status = 0;
};

// What the program says on both its outputs, given an empty script.
Said RunProgram(const std::string& simFolder, const std::string& module) {
    const std::string command = AVQ1_BINARY_DIR "/avqpanel --sim " + simFolder + " --module " +
                                module + " --script - 2>&1 </dev/null";
    std::FILE* const program = popen(command.c_str(), "r");
    Said said;
    for (int c = std::fgetc(program); c != EOF; c = std::fgetc(program)) {
        said.text += static_cast<char>(c);
    }
    said.status = WEXITSTATUS(pclose(program));
    return said;
}

TEST_F(SessionTest, NamesAMissingNavdataFolderOnTheConsole) {
    WriteFile("panel.cfg", "[Window00]\nsize_mm=100,100\ngauge00=probe!PROBE, 0,0\n");
    const Said with = RunProgram(folder_.string(), ProbePath());
    EXPECT_THAT((std::pair{with.text, with.status}), testing::Pair("", 0)) << "any case will do";
    std::filesystem::remove_all(folder_ / "avq");
    const Said without = RunProgram(folder_.string(), ProbePath());
    EXPECT_EQ(without.status, 0);
    EXPECT_EQ(std::ranges::count(without.text, '\n'), 1) << without.text;
    EXPECT_THAT(without.text, HasSubstr("avqpanel: no navigation data"));
}

TEST_F(SessionTest, RefusesWhatIsNoModuleWithOneLine) {
    WriteFile("text.gau", "this is a text\n");
    WriteFile("cut.gau", std::string("\x7F"
                                     "ELF\x02\x01\x01",
                                     7));
    WriteFile("panel.cfg", "[Window00]\nsize_mm=10,10\n");
    const std::string fake = AVQ1_BINARY_DIR "/fake/";
    const std::string whole = ReadWholeFile(ProbePath(), 100 << 20).value();
    WriteFile("half.gau", whole.substr(0, whole.size() / 2));
    WriteFile("almost.gau", whole.substr(0, whole.size() - 1));
    const std::pair<std::string, const char*> rows[] = {
        {(folder_ / "none.gau").string(), "no such file"},
        {(folder_ / "text.gau").string(), "not a 64-bit Linux shared object"},
        {(folder_ / "cut.gau").string(), "cut short"},
        {(folder_ / "half.gau").string(), "cut short"},
        {(folder_ / "almost.gau").string(), "cut short"},
        {fake + "empty.gau", "no Linkage"},
        {fake + "stranger.gau", "version 0x700"},
        {fake + "newer.gau", "version 900, not 800"}};
    for (const auto& [path, message] : rows) {
        SCOPED_TRACE(path);
        LoadedModule module;
        std::string error;
        EXPECT_FALSE(LoadModule(path, module, error));
        EXPECT_THAT(error, testing::StartsWith("cannot load module \"" + path + "\": "));
        EXPECT_THAT(error, HasSubstr(message));
    }
    const Said said = RunProgram(folder_.string(), rows[3].first);
    EXPECT_EQ(said.status, 1);
    EXPECT_EQ(std::ranges::count(said.text, '\n'), 1) << said.text;
    EXPECT_THAT(said.text, HasSubstr("half.gau"));
}

TEST_F(SessionTest, TellsItsWeightsAndTheGroundFarFromAnyAirport) {
    ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
    const SessionStatus status = session_.Status();
    EXPECT_EQ(status.payloadLb, 27080);
    EXPECT_EQ(status.zeroFuelWeightLb, 91300 + 27080);
    session_.SetAltitude(9000);
    session_.SetPosition(0, -150);
    EXPECT_EQ(session_.Status().radioAltitudeFt, session_.Status().altitudeFt);
    session_.SetPosition(95, 190);
    EXPECT_EQ(session_.Status().latitude, 89.9);
    EXPECT_EQ(session_.Status().longitude, -170);
}

TEST_F(SessionTest, StartsAtTheSpeedAskedForWithinItsLimits) {
    for (const auto& [asked, flown] : {std::pair{90.0, 115.0}, {250.0, 250.0}, {500.0, 340.0}}) {
        options_.start.indicatedAirspeedKt = asked;
        options_.start.windDirectionTrue = 440;
        ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
        EXPECT_EQ(session_.Status().windDirectionTrue, 80);
        EXPECT_EQ(session_.Status().indicatedAirspeedKt, flown);
        session_.Close();
    }
}

TEST_F(SessionTest, ASeedGivesItsOwnTurbulenceAgain) {
    std::vector<double> banks;
    for (const std::uint32_t seed : {1U, 1U, 2U}) {
        options_.seed = seed;
        ASSERT_TRUE(Open(kTwoWindows)) << session_.error();
        const Script script = ParseScript("set turbulence 8\nevent HEADING_BUG_SET 300\nrun 120\n");
        EXPECT_EQ(RunScript(session_, script, folder_.string(), stdout).error, "");
        banks.push_back(session_.Status().bankRightDeg);
        session_.Close();
    }
    EXPECT_EQ(banks[0], banks[1]);
    EXPECT_NE(banks[0], banks[2]);
}

}  // namespace
}  // namespace panelhost
