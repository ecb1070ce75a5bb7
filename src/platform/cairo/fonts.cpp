#include "platform/cairo/fonts.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/canvas_geometry.h"

namespace avq1::cairo {
namespace {

constexpr std::size_t kFaceLimit = 16;
constexpr double kMeasuringSizePx = 256.0;
constexpr std::size_t kSizeLimit = 64;

std::array<FontFace, kFaceLimit> faces;

std::array<SizedFont, kSizeLimit> sizes;
std::uint64_t useCounter = 0;

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

void Drop(SizedFont& size) {
    if (size.font != nullptr) {
        cairo_scaled_font_destroy(size.font);
    }
    size = SizedFont{};
}

// Advances that scale linearly keep a layout the same at every size.
cairo_scaled_font_t* MakeFont(cairo_font_face_t* face, double widthPx, double heightPx,
                              cairo_hint_style_t hints) {
    cairo_matrix_t size;
    cairo_matrix_t identity;
    cairo_matrix_init_scale(&size, widthPx, heightPx);
    cairo_matrix_init_identity(&identity);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, hints);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_scaled_font_t* font = cairo_scaled_font_create(face, &size, &identity, options);
    cairo_font_options_destroy(options);
    return font;
}

// A place to draw one glyph on, with its font set.
struct Easel {
    Easel(cairo_scaled_font_t* font, int width, int height)
        : surface(cairo_image_surface_create(CAIRO_FORMAT_A8, width, height)),
          cr(cairo_create(surface)) {
        cairo_set_scaled_font(cr, font);
    }
    ~Easel() {
        cairo_destroy(cr);
        cairo_surface_destroy(surface);
    }
    Easel(const Easel&) = delete;
    Easel& operator=(const Easel&) = delete;

    cairo_surface_t* surface;
    cairo_t* cr;
};

void MakeMask(cairo_scaled_font_t* font, unsigned long index, GlyphMask& mask) {
    constexpr int kMarginPx = 1;
    cairo_glyph_t glyph{index, 0, 0};
    cairo_text_extents_t extents;
    cairo_scaled_font_glyph_extents(font, &glyph, 1, &extents);
    mask.left = static_cast<int>(std::floor(extents.x_bearing)) - kMarginPx;
    mask.top = static_cast<int>(std::floor(extents.y_bearing)) - kMarginPx;
    mask.width =
        static_cast<int>(std::ceil(extents.x_bearing + extents.width)) + kMarginPx - mask.left;
    mask.height =
        static_cast<int>(std::ceil(extents.y_bearing + extents.height)) + kMarginPx - mask.top;
    const Easel easel(font, mask.width, mask.height);
    glyph.x = -mask.left;
    glyph.y = -mask.top;
    cairo_show_glyphs(easel.cr, &glyph, 1);
    cairo_surface_flush(easel.surface);
    const unsigned char* const pixels = cairo_image_surface_get_data(easel.surface);
    const int stride = cairo_image_surface_get_stride(easel.surface);
    if (pixels == nullptr) {
        mask.width = mask.height = 0;
        return;
    }
    for (int y = 0; y < mask.height; ++y) {
        const unsigned char* const row = pixels + static_cast<std::ptrdiff_t>(y) * stride;
        mask.parts.insert(mask.parts.end(), row, row + mask.width);
    }
}

void MakeOutline(cairo_scaled_font_t* font, unsigned long index, GlyphOutline& outline) {
    constexpr double kFlatPx = 1;  // at the measuring size
    const Easel easel(font, 1, 1);
    const cairo_glyph_t glyph{index, 0, 0};
    cairo_set_tolerance(easel.cr, kFlatPx);
    cairo_glyph_path(easel.cr, &glyph, 1);
    cairo_path_t* const path = cairo_copy_path_flat(easel.cr);
    for (int i = 0; i < path->num_data; i += path->data[i].header.length) {
        const cairo_path_data_t& data = path->data[i];
        if (data.header.type == CAIRO_PATH_CLOSE_PATH) {
            outline.ends.push_back(outline.points.size());
        } else {
            const auto& point = path->data[i + 1].point;
            outline.points.push_back({point.x / kMeasuringSizePx, point.y / kMeasuringSizePx});
        }
    }
    cairo_path_destroy(path);
}

}  // namespace

SizedFont& FindSizedFont(FontFace& face, double widthPx, double heightPx) {
    SizedFont* oldest = &sizes.front();
    for (SizedFont& size : sizes) {
        if (size.face == &face && size.widthPx == widthPx && size.heightPx == heightPx) {
            size.lastUse = ++useCounter;
            return size;
        }
        if (size.lastUse < oldest->lastUse) {
            oldest = &size;
        }
    }
    Drop(*oldest);
    oldest->face = &face;
    oldest->widthPx = widthPx;
    oldest->heightPx = heightPx;
    oldest->lastUse = ++useCounter;
    oldest->font = MakeFont(face.face, widthPx, heightPx, CAIRO_HINT_STYLE_SLIGHT);
    oldest->masks.resize(face.glyphs.size());
    return *oldest;
}

namespace {

bool Create(FontFace& face, const char* family, bool bold) {
    std::strncpy(face.family.data(), family, face.family.size() - 1);
    face.bold = bold;
    face.face =
        cairo_toy_font_face_create(face.family.data(), CAIRO_FONT_SLANT_NORMAL,
                                   bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    face.measuring = MakeFont(face.face, kMeasuringSizePx, kMeasuringSizePx, CAIRO_HINT_STYLE_NONE);
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

const GlyphOutline& OutlineOf(FontFace& face, unsigned char character) {
    face.outlines.resize(face.glyphs.size());
    GlyphOutline& outline = face.outlines[character];
    if (!outline.known) {
        outline.known = true;
        MakeOutline(face.measuring, GlyphOf(face, character).index, outline);
    }
    return outline;
}

const GlyphMask& MaskOf(FontFace& face, SizedFont& size, unsigned char character) {
    GlyphMask& mask = size.masks[character];
    if (!mask.known) {
        mask.known = true;
        MakeMask(size.font, GlyphOf(face, character).index, mask);
    }
    return mask;
}

void DropFontFaces() {
    for (SizedFont& size : sizes) {
        Drop(size);
    }
    for (FontFace& face : faces) {
        Drop(face);
    }
}

}  // namespace avq1::cairo
