// Displays on screens of their own: views with surfaces of their own that the module does not know
// as windows.
#include <gmock/gmock.h>
#include <malloc.h>

#include <algorithm>

#include "panelhost/base/text.h"
#include "panelhost/session/session.h"
#include "tests/panelhost/host_fixture.h"

extern "C" __attribute__((weak)) std::size_t __sanitizer_get_current_allocated_bytes();

namespace panelhost {
namespace {

using testing::ElementsAre;

constexpr const char* kPanel =
    "[Window Titles]\nWindow00=Main\nWindow01=Probe Alone\n"
    "[Window00]\nsize_mm=200,100\nident=0\n"
    "gauge00=probe!SERVER, 0,0\n"
    "gauge01=probe!PROBE, 10,20,,,first\n"
    "[Window01]\nsize_mm=40,30\nident=4001\nvisible=0\n"
    "gauge00=probe!PROBE, 0,0\n";
enum : int { kMain, kPopUp, kMainAlone, kPopUpAlone, kGauge, kDisplayCount };

std::size_t AllocatedBytes() {
    if (__sanitizer_get_current_allocated_bytes != nullptr) {
        return __sanitizer_get_current_allocated_bytes();
    }
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

class ViewsTest : public HostTest {
  protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(Open(kPanel)) << session_.error();
    }
    std::string TextOf(int window) const {
        const std::vector<DrawnText> texts = session_.Texts(window);
        return texts.empty() ? "" : texts.front().text;
    }
    static int Events() { return Log()->count; }
};

TEST_F(ViewsTest, EverythingThatCanBeShownIsListed) {
    std::vector<std::string> list;
    for (const Display& display : session_.Displays()) {
        list.push_back(Format("%d %d %s/%s %dx%d", display.index, static_cast<int>(display.kind),
                              display.name.c_str(), display.title.c_str(), display.width,
                              display.height));
    }
    EXPECT_THAT(
        list, ElementsAre("0 0 0/Main 200x100", "1 0 4001/Probe Alone 40x30", "2 1 0/Main 200x100",
                          "3 1 4001/Probe Alone 40x30", "4 2 PROBE/Probe Alone 40x30"));
    session_.Close();
    EXPECT_TRUE(session_.Displays().empty());
    EXPECT_EQ(session_.View(0, 1), -1);
}

TEST_F(ViewsTest, AViewHasItsOwnSizeAndSurfaceAndOpensNoWindow) {
    struct Row {
        int display, scale, width, height;
    };
    for (const Row& row : {Row{kMain, 2, 400, 200}, Row{kMainAlone, 1, 200, 100},
                           Row{kPopUpAlone, 3, 120, 90}, Row{kGauge, 9, 120, 90}}) {
        SCOPED_TRACE(row.display);
        const int view = session_.View(row.display, row.scale);
        ASSERT_GE(view, 2);
        EXPECT_EQ(session_.View(row.display, row.scale), view) << "shared by all who want the same";
        const WindowInfo info = session_.Window(view);
        EXPECT_THAT((std::array{info.width, info.height}), ElementsAre(row.width, row.height));
        EXPECT_TRUE(info.visible);
        session_.Step(0.04);
        EXPECT_EQ(session_.Picture(view).width, row.width);
        EXPECT_EQ(TextOf(view), "drawn 1");
        EXPECT_EQ(session_.Gauges(view).size(), 1U) << "only what can be seen";
        session_.Release(view);
    }
    EXPECT_EQ(session_.View(kMain, 1), 0) << "a window is the view of its own scale";
    EXPECT_EQ(session_.View(-1, 1), -1);
    EXPECT_EQ(session_.View(kDisplayCount, 1), -1);
    EXPECT_EQ(session_.Windows().size(), 2U);
    EXPECT_FALSE(session_.Windows()[kPopUp].visible);
}

TEST_F(ViewsTest, APanelWindowsViewIsSeenWhileTheWindowIsOpen) {
    const int view = session_.View(kPopUp, 2);
    const int alone = session_.View(kPopUpAlone, 2);
    EXPECT_FALSE(session_.Window(view).visible);
    EXPECT_FALSE(session_.Click(view, 6, 8));
    EXPECT_TRUE(session_.Click(alone, 6, 8));
    session_.SetWindowVisible(4001, true);
    EXPECT_TRUE(session_.Window(view).visible);
    EXPECT_TRUE(session_.Click(view, 6, 8));
    EXPECT_THAT(Clicks(), testing::Each(testing::Field(&ProbeRecord::x, 1)));
}

TEST_F(ViewsTest, OnlyWhatIsWatchedGetsSurfacesToDrawOn) {
    const int view = session_.View(kGauge, 1);
    EXPECT_THAT(EventsOf(Log()->records[Events() - 1].gauge), ElementsAre(2, 3, 4, 5, 14, 6, 7));
    session_.SetWatched(0, false);
    for (int frame = 0; frame < 10; ++frame) {
        session_.Step(0.04);
    }
    EXPECT_EQ(TextOf(view), "drawn 10");
    EXPECT_EQ(TextOf(0), "");
    session_.SetWatched(view, false);
    const int before = Events();
    session_.Step(0.01);
    EXPECT_EQ(Events() - before, 4) << "a draw event for each gauge of the open window, two calls";
    EXPECT_EQ(TextOf(view), "drawn 10");
}

TEST_F(ViewsTest, AReleasedViewSleepsAndWakesWithNewSurfaces) {
    const int view = session_.View(kGauge, 2);
    session_.Step(0.04);
    const void* const gauge = Log()->records[Events() - 1].gauge;
    session_.Release(view);
    EXPECT_EQ(session_.Picture(view).pixels, nullptr);
    const auto countOf = [gauge] {
        return std::ranges::count(EventsOf(gauge), 6) + std::ranges::count(EventsOf(gauge), 10);
    };
    const auto asleep = countOf();
    for (int frame = 0; frame < 10; ++frame) {
        session_.Step(0.04);
        session_.Look(view);
    }
    EXPECT_EQ(countOf(), asleep);
    EXPECT_EQ(session_.View(kGauge, 2), view);
    const std::vector<int> told = EventsOf(gauge);
    EXPECT_THAT(std::vector(told.end() - 3, told.end()), ElementsAre(14, 6, 7))
        << "its surfaces are new, its lights those of now";
    session_.Step(0.04);
    EXPECT_EQ(TextOf(view), "drawn 2");
    EXPECT_EQ(session_.Picture(view).width, 80);
    session_.Release(0);
    EXPECT_NE(session_.Picture(0).pixels, nullptr) << "a panel window never sleeps";
}

TEST_F(ViewsTest, WithNoScreenOpenAnUnseenOneFlies) {
    const auto eventsOfAStep = [this] {
        const int before = Events();
        session_.Step(0.005);  // no tick falls due
        return Events() - before;
    };
    session_.SetWindowVisible(0, false);
    EXPECT_EQ(eventsOfAStep(), 7) << "its start, and a draw event in two calls";
    EXPECT_EQ(eventsOfAStep(), 2);
    const int view = session_.View(kGauge, 1);
    session_.Step(0.005);
    EXPECT_EQ(TextOf(view), "drawn 1") << "it had nothing to draw on before";
    session_.Release(view);
    EXPECT_EQ(eventsOfAStep(), 2);
    session_.SetWindowVisible(4001, true);
    EXPECT_EQ(eventsOfAStep(), 2) << "the open window's alone";
    session_.SetWindowVisible(0, true);
    EXPECT_EQ(eventsOfAStep(), 6);
}

TEST_F(ViewsTest, MemoryIsBounded) {
    session_.Close();
    ASSERT_TRUE(
        Open("[Window00]\nsize_mm=4096,4096\nident=0\ngauge00=probe!PROBE, 0,0\n"
             "[Window01]\nsize_mm=3000,3000\nident=1\n"
             "[Window02]\nsize_mm=3000,3000\nident=2\n"
             "[Window03]\nsize_mm=3000,3000\nident=3\n"));
    EXPECT_EQ(session_.View(0, 3), 0) << "its picture is as large as one may be";
    const std::size_t before = AllocatedBytes();
    const int large = session_.View(4, 3);
    EXPECT_EQ(session_.Window(large).scale, 1);
    session_.Picture(large);
    EXPECT_GE(AllocatedBytes(), before + (64U << 20U));
    session_.Release(large);
    EXPECT_LT(AllocatedBytes(), before + (1U << 20U)) << "asleep it has no picture";
    EXPECT_EQ(session_.View(4, 3), large);
    std::vector<int> views;
    for (int display = 5; display < 8; ++display) {
        views.push_back(session_.View(display, 3));
    }
    EXPECT_EQ(session_.Window(views[0]).width, 3000);
    EXPECT_GT(views[2], 0);
    EXPECT_EQ(session_.View(1, 3), 1);
    session_.Close();
    ASSERT_TRUE(
        Open("[Window00]\nsize_mm=4000,4000\nident=0\n[Window01]\nsize_mm=4000,4000\n"
             "ident=1\n[Window02]\nsize_mm=4000,4000\nident=2\n"
             "[Window03]\nsize_mm=4000,4000\nident=3\n"));
    EXPECT_GE(session_.View(4, 1), 4);
    EXPECT_GE(session_.View(5, 1), 4);
    const int third = session_.View(6, 1);
    EXPECT_GE(third, 4);
    EXPECT_EQ(session_.View(7, 1), -1) << "a fourth is too much";
    session_.Release(third);
    EXPECT_GE(session_.View(7, 1), 4);
}

}  // namespace
}  // namespace panelhost
