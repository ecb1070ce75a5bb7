// platform/cairo/strokes.h - lines of a pen, and arcs, as outlines for a coverage.
//
// Lines end square at their points, corners are pointed. All in the coordinates the transform
// starts from; a pen keeps its shape there.
#pragma once

#include <span>
#include <vector>

#include "platform/cairo/coverage.h"
#include "platform/cairo/transform.h"

namespace avq1::cairo {

// Adds the points of the arc of the ellipse in a box, in degrees clockwise from +x, close enough
// together to look round; of a whole ellipse not the first one again.
void AppendArc(const Transform& transform, const CanvasPoint& topLeft, const CanvasSize& size,
               double startDeg, double sweepDeg, std::vector<CanvasPoint>& points);

// How far a pen's corners may reach from its line, in device pixels.
double StrokeReachPx(const Transform& transform, const CanvasPen& pen);

// Adds a line through points to what a coverage fills. A dashed line must not be endless.
void AddStroke(Coverage& coverage, const Transform& transform, const CanvasPen& pen,
               std::span<const CanvasPoint> points, bool closed);

}  // namespace avq1::cairo
