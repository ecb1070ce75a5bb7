// The canvas on Cairo. A context in Cairo's error state draws nothing more, so every argument is
// checked before it reaches Cairo: what is not finite draws nothing, and what lies far outside the
// picture is cut to its surroundings, which also keeps dashes and joins from costing time there.
#include "platform/canvas.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/cairo/context_cache.h"
#include "platform/cairo/font_cache.h"
#include "platform/canvas_geometry.h"
#include "platform/services.h"

namespace avq1 {

using cairo::CairoContext;

namespace {

CairoContext* Native(void* native) {
    return static_cast<CairoContext*>(native);
}

bool Hidden(const CairoContext& context) {
    return context.hiddenAtDepth != cairo::kNothingHidden;
}

void SetSource(cairo_t* cr, std::uint32_t argb) {
    const auto part = [argb](int shift) { return ((argb >> shift) & 0xFF) / 255.0; };
    cairo_set_source_rgba(cr, part(16), part(8), part(0), part(24));
}

std::uint32_t Premultiplied(std::uint32_t argb) {
    const std::uint32_t alpha = argb >> 24;
    const auto part = [argb, alpha](int shift) {
        return ((((argb >> shift) & 0xFF) * alpha + 127) / 255) << shift;
    };
    return alpha << 24 | part(16) | part(8) | part(0);
}

bool SetPen(cairo_t* cr, const CanvasPen& pen) {
    if (!UsablePen(pen)) {
        return false;
    }
    cairo_set_dash(cr, pen.dashPx.data(), static_cast<int>(pen.dashPx.size()), 0);
    cairo_set_line_width(cr, pen.widthPx > 0 ? pen.widthPx : 1.0);
    SetSource(cr, pen.argb);
    return true;
}

CanvasPoint ToDevice(cairo_t* cr, CanvasPoint point) {
    cairo_user_to_device(cr, &point.x, &point.y);
    return point;
}

CanvasPoint ToUser(cairo_t* cr, CanvasPoint point) {
    cairo_device_to_user(cr, &point.x, &point.y);
    return point;
}

CanvasSize PictureOf(const CairoContext& context) {
    return {static_cast<double>(context.width), static_cast<double>(context.height)};
}

double DeviceScale(cairo_t* cr) {
    cairo_matrix_t matrix;
    cairo_get_matrix(cr, &matrix);
    return std::sqrt(std::abs(matrix.xx * matrix.yy - matrix.xy * matrix.yx));
}

void DrawArrowHead(cairo_t* cr, const CanvasPen& pen, Segment& segment) {
    std::array<CanvasPoint, 3> head;
    if (!CutArrowHead(pen.widthPx, segment, head)) {
        return;
    }
    cairo_new_path(cr);
    for (const CanvasPoint& corner : head) {
        cairo_line_to(cr, corner.x, corner.y);
    }
    cairo_close_path(cr);
    cairo_fill(cr);
}

// Adds the arc of the ellipse in a box to the path; false when there is no such ellipse.
bool AddArc(cairo_t* cr, double x, double y, double width, double height, double startDeg,
            double sweepDeg) {
    if (!Finite(x, y, width, height, startDeg, sweepDeg) || width == 0 || height == 0 ||
        std::max({std::abs(x), std::abs(y), std::abs(width), std::abs(height)}) >
            kCoordinateLimitPx) {
        return false;
    }
    cairo_matrix_t saved;
    cairo_get_matrix(cr, &saved);
    cairo_translate(cr, x + width / 2, y + height / 2);
    cairo_scale(cr, std::abs(width) / 2, std::abs(height) / 2);
    const double start = std::fmod(startDeg, 360.0) * kDegreesToRadians;
    const double sweep = std::clamp(sweepDeg, -360.0, 360.0) * kDegreesToRadians;
    if (sweep >= 0) {
        cairo_arc(cr, 0, 0, 1, start, start + sweep);
    } else {
        cairo_arc_negative(cr, 0, 0, 1, start, start + sweep);
    }
    cairo_set_matrix(cr, &saved);
    return true;
}

// Runs a drawing operation unless it is hidden; its result says whether its arguments were usable.
template <class Operation>
int Perform(void* native, Operation operation) {
    CairoContext* context = Native(native);
    if (context == nullptr || Hidden(*context)) {
        return kStatusBadArgument;
    }
    const bool usable = operation(*context);
    return usable ? static_cast<int>(cairo_status(context->cr)) : kStatusBadArgument;
}

// Changes the transform; one that cannot be hides what is drawn under it.
template <class Change>
int ChangeTransform(void* native, bool possible, Change change) {
    CairoContext* context = Native(native);
    if (context == nullptr) {
        return kStatusBadArgument;
    }
    if (Hidden(*context)) {
        return kStatusBadArgument;
    }
    if (possible) {
        cairo_matrix_t saved;
        cairo_matrix_t changed;
        cairo_get_matrix(context->cr, &saved);
        changed = saved;
        change(changed);
        const double determinant = changed.xx * changed.yy - changed.xy * changed.yx;
        if (Finite(determinant, changed.x0, changed.y0) && std::abs(determinant) > 1e-12 &&
            std::max(std::abs(changed.x0), std::abs(changed.y0)) < kCoordinateLimitPx) {
            cairo_set_matrix(context->cr, &changed);
            return kStatusOk;
        }
    }
    context->hiddenAtDepth = context->saveDepth;
    return kStatusBadArgument;
}

}  // namespace

std::uintptr_t StartDrawingLibrary() {
    return 1;
}

void StopDrawingLibrary(std::uintptr_t token) {
    if (token != 0) {
        cairo::DropContexts();
        cairo::DropFontFaces();
    }
}

Canvas::Canvas(void* deviceContext, int widthPx, int heightPx) : deviceContext_(deviceContext) {
    if (widthPx > 0 && heightPx > 0) {
        native_ = cairo::AcquireContext(deviceContext);
    }
    status_ = native_ != nullptr ? kStatusOk : kStatusBadArgument;
}

Canvas::~Canvas() {
    cairo::ReleaseContext(Native(native_));
}

void Canvas::SetAntialias(bool on) {
    if (native_ != nullptr) {
        cairo_set_antialias(Native(native_)->cr,
                            on ? CAIRO_ANTIALIAS_DEFAULT : CAIRO_ANTIALIAS_NONE);
    }
}

void Canvas::Clear(std::uint32_t argb) {
    CairoContext* context = Native(native_);
    if (context == nullptr) {
        return;
    }
    const std::uint32_t pixel = Premultiplied(argb);
    cairo_surface_flush(context->surface);
    for (int row = 0; row < context->height; ++row) {
        std::uint32_t* first =
            context->pixels + static_cast<std::ptrdiff_t>(row) * (context->bytesPerRow / 4);
        std::fill(first, first + context->width, pixel);
    }
    cairo_surface_mark_dirty(context->surface);
}

void Canvas::FillRectangle(std::uint32_t argb, double x, double y, double width, double height) {
    const std::array<CanvasPoint, 4> corners{
        {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}}};
    FillPolygon(argb, corners);
}

