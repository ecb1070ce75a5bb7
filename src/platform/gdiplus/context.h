// platform/gdiplus/context.h - what a canvas needs of the library for one draw event.
//
// A context is made on a device context for one draw and let go at its end; only the small records
// that hold them are kept. Panel thread only.
#pragma once

#include <windows.h>
// After windows.h, which it needs.
#include <gdiplus.h>

#include <vector>

#include "platform/canvas.h"

namespace avq1::gdiplus {

inline constexpr int kNothingHidden = -1;

// x' = xx * x + xy * y + x0, y' = yx * x + yy * y + y0
struct Transform {
    double xx = 1;
    double yx = 0;
    double xy = 0;
    double yy = 1;
    double x0 = 0;
    double y0 = 0;

    double Determinant() const { return xx * yy - xy * yx; }
};

struct SavedState {
    Gdiplus::GraphicsState state = 0;
    Transform transform;
};

struct Context {
    Gdiplus::GpGraphics* graphics = nullptr;
    Gdiplus::GpSolidFill* brush = nullptr;
    Gdiplus::GpPen* pen = nullptr;
    Gdiplus::GpPath* path = nullptr;
    Gdiplus::GpPath* clip = nullptr;
    CanvasSize picture;
    Transform transform;
    std::vector<SavedState> saved;
    // The save depth at which an impossible transform was asked for: what is drawn under it is
    // hidden until that state is restored or the transform reset.
    int hiddenAtDepth = kNothingHidden;
    bool inUse = false;
};

// Null when the library is not running or the device context cannot be used.
Context* AcquireContext(void* deviceContext, int widthPx, int heightPx);
void ReleaseContext(Context* context);

// Hands the context's transform on to the library.
void ApplyTransform(Context& context);

CanvasPoint ToDevice(const Context& context, const CanvasPoint& point);
CanvasPoint ToUser(const Context& context, const CanvasPoint& point);
double DeviceScale(const Context& context);

}  // namespace avq1::gdiplus
