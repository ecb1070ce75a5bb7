// tests/support/vertical_flight.h - an aircraft that flies heading, altitude, vertical speed and
// airspeed as its autopilot is told to, along a plan on the equator where a degree is 60 nm.
#pragma once

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "flightplan/flight_plan.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/predictions.h"
#include "guidance/vnav.h"
#include "host/update_frame.h"
#include "settings/aircraft_performance.h"
#include "simlink/aircraft_state.h"
#include "support/fake_simulator.h"

namespace avq1::test {

// Speeds and rates like those of a twin jet.
inline AircraftPerformance JetPerformance() {
    AircraftPerformance jet;
    jet.climbIas = 280;
    jet.cruiseIas = 280;
    jet.descentIas = 270;
    jet.climbIasMax = jet.cruiseIasMax = 310;
    jet.descentIasMax = 300;
    jet.flightPathAngleDeg = 3;
    jet.climbSpeedRestriction = jet.descentSpeedRestriction = 250;
    jet.climbRestrictionAltitude = jet.descentRestrictionAltitude = 10000;
    jet.maxCruiseAltitude = 41000;
    DeriveSpeeds(jet);
    return jet;
}

// And like those of a twin turboprop.
inline AircraftPerformance TurbopropPerformance() {
    AircraftPerformance turboprop;
    turboprop.climbIas = 170;
    turboprop.cruiseIas = 200;
    turboprop.descentIas = 220;
    turboprop.minVnavIas = 140;
    turboprop.climbIasMin = 150;
    turboprop.climbIasMax = 190;
    turboprop.cruiseIasMin = 180;
    turboprop.cruiseIasMax = 235;
    turboprop.descentIasMin = 190;
    turboprop.descentIasMax = 240;
    turboprop.climbRate = 1400;
    turboprop.descentRate = 1500;
    turboprop.maxCruiseAltitude = 25000;
    turboprop.vnavSpeedDistanceNm = 20;
    DeriveSpeeds(turboprop);
    return turboprop;
}

struct VerticalPilot {
    double latitude = 0;
    double longitude = 0;
    double headingTrue = 90;
    double altitudeFt = 0;
    double verticalFpm = 0;
    double airspeedKt = 160;
    double groundSpeedKt = 0;
    double targetFt = 0;
    double targetFpm = 0;
    double targetKt = 250;
    double bug = 90;
    double tailwindKt = 0;  // from the west
    double fuelLb = 16000;
    double seconds = 0;
    double simRate = 1;
    std::size_t eventsObeyed = 0;
    std::vector<double> verticalEvents;  // when each was sent, s

    double TrueKt() const {
        const double theta = 1 - 6.8756e-6 * std::min(altitudeFt, 36089.0);
        return airspeedKt / std::sqrt(std::pow(theta, 4.2559));
    }

    void ObeyEvents() {
        const auto& events = FakeSimulator::Get().events;
        for (; eventsObeyed < events.size(); ++eventsObeyed) {
            const auto value =
                static_cast<double>(static_cast<std::int32_t>(events[eventsObeyed].second));
            switch (events[eventsObeyed].first) {
                case 66042:
                    bug = value;
                    break;
                case 66124:
                    targetFt = value;
                    break;
                case 66036:
                    targetFpm = value;
                    verticalEvents.push_back(seconds);
                    break;
                case 66037:
                    targetKt = value;
                    break;
                default:
                    break;
            }
        }
    }

    void Move(double dt) {
        const double turn = PositiveModulo(bug - headingTrue + 180, 360) - 180;
        headingTrue = PositiveModulo(headingTrue + std::clamp(turn, -2 * dt, 2 * dt), 360);
        const double bound = targetFpm != 0 ? std::fabs(targetFpm) : 1800;
        const double wanted = std::clamp((targetFt - altitudeFt) * 4, -bound, bound);
        verticalFpm += std::clamp(wanted - verticalFpm, -150 * dt, 150 * dt);
        altitudeFt = std::max(altitudeFt + verticalFpm / 60 * dt, 0.0);
        airspeedKt += std::clamp((targetKt - airspeedKt) / 3, -1.2, 1.5) * dt;
        const double east = TrueKt() * std::sin(headingTrue * kDegToRad) + tailwindKt;
        const double north = TrueKt() * std::cos(headingTrue * kDegToRad);
        groundSpeedKt = std::hypot(east, north);
        const double track = PositiveModulo(std::atan2(east, north) * kRadToDeg, 360);
        PointAtDistance(latitude, longitude, track, groundSpeedKt * dt / 3600, latitude, longitude);
        fuelLb -= FlowPph() * dt / 3600;
        seconds += dt;
    }

    double FlowPph() const { return std::max(3500 + 1.2 * verticalFpm, 1200.0); }

    void Report() const {
        FakeSimulator& simulator = FakeSimulator::Get();
        simulator.SetPosition(latitude, longitude);
        simulator.SetGroundSpeedKt(groundSpeedKt);
        simulator.variables[86] = simulator.variables[81] = headingTrue;
        simulator.variables[106] = simulator.variables[103] = simulator.variables[115] = 1;
        simulator.variables[61] = airspeedKt;
        simulator.variables[74] = altitudeFt;
        simulator.variables[116] = targetKt;
        simulator.variables[109] = targetFt;
        simulator.variables[336] = simRate;
        simulator.variables[65] = verticalFpm / 0.7689468503937007;
        simulator.variables[289] = 8388608;  // one full tank of a pound a gallon
        simulator.variables[290] = fuelLb;
        simulator.variables[306] = 1;
        simulator.variables[638] = FlowPph();
        simulator.variables[343] = std::fabs(tailwindKt);
        simulator.variables[344] = tailwindKt >= 0 ? 270 : 90;
        const auto now = static_cast<std::int32_t>(seconds);
        simulator.variables[5] = now % 60;
        simulator.variables[4] = now / 60 % 60;
        simulator.variables[3] = now / 3600;
    }

    void Fly(double dt) {
        ObeyEvents();
        Move(dt);
        Report();
        FakeSimulator::Get().NextTick();
        UpdateFrame();
    }
};

}  // namespace avq1::test
