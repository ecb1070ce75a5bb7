#include "cdu/screen.h"

#include <algorithm>
#include <cmath>

namespace avq1 {
namespace {

constexpr double kFixedCharacterWidth = 0.6;  // of the font's size

ScreenPoint At(int x, int y) {
    return {static_cast<std::int16_t>(x), static_cast<std::int16_t>(y)};
}

}  // namespace

int FixedWidthOf(const UnitText& text, const CanvasFont& font) {
    const auto characters = static_cast<double>(text.view().find_last_not_of(' ') + 1);
    return static_cast<int>(characters * kFixedCharacterWidth * font.sizePx);
}

ScreenItem* Screen::Add(ScreenItem::Kind kind, std::uint8_t style, ScreenPoint at,
                        ScreenPoint size) {
    if (count_ == items_.size()) {
        return nullptr;
    }
    ScreenItem& item = items_[count_++];
    item.kind = kind;
    item.style = style;
    item.at = at;
    item.size = size;
    item.text.Set({});
    return &item;
}

void Screen::PutText(std::uint8_t style, ScreenPoint at, const UnitText& text) {
    if (!text.empty()) {
        if (ScreenItem* item = Add(ScreenItem::Kind::Text, style, at, {})) {
            item->text = text;
        }
    }
}

void Screen::Put(std::uint8_t style, int x, int y, const char* format, ...) {
    UnitText text;
    va_list arguments;
    va_start(arguments, format);
    text.PutList(format, arguments);
    va_end(arguments);
    PutText(style, At(x, y), text);
}

void Screen::Fill(std::uint8_t style, int x, int y, int width, int height) {
    Add(ScreenItem::Kind::Fill, style, At(x, y), At(width, height));
}

void Screen::Frame(std::uint8_t style, int x, int y, int width, int height) {
    Add(ScreenItem::Kind::Frame, style, At(x, y), At(width, height));
}

void Screen::KeepLeftOf(int rightEdge, std::span<const ScreenStyle> styles) {
    for (ScreenItem& item : std::span(items_).first(count_)) {
        const int width = item.kind == ScreenItem::Kind::Text
                              ? FixedWidthOf(item.text, styles[item.style].font)
                              : item.size.x;
        item.at.x = static_cast<std::int16_t>(std::min<int>(item.at.x, rightEdge - width));
    }
}

bool operator==(const Screen& a, const Screen& b) {
    return std::ranges::equal(a.items(), b.items());
}

namespace {

void PaintText(const ScreenItem& item, const ScreenStyle& style, Surface& surface) {
    CanvasFont font = style.font;
    if (style.mostWidthUnits > 0) {
        const double width = surface.canvas().MeasureText(item.text.view(), font).width;
        const double fitting = font.sizePx * style.mostWidthUnits / std::max(width, 1.0);
        font.sizePx = std::min(font.sizePx, std::floor(2 * fitting) / 2);  // of few sizes
    }
    if (style.endsThere) {
        surface.TextRight(item.text.view(), font, style.argb, item.at.x, item.at.y);
    } else {
        surface.Text(item.text.view(), font, style.argb, item.at.x, item.at.y);
    }
}

}  // namespace

void PaintScreen(const Screen& screen, std::span<const ScreenStyle> styles, Surface& surface) {
    for (const ScreenItem& item : screen.items()) {
        const ScreenStyle& style = styles[item.style];
        switch (item.kind) {
            case ScreenItem::Kind::Text:
                PaintText(item, style, surface);
                break;
            case ScreenItem::Kind::Fill:
                surface.canvas().FillRectangle(style.argb, item.at.x, item.at.y, item.size.x,
                                               item.size.y);
                break;
            case ScreenItem::Kind::Frame:
                surface.canvas().DrawRectangle({style.argb}, item.at.x, item.at.y, item.size.x,
                                               item.size.y);
                break;
        }
    }
}

}  // namespace avq1
