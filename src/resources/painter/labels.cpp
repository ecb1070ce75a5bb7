#include "resources/painter/labels.h"

#include <algorithm>
#include <cmath>

namespace avq1 {
namespace {

constexpr const char* kWideFamily = "Liberation Sans";
constexpr const char* kNarrowFamily = "Liberation Sans Narrow";
constexpr double kSmallestWidePx = 9;
constexpr double kSmallestPx = 6;
constexpr double kStepPx = 0.5;
constexpr double kLinePitch = 1.0;  // of the font size
constexpr int kMarginPx = 3;        // between a cap's edge and its label

std::vector<std::string> SplitLines(std::string_view label) {
    std::vector<std::string> lines;
    while (true) {
        const std::size_t end = label.find('\n');
        lines.emplace_back(label.substr(0, end));
        if (end == std::string_view::npos) {
            return lines;
        }
        label.remove_prefix(end + 1);
    }
}

void UseFont(cairo_t* cairo, const char* family, double sizePx) {
    cairo_select_font_face(cairo, family, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cairo, sizePx);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
    cairo_set_font_options(cairo, options);
    cairo_font_options_destroy(options);
}

// Lays the lines out at one size; false when they do not fit the room.
bool TryLayout(cairo_t* cairo, const std::vector<std::string>& texts, const PixelBox& room,
               LabelLayout& layout) {
    UseFont(cairo, layout.family, layout.sizePx);
    layout.lines.clear();
    const double pitch = std::round(layout.sizePx * kLinePitch);
    double top = 0;
    double bottom = 0;
    double widest = 0;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        cairo_text_extents_t ink;
        cairo_text_extents(cairo, texts[i].c_str(), &ink);
        const double baseline = pitch * static_cast<double>(i);
        top = i == 0 ? baseline + ink.y_bearing : std::min(top, baseline + ink.y_bearing);
        bottom = std::max(bottom, baseline + ink.y_bearing + ink.height);
        widest = std::max(widest, ink.width);
        const double x = room.x + (room.width - ink.width) / 2 - ink.x_bearing;
        layout.lines.push_back({texts[i], std::floor(x), baseline});
    }
    const double shift = std::floor(room.y + (room.height - (bottom - top)) / 2 - top);
    for (LabelLine& line : layout.lines) {
        line.baseline += shift;
    }
    // One pixel is left for rounding and anti-aliasing.
    return widest + 1 <= room.width && bottom - top + 1 <= room.height;
}

}  // namespace

LabelLayout LayOutLabel(cairo_t* cairo, std::string_view label, const PixelBox& room,
                        double largestPx) {
    const std::vector<std::string> texts = SplitLines(label);
    LabelLayout layout;
    layout.family = kWideFamily;
    for (layout.sizePx = largestPx; layout.sizePx >= kSmallestWidePx; layout.sizePx -= kStepPx) {
        if (TryLayout(cairo, texts, room, layout)) {
            return layout;
        }
    }
    layout.family = kNarrowFamily;
    for (layout.sizePx = std::min(largestPx, kSmallestWidePx + 2); layout.sizePx > kSmallestPx;
         layout.sizePx -= kStepPx) {
        if (TryLayout(cairo, texts, room, layout)) {
            return layout;
        }
    }
    layout.sizePx = kSmallestPx;
    layout.fits = TryLayout(cairo, texts, room, layout);
    return layout;
}

void DrawLabel(cairo_t* cairo, const LabelLayout& layout, Rgb colour) {
    UseFont(cairo, layout.family, layout.sizePx);
    SetColour(cairo, colour);
    for (const LabelLine& line : layout.lines) {
        cairo_move_to(cairo, line.x, line.baseline);
        cairo_show_text(cairo, line.text.c_str());
    }
}

PixelBox LabelRoom(const PixelBox& key, const std::vector<PixelBox>& lamps) {
    PixelBox room{key.x + kMarginPx, key.y + kMarginPx, key.width - 2 * kMarginPx,
                  key.height - 2 * kMarginPx};
    for (const PixelBox& lamp : lamps) {
        const int right = room.x + room.width;
        const int bottom = room.y + room.height;
        if (lamp.x >= right || lamp.x + lamp.width <= room.x || lamp.y >= bottom ||
            lamp.y + lamp.height <= room.y) {
            continue;
        }
        // The largest of the four strips the lamp leaves free.
        const PixelBox strips[] = {
            {lamp.x + lamp.width + 1, room.y, right - lamp.x - lamp.width - 1, room.height},
            {room.x, room.y, lamp.x - 1 - room.x, room.height},
            {room.x, lamp.y + lamp.height + 1, room.width, bottom - lamp.y - lamp.height - 1},
            {room.x, room.y, room.width, lamp.y - 1 - room.y},
        };
        room = *std::max_element(std::begin(strips), std::end(strips),
                                 [](const PixelBox& a, const PixelBox& b) {
                                     return std::max(0, a.width) * std::max(0, a.height) <
                                            std::max(0, b.width) * std::max(0, b.height);
                                 });
    }
    return room;
}

double LargestLabelPx(const PixelBox& room, std::string_view label) {
    const auto lines = 1 + std::count(label.begin(), label.end(), '\n');
    const double perLine = lines == 1 ? room.height * 0.72 : room.height * 0.92 / lines;
    return std::clamp(std::floor(perLine), kSmallestPx, 16.0);
}

}  // namespace avq1
