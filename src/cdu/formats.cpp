#include "cdu/formats.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace avq1 {
namespace {

constexpr double kTenthsPerHour = 600;
constexpr double kTenthsPerDay = 24 * kTenthsPerHour;
constexpr double kMinutesPerHour = 60;
constexpr double kFeetPerFlightLevel = 100;
constexpr int kAltitudeWidth = 5;
constexpr int kCourseWidth = 3;

double RoundHalfUp(double value) {
    return std::floor(value + 0.5);
}

}  // namespace

double WholeCourse(double courseDeg) {
    const double whole = PositiveModulo(RoundHalfUp(courseDeg), 360);
    return whole < 1 ? whole + 360 : whole;
}

WholeTime WholeMinutes(double hours, double minutes) {
    const double total = std::max(RoundHalfUp(hours * kMinutesPerHour + minutes), 0.0);
    const double wholeHours = std::floor(total / kMinutesPerHour);
    return {wholeHours, total - wholeHours * kMinutesPerHour};
}

UnitText Dashes(int count) {
    return UnitText(std::string_view(
        "------------------------------------------------------------------------", count));
}

UnitText SpacedDashes(int count) {
    return UnitText(
        std::string_view("- - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - - -",
                         std::max(2 * count - 1, 0)));
}

UnitText NumberText(double value, int width, int decimals) {
    UnitText text = Dashes(width);
    if (std::isfinite(value)) {
        text.Put("%*.*f", width, decimals, value);
    }
    return text;
}

UnitText CourseText(double courseDeg) {
    UnitText text = Dashes(kCourseWidth);
    if (std::isfinite(courseDeg)) {
        text.Put("%03.0f", WholeCourse(courseDeg));
    }
    return text;
}

UnitText SideText(double amount, char left, char right) {
    UnitText text("- ---");
    if (std::isfinite(amount)) {
        text.Put("%c %03.0f", amount < 0 ? left : right, std::abs(amount));
    }
    return text;
}

UnitText HoursMinutesText(double hours, double minutes) {
    UnitText text("--:--");
    if (std::isfinite(hours) && std::isfinite(minutes)) {
        const WholeTime time = WholeMinutes(hours, minutes);
        text.Put("%02.0f:%02.0f", time.hours, time.minutes);
    }
    return text;
}

UnitText ClockTenthsText(double hours) {
    UnitText text("----.-");
    if (std::isfinite(hours)) {
        const double tenths = PositiveModulo(RoundHalfUp(hours * kTenthsPerHour), kTenthsPerDay);
        const double wholeHours = std::floor(tenths / kTenthsPerHour);
        text.Put("%02.0f%04.1f", wholeHours, (tenths - wholeHours * kTenthsPerHour) / 10);
    }
    return text;
}

UnitText AltitudeText(double altitudeFt, double transitionAltitudeFt) {
    UnitText text = Dashes(kAltitudeWidth);
    if (!std::isfinite(altitudeFt)) {
        return text;
    }
    if (altitudeFt > transitionAltitudeFt) {
        text.Put("FL%03.0f", altitudeFt / kFeetPerFlightLevel);
    } else {
        text.Put("%5.0f", altitudeFt);
    }
    return text;
}

UnitText BearingDistanceText(double bearingDeg, double distanceNm) {
    UnitText text("---/----");
    if (std::isfinite(bearingDeg) && std::isfinite(distanceNm)) {
        text.Put("%03.0f/%4.0f", WholeCourse(bearingDeg), distanceNm);
    }
    return text;
}

UnitText PositionTextOf(const LatLon& position) {
    PositionText latitude;
    PositionText longitude;
    FormatLatLon(position.latitude, position.longitude, latitude, longitude);
    UnitText text;
    text.Put("%s %s", latitude.data(), longitude.data());
    return text;
}

}  // namespace avq1
