#include "resources/painter/labels.h"

#include <algorithm>
#include <cmath>

namespace avq1 {
namespace {

constexpr const char* kWideFamily = "Liberation Sans";
constexpr const char* kNarrowFamily = "Liberation Sans Narrow";
constexpr double kSmallestWidePx = 10;
constexpr double kSmallestPx = 6;
constexpr double kStepPx = 0.5;
constexpr double kLinePitch = 1.0;  // of the font size
constexpr int kMarginPx = 3;        // between a cap's edge and its label, at least

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

void UseFont(cairo_t* cairo, const LabelFont& font) {
    cairo_select_font_face(cairo, font.family, CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_BOLD);
    cairo_set_font_size(cairo, font.sizePx);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_SLIGHT);
    cairo_set_font_options(cairo, options);
    cairo_font_options_destroy(options);
}

// The label with its blanks turned into line breaks.
std::string BrokenAtBlanks(std::string_view label) {
    std::string broken{label};
    std::replace(broken.begin(), broken.end(), ' ', '\n');
    return broken;
}

}  // namespace

LabelLayout LayOutLabelAt(cairo_t* cairo, std::string_view label, const PixelBox& room,
                          const LabelFont& font) {
    LabelLayout layout;
    layout.font = font;
    UseFont(cairo, font);
    cairo_text_extents_t capital;
    cairo_text_extents(cairo, "H", &capital);
    const std::vector<std::string> texts = SplitLines(label);
    const double pitch = std::round(font.sizePx * kLinePitch);
    const double blockHeight = capital.height + pitch * static_cast<double>(texts.size() - 1);
    double baseline = std::round(room.y + (room.height + blockHeight) / 2) -
                      pitch * static_cast<double>(texts.size() - 1);
    layout.fits = true;
    for (const std::string& text : texts) {
        cairo_text_extents_t ink;
        cairo_text_extents(cairo, text.c_str(), &ink);
        const double centred = std::floor(room.x + (room.width - ink.width) / 2 - ink.x_bearing);
        const double x = std::max(centred, room.x - ink.x_bearing);
        layout.lines.push_back({text, x, baseline});
        layout.fits = layout.fits && x + ink.x_bearing + ink.width <= room.x + room.width &&
                      baseline + ink.y_bearing >= room.y &&
                      baseline + ink.y_bearing + ink.height <= room.y + room.height;
        baseline += pitch;
    }
    return layout;
}

LabelLayout LayOutLabel(cairo_t* cairo, std::string_view label, const PixelBox& room,
                        double largestPx) {
    LabelLayout layout;
    for (double sizePx = largestPx; sizePx >= kSmallestWidePx; sizePx -= kStepPx) {
        layout = LayOutLabelAt(cairo, label, room, {kWideFamily, sizePx});
        if (layout.fits) {
            return layout;
        }
    }
    const std::string broken = BrokenAtBlanks(label);
    for (double sizePx = std::min(largestPx, kSmallestWidePx + 2); sizePx >= kSmallestPx;
         sizePx -= kStepPx) {
        for (const std::string_view text : {label, std::string_view{broken}}) {
            layout = LayOutLabelAt(cairo, text, room, {kNarrowFamily, sizePx});
            if (layout.fits) {
                return layout;
            }
        }
    }
    return layout;
}

void DrawLabel(cairo_t* cairo, const LabelLayout& layout, Rgb colour) {
    if (layout.lines.empty()) {
        return;
    }
    UseFont(cairo, layout.font);
    SetColour(cairo, colour);
    for (const LabelLine& line : layout.lines) {
        cairo_move_to(cairo, line.x, line.baseline);
        cairo_show_text(cairo, line.text.c_str());
    }
}

PixelBox LabelRoom(const PixelBox& key, const std::vector<PixelBox>& lamps) {
    const int side = std::max(kMarginPx, key.width / 10 + 1);
    PixelBox room{key.x + side, key.y + kMarginPx, key.width - 2 * side,
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
