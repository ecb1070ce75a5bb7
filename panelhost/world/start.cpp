#include "panelhost/world/start.h"

#include <algorithm>
#include <cmath>

#include "panelhost/world/flight_model.h"
#include "panelhost/world/flight_source.h"

namespace panelhost {
namespace {

constexpr double kStartFuelPounds = 30000;
constexpr double kPartS = 0.1;

double VariationAt(const World& world, const GeoPoint& at) {
    return world.fixedVariationDeg ? *world.fixedVariationDeg : WorldVariation(at);
}

// The autopilot's targets become what the aircraft does now.
void HoldPresentState(World& world) {
    Autopilot& autopilot = world.autopilot;
    const int heading = static_cast<int>(std::lround(HeadingMag(world)));
    autopilot.headingBugMag = heading == 0 ? 360 : heading;
    autopilot.altitudeTargetFt = static_cast<int>(std::lround(world.aircraft.altitudeFt));
    autopilot.airspeedTargetKt = static_cast<int>(std::lround(world.aircraft.indicatedAirspeedKt));
}

}  // namespace

void RefreshSurroundings(Ground& ground, World& world) {
    world.magneticVariation = VariationAt(world, world.aircraft.position);
    world.groundElevationFt = GroundElevationFt(ground, world.aircraft.position);
    UpdateReceivers(ground, VariationAt, world);
}

void AfterPlacing(World& world) {
    if (world.clock.flightTimeS == 0) {
        HoldPresentState(world);
    }
}

void StartWorld(const StartState& start, std::uint32_t seed, Ground& ground, World& world) {
    Aircraft& aircraft = world.aircraft;
    aircraft.position = {std::clamp(start.latitude, -89.9, 89.9),
                         AngleDifference(0, start.longitude)};
    aircraft.headingTrue = Normalise360(start.headingTrue);
    aircraft.trackTrue = aircraft.headingTrue;
    FillTanks(aircraft, kStartFuelPounds);
    world.air.windDirectionTrue = Normalise360(start.windDirectionTrue);
    world.air.windSpeedKt = std::clamp(start.windSpeedKt, 0.0, 200.0);
    // Splitmix64: neighbouring seeds give unlike sequences, none of them the stuck state 0.
    std::uint64_t mixed = (seed + 1) * 0x9E3779B97F4A7C15ULL;
    mixed = (mixed ^ mixed >> 30U) * 0xBF58476D1CE4E5B9ULL;
    world.air.randomState = mixed | 1U;
    RefreshSurroundings(ground, world);
    aircraft.onGround = start.onGround;
    aircraft.parkingBrake = start.onGround;
    aircraft.altitudeFt = start.onGround ? world.groundElevationFt
                                         : std::max(start.altitudeFt, world.groundElevationFt + 50);
    aircraft.indicatedAirspeedKt =
        start.onGround ? 0 : std::clamp(start.indicatedAirspeedKt, 115.0, 340.0);
    aircraft.heldAirspeedKt = aircraft.indicatedAirspeedKt;
    HoldPresentState(world);
    Autopilot& autopilot = world.autopilot;
    const bool engage = start.autopilotOn && !start.onGround;
    autopilot.master = engage;
    autopilot.headingHold = engage;
    autopilot.altitudeHold = engage;
    autopilot.airspeedHold = engage;
    autopilot.yawDamper = engage;
    autopilot.flightDirector = engage;
    aircraft.trueAirspeedKt = TrueAirspeedKt(aircraft.indicatedAirspeedKt, aircraft.altitudeFt);
    aircraft.groundSpeedKt = aircraft.trueAirspeedKt;
    aircraft.pitchUpDeg = start.onGround ? 0 : 2;
}

namespace {

class BuiltInFlight : public FlightSource {
  public:
    void Step(Ground& ground, World& world, Traffic& traffic, double dtS) override {
        StepWorld(ground, world, dtS);
        if (!world.paused) {
            StepTraffic(world, traffic, dtS * world.simulationRate);
        }
    }
    bool ObeysPlacing() const override { return true; }
    std::string Trouble() const override { return ""; }
};

}  // namespace

std::unique_ptr<FlightSource> MakeBuiltInFlight() {
    return std::make_unique<BuiltInFlight>();
}

void StepWorld(Ground& ground, World& world, double dtS) {
    if (world.paused || dtS <= 0) {
        RefreshSurroundings(ground, world);
        return;
    }
    const double flightS = dtS * world.simulationRate;
    const int parts = std::max(1, static_cast<int>(std::ceil(flightS / kPartS - 1e-9)));
    for (int i = 0; i < parts; ++i) {
        RefreshSurroundings(ground, world);
        StepFlight(world, flightS / parts);
    }
}

}  // namespace panelhost
