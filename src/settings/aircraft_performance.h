// settings/aircraft_performance.h - the aircraft's own file: speeds, rates and limits.
//
// The file is \avq\Aircraft\<AircraftName>.cfg. AircraftName is fixed by the first gauge with a
// usable parameter, for as long as the module stays loaded.
#pragma once

#include <string>

namespace avq1 {

extern std::string AircraftName;  // without folder and extension; empty until a gauge supplies it

// Reads the aircraft's file. A missing file leaves every value at its default.
void LoadAircraftFile();

}  // namespace avq1
