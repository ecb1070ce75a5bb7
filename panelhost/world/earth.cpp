#include "panelhost/world/earth.h"

#include <algorithm>
#include <cmath>

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

// Sums the potential's gradient over the field's coefficients (nT); the Legendre functions are
// Schmidt semi-normalised and built by the usual recursions in degree and order.
double WorldVariation(const GeoPoint& at) {
    constexpr int kDegree = 4;
    constexpr double kG[kDegree + 1][kDegree + 1] = {{0},
                                                     {-29404.8, -1450.9},
                                                     {-2499.6, 2982.0, 1677.0},
                                                     {1363.2, -2381.2, 1236.2, 525.7},
                                                     {903.0, 809.5, 86.3, -309.4, 48.0}};
    constexpr double kH[kDegree + 1][kDegree + 1] = {{0},
                                                     {0, 4652.5},
                                                     {0, -2991.6, -734.6},
                                                     {0, -82.1, 241.9, -543.4},
                                                     {0, 281.9, -158.4, 199.7, -349.7}};
    const double latitude = std::clamp(at.latitude, -89.0, 89.0);
    const double cosTheta = std::sin(Radians(latitude));  // theta: angle from the north pole
    const double sinTheta = std::cos(Radians(latitude));
    double p[kDegree + 1][kDegree + 1] = {{1}};
    double d[kDegree + 1][kDegree + 1] = {{0}};  // by theta
    double north = 0;
    double east = 0;
    for (int n = 1; n <= kDegree; ++n) {
        for (int m = 0; m <= n; ++m) {
            if (m == n) {
                const double k = n == 1 ? 1.0 : std::sqrt(1.0 - 1.0 / (2.0 * n));
                p[n][n] = k * sinTheta * p[n - 1][n - 1];
                d[n][n] = k * (sinTheta * d[n - 1][n - 1] + cosTheta * p[n - 1][n - 1]);
            } else {
                const double k = std::sqrt(static_cast<double>(n * n - m * m));
                const double k2 = n < 2 || m > n - 2
                                      ? 0.0
                                      : std::sqrt(static_cast<double>((n - 1) * (n - 1) - m * m));
                const double p2 = k2 == 0 ? 0 : p[n - 2][m];
                const double d2 = k2 == 0 ? 0 : d[n - 2][m];
                p[n][m] = ((2 * n - 1) * cosTheta * p[n - 1][m] - k2 * p2) / k;
                d[n][m] =
                    ((2 * n - 1) * (cosTheta * d[n - 1][m] - sinTheta * p[n - 1][m]) - k2 * d2) / k;
            }
            const double angle = m * Radians(at.longitude);
            north += (kG[n][m] * std::cos(angle) + kH[n][m] * std::sin(angle)) * d[n][m];
            east += m * (kG[n][m] * std::sin(angle) - kH[n][m] * std::cos(angle)) * p[n][m];
        }
    }
    return std::atan2(east / sinTheta, north) * kDegreesPerRadian;
}

}  // namespace panelhost
