#include "panelhost/flightgear/autopilot_mapping.h"

#include <nlohmann/json.hpp>

#include "panelhost/base/text.h"
#include "panelhost/flightgear/state_table.h"

namespace panelhost {
namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostPropertyLength = 200;

// What a text of the file goes to.
struct TextRow {
    const char* section;  // empty: of the file itself
    const char* key;
    std::string& (*slot)(AutopilotMapping& mapping);
    bool isProperty;
};

using M = AutopilotMapping;

constexpr TextRow kTexts[] = {
    {"", "name", [](M& m) -> std::string& { return m.name; }, false},
    {"targets", "headingBug", [](M& m) -> std::string& { return m.headingBug; }, true},
    {"targets", "altitude", [](M& m) -> std::string& { return m.altitude; }, true},
    {"targets", "verticalSpeed", [](M& m) -> std::string& { return m.verticalSpeed; }, true},
    {"targets", "airspeed", [](M& m) -> std::string& { return m.airspeed; }, true},
    {"lateral", "property", [](M& m) -> std::string& { return m.lateral.property; }, true},
    {"lateral", "off", [](M& m) -> std::string& { return m.lateral.off; }, false},
    {"lateral", "heading", [](M& m) -> std::string& { return m.lateral.modes[0]; }, false},
    {"lateral", "nav", [](M& m) -> std::string& { return m.lateral.modes[1]; }, false},
    {"lateral", "approach", [](M& m) -> std::string& { return m.lateral.modes[2]; }, false},
    {"vertical", "property", [](M& m) -> std::string& { return m.vertical.property; }, true},
    {"vertical", "off", [](M& m) -> std::string& { return m.vertical.off; }, false},
    {"vertical", "altitude", [](M& m) -> std::string& { return m.vertical.modes[0]; }, false},
    {"vertical", "verticalSpeed", [](M& m) -> std::string& { return m.vertical.modes[1]; }, false},
    {"vertical", "glideslope", [](M& m) -> std::string& { return m.vertical.modes[2]; }, false},
    {"speed", "property", [](M& m) -> std::string& { return m.speed.property; }, true},
    {"speed", "off", [](M& m) -> std::string& { return m.speed.off; }, false},
    {"speed", "airspeed", [](M& m) -> std::string& { return m.speed.modes[0]; }, false},
    {"master", "property", [](M& m) -> std::string& { return m.master.property; }, true},
    {"master", "on", [](M& m) -> std::string& { return m.master.on; }, false},
    {"master", "off", [](M& m) -> std::string& { return m.master.off; }, false},
    {"avionics", "property", [](M& m) -> std::string& { return m.avionics.property; }, true},
    {"avionics", "on", [](M& m) -> std::string& { return m.avionics.on; }, false},
    {"avionics", "off", [](M& m) -> std::string& { return m.avionics.off; }, false},
};

constexpr std::array<const char*, kTankCount> kTankNames = {
    "centre", "leftMain", "leftAux", "leftTip", "rightMain", "rightAux", "rightTip"};

bool IsPlainText(std::string_view text) {
    return text.size() <= kMostPropertyLength &&
           text.find_first_of("\t\r\n<>&") == std::string_view::npos;
}

// The text of a row; empty when the file leaves it out. False when it is not one.
bool TakeText(const Json& json, const TextRow& row, std::string& text) {
    const bool inside = *row.section != '\0';
    if (inside && !json.contains(row.section)) {
        return true;
    }
    const Json& section = inside ? json[row.section] : json;
    if (!section.is_object()) {
        return false;
    }
    if (!section.contains(row.key)) {
        return true;
    }
    const Json& value = section[row.key];
    if (!value.is_string()) {
        return false;
    }
    text = value.get<std::string>();
    return IsPlainText(text) && (!row.isProperty || (text.size() > 1 && text.front() == '/'));
}

bool TakeTanks(const Json& json, std::array<int, kTankCount>& tanks) {
    if (!json.contains("tanks")) {
        return true;
    }
    const Json& section = json["tanks"];
    for (std::size_t i = 0; i < kTankNames.size(); ++i) {
        tanks[i] = -1;
        if (section.is_object() && section.contains(kTankNames[i])) {
            const Json& number = section[kTankNames[i]];
            if (!number.is_number_integer() || number < -1 || number >= kToldTanks) {
                return false;
            }
            tanks[i] = number.get<int>();
        }
    }
    return section.is_object();
}

bool TakeEngines(const Json& json, int& engines) {
    if (!json.contains("engines")) {
        return true;
    }
    const Json& number = json["engines"];
    if (!number.is_number_integer() || number < 1 || number > kToldEngines) {
        return false;
    }
    engines = number.get<int>();
    return true;
}

}  // namespace

std::optional<AutopilotMapping> ReadMapping(std::string_view json, std::string& problem) {
    const Json file = json.size() <= kMostMappingBytes ? Json::parse(json, nullptr, false) : Json();
    if (!file.is_object()) {
        problem = "not a JSON object";
        return std::nullopt;
    }
    AutopilotMapping mapping;
    for (const TextRow& row : kTexts) {
        if (!TakeText(file, row, row.slot(mapping))) {
            problem = Format("%s%s%s is not a %s", row.section, *row.section != '\0' ? "." : "",
                             row.key, row.isProperty ? "property" : "text");
            return std::nullopt;
        }
    }
    if (!TakeEngines(file, mapping.engines)) {
        problem = Format("engines: a whole number from 1 to %d", kToldEngines);
        return std::nullopt;
    }
    if (!TakeTanks(file, mapping.tanks)) {
        problem = Format("tanks: whole numbers from -1 to %d", kToldTanks - 1);
        return std::nullopt;
    }
    return mapping;
}

}  // namespace panelhost
