// panelhost/world/earth.h - positions and courses on the spherical earth the aircraft flies over.
// Degrees and nautical miles; the sphere is the one navigation data is computed on.
#pragma once

namespace panelhost {

inline constexpr double kNmPerRadian = 3437.7467707849396;
inline constexpr double kDegreesPerRadian = 57.29577951308232;
inline constexpr double kFeetPerNm = 6076.11548556;

struct GeoPoint {
    double latitude = 0;
    double longitude = 0;  // kept in [-180, 180)
};

double Normalise360(double degrees);             // [0, 360)
double AngleDifference(double from, double to);  // to - from, in (-180, 180]
double DistanceNm(const GeoPoint& a, const GeoPoint& b);
double InitialCourse(const GeoPoint& from, const GeoPoint& to);  // [0, 360), true
GeoPoint Destination(const GeoPoint& from, double courseTrue, double distanceNm);
// Distance of a point from the great circle through `from` on a course; right of it is positive.
double CrossTrackNm(const GeoPoint& from, double courseTrue, const GeoPoint& point);

// Magnetic variation, degrees, east positive: the world magnetic model's of 2025, the same in every
// run.
double WorldVariation(const GeoPoint& at);

}  // namespace panelhost
