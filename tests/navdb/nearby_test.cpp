#include "navdb/nearby.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/messages.h"
#include "base/module_state.h"
#include "simlink/aircraft_state.h"
#include "support/nav_points.h"

namespace avq1 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Pointers: GCC 12 leaves a row empty that holds references and nothing to construct, where the
// rows beside it have something to construct.
struct Kind {
    PointTable* source;
    void (*build)(const LatLon&);
    void (*narrow)();
    const NearbyList *built, *narrowed;
    std::int32_t limit;
    std::vector<std::string> messages;  // when both are full
};

const Kind kKinds[] = {
    {&navDatabase.airports,
     BuildNearbyAirports,
     NarrowNearbyAirports,
     &nearby.airports600,
     &nearby.airports180,
     1000,
     {"Apts May exceed 2998", "Apts May exceed 998"}},
    {&navDatabase.navaids,
     BuildNearbyNavaids,
     NarrowNearbyNavaids,
     &nearby.navaids600,
     &nearby.navaids180,
     1000,
     {"Navs May exceed 2998", "Navs May exceed 998"}},
    {&navDatabase.airwayFixes,
     BuildNearbyFixes,
     NarrowNearbyFixes,
     &nearby.fixes600,
     &nearby.fixes200,
     3000,
     {}},
};

class NearbyTest : public testing::Test {
  protected:
    NearbyTest() { ResetModuleState(); }
    ~NearbyTest() override { ResetModuleState(); }

    static void Add(PointTable& table, double latitude, double longitude) {
        test::AddPoint(table, "FIX", latitude, longitude, PointKind::Navaid);
    }
    static std::vector<std::string> Messages() {
        return {messages.lines.begin() + 1, messages.lines.begin() + 1 + messages.count};
    }
};

// Wherever the aircraft is, the list is what comparing every record's distance gives.
TEST_F(NearbyTest, HoldsExactlyTheRecordsWithinTheRadius) {
    PointTable& fixes = navDatabase.airwayFixes;
    for (double latitude = -90; latitude <= 90; latitude += 5) {
        for (double longitude = -180; longitude <= 180; longitude += 7.5) {
            Add(fixes, latitude, longitude);
        }
    }
    Add(fixes, 95, 20);   // out of range in a rubbish file: the far side of the pole
    Add(fixes, 40, 371);  // more than once around
    Add(fixes, 1e300, 0);
    const LatLon places[] = {{0, 0},     {45, 179.9}, {-30, -179.9}, {85, 30},
                             {90, 0},    {-90, 50},   {79.9, 100},   {80.1, -100},
                             {-80, 180}, {40, 11},    {45, 350}};
    for (const LatLon& place : places) {
        aircraft.latitude = place.latitude;
        aircraft.longitude = place.longitude;
        std::vector<double> expected;
        for (std::int32_t i = 1; i <= fixes.count; ++i) {
            if (GreatCircleDistanceNm(place.latitude, place.longitude, fixes[i].latitude,
                                      fixes[i].longitude) <= 600.0) {
                expected.push_back(fixes[i].latitude * 1000 + fixes[i].longitude);
            }
        }
        BuildNearbyFixes({1, 2});
        std::vector<double> listed;
        for (std::int32_t i = 1; i <= nearby.fixes600.points.count; ++i) {
            const PointRecord& point = nearby.fixes600.points[i];
            listed.push_back(point.latitude * 1000 + point.longitude);
        }
        EXPECT_FALSE(expected.empty());
        EXPECT_EQ(listed, expected) << place.latitude << ' ' << place.longitude;
    }
}

TEST_F(NearbyTest, NarrowsTheBuiltListFromWhereTheAircraftIsNow) {
    aircraft.latitude = 0;
    aircraft.longitude = 0;
    for (const Kind& kind : kKinds) {
        for (double latitude : {2.99, 3.01, 3.33, 3.34, 9.99, 10.01}) {
            Add(*kind.source, latitude, 0);
        }
        kind.build({1, 2});  // the map's centre
        EXPECT_EQ(kind.built->points.count, 5);
        EXPECT_EQ(kind.built->reference.longitude, 2);
        kind.narrow();
        // 180 nm, for fixes 200.
        EXPECT_EQ(kind.narrowed->points.count, kind.narrowed == &nearby.fixes200 ? 3 : 1);
    }
    const PointRecord& entry = nearby.navaids180.points[1];
    EXPECT_EQ(entry.ident, "FIX");
    EXPECT_EQ(entry.frequency, "113.40");
    EXPECT_EQ(entry.kind, PointKind::Navaid);

    aircraft.latitude = 12;  // the record at 10.01 is near now but not in the built list
    NarrowNearbyNavaids();
    NarrowNearbyFixes();
    EXPECT_EQ(nearby.navaids180.points.count, 1);
    EXPECT_EQ(nearby.navaids180.points[1].latitude, 9.99);
    EXPECT_EQ(nearby.fixes200.reference.latitude, 12);
    EXPECT_EQ(nearby.fixes600.reference.latitude, 1);
}

TEST_F(NearbyTest, LimitsDropTheRestWithOneMessage) {
    aircraft.latitude = 10;
    aircraft.longitude = 10;
    for (const Kind& c : kKinds) {
        for (int i = 0; i < 3100; ++i) {
            Add(*c.source, 10, 10);
        }
        CutMessages(0);
        c.build({});
        c.narrow();
        EXPECT_EQ(c.built->points.count, 3000);
        EXPECT_EQ(c.narrowed->points.count, c.limit);
        EXPECT_EQ(Messages(), c.messages);
    }
    CutMessages(0);
    NearbyFixLimit = 50;
    NarrowNearbyFixes();
    EXPECT_EQ(nearby.fixes200.points.count, 50);
    EXPECT_THAT(Messages(), ElementsAre("Ints May exceed 48"));
}

}  // namespace
}  // namespace avq1
