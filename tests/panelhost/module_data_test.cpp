// The real module and the panel host's data service, through the same records as in the simulator:
// a pilot's clicks on the compact unit end in the host's aircraft.
#include <cmath>

#include "panelhost/base/text.h"
#include "support/leak_suppressions.h"
#include "tests/panelhost/host_fixture.h"

namespace panelhost {
namespace {

class ModuleData : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        for (const char* name : {"avq/FlightPlans", "avq/Navdata"}) {
            std::filesystem::create_directories(folder_ / name);
        }
        WriteFile("panel.cfg",
                  "[Window Titles]\n[Window00]\nsize_mm=600,400\n"
                  "gauge00=avq1!SERVER,0,0\ngauge01=avq1!MCU,0,0\n");
        WriteFile("avq/avq.cfg", "LoadFuelonFlightPlanLoad=1\nSetDestLoadTowerViewDist=25\n");
        WriteFile(
            "avq/FlightPlans/A.RTE",
            "CruiseAlt=9000\nTripFuel=15000\nResvFuel=5000\n[FlightPlan]\nKJFK 40.6 -73.8 APT ---\n"
            "KBOS 42.36 -71.00 APT ---\n");
        WriteFile("avq/Navdata/avq_apts.txt", "KBOS Logan 20 42.36 -71.00\n");
        TakeRealModule();
    }
};

constexpr const char* kLoadPlan =
    "click MCU FPLN\nrun 1s\nexpect texts contains A.RTE\nclick MCU ENTER\nrun 1s\n"
    "expect var avq_fpln_wpt_cnt = 1\n";

TEST_F(ModuleData, APlanLoadedOnTheGroundFillsTheTanks) {
    options_.start.onGround = true;
    ASSERT_TRUE(session_.Open(options_)) << session_.error();
    // The mains (#291, #297) first, the rest of 20000 lb into the centre tank.
    EXPECT_EQ(Run(std::string("set fuel 3000\nset paused 1\n") + kLoadPlan +
                  "expect var #291 = 8388608\nexpect var #297 = 8388608\n"
                  "expect var fuel > 19999\nexpect var fuel <= 20000\n"
                  "set paused 0\nsituation en-route\nrun 1s\nset fuel 3000\n" +
                  kLoadPlan + "expect var fuel > 2900\nexpect var fuel < 3000\n"),
              "");
}

// What the page draws of a flight: the log's file, and the profile the module tells.
TEST_F(ModuleData, APlanStartedOnTheGroundHasALogAndAProfile) {
    options_.start.onGround = true;
    ASSERT_TRUE(session_.Open(options_)) << session_.error();
    EXPECT_EQ(session_.FlightLog(), "");
    EXPECT_EQ(session_.Profile().phase, -1);
    EXPECT_NE(Run("log\n").find("there is no flight log"), std::string::npos);
    EXPECT_NE(Run("profile\n").find("no vertical profile"), std::string::npos);
    EXPECT_EQ(Run("set position 40.6 -73.8\n" + std::string(kLoadPlan) + "run 2s\nlog\nprofile\n"),
              "");
    EXPECT_TRUE(session_.FlightLog().starts_with("FlightPlan=KJFK-KBOS\n"));
    EXPECT_NE(session_.FlightLog().find("00:00:00 InitLoad "), std::string::npos);
    const VerticalProfile& profile = session_.Profile();
    EXPECT_EQ(profile.phase, 0);
    EXPECT_FALSE(profile.engaged);
    EXPECT_EQ(profile.cruiseAltitudeFt, 9000);
    ASSERT_EQ(profile.points.size(), 3U);
    EXPECT_EQ(profile.points[0].name + profile.points[1].name + profile.points[2].name,
              "T/CT/DKBOS");
    EXPECT_EQ(profile.points[1].altitudeFt, 9000);
    EXPECT_GT(profile.points[1].distanceNm, profile.points[0].distanceNm);
}

TEST_F(ModuleData, TheTowerViewMovesToTheDestinationOnceItIsNear) {
    WriteFile("avq/Navdata/apt_additional_info.txt",
              "[KBOS]\nTowerViewLat=42.3625\nTowerViewLon=-71.015\nTowerViewAlt=285\n");
    ASSERT_TRUE(session_.Open(options_)) << session_.error();
    EXPECT_EQ(Run(std::string("set position 42.36 -72.00\n") + kLoadPlan +
                  "expect var tower-lat = 0\nexpect var tower-lon = 0\n"
                  "set position 42.36 -71.50\nrun 1s\n"
                  "expect var tower-lat > 42.3624\nexpect var tower-lat < 42.3626\n"
                  "expect var tower-lon < -71.0149\nexpect var tower-lon > -71.0151\n"
                  "expect var tower-altitude = 285\n"),
              "");
}

