// Drawing the displays against filling and stroking about a compass's primitives in bare Cairo, at
// nominal size and twice as large; and a frame of the whole panel.
#include <benchmark/benchmark.h>
#include <cairo.h>

#include <cmath>
#include <string>
#include <vector>

#include "base/module_state.h"
#include "bench/allocation_counter.h"
#include "displays/eadi/eadi.h"
#include "displays/ehsi/ehsi.h"
#include "displays/mfd/mfd.h"
#include "displays/nd/nd.h"
#include "displays/nd/nd_panel.h"
#include "displays/traffic/tcas.h"
#include "flightplan/flight_plan.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "host/update_frame.h"
#include "navdb/boundaries.h"
#include "navdb/nav_database.h"
#include "platform/canvas.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "tests/support/fake_simulator.h"
#include "tests/support/fake_traffic.h"
#include "tests/support/nav_points.h"

namespace avq1 {
namespace {

constexpr int kNominalWidth = 280;
constexpr int kNominalHeight = 262;
constexpr int kNdWidth = 247;
constexpr int kNdHeight = 294;

struct Picture {
    explicit Picture(int scale, int width = kNominalWidth, int height = kNominalHeight)
        : pixels(static_cast<std::size_t>(width) * height * scale * scale) {
        context.width = width * scale;
        context.height = height * scale;
        context.bytesPerRow = context.width * 4;
        context.pixels = pixels.data();
    }
    DrawTarget Target() { return {&context, context.width, context.height}; }

