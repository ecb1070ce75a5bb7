#include "panelhost/web/client_message.h"

#include <cmath>
#include <nlohmann/json.hpp>
#include <variant>

#include "panelhost/session/situations.h"
#include "panelhost/web/api.h"

namespace panelhost {
namespace {

using Json = nlohmann::json;
using Target =
    std::variant<int ClientMessage::*, double ClientMessage::*, bool ClientMessage::*,
                 std::optional<double> ClientMessage::*, std::vector<int> ClientMessage::*,
                 std::string ClientMessage::*, std::vector<std::string> ClientMessage::*>;

struct Field {
    const char* name;
    Target target;
    double low;  // of a number, or of a list's members
    double high;
    bool whole;
    bool required;
};

struct Kind {
    const char* name;
    ClientAction action;
    std::vector<Field> fields;
};

constexpr double kMaxWindow = 1023;
constexpr double kMaxPixel = 16384;
constexpr double kMaxWord = 4294967295.0;

using M = ClientMessage;

Field Window() {
    return {"w", &M::window, 0, kMaxWindow, true, true};
}
Field Pixel(const char* name, double M::*target) {
    return {name, target, 0, kMaxPixel, false, true};
}
Field Flag(const char* name) {
    return {name, &M::on, 0, 1, false, true};
}
Field Quantity(const char* name, std::optional<double> M::*target, double low, double high) {
    return {name, target, low, high, false, false};
}

Field Name(const char* name, std::string M::*target) {
    return {name, target, 0, 0, false, true};
}
Field Names(const char* name, std::vector<std::string> M::*target) {
    return {name, target, 0, 0, false, false};
}

const std::vector<Kind>& Kinds() {
    static const std::vector<Kind> kinds = {
        {"down",
         ClientAction::Down,
         {Window(), Pixel("x", &M::x), Pixel("y", &M::y), {"b", &M::button, 0, 2, true, false}}},
        {"up", ClientAction::Up, {}},
        {"wheel",
         ClientAction::Wheel,
         {Window(), Pixel("x", &M::x), Pixel("y", &M::y), Flag("up")}},
        {"key",
         ClientAction::Key,
         {{"scan", &M::scanCode, 0, 255, true, true},
          {"vk", &M::virtualKey, 0, 255, true, true},
          Flag("down")}},
        {"keysup", ClientAction::ReleaseKeys, {}},
        {"toggle", ClientAction::ToggleWindow, {{"ident", &M::number, 0, kMaxWord, true, true}}},
        {"pause", ClientAction::Pause, {Flag("on")}},
        {"rate", ClientAction::Rate, {{"v", &M::number, 0.25, 64, false, true}}},
        {"set",
         ClientAction::Set,
         {Quantity("latitude", &M::latitude, -89.9, 89.9),
          Quantity("longitude", &M::longitude, -180, 180),
          Quantity("altitude", &M::altitudeFt, -2000, 45000),
          Quantity("heading", &M::headingTrue, 0, 360), Quantity("speed", &M::airspeedKt, 0, 400),
          Quantity("windDirection", &M::windDirectionTrue, 0, 360),
          Quantity("windSpeed", &M::windSpeedKt, 0, 200)}},
        {"watch",
         ClientAction::Watch,
         {{"windows", &M::windows, 0, kMaxWindow, true, true},
          {"scales", &M::scales, 1, 3, true, false}}},
        {"situation",
         ClientAction::Situation,
         {{"v", &M::number, 0, static_cast<double>(Situations().size()) - 1, true, true}}},
        {"event",
         ClientAction::SendEvent,
         {{"number", &M::number, 0, 2147483647.0, true, true},
          {"value", &M::value, 0, kMaxWord, true, true}}},
        {"painted", ClientAction::Painted, {Window()}},
        {"press", ClientAction::PressKey, {Name("gauge", &M::gauge), Name("key", &M::key)}},
        {"hold", ClientAction::HoldKey, {Name("gauge", &M::gauge), Name("key", &M::key)}},
        {"release", ClientAction::Up, {}},
        {"turn",
         ClientAction::TurnKnob,
         {Name("gauge", &M::gauge),
          Name("key", &M::key),
          {"steps", &M::steps, -kMostSteps, kMostSteps, true, true}}},
        {"subscribe",
         ClientAction::Subscribe,
         {Names("gauges", &M::gauges),
          Names("variables", &M::variables),
          {"events", &M::on, 0, 1, false, false}}},
        {"radio",
         ClientAction::Radio,
         {Quantity("nav1", &M::nav1Mhz, 108, 117.95), Quantity("nav2", &M::nav2Mhz, 108, 117.95),
          Quantity("adf", &M::adfKhz, 190, 1799), Quantity("course1", &M::course1Mag, 0, 360),
          Quantity("course2", &M::course2Mag, 0, 360)}},
    };
    return kinds;
}

std::optional<double> NumberOf(const Json& json, const Field& field) {
    if (!json.is_number()) {
        return {};
    }
    const auto number = json.get<double>();
    const bool inRange = std::isfinite(number) && number >= field.low && number <= field.high;
    return inRange && (!field.whole || number == std::floor(number)) ? std::optional(number)
                                                                     : std::nullopt;
}

bool ReadList(const Json& json, const Field& field, std::vector<int>& list) {
    if (!json.is_array() || json.size() > kMaxWatchedWindows) {
        return false;
    }
    for (const Json& member : json) {
        const std::optional<double> number = NumberOf(member, field);
        if (!number) {
            return false;
        }
        list.push_back(static_cast<int>(*number));
    }
    return true;
}

bool ReadName(const Json& json, std::string& name) {
    if (!json.is_string()) {
        return false;
    }
    name = json.get<std::string>();
    return !name.empty() && name.size() <= kMaxNameCharacters;
}

bool ReadNames(const Json& json, std::vector<std::string>& names) {
    if (!json.is_array() || json.size() > kMaxNames) {
        return false;
    }
    names.resize(json.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (!ReadName(json[i], names[i])) {
            return false;
        }
    }
    return true;
}

bool ReadField(const Json& json, const Field& field, ClientMessage& message) {
    if (const auto* flag = std::get_if<bool M::*>(&field.target)) {
        message.*(*flag) = json.is_boolean() && json.get<bool>();
        return json.is_boolean();
    }
    if (const auto* list = std::get_if<std::vector<int> M::*>(&field.target)) {
        return ReadList(json, field, message.*(*list));
    }
    if (const auto* name = std::get_if<std::string M::*>(&field.target)) {
        return ReadName(json, message.*(*name));
    }
    if (const auto* names = std::get_if<std::vector<std::string> M::*>(&field.target)) {
        return ReadNames(json, message.*(*names));
    }
    const std::optional<double> number = NumberOf(json, field);
    if (!number) {
        return false;
    }
    if (const auto* whole = std::get_if<int M::*>(&field.target)) {
        message.*(*whole) = static_cast<int>(*number);
    } else if (const auto* real = std::get_if<double M::*>(&field.target)) {
        message.*(*real) = *number;
    } else if (const auto* optional = std::get_if<std::optional<double> M::*>(&field.target)) {
        message.*(*optional) = *number;
    }
    return true;
}

ClientMessage Bad(std::string problem) {
    ClientMessage message;
    message.problem = std::move(problem);
    return message;
}

const Kind* FindKind(const Json& json) {
    const auto name = json.find("t");
    if (name == json.end() || !name->is_string()) {
        return nullptr;
    }
    for (const Kind& kind : Kinds()) {
        if (name->get_ref<const std::string&>() == kind.name) {
            return &kind;
        }
    }
    return nullptr;
}

}  // namespace

ClientMessage ParseClientMessage(std::string_view text) {
    if (text.size() > kMaxClientMessageBytes) {
        return Bad("message too long");
    }
    const Json json = Json::parse(text, nullptr, false);
    if (!json.is_object()) {
        return Bad("not a JSON object");
    }
    const Kind* const kind = FindKind(json);
    if (kind == nullptr) {
        return Bad("unknown kind of message");
    }
    ClientMessage message;
    std::size_t known = 1;  // "t" itself
    for (const Field& field : kind->fields) {
        const auto found = json.find(field.name);
        if (found == json.end()) {
            if (field.required) {
                return Bad(std::string("missing field ") + field.name);
            }
            continue;
        }
        ++known;
        if (!ReadField(*found, field, message)) {
            return Bad(std::string("bad value of field ") + field.name);
        }
    }
    if (known != json.size()) {
        return Bad("unknown field");
    }
    if (message.latitude.has_value() != message.longitude.has_value()) {
        return Bad("latitude and longitude come together");
    }
    if (!message.scales.empty() && message.scales.size() != message.windows.size()) {
        return Bad("as many scales as windows");
    }
    message.action = kind->action;
    return message;
}

}  // namespace panelhost
