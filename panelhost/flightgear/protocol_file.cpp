#include "panelhost/flightgear/protocol_file.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "panelhost/base/text.h"
#include "panelhost/flightgear/controls.h"
#include "panelhost/flightgear/state_table.h"

namespace panelhost {
namespace {

constexpr std::size_t kKeyLength = 16;
constexpr std::size_t kMostFileBytes = 1U << 20U;
constexpr const char* kClockProperty = "/sim/time/steady-clock-sec";

std::string Chunk(const std::string& property, const char* type, const std::string& format) {
    std::string text = "    <chunk><node>" + property + "</node><type>" + type + "</type>";
    if (!format.empty()) {
        text += "<format>" + format + "</format>";
    }
    return text + "</chunk>\n";
}

std::string Document(const char* direction, const std::string& chunks) {
    return Format(
               "<?xml version=\"1.0\"?>\n<!-- Written by avqpanel at each start. -->\n"
               "<PropertyList>\n <generic>\n  <%s>\n"
               "    <line_separator>newline</line_separator>\n"
               "    <var_separator>tab</var_separator>\n",
               direction) +
           chunks + Format("  </%s>\n </generic>\n</PropertyList>\n", direction);
}

std::string FirstChunk(const char* kind, std::string_view key) {
    return Chunk(kClockProperty, "double", OpeningOf(kind, key) + " %.6f");
}

// A text keeps an absent value apart from 0: it is empty.
std::string TextChunk(const std::string& property) {
    return Chunk(property, "string", "%s");
}

std::string FileOf(const std::string& folder, std::string_view kind) {
    return folder + "/Protocol/avq1-" + std::string(kind) + ".xml";
}

bool IsKey(std::string_view key) {
    return key.size() == kKeyLength &&
           key.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

std::string KnownKey(const std::string& folder) {
    const std::string text = ReadWholeFile(FileOf(folder, kStateKind), kMostFileBytes).value_or("");
    const std::string opening = OpeningOf(kStateKind, "");
    const std::size_t at = text.find(opening);
    const std::string key =
        at == std::string::npos ? "" : text.substr(at + opening.size(), kKeyLength);
    return IsKey(key) ? key : "";
}

std::string NewKey() {
    std::random_device random;
    return Format("%08x%08x", random(), random());
}

bool WriteFile(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    return file.good();
}

std::string NumbersOf(const std::array<int, kMostVariablesOfRow>& variables) {
    std::string text;
    for (const int number : variables) {
        if (number != 0) {
            text += Format("%s%d", text.empty() ? "" : ", ", number);
        }
    }
    return text;
}

}  // namespace

std::string OpeningOf(std::string_view kind, std::string_view key) {
    return "AVQ1-" + std::string(kind) + "-" + std::string(key);
}

std::string StateProtocol(const AutopilotMapping& mapping, std::string_view key) {
    std::string chunks = FirstChunk(kStateKind, key);
    for (const StateRow& row : StateTable()) {
        if (row.told >= static_cast<Told>(At(Told::EngineFlow, mapping.engines)) &&
            row.told < Told::TankShare) {
            chunks += TextChunk(kUnusedProperty);
            continue;
        }
        chunks += *row.decimals != '\0' ? Chunk(row.property, "double", row.decimals)
                                        : TextChunk(row.property);
    }
    for (const char* const ident : kToldIdents) {
        chunks += TextChunk(ident);
    }
    for (const std::string& property : ControlProperties(mapping)) {
        chunks += TextChunk(property);
    }
    return Document("output", chunks);
}

std::string TrafficProtocol(std::string_view key) {
    std::string chunks = FirstChunk(kTrafficKind, key);
    for (const char* const node : kTrafficNodes) {
        for (int i = 0; i < kToldAircraft; ++i) {
            for (const char* const property : kTrafficProperties) {
                chunks += TextChunk(Format("%s[%d]/%s", node, i, property));
            }
        }
    }
    return Document("output", chunks);
}

std::string ControlProtocol(const AutopilotMapping& mapping) {
    std::string chunks;
    for (const std::string& property : ControlProperties(mapping)) {
        chunks += Chunk(property, "string", "");
    }
    return Document("input", chunks);
}

std::string ProtocolFolder() {
    const char* const data = std::getenv("XDG_DATA_HOME");
    const char* const home = std::getenv("HOME");
    const std::string base = data != nullptr && *data != '\0'
                                 ? std::string(data)
                                 : std::string(home != nullptr ? home : ".") + "/.local/share";
    return base + "/avqpanel/flightgear";
}

bool WriteProtocolFiles(const std::string& folder, const AutopilotMapping& mapping,
                        std::string& key, std::string& problem) {
    std::error_code error;
    std::filesystem::create_directories(folder + "/Protocol", error);
    key = KnownKey(folder);
    if (key.empty()) {
        key = NewKey();
    }
    const bool written = WriteFile(FileOf(folder, kStateKind), StateProtocol(mapping, key)) &&
                         WriteFile(FileOf(folder, kTrafficKind), TrafficProtocol(key)) &&
                         WriteFile(FileOf(folder, "controls"), ControlProtocol(mapping));
    if (!written) {
        problem = "cannot write the protocol files below " + folder;
    }
    return written;
}

std::string StartOptions(const std::string& folder, const LinkPorts& ports) {
    const bool near = ports.host == "127.0.0.1";
    const char* const panel = near ? "127.0.0.1" : "ADDRESS_OF_THIS_MACHINE";
    const char* const bound = near ? "127.0.0.1" : "";
    return Format("--data='%s' --generic=socket,out,60,%s,%d,udp,avq1-state", folder.c_str(), panel,
                  ports.port) +
           Format(" --generic=socket,out,5,%s,%d,udp,avq1-traffic", panel, ports.port) +
           Format(" --generic=socket,in,60,%s,%d,udp,avq1-controls", bound, ports.port + 1);
}

std::string PropertyTables(const AutopilotMapping& mapping) {
    std::string text = "| AVQ1 variable | property | unit | sign and use |\n|---|---|---|---|\n";
    for (const StateRow& row : StateTable()) {
        text += Format("| %s | `%s` | %s | %s |\n", NumbersOf(row.variables).c_str(),
                       row.property.c_str(), row.unit, row.note);
    }
    text += "\n| AVQ1 variable | property | unit | sent by key event |\n|---|---|---|---|\n";
    for (const ControlRow& row : ControlTable()) {
        const std::string property = PropertyOf(mapping, row);
        text += Format("| %s | `%s` | %s | %s |\n", NumbersOf(row.variables).c_str(),
                       property.c_str(), row.unit, row.sentBy);
    }
    return text;
}

}  // namespace panelhost
