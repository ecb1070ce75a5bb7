#include "panelhost/web/picture_feed.h"

#include <algorithm>
#include <cstring>

#include "panelhost/base/png.h"

namespace panelhost {
namespace {

int TilesFor(int pixels) {
    return (pixels + kTilePixels - 1) / kTilePixels;
}

bool CopyTile(PictureFeed& feed, const WindowPicture& picture, int column, int row) {
    const int left = column * kTilePixels;
    const int top = row * kTilePixels;
    const auto count = static_cast<std::size_t>(std::min(kTilePixels, feed.width - left));
    const int bottom = std::min(top + kTilePixels, feed.height);
    bool changed = false;
    for (int y = top; y < bottom; ++y) {
        const std::size_t at = static_cast<std::size_t>(y) * static_cast<std::size_t>(feed.width) +
                               static_cast<std::size_t>(left);
        const std::size_t bytes = count * sizeof(std::uint32_t);
        if (std::memcmp(feed.pixels.data() + at, picture.pixels + at, bytes) != 0) {
            std::memcpy(feed.pixels.data() + at, picture.pixels + at, bytes);
            changed = true;
        }
    }
    return changed;
}

// The box around all changed tiles that touch one another, starting at a tile; takes their marks.
TileRectangle TakeIsland(std::vector<char>& changed, int columns, int rows, int start) {
    std::vector<int> open = {start};
    changed[static_cast<std::size_t>(start)] = 0;
    int left = columns;
    int top = rows;
    int right = 0;
    int bottom = 0;
    while (!open.empty()) {
        const int column = open.back() % columns;
        const int row = open.back() / columns;
        open.pop_back();
        left = std::min(left, column);
        top = std::min(top, row);
        right = std::max(right, column + 1);
        bottom = std::max(bottom, row + 1);
        for (int y = std::max(0, row - 1); y <= std::min(rows - 1, row + 1); ++y) {
            for (int x = std::max(0, column - 1); x <= std::min(columns - 1, column + 1); ++x) {
                const int next = y * columns + x;
                if (changed[static_cast<std::size_t>(next)] != 0) {
                    changed[static_cast<std::size_t>(next)] = 0;
                    open.push_back(next);
                }
            }
        }
    }
    return {left * kTilePixels, top * kTilePixels, (right - left) * kTilePixels,
            (bottom - top) * kTilePixels};
}

void PutNumber(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out.push_back(static_cast<char>(value >> (8U * static_cast<unsigned>(i)) & 0xFFU));
    }
}

std::vector<std::uint8_t> EncodePart(const PictureFeed& feed, const TileRectangle& part) {
    std::vector<std::uint32_t> pixels;
    pixels.reserve(static_cast<std::size_t>(part.width) * static_cast<std::size_t>(part.height));
    for (int y = part.y; y < part.y + part.height; ++y) {
        const auto row = feed.pixels.begin() + static_cast<std::ptrdiff_t>(y) * feed.width + part.x;
        pixels.insert(pixels.end(), row, row + part.width);
    }
    return EncodePng(part.width, part.height, pixels.data(), true);
}

}  // namespace

bool TakePicture(PictureFeed& feed, const WindowPicture& picture) {
    if (picture.pixels == nullptr || picture.width < 1 || picture.height < 1) {
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
        for (int column = 0; column < columns; ++column) {
            if (CopyTile(feed, picture, column, row)) {
                const int tile = row * columns + column;
                feed.tiles[static_cast<std::size_t>(tile)] = next;
                changed = true;
            }
        }
    }
    feed.stamp = changed ? next : feed.stamp;
    return changed;
}

std::vector<TileRectangle> ChangedRectangles(const PictureFeed& feed, std::uint64_t since) {
    const int columns = TilesFor(feed.width);
    const int rows = TilesFor(feed.height);
    std::vector<char> changed(feed.tiles.size());
    for (std::size_t i = 0; i < changed.size(); ++i) {
        changed[i] = feed.tiles[i] > since ? 1 : 0;
    }
    std::vector<TileRectangle> list;
    for (int i = 0; i < columns * rows; ++i) {
        if (changed[static_cast<std::size_t>(i)] != 0) {
            list.push_back(TakeIsland(changed, columns, rows, i));
        }
    }
    if (list.size() > kMaxRectangles) {
        TileRectangle all = list.front();
        for (const TileRectangle& part : list) {
            const int right = std::max(all.x + all.width, part.x + part.width);
            const int bottom = std::max(all.y + all.height, part.y + part.height);
            all.x = std::min(all.x, part.x);
            all.y = std::min(all.y, part.y);
            all.width = right - all.x;
            all.height = bottom - all.y;
        }
        list = {all};
    }
    for (TileRectangle& part : list) {
        part.width = std::min(part.width, feed.width - part.x);
        part.height = std::min(part.height, feed.height - part.y);
    }
    return list;
}

std::shared_ptr<const std::string> PictureMessage(PictureFeed& feed, int scale, int display,
                                                  std::uint64_t since) {
    if (feed.stamp <= since) {
        return nullptr;
    }
    if (feed.encoded && feed.encodedFrom == since && feed.encodedTo == feed.stamp) {
        return feed.encoded;
    }
    const std::vector<TileRectangle> parts = ChangedRectangles(feed, since);
    std::string message;
    std::string pictures;
    message.push_back(static_cast<char>(scale));
    message.push_back(static_cast<char>(parts.size()));
    PutNumber(message, static_cast<std::uint32_t>(display), 2);
    for (const TileRectangle& part : parts) {
        const std::vector<std::uint8_t> png = EncodePart(feed, part);
        for (const int value : {part.x, part.y, part.width, part.height}) {
            PutNumber(message, static_cast<std::uint32_t>(value), 2);
        }
        PutNumber(message, static_cast<std::uint32_t>(png.size()), 4);
        pictures.append(png.begin(), png.end());
    }
    feed.encoded = std::make_shared<const std::string>(message + pictures);
    feed.encodedFrom = since;
    feed.encodedTo = feed.stamp;
    return feed.encoded;
}

}  // namespace panelhost
