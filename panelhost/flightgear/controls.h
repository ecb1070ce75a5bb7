// panelhost/flightgear/controls.h - what is set on both sides: by the pilot in the simulator, and
// here by key events, the data service and the session.
//
// Each is one property, told back with every packet as a text. What changed here is sent; what the
// simulator tells otherwise than was last known is the pilot's own change and is taken. For half a
// second after a send another text is the old value on its way and is not taken; a text that stays
// wrong is sent once more, and then the simulator is right. Nothing is sent before the first
// packet.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "panelhost/flightgear/autopilot_mapping.h"
#include "panelhost/flightgear/state_table.h"
#include "panelhost/world/world.h"

namespace panelhost {

// In the order of a control packet: a packet ends at what is sent, so what guidance sends most
// often comes first and carries nothing else along.
enum class Control : std::size_t {
    HeadingBug,
    VerticalSpeed,
    Airspeed,
    Altitude,
    Lateral,
    Vertical,
    Speed,
    Master,
    Avionics,
    Nav1Course,
    Nav1Frequency,
    Nav2Course,
    Nav2Frequency,
    AdfFrequency,
    AltimeterSetting,
    FreezeClock,
    FreezeMaster,
    Rate,
    ParkingBrake,
    TankLevel,
    Count = TankLevel + kToldTanks
};

inline constexpr std::size_t kControlCount = static_cast<std::size_t>(Control::Count);

// The selected altitude is always flown to: by vertical speed until it is near, then held.
struct AltitudeSelect {
    bool climbing = false;  // or descending
    bool captures = false;  // a vertical speed flown now ends at the selected altitude
};

struct ControlState {
    std::string known = {};  // as told last, or sent since
    std::string here = {};   // what the world asked for when both sides last agreed
    double sentS = 0;
    int tries = 0;  // sends the simulator has not confirmed
};

struct Controls {
    AutopilotMapping mapping = {};
    std::array<ControlState, kControlCount> states = {};
    AltitudeSelect select = {};
    double seaLevelPressureInHg = 29.92;
    bool agreed = false;  // the simulator has told once
};

using ControlTexts = std::array<std::string, kControlCount>;

// What was told for a control.
struct ToldText {
    std::string_view text = {};
    double value = 0;      // not a number for another text
    std::size_t tank = 0;  // the simulator's number of it, of a tank's level
};

struct ControlRow {
    Control control = Control::Count;
    const char* unit = "";
    const char* sentBy = "";  // numbers of key events, or in words
    std::array<int, kMostVariablesOfRow> variables = {};
    const char* property = "";  // empty: the mapping names it; a number of a tank for %zu
    const std::string& (*mapped)(const AutopilotMapping&) = nullptr;
    // What the world asks for, and what becomes of it when the simulator tells otherwise.
    std::string (*wanted)(const Controls&, const World&, std::size_t tank) = nullptr;
    void (*take)(const ToldText&, Controls&, World&) = nullptr;
};

// One row a control, in their order; the last one serves every tank.
std::span<const ControlRow> ControlTable();
std::string ControlNumber(double value);     // as it is sent and told
double AltitudeErrorFt(const World& world);  // to the selected altitude, up positive
// The property of a control; one of this program's own when the mapping has none.
std::string PropertyOf(const AutopilotMapping& mapping, const ControlRow& row,
                       std::size_t tank = 0);
std::array<std::string, kControlCount> ControlProperties(const AutopilotMapping& mapping);

// Takes what the simulator told; the first time everything. `nowS`: steady clock, seconds.
void TakeControls(const ControlTexts& told, double nowS, Controls& controls, World& world);
// Notes what has changed here since and gives the packet that says so; empty when nothing has.
std::string SendControls(double nowS, Controls& controls, World& world);

}  // namespace panelhost
