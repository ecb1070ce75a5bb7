#include "resources/painter/painting.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace avq1 {
namespace {

constexpr double kPi = std::numbers::pi;

struct Gradient {
    cairo_pattern_t* pattern;

    Gradient(double x1, double y1, double x2, double y2)
        : pattern(cairo_pattern_create_linear(x1, y1, x2, y2)) {}
    Gradient(double x, double y, double radius, double lightX, double lightY, double lightRadius)
        : pattern(cairo_pattern_create_radial(lightX, lightY, lightRadius, x, y, radius)) {}
    ~Gradient() { cairo_pattern_destroy(pattern); }
    Gradient(const Gradient&) = delete;
    Gradient& operator=(const Gradient&) = delete;

    void Stop(double at, Rgb colour, double alpha = 1.0) const {
        cairo_pattern_add_color_stop_rgba(pattern, at, ((colour >> 16U) & 0xFFU) / 255.0,
                                          ((colour >> 8U) & 0xFFU) / 255.0,
                                          (colour & 0xFFU) / 255.0, alpha);
    }
};

// Brightness of one row of a brushed surface: a fixed sequence, so pictures never change by
// themselves between builds.
int BrushedOffset(int row) {
    const auto mixed = (static_cast<std::uint32_t>(row) * 2654435761U) >> 24U;
    return static_cast<int>(mixed % 5U) - 2;
}

void FillDisc(cairo_t* cairo, double x, double y, double radius) {
    cairo_arc(cairo, x, y, radius, 0, 2 * kPi);
    cairo_fill(cairo);
}

void ShadedDisc(cairo_t* cairo, double x, double y, double radius, Rgb light, Rgb dark) {
    const Gradient gradient(x, y, radius, x - radius * 0.4, y - radius * 0.5, radius * 0.05);
    gradient.Stop(0, light);
    gradient.Stop(1, dark);
    cairo_set_source(cairo, gradient.pattern);
    FillDisc(cairo, x, y, radius);
}

// Ribs around a knob's edge.
void PaintKnurls(cairo_t* cairo, double x, double y, double radius, Rgb colour) {
    const int ribs = std::max(12, static_cast<int>(radius * 1.6));
    SetColour(cairo, colour, 0.8);
    cairo_set_line_width(cairo, 1);
    for (int i = 0; i < ribs; ++i) {
        const double angle = 2 * kPi * i / ribs;
        cairo_move_to(cairo, x + std::cos(angle) * radius * 0.86,
                      y + std::sin(angle) * radius * 0.86);
        cairo_line_to(cairo, x + std::cos(angle) * radius, y + std::sin(angle) * radius);
    }
    cairo_stroke(cairo);
}

struct SelectorLook {
    std::uint32_t rimLight;
    std::uint32_t rimDark;
    double faceRadius;  // as a part of the whole
    std::uint32_t faceLight;
    std::uint32_t faceDark;
};

// Paints a selector's body and turns the drawing to its position; the centre becomes 0,0. The
// radius; the caller paints the pointer and restores the context.
double PaintSelectorBody(cairo_t* cairo, const PixelBox& box, const SelectorLook& look,
                         double degrees) {
    const double x = box.x + box.width / 2.0;
    const double y = box.y + box.height / 2.0;
    const double radius = std::min(box.width, box.height) / 2.0 - 1;
    ShadedDisc(cairo, x, y, radius, look.rimLight, look.rimDark);
    PaintKnurls(cairo, x, y, radius, 0x0A0A0A);
    ShadedDisc(cairo, x, y, radius * look.faceRadius, look.faceLight, look.faceDark);
    cairo_save(cairo);
    cairo_translate(cairo, x, y);
    cairo_rotate(cairo, degrees * kPi / 180.0);
    return radius;
}

}  // namespace

Painting::Painting(int width, int height)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
      cairo_(cairo_create(surface_)) {}

Painting::~Painting() {
    cairo_destroy(cairo_);
    cairo_surface_destroy(surface_);
}

std::vector<std::uint32_t> Painting::Pixels() const {
    cairo_surface_flush(surface_);
    const unsigned char* bytes = cairo_image_surface_get_data(surface_);
    const int stride = cairo_image_surface_get_stride(surface_);
    std::vector<std::uint32_t> pixels;
    for (int y = 0; bytes != nullptr && y < height_; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(bytes + y * stride);
        pixels.insert(pixels.end(), row, row + width_);
    }
    return pixels;
}