void Canvas::DrawRectangle(const CanvasPen& pen, double x, double y, double width, double height) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo_t* cr = context.cr;
        Segment diagonal{ToDevice(cr, {x, y}), ToDevice(cr, {x + width, y + height})};
        if (!Finite(diagonal.from.x, diagonal.from.y, diagonal.to.x, diagonal.to.y) ||
            !CutToSurroundings(PictureOf(context), diagonal) || !SetPen(cr, pen)) {
            return false;
        }
        cairo_matrix_t matrix;
        cairo_get_matrix(cr, &matrix);
        CanvasPoint from{x, y};
        CanvasPoint to{x + width, y + height};
        if (matrix.xy == 0 && matrix.yx == 0) {
            const double widthPx = pen.widthPx * DeviceScale(cr);
            from = ToUser(
                cr, {SnapStroke(diagonal.from.x, widthPx), SnapStroke(diagonal.from.y, widthPx)});
            to = ToUser(cr,
                        {SnapStroke(diagonal.to.x, widthPx), SnapStroke(diagonal.to.y, widthPx)});
        }
        cairo_new_path(cr);
        cairo_rectangle(cr, from.x, from.y, to.x - from.x, to.y - from.y);
        cairo_stroke(cr);
        return true;
    });
}

void Canvas::DrawLine(const CanvasPen& pen, double x1, double y1, double x2, double y2) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo_t* cr = context.cr;
        Segment segment{ToDevice(cr, {x1, y1}), ToDevice(cr, {x2, y2})};
        if (!Finite(segment.from.x, segment.from.y, segment.to.x, segment.to.y) ||
            !SetPen(cr, pen)) {
            return false;
        }
        if (!CutToSurroundings(PictureOf(context), segment)) {
            return true;
        }
        SnapLevelAndUpright(pen.widthPx * DeviceScale(cr), segment);
        segment = {ToUser(cr, segment.from), ToUser(cr, segment.to)};
        if (pen.arrowAtEnd) {
            DrawArrowHead(cr, pen, segment);
        }
        cairo_new_path(cr);
        cairo_move_to(cr, segment.from.x, segment.from.y);
        cairo_line_to(cr, segment.to.x, segment.to.y);
        cairo_stroke(cr);
        return true;
    });
}

