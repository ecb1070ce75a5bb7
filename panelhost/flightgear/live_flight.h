// panelhost/flightgear/live_flight.h - FlightGear flies the aircraft.
//
// Binds a UDP socket, on the loopback unless the simulator runs elsewhere, and hears that one
// address only. Packets are taken with the time the kernel stamped on them, so a panel that is late
// shows the same flight.
#pragma once

#include <memory>
#include <string>

#include "panelhost/flightgear/protocol_file.h"
#include "panelhost/world/flight_source.h"

namespace panelhost {

struct LiveOptions {
    LinkPorts ports;
    std::string folder;       // of the protocol files; empty: ProtocolFolder()
    std::string mappingPath;  // of the autopilot's properties
    bool realTime = false;    // Step waits for its time to come: for scripts
};

// Writes the protocol files FlightGear reads. False leaves one line in `problem`.
bool WriteLiveFiles(const LiveOptions& options, std::string& problem);
// What FlightGear is started with to be heard, for a shell.
std::string LiveStartOptions(const LiveOptions& options);

// Null, with one line in `problem`, when the mapping cannot be read, the files not be written or
// the port not be had.
std::unique_ptr<FlightSource> MakeLiveFlight(const LiveOptions& options, std::string& problem);

}  // namespace panelhost
