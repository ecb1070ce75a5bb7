// resources/painter/bezels.h - what each bitmap of the module looks like.
//
// A picture is made from its plan (keys, screen, icons) and from the rows of three tables: the
// finish of each background, the texts engraved on it, and the kind of each icon. A background
// without a row gets the standard finish. Icons are transparent where nothing is painted.
#pragma once

#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "resources/painter/inventory.h"
#include "resources/painter/labels.h"
#include "resources/painter/painting.h"

namespace avq1 {

// A text engraved on a background, outside its keys.
struct Legend {
    std::int32_t background;
    const char* text;
    PixelBox room;
    double largestPx;
};
std::span<const Legend> Legends();

enum class IconKind : std::uint8_t {
    Lamp,           // a small lamp on a key
    LitKey,         // the whole key cap, lit
    LitFrame,       // a lit frame around a key
    Sign,           // a lit sign with its text stacked
    ModeSelector,   // a rotary knob pointing at one of the mode positions
    RangeSelector,  // a rotary knob around a button, pointing at a range position
};
struct IconArt {
    std::int32_t number;
    IconKind kind;
    Rgb colour;
    const char* text;  // of a sign; of a selector the label of its position
};
std::span<const IconArt> IconArts();
const IconArt* FindIconArt(std::int32_t number);

bool HasBezelArt(std::int32_t background);

// Where each key's label stands on its background, in the order of the plan's keys; no lines for
// keys that show a symbol or nothing. Keys of one size share one font.
std::vector<LabelLayout> KeyLabels(cairo_t* cairo, const BitmapPlan& background);

std::unique_ptr<Painting> PaintBitmap(std::span<const BitmapPlan> plans, const BitmapPlan& plan);

}  // namespace avq1
