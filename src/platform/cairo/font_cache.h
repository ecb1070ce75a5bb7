// platform/cairo/font_cache.h - font faces with their glyphs and advances, looked up once each.
//
// Texts are Latin-1: one byte, one glyph. Advances, ascent and descent are fractions of the font
// size and scale linearly. A family that is not installed takes the font system's substitute.
#pragma once

#include <cairo.h>

#include <array>
#include <cstdint>
#include <string_view>

#include "platform/canvas.h"

namespace avq1::cairo {

struct Glyph {
    unsigned long index = 0;
    double advance = 0;
    bool known = false;
};

struct FontFace {
    std::array<char, 32> family{};
    bool bold = false;
    cairo_font_face_t* face = nullptr;
    cairo_scaled_font_t* measuring = nullptr;
    double ascent = 0;
    double descent = 0;
    std::array<Glyph, 256> glyphs;
};

// The face of a font; null only when the font system fails altogether.
FontFace* FindFontFace(const CanvasFont& font);

const Glyph& GlyphOf(FontFace& face, unsigned char character);

void DropFontFaces();

}  // namespace avq1::cairo