    std::vector<std::uint32_t> pixels;
    PixelDeviceContext context;
};

void SetUpFlight(test::FakeSimulator& simulator) {
    const double places[][2] = {{42.36, -71.0}, {42.5, -71.3}, {42.7, -71.9}, {42.8, -72.6},
                                {42.7, -73.8},  {42.7, -75.0}, {42.9, -76.4}, {42.9, -78.7}};
    std::int32_t index = 0;
    for (const auto& place : places) {
        PlanWaypoint entry;
        entry.ident = "FIX" + std::to_string(index++);
        entry.latitude = place[0];
        entry.longitude = place[1];
        activePlan.Append(std::move(entry));
    }
    simulator.variables[773] = 1;
    simulator.variables[81] = simulator.variables[86] = 290;
    simulator.variables[343] = 40;
    simulator.SetGroundSpeedKt(420);
    simulator.SetPosition(42.6, -71.6);
    RefreshAircraftState();
    SetActiveWaypoint(2);
    simulator.NextTick();
    UpdateFrame();
    ehsi.navSource = NavSource::FlightManagement;
    ehsi.ehsiRange = 40;
}

// Draws in a turn, when no number of a rose stands as it did.
void DrawInATurn(benchmark::State& state, void (*draw)(const DrawTarget&), Picture& picture) {
    const std::uintptr_t token = StartDrawingLibrary();
    draw(picture.Target());
    const long before = bench::AllocationCount();
    for (auto _ : state) {
        aircraft.headingMag = std::fmod(aircraft.headingMag + 0.05, 360.0);
        draw(picture.Target());
    }
    state.counters["allocations"] = benchmark::Counter(
        static_cast<double>(bench::AllocationCount() - before), benchmark::Counter::kAvgIterations);
    StopDrawingLibrary(token);
}

int drawnTexts = 0;

void DrawEhsiMode(benchmark::State& state) {
    ResetModuleState();
    SetUpFlight(test::FakeSimulator::Install());
    ehsi.ehsiMode = static_cast<std::int32_t>(state.range(0));
    Picture picture(static_cast<int>(state.range(1)));
    static PlatformServices services{sizeof(PlatformServices)};
    services.text_drawn = [](void*, const char*, double, double, double, std::uint32_t) {
        ++drawnTexts;
    };
    PlatformTable.services = &services;
    drawnTexts = 0;
    DrawEhsi(picture.Target());
    state.counters["texts"] = drawnTexts;
    PlatformTable.services = nullptr;
    DrawInATurn(state, DrawEhsi, picture);
}
BENCHMARK(DrawEhsiMode)
    ->ArgNames({"mode", "scale"})
    ->ArgsProduct({{1, 2, 4, 5, 8}, {1, 2}})
    ->Unit(benchmark::kMicrosecond);

// Banked and pitched, everything on: ladder, cue, tape, deviations, modes.
void DrawEadiBanked(benchmark::State& state) {
    ResetModuleState();
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    SetUpFlight(simulator);
    settings.EADIHdgTape = 1;
    simulator.variables[46] = 0xC0;
    simulator.variables[792] = 1;
    aircraft.bank = 20;
    aircraft.pitch = -5;
    aircraft.autopilotOn = aircraft.headingHoldOn = aircraft.yawDamperOn = 1;
    aircraft.apAltitudeLockOn = 1;
    aircraft.radioAltitudeFt = 900;
    Picture picture(static_cast<int>(state.range(0)));
    DrawInATurn(state, DrawEadi, picture);
}
BENCHMARK(DrawEadiBanked)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// Records as close together as where the world has most of them.
void FillDatabase() {
    static constexpr struct {
        PointTable NavDatabase::*table;
        int count;
    } kTables[] = {{&NavDatabase::navaids, 600},
                   {&NavDatabase::airports, 500},
                   {&NavDatabase::airwayFixes, 3000}};
    navDatabase = NavDatabase{};
    for (const auto& row : kTables) {
        for (int i = 0; i < row.count; ++i) {
            test::AddPoint(navDatabase.*row.table, "IDENT",
                           42.6 + std::fmod(i * 0.61803, 1.0) * 8 - 4,
                           -71.6 + std::fmod(i * 0.75487, 1.0) * 10 - 5);
        }
    }
    nd.ndShowStations = nd.ndShowAirports = nd.ndShowWaypoints = 1;
}

void DrawNdMode(benchmark::State& state) {
    ResetModuleState();
    SetUpFlight(test::FakeSimulator::Install());
    FillDatabase();
    nd.ndMode = static_cast<std::int32_t>(state.range(0));
    nd.ndRange = static_cast<std::int32_t>(state.range(1));
    Picture picture(static_cast<int>(state.range(2)), kNdWidth, kNdHeight);
    DrawInATurn(state, DrawNd, picture);
}
BENCHMARK(DrawNdMode)
    ->ArgNames({"mode", "range", "scale"})
    ->ArgsProduct({{1}, {40}, {1, 2}})
    ->ArgsProduct({{5, 6}, {40, 320}, {1, 2}})
    ->Unit(benchmark::kMicrosecond);

// Boundaries as many and as long as the United States have.
void FillBoundaries() {
    constexpr int kCount = 140;
    constexpr int kPoints = 30;
    atcBoundaries = AtcBoundaries{};
    atcBoundaries.loaded = true;
    for (int i = 0; i < kCount; ++i) {
        AtcBoundary boundary;
        boundary.ident = boundary.name = "B" + std::to_string(i);
        boundary.label = {30 + std::fmod(i * 0.61803, 1.0) * 18,
                          -120 + std::fmod(i * 0.75487, 1.0) * 50};
        for (int point = 0; point < kPoints; ++point) {
            const double turn = point * 6.2831853 / kPoints;
            boundary.points.push_back({boundary.label.latitude + 0.4 * std::sin(turn),
                                       boundary.label.longitude + 0.5 * std::cos(turn)});
        }
        atcBoundaries.items.push_back(boundary);
    }
    ehsi.mapOverlayOn = 1;
}

void DrawEhsiBoundaries(benchmark::State& state) {
    ResetModuleState();
    SetUpFlight(test::FakeSimulator::Install());
    FillBoundaries();
    ehsi.ehsiMode = static_cast<std::int32_t>(state.range(0));
    ehsi.ehsiRange = static_cast<double>(state.range(1));
    Picture picture(static_cast<int>(state.range(2)));
    DrawInATurn(state, DrawEhsi, picture);
}
BENCHMARK(DrawEhsiBoundaries)
    ->ArgNames({"mode", "range", "scale"})
    ->ArgsProduct({{2, 5}, {40, 160}, {1, 2}})
    ->Unit(benchmark::kMicrosecond);

// The traffic gauge, and the multifunction display with every layer, each with five targets.
void DrawWithTraffic(benchmark::State& state, void (*draw)(const DrawTarget&), int width,
                     int height) {
    ResetModuleState();
    SetUpFlight(test::FakeSimulator::Install());
    FillDatabase();
    FillBoundaries();
    test::FakeTraffic source;
    source.Tell({{0, 4, 5, 1, 0},
                 {60, 3, -5, -1, 1},
                 {120, 2, 9, 0, 2},
                 {200, 3, 0, 1, 3},
                 {300, 4, 20, 0, 0}});
    nd.showTraffic = mfd.mfdLayerA = mfd.mfdLayerB = 1;
    mfd.mfdTrafficRange = 40;
    guidance.blinkCounter = 10;
    Picture picture(static_cast<int>(state.range(0)), width, height);
    DrawInATurn(state, draw, picture);
}
void DrawTcasGauge(benchmark::State& state) {
    DrawWithTraffic(state, DrawTcas, kNominalWidth, kNominalHeight);
}
void DrawMfdMap(benchmark::State& state) {
    DrawWithTraffic(state, DrawMfd, 272, 314);
}
BENCHMARK(DrawTcasGauge)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);
BENCHMARK(DrawMfdMap)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

// The update and the three flight displays in one frame, every layer shown, in a turn, when no
// number of a rose stands as it did; a 60 Hz frame has 16667 us.
void PanelFrame(benchmark::State& state) {
    ResetModuleState();
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    SetUpFlight(simulator);
    FillDatabase();
    FillBoundaries();
    nd.ndMode = 6;
    nd.ndRange = static_cast<std::int32_t>(state.range(0));
    ehsi.ehsiMode = 2;
    simulator.variables[80] = 20;
    const int scale = static_cast<int>(state.range(1));
    Picture eadiPicture(scale);
    Picture ehsiPicture(scale);
    Picture ndPicture(scale, kNdWidth, kNdHeight);
    const std::uintptr_t token = StartDrawingLibrary();
    for (auto _ : state) {
        double& headingMag = simulator.variables[81];
        headingMag = std::fmod(headingMag + 0.05, 360.0);
        simulator.NextTick();
        UpdateFrame();
        DrawEadi(eadiPicture.Target());
        DrawEhsi(ehsiPicture.Target());
        DrawNd(ndPicture.Target());
    }
    StopDrawingLibrary(token);
}
BENCHMARK(PanelFrame)
    ->ArgNames({"range", "scale"})
    ->ArgsProduct({{40, 320}, {1, 2}})
    ->Unit(benchmark::kMicrosecond);

// The compass of a full rose in bare Cairo: 72 ticks, twelve labels, twenty data texts, a filled
// background, a few pointers and ten route legs.
void BareCairoPrimitives(benchmark::State& state) {
    const int scale = static_cast<int>(state.range(0));
    Picture picture(scale);
    cairo_surface_t* surface = cairo_image_surface_create_for_data(
        reinterpret_cast<unsigned char*>(picture.pixels.data()), CAIRO_FORMAT_ARGB32,
        picture.context.width, picture.context.height, picture.context.bytesPerRow);
    cairo_t* cairo = cairo_create(surface);
    cairo_scale(cairo, scale, scale);
    cairo_select_font_face(cairo, "Arial", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cairo, 12);
    cairo_set_line_width(cairo, 1);
    for (auto _ : state) {
        cairo_set_source_rgb(cairo, 0, 0, 0);
        cairo_paint(cairo);
        cairo_set_source_rgb(cairo, 1, 1, 1);
        for (int tick = 0; tick < 82; ++tick) {
            cairo_move_to(cairo, 140 + tick, 100);
            cairo_line_to(cairo, 140 + tick * 0.7, 112);
            cairo_stroke(cairo);
        }
        for (int text = 0; text < 32; ++text) {
            cairo_move_to(cairo, 10 + text * 5, 20 + text * 7);
            cairo_show_text(cairo, "33");
        }
        cairo_arc(cairo, 140, 131, 100, 0, 6.283);
        cairo_stroke(cairo);
    }
    cairo_destroy(cairo);
    cairo_surface_destroy(surface);
}
BENCHMARK(BareCairoPrimitives)->ArgName("scale")->Arg(1)->Arg(2)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace avq1
