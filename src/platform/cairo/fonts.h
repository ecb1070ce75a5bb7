// platform/cairo/fonts.h - font faces with their glyphs: advances, outlines and masks, looked up or
// made once each.
//
// Texts are Latin-1: one byte, one glyph. Advances, ascent, descent and outlines are fractions of
// the font size and scale linearly. A family that is not installed takes the font system's
// substitute.
#pragma once

#include <cairo.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/canvas.h"

namespace avq1::cairo {

struct Glyph {
    unsigned long index = 0;
    double advance = 0;
    bool known = false;
};

// Closed lines one behind the other, around the glyph's origin on the baseline, y down.
struct GlyphOutline {
    std::vector<CanvasPoint> points;
    std::vector<std::size_t> ends;  // of each line, beyond its last point
    bool known = false;
};

// How much of each pixel a glyph covers, of 255, row by row; left and top are its first pixel's
// place from the origin.
struct GlyphMask {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> parts;
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
    std::vector<GlyphOutline> outlines;  // by character, once one is asked for
};

// The masks of a face at one size.
struct SizedFont {
    const FontFace* face = nullptr;
    double widthPx = 0;
    double heightPx = 0;
    std::uint64_t lastUse = 0;
    cairo_scaled_font_t* font = nullptr;
    std::vector<GlyphMask> masks;  // by character
};

// The face of a font; null only when the font system fails altogether.
FontFace* FindFontFace(const CanvasFont& font);

const Glyph& GlyphOf(FontFace& face, unsigned char character);

const GlyphOutline& OutlineOf(FontFace& face, unsigned char character);

// The face at a size in pixels each way. Valid until another size is asked for.
SizedFont& FindSizedFont(FontFace& face, double widthPx, double heightPx);

// Upright and fitted to whole rows of pixels.
const GlyphMask& MaskOf(FontFace& face, SizedFont& size, unsigned char character);

void DropFontFaces();

}  // namespace avq1::cairo
