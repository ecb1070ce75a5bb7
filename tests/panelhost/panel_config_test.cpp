#include "panelhost/panel/panel_config.h"

#include <gmock/gmock.h>

namespace panelhost {
namespace {

using testing::HasSubstr;

TEST(PanelConfig, ReadsWindowsAndPlacements) {
    const PanelConfig config = ParsePanelConfig(
        "\xEF\xBB\xBF[window titles]\r\nWINDOW00=Main Panel // the big one\r\n"
        "[Window03]\r\nsize_mm=300,200\r\nident=0x0FA4\r\nvisible=0\r\nposition=8\r\n"
        "[Window00]\r\nSize_MM = 640 , 480\r\nident=MAIN_PANEL\r\nwindow_pos=0.5,0.25\r\n"
        "window_size=0.5,0.5\r\ngauge10=avq1!MCU, 30,40,250,193,\"B737, WN\"\r\n"
        "gauge02=..\\gauges\\AVQ1.GAU!VNAV,-5,2,,,VC ; a comment\r\n");
    EXPECT_THAT(config.warnings, testing::IsEmpty());
    ASSERT_EQ(config.windows.size(), 2U);
    const PanelWindow& main = config.windows[0];
    EXPECT_EQ(main.title, "Main Panel");
    EXPECT_EQ(main.ident, 0U);
    ASSERT_EQ(main.gauges.size(), 2U);
    EXPECT_EQ(main.gauges[0].gauge, "VNAV") << "drawn in the order of their numbers";
    EXPECT_EQ(main.gauges[0].x, -5);
    EXPECT_EQ(ModuleStem(main.gauges[0].module), "avq1");
    EXPECT_EQ(main.gauges[0].parameter, "VC");
    EXPECT_EQ(main.gauges[1].parameter, "B737, WN");
    EXPECT_EQ(main.gauges[1].height, 193);
    EXPECT_EQ(PlaceOnDesk(main, 1000, 800).y, 200);
    EXPECT_EQ(PlaceOnDesk(main, 1000, 800).width, 500);
    const PanelWindow& unit = config.windows[1];
    EXPECT_EQ(unit.ident, 4004U);
    EXPECT_FALSE(unit.visible);
    EXPECT_EQ(PlaceOnDesk(unit, 1000, 800).x, 700) << "position 8 is bottom right";
    EXPECT_EQ(PlaceOnDesk(unit, 1000, 800).y, 600);
}

TEST(PanelConfig, NamesWhatItCannotUseAndKeepsTheRest) {
    const std::string head = "[Window00]\nsize_mm=100,100\ngauge00=avq1!MCU,1,2\n";
    const struct {
        const char *text, *warning;  // empty: none
        std::size_t gaugesLeft;      // in the first window
    } rows[] = {
        {"gauge01=avq1MCU,1,2\n", "line 4: a gauge needs module!NAME", 1},
        {"gauge01=avq1!MCU,1\n", "has no place", 1},
        {"gauge01=avq1!MCU,one,2\n", "one\\\" is no usable number", 1},
        {"gauge01=avq1!MCU,1,2,-3,4\n", "-3\\\" is no usable number", 1},
        {"gauge01=avq1!MCU,1,2,0,0\n", "", 2},
        {"just words\n", "line 4: no key=value", 1},
        {"size_mm=0,5\n", "size_mm cannot be", 1},
        // Closed windows do not overlap, and touching is not overlapping.
        {"[Window01]\nident=5\nsize_mm=50,50\nvisible=0\n"
         "[Window02]\nident=6\nsize_mm=50,50\nwindow_pos=100,0\n",
         "", 1},
        {"[Window100]\nident=5\n", "window numbers end at 99", 1},
        {"[Window00]\ngauge01=avq1!LNAV,50,50\n", "[Window00] is repeated", 2},
        {"[Window01]\nident=5\nvisible=0\n", "has no size_mm; taken as 640,480", 1},
        {"[Window01]\nsize_mm=50,50\n", "01 \\\"Window 01\\\" overlap", 1},
        {"[Window01]\nsize_mm=50,50\nident=0\nposition=8\n", "share ident 0", 1},
    };
    for (const auto& row : rows) {
        const PanelConfig config = ParsePanelConfig(head + row.text);
        EXPECT_EQ(config.warnings.empty(), *row.warning == '\0') << row.text;
        EXPECT_THAT(testing::PrintToString(config.warnings), HasSubstr(row.warning)) << row.text;
        EXPECT_EQ(config.windows[0].gauges.size(), row.gaugesLeft) << row.text;
    }
}

TEST(PanelConfig, SaysThatAFileHasNoWindow) {
    EXPECT_THAT(ParsePanelConfig("[Window Titles]\nWindow00=Main\n").warnings,
                testing::ElementsAre("panel file: no [WindowNN] section"));
}

TEST(PanelConfig, SurvivesLongLinesAndEndsItsComplaints) {
    std::string text = "[Window00]\nsize_mm=10,10\ngauge00=avq1!MCU,1,2\n";
    text += std::string(10 << 20, 'x') + "\n";
    for (int i = 0; i < 200000; ++i) {
        text += "rubbish\n";
    }
    const PanelConfig config = ParsePanelConfig(text);
    EXPECT_LE(config.warnings.size(), 101U);
    EXPECT_LT(config.warnings[0].size(), 200U);
    EXPECT_EQ(config.windows[0].gauges.size(), 1U);
}

}  // namespace
}  // namespace panelhost
