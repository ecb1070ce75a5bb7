#include "platform/canvas_geometry.h"

#include <algorithm>

namespace avq1 {
namespace {

// Narrows [first, last], the part of a segment that is kept, by one edge: delta * t <= room.
bool CutAtEdge(double delta, double room, double& first, double& last) {
    if (delta == 0) {
        return room >= 0;
    }
    const double t = room / delta;
    if (delta < 0) {
        first = std::max(first, t);
    } else {
        last = std::min(last, t);
    }
    return first <= last;
}

}  // namespace

bool NearPicture(const CanvasSize& picture, const CanvasPoint& device) {
    return device.x >= -kFarOutsidePx && device.x <= picture.width + kFarOutsidePx &&
           device.y >= -kFarOutsidePx && device.y <= picture.height + kFarOutsidePx;
}

bool CutToSurroundings(const CanvasSize& picture, Segment& segment) {
    if (NearPicture(picture, segment.from) && NearPicture(picture, segment.to)) {
        return true;
    }
    const CanvasPoint from = segment.from;
    const double dx = segment.to.x - from.x;
    const double dy = segment.to.y - from.y;
    double first = 0;
    double last = 1;
    if (!Finite(dx, dy) || !CutAtEdge(-dx, from.x + kFarOutsidePx, first, last) ||
        !CutAtEdge(dx, picture.width + kFarOutsidePx - from.x, first, last) ||
        !CutAtEdge(-dy, from.y + kFarOutsidePx, first, last) ||
        !CutAtEdge(dy, picture.height + kFarOutsidePx - from.y, first, last)) {
        return false;
    }
    segment.from = {from.x + dx * first, from.y + dy * first};
    segment.to = {from.x + dx * last, from.y + dy * last};
    return true;
}

double SnapStroke(double device, double widthPx) {
    const bool odd = static_cast<long>(std::lround(widthPx)) % 2 != 0 || widthPx < 1;
    return odd ? std::floor(device) + 0.5 : std::round(device);
}

void SnapLevelAndUpright(double deviceWidthPx, Segment& segment) {
    if (segment.from.x == segment.to.x) {
        segment.from.x = segment.to.x = SnapStroke(segment.from.x, deviceWidthPx);
    } else if (segment.from.y == segment.to.y) {
        segment.from.y = segment.to.y = SnapStroke(segment.from.y, deviceWidthPx);
    }
}

bool CutArrowHead(double penWidthPx, Segment& segment, std::array<CanvasPoint, 3>& head) {
    const double dx = segment.to.x - segment.from.x;
    const double dy = segment.to.y - segment.from.y;
    const double length = std::hypot(dx, dy);
    if (length <= 0) {
        return false;
    }
    const double headPx = std::min(4.0 + 3.0 * penWidthPx, length);
    const double halfPx = headPx * 0.45;
    const CanvasPoint base{segment.to.x - dx / length * headPx,
                           segment.to.y - dy / length * headPx};
    head = {{{segment.to.x, segment.to.y},
             {base.x - dy / length * halfPx, base.y + dx / length * halfPx},
             {base.x + dy / length * halfPx, base.y - dx / length * halfPx}}};
    segment.to = base;
    return true;
}

bool UsablePen(const CanvasPen& pen) {
    double dashSum = 0;
    bool usable = std::isfinite(pen.widthPx) && pen.dashPx.size() <= kDashLimit;
    for (const double dash : pen.dashPx) {
        usable = usable && std::isfinite(dash) && dash >= 0;
        dashSum += dash;
    }
    return usable && (pen.dashPx.empty() || dashSum > 0);
}

std::size_t Latin1ToUtf8(std::string_view text, char* buffer, std::size_t bufferSize) {
    std::size_t used = 0;
    for (const char each : text) {
        const auto code = static_cast<unsigned char>(each);
        if (used + (code < 0x80 ? 1 : 2) >= bufferSize) {
            break;
        }
        const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
        if (control) {
            buffer[used++] = ' ';
        } else if (code < 0x80) {
            buffer[used++] = each;
        } else {
            buffer[used++] = static_cast<char>(0xC0 | (code >> 6));
            buffer[used++] = static_cast<char>(0x80 | (code & 0x3F));
        }
    }
    buffer[used] = '\0';
    return used;
}

}  // namespace avq1
