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

// One kind's lists, and where the aircraft was when they were made.
struct KindLists {
    const PointTable& source;
    const PointTable& wide;
    const PointTable& narrow;
    void (*build)(const LatLon& mapCentre);
    void (*narrowDown)();
};

struct Freshness {
    const PointRecord* builtFrom = nullptr;  // the table's records: a reload moves them
    LatLon builtAt;
    LatLon narrowedAt;
};

Freshness airportsFresh;
Freshness navaidsFresh;
Freshness fixesFresh;
const PointTable kEmpty;

const StateReset kReset([] { airportsFresh = navaidsFresh = fixesFresh = Freshness{}; });

double MovedNm(const LatLon& since) {
    return GreatCircleDistanceNm(since.latitude, since.longitude, aircraft.latitude,
                                 aircraft.longitude);
}

const PointTable& Around(const KindLists& lists, Freshness& fresh, const LatLon& mapCentre,
                         double rangeNm) {
    const LatLon here{aircraft.latitude, aircraft.longitude};
    if (!std::isfinite(here.latitude + here.longitude + mapCentre.latitude + mapCentre.longitude)) {
        return kEmpty;
    }
    const bool rebuild =
        fresh.builtFrom != lists.source.records.data() || MovedNm(fresh.builtAt) > kRebuildNm;
    if (rebuild) {
        lists.build(mapCentre);
        fresh.builtFrom = lists.source.records.data();
        fresh.builtAt = here;
    }
    if (rebuild || MovedNm(fresh.narrowedAt) > kNarrowNm) {
        lists.narrowDown();
        fresh.narrowedAt = here;
    }
    return rangeNm <= kNarrowReachNm ? lists.narrow : lists.wide;
}

}  // namespace

const PointTable& AirportsAround(const LatLon& mapCentre, double rangeNm) {
    return Around({navDatabase.airports, nearby.airports600.points, nearby.airports180.points,
                   BuildNearbyAirports, NarrowNearbyAirports},
                  airportsFresh, mapCentre, rangeNm);
}

const PointTable& NavaidsAround(const LatLon& mapCentre, double rangeNm) {
    return Around({navDatabase.navaids, nearby.navaids600.points, nearby.navaids180.points,
                   BuildNearbyNavaids, NarrowNearbyNavaids},
                  navaidsFresh, mapCentre, rangeNm);
}

const PointTable& FixesAround(const LatLon& mapCentre, double rangeNm) {
    return Around({navDatabase.airwayFixes, nearby.fixes600.points, nearby.fixes200.points,
                   BuildNearbyFixes, NarrowNearbyFixes},
                  fixesFresh, mapCentre, rangeNm);
}

}  // namespace avq1
