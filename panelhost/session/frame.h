// panelhost/session/frame.h - the panel events a module is sent: at the start, each frame, at the
// end.
//
// Update events fall due 18 times a second of panel time and go to every placed gauge, draw events
// once a frame to the gauges of visible windows.
#pragma once

#include "panelhost/session/host_state.h"

namespace panelhost {

void SendStartEvents(HostState& host);                        // to every placed gauge
void SendStartEvents(HostState& host, Placement& placement);  // to one placed later
void SendConnect(HostState& host, Placement& placement);      // its surfaces are new
void SendUpdate(Placement& placement);
void SendEndEvents(HostState& host);
// Without `draw`, or in a window not watched, the gauges of visible windows get their draw events
// all the same, for the module flies on them, but no surface to draw on; only after an input and
// now and then they do. While no open window has a screen, one of the host's own that nobody sees
// gets draw events in their place. Views are drawn while somebody watches, after all others: they
// fly nothing.
void StepPanel(HostState& host, double dtS, bool draw);
// Lets a visible window's gauges draw what they show now; no time passes.
void LookAt(HostState& host, int window);
// Takes over what the gauges have drawn, moved, shown or hidden.
void SettleAll(HostState& host);

}  // namespace panelhost
