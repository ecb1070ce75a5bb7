// gaugecheck/picture.h - pictures in memory: 0x00RRGGBB words, top row first.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace gaugecheck {

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    Picture() = default;
    Picture(int pictureWidth, int pictureHeight)
        : width(pictureWidth),
          height(pictureHeight),
          pixels(static_cast<std::size_t>(pictureWidth) * static_cast<std::size_t>(pictureHeight)) {
    }
};

// Puts `upper` on `lower`; what sticks out is left away, black is transparent.
void Overlay(Picture& lower, const Picture& upper, int x, int y);

// An uncompressed bottom-up 24-bit device-independent bitmap: its header and rows, without a file
// header. False when it is of another kind.
bool ReadDib(const std::uint8_t* bytes, std::size_t size, Picture& picture);

bool WriteBmp(const std::string& path, const Picture& picture);

}  // namespace gaugecheck
