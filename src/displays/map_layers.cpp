#include "displays/map_layers.h"

#include <cmath>

namespace avq1 {
namespace {

constexpr CanvasFont kIdentFont{"Arial", 9};
constexpr double kSymbolMarginPx = 8;

double FromCentre(const MapFrame& frame, double x, double y) {
    return std::hypot(x - frame.circleCentre.x, y - frame.circleCentre.y);
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
    const double right = symbol.x + halfWidth + 1;
    const double left = symbol.x - halfWidth - 1 - size.width;
    const CanvasPoint places[] = {
        {right, symbol.y - size.height},
        {right, symbol.y},
        {left, symbol.y - size.height},
        {left, symbol.y},
        {symbol.x - size.width / 2, symbol.y + halfWidth + 1},
        {symbol.x - size.width / 2, symbol.y - halfWidth - 1 - size.height}};
    for (const CanvasPoint& place : places) {
        const TextBox box{place.x, place.y, size.width, size.height};
        if (InsideMap(frame, box) && frame.texts.Claim(box)) {
            frame.surface.Text(ident, kIdentFont, argb, place.x, place.y);
            return;
        }
    }
}

}  // namespace avq1
