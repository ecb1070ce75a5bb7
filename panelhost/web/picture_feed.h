// panelhost/web/picture_feed.h - which parts of a window's picture changed since a reader's last
// look.
//
// A picture is cut into square tiles, numbered row by row; each remembers the stamp of its last
// change, so readers at different stamps share one map and a slow one simply gets more at once.
// Pixels, origin top left.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "panelhost/session/session.h"

namespace panelhost {

// Small, for what moves on a display are lines and letters: little is sent that did not change.
inline constexpr int kTilePixels = 8;

// Tiles one after the other, over the ends of rows too.
struct TileRun {
    int first = 0;
    int count = 0;
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
// Every tile changed after `since`, in order.
std::vector<TileRun> ChangedTiles(const PictureFeed& feed, std::uint64_t since);
// The socket's binary message that brings a reader from `since` to the present: a byte with the
// scale, a byte with a tile's side in pixels, the display as 16 bits, the picture's width as 16
// bits, how many bytes of runs follow as 32; for each run how many tiles are left out before it and
// how many it has, 7 bits a byte, the last with its high bit clear; then a PNG of these tiles one
// after the other, in rows as wide as the picture or as there are tiles. Little endian; beyond the
// picture's edges tiles are black. Null when the reader is at the present already.
std::shared_ptr<const std::string> PictureMessage(PictureFeed& feed, int scale, int display,
                                                  std::uint64_t since);

}  // namespace panelhost