bool Painting::WritePng(const char* path) const {
    return cairo_surface_write_to_png(surface_, path) == CAIRO_STATUS_SUCCESS;
}

void SetColour(cairo_t* cairo, Rgb colour, double alpha) {
    cairo_set_source_rgba(cairo, ((colour >> 16U) & 0xFFU) / 255.0,
                          ((colour >> 8U) & 0xFFU) / 255.0, (colour & 0xFFU) / 255.0, alpha);
}

Rgb Shade(Rgb colour, double amount) {
    const auto channel = [&](unsigned shift) {
        const double value = (colour >> shift) & 0xFFU;
        const double moved = amount >= 0 ? value + (255 - value) * amount : value * (1 + amount);
        return static_cast<Rgb>(std::lround(std::clamp(moved, 0.0, 255.0))) << shift;
    };
    return channel(16) | channel(8) | channel(0);
}

void RoundedBox(cairo_t* cairo, double x, double y, double width, double height, double radius) {
    const double r = std::min({radius, width / 2, height / 2});
    cairo_new_sub_path(cairo);
    cairo_arc(cairo, x + width - r, y + r, r, -kPi / 2, 0);
    cairo_arc(cairo, x + width - r, y + height - r, r, 0, kPi / 2);
    cairo_arc(cairo, x + r, y + height - r, r, kPi / 2, kPi);
    cairo_arc(cairo, x + r, y + r, r, kPi, 3 * kPi / 2);
    cairo_close_path(cairo);
}

void PaintPlate(const Painting& painting, const Finish& finish) {
    cairo_t* cairo = painting.cairo();
    const double width = painting.width();
    const double height = painting.height();
    const Gradient gradient(0, 0, width * 0.35, height);
    gradient.Stop(0, finish.light);
    gradient.Stop(1, finish.dark);
    cairo_set_source(cairo, gradient.pattern);
    cairo_paint(cairo);
    for (int row = 0; row < painting.height(); ++row) {
        const int offset = BrushedOffset(row);
        SetColour(cairo, offset > 0 ? 0xFFFFFF : 0x000000, std::abs(offset) * 0.014);
        cairo_rectangle(cairo, 0, row, width, 1);
        cairo_fill(cairo);
    }
    const double edge = std::min(width, height) < 100 ? 2 : 3;
    for (int i = 0; i < static_cast<int>(edge); ++i) {
        const double alpha = 0.45 - 0.12 * i;
        SetColour(cairo, 0xFFFFFF, alpha * 0.6);
        cairo_rectangle(cairo, i, i, width - 2 * i, 1);
        cairo_rectangle(cairo, i, i + 1, 1, height - 2 * i - 1);
        cairo_fill(cairo);
        SetColour(cairo, 0x000000, alpha);
        cairo_rectangle(cairo, i + 1, height - 1 - i, width - 2 * i - 1, 1);
        cairo_rectangle(cairo, width - 1 - i, i + 1, 1, height - 2 * i - 2);
        cairo_fill(cairo);
    }
}

void PaintScrew(cairo_t* cairo, double x, double y, double radius, double slotDegrees) {
    SetColour(cairo, 0x000000, 0.45);
    FillDisc(cairo, x + 0.5, y + 0.8, radius + 1);
    ShadedDisc(cairo, x, y, radius, 0xB9BDC0, 0x4B4E51);
    cairo_save(cairo);
    cairo_translate(cairo, x, y);
    cairo_rotate(cairo, slotDegrees * kPi / 180.0);
    SetColour(cairo, 0x16181A, 0.9);
    cairo_rectangle(cairo, -radius * 0.72, -0.8, radius * 1.44, 1.6);
    cairo_rectangle(cairo, -0.8, -radius * 0.72, 1.6, radius * 1.44);
    cairo_fill(cairo);
    cairo_restore(cairo);
}

