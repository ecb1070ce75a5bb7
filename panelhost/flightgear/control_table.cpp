// The rows of controls.h: what each control is called there, what this side asks for and what
// becomes of it here.
#include <algorithm>
#include <cmath>

#include "panelhost/base/text.h"
#include "panelhost/flightgear/controls.h"
#include "panelhost/flightgear/packet.h"
#include "panelhost/world/flight_model.h"

namespace panelhost {
namespace {

using C = const Controls&;
using W = const World&;
using M = const AutopilotMapping&;
using T = const ToldText&;

constexpr double kClimbFpm = 1800;  // when no vertical speed was ever set
constexpr double kMostFpm = 6000;
constexpr double kStepFpm = 50;
constexpr double kAltitudeTimeS = 15;

std::string Flag(bool on) {
    return on ? "true" : "false";
}

// ---- what the world asks for ----
// Towards the selected altitude, less and less on the last feet.
double SelectFpm(const World& world) {
    const double set = std::abs(world.autopilot.verticalSpeedTargetFpm);
    const double bound = set > 0 ? std::min(set, kMostFpm) : kClimbFpm;
    const double wanted = std::clamp(AltitudeErrorFt(world) * 60 / kAltitudeTimeS, -bound, bound);
    return std::abs(wanted) < bound ? std::round(wanted / kStepFpm) * kStepFpm : wanted;
}

std::string LateralText(C controls, W world, std::size_t) {
    const Autopilot& autopilot = world.autopilot;
    const AutopilotMapping::Axis& axis = controls.mapping.lateral;
    if (!autopilot.master) {
        return axis.off;
    }
    return autopilot.approachHold  ? axis.modes[2]
           : autopilot.navHold     ? axis.modes[1]
           : autopilot.headingHold ? axis.modes[0]
                                   : axis.off;
}

std::string VerticalText(C controls, W world, std::size_t) {
    const Autopilot& autopilot = world.autopilot;
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

std::string SpeedText(C controls, W world, std::size_t) {
    const AutopilotMapping::Axis& axis = controls.mapping.speed;
    return world.autopilot.airspeedHold ? axis.modes[0] : axis.off;
}

std::string FpmText(C controls, W world, std::size_t) {
    return ControlNumber(world.autopilot.altitudeHold && controls.select.climbing
                             ? SelectFpm(world)
                             : world.autopilot.verticalSpeedTargetFpm);
}

std::string SwitchText(const SwitchMapping& mapping, bool on) {
    return mapping.property.empty() ? "" : on ? mapping.on : mapping.off;
}

// Where AVQ1 has the simulator's tank of a number; past the end when it has none.
std::size_t PlaceOfTank(C controls, std::size_t tank) {
    const auto& tanks = controls.mapping.tanks;
    return static_cast<std::size_t>(std::ranges::find(tanks, static_cast<int>(tank)) -
                                    tanks.begin());
}

std::string TankText(C controls, W world, std::size_t tank) {
    const std::size_t place = PlaceOfTank(controls, tank);
    return place < controls.mapping.tanks.size() ? ControlNumber(world.aircraft.fuelGallons[place])
                                                 : "";
}

// ---- what the simulator tells ----
// Without a switch of its own the autopilot is on while an axis is.
void TakeMasterOfAxes(const Controls& controls, World& world) {
    const AutopilotMapping& mapping = controls.mapping;
    const auto known = [&](Control control) -> const std::string& {
        return controls.states[static_cast<std::size_t>(control)].known;
    };
    if (mapping.master.property.empty()) {
        world.autopilot.master = known(Control::Lateral) != mapping.lateral.off ||
                                 known(Control::Vertical) != mapping.vertical.off;
    }
}

bool IsMode(const std::string& mode, std::string_view text) {
    return !mode.empty() && mode == text;
}

void TakeLateral(T told, Controls& controls, World& world) {
    const auto& modes = controls.mapping.lateral.modes;
    Autopilot& autopilot = world.autopilot;
    const bool approach =
        IsMode(modes[2], told.text) && (autopilot.approachHold || modes[2] != modes[1]);
    autopilot.headingHold = IsMode(modes[0], told.text);
    autopilot.approachHold = approach;
    autopilot.navHold = IsMode(modes[1], told.text) && !approach;
    TakeMasterOfAxes(controls, world);
}

void TakeVertical(T told, Controls& controls, World& world) {
    const auto& modes = controls.mapping.vertical.modes;
    Autopilot& autopilot = world.autopilot;
    autopilot.altitudeHold = IsMode(modes[0], told.text);
    autopilot.verticalSpeedHold = IsMode(modes[1], told.text);
    autopilot.glideslopeCaptured = IsMode(modes[2], told.text);
    controls.select = {};
    TakeMasterOfAxes(controls, world);
}

void TakeMaster(T told, Controls& controls, World& world) {
    if (!controls.mapping.master.property.empty()) {
        world.autopilot.master = told.text == controls.mapping.master.on;
    }
}

void TakeAvionics(T told, Controls& controls, World& world) {
    const SwitchMapping& mapping = controls.mapping.avionics;
    world.avionicsPower = mapping.property.empty() || told.text == mapping.on;
}

void TakeWhole(double value, double least, double most, int& whole) {
    if (std::isfinite(value)) {
        whole = static_cast<int>(std::lround(std::clamp(value, least, most)));
    }
}

void TakeFrequency(T told, int& hundredths) {
    TakeWhole(told.value * 100, 0, 20000, hundredths);
}

void TakeCourse(T told, int& course) {
    if (std::isfinite(told.value)) {
        const int whole = static_cast<int>(std::lround(Normalise360(told.value)));
        course = whole == 0 ? 360 : whole;
    }
}

void TakeAltitude(T told, Controls& controls, World& world) {
    TakeWhole(told.value, 0, 60000, world.autopilot.altitudeTargetFt);
    controls.select = {};
}

void TakeRate(T told, Controls&, World& world) {
    world.simulationRate = told.value > 0 ? std::clamp(told.value, 0.25, 64.0) : 1;
}

void TakeTank(T told, Controls& controls, World& world) {
    const std::size_t place = PlaceOfTank(controls, told.tank);
    if (place < controls.mapping.tanks.size()) {
        world.aircraft.fuelGallons[place] =
            std::isfinite(told.value) ? std::max(told.value, 0.0) : 0;
    }
}

std::string PausedText(C, W world, std::size_t) {
    return Flag(world.paused);
}

constexpr ControlRow kRows[] = {
    {.control = Control::HeadingBug,
     .unit = "degrees magnetic",
     .sentBy = "66042, 65879, 65880",
     .variables = {107},
     .mapped = [](M m) -> const std::string& { return m.headingBug; },
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.autopilot.headingBugMag); },
     .take = [](T told, Controls&, World& w) { TakeCourse(told, w.autopilot.headingBugMag); }},
    {.control = Control::VerticalSpeed,
     .unit = "ft/min",
     .sentBy = "66036, 65894, 65895, a selected altitude",
     .mapped = [](M m) -> const std::string& { return m.verticalSpeed; },
     .wanted = FpmText,
     .take =
         [](T told, Controls&, World& w) {
             TakeWhole(told.value, -kMostFpm, kMostFpm, w.autopilot.verticalSpeedTargetFpm);
         }},
    {.control = Control::Airspeed,
     .unit = "kt",
     .sentBy = "66037, 65896, 65897",
     .variables = {116},
     .mapped = [](M m) -> const std::string& { return m.airspeed; },
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.autopilot.airspeedTargetKt); },
     .take = [](T told, Controls&,
                World& w) { TakeWhole(told.value, 0, 400, w.autopilot.airspeedTargetKt); }},
    {.control = Control::Altitude,
     .unit = "ft",
     .sentBy = "66124, 65892, 65893",
     .variables = {109},
     .mapped = [](M m) -> const std::string& { return m.altitude; },
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.autopilot.altitudeTargetFt); },
     .take = TakeAltitude},
    {.control = Control::Lateral,
     .unit = "mode",
     .sentBy = "65725, 65803, 65811, 65729, 65807, 65815, 65724, 65802, 65810",
     .mapped = [](M m) -> const std::string& { return m.lateral.property; },
     .wanted = LateralText,
     .take = TakeLateral},
    {.control = Control::Vertical,
     .unit = "mode",
     .sentBy = "65726, 65804, 65812, 66102, captures",
     .mapped = [](M m) -> const std::string& { return m.vertical.property; },
     .wanted = VerticalText,
     .take = TakeVertical},
    {.control = Control::Speed,
     .unit = "mode",
     .sentBy = "65857, 65858, 65859",
     .mapped = [](M m) -> const std::string& { return m.speed.property; },
     .wanted = SpeedText,
     .take =
         [](T told, Controls& c, World& w) {
             w.autopilot.airspeedHold = IsMode(c.mapping.speed.modes[0], told.text);
         }},
    {.control = Control::Master,
     .unit = "switch",
     .sentBy = "65580",
     .mapped = [](M m) -> const std::string& { return m.master.property; },
     .wanted = [](C c, W w,
                  std::size_t) { return SwitchText(c.mapping.master, w.autopilot.master); },
     .take = TakeMaster},
    {.control = Control::Avionics,
     .unit = "switch",
     .sentBy = "66293",
     .mapped = [](M m) -> const std::string& { return m.avionics.property; },
     .wanted = [](C c, W w,
                  std::size_t) { return SwitchText(c.mapping.avionics, w.avionicsPower); },
     .take = TakeAvionics},
    {.control = Control::Nav1Course,
     .unit = "degrees magnetic",
     .sentBy = "65716, 65662, 65663",
     .variables = {45},
     .property = "/instrumentation/nav[0]/radials/selected-deg",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.nav1.courseMag); },
     .take = [](T told, Controls&, World& w) { TakeCourse(told, w.nav1.courseMag); }},
    {.control = Control::Nav1Frequency,
     .unit = "MHz",
     .sentBy = "65708",
     .property = "/instrumentation/nav[0]/frequencies/selected-mhz",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.nav1.frequency / 100.0); },
     .take = [](T told, Controls&, World& w) { TakeFrequency(told, w.nav1.frequency); }},
    {.control = Control::Nav2Course,
     .unit = "degrees magnetic",
     .sentBy = "65717",
     .property = "/instrumentation/nav[1]/radials/selected-deg",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.nav2.courseMag); },
     .take = [](T told, Controls&, World& w) { TakeCourse(told, w.nav2.courseMag); }},
    {.control = Control::Nav2Frequency,
     .unit = "MHz",
     .sentBy = "65709",
     .property = "/instrumentation/nav[1]/frequencies/selected-mhz",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.nav2.frequency / 100.0); },
     .take = [](T told, Controls&, World& w) { TakeFrequency(told, w.nav2.frequency); }},
    {.control = Control::AdfFrequency,
     .unit = "kHz",
     .sentBy = "65714",
     .property = "/instrumentation/adf[0]/frequencies/selected-khz",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.adf.frequency); },
     .take = [](T told, Controls&, World& w) { TakeWhole(told.value, 0, 2000, w.adf.frequency); }},
    {.control = Control::AltimeterSetting,  // asked for by the count of its requests
     .unit = "inHg",
     .sentBy = "65584",
     .property = "/instrumentation/altimeter/setting-inhg",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.altimeterSettings); }},
    {.control = Control::FreezeClock,
     .unit = "true or false",
     .sentBy = "65561",
     .property = "/sim/freeze/clock",
     .wanted = PausedText},
    {.control = Control::FreezeMaster,
     .unit = "true or false",
     .sentBy = "65561",
     .property = "/sim/freeze/master",
     .wanted = PausedText,
     .take = [](T told, Controls&, World& w) { w.paused = told.value > 0; }},
    {.control = Control::Rate,
     .unit = "times",
     .sentBy = "65790, the page",
     .variables = {336},
     .property = "/sim/speed-up",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.simulationRate); },
     .take = TakeRate},
    {.control = Control::ParkingBrake,
     .unit = "0 or 1",
     .sentBy = "65752",
     .variables = {323},
     .property = "/controls/gear/brake-parking",
     .wanted = [](C, W w, std::size_t) { return ControlNumber(w.aircraft.parkingBrake ? 1 : 0); },
     .take = [](T told, Controls&, World& w) { w.aircraft.parkingBrake = told.value > 0; }},
    {.control = Control::TankLevel,
     .unit = "US gallons",
     .sentBy = "the data service, the page",
     .property = "/consumables/fuel/tank[%zu]/level-gal_us",
     .wanted = TankText,
     .take = TakeTank},
};

}  // namespace

std::span<const ControlRow> ControlTable() {
    return kRows;
}

std::string ControlNumber(double value) {
    return Format("%.10g", value);
}

double AltitudeErrorFt(const World& world) {
    return world.autopilot.altitudeTargetFt - world.aircraft.altitudeFt;
}

std::string PropertyOf(const AutopilotMapping& mapping, const ControlRow& row, std::size_t tank) {
    if (row.mapped == nullptr) {
        return row.control == Control::TankLevel ? Format(row.property, tank) : row.property;
    }
    const std::string& property = row.mapped(mapping);
    return property.empty() ? kUnusedProperty : property;
}

}  // namespace panelhost