void Canvas::DrawPolyline(const CanvasPen& pen, std::span<const CanvasPoint> points, bool closed) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo_t* cr = context.cr;
        bool allNear = points.size() >= 2;
        for (const CanvasPoint& point : points) {
            const CanvasPoint device = ToDevice(cr, point);
            if (!Finite(device.x, device.y)) {
                return false;
            }
            allNear = allNear && NearPicture(PictureOf(context), device);
        }
        if (points.size() < 2 || !SetPen(cr, pen)) {
            return false;
        }
        cairo_new_path(cr);
        const std::size_t segmentCount = points.size() - (closed ? 0 : 1);
        for (std::size_t i = 0; i < segmentCount; ++i) {
            const CanvasPoint& end = points[(i + 1) % points.size()];
            if (allNear) {
                if (i == 0) {
                    cairo_move_to(cr, points[0].x, points[0].y);
                }
                if (closed && i + 1 == segmentCount) {
                    cairo_close_path(cr);
                } else {
                    cairo_line_to(cr, end.x, end.y);
                }
                continue;
            }
            Segment segment{ToDevice(cr, points[i]), ToDevice(cr, end)};
            if (CutToSurroundings(PictureOf(context), segment)) {
                segment = {ToUser(cr, segment.from), ToUser(cr, segment.to)};
                cairo_move_to(cr, segment.from.x, segment.from.y);
                cairo_line_to(cr, segment.to.x, segment.to.y);
            }
        }
        cairo_stroke(cr);
        return true;
    });
}

void Canvas::DrawSegments(const CanvasPen& pen, std::span<const CanvasPoint> points) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo_t* cr = context.cr;
        if (!SetPen(cr, pen)) {
            return false;
        }
        cairo_new_path(cr);
        for (std::size_t i = 0; i + 1 < points.size(); i += 2) {
            Segment segment{ToDevice(cr, points[i]), ToDevice(cr, points[i + 1])};
            if (Finite(segment.from.x, segment.from.y, segment.to.x, segment.to.y) &&
                CutToSurroundings(PictureOf(context), segment)) {
                segment = {ToUser(cr, segment.from), ToUser(cr, segment.to)};
                cairo_move_to(cr, segment.from.x, segment.from.y);
                cairo_line_to(cr, segment.to.x, segment.to.y);
            }
        }
        cairo_stroke(cr);
        return true;
    });
}

