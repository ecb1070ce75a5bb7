#include "panelhost/web/picture_feed.h"

#include <algorithm>
#include <cstring>

#include "panelhost/base/png.h"

namespace panelhost {
namespace {

int TilesFor(int pixels) {
    return (pixels + kTilePixels - 1) / kTilePixels;
}

// The part of a tile that lies in the picture.
struct TileBox {
    std::size_t at = 0;     // its first pixel
    std::size_t width = 0;  // pixels
    int height = 0;
};

TileBox BoxOf(const PictureFeed& feed, int tile) {
    const int columns = TilesFor(feed.width);
    const int left = tile % columns * kTilePixels;
    const int top = tile / columns * kTilePixels;
    return {static_cast<std::size_t>(top) * static_cast<std::size_t>(feed.width) +
                static_cast<std::size_t>(left),
            static_cast<std::size_t>(std::min(kTilePixels, feed.width - left)),
            std::min(kTilePixels, feed.height - top)};
}

bool CopyTile(PictureFeed& feed, const WindowPicture& picture, int tile) {
    const TileBox box = BoxOf(feed, tile);
    const std::size_t bytes = box.width * sizeof(std::uint32_t);
    bool changed = false;
    std::size_t at = box.at;
    for (int y = 0; y < box.height; ++y, at += static_cast<std::size_t>(feed.width)) {
        if (std::memcmp(feed.pixels.data() + at, picture.pixels + at, bytes) != 0) {
            std::memcpy(feed.pixels.data() + at, picture.pixels + at, bytes);
            changed = true;
        }
    }
    return changed;
}

void PutNumber(std::string& out, std::size_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<char>(value >> (8U * static_cast<unsigned>(i)) & 0xFFU));
    }
}

void PutShort(std::string& out, int value) {
    auto rest = static_cast<unsigned>(value);
    for (; rest >= 0x80; rest >>= 7U) {
        out.push_back(static_cast<char>((rest & 0x7FU) | 0x80U));
    }
    out.push_back(static_cast<char>(rest));
}

std::string EncodeRuns(const std::vector<TileRun>& runs) {
    std::string out;
    int end = 0;
    for (const TileRun& run : runs) {
        PutShort(out, run.first - end);
        PutShort(out, run.count);
        end = run.first + run.count;
    }
    return out;
}

std::vector<std::uint8_t> EncodeTiles(const PictureFeed& feed, const std::vector<TileRun>& runs) {
    int count = 0;
    for (const TileRun& run : runs) {
        count += run.count;
    }
    const int columns = std::min(count, TilesFor(feed.width));
    const int width = columns * kTilePixels;
    const int height = (count + columns - 1) / columns * kTilePixels;
    std::vector<std::uint32_t> sheet(static_cast<std::size_t>(width) *
                                     static_cast<std::size_t>(height));
    int place = 0;
    for (const TileRun& run : runs) {
        for (int tile = run.first; tile < run.first + run.count; ++tile, ++place) {
            const TileBox box = BoxOf(feed, tile);
            std::size_t to = static_cast<std::size_t>(place / columns * kTilePixels) *
                                 static_cast<std::size_t>(width) +
                             static_cast<std::size_t>(place % columns * kTilePixels);
            std::size_t from = box.at;
            for (int y = 0; y < box.height; ++y) {
                std::copy_n(feed.pixels.data() + from, box.width, sheet.data() + to);
                from += static_cast<std::size_t>(feed.width);
                to += static_cast<std::size_t>(width);
            }
        }
    }
    return EncodePng(width, height, sheet.data(), true);
}

}  // namespace

bool TakePicture(PictureFeed& feed, const WindowPicture& picture) {
    if (picture.pixels == nullptr) {
        return false;
    }
    const int columns = TilesFor(picture.width);
    const int rows = TilesFor(picture.height);
    const std::uint64_t next = feed.stamp + 1;
    if (feed.width != picture.width || feed.height != picture.height) {
        feed.width = picture.width;
        feed.height = picture.height;
        feed.pixels.assign(picture.pixels,
                           picture.pixels + static_cast<std::ptrdiff_t>(feed.width) * feed.height);
        feed.tiles.assign(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows), next);
        feed.stamp = next;
        return true;
    }
    bool changed = false;
    for (int row = 0; row < rows; ++row) {
        const TileBox first = BoxOf(feed, row * columns);
        const std::size_t bytes = static_cast<std::size_t>(feed.width) *
                                  static_cast<std::size_t>(first.height) * sizeof(std::uint32_t);
        if (std::memcmp(feed.pixels.data() + first.at, picture.pixels + first.at, bytes) == 0) {
            continue;
        }
        for (int tile = row * columns; tile < (row + 1) * columns; ++tile) {
            if (CopyTile(feed, picture, tile)) {
                feed.tiles[static_cast<std::size_t>(tile)] = next;
                changed = true;
            }
        }
    }
    feed.stamp = changed ? next : feed.stamp;
    return changed;
}

std::vector<TileRun> ChangedTiles(const PictureFeed& feed, std::uint64_t since) {
    std::vector<TileRun> runs;
    for (std::size_t i = 0; i < feed.tiles.size(); ++i) {
        if (feed.tiles[i] <= since) {
            continue;
        }
        const int tile = static_cast<int>(i);
        if (runs.empty() || runs.back().first + runs.back().count != tile) {
            runs.push_back({tile, 0});
        }
        ++runs.back().count;
    }
    return runs;
}

std::shared_ptr<const std::string> PictureMessage(PictureFeed& feed, int scale, int display,
                                                  std::uint64_t since) {
    if (feed.stamp <= since) {
        return nullptr;
    }
    if (feed.encoded && feed.encodedFrom == since && feed.encodedTo == feed.stamp) {
        return feed.encoded;
    }
    const std::vector<TileRun> runs = ChangedTiles(feed, since);
    const std::string places = EncodeRuns(runs);
    const std::vector<std::uint8_t> png = EncodeTiles(feed, runs);
    std::string message;
    PutNumber(message, static_cast<std::size_t>(scale), 1);
    PutNumber(message, kTilePixels, 1);
    PutNumber(message, static_cast<std::size_t>(display), 2);
    PutNumber(message, static_cast<std::size_t>(feed.width), 2);
    PutNumber(message, places.size(), 4);
    message += places;
    message.append(png.begin(), png.end());
    feed.encoded = std::make_shared<const std::string>(std::move(message));
    feed.encodedFrom = since;
    feed.encodedTo = feed.stamp;
    return feed.encoded;
}

}  // namespace panelhost
