// The per-frame update against its lower bound: the same number of bare great-circle evaluations.
#include <benchmark/benchmark.h>

#include "base/module_state.h"
#include "bench/allocation_counter.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "host/update_frame.h"
#include "simlink/aircraft_state.h"
#include "tests/support/fake_simulator.h"

namespace avq1 {
namespace {

// A gently curving route of `legs` legs of 20 nm; the aircraft is early on its first leg.
void FlyPlanOf(int legs, test::FakeSimulator& simulator) {
    double latitude = 40.0;
    double longitude = -80.0;
    for (int i = 0; i <= legs; ++i) {
        PlanWaypoint& entry = activePlan.entries[i];
        entry = PlanWaypoint{};
        entry.ident = "WP" + std::to_string(i);
        entry.type = "INT";
        entry.latitude = latitude;
        entry.longitude = longitude;
        PointAtDistance(latitude, longitude, 80.0 + i % 20, 20.0, latitude, longitude);
    }
    activePlan.lastIndex = legs;
    simulator.SetPosition(40.01, -79.99);
    simulator.SetGroundSpeedKt(400);
    simulator.variables[106] = 1;  // heading hold on
    simulator.variables[81] = simulator.variables[86] = 82;
    simulator.variables[773] = 1;
    RefreshAircraftState();
    SetActiveWaypoint(1);
    EngageLnav();
}

// What one update cannot do without: the leg, the waypoint, the look-ahead and the cross-track
// (six evaluations) and the route from the aircraft through every entry to come, and its straight
// line (one a leg and two).
int GreatCirclesOf(int legs) {
    return 6 + legs + 1;
}

void UpdateFrameWithLegs(benchmark::State& state) {
    ResetModuleState();
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    const int legs = static_cast<int>(state.range(0));
    FlyPlanOf(legs, simulator);
    simulator.NextTick();
    UpdateFrame();
    const long before = bench::AllocationCount();
    for (auto _ : state) {
        simulator.NextTick();
        UpdateFrame();
    }
    state.counters["allocations"] = benchmark::Counter(
        static_cast<double>(bench::AllocationCount() - before), benchmark::Counter::kAvgIterations);
    state.counters["great_circles"] = GreatCirclesOf(legs);
}
BENCHMARK(UpdateFrameWithLegs)->Arg(10)->Arg(100);

void BareGreatCircles(benchmark::State& state) {
    const int count = GreatCirclesOf(static_cast<int>(state.range(0)));
    double latitude = 40.0;
    for (auto _ : state) {
        for (int i = 0; i < count; ++i) {
            double distance = 0;
            double course = 0;
            DistanceAndCourse(latitude, -80.0, 40.5 + i * 0.01, -79.0, distance, course);
            benchmark::DoNotOptimize(distance);
            benchmark::DoNotOptimize(course);
        }
        benchmark::DoNotOptimize(latitude);
    }
    state.counters["great_circles"] = count;
}
BENCHMARK(BareGreatCircles)->Arg(10)->Arg(100);

void UpdateFrameLaterCallsOfATick(benchmark::State& state) {
    ResetModuleState();
    test::FakeSimulator& simulator = test::FakeSimulator::Install();
    FlyPlanOf(100, simulator);
    simulator.NextTick();
    UpdateFrame();
    for (auto _ : state) {
        UpdateFrame();
    }
}
BENCHMARK(UpdateFrameLaterCallsOfATick);

}  // namespace
}  // namespace avq1
