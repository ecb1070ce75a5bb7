// panelhost/module/resources.h - the bitmaps and key names a Linux module file carries in its
// `.avq_res` section, read from the file's bytes as a Windows host reads PE resources.
//
// The section: "AVQR", u32 version 1, u32 count, then count rows of u32 number, kind, offset, size
// with offsets from the section's start. Kind 2 is a complete 24-bit BMP file, kind 256 UTF-8 text
// "x y w h label" per line: the names of the keys on that bitmap. Everything is bounds-checked: a
// row that does not hold is left out and named in `problems`.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace panelhost {

// 32-bit premultiplied ARGB words, top row first.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;
};

struct KeyName {
    int x = 0;  // pixels of the bitmap
    int y = 0;
    int width = 0;
    int height = 0;
    std::string label;
};

struct ModuleResources {
    std::map<std::uint32_t, Picture> bitmaps;
    std::map<std::uint32_t, std::vector<KeyName>> keyNames;
    std::vector<std::string> problems;
};

inline constexpr int kMaxBitmapSide = 4096;

// The bytes of a named section of an ELF64 little-endian file; empty when there is none.
std::string_view FindElfSection(std::string_view file, std::string_view name);
ModuleResources ParseResources(std::string_view section);
// An uncompressed bottom-up or top-down BMP of 24 or 32 bits, opaque; width 0 when it is not one.
Picture ParseBmp(std::string_view file);
std::vector<KeyName> ParseKeyNames(std::string_view text);

}  // namespace panelhost
