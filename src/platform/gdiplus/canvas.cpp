// The canvas on GDI+. Its arguments are single-precision and a bad one fails the call alone, but
// what is not finite or lies far outside the picture is still kept from it: dashes and joins out
// there cost time. Shapes become one path each, in user coordinates; arcs are made of curves of
// our own, so that angles mean the same on every ellipse as with the other drawing libraries.
#include "platform/canvas.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/canvas_geometry.h"
#include "platform/gdiplus/context.h"
#include "platform/gdiplus/font_cache.h"
#include "platform/services.h"

#undef DrawText  // a macro of the system's headers

namespace avq1 {

using namespace Gdiplus::DllExports;
using gdiplus::Context;

namespace {

constexpr double kSmallestDashPx = 0.01;  // the library refuses dashes of no length

float Real(double value) {
    return static_cast<float>(value);
}

Context* Native(void* native) {
    return static_cast<Context*>(native);
}

bool Hidden(const Context& context) {
    return context.hiddenAtDepth != gdiplus::kNothingHidden;
}

bool FiniteAndSmall(const CanvasPoint& point) {
    return Finite(point.x, point.y) &&
           std::max(std::abs(point.x), std::abs(point.y)) <= kCoordinateLimitPx;
}

// Runs a drawing operation unless it is hidden: it returns the library's status.
template <class Operation>
int Perform(void* native, Operation operation) {
    Context* const context = Native(native);
    if (context == nullptr || Hidden(*context)) {
        return kStatusBadArgument;
    }
    return operation(*context);
}

// Changes the transform by one that is applied before it; an impossible one hides what is drawn
// under it.
int ChangeTransform(void* native, bool possible, const gdiplus::Transform& by) {
    Context* const context = Native(native);
    if (context == nullptr || Hidden(*context)) {
        return kStatusBadArgument;
    }
    const gdiplus::Transform& t = context->transform;
    const gdiplus::Transform changed{
        t.xx * by.xx + t.xy * by.yx,        t.yx * by.xx + t.yy * by.yx,
        t.xx * by.xy + t.xy * by.yy,        t.yx * by.xy + t.yy * by.yy,
        t.xx * by.x0 + t.xy * by.y0 + t.x0, t.yx * by.x0 + t.yy * by.y0 + t.y0};
    const double determinant = changed.Determinant();
    if (possible && Finite(determinant, changed.x0, changed.y0) && std::abs(determinant) > 1e-12 &&
        std::max(std::abs(changed.x0), std::abs(changed.y0)) < kCoordinateLimitPx) {
        context->transform = changed;
        gdiplus::ApplyTransform(*context);
        return kStatusOk;
    }
    context->hiddenAtDepth = static_cast<int>(context->saved.size());
    return kStatusBadArgument;
}

// ---- paths ----
void StartPath(Context& context) {
    GdipResetPath(context.path);
    GdipSetPathFillMode(context.path, Gdiplus::FillModeWinding);
}

void AddSegment(Context& context, const Segment& segment) {
    GdipStartPathFigure(context.path);
    GdipAddPathLine(context.path, Real(segment.from.x), Real(segment.from.y), Real(segment.to.x),
                    Real(segment.to.y));
}

// Adds the arc of the ellipse in a box to `path`; false when there is no such ellipse.
bool AddArc(Gdiplus::GpPath* path, const CanvasPoint& topLeft, const CanvasSize& size,
            double startDeg, double sweepDeg) {
    if (!FiniteAndSmall(topLeft) || !FiniteAndSmall({size.width, size.height}) ||
        !Finite(startDeg, sweepDeg) || size.width == 0 || size.height == 0) {
        return false;
    }
    const double sweep = std::clamp(sweepDeg, -360.0, 360.0);
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / 90.0)));
    const double step = sweep / pieces * kDegreesToRadians;
    const double handle = 4.0 / 3.0 * std::tan(step / 4);
    const double radiusX = std::abs(size.width) / 2;
    const double radiusY = std::abs(size.height) / 2;
    const double centreX = topLeft.x + size.width / 2;
    const double centreY = topLeft.y + size.height / 2;
    double angle = std::fmod(startDeg, 360.0) * kDegreesToRadians;
    for (int i = 0; i < pieces; ++i) {
        const double cosine = std::cos(angle);
        const double sine = std::sin(angle);
        angle += step;
        const double endCosine = std::cos(angle);
        const double endSine = std::sin(angle);
        const auto x = [&](double unit) { return Real(centreX + radiusX * unit); };
        const auto y = [&](double unit) { return Real(centreY + radiusY * unit); };
        GdipAddPathBezier(path, x(cosine), y(sine), x(cosine - handle * sine),
                          y(sine + handle * cosine), x(endCosine + handle * endSine),
                          y(endSine - handle * endCosine), x(endCosine), y(endSine));
    }
    return true;
}

