// cdu/screen.h - what a unit shows, as plain items before any drawing.
//
// A page composes a screen each draw event; two screens are compared to tell whether anything
// shown changed, so a value counts as changed when its text does. Fixed size, no allocation.
// Positions and sizes are the unit's design units, from the screen's top-left corner; a text's
// position is its top-left corner, in a style that ends texts there its top-right one. Items are
// painted in the order in which they were put.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "cdu/unit_text.h"
#include "drawing/surface.h"

namespace avq1 {

struct ScreenPoint {
    std::int16_t x = 0;
    std::int16_t y = 0;

    friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

// How a unit writes and paints, by the style's number, which is the unit's own enumeration.
struct ScreenStyle {
    CanvasFont font;
    std::uint32_t argb = 0;
    bool endsThere = false;     // texts end at their position
    double mostWidthUnits = 0;  // a wider text is written smaller; 0 = as wide as it comes
};

struct ScreenItem {
    enum class Kind : std::uint8_t { Text, Fill, Frame };

    Kind kind = Kind::Text;
    std::uint8_t style = 0;
    ScreenPoint at = {};
    ScreenPoint size;  // of a fill or a frame
    UnitText text;

    friend bool operator==(const ScreenItem&, const ScreenItem&) = default;
};

// Where a text in a font of one width ends, from its beginning; blanks behind it do not count.
int FixedWidthOf(const UnitText& text, const CanvasFont& font);

class Screen {
  public:
    void Clear() { count_ = 0; }
    std::span<const ScreenItem> items() const { return {items_.data(), count_}; }

    // Adds a text; one beyond the capacity is dropped, one too long is cut, an empty one is put
    // nowhere. `style` is one of the unit's own enumeration.
    [[gnu::format(printf, 5, 6)]] void Put(std::uint8_t style, int x, int y, const char* format,
                                           ...);
    void PutText(std::uint8_t style, ScreenPoint at, const UnitText& text);

    // A filled rectangle, or its outline one unit wide.
    void Fill(std::uint8_t style, int x, int y, int width, int height);
    void Frame(std::uint8_t style, int x, int y, int width, int height);

    // Moves what was put so far to the left where it would end beyond `rightEdge`; its texts are in
    // fonts of one width, as `styles` has them.
    void KeepLeftOf(int rightEdge, std::span<const ScreenStyle> styles);

    friend bool operator==(const Screen& a, const Screen& b);

  private:
    ScreenItem* Add(ScreenItem::Kind kind, std::uint8_t style, ScreenPoint at, ScreenPoint size);

    std::array<ScreenItem, 72> items_;
    std::size_t count_ = 0;
};

void PaintScreen(const Screen& screen, std::span<const ScreenStyle> styles, Surface& surface);

}  // namespace avq1
