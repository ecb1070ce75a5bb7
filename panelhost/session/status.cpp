// What a session tells of its flight.
#include <algorithm>

#include "panelhost/base/text.h"
#include "panelhost/session/services.h"
#include "panelhost/world/key_events.h"
#include "panelhost/world/variables.h"

namespace panelhost {
namespace {

RadioStatus StatusOf(const World& world, const Receiver& receiver, double unitsPerMhz) {
    RadioStatus status;
    status.ident = receiver.ident;
    status.frequencyMhz = receiver.frequency / unitsPerMhz;
    status.courseMag = receiver.courseMag;
    status.bearingMag =
        receiver.signal > 0 ? Normalise360(receiver.bearingTrue - world.magneticVariation) : 0;
    const double fullScaleDeg = receiver.isLocalizer ? 2.5 : 10;
    status.deviation = std::clamp(receiver.deviationDeg / fullScaleDeg * 127, -127.0, 127.0);
    status.dmeNm = receiver.dmeNm;
    status.toFrom = receiver.toFrom;
    status.isLocalizer = receiver.isLocalizer;
    status.hasGlideslope = receiver.hasGlideslope;
    return status;
}

void FillFlightStatus(const World& world, SessionStatus& status) {
    const Aircraft& aircraft = world.aircraft;
    status.flightTimeS = world.clock.flightTimeS;
    status.panelTimeS = world.clock.panelTimeS;
    status.paused = world.paused;
    status.simulationRate = world.simulationRate;
    status.onGround = aircraft.onGround;
    status.latitude = aircraft.position.latitude;
    status.longitude = aircraft.position.longitude;
    status.altitudeFt = aircraft.altitudeFt;
    status.radioAltitudeFt = aircraft.altitudeFt - world.groundElevationFt;
    status.indicatedAirspeedKt = aircraft.indicatedAirspeedKt;
    status.trueAirspeedKt = aircraft.trueAirspeedKt;
    status.groundSpeedKt = aircraft.groundSpeedKt;
    status.verticalSpeedFpm = aircraft.verticalSpeedFpm;
    status.headingMag = HeadingMag(world);
    status.headingTrue = aircraft.headingTrue;
    status.trackTrue = aircraft.trackTrue;
    status.magneticVariation = world.magneticVariation;
    status.pitchUpDeg = aircraft.pitchUpDeg;
    status.bankRightDeg = aircraft.bankRightDeg;
    status.windDirectionTrue = world.air.windDirectionTrue;
    status.windSpeedKt = world.air.windSpeedKt;
    status.fuelLb = FuelPounds(aircraft);
    status.fuelFlowPph = aircraft.fuelFlowPph;
    status.payloadLb = PayloadPounds(aircraft);
    status.zeroFuelWeightLb = aircraft.emptyWeightLb + status.payloadLb;
    status.towerLatitude = static_cast<double>(world.tower.latitude) / kTowerStepsPerLatitude;
    status.towerLongitude = static_cast<double>(world.tower.longitude) / kTowerStepsPerLongitude;
    status.towerAltitude = static_cast<double>(world.tower.altitude >> 32);
}

}  // namespace

SessionStatus Session::Status() const {
    const HostState& host = state_->host;
    SessionStatus status;
    FillFlightStatus(host.world, status);
    status.trouble = host.flight->Trouble();
    status.autopilot = host.world.autopilot;
    status.nav1 = StatusOf(host.world, host.world.nav1, 100);
    status.nav2 = StatusOf(host.world, host.world.nav2, 100);
    status.adf = StatusOf(host.world, host.world.adf, 1000);
    const DataCycle& cycle = host.ground.cycle;
    if (!cycle.number.empty()) {
        status.dataCycle = cycle.number + ", " + cycle.begin + " to " + cycle.end;
        status.dataIsOver = IsOver(cycle, host.world);
    }
    for (const RegisteredVariable& variable : host.variables) {
        status.variables.push_back(ReadNamed(variable));
    }
    status.lastEvents.assign(host.events.begin(), host.events.end());
    return status;
}

std::vector<KeyEventRecord> Session::EventsSince(std::uint64_t serial) const {
    const auto& events = state_->host.events;
    const auto first = std::ranges::upper_bound(events, serial, {}, &KeyEventRecord::serial);
    return {first, events.end()};
}

const VerticalProfile& Session::Profile() const {
    return state_->host.profile;
}

std::string Session::FlightLog() const {
    constexpr std::size_t kMaxLogBytes = 1U << 20U;
    const std::string path =
        FindFileNoCase(state_->host.options.simFolder, "avq/FlightLog/fpl.log");
    return path.empty() ? "" : ReadWholeFile(path, kMaxLogBytes).value_or("");
}

std::optional<double> Session::NumberedVariable(int number) const {
    return ReadNumbered(state_->host, number);
}

std::optional<NamedVariable> Session::FindVariable(std::string_view name) const {
    return ReadNamed(state_->host, name);
}

std::vector<KeyEventName> KeyEventNames() {
    int count = 0;
    const KeyEventRow* const rows = KeyEventTable(count);
    std::vector<KeyEventName> names;
    for (int i = 0; i < count; ++i) {
        names.push_back({rows[i].number, rows[i].name, rows[i].meaning});
    }
    return names;
}

}  // namespace panelhost