bool SetPen(Context& context, const CanvasPen& pen) {
    if (!UsablePen(pen)) {
        return false;
    }
    const double width = pen.widthPx > 0 ? pen.widthPx : 1.0;
    GdipSetPenColor(context.pen, pen.argb);
    GdipSetPenWidth(context.pen, Real(width));
    if (pen.dashPx.empty()) {
        GdipSetPenDashStyle(context.pen, Gdiplus::DashStyleSolid);
        return true;
    }
    // Counted in pen widths; an odd count repeats with on and off exchanged.
    std::array<float, 2 * kDashLimit> dashes{};
    const std::size_t given = pen.dashPx.size();
    const std::size_t count = given % 2 == 0 ? given : 2 * given;
    for (std::size_t i = 0; i < count; ++i) {
        dashes[i] = Real(std::max(pen.dashPx[i % given], kSmallestDashPx) / width);
    }
    GdipSetPenDashArray(context.pen, dashes.data(), static_cast<INT>(count));
    return true;
}

int Stroke(Context& context) {
    return GdipDrawPath(context.graphics, context.pen, context.path);
}

int Fill(Context& context, std::uint32_t argb) {
    GdipSetSolidFillColor(context.brush, argb);
    return GdipFillPath(context.graphics, context.brush, context.path);
}

// Adds a piece to the clip path, as the transform has it now.
template <class Add>
int AddToClip(void* native, bool connect, Add add) {
    return Perform(native, [&](Context& context) -> int {
        StartPath(context);
        if (!add(context.path)) {
            return kStatusBadArgument;
        }
        const gdiplus::Transform& t = context.transform;
        Gdiplus::GpMatrix* matrix = nullptr;
        const int status = GdipCreateMatrix2(Real(t.xx), Real(t.yx), Real(t.xy), Real(t.yy),
                                             Real(t.x0), Real(t.y0), &matrix);
        if (status != kStatusOk) {
            return status;
        }
        GdipTransformPath(context.path, matrix);
        GdipDeleteMatrix(matrix);
        return GdipAddPathPath(context.clip, context.path, connect ? TRUE : FALSE);
    });
}

}  // namespace

std::uintptr_t StartDrawingLibrary() {
    const Gdiplus::GdiplusStartupInput input(nullptr, FALSE, FALSE);
    ULONG_PTR token = 0;
    return Gdiplus::GdiplusStartup(&token, &input, nullptr) == Gdiplus::Ok ? token : 0;
}

void StopDrawingLibrary(std::uintptr_t token) {
    if (token != 0) {
        gdiplus::DropFonts();
        Gdiplus::GdiplusShutdown(token);
    }
}

Canvas::Canvas(void* deviceContext, int widthPx, int heightPx) : deviceContext_(deviceContext) {
    if (deviceContext != nullptr && widthPx > 0 && heightPx > 0) {
        native_ = gdiplus::AcquireContext(deviceContext, widthPx, heightPx);
    }
    status_ = native_ != nullptr ? kStatusOk : kStatusBadArgument;
}

Canvas::~Canvas() {
    gdiplus::ReleaseContext(Native(native_));
}

void Canvas::SetAntialias(bool on) {
    if (native_ != nullptr) {
        GdipSetSmoothingMode(Native(native_)->graphics,
                             on ? Gdiplus::SmoothingModeAntiAlias : Gdiplus::SmoothingModeNone);
    }
}

void Canvas::Clear(std::uint32_t argb) {
    Context* const context = Native(native_);
    if (context == nullptr) {
        return;
    }
    Gdiplus::GraphicsState state = 0;
    GdipSaveGraphics(context->graphics, &state);
    GdipResetClip(context->graphics);
    status_ = GdipGraphicsClear(context->graphics, argb);
    GdipRestoreGraphics(context->graphics, state);
}

// ---- shapes ----
void Canvas::FillRectangle(std::uint32_t argb, double x, double y, double width, double height) {
    const std::array<CanvasPoint, 4> corners{
        {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}}};
    FillPolygon(argb, corners);
}