TEST_F(ModuleData, TrafficOfAnOutsideModuleShowsOnTheDisplays) {
    const char* const kPanel =
        "[Window Titles]\n[Window00]\nsize_mm=900,500\n"
        "gauge00=avq1!EFS50_TCAS,0,0\ngauge01=avq1!P1000_MFD,400,0\n";
    WriteFile("traffic.txt", "[head-on] Head-on\nA meets 60 180 0 -500 0\nnonsense\n");
    for (const bool module : {true, false}) {
        WriteFile("panel.cfg", kPanel);
        options_.trafficModule = module;
        ASSERT_TRUE(session_.Open(options_)) << session_.error();
        EXPECT_EQ(session_.warnings(),
                  (std::vector<std::string>{"traffic.txt line 3 cannot be read"}));
        EXPECT_EQ(Run("situation head-on\nclick P1000_MFD 4\nrun 2s\n"
                      "expect texts lacks -05\nset rate 10\nrun 5s\n"),
                  "");
        EXPECT_EQ(Run(module ? "expect texts contains -05\nexpect texts lacks OFF\n"
                               "traffic off\nrun 2s\nexpect texts lacks -05\n"
                               "traffic HEAD-ON\nrun 5.6s\nexpect texts contains -05\n"
                               "situation crossing\nrun 2s\nexpect texts lacks -05\n"
                             : "expect texts contains \"TCAS OFF\"\nexpect texts lacks -05\n"),
                  "");
        EXPECT_NE(Run("traffic crossing").find("no scene \"crossing\""), std::string::npos);
        session_.Close();
    }
}

// Who looks at which frame; whether a picture is asked for besides; whether displays on screens of
// their own are opened, looked at and left, one after the other; whether the panel's windows are
// open.
struct Watchers {
    const char* name;
    bool (*draws)(int frame);
    bool (*asks)(int frame);
    bool opensViews;
    bool closesWindows;
};

bool Never(int) {
    return false;
}
bool EverySecond(int frame) {
    return frame % 2 == 0;
}
bool ComingAndGoing(int frame) {
    return frame / 40 % 3 != 1 && frame % 3 < 2;
}
bool NowAndThen(int frame) {
    return frame % 7 == 0;
}

constexpr Watchers kWatchers[] = {
    {"nobody", Never, Never, false, false},
    {"one", EverySecond, Never, false, false},
    {"five, with screens of their own", ComingAndGoing, NowAndThen, true, false},
    {"nobody, every window closed", Never, Never, false, true},
    {"screens of their own, every window closed", ComingAndGoing, NowAndThen, true, true},
};

constexpr int kFramesPerRate = 500;
constexpr int kFramesPerView = 20;

// Every display of the list is shown once in a flight; the one before is left.
int NextView(Session& session, int frame, int view) {
    const int display = frame / kFramesPerView;
    const bool exists = display < static_cast<int>(session.Displays().size());
    if (frame % kFramesPerView != 0 || !exists) {
        return view;
    }
    session.Release(view);
    const int next = session.View(display, 1 + display % 2);
    session.SetWatched(next, true);
    return next;
}

std::string Flown(Session& session, const Watchers& watchers) {
    constexpr double kStepS = 0.04;
    std::string trace;
    int frame = 0;
    int view = -1;
    for (const double rate : {1.0, 4.0, 32.0}) {
        session.SetSimulationRate(rate);
        for (int end = frame + kFramesPerRate; frame < end; ++frame) {
            view = watchers.opensViews ? NextView(session, frame, view) : view;
            session.Step(kStepS, watchers.draws(frame));
            if (watchers.asks(frame)) {
                session.Look(0);
                session.Look(view);
            }
            const SessionStatus status = session.Status();
            trace +=
                Format("%.17g %.17g %.17g %.17g %d %.17g\n", status.flightTimeS, status.latitude,
                       status.longitude, status.altitudeFt, status.autopilot.headingBugMag,
                       session.FindVariable("avq_xtk_err_dist")->number);
        }
    }
    return trace;
}

TEST_F(ModuleData, AFlightIsTheSameWhoeverWatches) {
    CopyDemo();
    std::vector<std::string> traces;
    for (const Watchers& watchers : kWatchers) {
        SCOPED_TRACE(watchers.name);
        ASSERT_TRUE(session_.Open(options_)) << session_.error();
        StartDemo();
        for (const WindowInfo& window : session_.Windows()) {
            session_.SetWindowVisible(window.ident, window.visible && !watchers.closesWindows);
        }
        traces.push_back(Flown(session_, watchers));
        EXPECT_EQ(session_.FindVariable("avq_lnav_mode")->number, 1);
        EXPECT_LT(std::fabs(session_.FindVariable("avq_xtk_err_dist")->number), 1);
        EXPECT_TRUE(traces.back() == traces.front());
        session_.Close();
    }
}

}  // namespace
}  // namespace panelhost
