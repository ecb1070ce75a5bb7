// Reference figures come from other formulas than the code's: haversine for distances, vectors in
// space for courses and reached points.
#include "geometry/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace avq1 {
namespace {

TEST(DistanceAndCourse, AgreesWithIndependentFigures) {
    const struct {
        double latitude1, longitude1, latitude2, longitude2, distanceNm, courseTrue;
    } cases[] = {{40.6398, -73.7789, 51.4706, -0.4619, 2989.154449, 51.352492},
                 {-33.9461, 151.1772, -12.0219, -77.1143, 6903.451804, 126.290415},
                 {10, 179.5, 10, -179.5, 59.088443, 89.913174},
                 {10, -179.5, -20, 179.25, 1801.513572, 182.347913},
                 {60, 10, 60.5, 9.99, 30.001477, 359.435736},
                 {-45, 20, -46, 20, 60, 180},
                 {89, 0, 89, 180, 120, 360}};
    for (const auto& c : cases) {
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(c.latitude1, c.longitude1, c.latitude2, c.longitude2, distanceNm,
                          courseTrue);
        EXPECT_NEAR(distanceNm, c.distanceNm, 2e-6) << c.latitude1 << ' ' << c.longitude1;
        EXPECT_NEAR(courseTrue, c.courseTrue, 2e-6) << c.latitude1 << ' ' << c.longitude1;
        EXPECT_EQ(GreatCircleDistanceNm(c.latitude1, c.longitude1, c.latitude2, c.longitude2),
                  distanceNm);
    }
}

TEST(DistanceAndCourse, ReportsCoursesBelowOneDegreeAs360) {
    const struct {
        double courseLeft, courseReported;
    } cases[] = {{0.0, 360.0}, {0.99, 360.0}, {1.01, 1.01}, {359.9, 359.9}};
    for (const auto& c : cases) {
        double latitude = 0;
        double longitude = 0;
        PointAtDistance(20.0, 30.0, c.courseLeft, 300.0, latitude, longitude);
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(20.0, 30.0, latitude, longitude, distanceNm, courseTrue);
        EXPECT_NEAR(courseTrue, c.courseReported, 1e-9) << c.courseLeft;
    }
}

TEST(DistanceAndCourse, StaysFiniteForIdenticalAndAntipodalPoints) {
    // Among so many points the rounded cosine leaves [-1, 1] for some.
    for (int i = 0; i < 1000; ++i) {
        const double latitude = -89.95 + 0.1799 * i;
        const double longitude = -180.0 + 0.3601 * i;
        double distanceNm = 0;
        double courseTrue = 0;
        DistanceAndCourse(latitude, longitude, latitude, longitude, distanceNm, courseTrue);
        ASSERT_NEAR(distanceNm, 0.0, 1e-3);
        ASSERT_TRUE(courseTrue >= 1.0 && courseTrue <= 360.0) << courseTrue;
        DistanceAndCourse(latitude, longitude, -latitude, longitude + 180.0, distanceNm,
                          courseTrue);
        ASSERT_NEAR(distanceNm, 10800.0, 1e-3);
        ASSERT_TRUE(courseTrue >= 1.0 && courseTrue <= 360.0) << courseTrue;
    }
}

TEST(PointAtDistance, AgreesWithIndependentFigures) {
    const struct {
        double latitude1, longitude1, courseTrue, distanceNm, latitude2, longitude2;
    } cases[] = {{40.6398, -73.7789, 51.0, 1000, 49.54361257, -53.68850618},
                 {10, -179.5, 270, 120, 9.99384571, 178.46917241},
                 {85, 30, 0, 600, 85, -150},
                 {-30, 100, 225, 5400, -37.76124391, -16.56505118},
                 {0, 179, 90, 60, 0, -180}};
    for (const auto& c : cases) {
        double latitude = 0;
        double longitude = 0;
        PointAtDistance(c.latitude1, c.longitude1, c.courseTrue, c.distanceNm, latitude, longitude);
        EXPECT_NEAR(latitude, c.latitude2, 1e-7) << c.latitude1 << ' ' << c.courseTrue;
        EXPECT_NEAR(std::remainder(longitude - c.longitude2, 360.0), 0.0, 1e-7)
            << c.latitude1 << ' ' << c.courseTrue;
    }
}

TEST(PointAtDistance, KeepsLongitudeBelow180) {
    for (double start = 178.0; start <= 182.0; start += 0.125) {
        for (double distanceNm = 0.0; distanceNm <= 240.0; distanceNm += 7.5) {
            double latitude = 0;
            double longitude = 0;
            PointAtDistance(0.0, start, 90.0, distanceNm, latitude, longitude);
            ASSERT_TRUE(longitude >= -180.0 && longitude < 180.0) << start << ' ' << distanceNm;
        }
    }
}

TEST(PositiveModulo, StaysBelowTheModulus) {
    EXPECT_DOUBLE_EQ(PositiveModulo(-30.0, 360.0), 330.0);
    EXPECT_DOUBLE_EQ(PositiveModulo(725.0, 360.0), 5.0);
    // Rounding would give the modulus itself.
    EXPECT_EQ(PositiveModulo(-1e-20, 360.0), 0.0);
}

TEST(TrueToMagnetic, LiesBetweenHalfADegreeAndFullCirclePlusHalf) {
    const struct {
        double courseTrue, variation, magnetic;
    } cases[] = {{10.0, 10.3, 359.7},  {10.0, 9.7, 360.3}, {10.0, 9.5, 0.5},
                 {360.0, -0.4, 360.4}, {360.0, -0.5, 0.5}, {1.0, 15.0, 346.0}};
    for (const auto& c : cases) {
        EXPECT_NEAR(TrueToMagnetic(c.courseTrue, c.variation), c.magnetic, 1e-12)
            << c.courseTrue << ' ' << c.variation;
    }
}

struct DirectionCase {
    double a, b, smallerAngle;
    Side side;
};
constexpr DirectionCase kDirections[] = {{20, 10, 10, Side::Left},  {350, 10, 20, Side::Right},
                                         {10, 350, 20, Side::Left}, {0, 180, 180, Side::Right},
                                         {180, 0, 180, Side::Left}, {45, 45, 0, Side::Left}};

TEST(Directions, SmallerAngleAndTurnSide) {
    for (const DirectionCase& c : kDirections) {
        EXPECT_DOUBLE_EQ(SmallerAngle(c.a, c.b), c.smallerAngle) << c.a << ' ' << c.b;
        EXPECT_EQ(TurnSide(c.a, c.b), c.side) << c.a << ' ' << c.b;
    }
}

TEST(PolarToScreen, PlacesEveryQuadrant) {
    struct Case {
        double reference, bearing, rangePx;
        int x, y;
    };
    // Centre 200, 300. Offsets are cut, not rounded: 100 sin 50 is 76.6.
    const Case cases[] = {{10, 320, 100, 124, 236},  {300, 70, 100, 276, 364},
                          {70, 300, 100, 124, 364},  {0, 60, 100.9, 287, 250},
                          {359, 1, 1000, 234, -699}, {1, 359, 1000, 166, -699}};
    for (const Case& c : cases) {
        int x = 0;
        int y = 0;
        PolarToScreen(c.reference, c.bearing, 200, 300, c.rangePx, x, y);
        EXPECT_EQ(x, c.x) << c.reference << ' ' << c.bearing;
        EXPECT_EQ(y, c.y) << c.reference << ' ' << c.bearing;
        double realX = 0;
        double realY = 0;
        PolarToScreen(c.reference, c.bearing, 200.0, 300.0, c.rangePx, realX, realY);
        const double relative = (c.bearing - c.reference) * kDegToRad;
        EXPECT_NEAR(realX, 200.0 + c.rangePx * std::sin(relative), 1e-9);
        EXPECT_NEAR(realY, 300.0 - c.rangePx * std::cos(relative), 1e-9);
    }
}

std::string Texts(double latitude, double longitude) {
    PositionText latitudeText;
    PositionText longitudeText;
    FormatLatLon(latitude, longitude, latitudeText, longitudeText);
    return std::string(latitudeText.data()) + " " + longitudeText.data();
}

TEST(FormatLatLon, WritesTheFixedForm) {
    const struct {
        double latitude, longitude;
        const char* texts;
    } cases[] = {{47.5, -122.25, "N47:30:00 W122:15:00"},
                 {0, 0, "N00:00:00 W00:00:00"},
                 {-10.25, 100.5, "S10:15:00 E100:30:00"},
                 {5 + 3 / 60.0 + 7 / 3600.0, 99.999999, "N05:03:07 E99:59:59"},
                 {1 / 3600.0 - 1e-6, 2.9 / 3600.0, "N00:00:00 E00:00:02"},
                 {1e300, -1e300, "N999:00:00 W999:00:00"}};
    for (const auto& c : cases) {
        EXPECT_EQ(Texts(c.latitude, c.longitude), c.texts);
    }
}

TEST(ParseLatLon, ReadsFixedColumns) {
    const struct {
        const char *latitudeText, *longitudeText;
        double latitude, longitude;
    } cases[] = {{"S47:30:00", "W122:15:00", 47.5, 122.25},
                 {"N05:03:36", "E08:30:36", 5.06, 8.51},
                 {"N4", "E1", 4, 1},
                 {"garbage!!", "more garbage", 0, 0}};
    for (const auto& c : cases) {
        double latitude = -1;
        double longitude = -1;
        ParseLatLon(c.latitudeText, c.longitudeText, latitude, longitude);
        EXPECT_NEAR(latitude, c.latitude, 1e-12) << c.latitudeText;
        EXPECT_NEAR(longitude, c.longitude, 1e-12) << c.longitudeText;
    }
}

}  // namespace
}  // namespace avq1
