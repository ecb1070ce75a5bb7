#include "displays/map/map_nearby.h"

#include <cmath>

#include "base/module_state.h"
#include "geometry/geometry.h"
#include "navdb/nearby.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kRebuildNm = 60;  // of the 600 nm list: what is left reaches kMapReachNm
constexpr double kNarrowNm = 10;   // of the narrower list
constexpr double kNarrowReachNm = 170;

// One kind's lists and what makes them.
struct KindLists {
    const NearbyList& wide;
    const NearbyList& narrow;
    void (*build)(const LatLon& mapCentre);
    void (*narrowDown)();
};

const PointList kEmpty;

double MovedNm(const LatLon& since) {
    return GreatCircleDistanceNm(since.latitude, since.longitude, aircraft.latitude,
                                 aircraft.longitude);
}

const PointList& Around(const KindLists& lists, const LatLon& mapCentre, double rangeNm) {
    const LatLon here{aircraft.latitude, aircraft.longitude};
    if (!std::isfinite(here.latitude + here.longitude + mapCentre.latitude + mapCentre.longitude)) {
        return kEmpty;
    }
    const bool rebuild = !lists.wide.madeAt || MovedNm(*lists.wide.madeAt) > kRebuildNm;
    if (rebuild) {
        lists.build(mapCentre);
    }
    if (rebuild || !lists.narrow.madeAt || MovedNm(*lists.narrow.madeAt) > kNarrowNm) {
        lists.narrowDown();
    }
    return rangeNm <= kNarrowReachNm ? lists.narrow.points : lists.wide.points;
}

}  // namespace

const PointList& AirportsAround(const LatLon& mapCentre, double rangeNm) {
    return Around(
        {nearby.airports600, nearby.airports180, BuildNearbyAirports, NarrowNearbyAirports},
        mapCentre, rangeNm);
}

const PointList& NavaidsAround(const LatLon& mapCentre, double rangeNm) {
    return Around({nearby.navaids600, nearby.navaids180, BuildNearbyNavaids, NarrowNearbyNavaids},
                  mapCentre, rangeNm);
}

const PointList& FixesAround(const LatLon& mapCentre, double rangeNm) {
    return Around({nearby.fixes600, nearby.fixes200, BuildNearbyFixes, NarrowNearbyFixes},
                  mapCentre, rangeNm);
}

}  // namespace avq1
