#include "displays/map/map_layers.h"

#include <algorithm>
#include <cmath>

namespace avq1 {
namespace {

constexpr double kSymbolMarginPx = 8;

bool WithinOfCentre(const MapFrame& frame, double radius, double x, double y) {
    const double dx = x - frame.circleCentre.x;
    const double dy = y - frame.circleCentre.y;
    return dx * dx + dy * dy <= radius * radius;
}

}  // namespace

void ClipToMap(const MapFrame& frame) {
    Canvas& canvas = frame.surface.canvas();
    const double radius = frame.circleRadius;
    canvas.ClipEllipse(frame.circleCentre.x - radius, frame.circleCentre.y - radius, 2 * radius,
                       2 * radius);
    canvas.EndClip();
    canvas.ClipRectangle(frame.window.x, frame.window.y, frame.window.width, frame.window.height);
    canvas.EndClip();
}

bool InsideCircle(const MapFrame& frame, double radius, const TextBox& box) {
    for (const double x : {box.x, box.x + box.width}) {
        for (const double y : {box.y, box.y + box.height}) {
            if (!WithinOfCentre(frame, radius, x, y)) {
                return false;
            }
        }
    }
    return true;
}

bool InsideMap(const MapFrame& frame, const TextBox& box) {
    const TextBox& window = frame.window;
    return InsideCircle(frame, frame.circleRadius, box) && box.x >= window.x &&
           box.x + box.width <= window.x + window.width && box.y >= window.y &&
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
    return WithinOfCentre(frame, frame.circleRadius + kSymbolMarginPx, point.x, point.y) &&
           point.x >= window.x - kSymbolMarginPx &&
           point.x <= window.x + window.width + kSymbolMarginPx &&
           point.y >= window.y - kSymbolMarginPx &&
           point.y <= window.y + window.height + kSymbolMarginPx;
}

}  // namespace avq1
