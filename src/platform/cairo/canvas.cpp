// The canvas on Linux: shapes are filled by this folder's own coverage, letters come from Cairo,
// once each. Every argument is checked before it is drawn: what is not finite draws nothing, and
// what lies far outside the picture is cut to its surroundings, which also keeps dashes from
// costing time there.
#include "platform/canvas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "platform/cairo/context.h"
#include "platform/cairo/coverage.h"
#include "platform/cairo/fonts.h"
#include "platform/cairo/strokes.h"
#include "platform/canvas_geometry.h"
#include "platform/services.h"

namespace avq1 {

using cairo::Context;
using cairo::Transform;

namespace {

constexpr double kLargestMaskPx = 100;  // larger letters are as good without

// Kept, so that a draw allocates nothing.
std::vector<CanvasPoint> outline;

Context* Native(void* native) {
    return static_cast<Context*>(native);
}

bool Hidden(const Context& context) {
    return context.hiddenAtDepth != cairo::kNothingHidden;
}

CanvasSize PictureOf(const Context& context) {
    return {static_cast<double>(context.picture.width),
            static_cast<double>(context.picture.height)};
}

bool FiniteAndSmall(const CanvasPoint& point) {
    return Finite(point.x, point.y) &&
           std::max(std::abs(point.x), std::abs(point.y)) <= kCoordinateLimitPx;
}

// The smallest box around points, in device pixels.
class Bounds {
  public:
    void Take(const CanvasPoint& device) {
        low_ = {std::min(low_.x, device.x), std::min(low_.y, device.y)};
        high_ = {std::max(high_.x, device.x), std::max(high_.y, device.y)};
    }
    void Widen(double byPx) {
        low_ = {low_.x - byPx, low_.y - byPx};
        high_ = {high_.x + byPx, high_.y + byPx};
    }
    const CanvasPoint& low() const { return low_; }
    const CanvasPoint& high() const { return high_; }

