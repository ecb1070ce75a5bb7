// panelhost/flightgear/protocol_file.h - the protocol files the simulator reads, the line it is
// started with, and the same tables as a page of documentation.
//
// The files lie in a folder of their own, each with a key that every packet begins with. A key that
// is there already is kept, so a simulator that runs is heard again after the panel host was
// started anew.
#pragma once

#include <string>
#include <string_view>

#include "panelhost/flightgear/autopilot_mapping.h"

namespace panelhost {

struct LinkPorts {
    std::string host = "127.0.0.1";  // where the simulator runs
    int port = 5510;                 // packets come in here; what is sent goes to the next one
};

inline constexpr const char* kStateKind = "state";
inline constexpr const char* kTrafficKind = "traffic";

// What packets of a kind begin with.
std::string OpeningOf(std::string_view kind, std::string_view key);

std::string StateProtocol(const AutopilotMapping& mapping, std::string_view key);
std::string TrafficProtocol(std::string_view key);
std::string ControlProtocol(const AutopilotMapping& mapping);

// Where the files are kept: below XDG_DATA_HOME or ~/.local/share.
std::string ProtocolFolder();
// Writes the three files below the folder and gives the key. False leaves one line in `problem`.
bool WriteProtocolFiles(const std::string& folder, const AutopilotMapping& mapping,
                        std::string& key, std::string& problem);
// The options the simulator is started with, for a shell.
std::string StartOptions(const std::string& folder, const LinkPorts& ports);

// The properties read and sent, as tables in Markdown.
std::string PropertyTables(const AutopilotMapping& mapping);

}  // namespace panelhost