void PaintRecess(cairo_t* cairo, const PixelBox& box, double frame) {
    const double x = box.x - frame;
    const double y = box.y - frame;
    const double width = box.width + 2 * frame;
    const double height = box.height + 2 * frame;
    const Gradient rim(x, y, x + width * 0.3, y + height);
    rim.Stop(0, 0x0B0C0D);
    rim.Stop(0.5, 0x1D1F21);
    rim.Stop(1, 0x3C4043);
    cairo_set_source(cairo, rim.pattern);
    RoundedBox(cairo, x, y, width, height, 4);
    cairo_fill(cairo);
    cairo_set_line_width(cairo, 1);
    SetColour(cairo, 0x000000, 0.7);
    RoundedBox(cairo, x + 0.5, y + 0.5, width - 1, height - 1, 4);
    cairo_stroke(cairo);
    // The lower and right edges catch the light.
    SetColour(cairo, 0xFFFFFF, 0.22);
    cairo_move_to(cairo, x + 4, y + height + 0.5);
    cairo_line_to(cairo, x + width - 4, y + height + 0.5);
    cairo_move_to(cairo, x + width + 0.5, y + 4);
    cairo_line_to(cairo, x + width + 0.5, y + height - 4);
    cairo_stroke(cairo);
    SetColour(cairo, 0x020202);
    cairo_rectangle(cairo, box.x, box.y, box.width, box.height);
    cairo_fill(cairo);
}

void PaintKeyCap(cairo_t* cairo, const PixelBox& box, const Finish& finish) {
    const double radius = std::min(box.width, box.height) > 24 ? 4 : 3;
    SetColour(cairo, 0x000000, 0.55);
    RoundedBox(cairo, box.x, box.y, box.width, box.height, radius + 1);
    cairo_fill(cairo);
    const double x = box.x + 1;
    const double y = box.y + 1;
    const double width = box.width - 2;
    const double height = box.height - 3;
    const Gradient face(x, y, x, y + height);
    face.Stop(0, Shade(finish.keyTop, 0.10));
    face.Stop(0.2, finish.keyTop);
    face.Stop(1, finish.keyBase);
    cairo_set_source(cairo, face.pattern);
    RoundedBox(cairo, x, y, width, height, radius);
    cairo_fill(cairo);
    cairo_set_line_width(cairo, 1);
    const Gradient rim(x, y, x, y + height);
    rim.Stop(0, 0xFFFFFF, 0.42);
    rim.Stop(0.5, 0xFFFFFF, 0.12);
    rim.Stop(1, 0x000000, 0.40);
    cairo_set_source(cairo, rim.pattern);
    RoundedBox(cairo, x + 0.5, y + 0.5, width - 1, height - 1, radius);
    cairo_stroke(cairo);
}

void PaintLineKey(cairo_t* cairo, const PixelBox& box, const Finish& finish) {
    PaintKeyCap(cairo, box, finish);
    const double length = std::round(box.width * 0.42);
    SetColour(cairo, 0xF2F2EC);
    cairo_rectangle(cairo, std::round(box.x + (box.width - length) / 2), box.y + box.height / 2 - 1,
                    length, 2);
    cairo_fill(cairo);
}

void PaintArrow(cairo_t* cairo, double x, double y, double size, double degrees) {
    cairo_save(cairo);
    cairo_translate(cairo, x, y);
    cairo_rotate(cairo, degrees * kPi / 180.0);
    cairo_move_to(cairo, 0, -size);
    cairo_line_to(cairo, size, size * 0.7);
    cairo_line_to(cairo, -size, size * 0.7);
    cairo_close_path(cairo);
    cairo_restore(cairo);
    cairo_fill(cairo);
}

void PaintKnob(cairo_t* cairo, const PixelBox& box, const Finish& finish) {
    const double x = box.x + box.width / 2.0;
    const double y = box.y + box.height / 2.0;
    const double radius = std::min(box.width, box.height) / 2.0;
    SetColour(cairo, 0x000000, 0.40);
    FillDisc(cairo, x + 0.5, y + 1, radius - 0.5);
    ShadedDisc(cairo, x, y, radius - 1, Shade(finish.keyTop, 0.30), Shade(finish.keyBase, -0.35));
    PaintKnurls(cairo, x, y, radius - 1, Shade(finish.keyBase, -0.6));
    ShadedDisc(cairo, x, y, radius * 0.66, Shade(finish.keyTop, 0.16), finish.keyBase);
    SetColour(cairo, 0xFFFFFF, 0.25);
    cairo_set_line_width(cairo, 1);
    cairo_arc(cairo, x, y, radius * 0.66 - 0.5, kPi, 1.6 * kPi);
    cairo_stroke(cairo);
    SetColour(cairo, 0xF2F2EC);
    const double arrow = std::max(2.4, radius * 0.12);
    PaintArrow(cairo, x - radius * 0.80, y, arrow, -90);
    PaintArrow(cairo, x + radius * 0.80, y, arrow, 90);
}