void Canvas::DrawRectangle(const CanvasPen& pen, double x, double y, double width, double height) {
    status_ = Perform(native_, [&](Context& context) -> int {
        CanvasPoint from{x, y};
        CanvasPoint to{x + width, y + height};
        Segment diagonal{gdiplus::ToDevice(context, from), gdiplus::ToDevice(context, to)};
        if (!FiniteAndSmall(diagonal.from) || !FiniteAndSmall(diagonal.to) ||
            !CutToSurroundings(context.picture, diagonal) || !SetPen(context, pen)) {
            return kStatusBadArgument;
        }
        if (context.transform.xy == 0 && context.transform.yx == 0) {
            const double widthPx = pen.widthPx * gdiplus::DeviceScale(context);
            const auto snapped = [&](const CanvasPoint& device) {
                return gdiplus::ToUser(
                    context, {SnapStroke(device.x, widthPx), SnapStroke(device.y, widthPx)});
            };
            from = snapped(diagonal.from);
            to = snapped(diagonal.to);
        }
        StartPath(context);
        const std::array<Gdiplus::GpPointF, 4> corners{{{Real(from.x), Real(from.y)},
                                                        {Real(to.x), Real(from.y)},
                                                        {Real(to.x), Real(to.y)},
                                                        {Real(from.x), Real(to.y)}}};
        GdipAddPathPolygon(context.path, corners.data(), 4);
        return Stroke(context);
    });
}

void Canvas::DrawLine(const CanvasPen& pen, double x1, double y1, double x2, double y2) {
    status_ = Perform(native_, [&](Context& context) -> int {
        Segment segment{gdiplus::ToDevice(context, {x1, y1}), gdiplus::ToDevice(context, {x2, y2})};
        if (!Finite(segment.from.x, segment.from.y, segment.to.x, segment.to.y) ||
            !SetPen(context, pen)) {
            return kStatusBadArgument;
        }
        if (!CutToSurroundings(context.picture, segment)) {
            return kStatusOk;
        }
        SnapLevelAndUpright(pen.widthPx * gdiplus::DeviceScale(context), segment);
        segment = {gdiplus::ToUser(context, segment.from), gdiplus::ToUser(context, segment.to)};
        std::array<CanvasPoint, 3> head;
        if (pen.arrowAtEnd && CutArrowHead(pen.widthPx, segment, head)) {
            StartPath(context);
            AddSegment(context, {head[0], head[1]});
            GdipAddPathLine(context.path, Real(head[1].x), Real(head[1].y), Real(head[2].x),
                            Real(head[2].y));
            GdipClosePathFigure(context.path);
            Fill(context, pen.argb);
        }
        StartPath(context);
        AddSegment(context, segment);
        return Stroke(context);
    });
}

void Canvas::DrawPolyline(const CanvasPen& pen, std::span<const CanvasPoint> points, bool closed) {
    status_ = Perform(native_, [&](Context& context) -> int {
        bool allNear = points.size() >= 2;
        for (const CanvasPoint& point : points) {
            const CanvasPoint device = gdiplus::ToDevice(context, point);
            if (!Finite(device.x, device.y)) {
                return kStatusBadArgument;
            }
            allNear = allNear && NearPicture(context.picture, device);
        }
        if (points.size() < 2 || !SetPen(context, pen)) {
            return kStatusBadArgument;
        }
        StartPath(context);
        const std::size_t segmentCount = points.size() - (closed ? 0 : 1);
        for (std::size_t i = 0; i < segmentCount; ++i) {
            const CanvasPoint& start = points[i];
            const CanvasPoint& end = points[(i + 1) % points.size()];
            if (allNear) {
                if (closed && i + 1 == segmentCount) {
                    GdipClosePathFigure(context.path);
                } else {
                    GdipAddPathLine(context.path, Real(start.x), Real(start.y), Real(end.x),
                                    Real(end.y));
                }
                continue;
            }
            Segment segment{gdiplus::ToDevice(context, start), gdiplus::ToDevice(context, end)};
            if (CutToSurroundings(context.picture, segment)) {
                AddSegment(context, {gdiplus::ToUser(context, segment.from),
                                     gdiplus::ToUser(context, segment.to)});
            }
        }
        return Stroke(context);
    });
}

void Canvas::DrawSegments(const CanvasPen& pen, std::span<const CanvasPoint> points) {
    status_ = Perform(native_, [&](Context& context) -> int {
        if (!SetPen(context, pen)) {
            return kStatusBadArgument;
        }
        StartPath(context);
        for (std::size_t i = 0; i + 1 < points.size(); i += 2) {
            Segment segment{gdiplus::ToDevice(context, points[i]),
                            gdiplus::ToDevice(context, points[i + 1])};
            if (Finite(segment.from.x, segment.from.y, segment.to.x, segment.to.y) &&
                CutToSurroundings(context.picture, segment)) {
                AddSegment(context, {gdiplus::ToUser(context, segment.from),
                                     gdiplus::ToUser(context, segment.to)});
            }
        }
        return Stroke(context);
    });
}

