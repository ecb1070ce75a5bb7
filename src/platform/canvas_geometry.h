// platform/canvas_geometry.h - what the canvas backends work out alike before they draw: which part
// of a line can show, where a level line lies on whole pixels, the shape of an arrow head.
//
// Device pixels, x to the right, y down, pixel centres at halves.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "platform/canvas.h"

namespace avq1 {

inline constexpr int kStatusOk = 0;
inline constexpr int kStatusBadArgument = -1;
inline constexpr double kFarOutsidePx = 4096.0;  // beyond the picture's edges
inline constexpr double kCoordinateLimitPx = 4.0e6;
inline constexpr std::size_t kCanvasTextLimit = 256;
inline constexpr std::size_t kDashLimit = 8;
inline constexpr double kDegreesToRadians = 3.141592653589793 / 180.0;

template <class... Values>
bool Finite(Values... values) {
    return (std::isfinite(values) && ...);
}

struct Segment {
    CanvasPoint from;
    CanvasPoint to;
};

// Whether a point is in the picture or close enough to it to be drawn as it is.
bool NearPicture(const CanvasSize& picture, const CanvasPoint& device);

// Cuts a segment to the picture's surroundings; false when nothing is left.
bool CutToSurroundings(const CanvasSize& picture, Segment& segment);

// The nearest row or column a level or upright stroke fills without blur.
double SnapStroke(double device, double widthPx);
void SnapLevelAndUpright(double deviceWidthPx, Segment& segment);

// The corners of the filled arrow head at the end of a line, which is shortened to the head's base;
// false for a line without length.
bool CutArrowHead(double penWidthPx, Segment& segment, std::array<CanvasPoint, 3>& head);

// Whether a pen's dashes can be drawn.
bool UsablePen(const CanvasPen& pen);

// Writes the Latin-1 text as UTF-8 with a closing zero; what does not fit is left out. Control
// characters become blanks. Returns the number of bytes written before the zero.
std::size_t Latin1ToUtf8(std::string_view text, char* buffer, std::size_t bufferSize);

}  // namespace avq1
