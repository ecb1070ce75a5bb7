#include "magneticfield/magnetic_field.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace magneticfield {
namespace {

constexpr std::size_t kDegree = 12;
constexpr std::size_t kTerms = (kDegree + 1) * (kDegree + 2) / 2;
constexpr double kDegToRad = 0.017453292519943295;

// The model's coefficients, Schmidt semi-normalised: nT, and nT a year.
struct Coefficient {
    double g;
    double h;
    double gYearly;
    double hYearly;
};

// By degree from 0 and order from 0 up.
constexpr std::array<Coefficient, kTerms> kCoefficients{{
    {0, 0, 0, 0},  // there is no magnetic monopole
    {-29351.8, 0.0, 12.0, 0.0},
    {-1410.8, 4545.4, 9.7, -21.5},
    {-2556.6, 0.0, -11.6, 0.0},
    {2951.1, -3133.6, -5.2, -27.7},
    {1649.3, -815.1, -8.0, -12.1},
    {1361.0, 0.0, -1.3, 0.0},
    {-2404.1, -56.6, -4.2, 4.0},
    {1243.8, 237.5, 0.4, -0.3},
    {453.6, -549.5, -15.6, -4.1},
    {895.0, 0.0, -1.6, 0.0},
    {799.5, 278.6, -2.4, -1.1},
    {55.7, -133.9, -6.0, 4.1},
    {-281.1, 212.0, 5.6, 1.6},
    {12.1, -375.6, -7.0, -4.4},
    {-233.2, 0.0, 0.6, 0.0},
    {368.9, 45.4, 1.4, -0.5},
    {187.2, 220.2, 0.0, 2.2},
    {-138.7, -122.9, 0.6, 0.4},
    {-142.0, 43.0, 2.2, 1.7},
    {20.9, 106.1, 0.9, 1.9},
    {64.4, 0.0, -0.2, 0.0},
    {63.8, -18.4, -0.4, 0.3},
    {76.9, 16.8, 0.9, -1.6},
    {-115.7, 48.8, 1.2, -0.4},
    {-40.9, -59.8, -0.9, 0.9},
    {14.9, 10.9, 0.3, 0.7},
    {-60.7, 72.7, 0.9, 0.9},
    {79.5, 0.0, 0.0, 0.0},
    {-77.0, -48.9, -0.1, 0.6},
    {-8.8, -14.4, -0.1, 0.5},
    {59.3, -1.0, 0.5, -0.8},
    {15.8, 23.4, -0.1, 0.0},
    {2.5, -7.4, -0.8, -1.0},
    {-11.1, -25.1, -0.8, 0.6},
    {14.2, -2.3, 0.8, -0.2},
    {23.2, 0.0, -0.1, 0.0},
    {10.8, 7.1, 0.2, -0.2},
    {-17.5, -12.6, 0.0, 0.5},
    {2.0, 11.4, 0.5, -0.4},
    {-21.7, -9.7, -0.1, 0.4},
    {16.9, 12.7, 0.3, -0.5},
    {15.0, 0.7, 0.2, -0.6},
    {-16.8, -5.2, 0.0, 0.3},
    {0.9, 3.9, 0.2, 0.2},
    {4.6, 0.0, 0.0, 0.0},
    {7.8, -24.8, -0.1, -0.3},
    {3.0, 12.2, 0.1, 0.3},
    {-0.2, 8.3, 0.3, -0.3},
    {-2.5, -3.3, -0.3, 0.3},
    {-13.1, -5.2, 0.0, 0.2},
    {2.4, 7.2, 0.3, -0.1},
    {8.6, -0.6, -0.1, -0.2},
    {-8.7, 0.8, 0.1, 0.4},
    {-12.9, 10.0, -0.1, 0.1},
    {-1.3, 0.0, 0.1, 0.0},
    {-6.4, 3.3, 0.0, 0.0},
    {0.2, 0.0, 0.1, 0.0},
    {2.0, 2.4, 0.1, -0.2},
    {-1.0, 5.3, 0.0, 0.1},
    {-0.6, -9.1, -0.3, -0.1},
    {-0.9, 0.4, 0.0, 0.1},
    {1.5, -4.2, -0.1, 0.0},
    {0.9, -3.8, -0.1, -0.1},
    {-2.7, 0.9, 0.0, 0.2},
    {-3.9, -9.1, 0.0, 0.0},
    {2.9, 0.0, 0.0, 0.0},
    {-1.5, 0.0, 0.0, 0.0},
    {-2.5, 2.9, 0.0, 0.1},
    {2.4, -0.6, 0.0, 0.0},
    {-0.6, 0.2, 0.0, 0.1},
    {-0.1, 0.5, -0.1, 0.0},
    {-0.6, -0.3, 0.0, 0.0},
    {-0.1, -1.2, 0.0, 0.1},
    {1.1, -1.7, -0.1, 0.0},
    {-1.0, -2.9, -0.1, 0.0},
    {-0.2, -1.8, -0.1, 0.0},
    {2.6, -2.3, -0.1, 0.0},
    {-2.0, 0.0, 0.0, 0.0},
    {-0.2, -1.3, 0.0, 0.0},
    {0.3, 0.7, 0.0, 0.0},
    {1.2, 1.0, 0.0, -0.1},
    {-1.3, -1.4, 0.0, 0.1},
    {0.6, 0.0, 0.0, 0.0},
    {0.6, 0.6, 0.1, 0.0},
    {0.5, -0.1, 0.0, 0.0},
    {-0.1, 0.8, 0.0, 0.0},
    {-0.4, 0.1, 0.0, 0.0},
    {-0.2, -1.0, -0.1, 0.0},
    {-1.3, 0.1, 0.0, 0.0},
    {-0.7, 0.2, -0.1, -0.1},
}};

constexpr std::size_t TermOf(std::size_t degree, std::size_t order) {
    return degree * (degree + 1) / 2 + order;
}

// What the recursions of the Legendre functions multiply by: on the diagonal the one before it,
// else the two functions of the same order below.
struct Recursion {
    double first = 0;
    double second = 0;
};

std::array<Recursion, kTerms> MakeRecursions() {
    std::array<Recursion, kTerms> rows{};
    for (std::size_t n = 1; n <= kDegree; ++n) {
        const auto degree = static_cast<double>(n);
        for (std::size_t m = 0; m < n; ++m) {
            const auto order = static_cast<double>(m);
            const double root = std::sqrt(degree * degree - order * order);
            rows[TermOf(n, m)] = {
                (2 * degree - 1) / root,
                m + 1 < n ? std::sqrt((degree - 1) * (degree - 1) - order * order) / root : 0};
        }
        rows[TermOf(n, n)].first = n == 1 ? 1.0 : std::sqrt(1 - 1 / (2 * degree));
    }
    return rows;
}

// A place in the model's geocentric frame.
struct Geocentric {
    double radiusKm = 0;
    double sine = 0;  // of the geocentric latitude
    double cosine = 1;
    double tilt = 0;  // geocentric less geodetic latitude, radians
};

Geocentric ToGeocentric(double latitude, double heightKm) {
    constexpr double kEquatorKm = 6378.137;
    constexpr double kFlattening = 1 / 298.257223563;
    constexpr double kEccentricitySquared = kFlattening * (2 - kFlattening);
    const double geodetic = latitude * kDegToRad;
    const double sine = std::sin(geodetic);
    const double normalKm = kEquatorKm / std::sqrt(1 - kEccentricitySquared * sine * sine);
    const double acrossKm = (normalKm + heightKm) * std::cos(geodetic);
    const double alongKm = (normalKm * (1 - kEccentricitySquared) + heightKm) * sine;
    const double radiusKm = std::hypot(acrossKm, alongKm);
    return {radiusKm, alongKm / radiusKm, acrossKm / radiusKm,
            std::atan2(alongKm, acrossKm) - geodetic};
}

// Legendre functions and their derivatives by the angle from the pole.
struct Legendre {
    std::array<double, kTerms> value{};
    std::array<double, kTerms> slope{};
};

Legendre LegendreAt(double cosTheta, double sinTheta) {
    static const std::array<Recursion, kTerms> recursions = MakeRecursions();
    Legendre p;
    p.value[0] = 1;
    for (std::size_t n = 1; n <= kDegree; ++n) {
        for (std::size_t m = 0; m < n; ++m) {
            const std::size_t at = TermOf(n, m);
            const std::size_t below = TermOf(n - 1, m);
            const Recursion& row = recursions[at];
            p.value[at] = row.first * cosTheta * p.value[below];
            p.slope[at] = row.first * (cosTheta * p.slope[below] - sinTheta * p.value[below]);
            if (m + 1 < n) {
                p.value[at] -= row.second * p.value[TermOf(n - 2, m)];
                p.slope[at] -= row.second * p.slope[TermOf(n - 2, m)];
            }
        }
        const std::size_t at = TermOf(n, n);
        const std::size_t before = TermOf(n - 1, n - 1);
        const double factor = recursions[at].first;
        p.value[at] = factor * sinTheta * p.value[before];
        p.slope[at] = factor * (sinTheta * p.slope[before] + cosTheta * p.value[before]);
    }
    return p;
}

// The potential's gradient, summed over degrees and orders.
FieldVector Gradient(const Geocentric& place, double longitude, double years) {
    constexpr double kReferenceKm = 6371.2;
    const Legendre p = LegendreAt(place.sine, place.cosine);
    std::array<double, kDegree + 1> cosines{1};  // of multiples of the longitude
    std::array<double, kDegree + 1> sines{0};
    const double cosine = std::cos(longitude * kDegToRad);
    const double sine = std::sin(longitude * kDegToRad);
    FieldVector field;
    const double ratio = kReferenceKm / place.radiusKm;
    double power = ratio * ratio;
    for (std::size_t n = 1; n <= kDegree; ++n) {
        power *= ratio;
        cosines[n] = cosines[n - 1] * cosine - sines[n - 1] * sine;
        sines[n] = sines[n - 1] * cosine + cosines[n - 1] * sine;
        for (std::size_t m = 0; m <= n; ++m) {
            const std::size_t at = TermOf(n, m);
            const Coefficient& c = kCoefficients[at];
            const double g = (c.g + years * c.gYearly) * power;
            const double h = (c.h + years * c.hYearly) * power;
            const double along = g * cosines[m] + h * sines[m];
            field.northNt += along * p.slope[at];
            field.eastNt += static_cast<double>(m) * (g * sines[m] - h * cosines[m]) * p.value[at];
            field.downNt -= static_cast<double>(n + 1) * along * p.value[at];
        }
    }
    field.eastNt /= place.cosine;
    return field;
}

}  // namespace

FieldVector FieldAt(double latitude, double longitude, double heightKm, double year) {
    constexpr double kFirstYear = 2010;
    constexpr double kLastYear = 2035;
    constexpr double kNearestPole = 89.9999;  // a metre or ten from it
    const Geocentric place =
        ToGeocentric(std::clamp(latitude, -kNearestPole, kNearestPole), heightKm);
    const FieldVector at =
        Gradient(place, longitude, std::clamp(year, kFirstYear, kLastYear) - kModelEpoch);
    const double cosine = std::cos(place.tilt);
    const double sine = std::sin(place.tilt);
    return {at.northNt * cosine - at.downNt * sine, at.eastNt,
            at.northNt * sine + at.downNt * cosine};
}

double Variation(double latitude, double longitude, double year) {
    const FieldVector field = FieldAt(latitude, longitude, 0, year);
    return std::atan2(field.eastNt, field.northNt) / kDegToRad;
}

}  // namespace magneticfield