void Canvas::FillPolygon(std::uint32_t argb, std::span<const CanvasPoint> points) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo_t* cr = context.cr;
        for (const CanvasPoint& point : points) {
            const CanvasPoint device = ToDevice(cr, point);
            if (!Finite(device.x, device.y) ||
                std::max(std::abs(device.x), std::abs(device.y)) > kCoordinateLimitPx) {
                return false;
            }
        }
        if (points.size() < 3) {
            return false;
        }
        SetSource(cr, argb);
        cairo_new_path(cr);
        for (const CanvasPoint& point : points) {
            cairo_line_to(cr, point.x, point.y);
        }
        cairo_close_path(cr);
        cairo_fill(cr);
        return true;
    });
}

void Canvas::DrawEllipse(const CanvasPen& pen, double x, double y, double width, double height) {
    DrawArc(pen, {x, y}, {width, height}, 0, 360);
}

void Canvas::FillEllipse(std::uint32_t argb, double x, double y, double width, double height) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo_new_path(context.cr);
        if (!AddArc(context.cr, x, y, width, height, 0, 360)) {
            return false;
        }
        SetSource(context.cr, argb);
        cairo_fill(context.cr);
        return true;
    });
}

void Canvas::DrawArc(const CanvasPen& pen, const CanvasPoint& topLeft, const CanvasSize& size,
                     double startDeg, double sweepDeg) {
    status_ = Perform(native_, [&](CairoContext& context) {
        if (!SetPen(context.cr, pen)) {
            return false;
        }
        cairo_new_path(context.cr);
        if (!AddArc(context.cr, topLeft.x, topLeft.y, size.width, size.height, startDeg,
                    sweepDeg)) {
            return false;
        }
        if (std::abs(sweepDeg) >= 360) {
            cairo_close_path(context.cr);
        }
        cairo_stroke(context.cr);
        return true;
    });
}

void Canvas::Translate(double dx, double dy) {
    status_ = ChangeTransform(native_, Finite(dx, dy), [&](cairo_matrix_t& matrix) {
        cairo_matrix_translate(&matrix, dx, dy);
    });
}

void Canvas::Rotate(double degrees) {
    status_ = ChangeTransform(native_, Finite(degrees), [&](cairo_matrix_t& matrix) {
        cairo_matrix_rotate(&matrix, std::fmod(degrees, 360.0) * kDegreesToRadians);
    });
}

void Canvas::Scale(double sx, double sy) {
    status_ = ChangeTransform(native_, Finite(sx, sy),
                              [&](cairo_matrix_t& matrix) { cairo_matrix_scale(&matrix, sx, sy); });
}

void Canvas::ResetTransform() {
    if (native_ != nullptr) {
        cairo_identity_matrix(Native(native_)->cr);
        Native(native_)->hiddenAtDepth = cairo::kNothingHidden;
    }
}

void Canvas::SaveState() {
    if (native_ != nullptr) {
        cairo_save(Native(native_)->cr);
        ++Native(native_)->saveDepth;
    }
}

void Canvas::RestoreState() {
    CairoContext* context = Native(native_);
    if (context == nullptr || context->saveDepth == 0) {
        status_ = kStatusBadArgument;
        return;
    }
    cairo_restore(context->cr);
    --context->saveDepth;
    if (context->saveDepth < context->hiddenAtDepth) {
        context->hiddenAtDepth = cairo::kNothingHidden;
    }
}

void Canvas::ClipLine(double x1, double y1, double x2, double y2) {
    status_ = Perform(native_, [&](CairoContext& context) {
        if (!Finite(x1, y1, x2, y2) || std::max({std::abs(x1), std::abs(y1), std::abs(x2),
                                                 std::abs(y2)}) > kCoordinateLimitPx) {
            return false;
        }
        cairo_line_to(context.cr, x1, y1);
        cairo_line_to(context.cr, x2, y2);
        return true;
    });
}

void Canvas::ClipArc(const CanvasPoint& topLeft, const CanvasSize& size, double startDeg,
                     double sweepDeg) {
    status_ = Perform(native_, [&](CairoContext& context) {
        return AddArc(context.cr, topLeft.x, topLeft.y, size.width, size.height, startDeg,
                      sweepDeg);
    });
}

