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

    bool Holds(const PointRecord& point) const {
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

void FillNearby(const PointTable& source, const NearbyRule& rule, PointTable& list) {
    list.Clear();
    const RadiusFilter filter(PresentPosition(), rule.radiusNm);
    for (std::int32_t i = 1; i <= source.count && list.count < rule.limit; ++i) {
        if (!filter.Holds(source[i])) {
            continue;
        }
        PointRecord point = source[i];
        point.name = {};
        point.elevation = {};
        list.Append(point);
        if (rule.warningFormat != nullptr && list.count == rule.limit - kWarningMargin) {
            AppendMessage(Format(rule.warningFormat, list.count));
        }
    }
}

}  // namespace

NearbyLists nearby;
std::int32_t NearbyFixLimit = kNearbyFixLimit;

void BuildNearbyAirports(const LatLon& mapCentre) {
    FillNearby(navDatabase.airports, {kBuildRadiusNm, kBuildLimit, "Apts May exceed %d"},
               nearby.airports600.points);
    nearby.airports600.reference = mapCentre;
}

void NarrowNearbyAirports() {
    FillNearby(nearby.airports600.points, {kNarrowRadiusNm, kNarrowLimit, "Apts May exceed %d"},
               nearby.airports180.points);
}

void BuildNearbyNavaids(const LatLon& mapCentre) {
    FillNearby(navDatabase.navaids, {kBuildRadiusNm, kBuildLimit, "Navs May exceed %d"},
               nearby.navaids600.points);
    nearby.navaids600.reference = mapCentre;
}

void NarrowNearbyNavaids() {
    FillNearby(nearby.navaids600.points, {kNarrowRadiusNm, kNarrowLimit, "Navs May exceed %d"},
               nearby.navaids180.points);
}

void BuildNearbyFixes(const LatLon& mapCentre) {
    FillNearby(navDatabase.airwayFixes, {kBuildRadiusNm, kBuildLimit, nullptr},
               nearby.fixes600.points);
    nearby.fixes600.reference = mapCentre;
}

void NarrowNearbyFixes() {
    FillNearby(nearby.fixes600.points, {kNarrowFixRadiusNm, NearbyFixLimit, "Ints May exceed %d"},
               nearby.fixes200.points);
    nearby.fixes200.reference = PresentPosition();
}

}  // namespace avq1
