#include "panelhost/script/script.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>

#include "panelhost/base/png.h"
#include "panelhost/base/text.h"
#include "panelhost/base/whole_file.h"
#include "panelhost/script/script_conditions.h"
#include "panelhost/session/situations.h"
#include "panelhost/world/key_events.h"

namespace panelhost {
namespace {

using Arguments = std::vector<std::string>;

constexpr double kDefaultTimeoutS = 3600;
constexpr double kMaxRunS = 7 * 86400;
constexpr int kLookFrames = 2;   // after a click or key, for the screen to follow
constexpr double kClickS = 0.2;  // whole frames of it: too short for a repeating key to repeat

struct Trace {
    WholeFile file;
    std::string name;
    double everyS = 1;
    double nextS = 0;  // flight time
    Arguments names;
};

struct Runner {
    Session& session;
    std::FILE* out;
    std::string folder;
    double frameRate = kDefaultFrameRate;
    Trace trace = {};
    bool quit = false;
    std::string error = {};  // why the present command failed

    std::string PathOf(const std::string& name) const {
        return (std::filesystem::path(folder) / name).string();
    }

    bool Fail(const std::string& why) {
        error = why;
        return false;
    }
};

std::string ValueText(const NamedVariable& value) {
    return value.isText ? value.text : Format("%.10g", value.number);
}

void WriteTrace(Runner& runner) {
    Trace& trace = runner.trace;
    const SessionStatus status = runner.session.Status();
    if (trace.file.file() == nullptr || status.flightTimeS + 1e-9 < trace.nextS) {
        return;
    }
    trace.nextS +=
        trace.everyS * std::max(1.0, std::ceil((status.flightTimeS - trace.nextS) / trace.everyS));
    std::FILE* const file = trace.file.file();
    std::fprintf(file, "%.2f %.7f %.7f %.1f %.2f %.2f", status.flightTimeS, status.latitude,
                 status.longitude, status.altitudeFt, status.headingMag, status.groundSpeedKt);
    for (const std::string& name : trace.names) {
        const std::optional<NamedVariable> value = FindValue(runner.session, name);
        std::fprintf(file, " %s", value ? ValueText(*value).c_str() : "-");
    }
    std::fputc('\n', file);
}

// A trace that could not be written whole is not left in place of an older one.
bool FinishTrace(Runner& runner) {
    return runner.trace.file.file() == nullptr || runner.trace.file.Finish() ||
           runner.Fail("cannot write \"" + runner.trace.name + "\": " + std::strerror(errno));
}

void StepFrame(Runner& runner) {
    runner.session.Step(1 / runner.frameRate);
    WriteTrace(runner);
}

void StepFrames(Runner& runner, int frames) {
    for (int i = 0; i < frames; ++i) {
        StepFrame(runner);
    }
}

// "90", "90s", "1.5m" or "2h".
std::optional<double> Duration(std::string_view text) {
    double unitS = 1;
    if (!text.empty() && std::isalpha(static_cast<unsigned char>(text.back())) != 0) {
        unitS = text.back() == 's' ? 1 : text.back() == 'm' ? 60 : text.back() == 'h' ? 3600 : 0;
        text.remove_suffix(1);
    }
    const std::optional<double> value = ToNumber(text);
    if (!value || unitS == 0 || *value < 0 || *value * unitS > kMaxRunS) {
        return std::nullopt;
    }
    return *value * unitS;
}

bool DoFrameRate(Runner& runner, const Arguments& words) {
    const std::optional<double> rate = ToNumber(words[0]);
    if (!rate || *rate < 1 || *rate > 240) {
        return runner.Fail("the frame rate must be 1 to 240");
    }
    runner.frameRate = *rate;
    return true;
}

bool DoRun(Runner& runner, const Arguments& words) {
    const std::optional<double> seconds = Duration(words[0]);
    if (!seconds) {
        return runner.Fail("not a duration: " + words[0]);
    }
    StepFrames(runner, static_cast<int>(std::lround(*seconds * runner.frameRate)));
    return true;
}

bool DoRunUntil(Runner& runner, const Arguments& given) {
    Arguments words = given;
    double timeoutS = kDefaultTimeoutS;
    if (words.size() >= 2 && words[words.size() - 2] == "timeout") {
        const std::optional<double> seconds = Duration(words.back());
        if (!seconds) {
            return runner.Fail("not a duration: " + words.back());
        }
        timeoutS = *seconds;
        words.resize(words.size() - 2);
    }
    Verdict verdict;
    for (double left = timeoutS;; left -= 1 / runner.frameRate) {
        verdict = CheckCondition(runner.session, words);
        if (!verdict.valid || verdict.holds) {
            break;
        }
        if (left <= 0) {
            return runner.Fail(Format("not within %g s: %s", timeoutS, verdict.found.c_str()));
        }
        StepFrame(runner);
    }
    return verdict.valid || runner.Fail(verdict.found);
}

bool DoExpect(Runner& runner, const Arguments& words) {
    const Verdict verdict = CheckCondition(runner.session, words);
    if (!verdict.valid) {
        return runner.Fail(verdict.found);
    }
    return verdict.holds || runner.Fail("expectation failed: " + verdict.found);
}

// Labels compare without regard to case and to what kind of blank splits their words.
std::string PlainLabel(std::string_view label) {
    std::string plain;
    for (const std::string_view word : Words(label)) {
        plain += (plain.empty() ? "" : " ") + Lower(word);
    }
    return plain;
}

struct Target {
    int window = -1;
    double x = 0;
    double y = 0;
};

struct PlacedGauge {
    int window = -1;
    int placement = -1;
    GaugeBox box;
};

// GAUGE or GAUGE@WINDOW: the first placement of that name, one in a visible window if there is one.
bool FindPlacedGauge(Runner& runner, const std::string& name, PlacedGauge& found) {
    const std::size_t at = name.find('@');
    const std::string gauge = name.substr(0, at);
    const int only =
        at == std::string::npos ? -1 : FindWindowIndex(runner.session, name.substr(at + 1));
    if (at != std::string::npos && only < 0) {
        return runner.Fail("there is no window \"" + name.substr(at + 1) + "\"");
    }
    bool foundVisible = false;
    for (const WindowInfo& window : runner.session.Windows()) {
        if (only >= 0 && window.index != only) {
            continue;
        }
        for (const GaugeBox& box : runner.session.Gauges(window.index)) {
            const bool better = found.window < 0 || (window.visible && !foundVisible);
            if (EqualNoCase(box.gauge, gauge) && better) {
                found = {window.index, box.placement, box};
                foundVisible = window.visible;
            }
        }
    }
    return found.window >= 0 || runner.Fail("no gauge \"" + gauge + "\" is placed");
}

bool FindTarget(Runner& runner, const Arguments& words, Target& target) {
    PlacedGauge gauge;
    if (!FindPlacedGauge(runner, words[0], gauge)) {
        return false;
    }
    target.window = gauge.window;
    if (words.size() >= 3) {
        const std::optional<double> x = ToNumber(words[1]);
        const std::optional<double> y = ToNumber(words[2]);
        if (x && y) {
            target.x = gauge.box.x + (*x + 0.5) * gauge.box.width / gauge.box.ownWidth;
            target.y = gauge.box.y + (*y + 0.5) * gauge.box.height / gauge.box.ownHeight;
            return true;
        }
    }
    std::string label;
    for (std::size_t i = 1; i < words.size(); ++i) {
        label += " " + words[i];
    }
    label = PlainLabel(label);
    for (const ClickArea& area : runner.session.ClickAreas(gauge.window)) {
        if (area.placement == gauge.placement && PlainLabel(area.label) == label) {
            target.x = area.x + area.width / 2;
            target.y = area.y + area.height / 2;
            return true;
        }
    }
    return runner.Fail("gauge " + words[0] + " has no key \"" + label + "\"");
}

bool PressTarget(Runner& runner, const Arguments& words) {
    Target target;
    return FindTarget(runner, words, target) &&
           (runner.session.MouseDown(target.window, target.x, target.y) ||
            runner.Fail("nothing to click there (or its window is closed)"));
}

bool DoPress(Runner& runner, const Arguments& words) {
    if (!PressTarget(runner, words)) {
        return false;
    }
    StepFrames(runner, kLookFrames);
    return true;
}

bool DoRelease(Runner& runner, const Arguments&) {
    runner.session.MouseUp();
    StepFrames(runner, kLookFrames);
    return true;
}

bool DoClick(Runner& runner, const Arguments& words) {
    if (!PressTarget(runner, words)) {
        return false;
    }
    StepFrames(runner, static_cast<int>(kClickS * runner.frameRate));
    return DoRelease(runner, {});
}

bool DoWheel(Runner& runner, const Arguments& given) {
    Arguments words = given;
    const std::string way = words.back();
    words.pop_back();
    Target target;
    if ((way != "up" && way != "down") || !FindTarget(runner, words, target)) {
        return runner.error.empty() ? runner.Fail("needs up or down") : false;
    }
    if (!runner.session.Wheel(target.window, target.x, target.y, way == "up")) {
        return runner.Fail("no wheel there (or its window is closed)");
    }
    StepFrames(runner, kLookFrames);
    return true;
}

struct KeyName {
    const char* name;
    int scanCode;
    int virtualKey;
};

constexpr KeyName kNamedKeys[] = {
    {"enter", 0x1C, 0x0D}, {"backspace", 0x0E, 0x08}, {"up", 0xC8, 0x26},
    {"down", 0xD0, 0x28},  {"pageup", 0xC9, 0x21},    {"pagedown", 0xD1, 0x22},
    {"shift", 0x2A, 0x10}, {"ctrl", 0x1D, 0x11},      {"alt", 0x38, 0x12},
};

std::optional<KeyName> FindKey(const std::string& name) {
    // Scan codes of A to Z and 0 to 9 on the standard keyboard.
    constexpr int kLetters[] = {0x1E, 0x30, 0x2E, 0x20, 0x12, 0x21, 0x22, 0x23, 0x17,
                                0x24, 0x25, 0x26, 0x32, 0x31, 0x18, 0x19, 0x10, 0x13,
                                0x1F, 0x14, 0x16, 0x2F, 0x11, 0x2D, 0x15, 0x2C};
    for (const KeyName& key : kNamedKeys) {
        if (EqualNoCase(key.name, name)) {
            return key;
        }
    }
    if (name.size() != 1 || std::isalnum(static_cast<unsigned char>(name[0])) == 0) {
        return std::nullopt;
    }
    const int upper = std::toupper(static_cast<unsigned char>(name[0]));
    if (upper >= 'A') {
        return KeyName{"", kLetters[upper - 'A'], upper};
    }
    return KeyName{"", upper == '0' ? 0x0B : upper - '1' + 0x02, upper};
}

bool TapKey(Runner& runner, const std::string& name) {
    const std::optional<KeyName> key = FindKey(name);
    if (!key) {
        return runner.Fail("there is no key \"" + name + "\"");
    }
    runner.session.SetKey(key->scanCode, key->virtualKey, true);
    StepFrame(runner);
    runner.session.SetKey(key->scanCode, key->virtualKey, false);
    StepFrame(runner);
    return true;
}

bool DoKey(Runner& runner, const Arguments& words) {
    if (words.size() == 1) {
        return TapKey(runner, words[0]);
    }
    const std::optional<KeyName> key = FindKey(words[0]);
    if (!key || (words[1] != "down" && words[1] != "up")) {
        return runner.Fail("usage: key NAME [down|up]");
    }
    runner.session.SetKey(key->scanCode, key->virtualKey, words[1] == "down");
    return true;
}

bool DoType(Runner& runner, const Arguments& words) {
    return std::all_of(words[0].begin(), words[0].end(),
                       [&](char c) { return TapKey(runner, std::string(1, c)); });
}

bool DoWindow(Runner& runner, const Arguments& words) {
    const int index = FindWindowIndex(runner.session, words[0]);
    if (index < 0) {
        return runner.Fail("there is no window \"" + words[0] + "\"");
    }
    const std::uint32_t ident = runner.session.Windows()[static_cast<std::size_t>(index)].ident;
    if (words[1] == "toggle") {
        return runner.session.ToggleWindow(ident);
    }
    if (words[1] != "open" && words[1] != "close") {
        return runner.Fail("needs open, close or toggle");
    }
    return runner.session.SetWindowVisible(ident, words[1] == "open");
}

bool DoEvent(Runner& runner, const Arguments& words) {
    std::optional<std::int64_t> number = ToInteger(words[0]);
    for (const KeyEventName& row : KeyEventNames()) {
        if (EqualNoCase(row.name, words[0])) {
            number = row.number;
        }
    }
    const std::optional<std::int64_t> value = words.size() > 1 ? ToInteger(words[1]) : 0;
    if (!number || !value || *value < -0x80000000LL || *value > 0xFFFFFFFFLL) {
        return runner.Fail("needs an event number or name and a 32-bit value");
    }
    runner.session.SendKeyEvent(static_cast<std::int32_t>(*number),
                                static_cast<std::uint32_t>(*value));
    return true;
}

struct SetRow {
    const char* name;
    std::size_t numbers;
    void (*apply)(Session& session, const double* values);
};

constexpr SetRow kSettings[] = {
    {"heading", 1,
     [](Session& s, const double* v) { s.SetHeading(v[0] + s.Status().magneticVariation); }},
    {"heading-true", 1, [](Session& s, const double* v) { s.SetHeading(v[0]); }},
    {"altitude", 1, [](Session& s, const double* v) { s.SetAltitude(v[0]); }},
    {"speed", 1, [](Session& s, const double* v) { s.SetIndicatedAirspeed(v[0]); }},
    {"position", 2, [](Session& s, const double* v) { s.SetPosition(v[0], v[1]); }},
    {"wind", 2, [](Session& s, const double* v) { s.SetWind(v[0], v[1]); }},
    {"turbulence", 1, [](Session& s, const double* v) { s.SetTurbulence(v[0]); }},
    {"fuel", 1, [](Session& s, const double* v) { s.SetFuelPounds(v[0]); }},
    {"rate", 1, [](Session& s, const double* v) { s.SetSimulationRate(v[0]); }},
    {"paused", 1, [](Session& s, const double* v) { s.SetPaused(v[0] != 0); }},
};

bool DoSet(Runner& runner, const Arguments& words) {
    for (const SetRow& row : kSettings) {
        if (words[0] != row.name) {
            continue;
        }
        double values[2] = {};
        if (words.size() != row.numbers + 1) {
            return runner.Fail(Format("%s needs %zu number(s)", row.name, row.numbers));
        }
        for (std::size_t i = 0; i < row.numbers; ++i) {
            const std::optional<double> value = ToNumber(words[i + 1]);
            if (!value) {
                return runner.Fail("not a number: " + words[i + 1]);
            }
            values[i] = *value;
        }
        row.apply(runner.session, values);
        return true;
    }
    return runner.Fail("cannot set \"" + words[0] + "\"");
}

// override #NN VALUE, or off
bool DoOverride(Runner& runner, const Arguments& words) {
    constexpr std::pair<const char*, double> kNoNumbers[] = {
        {"nan", std::numeric_limits<double>::quiet_NaN()},
        {"inf", std::numeric_limits<double>::infinity()},
        {"-inf", -std::numeric_limits<double>::infinity()},
    };
    const std::optional<std::int64_t> number =
        words[0].starts_with('#') ? ToInteger(words[0].substr(1)) : std::nullopt;
    std::optional<double> value = ToNumber(words[1]);
    for (const auto& [name, noNumber] : kNoNumbers) {
        value = words[1] == name ? noNumber : value;
    }
    if (!number || *number < 0 || *number > INT32_MAX || (!value && words[1] != "off")) {
        return runner.Fail("needs #NN and a number, nan, inf, -inf or off");
    }
    runner.session.OverrideVariable(static_cast<std::int32_t>(*number), value);
    return true;
}

bool DoSituation(Runner& runner, const Arguments& words) {
    const Situation* const situation = FindSituation(words[0]);
    if (situation == nullptr) {
        return runner.Fail("there is no situation \"" + words[0] + "\"");
    }
    ApplySituation(runner.session, *situation);
    return true;
}

bool DoTraffic(Runner& runner, const Arguments& words) {
    return runner.session.SetTraffic(words[0] == "off" ? "" : words[0]) ||
           runner.Fail("traffic.txt of the simulator folder has no scene \"" + words[0] + "\"");
}

bool DoScreenshot(Runner& runner, const Arguments& words) {
    const int index = FindWindowIndex(runner.session, words[0]);
    const WindowPicture picture = runner.session.Picture(index);
    if (picture.pixels == nullptr) {
        return runner.Fail("there is no window \"" + words[0] + "\"");
    }
    return WritePng(runner.PathOf(words[1]), picture.width, picture.height, picture.pixels) ||
           runner.Fail("cannot write \"" + words[1] + "\": " + std::strerror(errno));
}

bool DoTexts(Runner& runner, const Arguments& words) {
    const int index = FindWindowIndex(runner.session, words[0]);
    if (index < 0) {
        return runner.Fail("there is no window \"" + words[0] + "\"");
    }
    for (const DrawnText& text : runner.session.Texts(index)) {
        std::fprintf(runner.out, "%s %.0f %.0f %s\n", text.gauge.c_str(), text.x, text.y,
                     text.text.c_str());
    }
    return true;
}

bool DoLog(Runner& runner, const Arguments&) {
    const std::string log = runner.session.FlightLog();
    if (log.empty()) {
        return runner.Fail("there is no flight log");
    }
    std::fputs(log.c_str(), runner.out);
    return true;
}

bool DoProfile(Runner& runner, const Arguments&) {
    constexpr const char* kPhases[] = {"climb", "cruise", "descent"};
    constexpr const char* kRestrictions[] = {"", " at", " at or above", " at or below"};
    const VerticalProfile& profile = runner.session.Profile();
    if (profile.phase < 0 || profile.phase > 2) {
        return runner.Fail("no vertical profile is planned");
    }
    std::fprintf(runner.out, "%s%s, cruise %.0f ft, target %.0f ft\n", kPhases[profile.phase],
                 profile.engaged ? " by VNAV" : "", profile.cruiseAltitudeFt,
                 profile.targetAltitudeFt);
    for (const ProfilePoint& point : profile.points) {
        std::fprintf(runner.out, "%6.1f nm %6.0f ft %s", point.distanceNm, point.altitudeFt,
                     point.name.c_str());
        if (point.restriction >= 1 && point.restriction <= 3) {
            std::fprintf(runner.out, "%s %.0f ft", kRestrictions[point.restriction],
                         point.restrictionFt);
        }
        std::fputc('\n', runner.out);
    }
    return true;
}

bool DoKeys(Runner& runner, const Arguments& words) {
    const int index = FindWindowIndex(runner.session, words[0]);
    if (index < 0) {
        return runner.Fail("there is no window \"" + words[0] + "\"");
    }
    for (const ClickArea& area : runner.session.ClickAreas(index)) {
        std::fprintf(runner.out, "%s %.0f %.0f %.0f %.0f %s\n", area.gauge.c_str(), area.x, area.y,
                     area.width, area.height, area.label.c_str());
    }
    return true;
}

bool DoPrint(Runner& runner, const Arguments& words) {
    for (const std::string& name : words) {
        const std::optional<NamedVariable> value = FindValue(runner.session, name);
        if (!value) {
            return runner.Fail("there is no value \"" + name + "\"");
        }
        std::fprintf(runner.out, "%s %s\n", name.c_str(), ValueText(*value).c_str());
    }
    return true;
}

bool DoSay(Runner& runner, const Arguments& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + word;
    }
    std::fprintf(runner.out, "%s\n", line.c_str());
    return true;
}

// trace FILE [every DURATION] [VALUE...], or trace off
bool DoTrace(Runner& runner, const Arguments& words) {
    if (!FinishTrace(runner)) {
        return false;
    }
    if (words.size() == 1 && words[0] == "off") {
        return true;
    }
    std::size_t at = 1;
    runner.trace.everyS = 1;
    if (words.size() >= 3 && words[1] == "every") {
        const std::optional<double> seconds = Duration(words[2]);
        if (!seconds || *seconds <= 0) {
            return runner.Fail("not a duration: " + words[2]);
        }
        runner.trace.everyS = *seconds;
        at = 3;
    }
    runner.trace.names.assign(words.begin() + static_cast<std::ptrdiff_t>(at), words.end());
    runner.trace.name = words[0];
    if (!runner.trace.file.Open(runner.PathOf(words[0]))) {
        return runner.Fail("cannot write \"" + words[0] + "\": " + std::strerror(errno));
    }
    std::FILE* const file = runner.trace.file.file();
    runner.trace.nextS = runner.session.Status().flightTimeS;
    std::fprintf(file, "# time lat lon altitude heading gs");
    for (const std::string& name : runner.trace.names) {
        std::fprintf(file, " %s", name.c_str());
    }
    std::fputc('\n', file);
    WriteTrace(runner);
    return true;
}

bool DoQuit(Runner& runner, const Arguments&) {
    runner.quit = true;
    return true;
}

constexpr std::size_t kAny = 64;

struct CommandRow {
    const char* name;
    std::size_t fewest;
    std::size_t most;
    bool (*run)(Runner& runner, const Arguments& words);
    const char* usage;
    const char* meaning;
};

constexpr CommandRow kCommands[] = {
    {"frame-rate", 1, 1, DoFrameRate, "N", "frames per second of panel time (20)"},
    {"run", 1, 1, DoRun, "DURATION", "let panel time pass: 90, 90s, 1.5m, 2h"},
    {"run-until", 2, kAny, DoRunUntil, "CONDITION [timeout DURATION]",
     "let time pass until it holds; fails after the timeout (1h)"},
    {"expect", 2, kAny, DoExpect, "CONDITION", "fail unless it holds now"},
    {"click", 2, kAny, DoClick, "GAUGE[@WINDOW] KEY | GAUGE[@WINDOW] X Y",
     "press and release a key by its label, or a point in the gauge's pixels"},
    {"press", 2, kAny, DoPress, "GAUGE ...", "as click, but hold"},
    {"release", 0, 0, DoRelease, "", "let go"},
    {"wheel", 3, kAny, DoWheel, "GAUGE KEY|X Y up|down", "turn the mouse wheel there"},
    {"key", 1, 2, DoKey, "NAME [down|up]",
     "tap, hold or let go a keyboard key: A to Z, 0 to 9, enter, backspace, up, down, pageup, "
     "pagedown, shift, ctrl, alt"},
    {"type", 1, 1, DoType, "TEXT", "tap letters and digits one after the other"},
    {"window", 2, 2, DoWindow, "WINDOW open|close|toggle", "by ident or title"},
    {"event", 1, 2, DoEvent, "NUMBER|NAME [VALUE]", "send a key event as a pilot would"},
    {"set", 2, 3, DoSet, "NAME VALUE...",
     "heading (magnetic), heading-true, altitude, speed, position LAT LON, wind FROM KT, "
     "turbulence KT, fuel LB, rate N, paused 0|1"},
    {"override", 2, 2, DoOverride, "#NN VALUE|off",
     "what the module reads as a numbered variable whatever the aircraft does, as from a broken "
     "simulator; nan, inf and -inf too"},
    {"situation", 1, 1, DoSituation, "NAME",
     "place the aircraft with radios, autopilot and traffic: runway, en-route, approach, navaids, "
     "crossing, overtaking, climbing, head-on"},
    {"traffic", 1, 1, DoTraffic, "SCENE|off", "start a scene of other aircraft, or end it"},
    {"screenshot", 2, 2, DoScreenshot, "WINDOW FILE.png", "write a window's picture"},
    {"texts", 1, 1, DoTexts, "WINDOW", "print the texts on its screens"},
    {"log", 0, 0, DoLog, "", "print the flight log's records so far"},
    {"profile", 0, 0, DoProfile, "", "print the vertical profile as the module tells it"},
    {"keys", 1, 1, DoKeys, "WINDOW", "print its clickable areas with their labels"},
    {"print", 1, kAny, DoPrint, "VALUE...", "print values"},
    {"say", 1, kAny, DoSay, "TEXT", "print a text"},
    {"trace", 1, kAny, DoTrace, "FILE [every DURATION] [VALUE...] | off",
     "write one line per sample of flight time"},
    {"quit", 0, 0, DoQuit, "", "end the script, and the program after an autostart script"},
};

bool SplitWords(std::string_view line, Arguments& words) {
    std::size_t at = 0;
    while (at < line.size()) {
        if (std::isspace(static_cast<unsigned char>(line[at])) != 0) {
            ++at;
        } else if (line[at] == '#' &&
                   (at + 1 >= line.size() || line[at + 1] == ' ' || words.empty())) {
            return true;
        } else if (line[at] == '"') {
            const std::size_t end = line.find('"', at + 1);
            if (end == std::string_view::npos) {
                return false;
            }
            words.emplace_back(line.substr(at + 1, end - at - 1));
            at = end + 1;
        } else {
            const std::size_t start = at;
            while (at < line.size() && std::isspace(static_cast<unsigned char>(line[at])) == 0) {
                ++at;
            }
            words.emplace_back(line.substr(start, at - start));
        }
    }
    return true;
}

void ParseLine(std::string_view text, int number, Script& script) {
    Arguments words;
    if (!SplitWords(text, words)) {
        script.errors.push_back(Format("line %d: a quotation mark is not closed", number));
        return;
    }
    if (words.empty()) {
        return;
    }
    for (std::size_t i = 0; i < std::size(kCommands); ++i) {
        const CommandRow& row = kCommands[i];
        if (words[0] != row.name) {
            continue;
        }
        if (words.size() - 1 < row.fewest || words.size() - 1 > row.most) {
            script.errors.push_back(Format("line %d: usage: %s %s", number, row.name, row.usage));
            return;
        }
        words.erase(words.begin());
        script.lines.push_back({number, static_cast<int>(i), std::move(words)});
        return;
    }
    script.errors.push_back(Format("line %d: unknown command \"%.40s\"", number, words[0].c_str()));
}

}  // namespace

