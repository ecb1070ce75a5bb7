#include "platform/cairo/strokes.h"

#include <algorithm>
#include <cmath>

#include "platform/canvas_geometry.h"

namespace avq1::cairo {
namespace {

// One straight piece of a line.
struct Piece {
    CanvasPoint from;
    CanvasPoint to;
    CanvasPoint along;   // its direction, of length 1
    CanvasPoint offset;  // across, half as long as the pen is wide
    double length = 0;
};

// The two ends of a pen's edge.
struct Across {
    CanvasPoint left;
    CanvasPoint right;
};

Across Beside(const CanvasPoint& at, const CanvasPoint& offset) {
    return {{at.x + offset.x, at.y + offset.y}, {at.x - offset.x, at.y - offset.y}};
}

class Stroke {
  public:
    Stroke(Coverage& coverage, const Transform& transform, double halfWidth)
        : coverage_(coverage), transform_(transform), halfWidth_(halfWidth) {}

    void Add(std::span<const CanvasPoint> points, bool closed) {
        static std::vector<Piece> pieces;  // kept, so that a draw allocates nothing
        LayPieces(points, closed, pieces);
        const std::size_t count = pieces.size();
        if (count == 0) {
            return;
        }
        const bool joins = closed && count > 1;
        Across start = Beside(pieces[0].from, pieces[0].offset);
        if (joins && IsGentle(pieces[count - 1], pieces[0])) {
            start = Mitre(pieces[count - 1], pieces[0]);
        } else {
            AddLine(start.right, start.left);
        }
        for (std::size_t i = 0; i < count; ++i) {
            const Piece& piece = pieces[i];
            const bool last = i + 1 == count;
            const Piece& next = pieces[last ? 0 : i + 1];
            const bool goesOn = !last || joins;
            const bool gentle = goesOn && IsGentle(piece, next);
            const Across end = gentle ? Mitre(piece, next) : Beside(piece.to, piece.offset);
            AddLine(start.left, end.left);
            AddLine(end.right, start.right);
            start = end;
            if (!gentle) {
                AddLine(end.left, end.right);
                if (goesOn) {
                    AddCorner(piece, next);
                }
                if (!last) {
                    start = Beside(next.from, next.offset);
                    AddLine(start.right, start.left);
                }
            }
        }
    }

  private:
    void LayPieces(std::span<const CanvasPoint> points, bool closed, std::vector<Piece>& pieces) {
        pieces.clear();
        const std::size_t count = points.size() - (closed ? 0 : 1);
        for (std::size_t i = 0; i < count; ++i) {
            const CanvasPoint& from = points[i];
            const CanvasPoint& to = points[i + 1 < points.size() ? i + 1 : 0];
            const CanvasPoint line{to.x - from.x, to.y - from.y};
            const double length = std::sqrt(line.x * line.x + line.y * line.y);
            if (length > 0) {
                const CanvasPoint along{line.x / length, line.y / length};
                pieces.push_back(
                    {from, to, along, {-along.y * halfWidth_, along.x * halfWidth_}, length});
            }
        }
    }

    static double Dot(const Piece& in, const Piece& out) {
        return in.along.x * out.along.x + in.along.y * out.along.y;
    }

    // So gentle a bend that both edges go round it as the line does.
    bool IsGentle(const Piece& in, const Piece& out) const {
        constexpr double kLeastDot = 0.7;
        return Dot(in, out) > kLeastDot && std::min(in.length, out.length) > halfWidth_;
    }

    static Across Mitre(const Piece& in, const Piece& out) {
        const double reach = 1 / (1 + Dot(in, out));
        return Beside(out.from,
                      {reach * (in.offset.x + out.offset.x), reach * (in.offset.y + out.offset.y)});
    }

    // What two pieces leave open on the outer side of their corner, in their own sense of turning.
    void AddCorner(const Piece& in, const Piece& out) {
        constexpr double kStraight = 1e-6;
        constexpr double kBluntBelow = 2.0 / 100 - 1;  // else the tip would be ten pens away
        const double cross = in.along.x * out.along.y - in.along.y * out.along.x;
        if (std::abs(cross) < kStraight) {
            return;
        }
        const bool left = cross < 0;  // is the outer side
        const Piece& one = left ? in : out;
        const Piece& other = left ? out : in;
        const auto outer = [&](const Across& across) { return left ? across.left : across.right; };
        const CanvasPoint first = outer(Beside(out.from, one.offset));
        const CanvasPoint last = outer(Beside(out.from, other.offset));
        AddLine(out.from, first);
        if (Dot(in, out) < kBluntBelow) {
            AddLine(first, last);
        } else {
            const CanvasPoint tip = outer(Mitre(in, out));
            AddLine(first, tip);
            AddLine(tip, last);
        }
        AddLine(last, out.from);
    }

