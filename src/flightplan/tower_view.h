// flightplan/tower_view.h - the simulator's tower view, moved to the destination airport.
#pragma once

namespace avq1 {

// The position is that of the airport's additional information, else beside the selected runway,
// else above the active plan's last entry. False, and nothing said, without the data service.
bool SendTowerView();

}  // namespace avq1
