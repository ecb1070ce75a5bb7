// panelhost/session/session.h - one simulator session: a loaded gauge module, its panel windows, an
// aircraft.
//
// The seam for the web page, the script runner and the tests: everything they show or do goes
// through a Session. Units are in the names; latitudes and longitudes are decimal degrees, north
// and east positive; window coordinates are pixels of the composed picture, origin top left.
// A module keeps state of its own per process, so one Session may be open at a time; every call
// comes from one thread. Nothing throws: Open says in one line why it failed; after a failed or
// before a successful Open the lists are empty and every command does nothing.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "panelhost/flightgear/live_flight.h"
#include "panelhost/panel/panel_config.h"
#include "panelhost/world/autopilot.h"
#include "panelhost/world/start.h"
#include "platform/panel_interface.h"

namespace panelhost {

struct SessionOptions {
    std::string simFolder = ".";  // the process changes to it before the module is loaded
    std::string modulePath;       // empty: gauges/avq1.gau of the simulator folder
    std::string panelPath;        // empty: panel.cfg or panel/panel.cfg of the simulator folder
    int surfaceScale = 1;         // 1 to 3: pixels of a composed picture per design pixel
    std::uint32_t seed = 1;       // of the turbulence
    StartState start;
    std::optional<LiveOptions> live;  // FlightGear flies; empty: the built-in model
    bool trafficModule = true;        // one stands beside the gauge module and publishes its block
    std::optional<double> magneticVariationDeg;  // east positive; empty: the built-in world model
};

struct WindowInfo {
    int index = 0;
    std::uint32_t ident = 0;
    std::string title;
    int x =
        0;  // where the panel file wants it, design pixels of a desk of kDeskWidth x kDeskHeight
    int y = 0;
    int shownWidth = 0;  // how large it wants to be shown there, design pixels
    int shownHeight = 0;
    int width = 0;  // pixels of the composed picture: design size times the surface scale
    int height = 0;
    int scale = 1;  // pixels of the picture per design pixel
    bool visible = false;
    std::uint64_t revision = 0;  // grows whenever the composed picture, texts or visibility changed
};

// Something a screen can show.
enum class DisplayKind {
    PanelWindow,  // a window of the panel file as it stands: seen while it is open
    OwnWindow,    // the same on a screen of its own, always seen; opens and closes nothing
    Gauge,        // one gauge of the module, placed by the panel file or not
};
struct Display {
    int index = 0;  // a panel window's is the window's own
    DisplayKind kind = DisplayKind::Gauge;
    std::string name;  // the gauge's name, the window's ident
    std::string title;
    int width = 0;  // design pixels
    int height = 0;
};

// Opaque ARGB words, top row first, no padding; valid until the next non-const call.
struct WindowPicture {
    int width = 0;
    int height = 0;
    const std::uint32_t* pixels = nullptr;  // null for an unknown window
};

struct ClickArea {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    avq1::MouseCursor cursor = avq1::MouseCursor::None;
    bool repeatsWhileHeld = false;
    bool takesWheel = false;
    std::string label;  // empty when the module names no key here
    std::string gauge;  // the gauge's name
    int placement = 0;  // which placed gauge, counted over the whole panel
};

// A placed gauge: its box in window pixels, and its own size in the pixels of its background.
struct GaugeBox {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    int ownWidth = 0;
    int ownHeight = 0;
    std::string gauge;
    int placement = 0;
};

// A light of a gauge: a part of its picture that the module shows and hides. Named after the key it
// lies on, else "lamp"; the second of a name has a number, and so on.
struct Lamp {
    std::string name;
    bool on = false;
};

struct DrawnText {
    std::string text;
    double x = 0;  // top left corner
    double y = 0;
    double pixelSize = 0;
    std::uint32_t argb = 0;
    std::string gauge;
    int placement = 0;
};

enum class MouseButton { Left, Middle, Right };

struct KeyEventRecord {
    std::uint64_t serial = 0;  // grows by one per event: lets a reader see what is new
    double timeS = 0;          // flight time
    std::int32_t number = 0;
    std::uint32_t value = 0;
    std::string name;  // "unknown" for a number without an effect here
    bool fromModule = false;
};

struct NamedVariable {
    std::string name;
    bool isText = false;
    double number = 0;
    std::string text;
};

struct RadioStatus {
    std::string ident;  // empty without a signal
    double frequencyMhz = 0;
    double courseMag = 0;
    double bearingMag = 0;
    double deviation = 0;  // needle, +-127
    double dmeNm = 0;
    int toFrom = 0;  // 1 to, 2 from, 0 neither
    bool isLocalizer = false;
    bool hasGlideslope = false;
};

// A point of the vertical profile ahead, as the module tells it (platform/panel_interface.h).
struct ProfilePoint {
    std::string name;
    int kind = 0;         // 0 entry of the plan, 1 top of climb, 2 top of descent
    int restriction = 0;  // 0 none, 1 at, 2 at or above, 3 at or below restrictionFt
    double distanceNm = 0;
    double altitudeFt = 0;
    double restrictionFt = 0;
};

struct VerticalProfile {
    int phase = -1;  // 0 climb, 1 cruise, 2 descent; -1: nothing is planned
    bool engaged = false;
    double cruiseAltitudeFt = 0;
    double targetAltitudeFt = 0;
    double pathAltitudeFt = 0;
    std::vector<ProfilePoint> points;
};

struct SessionStatus {
    std::string trouble;  // why nothing is heard of the aircraft; empty while all is well
    double flightTimeS = 0;
    double panelTimeS = 0;
    bool paused = false;
    double simulationRate = 1;
    bool onGround = false;
    double latitude = 0;
    double longitude = 0;
    double altitudeFt = 0;
    double radioAltitudeFt = 0;
    double indicatedAirspeedKt = 0;
    double trueAirspeedKt = 0;
    double groundSpeedKt = 0;
    double verticalSpeedFpm = 0;
    double headingMag = 0;
    double headingTrue = 0;
    double trackTrue = 0;
    double magneticVariation = 0;  // east positive
    double pitchUpDeg = 0;
    double bankRightDeg = 0;
    double windDirectionTrue = 0;
    double windSpeedKt = 0;
    double fuelLb = 0;
    double fuelFlowPph = 0;
    double zeroFuelWeightLb = 0;
    double payloadLb = 0;
    double towerLatitude = 0;  // where the tower view looks from
    double towerLongitude = 0;
    double towerAltitude = 0;  // as the data service was told, in whole units
    Autopilot autopilot;
    RadioStatus nav1;
    RadioStatus nav2;
    RadioStatus adf;                         // frequencyMhz holds kHz / 1000
    std::string dataCycle;                   // "2309, 07-SEP-2023 to 05-OCT-2023"; empty: not known
    bool dataIsOver = false;                 // by the world's date
    std::vector<NamedVariable> variables;    // in the order the module registered them
    std::vector<KeyEventRecord> lastEvents;  // oldest first, at most kKeptEvents
};

inline constexpr std::size_t kKeptEvents = 64;

// A pilot's key event of this host's table, for menus and documents.
struct KeyEventName {
    std::int32_t number;
    const char* name;
    const char* meaning;
};

class Session {
  public:
    Session();
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Loads module and panel and sends the start events. False leaves one line in error().
    bool Open(const SessionOptions& options);
    void Close();  // sends the end events and unloads the module
    bool IsOpen() const;
    const std::string& error() const;
    const std::vector<std::string>& warnings() const;  // of the panel file and data files

