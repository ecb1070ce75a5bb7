#include "avqdata/procedure_arcs.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "avqdata/airspace.h"
#include "avqdata/folder.h"
#include "avqdata/text_tools.h"

namespace avqdata {
namespace {

// Published radii have tenths of a mile and the station's distances are slanted.
constexpr double kRadiusSlackNm = 0.3;

bool IsOnArc(const LatLon& at, const LatLon& centre, double radiusNm) {
    return std::abs(DistanceNm(centre, at) - radiusNm) <= kRadiusSlackNm;
}

LatLon PointFrom(const LatLon& at, double courseTrue, double distanceNm) {
    LatLon point;
    avq1::PointAtDistance(at.latitude, at.longitude, Normalized(courseTrue), distanceNm,
                          point.latitude, point.longitude);
    return point;
}

// The centre as the source has it, else the one that turn, radius and ends leave.
std::optional<LatLon> CentreOf(const CifpBook& book, const std::string& airport,
                               const ProcedureLegRecord& leg, const LatLon& end,
                               const std::optional<LatLon>& begin) {
    const std::optional<LatLon> known =
        book.points.Find(leg.centreSection, airport, leg.centre, leg.centreRegion, end);
    if (known || leg.path != "RF" || !begin || leg.radiusNm <= 0) {
        return known;
    }
    const double half = DistanceNm(*begin, end) / 2;
    if (half > leg.radiusNm) {
        return std::nullopt;
    }
    const double course = CourseTrue(*begin, end);
    const bool isLong = leg.lengthNm > std::numbers::pi * leg.radiusNm;  // more than half around
    const bool atLeft = (leg.turn == 'L') != isLong;
    return PointFrom(PointFrom(*begin, course, half), course + (atLeft ? -90 : 90),
                     std::sqrt(leg.radiusNm * leg.radiusNm - half * half));
}

// Where an arc about a station begins: on a radial, published as the radial of its end is.
std::optional<LatLon> BeginOf(const ProcedureLegRecord& leg, const LatLon& centre,
                              const LatLon& end, double radiusNm) {
    if (leg.path != "AF" || !leg.radialDeg || !leg.courseDeg) {
        return std::nullopt;
    }
    return PointFrom(centre, CourseTrue(centre, end) + *leg.courseDeg - *leg.radialDeg, radiusNm);
}

}  // namespace

std::string ArcPointNames::NameOf(const std::string& airport, const std::string& end,
                                  const LatLon& at) {
    constexpr std::size_t kLongest = 5;
    constexpr std::size_t kStem = 3;
    const LatLon place = RoundedAsWritten(at, kPointDecimals);
    std::map<std::string, LatLon>& places = places_[airport];
    for (int number = 1;; ++number) {
        const std::string digits = (number < 10 ? "0" : "") + std::to_string(number);
        const std::string name =
            end.substr(0, std::min(kStem, kLongest - std::min(kLongest, digits.size()))) + digits;
        if (book_.points.HasOwn(name)) {
            continue;
        }
        const auto [have, isNew] = places.try_emplace(name, place);
        if (isNew) {
            points_.push_back({name, place});
        }
        if (isNew || (have->second.latitude == place.latitude &&
                      have->second.longitude == place.longitude)) {
            return name;
        }
    }
}

std::optional<std::vector<Fix>> FollowArc(const CifpBook& book, const std::string& airport,
                                          const ProcedureLegRecord& leg, const LatLon& end,
                                          const std::optional<LatLon>& begin,
                                          ArcPointNames& names) {
    constexpr double kRounding = 0.01;  // of the file's decimals
    const std::optional<LatLon> centre = CentreOf(book, airport, leg, end, begin);
    if (!centre) {
        return std::nullopt;
    }
    const double radiusNm = leg.radiusNm > 0 ? leg.radiusNm : DistanceNm(*centre, end);
    const bool hasBegun = begin && IsOnArc(*begin, *centre, radiusNm);
    const std::optional<LatLon> from = hasBegun ? begin : BeginOf(leg, *centre, end, radiusNm);
    if (!from || !IsOnArc(end, *centre, radiusNm)) {
        return std::nullopt;
    }
    std::vector<LatLon> points{*from};
    if (DistanceNm(*from, end) > kFarthestOffArcNm) {
        points = ArcPoints(*centre, *from, end, leg.turn != 'L', kFarthestOffArcNm - kRounding);
        points.pop_back();
    }
    if (hasBegun) {
        points.erase(points.begin());
    }
    std::vector<Fix> fixes;
    for (const LatLon& at : points) {
        fixes.push_back({names.NameOf(airport, leg.fix, at), at});
    }
    return fixes;
}

}  // namespace avqdata
