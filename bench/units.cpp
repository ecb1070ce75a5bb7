// Drawing the pages of the large units, painted anew and with nothing changed, and opening a folder
// of many stored plans.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "base/module_state.h"
#include "base/redraw.h"
#include "base/sim_folder.h"
#include "cdu_gns/gns.h"
#include "cdu_smiths/smiths.h"
#include "flightplan/flight_plan.h"
#include "flightplan/plan_edit.h"
#include "flightplan/plan_files.h"
#include "guidance/lnav.h"
#include "guidance/vnav.h"
#include "host/update_frame.h"
#include "platform/canvas.h"
#include "simlink/aircraft_state.h"
#include "tests/support/fake_simulator.h"

namespace avq1 {
namespace {

constexpr int kEntries = 150;

struct UnitRow {
    CduState& state;
    void (*draw)(const DrawTarget& target);
    int widthPx;
    int heightPx;
};
const UnitRow kGnsUnit{gns, DrawGns, 292, 217};
const UnitRow kSmithsUnit{smiths, DrawSmiths, 284, 233};

struct Unit {
    Unit(const UnitRow& row, int scale)
        : unit(row), pixels(static_cast<std::size_t>(row.widthPx) * row.heightPx * scale * scale) {
        context.width = row.widthPx * scale;
        context.height = row.heightPx * scale;
        context.bytesPerRow = context.width * 4;
        context.pixels = pixels.data();
    }
    ~Unit() { StopDrawingLibrary(token); }
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;
    void Draw() { unit.draw({&context, context.width, context.height}); }

    const UnitRow& unit;
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
    planBook.status = RouteStatus::Active;
}

void DrawPage(benchmark::State& state, const UnitRow& row, bool anew) {
    ResetModuleState();
    FlyPlan(test::FakeSimulator::Install());
    Unit unit(row, static_cast<int>(state.range(1)));
    row.state.page = static_cast<std::int32_t>(state.range(0));
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

void PaintPage(benchmark::State& state, const UnitRow& row) {
    DrawPage(state, row, true);
}

void ShowUnchangedPage(benchmark::State& state, const UnitRow& row) {
    DrawPage(state, row, false);
}

// The legs of a modification of the plan flown, predicted anew with every edit.
void EditAndPaintLegs(benchmark::State& state) {
    ResetModuleState();
    FlyPlan(test::FakeSimulator::Install());
    Unit unit(kSmithsUnit, 1);
    CopyActiveToModified();
    planBook.status = RouteStatus::Modified;
    smiths.page = kSmithsLegs;
    for (auto each : state) {
        modifiedPlan.Edit(40).altitude += 1;
        unit.Draw();
    }
    PlatformTable.services = nullptr;
}

const std::vector<std::int64_t> kGnsPages = {kGnsPlan, kGnsDirect,    kGnsNavigation, kGnsDeparture,
                                             kGnsVnav, kGnsVnavData,  kGnsHold,       kGnsFuel,
                                             kGnsSave, kGnsPilotPoint};
const std::vector<std::int64_t> kSmithsPages = {
    kSmithsStoredPlans, kSmithsPerfInit,   kSmithsLegs,        kSmithsSelectWaypoint,
    kSmithsDepartures,  kSmithsArrivals,   kSmithsApproachRef, kSmithsRoute,
    kSmithsIndex,       kSmithsDepArr,     kSmithsIdent,       kSmithsPos,
    kSmithsTakeoffRef,  kSmithsRefNavData, kSmithsNavSummary,  kSmithsNavStatus,
    kSmithsProgress,    kSmithsClimb,      kSmithsCruise,      kSmithsDescent,
    kSmithsFixInfo,     kSmithsForecasts,  kSmithsHold};

// Each page of a unit, at these multiples of its nominal size.
void Pages(benchmark::internal::Benchmark* bench, const std::vector<std::int64_t>& pages,
           const std::vector<std::int64_t>& scales) {
    bench->ArgNames({"page", "scale"})->ArgsProduct({pages, scales})->Unit(benchmark::kMicrosecond);
}
BENCHMARK_CAPTURE(PaintPage, gns, kGnsUnit)->Apply([](auto* b) { Pages(b, kGnsPages, {1, 2}); });
BENCHMARK_CAPTURE(ShowUnchangedPage, gns, kGnsUnit)->Apply([](auto* b) {
    Pages(b, kGnsPages, {1});
});
BENCHMARK_CAPTURE(PaintPage, smiths, kSmithsUnit)->Apply([](auto* b) {
    Pages(b, kSmithsPages, {1, 2});
});
BENCHMARK_CAPTURE(ShowUnchangedPage, smiths, kSmithsUnit)->Apply([](auto* b) {
    Pages(b, kSmithsPages, {1});
});
BENCHMARK(EditAndPaintLegs)->Unit(benchmark::kMicrosecond);

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
