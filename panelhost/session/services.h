// panelhost/session/services.h - the service tables a module calls the host through.
//
// All 64 entries of the panel table are callable; those this host does not offer do nothing and
// return 0. Services act on the session given by SetActiveHost and do nothing without one.
#pragma once

#include <optional>
#include <string_view>

#include "panelhost/session/host_state.h"

namespace panelhost {

avq1::PanelServices* PanelServiceTable();
avq1::PlatformServices* PlatformServiceTable();

// A numbered variable as the module reads it; empty for an unknown number.
std::optional<double> ReadNumbered(const HostState& host, std::int32_t number);
NamedVariable ReadNamed(const RegisteredVariable& variable);
std::optional<NamedVariable> ReadNamed(const HostState& host, std::string_view name);

}  // namespace panelhost
