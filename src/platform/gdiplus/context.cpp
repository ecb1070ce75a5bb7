#include "platform/gdiplus/context.h"

#include <array>
#include <cmath>

namespace avq1::gdiplus {
namespace {

using namespace Gdiplus::DllExports;

// Draw events do not nest; a few more than one cost nothing.
std::array<Context, 4> contexts;

void DeleteObjects(Context& context) {
    if (context.clip != nullptr) {
        GdipDeletePath(context.clip);
    }
    if (context.path != nullptr) {
        GdipDeletePath(context.path);
    }
    if (context.pen != nullptr) {
        GdipDeletePen(context.pen);
    }
    if (context.brush != nullptr) {
        GdipDeleteBrush(context.brush);
    }
    if (context.graphics != nullptr) {
        GdipDeleteGraphics(context.graphics);
    }
    context.clip = context.path = nullptr;
    context.pen = nullptr;
    context.brush = nullptr;
    context.graphics = nullptr;
}

bool MakeObjects(Context& context, HDC deviceContext) {
    return GdipCreateFromHDC(deviceContext, &context.graphics) == Gdiplus::Ok &&
           GdipCreateSolidFill(0xFF000000, &context.brush) == Gdiplus::Ok &&
           GdipCreatePen1(0xFF000000, 1.0F, Gdiplus::UnitWorld, &context.pen) == Gdiplus::Ok &&
           GdipCreatePath(Gdiplus::FillModeWinding, &context.path) == Gdiplus::Ok &&
           GdipCreatePath(Gdiplus::FillModeWinding, &context.clip) == Gdiplus::Ok;
}

}  // namespace

Context* AcquireContext(void* deviceContext, int widthPx, int heightPx) {
    for (Context& context : contexts) {
        if (context.inUse) {
            continue;
        }
        if (!MakeObjects(context, static_cast<HDC>(deviceContext))) {
            DeleteObjects(context);
            return nullptr;
        }
        GdipSetSmoothingMode(context.graphics, Gdiplus::SmoothingModeAntiAlias);
        GdipSetTextRenderingHint(context.graphics, Gdiplus::TextRenderingHintAntiAlias);
        // Pixel centres at halves, so that whole coordinates are pixel edges.
        GdipSetPixelOffsetMode(context.graphics, Gdiplus::PixelOffsetModeHalf);
        context.picture = {static_cast<double>(widthPx), static_cast<double>(heightPx)};
        context.transform = Transform{};
        context.saved.clear();
        context.hiddenAtDepth = kNothingHidden;
        context.inUse = true;
        return &context;
    }
    return nullptr;
}

void ReleaseContext(Context* context) {
    if (context != nullptr) {
        DeleteObjects(*context);
        context->inUse = false;
    }
}

void ApplyTransform(Context& context) {
    const Transform& t = context.transform;
    Gdiplus::GpMatrix* matrix = nullptr;
    const auto real = [](double value) { return static_cast<float>(value); };
    if (GdipCreateMatrix2(real(t.xx), real(t.yx), real(t.xy), real(t.yy), real(t.x0), real(t.y0),
                          &matrix) == Gdiplus::Ok) {
        GdipSetWorldTransform(context.graphics, matrix);
        GdipDeleteMatrix(matrix);
    }
}

CanvasPoint ToDevice(const Context& context, const CanvasPoint& point) {
    const Transform& t = context.transform;
    return {t.xx * point.x + t.xy * point.y + t.x0, t.yx * point.x + t.yy * point.y + t.y0};
}

CanvasPoint ToUser(const Context& context, const CanvasPoint& point) {
    const Transform& t = context.transform;
    const double x = point.x - t.x0;
    const double y = point.y - t.y0;
    const double determinant = t.Determinant();
    return {(t.yy * x - t.xy * y) / determinant, (t.xx * y - t.yx * x) / determinant};
}

double DeviceScale(const Context& context) {
    return std::sqrt(std::abs(context.transform.Determinant()));
}

}  // namespace avq1::gdiplus
