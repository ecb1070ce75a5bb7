#include "panelhost/world/key_events.h"

#include <algorithm>

namespace panelhost {
namespace {

int Signed(std::uint32_t value) {
    return static_cast<std::int32_t>(value);
}

int Course(int degrees) {
    return (degrees % 360 + 359) % 360 + 1;
}

// Binary-coded decimal digits as a number; 0 when a digit is not one.
int FromBcd(std::uint32_t bcd) {
    int number = 0;
    for (int shift = 28; shift >= 0; shift -= 4) {
        const int digit = static_cast<int>(bcd >> static_cast<unsigned>(shift) & 0xFU);
        if (digit > 9) {
            return 0;
        }
        number = number * 10 + digit;
    }
    return number;
}

// 0x11390 and the simulator's four-digit 0x1390 both mean 113.90 MHz.
void SetNav(Receiver& receiver, std::uint32_t value) {
    const int digits = FromBcd(value);
    const int frequency = digits < 10000 ? digits + 10000 : digits;
    if (frequency >= 10800 && frequency <= 11795) {
        receiver.frequency = frequency;
    }
}

void SetAdf(Receiver& receiver, std::uint32_t value) {
    const int kHz = FromBcd(value);
    if (kHz >= 190 && kHz <= 1799) {
        receiver.frequency = kHz;
    }
}

void HoldHeading(World& world, bool on) {
    Autopilot& autopilot = world.autopilot;
    autopilot.headingHold = on;
    if (on) {
        autopilot.navHold = false;
        autopilot.approachHold = false;
    }
}

void HoldNav(World& world, bool on) {
    Autopilot& autopilot = world.autopilot;
    autopilot.navHold = on;
    if (on) {
        autopilot.headingHold = false;
        autopilot.approachHold = false;
    }
}

void HoldApproach(World& world, bool on) {
    Autopilot& autopilot = world.autopilot;
    autopilot.approachHold = on;
    if (on) {
        autopilot.headingHold = false;
        autopilot.navHold = false;
    } else if (autopilot.glideslopeCaptured) {
        autopilot.glideslopeCaptured = false;
    }
}

void HoldAltitude(World& world, bool on) {
    world.autopilot.altitudeHold = on;
    if (on) {
        world.autopilot.verticalSpeedHold = false;
    }
}

void HoldVerticalSpeed(World& world, bool on) {
    world.autopilot.verticalSpeedHold = on;
    if (on) {
        world.autopilot.altitudeHold = false;
    }
}

void HoldAirspeed(World& world, bool on) {
    if (world.autopilot.airspeedHold && !on) {
        world.aircraft.heldAirspeedKt = world.aircraft.indicatedAirspeedKt;
    }
    world.autopilot.airspeedHold = on;
}

void AddAltitude(World& world, int feet) {
    world.autopilot.altitudeTargetFt =
        std::clamp(world.autopilot.altitudeTargetFt + feet, 0, 45000);
}

void AddVerticalSpeed(World& world, int fpm) {
    world.autopilot.verticalSpeedTargetFpm =
        std::clamp(world.autopilot.verticalSpeedTargetFpm + fpm, -6000, 6000);
}

void AddAirspeed(World& world, int kt) {
    world.autopilot.airspeedTargetKt = std::clamp(world.autopilot.airspeedTargetKt + kt, 0, 400);
}

using U = std::uint32_t;

constexpr KeyEventRow kTable[] = {
    {65561, "PAUSE_TOGGLE", "pause or continue", [](World& w, U) { w.paused = !w.paused; }},
    {65580, "AP_MASTER", "autopilot on or off",
     [](World& w, U) { w.autopilot.master = !w.autopilot.master; }},
    {65584, "BAROMETRIC", "altimeter to the present pressure (the built-in one always is)",
     [](World& w, U) { ++w.altimeterSettings; }},
    {65662, "VOR1_OBI_DEC", "NAV1 course 1 degree down",
     [](World& w, U) { w.nav1.courseMag = Course(w.nav1.courseMag - 1); }},
    {65663, "VOR1_OBI_INC", "NAV1 course 1 degree up",
     [](World& w, U) { w.nav1.courseMag = Course(w.nav1.courseMag + 1); }},
    {65708, "NAV1_RADIO_SET", "NAV1 frequency, binary-coded decimal",
     [](World& w, U v) { SetNav(w.nav1, v); }},
    {65709, "NAV2_RADIO_SET", "NAV2 frequency, binary-coded decimal",
     [](World& w, U v) { SetNav(w.nav2, v); }},
    {65714, "ADF_SET", "ADF frequency in kHz, binary-coded decimal",
     [](World& w, U v) { SetAdf(w.adf, v); }},
    {65716, "VOR1_SET", "NAV1 course, degrees magnetic",
     [](World& w, U v) { w.nav1.courseMag = Course(Signed(v)); }},
    {65717, "VOR2_SET", "NAV2 course, degrees magnetic",
     [](World& w, U v) { w.nav2.courseMag = Course(Signed(v)); }},
    {65724, "AP_APR_HOLD", "approach mode on or off",
     [](World& w, U) { HoldApproach(w, !w.autopilot.approachHold); }},
    {65725, "AP_HDG_HOLD", "heading hold on or off",
     [](World& w, U) { HoldHeading(w, !w.autopilot.headingHold); }},
    {65726, "AP_ALT_HOLD", "hold of the selected altitude on or off",
     [](World& w, U) { HoldAltitude(w, !w.autopilot.altitudeHold); }},
    {65729, "AP_NAV1_HOLD", "NAV1 course hold on or off",
     [](World& w, U) { HoldNav(w, !w.autopilot.navHold); }},
    {65752, "PARKING_BRAKES", "parking brake set or released",
     [](World& w, U) { w.aircraft.parkingBrake = !w.aircraft.parkingBrake; }},
    {65790, "SIM_RATE_NORMAL", "simulation rate back to 1",
     [](World& w, U) { w.simulationRate = 1; }},
    {65793, "YAW_DAMPER_TOGGLE", "yaw damper on or off",
     [](World& w, U) { w.autopilot.yawDamper = !w.autopilot.yawDamper; }},
    {65796, "TOGGLE_FLIGHT_DIRECTOR", "flight director on or off",
     [](World& w, U) { w.autopilot.flightDirector = !w.autopilot.flightDirector; }},
    {65802, "AP_APR_HOLD_ON", "approach mode on", [](World& w, U) { HoldApproach(w, true); }},
    {65803, "AP_HDG_HOLD_ON", "heading hold on", [](World& w, U) { HoldHeading(w, true); }},
    {65804, "AP_ALT_HOLD_ON", "altitude hold on", [](World& w, U) { HoldAltitude(w, true); }},
    {65807, "AP_NAV1_HOLD_ON", "NAV1 course hold on", [](World& w, U) { HoldNav(w, true); }},
    {65810, "AP_APR_HOLD_OFF", "approach mode off", [](World& w, U) { HoldApproach(w, false); }},
    {65811, "AP_HDG_HOLD_OFF", "heading hold off", [](World& w, U) { HoldHeading(w, false); }},
    {65812, "AP_ALT_HOLD_OFF", "altitude hold off", [](World& w, U) { HoldAltitude(w, false); }},
    {65815, "AP_NAV1_HOLD_OFF", "NAV1 course hold off", [](World& w, U) { HoldNav(w, false); }},
    {65857, "AP_AIRSPEED_HOLD", "airspeed hold on or off",
     [](World& w, U) { HoldAirspeed(w, !w.autopilot.airspeedHold); }},
    {65858, "AP_AIRSPEED_ON", "airspeed hold on", [](World& w, U) { HoldAirspeed(w, true); }},
    {65859, "AP_AIRSPEED_OFF", "airspeed hold off", [](World& w, U) { HoldAirspeed(w, false); }},
    {65879, "HEADING_BUG_INC", "heading bug 1 degree up",
     [](World& w, U) { w.autopilot.headingBugMag = Course(w.autopilot.headingBugMag + 1); }},
    {65880, "HEADING_BUG_DEC", "heading bug 1 degree down",
     [](World& w, U) { w.autopilot.headingBugMag = Course(w.autopilot.headingBugMag - 1); }},
    {65892, "AP_ALT_VAR_INC", "selected altitude 100 ft up",
     [](World& w, U) { AddAltitude(w, 100); }},
    {65893, "AP_ALT_VAR_DEC", "selected altitude 100 ft down",
     [](World& w, U) { AddAltitude(w, -100); }},
    {65894, "AP_VS_VAR_INC", "vertical speed 100 ft/min up",
     [](World& w, U) { AddVerticalSpeed(w, 100); }},
    {65895, "AP_VS_VAR_DEC", "vertical speed 100 ft/min down",
     [](World& w, U) { AddVerticalSpeed(w, -100); }},
    {65896, "AP_SPD_VAR_INC", "airspeed target 1 kt up", [](World& w, U) { AddAirspeed(w, 1); }},
    {65897, "AP_SPD_VAR_DEC", "airspeed target 1 kt down", [](World& w, U) { AddAirspeed(w, -1); }},
    {66036, "AP_VS_VAR_SET", "vertical speed target, ft/min",
     [](World& w, U v) {
         w.autopilot.verticalSpeedTargetFpm = std::clamp(Signed(v), -6000, 6000);
     }},
    {66037, "AP_SPD_VAR_SET", "airspeed target, kt",
     [](World& w, U v) { w.autopilot.airspeedTargetKt = std::clamp(Signed(v), 0, 400); }},
    {66042, "HEADING_BUG_SET", "heading bug, degrees magnetic",
     [](World& w, U v) { w.autopilot.headingBugMag = Course(Signed(v)); }},
    {66102, "AP_VS_HOLD", "vertical speed hold on or off",
     [](World& w, U) { HoldVerticalSpeed(w, !w.autopilot.verticalSpeedHold); }},
    {66124, "AP_ALT_VAR_SET", "selected altitude, ft",
     [](World& w, U v) { w.autopilot.altitudeTargetFt = std::clamp(Signed(v), 0, 45000); }},
    {66293, "TOGGLE_AVIONICS_MASTER", "avionics power on or off",
     [](World& w, U) { w.avionicsPower = !w.avionicsPower; }},
};

}  // namespace

const KeyEventRow* FindKeyEvent(std::int32_t number) {
    const auto* const row =
        std::find_if(std::begin(kTable), std::end(kTable),
                     [number](const KeyEventRow& r) { return r.number == number; });
    return row == std::end(kTable) ? nullptr : row;
}

const KeyEventRow* KeyEventTable(int& count) {
    count = static_cast<int>(std::size(kTable));
    return kTable;
}

}  // namespace panelhost
