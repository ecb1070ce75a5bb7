// panelhost/web/client_message.h - what a page may say on its socket, read strictly.
//
// A message is one JSON object whose "t" names its kind. Every field has a type and a range; a
// missing, unknown, mistyped or out-of-range one makes the whole message bad. A window is the
// index of a display, its coordinates are design pixels. Nothing throws.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace panelhost {

inline constexpr std::size_t kMaxClientMessageBytes = 4096;
inline constexpr int kMaxWatchedWindows = 256;
inline constexpr std::size_t kMaxNameCharacters = 64;
inline constexpr std::size_t kMaxNames = 64;  // in one list

enum class ClientAction {
    Bad,
    Down,          // press at (x, y) of a window with a button
    Up,            // let go
    Wheel,         // turn the wheel over (x, y)
    Key,           // keyboard key pressed or let go
    ReleaseKeys,   // let go of every key
    ToggleWindow,  // show or hide by ident
    Pause,
    Rate,
    Set,        // place the aircraft, change the wind
    Watch,      // which windows' pictures and texts this page wants
    Situation,  // place the aircraft by a row of the host's situations
    SendEvent,  // a pilot's key event
    Painted,    // the last picture of a window is on the screen
    PressKey,   // press a gauge's key by its name and let go
    HoldKey,    // the same, held until Up
    TurnKnob,   // turn a gauge's knob by its name, `steps` up or down
    Subscribe,  // which gauges' texts and lamps, variables and key events to tell of
    Radio,      // tune what is given
};

struct ClientMessage {
    ClientAction action = ClientAction::Bad;
    std::string problem;  // why it is bad
    int window = 0;
    double x = 0;
    double y = 0;
    int button = 0;   // 0 left, 1 middle, 2 right
    bool on = false;  // wheel up, key down, paused, events wanted
    int scanCode = 0;
    int virtualKey = 0;
    double number = 0;  // window ident, simulation rate, situation or event number
    double value = 0;   // of an event
    std::optional<double> latitude;
    std::optional<double> longitude;
    std::optional<double> altitudeFt;
    std::optional<double> headingTrue;
    std::optional<double> airspeedKt;
    std::optional<double> windDirectionTrue;
    std::optional<double> windSpeedKt;
    std::string gauge;
    std::string key;
    int steps = 0;
    std::vector<std::string> gauges;
    std::vector<std::string> variables;
    std::optional<double> nav1Mhz;
    std::optional<double> nav2Mhz;
    std::optional<double> adfKhz;
    std::optional<double> course1Mag;
    std::optional<double> course2Mag;
    std::vector<int> windows;
    std::vector<int> scales;  // of the windows, or none
};

ClientMessage ParseClientMessage(std::string_view text);

}  // namespace panelhost
