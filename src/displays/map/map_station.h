// displays/map/map_station.h - the station NAV1 receives, on a map.
#pragma once

#include "displays/map/map_compass.h"
#include "displays/map/map_layers.h"
#include "navdb/nav_database.h"

namespace avq1 {

// The navaid that stands where NAV1's bearing and slant distance point; the simulator tells no
// frequency. Null without signal or distance, and for a localizer. Valid until the lists around the
// aircraft are made anew: for this draw.
const PointRecord* ReceivedStation(const ReceiverState& receivers);

// A VOR with a distance: it has a place on the map.
bool HasStationPlace(const ReceiverState& receivers);

// The station at that bearing and distance with the selected course through it, and its name when
// the database knows it and nothing else on the map bears it. The caller clips.
void DrawReceivedStation(const MapFrame& frame, const MapCompass& rose, const PointRecord* station);

}  // namespace avq1
