// guidance/progress.h - route distance and time to go.
//
// Written to `progress` and `derived`: distances nm on the sphere, bearings degrees magnetic, times
// minutes and whole hours, speeds kt, angles degrees.
#pragma once

namespace avq1 {

// Route and straight distance from the aircraft to the last entry, and its magnetic bearing.
void UpdateRouteDistance();

// Times to the active waypoint and the destination; all 0 at 25 kt ground speed or less.
void UpdateTimeToGo();

// Wind components, airspeed estimate, drift and simulation rate from the snapshot.
void UpdateDerivedState();

}  // namespace avq1