Script ParseScript(std::string_view text) {
    Script script;
    int number = 0;
    for (const std::string_view line : Lines(text)) {
        ParseLine(line, ++number, script);
    }
    return script;
}

ScriptResult RunScript(Session& session, const Script& script, const std::string& folder,
                       std::FILE* out) {
    if (!script.errors.empty()) {
        return {1, false, script.errors.front()};
    }
    Runner runner{session, out, folder};
    for (const ScriptLine& line : script.lines) {
        const CommandRow& row = kCommands[static_cast<std::size_t>(line.command)];
        if (!row.run(runner, line.words)) {
            const std::string why = runner.error;
            FinishTrace(runner);  // what led to it
            std::fflush(out);
            return {1, false, Format("line %d: %s: %s", line.line, row.name, why.c_str())};
        }
        if (runner.quit) {
            break;
        }
    }
    std::fflush(out);
    if (!FinishTrace(runner)) {
        return {1, false, "trace: " + runner.error};
    }
    return {0, runner.quit, ""};
}

std::vector<ScriptCommandName> ScriptCommands() {
    std::vector<ScriptCommandName> names;
    for (const CommandRow& row : kCommands) {
        names.push_back({row.name, row.usage, row.meaning});
    }
    return names;
}

}  // namespace panelhost
