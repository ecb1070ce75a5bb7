#include "panelhost/flightgear/controls.h"

#include <algorithm>
#include <cmath>

#include "panelhost/base/text.h"
#include "panelhost/flightgear/packet.h"
#include "panelhost/world/flight_model.h"

namespace panelhost {
namespace {

constexpr double kConfirmS = 0.5;
constexpr int kMostTries = 2;
constexpr double kClimbFpm = 1800;  // when no vertical speed was ever set
constexpr double kMostFpm = 6000;
constexpr double kStepFpm = 50;
constexpr double kAltitudeTimeS = 15;
constexpr double kLeaveFt = 250;  // from here on a selected altitude is climbed to
constexpr double kHoldFt = 75;    // and from here on held

constexpr std::size_t Index(Control control) {
    return static_cast<std::size_t>(control);
}

std::string Number(double value) {
    return Format("%.10g", value);
}

std::string Flag(bool on) {
    return on ? "true" : "false";
}

bool IsSame(std::string_view a, std::string_view b) {
    const double first = NumberIn(a);
    const double second = NumberIn(b);
    return a == b || std::abs(first - second) <= 1e-6 * std::max(1.0, std::abs(first));
}

double AltitudeErrorFt(const World& world) {
    return world.autopilot.altitudeTargetFt - world.aircraft.altitudeFt;
}

// Towards the selected altitude, less and less on the last feet.
double SelectFpm(const World& world) {
    const double set = std::abs(world.autopilot.verticalSpeedTargetFpm);
    const double bound = set > 0 ? std::min(set, kMostFpm) : kClimbFpm;
    const double wanted = std::clamp(AltitudeErrorFt(world) * 60 / kAltitudeTimeS, -bound, bound);
    return std::abs(wanted) < bound ? std::round(wanted / kStepFpm) * kStepFpm : wanted;
}

// ---- what the world asks for ----
const std::string& LateralText(const Controls& controls, const Autopilot& autopilot) {
    const AutopilotMapping::Axis& axis = controls.mapping.lateral;
    if (!autopilot.master) {
        return axis.off;
    }
    return autopilot.approachHold  ? axis.modes[2]
           : autopilot.navHold     ? axis.modes[1]
           : autopilot.headingHold ? axis.modes[0]
                                   : axis.off;
}

const std::string& VerticalText(const Controls& controls, const Autopilot& autopilot) {
    const AutopilotMapping::Axis& axis = controls.mapping.vertical;
    if (!autopilot.master) {
        return axis.off;
    }
    if (autopilot.approachHold && autopilot.glideslopeCaptured) {
        return axis.modes[2];
    }
    if (autopilot.altitudeHold) {
        return axis.modes[controls.select.climbing ? 1 : 0];
    }
    return autopilot.verticalSpeedHold ? axis.modes[1] : axis.off;
}

std::string SwitchText(const SwitchMapping& mapping, bool on) {
    return mapping.property.empty() ? "" : on ? mapping.on : mapping.off;
}

std::string Wanted(const Controls& controls, const World& world, std::size_t index) {
    const Autopilot& autopilot = world.autopilot;
    if (index >= Index(Control::TankLevel)) {
        const int tank = static_cast<int>(index - Index(Control::TankLevel));
        const auto& tanks = controls.mapping.tanks;
        const auto found = std::ranges::find(tanks, tank);
        return found == tanks.end()
                   ? ""
                   : Number(world.aircraft
                                .fuelGallons[static_cast<std::size_t>(found - tanks.begin())]);
    }
    switch (static_cast<Control>(index)) {
        case Control::HeadingBug:
            return Number(autopilot.headingBugMag);
        case Control::VerticalSpeed:
            return Number(autopilot.altitudeHold && controls.select.climbing
                              ? SelectFpm(world)
                              : autopilot.verticalSpeedTargetFpm);
        case Control::Airspeed:
            return Number(autopilot.airspeedTargetKt);
        case Control::Altitude:
            return Number(autopilot.altitudeTargetFt);
        case Control::Lateral:
            return LateralText(controls, autopilot);
        case Control::Vertical:
            return VerticalText(controls, autopilot);
        case Control::Speed:
            return autopilot.airspeedHold ? controls.mapping.speed.modes[0]
                                          : controls.mapping.speed.off;
        case Control::Master:
            return SwitchText(controls.mapping.master, autopilot.master);
        case Control::Avionics:
            return SwitchText(controls.mapping.avionics, world.avionicsPower);
        case Control::Nav1Course:
            return Number(world.nav1.courseMag);
        case Control::Nav1Frequency:
            return Number(world.nav1.frequency / 100.0);
        case Control::Nav2Course:
            return Number(world.nav2.courseMag);
        case Control::Nav2Frequency:
            return Number(world.nav2.frequency / 100.0);
        case Control::AdfFrequency:
            return Number(world.adf.frequency);
        case Control::AltimeterSetting:  // changes with the count of times it was asked for
            return Number(world.altimeterSettings);
        case Control::FreezeClock:
        case Control::FreezeMaster:
            return Flag(world.paused);
        case Control::Rate:
            return Number(world.simulationRate);
        case Control::ParkingBrake:
            return Number(world.aircraft.parkingBrake ? 1 : 0);
        default:
            return "";
    }
}

// ---- what the simulator tells ----
void TakeLateral(const AutopilotMapping& mapping, std::string_view text, Autopilot& autopilot) {
    const auto& modes = mapping.lateral.modes;
    const auto is = [text](const std::string& mode) { return !mode.empty() && mode == text; };
    const bool approach = is(modes[2]) && (autopilot.approachHold || modes[2] != modes[1]);
    autopilot.headingHold = is(modes[0]);
    autopilot.approachHold = approach;
    autopilot.navHold = is(modes[1]) && !approach;
}

void TakeVertical(std::string_view text, Controls& controls, Autopilot& autopilot) {
    const auto& modes = controls.mapping.vertical.modes;
    const auto is = [text](const std::string& mode) { return !mode.empty() && mode == text; };
    autopilot.altitudeHold = is(modes[0]);
    autopilot.verticalSpeedHold = is(modes[1]);
    autopilot.glideslopeCaptured = is(modes[2]);
    controls.select = {};
}

void TakeWhole(double value, double least, double most, int& whole) {
    if (std::isfinite(value)) {
        whole = static_cast<int>(std::lround(std::clamp(value, least, most)));
    }
}

int Course(double degrees) {
    const int whole = static_cast<int>(std::lround(Normalise360(degrees)));
    return whole == 0 ? 360 : whole;
}

void TakeCourse(double degrees, int& course) {
    if (std::isfinite(degrees)) {
        course = Course(degrees);
    }
}

void TakeTank(double gallons, std::size_t tank, const Controls& controls, Aircraft& aircraft) {
    for (std::size_t i = 0; i < controls.mapping.tanks.size(); ++i) {
        if (controls.mapping.tanks[i] == static_cast<int>(tank)) {
            aircraft.fuelGallons[i] = std::isfinite(gallons) ? std::max(gallons, 0.0) : 0;
        }
    }
}

// Of the autopilot: true when the control is one of its own.
bool TakeAutopilot(Control control, std::string_view text, Controls& controls, World& world) {
    const AutopilotMapping& mapping = controls.mapping;
    const double value = NumberIn(text);
    Autopilot& autopilot = world.autopilot;
    switch (control) {
        case Control::HeadingBug:
            TakeCourse(value, autopilot.headingBugMag);
            return true;
        case Control::VerticalSpeed:
            TakeWhole(value, -kMostFpm, kMostFpm, autopilot.verticalSpeedTargetFpm);
            return true;
        case Control::Airspeed:
            TakeWhole(value, 0, 400, autopilot.airspeedTargetKt);
            return true;
        case Control::Altitude:
            TakeWhole(value, 0, 60000, autopilot.altitudeTargetFt);
            controls.select = {};
            return true;
        case Control::Lateral:
            TakeLateral(mapping, text, autopilot);
            break;
        case Control::Vertical:
            TakeVertical(text, controls, autopilot);
            break;
        case Control::Speed:
            autopilot.airspeedHold = text == mapping.speed.modes[0] && !text.empty();
            return true;
        case Control::Master:
            if (!mapping.master.property.empty()) {
                autopilot.master = text == mapping.master.on;
            }
            return true;
        default:
            return false;
    }
    if (mapping.master.property.empty()) {
        autopilot.master = controls.states[Index(Control::Lateral)].known != mapping.lateral.off ||
                           controls.states[Index(Control::Vertical)].known != mapping.vertical.off;
    }
    return true;
}

void TakeOther(std::size_t index, std::string_view text, const Controls& controls, World& world) {
    const double value = NumberIn(text);
    if (index >= Index(Control::TankLevel)) {
        TakeTank(value, index - Index(Control::TankLevel), controls, world.aircraft);
        return;
    }
    switch (static_cast<Control>(index)) {
        case Control::Avionics:
            world.avionicsPower =
                controls.mapping.avionics.property.empty() || text == controls.mapping.avionics.on;
            return;
        case Control::Nav1Course:
            return TakeCourse(value, world.nav1.courseMag);
        case Control::Nav1Frequency:
            return TakeWhole(value * 100, 0, 20000, world.nav1.frequency);
        case Control::Nav2Course:
            return TakeCourse(value, world.nav2.courseMag);
        case Control::Nav2Frequency:
            return TakeWhole(value * 100, 0, 20000, world.nav2.frequency);
        case Control::AdfFrequency:
            return TakeWhole(value, 0, 2000, world.adf.frequency);
        case Control::FreezeMaster:
            world.paused = value > 0;
            return;
        case Control::Rate:
            world.simulationRate = value > 0 ? std::clamp(value, 0.25, 64.0) : 1;
            return;
        case Control::ParkingBrake:
            world.aircraft.parkingBrake = value > 0;
            return;
        default:
            return;
    }
}

// ---- sending ----
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
               ? Number(std::round(controls.seaLevelPressureInHg * 100) / 100)
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

constexpr ControlRow kRows[] = {
    {Control::HeadingBug, "degrees magnetic", "66042, 65879, 65880", {107}},
    {Control::VerticalSpeed, "ft/min", "66036, 65894, 65895, a selected altitude", {}},
    {Control::Airspeed, "kt", "66037, 65896, 65897", {116}},
    {Control::Altitude, "ft", "66124, 65892, 65893", {109}},
    {Control::Lateral, "mode", "65725, 65803, 65811, 65729, 65807, 65815, 65724, 65802, 65810", {}},
    {Control::Vertical, "mode", "65726, 65804, 65812, 66102, captures", {}},
    {Control::Speed, "mode", "65857, 65858, 65859", {}},
    {Control::Master, "switch", "65580", {}},
    {Control::Avionics, "switch", "66293", {}},
    {Control::Nav1Course, "degrees magnetic", "65716, 65662, 65663", {45}},
    {Control::Nav1Frequency, "MHz", "65708", {}},
    {Control::Nav2Course, "degrees magnetic", "65717", {}},
    {Control::Nav2Frequency, "MHz", "65709", {}},
    {Control::AdfFrequency, "kHz", "65714", {}},
    {Control::AltimeterSetting, "inHg", "65584", {}},
    {Control::FreezeClock, "true or false", "65561", {}},
    {Control::FreezeMaster, "true or false", "65561", {}},
    {Control::Rate, "times", "65790, the page", {336}},
    {Control::ParkingBrake, "0 or 1", "65752", {323}},
    {Control::TankLevel, "US gallons", "the data service, the page", {}},
};

}  // namespace

std::span<const ControlRow> ControlTable() {
    return kRows;
}

std::string PropertyOf(const AutopilotMapping& mapping, Control control, int number) {
    const auto orUnused = [](const std::string& property) {
        return property.empty() ? std::string(kUnusedProperty) : property;
    };
    switch (control) {
        case Control::HeadingBug:
            return orUnused(mapping.headingBug);
        case Control::VerticalSpeed:
            return orUnused(mapping.verticalSpeed);
        case Control::Airspeed:
            return orUnused(mapping.airspeed);
        case Control::Altitude:
            return orUnused(mapping.altitude);
        case Control::Lateral:
            return orUnused(mapping.lateral.property);
        case Control::Vertical:
            return orUnused(mapping.vertical.property);
        case Control::Speed:
            return orUnused(mapping.speed.property);
        case Control::Master:
            return orUnused(mapping.master.property);
        case Control::Avionics:
            return orUnused(mapping.avionics.property);
        case Control::Nav1Course:
            return "/instrumentation/nav[0]/radials/selected-deg";
        case Control::Nav1Frequency:
            return "/instrumentation/nav[0]/frequencies/selected-mhz";
        case Control::Nav2Course:
            return "/instrumentation/nav[1]/radials/selected-deg";
        case Control::Nav2Frequency:
            return "/instrumentation/nav[1]/frequencies/selected-mhz";
        case Control::AdfFrequency:
            return "/instrumentation/adf[0]/frequencies/selected-khz";
        case Control::AltimeterSetting:
            return "/instrumentation/altimeter/setting-inhg";
        case Control::FreezeClock:
            return "/sim/freeze/clock";
        case Control::FreezeMaster:
            return "/sim/freeze/master";
        case Control::Rate:
            return "/sim/speed-up";
        case Control::ParkingBrake:
            return "/controls/gear/brake-parking";
        default:
            return Format("/consumables/fuel/tank[%d]/level-gal_us", number);
    }
}

std::array<std::string, kControlCount> ControlProperties(const AutopilotMapping& mapping) {
    std::array<std::string, kControlCount> properties;
    for (std::size_t i = 0; i < kControlCount; ++i) {
        const std::size_t row = std::min(i, Index(Control::TankLevel));
        properties[i] = PropertyOf(mapping, static_cast<Control>(row), static_cast<int>(i - row));
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
        if (!TakeAutopilot(static_cast<Control>(i), told[i], controls, world)) {
            TakeOther(i, told[i], controls, world);
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