void Canvas::FillPolygon(std::uint32_t argb, std::span<const CanvasPoint> points) {
    status_ = Perform(native_, [&](Context& context) -> int {
        const auto usable = [&](const CanvasPoint& point) {
            return FiniteAndSmall(gdiplus::ToDevice(context, point));
        };
        if (points.size() < 3 || !std::ranges::all_of(points, usable)) {
            return kStatusBadArgument;
        }
        StartPath(context);
        for (std::size_t i = 0; i + 1 < points.size(); ++i) {
            GdipAddPathLine(context.path, Real(points[i].x), Real(points[i].y),
                            Real(points[i + 1].x), Real(points[i + 1].y));
        }
        GdipClosePathFigure(context.path);
        return Fill(context, argb);
    });
}

void Canvas::DrawEllipse(const CanvasPen& pen, double x, double y, double width, double height) {
    DrawArc(pen, {x, y}, {width, height}, 0, 360);
}

void Canvas::FillEllipse(std::uint32_t argb, double x, double y, double width, double height) {
    status_ = Perform(native_, [&](Context& context) -> int {
        StartPath(context);
        if (!AddArc(context.path, {x, y}, {width, height}, 0, 360)) {
            return kStatusBadArgument;
        }
        GdipClosePathFigure(context.path);
        return Fill(context, argb);
    });
}

void Canvas::DrawArc(const CanvasPen& pen, const CanvasPoint& topLeft, const CanvasSize& size,
                     double startDeg, double sweepDeg) {
    status_ = Perform(native_, [&](Context& context) -> int {
        StartPath(context);
        if (!SetPen(context, pen) || !AddArc(context.path, topLeft, size, startDeg, sweepDeg)) {
            return kStatusBadArgument;
        }
        if (std::abs(sweepDeg) >= 360) {
            GdipClosePathFigure(context.path);
        }
        return Stroke(context);
    });
}

// ---- transform ----
void Canvas::Translate(double dx, double dy) {
    status_ = ChangeTransform(native_, Finite(dx, dy), {1, 0, 0, 1, dx, dy});
}

void Canvas::Rotate(double degrees) {
    const double angle = std::fmod(degrees, 360.0) * kDegreesToRadians;
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    status_ = ChangeTransform(native_, Finite(degrees), {cosine, sine, -sine, cosine, 0, 0});
}

void Canvas::Scale(double sx, double sy) {
    status_ = ChangeTransform(native_, Finite(sx, sy), {sx, 0, 0, sy, 0, 0});
}

void Canvas::ResetTransform() {
    if (Context* const context = Native(native_)) {
        context->transform = gdiplus::Transform{};
        context->hiddenAtDepth = gdiplus::kNothingHidden;
        GdipResetWorldTransform(context->graphics);
    }
}

void Canvas::SaveState() {
    if (Context* const context = Native(native_)) {
        gdiplus::SavedState saved{0, context->transform};
        status_ = GdipSaveGraphics(context->graphics, &saved.state);
        context->saved.push_back(saved);
    }
}

void Canvas::RestoreState() {
    Context* const context = Native(native_);
    if (context == nullptr || context->saved.empty()) {
        status_ = kStatusBadArgument;
        return;
    }
    status_ = GdipRestoreGraphics(context->graphics, context->saved.back().state);
    context->transform = context->saved.back().transform;
    context->saved.pop_back();
    if (static_cast<int>(context->saved.size()) < context->hiddenAtDepth) {
        context->hiddenAtDepth = gdiplus::kNothingHidden;
    }
}

// ---- clip ----
void Canvas::ClipLine(double x1, double y1, double x2, double y2) {
    status_ = AddToClip(native_, true, [&](Gdiplus::GpPath* path) {
        return FiniteAndSmall({x1, y1}) && FiniteAndSmall({x2, y2}) &&
               GdipAddPathLine(path, Real(x1), Real(y1), Real(x2), Real(y2)) == Gdiplus::Ok;
    });
}

void Canvas::ClipArc(const CanvasPoint& topLeft, const CanvasSize& size, double startDeg,
                     double sweepDeg) {
    status_ = AddToClip(native_, true, [&](Gdiplus::GpPath* path) {
        return AddArc(path, topLeft, size, startDeg, sweepDeg);
    });
}