    void AddLine(const CanvasPoint& from, const CanvasPoint& to) {
        coverage_.AddLine(transform_.ToDevice(from), transform_.ToDevice(to));
    }

    Coverage& coverage_;
    const Transform& transform_;
    double halfWidth_;
};

// Cuts the line into the pen's dashes.
void AddDashes(Stroke& stroke, std::span<const double> dashes, std::span<const CanvasPoint> points,
               bool closed) {
    static std::vector<CanvasPoint> dash;  // kept, so that a draw allocates nothing
    dash.clear();
    std::size_t turn = 0;
    double left = dashes[0];  // of the present dash or gap
    bool on = true;
    const std::size_t count = points.size() - (closed ? 0 : 1);
    for (std::size_t i = 0; i < count; ++i) {
        const CanvasPoint& from = points[i];
        const CanvasPoint& to = points[(i + 1) % points.size()];
        const double length = std::hypot(to.x - from.x, to.y - from.y);
        double at = 0;
        dash.push_back(from);
        while (left < length - at) {
            at += left;
            const double part = at / length;
            const CanvasPoint end{from.x + part * (to.x - from.x), from.y + part * (to.y - from.y)};
            if (on) {
                dash.push_back(end);
                stroke.Add(dash, false);
            }
            dash.clear();
            dash.push_back(end);
            on = !on;
            turn = (turn + 1) % dashes.size();
            left = dashes[turn];
        }
        left -= length - at;
    }
    if (on) {
        dash.push_back(closed ? points.front() : points.back());
        stroke.Add(dash, false);
    }
}

}  // namespace

void AppendArc(const Transform& transform, const CanvasPoint& topLeft, const CanvasSize& size,
               double startDeg, double sweepDeg, std::vector<CanvasPoint>& points) {
    constexpr double kFlatPx = 0.06;  // between a chord and its arc
    constexpr int kMostChords = 400;
    const CanvasPoint radius{std::abs(size.width) / 2, std::abs(size.height) / 2};
    const CanvasPoint centre{topLeft.x + size.width / 2, topLeft.y + size.height / 2};
    const double radiusPx =
        std::max(radius.x, radius.y) *
        std::max(std::hypot(transform.xx, transform.yx), std::hypot(transform.xy, transform.yy));
    const double sweep = std::clamp(sweepDeg, -360.0, 360.0) * kDegreesToRadians;
    const double step = 2 * std::acos(std::max(1 - kFlatPx / radiusPx, 0.5));
    const int chords =
        std::clamp(static_cast<int>(std::ceil(std::abs(sweep) / step)), 1, kMostChords);
    const double start = std::fmod(startDeg, 360.0) * kDegreesToRadians;
    const double turnCosine = std::cos(sweep / chords);
    const double turnSine = std::sin(sweep / chords);
    double cosine = std::cos(start);
    double sine = std::sin(start);
    const int last = std::abs(sweepDeg) >= 360 ? chords - 1 : chords;
    for (int i = 0; i <= last; ++i) {
        points.push_back({centre.x + radius.x * cosine, centre.y + radius.y * sine});
        const double turned = cosine * turnCosine - sine * turnSine;
        sine = sine * turnCosine + cosine * turnSine;
        cosine = turned;
    }
}

double StrokeReachPx(const Transform& transform, const CanvasPen& pen) {
    constexpr double kFarthestTip = 10;
    return kFarthestTip * transform.LargestScale() * (pen.widthPx > 0 ? pen.widthPx : 1.0);
}

void AddStroke(Coverage& coverage, const Transform& transform, const CanvasPen& pen,
               std::span<const CanvasPoint> points, bool closed) {
    Stroke stroke(coverage, transform, (pen.widthPx > 0 ? pen.widthPx : 1.0) / 2);
    if (pen.dashPx.empty()) {
        stroke.Add(points, closed);
    } else {
        AddDashes(stroke, pen.dashPx, points, closed);
    }
}

}  // namespace avq1::cairo
