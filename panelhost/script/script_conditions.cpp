#include "panelhost/script/script_conditions.h"

#include <algorithm>
#include <cmath>

#include "panelhost/base/text.h"
#include "panelhost/script/script.h"
#include "panelhost/world/earth.h"
#include "panelhost/world/key_events.h"

namespace panelhost {
namespace {

using Arguments = std::vector<std::string>;

struct StatusValue {
    const char* name;
    double (*read)(const SessionStatus& status);
};

constexpr StatusValue kStatusValues[] = {
    {"time", [](const SessionStatus& s) { return s.flightTimeS; }},
    {"panel-time", [](const SessionStatus& s) { return s.panelTimeS; }},
    {"lat", [](const SessionStatus& s) { return s.latitude; }},
    {"lon", [](const SessionStatus& s) { return s.longitude; }},
    {"altitude", [](const SessionStatus& s) { return s.altitudeFt; }},
    {"radio-altitude", [](const SessionStatus& s) { return s.radioAltitudeFt; }},
    {"airspeed", [](const SessionStatus& s) { return s.indicatedAirspeedKt; }},
    {"tas", [](const SessionStatus& s) { return s.trueAirspeedKt; }},
    {"gs", [](const SessionStatus& s) { return s.groundSpeedKt; }},
    {"vs", [](const SessionStatus& s) { return s.verticalSpeedFpm; }},
    {"heading", [](const SessionStatus& s) { return s.headingMag; }},
    {"heading-true", [](const SessionStatus& s) { return s.headingTrue; }},
    {"track", [](const SessionStatus& s) { return s.trackTrue; }},
    {"variation", [](const SessionStatus& s) { return s.magneticVariation; }},
    {"bank", [](const SessionStatus& s) { return s.bankRightDeg; }},
    {"pitch", [](const SessionStatus& s) { return s.pitchUpDeg; }},
    {"fuel", [](const SessionStatus& s) { return s.fuelLb; }},
    {"fuel-flow", [](const SessionStatus& s) { return s.fuelFlowPph; }},
    {"zero-fuel-weight", [](const SessionStatus& s) { return s.zeroFuelWeightLb; }},
    {"payload", [](const SessionStatus& s) { return s.payloadLb; }},
    {"tower-lat", [](const SessionStatus& s) { return s.towerLatitude; }},
    {"tower-lon", [](const SessionStatus& s) { return s.towerLongitude; }},
    {"tower-altitude", [](const SessionStatus& s) { return s.towerAltitude; }},
    {"rate", [](const SessionStatus& s) { return s.simulationRate; }},
    {"paused", [](const SessionStatus& s) { return s.paused ? 1.0 : 0.0; }},
    {"on-ground", [](const SessionStatus& s) { return s.onGround ? 1.0 : 0.0; }},
    {"ap-master", [](const SessionStatus& s) { return s.autopilot.master ? 1.0 : 0.0; }},
    {"ap-heading-hold", [](const SessionStatus& s) { return s.autopilot.headingHold ? 1.0 : 0.0; }},
    {"ap-altitude-hold",
     [](const SessionStatus& s) { return s.autopilot.altitudeHold ? 1.0 : 0.0; }},
    {"ap-airspeed-hold",
     [](const SessionStatus& s) { return s.autopilot.airspeedHold ? 1.0 : 0.0; }},
    {"ap-nav-hold", [](const SessionStatus& s) { return s.autopilot.navHold ? 1.0 : 0.0; }},
    {"ap-approach-hold",
     [](const SessionStatus& s) { return s.autopilot.approachHold ? 1.0 : 0.0; }},
    {"heading-bug", [](const SessionStatus& s) { return 1.0 * s.autopilot.headingBugMag; }},
    {"altitude-target", [](const SessionStatus& s) { return 1.0 * s.autopilot.altitudeTargetFt; }},
    {"airspeed-target", [](const SessionStatus& s) { return 1.0 * s.autopilot.airspeedTargetKt; }},
    {"vs-target", [](const SessionStatus& s) { return 1.0 * s.autopilot.verticalSpeedTargetFpm; }},
    {"nav1-dme", [](const SessionStatus& s) { return s.nav1.dmeNm; }},
    {"nav1-deviation", [](const SessionStatus& s) { return s.nav1.deviation; }},
};

struct Comparison {
    const char* name;
    bool (*holds)(double a, double b);
};

constexpr double kEqualWithin = 1e-6;

constexpr Comparison kComparisons[] = {
    {"<", [](double a, double b) { return a < b; }},
    {"<=", [](double a, double b) { return a <= b; }},
    {">", [](double a, double b) { return a > b; }},
    {">=", [](double a, double b) { return a >= b; }},
    {"=", [](double a, double b) { return std::fabs(a - b) <= kEqualWithin; }},
    {"!=", [](double a, double b) { return std::fabs(a - b) > kEqualWithin; }},
};

const Comparison* FindComparison(const std::string& name) {
    for (const Comparison& row : kComparisons) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

Verdict Invalid(const std::string& why) {
    return {false, false, why};
}

Verdict Compare(double value, const std::string& comparison, const std::string& bound) {
    const Comparison* const row = FindComparison(comparison);
    const std::optional<double> number = ToNumber(bound);
    if (row == nullptr || !number) {
        return Invalid("needs one of < <= > >= = != and a number");
    }
    return {true, row->holds(value, *number), Format("it is %.10g", value)};
}

// var NAME OP VALUE
Verdict CheckValue(Session& session, const Arguments& words) {
    if (words.size() != 4) {
        return Invalid("usage: var NAME OP VALUE");
    }
    const std::optional<NamedVariable> value = FindValue(session, words[1]);
    if (!value) {
        return Invalid("there is no value \"" + words[1] + "\"");
    }
    if (!value->isText) {
        return Compare(value->number, words[2], words[3]);
    }
    if (words[2] != "=" && words[2] != "!=") {
        return Invalid("a text compares with = or != only");
    }
    return {true, (value->text == words[3]) == (words[2] == "="), "it is \"" + value->text + "\""};
}

// texts [WINDOW] contains|lacks TEXT
Verdict CheckTexts(Session& session, const Arguments& words) {
    if (words.size() != 3 && words.size() != 4) {
        return Invalid("usage: texts [WINDOW] contains|lacks TEXT");
    }
    const int only = words.size() == 4 ? FindWindowIndex(session, words[1]) : -1;
    const std::string& verb = words[words.size() - 2];
    if (words.size() == 4 && only < 0) {
        return Invalid("there is no window \"" + words[1] + "\"");
    }
    if (verb != "contains" && verb != "lacks") {
        return Invalid("needs contains or lacks");
    }
    bool found = false;
    for (const WindowInfo& window : session.Windows()) {
        if (only >= 0 ? window.index != only : !window.visible) {
            continue;
        }
        for (const DrawnText& text : session.Texts(window.index)) {
            found = found || text.text.find(words.back()) != std::string::npos;
        }
    }
    return {true, found == (verb == "contains"), found ? "it is shown" : "it is not shown"};
}

// distance LAT LON OP NM
Verdict CheckDistance(Session& session, const Arguments& words) {
    const std::optional<double> latitude = words.size() == 5 ? ToNumber(words[1]) : std::nullopt;
    const std::optional<double> longitude = words.size() == 5 ? ToNumber(words[2]) : std::nullopt;
    if (!latitude || !longitude) {
        return Invalid("usage: distance LAT LON OP NM");
    }
    const SessionStatus status = session.Status();
    const double nm = DistanceNm({status.latitude, status.longitude}, {*latitude, *longitude});
    return Compare(nm, words[3], words[4]);
}

// window WINDOW shown|hidden
Verdict CheckWindow(Session& session, const Arguments& words) {
    const int index = words.size() == 3 ? FindWindowIndex(session, words[1]) : -1;
    if (index < 0 || (words[2] != "shown" && words[2] != "hidden")) {
        return Invalid("usage: window WINDOW shown|hidden, for a window of the panel");
    }
    const bool visible = session.Windows()[static_cast<std::size_t>(index)].visible;
    return {true, visible == (words[2] == "shown"), visible ? "it is shown" : "it is hidden"};
}

// events NUMBER OP COUNT
Verdict CheckEvents(Session& session, const Arguments& words) {
    const std::optional<std::int64_t> number =
        words.size() == 4 ? ToInteger(words[1]) : std::nullopt;
    if (!number) {
        return Invalid("usage: events NUMBER OP COUNT");
    }
    const auto count = session.ModuleEventCount(static_cast<std::int32_t>(*number));
    return Compare(static_cast<double>(count), words[2], words[3]);
}

struct ConditionRow {
    const char* name;
    Verdict (*check)(Session& session, const Arguments& words);
};

constexpr ConditionRow kConditions[] = {
    {"var", CheckValue},     {"texts", CheckTexts},   {"distance", CheckDistance},
    {"window", CheckWindow}, {"events", CheckEvents},
};

}  // namespace

Verdict CheckCondition(Session& session, const Arguments& words) {
    for (const ConditionRow& row : kConditions) {
        if (!words.empty() && words.front() == row.name) {
            return row.check(session, words);
        }
    }
    return Invalid("a condition begins with var, texts, distance, window or events");
}

int FindWindowIndex(const Session& session, const std::string& name) {
    const std::optional<std::int64_t> ident = EqualNoCase(name, "main") ? 0 : ToInteger(name);
    for (const WindowInfo& window : session.Windows()) {
        if ((ident && *ident == window.ident) || EqualNoCase(window.title, name)) {
            return window.index;
        }
    }
    return -1;
}

std::optional<NamedVariable> FindValue(const Session& session, std::string_view name) {
    for (const StatusValue& row : kStatusValues) {
        if (name == row.name) {
            return NamedVariable{std::string(name), false, row.read(session.Status()), ""};
        }
    }
    if (name.substr(0, 1) == "#") {
        const std::optional<std::int64_t> number = ToInteger(name.substr(1));
        const std::optional<double> value =
            number ? session.NumberedVariable(static_cast<int>(*number)) : std::nullopt;
        return value ? std::optional(NamedVariable{std::string(name), false, *value, ""})
                     : std::nullopt;
    }
    return session.FindVariable(name);
}

std::vector<const char*> StatusValueNames() {
    std::vector<const char*> names;
    for (const StatusValue& row : kStatusValues) {
        names.push_back(row.name);
    }
    return names;
}

}  // namespace panelhost
