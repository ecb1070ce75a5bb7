// navdb/database_cycle.h - whether the navigation data are still good, by the simulator's date.
#pragma once

namespace avq1 {

// Whether the date lies behind the last day of DatabaseValidity. False when either is not known.
bool IsDatabaseExpired();

}  // namespace avq1
