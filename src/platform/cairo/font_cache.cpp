#include "platform/cairo/font_cache.h"

#include <cstring>

#include "platform/canvas_geometry.h"

namespace avq1::cairo {
namespace {

constexpr std::size_t kFaceLimit = 16;
constexpr double kMeasuringSizePx = 256.0;

std::array<FontFace, kFaceLimit> faces;

// Families that stand for another one wherever they are not installed.
constexpr const char* kArialVariant = "HW Arial";

const char* InstalledFamily(const char* family) {
    return std::strcmp(family, kArialVariant) == 0 ? "Arial" : family;
}

void Drop(FontFace& face) {
    if (face.measuring != nullptr) {
        cairo_scaled_font_destroy(face.measuring);
    }
    if (face.face != nullptr) {
        cairo_font_face_destroy(face.face);
    }
    face = FontFace{};
}

cairo_scaled_font_t* MakeMeasuringFont(cairo_font_face_t* face) {
    cairo_matrix_t size;
    cairo_matrix_t identity;
    cairo_matrix_init_scale(&size, kMeasuringSizePx, kMeasuringSizePx);
    cairo_matrix_init_identity(&identity);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_scaled_font_t* font = cairo_scaled_font_create(face, &size, &identity, options);
    cairo_font_options_destroy(options);
    return font;
}

bool Create(FontFace& face, const char* family, bool bold) {
    std::strncpy(face.family.data(), family, face.family.size() - 1);
    face.bold = bold;
    face.face =
        cairo_toy_font_face_create(face.family.data(), CAIRO_FONT_SLANT_NORMAL,
                                   bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    face.measuring = MakeMeasuringFont(face.face);
    if (cairo_scaled_font_status(face.measuring) != CAIRO_STATUS_SUCCESS) {
        Drop(face);
        return false;
    }
    cairo_font_extents_t extents;
    cairo_scaled_font_extents(face.measuring, &extents);
    face.ascent = extents.ascent / kMeasuringSizePx;
    face.descent = extents.descent / kMeasuringSizePx;
    return true;
}

}  // namespace

FontFace* FindFontFace(const CanvasFont& font) {
    const char* family = InstalledFamily(font.family != nullptr ? font.family : "Arial");
    for (FontFace& face : faces) {
        if (face.face == nullptr) {
            return Create(face, family, font.bold) ? &face : nullptr;
        }
        if (face.bold == font.bold &&
            std::strncmp(face.family.data(), family, face.family.size() - 1) == 0) {
            return &face;
        }
    }
    return &faces.front();  // more families than any screen uses
}

const Glyph& GlyphOf(FontFace& face, unsigned char character) {
    Glyph& glyph = face.glyphs[character];
    if (glyph.known) {
        return glyph;
    }
    glyph.known = true;
    const char latin1 = static_cast<char>(character);
    std::array<char, 4> utf8;
    const auto length =
        static_cast<int>(Latin1ToUtf8(std::string_view(&latin1, 1), utf8.data(), utf8.size()));
    std::array<cairo_glyph_t, 4> room;
    cairo_glyph_t* glyphs = room.data();
    int count = static_cast<int>(room.size());
    if (cairo_scaled_font_text_to_glyphs(face.measuring, 0, 0, utf8.data(), length, &glyphs, &count,
                                         nullptr, nullptr, nullptr) == CAIRO_STATUS_SUCCESS &&
        count > 0) {
        cairo_text_extents_t extents;
        cairo_scaled_font_glyph_extents(face.measuring, glyphs, 1, &extents);
        glyph.index = glyphs[0].index;
        glyph.advance = extents.x_advance / kMeasuringSizePx;
    }
    if (glyphs != room.data()) {
        cairo_glyph_free(glyphs);
    }
    return glyph;
}

void DropFontFaces() {
    for (FontFace& face : faces) {
        Drop(face);
    }
}

}  // namespace avq1::cairo
