#include "flightplan/pilot_points.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "base/text.h"

namespace avq1 {
namespace {

using Vector = std::array<double, 3>;

Vector Cross(const Vector& a, const Vector& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

double Dot(const Vector& a, const Vector& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vector ToVector(const LatLon& point) {
    const double latitude = point.latitude * kDegToRad;
    const double longitude = point.longitude * kDegToRad;
    return {std::cos(latitude) * std::cos(longitude), std::cos(latitude) * std::sin(longitude),
            std::sin(latitude)};
}

LatLon ToPoint(const Vector& v) {
    return {std::atan2(v[2], std::hypot(v[0], v[1])) * kRadToDeg,
            std::atan2(v[1], v[0]) * kRadToDeg};
}

// The direction in space in which the course leaves the place.
Vector Departure(const LatLon& place, double courseTrue) {
    const double latitude = place.latitude * kDegToRad;
    const double longitude = place.longitude * kDegToRad;
    const double course = courseTrue * kDegToRad;
    const double north = std::cos(course);
    const double east = std::sin(course);
    return {-std::sin(latitude) * std::cos(longitude) * north - std::sin(longitude) * east,
            -std::sin(latitude) * std::sin(longitude) * north + std::cos(longitude) * east,
            std::cos(latitude) * north};
}

bool AllDigits(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string_view WithoutLeadingBlanks(std::string_view text) {
    return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

}  // namespace

std::string NextPilotPointName(const FlightPlan& plan, std::string_view prefix) {
    constexpr std::int32_t kLongestNumber = 4;
    std::int32_t highest = 0;
    for (std::int32_t i = 0; i <= plan.lastIndex; ++i) {
        const std::string_view ident = WithoutLeadingBlanks(plan.entries[i].ident);
        if (ident.substr(0, prefix.size()) != prefix) {
            continue;
        }
        const std::string_view number = ident.substr(prefix.size());
        if (AllDigits(number) && number.size() <= kLongestNumber) {
            highest = std::max(highest, ToInteger(number));
        }
    }
    return Format("%3s%02d", std::string(prefix).c_str(), highest + 1);
}

FoundPoint PilotPoint(const LatLon& position, std::string name) {
    FoundPoint point;
    point.ident = std::move(name);
    point.latitude = position.latitude;
    point.longitude = position.longitude;
    point.kind = PointKind::PilotPoint;
    return point;
}

bool CrossingOfCourses(const LatLon& place1, double course1True, const LatLon& place2,
                       double course2True, LatLon& crossing) {
    constexpr double kSameLine = 1e-9;
    constexpr double kAtPlace = -1e-9;  // a place on the other's bearing is a crossing
    const Vector departure1 = Departure(place1, course1True);
    const Vector departure2 = Departure(place2, course2True);
    Vector line = Cross(Cross(ToVector(place1), departure1), Cross(ToVector(place2), departure2));
    const double length = std::sqrt(Dot(line, line));
    if (length < kSameLine) {
        return false;
    }
    for (const double sign : {1.0, -1.0}) {
        Vector candidate = line;
        for (double& part : candidate) {
            part *= sign / length;
        }
        const LatLon point = ToPoint(candidate);
        const auto reaches = [&](const LatLon& place, const Vector& departure) {
            return Dot(candidate, departure) >= kAtPlace &&
                   GreatCircleDistanceNm(place.latitude, place.longitude, point.latitude,
                                         point.longitude) <= kCrossingRangeNm;
        };
        if (reaches(place1, departure1) && reaches(place2, departure2)) {
            crossing = point;
            return true;
        }
    }
    return false;
}

bool ParseTypedPosition(std::string_view text, LatLon& point) {
    constexpr std::size_t kWithoutLastTenth = 14;
    constexpr std::size_t kLongest = 29;
    if (text.size() < kWithoutLastTenth || text.size() > kLongest || text[5] != '.' ||
        text[13] != '.' || (text[0] != 'N' && text[0] != 'S') ||
        (text[7] != 'E' && text[7] != 'W')) {
        return false;
    }
    const std::string_view lastTenth = text.substr(kWithoutLastTenth, 1);
    if (!AllDigits(text.substr(1, 4)) || !AllDigits(text.substr(6, 1)) ||
        !AllDigits(text.substr(8, 5)) || !(lastTenth.empty() || AllDigits(lastTenth))) {
        return false;
    }
    const double latitudeMinutes = ToNumber(text.substr(3, 2)) + ToNumber(text.substr(5, 2));
    const double longitudeMinutes = ToNumber(text.substr(11, 2)) + ToNumber(text.substr(13, 2));
    const double latitude = ToNumber(text.substr(1, 2)) + latitudeMinutes / 60;
    const double longitude = ToNumber(text.substr(8, 3)) + longitudeMinutes / 60;
    if (latitudeMinutes >= 60 || longitudeMinutes >= 60 || latitude > 90 || longitude > 180) {
        return false;
    }
    point.latitude = text[0] == 'S' ? -latitude : latitude;
    point.longitude = text[7] == 'W' ? -longitude : longitude;
    return true;
}

}  // namespace avq1
