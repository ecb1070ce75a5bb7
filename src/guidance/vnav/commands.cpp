#include <algorithm>
#include <cmath>

#include "base/messages.h"
#include "base/redraw.h"
#include "base/text.h"
#include "geometry/geometry.h"
#include "guidance/guidance_state.h"
#include "guidance/vnav/flown.h"
#include "settings/aircraft_performance.h"
#include "settings/settings.h"
#include "simlink/aircraft_state.h"
#include "simlink/key_events.h"

namespace avq1 {
namespace {

constexpr double kHighestAltitudeFt = 60000;
constexpr std::int32_t kMostFpm = 3000;
constexpr std::int32_t kLeastClimbFpm = 1500;
constexpr std::int32_t kStepDownFpm = -1000;
constexpr double kHundredFpm = 100;
constexpr double kKeepFpm = 25;     // beyond its hundred, before another is sent
constexpr double kBeyondFpm = 1e6;  // any limit
constexpr double kCloseNm = 5;
constexpr double kRoundOffMinutes = 0.12;
constexpr double kResumeAboveKt = 10;
constexpr double kLevelFt = 200;  // from a target: the autopilot rounds off, nothing new is sent
constexpr std::int32_t kSpeedSuspended = 2;

void ReadBack(SentTarget& sent, double shown) {
    if (sent.tick != kNothingSent && sent.tick != TruncateToInteger(aircraft.tick)) {
        sent.reference = TruncateToInteger(shown);
        sent.tick = kNothingSent;
    }
}

// Whole hundreds below `fpm`; those kept stay as long as `fpm` is within them or close to them.
std::int32_t HundredsOf(double fpm) {
    const double kept = vnav.vsHundreds;
    const bool keeps = vnav.lastVsSent != kNothingSent && vnav.vsHundreds != kNothingSent &&
                       fpm >= kept - kKeepFpm && fpm <= kept + kHundredFpm + kKeepFpm;
    if (!keeps) {
        vnav.vsHundreds = static_cast<std::int32_t>(std::min(fpm, kBeyondFpm) * 0.01) * 100;
    }
    return vnav.vsHundreds;
}

// Feet a minute to lose or gain `feet` within `distanceNm`; below 0 when there is none to be had.
double RequiredFpm(double feet, double distanceNm) {
    if (aircraft.groundSpeedKt <= 0) {
        return distanceNm > 0 ? 0 : -1;
    }
    const double minutes = distanceNm / (aircraft.groundSpeedKt / 60);
    return minutes > 0 && std::isfinite(feet) ? feet / minutes : -1;
}

// The autopilot rounds off into an altitude: what it flies before that.
double RoundOffNm() {
    return kRoundOffMinutes * aircraft.groundSpeedKt / 60;
}

// Close to a restriction the descent aims a little before it, so that the aircraft is level there.
double DescentDistanceNm() {
    return vnav.distanceToTarget < kCloseNm
               ? std::max(vnav.distanceToTarget - RoundOffNm(), RoundOffNm())
               : vnav.distanceToTarget;
}

bool LowSpeedInClimb() {
    if (aircraft.indicatedAirspeedKt < performance.minVnavIas) {
        vnav.lowSpeedHold = 1;
    } else if (aircraft.indicatedAirspeedKt > performance.minVnavIas + kResumeAboveKt) {
        vnav.lowSpeedHold = 0;
    }
    return vnav.lowSpeedHold == 1;
}

void ChooseClimbSpeed() {
    const double required =
        RequiredFpm(vnav.targetAltitude - aircraft.altitudeFt, vnav.distanceToTarget);
    if (vnav.distanceToTarget <= 0 && aircraft.groundSpeedKt <= 0) {
        return;
    }
    vnav.requiredFpm = required;
    const bool close = vnav.targetAltitude - aircraft.altitudeFt <= kLevelFt ||
                       vnav.distanceToTarget < 2 * RoundOffNm();
    if (vnav.lastVsSent <= 0 || !close) {
        vnav.vsCommand = std::clamp(HundredsOf(std::max(required, 0.0)), kLeastClimbFpm, kMostFpm);
    }
    if (LowSpeedInClimb() || aircraft.altitudeFt - vnav.targetAltitude > kLevelFt) {
        vnav.vsCommand = 0;  // a restriction already climbed through is passed level
    }
}

void ChooseDescentSpeed() {
    const double aboveFt = aircraft.altitudeFt - vnav.targetAltitude;
    if (aboveFt < 0) {
        vnav.vsCommand = 0;
        return;
    }
    if (vnav.requiredFpm < 0) {
        return;
    }
    const bool descends = vnav.lastVsSent < 0 && vnav.lastVsSent != kNothingSent;
    if (!descends || aboveFt > kLevelFt) {
        vnav.vsCommand = -std::min(HundredsOf(vnav.requiredFpm), kMostFpm);
    }
    if (aircraft.indicatedAirspeedKt < performance.minVnavIas) {
        vnav.vsCommand = 0;
    }
}

void ChooseVerticalSpeed() {
    switch (vnav.Phase()) {
        case VerticalPhase::Climb:
            ChooseClimbSpeed();
            return;
        case VerticalPhase::Descent:
            ChooseDescentSpeed();
            return;
        case VerticalPhase::Cruise:
            break;
    }
    // Nothing but the way down to a lower cruise altitude; a climb through it is ended.
    if (vnav.lastVsSent == kNothingSent && vnav.crossingIndex == 0 &&
        aircraft.altitudeFt - vnav.cruiseAltitude > (vnav.vsCommand > 0 ? 0 : kLevelFt)) {
        vnav.vsCommand = kStepDownFpm;
    }
}

}  // namespace

void DisengageVnav(const char* reason) {
    if (guidance.vnavEngaged == 1) {
        guidance.vnavEngaged = 0;
        AppendMessage(Format("VNAV OFF - %s", reason));
        RequestUnitRedraw();
    }
}

void ToggleVnav() {
    if (guidance.vnavEngaged == 1) {
        guidance.vnavEngaged = 0;
    } else if (HasActiveWaypoint()) {
        vnav.requiredFpm = 0;
        vnav.altitude = {};
        vnav.speed = {};
        vnav.vsCommand = kNothingSent;
        vnav.lastVsSent = kNothingSent;
        guidance.vnavEngaged = 1;
        vnav.forceSpeed = 1;
        if (settings.VnavSetSpd == kSpeedSuspended) {
            settings.VnavSetSpd = 1;
        }
    }
    RequestUnitRedraw();
}

bool TurnedByPilot(const SentTarget& sent, double now, double before) {
    return sent.set == 1 && sent.tick == kNothingSent && sent.reference != kNothingSent &&
           TruncateToInteger(now) == TruncateToInteger(before) &&
           TruncateToInteger(now) != sent.reference;
}

void ReadBackCommands() {
    ReadBack(vnav.altitude, aircraft.apAltitudeTargetFt);
    ReadBack(vnav.speed, aircraft.apAirspeedTargetKt);
}

void SendAltitude(double feet) {
    if (settings.VnavSetAlts == 1) {
        vnav.altitude.last = static_cast<std::int32_t>(std::clamp(feet, 0.0, kHighestAltitudeFt));
        SendKeyEvent(KeyEvent::AltitudeSet, vnav.altitude.last);
    }
    vnav.altitude.set = 1;
    vnav.altitude.tick = TruncateToInteger(aircraft.tick);
}

void CommandVerticalSpeed() {
    if (vnav.Phase() == VerticalPhase::Descent) {
        vnav.requiredFpm =
            RequiredFpm(aircraft.altitudeFt - vnav.targetAltitude, DescentDistanceNm());
    }
    if (guidance.vnavEngaged != 1) {
        return;
    }
    if (settings.VnavOffOnManAltChg == 1 &&
        TurnedByPilot(vnav.altitude, aircraft.apAltitudeTargetFt,
                      aircraft.previousApAltitudeTargetFt)) {
        DisengageVnav("ALTITUDE CHANGED");
        return;
    }
    if (vnav.altitude.set == 0) {
        const bool cruising = vnav.Phase() == VerticalPhase::Cruise;
        SendAltitude(cruising ? vnav.cruiseAltitude : vnav.targetAltitude);
        vnav.lastVsSent = kNothingSent;
    }
    ChooseVerticalSpeed();
    if (vnav.vsCommand != vnav.lastVsSent && vnav.vsCommand != kNothingSent) {
        SendKeyEvent(KeyEvent::VerticalSpeedSet, vnav.vsCommand);
        vnav.lastVsSent = vnav.vsCommand;
    }
}

}  // namespace avq1
