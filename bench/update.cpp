// The per-frame update against its lower bound: the same variables read from the same host, and the
// spherical geometry the steps of a frame ask for.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>

#include "base/module_state.h"
#include "bench/allocation_counter.h"
#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/lnav.h"
#include "guidance/predictions.h"
#include "guidance/vnav.h"
#include "host/update_frame.h"
#include "platform/services.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr std::int32_t kVariables = 1024;
constexpr std::int32_t kTickVariable = 1;
constexpr std::int32_t kLatitudeVariable = 71;
constexpr double kRawPerDegreeLatitude = 1 / 8.998425275459816e-06;
constexpr double kRawPerDegreeLongitude = 1 / 1.278976924368144e-12;
constexpr std::int32_t kTicksThere = 128;  // the aircraft goes to and fro, so a run may last

// The simulator as cheap as one can be: its variables are an array.
struct ArrayHost {
    std::array<double, kVariables> variables{};
    std::int32_t reads = 0;
    std::int32_t tick = 0;
    PanelServices services;
};

ArrayHost host;

void Lookup(ModuleVariable* variable) {
    variable->value = host.variables[static_cast<std::size_t>(variable->number)];
}

void LookupCounted(ModuleVariable* variable) {
    ++host.reads;
    Lookup(variable);
}

void InstallHost() {
    ResetModuleState();
    host = {};
    host.services.lookup_var = Lookup;
    host.services.trigger_key_event = [](std::int32_t, std::uint32_t) { return 1; };
    host.services.panel_window_shown = [](std::uint32_t) { return 0; };
    ImportTable.panel.services = &host.services;
    const struct {
        std::int32_t variable;
        double value;
    } rows[] = {{kLatitudeVariable, 40.01 * kRawPerDegreeLatitude},
                {72, (360 - 79.9) * kRawPerDegreeLongitude},
                {551, 400 / 0.5924837511331251},  // ground speed
                {81, 82},                         // heading
                {86, 82},
                {106, 1},   // heading hold on
                {773, 1}};  // avionics power
    for (const auto& row : rows) {
        host.variables[row.variable] = row.value;
    }
    RefreshAircraftState();
}

// The next tick: the aircraft has moved by a few metres.
void NextTick() {
    constexpr double kStepRaw = 3e-5 * kRawPerDegreeLatitude;
    host.variables[kTickVariable] = ++host.tick;
    host.variables[kLatitudeVariable] += host.tick / kTicksThere % 2 == 0 ? kStepRaw : -kStepRaw;
}

// A gently curving route of `legs` legs of 20 nm; LNAV flies its first.
void FlyPlanOf(std::int64_t legs) {
    InstallHost();
    activePlan.CutTo(-1);
    double latitude = 40.0;
    double longitude = -80.0;
    for (std::int32_t i = 0; i <= legs; ++i) {
        PlanWaypoint entry;
        entry.ident = "WP" + std::to_string(i);
        entry.type = "INT";
        entry.latitude = latitude;
        entry.longitude = longitude;
        activePlan.Append(entry);
        PointAtDistance(latitude, longitude, 80.0 + i % 20, 20.0, latitude, longitude);
    }
    SetActiveWaypoint(1);
    EngageLnav();
    guidance.trackLeg = 1;
    NextTick();
    UpdateFrame();
}

std::int32_t ReadsOf(void (*work)()) {
    host.services.lookup_var = LookupCounted;
    host.reads = 0;
    work();
    host.services.lookup_var = Lookup;
    return host.reads;
}