void Canvas::ClipEllipse(double x, double y, double width, double height) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo_new_sub_path(context.cr);
        const bool usable = AddArc(context.cr, x, y, width, height, 0, 360);
        cairo_close_path(context.cr);
        return usable;
    });
}

void Canvas::ClipRectangle(double x, double y, double width, double height) {
    status_ = Perform(native_, [&](CairoContext& context) {
        if (!Finite(x, y, width, height)) {
            return false;
        }
        cairo_rectangle(context.cr, x, y, width, height);
        return true;
    });
}

void Canvas::EndClip() {
    if (native_ != nullptr) {
        cairo_clip(Native(native_)->cr);
    }
}

void Canvas::ResetClip() {
    if (native_ != nullptr) {
        cairo_reset_clip(Native(native_)->cr);
    }
}

namespace {

// Lays the glyphs of a text along its baseline; returns their count, blanks included.
int LayGlyphs(cairo::FontFace& face, std::string_view text, double sizePx,
              std::array<cairo_glyph_t, kCanvasTextLimit>& glyphs, double x, double baselineY) {
    int count = 0;
    for (const char each : text.substr(0, kCanvasTextLimit)) {
        const cairo::Glyph& glyph = cairo::GlyphOf(face, static_cast<unsigned char>(each));
        glyphs[static_cast<std::size_t>(count++)] = {glyph.index, x, baselineY};
        x += glyph.advance * sizePx;
    }
    return count;
}

// Whether a box in user coordinates can show inside the clip and the picture at all.
bool CanShow(cairo_t* cr, double x, double y, const CanvasSize& size) {
    double left;
    double top;
    double right;
    double bottom;
    cairo_clip_extents(cr, &left, &top, &right, &bottom);
    if (!(x < right && x + size.width > left && y < bottom && y + size.height > top)) {
        return false;
    }
    // a round clip ends inside its own extents: what is cut through the middle cannot be read
    return cairo_in_clip(cr, x + size.width / 2, y + size.height / 2) != 0;
}

}  // namespace

void Canvas::DrawText(std::string_view text, const CanvasFont& font, std::uint32_t argb, double x,
                      double y) {
    status_ = Perform(native_, [&](CairoContext& context) {
        cairo::FontFace* face = cairo::FindFontFace(font);
        cairo_t* cr = context.cr;
        if (face == nullptr || !Finite(x, y, font.sizePx) || font.sizePx <= 0 ||
            font.sizePx > kFarOutsidePx) {
            return false;
        }
        if (text.empty() || !CanShow(cr, x, y, MeasureText(text, font))) {
            return true;
        }
        std::array<cairo_glyph_t, kCanvasTextLimit> glyphs;
        const int count =
            LayGlyphs(*face, text, font.sizePx, glyphs, x, y + face->ascent * font.sizePx);
        SetSource(cr, argb);
        cairo_set_font_face(cr, face->face);
        cairo_set_font_size(cr, font.sizePx);
        cairo_show_glyphs(cr, glyphs.data(), count);

        std::array<char, 2 * kCanvasTextLimit + 1> utf8;
        Latin1ToUtf8(text.substr(0, kCanvasTextLimit), utf8.data(), utf8.size());
        const CanvasPoint corner = ToDevice(cr, {x, y});
        ReportTextDrawn(deviceContext_, utf8.data(), corner.x, corner.y,
                        font.sizePx * DeviceScale(cr), argb);
        return true;
    });
}

CanvasSize Canvas::MeasureText(std::string_view text, const CanvasFont& font) {
    cairo::FontFace* face = cairo::FindFontFace(font);
    if (face == nullptr || !std::isfinite(font.sizePx)) {
        return {};
    }
    CanvasSize size{0, (face->ascent + face->descent) * font.sizePx};
    for (const char each : text) {
        size.width += cairo::GlyphOf(*face, static_cast<unsigned char>(each)).advance * font.sizePx;
    }
    return size;
}

}  // namespace avq1