  private:
    CanvasPoint low_{kCoordinateLimitPx, kCoordinateLimitPx};
    CanvasPoint high_{-kCoordinateLimitPx, -kCoordinateLimitPx};
};

// Fills what `add` adds to the coverage inside the bounds.
template <class Add>
void FillWhat(Context& context, std::uint32_t argb, const Bounds& bounds, Add add) {
    cairo::Coverage& coverage = cairo::TheCoverage();
    coverage.Begin(context.picture, context.PresentClip(), bounds.low(), bounds.high());
    add(coverage);
    coverage.Fill(argb, context.smooth);
}

// Strokes what `add` adds to the coverage along these points.
template <class Add>
void StrokeWhat(Context& context, const CanvasPen& pen, std::span<const CanvasPoint> points,
                Add add) {
    Bounds bounds;
    for (const CanvasPoint& point : points) {
        bounds.Take(context.transform.ToDevice(point));
    }
    bounds.Widen(cairo::StrokeReachPx(context.transform, pen));
    FillWhat(context, pen.argb, bounds, add);
}

void StrokeLine(Context& context, const CanvasPen& pen, std::span<const CanvasPoint> points,
                bool closed) {
    StrokeWhat(context, pen, points, [&](cairo::Coverage& coverage) {
        cairo::AddStroke(coverage, context.transform, pen, points, closed);
    });
}

void FillOutline(Context& context, std::uint32_t argb, std::span<const CanvasPoint> corners) {
    Bounds bounds;
    outline.clear();
    for (const CanvasPoint& corner : corners) {
        outline.push_back(context.transform.ToDevice(corner));
        bounds.Take(outline.back());
    }
    FillWhat(context, argb, bounds,
             [&](cairo::Coverage& coverage) { coverage.AddOutline(outline); });
}

// A line in the picture's surroundings, in user coordinates; false when nothing of it is there.
bool CutLine(const Context& context, Segment& segment) {
    const Transform& transform = context.transform;
    Segment device{transform.ToDevice(segment.from), transform.ToDevice(segment.to)};
    if (!Finite(device.from.x, device.from.y, device.to.x, device.to.y) ||
        !CutToSurroundings(PictureOf(context), device)) {
        return false;
    }
    segment = {transform.ToUser(device.from), transform.ToUser(device.to)};
    return true;
}

// Adds what of a line lies in the picture's surroundings.
void AddCutLine(cairo::Coverage& coverage, const Context& context, const CanvasPen& pen,
                Segment segment) {
    if (CutLine(context, segment)) {
        const std::array<CanvasPoint, 2> line{segment.from, segment.to};
        cairo::AddStroke(coverage, context.transform, pen, line, false);
    }
}

void DrawArrowHead(Context& context, const CanvasPen& pen, Segment& segment) {
    std::array<CanvasPoint, 3> head;
    if (CutArrowHead(pen.widthPx, segment, head)) {
        FillOutline(context, pen.argb, head);
    }
}

// The points of an arc in `outline`; false when there is no such ellipse.
bool LayArc(const Context& context, const CanvasPoint& topLeft, const CanvasSize& size,
            double startDeg, double sweepDeg, std::vector<CanvasPoint>& points) {
    if (!FiniteAndSmall(topLeft) || !FiniteAndSmall({size.width, size.height}) ||
        !Finite(startDeg, sweepDeg) || size.width == 0 || size.height == 0) {
        return false;
    }
    cairo::AppendArc(context.transform, topLeft, size, startDeg, sweepDeg, points);
    return true;
}

// Runs a drawing operation unless it is hidden; its result says whether its arguments were usable.
template <class Operation>
int Perform(void* native, Operation operation) {
    Context* context = Native(native);
    if (context == nullptr || Hidden(*context)) {
        return kStatusBadArgument;
    }
    return operation(*context) ? kStatusOk : kStatusBadArgument;
}

// Changes the transform by one that is applied before it; one that cannot be hides what is drawn
// under it.
int ChangeTransform(void* native, bool possible, const Transform& first) {
    Context* context = Native(native);
    if (context == nullptr || Hidden(*context)) {
        return kStatusBadArgument;
    }
    const Transform changed = context->transform.After(first);
    const double determinant = changed.Determinant();
    if (possible && Finite(determinant, changed.x0, changed.y0) && std::abs(determinant) > 1e-12 &&
        std::max(std::abs(changed.x0), std::abs(changed.y0)) < kCoordinateLimitPx) {
        context->transform = changed;
        return kStatusOk;
    }
    context->hiddenAtDepth = static_cast<int>(context->saved.size());
    return kStatusBadArgument;
}

}  // namespace

std::uintptr_t StartDrawingLibrary() {
    return 1;
}

void StopDrawingLibrary(std::uintptr_t token) {
    if (token != 0) {
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
        Native(native_)->smooth = on;
    }
}

void Canvas::Clear(std::uint32_t argb) {
    Context* context = Native(native_);
    if (context == nullptr) {
        return;
    }
    const cairo::PixelPicture& picture = context->picture;
    for (int row = 0; row < picture.height; ++row) {
        std::fill_n(picture.Row(row), picture.width, cairo::Premultiplied(argb));
    }
}

void Canvas::FillRectangle(std::uint32_t argb, double x, double y, double width, double height) {
    const std::array<CanvasPoint, 4> corners{
        {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}}};
    FillPolygon(argb, corners);
}

void Canvas::DrawRectangle(const CanvasPen& pen, double x, double y, double width, double height) {
    status_ = Perform(native_, [&](Context& context) {
        Segment diagonal{{x, y}, {x + width, y + height}};
        if (!CutLine(context, diagonal) || !UsablePen(pen)) {
            return false;
        }
        const Transform& transform = context.transform;
        if (transform.KeepsLevel()) {
            const double widthPx = pen.widthPx * transform.Scale();
            for (CanvasPoint* const corner : {&diagonal.from, &diagonal.to}) {
                const CanvasPoint device = transform.ToDevice(*corner);
                *corner = transform.ToUser(
                    {SnapStroke(device.x, widthPx), SnapStroke(device.y, widthPx)});
            }
        }
        const auto& [from, to] = diagonal;
        const std::array<CanvasPoint, 4> corners{{from, {to.x, from.y}, to, {from.x, to.y}}};
        StrokeLine(context, pen, corners, true);
        return true;
    });
}