void UpdateFrameWithLegs(benchmark::State& state) {
    FlyPlanOf(state.range(0));
    const long before = bench::AllocationCount();
    for (auto _ : state) {
        NextTick();
        UpdateFrame();
    }
    state.counters["allocations"] = benchmark::Counter(
        static_cast<double>(bench::AllocationCount() - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(UpdateFrameWithLegs)->Arg(10)->Arg(100)->Arg(kMaxPlanIndex);

// The same in the climb, without and with vertical guidance engaged.
void UpdateFrameInTheClimb(benchmark::State& state) {
    FlyPlanOf(100);
    planBook.cruiseAltitudeFt = 33000;
    StartVerticalProfile();
    guidance.vnavEngaged = static_cast<std::int32_t>(state.range(0));
    const long before = bench::AllocationCount();
    for (auto _ : state) {
        NextTick();
        UpdateFrame();
    }
    state.counters["allocations"] = benchmark::Counter(
        static_cast<double>(bench::AllocationCount() - before), benchmark::Counter::kAvgIterations);
}
BENCHMARK(UpdateFrameInTheClimb)->Arg(0)->Arg(1);

// A full plan in which every fifth entry is restricted: measured, planned, filled and predicted, as
// after an edit. At most 300 us.
void PlanAndPredict(benchmark::State& state) {
    FlyPlanOf(kMaxPlanIndex);
    for (std::int32_t i = 5; i < activePlan.lastIndex; i += 5) {
        activePlan.Edit(i).altitudeConstraint = 1;
        activePlan.Edit(i).altitude = 300.0 * std::min(i, activePlan.lastIndex - i);
    }
    planBook.cruiseAltitudeFt = 33000;
    for (auto _ : state) {
        activePlan.Edit(1).latitude += 1e-6;
        PlanVerticalProfile(planBook.cruiseAltitudeFt, 1);
        RefreshPredictions();
        benchmark::DoNotOptimize(ActivePredictions().destination.minutes);
    }
}
BENCHMARK(PlanAndPredict);

void SnapshotAlone(benchmark::State& state) {
    FlyPlanOf(10);
    for (auto _ : state) {
        NextTick();
        RefreshAircraftState();
    }
}
BENCHMARK(SnapshotAlone);

// `count` variables read through the host's table into records of their own.
void ReadBare(std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        ModuleVariable variable;
        variable.number = kTickVariable + 3 * i;
        LookupVariable(variable);
        benchmark::DoNotOptimize(variable.value);
    }
}

void BareReadsOfTheSnapshot(benchmark::State& state) {
    FlyPlanOf(10);
    const std::int32_t reads = ReadsOf(RefreshAircraftState);
    for (auto _ : state) {
        NextTick();
        ReadBare(reads);
    }
    state.counters["reads"] = reads;
}
BENCHMARK(BareReadsOfTheSnapshot);

// What the steps of a frame that follows a leg ask geometry/ for. Distances and courses: the leg
// and the way to its waypoint (leg geometry, again for the cross-track), the ways to the next entry
// and to the destination (route), from the abeam point (cross-track), to the look-ahead point
// (steering). Points: abeam and look-ahead.
constexpr std::int64_t kGreatCirclesAsked = 8;
// What changes with every tick, once each: the ways to the waypoint (it is the next entry), to the
// destination and to the look-ahead point, and from the abeam point.
constexpr std::int64_t kGreatCirclesOnce = 4;
constexpr std::int64_t kPoints = 2;

// The lower bound of a frame: its variables read, its geometry evaluated, nothing kept.
void BareReadsAndGeometry(benchmark::State& state) {
    FlyPlanOf(10);
    NextTick();
    const std::int32_t reads = ReadsOf(UpdateFrame);
    for (auto _ : state) {
        NextTick();
        ReadBare(reads);
        const double from = 40.01 + host.tick % kTicksThere * 3e-5;
        double distanceNm = 0;
        double course = 0;
        for (std::int64_t i = 0; i < state.range(0); ++i) {
            const double step = static_cast<double>(i) * 0.01;
            DistanceAndCourse(from, -79.9, 40.5 + step, -79.0, distanceNm, course);
            benchmark::DoNotOptimize(distanceNm);
            benchmark::DoNotOptimize(course);
        }
        for (std::int64_t i = 0; i < kPoints; ++i) {
            double latitude = 0;
            double longitude = 0;
            PointAtDistance(from, -79.9, course, distanceNm, latitude, longitude);
            benchmark::DoNotOptimize(latitude);
            benchmark::DoNotOptimize(longitude);
        }
    }
    state.counters["reads"] = reads;
    state.counters["great_circles"] = static_cast<double>(state.range(0));
    state.counters["points"] = kPoints;
}
BENCHMARK(BareReadsAndGeometry)->Arg(kGreatCirclesAsked)->Arg(kGreatCirclesOnce);

void UpdateFrameLaterCallsOfATick(benchmark::State& state) {
    FlyPlanOf(100);
    for (auto _ : state) {
        UpdateFrame();
    }
}
BENCHMARK(UpdateFrameLaterCallsOfATick);

}  // namespace
}  // namespace avq1
