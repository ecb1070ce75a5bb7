// host/listeners.h - who hears what guidance tells.
#pragma once

namespace avq1 {

// Connects the flight log, and whoever else listens, to the events of guidance. Each gauge's
// installation asks for it; once is enough.
void ConnectListeners();

}  // namespace avq1
