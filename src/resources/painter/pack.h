// resources/painter/pack.h - the files the painted bitmaps are handed on in: BMP, the packed
// section of the Linux module, and the resource script of the Windows one.
//
// The section: "AVQR", u32 version, u32 count, then count rows {u32 number, u32 kind, u32 offset,
// u32 size}, then the data; little-endian, offsets from the section's start.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "resources/painter/inventory.h"

namespace avq1 {

inline constexpr std::uint32_t kPackVersion = 1;
inline constexpr std::uint32_t kKindBitmap = 2;      // a complete BMP file
inline constexpr std::uint32_t kKindKeyNames = 256;  // UTF-8, "x y w h label" per key

struct PackedResource {
    std::uint32_t number = 0;
    std::uint32_t kind = 0;
    std::string data;
};

// A 24-bit bottom-up BMP of premultiplied ARGB words, top row first. Pixels less than half opaque
// become black, which hosts leave transparent. Opaque black is lifted to the next colour unless
// `keepBlack` is set.
std::string EncodeBmp(std::span<const std::uint32_t> pixels, int width, int height, bool keepBlack);

// The keys' places and names, one line each; keys without a label are left out.
std::string KeyNames(const BitmapPlan& plan);

std::string PackResources(std::span<const PackedResource> resources);

// The file name of a bitmap: its number in hexadecimal.
std::string BitmapFileName(std::int32_t number);
// One line per bitmap, under its decimal number.
std::string ResourceScript(std::span<const BitmapPlan> plans);

}  // namespace avq1
