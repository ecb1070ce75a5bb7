#include "cdu/formats.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "cdu/list_view.h"

namespace avq1 {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

struct FormatCase {
    UnitText text;
    const char* shown;
};

TEST(Formats, RoundOnceToWhatTheyShow) {
    const FormatCase kCases[] = {
        {HoursMinutesText(1, 7.4), "01:07"},
        {HoursMinutesText(0, 59.7), "01:00"},
        {HoursMinutesText(1.5, 59.7), "02:30"},
        {HoursMinutesText(0, -3), "00:00"},
        {HoursMinutesText(kNan, 3), "--:--"},
        {HoursMinutesText(3, kNan), "--:--"},
        {ClockTenthsText(14.12), "1407.2"},
        {ClockTenthsText(14.9999), "1500.0"},
        {ClockTenthsText(23.9999), "0000.0"},
        {ClockTenthsText(-0.5), "2330.0"},
        {ClockTenthsText(kNan), "----.-"},
        {AltitudeText(18000, 18000), "18000"},
        {AltitudeText(18049, 18000), "FL180"},
        {AltitudeText(5000, 18000), " 5000"},
        {AltitudeText(9960, 9000), "FL100"},
        {AltitudeText(kNan, 18000), "-----"},
        {AltitudeText(HUGE_VAL, 18000), "-----"},
        {BearingDistanceText(0.4, 12.4), "360/  12"},
        {BearingDistanceText(359.6, 1200), "360/1200"},
        {BearingDistanceText(90, kNan), "---/----"},
        {BearingDistanceText(kNan, 9), "---/----"},
        {PositionTextOf({47.5, -122.25}), "N47:30:00 W122:15:00"},
        {Dashes(3), "---"},
        {Dashes(0), ""},
        {SpacedDashes(4), "- - - -"},
        {SpacedDashes(0), ""},
    };
    for (const FormatCase& c : kCases) {
        EXPECT_STREQ(c.text.c_str(), c.shown);
    }
}

TEST(Formats, CoursesAreOneTo360) {
    for (const auto& [course, shown] : {std::pair{0.0, 360.0},
                                        {0.49, 360.0},
                                        {0.5, 1.0},
                                        {359.49, 359.0},
                                        {360.4, 360.0},
                                        {360.5, 1.0},
                                        {-90.0, 270.0}}) {
        EXPECT_EQ(WholeCourse(course), shown) << course;
    }
}

TEST(Formats, NumbersCoursesAndSides) {
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(NumberText(431.6, 5).view(), "  432");
    EXPECT_EQ(NumberText(12.34, 5, 1).view(), " 12.3");
    EXPECT_EQ(NumberText(kNan, 5).view(), "-----");
    EXPECT_EQ(CourseText(0.2).view(), "360");
    EXPECT_EQ(CourseText(66.7).view(), "067");
    EXPECT_EQ(CourseText(kNan).view(), "---");
    EXPECT_EQ(SideText(-7, 'L', 'R').view(), "L 007");
    EXPECT_EQ(SideText(0.4, 'L', 'R').view(), "R 000");
    EXPECT_EQ(SideText(kNan, 'L', 'R').view(), "- ---");
}

TEST(UnitText, CutsWhatDoesNotFit) {
    const std::string longText(100, 'x');
    UnitText text;
    text.Put("%s", longText.c_str());
    EXPECT_EQ(text.view().size(), 71U);
    EXPECT_EQ(UnitText(longText), text);
    text.Set("ab");
    EXPECT_EQ(text, UnitText("ab")) << "what was there before does not count";
}

TEST(ListView, CursorStaysInTheListAndOnTheScreen) {
    constexpr struct {
        std::int32_t rows, count, row, first;
    } kSteps[] = {{3, 6, 3, 0},  {1, 6, 4, 1}, {9, 6, 5, 2},  {-3, 6, 2, 2},
                  {-1, 6, 1, 1}, {0, 1, 0, 0}, {-1, 0, 0, 0}, {5, 9, 5, 2}};
    ListView list;
    for (const auto& step : kSteps) {
        list.Move(step.rows, step.count, 4);
        EXPECT_EQ(list.row, step.row);
        EXPECT_EQ(list.first, step.first);
    }
    std::string shown;
    list.ForEachShown(7, 4, [&](std::int32_t slot, std::int32_t row, bool highlighted) {
        shown += std::to_string(slot) + std::to_string(row) + (highlighted ? "> " : " ");
    });
    EXPECT_EQ(shown, "02 13 24 35> ");
}

TEST(ListView, PagersWrapAndNeverHaveLessThanOnePage) {
    for (const auto& [count, pages] : {std::pair{0, 1}, {1, 1}, {6, 1}, {7, 2}, {12, 2}, {13, 3}}) {
        EXPECT_EQ(PageCount(count, 6), pages) << count;
    }
    constexpr struct {
        std::int32_t page, step, count, next;
    } kSteps[] = {{1, 1, 3, 2}, {3, 1, 3, 1}, {1, -1, 3, 3},
                  {5, 0, 3, 3}, {0, 0, 3, 1}, {1, 1, 1, 1}};
    for (const auto& step : kSteps) {
        EXPECT_EQ(StepPage(step.page, step.step, step.count), step.next) << step.page;
    }
}

}  // namespace
}  // namespace avq1
