// panelhost/session/opening.h - brings a session up from its options, and down again.
#pragma once

#include "panelhost/session/host_state.h"

namespace panelhost {

// The options with every path made absolute and the default ones filled in: the process changes to
// the simulator folder before it loads the module.
SessionOptions Resolved(const SessionOptions& given);
// Loads panel and module, places the gauges and sends the start events. False leaves one line in
// host.error.
bool OpenHost(HostState& host);
void CloseHost(HostState& host);  // sends the end events and unloads the module

}  // namespace panelhost
