#include "navdb/nearby.h"

#include <algorithm>
#include <cmath>

#include "base/messages.h"
#include "base/module_state.h"
#include "base/text.h"
#include "simlink/aircraft_state.h"

namespace avq1 {
namespace {

constexpr double kBuildRadiusNm = 600.0;
constexpr double kNarrowRadiusNm = 180.0;
constexpr double kNarrowFixRadiusNm = 200.0;
constexpr std::int32_t kBuildLimit = 3000;
constexpr std::int32_t kNarrowLimit = 1000;
constexpr std::int32_t kNearbyFixLimit = 5000;
constexpr std::int32_t kWarningMargin = 2;

const StateReset kReset([] {
    nearby = {};
    NearbyFixLimit = kNearbyFixLimit;
});

LatLon PresentPosition() {
    return {aircraft.latitude, aircraft.longitude};
}

// Sorts out most of the world by two subtractions: a point within the radius can differ from the
// centre by so much latitude and so much longitude only. What is left needs the exact distance.
class RadiusFilter {
  public:
    RadiusFilter(const LatLon& centre, double radiusNm) : centre_(centre), radiusNm_(radiusNm) {
        constexpr double kMarginDeg = 1e-3;  // far more than the rounding of the exact distance
        const double radiusDeg = radiusNm / 60.0;
        if (std::fabs(centre.latitude) > 90.0 || std::fabs(centre.longitude) > 180.0) {
            return;
        }
        latitudeLimit_ = radiusDeg + kMarginDeg;
        // Meridians that touch the circle; a circle that reaches a pole meets them all.
        if (std::fabs(centre.latitude) + latitudeLimit_ < 90.0) {
            longitudeLimit_ =
                std::asin(std::sin(radiusDeg * kDegToRad) / std::cos(centre.latitude * kDegToRad)) *
                    kRadToDeg +
                kMarginDeg;
        }
    }

    bool Holds(const LatLon& point) const {
        const bool onGlobe =
            std::fabs(point.latitude) <= 90.0 && std::fabs(point.longitude) <= 180.0;
        if (onGlobe && (std::fabs(point.latitude - centre_.latitude) > latitudeLimit_ ||
                        SmallerAngle(point.longitude, centre_.longitude) > longitudeLimit_)) {
            return false;
        }
        return GreatCircleDistanceNm(centre_.latitude, centre_.longitude, point.latitude,
                                     point.longitude) <= radiusNm_;
    }

  private:
    LatLon centre_;
    double radiusNm_;
    double latitudeLimit_ = 360.0;
    double longitudeLimit_ = 360.0;
};

struct NearbyRule {
    double radiusNm;
    std::int32_t limit;
    const char* warningFormat;  // null: fills up silently
};

void TakePoint(const PointRecord& point, const NearbyRule& rule, PointList& list) {
    list.Append(point);
    if (rule.warningFormat != nullptr && list.count == rule.limit - kWarningMargin) {
        AppendMessage(Format(rule.warningFormat, list.count));
    }
}

void Build(PointTable& table, const NearbyRule& rule, const LatLon& mapCentre, NearbyList& list) {
    list.points.Clear();
    list.reference = mapCentre;
    list.madeAt = PresentPosition();
    const RadiusFilter filter(PresentPosition(), rule.radiusNm);
    const std::vector<LatLon>& positions = table.Positions();
    for (std::int32_t i = 1; i <= table.count && list.points.count < rule.limit; ++i) {
        if (filter.Holds(positions[i])) {
            TakePoint(table.Listed(i), rule, list.points);
        }
    }
}

void Narrow(const NearbyList& built, const NearbyRule& rule, NearbyList& list) {
    list.points.Clear();
    list.madeAt = PresentPosition();
    const RadiusFilter filter(PresentPosition(), rule.radiusNm);
    for (std::int32_t i = 1; i <= built.points.count && list.points.count < rule.limit; ++i) {
        const PointRecord& point = built.points[i];
        if (filter.Holds({point.latitude, point.longitude})) {
            TakePoint(point, rule, list.points);
        }
    }
}

}  // namespace

NearbyLists nearby;
std::int32_t NearbyFixLimit = kNearbyFixLimit;

void BuildNearbyAirports(const LatLon& mapCentre) {
    Build(navDatabase.airports, {kBuildRadiusNm, kBuildLimit, "Apts May exceed %d"}, mapCentre,
          nearby.airports600);
}

void NarrowNearbyAirports() {
    Narrow(nearby.airports600, {kNarrowRadiusNm, kNarrowLimit, "Apts May exceed %d"},
           nearby.airports180);
}

void BuildNearbyNavaids(const LatLon& mapCentre) {
    Build(navDatabase.navaids, {kBuildRadiusNm, kBuildLimit, "Navs May exceed %d"}, mapCentre,
          nearby.navaids600);
}

void NarrowNearbyNavaids() {
    Narrow(nearby.navaids600, {kNarrowRadiusNm, kNarrowLimit, "Navs May exceed %d"},
           nearby.navaids180);
}

void BuildNearbyFixes(const LatLon& mapCentre) {
    Build(navDatabase.airwayFixes, {kBuildRadiusNm, kBuildLimit, nullptr}, mapCentre,
          nearby.fixes600);
}

void NarrowNearbyFixes() {
    Narrow(nearby.fixes600, {kNarrowFixRadiusNm, NearbyFixLimit, "Ints May exceed %d"},
           nearby.fixes200);
    nearby.fixes200.reference = PresentPosition();
}

}  // namespace avq1
