// The module's records as the panel system reads them, and its life as the panel system drives it:
// every gauge placed from outside, through copies of its header and elements.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>

#include "base/module_state.h"
#include "base/sim_folder.h"
#include "cdu_gns/mcu.h"
#include "displays/nd/nd_panel.h"
#include "flightlog/flight_log.h"
#include "flightplan/plan_files.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "host/lifecycle.h"
#include "host/update_frame.h"
#include "navdb/nav_database.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "support/fake_keyboard.h"
#include "support/leak_suppressions.h"
#include "support/placement.h"
#include "support/temp_sim_folder.h"
#include "support/test_flight.h"

namespace avq1 {
namespace {

using test::FakeSimulator;
using test::Placement;

class Module : public ::testing::Test {
  protected:
    void SetUp() override {
        ResetModuleState();
        SimFolder = folder.root().string();
        simulator.variables[773] = 1;  // avionics on
    }
    FakeSimulator& simulator = FakeSimulator::Install();
    test::TempSimFolder folder;
};

TEST_F(Module, SurvivesEveryEventOfEveryGaugeInAnyOrder) {
    std::mt19937 random(7);
    std::vector<std::unique_ptr<Placement>> placements;
    for (int i = 0; i < kGaugeCount; ++i) {
        for (const char* parameter : {static_cast<const char*>(nullptr), "VC", "WN"}) {
            const bool withSurface = random() % 3 != 0;
            const char* name = Linkage.gauges[i]->name;
            placements.push_back(std::make_unique<Placement>(name, parameter, withSurface ? 64 : 0,
                                                             withSurface ? 48 : 0));
        }
    }
    for (int round = 0; round < 20000; ++round) {
        Placement& gauge = *placements[random() % placements.size()];
        gauge.Send(static_cast<std::int32_t>(random() % 20) - 1);
        if (random() % 4 == 0) {
            gauge.Click(static_cast<int>(random() % 600), static_cast<int>(random() % 640));
        }
        simulator.NextTick();
        simulator.windows[random() % 2 == 0 ? 0 : 4000 + random() % 14] = random() % 2 == 0;
    }
}

TEST_F(Module, WorksOutTheDrawModeFromTheParameterAndTheWindowsShown) {
    using enum DisplayDrawMode;
    const struct {
        DisplayDrawMode mode;
        std::string_view gauge;
        const char* parameter;
        std::vector<std::uint32_t> windowsShown;
    } cases[] = {{Normal, "EFS50_EADI", nullptr, {}},
                 {Normal, "EFS50_EADI", "VC", {}},
                 {Normal, "EFS50_EADI", "WN", {0, 4005}},
                 {Normal, "EFS50_EHSI_NB", nullptr, {4008}},
                 {Normal, "MCU", nullptr, {4001}},
                 {Skip, "EFS50_EADI", "VC", {0}},
                 {Skip, "MCU", "VC", {0}},
                 {ClearOnly, "EFS50_EADI", "B737", {0, 4005}},
                 {ClearOnly, "EFS50_EADI", "VC2", {4005}},
                 {ClearOnly, "P1000_MFD", nullptr, {4002}},
                 {SecondCockpit, "EFS50_EHSI", "VC2", {4008}},
                 {SecondCockpit, "HW_B737_ND", "VC2", {4011}}};
    for (const auto& c : cases) {
        simulator.windows.clear();
        for (const std::uint32_t ident : c.windowsShown) {
            simulator.windows[ident] = true;
        }
        const auto row = std::ranges::find(GaugeTable(), c.gauge, &GaugeRow::name);
        EXPECT_EQ(DrawModeFor(*row->behaviour, c.parameter), c.mode) << c.gauge << &c - cases;
    }
}

TEST_F(Module, DrawingClearsTheSurfaceAndAsksForItToBeCopied) {
    Placement panel("EFS50_EADI", "B737", 280, 262);
    Placement popup("EFS50_EADI", "WN", 280, 262);
    Placement cockpit("EFS50_EHSI", "VC", 280, 262);
    panel.Send(PanelEvent::ConnectToWindow);
    // With a display's pop-up open, its instance in the panel clears its glass.
    simulator.windows[4005] = true;
    panel.Element(1)->header.imageFlags |= image_flag::kOnScreen;
    panel.Send(PanelEvent::Draw);
    EXPECT_EQ(panel.Element(1)->header.imageFlags & image_flag::kOnScreen, 0u);
    EXPECT_EQ(std::ranges::count(panel.pixels(), 0u), 280 * 262);
    popup.Send(PanelEvent::Draw);
    EXPECT_LT(std::ranges::count(popup.pixels(), 0u), 280 * 262);
    simulator.windows[0] = true;
    cockpit.Send(PanelEvent::Draw);
    EXPECT_EQ(std::ranges::count(cockpit.pixels(), 0xFF123456u), 280 * 262);
}

TEST_F(Module, ABlankedMultifunctionDisplayKeepsTheHostsPicture) {
    Placement gauge("P1000_MFD", nullptr, 272, 314);
    gauge.Send(PanelEvent::ConnectToWindow);
    const auto copied = [&](std::int32_t counter, double power, bool popup) {
        simulator.variables[773] = power;
        simulator.windows[4002] = popup;
        gauge.Element(1)->header.imageFlags |= image_flag::kOnScreen;
        simulator.NextTick();
        UpdateFrame();
        guidance.blinkCounter = counter;
        gauge.Send(PanelEvent::Draw);
        return (gauge.Element(1)->header.imageFlags & image_flag::kOnScreen) == 0;
    };
    EXPECT_TRUE(copied(2, 1, false));
    EXPECT_FALSE(copied(1, 1, false));
    EXPECT_TRUE(copied(1, 0, false)) << "dark without power";
    EXPECT_TRUE(copied(1, 1, true)) << "shown in its own window";
}

TEST_F(Module, EveryScreenIsOpaqueWithPowerAndTransparentWithout) {
    const auto opacities = [](Placement& gauge) {
        std::set<std::uint32_t> found;
        for (const std::uint32_t pixel : gauge.pixels()) {
            found.insert(pixel >> 24);
        }
        return found;
    };
    int screens = 0;
    for (const GaugeRow& row : GaugeTable()) {
        if (row.surface.resource == 0) {
            continue;
        }
        ++screens;
        for (const double scale : {1.0, 1.37}) {
            Placement gauge(row.name, nullptr, static_cast<int>(row.surface.box.width * scale),
                            static_cast<int>(row.surface.box.height * scale));
            gauge.Send(PanelEvent::ConnectToWindow);
            for (const double power : {1.0, 0.0, 1.0}) {
                simulator.variables[773] = power;
                simulator.NextTick();
                guidance.framesSinceStart = 10;
                guidance.blinkCounter = 10;
                gauge.Send(PanelEvent::Draw);
                EXPECT_EQ(opacities(gauge), std::set<std::uint32_t>{power == 0 ? 0u : 0xFFu})
                    << row.name << " x " << scale;
            }
        }
    }
    EXPECT_EQ(screens, 15);
}

TEST_F(Module, TheFirstUsableParameterNamesTheAircraft) {
    const auto place = [](const char* gauge, const char* parameter) {
        Placement(gauge, parameter).Send(PanelEvent::Initialise);
        return AircraftName;
    };
    for (const GaugeHeader* gauge : Linkage.gauges) {
        if (gauge != nullptr && gauge->callback != nullptr) {
            for (const char* word : {"VC", "VC2", "WN", "", static_cast<const char*>(nullptr)}) {
                EXPECT_EQ(place(gauge->name, word), "") << gauge->name;
            }
        }
    }
    EXPECT_EQ(place("SERVER", "A320"), "") << "loads nothing";
    EXPECT_EQ(place("P1000_MFD_CNTR", "B737"), "B737");
    EXPECT_EQ(place("MCU", "A320"), "B737") << "for as long as the module is loaded";
}

TEST_F(Module, LoadsTheSharedCoreOnceAndRetriesOnlyAMissingAirportFile) {
    folder.Write("avq/avq.cfg", "WptChgDist=4.5\n");
    Placement lnav("LNAV", nullptr);
    lnav.Send(PanelEvent::Initialise);
    EXPECT_DOUBLE_EQ(settings.WptChgDist, 4.5);
    EXPECT_EQ(FlightLogStarted, 1);
    EXPECT_TRUE(storedPlans.plans.empty());  // a mode button loads no navigation

    Placement ehsi("EFS50_EHSI", nullptr);
    ehsi.Send(PanelEvent::Initialise);
    EXPECT_EQ(navDatabase.airports.count, 0);
    EXPECT_EQ(storedPlans.plans.size(), 1u);

    folder.Write("avq/Navdata/avq_apts.txt", "KAAA ALPHA 10 40.0 -75.0\n");
    folder.Write("avq/avq.cfg", "WptChgDist=9\n");
    ehsi.Send(PanelEvent::Initialise);
    EXPECT_EQ(navDatabase.airports.count, 1);
    EXPECT_DOUBLE_EQ(settings.WptChgDist, 4.5);  // read once
}

// Typing keeps the simulator's letters from it: whatever happens to the unit, they come back.
TEST_F(Module, TheKeyboardComesBackWhenTheCompactUnitCannotBeTypedInto) {
    Placement unit("MCU", nullptr, 420, 159);
    Placement cockpit("MCU", "VC", 420, 159);
    Placement display("EFS50_EHSI", nullptr, 64, 48);
    const auto fly = [&](int ticks, std::initializer_list<Placement*> drawn) {
        for (int i = 0; i < ticks; ++i) {
            simulator.NextTick();
            for (Placement* gauge : drawn) {
                gauge->Send(PanelEvent::Draw);
            }
        }
    };
    struct Case {
        const char* what;
        bool kept;
        std::function<void()> happens;
    };
    const Case cases[] = {
        {"drawn on", true,
         [&] {
             fly(100, {&display, &unit});
         }},
        {"another gauge killed", true, [&] { display.Send(PanelEvent::Kill); }},
        {"another gauge disconnected", true,
         [&] { display.Send(PanelEvent::DisconnectFromWindow); }},
        {"hardly missed", true, [&] { fly(36, {&display}); }},
        {"not drawn", false, [&] { fly(37, {&display}); }},
        {"drawn where it shows nothing", false,
         [&] {
             fly(37, {&display, &cockpit});
         }},
        {"killed", false, [&] { unit.Send(PanelEvent::Kill); }},
        {"disconnected", false, [&] { unit.Send(PanelEvent::DisconnectFromWindow); }},
        {"no power", false,
         [&] {
             simulator.variables[773] = 0;
             fly(1, {&unit});
         }},
        {"unloaded", false, [] { Linkage.deinit(); }},
    };
    simulator.windows[0] = true;
    for (const Case& row : cases) {
        PlatformServices services;
        test::FakeKeyboard keyboard(services);
        simulator.variables[773] = 1;
        mcu = McuState{};
        fly(1, {&display, &unit});
        unit.Click(45, 265);   // DIRTO
        unit.Click(220, 330);  // EDIT
        keyboard.virtualKeys = {'S'};
        ASSERT_NE(keyboard.hook, nullptr) << row.what;
        EXPECT_EQ(keyboard.hook(0), 1) << row.what;
        row.happens();
        EXPECT_EQ(keyboard.hook != nullptr, row.kept) << row.what;
        EXPECT_EQ(mcu.editing, row.kept ? 1 : 0) << row.what;
        const int reads = keyboard.reads;
        fly(1, {&unit});
        EXPECT_EQ(keyboard.reads > reads, row.kept) << row.what;
        Linkage.deinit();
        PlatformTable.services = nullptr;
    }
}

TEST_F(Module, ServerPublishesTheGuidanceVariables) {
    Placement server("SERVER", nullptr);
    server.Send(PanelEvent::Install);
    EXPECT_THAT(simulator.registrationOrder,
                ::testing::ElementsAre("avq_act_wpt_id", "avq_act_wpt_pos", "avq_act_wpt_dist",
                                       "avq_fpln_wpt_cnt", "avq_xtk_err_dir", "avq_xtk_err_dist",
                                       "avq_act_wpt_trk", "avq_act_wpt_brg", "avq_lnav_mode",
                                       "avq_vnav_mode", "avq_active"));
    server.Send(PanelEvent::Kill);
    EXPECT_TRUE(simulator.named.empty());
}

bool IconShown(Placement& gauge, int depth) {
    return (gauge.Element(depth)->header.imageFlags & image_flag::kHidden) == 0;
}

TEST_F(Module, ModeButtonsToggleTheirModesAndLights) {
    Placement lnav("LNAV", nullptr);
    Placement vnav("VNAV", nullptr);
    Placement mcu("MCU", nullptr);
    const auto pressBoth = [&](bool lit) {
        EXPECT_TRUE(lnav.Click(20, 20));
        EXPECT_TRUE(vnav.Click(20, 20));
        for (Placement* gauge : {&lnav, &vnav, &mcu}) {
            gauge->Send(PanelEvent::Update);
        }
        EXPECT_EQ(IconShown(lnav, 1), lit);
        EXPECT_EQ(IconShown(vnav, 1), lit);
        EXPECT_EQ(IconShown(mcu, 2), lit);
        EXPECT_FALSE(IconShown(mcu, 3));
    };
    pressBoth(false);  // nothing to fly
    EXPECT_EQ(guidance.blinkCounter, kRestartBlink);
    test::SetActivePlan({{"KAAA", 40, -75, "APT"}, {"BBB", 41, -75}, {"CCC", 42, -75}});
    SetActiveWaypoint(1);
    settings.VnavSetSpd = 2;
    pressBoth(true);
    EXPECT_EQ(settings.VnavSetSpd, 1);
    guidance.trackLeg = 1;
    pressBoth(false);
    EXPECT_EQ(guidance.trackLeg, 0);
}

TEST_F(Module, SelectorKnobsFollowTheNavigationDisplaysModeAndRange) {
    Placement panel("HW_B737_EFIS_CNTR", nullptr);
    const auto shown = [&] {
        std::vector<int> depths;
        panel.Send(PanelEvent::Update);
        for (int depth = 1; depth <= 11; ++depth) {
            if (IconShown(panel, depth)) {
                depths.push_back(depth);
            }
        }
        return depths;
    };
    EXPECT_EQ(shown(), (std::vector<int>{1, 7}));
    nd.ndMode = 6;
    nd.ndRange = 320;
    EXPECT_EQ(shown(), (std::vector<int>{6, 11}));
    nd.ndMode = 7;    // no picture for this position
    nd.ndRange = 20;  // nor for this range
    EXPECT_EQ(shown(), (std::vector<int>{}));
}

}  // namespace
}  // namespace avq1