void PaintThumbwheel(cairo_t* cairo, const PixelBox& box, const Finish& finish) {
    SetColour(cairo, 0x060606);
    RoundedBox(cairo, box.x, box.y, box.width, box.height, 4);
    cairo_fill(cairo);
    const Gradient wheel(box.x, box.y, box.x, box.y + box.height);
    wheel.Stop(0, Shade(finish.keyBase, -0.5));
    wheel.Stop(0.5, Shade(finish.keyTop, 0.30));
    wheel.Stop(1, Shade(finish.keyBase, -0.5));
    cairo_set_source(cairo, wheel.pattern);
    RoundedBox(cairo, box.x + 1.5, box.y + 1.5, box.width - 3, box.height - 3, 3);
    cairo_fill(cairo);
    SetColour(cairo, 0x000000, 0.45);
    const int middle = box.y + box.height / 2;
    for (int y = box.y + 11; y < box.y + box.height - 11; y += 3) {
        if (std::abs(y - middle) > 7) {
            cairo_rectangle(cairo, box.x + 2, y, box.width - 4, 1);
        }
    }
    cairo_fill(cairo);
    SetColour(cairo, 0xF2F2EC);
    PaintArrow(cairo, box.x + box.width / 2.0, box.y + 6.5, 3, 0);
    PaintArrow(cairo, box.x + box.width / 2.0, box.y + box.height - 6.5, 3, 180);
}

void PaintSelector(cairo_t* cairo, const PixelBox& box, double degrees) {
    const double radius =
        PaintSelectorBody(cairo, box, {0x55585B, 0x131415, 0.80, 0x44474A, 0x1C1D1F}, degrees);
    SetColour(cairo, 0x5E6265);
    RoundedBox(cairo, -radius * 0.22, -radius * 0.94, radius * 0.44, radius * 1.76, 3);
    cairo_fill(cairo);
    SetColour(cairo, 0x202224, 0.8);
    cairo_set_line_width(cairo, 1);
    RoundedBox(cairo, -radius * 0.22, -radius * 0.94, radius * 0.44, radius * 1.76, 3);
    cairo_stroke(cairo);
    SetColour(cairo, 0xF6F6F0);
    cairo_rectangle(cairo, -1, -radius * 0.92, 2, radius * 0.62);
    cairo_fill(cairo);
    cairo_restore(cairo);
}

void PaintRingSelector(cairo_t* cairo, const PixelBox& box, double degrees) {
    const double radius =
        PaintSelectorBody(cairo, box, {0x6A6E71, 0x1B1C1E, 0.50, 0x202224, 0x0C0D0E}, degrees);
    SetColour(cairo, 0xF6F6F0);
    cairo_rectangle(cairo, -1.25, -radius * 0.96, 2.5, radius * 0.42);
    cairo_fill(cairo);
    cairo_restore(cairo);
}

void PaintLamp(cairo_t* cairo, const PixelBox& box, Rgb colour, bool lit) {
    const double radius = std::min(box.width, box.height) > 12 ? 3 : 2;
    SetColour(cairo, 0x101112);
    RoundedBox(cairo, box.x, box.y, box.width, box.height, radius);
    cairo_fill(cairo);
    const Gradient face(box.x, box.y, box.x, box.y + box.height);
    face.Stop(0, lit ? Shade(colour, 0.55) : Shade(colour, -0.70));
    face.Stop(0.5, lit ? Shade(colour, 0.10) : Shade(colour, -0.80));
    face.Stop(1, lit ? Shade(colour, -0.15) : Shade(colour, -0.86));
    cairo_set_source(cairo, face.pattern);
    RoundedBox(cairo, box.x + 1, box.y + 1, box.width - 2, box.height - 2, radius - 1);
    cairo_fill(cairo);
}

}  // namespace avq1
