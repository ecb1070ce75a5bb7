// Drawing the pages of the GNS-style unit, painted anew and with nothing changed, and opening a
// folder of many stored plans.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/module_state.h"
#include "base/redraw.h"
#include "base/sim_folder.h"
#include "cdu_gns/gns.h"
#include "flightplan/flight_plan.h"
#include "flightplan/plan_files.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "host/update_frame.h"
#include "platform/canvas.h"
#include "simlink/aircraft_state.h"
#include "tests/support/fake_simulator.h"

namespace avq1 {
namespace {

constexpr int kWidth = 292;
constexpr int kHeight = 217;
constexpr int kEntries = 150;

struct Unit {
    explicit Unit(int scale) : pixels(static_cast<std::size_t>(kWidth) * kHeight * scale * scale) {
        context.width = kWidth * scale;
        context.height = kHeight * scale;
        context.bytesPerRow = context.width * 4;
        context.pixels = pixels.data();
    }
    ~Unit() { StopDrawingLibrary(token); }
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;
    void Draw() { DrawGns({&context, context.width, context.height}); }

    std::uintptr_t token = StartDrawingLibrary();
    std::vector<std::uint32_t> pixels;
    PixelDeviceContext context;
};

void FlyPlan(test::FakeSimulator& simulator) {
    for (int i = 0; i < kEntries; ++i) {
        PlanWaypoint entry;
        entry.ident = "FIX" + std::to_string(i);
        entry.type = i == 0 || i == kEntries - 1 ? "APT" : "INT";
        entry.latitude = 42;
        entry.longitude = -71 - 0.2 * i;
        activePlan.Append(std::move(entry));
    }
    simulator.variables[773] = 1;
    simulator.variables[81] = simulator.variables[86] = 270;
    simulator.SetGroundSpeedKt(420);
    simulator.SetPosition(42, -71.5);
    RefreshAircraftState();
    SetActiveWaypoint(5);
    SetCruiseAltitude(34000);
    simulator.NextTick();
    UpdateFrame();
    gns.planView = kActiveView;
}

void DrawPage(benchmark::State& state, bool anew) {
    ResetModuleState();
    FlyPlan(test::FakeSimulator::Install());
    Unit unit(static_cast<int>(state.range(1)));
    gns.page = static_cast<std::int32_t>(state.range(0));
    gns.columnMode = kColumnDis;
    unit.Draw();
    for (auto each : state) {
        if (anew) {
            RequestUnitRedraw();
        }
        unit.Draw();
    }
    PlatformTable.services = nullptr;
}

void PaintPage(benchmark::State& state) {
    DrawPage(state, true);
}

void ShowUnchangedPage(benchmark::State& state) {
    DrawPage(state, false);
}

const std::vector<std::int64_t> kPages = {kGnsPlan, kGnsDirect,    kGnsNavigation, kGnsDeparture,
                                          kGnsVnav, kGnsVnavData,  kGnsHold,       kGnsFuel,
                                          kGnsSave, kGnsPilotPoint};
BENCHMARK(PaintPage)
    ->ArgNames({"page", "scale"})
    ->ArgsProduct({kPages, {1, 2}})
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(ShowUnchangedPage)
    ->ArgNames({"page", "scale"})
    ->ArgsProduct({kPages, {1}})
    ->Unit(benchmark::kMicrosecond);

// The list holds 200 of them, a page eight.
void OpenListOf2000Plans(benchmark::State& state) {
    ResetModuleState();
    const std::filesystem::path root = std::filesystem::temp_directory_path() / "avq1-bench-plans";
    std::filesystem::create_directories(root / "avq/flightplans");
    for (int i = 0; i < 2000; ++i) {
        std::ofstream(root / "avq/flightplans" / ("P" + std::to_string(i) + ".RTE"))
            << "[FlightPlan]\nKAAA  0.0  0.0  APT  ---\nKBBB  0.0  7.0  APT  ---\n";
    }
    SimFolder = root.string();
    for (auto each : state) {
        ListStoredPlans();
    }
    state.counters["listed"] = static_cast<double>(storedPlans.plans.size());
    std::filesystem::remove_all(root);
}
BENCHMARK(OpenListOf2000Plans)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace avq1
