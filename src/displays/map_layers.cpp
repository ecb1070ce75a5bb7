#include "displays/map_layers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace avq1 {
namespace {

constexpr CanvasFont kIdentFont{"Arial", 9};
constexpr double kSymbolMarginPx = 8;

double FromCentre(const MapFrame& frame, double x, double y) {
    return std::hypot(x - frame.circleCentre.x, y - frame.circleCentre.y);
}

// Right, left, below, above.
std::array<CanvasPoint, 6> PlacesBeside(const CanvasPoint& symbol, double halfWidth,
                                        const CanvasSize& size) {
    const double right = symbol.x + halfWidth + 1;
    const double left = symbol.x - halfWidth - 1 - size.width;
    const double above = symbol.y - size.height;
    const double middle = symbol.x - size.width / 2;
    return {{{right, above},
             {right, symbol.y},
             {left, above},
             {left, symbol.y},
             {middle, symbol.y + halfWidth + 1},
             {middle, above - halfWidth - 1}}};
}

// The first place beside the symbol that is inside and free; it is taken then.
std::optional<CanvasPoint> FreePlace(const MapFrame& frame, const CanvasPoint& symbol,
                                     double halfWidth, const CanvasSize& size) {
    for (const CanvasPoint& place : PlacesBeside(symbol, halfWidth, size)) {
        const TextBox box{place.x, place.y, size.width, size.height};
        if (InsideMap(frame, box) && frame.texts.Claim(box)) {
            return place;
        }
    }
    return std::nullopt;
}

}  // namespace

void ClipToMap(const MapFrame& frame) {
    Canvas& canvas = frame.surface.canvas();
    const double radius = frame.circleRadius;
    canvas.BeginClip();
    canvas.ClipEllipse(frame.circleCentre.x - radius, frame.circleCentre.y - radius, 2 * radius,
                       2 * radius);
    canvas.EndClip();
    canvas.BeginClip();
    canvas.ClipRectangle(frame.window.x, frame.window.y, frame.window.width, frame.window.height);
    canvas.EndClip();
}

bool InsideMap(const MapFrame& frame, const TextBox& box) {
    for (const double x : {box.x, box.x + box.width}) {
        for (const double y : {box.y, box.y + box.height}) {
            if (!(FromCentre(frame, x, y) <= frame.circleRadius)) {
                return false;
            }
        }
    }
    const TextBox& window = frame.window;
    return box.x >= window.x && box.x + box.width <= window.x + window.width && box.y >= window.y &&
           box.y + box.height <= window.y + window.height;
}

bool CutToMap(const MapFrame& frame, CanvasPoint& from, CanvasPoint& to) {
    constexpr double kHalfLinePx = 0.5;
    const CanvasPoint along{to.x - from.x, to.y - from.y};
    double first = 0;  // parts of the line
    double last = 1;
    // the circle: |start + part * along| = radius
    const CanvasPoint start{from.x - frame.circleCentre.x, from.y - frame.circleCentre.y};
    const double radius = frame.circleRadius - kHalfLinePx;
    const double squared = along.x * along.x + along.y * along.y;
    const double towards = start.x * along.x + start.y * along.y;
    const double root =
        towards * towards - squared * (start.x * start.x + start.y * start.y - radius * radius);
    if (!(root >= 0 && squared > 0)) {
        return false;
    }
    first = std::max(first, (-towards - std::sqrt(root)) / squared);
    last = std::min(last, (-towards + std::sqrt(root)) / squared);
    const auto keepWithin = [&](double at, double step, double low, double high) {
        if (step == 0) {
            last = at >= low && at <= high ? last : -1;
            return;
        }
        const double toLow = (low - at) / step;
        const double toHigh = (high - at) / step;
        first = std::max(first, std::min(toLow, toHigh));
        last = std::min(last, std::max(toLow, toHigh));
    };
    const TextBox& window = frame.window;
    keepWithin(from.x, along.x, window.x, window.x + window.width);
    keepWithin(from.y, along.y, window.y, window.y + window.height);
    if (first > last) {
        return false;
    }
    const CanvasPoint origin = from;
    if (first > 0) {
        from = {origin.x + first * along.x, origin.y + first * along.y};
    }
    if (last < 1) {
        to = {origin.x + last * along.x, origin.y + last * along.y};
    }
    return true;
}

bool NearMap(const MapFrame& frame, const CanvasPoint& point) {
    const TextBox& window = frame.window;
    return FromCentre(frame, point.x, point.y) <= frame.circleRadius + kSymbolMarginPx &&
           point.x >= window.x - kSymbolMarginPx &&
           point.x <= window.x + window.width + kSymbolMarginPx &&
           point.y >= window.y - kSymbolMarginPx &&
           point.y <= window.y + window.height + kSymbolMarginPx;
}

void DrawIdentBeside(const MapFrame& frame, const CanvasPoint& symbol, double halfWidth,
                     std::string_view ident, std::uint32_t argb) {
    const CanvasSize size = frame.surface.canvas().MeasureText(ident, kIdentFont);
    if (const auto place = FreePlace(frame, symbol, halfWidth, size)) {
        frame.surface.Text(ident, kIdentFont, argb, place->x, place->y);
    }
}

PlacedText PlaceTextNear(const MapFrame& frame, const CanvasPoint& symbol, double halfWidth,
                         std::string_view text) {
    constexpr double kStepPx = 6;
    constexpr double kFarthestPx = 60;
    const CanvasSize size = frame.surface.canvas().MeasureText(text, kIdentFont);
    for (double away = halfWidth; away <= kFarthestPx; away += kStepPx) {
        if (const auto place = FreePlace(frame, symbol, away, size)) {
            return {*place, text};
        }
    }
    return {PlacesBeside(symbol, halfWidth, size).front(), text};
}

void DrawPlacedText(const MapFrame& frame, const PlacedText& text, std::uint32_t argb) {
    frame.surface.Text(text.text, kIdentFont, argb, text.at.x, text.at.y);
}

}  // namespace avq1
