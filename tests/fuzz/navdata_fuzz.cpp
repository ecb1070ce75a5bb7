// Any bytes as any of the navigation files: no crash, no table beyond its capacity, no position
// that is not a number, and every record found again by its own identifier.
#include "base/module_state.h"
#include "fuzz/fuzz_text.h"
#include "navdb/nav_database.h"
#include "navdb/navdata_text.h"
#include "navdb/nearby.h"

namespace {

void CheckTable(avq1::PointTable& table, std::int32_t capacity) {
    Require(table.count >= 0 && table.count <= capacity);
    Require(table.Positions().size() == static_cast<std::size_t>(table.count) + 1);
    for (std::int32_t i = 1; i <= table.count; ++i) {
        const avq1::PointRecord record = table[i];
        const avq1::LatLon& position = table.Positions()[static_cast<std::size_t>(i)];
        Require(!record.ident.empty());
        Require(std::isfinite(record.latitude) && std::isfinite(record.longitude));
        Require(record.latitude == position.latitude && record.longitude == position.longitude);
    }
}

}  // namespace

void FuzzText(std::string_view text) {
    using namespace avq1;
    ResetModuleState();
    ReadIntersections(text, navDatabase.intersections);
    ReadAirwayFixes(text, navDatabase.airwayFixes);
    ReadAirports(text, navDatabase.airports);
    ReadNavaids(text, navDatabase.navaids);
    BuildNavaidLetterIndex();
    CheckTable(navDatabase.intersections, kIntersectionCapacity);
    CheckTable(navDatabase.airwayFixes, kAirwayFixCapacity);
    CheckTable(navDatabase.airports, kAirportCapacity);
    CheckTable(navDatabase.navaids, kNavaidCapacity);
    BuildNearbyAirports({});
    NarrowNearbyAirports();
    BuildNearbyNavaids({});
    BuildNearbyFixes({});
    std::string cycle;
    std::string validity;
    ReadCycleText(text, cycle, validity);
    if (navDatabase.airports.count > 0) {
        AirportDetail detail;
        std::string elevation;
        const std::string ident(navDatabase.airports[navDatabase.airports.count].ident);
        ReadAirportDetail(text, ident, detail, elevation);
        Require(detail.runways.size() <= 20);
        SearchResults results;
        SearchIdent(ident, SearchCategory::Airports, results);
        Require(NearestResult(results) >= 1);
    }
    if (navDatabase.navaids.count > 0) {
        const Navaid& first = navDatabase.navaids[1];
        Require(FindNavaid(first.ident, KindText(first.kind), first.latitude) == 1);
    }
}