void Canvas::ClipEllipse(double x, double y, double width, double height) {
    status_ = AddToClip(native_, false, [&](Gdiplus::GpPath* path) {
        return AddArc(path, {x, y}, {width, height}, 0, 360) &&
               GdipClosePathFigure(path) == Gdiplus::Ok;
    });
}

void Canvas::ClipRectangle(double x, double y, double width, double height) {
    status_ = AddToClip(native_, false, [&](Gdiplus::GpPath* path) {
        return FiniteAndSmall({x, y}) && FiniteAndSmall({width, height}) &&
               GdipAddPathRectangle(path, Real(x), Real(y), Real(width), Real(height)) ==
                   Gdiplus::Ok;
    });
}

void Canvas::EndClip() {
    Context* const context = Native(native_);
    if (context == nullptr) {
        return;
    }
    GdipResetWorldTransform(context->graphics);
    status_ = GdipSetClipPath(context->graphics, context->clip, Gdiplus::CombineModeIntersect);
    GdipResetPath(context->clip);
    GdipSetPathFillMode(context->clip, Gdiplus::FillModeWinding);
    gdiplus::ApplyTransform(*context);
}

void Canvas::ResetClip() {
    if (native_ != nullptr) {
        GdipResetClip(Native(native_)->graphics);
    }
}

// ---- text ----
namespace {

struct GlyphRun {
    std::array<UINT16, kCanvasTextLimit> characters;
    std::array<Gdiplus::PointF, kCanvasTextLimit> places;  // on the baseline
    INT count = 0;
};

void LayGlyphs(const gdiplus::FontFace& face, std::string_view text, double sizePx,
               const CanvasPoint& baseline, GlyphRun& run) {
    double x = baseline.x;
    for (const char each : text.substr(0, kCanvasTextLimit)) {
        const auto code = static_cast<unsigned char>(each);
        const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
        const auto place = static_cast<std::size_t>(run.count++);
        run.characters[place] = control ? ' ' : code;
        run.places[place] = {Real(x), Real(baseline.y)};
        x += face.advances[code] * sizePx;
    }
}

// Whether a box in user coordinates can show inside the clip and the picture at all.
bool CanShow(const Context& context, double x, double y, const CanvasSize& size) {
    Gdiplus::GpRectF clip;
    return GdipGetVisibleClipBounds(context.graphics, &clip) != Gdiplus::Ok ||
           (x < clip.X + clip.Width && x + size.width > clip.X && y < clip.Y + clip.Height &&
            y + size.height > clip.Y);
}

}  // namespace

void Canvas::DrawText(std::string_view text, const CanvasFont& font, std::uint32_t argb, double x,
                      double y) {
    status_ = Perform(native_, [&](Context& context) -> int {
        const gdiplus::FontFace* const face = gdiplus::FindFontFace(font);
        if (face == nullptr || !Finite(x, y, font.sizePx) || font.sizePx <= 0 ||
            font.sizePx > kFarOutsidePx) {
            return kStatusBadArgument;
        }
        if (text.empty() || !CanShow(context, x, y, MeasureText(text, font))) {
            return kStatusOk;
        }
        Gdiplus::GpFont* const sized = gdiplus::FindFont(*face, font.sizePx);
        if (sized == nullptr) {
            return kStatusBadArgument;
        }
        GlyphRun run;
        LayGlyphs(*face, text, font.sizePx, {x, y + face->ascent * font.sizePx}, run);
        GdipSetSolidFillColor(context.brush, argb);
        const int status = GdipDrawDriverString(context.graphics, run.characters.data(), run.count,
                                                sized, context.brush, run.places.data(),
                                                Gdiplus::DriverStringOptionsCmapLookup, nullptr);
        std::array<char, 2 * kCanvasTextLimit + 1> utf8;
        Latin1ToUtf8(text.substr(0, kCanvasTextLimit), utf8.data(), utf8.size());
        const CanvasPoint corner = gdiplus::ToDevice(context, {x, y});
        ReportTextDrawn(deviceContext_, utf8.data(), corner.x, corner.y,
                        font.sizePx * gdiplus::DeviceScale(context), argb);
        return status;
    });
}

CanvasSize Canvas::MeasureText(std::string_view text, const CanvasFont& font) {
    const gdiplus::FontFace* const face = gdiplus::FindFontFace(font);
    if (face == nullptr || !std::isfinite(font.sizePx)) {
        return {};
    }
    CanvasSize size{0, (face->ascent + face->descent) * font.sizePx};
    for (const char each : text) {
        size.width += face->advances[static_cast<unsigned char>(each)] * font.sizePx;
    }
    return size;
}

}  // namespace avq1
