#include "panelhost/flightgear/controls.h"

#include <algorithm>
#include <cmath>

#include "panelhost/flightgear/packet.h"
#include "panelhost/world/flight_model.h"

namespace panelhost {
namespace {

constexpr double kConfirmS = 0.5;
constexpr int kMostTries = 2;
constexpr double kLeaveFt = 250;  // from here on a selected altitude is climbed to
constexpr double kHoldFt = 75;    // and from here on held

constexpr std::size_t Index(Control control) {
    return static_cast<std::size_t>(control);
}

// A control's row, and its number among those that the row serves.
struct Place {
    const ControlRow* row = nullptr;
    std::size_t tank = 0;
};

Place PlaceOf(std::size_t index) {
    const std::size_t row = std::min(index, Index(Control::TankLevel));
    return {&ControlTable()[row], index - row};
}

std::string Wanted(const Controls& controls, const World& world, std::size_t index) {
    const Place place = PlaceOf(index);
    return place.row->wanted(controls, world, place.tank);
}

bool IsSame(std::string_view a, std::string_view b) {
    const double first = NumberIn(a);
    const double second = NumberIn(b);
    return a == b || std::abs(first - second) <= 1e-6 * std::max(1.0, std::abs(first));
}

// An altitude nobody has selected is flown to by nobody.
bool IsAltitudeSelected(const Controls& controls) {
    return std::isfinite(NumberIn(controls.states[Index(Control::Altitude)].known));
}

// A selected altitude that was set or armed here is flown to from here.
void NoteChange(std::size_t index, const World& world, Controls& controls) {
    const auto control = static_cast<Control>(index);
    if (control == Control::Altitude || control == Control::Vertical) {
        controls.select.captures = true;
        controls.select.climbing =
            world.autopilot.altitudeHold && IsAltitudeSelected(controls) &&
            (controls.select.climbing || std::abs(AltitudeErrorFt(world)) > kLeaveFt);
    }
}

std::string SentText(const Controls& controls, std::size_t index, const std::string& wanted) {
    return static_cast<Control>(index) == Control::AltimeterSetting
               ? ControlNumber(std::round(controls.seaLevelPressureInHg * 100) / 100)
               : wanted;
}

// The last control that must be sent again or for the first time, one past it; 0: none.
std::size_t NoteChanges(double nowS, const World& world, Controls& controls) {
    std::size_t end = 0;
    for (std::size_t i = 0; i < kControlCount; ++i) {
        ControlState& state = controls.states[i];
        std::string wanted = Wanted(controls, world, i);
        const bool again =
            state.tries > 0 && state.tries < kMostTries && nowS - state.sentS > kConfirmS;
        if (wanted != state.here) {
            state.known = wanted;  // a change of the altitude counts from here
            NoteChange(i, world, controls);
            wanted = Wanted(controls, world, i);
            state.known = SentText(controls, i, wanted);
            state.here = std::move(wanted);
            state.tries = 0;
        } else if (!again) {
            continue;
        }
        ++state.tries;
        state.sentS = nowS;
        end = i + 1;
    }
    return end;
}

// What the aircraft's own flight changes of the autopilot: captures.
void FollowFlight(Controls& controls, World& world) {
    Autopilot& autopilot = world.autopilot;
    if (!autopilot.master || !std::isfinite(world.aircraft.altitudeFt)) {
        return;
    }
    CaptureGlideslope(world, autopilot);
    if (controls.select.captures) {
        const bool held = autopilot.altitudeHold;
        CaptureAltitude(world.aircraft, autopilot);
        controls.select.climbing = controls.select.climbing || autopilot.altitudeHold != held;
    }
    if (controls.select.climbing && std::abs(AltitudeErrorFt(world)) < kHoldFt) {
        controls.select.climbing = false;
    }
}

}  // namespace

std::array<std::string, kControlCount> ControlProperties(const AutopilotMapping& mapping) {
    std::array<std::string, kControlCount> properties;
    for (std::size_t i = 0; i < kControlCount; ++i) {
        const Place place = PlaceOf(i);
        properties[i] = PropertyOf(mapping, *place.row, place.tank);
    }
    return properties;
}

void TakeControls(const ControlTexts& told, double nowS, Controls& controls, World& world) {
    for (std::size_t i = 0; i < kControlCount; ++i) {
        ControlState& state = controls.states[i];
        const bool same = IsSame(told[i], state.known);
        if (state.tries > 0 && !same &&
            (state.tries < kMostTries || nowS - state.sentS < kConfirmS)) {
            continue;
        }
        state.tries = 0;
        if (same && controls.agreed) {
            continue;
        }
        state.known = told[i];
        const Place place = PlaceOf(i);
        if (place.row->take != nullptr) {
            place.row->take({told[i], NumberIn(told[i]), place.tank}, controls, world);
        }
    }
    for (std::size_t i = 0; i < kControlCount; ++i) {
        if (controls.states[i].tries == 0) {
            controls.states[i].here = Wanted(controls, world, i);
        }
    }
    controls.agreed = true;
}

std::string SendControls(double nowS, Controls& controls, World& world) {
    if (!controls.agreed) {
        return "";
    }
    const std::size_t before = NoteChanges(nowS, world, controls);
    FollowFlight(controls, world);
    const std::size_t end = std::max(before, NoteChanges(nowS, world, controls));
    std::string packet;
    for (std::size_t i = 0; i < end; ++i) {
        packet += (i > 0 ? "\t" : "") + controls.states[i].known;
    }
    return end > 0 ? packet + "\n" : "";
}

}  // namespace panelhost
