// geometry/geometry.h - navigation on the sphere: distances, courses, positions and their texts.
//
// Positions are decimal degrees, north and east positive. Distances are nautical miles on a
// sphere where one mile is one minute of arc. Courses and bearings are degrees true unless a
// name says Mag. Pure functions: no state, no allocation; arguments of acos are clamped, so
// identical and antipodal points give a finite distance (0 or half the circumference).
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace avq1 {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kTwoPi = 6.283185307179586;
inline constexpr double kDegToRad = 0.017453292519943295;
inline constexpr double kRadToDeg = 57.29577951308232;
inline constexpr double kRadToNm = 3437.7467707849396;
inline constexpr double kNmToRad = kPi * 9.259259259259259e-05;

struct LatLon {
    double latitude = 0;
    double longitude = 0;
};

// Great-circle distance in nm and initial true course from 1 to 2. The course lies in [1, 360]:
// anything below 1 degree is reported as exactly 360.
void DistanceAndCourse(double latitude1, double longitude1, double latitude2, double longitude2,
                       double& distanceNm, double& courseTrue);

// The same distance alone, for callers that need no course.
double GreatCircleDistanceNm(double latitude1, double longitude1, double latitude2,
                             double longitude2);

// The point reached from point 1 along the great circle that leaves it on `courseTrue`. The
// longitude comes out in [-180, 180).
void PointAtDistance(double latitude1, double longitude1, double courseTrue, double distanceNm,
                     double& latitude2, double& longitude2);

// x - m * floor(x / m): in [0, m) for positive m.
double PositiveModulo(double x, double m);

// A true course less the variation (east positive), in [0.5, 360.5): 360 is added below 0.5 and
// subtracted from 360.5 on.
double TrueToMagnetic(double courseTrue, double variation);

// The smaller angle between two directions in [0, 360], 0 to 180.
double SmallerAngle(double a, double b);

enum class Side : std::int32_t { None = 0, Right = 1, Left = 2 };

// Right when direction b lies clockwise of a by at most 180 degrees, else Left (also when equal).
Side TurnSide(double a, double b);

using PositionText = std::array<char, 16>;

// "N47:30:00" and "W122:15:00": seconds truncated, never rounded. Degrees have two digits at
// least for both, so longitudes below 100 degrees have two.
void FormatLatLon(double latitude, double longitude, PositionText& latitudeText,
                  PositionText& longitudeText);

// Reads the texts FormatLatLon writes. The values are unsigned: the hemisphere letter is the
// caller's to apply.
void ParseLatLon(std::string_view latitudeText, std::string_view longitudeText, double& latitude,
                 double& longitude);

// Where a point at `bearing` and `rangePx` lies on a surface whose up direction is `reference`.
// The integer variant truncates each offset toward zero.
void PolarToScreen(double reference, double bearing, int centreX, int centreY, double rangePx,
                   int& x, int& y);
void PolarToScreen(double reference, double bearing, double centreX, double centreY, double rangePx,
                   double& x, double& y);

}  // namespace avq1
