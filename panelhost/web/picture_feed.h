// panelhost/web/picture_feed.h - which parts of a window's picture changed since a reader's last
// look.
//
// A picture is cut into square tiles; each remembers the stamp of its last change, so readers at
// different stamps share one map and a slow one simply gets more at once. Pixels, origin top left.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "panelhost/session/session.h"

namespace panelhost {

inline constexpr int kTilePixels = 32;
inline constexpr std::size_t kMaxRectangles = 8;

struct TileRectangle {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

struct PictureFeed {
    int width = 0;
    int height = 0;
    std::uint64_t stamp = 0;            // of the latest change; 0: no picture yet
    std::vector<std::uint32_t> pixels;  // as last compared
    std::vector<std::uint64_t> tiles;   // stamps, row by row
    std::uint64_t encodedFrom = 0;      // the message below leads from this stamp ...
    std::uint64_t encodedTo = 0;        // ... to this one
    std::shared_ptr<const std::string> encoded;
};

// Compares with the last picture and stamps what differs; true when anything does.
bool TakePicture(PictureFeed& feed, const WindowPicture& picture);
// Boxes around every tile changed after `since`; one box when there would be many.
std::vector<TileRectangle> ChangedRectangles(const PictureFeed& feed, std::uint64_t since);
// The socket's binary message that brings a reader from `since` to the present: a byte with the
// scale, a byte with the count of rectangles, the display as 16 bits, then for each rectangle x, y,
// width, height as 16 bits and the length of its PNG as 32, then the PNGs; little endian. Null when
// it is at the present already.
std::shared_ptr<const std::string> PictureMessage(PictureFeed& feed, int scale, int display,
                                                  std::uint64_t since);

}  // namespace panelhost