    // Advances panel time by dtSeconds (0 to 1); flight time advances by that times the rate unless
    // paused. Update events fall due 18 times a second of panel time; draw events come once a call
    // and go to the gauges of visible windows. The flight is the same whether `draw` is true or
    // not: without it the gauges mostly get no surface to draw on, and pictures and texts grow old.
    void Step(double dtSeconds, bool draw = true);

    std::vector<WindowInfo> Windows() const;  // of the panel file

    // What screens of their own can show, and views of it: copies of the gauges with surfaces of
    // their own at the scale asked for, 1 to 3, that the module does not know as windows. A view
    // has an index like a window's, for every call below. -1: too much is shown already.
    std::vector<Display> Displays() const;
    int View(int display, int scale);
    void Release(int view);  // nobody looks: its memory is freed until View asks for it again
    // Windows are watched at first. One that is not gets no surfaces to draw on in Step.
    void SetWatched(int window, bool watched);
    WindowInfo Window(int index) const;

    // Brings a visible window's pictures and texts up to the present; no time passes.
    void Look(int window);
    WindowPicture Picture(int window);  // composes what changed since the last call
    std::vector<ClickArea> ClickAreas(int window) const;
    std::vector<DrawnText> Texts(int window) const;
    std::vector<GaugeBox> Gauges(int window) const;
    std::vector<Lamp> Lamps(int window) const;

    // Mouse, in window pixels. A press holds the pointer until MouseUp; the module's repeating
    // areas fire while it is held. True when a rectangle of a gauge took it.
    bool MouseDown(int window, double x, double y, MouseButton button = MouseButton::Left);
    void MouseUp();
    bool Click(int window, double x, double y, MouseButton button = MouseButton::Left);
    bool Wheel(int window, double x, double y, bool up);

    bool ToggleWindow(std::uint32_t ident);
    bool SetWindowVisible(std::uint32_t ident, bool visible);

    // Keyboard: DirectInput scan code and virtual key code. True when the module's hook swallowed
    // the key press, so the page must not act on it.
    bool SetKey(int scanCode, int virtualKey, bool down);
    void ReleaseAllKeys();

    void SendKeyEvent(std::int32_t number, std::uint32_t value);
    std::uint64_t ModuleEventCount(std::int32_t number) const;  // sent by the module so far
    void SetPaused(bool paused);
    void SetSimulationRate(double rate);  // 0.25 to 64
    void SetPosition(double latitude, double longitude);
    void SetAltitude(double altitudeFt);
    void SetHeading(double headingTrue);
    void SetIndicatedAirspeed(double airspeedKt);
    void SetWind(double directionTrue, double speedKt);
    void SetTurbulence(double speedKt);
    // Starts a scene of other aircraft, around where the own one is then; empty ends it. False, and
    // nothing changed, for a name the simulator folder has no scene of.
    bool SetTraffic(std::string_view scene);
    void SetFuelPounds(double pounds);  // spread over the tanks in proportion to their capacity
    // What the module reads as a numbered variable from now on, in the variable's own unit and
    // whatever the aircraft does, no numbers (NaN, infinity) too; empty: the aircraft's own again.
    void OverrideVariable(std::int32_t number, std::optional<double> value);

    SessionStatus Status() const;
    // Of the kept key events those with a greater serial, oldest first.
    std::vector<KeyEventRecord> EventsSince(std::uint64_t serial) const;
    // As the module told it last, at most once a simulator second.
    const VerticalProfile& Profile() const;
    // The flight log's records as the module has written them so far, at most a megabyte; empty
    // without any. Read from its file at each call.
    std::string FlightLog() const;
    // A numbered aircraft variable as the module reads it; empty for an unknown number.
    std::optional<double> NumberedVariable(int number) const;
    // A named variable's present value, of the module or this host.
    std::optional<NamedVariable> FindVariable(std::string_view name) const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

// Rows of the host's key event table.
std::vector<KeyEventName> KeyEventNames();

}  // namespace panelhost
