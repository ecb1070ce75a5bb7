// Readers that lag are brought to the present by what changed meanwhile.
#include "panelhost/web/picture_feed.h"

#include <gtest/gtest.h>

namespace panelhost {
namespace {

struct Screen {
    int width;
    int height;
    std::vector<std::uint32_t> pixels;

    Screen(int w, int h) : width(w), height(h) {
        pixels.assign(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), 0xFF000000U);
    }
    void Set(int x, int y, std::uint32_t colour) {
        pixels[static_cast<std::size_t>(y * width + x)] = colour;
    }
    WindowPicture Picture() const { return {width, height, pixels.data()}; }
};

TEST(PictureFeed, ReadersGetWhatChangedSinceTheirOwnStamp) {
    Screen screen(100, 70);
    PictureFeed feed;
    EXPECT_FALSE(TakePicture(feed, {}));
    EXPECT_EQ(PictureMessage(feed, 0, 0), nullptr);
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));
    EXPECT_FALSE(TakePicture(feed, screen.Picture()));
    ASSERT_EQ(ChangedRectangles(feed, 0).size(), 1U);
    EXPECT_EQ(ChangedRectangles(feed, 0)[0].width, 100);
    EXPECT_EQ(ChangedRectangles(feed, 0)[0].height, 70);
    const std::uint64_t first = feed.stamp;
    EXPECT_EQ(PictureMessage(feed, 0, first), nullptr);

    screen.Set(99, 69, 0xFFFFFFFFU);  // in the cut-off corner tile
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));
    const std::uint64_t second = feed.stamp;
    screen.Set(0, 0, 0xFFFFFFFFU);
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));

    const auto both = ChangedRectangles(feed, first);
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[0].x + both[0].y, 0);
    EXPECT_EQ(both[1].x, 96);
    EXPECT_EQ(both[1].y, 64);
    EXPECT_EQ(both[1].width, 4);
    EXPECT_EQ(both[1].height, 6);
    const auto latest = ChangedRectangles(feed, second);
    ASSERT_EQ(latest.size(), 1U);
    EXPECT_EQ(latest[0].width, kTilePixels);
}

TEST(PictureFeed, ManyIslandsBecomeOneBox) {
    Screen screen(640, 64);
    PictureFeed feed;
    TakePicture(feed, screen.Picture());
    const std::uint64_t first = feed.stamp;
    for (int x = 0; x < 640; x += 64) {
        screen.Set(x, 0, 0xFF00FF00U);
    }
    TakePicture(feed, screen.Picture());
    const auto parts = ChangedRectangles(feed, first);
    ASSERT_EQ(parts.size(), 1U);
    EXPECT_EQ(parts[0].width, 576 + kTilePixels);
    EXPECT_EQ(parts[0].height, kTilePixels);
}

std::uint32_t NumberAt(const std::string& message, std::size_t at, std::size_t bytes) {
    std::uint32_t value = 0;
    for (std::size_t i = bytes; i-- > 0;) {
        value = value << 8U | static_cast<unsigned char>(message[at + i]);
    }
    return value;
}

TEST(PictureFeed, MessageSaysWhereItsPicturesGo) {
    Screen screen(100, 70);
    PictureFeed feed;
    TakePicture(feed, screen.Picture());
    const std::uint64_t first = feed.stamp;
    screen.Set(40, 40, 0xFFFF0000U);
    TakePicture(feed, screen.Picture());
    const auto message = PictureMessage(feed, 300, first);
    ASSERT_NE(message, nullptr);
    ASSERT_GT(message->size(), 24U);
    EXPECT_EQ(NumberAt(*message, 0, 1), 1U);
    EXPECT_EQ(NumberAt(*message, 1, 1), 1U);
    EXPECT_EQ(NumberAt(*message, 2, 2), 300U);
    EXPECT_EQ(NumberAt(*message, 4, 2), 32U);
    EXPECT_EQ(NumberAt(*message, 6, 2), 32U);
    EXPECT_EQ(NumberAt(*message, 8, 2), 32U);
    EXPECT_EQ(NumberAt(*message, 10, 2), 32U);
    EXPECT_EQ(NumberAt(*message, 12, 4), message->size() - 16);
    EXPECT_EQ(message->substr(17, 3), "PNG");
    EXPECT_EQ(PictureMessage(feed, 300, first), message);  // shared by all readers at that stamp
}

}  // namespace
}  // namespace panelhost
