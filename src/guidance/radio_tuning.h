// guidance/radio_tuning.h - turns flight plan data or a pilot's entry into radio events.
//
// Courses are whole degrees magnetic, frequencies the digits of their text (MHz; kHz of an NDB),
// distances nm. Nothing is sent when there is nothing to tune.
#pragma once

#include <cstdint>

namespace avq1 {

enum class TuneMode : std::int32_t { PilotEntry = 1, FlightPlan = 2 };

// From the plan: the first entry from the active one on that has a frequency, within 230 nm; its
// inbound course (degrees magnetic) and frequency are sent. A frequency that reads as 0 sends
// nothing.
void TuneRadios(TuneMode mode);

}  // namespace avq1
