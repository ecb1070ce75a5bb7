// navdb/nearby.h - records around the aircraft, for maps and nearest pages.
//
// Two stages: a build scans the whole table (600 nm), a narrowing scans the build's list. Order
// is table order; limits drop the rest, with one message but for the fixes within 600 nm. Lists
// keep their contents until the next call or load; their records have no name and no elevation.
// Distances are great-circle nm from the aircraft's present position.
#pragma once

#include <cstdint>
#include <optional>

#include "geometry/geometry.h"
#include "navdb/nav_database.h"

namespace avq1 {

struct NearbyList {
    PointList points;
    LatLon reference;  // 600 nm: where the map was centred; fixes200: the aircraft; else unused
    std::optional<LatLon> madeAt;  // the aircraft's position; none since the last load
};

struct NearbyLists {
    NearbyList airports600;
    NearbyList airports180;
    NearbyList navaids600;
    NearbyList navaids180;
    NearbyList fixes600;
    NearbyList fixes200;
};

extern NearbyLists nearby;
extern std::int32_t NearbyFixLimit;  // 5000

// `mapCentre` is the waypoint the map is centred on in its waypoint-centred mode, else the
// aircraft's present position; it is kept as the list's reference.
void BuildNearbyAirports(const LatLon& mapCentre);
void NarrowNearbyAirports();
void BuildNearbyNavaids(const LatLon& mapCentre);
void NarrowNearbyNavaids();
void BuildNearbyFixes(const LatLon& mapCentre);
void NarrowNearbyFixes();

}  // namespace avq1
