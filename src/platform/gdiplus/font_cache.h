// platform/gdiplus/font_cache.h - the library's font families with their advances, and its fonts by
// size, made once each.
//
// Texts are Latin-1: one byte, one glyph. Advances, ascent and descent are fractions of the font
// size and scale linearly, as on every other system, so a layout is the same everywhere. A family
// that is not installed takes the library's own fallback.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <gdiplus.h>

#include <array>

#include "platform/canvas.h"

namespace avq1::gdiplus {

struct FontFace {
    std::array<char, 32> name{};  // as asked for
    bool bold = false;
    Gdiplus::GpFontFamily* family = nullptr;
    double ascent = 0;
    double descent = 0;
    std::array<double, 256> advances{};
};

// The face of a font; null only when the library has no font at all.
const FontFace* FindFontFace(const CanvasFont& font);

// The face at one size in pixels; null when the library cannot make it.
Gdiplus::GpFont* FindFont(const FontFace& face, double sizePx);

void DropFonts();

}  // namespace avq1::gdiplus
