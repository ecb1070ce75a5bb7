#include "panelhost/world/earth.h"

#include <algorithm>
#include <cmath>

#include "magneticfield/magnetic_field.h"

namespace panelhost {
namespace {

double Radians(double degrees) {
    return degrees / kDegreesPerRadian;
}

double WrapLongitude(double longitude) {
    const double turned = std::fmod(longitude + 180.0, 360.0);
    return turned < 0 ? turned + 180.0 : turned - 180.0;
}

}  // namespace

double Normalise360(double degrees) {
    const double turned = std::fmod(degrees, 360.0);
    const double positive = turned < 0 ? turned + 360.0 : turned;
    return positive >= 360.0 ? 0.0 : positive;
}

double AngleDifference(double from, double to) {
    const double turned = Normalise360(to - from);
    return turned > 180.0 ? turned - 360.0 : turned;
}

double DistanceNm(const GeoPoint& a, const GeoPoint& b) {
    const double halfLat = std::sin(Radians(b.latitude - a.latitude) / 2);
    const double halfLon = std::sin(Radians(b.longitude - a.longitude) / 2);
    const double h = halfLat * halfLat + std::cos(Radians(a.latitude)) *
                                             std::cos(Radians(b.latitude)) * halfLon * halfLon;
    return 2 * std::asin(std::sqrt(std::clamp(h, 0.0, 1.0))) * kNmPerRadian;
}

double InitialCourse(const GeoPoint& from, const GeoPoint& to) {
    const double dLon = Radians(to.longitude - from.longitude);
    const double lat1 = Radians(from.latitude);
    const double lat2 = Radians(to.latitude);
    const double east = std::sin(dLon) * std::cos(lat2);
    const double north =
        std::cos(lat1) * std::sin(lat2) - std::sin(lat1) * std::cos(lat2) * std::cos(dLon);
    return Normalise360(std::atan2(east, north) * kDegreesPerRadian);
}

GeoPoint Destination(const GeoPoint& from, double courseTrue, double distanceNm) {
    const double arc = distanceNm / kNmPerRadian;
    const double course = Radians(courseTrue);
    const double lat1 = Radians(from.latitude);
    const double sinLat2 =
        std::sin(lat1) * std::cos(arc) + std::cos(lat1) * std::sin(arc) * std::cos(course);
    const double lat2 = std::asin(std::clamp(sinLat2, -1.0, 1.0));
    const double dLon = std::atan2(std::sin(course) * std::sin(arc) * std::cos(lat1),
                                   std::cos(arc) - std::sin(lat1) * std::sin(lat2));
    return {lat2 * kDegreesPerRadian, WrapLongitude(from.longitude + dLon * kDegreesPerRadian)};
}

double CrossTrackNm(const GeoPoint& from, double courseTrue, const GeoPoint& point) {
    const double arc = DistanceNm(from, point) / kNmPerRadian;
    const double angle = Radians(InitialCourse(from, point) - courseTrue);
    return std::asin(std::clamp(std::sin(arc) * std::sin(angle), -1.0, 1.0)) * kNmPerRadian;
}

double WorldVariation(const GeoPoint& at) {
    return magneticfield::Variation(at.latitude, at.longitude, magneticfield::kModelEpoch);
}

}  // namespace panelhost