void Canvas::DrawLine(const CanvasPen& pen, double x1, double y1, double x2, double y2) {
    status_ = Perform(native_, [&](Context& context) {
        const Transform& transform = context.transform;
        Segment device{transform.ToDevice({x1, y1}), transform.ToDevice({x2, y2})};
        if (!Finite(device.from.x, device.from.y, device.to.x, device.to.y) || !UsablePen(pen)) {
            return false;
        }
        if (!CutToSurroundings(PictureOf(context), device)) {
            return true;
        }
        SnapLevelAndUpright(pen.widthPx * transform.Scale(), device);
        Segment segment{transform.ToUser(device.from), transform.ToUser(device.to)};
        if (pen.arrowAtEnd) {
            DrawArrowHead(context, pen, segment);
        }
        const std::array<CanvasPoint, 2> line{segment.from, segment.to};
        StrokeLine(context, pen, line, false);
        return true;
    });
}

void Canvas::DrawPolyline(const CanvasPen& pen, std::span<const CanvasPoint> points, bool closed) {
    status_ = Perform(native_, [&](Context& context) {
        bool allNear = points.size() >= 2;
        for (const CanvasPoint& point : points) {
            const CanvasPoint device = context.transform.ToDevice(point);
            if (!Finite(device.x, device.y)) {
                return false;
            }
            allNear = allNear && NearPicture(PictureOf(context), device);
        }
        if (points.size() < 2 || !UsablePen(pen)) {
            return false;
        }
        StrokeWhat(context, pen, points, [&](cairo::Coverage& coverage) {
            if (allNear) {
                cairo::AddStroke(coverage, context.transform, pen, points, closed);
                return;
            }
            const std::size_t segmentCount = points.size() - (closed ? 0 : 1);
            for (std::size_t i = 0; i < segmentCount; ++i) {
                AddCutLine(coverage, context, pen, {points[i], points[(i + 1) % points.size()]});
            }
        });
        return true;
    });
}

void Canvas::DrawSegments(const CanvasPen& pen, std::span<const CanvasPoint> points) {
    status_ = Perform(native_, [&](Context& context) {
        if (!UsablePen(pen)) {
            return false;
        }
        StrokeWhat(context, pen, points, [&](cairo::Coverage& coverage) {
            for (std::size_t i = 0; i + 1 < points.size(); i += 2) {
                AddCutLine(coverage, context, pen, {points[i], points[i + 1]});
            }
        });
        return true;
    });
}

void Canvas::FillPolygon(std::uint32_t argb, std::span<const CanvasPoint> points) {
    status_ = Perform(native_, [&](Context& context) {
        for (const CanvasPoint& point : points) {
            if (!FiniteAndSmall(context.transform.ToDevice(point))) {
                return false;
            }
        }
        if (points.size() < 3) {
            return false;
        }
        FillOutline(context, argb, points);
        return true;
    });
}

void Canvas::DrawEllipse(const CanvasPen& pen, double x, double y, double width, double height) {
    DrawArc(pen, {x, y}, {width, height}, 0, 360);
}

void Canvas::FillEllipse(std::uint32_t argb, double x, double y, double width, double height) {
    status_ = Perform(native_, [&](Context& context) {
        static std::vector<CanvasPoint> points;  // kept, so that a draw allocates nothing
        points.clear();
        if (!LayArc(context, {x, y}, {width, height}, 0, 360, points)) {
            return false;
        }
        FillOutline(context, argb, points);
        return true;
    });
}

void Canvas::DrawArc(const CanvasPen& pen, const CanvasPoint& topLeft, const CanvasSize& size,
                     double startDeg, double sweepDeg) {
    status_ = Perform(native_, [&](Context& context) {
        outline.clear();
        if (!UsablePen(pen) || !LayArc(context, topLeft, size, startDeg, sweepDeg, outline)) {
            return false;
        }
        StrokeLine(context, pen, outline, std::abs(sweepDeg) >= 360);
        return true;
    });
}

void Canvas::Translate(double dx, double dy) {
    status_ = ChangeTransform(native_, Finite(dx, dy), {1, 0, 0, 1, dx, dy});
}

void Canvas::Rotate(double degrees) {
    const double turn = std::fmod(degrees, 360.0) * kDegreesToRadians;
    const double cosine = std::cos(turn);
    const double sine = std::sin(turn);
    status_ = ChangeTransform(native_, Finite(degrees), {cosine, sine, -sine, cosine, 0, 0});
}

void Canvas::Scale(double sx, double sy) {
    status_ = ChangeTransform(native_, Finite(sx, sy), {sx, 0, 0, sy, 0, 0});
}

