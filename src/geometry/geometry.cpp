#include "geometry/geometry.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "base/text.h"

namespace avq1 {
namespace {

// A whole second is seldom a binary fraction of a degree: without this margin (far below a
// millimetre) a position written, read back and written again would lose a second each time.
constexpr double kWholeSecondMarginDeg = 4e-13;

constexpr int kMostDegreesShown = 999;

struct DegreesMinutesSeconds {
    int degrees = 0;
    int minutes = 0;
    int seconds = 0;
};

DegreesMinutesSeconds SplitDegrees(double value) {
    const double magnitude =
        std::min(std::fabs(value), double{kMostDegreesShown}) + kWholeSecondMarginDeg;
    DegreesMinutesSeconds parts;
    parts.degrees = TruncateToInteger(magnitude);
    const double minutes = (magnitude - parts.degrees) * 60.0;
    parts.minutes = TruncateToInteger(minutes);
    parts.seconds = TruncateToInteger((minutes - parts.minutes) * 60.0);
    return parts;
}

void WritePosition(char hemisphere, double value, PositionText& text) {
    const DegreesMinutesSeconds parts = SplitDegrees(value);
    text.fill('\0');
    char* out = text.data();
    *out++ = hemisphere;
    const auto writeField = [&out](int number, char separator) {
        if (number >= 100) {
            *out++ = static_cast<char>('0' + number / 100);
        }
        *out++ = static_cast<char>('0' + number / 10 % 10);
        *out++ = static_cast<char>('0' + number % 10);
        *out++ = separator;
    };
    writeField(parts.degrees, ':');
    writeField(parts.minutes, ':');
    writeField(parts.seconds, '\0');
}

std::string_view Columns(std::string_view text, std::size_t first, std::size_t count) {
    return first < text.size() ? text.substr(first, count) : std::string_view{};
}

double ReadColumns(std::string_view text, std::size_t degreeColumns) {
    const double degrees = ToInteger(Columns(text, 1, degreeColumns));
    const double minutes = ToInteger(Columns(text, degreeColumns + 2, 2));
    const double seconds = ToInteger(Columns(text, degreeColumns + 5, 2));
    return degrees + (minutes + seconds / 60.0) / 60.0;
}

struct PolarOffset {
    double across = 0;  // magnitude, to the side
    double along = 0;   // magnitude, ahead or behind
    bool toTheRight = true;
    bool ahead = true;
};

PolarOffset OffsetOf(double reference, double bearing, double rangePx) {
    const double angle = SmallerAngle(reference, bearing);
    PolarOffset offset;
    offset.across = std::fabs(rangePx * std::sin(angle * kDegToRad));
    offset.along = std::fabs(rangePx * std::cos(angle * kDegToRad));
    offset.toTheRight = reference == bearing || TurnSide(reference, bearing) == Side::Right;
    offset.ahead = angle <= 90.0;
    return offset;
}

}  // namespace

void DistanceAndCourse(double latitude1, double longitude1, double latitude2, double longitude2,
                       double& distanceNm, double& courseTrue) {
    const double phi1 = latitude1 * kDegToRad;
    const double phi2 = latitude2 * kDegToRad;
    const double deltaLambda = (longitude2 - longitude1) * kDegToRad;
    const double sinPhi1 = std::sin(phi1);
    const double cosPhi1 = std::cos(phi1);
    const double sinPhi2 = std::sin(phi2);
    const double cosPhi2 = std::cos(phi2);
    const double cosDelta = std::cos(deltaLambda);
    const double cosArc = cosPhi2 * cosPhi1 * cosDelta + sinPhi2 * sinPhi1;
    distanceNm = std::acos(std::clamp(cosArc, -1.0, 1.0)) * kRadToNm;
    const double course = std::atan2(std::sin(deltaLambda) * cosPhi2,
                                     cosPhi1 * sinPhi2 - sinPhi1 * cosPhi2 * cosDelta);
    courseTrue = PositiveModulo(course, kTwoPi) * kRadToDeg;
    if (courseTrue < 1.0) {
        courseTrue = 360.0;
    }
}

double GreatCircleDistanceNm(double latitude1, double longitude1, double latitude2,
                             double longitude2) {
    const double phi1 = latitude1 * kDegToRad;
    const double phi2 = latitude2 * kDegToRad;
    const double deltaLambda = (longitude2 - longitude1) * kDegToRad;
    const double cosArc =
        std::cos(phi2) * std::cos(phi1) * std::cos(deltaLambda) + std::sin(phi2) * std::sin(phi1);
    return std::acos(std::clamp(cosArc, -1.0, 1.0)) * kRadToNm;
}

void PointAtDistance(double latitude1, double longitude1, double courseTrue, double distanceNm,
                     double& latitude2, double& longitude2) {
    const double arc = distanceNm * kNmToRad;
    const double phi1 = latitude1 * kDegToRad;
    const double lambda1 = longitude1 * kDegToRad;
    const double theta = courseTrue * kDegToRad;
    const double sinPhi2 = std::clamp(
        std::sin(phi1) * std::cos(arc) + std::cos(phi1) * std::sin(arc) * std::cos(theta), -1.0,
        1.0);
    const double phi2 = std::asin(sinPhi2);
    const double swing = std::atan2(std::sin(theta) * std::sin(arc) * std::cos(phi1),
                                    std::cos(arc) - std::sin(phi1) * std::sin(phi2));
    const double lambda2 = PositiveModulo(lambda1 + swing + kPi, kTwoPi) - kPi;
    latitude2 = phi2 * kRadToDeg;
    longitude2 = lambda2 * kRadToDeg;
    if (longitude2 >= 180.0) {
        longitude2 -= 360.0;
    }
}

double PositiveModulo(double x, double m) {
    const double remainder = x - m * std::floor(x / m);
    // The quotient and the difference are rounded: a hair outside the range is the range's start.
    return remainder < 0.0 || remainder >= m ? 0.0 : remainder;
}

double TrueToMagnetic(double courseTrue, double variation) {
    const double magnetic = courseTrue - variation;
    if (magnetic < 0.5) {
        return magnetic + 360.0;
    }
    return magnetic >= 360.5 ? magnetic - 360.0 : magnetic;
}

double SmallerAngle(double a, double b) {
    const double difference = std::fabs(a - b);
    return difference > 180.0 ? 360.0 - difference : difference;
}

Side TurnSide(double a, double b) {
    const bool clockwise = b > a ? b - a <= 180.0 : a - b > 180.0;
    return clockwise ? Side::Right : Side::Left;
}

void FormatLatLon(double latitude, double longitude, PositionText& latitudeText,
                  PositionText& longitudeText) {
    WritePosition(latitude >= 0.0 ? 'N' : 'S', latitude, latitudeText);
    WritePosition(longitude > 0.0 ? 'E' : 'W', longitude, longitudeText);
}

void ParseLatLon(std::string_view latitudeText, std::string_view longitudeText, double& latitude,
                 double& longitude) {
    latitude = ReadColumns(latitudeText, 2);
    const bool twoDigits = longitudeText.size() > 3 && longitudeText[3] == ':';
    longitude = ReadColumns(longitudeText, twoDigits ? 2 : 3);
}

void PolarToScreen(double reference, double bearing, int centreX, int centreY, double rangePx,
                   int& x, int& y) {
    const PolarOffset offset = OffsetOf(reference, bearing, rangePx);
    const int across = TruncateToInteger(offset.across);
    const int along = TruncateToInteger(offset.along);
    x = offset.toTheRight ? centreX + across : centreX - across;
    y = offset.ahead ? centreY - along : centreY + along;
}

void PolarToScreen(double reference, double bearing, double centreX, double centreY, double rangePx,
                   double& x, double& y) {
    const PolarOffset offset = OffsetOf(reference, bearing, rangePx);
    x = offset.toTheRight ? centreX + offset.across : centreX - offset.across;
    y = offset.ahead ? centreY - offset.along : centreY + offset.along;
}

}  // namespace avq1
