#include "panelhost/web/server_messages.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "panelhost/session/situations.h"
#include "panelhost/web/api.h"

namespace panelhost {
namespace {

using Json = nlohmann::json;

std::string Write(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

// A fixed count of decimals keeps messages short; what is not a number is shown as null.
Json Rounded(double number, double steps) {
    return std::isfinite(number) ? Json(std::round(number * steps) / steps) : Json();
}
Json Tenths(double number) {
    return Rounded(number, 10);
}

Json WindowJson(const WindowInfo& window) {
    return {{"w", window.index},
            {"ident", window.ident},
            {"title", window.title},
            {"x", window.x},
            {"y", window.y},
            {"shownWidth", window.shownWidth},
            {"shownHeight", window.shownHeight},
            {"width", window.width / window.scale},
            {"height", window.height / window.scale},
            {"visible", window.visible}};
}

Json DisplayJson(const Display& display) {
    return {{"w", display.index},     {"gauge", display.kind == DisplayKind::Gauge},
            {"name", display.name},   {"title", display.title},
            {"width", display.width}, {"height", display.height}};
}

Json RadioJson(const RadioStatus& radio) {
    return {{"ident", radio.ident},
            {"frequency", Rounded(radio.frequencyMhz, 10000)},
            {"course", Tenths(radio.courseMag)},
            {"bearing", Tenths(radio.bearingMag)},
            {"deviation", Tenths(radio.deviation)},
            {"dme", Tenths(radio.dmeNm)},
            {"toFrom", radio.toFrom},
            {"localizer", radio.isLocalizer},
            {"glideslope", radio.hasGlideslope}};
}

Json AutopilotJson(const Autopilot& autopilot) {
    return {{"master", autopilot.master},
            {"heading", autopilot.headingHold},
            {"nav", autopilot.navHold},
            {"approach", autopilot.approachHold},
            {"altitude", autopilot.altitudeHold},
            {"verticalSpeed", autopilot.verticalSpeedHold},
            {"airspeed", autopilot.airspeedHold},
            {"yawDamper", autopilot.yawDamper},
            {"flightDirector", autopilot.flightDirector},
            {"headingBug", Tenths(autopilot.headingBugMag)},
            {"altitudeTarget", Tenths(autopilot.altitudeTargetFt)},
            {"verticalSpeedTarget", Tenths(autopilot.verticalSpeedTargetFpm)},
            {"airspeedTarget", Tenths(autopilot.airspeedTargetKt)}};
}

Json VariablesJson(const std::vector<NamedVariable>& variables) {
    Json list = Json::array();
    for (const NamedVariable& variable : variables) {
        list.push_back(
            {variable.name, variable.isText ? Json(variable.text) : Rounded(variable.number, 1e6)});
    }
    return list;
}

Json EventsJson(const std::vector<KeyEventRecord>& events) {
    Json list = Json::array();
    for (const KeyEventRecord& event : events) {
        list.push_back({{"serial", event.serial},
                        {"time", Tenths(event.timeS)},
                        {"number", event.number},
                        {"value", event.value},
                        {"name", event.name},
                        {"module", event.fromModule}});
    }
    return list;
}

}  // namespace

std::string HelloMessage(const Session& session) {
    Json windows = Json::array();
    for (const WindowInfo& window : session.Windows()) {
        windows.push_back(WindowJson(window));
    }
    Json displays = Json::array();
    for (const Display& display : session.Displays()) {
        if (display.kind != DisplayKind::PanelWindow) {
            displays.push_back(DisplayJson(display));
        }
    }
    Json events = Json::array();
    for (const KeyEventName& event : KeyEventNames()) {
        events.push_back(
            {{"number", event.number}, {"name", event.name}, {"meaning", event.meaning}});
    }
    Json situations = Json::array();
    for (const Situation& situation : Situations()) {
        situations.push_back(situation.title);
    }
    return Write({{"t", "hello"},
                  {"api", kApiVersion},
                  {"desk", {{"width", kDeskWidth}, {"height", kDeskHeight}}},
                  {"windows", std::move(windows)},
                  {"displays", std::move(displays)},
                  {"keyEvents", std::move(events)},
                  {"situations", std::move(situations)},
                  {"warnings", session.warnings()}});
}

std::string StatusMessage(const SessionStatus& status) {
    return Write({{"t", "status"},
                  {"trouble", status.trouble},
                  {"flightTime", Tenths(status.flightTimeS)},
                  {"paused", status.paused},
                  {"rate", status.simulationRate},
                  {"onGround", status.onGround},
                  {"latitude", Rounded(status.latitude, 1e5)},
                  {"longitude", Rounded(status.longitude, 1e5)},
                  {"altitude", Tenths(status.altitudeFt)},
                  {"radioAltitude", Tenths(status.radioAltitudeFt)},
                  {"indicatedAirspeed", Tenths(status.indicatedAirspeedKt)},
                  {"trueAirspeed", Tenths(status.trueAirspeedKt)},
                  {"groundSpeed", Tenths(status.groundSpeedKt)},
                  {"verticalSpeed", Tenths(status.verticalSpeedFpm)},
                  {"headingMag", Tenths(status.headingMag)},
                  {"headingTrue", Tenths(status.headingTrue)},
                  {"trackTrue", Tenths(status.trackTrue)},
                  {"pitch", Tenths(status.pitchUpDeg)},
                  {"bank", Tenths(status.bankRightDeg)},
                  {"windDirection", Tenths(status.windDirectionTrue)},
                  {"windSpeed", Tenths(status.windSpeedKt)},
                  {"fuel", Tenths(status.fuelLb)},
                  {"fuelFlow", Tenths(status.fuelFlowPph)},
                  {"navData", status.dataCycle},
                  {"navDataIsOver", status.dataIsOver},
                  {"autopilot", AutopilotJson(status.autopilot)},
                  {"nav1", RadioJson(status.nav1)},
                  {"nav2", RadioJson(status.nav2)},
                  {"adf", RadioJson(status.adf)},
                  {"variables", VariablesJson(status.variables)},
                  {"events", EventsJson(status.lastEvents)}});
}

std::string WindowMessage(const WindowInfo& window) {
    Json json = WindowJson(window);
    json["t"] = "window";
    return Write(json);
}

std::string TextsMessage(int display, int scale, const std::vector<DrawnText>& texts) {
    Json list = Json::array();
    for (const DrawnText& text : texts) {
        list.push_back({text.text, Tenths(text.x / scale), Tenths(text.y / scale),
                        Tenths(text.pixelSize / scale), text.placement, text.gauge});
    }
    return Write({{"t", "texts"}, {"w", display}, {"texts", std::move(list)}});
}

std::string AreasMessage(int display, int scale, const std::vector<ClickArea>& areas,
                         const std::vector<GaugeBox>& gauges) {
    Json list = Json::array();
    for (const ClickArea& area : areas) {
        list.push_back({{"x", Tenths(area.x / scale)},
                        {"y", Tenths(area.y / scale)},
                        {"width", Tenths(area.width / scale)},
                        {"height", Tenths(area.height / scale)},
                        {"cursor", static_cast<int>(area.cursor)},
                        {"repeats", area.repeatsWhileHeld},
                        {"wheel", area.takesWheel},
                        {"label", area.label},
                        {"gauge", area.gauge},
                        {"placement", area.placement}});
    }
    Json boxes = Json::array();
    for (const GaugeBox& box : gauges) {
        boxes.push_back({{"x", Tenths(box.x / scale)},
                         {"y", Tenths(box.y / scale)},
                         {"width", Tenths(box.width / scale)},
                         {"height", Tenths(box.height / scale)},
                         {"gauge", box.gauge},
                         {"placement", box.placement}});
    }
    return Write(
        {{"t", "areas"}, {"w", display}, {"areas", std::move(list)}, {"gauges", std::move(boxes)}});
}

std::string RefusalMessage(int display) {
    return Write({{"t", "refused"}, {"w", display}});
}

std::string LogMessage(std::string_view lines, bool more) {
    return Write({{"t", "log"}, {"more", more}, {"lines", lines}});
}

std::string ProfileMessage(const VerticalProfile& profile) {
    Json points = Json::array();
    for (const ProfilePoint& point : profile.points) {
        points.push_back({{"name", point.name},
                          {"kind", point.kind},
                          {"restriction", point.restriction},
                          {"distance", Tenths(point.distanceNm)},
                          {"altitude", Tenths(point.altitudeFt)},
                          {"restrictionAltitude", Tenths(point.restrictionFt)}});
    }
    return Write({{"t", "profile"},
                  {"phase", profile.phase},
                  {"engaged", profile.engaged},
                  {"cruise", Tenths(profile.cruiseAltitudeFt)},
                  {"target", Tenths(profile.targetAltitudeFt)},
                  {"path", Tenths(profile.pathAltitudeFt)},
                  {"points", std::move(points)}});
}

std::string KeyMessage(int scanCode, int virtualKey, bool swallowed) {
    return Write({{"t", "key"}, {"scan", scanCode}, {"vk", virtualKey}, {"swallowed", swallowed}});
}

std::string EventsMessage(const std::vector<KeyEventRecord>& events) {
    return Write({{"t", "events"}, {"events", EventsJson(events)}});
}

std::string ProblemMessage(std::string_view problem) {
    return Write({{"t", "error"}, {"problem", problem}});
}

}  // namespace panelhost