void Canvas::ResetTransform() {
    if (native_ != nullptr) {
        Native(native_)->transform = Transform{};
        Native(native_)->hiddenAtDepth = cairo::kNothingHidden;
    }
}

void Canvas::SaveState() {
    if (Context* const context = Native(native_)) {
        context->saved.push_back({context->transform, context->clip, context->clipCount});
    }
}

void Canvas::RestoreState() {
    Context* context = Native(native_);
    if (context == nullptr || context->saved.empty()) {
        status_ = kStatusBadArgument;
        return;
    }
    const cairo::SavedState& state = context->saved.back();
    context->transform = state.transform;
    context->clip = state.clip;
    context->clipCount = state.clipCount;
    context->saved.pop_back();
    if (static_cast<int>(context->saved.size()) < context->hiddenAtDepth) {
        context->hiddenAtDepth = cairo::kNothingHidden;
    }
}

namespace {

// Adds points, in user coordinates, to the clip's outline.
bool AddToClip(Context& context, std::span<const CanvasPoint> points) {
    for (const CanvasPoint& point : points) {
        const CanvasPoint device = context.transform.ToDevice(point);
        if (!Finite(device.x, device.y)) {
            return false;
        }
        context.clipOutline.push_back(device);
    }
    return true;
}

bool AddArcToClip(Context& context, const CanvasPoint& topLeft, const CanvasSize& size,
                  double startDeg, double sweepDeg) {
    outline.clear();
    return LayArc(context, topLeft, size, startDeg, sweepDeg, outline) &&
           AddToClip(context, outline);
}

}  // namespace

void Canvas::ClipLine(double x1, double y1, double x2, double y2) {
    status_ = Perform(native_, [&](Context& context) {
        const std::array<CanvasPoint, 2> line{{{x1, y1}, {x2, y2}}};
        return FiniteAndSmall(line[0]) && FiniteAndSmall(line[1]) && AddToClip(context, line);
    });
}

void Canvas::ClipArc(const CanvasPoint& topLeft, const CanvasSize& size, double startDeg,
                     double sweepDeg) {
    status_ = Perform(native_, [&](Context& context) {
        return AddArcToClip(context, topLeft, size, startDeg, sweepDeg);
    });
}

void Canvas::ClipEllipse(double x, double y, double width, double height) {
    status_ = Perform(native_, [&](Context& context) {
        return AddArcToClip(context, {x, y}, {width, height}, 0, 360);
    });
}

void Canvas::ClipRectangle(double x, double y, double width, double height) {
    status_ = Perform(native_, [&](Context& context) {
        const std::array<CanvasPoint, 4> corners{
            {{x, y}, {x + width, y}, {x + width, y + height}, {x, y + height}}};
        return AddToClip(context, corners);
    });
}

void Canvas::EndClip() {
    if (Context* const context = Native(native_)) {
        cairo::NarrowClip(*context, context->clipOutline);
        context->clipOutline.clear();
    }
}

void Canvas::ResetClip() {
    if (native_ != nullptr) {
        Native(native_)->clip = 0;
    }
}

