// resources/painter/labels.h - key and legend texts: the largest font that fits, measured.
//
// A layout holds the lines of one label with their baseline starts, in pixels of the picture. What
// is laid out in a box stays inside it; a label that does not fit even at the smallest size is
// laid out at that size and says so in `fits`.
#pragma once

#include <cairo.h>

#include <string>
#include <string_view>
#include <vector>

#include "resources/painter/painting.h"

namespace avq1 {

struct LabelLine {
    std::string text;
    double x = 0;
    double baseline = 0;
};

struct LabelFont {
    const char* family = "";
    double sizePx = 0;
};

struct LabelLayout {
    LabelFont font;
    std::vector<LabelLine> lines;
    bool fits = true;
};

// Lays out `label` ('\n' breaks lines), centred in `room`, in the largest font that fits, at most
// `largestPx`. Where only a small narrow font fits, blanks break lines too.
LabelLayout LayOutLabel(cairo_t* cairo, std::string_view label, const PixelBox& room,
                        double largestPx);
LabelLayout LayOutLabelAt(cairo_t* cairo, std::string_view label, const PixelBox& room,
                          const LabelFont& font);
void DrawLabel(cairo_t* cairo, const LabelLayout& layout, Rgb colour);

// The part of a key's box its label may use: inside the cap, beside the lamps that cover it.
PixelBox LabelRoom(const PixelBox& key, const std::vector<PixelBox>& lamps);
// The size a key of this box starts from.
double LargestLabelPx(const PixelBox& room, std::string_view label);

}  // namespace avq1
