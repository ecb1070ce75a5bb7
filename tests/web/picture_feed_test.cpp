// Readers that lag are brought to the present by what changed meanwhile.
#include "panelhost/web/picture_feed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>

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
    std::vector<std::string> runs;
    for (const TileRun& run : ChangedTiles(feed, since)) {
        runs.push_back(Format("%d+%d", run.first, run.count));
    }
    return runs;
}

// A page: what it has drawn of the messages it was sent.
struct Page {
    std::vector<std::uint32_t> pixels;
    std::uint64_t stamp = 0;
    std::size_t at = 0;

    std::size_t Number(const std::string& message, int bytes) {
        std::size_t value = 0;
        for (int i = 0; i < bytes; ++i) {
            value |= static_cast<std::size_t>(static_cast<unsigned char>(message[at++])) << 8 * i;
        }
        return value;
    }
    int Short(const std::string& message) {
        int value = 0;
        for (int shift = 0;; shift += 7) {
            const int byte = static_cast<unsigned char>(message[at++]);
            value |= (byte & 127) << shift;
            if (byte < 128) {
                return value;
            }
        }
    }
    void Take(PictureFeed& feed, int scale, int display) {
        const auto message = PictureMessage(feed, scale, display, stamp);
        ASSERT_NE(message, nullptr);
        stamp = feed.stamp;
        at = 0;
        EXPECT_EQ(Number(*message, 1), static_cast<std::size_t>(scale));
        const int side = static_cast<int>(Number(*message, 1));
        EXPECT_EQ(Number(*message, 2), static_cast<std::size_t>(display));
        const int width = static_cast<int>(Number(*message, 2));
        const std::size_t runsBytes = Number(*message, 4);
        const std::size_t end = at + runsBytes;
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        ASSERT_TRUE(
            png_image_begin_read_from_memory(&image, message->data() + end, message->size() - end));
        image.format = PNG_FORMAT_BGRA;
        std::vector<std::uint32_t> sheet(static_cast<std::size_t>(image.width) * image.height);
        ASSERT_TRUE(png_image_finish_read(&image, nullptr, sheet.data(), 0, nullptr));
        pixels.resize(feed.pixels.size());
        const int columns = static_cast<int>(image.width) / side;
        const int across = (width + side - 1) / side;
        EXPECT_LE(columns, across) << "no empty tiles beside the changed ones";
        int place = 0;
        for (int tile = 0; at < end;) {
            tile += Short(*message);
            for (int count = Short(*message); count > 0; --count, ++tile, ++place) {
                for (int i = 0; i < side * side; ++i) {
                    const int x = tile % across * side + i % side;
                    const int y = tile / across * side + i / side;
                    const auto to = static_cast<std::size_t>(y * width + x);
                    if (x < width && to < pixels.size()) {
                        pixels[to] = sheet[static_cast<std::size_t>(
                            (place / columns * side + i / side) * static_cast<int>(image.width) +
                            place % columns * side + i % side)];
                    }
                }
            }
        }
    }
};

TEST(PictureFeed, ReadersGetWhatChangedSinceTheirOwnStamp) {
    Screen screen(100, 70);  // 13 x 9 tiles
    PictureFeed feed;
    EXPECT_FALSE(TakePicture(feed, {}));
    EXPECT_EQ(PictureMessage(feed, 1, 0, 0), nullptr);
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));
    EXPECT_FALSE(TakePicture(feed, screen.Picture()));
    EXPECT_THAT(Changed(feed, 0), ElementsAre("0+117"));
    const std::uint64_t first = feed.stamp;
    EXPECT_EQ(PictureMessage(feed, 1, 0, first), nullptr);

    screen.Set(99, 69, 0xFFFFFFFFU);  // in the cut-off corner tile
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));
    const std::uint64_t second = feed.stamp;
    screen.Set(99, 7, 0xFFFFFFFFU);
    screen.Set(0, 8, 0xFFFFFFFFU);
    EXPECT_TRUE(TakePicture(feed, screen.Picture()));

    EXPECT_THAT(Changed(feed, first), ElementsAre("12+2", "116+1"));
    EXPECT_THAT(Changed(feed, second), ElementsAre("12+2"));
    const auto message = PictureMessage(feed, 3, 300, first);
    EXPECT_EQ(PictureMessage(feed, 3, 300, first), message) << "shared by all at that stamp";
    EXPECT_NE(PictureMessage(feed, 3, 300, second), message);
}

TEST(PictureFeed, APageDrawsThePictureHoweverItLags) {
    Screen screen(1100, 70);  // tiles beyond 127 and edges cut both ways
    PictureFeed feed;
    Page prompt;
    Page slow;
    unsigned random = 7;
    const auto next = [&random](int below) {
        random = random * 1664525U + 1013904223U;
        return static_cast<int>((random >> 8U) % static_cast<unsigned>(below));
    };
    for (int frame = 0; frame < 24; ++frame) {
        for (int i = frame % 5 * 9; i >= 0; --i) {
            screen.Set(next(screen.width), next(screen.height), 0xFF000000U | (random & 0xFFFFFFU));
        }
        ASSERT_TRUE(TakePicture(feed, screen.Picture()));
        prompt.Take(feed, 3, 300);
        EXPECT_TRUE(prompt.pixels == screen.pixels) << frame;
        if (frame % 7 == 0) {
            slow.Take(feed, 3, 300);
            EXPECT_TRUE(slow.pixels == screen.pixels) << frame;
        }
    }
    const Screen small(9, 9);  // the same window at another scale
    ASSERT_TRUE(TakePicture(feed, small.Picture()));
    prompt.Take(feed, 1, 2);
    EXPECT_TRUE(prompt.pixels == small.pixels);
}

}  // namespace
}  // namespace panelhost
