// platform/cairo/transform.h - from a drawing's own coordinates to device pixels.
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/canvas.h"

namespace avq1::cairo {

// x' = xx * x + xy * y + x0, y' = yx * x + yy * y + y0
struct Transform {
    double xx = 1;
    double yx = 0;
    double xy = 0;
    double yy = 1;
    double x0 = 0;
    double y0 = 0;

    double Determinant() const { return xx * yy - xy * yx; }
    // Pixels of one unit, the mean of both directions.
    double Scale() const { return std::sqrt(std::abs(Determinant())); }
    double LargestScale() const {
        return std::sqrt(std::max(xx * xx + yx * yx, xy * xy + yy * yy));
    }
    bool KeepsLevel() const { return xy == 0 && yx == 0; }

    // This one after `first`.
    Transform After(const Transform& first) const {
        return {xx * first.xx + xy * first.yx,      yx * first.xx + yy * first.yx,
                xx * first.xy + xy * first.yy,      yx * first.xy + yy * first.yy,
                xx * first.x0 + xy * first.y0 + x0, yx * first.x0 + yy * first.y0 + y0};
    }
    CanvasPoint ToDevice(const CanvasPoint& point) const {
        return {xx * point.x + xy * point.y + x0, yx * point.x + yy * point.y + y0};
    }
    CanvasPoint ToUser(const CanvasPoint& device) const {
        const double x = device.x - x0;
        const double y = device.y - y0;
        return {(yy * x - xy * y) / Determinant(), (xx * y - yx * x) / Determinant()};
    }
};

}  // namespace avq1::cairo
