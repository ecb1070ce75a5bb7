#include "gaugecheck/picture.h"

#include <cstdio>
#include <cstring>

namespace gaugecheck {
namespace {

constexpr std::uint32_t kDibHeaderSize = 40;
constexpr std::uint32_t kFileHeaderSize = 14;
constexpr int kSideLimit = 8192;

std::size_t RowBytes(int width) {
    return (static_cast<std::size_t>(width) * 3 + 3) / 4 * 4;
}

std::uint32_t Read32(const std::uint8_t* at) {
    std::uint32_t value = 0;
    std::memcpy(&value, at, sizeof value);
    return value;
}

void Append(std::string& out, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        out += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

}  // namespace

void Overlay(Picture& lower, const Picture& upper, int x, int y) {
    for (int row = 0; row < upper.height; ++row) {
        for (int column = 0; column < upper.width; ++column) {
            const int toX = x + column;
            const int toY = y + row;
            const std::uint32_t pixel =
                upper.pixels[static_cast<std::size_t>(row) * upper.width + column];
            if (pixel != 0 && toX >= 0 && toX < lower.width && toY >= 0 && toY < lower.height) {
                lower.pixels[static_cast<std::size_t>(toY) * lower.width + toX] = pixel;
            }
        }
    }
}

bool ReadDib(const std::uint8_t* bytes, std::size_t size, Picture& picture) {
    if (size < kDibHeaderSize || Read32(bytes) != kDibHeaderSize ||
        (Read32(bytes + 12) >> 16) != 24 || Read32(bytes + 16) != 0) {
        return false;
    }
    const auto width = static_cast<std::int32_t>(Read32(bytes + 4));
    const auto height = static_cast<std::int32_t>(Read32(bytes + 8));
    if (width < 1 || height < 1 || width > kSideLimit || height > kSideLimit ||
        size - kDibHeaderSize < RowBytes(width) * static_cast<std::size_t>(height)) {
        return false;
    }
    picture = Picture(width, height);
    for (int row = 0; row < height; ++row) {
        const std::uint8_t* from =
            bytes + kDibHeaderSize + RowBytes(width) * static_cast<std::size_t>(height - 1 - row);
        for (int column = 0; column < width; ++column, from += 3) {
            picture.pixels[static_cast<std::size_t>(row) * width + column] =
                static_cast<std::uint32_t>(from[2]) << 16 |
                static_cast<std::uint32_t>(from[1]) << 8 | from[0];
        }
    }
    return true;
}

bool WriteBmp(const std::string& path, const Picture& picture) {
    const auto imageSize = static_cast<std::uint32_t>(RowBytes(picture.width)) *
                           static_cast<std::uint32_t>(picture.height);
    std::string out = "BM";
    Append(out, kFileHeaderSize + kDibHeaderSize + imageSize, 4);
    Append(out, 0, 4);
    Append(out, kFileHeaderSize + kDibHeaderSize, 4);
    Append(out, kDibHeaderSize, 4);
    Append(out, static_cast<std::uint32_t>(picture.width), 4);
    Append(out, static_cast<std::uint32_t>(picture.height), 4);
    Append(out, 1, 2);
    Append(out, 24, 2);
    Append(out, 0, 4);
    Append(out, imageSize, 4);
    out.append(16, '\0');
    for (int row = picture.height - 1; row >= 0; --row) {
        const std::size_t start = out.size();
        for (int column = 0; column < picture.width; ++column) {
            Append(out, picture.pixels[static_cast<std::size_t>(row) * picture.width + column], 3);
        }
        out.append(RowBytes(picture.width) - (out.size() - start), '\0');
    }
    std::FILE* const file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    const bool written = std::fwrite(out.data(), 1, out.size(), file) == out.size();
    return std::fclose(file) == 0 && written;
}

}  // namespace gaugecheck
