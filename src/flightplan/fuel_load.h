// flightplan/fuel_load.h - the plan's fuel into the aircraft's tanks, through the data service.
#pragma once

namespace avq1 {

// Spreads a quantity (weight units of the simulator) over mains, centre, auxiliaries and tips, in
// this order; more than the tanks hold is ignored. False, and nothing said, without the service.
bool LoadFuel(double quantity);

}  // namespace avq1
