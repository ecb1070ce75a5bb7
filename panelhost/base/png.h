// panelhost/base/png.h - pictures as PNG, for screenshots and the page.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace panelhost {

// Opaque ARGB words, top row first; an empty result means the encoder refused. `fast` trades size
// for time.
std::vector<std::uint8_t> EncodePng(int width, int height, const std::uint32_t* argb, bool fast);
bool WritePng(const std::string& path, int width, int height, const std::uint32_t* argb);

}  // namespace panelhost
