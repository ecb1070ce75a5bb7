// Readers that lag are brought to the present by what changed meanwhile.
#include "panelhost/web/picture_feed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "panelhost/base/text.h"

namespace panelhost {
namespace {

using testing::ElementsAre;

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

std::vector<std::string> Changed(const PictureFeed& feed, std::uint64_t since) {
    std::vector<std::string> boxes;
    for (const auto& box : ChangedRectangles(feed, since)) {
        boxes.push_back(Format("%d,%d %dx%d", box.x, box.y, box.width, box.height));
    }
    return boxes;
}

TEST(PictureFeed, ReadersGetWhatChangedSinceTheirOwnStamp) {
    Screen screen(100, 70);
    PictureFeed feed;
    EXPECT_FALSE(TakePicture(feed, {}));
    EXPECT_EQ(PictureMessage(feed, 1, 0, 0), nullptr);
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));
    EXPECT_FALSE(TakePicture(feed, screen.Picture()));
    EXPECT_THAT(Changed(feed, 0), ElementsAre("0,0 100x70"));
    const std::uint64_t first = feed.stamp;
    EXPECT_EQ(PictureMessage(feed, 1, 0, first), nullptr);

    screen.Set(99, 69, 0xFFFFFFFFU);  // in the cut-off corner tile
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));
    const std::uint64_t second = feed.stamp;
    screen.Set(0, 0, 0xFFFFFFFFU);
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));

    EXPECT_THAT(Changed(feed, first), ElementsAre("0,0 32x32", "96,64 4x6"));
    EXPECT_THAT(Changed(feed, second), ElementsAre("0,0 32x32"));
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
    EXPECT_THAT(Changed(feed, first), ElementsAre("0,0 608x32"));
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
    const auto message = PictureMessage(feed, 3, 300, first);
    ASSERT_NE(message, nullptr);
    ASSERT_GT(message->size(), 24U);
    EXPECT_EQ(message->substr(0, 2), "\3\1");
    std::vector<std::uint32_t> numbers;  // the window and the picture's box
    for (std::size_t at = 2; at < 12; at += 2) {
        numbers.push_back(NumberAt(*message, at, 2));
    }
    EXPECT_THAT(numbers, ElementsAre(300, 32, 32, 32, 32));
    EXPECT_EQ(NumberAt(*message, 12, 4), message->size() - 16);
    EXPECT_EQ(message->substr(17, 3), "PNG");
    EXPECT_EQ(PictureMessage(feed, 3, 300, first), message);  // shared by all readers at that stamp
}

}  // namespace
}  // namespace panelhost