namespace {

// Where a text's box lies, whatever way it is turned.
Bounds BoundsOf(const Transform& transform, const CanvasPoint& at, const CanvasSize& size) {
    Bounds bounds;
    for (const CanvasPoint& part : {CanvasPoint{0, 0}, {1, 0}, {0, 1}, {1, 1}}) {
        bounds.Take(transform.ToDevice({at.x + part.x * size.width, at.y + part.y * size.height}));
    }
    return bounds;
}

// Whether a text can be seen. What a clip cuts through the middle cannot be read.
bool CanShow(const Context& context, const CanvasPoint& at, const CanvasSize& size) {
    const Transform& transform = context.transform;
    const cairo::PixelBox& box = context.PresentClip().box;
    const Bounds bounds = BoundsOf(transform, at, size);
    const bool meets = bounds.low().x < box.right && bounds.high().x > box.left &&
                       bounds.low().y < box.bottom && bounds.high().y > box.top;
    const bool whole = context.clip == 0;
    return meets &&
           (whole ||
            cairo::InClip(context.PresentClip(),
                          transform.ToDevice({at.x + size.width / 2, at.y + size.height / 2})));
}

void DrawMask(const Context& context, const cairo::GlyphMask& mask, int left, int top,
              std::uint32_t colour) {
    const cairo::Clip& clip = context.PresentClip();
    const int firstRow = std::max(clip.box.top - top, 0);
    const int endRow = std::min(clip.box.bottom - top, mask.height);
    for (int row = firstRow; row < endRow; ++row) {
        const cairo::RowSpan span = clip.SpanOf(top + row);
        const int first = std::max(static_cast<int>(std::lround(span.left)) - left, 0);
        const int end = std::min(static_cast<int>(std::lround(span.right)) - left, mask.width);
        const std::uint8_t* const parts =
            mask.parts.data() + static_cast<std::ptrdiff_t>(row) * mask.width;
        std::uint32_t* const pixels = context.picture.Row(top + row);
        for (int x = first; x < end; ++x) {
            if (parts[x] != 0) {
                cairo::Blend(pixels[left + x], colour, parts[x]);
            }
        }
    }
}

// Letters that stand upright come from masks on whole pixels: they are sharper so.
void DrawUprightGlyphs(const Context& context, cairo::FontFace& face, std::string_view text,
                       double sizePx, std::uint32_t argb, CanvasPoint at) {
    const Transform& transform = context.transform;
    cairo::SizedFont& font =
        cairo::FindSizedFont(face, sizePx * transform.xx, sizePx * transform.yy);
    const std::uint32_t colour = cairo::Premultiplied(argb);
    for (const char each : text) {
        const auto character = static_cast<unsigned char>(each);
        const CanvasPoint origin = transform.ToDevice(at);
        const cairo::GlyphMask& mask = cairo::MaskOf(face, font, character);
        DrawMask(context, mask, static_cast<int>(std::lround(origin.x)) + mask.left,
                 static_cast<int>(std::lround(origin.y)) + mask.top, colour);
        at.x += cairo::GlyphOf(face, character).advance * sizePx;
    }
}

void FillGlyphs(Context& context, cairo::FontFace& face, std::string_view text, double sizePx,
                std::uint32_t argb, CanvasPoint at, Bounds bounds) {
    bounds.Widen(sizePx * context.transform.LargestScale());  // letters may reach over their box
    FillWhat(context, argb, bounds, [&](cairo::Coverage& coverage) {
        for (const char each : text) {
            const auto character = static_cast<unsigned char>(each);
            const cairo::GlyphOutline& glyph = cairo::OutlineOf(face, character);
            std::size_t first = 0;
            for (const std::size_t end : glyph.ends) {
                outline.clear();
                for (std::size_t i = first; i < end; ++i) {
                    outline.push_back(context.transform.ToDevice(
                        {at.x + glyph.points[i].x * sizePx, at.y + glyph.points[i].y * sizePx}));
                }
                coverage.AddOutline(outline);
                first = end;
            }
            at.x += cairo::GlyphOf(face, character).advance * sizePx;
        }
    });
}

}  // namespace

void Canvas::DrawText(std::string_view text, const CanvasFont& font, std::uint32_t argb, double x,
                      double y) {
    status_ = Perform(native_, [&](Context& context) {
        cairo::FontFace* face = cairo::FindFontFace(font);
        const Transform& transform = context.transform;
        const double pixelSize = font.sizePx * transform.Scale();
        if (face == nullptr || !Finite(x, y, font.sizePx) || font.sizePx <= 0 ||
            font.sizePx > kFarOutsidePx || !(pixelSize <= kFarOutsidePx)) {
            return false;
        }
        text = text.substr(0, kCanvasTextLimit);
        const CanvasSize size = MeasureText(text, font);
        if (text.empty() || !CanShow(context, {x, y}, size)) {
            return true;
        }
        const CanvasPoint baseline{x, y + face->ascent * font.sizePx};
        if (transform.KeepsLevel() && transform.xx > 0 && transform.yy > 0 &&
            pixelSize <= kLargestMaskPx) {
            DrawUprightGlyphs(context, *face, text, font.sizePx, argb, baseline);
        } else {
            FillGlyphs(context, *face, text, font.sizePx, argb, baseline,
                       BoundsOf(transform, {x, y}, size));
        }
        std::array<char, 2 * kCanvasTextLimit + 1> utf8;
        Latin1ToUtf8(text, utf8.data(), utf8.size());
        const CanvasPoint corner = transform.ToDevice({x, y});
        ReportTextDrawn(deviceContext_, utf8.data(), corner.x, corner.y, pixelSize, argb);
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
