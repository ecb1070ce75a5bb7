// A session's commands that place the aircraft, its fuel and its air.
#include <algorithm>
#include <cmath>

#include "panelhost/base/text.h"
#include "panelhost/session/host_state.h"
#include "panelhost/world/flight_model.h"

namespace panelhost {

// A simulator beside the panel places its aircraft itself.
static bool MayPlace(const HostState& host) {
    return host.flight->ObeysPlacing();
}

void Session::SetPaused(bool paused) {
    state_->host.world.paused = paused;
}

void Session::SetSimulationRate(double rate) {
    if (std::isfinite(rate)) {
        state_->host.world.simulationRate = std::clamp(rate, 0.25, 64.0);
    }
}

void Session::SetPosition(double latitude, double longitude) {
    if (MayPlace(state_->host) && std::isfinite(latitude) && std::isfinite(longitude)) {
        state_->host.world.aircraft.position = {std::clamp(latitude, -89.9, 89.9),
                                                AngleDifference(0, longitude)};
        RefreshSurroundings(state_->host.ground, state_->host.world);
        AfterPlacing(state_->host.world);
    }
}

void Session::SetAltitude(double altitudeFt) {
    World& world = state_->host.world;
    if (MayPlace(state_->host) && std::isfinite(altitudeFt)) {
        world.aircraft.altitudeFt = std::clamp(altitudeFt, world.groundElevationFt, 45000.0);
        world.aircraft.onGround = altitudeFt <= world.groundElevationFt;
        world.aircraft.verticalSpeedFpm = 0;
        if (!world.aircraft.onGround && world.aircraft.indicatedAirspeedKt < 160) {
            world.aircraft.indicatedAirspeedKt = 160;
            world.aircraft.heldAirspeedKt = 160;
        }
        AfterPlacing(world);
    }
}

void Session::SetHeading(double headingTrue) {
    if (MayPlace(state_->host) && std::isfinite(headingTrue)) {
        state_->host.world.aircraft.headingTrue = Normalise360(headingTrue);
        state_->host.world.aircraft.bankRightDeg = 0;
        AfterPlacing(state_->host.world);
    }
}

void Session::SetIndicatedAirspeed(double airspeedKt) {
    if (MayPlace(state_->host) && std::isfinite(airspeedKt)) {
        Aircraft& aircraft = state_->host.world.aircraft;
        aircraft.indicatedAirspeedKt =
            std::clamp(airspeedKt, aircraft.onGround ? 0.0 : 115.0, 340.0);
        aircraft.heldAirspeedKt = aircraft.indicatedAirspeedKt;
        AfterPlacing(state_->host.world);
    }
}

void Session::SetWind(double directionTrue, double speedKt) {
    if (MayPlace(state_->host) && std::isfinite(directionTrue) && std::isfinite(speedKt)) {
        state_->host.world.air.windDirectionTrue = Normalise360(directionTrue);
        state_->host.world.air.windSpeedKt = std::clamp(speedKt, 0.0, 200.0);
    }
}

void Session::SetTurbulence(double speedKt) {
    if (MayPlace(state_->host) && std::isfinite(speedKt)) {
        state_->host.world.air.turbulenceKt = std::clamp(speedKt, 0.0, 30.0);
    }
}

bool Session::SetTraffic(std::string_view scene) {
    Traffic& traffic = state_->host.traffic;
    const auto found = std::ranges::find_if(traffic.scenes, [scene](const TrafficScene& candidate) {
        return EqualNoCase(candidate.name, scene);
    });
    if (!MayPlace(state_->host) || (found == traffic.scenes.end() && !scene.empty())) {
        return false;
    }
    StartTraffic(traffic, scene.empty() ? nullptr : &*found);
    return true;
}

void Session::SetFuelPounds(double pounds) {
    if (std::isfinite(pounds)) {
        FillTanks(state_->host.world.aircraft, pounds);
    }
}

}  // namespace panelhost
